/// @file
/// Number helpers used everywhere.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <bit>
#include <limits>

namespace QDC {

/// 1 if the two differ by at most 1e-10, absolute. Equal infinities are equal, a NaN equals nothing.
constexpr unsigned char qdcequal(double dFirst, double dSecond) {
  if (dFirst == dSecond) return 1;  // infinities: their difference is a NaN
  double const difference = dFirst - dSecond;
  return static_cast<unsigned char>(difference <= 1e-10 && difference >= -1e-10);
}

/// 1 on a machine that stores the highest byte first.
constexpr unsigned char qdcbigendian() {
  return static_cast<unsigned char>(std::endian::native == std::endian::big);
}

/// Truncates towards zero; what an int cannot hold becomes the nearest int, a NaN becomes 0. A plain cast is undefined
/// there, and pixel rectangles and lengths computed from a hostile or degenerate matrix do leave the range.
constexpr int ToInt(double dValue) {
  if (!(dValue == dValue)) return 0;
  if (dValue >= static_cast<double>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
  if (dValue <= static_cast<double>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
  return static_cast<int>(dValue);
}

}  // namespace QDC
