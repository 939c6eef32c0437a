#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace QXC {

namespace {

/// A range of its own. The package class has no copy: its users share ranges more often than they double them.
std::unique_ptr<QXIndexPackage> CloneIndexPackage(QXIndexPackage const& source) {
  auto pCopy = std::make_unique<QXIndexPackage>();
  if (source.m_nIndexType == 1) {
    pCopy->SetIndexNum32(source.m_nIndexNum);
    std::copy_n(source.GetIndices32(), source.m_nIndexNum, pCopy->GetIndices32());
  } else {
    pCopy->SetIndexNum(source.m_nIndexNum);
    std::copy_n(source.GetIndices16(), source.m_nIndexNum, pCopy->GetIndices16());
  }
  pCopy->m_bFlag = source.m_bFlag;
  pCopy->m_arrPassNames = source.m_arrPassNames;
  pCopy->m_eOperationType = source.m_eOperationType;
  return pCopy;
}

}  // namespace

QXModelMesh::QXModelMesh(QXModelMesh const& other) {
  // Built in a member-wise complete object first, so that what a failing allocation leaves is freed.
  QXModelMesh copy;
  copy.m_strName = other.m_strName;
  copy.m_strMaterialName = other.m_strMaterialName;
  copy.m_bBaseColorSet = other.m_bBaseColorSet;
  copy.m_BaseColor = other.m_BaseColor;
  copy.m_EmissiveColor = other.m_EmissiveColor;
  copy.m_SpecularColor = other.m_SpecularColor;
  copy.m_dShininess = other.m_dShininess;
  copy.m_Texture = other.m_Texture;
  copy.m_Bounds = other.m_Bounds;
  if (other.m_pVertexPackage != nullptr) copy.m_pVertexPackage = new QXVertexDataPackage(*other.m_pVertexPackage);
  for (QXIndexPackage const* pSource : other.m_arrIndexPackages) {
    std::unique_ptr<QXIndexPackage> pPackage = CloneIndexPackage(*pSource);
    copy.m_arrIndexPackages.Add(pPackage.get());
    pPackage.release();
  }
  Swap(copy);
}

QXModelMesh& QXModelMesh::operator=(QXModelMesh const& other) {
  if (this != &other) {
    QXModelMesh copy(other);
    Swap(copy);
  }
  return *this;
}

QXModelMesh::~QXModelMesh() {
  delete m_pVertexPackage;
  for (QXIndexPackage* pPackage : m_arrIndexPackages) delete pPackage;
}

void QXModelMesh::Swap(QXModelMesh& other) {
  std::swap(m_strName, other.m_strName);
  std::swap(m_strMaterialName, other.m_strMaterialName);
  std::swap(m_bBaseColorSet, other.m_bBaseColorSet);
  std::swap(m_BaseColor, other.m_BaseColor);
  std::swap(m_EmissiveColor, other.m_EmissiveColor);
  std::swap(m_SpecularColor, other.m_SpecularColor);
  std::swap(m_dShininess, other.m_dShininess);
  std::swap(m_Texture, other.m_Texture);
  std::swap(m_pVertexPackage, other.m_pVertexPackage);
  std::swap(m_arrIndexPackages, other.m_arrIndexPackages);
  std::swap(m_Bounds, other.m_Bounds);
}

void QXModelMesh::UpdateBounds() {
  m_Bounds.SetNULL();
  if (m_pVertexPackage == nullptr || m_pVertexPackage->m_nVertexNum == 0) return;
  float const* pPosition = m_pVertexPackage->m_pVertices;
  float fMin[3] = {pPosition[0], pPosition[1], pPosition[2]};
  float fMax[3] = {pPosition[0], pPosition[1], pPosition[2]};
  for (unsigned int i = 0; i < m_pVertexPackage->m_nVertexNum; ++i, pPosition += 3) {
    for (int nAxis = 0; nAxis < 3; ++nAxis) {
      fMin[nAxis] = std::min(fMin[nAxis], pPosition[nAxis]);
      fMax[nAxis] = std::max(fMax[nAxis], pPosition[nAxis]);
    }
  }
  m_Bounds.SetExtents(
      QXVector3d(static_cast<double>(fMin[0]), static_cast<double>(fMin[1]), static_cast<double>(fMin[2])),
      QXVector3d(static_cast<double>(fMax[0]), static_cast<double>(fMax[1]), static_cast<double>(fMax[2])));
}

unsigned int QXModelMesh::GetTriangleCount() const {
  unsigned int nCount = 0;
  for (QXIndexPackage const* pPackage : m_arrIndexPackages)
    nCount += static_cast<unsigned int>(pPackage->m_nIndexNum) / 3u;
  return nCount;
}

}  // namespace QXC
