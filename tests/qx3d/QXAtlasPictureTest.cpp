#include <apps/qx3d/QXAtlasPicture.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace QXApp {
namespace {

using Rgb = std::array<int, 3>;

Rgb At(QXAtlasPicture const& picture, int nX, int nY) {
  unsigned char const* p =
      picture.m_vecPixels.data() + 4 * (std::size_t(nY) * std::size_t(picture.m_nWidth) + std::size_t(nX));
  return {p[2], p[1], p[0]};
}

constexpr Rgb White{255, 255, 255};
constexpr Rgb Black{0, 0, 0};

/// A page of one colour: blue, green, red, alpha.
QXAtlasPage MakePage(int nSize, std::array<unsigned char, 4> const& pixel) {
  QXAtlasPage page;
  page.m_strName = "page";
  page.m_nSize = nSize;
  page.m_vecPixels.resize(4 * std::size_t(nSize) * std::size_t(nSize));
  for (std::size_t i = 0; i < page.m_vecPixels.size(); i += 4)
    std::copy(pixel.begin(), pixel.end(), page.m_vecPixels.data() + i);
  return page;
}

TEST(QXAtlasPicture, SmallPagesAreEnlargedByAWholeFactor) {
  QXAtlasPicture const picture = PaintAtlasPage(MakePage(1024, {10, 20, 30, 255}));
  EXPECT_EQ(picture.m_nWidth, 2048);
  EXPECT_EQ(picture.m_nHeight, 2048 + AtlasFooterHeight);
  QXAtlasPicture const large = PaintAtlasPage(MakePage(2048, {10, 20, 30, 255}));
  EXPECT_EQ(large.m_nWidth, 2048);
  EXPECT_EQ(PaintAtlasPage(MakePage(2100, {0, 0, 0, 255})).m_nWidth, 2100);
}

TEST(QXAtlasPicture, EveryPixelIsThePages) {
  QXAtlasPage page = MakePage(1024, {10, 20, 30, 255});
  unsigned char* p = page.m_vecPixels.data() + 4 * (1024 * 5 + 7);
  p[0] = 200;
  p[1] = 100;
  p[2] = 50;
  QXAtlasPicture const picture = PaintAtlasPage(page);
  EXPECT_EQ(At(picture, 0, 0), (Rgb{30, 20, 10}));
  for (int y = 10; y < 12; ++y)
    for (int x = 14; x < 16; ++x) EXPECT_EQ(At(picture, x, y), (Rgb{50, 100, 200}));
  EXPECT_EQ(At(picture, 13, 10), (Rgb{30, 20, 10}));
  EXPECT_EQ(At(picture, 16, 11), (Rgb{30, 20, 10}));
  EXPECT_EQ(At(picture, 14, 12), (Rgb{30, 20, 10}));
}

TEST(QXAtlasPicture, ClearPixelsShowABoardOfTwoGreys) {
  QXAtlasPicture const clear = PaintAtlasPage(MakePage(1024, {10, 20, 30, 0}));
  EXPECT_EQ(At(clear, 0, 0), (Rgb{205, 205, 205}));
  EXPECT_EQ(At(clear, 8, 0), (Rgb{160, 160, 160}));
  EXPECT_EQ(At(clear, 8, 8), (Rgb{205, 205, 205}));
  // 128 of 255 over 205: half of each.
  QXAtlasPicture const half = PaintAtlasPage(MakePage(1024, {0, 0, 255, 128}));
  EXPECT_EQ(At(half, 0, 0), (Rgb{230, 102, 102}));
}

TEST(QXAtlasPicture, ColoursThatHaveTheirAlphaInThemAreNotMultipliedAgain) {
  QXAtlasPage page = MakePage(1024, {0, 0, 128, 128});
  page.m_bPremultiplied = true;
  EXPECT_EQ(At(PaintAtlasPage(page), 0, 0), (Rgb{230, 102, 102}));
  page = MakePage(1024, {255, 255, 255, 0});
  page.m_bPremultiplied = true;
  EXPECT_EQ(At(PaintAtlasPage(page), 0, 0), White) << "light that is added has an end";
}

TEST(QXAtlasPicture, TilesAreOutlinedInsideTheirPlace) {
  QXAtlasPage page = MakePage(1024, {0, 0, 0, 255});
  page.m_vecTiles = {{64, 128, 64, "a"}, {128, 128, 32, "b"}};
  QXAtlasPicture const picture = PaintAtlasPage(page);
  Rgb const outline = At(picture, 255, 300);
  EXPECT_NE(outline, Black);
  for (int i = 0; i < 128; ++i) {
    EXPECT_EQ(At(picture, 128 + i, 256), outline);
    EXPECT_EQ(At(picture, 128 + i, 383), outline);
    EXPECT_EQ(At(picture, 128, 256 + i), outline);
    EXPECT_EQ(At(picture, 255, 256 + i), outline);
  }
  EXPECT_EQ(At(picture, 127, 300), Black);
  EXPECT_EQ(At(picture, 254, 382), Black);
  EXPECT_EQ(At(picture, 200, 384), Black);
  EXPECT_NE(At(picture, 256, 319), outline) << "another size, another colour";
}

/// The number at a place, read back as the pixels that are white.
std::string ReadNumber(QXAtlasPicture const& picture, int nX, int nY, int nWidth, int nHeight, int nScale) {
  std::string strRows;
  for (int y = 0; y < nHeight; ++y) {
    for (int x = 0; x < nWidth; ++x) strRows += At(picture, nX + x * nScale, nY + y * nScale) == White ? '#' : '.';
    strRows += '\n';
  }
  return strRows;
}

TEST(QXAtlasPicture, TilesAreNumberedInTheirUpperLeftCorners) {
  QXAtlasPage page = MakePage(1024, {0, 0, 0, 255});
  for (int i = 0; i < 24; ++i) page.m_vecTiles.push_back({i * 16, 0, 16, ""});
  QXAtlasPicture const picture = PaintAtlasPage(page);
  // Tile 24 begins at 23 * 16 * 2: an outline, a margin, then the digits.
  EXPECT_EQ(ReadNumber(picture, 736 + 2, 2, 7, 5, 1), "###.#.#\n..#.#.#\n###.###\n#.....#\n###...#\n");
  EXPECT_EQ(ReadNumber(picture, 2, 2, 3, 5, 1), ".#.\n##.\n.#.\n.#.\n###\n");
}

TEST(QXAtlasPicture, LargeTilesHaveLargeNumbersAndTinyOnesNone) {
  QXAtlasPage page = MakePage(1024, {0, 0, 0, 255});
  page.m_vecTiles = {{0, 0, 512, ""}, {512, 0, 2, ""}};
  QXAtlasPicture const picture = PaintAtlasPage(page);
  EXPECT_EQ(ReadNumber(picture, 4, 4, 3, 5, 3), ".#.\n##.\n.#.\n.#.\n###\n");
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) EXPECT_NE(At(picture, 1024 + x, y), White);
}

