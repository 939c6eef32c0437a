#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>

#include <cmath>

namespace QXC {

// Constant-initialised: statics of other files copy it before any constructor of this file could have run.
constexpr QXQuaternion4d QXQuaternion4d::IDENTITY{1.0, 0.0, 0.0, 0.0};

void QXQuaternion4d::FromAngleAxis(double const& dRadians, QXVector3d const& axis) {
  double const dHalf = 0.5 * dRadians;
  double const dSine = std::sin(dHalf);
  *this = {std::cos(dHalf), dSine * axis.x, dSine * axis.y, dSine * axis.z};
}

double QXQuaternion4d::Normalize() {
  double const dLength = std::sqrt(w * w + x * x + y * y + z * z);
  if (dLength > 0.0) *this = {w / dLength, x / dLength, y / dLength, z / dLength};
  return dLength;
}

void QXQuaternion4d::ToAxes(QXVector3d* pAxes) const {
  pAxes[0] = *this * QXVector3d::UNIT_X;
  pAxes[1] = *this * QXVector3d::UNIT_Y;
  pAxes[2] = *this * QXVector3d::UNIT_Z;
}

QXVector3d QXQuaternion4d::operator*(QXVector3d const& vector) const {
  // v' = v + 2w (u x v) + 2 u x (u x v) with u = (x, y, z): q v q* multiplied out for a unit quaternion.
  QXVector3d const axis(x, y, z);
  QXVector3d const once = axis.CrossProduct(vector);
  QXVector3d const twice = axis.CrossProduct(once);
  return {vector.x + 2.0 * (w * once.x + twice.x), vector.y + 2.0 * (w * once.y + twice.y),
      vector.z + 2.0 * (w * once.z + twice.z)};
}

QXQuaternion4d QXQuaternion4d::operator*(QXQuaternion4d const& other) const {
  return {w * other.w - x * other.x - y * other.y - z * other.z, w * other.x + x * other.w + y * other.z - z * other.y,
      w * other.y - x * other.z + y * other.w + z * other.x, w * other.z + x * other.y - y * other.x + z * other.w};
}

}  // namespace QXC
