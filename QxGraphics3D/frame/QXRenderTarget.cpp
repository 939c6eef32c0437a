#include <QxGraphics3D/frame/QXRenderTarget.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <utility>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/detail/QXViewportFrame.h>
#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {
namespace {

/// Exactly one half, told by its bits: the ordering asks every viewport in every frame.
bool IsHalf(double dValue) {
  return std::bit_cast<std::uint64_t>(dValue) == std::bit_cast<std::uint64_t>(0.5);
}

}  // namespace

unsigned int QXRenderTarget::ms_nRefAdd = 0;

QXRenderTarget::QXRenderTarget()
    : m_nPriority(4), m_nWidth(0), m_nHeight(0), m_nColourDepth(0), m_Stats(), m_nLastSecond(0), m_nLastTime(0),
      m_nFrameCount(0), m_dVerticalExaggeration(1.0), m_bActive(0), m_bAlwaysActive(0), m_bAutoUpdated(1),
      m_hWindow(nullptr), m_hDisplay3D(nullptr), m_pGraphics3D(nullptr), m_bCurTargetRefresh(0), m_bSunLightEnable(1),
      m_bFlagA(0), m_bRenderStencilSM(0), m_pOsgbSelShadowTexture(nullptr), m_eRenderState(RENDER_STATE_SOLID),
      m_pReflectRenderTarget(nullptr), m_pSelectionRenderTarget(nullptr), m_pVertexSelectionRenderTarget(nullptr),
      m_bRenderToTextureWithManual(0), m_eMultiViewportMode(MVM_INDEPENDENT), m_bFlagB(0),
      m_bRenderSceneWithTextureBuffer(0), m_bLogDepthEnable(0), m_pListener(nullptr), m_bFlagC(1) {
  QXRenderTarget::ResetStatistics();
}

QXRenderTarget::QXRenderTarget(QXRenderTarget const& other) = default;
QXRenderTarget& QXRenderTarget::operator=(QXRenderTarget const& other) = default;

QXRenderTarget::~QXRenderTarget() {
  QXRenderTarget::RemoveAllViewports();
  delete m_pOsgbSelShadowTexture;
}

// --- The frame ---

void QXRenderTarget::Update() {
  MoveViewPortToLast(-1);
  ViewportPosition position = m_Viewports.GetStartPosition();
  BeginViewportUpdate(position);
  ListViewports();
  std::uint64_t nChangeCount = m_List.m_nChangeCount;
  ViewportEntry const* const* pEntry = FindInList(position);
  ViewportEntry const* const* pEnd = m_List.GetEnd();
  while (pEntry != pEnd) {
    int const nKey = (*pEntry)->first;
    QXViewport* const pViewport = (*pEntry)->second;
    ++pEntry;
    if (pViewport == nullptr) {
      continue;
    }
    // Taken now: rendering may give the viewport another camera, and the notification is about the one that drew.
    QXCamera* const pCamera = pViewport->m_pCamera;
    if (pCamera != nullptr && m_eMultiViewportMode == MVM_ORDERED) {
      detail::NotifyViewport(*pCamera, pViewport);
      ApplyCameraToTarget(pCamera, 0, 0);
    }
    detail::UpdateViewport(*pViewport);
    if (pCamera != nullptr && pCamera->m_bTargetNotifyPending) [[unlikely]] {
      NotifyCameraStateChange(1);
      pCamera->m_bTargetNotifyPending = 0;
    }
    // A scene may take viewports away or add some, its own among them: the walk goes on behind its key.
    if (m_Viewports.GetChangeCount() != nChangeCount) [[unlikely]] {
      ListViewports();
      nChangeCount = m_List.m_nChangeCount;
      pEntry = FindInListBehind(nKey);
      pEnd = m_List.GetEnd();
    }
  }
  UpdateStats();
}

void QXRenderTarget::RebuildList() {
  m_List.m_nChangeCount = ViewportList::Stale;
  m_List.m_arrEntries.clear();
  m_List.m_bDense = 1;
  int nNext = 0;
  for (ViewportPosition position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position) {
    m_List.m_arrEntries.push_back(&*position);
    if (position->first != nNext++) {
      m_List.m_bDense = 0;
    }
  }
  m_List.m_nChangeCount = m_Viewports.GetChangeCount();
}

