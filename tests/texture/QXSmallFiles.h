/// @file
/// Image files of one colour, written byte by byte.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace QXC {

inline void PutNumber(std::string& strBytes, std::uint64_t nValue, int nBytes) {
  for (int i = 0; i < nBytes; ++i, nValue >>= 8) strBytes.push_back(static_cast<char>(nValue & 0xFF));
}

inline void PutPixels(std::string& strBytes, unsigned int nCount, std::string const& strPixel) {
  for (unsigned int i = 0; i < nCount; ++i) strBytes += strPixel;
}

/// Targa of 32 bits, rows from top to bottom. strPixel: blue, green, red, alpha.
inline std::string MakeTarga(unsigned int nWidth, unsigned int nHeight, std::string const& strPixel) {
  std::string strBytes;
  PutNumber(strBytes, 0x020000, 3);  // no name, no palette, true colour
  PutNumber(strBytes, 0, 9);
  PutNumber(strBytes, nWidth, 2);
  PutNumber(strBytes, nHeight, 2);
  PutNumber(strBytes, 32, 1);
  PutNumber(strBytes, 0x28, 1);  // 8 bits of alpha, from the top
  PutPixels(strBytes, nWidth * nHeight, strPixel);
  return strBytes;
}

/// Windows bitmap of 24 bits; the width is a multiple of 4. strPixel: blue, green, red.
inline std::string MakeBitmap(unsigned int nWidth, unsigned int nHeight, std::string const& strPixel) {
  std::string strBytes = "BM";
  PutNumber(strBytes, 54 + std::uint64_t{nWidth} * nHeight * 3, 4);
  PutNumber(strBytes, 0, 4);
  PutNumber(strBytes, 54, 4);
  PutNumber(strBytes, 40, 4);
  PutNumber(strBytes, nWidth, 4);
  PutNumber(strBytes, nHeight, 4);
  PutNumber(strBytes, 1, 2);
  PutNumber(strBytes, 24, 2);
  PutNumber(strBytes, 0, 24);
  PutPixels(strBytes, nWidth * nHeight, strPixel);
  return strBytes;
}

/// KTX2 of red, green, blue, alpha bytes with all levels down to one pixel. strPixel: the same order.
inline std::string MakeKtx2(unsigned int nWidth, unsigned int nHeight, std::string const& strPixel) {
  struct Level {
    unsigned int m_nPixels;
    std::uint64_t m_nOffset;
  };
  std::vector<Level> vecLevels;
  for (unsigned int w = nWidth, h = nHeight;; w = std::max(w / 2, 1u), h = std::max(h / 2, 1u)) {
    vecLevels.push_back({w * h, 0});
    if (w == 1 && h == 1) break;
  }
  std::uint64_t const nDescription = 80 + 24 * vecLevels.size();
  // The smallest level comes first in the file.
  std::uint64_t nOffset = nDescription + 92;
  for (auto it = vecLevels.rbegin(); it != vecLevels.rend(); ++it) {
    it->m_nOffset = nOffset;
    nOffset += it->m_nPixels * 4;
  }
  std::string strBytes = "\xABKTX 20\xBB\r\n\x1A\n";
  for (std::uint64_t const nValue : {std::uint64_t{37}, std::uint64_t{1}, std::uint64_t{nWidth}, std::uint64_t{nHeight},
           std::uint64_t{0}, std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{vecLevels.size()}, std::uint64_t{0},
           nDescription, std::uint64_t{92}, std::uint64_t{0}, std::uint64_t{0}})
    PutNumber(strBytes, nValue, 4);
  PutNumber(strBytes, 0, 16);
  for (Level const& level : vecLevels) {
    PutNumber(strBytes, level.m_nOffset, 8);
    PutNumber(strBytes, level.m_nPixels * 4, 8);
    PutNumber(strBytes, level.m_nPixels * 4, 8);
  }
  // The description of the pixels: one basic block, linear colours of the common primaries, 4 bytes a pixel.
  for (std::uint64_t const nValue : {92u, 0u, 88u << 16 | 2u, 0x00010101u, 0u, 4u, 0u}) PutNumber(strBytes, nValue, 4);
  for (int nChannel = 0; nChannel < 4; ++nChannel) {
    PutNumber(strBytes, static_cast<std::uint64_t>(nChannel) * 8, 2);
    PutNumber(strBytes, 7, 1);
    PutNumber(strBytes, nChannel == 3 ? 15 : static_cast<std::uint64_t>(nChannel), 1);
    PutNumber(strBytes, 0, 8);
    PutNumber(strBytes, 255, 4);
  }
  for (auto it = vecLevels.rbegin(); it != vecLevels.rend(); ++it) PutPixels(strBytes, it->m_nPixels, strPixel);
  return strBytes;
}

}  // namespace QXC
