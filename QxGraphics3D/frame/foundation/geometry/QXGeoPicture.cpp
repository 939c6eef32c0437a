#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXImageHolder.h>

namespace QXC {

QXGeoPicture::~QXGeoPicture() {
  SetImage(nullptr);
}

void QXGeoPicture::SetImage(QXImageData* pImage) {
  if (pImage == m_pImage) return;
  detail::QXImageDelete()(m_pImage);
  m_pImage = pImage;
}

}  // namespace QXC
