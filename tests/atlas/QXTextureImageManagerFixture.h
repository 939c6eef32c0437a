/// @file
/// Images of the image atlas, placed and not.
#pragma once

#include "QXImageAtlasFixture.h"

#include <QxGraphics3D/atlas/QXTextureImageManager.h>

#include <cstdint>

namespace QXC {

constexpr std::uint32_t Location(unsigned int nCol, unsigned int nRow, unsigned int nLod, unsigned int nIndex) {
  return nCol | nRow << 10 | nLod << 20 | nIndex << 24;
}

class QXTextureImageManagerTest : public QXImageAtlasFixture<QXTextureImageManager, QXTextureImage> {
protected:
  /// A record with pixels, their first byte being nValue, but no slot.
  QXTextureImage* Make(wchar_t const* szName, unsigned int nSize, int nFormat = 12, unsigned char nValue = 1,
      unsigned int nCompression = 0) {
    QXTextureImage* const pImage = m_Manager.GetTextureImage(szName);
    pImage->m_nSize = nSize;
    pImage->m_pTextureData = MakeData(nSize, nSize, nFormat, nValue, nCompression);
    return pImage;
  }
  QXTextureImage* Place(wchar_t const* szName, unsigned int nSize, int nFormat = 12, unsigned char nValue = 1,
      unsigned int nCompression = 0) {
    QXTextureImage* const pImage = Make(szName, nSize, nFormat, nValue, nCompression);
    EXPECT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 1);
    return pImage;
  }
};

}  // namespace QXC
