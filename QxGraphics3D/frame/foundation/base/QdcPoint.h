/// @file
/// Points of two and three coordinates.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QDC {

/// Pixel position; (0, 0) by default.
struct QdcPoint {
  int x = 0;
  int y = 0;

  constexpr QdcPoint() = default;
  constexpr QdcPoint(int nX, int nY) : x(nX), y(nY) {}
  constexpr bool operator==(QdcPoint const&) const = default;
};

/// Position in the plane; (0, 0) by default.
struct QdcPoint2D {
  double x = 0.0;
  double y = 0.0;

  constexpr QdcPoint2D() = default;
  constexpr QdcPoint2D(double dX, double dY) : x(dX), y(dY) {}
  constexpr bool operator==(QdcPoint2D const&) const = default;
};

/// Position in space; (0, 0, 0) by default.
struct QdcPoint3D {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  constexpr QdcPoint3D() = default;
  constexpr QdcPoint3D(double dX, double dY, double dZ) : x(dX), y(dY), z(dZ) {}
  constexpr bool operator==(QdcPoint3D const&) const = default;
};

}  // namespace QDC
