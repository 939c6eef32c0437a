#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {

QXTexture::QXTexture() = default;
QXTexture::~QXTexture() = default;

void QXTexture::AddRef() {
  ++m_nRefCount;
}

void QXTexture::DecRef() {
  --m_nRefCount;
}

int QXTexture::GetRef() const {
  return m_nRefCount;
}

}  // namespace QXC
