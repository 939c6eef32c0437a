#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

namespace QXC {
namespace {

class QXMutexFlag : public testing::TestWithParam<unsigned char> {};
INSTANTIATE_TEST_SUITE_P(BothFlags, QXMutexFlag, testing::Values<unsigned char>(0, 1));

TEST_P(QXMutexFlag, OneThreadMayEnterAgain) {
  QXMutex mutex(GetParam());
  mutex.lock();
  mutex.lock();
  mutex.unlock();
  mutex.unlock();
}

TEST_P(QXMutexFlag, ThreadsTakeTurns) {
  QXMutex mutex(GetParam());
  int counter = 0;  // plain: a lock that does not hold loses counts, and the thread sanitizer names the race
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 5000; ++round) {
        QXMutexLock lock(mutex);
        lock.lock();
        int const seen = counter;
        if (round % 64 == 0) std::this_thread::yield();
        counter = seen + 1;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counter, 20000);
}

std::vector<std::pair<QXMutex const*, unsigned char>> arrTold;

class QXMutexObserver : public testing::Test {
protected:
  void SetUp() override {
    arrTold.clear();
    QXMutex::SetObserver([](QXMutex const& mutex, unsigned char bLocked) { arrTold.emplace_back(&mutex, bLocked); });
  }
  void TearDown() override { QXMutex::SetObserver(nullptr); }
  using Told = std::vector<std::pair<QXMutex const*, unsigned char>>;
};

TEST_F(QXMutexObserver, IsToldTheOrderOfLocks) {
  QXMutex atlas(1);
  QXMutex textures(1);
  {
    QXMutexLock first(atlas);
    first.lock();
    QXMutexLock second(textures);
    second.lock();
  }
  EXPECT_EQ(arrTold, (Told{{&atlas, 1}, {&textures, 1}, {&textures, 0}, {&atlas, 0}}));
  QXMutex::SetObserver(nullptr);
  atlas.lock();
  atlas.unlock();
  EXPECT_EQ(arrTold.size(), 4u);
}

TEST_F(QXMutexObserver, LockObjectTakesNothingBeforeItIsTold) {
  QXMutex mutex(0);
  { QXMutexLock const lock(mutex); }
  EXPECT_TRUE(arrTold.empty());
}

TEST_F(QXMutexObserver, LockObjectLocksOnceHoweverOftenItIsTold) {
  QXMutex mutex(0);
  {
    QXMutexLock lock(mutex);
    lock.lock();
    lock.lock();
  }
  EXPECT_EQ(arrTold, (Told{{&mutex, 1}, {&mutex, 0}}));
}

TEST(QXMutex, LockObjectKeepsOthersOutUntilItDies) {
  QXMutex mutex(1);
  std::atomic<bool> isHeld{false};
  std::atomic<bool> mayGo{false};
  std::atomic<bool> wasIn{false};
  std::thread holder([&] {
    QXMutexLock lock(mutex);
    lock.lock();
    isHeld = true;
    while (!mayGo) std::this_thread::yield();
    wasIn = true;
  });
  while (!isHeld) std::this_thread::yield();
  std::thread other([&] {
    mayGo = true;
    mutex.lock();
    EXPECT_TRUE(wasIn);
    mutex.unlock();
  });
  holder.join();
  other.join();
}

}  // namespace
}  // namespace QXC
