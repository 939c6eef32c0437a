#include <QxGraphics3D/atlas/detail/QXIndexSet.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <set>

namespace QXC::detail {
namespace {

TEST(QXIndexSet, HasNothingBeforeRoomIsMade) {
  QXIndexSet set;
  EXPECT_EQ(set.FindFrom(0), -1);
  EXPECT_EQ(set.FindFrom(1000000), -1);
  EXPECT_FALSE(set.Contains(0));
  set.Reserve(0);
  set.Reserve(-1);
  EXPECT_EQ(set.FindFrom(0), -1);
}

TEST(QXIndexSet, FindsTheNextMemberAcrossWordsAndRows) {
  QXIndexSet set;
  set.Reserve(300000);
  for (int const nIndex : {3, 63, 64, 4095, 4096, 262143, 262144, 299999}) set.Insert(nIndex);
  EXPECT_EQ(set.FindFrom(0), 3);
  EXPECT_EQ(set.FindFrom(3), 3);
  EXPECT_EQ(set.FindFrom(4), 63);
  EXPECT_EQ(set.FindFrom(64), 64);
  EXPECT_EQ(set.FindFrom(65), 4095);
  EXPECT_EQ(set.FindFrom(4096), 4096);
  EXPECT_EQ(set.FindFrom(4097), 262143);
  EXPECT_EQ(set.FindFrom(262144), 262144);
  EXPECT_EQ(set.FindFrom(262145), 299999);
  EXPECT_EQ(set.FindFrom(300000), -1);
}

TEST(QXIndexSet, KeepsItsMembersWhenItGrows) {
  QXIndexSet set;
  set.Reserve(1);
  set.Insert(0);
  set.Reserve(64);
  set.Insert(63);
  set.Reserve(65);
  EXPECT_EQ(set.FindFrom(1), 63);
  EXPECT_EQ(set.FindFrom(64), -1);
  set.Reserve(5000);
  set.Insert(4999);
  EXPECT_EQ(set.FindFrom(0), 0);
  EXPECT_EQ(set.FindFrom(64), 4999);
  set.Reserve(10);
  EXPECT_EQ(set.FindFrom(64), 4999);
}

TEST(QXIndexSet, ErasingTheLastOfAWordEmptiesTheRowsAbove) {
  QXIndexSet set;
  set.Reserve(10000);
  set.Insert(5000);
  set.Insert(9999);
  set.Erase(5000);
  set.Erase(5000);
  EXPECT_EQ(set.FindFrom(0), 9999);
  set.Erase(9999);
  EXPECT_EQ(set.FindFrom(0), -1);
}

TEST(QXIndexSet, AgreesWithAnOrderedSet) {
  constexpr unsigned int nSeed = 611;
  std::printf("seed %u\n", nSeed);
  std::mt19937 random(nSeed);
  QXIndexSet set;
  std::set<int> setPlain;
  int nRoom = 0;
  for (int i = 0; i < 200000; ++i) {
    if (i % 10000 == 0) set.Reserve(nRoom = 40 + i);
    // Few numbers of a large room: most words are empty, and whole rows come and go.
    int const nIndex = static_cast<int>(random() % static_cast<unsigned int>(nRoom));
    if (random() % 100 < 40 || setPlain.empty()) {
      set.Insert(nIndex);
      setPlain.insert(nIndex);
    } else {
      auto const victim =
          setPlain.lower_bound(nIndex) != setPlain.end() ? setPlain.lower_bound(nIndex) : setPlain.begin();
      set.Erase(*victim);
      setPlain.erase(victim);
    }
    int const nFirst = static_cast<int>(random() % static_cast<unsigned int>(nRoom + 100));
    auto const next = setPlain.lower_bound(nFirst);
    ASSERT_EQ(set.FindFrom(nFirst), next != setPlain.end() ? *next : -1) << "step " << i;
    ASSERT_EQ(set.Contains(nIndex), setPlain.count(nIndex) != 0) << "step " << i;
  }
}

}  // namespace
}  // namespace QXC::detail
