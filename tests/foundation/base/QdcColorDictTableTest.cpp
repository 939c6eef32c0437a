#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base/QdcColorDictTable.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace QXC {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(QdcColorDictTable, EmptyTableHasNoColour) {
  QdcColorDictTable const table;
  EXPECT_EQ(table.GetCount(), 0);
  EXPECT_EQ(table.GetColor(0.0, 0), 0u);
  EXPECT_EQ(table.GetColor(0.0, 1), 0u);
  EXPECT_EQ(table.GetColor(kNaN, 1), 0u);
}

TEST(QdcColorDictTable, ItemsStandInRisingOrder) {
  QdcColorDictTable table;
  table.Add(5.0, 50);
  table.Add(-1.0, 10);
  table.Add(2.0, 20);
  table.Add(2.0, 21);
  ASSERT_EQ(table.GetCount(), 4);
  std::vector<std::pair<double, unsigned int>> arrItems(4);
  for (int i = 0; i < 4; ++i)
    table.GetItem(i, arrItems[static_cast<std::size_t>(i)].first, arrItems[static_cast<std::size_t>(i)].second);
  EXPECT_EQ(arrItems, (std::vector<std::pair<double, unsigned int>>{{-1.0, 10}, {2.0, 20}, {2.0, 21}, {5.0, 50}}));
}

