#include <plugins/ogre/environment/QXOgreFan.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include <plugins/ogre/environment/QXOgreRays.h>

namespace QXC {

namespace {

constexpr double PI = std::numbers::pi;
constexpr int STEPS = 8;

QXVector3d RayAt(QXOgreRays const& rays, double dX, double dY) {
  return {rays.m_vecRay.x + dX * rays.m_vecRayRight.x + dY * rays.m_vecRayUp.x,
      rays.m_vecRay.y + dX * rays.m_vecRayRight.y + dY * rays.m_vecRayUp.y,
      rays.m_vecRay.z + dX * rays.m_vecRayRight.z + dY * rays.m_vecRayUp.z};
}

/// Whether the view sees straight down or up: there is a place (x, y) inside the viewport whose ray is vertical.
bool SeesVertical(QXOgreRays const& rays) {
  QXVector3d const& r = rays.m_vecRayRight;
  QXVector3d const& u = rays.m_vecRayUp;
  double const dArea = r.x * u.y - r.y * u.x;
  if (dArea == 0.0) return false;
  double const dX = (-rays.m_vecRay.x * u.y + rays.m_vecRay.y * u.x) / dArea;
  double const dY = (-r.x * rays.m_vecRay.y + r.y * rays.m_vecRay.x) / dArea;
  return std::abs(dX) <= 1.0 && std::abs(dY) <= 1.0;
}

}  // namespace

QXOgreFan FindFan(QXOgreRays const& rays, double dMargin) {
  QXOgreFan const round{0.0, 2.0 * PI};
  if (SeesVertical(rays)) return round;
  double const dMiddle = std::atan2(rays.m_vecRay.x, rays.m_vecRay.y);
  double dLeast = 0.0;
  double dMost = 0.0;
  // Without the vertical inside, the edge has the outermost azimuths.
  for (int i = -STEPS; i <= STEPS; ++i) {
    double const d = static_cast<double>(i) / STEPS;
    for (QXVector3d const& vecRay :
        {RayAt(rays, d, -1.0), RayAt(rays, d, 1.0), RayAt(rays, -1.0, d), RayAt(rays, 1.0, d)}) {
      double const dAside = std::remainder(std::atan2(vecRay.x, vecRay.y) - dMiddle, 2.0 * PI);
      dLeast = std::min(dLeast, dAside);
      dMost = std::max(dMost, dAside);
    }
  }
  double const dAngle = dMost - dLeast + 2.0 * dMargin;
  if (!(dAngle < 1.6 * PI)) return round;
  return {dMiddle + dLeast - dMargin, dAngle};
}

}  // namespace QXC
