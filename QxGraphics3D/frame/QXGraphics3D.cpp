#include <QxGraphics3D/frame/QXGraphics3D.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/model/QXModelManager.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

namespace QXC {

QXGraphics3DCapabilities QXGraphics3D::m_Capabilities;
double QXGraphics3D::LogDepthCameraNearDist = 1.0;
double QXGraphics3D::LogDepthCameraFarDist = 1000000000.0;
QdcPoint QXGraphics3D::m_pntScreenStereoOffset;

namespace {

// clear() keeps the storage of some containers; only the swap is sure to give it back.
template <class Map>
void FreeMap(Map& mapEntries) {
  if (mapEntries.empty()) return;
  Map mapEmpty;
  mapEntries.swap(mapEmpty);
}

void AttachCompanions(QXGraphics3D& graphics, QXRenderTarget const& target) {
  graphics.AttachReflectRenderTarget(target.GetReflectRenderTarget());
  graphics.AttachSelectionRenderTarget(target.GetSelectionRenderTarget());
  graphics.AttachVertexSelectionRenderTarget(target.GetVertexSelectionRenderTarget());
}

// Draws a target as if it were the active one. The caller puts the former active target back.
void UpdateAsActive(QXRenderTarget& target) {
  unsigned char const bWasActive = target.IsActive();
  target.SetActive(1);
  target.Update();
  target.SetActive(bWasActive);
}

// An inactive target that draws every frame all the same, with its own companions attached meanwhile.
void UpdateAlwaysActive(QXGraphics3D& graphics, QXRenderTarget& target, QXRenderTarget* pSaved) {
  graphics.m_pActiveRenderTarget = &target;
  unsigned char const bWasActive = target.IsActive();
  target.SetActive(1);
  AttachCompanions(graphics, target);
  target.Update();
  target.SetActive(bWasActive);
  graphics.m_pActiveRenderTarget = pSaved;
  // Before any target was active there are no companions to go back to.
  if (pSaved) AttachCompanions(graphics, *pSaved);
}

// With many targets nearly every line of the next one would be waited for: a frame reads members all over it.
void FetchAhead(QXRenderTarget const* pTarget) {
  char const* const pBytes = reinterpret_cast<char const*>(pTarget);
  for (std::size_t i = 0; i < sizeof(QXRenderTarget); i += 64) __builtin_prefetch(pBytes + i);
}

}  // namespace

QXGraphics3D::QXGraphics3D()
    : m_matWorld(QXMatrix4d::ZERO), m_matView(QXMatrix4d::ZERO), m_matProjection(QXMatrix4d::ZERO),
      m_pModelManager(new QXModelManager), m_Mutex(0) {}

QXGraphics3D::~QXGraphics3D() {
  m_pViewport = nullptr;
  QXGraphics3D::ClearResource();
}

void QXGraphics3D::AttachRenderTarget(QXRenderTarget* pTarget) {
  m_RenderTargets[pTarget->GetName()] = pTarget;
  m_pActiveRenderTarget = pTarget;
}

QXRenderTarget* QXGraphics3D::GetRenderTarget(QdcUnicodeString const& strName) const {
  auto const position = m_RenderTargets.Find(strName);
  return m_RenderTargets.IsEOF(position) ? nullptr : position->second;
}

void QXGraphics3D::DeleteRenderTarget(QXRenderTarget* pTarget) {
  if (!pTarget) return;
  for (auto position = m_RenderTargets.GetStartPosition(); !m_RenderTargets.IsEOF(position); ++position) {
    if (position->second != pTarget) continue;
    m_RenderTargets.RemoveKey(position->first);
    delete pTarget;
    return;
  }
}

void QXGraphics3D::ShutDown() {
  // A target that was renamed and attached again stands under both names, and must still be deleted only once.
  std::set<QXRenderTarget*> setTargets;
  for (auto position = m_RenderTargets.GetStartPosition(); !m_RenderTargets.IsEOF(position); ++position) {
    if (position->second) setTargets.insert(position->second);
  }
  for (auto position = m_RenderTargets.GetStartPosition(); !m_RenderTargets.IsEOF(position); ++position) {
    QXRenderTarget* const pTarget = position->second;
    m_RenderTargets[position->first] = nullptr;
    if (setTargets.erase(pTarget) != 0) delete pTarget;
  }
  m_RenderTargets.RemoveAll();
}

void QXGraphics3D::UpdateAllRenderTargets() {
  for (auto position = m_RenderTargets.GetStartPosition(); !m_RenderTargets.IsEOF(position);) {
    QXRenderTarget* const pTarget = position->second;
    // The next target comes into the cache while this one draws; drawing may attach and delete targets.
    std::uint64_t const nChangeCount = m_RenderTargets.GetChangeCount();
    auto next = position;
    ++next;
    if (!m_RenderTargets.IsEOF(next)) FetchAhead(next->second);
    if (pTarget->IsActive()) m_pActiveRenderTarget = pTarget;
    QXRenderTarget* const pSaved = m_pActiveRenderTarget;
    if (pTarget->IsCurTargetRefresh()) {
      // A forced redraw uses the companions that are attached: it repeats the last picture, it is no new view.
      m_pActiveRenderTarget = pTarget;
      UpdateAsActive(*pTarget);
      pTarget->SetCurTargetRefresh(0);
      m_pActiveRenderTarget = pSaved;
    } else if (pTarget->IsActive() && pTarget->IsAutoUpdated()) {
      pTarget->Update();
    } else if (pTarget->IsAlwaysActive()) {
      UpdateAlwaysActive(*this, *pTarget, pSaved);
    }
    if (m_RenderTargets.GetChangeCount() == nChangeCount) {
      position = next;
    } else {
      ++position;
    }
  }
}

void QXGraphics3D::InvalidateAllRenderTargets() {
  for (auto position = m_RenderTargets.GetStartPosition(); !m_RenderTargets.IsEOF(position); ++position) {
    if (position->second) position->second->Update();
  }
}

void QXGraphics3D::NotifyCameraRemoved(QXCamera const* pCamera) {
  for (auto position = m_RenderTargets.GetStartPosition(); !m_RenderTargets.IsEOF(position); ++position) {
    if (position->second) position->second->NotifyCameraRemoved(pCamera);
  }
}

void QXGraphics3D::ClearResource() {
  // The order is part of the contract: models hold textures, and the atlases hold textures of the texture manager.
  delete m_pModelManager;
  m_pModelManager = nullptr;
  if (m_pResourceHolder) m_pResourceHolder->ReleaseResources();
  if (m_pTextureManager) m_pTextureManager->Release();
  QXTextureFontManager::GetSingleton().Clear();
  if (m_pTextureManager) QXTextureImageManagerEx::GetSingleton().Clear();
  FreeMap(m_mapUpdateROViewProjCallBackProc);
  FreeMap(m_mapROManualNearFarDist);
  FreeMap(m_mapROManualSceneName);
  FreeMap(m_mapReInitRenderQueueProc);
  m_arrReInitRenderQueue.RemoveAll();
  m_arrReInitRenderQueue.FreeExtra();
  FreeMap(m_mapReInitObjectSceneName);
}

void QXGraphics3D::SetWorldMatrices(QXMatrix4d const* pMatrices, unsigned short nCount) {
  // More matrices than the palette holds would run over the members behind it. By assignment, not as bytes: a
  // matrix has a virtual table.
  std::size_t const nCopied = std::min<std::size_t>(nCount, std::size(m_arrWorldMatrices));
  std::copy_n(pMatrices, nCopied, m_arrWorldMatrices);
  SetWorldMatrix(QXMatrix4d::IDENTITY);
}

void QXGraphics3D::SetTextureUnitSettings(unsigned int nUnit, QXTextureUnitState const& state) {
  // Effects (environment maps, projection) are the plug-in's own business: it reads them off the state.
  int const nFilter2 = state.GetTextureFiltering(2);
  int const nFilter1 = state.GetTextureFiltering(1);
  int const nFilter0 = state.GetTextureFiltering(0);
  SetTextureUnitFiltering(nUnit, nFilter0, nFilter1, nFilter2);
}

void QXGraphics3D::DisableTextureUnitsFrom(unsigned int nUnit) {
  for (unsigned int nIndex = nUnit; nIndex < m_Capabilities.GetNumTextureUnits(); ++nIndex) DisableTextureUnit(nIndex);
}

void QXGraphics3D::BeginGeometryCount() {
  m_nFaceCount = 0;
  m_nVertexCount = 0;
}

// Forwarders to the active target.

void QXGraphics3D::SetSunPosition(QXVector3d const& vecPosition) {
  m_pActiveRenderTarget->SetSunPosition(vecPosition);
}

QXVector3d QXGraphics3D::GetSunPosition() const {
  return m_pActiveRenderTarget->GetSunPosition();
}

void QXGraphics3D::SetSunLightEnable(unsigned char bEnable) {
  m_pActiveRenderTarget->SetSunLightEnable(bEnable);
}

unsigned char QXGraphics3D::GetSunLightEnalble() const {
  return m_pActiveRenderTarget->GetSunLightEnable();
}

// Plain accessors.

QXRenderTarget* QXGraphics3D::GetActiveRenderTarget() const {
  return m_pActiveRenderTarget;
}

void QXGraphics3D::AttachReflectRenderTarget(QXRenderTarget* pTarget) {
  m_pReflectRenderTarget = pTarget;
}

QXRenderTarget* QXGraphics3D::GetReflectRenderTarget() const {
  return m_pReflectRenderTarget;
}

void QXGraphics3D::AttachSelectionRenderTarget(QXRenderTarget* pTarget) {
  m_pSelectionRenderTarget = pTarget;
}

QXRenderTarget* QXGraphics3D::GetSelectionRenderTarget() const {
  return m_pSelectionRenderTarget;
}

void QXGraphics3D::AttachVertexSelectionRenderTarget(QXRenderTarget* pTarget) {
  m_pVertexSelectionRenderTarget = pTarget;
}

QXRenderTarget* QXGraphics3D::GetVertexSelectionRenderTarget() const {
  return m_pVertexSelectionRenderTarget;
}

void QXGraphics3D::AttachMultiRenderTarget(QXRenderTarget* pTarget) {
  m_pMultiRenderTarget = pTarget;
}

QXTextureManager* QXGraphics3D::GetTextureManager() const {
  return m_pTextureManager;
}

QXHwInstancingManager* QXGraphics3D::GetHwInstancingManager() const {
  return m_pHwInstancingManager;
}

QXRenderOperationManager* QXGraphics3D::GetRenderOperationManager() const {
  return m_pRenderOperationManager;
}

QXViewport* QXGraphics3D::GetViewport() const {
  return m_pViewport;
}

CullingMode QXGraphics3D::GetCullingMode() const {
  return m_eCullingMode;
}

unsigned int QXGraphics3D::GetFaceCount() const {
  return m_nFaceCount;
}

unsigned int QXGraphics3D::GetVertexCount() const {
  return m_nVertexCount;
}

void QXGraphics3D::SetInvertVertexWinding(unsigned char bInvert) {
  m_bInvertVertexWinding = bInvert;
}

QDCCharset::Charset QXGraphics3D::GetTextCharset() const {
  return m_eTextCharset;
}

void QXGraphics3D::SetTextCharset(QDCCharset::Charset const& eCharset) {
  m_eTextCharset = eCharset;
}

unsigned int QXGraphics3D::GetRenderBufferTarget() const {
  return m_nRenderBufferTarget;
}

unsigned int QXGraphics3D::SetRenderBufferTarget(unsigned int nTarget) {
  return std::exchange(m_nRenderBufferTarget, nTarget);
}

unsigned char QXGraphics3D::GetWaitForVerticalBlank() const {
  return m_bWaitForVerticalBlank;
}

void QXGraphics3D::SetWaitForVerticalBlank(unsigned char bWait) {
  m_bWaitForVerticalBlank = bWait;
}

void QXGraphics3D::SetCurrentPassIterationCount(unsigned int nCount) {
  m_nCurrentPassIterationCount = nCount;
}

}  // namespace QXC
