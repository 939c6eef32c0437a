// Random lives of whole atlases, beside the plain recursion.
#include <QxGraphics3D/atlas/detail/QXQuadtreeAtlas.h>

#include "QXPlainQuadtree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace QXC::detail {
namespace {

struct QXLifeCase {
  char const* m_szName;
  QXPlainKind m_eKind;
  int m_nPageSize;
  /// Tiles from 2^m_nLowest to 2^m_nHighest pixels.
  int m_nLowest;
  int m_nHighest;
  int m_nSteps;
  /// Live tiles in the middle of filling and emptying.
  int m_nTiles;
  bool m_bPowersOnly;
};

void PrintTo(QXLifeCase const& life, std::ostream* pOut) {
  *pOut << life.m_szName;
}

QXQuadtreeRules RulesOf(QXLifeCase const& life) {
  QXQuadtreeRules rules = life.m_eKind == QXPlainKind::Render  ? g_RenderAtlasRules
                          : life.m_eKind == QXPlainKind::Image ? g_ImageAtlasRules
                                                               : g_GlyphAtlasRules;
  rules.m_nPageSize = life.m_nPageSize;
  // Tiles of 1 and 2 pixels open more pages than an index of eight bits counts; that limit has tests of its own.
  rules.m_nLastIndex = std::numeric_limits<int>::max();
  return rules;
}

class QXQuadtreeLife : public testing::TestWithParam<QXLifeCase> {
protected:
  QXQuadtreeLife()
      : m_Rules(RulesOf(GetParam())), m_Atlas(m_Rules), m_Plain(GetParam().m_eKind, GetParam().m_nPageSize) {}

  struct Tile {
    QXQuadtreePlace m_Place;
    int m_nSize;
  };

  int Below(int nCount) { return static_cast<int>(m_Random() % static_cast<unsigned int>(nCount)); }

  unsigned int ChooseSize() {
    QXLifeCase const& life = GetParam();
    unsigned int const nPower = 1U << (life.m_nLowest + Below(life.m_nHighest - life.m_nLowest + 1));
    if (life.m_bPowersOnly || nPower < 4) return nPower;
    return nPower - static_cast<unsigned int>(Below(static_cast<int>(nPower / 2)));
  }

  void PlaceOne() {
    unsigned int const nSize = ChooseSize();
    // A few formats, so that pages of several share the indexes.
    unsigned int const nFormat = 10 + static_cast<unsigned int>(Below(3));
    unsigned int const nCompression = Below(4) == 0 ? 14 : 0;
    bool const bGlyphs = GetParam().m_eKind == QXPlainKind::Glyph;
    QXQuadtreePlace place;
    QXPlainTile tile;
    bool bPlaced = m_Atlas.Place({nSize, nFormat, nCompression, m_nCurrent}, place);
    ASSERT_EQ(bPlaced, m_Plain.Place(nSize, nFormat, nCompression, m_nCurrent, tile));
    if (bGlyphs && !bPlaced) {
      int const nIndex = m_Atlas.AddPage(nFormat, nCompression);
      ASSERT_EQ(nIndex, m_Plain.AddPage(nFormat, nCompression));
      bPlaced = m_Atlas.PlaceIn(nIndex, nSize, place);
      ASSERT_EQ(bPlaced, m_Plain.PlaceIn(nIndex, nSize, tile));
    }
    if (!bPlaced) return;
    ASSERT_EQ(place, (QXQuadtreePlace{tile.m_nRow, tile.m_nCol, tile.m_nLod, tile.m_nIndex}));
    if (Below(4) != 0) m_nCurrent = place.m_nIndex;
    m_arrTiles.push_back({place, static_cast<int>(nSize)});
  }

  void ReleaseOne(std::size_t nTile) {
    std::swap(m_arrTiles[nTile], m_arrTiles.back());
    QXQuadtreePlace const place = m_arrTiles.back().m_Place;
    m_arrTiles.pop_back();
    bool const bLast = m_Atlas.Release(place);
    m_Plain.Release({place.m_nRow, place.m_nCol, place.m_nLod, place.m_nIndex});
    // Not always, as a patch that moves leaves its page standing; and not below tiles, as a glyph atlas would not.
    auto const stands = [&](Tile const& tile) { return tile.m_Place.m_nIndex == place.m_nIndex; };
    bool const bEmpty = std::none_of(m_arrTiles.begin(), m_arrTiles.end(), stands);
    if (GetParam().m_eKind != QXPlainKind::Glyph) {
      ASSERT_EQ(bLast, m_Plain.m_mapPages.at(place.m_nIndex).m_nUsedCount == 0);
    }
    if (bEmpty && Below(3) != 0) DropBoth(place.m_nIndex);
  }

  void DropBoth(int nIndex) {
    m_Atlas.DropPage(nIndex);
    m_Plain.m_mapPages.erase(nIndex);
  }

  void ClearBoth() {
    m_Atlas.Clear();
    m_Plain.m_mapPages.clear();
    m_arrTiles.clear();
  }

  /// A place that no tile of ours has, as a caller might give it.
  void ReleaseAnything() {
    int const nIndex = Below(static_cast<int>(m_Plain.m_mapPages.size()) + 1);
    QXQuadtreePlace const place{Below(m_Rules.m_nPageSize + 1), Below(m_Rules.m_nPageSize + 1), 0, nIndex};
    auto const stands = [&](Tile const& tile) {
      return tile.m_Place.m_nIndex == nIndex && tile.m_Place.m_nRow == place.m_nRow &&
             tile.m_Place.m_nCol == place.m_nCol;
    };
    if (std::any_of(m_arrTiles.begin(), m_arrTiles.end(), stands)) return;
    m_Atlas.Release(place);
    if (m_Plain.m_mapPages.count(nIndex) != 0) m_Plain.Release({place.m_nRow, place.m_nCol, 0, nIndex});
  }

