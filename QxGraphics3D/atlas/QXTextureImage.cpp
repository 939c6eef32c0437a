#include <QxGraphics3D/atlas/QXTextureImage.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>

#include <ctime>

namespace QXC {

QXTextureImage::QXTextureImage(QXTextureImageManager* pManager)
    : m_pManager(pManager), m_nCreateTime(static_cast<unsigned int>(std::clock())) {}

QXTextureImage::~QXTextureImage() {
  delete m_pTextureData;
}

QdcRect QXTextureImage::GetSlot() const {
  int const nColumn = static_cast<int>(m_nLocation & 0x3FFu);
  int const nRow = static_cast<int>((m_nLocation >> 10) & 0x3FFu);
  int const nSize = 1024 >> ((m_nLocation >> 20) & 0xFu);
  int const nLeft = nColumn - (nSize >> 1);
  int const nTop = nRow - (nSize >> 1);
  return QdcRect(nLeft, nTop, nLeft + nSize, nTop + nSize);
}

}  // namespace QXC
