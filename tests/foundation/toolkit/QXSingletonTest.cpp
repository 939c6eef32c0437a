#include "QXSingletonFixture.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace QXC {
namespace {

struct Plain : QXSingleton<Plain> {
  int m_nNumber = 5;
};

TEST(QXSingleton, IsMadeOnFirstUseAndStaysTheSame) {
  EXPECT_EQ(QXSingleton<Plain>::ms_pSingleton, nullptr);
  Plain& first = QXSingleton<Plain>::GetSingleton();
  EXPECT_EQ(first.m_nNumber, 5);
  EXPECT_EQ(QXSingleton<Plain>::GetSingletonPtr(), &first);
  EXPECT_EQ(Plain::ms_pSingleton, &first);
  delete Plain::ms_pSingleton;
  Plain::ms_pSingleton = nullptr;
}

int nLocks = 0;

TEST(QXSingleton, TakesNoLock) {
  nLocks = 0;
  QXMutex::SetObserver([](QXMutex const&, unsigned char) { ++nLocks; });
  delete QXSingleton<Plain>::GetSingletonPtr();
  Plain::ms_pSingleton = nullptr;
  EXPECT_EQ(nLocks, 0);
  QXSingleton<Plain>::ms_mLocker.lock();
  QXSingleton<Plain>::ms_mLocker.unlock();
  QXMutex::SetObserver(nullptr);
  EXPECT_EQ(nLocks, 2);
}

TEST(QXSingleton, IsOneObjectInAllModules) {
  QXTestManager& manager = QXTestManager::GetSingleton();
  void* const pModule = ::dlopen(QX_SINGLETON_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(pModule, nullptr) << ::dlerror();
  auto const call = [pModule](char const* szName) { return reinterpret_cast<void* (*)()>(::dlsym(pModule, szName))(); };
  EXPECT_EQ(call("QXTestManagerOfModule"), &manager);
  EXPECT_EQ(call("QXTestBaseOfModule"), &manager);
  EXPECT_EQ(call("QXTestLockerOfModule"), &QXSingleton<QXTestManager>::ms_mLocker);
  ::dlclose(pModule);
}

}  // namespace
}  // namespace QXC
