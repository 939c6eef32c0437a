#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include <algorithm>

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

}  // namespace QXC
