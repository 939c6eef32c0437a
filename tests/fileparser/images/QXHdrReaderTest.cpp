#include "QXTestImages.h"

namespace {

using namespace qxtest;

// Three mantissas and an exponent, brought to the screen's curve.
Bgra Shown(int x, int y) {
  double const dScale = std::ldexp(1.0, 124 + (x + y) % 7 - 136);
  auto const Curve = [&](int nMantissa) {
    return static_cast<int>(std::min(255.0, std::pow(nMantissa * dScale, 1 / 2.2) * 255 + 0.5));
  };
  return {Curve(Blue(x, y)), Curve(Green(x, y)), Curve(Red(x, y) | 128), 255};
}

TEST(QXHdrReader, FlatPixelsAreBroughtToEightBits) {
  ExpectPattern(ReadFile("flat.hdr").get(), 24, Shown, 1);
}

TEST(QXHdrReader, RunsAreBroughtToEightBits) {
  ExpectPattern(
      ReadFile("runs.hdr").get(), 24, [](int x, int y) { return Shown(std::min(x, 6), y); }, 1);
}

Image ReadText(std::string strFile) {
  strFile.resize(strFile.size() + 4 * 16, '\x80');
  return ReadBytes(TypeOf("a.hdr"), Bytes(strFile.begin(), strFile.end()));
}

TEST(QXHdrReader, TheHeaderMustEndAndNameASize) {
  std::string const strHead = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n";
  EXPECT_NE(ReadText(strHead + "-Y 4 +X 4\n"), nullptr);
  for (char const* szSize : {"", "\n", "-Y 4 +X 4", "-Y 4\n", "+X 4 -Y 4\n", "-Y 4 +X 4 and more\n", "-Y -4 +X 4\n",
           "-Y 0 +X 4\n", "-Y 4 +X 0\n", "-Y 99999999999999999999 +X 4\n", "-Y 70000 +X 4\n"}) {
    EXPECT_EQ(ReadText(strHead + szSize), nullptr) << szSize;
  }
  EXPECT_EQ(ReadText("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n-Y 4 +X 4\n"), nullptr);
  EXPECT_EQ(ReadText("#?RADIANCE\nFORMAT=32-bit_rle_xyze\n\n-Y 4 +X 4\n"), nullptr);
}

// A run of no values, over and over: the codec's loop makes no step there.
TEST(QXHdrReader, EmptyRunsComeToAnEnd) {
  std::string strFile = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 16\n";
  strFile += std::string("\x02\x02\0\x10", 4) + std::string(1000, '\0');
  EXPECT_EQ(ReadBytes(TypeOf("a.hdr"), Bytes(strFile.begin(), strFile.end())), nullptr);
}

}  // namespace
