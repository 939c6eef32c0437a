#include <apps/qx3d/QXPose.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace QXApp {

namespace {

using QXC::QXVector3d;

constexpr double Pi = std::numbers::pi;

QXVector3d Scale(QXVector3d const& vec, double dFactor) {
  return QXVector3d(vec.x * dFactor, vec.y * dFactor, vec.z * dFactor);
}

/// The picture's axes in the world.
struct Axes {
  explicit Axes(QXPose const& pose) {
    QXC::QXQuaternion4d const orientation = pose.GetOrientation();
    m_vecRight = orientation * QXVector3d::UNIT_X;
    m_vecUp = orientation * QXVector3d::UNIT_Y;
    m_vecForward = orientation * -QXVector3d::UNIT_Z;
  }
  QXVector3d m_vecRight;
  QXVector3d m_vecUp;
  QXVector3d m_vecForward;
};

/// Of one axis of the picture: the nearest eye that sees all points between the two edges, and where it stands across.
/// A point at (across a, depth d) from the target lies inside if |a - x| <= tan * (distance + d), so the two extremes
/// of a - tan * d and -a - tan * d bound the distance, and the eye stands in their middle.
struct AxisFit {
  explicit AxisFit(double dTan) : m_dTan(dTan) {}
  void Add(double dAcross, double dDepth) {
    m_dUpper = std::max(m_dUpper, dAcross - m_dTan * dDepth);
    m_dLower = std::max(m_dLower, -dAcross - m_dTan * dDepth);
  }
  double GetDistance() const { return 0.5 * (m_dUpper + m_dLower) / m_dTan; }
  double GetAcross() const { return 0.5 * (m_dUpper - m_dLower); }

  double m_dTan;
  double m_dUpper = -1e300;
  double m_dLower = -1e300;
};

}  // namespace

QXC::QXQuaternion4d QXPose::GetOrientation() const {
  QXC::QXQuaternion4d yaw;
  yaw.FromAngleAxis(-m_dHeading, QXVector3d::UNIT_Z);
  QXC::QXQuaternion4d pitch;
  // A quarter turn lifts the look from straight down, where a camera starts, to the horizon in the north.
  pitch.FromAngleAxis(0.5 * Pi + m_dElevation, QXVector3d::UNIT_X);
  return yaw * pitch;
}

QXVector3d QXPose::GetDirection() const {
  return GetOrientation() * -QXVector3d::UNIT_Z;
}

QXVector3d QXPose::GetEye() const {
  return m_vecTarget - Scale(GetDirection(), m_dDistance);
}

bool QXPose::SetEyeAndTarget(QXVector3d const& vecEye, QXVector3d const& vecTarget) {
  QXVector3d const vecLook = vecTarget - vecEye;
  double const dLength = vecLook.Length();
  if (!(dLength > 0.0) || !std::isfinite(dLength)) return false;
  m_vecTarget = vecTarget;
  m_dDistance = dLength;
  m_dElevation = std::asin(std::clamp(vecLook.z / dLength, -1.0, 1.0));
  m_dHeading = vecLook.x == 0.0 && vecLook.y == 0.0 ? 0.0 : std::atan2(vecLook.x, vecLook.y);
  return true;
}

void QXPose::Orbit(double dHeading, double dElevation) {
  m_dHeading = std::remainder(m_dHeading + dHeading, 2.0 * Pi);
  m_dElevation = std::clamp(m_dElevation + dElevation, -0.5 * Pi, 0.5 * Pi);
}

void QXPose::Pan(double dRight, double dUp) {
  Axes const axes(*this);
  m_vecTarget = m_vecTarget + Scale(axes.m_vecRight, dRight * m_dDistance) + Scale(axes.m_vecUp, dUp * m_dDistance);
}

void QXPose::Zoom(double dFactor) {
  m_dDistance = std::clamp(m_dDistance * dFactor, 1e-6, 1e12);
}

QXPose FrameBox(
    QXC::QXBoundingBox const& box, double dHeading, double dElevation, double dFovY, double dAspect, double dMargin) {
  QXPose pose;
  pose.m_vecTarget = box.GetCenter();
  pose.m_dHeading = dHeading;
  pose.m_dElevation = dElevation;
  Axes const axes(pose);
  double const dTan = std::tan(0.5 * dFovY) / dMargin;
  AxisFit fitX(dTan * dAspect);
  AxisFit fitY(dTan);
  for (QXVector3d const& vecCorner : box.GetCorners()) {
    QXVector3d const vec = vecCorner - pose.m_vecTarget;
    fitX.Add(vec.DotProduct(axes.m_vecRight), vec.DotProduct(axes.m_vecForward));
    fitY.Add(vec.DotProduct(axes.m_vecUp), vec.DotProduct(axes.m_vecForward));
  }
  pose.m_dDistance = std::max(fitX.GetDistance(), fitY.GetDistance());
  if (!(pose.m_dDistance > 0.0)) pose.m_dDistance = 1.0;  // a box of one point
  pose.m_vecTarget =
      pose.m_vecTarget + Scale(axes.m_vecRight, fitX.GetAcross()) + Scale(axes.m_vecUp, fitY.GetAcross());
  return pose;
}

