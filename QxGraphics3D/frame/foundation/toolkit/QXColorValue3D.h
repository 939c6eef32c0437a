/// @file
/// Colour of four doubles.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

/// Red, green, blue and alpha, nominally 0 to 1 and never clamped here; all 0 by default.
struct QXGRAPHICS3D_API QXColorValue3D {
  double r = 0.0;
  double g = 0.0;
  double b = 0.0;
  double a = 0.0;

  constexpr QXColorValue3D() = default;
  constexpr QXColorValue3D(double dRed, double dGreen, double dBlue, double dAlpha)
      : r(dRed), g(dGreen), b(dBlue), a(dAlpha) {}

  constexpr void SetValue(double dRed, double dGreen, double dBlue, double dAlpha) {
    r = dRed;
    g = dGreen;
    b = dBlue;
    a = dAlpha;
  }
  constexpr bool operator==(QXColorValue3D const&) const = default;

  static const QXColorValue3D White;  ///< 1, 1, 1, 1
  static const QXColorValue3D Black;  ///< 0, 0, 0, 1
};

}  // namespace QXC
