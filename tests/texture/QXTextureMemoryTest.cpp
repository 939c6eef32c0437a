#include <QxGraphics3D/texture/QXTextureMemory.h>

#include <gtest/gtest.h>

#include <limits>

namespace QXC {
namespace {

TEST(QXTextureMemory, StartsAtNothing) {
  EXPECT_EQ(QXTextureMemory().GetCurrentMemory(), 0);
}

TEST(QXTextureMemory, WholeMegabytesAreCutTowardsZero) {
  struct Case {
    int m_nBytes;
    int m_nMegabytes;
  };
  for (Case const& test :
      {Case{1048575, 0}, Case{1048576, 1}, Case{5 * 1048576 - 1, 4}, Case{-1048575, 0}, Case{-1048576, -1}}) {
    QXTextureMemory memory;
    memory.AddMemory(test.m_nBytes);
    EXPECT_EQ(memory.GetCurrentMemory(), test.m_nMegabytes) << test.m_nBytes;
  }
}

TEST(QXTextureMemory, BytesAreCountedInAndOut) {
  QXTextureMemory memory;
  memory.AddMemory(3000000);
  memory.AddMemory(3000000);
  EXPECT_EQ(memory.GetCurrentMemory(), 5);
  memory.DelMemory(6000000);
  memory.DelMemory(2097152);
  EXPECT_EQ(memory.GetCurrentMemory(), -2);
}

TEST(QXTextureMemory, CountGoesRoundAtItsEnds) {
  constexpr int kMost = std::numeric_limits<int>::max();
  QXTextureMemory memory;
  memory.AddMemory(kMost);
  memory.AddMemory(1);
  EXPECT_EQ(memory.GetCurrentMemory(), -2048);
  memory.DelMemory(1);
  EXPECT_EQ(memory.GetCurrentMemory(), 2047);
  memory.DelMemory(kMost);
  EXPECT_EQ(memory.GetCurrentMemory(), 0);
}

TEST(QXTextureMemory, ThereIsOneOfIt) {
  EXPECT_EQ(&QXTextureMemory::GetSingleton(), QXTextureMemory::GetSingletonPtr());
  EXPECT_EQ(&QXTextureMemory::GetSingleton(), &QXSingleton<QXTextureMemory>::GetSingleton());
}

}  // namespace
}  // namespace QXC
