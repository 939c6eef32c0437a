/// @file
/// KTX2 files of the tests: the samples, and files made to measure.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2Decoder.h>

#include "../QXTestFolder.h"

#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace qxtest {

using Bytes = std::vector<unsigned char>;

inline std::filesystem::path Ktx2Folder() {
  return std::filesystem::path(QX_SOURCE_DIR) / "tests/data/ktx2";
}

inline Bytes SampleBytes(std::string const& strName) {
  std::ifstream file(Ktx2Folder() / (strName + ".ktx2"), std::ios::binary);
  EXPECT_TRUE(file.good()) << strName;
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

/// Names of the sample files without extension, sorted.
inline std::vector<std::string> SampleNames() {
  std::vector<std::string> arrNames;
  for (auto const& entry : std::filesystem::directory_iterator(Ktx2Folder()))
    if (entry.path().extension() == ".ktx2") arrNames.push_back(entry.path().stem().string());
  std::sort(arrNames.begin(), arrNames.end());
  return arrNames;
}

/// What DecodeKTX2 gave; numbers that it left alone are -1.
struct Decoded {
  int m_nLength = -1;
  Bytes m_arrBytes;
  int m_nWidth = -1;
  int m_nHeight = -1;
  int m_nIgnored = -1;
  int m_nMipCount = -1;
  int m_nKind = -1;
  int m_nFormat = -1;
};

inline Decoded DecodeFile(std::filesystem::path const& path, int nOption = 4) {
  Decoded result;
  unsigned char nBefore = 0;
  unsigned char* pData = &nBefore;  // a failure must clear it
  result.m_nLength = QXC::QXImageOperator::DecodeKTX2(QXC::Wide(path), nOption, &pData, result.m_nWidth,
      result.m_nHeight, result.m_nIgnored, result.m_nMipCount, result.m_nKind, result.m_nFormat);
  std::unique_ptr<unsigned char[]> const pHolder(pData == &nBefore ? nullptr : pData);
  EXPECT_NE(pData, &nBefore);
  EXPECT_EQ(pData != nullptr, result.m_nLength > 0);
  if (pHolder != nullptr) result.m_arrBytes.assign(pHolder.get(), pHolder.get() + result.m_nLength);
  return result;
}

/// All levels of a file in memory, read from a block of exactly these bytes; empty if it is refused.
inline Bytes DecodeBytes(unsigned char const* pBytes, std::size_t nSize, QXC::detail::QXKtx2Limits const& limits = {}) {
  std::unique_ptr<unsigned char[]> const pExact(new unsigned char[nSize]);
  std::copy_n(pBytes, nSize, pExact.get());
  QXC::detail::QXKtx2File file;
  if (!file.Open(pExact.get(), nSize, limits)) return {};
  auto const pBlock = DecodeKtx2Levels(file, file.GetLevelCount(), limits);
  if (pBlock == nullptr) return {};
  return Bytes(pBlock.get(), pBlock.get() + file.GetDecodedSize(file.GetLevelCount()));
}
inline Bytes DecodeBytes(Bytes const& arrBytes, QXC::detail::QXKtx2Limits const& limits = {}) {
  return DecodeBytes(arrBytes.data(), arrBytes.size(), limits);
}

inline Bytes PackZlib(Bytes const& arrBytes) {
  uLongf nSize = compressBound(arrBytes.size());
  Bytes arrPacked(nSize);
  EXPECT_EQ(compress(arrPacked.data(), &nSize, arrBytes.data(), arrBytes.size()), Z_OK);
  arrPacked.resize(nSize);
  return arrPacked;
}
inline Bytes PackZstandard(Bytes const& arrBytes) {
  Bytes arrPacked(ZSTD_compressBound(arrBytes.size()));
  arrPacked.resize(ZSTD_compress(arrPacked.data(), arrPacked.size(), arrBytes.data(), arrBytes.size(), 3));
  return arrPacked;
}

inline void Store32(Bytes& arrBytes, std::size_t nPlace, std::uint32_t nValue) {
  for (std::size_t i = 0; i < 4; ++i) arrBytes.at(nPlace + i) = static_cast<unsigned char>(nValue >> (8 * i));
}
inline void Store64(Bytes& arrBytes, std::size_t nPlace, std::uint64_t nValue) {
  Store32(arrBytes, nPlace, static_cast<std::uint32_t>(nValue));
  Store32(arrBytes, nPlace + 4, static_cast<std::uint32_t>(nValue >> 32));
}
inline std::uint32_t Fetch32(Bytes const& arrBytes, std::size_t nPlace) {
  std::uint32_t nValue = 0;
  for (std::size_t i = 4; i-- > 0;) nValue = nValue << 8 | arrBytes.at(nPlace + i);
  return nValue;
}

/// A file by its fields; the numbers of formats and models are those of the format's texts.
struct Ktx2Maker {
  std::uint32_t m_nFormat = 37;
  std::uint32_t m_nWidth = 2;
  std::uint32_t m_nHeight = 2;
  std::uint32_t m_nDepth = 0;
  std::uint32_t m_nLayers = 0;
  std::uint32_t m_nFaces = 1;
  std::uint32_t m_nLevels = 1;
  std::uint32_t m_nScheme = 0;
  unsigned char m_nModel = 1;
  std::vector<unsigned char> m_arrChannels = {0, 1, 2, 15};
  /// Level 0 first, not packed.
  std::vector<Bytes> m_arrLevels;
  Bytes m_arrGlobalData;

  Bytes Pack(Bytes const& arrLevel) const {
    return m_nScheme == 2 ? PackZstandard(arrLevel) : m_nScheme == 3 ? PackZlib(arrLevel) : arrLevel;
  }

  /// Packs the levels as the scheme says and puts the smallest first, as files have them.
  Bytes Make() const {
    static constexpr unsigned char identifier[12] = {0xAB, 'K', 'T', 'X', ' ', '2', '0', 0xBB, '\r', '\n', 26, '\n'};
    Bytes arrFile(std::begin(identifier), std::end(identifier));
    arrFile.resize(80 + 24 * m_arrLevels.size());
    std::uint32_t const fields[] = {
        m_nFormat, 1, m_nWidth, m_nHeight, m_nDepth, m_nLayers, m_nFaces, m_nLevels, m_nScheme};
    for (std::size_t i = 0; i < 9; ++i) Store32(arrFile, 12 + 4 * i, fields[i]);
    AddDescriptor(arrFile);
    if (!m_arrGlobalData.empty()) {
      Store64(arrFile, 64, arrFile.size());
      Store64(arrFile, 72, m_arrGlobalData.size());
      arrFile.insert(arrFile.end(), m_arrGlobalData.begin(), m_arrGlobalData.end());
    }
    for (std::size_t nLevel = m_arrLevels.size(); nLevel-- > 0;) {
      Bytes const arrPacked = Pack(m_arrLevels[nLevel]);
      Store64(arrFile, 80 + 24 * nLevel, arrFile.size());
      Store64(arrFile, 88 + 24 * nLevel, arrPacked.size());
      Store64(arrFile, 96 + 24 * nLevel, m_nScheme == 1 ? 0 : m_arrLevels[nLevel].size());
      arrFile.insert(arrFile.end(), arrPacked.begin(), arrPacked.end());
    }
    return arrFile;
  }

private:
  void AddDescriptor(Bytes& arrFile) const {
    std::size_t const nAt = arrFile.size();
    std::size_t const nBlock = 24 + 16 * m_arrChannels.size();
    arrFile.resize(nAt + 4 + nBlock);
    Store32(arrFile, 48, static_cast<std::uint32_t>(nAt));
    Store32(arrFile, 52, static_cast<std::uint32_t>(4 + nBlock));
    Store32(arrFile, nAt, static_cast<std::uint32_t>(4 + nBlock));
    Store32(arrFile, nAt + 8, static_cast<std::uint32_t>(2 | nBlock << 16));
    arrFile[nAt + 12] = m_nModel;
    for (std::size_t i = 0; i < m_arrChannels.size(); ++i) arrFile[nAt + 28 + 16 * i + 3] = m_arrChannels[i];
  }
};

/// Bytes that repeat late: 0, 1, 2, ... with a step of 7 between rows of 16.
inline Bytes CountedBytes(std::size_t nSize) {
  Bytes arrBytes(nSize);
  for (std::size_t i = 0; i < nSize; ++i) arrBytes[i] = static_cast<unsigned char>(i + i / 16 * 7);
  return arrBytes;
}

}  // namespace qxtest
