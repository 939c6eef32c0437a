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

void PutLittle(Bytes& arrBytes, std::size_t nValue, int nCount) {
  for (int i = 0; i < nCount; ++i) arrBytes.push_back(static_cast<unsigned char>(nValue >> 8 * i));
}

void PutText(Bytes& arrBytes, char const* szText) {
  arrBytes.insert(arrBytes.end(), szText, szText + 4);
}

// An animation of one still file's coded picture, placed on a canvas; the second frame is cut.
Bytes Animation(Bytes const& arrStill, std::size_t nWidth, std::size_t nHeight, std::size_t nLeft, std::size_t nTop) {
  std::string const strExtended = "VP8X";
  bool const bExtended = std::equal(strExtended.begin(), strExtended.end(), arrStill.begin() + 12);
  Bytes const arrCoded(arrStill.begin() + 12 + (bExtended ? 18 : 0), arrStill.end());
  Bytes arrBytes;
  PutText(arrBytes, "RIFF");
  PutLittle(arrBytes, 4 + 18 + 14 + 24 + arrCoded.size() + 24, 4);
  PutText(arrBytes, "WEBP");
  PutText(arrBytes, "VP8X");
  PutLittle(arrBytes, 10, 4);
  PutLittle(arrBytes, 0x12, 4);
  PutLittle(arrBytes, nWidth - 1, 3);
  PutLittle(arrBytes, nHeight - 1, 3);
  PutText(arrBytes, "ANIM");
  PutLittle(arrBytes, 6, 4);
  PutLittle(arrBytes, 0xFF0000FF, 4);
  PutLittle(arrBytes, 0, 2);
  for (std::size_t nCoded : {arrCoded.size(), std::size_t{0}}) {
    PutText(arrBytes, "ANMF");
    PutLittle(arrBytes, 16 + nCoded, 4);
    PutLittle(arrBytes, nLeft / 2, 3);
    PutLittle(arrBytes, nTop / 2, 3);
    arrBytes.insert(arrBytes.end(), 10, static_cast<unsigned char>(0));
    if (nCoded > 0) arrBytes.insert(arrBytes.end(), arrCoded.begin(), arrCoded.end());
  }
  return arrBytes;
}

TEST(QXWebpReader, OfAnAnimationTheFirstFrameIsRead) {
  Bytes const arrStill = FileBytes("lossless.webp");
  ExpectPattern(ReadBytes(TypeOf("a.webp"), Animation(arrStill, 11, 7, 0, 0)).get(), 24, PatternOf("rgb", 8));
  // With alpha its coded picture has a part of its own before the colours.
  Image const pStill = ReadFile("lossy-alpha.webp");
  ASSERT_NE(pStill, nullptr);
  Image const pFrame = ReadBytes(TypeOf("a.webp"), Animation(FileBytes("lossy-alpha.webp"), 11, 7, 0, 0));
  ASSERT_NE(pFrame, nullptr);
  EXPECT_EQ(pFrame->m_nBitDepth, 32);
  EXPECT_EQ(PixelsOf(*pFrame), PixelsOf(*pStill));
}

TEST(QXWebpReader, AFirstFrameThatIsSmallerStandsInItsPlace) {
  Bytes const arrBytes = Animation(FileBytes("lossless.webp"), 20, 13, 4, 2);
  ExpectPicture(ReadBytes(TypeOf("a.webp"), arrBytes).get(), 20, 13, 32, [](int x, int y) {
    bool const bInside = x >= 4 && x < 4 + PATTERN_WIDTH && y >= 2 && y < 2 + PATTERN_HEIGHT;
    return bInside ? Pixel("rgb", 8, x - 4, y - 2) : Bgra{0, 0, 0, 0};
  });
}

TEST(QXWebpReader, AFirstFrameThatIsCutOrBeyondTheCanvasIsRefused) {
  Bytes const arrStill = FileBytes("lossless.webp");
  EXPECT_EQ(ReadBytes(TypeOf("a.webp"), Animation(arrStill, 10, 7, 0, 0)), nullptr);
  EXPECT_EQ(ReadBytes(TypeOf("a.webp"), Animation(arrStill, 20, 7, 10, 0)), nullptr);
  EXPECT_EQ(ReadBytes(TypeOf("a.webp"), Animation(arrStill, 11, 8, 0, 2)), nullptr);
  Bytes const arrWhole = Animation(arrStill, 11, 7, 0, 0);
  // The second frame takes 24 bytes; what is cut before it belongs to the first.
  for (std::size_t nCut = 25; nCut < arrWhole.size(); ++nCut) {
    EXPECT_EQ(ReadBytes(TypeOf("a.webp"), arrWhole.data(), arrWhole.size() - nCut), nullptr) << nCut;
  }
}

TEST(QXWebpReader, AnAnimationWithoutPictureIsRefused) {
  // The flag in the header of an extended file of 1 x 1 pixels, with one frame after it.
  std::string const strFile(
      "RIFF\x36\0\0\0WEBPVP8X\x0A\0\0\0\x02\0\0\0\0\0\0\0\0\0ANIM\x06\0\0\0\0\0\0\0\0\0ANMF\x10\0\0\0"
      "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
      68);
  EXPECT_EQ(ReadBytes(TypeOf("a.webp"), Bytes(strFile.begin(), strFile.end())), nullptr);
}

}  // namespace
