#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBlockBc.h>

#include "QXKtx2Files.h"

#include <array>
#include <random>

namespace {

using namespace qxtest;
using QXC::detail::DecodeBc1Block;
using QXC::detail::DecodeBc3Block;
using QXC::detail::QXBc1Alpha;

using Block = std::array<unsigned char, 64>;

/// The colour of one pixel, worked out for it alone.
void RefColor(unsigned char const* pBlock, int nPixel, bool bAlwaysFour, bool bPunched, unsigned char* pRgba) {
  int const nFirst = pBlock[0] + 256 * pBlock[1];
  int const nSecond = pBlock[2] + 256 * pBlock[3];
  int const nIndex = pBlock[4 + nPixel / 4] / (1 << (nPixel % 4 * 2)) % 4;
  auto const channel = [](int nColor, int nChannel) {
    int const nValue = nChannel == 0 ? nColor / 2048 : nChannel == 1 ? nColor / 32 % 64 : nColor % 32;
    return nChannel == 1 ? nValue * 4 + nValue / 16 : nValue * 8 + nValue / 4;
  };
  bool const bFour = bAlwaysFour || nFirst > nSecond;
  for (int i = 0; i < 3; ++i) {
    int const nA = channel(nFirst, i);
    int const nB = channel(nSecond, i);
    int const four[4] = {nA, nB, (2 * nA + nB) / 3, (nA + 2 * nB) / 3};
    int const three[4] = {nA, nB, (nA + nB) / 2, 0};
    pRgba[i] = static_cast<unsigned char>(bFour ? four[nIndex] : three[nIndex]);
  }
  pRgba[3] = !bFour && bPunched && nIndex == 3 ? 0 : 255;
}

unsigned char RefAlpha(unsigned char const* pBlock, int nPixel) {
  int nIndex = 0;
  for (int i = 0; i < 3; ++i) {
    int const nBit = nPixel * 3 + i;
    nIndex += (pBlock[2 + nBit / 8] >> (nBit % 8) & 1) << i;
  }
  int const nA = pBlock[0];
  int const nB = pBlock[1];
  if (nIndex == 0) return pBlock[0];
  if (nIndex == 1) return pBlock[1];
  if (nA > nB) return static_cast<unsigned char>(((8 - nIndex) * nA + (nIndex - 1) * nB) / 7);
  if (nIndex >= 6) return nIndex == 6 ? 0 : 255;
  return static_cast<unsigned char>(((6 - nIndex) * nA + (nIndex - 1) * nB) / 5);
}

TEST(QXBlockBc, RandomBlocksDecodeAsPixelByPixel) {
  constexpr unsigned int nSeed = 33;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  for (int nRound = 0; nRound < 20000; ++nRound) {
    unsigned char block[16];
    for (unsigned char& nByte : block) nByte = static_cast<unsigned char>(random());
    if (nRound % 16 == 0) std::copy_n(block, 2, block + 2);  // equal colours: the three of BC1
    if (nRound % 16 == 1) block[1] = block[0];               // equal alphas: the six of BC3
    Block opaque;
    Block punched;
    Block bc3;
    DecodeBc1Block(block, QXBc1Alpha::Opaque, opaque.data());
    DecodeBc1Block(block, QXBc1Alpha::Punched, punched.data());
    DecodeBc3Block(block, bc3.data());
    for (int nPixel = 0; nPixel < 16; ++nPixel) {
      unsigned char expected[4];
      std::size_t const nAt = static_cast<std::size_t>(nPixel) * 4;
      RefColor(block, nPixel, false, false, expected);
      ASSERT_TRUE(std::equal(expected, expected + 4, &opaque[nAt])) << nRound << ' ' << nPixel;
      RefColor(block, nPixel, false, true, expected);
      ASSERT_TRUE(std::equal(expected, expected + 4, &punched[nAt])) << nRound << ' ' << nPixel;
      RefColor(block + 8, nPixel, true, false, expected);
      expected[3] = RefAlpha(block, nPixel);
      ASSERT_TRUE(std::equal(expected, expected + 4, &bc3[nAt])) << nRound << ' ' << nPixel;
    }
  }
}

/// A file of one block in the corner of which the picture is.
Bytes DecodeCorner(std::uint32_t nFormat, unsigned char nModel, Bytes const& arrBlock) {
  Ktx2Maker maker;
  maker.m_nFormat = nFormat;
  maker.m_nModel = nModel;
  maker.m_nWidth = 3;
  maker.m_nHeight = 2;
  maker.m_arrLevels = {arrBlock};
  return DecodeBytes(maker.Make());
}

TEST(QXBlockBc, FormatSaysWhetherTheFourthColourIsAHole) {
  // First colour 0, second white: three colours. All pixels take the fourth one.
  Bytes const arrBlock = {0, 0, 255, 255, 255, 255, 255, 255};
  for (std::uint32_t const nFormat : {131u, 132u}) {
    Bytes const arrPixels = DecodeCorner(nFormat, 128, arrBlock);
    ASSERT_EQ(arrPixels.size(), 24u);
    for (std::size_t i = 0; i < 24; ++i) EXPECT_EQ(arrPixels[i], i % 4 == 3 ? 255 : 0);
  }
  for (std::uint32_t const nFormat : {133u, 134u}) EXPECT_EQ(DecodeCorner(nFormat, 128, arrBlock), Bytes(24, 0));
}

TEST(QXBlockBc, FormatsOfBc3AreRead) {
  Bytes arrBlock(16, 0);
  arrBlock[0] = 77;
  for (std::uint32_t const nFormat : {137u, 138u}) {
    Bytes const arrPixels = DecodeCorner(nFormat, 130, arrBlock);
    ASSERT_EQ(arrPixels.size(), 24u);
    for (std::size_t i = 0; i < 24; ++i) EXPECT_EQ(arrPixels[i], i % 4 == 3 ? 77 : 0);
  }
}

TEST(QXBlockBc, BothNumbersOfBc7AreHandedThrough) {
  Bytes const arrBlock = CountedBytes(16);
  for (std::uint32_t const nFormat : {145u, 146u}) EXPECT_EQ(DecodeCorner(nFormat, 134, arrBlock), arrBlock);
}

}  // namespace
