/// @file
/// Images of the image atlas, placed and not.
#pragma once

#include "QXImageAtlasFixture.h"

#include <QxGraphics3D/atlas/QXTextureImageManager.h>

#include <cstddef>
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
  /// Uploads, the locks told too. What is told first, the making of the big texture for the first image, of format 12,
  /// is compared here and taken off the list; what is sent to it is left to the caller.
  void UploadToNewBigTexture() {
    {
      QXToldLocks const locks(m_Textures);
      m_Manager.LoadTexture();
    }
    QXTold const arrMaking{"atlas(", "store(", "Image_BigTexture_0: GetTexture(1)",
        "Image_BigTexture_0: SetTextureData(1024 x 1024, format 12, compression 0, size 4194304)",
        "Image_BigTexture_0: LoadTexture(1, 0) need 0"};
    QXTold& arrTold = GetTold();
    ASSERT_GE(arrTold.size(), arrMaking.size());
    auto const rest = arrTold.begin() + static_cast<std::ptrdiff_t>(arrMaking.size());
    EXPECT_EQ(QXTold(arrTold.begin(), rest), arrMaking);
    arrTold.erase(arrTold.begin(), rest);
  }
};

}  // namespace QXC
