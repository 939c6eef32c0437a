// The registries of manually rendered objects and the hooks of the head-mounted display of QXGraphics3D.
#include <QxGraphics3D/frame/QXGraphics3D.h>

namespace QXC {

void QXGraphics3D::AddROManualUpdateProc(void* pObject, QXROManualUpdateProc pfnProc) {
  if (m_eHMDMode != HMD_HTC) return;
  m_mapUpdateROViewProjCallBackProc.emplace(pObject, pfnProc);
}

void QXGraphics3D::AddROManualNearFarDist(void* pObject, double dNear, double dFar) {
  if (m_eHMDMode != HMD_HTC) return;
  m_mapROManualNearFarDist.emplace(pObject, QXROManualNearFarDistInfo{dNear, dFar});
}

void QXGraphics3D::AddROManualSceneName(void* pObject, QdcUnicodeString const& strSceneName) {
  if (m_eHMDMode != HMD_HTC) return;
  m_mapROManualSceneName.emplace(pObject, strSceneName);
}

void QXGraphics3D::AddReInitRenderQueueProc(void* pObject, QXROManualUpdateProc pfnProc) {
  if (m_eHMDMode != HMD_HTC) return;
  if (!m_mapReInitRenderQueueProc.emplace(pObject, pfnProc).second) return;
  m_arrReInitRenderQueue.Add(std::make_pair(pObject, pfnProc));
}

void QXGraphics3D::AddReInitObjectSceneName(void* pObject, QdcUnicodeString const& strSceneName) {
  if (m_eHMDMode != HMD_HTC) return;
  m_mapReInitObjectSceneName.emplace(pObject, strSceneName);
}

void QXGraphics3D::RemoveROManualMapAt(void* pObject) {
  if (m_eHMDMode != HMD_HTC) return;
  // Plug-ins fill the three maps together: while one is still empty, registration has not come to its end, and the
  // entries made so far must stay for it.
  if (m_mapUpdateROViewProjCallBackProc.empty() || m_mapROManualNearFarDist.empty() || m_mapROManualSceneName.empty()) {
    return;
  }
  m_mapUpdateROViewProjCallBackProc.erase(pObject);
  m_mapROManualNearFarDist.erase(pObject);
  m_mapROManualSceneName.erase(pObject);
}

void QXGraphics3D::RemoveReInitRenderQueueAt(void* pObject) {
  if (m_eHMDMode != HMD_HTC) return;
  if (m_mapReInitRenderQueueProc.empty() || m_arrReInitRenderQueue.GetSize() == 0 ||
      m_mapReInitObjectSceneName.empty()) {
    return;
  }
  m_mapReInitRenderQueueProc.erase(pObject);
  // The size is taken once and the scan goes on after the hit: callers know that removing any entry but the last ends
  // in the checked subscript's failure, and rely on the scene name staying in that case.
  std::uint64_t const nSize = m_arrReInitRenderQueue.GetSize();
  for (std::uint64_t nIndex = 0; nIndex < nSize; ++nIndex) {
    if (m_arrReInitRenderQueue[nIndex].first == pObject) m_arrReInitRenderQueue.RemoveAt(nIndex, 1);
  }
  m_mapReInitObjectSceneName.erase(pObject);
}

std::map<void*, QXROManualUpdateProc> QXGraphics3D::GetMapUpdateROViewProjCallBackProc() const {
  return m_mapUpdateROViewProjCallBackProc;
}

std::map<void*, QXROManualNearFarDistInfo> QXGraphics3D::GetROManualNearFarDistMap() const {
  return m_mapROManualNearFarDist;
}

std::map<void*, QdcUnicodeString> QXGraphics3D::GetROManualSceneNameMap() const {
  return m_mapROManualSceneName;
}

std::map<void*, QdcUnicodeString> QXGraphics3D::GetReInitObjectSceneNameMap() const {
  return m_mapReInitObjectSceneName;
}

QdcArray<std::pair<void*, QXROManualUpdateProc>> QXGraphics3D::GetArrayReInitRenderQueue() const {
  return m_arrReInitRenderQueue;
}

void QXGraphics3D::SetHtcControllerPointsProc(void* pRenderRay3D, QXHtcControllerPointsProc pfnProc) {
  if (m_eHMDMode != HMD_HTC) return;
  m_pRenderRay3D = pRenderRay3D;
  m_pfnHtcControllerPoints = pfnProc;
}

QXHtcControllerPointsProc QXGraphics3D::GetHtcControllerPointsFunc() const {
  return m_pfnHtcControllerPoints;
}

void* QXGraphics3D::GetRenderRay3D() const {
  return m_pRenderRay3D;
}

void QXGraphics3D::SetVRPickingObjectProc(QXInt64 nView, QXVRPickingObjectProc pfnProc) {
  m_nVREventView = nView;
  m_pfnVRPickingObject = pfnProc;
}

QXVRPickingObjectProc QXGraphics3D::GetVRPickingObjectProc() const {
  return m_pfnVRPickingObject;
}

QXInt64 QXGraphics3D::GetVREventView() const {
  return m_nVREventView;
}

void QXGraphics3D::SetVRControllerHandleProc(QXInt64 nView, QXVRControllerHandleProc pfnProc) {
  m_nObjectsEventView = nView;
  m_pfnVRControllerHandle = pfnProc;
}

QXVRControllerHandleProc QXGraphics3D::GetVRControllerHandleProc() const {
  return m_pfnVRControllerHandle;
}

QXInt64 QXGraphics3D::GetObjectsEventView() const {
  return m_nObjectsEventView;
}

unsigned char QXGraphics3D::GetHTCEnable() const {
  return static_cast<unsigned char>(m_eHMDMode == HMD_HTC);
}

unsigned char QXGraphics3D::GetOculusEnable() const {
  return static_cast<unsigned char>(m_eHMDMode == HMD_OCULUS);
}

void QXGraphics3D::ResetQXCameraForVR() {
  m_bResetQXCameraForVR = 1;
}

}  // namespace QXC
