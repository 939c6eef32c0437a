/// @file
/// Plane with a positive and a negative side.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

/// The points p with normal . p + constant = 0; the normal points to the positive side.
/// Default-constructed it has normal 0 and constant 0: every point then has distance 0.
class QXGRAPHICS3D_API QXPlane {
public:
  QXVector3d m_vecNormal;
  double m_dConstant;

  constexpr QXPlane() : m_dConstant(0.0) {}
  /// @param dConstant  added to normal . p, so it is minus the distance of the plane from the origin along the normal
  constexpr QXPlane(QXVector3d const& normal, double dConstant) : m_vecNormal(normal), m_dConstant(dConstant) {}

  constexpr QXVector3d const& GetNormal() const { return m_vecNormal; }
  /// The constant.
  constexpr double GetPlaneDistance() const { return m_dConstant; }
  /// normal . point + constant: the signed distance if the normal has length 1.
  constexpr double GetDistance(QXVector3d const& point) const { return m_vecNormal.DotProduct(point) + m_dConstant; }
  /// Divides normal and constant by the normal's length. A normal of length 0 leaves the plane as it is.
  /// @return  the former length of the normal
  double Normalize();
};

}  // namespace QXC
