#include <QxGraphics3D/testing/QXNullHwInstancingManager.h>

#include <algorithm>
#include <cstddef>

#include <QxGraphics3D/model/QXRenderObjectInstance.h>
#include <QxGraphics3D/model/QXRenderOperationInstance.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullScene.h>

namespace QXC {

// --- One mesh at many places ---

QXNullInstancing::QXNullInstancing(std::shared_ptr<QXCallLog> pLog, std::string strLabel, QXNullScene* pScene)
    : QXNullObject(std::move(pLog), std::move(strLabel)), m_pScene(pScene) {
  m_pScene->AddInstancing(this);
}

QXNullInstancing::~QXNullInstancing() {
  Record("destroyed");
  if (m_pScene != nullptr) {
    m_pScene->RemoveInstancing(this);
  }
}

void QXNullInstancing::UpdateInstances() {
  Record("UpdateInstances");
  m_arrPlacements.clear();
  for (QXRenderOperationInstance const* const pInstance : m_arrInstances) {
    if (pInstance == nullptr) {
      continue;
    }
    for (QXMatrix4d const* const pMatrix : pInstance->GetMatrixArray()) {
      if (pMatrix != nullptr) {
        m_arrPlacements.emplace_back().m_matPlacement = *pMatrix;
      }
    }
  }
}

void QXNullInstancing::SetMesh(QXRenderOperationMultiIndex* pMesh) {
  m_pMesh = nullptr;
  m_pSharedMesh.SetNull();
  m_pOwnMesh.reset();
  if (pMesh != nullptr) {
    m_pOwnMesh = std::make_unique<QXNullRenderOperation3D>(nullptr, m_pLog, GetLabel() + " mesh");
    m_pOwnMesh->SetRenderOperationMultiIndex(pMesh);
    m_pMesh = m_pOwnMesh.get();
  }
}

unsigned char QXNullInstancing::SetSharedMesh(QXROInstancePtr const& pMesh) {
  auto* const pDrawable =
      pMesh.IsNull() ? nullptr : dynamic_cast<QXNullRenderOperation3D*>(pMesh->GetRenderOperation3D());
  if (!pMesh.IsNull() && pDrawable == nullptr) {
    return 0;
  }
  SetMesh(nullptr);
  m_pSharedMesh = pMesh;
  m_pMesh = pDrawable;
  return 1;
}

QXMatrix4d QXNullInstancing::GetWorldMatrix(QXNullPlacement const& placement) const {
  QXMatrix4d const matMesh = m_pMesh == nullptr ? QXMatrix4d::IDENTITY : m_pMesh->GetModelMatrix();
  return matMesh * placement.m_matPlacement * m_matModel;
}

QXBoundingBox QXNullInstancing::GetPlacementBounds(QXNullPlacement const& placement) const {
  return m_pMesh == nullptr ? QXBoundingBox() : m_pMesh->GetBoundingBox().GetTransformed(GetWorldMatrix(placement));
}

unsigned char QXNullInstancing::IsDrawnFrom(
    QXNullPlacement const& placement, QXVector3d const& vecEye, QXBoundingBox const& boxWorld) const {
  double const dDistance = (boxWorld.GetCenter() - vecEye).Length();
  return static_cast<unsigned char>(
      m_bVisible && placement.m_bVisible && dDistance >= m_dNearDist && (m_dFarDist == 0.0 || dDistance <= m_dFarDist));
}

unsigned int QXNullInstancing::GetDrawOperationCount(unsigned int nPlacements, unsigned int nMost) const {
  if (m_pMesh == nullptr) {
    return 0;
  }
  if (m_nMaxPlacements > 0) {
    nMost = std::min(nMost, static_cast<unsigned int>(m_nMaxPlacements));
  }
  return m_pMesh->GetDrawnRangeCount() * ((nPlacements + nMost - 1) / nMost);
}

// --- The manager ---

QXNullHwInstancingManager::QXNullHwInstancingManager(QXNullGraphics3D& graphics, std::shared_ptr<QXCallLog> pLog)
    : QXNullObject(std::move(pLog), "instancings"), m_Graphics(graphics) {}

QXNullHwInstancingManager::~QXNullHwInstancingManager() = default;

QXInstancing* QXNullHwInstancingManager::CreateInstancing(
    QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) {
  Record("CreateInstancing", strName, strSceneName);
  QXNullScene* const pScene = m_Graphics.FindScene(strSceneName);
  if (strName.IsEmpty() || pScene == nullptr || m_mapInstancings.count(strName) != 0) {
    return nullptr;
  }
  auto pInstancing = std::make_unique<QXNullInstancing>(m_pLog, "instancing " + QXCallLog::Quote(strName), pScene);
  return m_mapInstancings.emplace(strName, std::move(pInstancing)).first->second.get();
}

void QXNullHwInstancingManager::DestroyInstancing(QXInstancing* pInstancing) {
  std::erase_if(m_mapInstancings, [pInstancing](auto const& item) { return item.second.get() == pInstancing; });
}

void QXNullHwInstancingManager::DestroyAllInstancings() {
  Record("DestroyAllInstancings");
  Clear();
}

QXInstancing* QXNullHwInstancingManager::GetInstancing(QdcUnicodeString const& strName) const {
  auto const instancing = m_mapInstancings.find(strName);
  return instancing == m_mapInstancings.end() ? nullptr : instancing->second.get();
}

QXNullInstancing* QXNullHwInstancingManager::Find(QXInstancing* pInstancing) const {
  auto const item = std::find_if(m_mapInstancings.begin(), m_mapInstancings.end(),
      [pInstancing](auto const& candidate) { return candidate.second.get() == pInstancing; });
  return item == m_mapInstancings.end() ? nullptr : item->second.get();
}

QXNullPlacement* QXNullHwInstancingManager::FindPlacement(QXInstancing* pInstancing, unsigned int nPlacement) const {
  QXNullInstancing* const pFound = Find(pInstancing);
  return pFound != nullptr && nPlacement < pFound->m_arrPlacements.size() ? &pFound->m_arrPlacements[nPlacement]
                                                                          : nullptr;
}

unsigned char QXNullHwInstancingManager::SetMesh(QXInstancing* pInstancing, QXRenderOperationMultiIndex* pMesh) {
  QXNullInstancing* const pFound = Find(pInstancing);
  Record("SetMesh", pFound == nullptr ? "unknown" : pFound->GetLabel(), QXLoggedMemory{pMesh});
  if (pFound == nullptr || (pMesh != nullptr && pMesh->m_pVertexBlock == nullptr)) {
    return 0;
  }
  pFound->SetMesh(pMesh);
  return 1;
}

unsigned char QXNullHwInstancingManager::SetSharedMesh(QXInstancing* pInstancing, QXROInstancePtr const& pMesh) {
  QXNullInstancing* const pFound = Find(pInstancing);
  Record("SetSharedMesh", pFound == nullptr ? "unknown" : pFound->GetLabel(), QXLoggedMemory{pMesh.GetPointer()});
  return static_cast<unsigned char>(pFound != nullptr && pFound->SetSharedMesh(pMesh));
}

unsigned int QXNullHwInstancingManager::AddPlacements(
    QXInstancing* pInstancing, QXMatrix4d const* pMatrices, unsigned int nCount) {
  QXNullInstancing* const pFound = Find(pInstancing);
  Record("AddPlacements", pFound == nullptr ? "unknown" : pFound->GetLabel(), nCount);
  if (pFound == nullptr) {
    return 0;
  }
  auto const nFirst = static_cast<unsigned int>(pFound->m_arrPlacements.size());
  for (unsigned int i = 0; i < nCount; ++i) {
    pFound->m_arrPlacements.emplace_back().m_matPlacement = pMatrices[i];
  }
  return nFirst;
}

unsigned char QXNullHwInstancingManager::SetPlacements(
    QXInstancing* pInstancing, unsigned int nFirst, QXMatrix4d const* pMatrices, unsigned int nCount) {
  QXNullInstancing* const pFound = Find(pInstancing);
  Record("SetPlacements", pFound == nullptr ? "unknown" : pFound->GetLabel(), nFirst, nCount);
  if (pFound == nullptr || std::size_t{nFirst} + nCount > pFound->m_arrPlacements.size()) {
    return 0;
  }
  for (unsigned int i = 0; i < nCount; ++i) {
    pFound->m_arrPlacements[nFirst + i].m_matPlacement = pMatrices[i];
  }
  return 1;
}

unsigned char QXNullHwInstancingManager::GetPlacement(
    QXInstancing* pInstancing, unsigned int nPlacement, QXMatrix4d& matPlacement) const {
  QXNullPlacement const* const pPlacement = FindPlacement(pInstancing, nPlacement);
  if (pPlacement == nullptr) {
    return 0;
  }
  matPlacement = pPlacement->m_matPlacement;
  return 1;
}

void QXNullHwInstancingManager::RemovePlacements(QXInstancing* pInstancing, unsigned int nFirst, unsigned int nCount) {
  QXNullInstancing* const pFound = Find(pInstancing);
  Record("RemovePlacements", pFound == nullptr ? "unknown" : pFound->GetLabel(), nFirst, nCount);
  if (pFound == nullptr || nFirst >= pFound->m_arrPlacements.size()) {
    return;
  }
  auto const first = pFound->m_arrPlacements.begin() + nFirst;
  auto const nRemoved = std::min<std::size_t>(nCount, pFound->m_arrPlacements.size() - nFirst);
  pFound->m_arrPlacements.erase(first, first + static_cast<std::ptrdiff_t>(nRemoved));
}

unsigned int QXNullHwInstancingManager::GetPlacementCount(QXInstancing* pInstancing) const {
  QXNullInstancing const* const pFound = Find(pInstancing);
  return pFound == nullptr ? 0 : static_cast<unsigned int>(pFound->m_arrPlacements.size());
}

void QXNullHwInstancingManager::SetPlacementVisible(
    QXInstancing* pInstancing, unsigned int nPlacement, unsigned char bVisible) {
  Record("SetPlacementVisible", nPlacement, bVisible);
  if (QXNullPlacement* const pPlacement = FindPlacement(pInstancing, nPlacement)) {
    pPlacement->m_bVisible = bVisible;
  }
}

void QXNullHwInstancingManager::SetPlacementColor(
    QXInstancing* pInstancing, unsigned int nPlacement, QXColorValue3D const& color) {
  Record("SetPlacementColor", nPlacement, color);
  if (QXNullPlacement* const pPlacement = FindPlacement(pInstancing, nPlacement)) {
    pPlacement->m_Color = color;
  }
}

void QXNullHwInstancingManager::SetPlacementSelectionID(
    QXInstancing* pInstancing, unsigned int nPlacement, unsigned int nID) {
  Record("SetPlacementSelectionID", nPlacement, nID);
  if (QXNullPlacement* const pPlacement = FindPlacement(pInstancing, nPlacement)) {
    pPlacement->m_nSelectionID = nID;
  }
}

void QXNullHwInstancingManager::SetVisibleDistance(QXInstancing* pInstancing, double dNear, double dFar) {
  Record("SetVisibleDistance", dNear, dFar);
  if (QXNullInstancing* const pFound = Find(pInstancing)) {
    pFound->m_dNearDist = dNear;
    pFound->m_dFarDist = dFar;
  }
}

void QXNullHwInstancingManager::SetCastShadow(QXInstancing* /*pInstancing*/, unsigned char bCast) {
  Record("SetCastShadow", bCast);
}

void QXNullHwInstancingManager::SetModelMatrix(QXInstancing* pInstancing, QXMatrix4d const& matModel) {
  Record("SetModelMatrix", matModel);
  if (QXNullInstancing* const pFound = Find(pInstancing)) {
    pFound->m_matModel = matModel;
  }
}

QXBoundingBox QXNullHwInstancingManager::GetBoundingBox(QXInstancing* pInstancing) const {
  QXBoundingBox bounds;
  if (QXNullInstancing const* const pFound = Find(pInstancing)) {
    for (QXNullPlacement const& placement : pFound->m_arrPlacements) {
      bounds.Merge(pFound->GetPlacementBounds(placement));
    }
  }
  return bounds;
}

unsigned char QXNullHwInstancingManager::Intersect(QXInstancing* pInstancing, QXVector3d const& vecOrigin,
    QXVector3d const& vecDirection, double& dDistance, unsigned int& nPlacement) const {
  QXNullInstancing const* const pFound = Find(pInstancing);
  if (pFound == nullptr || pFound->GetMesh() == nullptr) {
    return 0;
  }
  unsigned char bHit = 0;
  for (std::size_t i = 0; i < pFound->m_arrPlacements.size(); ++i) {
    QXNullPlacement const& placement = pFound->m_arrPlacements[i];
    double dHere = 0.0;
    if (placement.m_bVisible &&
        pFound->GetMesh()->GetGeometry().Intersect(pFound->GetWorldMatrix(placement), vecOrigin, vecDirection, dHere) &&
        (!bHit || dHere < dDistance)) {
      dDistance = dHere;
      nPlacement = static_cast<unsigned int>(i);
      bHit = 1;
    }
  }
  return bHit;
}

unsigned int QXNullHwInstancingManager::GetDrawnPlacementCount(QXInstancing* pInstancing) const {
  QXNullInstancing const* const pFound = Find(pInstancing);
  return pFound == nullptr ? 0 : pFound->m_nDrawnPlacements;
}

}  // namespace QXC
