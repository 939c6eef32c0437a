/// @file
/// Rectangles in pixels and in the plane.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcPoint.h>

namespace QDC {

/// Pixel rectangle; all zeros by default.
struct QdcRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  constexpr QdcRect() = default;
  constexpr QdcRect(int nLeft, int nTop, int nRight, int nBottom)
      : left(nLeft), top(nTop), right(nRight), bottom(nBottom) {}
  constexpr bool operator==(QdcRect const&) const = default;

  /// Half open: left and top belong to the rectangle, right and bottom do not, so that of two rectangles sharing an
  /// edge never both contain a point.
  constexpr unsigned char PtInRect(QdcPoint const& point) const {
    return static_cast<unsigned char>(point.x >= left && point.x < right && point.y >= top && point.y < bottom);
  }
};

/// Rectangle of doubles; all zeros by default.
struct QdcRect2D {
  double left = 0.0;
  double top = 0.0;
  double right = 0.0;
  double bottom = 0.0;

  constexpr QdcRect2D() = default;
  constexpr QdcRect2D(double dLeft, double dTop, double dRight, double dBottom)
      : left(dLeft), top(dTop), right(dRight), bottom(dBottom) {}
  constexpr bool operator==(QdcRect2D const&) const = default;
};

}  // namespace QDC
