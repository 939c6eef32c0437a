#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>

#include <cstring>
#include <memory>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureInfo.h>

#include "../../renderop/QXSlotOf.h"

using namespace QXC;

namespace {

using Bytes = std::vector<unsigned char>;

Bytes Count(std::size_t nCount) {
  Bytes bytes(nCount);
  for (std::size_t nByte = 0; nByte < nCount; ++nByte) bytes[nByte] = static_cast<unsigned char>(nByte * 5 + 1);
  return bytes;
}

void Fill(QXTextureData& data, unsigned int nWidth, unsigned int nHeight, int nFormat, Bytes const& bytes) {
  data.Release();
  data.m_nWidth = nWidth;
  data.m_nHeight = nHeight;
  data.m_eFormat = static_cast<QX3DPixelFormat>(nFormat);
  data.m_pPixels = new unsigned char[bytes.size()];
  if (!bytes.empty()) std::memcpy(data.m_pPixels, bytes.data(), bytes.size());
}

Bytes GetBytes(QXTextureData const& data, std::size_t nCount) {
  return Bytes(data.m_pPixels, data.m_pPixels + nCount);
}

void ExpectSameFields(QXTextureData const& one, QXTextureData const& other) {
  EXPECT_EQ(one.m_nHeight, other.m_nHeight);
  EXPECT_EQ(one.m_nWidth, other.m_nWidth);
  EXPECT_EQ(one.m_nDepth, other.m_nDepth);
  EXPECT_EQ(one.m_eFormat, other.m_eFormat);
  EXPECT_EQ(one.m_nCompression, other.m_nCompression);
  EXPECT_EQ(one.m_nDataSize, other.m_nDataSize);
}

/// Every field with a value of its own, over 24 bytes.
void FillAll(QXTextureData& data) {
  Fill(data, 2, 3, PF_A8R8G8B8, Count(24));
  data.m_nDepth = 7;
  data.m_nCompression = TEXTURE_COMPRESSION_NONE;
  data.m_nDataSize = 24;
}

TEST(QXTextureData, StartsWithoutAnything) {
  QXTextureData const data;
  EXPECT_EQ(data.m_pPixels, nullptr);
  EXPECT_EQ(data.m_nHeight, 0U);
  EXPECT_EQ(data.m_nWidth, 0U);
  EXPECT_EQ(data.m_nDepth, 0U);
  EXPECT_EQ(data.m_eFormat, PF_UNKNOWN);
  EXPECT_EQ(data.m_nCompression, 0U);
  EXPECT_EQ(data.m_nDataSize, 0U);
  EXPECT_EQ(data.GetBlockLength(), 0U);
}

TEST(QXTextureData, HasItsFieldsInOrderAndTheCloneBeforeTheDestructor) {
  QXTextureData data;
  ExpectInOrder({&data, &data.m_pPixels, &data.m_nHeight, &data.m_nWidth, &data.m_nDepth, &data.m_eFormat,
      &data.m_nCompression, &data.m_nDataSize});
  // SlotOf counts the two entries of a destructor that stands first; here none does.
  EXPECT_EQ(SlotOf(&QXTextureData::Clone), -1);
  EXPECT_TRUE(std::has_virtual_destructor_v<QXTextureData>);
}

TEST(QXTextureData, IsMadeFromADescriptionWithACopyOfItsPixels) {
  Bytes bytes = Count(24);
  QXTextureInfo info;
  info.m_strName = L"oak";
  info.m_nWidth = 2;
  info.m_nHeight = 3;
  info.m_eFormat = PF_A8B8G8R8;
  info.m_pPixels = bytes.data();
  QXTextureData const data(info);
  EXPECT_EQ(data.m_nWidth, 2U);
  EXPECT_EQ(data.m_nHeight, 3U);
  EXPECT_EQ(data.m_nDepth, 0U);
  EXPECT_EQ(data.m_eFormat, PF_A8B8G8R8);
  EXPECT_EQ(data.m_nCompression, 0U);
  EXPECT_EQ(data.m_nDataSize, 0U);
  EXPECT_NE(data.m_pPixels, bytes.data());
  EXPECT_EQ(GetBytes(data, 24), bytes);
  EXPECT_EQ(data.GetBlockLength(), 24U);
}

TEST(QXTextureData, IsMadeFromAnEmptyDescription) {
  QXTextureInfo const empty;
  EXPECT_EQ(empty.m_pPixels, nullptr);
  EXPECT_EQ(empty.m_nDataSize, 0U);
  QXTextureData const data(empty);
  EXPECT_EQ(data.m_pPixels, nullptr);
  EXPECT_EQ(data.m_eFormat, PF_UNKNOWN);
}

TEST(QXTextureData, IsMadeFromADescriptionOfRawBytes) {
  Bytes bytes = Count(10);
  QXTextureInfo info;
  info.m_nWidth = info.m_nHeight = 1000;
  info.m_nCompression = TEXTURE_COMPRESSION_RAW;
  info.m_nDataSize = 10;
  info.m_pPixels = bytes.data();
  QXTextureData const data(info);
  EXPECT_EQ(data.m_nDataSize, 10U);
  EXPECT_EQ(data.m_nCompression, 16U);
  EXPECT_EQ(data.GetBlockLength(), 10U);
  EXPECT_EQ(GetBytes(data, 10), bytes);
}

TEST(QXTextureData, IsCopiedDeeply) {
  QXTextureData data;
  FillAll(data);
  QXTextureData const constructed(data);
  QXTextureData assigned;
  Fill(assigned, 1, 1, PF_L8, {9});
  assigned = data;
  std::unique_ptr<QXTextureData> const pClone(data.Clone());
  for (QXTextureData const* const pCopy :
      {&constructed, static_cast<QXTextureData const*>(&assigned), static_cast<QXTextureData const*>(pClone.get())}) {
    ExpectSameFields(*pCopy, data);
    EXPECT_NE(pCopy->m_pPixels, data.m_pPixels);
    EXPECT_EQ(GetBytes(*pCopy, 24), Count(24));
    EXPECT_EQ(pCopy->GetBlockLength(), 24U);
  }
}

TEST(QXTextureData, WithoutPixelsIsCopiedWithoutPixels) {
  QXTextureData data;
  FillAll(data);
  data.Release();
  QXTextureData const copy(data);
  EXPECT_EQ(copy.m_pPixels, nullptr);
  ExpectSameFields(copy, data);
  QXTextureData assigned;
  FillAll(assigned);
  assigned = data;
  EXPECT_EQ(assigned.m_pPixels, nullptr);
}

TEST(QXTextureData, MayBeAssignedToItself) {
  QXTextureData data;
  FillAll(data);
  QXTextureData& same = data;
  data = same;
  EXPECT_EQ(GetBytes(data, 24), Count(24));
  data = std::move(same);
  EXPECT_EQ(GetBytes(data, 24), Count(24));
}

TEST(QXTextureData, IsMovedWithItsBlock) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<QXTextureData>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<QXTextureData>);
  QXTextureData data;
  FillAll(data);
  data.SetBlockLength(23);
  unsigned char const* const pPixels = data.m_pPixels;
  QXTextureData constructed(std::move(data));
  EXPECT_EQ(constructed.m_pPixels, pPixels);
  EXPECT_EQ(constructed.GetBlockLength(), 23U);
  EXPECT_EQ(constructed.m_nDepth, 7U);
  QXTextureData assigned;
  FillAll(assigned);
  assigned = std::move(constructed);
  EXPECT_EQ(assigned.m_pPixels, pPixels);
  EXPECT_EQ(assigned.GetBlockLength(), 23U);
  EXPECT_EQ(constructed.m_pPixels, nullptr);  // NOLINT(bugprone-use-after-move): what is left is promised
  EXPECT_EQ(constructed.m_nWidth, 2U);
}

