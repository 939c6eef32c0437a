#include "QXTestImages.h"

namespace {

using namespace qxtest;

Bgra FiveBits(int x, int y) {
  auto const Cut = [](int nValue) { return (nValue >> 3) * 255 / 31; };
  return {Cut(Blue(x, y)), Cut(Green(x, y)), Cut(Red(x, y)), 255};
}

TEST(QXTgaReader, EveryKindIsReadPlainAndInRuns) {
  for (std::string strEnd : {".tga", "-runs.tga"}) {
    SCOPED_TRACE(strEnd);
    ExpectPattern(ReadFile("rgb24" + strEnd).get(), 24, PatternOf("rgb", 8));
    ExpectPattern(ReadFile("rgb32" + strEnd).get(), 32, PatternOf("rgba", 8));
    ExpectPattern(ReadFile("rgb15" + strEnd).get(), 24, FiveBits);
    ExpectPattern(ReadFile("rgb16" + strEnd).get(), 24, FiveBits);
    ExpectPattern(ReadFile("grey8" + strEnd).get(), 8, PatternOf("grey", 8));
    ExpectPattern(ReadFile("grey16" + strEnd).get(), 32, PatternOf("greyalpha", 8));
    ExpectPattern(ReadFile("palette" + strEnd).get(), 24, PatternOf("palette", 8));
  }
}

TEST(QXTgaReader, IndexesMayHaveTwoBytes) {
  ExpectPattern(ReadFile("palette-wide.tga").get(), 24, PatternOf("palette", 8));
}

TEST(QXTgaReader, RowsMayStandTopDown) {
  ExpectPattern(ReadFile("rgb24-top-down.tga").get(), 24, PatternOf("rgb", 8));
}

TEST(QXTgaReader, RowsMayBeginAtTheRight) {
  for (char const* szName : {"rgb24.tga", "rgb24-top-down.tga", "grey8.tga", "rgb32-runs.tga"}) {
    SCOPED_TRACE(szName);
    Image const pPlain = ReadFile(szName);
    ASSERT_NE(pPlain, nullptr);
    Bytes arrBytes = FileBytes(szName), arrPlain = PixelsOf(*pPlain);
    arrBytes[17] = static_cast<unsigned char>(arrBytes[17] | 0x10);
    int const nPixelBytes = pPlain->m_nBitDepth / 8;
    ExpectPattern(ReadBytes(TypeOf(szName), arrBytes).get(), pPlain->m_nBitDepth, [&](int x, int y) {
      Bgra pixel{};
      int const nPlace = (y * PATTERN_WIDTH + PATTERN_WIDTH - 1 - x) * nPixelBytes;
      for (int c = 0; c < nPixelBytes; ++c)
        pixel[static_cast<std::size_t>(c)] = arrPlain[static_cast<std::size_t>(nPlace + c)];
      return pixel;
    });
  }
}

// There are no magic bytes: the header must make sense.
TEST(QXTgaReader, AHeaderOfNoKnownKindIsRefused) {
  struct Row {
    std::size_t m_nPlace;
    unsigned char m_nValue;
  };
  for (Row const row : {Row{1, 1}, Row{1, 2}, Row{2, 0}, Row{2, 1}, Row{2, 4}, Row{2, 8}, Row{2, 12}, Row{16, 0},
           Row{16, 12}, Row{16, 64}}) {
    Bytes arrBytes = FileBytes("rgb24.tga");
    arrBytes[row.m_nPlace] = row.m_nValue;
    EXPECT_EQ(ReadBytes(TypeOf("a.tga"), arrBytes), nullptr) << row.m_nPlace << " " << +row.m_nValue;
  }
}

}  // namespace
