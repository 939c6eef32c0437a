#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

namespace QXC {

QXBoundingSphere::QXBoundingSphere(QXBoundingBox const& box) : m_dRadius(-1.0) {
  if (box.IsNULL()) return;
  m_vecCenter = box.GetCenter();
  m_dRadius = (box.GetMax() - box.GetMin()).Length() * 0.5;
}

void QXBoundingSphere::SetCenter(QXVector3d const& center) {
  m_vecCenter = center;
}

void QXBoundingSphere::SetRadius(double dRadius) {
  m_dRadius = dRadius;
}

}  // namespace QXC
