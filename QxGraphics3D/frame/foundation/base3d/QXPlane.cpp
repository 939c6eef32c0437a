#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>

namespace QXC {

double QXPlane::Normalize() {
  double const dLength = GetNormal().Length();
  if (dLength > 0.0) {
    for (double& dValue : m_dNormal) dValue /= dLength;
    m_dConstant /= dLength;
  }
  return dLength;
}

}  // namespace QXC
