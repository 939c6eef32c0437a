// What stands in the scenes of the null renderer: nodes, objects by their identifiers, overlays, uniform buffers.
#include <string>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/testing/QXNullCamera.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperationOverlay.h>
#include <QxGraphics3D/testing/QXNullScene.h>
#include <QxGraphics3D/testing/QXNullUniformBuffer.h>

namespace QXC {

// --- Nodes ---

unsigned char QXNullGraphics3D::CreateSceneNode(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strParentName, QdcUnicodeString const& strNodeName) {
  Record("CreateSceneNode", strSceneName, strParentName, strNodeName);
  QXNullScene* const pScene = FindNodeScene(strSceneName);
  if (pScene == nullptr || !pScene->CreateNode(strParentName, strNodeName)) {
    return Fail(QdcUnicodeString(L"node '") + strNodeName + L"': unknown scene or parent, or a name empty or taken");
  }
  return 1;
}

QdcUnicodeString QXNullGraphics3D::CreateSceneNode() {
  Record("CreateSceneNode");
  QXNullScene* const pScene = FindScene(GetSceneName(0));
  if (pScene == nullptr) {
    Fail(L"there is no 3D scene before Initialize");
    return QdcUnicodeString();
  }
  QdcUnicodeString strName;
  do {
    strName.Format(L"Node%d", ++m_nNodesMade);
  } while (!pScene->CreateNode(QdcUnicodeString(), strName));
  return strName;
}

unsigned char QXNullGraphics3D::DestroySceneNode(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName) {
  Record("DestroySceneNode", strSceneName, strNodeName);
  QXNullScene* const pScene = FindNodeScene(strSceneName);
  return static_cast<unsigned char>(pScene != nullptr && pScene->DestroyNode(strNodeName));
}

void QXNullGraphics3D::DestroySceneNode(QdcUnicodeString strNodeName) {
  DestroySceneNode(GetSceneName(0), strNodeName);
}

void QXNullGraphics3D::SetSceneNodePosition(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXVector3d const& vecPosition) {
  Record("SetSceneNodePosition", strSceneName, strNodeName, vecPosition);
  QXNullScene* const pScene = FindNodeScene(strSceneName);
  if (QXNullSceneNode* const pNode = pScene == nullptr ? nullptr : pScene->FindNode(strNodeName)) {
    pNode->m_vecPosition = vecPosition;
  }
}

void QXNullGraphics3D::SetSceneNodeOrientation(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXQuaternion4d const& orientation) {
  Record("SetSceneNodeOrientation", strSceneName, strNodeName, orientation);
  QXNullScene* const pScene = FindNodeScene(strSceneName);
  if (QXNullSceneNode* const pNode = pScene == nullptr ? nullptr : pScene->FindNode(strNodeName)) {
    pNode->m_qOrientation = orientation;
  }
}

void QXNullGraphics3D::SetSceneNodeScale(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXVector3d const& vecScale) {
  Record("SetSceneNodeScale", strSceneName, strNodeName, vecScale);
  QXNullScene* const pScene = FindNodeScene(strSceneName);
  if (QXNullSceneNode* const pNode = pScene == nullptr ? nullptr : pScene->FindNode(strNodeName)) {
    pNode->m_vecScale = vecScale;
  }
}

void QXNullGraphics3D::SetSceneNodeVisible(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName,
    unsigned char bVisible, unsigned char bCascade) {
  Record("SetSceneNodeVisible", strSceneName, strNodeName, bVisible, bCascade);
  if (QXNullScene* const pScene = FindNodeScene(strSceneName)) {
    pScene->SetNodeVisible(strNodeName, bVisible, bCascade);
  }
}

void QXNullGraphics3D::SetSceneNodeVisible(QdcUnicodeString const& strNodeName, unsigned char bVisible) {
  SetSceneNodeVisible(GetSceneName(0), strNodeName, bVisible, 1);
}

void QXNullGraphics3D::SetSceneNodeVisibleDistance(QdcUnicodeString const& strNodeName, double dNear, double dFar) {
  Record("SetSceneNodeVisibleDistance", strNodeName, dNear, dFar);
  QXNullScene* const pScene = FindScene(GetSceneName(0));
  if (QXNullSceneNode* const pNode = pScene == nullptr ? nullptr : pScene->FindNode(strNodeName)) {
    pNode->m_dNearDist = dNear;
    pNode->m_dFarDist = dFar;
  }
}

unsigned char QXNullGraphics3D::AttachToSceneNode(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXRenderOperation3D* pRenderOperation) {
  QXNullRenderOperation3D* const pDrawable = m_Manager.Find(pRenderOperation);
  Record("AttachToSceneNode", strSceneName, strNodeName, pDrawable == nullptr ? "unknown" : pDrawable->GetLabel());
  QXNullScene* const pScene = FindNodeScene(strSceneName);
  if (pDrawable == nullptr || pScene == nullptr || pScene->FindNode(strNodeName) == nullptr) {
    return Fail(QdcUnicodeString(L"node '") + strNodeName + L"': unknown drawable, scene or node");
  }
  if (pDrawable->m_pScene != pScene) {
    pScene->Attach(pDrawable);
  }
  pDrawable->m_strNode = strNodeName;
  return 1;
}

void QXNullGraphics3D::DetachFromSceneNode(
    QdcUnicodeString const& strSceneName, QXRenderOperation3D* pRenderOperation) {
  QXNullRenderOperation3D* const pDrawable = m_Manager.Find(pRenderOperation);
  Record("DetachFromSceneNode", strSceneName, pDrawable == nullptr ? "unknown" : pDrawable->GetLabel());
  if (pDrawable != nullptr && pDrawable->m_pScene != nullptr && pDrawable->m_pScene == FindNodeScene(strSceneName)) {
    pDrawable->m_strNode = QdcUnicodeString();
  }
}

void QXNullGraphics3D::GetSceneNodeBoundingBox(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXBoundingBox& box) const {
  QXNullScene const* const pScene = FindNodeScene(strSceneName);
  box = pScene == nullptr ? QXBoundingBox() : pScene->GetNodeBounds(strNodeName);
}

// --- Objects by selection identifier ---

QXNullRenderOperation3D* QXNullGraphics3D::FindObject(unsigned int nID) const {
  for (QXNullRenderOperation3D* const pDrawable : m_Manager.GetDrawables()) {
    if (nID != 0 && pDrawable->GetSelectionID() == nID) {
      return pDrawable;
    }
  }
  return nullptr;
}

void QXNullGraphics3D::SetSelectedObjects(QdcArray<unsigned int> const& arrIDs) {
  Record("SetSelectedObjects", arrIDs);
  for (QXNullRenderOperation3D* const pDrawable : m_Manager.GetDrawables()) {
    unsigned char bSelected = 0;
    for (unsigned int const nID : arrIDs) {
      bSelected |= static_cast<unsigned char>(nID != 0 && pDrawable->GetSelectionID() == nID);
    }
    pDrawable->SetSelected(bSelected);
  }
}

void QXNullGraphics3D::ClearSelectedObjects() {
  Record("ClearSelectedObjects");
  for (QXNullRenderOperation3D* const pDrawable : m_Manager.GetDrawables()) {
    pDrawable->SetSelected(0);
  }
}

unsigned int QXNullGraphics3D::PickObject(double dX, double dY, QXVector3d& vecHit) const {
  QXViewport const* const pViewport = m_pViewport;
  auto const* const pCamera = pViewport == nullptr ? nullptr : dynamic_cast<QXNullCamera*>(pViewport->GetCamera());
  QXNullScene const* const pScene = pCamera == nullptr ? nullptr : pCamera->FindScene(*pViewport);
  if (pScene == nullptr) {
    return 0;
  }
  // The ray through the pixel, from the near end of the view to its far one.
  QXVector3d vecNear;
  QXVector3d vecFar;
  UnProject(QXVector3d(dX, dY, 0.0), vecNear);
  UnProject(QXVector3d(dX, dY, 1.0), vecFar);
  return PickObjectByRay(pScene->GetName(), vecNear, (vecFar - vecNear).Normalize(), vecHit);
}

unsigned int QXNullGraphics3D::PickObjectByRay(QdcUnicodeString const& strSceneName, QXVector3d const& vecOrigin,
    QXVector3d const& vecDirection, QXVector3d& vecHit) const {
  QXNullScene const* const pScene = FindScene(strSceneName);
  if (pScene == nullptr) {
    return 0;
  }
  unsigned int nNearestID = 0;
  double dNearest = 0.0;
  for (QXNullRenderOperation3D const* const pDrawable : pScene->GetDrawables()) {
    double dDistance = 0.0;
    if (pDrawable->GetSelectionID() != 0 && pDrawable->IsVisible() &&
        pDrawable->Intersect(vecOrigin, vecDirection, dDistance) && (nNearestID == 0 || dDistance < dNearest)) {
      nNearestID = pDrawable->GetSelectionID();
      dNearest = dDistance;
    }
  }
  if (nNearestID != 0) {
    vecHit = vecOrigin + QXVector3d(vecDirection.x * dNearest, vecDirection.y * dNearest, vecDirection.z * dNearest);
  }
  return nNearestID;
}

unsigned char QXNullGraphics3D::GetObjectBoundingBox(unsigned int nID, QXBoundingBox& box) const {
  QXNullRenderOperation3D const* const pDrawable = FindObject(nID);
  if (pDrawable == nullptr) {
    return 0;
  }
  box = pDrawable->GetWorldBoundingBox();
  return 1;
}

void QXNullGraphics3D::SetObjectVisible(unsigned int nID, unsigned char bVisible) {
  Record("SetObjectVisible", nID, bVisible);
  if (QXNullRenderOperation3D* const pDrawable = FindObject(nID)) {
    pDrawable->SetVisible(bVisible);
  }
}

unsigned char QXNullGraphics3D::IsObjectVisible(unsigned int nID) const {
  QXNullRenderOperation3D const* const pDrawable = FindObject(nID);
  return static_cast<unsigned char>(pDrawable != nullptr && pDrawable->IsVisible());
}

void QXNullGraphics3D::SetObjectColor(unsigned int nID, QXColorValue3D const& color) {
  Record("SetObjectColor", nID, color);
  QXNullRenderOperation3D* const pDrawable = FindObject(nID);
  if (pDrawable == nullptr) {
    return;
  }
  // Always from the own colour: a second factor replaces the first.
  QXColorValue3D const own = m_mapFormerColors.emplace(nID, pDrawable->GetColor()).first->second;
  pDrawable->SetColor(QXColorValue3D(own.r * color.r, own.g * color.g, own.b * color.b, own.a * color.a));
}

void QXNullGraphics3D::ResetObjectColor(unsigned int nID) {
  Record("ResetObjectColor", nID);
  auto const former = m_mapFormerColors.find(nID);
  if (former == m_mapFormerColors.end()) {
    return;
  }
  if (QXNullRenderOperation3D* const pDrawable = FindObject(nID)) {
    pDrawable->SetColor(former->second);
  }
  m_mapFormerColors.erase(former);
}

// --- Objects drawn by hand ---

QXNullRenderOperation3D* QXNullGraphics3D::FindManualObject(QdcUnicodeString const& strName) const {
  for (QXNullRenderOperation3D* const pDrawable : m_Manager.GetDrawables()) {
    if (pDrawable->GetName() == strName) {
      return pDrawable;
    }
  }
  return nullptr;
}

QdcUnicodeString QXNullGraphics3D::UpdateManualRenderObject(
    QXRenderOperation3D* pRenderOperation, QdcUnicodeString const& strSceneName) {
  QXNullRenderOperation3D* const pDrawable = m_Manager.Find(pRenderOperation);
  Record("UpdateManualRenderObject", pDrawable == nullptr ? "unknown" : pDrawable->GetLabel(), strSceneName);
  if (pDrawable == nullptr || !m_Manager.AttachRenderOperation3D(pRenderOperation, strSceneName)) {
    return QdcUnicodeString();
  }
  return pDrawable->GetName();
}

void QXNullGraphics3D::RemoveManualRenderObject(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) {
  Record("RemoveManualRenderObject", strName, strSceneName);
  QXNullRenderOperation3D* const pDrawable = FindManualObject(strName);
  if (pDrawable != nullptr && pDrawable->m_pScene != nullptr && pDrawable->m_pScene == FindScene(strSceneName)) {
    pDrawable->m_pScene->Detach(pDrawable);
  }
}

void QXNullGraphics3D::SetManualRenderObjectVisible(QdcUnicodeString const& strName, unsigned char bVisible) {
  Record("SetManualRenderObjectVisible", strName, bVisible);
  if (QXNullRenderOperation3D* const pDrawable = FindManualObject(strName)) {
    pDrawable->SetVisible(bVisible);
  }
}

// --- Overlays and uniform buffers ---

QXRenderOperationOverlay* QXNullGraphics3D::CreateOverlay(QdcUnicodeString const& strName) {
  Record("CreateOverlay", strName);
  if (strName.IsEmpty() || m_mapOverlays.count(strName) != 0) {
    Fail(QdcUnicodeString(L"overlay name '") + strName + L"' is empty or taken");
    return nullptr;
  }
  auto pOverlay =
      std::make_unique<QXNullRenderOperationOverlay>(m_pLog, "overlay " + QXCallLog::Quote(strName), strName);
  return m_mapOverlays.emplace(strName, std::move(pOverlay)).first->second.get();
}

void QXNullGraphics3D::DestroyOverlay(QdcUnicodeString const& strName) {
  Record("DestroyOverlay", strName);
  m_mapOverlays.erase(strName);
}

void QXNullGraphics3D::SetOverlayVisible(QdcUnicodeString const& strName, unsigned char bVisible) {
  Record("SetOverlayVisible", strName, bVisible);
  auto const overlay = m_mapOverlays.find(strName);
  if (overlay != m_mapOverlays.end()) {
    overlay->second->SetVisible(bVisible);
  }
}

void QXNullGraphics3D::SetOverlayZOrder(QdcUnicodeString const& strName, int nZOrder) {
  Record("SetOverlayZOrder", strName, nZOrder);
  auto const overlay = m_mapOverlays.find(strName);
  if (overlay != m_mapOverlays.end()) {
    overlay->second->SetZOrder(nZOrder);
  }
}

QXUniformBuffer* QXNullGraphics3D::CreateUniformBuffer(QdcUnicodeString const& strName) {
  Record("CreateUniformBuffer", strName);
  if (strName.IsEmpty() || m_mapUniformBuffers.count(strName) != 0) {
    Fail(QdcUnicodeString(L"uniform buffer name '") + strName + L"' is empty or taken");
    return nullptr;
  }
  auto pBuffer = std::make_unique<QXNullUniformBuffer>(m_pLog, strName);
  return m_mapUniformBuffers.emplace(strName, std::move(pBuffer)).first->second.get();
}

QXUniformBuffer* QXNullGraphics3D::GetUniformBuffer(QdcUnicodeString const& strName) const {
  auto const buffer = m_mapUniformBuffers.find(strName);
  return buffer == m_mapUniformBuffers.end() ? nullptr : buffer->second.get();
}

void QXNullGraphics3D::DestroyUniformBuffer(QdcUnicodeString const& strName) {
  Record("DestroyUniformBuffer", strName);
  m_mapUniformBuffers.erase(strName);
}

}  // namespace QXC
