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

}  // namespace
