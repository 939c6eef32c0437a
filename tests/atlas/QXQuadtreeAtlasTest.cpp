#include <QxGraphics3D/atlas/detail/QXQuadtreeAtlas.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

namespace QXC::detail {

void PrintTo(QXQuadtreePlace const& place, std::ostream* pOut) {
  *pOut << "row " << place.m_nRow << ", column " << place.m_nCol << ", level " << place.m_nLod << ", page "
        << place.m_nIndex;
}

namespace {

QXQuadtreePlace const g_Refused{-1, -1, -1, -1};

QXQuadtreePlace PlaceSize(QXQuadtreeAtlas& atlas, unsigned int nSize, unsigned int nFormat = 0,
    unsigned int nCompression = 0, int nCurrent = 0) {
  QXQuadtreePlace place = g_Refused;
  bool const bPlaced = atlas.Place({nSize, nFormat, nCompression, nCurrent}, place);
  EXPECT_EQ(bPlaced, !(place == g_Refused));
  return place;
}

TEST(QXQuadtreeRules, LevelIsTheTruncatedLogarithm) {
  for (int const nPageSize : {1024, 2048}) {
    for (int nSize = 1; nSize <= nPageSize; ++nSize) {
      double const dLogarithm = std::log(static_cast<double>(nPageSize / nSize)) / std::log(2.0);
      EXPECT_EQ(GetQuadtreeLod(nPageSize, static_cast<unsigned int>(nSize)), static_cast<int>(dLogarithm)) << nSize;
    }
    for (unsigned int nSize = 1; nSize <= static_cast<unsigned int>(nPageSize); nSize *= 2) {
      EXPECT_EQ(static_cast<unsigned int>(GetQuadtreeLod(nPageSize, nSize)),
          QXMathEngine::NextLog2(static_cast<unsigned int>(nPageSize) / nSize));
    }
  }
}

TEST(QXQuadtreeRules, PackedPlaceHasColumnRowLevelIndexFromTheLowestBit) {
  EXPECT_EQ(PackQuadtreePlace({.m_nRow = 0, .m_nCol = 1, .m_nLod = 0, .m_nIndex = 0}), 1U);
  EXPECT_EQ(PackQuadtreePlace({.m_nRow = 1, .m_nCol = 0, .m_nLod = 0, .m_nIndex = 0}), 1U << 10);
  EXPECT_EQ(PackQuadtreePlace({.m_nRow = 0, .m_nCol = 0, .m_nLod = 1, .m_nIndex = 0}), 1U << 20);
  EXPECT_EQ(PackQuadtreePlace({.m_nRow = 0, .m_nCol = 0, .m_nLod = 0, .m_nIndex = 1}), 1U << 24);
  QXQuadtreePlace const highest{.m_nRow = 1022, .m_nCol = 1021, .m_nLod = 10, .m_nIndex = 255};
  EXPECT_EQ(PackQuadtreePlace(highest), 0xFFAFFBFDU);
  EXPECT_EQ(UnpackQuadtreePlace(0xFFAFFBFDU), highest);
  EXPECT_EQ(UnpackQuadtreePlace(0xFFFFFFFFU), (QXQuadtreePlace{1023, 1023, 15, 255}));
}

TEST(QXQuadtreeRules, DiffersBetweenTheAtlases) {
  EXPECT_EQ(g_RenderAtlasRules.m_nPageSize, 2048);
  EXPECT_EQ(g_ImageAtlasRules.m_nPageSize, 1024);
  EXPECT_EQ(g_GlyphAtlasRules.m_nPageSize, 1024);
  QXQuadtreePage const render(g_RenderAtlasRules.m_nPageSize, g_RenderAtlasRules.m_bTopLeftOnly);
  QXQuadtreePage const image(g_ImageAtlasRules.m_nPageSize, g_ImageAtlasRules.m_bTopLeftOnly);
  EXPECT_EQ(render.GetStride() * render.GetStride(), 4198401);
  EXPECT_EQ(image.GetStride() * image.GetStride(), 1050625);
}

// --- Render and image atlases ---

TEST(QXQuadtreeAtlas, FirstTileOpensPageZeroInItsCorner) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  EXPECT_FALSE(atlas.HasPage(0));
  EXPECT_EQ(PlaceSize(atlas, 256), (QXQuadtreePlace{128, 128, 3, 0}));
  EXPECT_TRUE(atlas.HasPage(0));
  EXPECT_EQ(atlas.GetUsedCount(0), 1);
  EXPECT_TRUE(atlas.GetPage(0)->IsMarked(128, 128));
}

TEST(QXQuadtreeAtlas, SecondTileGrowsByColumnFirst) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  PlaceSize(atlas, 256);
  EXPECT_EQ(PlaceSize(atlas, 256), (QXQuadtreePlace{128, 384, 3, 0}));
  EXPECT_EQ(PlaceSize(atlas, 256), (QXQuadtreePlace{384, 128, 3, 0}));
  EXPECT_EQ(PlaceSize(atlas, 256), (QXQuadtreePlace{384, 384, 3, 0}));
  EXPECT_EQ(PlaceSize(atlas, 256), (QXQuadtreePlace{128, 640, 3, 0}));
  EXPECT_EQ(atlas.GetUsedCount(0), 5);
}

