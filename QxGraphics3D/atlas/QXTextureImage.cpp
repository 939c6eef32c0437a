#include <QxGraphics3D/atlas/QXTextureImage.h>

#include <QxGraphics3D/atlas/detail/QXQuadtreeRules.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>

#include <ctime>

namespace QXC {

QXTextureImage::QXTextureImage(QXTextureImageManager* pManager)
    : m_pManager(pManager), m_nCreateTime(static_cast<unsigned int>(std::clock())) {}

QXTextureImage::~QXTextureImage() {
  delete m_pTextureData;
}

QdcRect QXTextureImage::GetSlot() const {
  detail::QXQuadtreePlace const place = detail::UnpackQuadtreePlace(m_nLocation);
  int const nSize = detail::g_ImageAtlasRules.m_nPageSize >> place.m_nLod;
  int const nLeft = place.m_nCol - (nSize >> 1);
  int const nTop = place.m_nRow - (nSize >> 1);
  return QdcRect(nLeft, nTop, nLeft + nSize, nTop + nSize);
}

}  // namespace QXC
