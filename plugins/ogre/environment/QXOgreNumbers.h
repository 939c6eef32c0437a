/// @file
/// Numbers of hosts as the programs can take them.
#pragma once

#include <algorithm>
#include <cmath>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

/// What is left of a number of turns or repeats, 0 to 1; 0 of what is no number.
inline double FractionOf(double d) {
  double const dPart = d - std::floor(d);
  return std::isfinite(dPart) ? dPart : 0.0;
}

/// A length in metres whose squares and quotients are numbers of the device.
inline float MetresOf(double d) {
  return static_cast<float>(std::clamp(d, -1.0e12, 1.0e12));
}

/// One channel of a colour, 0 to the most that counts; 0 of what is no number.
inline double ChannelOf(double d, double dMost) {
  return std::isfinite(d) ? std::clamp(d, 0.0, dMost) : 0.0;
}

/// Of length 1; zero where there is no direction.
inline QXVector3d UnitOf(QXVector3d const& vec) {
  double const dLargest = std::max({std::abs(vec.x), std::abs(vec.y), std::abs(vec.z)});
  if (!(dLargest > 0.0) || !std::isfinite(dLargest) || std::isnan(vec.x + vec.y + vec.z)) return QXVector3d::ZERO;
  // Squares of very large or small numbers are none.
  QXVector3d const vecScaled(vec.x / dLargest, vec.y / dLargest, vec.z / dLargest);
  double const dLength = vecScaled.Length();
  return {vecScaled.x / dLength, vecScaled.y / dLength, vecScaled.z / dLength};
}

}  // namespace QXC
