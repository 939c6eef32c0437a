#include "QXSingletonFixture.h"

// What this module sees of the statics: through the class, and through the base whose members it could instantiate too.
extern "C" __attribute__((visibility("default"))) void* QXTestManagerOfModule() {
  return &QXC::QXTestManager::GetSingleton();
}
extern "C" __attribute__((visibility("default"))) void* QXTestBaseOfModule() {
  return QXC::QXSingleton<QXC::QXTestManager>::GetSingletonPtr();
}
extern "C" __attribute__((visibility("default"))) void* QXTestLockerOfModule() {
  return &QXC::QXSingleton<QXC::QXTestManager>::ms_mLocker;
}
