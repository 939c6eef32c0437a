#include <QxGraphics3D/testing/QXNullGeometry.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

namespace QXC {
namespace {

template <class Index>
void CopyIndices(void const* pIndices, unsigned int nStart, unsigned int nCount, std::vector<unsigned int>& arrTo) {
  auto const* const pFirst = static_cast<Index const*>(pIndices) + nStart;
  arrTo.assign(pFirst, pFirst + nCount);
}

QXNullIndexRange CopyRange(QXVertexIndexPackage const& package) {
  QXNullIndexRange range;
  range.m_eOperationType = package.m_eOperationType;
  range.m_Color = package.m_Color;
  if (package.m_pIndices == nullptr) {
    return range;
  }
  if (package.m_nIndexType == 0) {
    CopyIndices<unsigned short>(package.m_pIndices, package.m_nStart, package.m_nIndexNum, range.m_arrIndices);
  } else if (package.m_nIndexType == 1) {
    CopyIndices<unsigned int>(package.m_pIndices, package.m_nStart, package.m_nIndexNum, range.m_arrIndices);
  }
  return range;
}

QXNullIndexRange CopyPackage(QXIndexPackage const& package, int nLevel, unsigned int nVertices) {
  QXNullIndexRange range;
  range.m_eOperationType = package.m_eOperationType;
  range.m_nLevel = nLevel;
  if (package.m_pIndices == nullptr || package.m_nIndexNum <= 0) {
    return range;
  }
  auto const nCount = static_cast<unsigned int>(package.m_nIndexNum);
  if (package.m_nIndexType == 0) {
    CopyIndices<unsigned short>(package.m_pIndices, 0, nCount, range.m_arrIndices);
  } else if (package.m_nIndexType == 1) {
    CopyIndices<unsigned int>(package.m_pIndices, 0, nCount, range.m_arrIndices);
  }
  if (std::any_of(range.m_arrIndices.begin(), range.m_arrIndices.end(),
          [nVertices](unsigned int nIndex) { return nIndex >= nVertices; })) {
    range.m_arrIndices.clear();
  }
  return range;
}

/// Whether an element of nSize floats lies inside the vertex.
bool IsInVertex(QXVertexBlock const& block, int nOffset, int nSize) {
  return nOffset >= 0 && nOffset + nSize <= block.m_nStride;
}

/// The entries of the i-th triangle. The turn of a strip's odd ones is left as it is: rays hit either side.
void GetTriangle(QXNullIndexRange const& range, unsigned int i, unsigned int nEntries[3]) {
  std::vector<unsigned int> const& arrIndices = range.m_arrIndices;
  switch (range.m_eOperationType) {
  case QX_OPERATION_TRIANGLE_STRIP:
    nEntries[0] = arrIndices[i];
    nEntries[1] = arrIndices[i + 1];
    nEntries[2] = arrIndices[i + 2];
    break;
  case QX_OPERATION_TRIANGLE_FAN:
    nEntries[0] = arrIndices[0];
    nEntries[1] = arrIndices[i + 1];
    nEntries[2] = arrIndices[i + 2];
    break;
  default:
    nEntries[0] = arrIndices[std::size_t{3} * i];
    nEntries[1] = arrIndices[std::size_t{3} * i + 1];
    nEntries[2] = arrIndices[std::size_t{3} * i + 2];
  }
}

/// Moeller and Trumbore, "Fast, Minimum Storage Ray/Triangle Intersection" (1997), without the culling of back faces.
bool HitsTriangle(
    QXVector3d const& vecOrigin, QXVector3d const& vecDirection, QXVector3d const vecCorners[3], double& dDistance) {
  QXVector3d const edge1 = vecCorners[1] - vecCorners[0];
  QXVector3d const edge2 = vecCorners[2] - vecCorners[0];
  QXVector3d const p = vecDirection.CrossProduct(edge2);
  double const determinant = edge1.DotProduct(p);
  if (determinant == 0.0) {
    return false;
  }
  QXVector3d const t = vecOrigin - vecCorners[0];
  double const u = t.DotProduct(p) / determinant;
  QXVector3d const q = t.CrossProduct(edge1);
  double const v = vecDirection.DotProduct(q) / determinant;
  dDistance = edge2.DotProduct(q) / determinant;
  return u >= 0.0 && v >= 0.0 && u + v <= 1.0 && dDistance >= 0.0;
}

}  // namespace

unsigned int QXNullIndexRange::GetTriangleCount() const {
  unsigned int const nEntries = static_cast<unsigned int>(m_arrIndices.size());
  switch (m_eOperationType) {
  case QX_OPERATION_TRIANGLE_LIST: return nEntries / 3;
  case QX_OPERATION_TRIANGLE_STRIP:
  case QX_OPERATION_TRIANGLE_FAN: return nEntries < 3 ? 0 : nEntries - 2;
  default: return 0;
  }
}

void QXNullGeometry::Clear() {
  m_arrPositions.clear();
  m_arrColors.clear();
  m_arrRanges.clear();
  m_arrLevelDistances.clear();
}

void QXNullGeometry::Set(QXRenderOperationMultiIndex const& operation) {
  Clear();
  QXVertexBlock const* const pBlock = operation.m_pVertexBlock;
  if (pBlock != nullptr && pBlock->m_pBuffer != nullptr && IsInVertex(*pBlock, pBlock->m_nPositionOffset, 3)) {
    bool const bColors = IsInVertex(*pBlock, pBlock->m_nColorOffset, 1);
    m_arrPositions.reserve(std::size_t{3} * pBlock->m_nVertexCount);
    for (unsigned int i = 0; i < pBlock->m_nVertexCount; ++i) {
      float const* const pVertex = pBlock->m_pBuffer + std::size_t{i} * pBlock->m_nStride;
      float const* const pPosition = pVertex + pBlock->m_nPositionOffset;
      m_arrPositions.insert(m_arrPositions.end(), pPosition, pPosition + 3);
      if (bColors) {
        unsigned int nColor = 0;
        std::memcpy(&nColor, pVertex + pBlock->m_nColorOffset, sizeof(nColor));
        m_arrColors.push_back(nColor);
      }
    }
  }
  for (QXVertexIndexPackage const* const pPackage : operation.GetIndexPackageArray()) {
    m_arrRanges.push_back(CopyRange(*pPackage));
  }
}

void QXNullGeometry::Set(QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances) {
  Clear();
  m_arrLevelDistances.assign(arrLevelDistances.begin(), arrLevelDistances.end());
  QXVertexDataPackage const* const pPackage = bucket.m_pVertexPackage;
  if (pPackage == nullptr || pPackage->m_pVertices == nullptr || pPackage->m_nVertexDim == 0) {
    return;
  }
  std::size_t const nDim = pPackage->m_nVertexDim;
  m_arrPositions.resize(std::size_t{3} * pPackage->m_nVertexNum, 0.0F);
  for (std::size_t i = 0; i < pPackage->m_nVertexNum; ++i) {
    std::copy_n(pPackage->m_pVertices + i * nDim, std::min<std::size_t>(nDim, 3), m_arrPositions.data() + 3 * i);
  }
  if (pPackage->m_pColors != nullptr && pPackage->m_nColorNum >= pPackage->m_nVertexNum) {
    m_arrColors.assign(pPackage->m_pColors, pPackage->m_pColors + pPackage->m_nVertexNum);
  }
  QXIndexPackage const none;
  for (auto const& [nLevel, vecPackages] : bucket.m_mapLevelIndices) {
    for (QXIndexPackage const* const pIndices : vecPackages) {
      m_arrRanges.push_back(CopyPackage(pIndices == nullptr ? none : *pIndices, nLevel, GetVertexCount()));
    }
  }
}

unsigned char QXNullGeometry::IsDrawn(QXNullIndexRange const& range, double dDistance) const {
  if (!range.IsDrawn()) {
    return 0;
  }
  if (m_arrLevelDistances.empty()) {
    return range.m_nLevel == 0;
  }
  if (range.m_nLevel < 0 || static_cast<std::size_t>(range.m_nLevel) >= m_arrLevelDistances.size()) {
    return 0;
  }
  auto const n = static_cast<std::size_t>(range.m_nLevel);
  return dDistance >= m_arrLevelDistances[n] &&
         (n + 1 == m_arrLevelDistances.size() || dDistance < m_arrLevelDistances[n + 1]);
}

void QXNullGeometry::Append(QXRenderOperation const& operation) {
  unsigned int const nFirst = GetVertexCount();
  if (operation.m_pVertices != nullptr) {
    std::size_t const nFloats = std::size_t{3} * operation.m_nVertexNum;
    m_arrPositions.insert(m_arrPositions.end(), operation.m_pVertices, operation.m_pVertices + nFloats);
  }
  // Colours are kept only while every vertex has one: a host that overwrites them counts vertices of the whole.
  if (operation.m_pDiffuseColors != nullptr && operation.m_nDiffuseColorNum >= operation.m_nVertexNum &&
      m_arrColors.size() == nFirst) {
    m_arrColors.insert(
        m_arrColors.end(), operation.m_pDiffuseColors, operation.m_pDiffuseColors + operation.m_nVertexNum);
  } else {
    m_arrColors.clear();
  }
  QXNullIndexRange range;
  // The operation's modes are the renderer's to interpret, and this one knows triangles.
  range.m_eOperationType = QX_OPERATION_TRIANGLE_LIST;
  range.m_Color = operation.m_Color0;
  if (operation.m_pIndices != nullptr) {
    CopyIndices<unsigned short>(operation.m_pIndices, 0, operation.m_nIndexNum, range.m_arrIndices);
    for (unsigned int& nIndex : range.m_arrIndices) {
      nIndex += nFirst;
    }
  }
  m_arrRanges.push_back(std::move(range));
}

QXVector3d QXNullGeometry::GetPosition(unsigned int nVertex) const {
  float const* const pPosition = m_arrPositions.data() + std::size_t{3} * nVertex;
  return QXVector3d(pPosition[0], pPosition[1], pPosition[2]);
}

QXBoundingBox QXNullGeometry::GetBounds() const {
  if (m_arrPositions.empty()) {
    return QXBoundingBox();
  }
  QXVector3d minimum = GetPosition(0);
  QXVector3d maximum = minimum;
  for (unsigned int i = 1; i < GetVertexCount(); ++i) {
    QXVector3d const position = GetPosition(i);
    minimum =
        QXVector3d(std::min(minimum.x, position.x), std::min(minimum.y, position.y), std::min(minimum.z, position.z));
    maximum =
        QXVector3d(std::max(maximum.x, position.x), std::max(maximum.y, position.y), std::max(maximum.z, position.z));
  }
  return QXBoundingBox(minimum, maximum);
}

unsigned char QXNullGeometry::Intersect(
    QXMatrix4d const& matModel, QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const {
  unsigned char bHit = 0;
  unsigned int const nVertices = GetVertexCount();
  for (QXNullIndexRange const& range : m_arrRanges) {
    unsigned int const nTriangles = range.m_bVisible ? range.GetTriangleCount() : 0;
    for (unsigned int i = 0; i < nTriangles; ++i) {
      unsigned int nEntries[3];
      GetTriangle(range, i, nEntries);
      if (std::max({nEntries[0], nEntries[1], nEntries[2]}) >= nVertices) {
        continue;
      }
      QXVector3d const vecCorners[3] = {GetPosition(nEntries[0]).MultiplyMatrix(matModel),
          GetPosition(nEntries[1]).MultiplyMatrix(matModel), GetPosition(nEntries[2]).MultiplyMatrix(matModel)};
      double dHit = 0.0;
      if (HitsTriangle(vecOrigin, vecDirection, vecCorners, dHit) && (!bHit || dHit < dDistance)) {
        dDistance = dHit;
        bHit = 1;
      }
    }
  }
  return bHit;
}

}  // namespace QXC