void ComputeNearFar(
    QXPose const& pose, QXC::QXBoundingBox const& box, double dGroundReach, double& dNear, double& dFar) {
  QXVector3d const vecEye = pose.GetEye();
  QXVector3d const vecForward = pose.GetDirection();
  double dMin = 1e300;
  double dMax = -1e300;
  for (QXVector3d const& vecCorner : box.GetCorners()) {
    double const dDepth = (vecCorner - vecEye).DotProduct(vecForward);
    dMin = std::min(dMin, dDepth);
    dMax = std::max(dMax, dDepth);
  }
  dFar = std::max({1.05 * dMax, pose.m_dDistance + dGroundReach, 1e-3 * pose.m_dDistance});
  // The ground at the lower edge of the picture lies nearer than the model; a fifth of the way to the target is nearer
  // than that from every elevation that shows the target on the ground.
  if (dGroundReach > 0.0) dMin = std::min(dMin, 0.2 * pose.m_dDistance);
  // A ten-thousandth of the range still leaves 24-bit depth steps of centimetres on a city.
  dNear = std::max(0.9 * dMin, 1e-4 * dFar);
}

QXC::QXMatrix4d MakePerspective(double dFovY, double dAspect, double dNear, double dFar) {
  double const dCot = 1.0 / std::tan(0.5 * dFovY);
  QXC::QXMatrix4d mat = QXC::QXMatrix4d::ZERO;
  mat[0][0] = dCot / dAspect;
  mat[1][1] = dCot;
  mat[2][2] = (dFar + dNear) / (dNear - dFar);
  mat[2][3] = -1.0;
  mat[3][2] = 2.0 * dFar * dNear / (dNear - dFar);
  return mat;
}

void GetViewAngles(int nView, double& dHeading, double& dElevation) {
  constexpr double Degree = Pi / 180.0;
  constexpr double Oblique = -37.0 * Degree;
  constexpr double Low = -8.0 * Degree;
  // Headings are the way the eye looks: the view from the south looks north. The oblique one is turned a little, so
  // that walls that run along the axes show two sides.
  constexpr double Angles[][2] = {{-20.0 * Degree, Oblique}, {0.0, -90.0 * Degree}, {0.0, Low}, {-90.0 * Degree, Low},
      {180.0 * Degree, Low}, {90.0 * Degree, Low}};
  constexpr int Named = static_cast<int>(sizeof Angles / sizeof Angles[0]);
  if (nView < Named) {
    dHeading = Angles[nView][0];
    dElevation = Angles[nView][1];
    return;
  }
  dHeading = std::remainder((-20.0 + 36.0 * (nView - Named + 1)) * Degree, 2.0 * Pi);
  dElevation = Oblique;
}

namespace {

/// A fraction of a side that a viewport truncates to the pixels meant: a quarter of a pixel above them, since a
/// fraction of exactly n / side times the side may come out below n.
double ToFraction(int nPixels, int nSide) {
  return (nPixels + 0.25) / nSide;
}

}  // namespace

QXCell GetViewCell(int nView, int nViews, int nWidth, int nHeight) {
  int const nRows = static_cast<int>(std::sqrt(static_cast<double>(nViews) + 0.5));
  int const nLonger = nViews % nRows;
  int nRow = 0;
  int nBefore = 0;
  int nInRow = nViews / nRows + (nLonger > 0 ? 1 : 0);
  while (nView >= nBefore + nInRow) {
    nBefore += nInRow;
    ++nRow;
    nInRow = nViews / nRows + (nRow < nLonger ? 1 : 0);
  }
  int const nLeft = nWidth * (nView - nBefore) / nInRow;
  int const nRight = nWidth * (nView - nBefore + 1) / nInRow;
  int const nBottom = nHeight - nHeight * (nRow + 1) / nRows;
  int const nTop = nHeight - nHeight * nRow / nRows;
  return QXCell{ToFraction(nLeft, nWidth), ToFraction(nBottom, nHeight), ToFraction(nRight - nLeft, nWidth),
      ToFraction(nTop - nBottom, nHeight)};
}

}  // namespace QXApp
