#include "QXTestImages.h"

#include <webp/decode.h>

namespace {

using namespace qxtest;

void ExpectAsTheCodec(char const* szName, int nBitDepth) {
  SCOPED_TRACE(szName);
  Bytes const arrBytes = FileBytes(szName);
  int nWidth = 0, nHeight = 0;
  std::unique_ptr<unsigned char, void (*)(void*)> const pPixels(
      WebPDecodeRGBA(arrBytes.data(), arrBytes.size(), &nWidth, &nHeight), WebPFree);
  ASSERT_NE(pPixels, nullptr);
  ExpectPicture(ReadFile(szName).get(), nWidth, nHeight, nBitDepth, [&](int x, int y) {
    unsigned char const* pPixel = pPixels.get() + (y * nWidth + x) * 4;
    return Bgra{pPixel[2], pPixel[1], pPixel[0], pPixel[3]};
  });
}

TEST(QXWebpReader, LosslessPixelsAreExact) {
  ExpectPattern(ReadFile("lossless.webp").get(), 24, PatternOf("rgb", 8));
}

TEST(QXWebpReader, ColoursAreNotMultipliedByAlpha) {
  Image const pImage = ReadFile("lossless-alpha.webp");
  ASSERT_NE(pImage, nullptr);
  Bytes const arrPixels = PixelsOf(*pImage);
  ExpectPattern(pImage.get(), 32, [&](int x, int y) {
    Bgra pixel = Pixel("rgba", 8, x, y);
    // The encoder keeps no colour of a pixel that is not there.
    unsigned char const* pRead = arrPixels.data() + (y * PATTERN_WIDTH + x) * 4;
    if (pixel[3] == 0) pixel = {pRead[0], pRead[1], pRead[2], 0};
    return pixel;
  });
}

TEST(QXWebpReader, LossyPixelsAreThoseOfTheCodec) {
  ExpectAsTheCodec("lossy.webp", 24);
  ExpectAsTheCodec("lossy-alpha.webp", 32);
}

TEST(QXWebpReader, AnAnimationIsRefused) {
  // The flag in the header of an extended file of 1 x 1 pixels, with one frame after it.
  std::string const strFile(
      "RIFF\x36\0\0\0WEBPVP8X\x0A\0\0\0\x02\0\0\0\0\0\0\0\0\0ANIM\x06\0\0\0\0\0\0\0\0\0ANMF\x10\0\0\0"
      "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
      68);
  EXPECT_EQ(ReadBytes(TypeOf("a.webp"), Bytes(strFile.begin(), strFile.end())), nullptr);
}

}  // namespace
