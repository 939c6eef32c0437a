#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>

namespace QXC {

QXGeoPicture::~QXGeoPicture() {
  SetImage(nullptr);
}

void QXGeoPicture::SetImage(QXImageData* pImage) {
  if (pImage == m_pImage) return;
  if (m_pImage != nullptr) {
    // The record's own destructor leaves the block to whoever took it over.
    delete[] static_cast<unsigned char*>(m_pImage->m_pPixels);
    delete m_pImage;
  }
  m_pImage = pImage;
}

}  // namespace QXC
