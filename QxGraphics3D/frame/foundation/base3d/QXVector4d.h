/// @file
/// Four doubles: a homogeneous point, or a vertex of up to four dimensions.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

/// A row vector of four doubles, zero when default-constructed.
class QXGRAPHICS3D_API QXVector4d {
public:
  double v[4];

  constexpr QXVector4d() : v{0.0, 0.0, 0.0, 0.0} {}
  constexpr QXVector4d(double dX, double dY, double dZ, double dW) : v{dX, dY, dZ, dW} {}

  /// Component 0 to 3; the index is not checked.
  constexpr double& operator[](int nIndex) { return v[nIndex]; }
  /// @copydoc operator[](int)
  constexpr double operator[](int nIndex) const { return v[nIndex]; }
};

}  // namespace QXC