TEST(QXTextureData, ReleasesItsBlockAndNothingElse) {
  QXTextureData data;
  FillAll(data);
  data.Release();
  EXPECT_EQ(data.m_pPixels, nullptr);
  EXPECT_EQ(data.m_nWidth, 2U);
  EXPECT_EQ(data.m_nHeight, 3U);
  EXPECT_EQ(data.m_nDepth, 7U);
  EXPECT_EQ(data.m_eFormat, PF_A8R8G8B8);
  EXPECT_EQ(data.m_nDataSize, 24U);
  data.Release();
  EXPECT_EQ(data.m_pPixels, nullptr);
}

// --- block length --------------------------------------------------------------------------------------------------

TEST(QXTextureData, BelievesATellingOfItsBlockBeforeTheDataSize) {
  QXTextureData data;
  Fill(data, 2, 2, PF_A8R8G8B8, Count(16));
  EXPECT_EQ(data.GetBlockLength(), 0U);
  data.m_nDataSize = 12;
  EXPECT_EQ(data.GetBlockLength(), 12U);
  data.SetBlockLength(16);
  EXPECT_EQ(data.GetBlockLength(), 16U);
  data.SetBlockLength(0);
  EXPECT_EQ(data.GetBlockLength(), 12U);
  data.m_nDataSize = 0;
  EXPECT_EQ(data.GetBlockLength(), 0U);
}

