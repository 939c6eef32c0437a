#include "QXSingletonFixture.h"

namespace QXC {

template class QXSingleton<QXTestManager>;

QXTestManager::~QXTestManager() = default;

QXTestManager& QXTestManager::GetSingleton() {
  return *GetSingletonPtr();
}

QXTestManager* QXTestManager::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXTestManager;
  return ms_pSingleton;
}

}  // namespace QXC
