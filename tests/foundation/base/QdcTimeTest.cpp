#include <QxGraphics3D/frame/foundation/base/QdcTime.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace QXC {
namespace {

unsigned int nNow = 0;

class QdcTimeClock : public testing::Test {
protected:
  void TearDown() override { QdcTime::SetClock(nullptr); }
};

TEST_F(QdcTimeClock, ReplacedClockIsRead) {
  QdcTime::SetClock([] { return nNow; });
  nNow = 1234;
  EXPECT_EQ(QdcTime::GetMillisecond(), 1234u);
  nNow = 0xFFFFFFFFu;
  EXPECT_EQ(QdcTime::GetMillisecond(), 0xFFFFFFFFu);
}

TEST_F(QdcTimeClock, DifferencesStayRightAcrossTheWrap) {
  QdcTime::SetClock([] { return nNow; });
  nNow = 0xFFFFFFF0u;
  unsigned int const before = QdcTime::GetMillisecond();
  nNow += 0x20u;
  EXPECT_EQ(QdcTime::GetMillisecond() - before, 0x20u);
  EXPECT_LT(QdcTime::GetMillisecond(), before);
}

TEST_F(QdcTimeClock, NullBringsTheSteadyClockBack) {
  QdcTime::SetClock([] { return 5u; });
  QdcTime::SetClock(nullptr);
  auto const started = std::chrono::steady_clock::now();
  unsigned int const first = QdcTime::GetMillisecond();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  unsigned int const passed = QdcTime::GetMillisecond() - first;
  auto const most = std::chrono::steady_clock::now() - started;
  EXPECT_GE(passed, 19u);
  EXPECT_LE(passed, std::chrono::duration_cast<std::chrono::milliseconds>(most).count() + 1);
}

TEST_F(QdcTimeClock, SteadyClockIsCutToItsLowest32Bits) {
  using std::chrono::milliseconds;
  auto const now = [] {
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
  };
  auto const before = static_cast<unsigned int>(now().count());
  unsigned int const read = QdcTime::GetMillisecond();
  auto const after = static_cast<unsigned int>(now().count());
  EXPECT_LE(read - before, after - before);
}

TEST(QdcTime, ValueDefaultsToTheEpochAndCopies) {
  EXPECT_EQ(QdcTime().GetMillisecondsUTC(), 0);
  QdcTime const first(1700000000123);
  QdcTime second;
  second = first;
  EXPECT_EQ(second.GetMillisecondsUTC(), 1700000000123);
  EXPECT_TRUE(second == first);
}

}  // namespace
}  // namespace QXC