TEST(QXQuadtreeAtlas, WholePageMarksTheRootAndTheNextTileOpensAnother) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  EXPECT_EQ(PlaceSize(atlas, 2048), (QXQuadtreePlace{1024, 1024, 0, 0}));
  EXPECT_EQ(PlaceSize(atlas, 4), (QXQuadtreePlace{2, 2, 9, 1}));
  // On an empty page that stands already, too.
  atlas.Release({1024, 1024, 0, 0});
  EXPECT_EQ(PlaceSize(atlas, 2048), (QXQuadtreePlace{1024, 1024, 0, 0}));
}

TEST(QXQuadtreeAtlas, SmallTileKeepsLargeOnesOffItsAncestors) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  EXPECT_EQ(PlaceSize(atlas, 64), (QXQuadtreePlace{32, 32, 5, 0}));
  EXPECT_EQ(PlaceSize(atlas, 1024), (QXQuadtreePlace{512, 1536, 1, 0}));
  EXPECT_EQ(PlaceSize(atlas, 2048), (QXQuadtreePlace{1024, 1024, 0, 1}));
  EXPECT_EQ(PlaceSize(atlas, 64), (QXQuadtreePlace{32, 96, 5, 0}));
}

TEST(QXQuadtreeAtlas, OneAndTwoPixelsOpenAPageEach) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  EXPECT_EQ(PlaceSize(atlas, 1), (QXQuadtreePlace{0, 0, 11, 0}));
  EXPECT_EQ(PlaceSize(atlas, 2), (QXQuadtreePlace{1, 1, 10, 1}));
  EXPECT_EQ(PlaceSize(atlas, 1), (QXQuadtreePlace{0, 0, 11, 2}));
  EXPECT_EQ(PlaceSize(atlas, 2), (QXQuadtreePlace{1, 1, 10, 3}));
  // The cell (0, 0) is the centre of no node; (1, 1) is, so its tile keeps the corner of page 1.
  EXPECT_EQ(PlaceSize(atlas, 2048), (QXQuadtreePlace{1024, 1024, 0, 0}));
  EXPECT_EQ(PlaceSize(atlas, 4), (QXQuadtreePlace{2, 6, 9, 1}));
}

TEST(QXQuadtreeAtlas, NewPageGetsTheSmallestIndexNotInUse) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(PlaceSize(atlas, 2048).m_nIndex, i);
  atlas.DropPage(3);
  atlas.DropPage(1);
  EXPECT_EQ(atlas.GetNextIndex(), 1);
  EXPECT_EQ(PlaceSize(atlas, 2048).m_nIndex, 1);
  EXPECT_EQ(PlaceSize(atlas, 2048).m_nIndex, 3);
  EXPECT_EQ(PlaceSize(atlas, 2048).m_nIndex, 4);
}

TEST(QXQuadtreeAtlas, LowestIndexThatFitsIsTaken) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  for (int i = 0; i < 100; ++i) PlaceSize(atlas, 2048);
  atlas.Release({1024, 1024, 0, 70});
  EXPECT_EQ(PlaceSize(atlas, 512).m_nIndex, 70);
  atlas.Release({1024, 1024, 0, 12});
  EXPECT_EQ(PlaceSize(atlas, 512), (QXQuadtreePlace{256, 256, 2, 12}));
  atlas.DropPage(12);
  EXPECT_EQ(PlaceSize(atlas, 512), (QXQuadtreePlace{256, 768, 2, 70}));
}

