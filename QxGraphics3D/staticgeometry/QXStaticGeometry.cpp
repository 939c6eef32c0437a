#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

namespace QXC {

double QXStaticGeometry::GetVersion() const {
  return m_dVersion;
}

void QXStaticGeometry::SetVersion(double dVersion) {
  m_dVersion = dVersion;
}

QdcArray<int>& QXStaticGeometry::GetArrayID() {
  return m_arrID;
}

QXMatrix4d const& QXStaticGeometry::GetLocalViewMatrix() const {
  return m_matLocalView;
}

void QXStaticGeometry::SetLocalViewMatrix(QXMatrix4d& matLocalView) {
  m_matLocalView = matLocalView;
}

void QXStaticGeometry::SetBoundingSphere(QXBoundingSphere sphere) {
  m_BoundingSphere = sphere;
}

}  // namespace QXC
