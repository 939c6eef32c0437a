#include "QXTestImages.h"

namespace {

using namespace qxtest;

TEST(QXTiffReader, EveryKindAndDepthInStripsAndTilesBecomesEightBitColour) {
  struct Row {
    char const* m_szKind;
    int m_nDepth;
    int m_nBitDepth;
  };
  Row const arrRows[] = {{"grey", 1, 8}, {"grey", 2, 8}, {"grey", 4, 8}, {"grey", 8, 8}, {"grey", 16, 8},
      {"rgb", 8, 24}, {"rgb", 16, 24}, {"palette", 1, 24}, {"palette", 2, 24}, {"palette", 4, 24}};
  for (Row const& row : arrRows) {
    for (char const* szEnd : {".tif", "-tiled.tif"}) {
      std::string const strName = row.m_szKind + std::to_string(row.m_nDepth) + szEnd;
      SCOPED_TRACE(strName);
      ExpectPattern(ReadFile(strName).get(), row.m_nBitDepth, PatternOf(row.m_szKind, row.m_nDepth));
    }
  }
}

TEST(QXTiffReader, PalettesOfEightAndOfSixteenBitsAreTheSame) {
  for (char const* szName : {"palette8.tif", "palette8-tiled.tif", "palette8-narrow-map.tif"}) {
    SCOPED_TRACE(szName);
    ExpectPattern(ReadFile(szName).get(), 24, PatternOf("palette", 8));
  }
}

TEST(QXTiffReader, AlphaIsRead) {
  for (char const* szKind : {"greyalpha", "rgba"}) {
    for (int nDepth : {8, 16}) {
      for (char const* szEnd : {".tif", "-planar.tif"}) {
        std::string const strName = szKind + std::to_string(nDepth) + szEnd;
        SCOPED_TRACE(strName);
        ExpectPattern(ReadFile(strName).get(), 32, PatternOf(szKind, nDepth));
      }
    }
  }
}

// What is left of a channel after it was multiplied by alpha and rounded, divided again.
int Divided(int nValue, int nAlpha, int nMax) {
  if (nAlpha == 0) return 0;
  long long const nMultiplied = (static_cast<long long>(nValue) * nAlpha + nMax / 2) / nMax;
  long long const nDivided = (nMultiplied * nMax + nAlpha / 2) / nAlpha;
  return Rounded(static_cast<int>(std::min<long long>(nMax, nDivided)), nMax);
}

TEST(QXTiffReader, ColoursMultipliedByAlphaAreDivided) {
  for (int nDepth : {8, 16}) {
    int const nMax = (1 << nDepth) - 1;
    SCOPED_TRACE(nDepth);
    ExpectPattern(ReadFile("rgba" + std::to_string(nDepth) + "-multiplied.tif").get(), 32, [&](int x, int y) {
      int const nAlpha = Stored(Alpha(x, y), nDepth, x, y, 3);
      auto const Channel = [&](int nValue, int c) { return Divided(Stored(nValue, nDepth, x, y, c), nAlpha, nMax); };
      return Bgra{Channel(Blue(x, y), 2), Channel(Green(x, y), 1), Channel(Red(x, y), 0), Rounded(nAlpha, nMax)};
    });
    ExpectPattern(ReadFile("greyalpha" + std::to_string(nDepth) + "-multiplied.tif").get(), 32, [&](int x, int y) {
      int const nAlpha = Stored(Alpha(x, y), nDepth, x, y, 1);
      int const nGrey = Divided(Stored(Grey(x, y), nDepth, x, y, 0), nAlpha, nMax);
      return Bgra{nGrey, nGrey, nGrey, Rounded(nAlpha, nMax)};
    });
  }
}

TEST(QXTiffReader, AFourthSampleOfUnknownMeaningIsNoAlpha) {
  ExpectPattern(ReadFile("rgba8-unspecified.tif").get(), 24, PatternOf("rgb", 8));
  ExpectPattern(ReadFile("rgba8-no-tag.tif").get(), 24, PatternOf("rgb", 8));
}

TEST(QXTiffReader, WhiteIsZeroIsTurnedRound) {
  ExpectPattern(ReadFile("grey8-white-is-zero.tif").get(), 8, PatternOf("grey", 8));
  ExpectPattern(ReadFile("grey1-white-is-zero.tif").get(), 8, PatternOf("grey", 1));
}

TEST(QXTiffReader, EveryWayToStoreTheSamePixelsGivesThem) {
  for (char const* szWay : {"planar-tiled", "one-strip", "big-endian", "bigtiff", "deflate", "packbits", "lzw"}) {
    SCOPED_TRACE(szWay);
    ExpectPattern(ReadFile(std::string("rgb8-") + szWay + ".tif").get(), 24, PatternOf("rgb", 8));
  }
  ExpectPattern(ReadFile("rgb16-big-endian.tif").get(), 24, PatternOf("rgb", 16));
  ExpectPattern(ReadFile("grey1-group4.tif").get(), 8, PatternOf("grey", 1));
}

TEST(QXTiffReader, OfSeveralPagesTheFirstIsRead) {
  ExpectPattern(ReadFile("rgb8-pages.tif").get(), 24, PatternOf("rgb", 8));
}

TEST(QXTiffReader, InksBecomeLight) {
  ExpectPattern(ReadFile("cmyk8.tif").get(), 24, PatternOf("rgb", 8));
}

// The quality of the file leaves the smooth picture within a few steps.
TEST(QXTiffReader, YcbcrBecomesColour) {
  Image const pPhoto = ReadFile("photo.png");
  ASSERT_NE(pPhoto, nullptr);
  Bytes const arrPhoto = PixelsOf(*pPhoto);
  ExpectPicture(
      ReadFile("ycbcr.tif").get(), 37, 29, 24,
      [&](int x, int y) {
        unsigned char const* pPixel = arrPhoto.data() + (y * 37 + x) * 3;
        return Bgra{pPixel[0], pPixel[1], pPixel[2], 255};
      },
      24);
}

// Where the picture's pixel (x, y) is stored: the orientations say which side of the picture the first stored row and
// the first stored column are.
TEST(QXTiffReader, TheOrientationTagIsApplied) {
  constexpr int W = PATTERN_WIDTH, H = PATTERN_HEIGHT;
  struct Row {
    int m_nOrientation;
    int (*m_pfnColumn)(int x, int y);
    int (*m_pfnRow)(int x, int y);
  };
  Row const arrRows[] = {
      {1, [](int x, int) { return x; }, [](int, int y) { return y; }},                  // top, left
      {2, [](int x, int) { return W - 1 - x; }, [](int, int y) { return y; }},          // top, right
      {3, [](int x, int) { return W - 1 - x; }, [](int, int y) { return H - 1 - y; }},  // bottom, right
      {4, [](int x, int) { return x; }, [](int, int y) { return H - 1 - y; }},          // bottom, left
      {5, [](int, int y) { return y; }, [](int x, int) { return x; }},                  // left, top
      {6, [](int, int y) { return y; }, [](int x, int) { return H - 1 - x; }},          // right, top
      {7, [](int, int y) { return W - 1 - y; }, [](int x, int) { return H - 1 - x; }},  // right, bottom
      {8, [](int, int y) { return W - 1 - y; }, [](int x, int) { return x; }},          // left, bottom
  };
  for (Row const& row : arrRows) {
    SCOPED_TRACE(row.m_nOrientation);
    bool const bSwapped = row.m_nOrientation > 4;
    ExpectPicture(ReadFile("rgb8-orientation" + std::to_string(row.m_nOrientation) + ".tif").get(), bSwapped ? H : W,
        bSwapped ? W : H, 24, [&](int x, int y) { return Pixel("rgb", 8, row.m_pfnColumn(x, y), row.m_pfnRow(x, y)); });
  }
}

// Where a tag's value begins in a little-endian file with its directory at the place that the header names.
std::size_t ValuePlace(Bytes const& arrBytes, unsigned int nTag) {
  auto const Number = [&](std::size_t nPlace, int nCount) {
    std::size_t nValue = 0;
    for (int i = nCount - 1; i >= 0; --i) nValue = nValue * 256 + arrBytes[nPlace + static_cast<std::size_t>(i)];
    return nValue;
  };
  std::size_t const nStart = Number(4, 4);
  for (std::size_t i = 0; i < Number(nStart, 2); ++i) {
    std::size_t const nEntry = nStart + 2 + i * 12;
    if (Number(nEntry, 2) == nTag) return Number(nEntry + 8, 4);
  }
  return 0;
}

TEST(QXTiffReader, APaletteOfBytesInTheUpperBitsReachesWhite) {
  Bytes arrBytes = FileBytes("palette8.tif");
  std::size_t const nMap = ValuePlace(arrBytes, 320);
  ASSERT_GT(nMap, 0u);
  for (std::size_t i = 0; i < 3 * 256; ++i) arrBytes[nMap + i * 2] = 0;
  ExpectPattern(ReadBytes(TypeOf("a.tif"), arrBytes).get(), 24, PatternOf("palette", 8));
}

// The codec would take the indexes for grey.
TEST(QXTiffReader, APaletteBeyondTheEndIsRefused) {
  Bytes const arrBytes = FileBytes("palette8.tif");
  std::size_t const nMap = ValuePlace(arrBytes, 320);
  ASSERT_GT(nMap, 0u);
  // Put at the end, the palette is the first that a cut takes.
  Bytes arrMoved = arrBytes;
  std::size_t const nEnd = arrMoved.size();
  arrMoved.insert(arrMoved.end(), arrBytes.begin() + static_cast<std::ptrdiff_t>(nMap),
      arrBytes.begin() + static_cast<std::ptrdiff_t>(nMap) + 3 * 256 * 2);
  for (std::size_t i = 0; i + 4 <= nEnd; ++i) {
    if (arrMoved[i] != (nMap & 255) || arrMoved[i + 1] != nMap >> 8 || arrMoved[i + 2] != 0 || arrMoved[i + 3] != 0)
      continue;
    arrMoved[i] = static_cast<unsigned char>(nEnd);
    arrMoved[i + 1] = static_cast<unsigned char>(nEnd >> 8);
  }
  ASSERT_EQ(ValuePlace(arrMoved, 320), nEnd);
  ExpectPattern(ReadBytes(TypeOf("a.tif"), arrMoved).get(), 24, PatternOf("palette", 8));
  EXPECT_EQ(ReadBytes(TypeOf("a.tif"), arrMoved.data(), arrMoved.size() - 1), nullptr);
  EXPECT_EQ(ReadBytes(TypeOf("a.tif"), arrMoved.data(), nEnd), nullptr);
}

void PutLittle(Bytes& arrBytes, std::size_t nValue, int nCount) {
  for (int i = 0; i < nCount; ++i) arrBytes.push_back(static_cast<unsigned char>(nValue >> 8 * i));
}

struct Tag {
  std::size_t m_nTag;
  std::size_t m_nType;
  std::size_t m_nCount;
  std::size_t m_nValue;
};

// Grey of 64 x nHeight, a strip a row, all of which are the same bytes.
Bytes SharedStrips(std::size_t nHeight, std::size_t nSampleFormat) {
  constexpr std::size_t WIDTH = 64, STRIP = 8;
  Bytes arrBytes = {'I', 'I', '*', 0, 0, 0, 0, 0};
  for (std::size_t i = 0; i < WIDTH; ++i) PutLittle(arrBytes, i * 4, 1);
  std::size_t const nOffsets = arrBytes.size();
  for (std::size_t i = 0; i < nHeight; ++i) PutLittle(arrBytes, STRIP, 4);
  std::size_t const nCounts = arrBytes.size();
  for (std::size_t i = 0; i < nHeight; ++i) PutLittle(arrBytes, WIDTH, 4);
  std::size_t const nStart = arrBytes.size();
  for (std::size_t i = 0; i < 4; ++i) arrBytes[4 + i] = static_cast<unsigned char>(nStart >> 8 * i);
  Tag const arrTags[] = {{256, 4, 1, WIDTH}, {257, 4, 1, nHeight}, {258, 3, 1, 8}, {259, 3, 1, 1}, {262, 3, 1, 1},
      {273, 4, nHeight, nHeight == 1 ? STRIP : nOffsets}, {277, 3, 1, 1}, {278, 4, 1, 1},
      {279, 4, nHeight, nHeight == 1 ? WIDTH : nCounts}, {339, 3, 1, nSampleFormat}};
  PutLittle(arrBytes, std::size(arrTags), 2);
  for (Tag const& tag : arrTags) {
    PutLittle(arrBytes, tag.m_nTag, 2);
    PutLittle(arrBytes, tag.m_nType, 2);
    PutLittle(arrBytes, tag.m_nCount, 4);
    PutLittle(arrBytes, tag.m_nValue, 4);
  }
  PutLittle(arrBytes, 0, 4);
  return arrBytes;
}

// Else a file of a few bytes could keep the reader busy with a picture of any size.
TEST(QXTiffReader, StripsThatShareTheirBytesAreRefusedWhereTheFileIsSmallerThanThePicture) {
  auto const Ramp = [](int x, int) { return Bgra{x * 4, x * 4, x * 4, 255}; };
  ExpectPicture(ReadBytes(TypeOf("a.tif"), SharedStrips(1, 1)).get(), 64, 1, 8, Ramp);
  ExpectPicture(ReadBytes(TypeOf("a.tif"), SharedStrips(3, 1)).get(), 64, 3, 8, Ramp);
  EXPECT_EQ(ReadBytes(TypeOf("a.tif"), SharedStrips(100, 1)), nullptr);
}

TEST(QXTiffReader, SamplesThatAreNoWholeNumbersOfLightAreRefused) {
  EXPECT_NE(ReadBytes(TypeOf("a.tif"), SharedStrips(1, 4)), nullptr);  // of no stated kind
  EXPECT_EQ(ReadBytes(TypeOf("a.tif"), SharedStrips(1, 2)), nullptr);  // signed
  EXPECT_EQ(ReadBytes(TypeOf("a.tif"), SharedStrips(1, 3)), nullptr);  // floating point
}

}  // namespace
