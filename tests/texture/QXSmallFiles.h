/// @file
/// Image files of one colour, written byte by byte.
#pragma once

#include <cstdint>
#include <string>

namespace QXC {

inline void PutNumber(std::string& strBytes, std::uint64_t nValue, int nBytes) {
  for (int i = 0; i < nBytes; ++i) strBytes.push_back(static_cast<char>(nValue >> (8 * i) & 0xFF));
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

}  // namespace QXC
