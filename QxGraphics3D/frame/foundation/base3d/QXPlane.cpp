#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>

namespace QXC {

double QXPlane::Normalize() {
  double const dLength = m_vecNormal.Length();
  if (dLength > 0.0) {
    m_vecNormal = {m_vecNormal.x / dLength, m_vecNormal.y / dLength, m_vecNormal.z / dLength};
    m_dConstant /= dLength;
  }
  return dLength;
}

}  // namespace QXC
