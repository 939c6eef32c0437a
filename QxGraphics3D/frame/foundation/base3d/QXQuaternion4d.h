/// @file
/// Quaternion for orientations.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

/// w + xi + yj + zk; the identity when default-constructed. Rotations are unit quaternions, and p * q applies q first.
class QXGRAPHICS3D_API QXQuaternion4d {
public:
  double w;
  double x;
  double y;
  double z;

  static const QXQuaternion4d IDENTITY;

  constexpr QXQuaternion4d() : w(1.0), x(0.0), y(0.0), z(0.0) {}
  constexpr QXQuaternion4d(double dW, double dX, double dY, double dZ) : w(dW), x(dX), y(dY), z(dZ) {}

  /// Exact comparison of the four values: q and -q turn alike and are not equal.
  constexpr bool operator==(QXQuaternion4d const& other) const {
    return w == other.w && x == other.x && y == other.y && z == other.z;
  }

  /// Rotation by an angle in radians, right-handed, about a unit axis.
  void FromAngleAxis(double const& dRadians, QXVector3d const& axis);
  /// Scales to length 1 in place. @return the former length; 0 leaves the quaternion as it is
  double Normalize();
  /// Writes the rotated unit vectors X, Y and Z into an array of three.
  void ToAxes(QXVector3d* pAxes) const;
  /// The rotated vector. The quaternion has to have length 1.
  QXVector3d operator*(QXVector3d const& vector) const;
  /// The rotation that applies the other one first.
  QXQuaternion4d operator*(QXQuaternion4d const& other) const;
};

}  // namespace QXC