TEST(QXTextureData, BelievesATellingOnlyOfThePointerThatItWasToldWith) {
  QXTextureData data;
  Fill(data, 2, 2, PF_A8R8G8B8, Count(16));
  data.SetBlockLength(16);
  unsigned char* const pTold = data.m_pPixels;
  auto* const pOther = new unsigned char[4]{};
  data.m_pPixels = pOther;
  EXPECT_EQ(data.GetBlockLength(), 0U);
  data.m_nDataSize = 4;
  EXPECT_EQ(data.GetBlockLength(), 4U);
  data.m_pPixels = nullptr;
  EXPECT_EQ(data.GetBlockLength(), 0U);
  data.m_pPixels = pTold;
  EXPECT_EQ(data.GetBlockLength(), 16U);
  delete[] pOther;
}

TEST(QXTextureData, ForgetsTheLengthOfAReleasedBlock) {
  QXTextureData data;
  Fill(data, 2, 2, PF_A8R8G8B8, Count(16));
  data.SetBlockLength(16);
  unsigned char* const pFormer = data.m_pPixels;
  data.m_pPixels = nullptr;
  data.Release();
  data.m_pPixels = pFormer;  // as if the next block had come from the same address
  EXPECT_EQ(data.GetBlockLength(), 0U);
}

TEST(QXTextureData, CopiesAsManyBytesAsItsBlockIsKnownToHave) {
  QXTextureData data;
  Fill(data, 100, 100, PF_A8R8G8B8, Count(24));
  data.SetBlockLength(24);
  QXTextureData const copy(data);
  EXPECT_EQ(GetBytes(copy, 24), Count(24));
  EXPECT_EQ(copy.GetBlockLength(), 24U);
  QXTextureData levels;
  Fill(levels, 2, 2, PF_A8R8G8B8, Count(20));
  levels.m_nDataSize = 20;
  EXPECT_EQ(GetBytes(QXTextureData(levels), 20), Count(20));
}

struct Least {
  int m_nFormat;
  unsigned int m_nCompression;
  std::size_t m_nBytes;
};

TEST(QXTextureData, CopiesTheLeastThatItsSizeAndFormatAskForOfABlockOfUnknownLength) {
  // 5 x 3 pixels; in blocks of 4 by 4 that is two blocks
  Least const arrCases[]{{1, 0, 15}, {5, 0, 30}, {10, 0, 45}, {11, 0, 45}, {12, 0, 60}, {13, 0, 60}, {14, 0, 60},
      {28, 0, 60}, {99, 0, 60}, {10, 14, 16}, {11, 14, 16}, {12, 14, 32}, {28, 19, 32}, {28, 20, 32}, {12, 16, 0}};
  for (Least const& least : arrCases) {
    QXTextureData data;
    Fill(data, 5, 3, least.m_nFormat, Count(least.m_nBytes));
    data.m_nCompression = least.m_nCompression;
    QXTextureData const copy(data);
    ASSERT_NE(copy.m_pPixels, nullptr);
    EXPECT_EQ(copy.GetBlockLength(), least.m_nBytes) << least.m_nFormat << ' ' << least.m_nCompression;
    EXPECT_EQ(GetBytes(copy, least.m_nBytes), Count(least.m_nBytes));
  }
}

