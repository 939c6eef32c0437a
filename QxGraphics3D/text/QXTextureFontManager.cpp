#include <QxGraphics3D/text/QXTextureFontManager.h>

namespace QXC {

template class QXSingleton<QXTextureFontManager>;

QXTextureFontManager::QXTextureFontManager() = default;
QXTextureFontManager::~QXTextureFontManager() = default;

QXTextureFontManager& QXTextureFontManager::GetSingleton() {
  return *GetSingletonPtr();
}

QXTextureFontManager* QXTextureFontManager::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXTextureFontManager;
  return ms_pSingleton;
}

void QXTextureFontManager::Clear() {}

}  // namespace QXC
