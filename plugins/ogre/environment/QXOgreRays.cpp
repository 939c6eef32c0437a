#include <plugins/ogre/environment/QXOgreRays.h>

#include <cmath>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <plugins/ogre/QXOgreView.h>

namespace QXC {

namespace {

/// A point of the near plane, (x, y, -1), in homogeneous coordinates of the eye.
struct Point {
  Point(QXMatrix4d const& matUnproject, double dX, double dY) {
    double const dClip[4] = {dX, dY, -1.0, 1.0};
    double dPoint[4] = {};
    QXMatrix4d::MultMatrixVecd(&matUnproject.m[0][0], dClip, dPoint);
    m_vec = QXVector3d(dPoint[0], dPoint[1], dPoint[2]);
    m_dW = dPoint[3];
  }

  QXVector3d m_vec;
  double m_dW;
};

QXVector3d Scaled(QXVector3d const& vec, double d) {
  return {vec.x * d, vec.y * d, vec.z * d};
}

bool IsFinite(QXVector3d const& vec) {
  return std::isfinite(vec.x) && std::isfinite(vec.y) && std::isfinite(vec.z);
}

}  // namespace

bool FindRays(QXOgreView const& view, QXOgreRays& rays) {
  QXMatrix4d const matUnproject = view.m_matProjection.Invert();
  QXMatrix4d const matToWorld = view.m_matView.Invert();
  if (matUnproject == QXMatrix4d::ZERO || matToWorld == QXMatrix4d::ZERO) return false;
  QXMatrix4d matTurn = matToWorld;
  matTurn.SetTrans(QXVector3d::ZERO);
  rays = QXOgreRays();
  rays.m_vecEye = view.m_vecOrigin + QXVector3d::ZERO.MultiplyMatrix(matToWorld);
  rays.m_bParallel = view.m_matProjection[2][3] == 0.0;
  Point const middle(matUnproject, 0.0, 0.0);
  Point const right(matUnproject, 1.0, 0.0);
  Point const up(matUnproject, 0.0, 1.0);
  // Of a perspective view the homogeneous point is its direction from the eye, which is linear in x and y whatever the
  // near plane; its fourth number tells only which way along that.
  double const dScale = rays.m_bParallel ? 1.0 / middle.m_dW : std::copysign(1.0, middle.m_dW);
  QXVector3d const vecMiddle = Scaled(middle.m_vec, dScale).MultiplyMatrix(matTurn);
  QXVector3d const vecRight = Scaled(right.m_vec - middle.m_vec, dScale).MultiplyMatrix(matTurn);
  QXVector3d const vecUp = Scaled(up.m_vec - middle.m_vec, dScale).MultiplyMatrix(matTurn);
  (rays.m_bParallel ? rays.m_vecStart : rays.m_vecRay) = vecMiddle;
  (rays.m_bParallel ? rays.m_vecStartRight : rays.m_vecRayRight) = vecRight;
  (rays.m_bParallel ? rays.m_vecStartUp : rays.m_vecRayUp) = vecUp;
  if (rays.m_bParallel) rays.m_vecRay = (-QXVector3d::UNIT_Z).MultiplyMatrix(matTurn);
  return IsFinite(vecMiddle) && IsFinite(vecRight) && IsFinite(vecUp) && IsFinite(rays.m_vecEye);
}

}  // namespace QXC
