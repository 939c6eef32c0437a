#include "QXTestImages.h"

namespace {

using namespace qxtest;

// A channel that was cut to a few bits.
int Cut(int nValue, int nBits) {
  return Rounded(nValue >> (8 - nBits), (1 << nBits) - 1);
}

TEST(QXBmpReader, PalettesBecomeColour) {
  for (int nBits : {1, 2, 4, 8}) {
    std::string const strName = "bits" + std::to_string(nBits);
    SCOPED_TRACE(strName);
    ExpectPattern(ReadFile(strName + ".bmp").get(), 24, PatternOf("palette", nBits));
    if (nBits != 2) ExpectPattern(ReadFile(strName + "-core.bmp").get(), 24, PatternOf("palette", nBits));
  }
}

TEST(QXBmpReader, RowsMayStandTopDown) {
  ExpectPattern(ReadFile("bits8-top-down.bmp").get(), 24, PatternOf("palette", 8));
  ExpectPattern(ReadFile("bits24-top-down.bmp").get(), 24, PatternOf("rgb", 8));
}

TEST(QXBmpReader, AnIndexBeyondThePaletteIsBlack) {
  ExpectPattern(ReadFile("bits8-short-palette.bmp").get(), 24, [](int x, int y) {
    int const nIndex = Index(x, y, 200);
    return nIndex < 16 ? Palette(nIndex) : Bgra{0, 0, 0, 255};
  });
}

TEST(QXBmpReader, WholePixelsAreColour) {
  ExpectPattern(ReadFile("bits24.bmp").get(), 24, PatternOf("rgb", 8));
  ExpectPattern(ReadFile("bits24-core.bmp").get(), 24, PatternOf("rgb", 8));
  ExpectPattern(
      ReadFile("bits16.bmp").get(), 24,
      [](int x, int y) {
        return Bgra{Cut(Blue(x, y), 5), Cut(Green(x, y), 5), Cut(Red(x, y), 5), 255};
      },
      1);
  ExpectPattern(
      ReadFile("bits16-565.bmp").get(), 24,
      [](int x, int y) {
        return Bgra{Cut(Blue(x, y), 5), Cut(Green(x, y), 6), Cut(Red(x, y), 5), 255};
      },
      1);
}

TEST(QXBmpReader, AlphaIsReadWhereThereIsAny) {
  ExpectPattern(ReadFile("bits32-alpha.bmp").get(), 32, PatternOf("rgba", 8));
  // Without any the fourth byte says nothing, and the picture is not invisible.
  ExpectPattern(ReadFile("bits32.bmp").get(), 32, PatternOf("rgb", 8));
}

TEST(QXBmpReader, RunsAreRefused) {
  Bytes arrBytes = FileBytes("bits8.bmp");
  arrBytes[30] = 1;
  EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), arrBytes), nullptr);
}

TEST(QXBmpReader, TheHeightThatHasNoOppositeIsRefused) {
  Bytes arrBytes = FileBytes("bits24.bmp");
  std::fill_n(arrBytes.begin() + 22, 3, static_cast<unsigned char>(0));
  arrBytes[25] = 0x80;
  EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), arrBytes), nullptr);
}

}  // namespace
