/// @file
/// Three-dimensional vector and point.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

class QXMatrix4d;
class QXQuaternion4d;

/// A vector or point of three doubles. Vectors are rows: they stand left of a matrix.
/// Cost: 32 bytes, a quarter of them the virtual table's pointer; streams of points keep bare doubles instead.
class QXGRAPHICS3D_API QXVector3d {
public:
  double x;
  double y;
  double z;

  static const QXVector3d ZERO;
  static const QXVector3d UNIT_X;
  static const QXVector3d UNIT_Y;
  static const QXVector3d UNIT_Z;

  constexpr QXVector3d() : x(0.0), y(0.0), z(0.0) {}
  constexpr QXVector3d(double dX, double dY, double dZ) : x(dX), y(dY), z(dZ) {}
  constexpr QXVector3d(QXVector3d const& other) = default;
  constexpr QXVector3d& operator=(QXVector3d const& other) = default;
  // With a body, not defaulted: g++ 12 refuses a defaulted one in the constant initialisation of ZERO.
  constexpr virtual ~QXVector3d() {}

  constexpr QXVector3d operator+(QXVector3d const& other) const { return {x + other.x, y + other.y, z + other.z}; }
  constexpr QXVector3d operator-(QXVector3d const& other) const { return {x - other.x, y - other.y, z - other.z}; }
  constexpr QXVector3d operator-() const { return {-x, -y, -z}; }
  /// Exact comparison, without tolerance.
  constexpr bool operator==(QXVector3d const& other) const { return x == other.x && y == other.y && z == other.z; }

  double Length() const;
  /// Squared length.
  constexpr double Length2() const { return x * x + y * y + z * z; }
  /// Scales to length 1 in place and returns this object. The zero vector stays zero.
  QXVector3d& Normalize();
  constexpr double DotProduct(QXVector3d const& other) const { return x * other.x + y * other.y + z * other.z; }
  /// this x other, right-handed.
  constexpr QXVector3d CrossProduct(QXVector3d const& other) const {
    return {y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x};
  }

  /// The point (x, y, z, 1) times the matrix. The matrix's fourth column is not read: no division by w.
  QXVector3d MultiplyMatrix(QXMatrix4d const& matrix) const;
  /// @copydoc MultiplyMatrix(QXMatrix4d const&) const
  static QXVector3d MultiplyMatrix(QXVector3d const& point, QXMatrix4d const& matrix);

  /// The shortest rotation that turns this direction into another one.
  /// @param destination  any length but zero; so is this vector
  /// @param fallback     unit axis of the half turn that is taken when the two are opposite; zero: an axis
  ///                     perpendicular to this vector is chosen
  /// @return  a unit quaternion; the identity if the directions agree or one of them is zero
  QXQuaternion4d GetRotationTo(QXVector3d const& destination, QXVector3d const& fallback) const;
};

}  // namespace QXC
