// Selection passes, what lies under pixels and along rays, and objects by their identifiers.

#include <algorithm>
#include <set>

#include <QxGraphics3D/frame/QXViewport.h>

#include <plugins/ogre/QXOgreBillboardSet.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreRenderOperation3D.h>
#include <plugins/ogre/QXOgreRenderOperationManager.h>
#include <plugins/ogre/QXOgreRenderTarget.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/instancing/QXOgreHwInstancingManager.h>
#include <plugins/ogre/picking/QXOgreSelection.h>

namespace QXC {

QXOgreRenderTarget* QXOgreGraphics3D::OwnTarget(QXRenderTarget* pTarget) const {
  // Looked up before it is cast: the pointer may be another renderer's, or no target's any more.
  auto* const pOwn = static_cast<QXOgreRenderTarget*>(pTarget);
  return m_setTargets.contains(pOwn) ? pOwn : nullptr;
}

unsigned char QXOgreGraphics3D::BeginSelection(
    QXRenderTarget* pTarget, int nLeft, int nBottom, int nWidth, int nHeight) {
  m_pSelection->m_pOpenTarget = nullptr;
  m_pSelection->GetKept().Reset({});
  QXOgreRenderTarget* const pOwn = OwnTarget(pTarget);
  if (!m_pDevice || !pOwn || nWidth <= 0 || nHeight <= 0) {
    SetErrorText("a selection pass needs a target of this renderer and a rectangle that is not empty");
    return 0;
  }
  m_pSelection->m_pOpenTarget = pOwn;
  m_pSelection->m_OpenRect = {nLeft, nBottom, nWidth, nHeight};
  return 1;
}

void QXOgreGraphics3D::EndSelection() {
  QXOgreRenderTarget* const pTarget = OwnTarget(m_pSelection->m_pOpenTarget);
  m_pSelection->m_pOpenTarget = nullptr;
  if (pTarget) m_pSelection->Draw(*pTarget, m_pSelection->m_OpenRect, {}, false, m_pSelection->GetKept());
}

unsigned int QXOgreGraphics3D::ReadSelectionID(int nX, int nY) const {
  return m_pSelection->GetKept().GetIdentifier(nX, nY);
}

void QXOgreGraphics3D::ReadSelectionIDs(QdcRect const& rcPixels, QdcArray<unsigned int>& arrIDs) const {
  QXOgrePickResult const& kept = m_pSelection->GetKept();
  QXOgrePixelRect const& rect = kept.GetRect();
  std::set<unsigned int> setIDs;
  for (int y = std::max(rect.m_nBottom, rcPixels.top); y < std::min(rect.m_nBottom + rect.m_nHeight, rcPixels.bottom);
       ++y)
    for (int x = std::max(rect.m_nLeft, rcPixels.left); x < std::min(rect.m_nLeft + rect.m_nWidth, rcPixels.right); ++x)
      setIDs.insert(kept.GetIdentifier(x, y));
  setIDs.erase(0);
  for (unsigned int const nID : setIDs) arrIDs.Add(nID);
}

void QXOgreGraphics3D::SetSelectionEnable(QdcUnicodeString const& strSceneName, unsigned char bEnable) {
  m_pSelection->SetEnabled(strSceneName, bEnable != 0);
}

void QXOgreGraphics3D::SetSelectionTolerance(double dPixels) {
  m_pSelection->SetTolerance(dPixels);
}

QXVector3d QXOgreGraphics3D::GetSelInfo(float fX, float fY, int& nLayerID, int& nObjectID, QdcArray<QXGeometry*>&,
    std::set<int>& setLayerIDs, unsigned char bAll, std::map<int, QdcRect2D> const* pMapBounds) {
  nLayerID = 0;
  nObjectID = 0;
  QXVector3d vecPosition;
  QXOgreRenderTarget* const pTarget = OwnTarget(m_pActiveRenderTarget);
  if (!pTarget) return vecPosition;
  QXOgrePickFilter filter;
  filter.m_pLayers = &setLayerIDs;
  QXOgrePickResult result;
  unsigned int const nID = m_pSelection->Find(
      *pTarget, static_cast<double>(fX), static_cast<double>(fY), filter, pMapBounds, result, vecPosition);
  if (nID != 0) m_SceneOperation.GetID(nID, nLayerID, nObjectID);
  if (bAll) m_pSelection->GetKept() = result;
  return vecPosition;
}

QXVector3d QXOgreGraphics3D::GetSelInfo(float fX, float fY, int& nLayerID, int& nObjectID, unsigned char bAll) {
  QdcArray<QXGeometry*> arrGeometries;
  std::set<int> setAllLayers;
  return GetSelInfo(fX, fY, nLayerID, nObjectID, arrGeometries, setAllLayers, bAll, nullptr);
}

unsigned int QXOgreGraphics3D::PickObject(double dX, double dY, QXVector3d& vecHit) const {
  QXOgreRenderTarget* const pTarget = OwnTarget(m_pActiveRenderTarget);
  if (!pTarget) return 0;
  QXOgrePickResult result;
  return m_pSelection->Find(*pTarget, dX, dY, {}, nullptr, result, vecHit);
}

unsigned int QXOgreGraphics3D::PickObjectByRay(QdcUnicodeString const& strSceneName, QXVector3d const& vecOrigin,
    QXVector3d const& vecDirection, QXVector3d& vecHit) const {
  QXOgreScene* const pScene = FindScene(strSceneName);
  return pScene ? m_pSelection->FindAlong(*pScene, vecOrigin, vecDirection, vecHit) : 0;
}

QXRenderTarget* QXOgreGraphics3D::CreateSelectionRenderTarget(
    QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, QdcUnicodeString const& strSceneName) {
  QXRenderTarget* const pTarget = CreateRenderTexture(strName, PF_A8R8G8B8, nWidth, nHeight, 0, 32, strSceneName);
  if (QXOgreRenderTarget* const pOwn = OwnTarget(pTarget)) pOwn->DrawIdentifiers();
  return pTarget;
}

double QXOgreGraphics3D::ReadDepth(QXRenderTarget* pTarget, int nX, int nY) const {
  QXOgreRenderTarget* const pOwn = OwnTarget(pTarget);
  QXOgrePickResult result;
  if (!pOwn || !m_pSelection->Draw(*pOwn, {nX, nY, 1, 1}, {}, true, result)) return 1.0;
  return result.GetDepth(nX, nY);
}

QXVector3d QXOgreGraphics3D::ScreenToCartesian(int nX, int nY) const {
  return GetPixelPosition(m_pActiveRenderTarget, nX, nY);
}

QXVector3d QXOgreGraphics3D::GetPixelPosition(QXRenderTarget* pTarget, int nX, int nY) const {
  QXOgreRenderTarget* const pOwn = OwnTarget(pTarget);
  QXOgrePickResult result;
  QXVector3d vecPosition;
  if (pOwn && m_pSelection->Draw(*pOwn, {nX, nY, 1, 1}, {}, true, result)) result.GetPosition(nX, nY, vecPosition);
  return vecPosition;
}

QXColorValue3D QXOgreGraphics3D::ScreenToColor(int nX, int nY) const {
  QXOgreRenderTarget* const pTarget = OwnTarget(m_pActiveRenderTarget);
  bool const bInside = pTarget && nX >= 0 && nY >= 0 && static_cast<unsigned int>(nX) < pTarget->GetWidth() &&
                       static_cast<unsigned int>(nY) < pTarget->GetHeight();
  unsigned char nPixel[4];
  if (!bInside || !pTarget->ReadPixel(nX, nY, nPixel)) return QXGraphics3D::ScreenToColor(nX, nY);
  return {nPixel[2] / 255.0, nPixel[1] / 255.0, nPixel[0] / 255.0, nPixel[3] / 255.0};
}

void QXOgreGraphics3D::SetSelectedObjects(QdcArray<unsigned int> const& arrIDs) {
  std::set<unsigned int> setIDs;
  for (std::size_t i = 0; i < arrIDs.GetSize(); ++i) setIDs.insert(arrIDs[i]);
  Try([&] {
    for (QXOgreRenderOperation3D* const pOperation : m_pManager->GetOperations())
      pOperation->GetDrawable().SelectObjects(setIDs);
    for (auto const& [strName, pScene] : m_mapScenes) pScene->GetBillboards().SelectObjects(setIDs);
    m_pInstancings->SelectObjects(setIDs);
  });
}

void QXOgreGraphics3D::ClearSelectedObjects() {
  SetSelectedObjects({});
}

void QXOgreGraphics3D::SetSelectionColor(QXColorValue3D const& color) {
  m_pManager->SetSelectionColor(color);
  for (auto const& [strName, pScene] : m_mapScenes) pScene->GetBillboards().SetSelectionColor(color);
  m_pInstancings->SetSelectionColor(color);
}

unsigned char QXOgreGraphics3D::GetObjectBoundingBox(unsigned int nID, QXBoundingBox& box) const {
  unsigned int nKey = 0;
  if (QXOgreRenderOperation3D const* const pOperation = m_pManager->FindWithObject(nID, nKey)) {
    QXBoundingBox const boxObject = pOperation->GetDrawable().GetObjectBounds(nKey);
    if (!boxObject.IsNULL()) box = boxObject;
    return !boxObject.IsNULL();
  }
  QXOgreRenderOperation3D const* const pOperation = m_pManager->Find(nID);
  if (pOperation) box = pOperation->GetWorldBoundingBox();
  return pOperation != nullptr;
}

void QXOgreGraphics3D::SetObjectVisible(unsigned int nID, unsigned char bVisible) {
  if (QXOgreRenderOperation3D* const pOperation = m_pManager->Find(nID)) pOperation->SetVisible(bVisible);
}

unsigned char QXOgreGraphics3D::IsObjectVisible(unsigned int nID) const {
  QXOgreRenderOperation3D const* const pOperation = m_pManager->Find(nID);
  return pOperation && pOperation->IsVisible();
}

void QXOgreGraphics3D::SetObjectColor(unsigned int nID, QXColorValue3D const& color) {
  if (QXOgreRenderOperation3D* const pOperation = m_pManager->Find(nID)) pOperation->SetMarkColor(color);
}

void QXOgreGraphics3D::ResetObjectColor(unsigned int nID) {
  SetObjectColor(nID, QXColorValue3D::White);
}

}  // namespace QXC
