/// @file
/// Colours packed into one word, 0xAABBGGRR: on a little-endian machine the bytes in memory are red, green, blue, alpha.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QDC {

constexpr unsigned int QDCRGBA(unsigned char nRed, unsigned char nGreen, unsigned char nBlue, unsigned char nAlpha) {
  return static_cast<unsigned int>(nRed) | static_cast<unsigned int>(nGreen) << 8 |
         static_cast<unsigned int>(nBlue) << 16 | static_cast<unsigned int>(nAlpha) << 24;
}
constexpr unsigned char QDCREDVAL(unsigned int nColor) {
  return static_cast<unsigned char>(nColor & 0xFFu);
}
constexpr unsigned char QDCGREENVAL(unsigned int nColor) {
  return static_cast<unsigned char>(nColor >> 8 & 0xFFu);
}
constexpr unsigned char QDCBLUEVAL(unsigned int nColor) {
  return static_cast<unsigned char>(nColor >> 16 & 0xFFu);
}
constexpr unsigned char QDCALPHAVAL(unsigned int nColor) {
  return static_cast<unsigned char>(nColor >> 24 & 0xFFu);
}

}  // namespace QDC