QXRenderTarget::ViewportEntry const* const* QXRenderTarget::FindInList(ViewportPosition const& position) const {
  if (position == m_Viewports.GetStartPosition()) [[likely]] {
    return m_List.GetBegin();
  }
  return m_Viewports.IsEOF(position) ? m_List.GetEnd() : FindInListBehind(position->first) - 1;
}

QXRenderTarget::ViewportEntry const* const* QXRenderTarget::FindInListBehind(int nKey) const {
  return std::upper_bound(m_List.GetBegin(), m_List.GetEnd(), nKey,
      [](int nSought, auto const* pEntry) { return nSought < pEntry->first; });
}

void QXRenderTarget::MoveViewPortToLast(int nIndex) {
  // Signed: -1 is the last index of no viewports at all.
  int const nLast = static_cast<int>(m_Viewports.GetCount()) - 1;
  if (nIndex == nLast || m_eMultiViewportMode != MVM_ORDERED) {
    return;
  }
  if (nIndex >= 0 && nIndex <= 2) {
    MoveToTop(nIndex);
  }
  int nHalfHeight = NumberViewports();
  while (nHalfHeight < 0) {
    StoreDensely();
    nHalfHeight = NumberViewports();
  }
  if (nHalfHeight != 0) {
    SwapFirstTwo();
  }
}

int QXRenderTarget::NumberViewports() {
  ListViewports();
  // Every frame comes here; only one after a change of the viewports pays for new nodes.
  if (!m_List.m_bDense) [[unlikely]] {
    return -1;
  }
  int nHalfHeight = 0;
  int nNext = 0;
  for (ViewportEntry const* const pEntry : m_List.m_arrEntries) {
    QXViewport* const pViewport = pEntry->second;
    if (pViewport == nullptr) [[unlikely]] {
      return -1;
    }
    // Not the third: of three views the third is a full-width strip below two halves and never lies over another.
    // The stored height serves: what GetHeight gives for 0 is not one half either.
    if (IsHalf(pViewport->m_dRelHeight) && nNext != 2) [[unlikely]] {
      nHalfHeight = nNext;
    }
    // Not stored anew where it stands: with many targets, cache lines that are written have to be written back.
    if (pViewport->GetZOrder() != nNext) [[unlikely]] {
      pViewport->SetZOrder(nNext);
    }
    ++nNext;
  }
  return nHalfHeight;
}

void QXRenderTarget::MoveToTop(int nKey) {
  QXViewport* pViewport = nullptr;
  if (!m_Viewports.Lookup(nKey, pViewport) || pViewport == nullptr) {
    return;
  }
  m_Viewports.RemoveKey(nKey);
  // Among keys with gaps the place behind the count may be taken: overwriting it would lose that viewport.
  int nTop = static_cast<int>(m_Viewports.GetCount()) + 1;
  QXViewport* pTaken = nullptr;
  while (m_Viewports.Lookup(nTop, pTaken)) {
    ++nTop;
  }
  m_Viewports[nTop] = pViewport;
}

void QXRenderTarget::StoreDensely() {
  QdcDict<int, QXViewport*, std::less<int>> dense;
  int nNext = 0;
  for (ViewportPosition position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position) {
    if (position->second != nullptr) {
      dense[nNext++] = position->second;
    }
  }
  m_Viewports = std::move(dense);
}

void QXRenderTarget::SwapFirstTwo() {
  QXViewport*& pFirst = m_Viewports[0];
  QXViewport*& pSecond = m_Viewports[1];
  pFirst->SetZOrder(1);
  pSecond->SetZOrder(0);
  std::swap(pFirst, pSecond);
}