TEST(QXAtlasPicture, TilesBeyondThePageAreCutOff) {
  QXAtlasPage page = MakePage(1024, {0, 0, 0, 255});
  page.m_vecTiles = {{1000, 1000, 64, ""}, {-8, -8, 16, ""}};
  EXPECT_EQ(PaintAtlasPage(page).m_nWidth, 2048);
}

TEST(QXAtlasPicture, FooterTellsHowFullThePageIs) {
  QXAtlasPage page = MakePage(1024, {0, 0, 0, 255});
  page.m_vecTiles = {{0, 0, 512, ""}};
  EXPECT_DOUBLE_EQ(page.GetFill(), 0.25);
  QXAtlasPicture const picture = PaintAtlasPage(page);
  Rgb const bar = At(picture, 0, 2048);
  EXPECT_EQ(At(picture, 511, 2079), bar);
  EXPECT_NE(At(picture, 512, 2079), bar);
  EXPECT_EQ(At(picture, 512, 2048), At(picture, 2047, 2079));
  // "25.0%": the two is three by five of four pixels each.
  EXPECT_EQ(ReadNumber(picture, 8, 2048 + 6, 3, 5, 4), "###\n..#\n###\n#..\n###\n");
}

TEST(QXAtlasPicture, PageWithoutPixelsOrTilesIsPainted) {
  QXAtlasPage page;
  page.m_nSize = 1024;
  EXPECT_EQ(page.GetFill(), 0.0);
  EXPECT_EQ(At(PaintAtlasPage(page), 5, 5), White);
  EXPECT_EQ(QXAtlasPage().GetFill(), 0.0);
}

}  // namespace
}  // namespace QXApp
