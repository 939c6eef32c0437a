#include <QxGraphics3D/frame/foundation/base3d/QXOrientedBoundingBox.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>

#include <cmath>

namespace QXC {

QXOrientedBoundingBox::QXOrientedBoundingBox(QXBoundingBox const& box, QXMatrix4d const& transform)
    : m_vecCenter(box.GetCenter().MultiplyMatrix(transform)) {
  for (int nAxis = 0; nAxis < 3; ++nAxis) {
    double const dHalf = (box.m_dMax[nAxis] - box.m_dMin[nAxis]) * 0.5;
    m_vecHalfEdges[nAxis] = {dHalf * transform[nAxis][0], dHalf * transform[nAxis][1], dHalf * transform[nAxis][2]};
  }
}

unsigned char QXOrientedBoundingBox::IntersectPlane(QXPlane const& plane) const {
  // The corner farthest along the normal takes each half edge with the sign that brings it forward.
  double dReach = 0.0;
  for (QXVector3d const& halfEdge : m_vecHalfEdges) dReach += std::fabs(plane.GetNormal().DotProduct(halfEdge));
  return plane.GetDistance(m_vecCenter) + dReach < 0.0 ? 0 : 1;
}

}  // namespace QXC
