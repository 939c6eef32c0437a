/// @file
/// Reading the pictures of tests/data/images.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

#include "QXTestPattern.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace qxtest {

using Bytes = std::vector<unsigned char>;

struct ImageDeleter {
  void operator()(QXC::QXImageData* pImage) const {
    delete[] static_cast<unsigned char*>(pImage->m_pPixels);
    delete pImage;
  }
};
using Image = std::unique_ptr<QXC::QXImageData, ImageDeleter>;

inline std::filesystem::path ImageFolder() {
  return std::filesystem::path(QX_SOURCE_DIR) / "tests/data/images";
}

inline Bytes FileBytes(std::string const& strName) {
  std::ifstream file(ImageFolder() / strName, std::ios::binary);
  EXPECT_TRUE(file.good()) << strName;
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

inline int TypeOf(std::string const& strName) {
  std::wstring const strExt = std::filesystem::path(strName).extension().wstring();
  return QXC::QXFileType::ExtNameToFileType(QXC::QdcUnicodeString(strExt.c_str()));
}

/// From a block of exactly these bytes, so that the address sanitizer sees a read past the end.
inline Image ReadBytes(
    int nType, unsigned char const* pBytes, std::size_t nSize, QXC::detail::QXImageLimits const& limits = {}) {
  std::unique_ptr<unsigned char[]> const pExact(new unsigned char[nSize]);
  std::copy_n(pBytes, nSize, pExact.get());
  return Image(QXC::detail::ReadImage(nType, pExact.get(), nSize, limits));
}

inline Image ReadBytes(int nType, Bytes const& arrBytes, QXC::detail::QXImageLimits const& limits = {}) {
  return ReadBytes(nType, arrBytes.data(), arrBytes.size(), limits);
}

inline Image ReadFile(std::string const& strName, QXC::detail::QXImageLimits const& limits = {}) {
  return ReadBytes(TypeOf(strName), FileBytes(strName), limits);
}

/// Names of all files in the folder that are images, bombs left out, in the order of their names.
inline std::vector<std::string> ImageNames() {
  std::vector<std::string> arrNames;
  for (auto const& entry : std::filesystem::directory_iterator(ImageFolder())) {
    std::string const strName = entry.path().filename().string();
    if (strName.rfind("bomb", 0) != 0 && TypeOf(strName) >= 0) arrNames.push_back(strName);
  }
  std::sort(arrNames.begin(), arrNames.end());
  return arrNames;
}

inline Bytes PixelsOf(QXC::QXImageData const& image) {
  auto const* pPixels = static_cast<unsigned char const*>(image.m_pPixels);
  return Bytes(pPixels, pPixels + std::size_t{image.m_nPitch} * image.m_nHeight);
}

/// What every record promises: a size, tight rows, one of three depths.
inline void ExpectWholeRecord(QXC::QXImageData const& image) {
  EXPECT_GT(image.m_nWidth, 0u);
  EXPECT_GT(image.m_nHeight, 0u);
  EXPECT_TRUE(image.m_nBitDepth == 8 || image.m_nBitDepth == 24 || image.m_nBitDepth == 32) << +image.m_nBitDepth;
  EXPECT_EQ(image.m_nPitch, image.m_nWidth * (image.m_nBitDepth / 8u));
  EXPECT_EQ(image.m_nCompression, 0);
  ASSERT_NE(image.m_pPixels, nullptr);
}

using PixelAt = std::function<Bgra(int x, int y)>;

/// Compares every byte. Of 8 bits the grey is that of the first channel.
inline void ExpectPicture(QXC::QXImageData const* pImage, int nWidth, int nHeight, int nBitDepth,
    PixelAt const& pixelAt, int nTolerance = 0) {
  ASSERT_NE(pImage, nullptr);
  ExpectWholeRecord(*pImage);
  ASSERT_EQ(pImage->m_nWidth, static_cast<unsigned int>(nWidth));
  ASSERT_EQ(pImage->m_nHeight, static_cast<unsigned int>(nHeight));
  ASSERT_EQ(pImage->m_nBitDepth, nBitDepth);
  auto const* pPixels = static_cast<unsigned char const*>(pImage->m_pPixels);
  for (int y = 0; y < nHeight; ++y) {
    for (int x = 0; x < nWidth; ++x) {
      Bgra const expected = pixelAt(x, y);
      for (std::size_t c = 0; c < static_cast<std::size_t>(nBitDepth) / 8; ++c) {
        ASSERT_NEAR(*pPixels++, expected[c], nTolerance) << "at " << x << ", " << y << " channel " << c;
      }
    }
  }
}

/// A picture of the pattern's size.
inline void ExpectPattern(QXC::QXImageData const* pImage, int nBitDepth, PixelAt const& pixelAt, int nTolerance = 0) {
  ExpectPicture(pImage, PATTERN_WIDTH, PATTERN_HEIGHT, nBitDepth, pixelAt, nTolerance);
}

inline PixelAt PatternOf(std::string const& strKind, int nDepth) {
  return [=](int x, int y) { return Pixel(strKind, nDepth, x, y); };
}

}  // namespace qxtest
