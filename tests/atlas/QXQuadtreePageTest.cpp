#include <QxGraphics3D/atlas/detail/QXQuadtreePage.h>

#include "QXPlainQuadtree.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdio>
#include <random>
#include <utility>
#include <vector>

namespace QXC::detail {
namespace {

using Centre = std::pair<int, int>;

Centre FindIn(QXQuadtreePage const& page, int nPower) {
  Centre centre;
  page.Find(nPower, centre.first, centre.second);
  return centre;
}

TEST(QXQuadtreePage, EmptyOneTakesEverySizeInItsUpperLeftCorner) {
  for (int const nSize : {4, 8, 64, 1024, 2048}) {
    QXQuadtreePage const page(nSize, false);
    EXPECT_EQ(page.GetSize(), nSize);
    EXPECT_EQ(page.GetStride(), nSize + 1);
    EXPECT_EQ(page.GetRefused(), 0U);
    for (int nPower = 2; 1 << nPower <= nSize; ++nPower) {
      EXPECT_EQ(FindIn(page, nPower), Centre(1 << (nPower - 1), 1 << (nPower - 1)));
    }
  }
}

//   A1 A2 | B     the order of the search
//   A3 A4 |
//   ------+---
//   C     | D
TEST(QXQuadtreePage, SearchGoesRowByRowInsideEachQuarter) {
  QXQuadtreePage page(16, false);
  std::vector<Centre> const arrExpected = {{2, 2}, {2, 6}, {6, 2}, {6, 6}, {2, 10}, {2, 14}, {6, 10}, {6, 14}, {10, 2},
      {10, 6}, {14, 2}, {14, 6}, {10, 10}, {10, 14}, {14, 10}, {14, 14}};
  for (Centre const& expected : arrExpected) {
    ASSERT_EQ(page.GetRefused() & 4, 0U);
    ASSERT_EQ(FindIn(page, 2), expected);
    page.Mark(expected.first, expected.second);
  }
  EXPECT_EQ(page.GetRefused(), 4U + 8U + 16U);
  page.Clear(10, 6);
  EXPECT_EQ(page.GetRefused(), 8U + 16U);
  EXPECT_EQ(FindIn(page, 2), Centre(10, 6));
}

TEST(QXQuadtreePage, MarkedRootRefusesEverything) {
  QXQuadtreePage page(1024, false);
  page.Mark(512, 512);
  EXPECT_EQ(page.GetRefused() >> 2, (1U << 9) - 1);
  page.Clear(512, 512);
  EXPECT_EQ(page.GetRefused(), 0U);
}

TEST(QXQuadtreePage, MarkBelowAMarkShowsWhenTheUpperOneGoes) {
  QXQuadtreePage page(64, false);
  page.Mark(2, 2);
  page.Mark(32, 32);
  page.Clear(2, 2);
  page.Mark(2, 6);
  page.Clear(32, 32);
  EXPECT_EQ(page.GetRefused(), 64U);
  EXPECT_EQ(FindIn(page, 2), Centre(2, 2));
  EXPECT_EQ(FindIn(page, 3), Centre(4, 12));
  EXPECT_EQ(FindIn(page, 5), Centre(16, 48));
}

TEST(QXQuadtreePage, TwoPixelNodeKeepsThoseAroundItFromBeingFree) {
  for (bool const bTopLeftOnly : {false, true}) {
    QXQuadtreePage page(16, bTopLeftOnly);
    page.Mark(1, 1);
    EXPECT_EQ(page.GetRefused(), 16U);
    EXPECT_EQ(FindIn(page, 2), Centre(2, 6));
    EXPECT_EQ(FindIn(page, 3), Centre(4, 12));
    page.Clear(1, 1);
    page.Mark(3, 1);
    EXPECT_EQ(page.GetRefused(), bTopLeftOnly ? 0U : 16U);
  }
}

TEST(QXQuadtreePage, ChainOfUpperLeftNodesIsAllThatTheGlyphTestSees) {
  QXQuadtreePage page(64, true);
  page.Mark(2, 6);
  page.Mark(24, 24);
  EXPECT_EQ(page.GetRefused(), 0U);
  EXPECT_EQ(FindIn(page, 6), Centre(32, 32));
  EXPECT_EQ(FindIn(page, 4), Centre(8, 8));
  page.Mark(2, 2);
  EXPECT_EQ(page.GetRefused(), 64U);
  EXPECT_EQ(FindIn(page, 5), Centre(16, 48));
}

TEST(QXQuadtreePage, CellsThatAreNoCentreChangeNothing) {
  QXQuadtreePage page(64, false);
  for (Centre const& cell : {Centre(0, 0), Centre(0, 32), Centre(32, 0), Centre(64, 64), Centre(64, 32), Centre(2, 4),
           Centre(1, 2), Centre(64, 0), Centre(32, 64)}) {
    EXPECT_TRUE(page.Mark(cell.first, cell.second));
    EXPECT_TRUE(page.IsMarked(cell.first, cell.second));
    EXPECT_EQ(page.GetRefused(), 0U) << cell.first << ' ' << cell.second;
  }
  EXPECT_EQ(page.GetGrid()[65 * 64 + 64], 1);
}

TEST(QXQuadtreePage, CellsOutsideAreRefused) {
  QXQuadtreePage page(16, false);
  for (Centre const& cell : {Centre(-1, 8), Centre(8, -1), Centre(17, 8), Centre(8, 17), Centre(1 << 30, 1 << 30),
           Centre(-2147483647 - 1, 8)}) {
    EXPECT_FALSE(page.Mark(cell.first, cell.second));
    EXPECT_FALSE(page.Clear(cell.first, cell.second));
    EXPECT_FALSE(page.IsMarked(cell.first, cell.second));
  }
  EXPECT_EQ(page.GetRefused(), 0U);
}

/// Marks and clears any cells, nested and meaningless ones included, and compares with the recursion for all sizes.
void CompareAnyCells(QXPlainKind eKind, int nSize, int nSteps, unsigned int nSeed) {
  SCOPED_TRACE(testing::Message() << "size " << nSize << ", seed " << nSeed);
  std::mt19937 random(nSeed);
  auto const Below = [&](int nCount) { return static_cast<int>(random() % static_cast<unsigned int>(nCount)); };
  QXQuadtreePage page(nSize, eKind == QXPlainKind::Glyph);
  QXPlainQuadtree plain(eKind, nSize);
  plain.AddPage(0, 0);
  std::vector<QXPlainTile> arrMarked;
  // Phases of filling and of emptying: marks crowd and clear again.
  for (int i = 0; i < nSteps; ++i) {
    bool const bFilling = i / 200 % 2 == 0;
    if (Below(100) < (bFilling ? 70 : 20) || arrMarked.empty()) {
      QXPlainTile tile{.m_nRow = Below(nSize + 1), .m_nCol = Below(nSize + 1), .m_nLod = 0, .m_nIndex = 0};
      if (Below(8) != 0) {
        // Mostly centres, of all sizes alike.
        int const nHalf = 1 << Below(std::countr_zero(static_cast<unsigned int>(nSize)));
        tile.m_nRow = nHalf * (2 * Below(nSize / nHalf / 2) + 1);
        tile.m_nCol = nHalf * (2 * Below(nSize / nHalf / 2) + 1);
      }
      page.Mark(tile.m_nRow, tile.m_nCol);
      plain.SetCell(tile, 1);
      arrMarked.push_back(tile);
    } else {
      std::swap(arrMarked[static_cast<std::size_t>(Below(static_cast<int>(arrMarked.size())))], arrMarked.back());
      page.Clear(arrMarked.back().m_nRow, arrMarked.back().m_nCol);
      plain.SetCell(arrMarked.back(), 0);
      arrMarked.pop_back();
    }
    for (int nPower = 2; 1 << nPower <= nSize; ++nPower) {
      QXPlainTile tile;
      bool const bFound = plain.Search(*plain.m_mapPages.begin(), 1U << nPower, tile);
      ASSERT_EQ((page.GetRefused() >> nPower & 1) == 0, bFound) << "step " << i << ", power " << nPower;
      if (bFound) {
        ASSERT_EQ(FindIn(page, nPower), Centre(tile.m_nRow, tile.m_nCol)) << "step " << i;
      }
    }
  }
}

TEST(QXQuadtreePage, AgreesWithTheRecursionOverTheMarks) {
  constexpr unsigned int nSeed = 612;
  std::printf("seed %u\n", nSeed);
  for (QXPlainKind const eKind : {QXPlainKind::Image, QXPlainKind::Glyph}) {
    CompareAnyCells(eKind, 4, 2000, nSeed);
    CompareAnyCells(eKind, 8, 20000, nSeed + 1);
    CompareAnyCells(eKind, 16, 20000, nSeed + 2);
    CompareAnyCells(eKind, 32, 20000, nSeed + 3);
    CompareAnyCells(eKind, 64, 10000, nSeed + 4);
  }
}

}  // namespace
}  // namespace QXC::detail