TEST(QXQuadtreeAtlas, SizeIsRoundedUpForTheSearchButNotForANewPage) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  EXPECT_EQ(PlaceSize(atlas, 100), (QXQuadtreePlace{50, 50, 4, 0}));
  // The marked cell (50, 50) is the centre of a node of 4 pixels, which is what the search goes round.
  EXPECT_EQ(PlaceSize(atlas, 100), (QXQuadtreePlace{64, 192, 4, 0}));
  EXPECT_EQ(PlaceSize(atlas, 32), (QXQuadtreePlace{16, 16, 6, 0}));
  EXPECT_EQ(PlaceSize(atlas, 1500), (QXQuadtreePlace{750, 750, 0, 1}));
}

TEST(QXQuadtreeAtlas, SizesThatFitNoPageAreRefused) {
  for (QXQuadtreeRules const* pRules : {&g_RenderAtlasRules, &g_ImageAtlasRules, &g_GlyphAtlasRules}) {
    QXQuadtreeAtlas atlas(*pRules);
    for (unsigned int const nSize :
        {0U, static_cast<unsigned int>(pRules->m_nPageSize) + 1, 8192U, 1U << 31, 0xFFFFFFFFU}) {
      EXPECT_EQ(PlaceSize(atlas, nSize), g_Refused);
      EXPECT_EQ(atlas.GetPageFrom(0), -1);
    }
    atlas.AddPage();
    QXQuadtreePlace place;
    EXPECT_FALSE(atlas.PlaceIn(0, 0, place));
    EXPECT_FALSE(atlas.PlaceIn(0, static_cast<unsigned int>(pRules->m_nPageSize) + 1, place));
    EXPECT_FALSE(atlas.PlaceIn(0, 2, place));
    EXPECT_FALSE(atlas.PlaceIn(1, 4, place));
    EXPECT_FALSE(atlas.PlaceIn(-1, 4, place));
    EXPECT_EQ(place, QXQuadtreePlace());
  }
}

TEST(QXQuadtreeAtlas, ReleasedPlaceIsTakenAgain) {
  QXQuadtreeAtlas atlas(g_ImageAtlasRules);
  QXQuadtreePlace const first = PlaceSize(atlas, 128);
  QXQuadtreePlace const second = PlaceSize(atlas, 128);
  EXPECT_FALSE(atlas.Release(first));
  EXPECT_EQ(atlas.GetUsedCount(0), 1);
  EXPECT_EQ(PlaceSize(atlas, 256), (QXQuadtreePlace{128, 384, 2, 0}));
  EXPECT_EQ(PlaceSize(atlas, 128), first);
  EXPECT_FALSE(atlas.Release(second));
}

TEST(QXQuadtreeAtlas, TellsWhenAPageHasNoTilesLeft) {
  QXQuadtreeAtlas atlas(g_ImageAtlasRules);
  QXQuadtreePlace const place = PlaceSize(atlas, 128);
  EXPECT_TRUE(atlas.Release(place));
  EXPECT_TRUE(atlas.HasPage(0));
  EXPECT_EQ(PlaceSize(atlas, 1024), (QXQuadtreePlace{512, 512, 0, 0}));
  // Once too often: the count goes below and never says "last" again by itself.
  EXPECT_TRUE(atlas.Release({512, 512, 0, 0}));
  EXPECT_FALSE(atlas.Release({512, 512, 0, 0}));
  EXPECT_EQ(atlas.GetUsedCount(0), -1);
}

TEST(QXQuadtreeAtlas, ReleaseOutsideIsHarmless) {
  QXQuadtreeAtlas atlas(g_ImageAtlasRules);
  EXPECT_FALSE(atlas.Release({512, 512, 0, 0}));
  EXPECT_FALSE(atlas.Release({512, 512, 0, -1}));
  PlaceSize(atlas, 128);
  EXPECT_FALSE(atlas.Release({64, 64, 3, 1}));
  EXPECT_TRUE(atlas.Release({5000, -3, 3, 0}));
  EXPECT_TRUE(atlas.GetPage(0)->IsMarked(64, 64));
  atlas.DropPage(17);
  atlas.DropPage(-1);
  EXPECT_TRUE(atlas.HasPage(0));
}

