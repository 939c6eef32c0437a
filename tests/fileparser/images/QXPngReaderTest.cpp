#include "QXTestImages.h"

namespace {

using namespace qxtest;

struct Row {
  char const* m_szKind;
  int m_nDepth;
  int m_nBitDepth;
};

// Every colour type at every depth that it has.
Row const ROWS[] = {{"grey", 1, 8}, {"grey", 2, 8}, {"grey", 4, 8}, {"grey", 8, 8}, {"grey", 16, 8}, {"rgb", 8, 24},
    {"rgb", 16, 24}, {"palette", 1, 24}, {"palette", 2, 24}, {"palette", 4, 24}, {"palette", 8, 24},
    {"greyalpha", 8, 32}, {"greyalpha", 16, 32}, {"rgba", 8, 32}, {"rgba", 16, 32}};

std::string Name(Row const& row) {
  return row.m_szKind + std::to_string(row.m_nDepth);
}

// The transparent colour is that of pixel (2, 1), compared at the full depth of the file.
bool IsKey(Row const& row, int x, int y) {
  std::string const strKind = row.m_szKind;
  if (strKind == "grey" && row.m_nDepth < 8) {
    return Index(x, y, 1 << row.m_nDepth) == Index(2, 1, 1 << row.m_nDepth);
  }
  auto const Same = [&](int (*pValue)(int, int), int nChannel) {
    return Stored(pValue(x, y), row.m_nDepth, x, y, nChannel) == Stored(pValue(2, 1), row.m_nDepth, 2, 1, nChannel);
  };
  if (strKind == "grey") return Same(Grey, 0);
  return Same(Red, 0) && Same(Green, 1) && Same(Blue, 2);
}

Bgra KeyedPixel(Row const& row, int x, int y) {
  Bgra pixel = Pixel(row.m_szKind, row.m_nDepth, x, y);
  if (row.m_szKind != std::string("palette")) {
    pixel[3] = IsKey(row, x, y) ? 0 : 255;
    return pixel;
  }
  int const nColours = std::min(1 << row.m_nDepth, 200);
  int const nIndex = Index(x, y, nColours);
  pixel[3] = nIndex < std::max(nColours * 3 / 4, 1) ? PaletteAlpha(nIndex) : 255;
  return pixel;
}

TEST(QXPngReader, EveryColourTypeAndDepthBecomesEightBitColour) {
  for (Row const& row : ROWS) {
    for (char const* szEnd : {".png", "-interlaced.png"}) {
      SCOPED_TRACE(Name(row) + szEnd);
      ExpectPattern(ReadFile(Name(row) + szEnd).get(), row.m_nBitDepth, PatternOf(row.m_szKind, row.m_nDepth));
    }
  }
}

TEST(QXPngReader, ATransparentColourOrPaletteBecomesAlpha) {
  for (Row const& row : ROWS) {
    if (row.m_nBitDepth == 32) continue;
    for (char const* szEnd : {"-key.png", "-key-interlaced.png"}) {
      SCOPED_TRACE(Name(row) + szEnd);
      ExpectPattern(ReadFile(Name(row) + szEnd).get(), 32, [&](int x, int y) { return KeyedPixel(row, x, y); });
    }
  }
}

TEST(QXPngReader, RowsOfEveryFilterAreRead) {
  ExpectPattern(ReadFile("rgb8-filters.png").get(), 24, PatternOf("rgb", 8));
  ExpectPattern(ReadFile("rgba16-filters.png").get(), 32, PatternOf("rgba", 16));
}

TEST(QXPngReader, ProfilesAndGammaChangeNoByte) {
  ExpectPattern(ReadFile("rgb8-profile.png").get(), 24, PatternOf("rgb", 8));
}

TEST(QXPngReader, AChangedByteOfThePixelsIsNoticed) {
  Bytes arrBytes = FileBytes("rgb8.png");
  arrBytes[arrBytes.size() / 2] ^= 1;
  EXPECT_EQ(ReadBytes(TypeOf("a.png"), arrBytes), nullptr);
}

// Left to itself the codec would show the picture without its transparency.
TEST(QXPngReader, AChangedByteOfTheTransparencyIsNoticed) {
  Bytes arrBytes = FileBytes("palette8-key.png");
  std::string const strMark = "tRNS";
  auto const itMark = std::search(arrBytes.begin(), arrBytes.end(), strMark.begin(), strMark.end());
  ASSERT_NE(itMark, arrBytes.end());
  itMark[6] ^= 1;
  EXPECT_EQ(ReadBytes(TypeOf("a.png"), arrBytes), nullptr);
}

}  // namespace
