#include "QXTestImages.h"

namespace {

using namespace qxtest;

TEST(QXPsdReader, GreyAndColourOfBothDepthsAreReadPlainAndPacked) {
  for (std::string strEnd : {".psd", "-packed.psd"}) {
    for (int nDepth : {8, 16}) {
      std::string const strTail = std::to_string(nDepth) + strEnd;
      SCOPED_TRACE(strTail);
      ExpectPattern(ReadFile("grey" + strTail).get(), 8, PatternOf("grey", nDepth));
      ExpectPattern(ReadFile("rgb" + strTail).get(), 24, PatternOf("rgb", nDepth));
    }
  }
}

// The fewer of a pixel is there, the coarser its colours became when they were put on white.
void ExpectOffWhite(std::string const& strKind, std::string const& strName, int nDepth) {
  SCOPED_TRACE(strName);
  Image const pImage = ReadFile(strName);
  ASSERT_NE(pImage, nullptr);
  ASSERT_EQ(pImage->m_nBitDepth, 32);
  auto const* pPixel = static_cast<unsigned char const*>(pImage->m_pPixels);
  for (int y = 0; y < PATTERN_HEIGHT; ++y) {
    for (int x = 0; x < PATTERN_WIDTH; ++x, pPixel += 4) {
      Bgra const expected = Pixel(strKind, nDepth, x, y);
      ASSERT_EQ(pPixel[3], expected[3]) << x << ", " << y;
      if (expected[3] == 0) continue;
      for (std::size_t c = 0; c < 3; ++c) {
        ASSERT_NEAR(pPixel[c], expected[c], nDepth == 8 ? 1 + 128 / expected[3] : 1 + 384 / expected[3])
            << x << ", " << y;
      }
    }
  }
}

TEST(QXPsdReader, WithAlphaTheWhiteBehindIsTakenOut) {
  for (char const* szKind : {"greyalpha", "rgba"}) {
    for (int nDepth : {8, 16}) {
      for (char const* szEnd : {".psd", "-packed.psd"}) {
        ExpectOffWhite(szKind, szKind + std::to_string(nDepth) + szEnd, nDepth);
      }
    }
  }
}

TEST(QXPsdReader, ColoursDarkerThanTheirAlphaAllowsStayBlack) {
  Bytes arrBytes = FileBytes("rgba8.psd");
  // Red of pixel (1, 0), whose alpha is 30: less than the white that shows through.
  std::size_t const nPixels = arrBytes.size() - 4 * PATTERN_WIDTH * PATTERN_HEIGHT;
  ASSERT_EQ(arrBytes[nPixels + 3 * PATTERN_WIDTH * PATTERN_HEIGHT + 1], 30);
  arrBytes[nPixels + 1] = 7;
  Image const pImage = ReadBytes(TypeOf("a.psd"), arrBytes);
  ASSERT_NE(pImage, nullptr);
  EXPECT_EQ(static_cast<unsigned char const*>(pImage->m_pPixels)[4 + 2], 0);
}

TEST(QXPsdReader, OtherModesDepthsAndVersionsAreRefused) {
  struct Row {
    std::size_t m_nPlace;
    unsigned char m_nValue;
  };
  // Version, channels, depth, mode.
  for (Row const row :
      {Row{5, 2}, Row{13, 2}, Row{13, 0}, Row{23, 1}, Row{23, 32}, Row{25, 0}, Row{25, 4}, Row{25, 9}}) {
    Bytes arrBytes = FileBytes("rgb8.psd");
    arrBytes[row.m_nPlace] = row.m_nValue;
    EXPECT_EQ(ReadBytes(TypeOf("a.psd"), arrBytes), nullptr) << row.m_nPlace << " " << +row.m_nValue;
  }
}

}  // namespace