TEST(QXQuadtreeAtlas, ClearForgetsPagesAndIndexes) {
  QXQuadtreeAtlas atlas(g_ImageAtlasRules);
  for (unsigned int i = 0; i < 10; ++i) PlaceSize(atlas, 1024, i);
  atlas.DropPage(4);
  atlas.Clear();
  EXPECT_EQ(atlas.GetPageFrom(0), -1);
  EXPECT_EQ(atlas.GetNextIndex(), 0);
  EXPECT_EQ(PlaceSize(atlas, 256, 3), (QXQuadtreePlace{128, 128, 2, 0}));
}

TEST(QXQuadtreeAtlas, PagesAreListedByIndex) {
  QXQuadtreeAtlas atlas(g_RenderAtlasRules);
  for (int i = 0; i < 5; ++i) PlaceSize(atlas, 2048);
  atlas.DropPage(0);
  atlas.DropPage(2);
  std::vector<int> arrIndexes;
  for (int i = 0; (i = atlas.GetPageFrom(i)) != -1; ++i) arrIndexes.push_back(i);
  EXPECT_EQ(arrIndexes, (std::vector<int>{1, 3, 4}));
}

TEST(QXQuadtreeAtlas, FormatsAndCompressionsNeverShareAnImagePage) {
  QXQuadtreeAtlas atlas(g_ImageAtlasRules);
  EXPECT_EQ(PlaceSize(atlas, 64, 12, 0).m_nIndex, 0);
  EXPECT_EQ(PlaceSize(atlas, 64, 10, 0).m_nIndex, 1);
  EXPECT_EQ(PlaceSize(atlas, 64, 12, 14).m_nIndex, 2);
  EXPECT_EQ(PlaceSize(atlas, 64, 12, 0), (QXQuadtreePlace{32, 96, 4, 0}));
  EXPECT_EQ(PlaceSize(atlas, 64, 10, 0), (QXQuadtreePlace{32, 96, 4, 1}));
  EXPECT_EQ(PlaceSize(atlas, 64, 12, 14), (QXQuadtreePlace{32, 96, 4, 2}));
  // The last page of a format goes and comes again.
  atlas.DropPage(1);
  EXPECT_EQ(PlaceSize(atlas, 64, 10, 0), (QXQuadtreePlace{32, 32, 4, 1}));
}

TEST(QXQuadtreeAtlas, RenderAndGlyphPagesDoNotAskForTheFormat) {
  QXQuadtreeAtlas render(g_RenderAtlasRules);
  PlaceSize(render, 64, 12, 0);
  EXPECT_EQ(PlaceSize(render, 64, 10, 3).m_nIndex, 0);
  QXQuadtreeAtlas glyphs(g_GlyphAtlasRules);
  glyphs.AddPage(12, 0);
  EXPECT_EQ(PlaceSize(glyphs, 64, 10, 3).m_nIndex, 0);
}

TEST(QXQuadtreeAtlas, ImagePagesEndAtIndex255) {
  QXQuadtreeAtlas atlas(g_ImageAtlasRules);
  for (int i = 0; i < 256; ++i) ASSERT_EQ(PlaceSize(atlas, 1024).m_nIndex, i);
  EXPECT_EQ(PlaceSize(atlas, 1024), g_Refused);
  EXPECT_EQ(PlaceSize(atlas, 2), g_Refused);
  EXPECT_FALSE(atlas.HasPage(256));
  // Room inside the pages that are there is still given.
  atlas.Release({512, 512, 0, 255});
  EXPECT_EQ(PlaceSize(atlas, 512), (QXQuadtreePlace{256, 256, 1, 255}));
  atlas.DropPage(100);
  EXPECT_EQ(PlaceSize(atlas, 1024), (QXQuadtreePlace{512, 512, 0, 100}));
}

TEST(QXQuadtreeAtlas, RenderPagesGoOnPast255) {
  QXQuadtreeRules rules = g_RenderAtlasRules;
  rules.m_nPageSize = 4;
  QXQuadtreeAtlas atlas(rules);
  for (int i = 0; i < 5000; ++i) ASSERT_EQ(PlaceSize(atlas, 4).m_nIndex, i);
}

// --- Glyph atlases ---

