/// @file
/// The pattern of the pictures in tests/data/images, the formulas of make-images.py again.
#pragma once

#include <array>
#include <cmath>
#include <string>

namespace qxtest {

constexpr int PATTERN_WIDTH = 11;
constexpr int PATTERN_HEIGHT = 7;

/// Blue, green, red, alpha.
using Bgra = std::array<int, 4>;

inline int Grey(int x, int y) {
  return (x * 19 + y * 11) & 255;
}
inline int Red(int x, int y) {
  return (x * 23 + y * 5) & 255;
}
inline int Green(int x, int y) {
  return (x * 7 + y * 31 + 40) & 255;
}
inline int Blue(int x, int y) {
  return ((x * 3) ^ (y * 17)) & 255;
}
inline int Alpha(int x, int y) {
  if ((x + y) % 5 != 0) return (x * 29 + y * 13 + 1) & 255;
  return x % 2 != 0 ? 0 : 255;
}
inline int Index(int x, int y, int nColours) {
  return (x + 2 * y) % nColours;
}
inline Bgra Palette(int i) {
  return {(i * 7 + 1) & 255, (255 - i * 3) & 255, (i * 5 + 9) & 255, 255};
}
inline int PaletteAlpha(int i) {
  return (i * 37) & 255;
}

/// A channel of 8 or 16 bits as it stands in the file.
inline int Stored(int nValue, int nDepth, int x, int y, int nChannel) {
  return nDepth == 16 ? nValue << 8 | ((x * 37 + y * 91 + nChannel * 50) & 255) : nValue;
}
/// To 8 bits, rounded.
inline int Rounded(int nValue, int nMax) {
  return static_cast<int>(std::lround(nValue * 255.0 / nMax));
}

/// The pixel that a file of a kind (grey, greyalpha, rgb, rgba, palette) and depth shows.
inline Bgra Pixel(std::string const& strKind, int nDepth, int x, int y) {
  if (strKind == "palette") return Palette(Index(x, y, std::min(1 << nDepth, 200)));
  if (strKind == "grey" && nDepth < 8) {
    int const nGrey = Rounded(Index(x, y, 1 << nDepth), (1 << nDepth) - 1);
    return {nGrey, nGrey, nGrey, 255};
  }
  int const nMax = (1 << nDepth) - 1;
  auto const Channel = [&](int nValue, int nChannel) { return Rounded(Stored(nValue, nDepth, x, y, nChannel), nMax); };
  if (strKind[0] == 'g') {
    int const nGrey = Channel(Grey(x, y), 0);
    return {nGrey, nGrey, nGrey, strKind == "greyalpha" ? Channel(Alpha(x, y), 1) : 255};
  }
  return {Channel(Blue(x, y), 2), Channel(Green(x, y), 1), Channel(Red(x, y), 0),
      strKind == "rgba" ? Channel(Alpha(x, y), 3) : 255};
}

}  // namespace qxtest