  void CompareMarks() {
    ASSERT_EQ(m_Atlas.GetNextIndex(), FirstUnused());
    int nIndex = -1;
    for (auto const& [nExpected, page] : m_Plain.m_mapPages) {
      nIndex = m_Atlas.GetPageFrom(nIndex + 1);
      ASSERT_EQ(nIndex, nExpected);
      ASSERT_EQ(m_Atlas.GetUsedCount(nIndex), page.m_nUsedCount);
      ASSERT_EQ(std::memcmp(m_Atlas.GetPage(nIndex)->GetGrid(), page.m_arrGrid.data(), page.m_arrGrid.size()), 0);
    }
    ASSERT_EQ(m_Atlas.GetPageFrom(nIndex + 1), -1);
  }

  int FirstUnused() const {
    int nIndex = 0;
    while (m_Plain.m_mapPages.count(nIndex) != 0) ++nIndex;
    return nIndex;
  }

  /// Live tiles of powers of two never share a pixel.
  void ExpectNoOverlap() const {
    for (std::size_t i = 0; i < m_arrTiles.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        Tile const& first = m_arrTiles[i];
        Tile const& second = m_arrTiles[j];
        int const nReach = (first.m_nSize + second.m_nSize) / 2;
        ASSERT_TRUE(first.m_Place.m_nIndex != second.m_Place.m_nIndex ||
                    std::abs(first.m_Place.m_nRow - second.m_Place.m_nRow) >= nReach ||
                    std::abs(first.m_Place.m_nCol - second.m_Place.m_nCol) >= nReach);
      }
    }
  }

  static constexpr unsigned int ms_nSeed = 613;

  QXQuadtreeRules m_Rules;
  QXQuadtreeAtlas m_Atlas;
  QXPlainQuadtree m_Plain;
  std::mt19937 m_Random{ms_nSeed};
  std::vector<Tile> m_arrTiles;
  int m_nCurrent = 0;
};

TEST_P(QXQuadtreeLife, AgreesWithTheRecursion) {
  QXLifeCase const& life = GetParam();
  std::printf("seed %u\n", ms_nSeed);
  bool bFilling = true;
  for (int i = 0; i < life.m_nSteps && !HasFatalFailure(); ++i) {
    SCOPED_TRACE(testing::Message() << "step " << i);
    int const nTiles = static_cast<int>(m_arrTiles.size());
    if (nTiles > life.m_nTiles * 3 / 2) bFilling = false;
    if (nTiles < life.m_nTiles / 2) bFilling = true;
    int const nChoice = Below(100);
    if (nChoice == 0 && Below(life.m_nSteps / 400) == 0)
      ClearBoth();
    else if (nChoice == 0)
      ReleaseAnything();
    else if (nTiles == 0 || nChoice < (bFilling ? 65 : 35))
      PlaceOne();
    else
      ReleaseOne(static_cast<std::size_t>(Below(nTiles)));
    if (i % (life.m_nSteps / 20) == 0) {
      CompareMarks();
      if (life.m_bPowersOnly && life.m_eKind != QXPlainKind::Glyph) ExpectNoOverlap();
    }
  }
  // With all tiles released, the marks of all are gone, in whatever order they went.
  while (!m_arrTiles.empty() && !HasFatalFailure()) ReleaseOne(m_arrTiles.size() - 1);
  CompareMarks();
  for (int nIndex = -1; (nIndex = m_Atlas.GetPageFrom(nIndex + 1)) != -1;) {
    EXPECT_EQ(m_Atlas.GetPage(nIndex)->GetRefused(), 0U);
  }
}

// Small pages do most of the work: the recursion is quick there, and every depth of the tree comes to all its cases.
INSTANTIATE_TEST_SUITE_P(Atlases, QXQuadtreeLife,
    testing::Values(QXLifeCase{"render64", QXPlainKind::Render, 64, 1, 6, 60000, 60, true},
        QXLifeCase{"renderOdd", QXPlainKind::Render, 64, 0, 6, 4000, 60, false},
        QXLifeCase{"render2048", QXPlainKind::Render, 2048, 6, 11, 1500, 60, true},
        QXLifeCase{"image64", QXPlainKind::Image, 64, 2, 6, 60000, 100, true},
        QXLifeCase{"imageSmall", QXPlainKind::Image, 32, 2, 3, 60000, 300, true},
        QXLifeCase{"imageOdd", QXPlainKind::Image, 64, 1, 6, 60000, 60, false},
        QXLifeCase{"image1024", QXPlainKind::Image, 1024, 5, 10, 2000, 100, true},
        QXLifeCase{"glyph64", QXPlainKind::Glyph, 64, 2, 6, 100000, 150, true},
        QXLifeCase{"glyphSmall", QXPlainKind::Glyph, 32, 2, 4, 60000, 200, false},
        QXLifeCase{"glyphOdd", QXPlainKind::Glyph, 64, 1, 6, 20000, 60, false},
        QXLifeCase{"glyph1024", QXPlainKind::Glyph, 1024, 2, 7, 5000, 800, false}),
    [](auto const& life) { return std::string(life.param.m_szName); });

}  // namespace
}  // namespace QXC::detail