// --- widening ------------------------------------------------------------------------------------------------------

TEST(QXTextureData, WidensThreeBytesToFourWithAlpha255) {
  for (auto const& [nFormat, nWide] : {std::pair(PF_R8G8B8, PF_A8R8G8B8), std::pair(PF_B8G8R8, PF_R8G8B8A8)}) {
    QXTextureData data;
    Fill(data, 1, 2, nFormat, {1, 2, 3, 4, 5, 6});
    data.RGBToRGBA();
    EXPECT_EQ(data.m_eFormat, nWide);
    EXPECT_EQ(GetBytes(data, 8), (Bytes{1, 2, 3, 255, 4, 5, 6, 255}));
    EXPECT_EQ(data.GetBlockLength(), 8U);
    EXPECT_EQ(data.m_nDataSize, 0U);
  }
}

TEST(QXTextureData, KeepsTheDataSizeTrueWhenItWidens) {
  QXTextureData data;
  Fill(data, 1, 2, PF_R8G8B8, Count(6));
  data.m_nDataSize = 6;
  data.RGBToRGBA();
  EXPECT_EQ(data.m_nDataSize, 8U);
}

TEST(QXTextureData, WidensNoOtherFormat) {
  for (int const nFormat : {0, 1, 5, 12, 13, 14, 28, 99}) {
    QXTextureData data;
    Fill(data, 1, 2, nFormat, Count(8));
    unsigned char const* const pPixels = data.m_pPixels;
    data.RGBToRGBA();
    EXPECT_EQ(data.m_pPixels, pPixels);
    EXPECT_EQ(data.m_eFormat, nFormat);
  }
}

TEST(QXTextureData, WidensNeitherCompressedPixelsNorAShortBlockNorNothing) {
  QXTextureData data;
  data.m_eFormat = PF_R8G8B8;
  data.m_nWidth = data.m_nHeight = 2;
  data.RGBToRGBA();
  EXPECT_EQ(data.m_pPixels, nullptr);
  EXPECT_EQ(data.m_eFormat, PF_R8G8B8);
  Fill(data, 2, 2, PF_R8G8B8, Count(12));
  data.SetBlockLength(11);
  data.RGBToRGBA();
  EXPECT_EQ(data.m_eFormat, PF_R8G8B8);
  data.SetBlockLength(12);
  data.m_nCompression = TEXTURE_COMPRESSION_BLOCK;
  data.RGBToRGBA();
  EXPECT_EQ(data.m_eFormat, PF_R8G8B8);
  EXPECT_EQ(GetBytes(data, 12), Count(12));
  data.m_nCompression = TEXTURE_COMPRESSION_NONE;
  data.RGBToRGBA();
  EXPECT_EQ(data.m_eFormat, PF_A8R8G8B8);
}

TEST(QXTextureData, WidensAnImageWithoutPixelsInIt) {
  QXTextureData data;
  Fill(data, 0, 5, PF_R8G8B8, {});
  data.RGBToRGBA();
  EXPECT_EQ(data.m_eFormat, PF_A8R8G8B8);
  EXPECT_NE(data.m_pPixels, nullptr);
}

TEST(QXTextureData, WidensLikeALoopOverPixels) {
  unsigned int const nSeed = 20270303;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  for (int nRound = 0; nRound < 300; ++nRound) {
    auto const nWidth = static_cast<unsigned int>(random() % 300);
    auto const nHeight = static_cast<unsigned int>(random() % 5);
    Bytes bytes(nWidth * nHeight * 3);
    for (unsigned char& nByte : bytes) nByte = static_cast<unsigned char>(random());
    Bytes expected;
    for (std::size_t nByte = 0; nByte < bytes.size(); ++nByte) {
      expected.push_back(bytes[nByte]);
      if (nByte % 3 == 2) expected.push_back(255);
    }
    QXTextureData data;
    Fill(data, nWidth, nHeight, PF_B8G8R8, bytes);
    data.RGBToRGBA();
    ASSERT_EQ(GetBytes(data, expected.size()), expected) << nWidth << " x " << nHeight;
  }
}

}  // namespace
