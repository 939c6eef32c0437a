/// @file
/// Pictures for tests.
#pragma once

#include <array>
#include <vector>

namespace QXApp {

/// Bytes of a TGA file, first row on top.
/// @param pixel  gives blue, green, red, alpha of column and row
template <class Pixel>
std::vector<unsigned char> MakeTga(int nWidth, int nHeight, Pixel pixel) {
  std::vector<unsigned char> vecBytes{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, static_cast<unsigned char>(nWidth & 0xFF),
      static_cast<unsigned char>(nWidth >> 8), static_cast<unsigned char>(nHeight & 0xFF),
      static_cast<unsigned char>(nHeight >> 8), 32, 0x28};
  for (int y = 0; y < nHeight; ++y)
    for (int x = 0; x < nWidth; ++x) {
      std::array<unsigned char, 4> const bytes = pixel(x, y);
      vecBytes.insert(vecBytes.end(), bytes.begin(), bytes.end());
    }
  return vecBytes;
}

/// One colour: blue, green, red, alpha.
inline std::vector<unsigned char> MakeTga(int nWidth, int nHeight, std::array<unsigned char, 4> const& bytes) {
  return MakeTga(nWidth, nHeight, [&](int, int) { return bytes; });
}

}  // namespace QXApp
