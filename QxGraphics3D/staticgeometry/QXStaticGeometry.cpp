#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <cstddef>
#include <limits>

namespace QXC {

namespace {

QXBoundingBox MakeBox(QXVertexDataPackage const& package) {
  double const dLimit = std::numeric_limits<double>::max();
  double dMin[3] = {dLimit, dLimit, dLimit};
  double dMax[3] = {-dLimit, -dLimit, -dLimit};
  float const* pVertex = package.m_pVertices;
  for (unsigned int vertex = 0; vertex < package.m_nVertexNum; ++vertex, pVertex += package.m_nVertexDim) {
    for (int axis = 0; axis < 3; ++axis) {
      double const dValue = pVertex[axis];
      if (dValue < dMin[axis]) dMin[axis] = dValue;
      if (dValue > dMax[axis]) dMax[axis] = dValue;
    }
  }
  return {QXVector3d(dMin[0], dMin[1], dMin[2]), QXVector3d(dMax[0], dMax[1], dMax[2])};
}

}  // namespace

QXStaticGeometry::QXStaticGeometry() = default;

QXStaticGeometry::QXStaticGeometry(QXStaticGeometry const& other) = default;

QXStaticGeometry& QXStaticGeometry::operator=(QXStaticGeometry const& other) = default;

QXStaticGeometry::~QXStaticGeometry() {
  for (auto* pBuckets : {&m_vecBuckets32, &m_vecBuckets16, &m_vecTypedBuckets32, &m_vecTypedBuckets16}) {
    for (QXStaticGeometryBucket* pBucket : *pBuckets) delete pBucket;
  }
}

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

QXBoundingSphere& QXStaticGeometry::GetBoundingSphere(unsigned char bCompute) {
  if (m_BoundingSphere.valid() || !bCompute) return m_BoundingSphere;
  QXBoundingBox box;
  CalculateBoundingSphere(m_vecBuckets32, box);
  CalculateBoundingSphere(m_vecBuckets16, box);
  CalculateBoundingSphere(m_vecTypedBuckets32, box);
  CalculateBoundingSphere(m_vecTypedBuckets16, box);
  m_BoundingSphere.SetCenter(box.GetCenter().MultiplyMatrix(m_matLocalView));
  m_BoundingSphere.SetRadius((box.GetMax() - box.GetMin()).Length() / 2.0);
  return m_BoundingSphere;
}

void QXStaticGeometry::CalculateBoundingSphere(std::vector<QXStaticGeometryBucket*> vecBuckets, QXBoundingBox& box) {
  for (QXStaticGeometryBucket const* pBucket : vecBuckets) {
    QXVertexDataPackage const* pPackage = pBucket ? pBucket->m_pVertexPackage : nullptr;
    if (!pPackage || !pPackage->m_pVertices || pPackage->m_nVertexNum == 0) continue;
    QXBoundingBox bucketBox = MakeBox(*pPackage);
    if (pPackage->m_nVertexNum == 1) {
      // A point would get a sphere of radius 0, which no picking ray hits.
      QXVector3d const margin(10.0, 10.0, 10.0);
      bucketBox.SetExtents(bucketBox.GetMin() - margin, bucketBox.GetMax() + margin);
    }
    box.Merge(bucketBox);
  }
}

}  // namespace QXC
