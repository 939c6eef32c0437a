#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>

#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

using namespace QXC;

namespace {

std::vector<unsigned char> Bytes(unsigned int nCount) {
  std::vector<unsigned char> bytes(nCount);
  for (unsigned int nByte = 0; nByte < nCount; ++nByte) bytes[nByte] = static_cast<unsigned char>(nByte * 3 + 1);
  return bytes;
}

/// A clone whose block dies with the test.
struct Clone {
  explicit Clone(QXImageData const& image)
      : m_pRecord(image.Clone()), m_pBlock(static_cast<unsigned char*>(m_pRecord->m_pPixels)) {}
  std::unique_ptr<QXImageData> m_pRecord;
  std::unique_ptr<unsigned char[]> m_pBlock;
};

TEST(QXImageData, StartsWithoutAnything) {
  QXImageData const image;
  EXPECT_EQ(image.m_nWidth, 0U);
  EXPECT_EQ(image.m_nHeight, 0U);
  EXPECT_EQ(image.m_nPitch, 0U);
  EXPECT_EQ(image.m_nBitDepth, 0);
  EXPECT_EQ(image.m_nCompression, 0);
  EXPECT_EQ(image.m_pPixels, nullptr);
}

TEST(QXImageData, IsAPlainStructureWithItsFieldsInOrder) {
  EXPECT_TRUE(std::is_standard_layout_v<QXImageData>);
  EXPECT_FALSE(std::is_polymorphic_v<QXImageData>);
  EXPECT_EQ(offsetof(QXImageData, m_nWidth), 0U);
  EXPECT_EQ(offsetof(QXImageData, m_nHeight), 4U);
  EXPECT_EQ(offsetof(QXImageData, m_nPitch), 8U);
  EXPECT_EQ(offsetof(QXImageData, m_nBitDepth), 12U);
  EXPECT_EQ(offsetof(QXImageData, m_nCompression), 13U);
  EXPECT_EQ(offsetof(QXImageData, m_pPixels), 16U);
}

TEST(QXImageData, DoesNotFreeItsPixels) {
  unsigned char pixels[4] = {1, 2, 3, 4};
  auto* const pImage = new QXImageData;
  pImage->m_pPixels = pixels;
  delete pImage;
  EXPECT_EQ(pixels[3], 4);
}

TEST(QXImageData, IsClonedWithABlockOfItsOwn) {
  std::vector<unsigned char> bytes = Bytes(24);
  QXImageData image;
  image.m_nWidth = 2;
  image.m_nHeight = 3;
  image.m_nPitch = 8;
  image.m_nBitDepth = 24;
  image.m_nCompression = 19;
  image.m_pPixels = bytes.data();
  Clone const clone(image);
  EXPECT_EQ(clone.m_pRecord->m_nWidth, 2U);
  EXPECT_EQ(clone.m_pRecord->m_nHeight, 3U);
  EXPECT_EQ(clone.m_pRecord->m_nPitch, 8U);
  EXPECT_EQ(clone.m_pRecord->m_nBitDepth, 24);
  EXPECT_EQ(clone.m_pRecord->m_nCompression, 19);
  ASSERT_NE(clone.m_pBlock.get(), bytes.data());
  EXPECT_EQ(std::memcmp(clone.m_pBlock.get(), bytes.data(), 24), 0);
}

TEST(QXImageData, OfARawFileIsClonedByThePitchAlone) {
  std::vector<unsigned char> bytes = Bytes(10);
  QXImageData image;
  image.m_nWidth = image.m_nHeight = 1000;
  image.m_nPitch = 10;
  image.m_nBitDepth = IMAGE_BIT_DEPTH_RAW;
  image.m_pPixels = bytes.data();
  Clone const clone(image);
  EXPECT_EQ(std::memcmp(clone.m_pBlock.get(), bytes.data(), 10), 0);
  image.m_nWidth = image.m_nHeight = 0;
  Clone const unsized(image);
  EXPECT_EQ(std::memcmp(unsized.m_pBlock.get(), bytes.data(), 10), 0);
}

TEST(QXImageData, WithoutPixelsIsClonedWithoutPixels) {
  QXImageData image;
  image.m_nWidth = image.m_nHeight = 100;
  image.m_nPitch = 400;
  Clone const clone(image);
  EXPECT_EQ(clone.m_pRecord->m_pPixels, nullptr);
  EXPECT_EQ(clone.m_pRecord->m_nPitch, 400U);
}

TEST(QXImageData, OfNoLengthIsClonedWithABlock) {
  unsigned char pixel = 0;
  QXImageData image;
  image.m_pPixels = &pixel;
  Clone const clone(image);
  EXPECT_NE(clone.m_pBlock, nullptr);
  EXPECT_NE(clone.m_pBlock.get(), &pixel);
}

}  // namespace
