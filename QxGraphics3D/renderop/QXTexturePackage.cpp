#include <QxGraphics3D/renderop/QXTexturePackage.h>

namespace QXC {

QXTexturePackage::~QXTexturePackage() {
  for (QXTexture*& pTexture : m_pTextures) pTexture = nullptr;
  m_pExtra = nullptr;
}

}  // namespace QXC
