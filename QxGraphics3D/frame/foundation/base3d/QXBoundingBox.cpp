#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include <algorithm>
#include <limits>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

void QXBoundingBox::SetNULL() {
  *this = QXBoundingBox();
}

void QXBoundingBox::SetExtents(QXVector3d const& minimum, QXVector3d const& maximum) {
  *this = QXBoundingBox(minimum, maximum);
}

QXVector3d QXBoundingBox::GetCenter() const {
  return {(m_dMin[0] + m_dMax[0]) * 0.5, (m_dMin[1] + m_dMax[1]) * 0.5, (m_dMin[2] + m_dMax[2]) * 0.5};
}

std::array<QXVector3d, 8> QXBoundingBox::GetCorners() const {
  std::array<QXVector3d, 8> corners;
  for (unsigned int nCorner = 0; nCorner < 8; ++nCorner) {
    corners[nCorner] = {(nCorner & 1U) != 0 ? m_dMax[0] : m_dMin[0], (nCorner & 2U) != 0 ? m_dMax[1] : m_dMin[1],
        (nCorner & 4U) != 0 ? m_dMax[2] : m_dMin[2]};
  }
  return corners;
}

void QXBoundingBox::Merge(QXBoundingBox const& other) {
  if (other.IsNULL()) return;
  if (IsNULL()) {
    *this = other;
    return;
  }
  for (int nAxis = 0; nAxis < 3; ++nAxis) {
    m_dMin[nAxis] = std::min(m_dMin[nAxis], other.m_dMin[nAxis]);
    m_dMax[nAxis] = std::max(m_dMax[nAxis], other.m_dMax[nAxis]);
  }
}

QXBoundingBox QXBoundingBox::GetTransformed(QXMatrix4d const& mat) const {
  QXBoundingBox result;
  if (IsNULL()) return result;
  for (QXVector3d const& vecCorner : GetCorners()) {
    QXVector3d const vecPoint = vecCorner.MultiplyMatrix(mat);
    result.Merge(QXBoundingBox(vecPoint, vecPoint));
  }
  return result;
}

double QXBoundingBox::GetDistance(QXVector3d const& vecPoint) const {
  if (IsNULL()) return std::numeric_limits<double>::infinity();
  auto const outside = [this](int nAxis, double dValue) {
    return std::max({m_dMin[nAxis] - dValue, 0.0, dValue - m_dMax[nAxis]});
  };
  return QXVector3d(outside(0, vecPoint.x), outside(1, vecPoint.y), outside(2, vecPoint.z)).Length();
}

}  // namespace QXC
