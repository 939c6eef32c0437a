#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>

#include <cmath>

namespace QXC {

// Constant-initialised: statics of other files copy them before any constructor of this file could have run.
constexpr QXVector3d QXVector3d::ZERO{0.0, 0.0, 0.0};
constexpr QXVector3d QXVector3d::UNIT_X{1.0, 0.0, 0.0};
constexpr QXVector3d QXVector3d::UNIT_Y{0.0, 1.0, 0.0};
constexpr QXVector3d QXVector3d::UNIT_Z{0.0, 0.0, 1.0};

double QXVector3d::Length() const {
  return std::sqrt(Length2());
}

QXVector3d& QXVector3d::Normalize() {
  double const dLength = Length();
  if (dLength > 0.0) {
    x /= dLength;
    y /= dLength;
    z /= dLength;
  }
  return *this;
}

QXVector3d QXVector3d::MultiplyMatrix(QXMatrix4d const& matrix) const {
  return MultiplyMatrix(*this, matrix);
}

QXVector3d QXVector3d::MultiplyMatrix(QXVector3d const& point, QXMatrix4d const& matrix) {
  auto const column = [&](int nColumn) {
    return point.x * matrix[0][nColumn] + point.y * matrix[1][nColumn] + point.z * matrix[2][nColumn] +
           matrix[3][nColumn];
  };
  return {column(0), column(1), column(2)};
}

namespace {

/// Half a turn about the axis, or about an axis perpendicular to the direction if the axis is zero.
QXQuaternion4d HalfTurn(QXVector3d const& direction, QXVector3d axis) {
  if (axis == QXVector3d::ZERO) {
    // The unit vector least aligned with the direction keeps the cross product far from zero.
    axis = std::fabs(direction.x) < 0.6 ? QXVector3d::UNIT_X.CrossProduct(direction)
                                        : QXVector3d::UNIT_Y.CrossProduct(direction);
    axis.Normalize();
  }
  return {0.0, axis.x, axis.y, axis.z};
}

}  // namespace

QXQuaternion4d QXVector3d::GetRotationTo(QXVector3d const& destination, QXVector3d const& fallback) const {
  QXVector3d from = *this;
  QXVector3d to = destination;
  from.Normalize();
  to.Normalize();
  if (from == ZERO || to == ZERO) return QXQuaternion4d::IDENTITY;
  double const dCosine = from.DotProduct(to);
  // Towards opposite directions the cross product loses its direction to rounding long before it is zero.
  if (dCosine < 1e-6 - 1.0) return HalfTurn(from, fallback);
  // (1 + cos, cross) is twice the cosine of half the angle times the wanted quaternion.
  QXVector3d const axis = from.CrossProduct(to);
  QXQuaternion4d rotation(1.0 + dCosine, axis.x, axis.y, axis.z);
  rotation.Normalize();
  return rotation;
}

}  // namespace QXC