TEST(QXQuadtreeAtlas, GlyphPagesAreMadeByTheManagerAndNotCounted) {
  QXQuadtreeAtlas atlas(g_GlyphAtlasRules);
  EXPECT_EQ(PlaceSize(atlas, 32), g_Refused);
  EXPECT_EQ(atlas.GetNextIndex(), 0);
  EXPECT_EQ(atlas.AddPage(), 0);
  QXQuadtreePlace place;
  EXPECT_TRUE(atlas.PlaceIn(0, 20, place));
  EXPECT_EQ(place, (QXQuadtreePlace{16, 16, 5, 0}));
  EXPECT_EQ(PlaceSize(atlas, 17), (QXQuadtreePlace{16, 48, 5, 0}));
  EXPECT_EQ(atlas.GetUsedCount(0), 0);
  EXPECT_FALSE(atlas.Release(place));
  EXPECT_FALSE(atlas.GetPage(0)->IsMarked(16, 16));
}

TEST(QXQuadtreeAtlas, GlyphMayComeToLieOverOneInAnotherChild) {
  QXQuadtreeAtlas atlas(g_GlyphAtlasRules);
  atlas.AddPage();
  QXQuadtreePlace const first = PlaceSize(atlas, 16);
  EXPECT_EQ(PlaceSize(atlas, 16), (QXQuadtreePlace{8, 24, 6, 0}));
  atlas.Release(first);
  EXPECT_EQ(PlaceSize(atlas, 32), (QXQuadtreePlace{16, 16, 5, 0}));
  // Nothing is placed below the large one, and the small one is still marked when it goes.
  EXPECT_EQ(PlaceSize(atlas, 16), (QXQuadtreePlace{8, 40, 6, 0}));
  atlas.Release({16, 16, 5, 0});
  EXPECT_EQ(PlaceSize(atlas, 16), (QXQuadtreePlace{8, 8, 6, 0}));
  EXPECT_EQ(PlaceSize(atlas, 16), (QXQuadtreePlace{24, 8, 6, 0}));
}

TEST(QXQuadtreeAtlas, GlyphSearchBeginsAtTheCurrentPageAndComesRound) {
  QXQuadtreeAtlas atlas(g_GlyphAtlasRules);
  for (int i = 0; i < 4; ++i) atlas.AddPage();
  EXPECT_EQ(PlaceSize(atlas, 1024, 0, 0, 2).m_nIndex, 2);
  EXPECT_EQ(PlaceSize(atlas, 1024, 0, 0, 2).m_nIndex, 3);
  EXPECT_EQ(PlaceSize(atlas, 1024, 0, 0, 2).m_nIndex, 0);
  EXPECT_EQ(PlaceSize(atlas, 1024, 0, 0, 2).m_nIndex, 1);
  EXPECT_EQ(PlaceSize(atlas, 1024, 0, 0, 2), g_Refused);
}

TEST(QXQuadtreeAtlas, GlyphSearchWithoutItsCurrentPageBeginsAtTheFirst) {
  QXQuadtreeAtlas atlas(g_GlyphAtlasRules);
  for (int i = 0; i < 4; ++i) atlas.AddPage();
  atlas.DropPage(1);
  EXPECT_EQ(PlaceSize(atlas, 64, 0, 0, 1).m_nIndex, 0);
  EXPECT_EQ(PlaceSize(atlas, 64, 0, 0, 4).m_nIndex, 0);
  EXPECT_EQ(PlaceSize(atlas, 64, 0, 0, -1).m_nIndex, 0);
}

TEST(QXQuadtreeAtlas, GlyphPagesPast255TakeNoTiles) {
  QXQuadtreeAtlas atlas(g_GlyphAtlasRules);
  for (int i = 0; i <= 256; ++i) ASSERT_EQ(atlas.AddPage(), i);
  QXQuadtreePlace place;
  EXPECT_FALSE(atlas.PlaceIn(256, 64, place));
  EXPECT_TRUE(atlas.PlaceIn(255, 64, place));
  EXPECT_EQ(PlaceSize(atlas, 64, 0, 0, 256).m_nIndex, 0);
  for (int i = 0; i < 255; ++i) atlas.DropPage(i);
  EXPECT_EQ(PlaceSize(atlas, 512, 0, 0, 255).m_nIndex, 255);
  EXPECT_EQ(PlaceSize(atlas, 512, 0, 0, 255).m_nIndex, 255);
  EXPECT_EQ(PlaceSize(atlas, 512, 0, 0, 255).m_nIndex, 255);
  EXPECT_EQ(PlaceSize(atlas, 1024, 0, 0, 255), g_Refused);
  atlas.Release({256, 768, 1, 256});
  EXPECT_EQ(PlaceSize(atlas, 1024, 0, 0, 256), g_Refused);
}

}  // namespace
}  // namespace QXC::detail