void QXRenderTarget::UpdateStats() {
  ++m_nFrameCount;
  std::uint64_t const nNow = QdcTime::GetMillisecond();
  // The clock is 32 bits wide: the frame in which it wraps counts as an enormous one, here and in the period below.
  std::uint64_t const nFrameTime = nNow - m_nLastTime;
  m_nLastTime = nNow;
  // Branches that are hardly ever taken, where min and max would store in every frame.
  if (nFrameTime < m_Stats.bestFrameTime) {
    m_Stats.bestFrameTime = nFrameTime;
  }
  if (nFrameTime > m_Stats.worstFrameTime) {
    m_Stats.worstFrameTime = nFrameTime;
  }
  std::uint64_t const nPeriod = nNow - m_nLastSecond;
  if (nPeriod > 1000) {
    EvaluatePeriod(nNow, nPeriod);
  }
}

void QXRenderTarget::EvaluatePeriod(std::uint64_t nNow, std::uint64_t nPeriod) {
  m_Stats.lastFPS = static_cast<double>(m_nFrameCount) / static_cast<double>(nPeriod) * 1000.0;
  // Weight one half for the newest period, so that the figure follows a change within a few seconds.
  m_Stats.avgFPS = m_Stats.avgFPS == 0.0 ? m_Stats.lastFPS : (m_Stats.avgFPS + m_Stats.lastFPS) / 2.0;
  m_Stats.bestFPS = std::max(m_Stats.bestFPS, m_Stats.lastFPS);
  m_Stats.worstFPS = std::min(m_Stats.worstFPS, m_Stats.lastFPS);
  m_nLastSecond = nNow;
  m_nFrameCount = 0;
}

void QXRenderTarget::ResetStatistics() {
  m_Stats.lastFPS = 0.0;
  m_Stats.avgFPS = 0.0;
  m_Stats.bestFPS = 0.0;
  m_Stats.worstFPS = 999.0;
  m_Stats.triangleCount = 0;
  m_Stats.bestFrameTime = 999999;
  m_Stats.worstFrameTime = 0;
  m_nLastTime = QdcTime::GetMillisecond();
  m_nLastSecond = m_nLastTime;
  m_nFrameCount = 0;
}

// --- Viewports ---

QXViewport* QXRenderTarget::AddViewport(
    QXCamera* pCamera, int nZOrder, double dLeft, double dBottom, double dWidth, double dHeight) {
  QXViewport* pViewport = nullptr;
  if (m_Viewports.Lookup(nZOrder, pViewport) && pViewport != nullptr) {
    return pViewport;
  }
  // Stored only when it stands: the camera, told of its viewport meanwhile, finds the target as it was.
  auto pNew = std::make_unique<QXViewport>(pCamera, this, dLeft, dBottom, dWidth, dHeight, nZOrder);
  m_Viewports[nZOrder] = pNew.get();
  pViewport = pNew.release();
  // The list grows here, so that the next frame need not.
  ListViewports();
  return pViewport;
}

unsigned short QXRenderTarget::GetNumViewports() const {
  return static_cast<unsigned short>(m_Viewports.GetCount());
}

QXViewport* QXRenderTarget::GetViewport(unsigned short nIndex) const {
  QXViewport* pViewport = nullptr;
  m_Viewports.Lookup(nIndex, pViewport);
  return pViewport;
}

void QXRenderTarget::RemoveViewport(int nZOrder) {
  QXViewport* pViewport = nullptr;
  if (m_Viewports.Lookup(nZOrder, pViewport)) {
    delete pViewport;
    m_Viewports.RemoveKey(nZOrder);
  }
}

void QXRenderTarget::RemoveAllViewports() {
  for (ViewportPosition position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position) {
    delete position->second;
  }
  m_Viewports.RemoveAll();
}

// --- Accessors with a rule ---

void QXRenderTarget::GetMetrics(unsigned int& nWidth, unsigned int& nHeight, unsigned int& nColourDepth) const {
  nWidth = m_nWidth;
  nHeight = m_nHeight;
  nColourDepth = m_nColourDepth;
}

unsigned int QXRenderTarget::GetWidth() const {
  return m_nWidth == 0 ? 1 : m_nWidth;
}
unsigned int QXRenderTarget::GetHeight() const {
  return m_nHeight == 0 ? 1 : m_nHeight;
}

RenderStateSet QXRenderTarget::SetRenderState(RenderStateSet eState) {
  RenderStateSet const eFormer = m_eRenderState;
  m_eRenderState = eState;
  return eFormer;
}

