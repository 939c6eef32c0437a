#include <plugins/ogre/instancing/QXOgreMeshTriangles.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include <OgreHardwareIndexBuffer.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreVertexIndexData.h>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>

#include <plugins/ogre/QXOgreDrawable.h>

namespace QXC {

namespace {

/// The corners of a triangle among the indices of a range.
std::array<std::size_t, 3> CornersOf(int eOperationType, std::size_t nTriangle) {
  if (eOperationType == QX_OPERATION_TRIANGLE_STRIP) return {nTriangle, nTriangle + 1, nTriangle + 2};
  if (eOperationType == QX_OPERATION_TRIANGLE_FAN) return {0, nTriangle + 1, nTriangle + 2};
  return {3 * nTriangle, 3 * nTriangle + 1, 3 * nTriangle + 2};
}

/// Moeller and Trumbore, "Fast, Minimum Storage Ray/Triangle Intersection" (1997), for both sides of the triangle.
bool HitTriangle(std::array<QXVector3d, 3> const& arrCorners, QXVector3d const& vecOrigin,
    QXVector3d const& vecDirection, double& dDistance) {
  QXVector3d const vecFirst = arrCorners[1] - arrCorners[0];
  QXVector3d const vecSecond = arrCorners[2] - arrCorners[0];
  QXVector3d const vecAcross = vecDirection.CrossProduct(vecSecond);
  double const dDeterminant = vecFirst.DotProduct(vecAcross);
  if (dDeterminant == 0.0) return false;
  QXVector3d const vecToOrigin = vecOrigin - arrCorners[0];
  QXVector3d const vecNormal = vecToOrigin.CrossProduct(vecFirst);
  double const dU = vecToOrigin.DotProduct(vecAcross) / dDeterminant;
  double const dV = vecDirection.DotProduct(vecNormal) / dDeterminant;
  dDistance = vecSecond.DotProduct(vecNormal) / dDeterminant;
  return dU >= 0.0 && dV >= 0.0 && dU + dV <= 1.0 && dDistance >= 0.0;
}

}  // namespace

void QXOgreMeshTriangles::Follow(QXOgreDrawable const& mesh) {
  // A skeleton moves vertices without giving them another version, and lets them go back so.
  if (m_nVersion == mesh.GetGeometryVersion() && !mesh.GetSkeleton()) return;
  m_arrPositions.clear();
  m_arrTriangles.clear();
  ReadPositions(mesh.GetGeometry());
  std::vector<QXOgreRange> const& arrRanges = mesh.GetGeometry().GetRanges();
  for (std::size_t i = 0; i < arrRanges.size(); ++i) ReadRange(arrRanges[i], static_cast<std::uint32_t>(i));
  m_nVersion = mesh.GetSkeleton() ? 0 : mesh.GetGeometryVersion();
}

void QXOgreMeshTriangles::ReadPositions(QXOgreGeometry const& geometry) {
  Ogre::VertexData const* const pData = geometry.GetVertexData();
  if (!pData) return;
  Ogre::VertexElement const* const pElement = pData->vertexDeclaration->findElementBySemantic(Ogre::VES_POSITION);
  Ogre::HardwareVertexBufferSharedPtr const& pBuffer = pData->vertexBufferBinding->getBuffer(pElement->getSource());
  std::size_t const nNumbers = pBuffer->getVertexSize() / sizeof(float);
  std::vector<float> arrNumbers(nNumbers * pData->vertexCount);
  pBuffer->readData(0, arrNumbers.size() * sizeof(float), arrNumbers.data());
  m_arrPositions.reserve(pData->vertexCount);
  for (std::size_t i = 0; i < pData->vertexCount; ++i) {
    float const* const p = arrNumbers.data() + nNumbers * i;
    m_arrPositions.push_back(geometry.GetZero() + QXVector3d(p[0], p[1], p[2]));
  }
}

void QXOgreMeshTriangles::ReadRange(QXOgreRange const& range, std::uint32_t nRange) {
  if (range.m_nTriangleCount == 0) return;
  Ogre::HardwareIndexBuffer& buffer = *range.m_pIndexData->indexBuffer;
  std::size_t const nCount = range.m_pIndexData->indexCount;
  std::vector<std::uint32_t> arrIndices(nCount);
  if (buffer.getType() == Ogre::HardwareIndexBuffer::IT_32BIT) {
    buffer.readData(0, nCount * sizeof(std::uint32_t), arrIndices.data());
  } else {
    std::vector<std::uint16_t> arrNarrow(nCount);
    buffer.readData(0, nCount * sizeof(std::uint16_t), arrNarrow.data());
    std::copy(arrNarrow.begin(), arrNarrow.end(), arrIndices.begin());
  }
  for (std::size_t i = 0; i < range.m_nTriangleCount; ++i) {
    std::array<std::size_t, 3> const arrCorners = CornersOf(range.m_eOperationType, i);
    m_arrTriangles.push_back(
        {{arrIndices[arrCorners[0]], arrIndices[arrCorners[1]], arrIndices[arrCorners[2]]}, nRange});
  }
}

bool QXOgreMeshTriangles::Intersect(QXOgreDrawable const& mesh, QXMatrix4d const& matWorld, QXVector3d const& vecOrigin,
    QXVector3d const& vecDirection, double& dDistance) const {
  bool bHit = false;
  for (Triangle const& triangle : m_arrTriangles) {
    if (!mesh.IsRangeMet(triangle.m_nRange)) continue;
    std::array<QXVector3d, 3> arrCorners;
    for (std::size_t k = 0; k < 3; ++k)
      arrCorners[k] = m_arrPositions[triangle.m_nVertices[k]].MultiplyMatrix(matWorld);
    double dHere = 0.0;
    if (!HitTriangle(arrCorners, vecOrigin, vecDirection, dHere) || (bHit && !(dHere < dDistance))) continue;
    dDistance = dHere;
    bHit = true;
  }
  return bHit;
}

bool QXOgreMeshTriangles::MayHit(
    QXBoundingBox const& box, QXVector3d const& vecOrigin, QXVector3d const& vecDirection) {
  double const dOrigin[3] = {vecOrigin.x, vecOrigin.y, vecOrigin.z};
  double const dDirection[3] = {vecDirection.x, vecDirection.y, vecDirection.z};
  double dEnter = 0.0;
  double dLeave = std::numeric_limits<double>::infinity();
  for (int k = 0; k < 3; ++k) {
    // A hair more than the box: what lies flat in it must not be lost to rounding.
    double const dMargin = 1.0e-12 * std::max({std::abs(box.m_dMin[k]), std::abs(box.m_dMax[k]), std::abs(dOrigin[k])});
    double const dMin = box.m_dMin[k] - dMargin;
    double const dMax = box.m_dMax[k] + dMargin;
    if (dDirection[k] == 0.0) {
      if (dOrigin[k] < dMin || dOrigin[k] > dMax) return false;
      continue;
    }
    double const dFirst = (dMin - dOrigin[k]) / dDirection[k];
    double const dSecond = (dMax - dOrigin[k]) / dDirection[k];
    dEnter = std::max(dEnter, std::min(dFirst, dSecond));
    dLeave = std::min(dLeave, std::max(dFirst, dSecond));
  }
  return dEnter <= dLeave;
}

}  // namespace QXC