TEST(QdcColorDictTable, ItemsOutsideTheTableChangeNothing) {
  QdcColorDictTable table;
  table.Add(1.0, 7);
  for (int const nIndex : {-1, 1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    double dValue = 12.0;
    unsigned int nColor = 34;
    table.GetItem(nIndex, dValue, nColor);
    EXPECT_EQ(dValue, 12.0);
    EXPECT_EQ(nColor, 34u);
  }
}

TEST(QdcColorDictTable, StepsTakeTheColourAtOrBelow) {
  QdcColorDictTable table;
  table.Add(0.0, 1);
  table.Add(10.0, 2);
  table.Add(10.0, 3);
  table.Add(20.0, 4);
  EXPECT_EQ(table.GetColor(-0.001, 0), 1u);
  EXPECT_EQ(table.GetColor(0.0, 0), 1u);
  EXPECT_EQ(table.GetColor(9.999, 0), 1u);
  EXPECT_EQ(table.GetColor(10.0, 0), 3u);
  EXPECT_EQ(table.GetColor(19.0, 0), 3u);
  EXPECT_EQ(table.GetColor(20.0, 0), 4u);
  EXPECT_EQ(table.GetColor(1e300, 0), 4u);
}

TEST(QdcColorDictTable, EachChannelIsInterpolatedAndRounded) {
  QdcColorDictTable table;
  table.Add(0.0, QDCRGBA(0, 255, 100, 0));
  table.Add(10.0, QDCRGBA(10, 0, 101, 255));
  EXPECT_EQ(table.GetColor(0.0, 1), QDCRGBA(0, 255, 100, 0));
  EXPECT_EQ(table.GetColor(10.0, 1), QDCRGBA(10, 0, 101, 255));
  // 0.4 -> 0, 244.8 -> 245, 100.04 -> 100, 10.2 -> 10.
  EXPECT_EQ(table.GetColor(0.4, 1), QDCRGBA(0, 245, 100, 10));
  // 5, 127.5 -> 128, 100.5 -> 101, 127.5 -> 128.
  EXPECT_EQ(table.GetColor(5.0, 1), QDCRGBA(5, 128, 101, 128));
  // 9.6 -> 10, 10.2 -> 10, 100.96 -> 101, 244.8 -> 245.
  EXPECT_EQ(table.GetColor(9.6, 1), QDCRGBA(10, 10, 101, 245));
}

TEST(QdcColorDictTable, OutsideTheRangeTheEndsHold) {
  QdcColorDictTable table;
  table.Add(1.0, 0x01020304u);
  EXPECT_EQ(table.GetColor(0.0, 1), 0x01020304u);
  EXPECT_EQ(table.GetColor(2.0, 1), 0x01020304u);
  table.Add(3.0, 0xFFFFFFFFu);
  for (unsigned char bInterpolate = 0; bInterpolate < 2; ++bInterpolate) {
    EXPECT_EQ(table.GetColor(-kInfinity, bInterpolate), 0x01020304u);
    EXPECT_EQ(table.GetColor(kInfinity, bInterpolate), 0xFFFFFFFFu);
    EXPECT_EQ(table.GetColor(kNaN, bInterpolate), 0x01020304u);
  }
}

TEST(QdcColorDictTable, EqualValuesMakeAStep) {
  QdcColorDictTable table;
  table.Add(0.0, QDCRGBA(0, 0, 0, 255));
  table.Add(1.0, QDCRGBA(100, 0, 0, 255));
  table.Add(1.0, QDCRGBA(0, 200, 0, 255));
  table.Add(2.0, QDCRGBA(0, 0, 0, 255));
  EXPECT_EQ(table.GetColor(0.5, 1), QDCRGBA(50, 0, 0, 255));
  EXPECT_EQ(table.GetColor(1.0, 1), QDCRGBA(0, 200, 0, 255));
  EXPECT_EQ(table.GetColor(1.5, 1), QDCRGBA(0, 100, 0, 255));
}

TEST(QdcColorDictTable, WhatIsNoNumberHasNoPlace) {
  QdcColorDictTable table;
  table.Add(kNaN, 1);
  EXPECT_EQ(table.GetCount(), 0);
}

TEST(QdcColorDictTable, InfiniteEndsAreOpenEnds) {
  QdcColorDictTable table;
  table.Add(-kInfinity, 1);
  table.Add(0.0, 2);
  table.Add(kInfinity, 3);
  EXPECT_EQ(table.GetColor(-5.0, 0), 1u);
  EXPECT_EQ(table.GetColor(-5.0, 1), 2u);
  EXPECT_EQ(table.GetColor(5.0, 1), 2u);
  EXPECT_EQ(table.GetColor(kInfinity, 1), 3u);
}

TEST(QdcColorDictTable, EndsFarApartInterpolate) {
  constexpr double kMost = std::numeric_limits<double>::max();
  QdcColorDictTable table;
  table.Add(-kMost, QDCRGBA(0, 0, 0, 0));
  table.Add(kMost, QDCRGBA(200, 100, 50, 20));
  EXPECT_EQ(table.GetColor(0.0, 1), QDCRGBA(100, 50, 25, 10));
  EXPECT_EQ(table.GetColor(kMost / 2, 1), QDCRGBA(150, 75, 38, 15));
}

/// The colour at nValue between two items, channel by channel in whole numbers: rounded to the nearest, halves up.
unsigned int MixSlowly(unsigned int nLow, unsigned int nHigh, int nPart, int nSpan) {
  unsigned int nColor = 0;
  for (int nShift = 0; nShift < 32; nShift += 8) {
    int const nFirst = static_cast<int>(nLow >> nShift & 255u);
    int const nSecond = static_cast<int>(nHigh >> nShift & 255u);
    int const nTwice = 2 * (nFirst * nSpan + (nSecond - nFirst) * nPart) + nSpan;
    nColor |= static_cast<unsigned int>(nTwice / (2 * nSpan)) << nShift;
  }
  return nColor;
}

// Spans are powers of two, so that halves are exact in floating point too.
TEST(QdcColorDictTable, RandomTablesAgreeWithASearchFromTheFront) {
  std::mt19937 random(314);
  SCOPED_TRACE("seed 314");
  for (int nTable = 0; nTable < 300; ++nTable) {
    QdcColorDictTable table;
    std::vector<std::pair<int, unsigned int>> arrItems;
    for (int nItem = 0, nValue = 0; nItem < 6; ++nItem) {
      arrItems.emplace_back(nValue, static_cast<unsigned int>(random()));
      nValue += random() % 4 ? 1 << random() % 6 : 0;
    }
    // Every second one first; among equal values the order of entering is the order of the table.
    for (std::size_t i = 0; i < 6; i += 2) table.Add(arrItems[i].first, arrItems[i].second);
    for (std::size_t i = 1; i < 6; i += 2) table.Add(arrItems[i].first, arrItems[i].second);
    std::vector<std::pair<int, unsigned int>> arrEntered;
    for (std::size_t const i : {0u, 2u, 4u, 1u, 3u, 5u}) arrEntered.push_back(arrItems[i]);
    std::stable_sort(arrEntered.begin(), arrEntered.end(),
        [](auto const& first, auto const& second) { return first.first < second.first; });
    arrItems = arrEntered;
    for (int nValue = -2; nValue <= arrItems.back().first + 2; ++nValue) {
      std::size_t nNext = 0;
      while (nNext < arrItems.size() && arrItems[nNext].first <= nValue) ++nNext;
      auto const& [nLow, nLowColor] = arrItems[nNext == 0 ? 0 : nNext - 1];
      bool const bEnd = nNext == 0 || nNext == arrItems.size();
      ASSERT_EQ(table.GetColor(nValue, 0), nLowColor);
      ASSERT_EQ(table.GetColor(nValue, 1),
          bEnd ? nLowColor : MixSlowly(nLowColor, arrItems[nNext].second, nValue - nLow, arrItems[nNext].first - nLow));
    }
  }
}

}  // namespace
}  // namespace QXC
