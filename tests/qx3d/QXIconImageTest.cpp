#include <apps/qx3d/QXIconImage.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

namespace QXApp {
namespace {

using Pixel = std::array<unsigned char, 4>;  // blue, green, red, alpha

QXPixels Make(unsigned int nWidth, unsigned int nHeight, std::vector<Pixel> const& vecPixels) {
  QXPixels pixels = MakePixels(nWidth, nHeight);
  for (std::size_t i = 0; i < vecPixels.size(); ++i) std::memcpy(pixels.m_pBytes.get() + 4 * i, vecPixels[i].data(), 4);
  return pixels;
}

Pixel At(QXPixels const& pixels, unsigned int nX, unsigned int nY) {
  unsigned char const* p = pixels.At(nX, nY);
  return {p[0], p[1], p[2], p[3]};
}

TEST(QXIconImage, KeyMakesItsColourClearAndNoOther) {
  QXPixels pixels = Make(4, 1, {{255, 0, 255, 255}, {250, 5, 255, 255}, {255, 0, 200, 255}, {0, 0, 0, 90}});
  ApplyColorKey({255, 0, 255, 0}, pixels);
  EXPECT_EQ(At(pixels, 0, 0)[3], 0);
  EXPECT_EQ(At(pixels, 1, 0)[3], 255);
  EXPECT_EQ(At(pixels, 2, 0)[3], 255);
  EXPECT_EQ(At(pixels, 3, 0)[3], 90);
}

TEST(QXIconImage, KeyReadsRedGreenBlueAndToleratesEachChannel) {
  QXPixels pixels = Make(3, 1, {{30, 20, 10, 255}, {33, 17, 13, 255}, {30, 20, 14, 255}});
  ApplyColorKey({10, 20, 30, 3}, pixels);
  EXPECT_EQ(At(pixels, 0, 0)[3], 0);
  EXPECT_EQ(At(pixels, 1, 0)[3], 0);
  EXPECT_EQ(At(pixels, 2, 0)[3], 255);
}

TEST(QXIconImage, ShrunkPixelIsTheMeanOfWhatItCovers) {
  QXPixels const pixels = Make(4, 2,
      {{0, 0, 0, 255}, {100, 0, 0, 255}, {0, 200, 0, 255}, {0, 200, 0, 255}, {100, 0, 0, 255}, {200, 0, 0, 255},
          {0, 200, 0, 255}, {0, 200, 0, 255}});
  QXPixels const small = Shrink(pixels, 2, 1);
  ASSERT_EQ(small.m_nWidth, 2u);
  ASSERT_EQ(small.m_nHeight, 1u);
  EXPECT_EQ(At(small, 0, 0), (Pixel{100, 0, 0, 255}));
  EXPECT_EQ(At(small, 1, 0), (Pixel{0, 200, 0, 255}));
}

TEST(QXIconImage, PixelsThatAreCutCountByTheirPart) {
  QXPixels const pixels = Make(3, 1, {{0, 0, 0, 255}, {120, 0, 0, 255}, {240, 0, 0, 255}});
  QXPixels const small = Shrink(pixels, 2, 1);
  // One pixel and a half each: (0 + 120 / 2) / 1.5 and (120 / 2 + 240) / 1.5.
  EXPECT_EQ(At(small, 0, 0)[0], 40);
  EXPECT_EQ(At(small, 1, 0)[0], 200);
}

TEST(QXIconImage, ClearPixelsBringNoColourIntoShrunkOnes) {
  QXPixels const pixels = Make(2, 1, {{0, 0, 0, 0}, {10, 20, 200, 255}});
  EXPECT_EQ(At(Shrink(pixels, 1, 1), 0, 0), (Pixel{10, 20, 200, 128}));
  EXPECT_EQ(At(Shrink(Make(2, 1, {{9, 9, 9, 0}, {9, 9, 9, 0}}), 1, 1), 0, 0), (Pixel{0, 0, 0, 0}));
}

TEST(QXIconImage, NothingIsEnlarged) {
  QXPixels const pixels = Make(2, 1, {{1, 2, 3, 255}, {4, 5, 6, 255}});
  QXPixels const same = Shrink(pixels, 10, 10);
  ASSERT_EQ(same.m_nWidth, 2u);
  ASSERT_EQ(same.m_nHeight, 1u);
  EXPECT_EQ(At(same, 0, 0), (Pixel{1, 2, 3, 255}));
  EXPECT_EQ(At(same, 1, 0), (Pixel{4, 5, 6, 255}));
}

TEST(QXIconImage, ClearPixelsTakeTheColourOfTheirVisibleNeighbours) {
  QXPixels pixels = Make(4, 1, {{0, 0, 0, 0}, {10, 20, 30, 255}, {0, 0, 0, 0}, {77, 77, 77, 0}});
  SpreadColors(pixels);
  EXPECT_EQ(At(pixels, 0, 0), (Pixel{10, 20, 30, 0}));
  EXPECT_EQ(At(pixels, 1, 0), (Pixel{10, 20, 30, 255}));
  EXPECT_EQ(At(pixels, 2, 0), (Pixel{10, 20, 30, 0}));
  EXPECT_EQ(At(pixels, 3, 0), (Pixel{0, 0, 0, 0})) << "its only neighbour is clear";
}

TEST(QXIconImage, DiagonalNeighboursCountToo) {
  QXPixels pixels = Make(2, 2, {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {40, 50, 60, 1}});
  SpreadColors(pixels);
  EXPECT_EQ(At(pixels, 0, 0), (Pixel{40, 50, 60, 0}));
}

TEST(QXIconImage, TileIsTheSmallestWithARimOfAPixel) {
  struct {
    unsigned int m_nWidth, m_nHeight, m_nEdge, m_nLeft, m_nTop;
  } const cases[] = {{1, 1, 4, 1, 1}, {2, 2, 4, 1, 1}, {3, 1, 8, 2, 3}, {12, 12, 16, 2, 2}, {14, 14, 16, 1, 1},
      {15, 3, 32, 8, 14}, {30, 30, 32, 1, 1}, {1022, 5, 1024, 1, 509}, {32, 56, 64, 16, 4}};
  for (auto const& c : cases) {
    QXIconTile const tile = MakeIconTile(MakePixels(c.m_nWidth, c.m_nHeight));
    EXPECT_EQ(tile.m_Pixels.m_nWidth, c.m_nEdge) << c.m_nWidth;
    EXPECT_EQ(tile.m_Pixels.m_nHeight, c.m_nEdge) << c.m_nWidth;
    EXPECT_EQ(tile.m_nLeft, c.m_nLeft) << c.m_nWidth;
    EXPECT_EQ(tile.m_nTop, c.m_nTop) << c.m_nWidth;
  }
}

TEST(QXIconImage, RimGoesOnWithTheOutermostPixels) {
  QXIconTile const tile = MakeIconTile(Make(2, 2, {{1, 0, 0, 255}, {2, 0, 0, 255}, {3, 0, 0, 255}, {4, 0, 0, 0}}));
  unsigned char const nExpected[4][4] = {{1, 1, 2, 2}, {1, 1, 2, 2}, {3, 3, 4, 4}, {3, 3, 4, 4}};
  for (unsigned int y = 0; y < 4; ++y)
    for (unsigned int x = 0; x < 4; ++x) EXPECT_EQ(At(tile.m_Pixels, x, y)[0], nExpected[y][x]) << x << " " << y;
  EXPECT_EQ(At(tile.m_Pixels, 3, 3)[3], 0);
  EXPECT_EQ(At(tile.m_Pixels, 0, 3)[3], 255);
}

TEST(QXIconImage, BeyondTheRimTheSquareIsClear) {
  // 3 x 1 pixels at 2, 3 of 8 x 8.
  QXIconTile const tile = MakeIconTile(Make(3, 1, {{1, 0, 0, 255}, {2, 0, 0, 255}, {3, 0, 0, 255}}));
  for (unsigned int y = 0; y < 8; ++y)
    for (unsigned int x = 0; x < 8; ++x) {
      bool const bRim = x >= 1 && x <= 5 && y >= 2 && y <= 4;
      EXPECT_EQ(At(tile.m_Pixels, x, y)[3], bRim ? 255 : 0) << x << " " << y;
      EXPECT_EQ(At(tile.m_Pixels, x, y)[0], x <= 2 ? 1 : (x == 3 ? 2 : 3)) << x << " " << y;
    }
}

}  // namespace
}  // namespace QXApp