void QXRenderTarget::SetVertexSelectionRenderTarget(QXRenderTarget* pTarget) {
  if (pTarget == m_pVertexSelectionRenderTarget) {
    return;
  }
  delete m_pVertexSelectionRenderTarget;
  m_pVertexSelectionRenderTarget = pTarget;
}

void QXRenderTarget::GetStatistics(double& dLastFPS, double& dAvgFPS, double& dBestFPS, double& dWorstFPS) const {
  dLastFPS = m_Stats.lastFPS;
  dAvgFPS = m_Stats.avgFPS;
  dBestFPS = m_Stats.bestFPS;
  dWorstFPS = m_Stats.worstFPS;
}

void QXRenderTarget::GetClearEveryFrame(unsigned char& bClear, unsigned int& nBuffers) const {
  bClear = 1;
  nBuffers = 3;
}

// --- Plain accessors ---

QdcUnicodeString const& QXRenderTarget::GetName() const {
  return m_strName;
}
QdcUnicodeString const& QXRenderTarget::GetSceneName() const {
  return m_strSceneName;
}
void QXRenderTarget::SetWidth(unsigned int nWidth) {
  m_nWidth = nWidth;
}
void QXRenderTarget::SetHeight(unsigned int nHeight) {
  m_nHeight = nHeight;
}
unsigned int QXRenderTarget::GetColourDepth() const {
  return m_nColourDepth;
}
void QXRenderTarget::SetColourDepth(unsigned int nColourDepth) {
  m_nColourDepth = nColourDepth;
}
void QXRenderTarget::SetMultiViewportMode(MultiViewportMode eMode) {
  m_eMultiViewportMode = eMode;
}
MultiViewportMode QXRenderTarget::GetMultiViewportMode() const {
  return m_eMultiViewportMode;
}
QXRenderTarget::FrameStats const& QXRenderTarget::GetStatistics() const {
  return m_Stats;
}
double QXRenderTarget::GetLastFPS() const {
  return m_Stats.lastFPS;
}
double QXRenderTarget::GetAverageFPS() const {
  return m_Stats.avgFPS;
}
double QXRenderTarget::GetBestFPS() const {
  return m_Stats.bestFPS;
}
double QXRenderTarget::GetWorstFPS() const {
  return m_Stats.worstFPS;
}
std::uint64_t QXRenderTarget::GetBestFrameTime() const {
  return m_Stats.bestFrameTime;
}
std::uint64_t QXRenderTarget::GetWorstFrameTime() const {
  return m_Stats.worstFrameTime;
}
void QXRenderTarget::SetDebugText(QdcUnicodeString const& strText) {
  m_strDebugText = strText;
}
void QXRenderTarget::SetPriority(unsigned char nPriority) {
  m_nPriority = nPriority;
}
unsigned char QXRenderTarget::GetPriority() const {
  return m_nPriority;
}
unsigned char QXRenderTarget::IsActive() const {
  return m_bActive;
}
unsigned char QXRenderTarget::IsAlwaysActive() const {
  return m_bAlwaysActive;
}
void QXRenderTarget::SetActive(unsigned char bActive) {
  m_bActive = bActive;
}
void QXRenderTarget::SetAlwaysActive(unsigned char bAlwaysActive) {
  m_bAlwaysActive = bAlwaysActive;
}
void QXRenderTarget::SetAutoUpdated(unsigned char bAutoUpdated) {
  m_bAutoUpdated = bAutoUpdated;
}
unsigned char QXRenderTarget::IsAutoUpdated() const {
  return m_bAutoUpdated;
}
int QXRenderTarget::GetTriangleCount() const {
  return m_Stats.triangleCount;
}
unsigned char QXRenderTarget::IsRenderSceneWithTextureBuffer() const {
  return m_bRenderSceneWithTextureBuffer;
}
void QXRenderTarget::SetLogDepthEnable(unsigned char bEnable) {
  m_bLogDepthEnable = bEnable;
}
unsigned char QXRenderTarget::IsLogDepthEnable() const {
  return m_bLogDepthEnable;
}
void QXRenderTarget::SetListener(QXRenderTargetListener* pListener) {
  m_pListener = pListener;
}

