#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXRenderOperationSet.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/testing/QXNullRenderOperationManager.h>
#include <QxGraphics3D/testing/QXNullScene.h>
#include <QxGraphics3D/text/QXTextLayout.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

namespace QXC {

QXNullRenderOperation3D::QXNullRenderOperation3D(
    QXNullRenderOperationManager* pManager, std::shared_ptr<QXCallLog> pLog, std::string const& strLabel)
    : QXNullObject(std::move(pLog), strLabel), m_pManager(pManager) {}

QXNullRenderOperation3D::~QXNullRenderOperation3D() {
  Record("destroyed");
  if (m_pScene != nullptr) {
    m_pScene->Detach(this);
  }
  if (m_pManager != nullptr) {
    m_pManager->Forget(this);
  }
  ReleasePackageTextures();
  for (auto const& [nUnit, pTexture] : m_mapTextures) {
    pTexture->DecRef();
  }
}

// --- Place and state ---

void QXNullRenderOperation3D::SetName(QdcUnicodeString const& strName) {
  Record("SetName", strName);
  m_strName = strName;
}

void QXNullRenderOperation3D::SetBoundingBox(QXBoundingBox const& box) {
  Record("SetBoundingBox", box);
  m_Bounds = box;
  m_bBoundsGiven = 1;
}

QXMatrix4d QXNullRenderOperation3D::GetWorldMatrix() const {
  return m_pScene == nullptr || m_strNode.IsEmpty() ? m_matModel : m_matModel * m_pScene->GetNodeMatrix(m_strNode);
}

QXBoundingBox QXNullRenderOperation3D::GetWorldBoundingBox() const {
  return m_Bounds.GetTransformed(GetWorldMatrix());
}

void QXNullRenderOperation3D::SetModelMatrix(QXMatrix4d const& matModel) {
  Record("SetModelMatrix", matModel);
  m_matModel = matModel;
}

void QXNullRenderOperation3D::SetVisible(unsigned char bVisible) {
  Record("SetVisible", bVisible);
  m_bVisible = bVisible;
}

void QXNullRenderOperation3D::SetColor(QXColorValue3D const& color) {
  Record("SetColor", color);
  m_Color = color;
}

void QXNullRenderOperation3D::SetOpacity(double dOpacity) {
  Record("SetOpacity", dOpacity);
  m_dOpacity = dOpacity;
}

void QXNullRenderOperation3D::SetSelectionID(unsigned int nID) {
  Record("SetSelectionID", nID);
  m_nSelectionID = nID;
}

void QXNullRenderOperation3D::SetSelected(unsigned char bSelected) {
  Record("SetSelected", bSelected);
  m_bSelected = bSelected;
}

void QXNullRenderOperation3D::SetVisibleDistance(double dNear, double dFar) {
  Record("SetVisibleDistance", dNear, dFar);
  m_dNearDist = dNear;
  m_dFarDist = dFar;
}

void QXNullRenderOperation3D::SetRenderPriority(int nPriority) {
  Record("SetRenderPriority", nPriority);
  m_nPriority = nPriority;
}

unsigned char QXNullRenderOperation3D::IsDrawnFrom(QXVector3d const& vecEye, QXBoundingBox const& boxWorld) const {
  if (!m_bVisible) {
    return 0;
  }
  double const dDistance = (boxWorld.GetCenter() - vecEye).Length();
  auto const IsWithin = [dDistance](double dNear, double dFar) {
    return dDistance >= dNear && (dFar == 0.0 || dDistance <= dFar);
  };
  if (!IsWithin(m_dNearDist, m_dFarDist)) {
    return 0;
  }
  QXNullSceneNode const* const pNode =
      m_pScene == nullptr || m_strNode.IsEmpty() ? nullptr : m_pScene->FindNode(m_strNode);
  return static_cast<unsigned char>(
      pNode == nullptr || (pNode->m_bVisible && IsWithin(pNode->m_dNearDist, pNode->m_dFarDist)));
}

// --- Geometry ---

void QXNullRenderOperation3D::TakeGeometryBounds() {
  if (!m_bBoundsGiven) {
    m_Bounds = m_Geometry.GetBounds();
  }
}

void QXNullRenderOperation3D::TakePackageTextures(QXRenderOperationMultiIndex const& operation) {
  for (QXTexturePackage const* const pPackage : operation.GetTexturePackageArray()) {
    for (unsigned int i = 0; pPackage != nullptr && i < QXTexturePackage::UnitNum; ++i) {
      if (pPackage->m_pTextures[i] != nullptr) {
        pPackage->m_pTextures[i]->AddRef();
        m_arrPackageTextures.push_back(pPackage->m_pTextures[i]);
      }
    }
  }
}

void QXNullRenderOperation3D::TakePassTextures(QXStaticGeometryBucket const& bucket, QXTextureManager& textures) {
  for (auto const& [strKey, pPass] : bucket.m_mapPasses) {
    auto const nUnits = pPass == nullptr ? 0U : static_cast<unsigned int>(pPass->GetTextureUnitStatesSize());
    for (unsigned int i = 0; i < nUnits; ++i) {
      QXTextureUnitState const* const pUnit = pPass->GetTextureUnitState(i);
      textures.Lock();
      QXTexture* const pTexture = pUnit->IsBlank() ? nullptr : textures.GetTexture(pUnit->GetTextureName(), 0);
      if (pTexture != nullptr) {
        pTexture->AddRef();
        m_arrPackageTextures.push_back(pTexture);
      }
      textures.Unlock();
    }
  }
}

void QXNullRenderOperation3D::SetBucket(
    QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances, QXTextureManager* pTextures) {
  m_Geometry.Set(bucket, arrLevelDistances);
  std::vector<QXTexture*> arrFormer;
  arrFormer.swap(m_arrPackageTextures);
  if (pTextures != nullptr) {
    TakePassTextures(bucket, *pTextures);
  }
  // Afterwards, so that a texture that stays in use is never without a user in between.
  for (QXTexture* const pTexture : arrFormer) {
    pTexture->DecRef();
  }
  TakeGeometryBounds();
  Record("SetBucket", m_Geometry.GetVertexCount(), GetIndexRangeCount(), GetTriangleCount());
}

void QXNullRenderOperation3D::ReleasePackageTextures() {
  for (QXTexture* const pTexture : m_arrPackageTextures) {
    pTexture->DecRef();
  }
  m_arrPackageTextures.clear();
}

void QXNullRenderOperation3D::SetRenderOperation(QXRenderOperation const* pOperation) {
  Record("SetRenderOperation", pOperation == nullptr ? 0u : pOperation->m_nVertexNum,
      pOperation == nullptr ? 0u : pOperation->m_nIndexNum);
  m_Geometry.Clear();
  ReleasePackageTextures();
  if (pOperation != nullptr) {
    m_Geometry.Append(*pOperation);
  }
  TakeGeometryBounds();
}

void QXNullRenderOperation3D::SetRenderOperationMultiIndex(QXRenderOperationMultiIndex* pOperation) {
  std::vector<QXTexture*> arrFormer;
  arrFormer.swap(m_arrPackageTextures);
  if (pOperation == nullptr) {
    m_Geometry.Clear();
  } else {
    m_Geometry.Set(*pOperation);
    TakePackageTextures(*pOperation);
    // White is what an operation has that was given no colour.
    if (!(pOperation->m_Color == QXColorValue3D::White)) {
      m_Color = pOperation->m_Color;
    }
    if (pOperation->GetMatrix() != nullptr) {
      m_matModel = *pOperation->GetMatrix();
    }
  }
  // After the new references, so that a texture that stays in use is never without a user in between.
  for (QXTexture* const pTexture : arrFormer) {
    pTexture->DecRef();
  }
  TakeGeometryBounds();
  Record("SetRenderOperationMultiIndex", m_Geometry.GetVertexCount(), GetIndexRangeCount(), GetTriangleCount());
}

void QXNullRenderOperation3D::SetRenderOperationSet(QXRenderOperationSet const& set) {
  Record("SetRenderOperationSet", set.m_arrRenderOperations.GetSize());
  m_Geometry.Clear();
  ReleasePackageTextures();
  for (QXRenderOperation const* const pOperation : set.m_arrRenderOperations) {
    if (pOperation != nullptr) {
      m_Geometry.Append(*pOperation);
    }
  }
  TakeGeometryBounds();
}

void QXNullRenderOperation3D::ClearGeometry() {
  Record("ClearGeometry");
  m_Geometry.Clear();
  ReleasePackageTextures();
  TakeGeometryBounds();
}

unsigned int QXNullRenderOperation3D::GetTriangleCount() const {
  unsigned int nTriangles = 0;
  for (QXNullIndexRange const& range : m_Geometry.m_arrRanges) {
    nTriangles += range.GetTriangleCount();
  }
  return nTriangles;
}

unsigned int QXNullRenderOperation3D::GetIndexRangeCount() const {
  return static_cast<unsigned int>(m_Geometry.m_arrRanges.size());
}

unsigned int QXNullRenderOperation3D::GetDrawnRangeCount(double dDistance) const {
  unsigned int nRanges = 0;
  for (QXNullIndexRange const& range : m_Geometry.m_arrRanges) {
    nRanges += m_Geometry.IsDrawn(range, dDistance);
  }
  return nRanges;
}

unsigned int QXNullRenderOperation3D::GetDrawnTriangleCount(double dDistance) const {
  unsigned int nTriangles = 0;
  for (QXNullIndexRange const& range : m_Geometry.m_arrRanges) {
    nTriangles += m_Geometry.IsDrawn(range, dDistance) ? range.GetTriangleCount() : 0;
  }
  return nTriangles;
}

unsigned char QXNullRenderOperation3D::UpdatePositions(
    unsigned int nFirst, unsigned int nCount, float const* pPositions) {
  Record("UpdatePositions", nFirst, nCount);
  if (pPositions == nullptr || std::size_t{nFirst} + nCount > GetVertexCount()) {
    return 0;
  }
  std::copy_n(pPositions, std::size_t{3} * nCount, m_Geometry.m_arrPositions.data() + std::size_t{3} * nFirst);
  TakeGeometryBounds();
  return 1;
}

unsigned char QXNullRenderOperation3D::UpdateColors(
    unsigned int nFirst, unsigned int nCount, unsigned int const* pColors) {
  Record("UpdateColors", nFirst, nCount);
  if (pColors == nullptr || std::size_t{nFirst} + nCount > m_Geometry.m_arrColors.size()) {
    return 0;
  }
  std::copy_n(pColors, nCount, m_Geometry.m_arrColors.data() + nFirst);
  return 1;
}

void QXNullRenderOperation3D::SetIndexRangeVisible(unsigned int nRange, unsigned char bVisible) {
  Record("SetIndexRangeVisible", nRange, bVisible);
  if (nRange < GetIndexRangeCount()) {
    m_Geometry.m_arrRanges[nRange].m_bVisible = bVisible;
  }
}

void QXNullRenderOperation3D::SetIndexRangeColor(unsigned int nRange, QXColorValue3D const& color) {
  Record("SetIndexRangeColor", nRange, color);
  if (nRange < GetIndexRangeCount()) {
    m_Geometry.m_arrRanges[nRange].m_Color = color;
  }
}

void QXNullRenderOperation3D::SetTexture(unsigned int nUnit, QXTexture* pTexture) {
  Record("SetTexture", nUnit, QXLoggedMemory{pTexture});
  if (pTexture != nullptr) {
    pTexture->AddRef();
  }
  auto const former = m_mapTextures.find(nUnit);
  if (former != m_mapTextures.end()) {
    former->second->DecRef();
    m_mapTextures.erase(former);
  }
  if (pTexture != nullptr) {
    m_mapTextures.emplace(nUnit, pTexture);
  }
}

unsigned char QXNullRenderOperation3D::Intersect(
    QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const {
  return m_Geometry.Intersect(GetWorldMatrix(), vecOrigin, vecDirection, dDistance);
}

unsigned int QXNullRenderOperation3D::GetDeviceMemory() const {
  std::size_t nBytes =
      m_Geometry.m_arrPositions.size() * sizeof(float) + m_Geometry.m_arrColors.size() * sizeof(unsigned int);
  for (QXNullIndexRange const& range : m_Geometry.m_arrRanges) {
    nBytes += range.m_arrIndices.size() * sizeof(unsigned int);
  }
  return static_cast<unsigned int>(std::min<std::size_t>(nBytes, 0xFFFFFFFFu));
}

void QXNullRenderOperation3D::SetSkeletonAnimation(QXSkeletonAnimation* pAnimation) {
  Record("SetSkeletonAnimation", QXLoggedMemory{pAnimation});
  m_pAnimation = pAnimation;
}

unsigned char QXNullRenderOperation3D::SetShaderPrograms(
    QdcUnicodeString const& strVertex, QdcUnicodeString const& strFragment) {
  Record("SetShaderPrograms", strVertex, strFragment);
  bool const bLabels = strVertex == LABEL_VERTEX_PROGRAM && strFragment == LABEL_FRAGMENT_PROGRAM;
  return bLabels || (strVertex.IsEmpty() && strFragment.IsEmpty());
}

// --- State that only a picture would show: written down, and nothing else ---

void QXNullRenderOperation3D::SetSelectionColor(QXColorValue3D const& color) {
  Record("SetSelectionColor", color);
}
void QXNullRenderOperation3D::SetCastShadow(unsigned char bCast) {
  Record("SetCastShadow", bCast);
}
void QXNullRenderOperation3D::SetReceiveShadow(unsigned char bReceive) {
  Record("SetReceiveShadow", bReceive);
}
void QXNullRenderOperation3D::SetLightEnable(unsigned char bEnable) {
  Record("SetLightEnable", bEnable);
}
void QXNullRenderOperation3D::SetWireframe(unsigned char bWireframe) {
  Record("SetWireframe", bWireframe);
}
void QXNullRenderOperation3D::SetCullingMode(CullingMode eMode) {
  Record("SetCullingMode", eMode);
}
void QXNullRenderOperation3D::SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) {
  Record("SetTextureMatrix", nUnit, matTexture);
}
void QXNullRenderOperation3D::SetBatchState(QXBatchSelAndVertexColor const& state) {
  Record("SetBatchState", state.m_mapSelections.size(), state.m_mapVertexColors.size());
}
void QXNullRenderOperation3D::SetDepthTest(unsigned char bTest) {
  Record("SetDepthTest", bTest);
}
void QXNullRenderOperation3D::SetDepthWrite(unsigned char bWrite) {
  Record("SetDepthWrite", bWrite);
}
void QXNullRenderOperation3D::SetDepthBias(double dConstant, double dSlope) {
  Record("SetDepthBias", dConstant, dSlope);
}
void QXNullRenderOperation3D::SetLineWidth(double dPixels) {
  Record("SetLineWidth", dPixels);
}
void QXNullRenderOperation3D::SetPointSize(double dPixels) {
  Record("SetPointSize", dPixels);
}
void QXNullRenderOperation3D::SetClipPlanes(QXPlane const* pPlanes, unsigned int nCount) {
  Record("SetClipPlanes", QXLoggedMemory{pPlanes}, nCount);
}
void QXNullRenderOperation3D::SetRenderStatePass(RenderStateSet eState, QXPass& /*pass*/) {
  Record("SetRenderStatePass", eState);
}
void QXNullRenderOperation3D::RemoveRenderStatePass(RenderStateSet eState) {
  Record("RemoveRenderStatePass", eState);
}
void QXNullRenderOperation3D::SetPass(QXPass const* pPass) {
  Record("SetPass", QXLoggedMemory{pPass});
}
void QXNullRenderOperation3D::SetShaderParameter(QdcUnicodeString const& strName, QXVector4d const& vecValue) {
  Record("SetShaderParameter", strName, vecValue);
}
void QXNullRenderOperation3D::SetUniformBuffer(QXUniformBuffer* pBuffer) {
  Record("SetUniformBuffer", QXLoggedMemory{pBuffer});
}
void QXNullRenderOperation3D::SetMaterialSystemType(QXMaterialSystemType eType) {
  Record("SetMaterialSystemType", eType);
}

}  // namespace QXC
