#include <QxGraphics3D/frame/foundation/toolkit/QXImgToolkit.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace QXC;
using Bytes = std::vector<unsigned char>;

namespace {

/// An image that frees its block, whoever made it.
class Image : public QXImageData {
public:
  Image(unsigned int nWidth, unsigned int nHeight, unsigned char nBitDepth, unsigned int nPitch, Bytes const& bytes) {
    m_nWidth = nWidth;
    m_nHeight = nHeight;
    m_nBitDepth = nBitDepth;
    m_nPitch = nPitch;
    auto* const pBlock = new unsigned char[bytes.size()];
    std::copy(bytes.begin(), bytes.end(), pBlock);
    m_pPixels = pBlock;
  }
  Image(Image const&) = delete;
  Image& operator=(Image const&) = delete;
  ~Image() { delete[] static_cast<unsigned char*>(m_pPixels); }

  Bytes GetBytes() const {
    auto const* const p = static_cast<unsigned char const*>(m_pPixels);
    return Bytes(p, p + std::size_t{m_nPitch} * m_nHeight);
  }
};

void ExpectShape(QXImageData const& image, unsigned int nWidth, unsigned int nHeight, unsigned char nBitDepth) {
  EXPECT_EQ(image.m_nWidth, nWidth);
  EXPECT_EQ(image.m_nHeight, nHeight);
  EXPECT_EQ(image.m_nBitDepth, nBitDepth);
  EXPECT_EQ(image.m_nPitch, nWidth * nBitDepth / 8);
}

using ToRgba = unsigned char (*)(QXImageData&, unsigned char);

class QXImgToolkitRgba : public testing::TestWithParam<ToRgba> {};
INSTANTIATE_TEST_SUITE_P(
    Both, QXImgToolkitRgba, testing::Values(&QXImgToolkit::ImageDataToRGBA, &QXImgToolkit::ImageGIFToRGBA));

TEST_P(QXImgToolkitRgba, FillsColourBytesWithGray) {
  for (unsigned char const nBitDepth : Bytes{8, 80}) {
    Image image(2, 2, nBitDepth, 2, {10, 20, 30, 40});
    EXPECT_EQ(GetParam()(image, 200), 1);
    ExpectShape(image, 2, 2, 32);
    EXPECT_EQ(image.GetBytes(), (Bytes{10, 10, 10, 200, 20, 20, 20, 200, 30, 30, 30, 200, 40, 40, 40, 200}));
  }
}

TEST_P(QXImgToolkitRgba, AppendsAlphaToThreeBytes) {
  Image image(1, 2, 24, 3, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(GetParam()(image, 255), 1);
  ExpectShape(image, 1, 2, 32);
  EXPECT_EQ(image.GetBytes(), (Bytes{1, 2, 3, 255, 4, 5, 6, 255}));
}

TEST_P(QXImgToolkitRgba, KeepsTheBlockOf32BitsWithItsAlpha) {
  Image image(1, 2, 32, 4, {1, 2, 3, 4, 5, 6, 7, 8});
  void const* const pBlock = image.m_pPixels;
  EXPECT_EQ(GetParam()(image, 255), 1);
  EXPECT_EQ(image.m_pPixels, pBlock);
  ExpectShape(image, 1, 2, 32);
  EXPECT_EQ(image.GetBytes(), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_P(QXImgToolkitRgba, ClosesGapsBetweenRows) {
  Image gray(1, 2, 8, 4, {1, 0, 0, 0, 2, 0, 0, 0});
  EXPECT_EQ(GetParam()(gray, 255), 1);
  ExpectShape(gray, 1, 2, 32);
  EXPECT_EQ(gray.GetBytes(), (Bytes{1, 1, 1, 255, 2, 2, 2, 255}));
  Image narrow(1, 2, 24, 4, {1, 2, 3, 0, 4, 5, 6, 0});
  EXPECT_EQ(GetParam()(narrow, 255), 1);
  EXPECT_EQ(narrow.GetBytes(), (Bytes{1, 2, 3, 255, 4, 5, 6, 255}));
  Image wide(1, 2, 32, 5, {1, 2, 3, 4, 0, 5, 6, 7, 8, 0});
  EXPECT_EQ(GetParam()(wide, 255), 1);
  ExpectShape(wide, 1, 2, 32);
  EXPECT_EQ(wide.GetBytes(), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

/// Calls the operation on an image that it must refuse, and checks that nothing moved.
template <class Operation>
void ExpectRefused(QXImageData& image, Operation const& operation) {
  QXImageData const before = image;
  EXPECT_EQ(operation(image), 0);
  EXPECT_EQ(image.m_nWidth, before.m_nWidth);
  EXPECT_EQ(image.m_nHeight, before.m_nHeight);
  EXPECT_EQ(image.m_nPitch, before.m_nPitch);
  EXPECT_EQ(image.m_nBitDepth, before.m_nBitDepth);
  EXPECT_EQ(image.m_nCompression, before.m_nCompression);
  EXPECT_EQ(image.m_pPixels, before.m_pPixels);
}

template <class Operation>
void ExpectRefusesWhatIsNoPixels(Operation const& operation) {
  for (unsigned char const nBitDepth : Bytes{0, 1, 16, 48, 64, 255}) {
    Image image(3, 1, nBitDepth, 12, Bytes(12, 5));
    ExpectRefused(image, operation);
    EXPECT_EQ(image.GetBytes(), Bytes(12, 5));
  }
  QXImageData empty;
  empty.m_nBitDepth = 32;
  ExpectRefused(empty, operation);
  Image noWidth(0, 1, 24, 3, Bytes(3, 5));
  ExpectRefused(noWidth, operation);
  Image noHeight(1, 0, 24, 3, Bytes(3, 5));
  ExpectRefused(noHeight, operation);
  Image shortRows(3, 1, 24, 8, Bytes(9, 5));
  ExpectRefused(shortRows, operation);
  Image compressed(3, 1, 24, 9, Bytes(9, 5));
  compressed.m_nCompression = 14;
  ExpectRefused(compressed, operation);
}

TEST_P(QXImgToolkitRgba, RefusesWhatIsNoPixels) {
  ExpectRefusesWhatIsNoPixels([](QXImageData& image) { return GetParam()(image, 255); });
}

TEST_P(QXImgToolkitRgba, RefusesSizesThatDoNotFit) {
  auto const operation = [](QXImageData& image) { return GetParam()(image, 255); };
  // Four bytes a pixel: a row whose length passes 32 bits, and a block that no address space holds.
  Image longRows(0x40000000U, 1, 8, 0x40000000U, Bytes(1));
  ExpectRefused(longRows, operation);
  Image large(0x3FFFFFFFU, 0xFFFFFFFFU, 24, 0xC0000000U, Bytes(1));
  ExpectRefused(large, operation);
}

TEST(QXImgToolkit, PadsBehindThePictureWithItsEdges) {
  Image image(3, 3, 8, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  int nWidth = 0;
  int nHeight = 0;
  EXPECT_EQ(QXImgToolkit::ImageDataToPowerOfTwo(image, nWidth, nHeight, 255), 1);
  ExpectShape(image, 4, 4, 8);
  EXPECT_EQ(image.GetBytes(), (Bytes{1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 9, 9, 7, 8, 9, 9}));
  EXPECT_EQ(nWidth, 3);
  EXPECT_EQ(nHeight, 3);
}

TEST(QXImgToolkit, PadsColourAndAlphaOfTheEdge) {
  Image narrow(1, 3, 24, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  int nWidth = 0;
  int nHeight = 0;
  EXPECT_EQ(QXImgToolkit::ImageDataToPowerOfTwo(narrow, nWidth, nHeight, 255), 1);
  ExpectShape(narrow, 1, 4, 24);
  EXPECT_EQ(narrow.GetBytes(), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 7, 8, 9}));
  Image wide(3, 1, 32, 12, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0});
  EXPECT_EQ(QXImgToolkit::ImageDataToPowerOfTwo(wide, nWidth, nHeight, 255), 1);
  ExpectShape(wide, 4, 1, 32);
  EXPECT_EQ(wide.GetBytes(), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0, 9, 10, 11, 0}));
  EXPECT_EQ(nWidth, 3);
  EXPECT_EQ(nHeight, 1);
}

TEST(QXImgToolkit, KeepsTheBlockOfPowersOfTwo) {
  Image image(4, 2, 8, 4, {1, 2, 3, 4, 5, 6, 7, 8});
  void const* const pBlock = image.m_pPixels;
  int nWidth = 0;
  int nHeight = 0;
  EXPECT_EQ(QXImgToolkit::ImageDataToPowerOfTwo(image, nWidth, nHeight, 255), 1);
  EXPECT_EQ(image.m_pPixels, pBlock);
  ExpectShape(image, 4, 2, 8);
  EXPECT_EQ(nWidth, 4);
  EXPECT_EQ(nHeight, 2);
}

TEST(QXImgToolkit, ClosesGapsOfPowersOfTwo) {
  Image image(2, 2, 80, 3, {1, 2, 0, 3, 4, 0});
  int nWidth = 0;
  int nHeight = 0;
  EXPECT_EQ(QXImgToolkit::ImageDataToPowerOfTwo(image, nWidth, nHeight, 255), 1);
  ExpectShape(image, 2, 2, 8);
  EXPECT_EQ(image.GetBytes(), (Bytes{1, 2, 3, 4}));
}

TEST(QXImgToolkit, PadsAnOddSizeAsTheRuleSays) {
  constexpr unsigned int nFromWidth = 77;
  constexpr unsigned int nFromHeight = 35;
  for (unsigned int const nBytes : {1U, 3U, 4U}) {
    Bytes bytes(nFromWidth * nFromHeight * nBytes);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * 7 + i / 251);
    Image image(nFromWidth, nFromHeight, static_cast<unsigned char>(8 * nBytes), nFromWidth * nBytes, bytes);
    int nWidth = 0;
    int nHeight = 0;
    ASSERT_EQ(QXImgToolkit::ImageDataToPowerOfTwo(image, nWidth, nHeight, 255), 1);
    ExpectShape(image, 128, 64, static_cast<unsigned char>(8 * nBytes));
    Bytes const padded = image.GetBytes();
    for (unsigned int y = 0; y < 64; ++y) {
      for (unsigned int x = 0; x < 128; ++x) {
        std::size_t const nFrom = (std::min(y, nFromHeight - 1) * nFromWidth + std::min(x, nFromWidth - 1)) * nBytes;
        std::size_t const nTo = (y * 128 + x) * nBytes;
        for (unsigned int n = 0; n < nBytes; ++n) ASSERT_EQ(padded[nTo + n], bytes[nFrom + n]) << x << ", " << y;
      }
    }
  }
}

TEST(QXImgToolkit, RefusesToPadWhatIsNoPixels) {
  int nWidth = -7;
  int nHeight = -8;
  auto const operation = [&](QXImageData& image) {
    return QXImgToolkit::ImageDataToPowerOfTwo(image, nWidth, nHeight, 255);
  };
  ExpectRefusesWhatIsNoPixels(operation);
  // No power of two of 32 bits above, and rows whose length passes 32 bits.
  Image tall(1, 0x80000001U, 8, 1, Bytes(1));
  ExpectRefused(tall, operation);
  Image broad(0x40000001U, 1, 24, 0xC0000003U, Bytes(1));
  ExpectRefused(broad, operation);
  EXPECT_EQ(nWidth, -7);
  EXPECT_EQ(nHeight, -8);
}

}  // namespace
