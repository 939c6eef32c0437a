#include <QxGraphics3D/texture/QXTextureManager.h>

namespace QXC {

QXTextureManager::QXTextureManager() = default;
QXTextureManager::~QXTextureManager() = default;

void QXTextureManager::DeleteUnusedTextures() {}

void QXTextureManager::Release() {}

QXTexture* QXTextureManager::CreateTexture() {
  return nullptr;
}

void QXTextureManager::DeleteTexture(unsigned int) {}

}  // namespace QXC
