#include <plugins/ogre/instancing/QXOgreHwInstancingManager.h>

#include <algorithm>
#include <limits>

#include <OgreRenderSystem.h>
#include <OgreRenderSystemCapabilities.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/instancing/QXOgreInstancing.h>

namespace QXC {

QXOgreHwInstancingManager::QXOgreHwInstancingManager(QXOgreGraphics3D& graphics3D) : m_Graphics3D(graphics3D) {}

QXOgreHwInstancingManager::~QXOgreHwInstancingManager() = default;

unsigned char QXOgreHwInstancingManager::IsSupported() const {
  QXOgreDevice* const pDevice = m_Graphics3D.GetDevice();
  return pDevice && pDevice->GetRenderSystem().getCapabilities()->hasCapability(Ogre::RSC_VERTEX_BUFFER_INSTANCE_DATA);
}

unsigned int QXOgreHwInstancingManager::GetMaxPlacementCount() const {
  return QXOgreInstancing::MOST_PLACEMENTS;
}

QXInstancing* QXOgreHwInstancingManager::CreateInstancing(
    QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) {
  QXOgreScene* const pScene = m_Graphics3D.FindScene(strSceneName);
  if (strName.IsEmpty() || !pScene || m_mapInstancings.contains(strName)) {
    m_Graphics3D.SetErrorText("an instancing needs a name of its own and a scene that exists: '" + ToUtf8(strName) +
                              "' in '" + ToUtf8(strSceneName) + "'");
    return nullptr;
  }
  QXOgreInstancing* pMade = nullptr;
  m_Graphics3D.Try([&] {
    auto pInstancing = std::make_unique<QXOgreInstancing>(m_Graphics3D, *pScene);
    pMade = m_mapInstancings.emplace(strName, std::move(pInstancing)).first->second.get();
    m_mapOwn[pMade] = pMade;
  });
  return pMade;
}

void QXOgreHwInstancingManager::DestroyInstancing(QXInstancing* pInstancing) {
  if (m_mapOwn.erase(pInstancing) == 0) return;
  std::erase_if(m_mapInstancings, [&](auto const& item) { return item.second.get() == pInstancing; });
}

void QXOgreHwInstancingManager::DestroyAllInstancings() {
  m_mapOwn.clear();
  m_mapInstancings.clear();
}

QXInstancing* QXOgreHwInstancingManager::GetInstancing(QdcUnicodeString const& strName) const {
  auto const position = m_mapInstancings.find(strName);
  return position == m_mapInstancings.end() ? nullptr : position->second.get();
}

unsigned int QXOgreHwInstancingManager::GetInstancingCount() const {
  return static_cast<unsigned int>(m_mapInstancings.size());
}

QXOgreInstancing* QXOgreHwInstancingManager::Find(QXInstancing const* pInstancing) const {
  auto const position = m_mapOwn.find(pInstancing);
  return position == m_mapOwn.end() ? nullptr : position->second;
}

QXOgreInstancing* QXOgreHwInstancingManager::Find(QXInstancing const* pInstancing, unsigned int nPlacement) const {
  QXOgreInstancing* const pFound = Find(pInstancing);
  return pFound && nPlacement < pFound->GetPlacements().GetCount() ? pFound : nullptr;
}

unsigned char QXOgreHwInstancingManager::SetMesh(QXInstancing* pInstancing, QXRenderOperationMultiIndex* pMesh) {
  QXOgreInstancing* const pFound = Find(pInstancing);
  unsigned char bDone = 0;
  if (pFound) m_Graphics3D.Try([&] { bDone = pFound->SetMesh(pMesh); });
  return bDone;
}

unsigned char QXOgreHwInstancingManager::SetSharedMesh(QXInstancing* pInstancing, QXROInstancePtr const& pMesh) {
  QXOgreInstancing* const pFound = Find(pInstancing);
  unsigned char bDone = 0;
  if (pFound) m_Graphics3D.Try([&] { bDone = pFound->SetSharedMesh(pMesh); });
  return bDone;
}

unsigned int QXOgreHwInstancingManager::AddPlacements(
    QXInstancing* pInstancing, QXMatrix4d const* pMatrices, unsigned int nCount) {
  QXOgreInstancing* const pFound = Find(pInstancing);
  if (!pFound) return 0;
  unsigned int const nFirst = pFound->GetPlacements().GetCount();
  if (!pMatrices || nCount > std::numeric_limits<unsigned int>::max() - nFirst) return 0;
  m_Graphics3D.Try([&] { pFound->GetPlacements().Add(pMatrices, nCount); });
  return nFirst;
}

unsigned char QXOgreHwInstancingManager::SetPlacements(
    QXInstancing* pInstancing, unsigned int nFirst, QXMatrix4d const* pMatrices, unsigned int nCount) {
  QXOgreInstancing* const pFound = Find(pInstancing);
  if (!pFound || !pMatrices) return 0;
  unsigned int const nPlacements = pFound->GetPlacements().GetCount();
  if (nFirst > nPlacements || nCount > nPlacements - nFirst) return 0;
  pFound->GetPlacements().Set(nFirst, pMatrices, nCount);
  return 1;
}

unsigned char QXOgreHwInstancingManager::GetPlacement(
    QXInstancing* pInstancing, unsigned int nPlacement, QXMatrix4d& matPlacement) const {
  QXOgreInstancing* const pFound = Find(pInstancing, nPlacement);
  if (!pFound) return 0;
  matPlacement = pFound->GetPlacements().Get(nPlacement);
  return 1;
}

void QXOgreHwInstancingManager::RemovePlacements(QXInstancing* pInstancing, unsigned int nFirst, unsigned int nCount) {
  QXOgreInstancing* const pFound = Find(pInstancing, nFirst);
  if (!pFound) return;
  QXOgrePlacements& placements = pFound->GetPlacements();
  placements.Remove(nFirst, std::min(nCount, placements.GetCount() - nFirst));
}

unsigned int QXOgreHwInstancingManager::GetPlacementCount(QXInstancing* pInstancing) const {
  QXOgreInstancing* const pFound = Find(pInstancing);
  return pFound ? pFound->GetPlacements().GetCount() : 0;
}

void QXOgreHwInstancingManager::SetPlacementVisible(
    QXInstancing* pInstancing, unsigned int nPlacement, unsigned char bVisible) {
  if (QXOgreInstancing* const p = Find(pInstancing, nPlacement)) p->GetPlacements().SetVisible(nPlacement, bVisible);
}

void QXOgreHwInstancingManager::SetPlacementColor(
    QXInstancing* pInstancing, unsigned int nPlacement, QXColorValue3D const& color) {
  if (QXOgreInstancing* const p = Find(pInstancing, nPlacement)) p->GetPlacements().SetColor(nPlacement, color);
}

void QXOgreHwInstancingManager::SetPlacementSelectionID(
    QXInstancing* pInstancing, unsigned int nPlacement, unsigned int nID) {
  if (QXOgreInstancing* const p = Find(pInstancing, nPlacement)) p->GetPlacements().SetIdentifier(nPlacement, nID);
}

void QXOgreHwInstancingManager::SetVisibleDistance(QXInstancing* pInstancing, double dNear, double dFar) {
  if (QXOgreInstancing* const pFound = Find(pInstancing)) pFound->SetVisibleDistance(dNear, dFar);
}

void QXOgreHwInstancingManager::SetModelMatrix(QXInstancing* pInstancing, QXMatrix4d const& matModel) {
  if (QXOgreInstancing* const pFound = Find(pInstancing)) pFound->GetPlacements().SetModelMatrix(matModel);
}

QXBoundingBox QXOgreHwInstancingManager::GetBoundingBox(QXInstancing* pInstancing) const {
  QXOgreInstancing* const pFound = Find(pInstancing);
  return pFound ? pFound->GetBounds() : QXBoundingBox();
}

unsigned char QXOgreHwInstancingManager::Intersect(QXInstancing* pInstancing, QXVector3d const& vecOrigin,
    QXVector3d const& vecDirection, double& dDistance, unsigned int& nPlacement) const {
  QXOgreInstancing* const pFound = Find(pInstancing);
  unsigned char bHit = 0;
  if (pFound) m_Graphics3D.Try([&] { bHit = pFound->Intersect(vecOrigin, vecDirection, dDistance, nPlacement); });
  return bHit;
}

unsigned int QXOgreHwInstancingManager::GetDrawnPlacementCount(QXInstancing* pInstancing) const {
  QXOgreInstancing* const pFound = Find(pInstancing);
  return pFound ? pFound->GetDrawnCount() : 0;
}

void QXOgreHwInstancingManager::SelectObjects(std::set<unsigned int> const& setIDs) {
  for (auto const& [strName, pInstancing] : m_mapInstancings) pInstancing->GetPlacements().SelectObjects(setIDs);
}

void QXOgreHwInstancingManager::SetSelectionColor(QXColorValue3D const& color) {
  for (auto const& [strName, pInstancing] : m_mapInstancings) pInstancing->SetSelectionColor(color);
}

void QXOgreHwInstancingManager::Update() {
  m_Graphics3D.Try([&] {
    for (auto const& [strName, pInstancing] : m_mapInstancings) pInstancing->Update();
  });
}

}  // namespace QXC
