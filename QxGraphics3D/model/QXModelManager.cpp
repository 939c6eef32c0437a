#include <QxGraphics3D/model/QXModelManager.h>

namespace QXC {

template class QXSingleton<QXModelManager>;

QXModelManager::QXModelManager() {
  if (!ms_pSingleton) ms_pSingleton = this;
}

QXModelManager::~QXModelManager() {
  // Whichever object is registered: hosts look the manager up anew after a renderer has gone.
  ms_pSingleton = nullptr;
}

QXModelManager& QXModelManager::GetSingleton() {
  if (!ms_pSingleton) new QXModelManager;  // registers itself
  return *ms_pSingleton;
}

QXModelManager* QXModelManager::GetSingletonPtr() {
  return ms_pSingleton;
}

}  // namespace QXC
