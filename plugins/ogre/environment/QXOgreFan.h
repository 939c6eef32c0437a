/// @file
/// The part of an endless plane that a view may see.
#pragma once

namespace QXC {

struct QXOgreRays;

/// A sector around the point below the eye: where it begins, clockwise from north, and how wide it is, radians.
struct QXOgreFan {
  double m_dAzimuth = 0.0;
  double m_dAngle = 0.0;
};

/// Around everything that a perspective view sees, above the horizon too; all around where that is straight below or
/// above the eye.
/// @param dMargin  on both sides, radians
QXOgreFan FindFan(QXOgreRays const& rays, double dMargin);

}  // namespace QXC