// --- What only a plug-in can do: fixed answers and empty bodies ---

unsigned char QXRenderTarget::GetSceneAntialias() const {
  return 0;
}
int QXRenderTarget::GetSceneAntialiasValue() const {
  return 0;
}
QdcUnicodeString QXRenderTarget::WriteContentsToTimestampedFile(
    QdcUnicodeString const& /*strPrefix*/, QdcUnicodeString const& /*strSuffix*/) {
  return QdcUnicodeString();
}
unsigned char QXRenderTarget::IsPrimary() const {
  return 0;
}
unsigned int QXRenderTarget::GetDisplayWidth() const {
  return 0;
}
unsigned int QXRenderTarget::GetDisplayHeight() const {
  return 0;
}
QXVector3d QXRenderTarget::GetSunPosition() const {
  return QXVector3d::ZERO;
}
unsigned char QXRenderTarget::GetShadowEnable() const {
  return 0;
}
double QXRenderTarget::GetShadowVisibleDistance() const {
  return 0.0;
}
QXVector3d QXRenderTarget::GetShadowSplitPoints() const {
  return QXVector3d::ZERO;
}
int QXRenderTarget::GetTextureID() const {
  return -1;
}
unsigned char QXRenderTarget::GetShadowTextureCameras(QdcArray<QXCamera*>& /*arrCameras*/) const {
  return 0;
}

void QXRenderTarget::SetSceneAntialias(unsigned char /*bEnable*/) {}
void QXRenderTarget::SetSceneAntialiasValue(int /*nSamples*/) {}
void QXRenderTarget::ReSize(unsigned int /*nWidth*/, unsigned int /*nHeight*/) {}
void QXRenderTarget::GetCustomAttribute(QdcUnicodeString const& /*strName*/, void* /*pData*/) {}
void QXRenderTarget::NotifyCameraRemoved(QXCamera const* /*pCamera*/) {}
void QXRenderTarget::SetClearEveryFrame(unsigned char /*bClear*/, unsigned int /*nBuffers*/) {}
void QXRenderTarget::SetSunPosition(QXVector3d const& /*vecPosition*/) {}
void QXRenderTarget::SetSunLightEnable(unsigned char /*bEnable*/) {}
void QXRenderTarget::SetShadowEnable(unsigned char /*bEnable*/) {}
void QXRenderTarget::SetShadowVisibleDistance(double /*dDistance*/) {}
void QXRenderTarget::SetBackgroundColor(QXColorValue3D const& /*color*/) {}
void QXRenderTarget::CopyFromMemory(unsigned char const* /*pPixels*/, unsigned int /*nByteCount*/) {}
void QXRenderTarget::AddGlobalEffect(QdcUnicodeString const& /*strEffect*/) {}
void QXRenderTarget::RemoveGlobalEffect(QdcUnicodeString const& /*strEffect*/) {}
void QXRenderTarget::SetGlobalEffectFrustum(QdcUnicodeString const& /*strEffect*/, QXFrustum const& /*frustum*/) {}
void QXRenderTarget::RemoveGlobalEffectFrustum(QdcUnicodeString const& /*strEffect*/) {}
void QXRenderTarget::SetRenderDepth(unsigned char /*bEnable*/) {}
void QXRenderTarget::SetCustomClipPlanes(QXPlane const* /*pPlanes*/, unsigned int /*nCount*/) {}
void QXRenderTarget::ClearCustomClipPlanes() {}
void QXRenderTarget::ResetCameraViewport(QXCamera* /*pCamera*/) {}
void QXRenderTarget::CreateShadowSettingInfo() {}
void QXRenderTarget::UpdateShadowTextureCameras() {}
void QXRenderTarget::DeleteShadowSettingInfo() {}
void QXRenderTarget::SetAmbientLight(QXColorValue3D const& /*color*/) {}
void QXRenderTarget::SetDiffuseLight(QXColorValue3D const& /*color*/) {}
void QXRenderTarget::AddDepthTextureRequest() {}
void QXRenderTarget::RemoveDepthTextureRequest() {}

}  // namespace QXC
