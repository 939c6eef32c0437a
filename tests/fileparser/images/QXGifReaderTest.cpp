#include "QXTestImages.h"

namespace {

using namespace qxtest;

constexpr Bgra NOTHING{0, 0, 0, 0};

Bgra Colour(int x, int y) {
  return Palette(Index(x, y, 100));
}

TEST(QXGifReader, AFrameThatCoversTheCanvasHasNoAlpha) {
  ExpectPattern(ReadFile("plain.gif").get(), 24, Colour);
}

TEST(QXGifReader, InterlacedRowsComeToTheirPlaces) {
  ExpectPattern(ReadFile("interlaced.gif").get(), 24, Colour);
}

TEST(QXGifReader, TheTransparentColourIsNothing) {
  ExpectPattern(ReadFile("transparent.gif").get(), 32,
      [](int x, int y) { return Index(x, y, 100) == 5 ? NOTHING : Colour(x, y); });
}

TEST(QXGifReader, AFrameStandsAtItsPlaceOnTheCanvas) {
  ExpectPattern(ReadFile("placed.gif").get(), 32,
      [](int x, int y) { return x >= 3 && x < 7 && y >= 2 && y < 5 ? Colour(x, y) : NOTHING; });
}

TEST(QXGifReader, WhatReachesBeyondTheCanvasIsCut) {
  ExpectPattern(
      ReadFile("beyond.gif").get(), 32, [](int x, int y) { return x >= 8 && y >= 5 ? Colour(x, y) : NOTHING; });
}

TEST(QXGifReader, AFrameMayBringItsColours) {
  ExpectPattern(ReadFile("local.gif").get(), 24, [](int x, int y) {
    Bgra const colour = Colour(x, y);
    return Bgra{255 - colour[0], 255 - colour[1], 255 - colour[2], 255};
  });
}

TEST(QXGifReader, OfSeveralFramesTheFirstIsRead) {
  ExpectPattern(ReadFile("two.gif").get(), 24, Colour);
}

TEST(QXGifReader, WithoutColoursFrameOrCanvasThereIsNoPicture) {
  for (char const* szName : {"no-colours.gif", "no-frame.gif", "no-canvas.gif"}) {
    EXPECT_EQ(ReadFile(szName), nullptr) << szName;
  }
}

TEST(QXGifReader, ACutBehindTheFirstFrameDoesNotMatter) {
  Bytes const arrBytes = FileBytes("two.gif");
  Bytes const arrFirst = FileBytes("plain.gif");
  // All but the sign that ends the file.
  std::size_t const nFirst = arrFirst.size() - 1;
  ASSERT_TRUE(std::equal(arrFirst.begin(), arrFirst.begin() + static_cast<std::ptrdiff_t>(nFirst), arrBytes.begin()));
  int const nType = TypeOf("a.gif");
  EXPECT_NE(ReadBytes(nType, arrBytes.data(), nFirst), nullptr);
  EXPECT_EQ(ReadBytes(nType, arrBytes.data(), nFirst - 1), nullptr);
}

}  // namespace
