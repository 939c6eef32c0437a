/// @file
/// Sphere around an object.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

class QXBoundingBox;

/// Centre and radius. A sphere is valid when its radius is at least 0; a default-constructed one is not.
class QXGRAPHICS3D_API QXBoundingSphere {
public:
  QXVector3d m_vecCenter;
  double m_dRadius;

  constexpr QXBoundingSphere() : m_dRadius(-1.0) {}
  /// The sphere through the corners of a box; of a null box an invalid one.
  explicit QXBoundingSphere(QXBoundingBox const& box);

  constexpr QXVector3d& GetCenter() { return m_vecCenter; }
  constexpr QXVector3d const& GetCenter() const { return m_vecCenter; }
  constexpr double GetRadius() const { return m_dRadius; }
  void SetCenter(QXVector3d const& center);
  /// A negative radius makes the sphere invalid.
  void SetRadius(double dRadius);
  /// 1 if the radius is at least 0; 0 also for a radius that is not a number.
  constexpr unsigned char valid() const { return m_dRadius >= 0.0 ? 1 : 0; }
};

}  // namespace QXC
