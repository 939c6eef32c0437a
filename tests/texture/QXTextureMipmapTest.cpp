#include <limits>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "../QXBareTexture.h"

using namespace QXC;

namespace {

using Offsets = std::vector<unsigned int>;

Offsets ToVector(QdcArray<unsigned int> const& arrOffsets) {
  return Offsets(arrOffsets.begin(), arrOffsets.end());
}

Offsets Build(int nWidth, int nHeight, int nFormat, int nCompressed) {
  QdcArray<unsigned int> arrOffsets;
  QXTexture::BuildMipmapOffset(nWidth, nHeight, static_cast<QX3DPixelFormat>(nFormat), nCompressed, arrOffsets);
  return ToVector(arrOffsets);
}

/// The table by the levels' own list, 64-bit sums.
Offsets Reference(unsigned int nWidth, unsigned int nHeight, unsigned int nBytes, bool bBlocks) {
  std::vector<std::pair<unsigned int, unsigned int>> arrLevels{{nWidth, nHeight}};
  while (arrLevels.back() != std::pair(1U, 1U)) {
    auto const [nLastWidth, nLastHeight] = arrLevels.back();
    arrLevels.emplace_back(nLastWidth > 1 ? nLastWidth >> 1 : 1, nLastHeight > 1 ? nLastHeight >> 1 : 1);
  }
  Offsets arrOffsets;
  unsigned long long nOffset = 0;
  for (auto const& [nLevelWidth, nLevelHeight] : arrLevels) {
    arrOffsets.push_back(static_cast<unsigned int>(nOffset));
    unsigned long long const nColumns = bBlocks ? (nLevelWidth + 3) / 4 : nLevelWidth;
    unsigned long long const nRows = bBlocks ? (nLevelHeight + 3) / 4 : nLevelHeight;
    nOffset += nColumns * nRows * nBytes;
  }
  return arrOffsets;
}

TEST(QXTextureMipmap, OfOnePixelHasTheSingleEntryZero) {
  for (int const nFormat : {0, 1, 5, 10, 11, 12, 13, 14, 28, 99}) {
    EXPECT_EQ(Build(1, 1, nFormat, 0), Offsets{0});
    EXPECT_EQ(Build(1, 1, nFormat, 1), Offsets{0});
  }
}

TEST(QXTextureMipmap, HalvesWithTruncationAndNeverToZero) {
  // 5x3, 2x1, 1x1
  EXPECT_EQ(Build(5, 3, PF_A8R8G8B8, 0), (Offsets{0, 60, 68}));
  // 8x1, 4x1, 2x1, 1x1
  EXPECT_EQ(Build(8, 1, PF_A8R8G8B8, 0), (Offsets{0, 32, 48, 56}));
  EXPECT_EQ(Build(1, 8, PF_A8R8G8B8, 0), (Offsets{0, 32, 48, 56}));
}

TEST(QXTextureMipmap, CountsThreeBytesForFormat11AndFourForAnyOther) {
  EXPECT_EQ(Build(6, 4, 11, 0), (Offsets{0, 72, 90}));
  for (int const nFormat : {0, 1, 5, 10, 12, 13, 14, 28, 99, -1}) {
    EXPECT_EQ(Build(6, 4, nFormat, 0), (Offsets{0, 96, 120})) << nFormat;
  }
}

TEST(QXTextureMipmap, CountsBlocksOfEightBytesForFormat11AndOfSixteenForAnyOther) {
  // 9x5 has 3 by 2 blocks, 4x2, 2x1 and 1x1 have one each
  EXPECT_EQ(Build(9, 5, 11, 1), (Offsets{0, 48, 56, 64}));
  for (int const nFormat : {0, 1, 5, 10, 12, 13, 14, 28, 99, -1}) {
    EXPECT_EQ(Build(9, 5, nFormat, 1), (Offsets{0, 96, 112, 128})) << nFormat;
  }
}

TEST(QXTextureMipmap, TakesAnyValueButZeroForCompressed) {
  for (int const nCompressed : {1, 2, 14, -1}) {
    EXPECT_EQ(Build(4, 4, PF_A8R8G8B8, nCompressed), (Offsets{0, 16, 32}));
  }
  EXPECT_EQ(Build(4, 4, PF_A8R8G8B8, 0), (Offsets{0, 64, 80}));
}

TEST(QXTextureMipmap, DropsWhatTheTableHeldWithItsCapacity) {
  QdcArray<unsigned int> arrOffsets;
  for (unsigned int nValue = 0; nValue < 1000; ++nValue) arrOffsets.Add(nValue);
  QXTexture::BuildMipmapOffset(2, 2, PF_A8R8G8B8, 0, arrOffsets);
  EXPECT_EQ(ToVector(arrOffsets), (Offsets{0, 16}));
  EXPECT_LT(arrOffsets.GetCapacity(), 100U);
}

TEST(QXTextureMipmap, OfNoPixelsEndsAllTheSame) {
  EXPECT_EQ(Build(0, 0, PF_A8R8G8B8, 0), (Offsets{0, 0}));
  EXPECT_EQ(Build(0, 4, PF_A8R8G8B8, 0), (Offsets{0, 0, 8}));
  EXPECT_EQ(Build(0, 0, PF_A8R8G8B8, 1), (Offsets{0, 16}));
  EXPECT_EQ(Build(-1, -1, PF_A8R8G8B8, 0), (Offsets{0, 4}));
  constexpr int nLowest = std::numeric_limits<int>::min();
  EXPECT_EQ(Build(nLowest, nLowest, PF_A8R8G8B8, 1).front(), 0U);
}

TEST(QXTextureMipmap, KeepsThe32LowBitsOfAnOffset) {
  // 65536 x 65536 x 4 is 2^34, which leaves nothing; then 2^32 and 2^30
  Offsets const arrOffsets = Build(65536, 65536, PF_A8R8G8B8, 0);
  ASSERT_EQ(arrOffsets.size(), 17U);
  EXPECT_EQ(arrOffsets[1], 0U);
  EXPECT_EQ(arrOffsets[2], 0U);
  EXPECT_EQ(arrOffsets[3], 1U << 30);
  constexpr int nLargest = std::numeric_limits<int>::max();
  EXPECT_EQ(Build(nLargest, nLargest, 11, 1), Reference(nLargest, nLargest, 8, true));
}

TEST(QXTextureMipmap, EqualsTheSumOfItsLevels) {
  unsigned int const nSeed = 20270301;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  for (int nRound = 0; nRound < 2000; ++nRound) {
    auto const nWidth = 1 + random() % 5000;
    auto const nHeight = 1 + random() % 5000;
    int const nFormat = static_cast<int>(random() % 30);
    bool const bBlocks = random() % 2 != 0;
    unsigned int const nBytes = bBlocks ? (nFormat == 11 ? 8 : 16) : (nFormat == 11 ? 3 : 4);
    auto const w = static_cast<unsigned int>(nWidth);
    auto const h = static_cast<unsigned int>(nHeight);
    EXPECT_EQ(Build(static_cast<int>(w), static_cast<int>(h), nFormat, bBlocks), Reference(w, h, nBytes, bBlocks))
        << w << " x " << h << ", format " << nFormat;
  }
}

TEST(QXTextureMipmap, OfATextureIsAlwaysInBlocks) {
  for (int const nFormat : {1, 5, 10, 11, 12, 13, 14, 28}) {
    QXBareTexture texture;
    texture.SetTextureData(9, 5, new unsigned char[9 * 5 * 4], 0, static_cast<QX3DPixelFormat>(nFormat));
    texture.BuildMipmapOffset();
    EXPECT_EQ(ToVector(texture.m_arrMipmapOffset), Build(9, 5, nFormat, 1)) << nFormat;
    EXPECT_EQ(ToVector(texture.GetMipmapOffset()), ToVector(texture.m_arrMipmapOffset));
  }
}

TEST(QXTextureMipmap, OfATextureReplacesTheFormerTable) {
  QXBareTexture texture;
  texture.SetTextureData(4, 4, nullptr, 0, PF_A8R8G8B8);
  texture.BuildMipmapOffset();
  texture.BuildMipmapOffset();
  EXPECT_EQ(ToVector(texture.m_arrMipmapOffset), (Offsets{0, 16, 32}));
}

TEST(QXTextureMipmap, IsCopiedWhenSet) {
  QXBareTexture texture;
  QdcArray<unsigned int> arrOffsets;
  for (unsigned int const nOffset : {0U, 64U, 80U}) arrOffsets.Add(nOffset);
  texture.SetMipmapOffset(arrOffsets);
  arrOffsets[1] = 7;
  EXPECT_EQ(ToVector(texture.GetMipmapOffset()), (Offsets{0, 64, 80}));
}

TEST(QXTextureMipmap, IsNeverLeftEmpty) {
  QXBareTexture texture;
  QdcArray<unsigned int> arrOffsets;
  for (unsigned int nOffset = 10; nOffset < 1000; ++nOffset) arrOffsets.Add(nOffset);
  texture.SetMipmapOffset(arrOffsets);
  texture.SetMipmapOffset(QdcArray<unsigned int>());
  EXPECT_EQ(ToVector(texture.GetMipmapOffset()), Offsets{0});
  EXPECT_LT(texture.m_arrMipmapOffset.GetCapacity(), 100U);
}

TEST(QXTextureMipmap, MayBeSetFromTheTexturesOwn) {
  QXBareTexture texture;
  QdcArray<unsigned int> arrOffsets;
  for (unsigned int const nOffset : {0U, 4U}) arrOffsets.Add(nOffset);
  texture.SetMipmapOffset(arrOffsets);
  texture.SetMipmapOffset(texture.m_arrMipmapOffset);
  EXPECT_EQ(ToVector(texture.GetMipmapOffset()), (Offsets{0, 4}));
}

TEST(QXTextureMipmap, IsGivenAwayAsACopy) {
  QXBareTexture texture;
  texture.GetMipmapOffset().RemoveAll();
  QdcArray<unsigned int> arrCopy = texture.GetMipmapOffset();
  arrCopy[0] = 9;
  EXPECT_EQ(ToVector(texture.m_arrMipmapOffset), Offsets{0});
}

}  // namespace
