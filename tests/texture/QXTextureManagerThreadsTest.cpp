// What the manager's lock covers, by an observer and by threads.

#include "QXMortalTexture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace QXC {
namespace {

class QXTextureManagerLockTest : public testing::Test {
protected:
  void SetUp() override {
    ms_pMutex = &m_Manager.m_Mutex;
    ms_strTold.clear();
    QXMutex::SetObserver([](QXMutex const& mutex, unsigned char bLocked) {
      if (&mutex == ms_pMutex) ms_strTold += bLocked ? '(' : ')';
    });
  }
  void TearDown() override { QXMutex::SetObserver(nullptr); }
  std::string Told() { return std::exchange(ms_strTold, std::string()); }

  static QXMutex const* ms_pMutex;
  static std::string ms_strTold;
  QXOpenTextureManager m_Manager;
};

QXMutex const* QXTextureManagerLockTest::ms_pMutex = nullptr;
std::string QXTextureManagerLockTest::ms_strTold;

TEST_F(QXTextureManagerLockTest, RemovingLocksOnEveryWay) {
  QXMortalTexture stranger(L"b");
  m_Manager.RemoveTexture(nullptr, 1);
  EXPECT_EQ(Told(), "");
  m_Manager.RemoveTexture(&stranger, 1);
  EXPECT_EQ(Told(), "()");
  QXTexture* const pTexture = m_Manager.Enter(new QXMortalTexture(L"a"));
  pTexture->m_nRefCount = 2;
  m_Manager.RemoveTexture(&stranger, 1);
  m_Manager.RemoveTexture(pTexture, 1);
  m_Manager.RemoveTexture(pTexture, 1);
  EXPECT_EQ(Told(), "()()()");
}

TEST_F(QXTextureManagerLockTest, TexturesDieUnderTheLock) {
  auto const dies = [](QXMortalTexture&) { ms_strTold += '.'; };
  QXTexture* const pTexture = m_Manager.Enter(new QXMortalTexture(L"a", dies));
  m_Manager.RemoveTexture(pTexture, 1);
  EXPECT_EQ(Told(), "(.)");
  m_Manager.Enter(new QXMortalTexture(L"a", dies));
  QXTexture* pUnused = new QXMortalTexture(L"b", dies);
  m_Manager.AddUnusedTextures(pUnused);
  m_Manager.Release();
  EXPECT_EQ(Told(), "(..)");
}

TEST_F(QXTextureManagerLockTest, AddingAndDeletingUnusedOnesRelyOnTheCaller) {
  m_Manager.Enter(new QXMortalTexture(L"a"));
  QXTexture* pUnused = new QXMortalTexture(L"b");
  m_Manager.AddUnusedTextures(pUnused);
  m_Manager.DeleteUnusedTextures();
  EXPECT_EQ(Told(), "");
}

TEST_F(QXTextureManagerLockTest, OneThreadEntersRepeatedly) {
  QXTexture* const pTexture = m_Manager.Enter(new QXMortalTexture(L"a"));
  m_Manager.Lock();
  m_Manager.Lock();
  m_Manager.RemoveTexture(pTexture, 1);
  m_Manager.Release();
  m_Manager.Unlock();
  m_Manager.Unlock();
  EXPECT_EQ(Told(), "((()()))");
}

// Every thread takes and gives back a few shared names. A count that two threads change at once, or a texture that one
// finds while another deletes it, shows as a wrong sum here and as a report of the thread sanitizer.
TEST(QXTextureManagerThreads, TexturesAreSharedAndGoWithTheirLastUser) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 4000;
  std::atomic<int> nMade{0};
  std::atomic<int> nDead{0};
  class CountingManager : public QXOpenTextureManager {
  public:
    CountingManager(std::atomic<int>& nMadeCount) : m_nMade(nMadeCount) {}
    QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override {
      if (!ManagerOperation2(strName)) ++m_nMade;
      return QXOpenTextureManager::GetTexture(strName, bCreate);
    }
    std::atomic<int>& m_nMade;
  };
  CountingManager manager(nMade);
  manager.m_Report = [&](QXMortalTexture&) { ++nDead; };
  auto const work = [&](unsigned int nSeed) {
    std::mt19937 random(nSeed);
    std::vector<QXTexture*> arrHeld;
    for (int i = 0; i < kRounds; ++i) {
      if (arrHeld.size() < 6 && random() % 2) {
        QdcUnicodeString strName;
        strName.Format(L"store/texture/%u", static_cast<unsigned int>(random() % 5));
        manager.Lock();
        QXTexture* const pTexture = manager.GetTexture(strName, 1);
        pTexture->AddRef();
        manager.Unlock();
        arrHeld.push_back(pTexture);
      } else if (!arrHeld.empty()) {
        manager.RemoveTexture(arrHeld.back(), 1);
        arrHeld.pop_back();
      }
    }
    for (QXTexture* const pTexture : arrHeld) manager.RemoveTexture(pTexture, 1);
  };
  std::vector<std::thread> arrThreads;
  for (unsigned int i = 0; i < kThreads; ++i) arrThreads.emplace_back(work, 77 + i);
  for (std::thread& thread : arrThreads) thread.join();
  EXPECT_GT(nMade.load(), 5);
  EXPECT_EQ(nMade.load(), nDead.load());
  EXPECT_TRUE(manager.m_mapCache.empty());
}

}  // namespace
}  // namespace QXC
