/// @file
/// Plane with a positive and a negative side.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

/// The points p with normal . p + constant = 0; the normal points to the positive side.
/// Default-constructed it has normal 0 and constant 0: every point then has distance 0.
/// Cost: 32 bytes, four bare doubles in a row, so that culling takes two planes in one load.
class QXGRAPHICS3D_API QXPlane {
public:
  double m_dNormal[3];
  double m_dConstant;

  constexpr QXPlane() : m_dNormal{0.0, 0.0, 0.0}, m_dConstant(0.0) {}
  /// @param dConstant  added to normal . p, so it is minus the distance of the plane from the origin along the normal
  constexpr QXPlane(QXVector3d const& normal, double dConstant)
      : m_dNormal{normal.x, normal.y, normal.z}, m_dConstant(dConstant) {}

  constexpr QXVector3d GetNormal() const { return {m_dNormal[0], m_dNormal[1], m_dNormal[2]}; }
  /// The constant.
  constexpr double GetPlaneDistance() const { return m_dConstant; }
  /// normal . point + constant: the signed distance if the normal has length 1. Added up from left to right.
  constexpr double GetDistance(QXVector3d const& point) const {
    return m_dNormal[0] * point.x + m_dNormal[1] * point.y + m_dNormal[2] * point.z + m_dConstant;
  }
  /// Divides normal and constant by the normal's length. A normal of length 0 leaves the plane as it is.
  /// @return  the former length of the normal
  double Normalize();
};

}  // namespace QXC
