#include <QxGraphics3D/testing/QXNullGraphics3D.h>

#include <algorithm>
#include <cstddef>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/testing/QXNullCamera.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperationOverlay.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>
#include <QxGraphics3D/testing/QXNullScene.h>
#include <QxGraphics3D/testing/QXNullSkyGraphics3D.h>
#include <QxGraphics3D/testing/QXNullTritonOceanGraphics3D.h>
#include <QxGraphics3D/testing/QXNullUniformBuffer.h>

namespace QXC {
namespace {

constexpr wchar_t const* MainSceneName = L"Scene3D";
/// Edge of the largest target that common devices make; a larger one is a host's arithmetic gone wrong.
constexpr unsigned int MaxTargetSize = 16384;

QdcUnicodeString Join(wchar_t const* szBefore, QdcUnicodeString const& strName, wchar_t const* szBehind) {
  return QdcUnicodeString(szBefore) + strName + szBehind;
}

}  // namespace

QXNullGraphics3D::QXNullGraphics3D() : QXNullGraphics3D(std::shared_ptr<QXCallLog>()) {}

QXNullGraphics3D::QXNullGraphics3D(std::shared_ptr<QXCallLog> pLog)
    : QXNullDevice(pLog), m_strName(L"null"), m_TextureManager(pLog), m_Manager(*this, pLog),
      m_HwInstancingManager(*this, pLog) {
  m_pTextureManager = &m_TextureManager;
  m_pRenderOperationManager = &m_Manager;
  m_pHwInstancingManager = &m_HwInstancingManager;
}

QXNullGraphics3D::~QXNullGraphics3D() {
  // Targets that the host has not deleted live on; no camera may be reached through them.
  for (QXNullRenderTarget* const pTarget : m_arrTargets) {
    pTarget->LeaveRenderer();
  }
  // Scenes know their drawables and cameras their renderer, so both go while everything else still stands. The base
  // destructor clears what it still finds set, and these members are gone by then.
  m_mapCameras.clear();
  m_mapScenes.clear();
  m_pTextureScene.reset();
  m_pTextureManager = nullptr;
  m_pRenderOperationManager = nullptr;
  m_pHwInstancingManager = nullptr;
}

unsigned char QXNullGraphics3D::Initialize(QdcUnicodeString const& strResourcePath) {
  Record("Initialize", strResourcePath);
  if (m_bInitialized) {
    return Fail(L"the renderer is initialised already");
  }
  m_bInitialized = 1;
  m_pTextureScene = std::make_unique<QXNullScene>(QdcUnicodeString());
  m_mapScenes.emplace(MainSceneName, std::make_unique<QXNullScene>(MainSceneName));
  m_Capabilities.SetDeviceName(m_strName);
  m_Capabilities.SetNumTextureUnits(8);
  m_Capabilities.SetMaxTextureSize(static_cast<int>(MaxTargetSize));
  return 1;
}

QdcUnicodeString QXNullGraphics3D::GetRenderSystemName() const {
  return m_bInitialized ? m_strName : QdcUnicodeString();
}

QdcUnicodeString QXNullGraphics3D::GetRenderSystemVersion() const {
  return m_bInitialized ? QdcUnicodeString(L"1") : QdcUnicodeString();
}

void QXNullGraphics3D::ClearResource() {
  Record("ClearResource");
  m_HwInstancingManager.Clear();  // before the textures of their meshes go
  QXGraphics3D::ClearResource();
}

// --- Scenes, lights, fog, sky and ocean ---

unsigned char QXNullGraphics3D::CreateScene(QdcUnicodeString const& strName) {
  Record("CreateScene", strName);
  if (!m_bInitialized) {
    return Fail(Join(L"scene '", strName, L"' asked for before Initialize"));
  }
  if (strName.IsEmpty() || HasScene(strName)) {
    return Fail(Join(L"scene name '", strName, L"' is empty or taken"));
  }
  m_mapScenes.emplace(strName, std::make_unique<QXNullScene>(strName));
  return 1;
}

void QXNullGraphics3D::DestroyScene(QdcUnicodeString const& strName) {
  Record("DestroyScene", strName);
  if (!HasScene(strName)) {
    return;
  }
  for (auto camera = m_mapCameras.begin(); camera != m_mapCameras.end();) {
    auto const next = std::next(camera);
    if (camera->second->GetSceneName() == strName) {
      DeleteCamera(camera);
    }
    camera = next;
  }
  std::erase_if(m_mapLights, [&strName](auto const& light) { return light.second.m_strSceneName == strName; });
  m_mapScenes.erase(strName);
}

unsigned char QXNullGraphics3D::HasScene(QdcUnicodeString const& strName) const {
  return static_cast<unsigned char>(FindScene(strName) != nullptr);
}

QXNullScene* QXNullGraphics3D::FindScene(QdcUnicodeString const& strName) const {
  auto const scene = m_mapScenes.find(strName);
  return scene == m_mapScenes.end() ? nullptr : scene->second.get();
}

QXNullScene* QXNullGraphics3D::FindNodeScene(QdcUnicodeString const& strName) const {
  return strName.IsEmpty() ? m_pTextureScene.get() : FindScene(strName);
}

QdcUnicodeString QXNullGraphics3D::GetSceneName(int nSceneManagerType) const {
  return nSceneManagerType == 0 && m_bInitialized ? QdcUnicodeString(MainSceneName) : QdcUnicodeString();
}

unsigned char QXNullGraphics3D::HasRenderableObjects(QdcUnicodeString const& strSceneName) const {
  QXNullScene const* const pScene = FindScene(strSceneName);
  return static_cast<unsigned char>(
      pScene != nullptr && std::any_of(pScene->GetDrawables().begin(), pScene->GetDrawables().end(),
                               [](auto const* pDrawable) { return pDrawable->GetDrawnRangeCount() > 0; }));
}

unsigned char QXNullGraphics3D::CreateLight(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) {
  Record("CreateLight", strName, strSceneName);
  if (strName.IsEmpty() || !HasScene(strSceneName) || m_mapLights.count(strName) != 0) {
    return Fail(Join(L"light '", strName, L"': the name is empty or taken or the scene unknown"));
  }
  m_mapLights[strName].m_strSceneName = strSceneName;
  return 1;
}

void QXNullGraphics3D::DestroyLight(QdcUnicodeString const& strName) {
  Record("DestroyLight", strName);
  m_mapLights.erase(strName);
}

void QXNullGraphics3D::SetLightEnable(QdcUnicodeString const& strName, unsigned char bEnable) {
  Record("SetLightEnable", strName, bEnable);
  auto const light = m_mapLights.find(strName);
  if (light != m_mapLights.end()) {
    light->second.m_bEnable = bEnable;
  }
}

unsigned char QXNullGraphics3D::SetLight(QdcUnicodeString const& strName, QXLight const& light) {
  Record("SetLight", strName, light);
  auto const entry = m_mapLights.find(strName);
  if (entry == m_mapLights.end()) {
    return Fail(Join(L"there is no light '", strName, L"'"));
  }
  entry->second.m_Light = light;
  return 1;
}

void QXNullGraphics3D::SetLightPos(QdcUnicodeString const& strName, QXVector3d const& vecPosition) {
  Record("SetLightPos", strName, vecPosition);
  auto const light = m_mapLights.find(strName);
  if (light != m_mapLights.end()) {
    light->second.m_Light.SetPosition(vecPosition);
  }
}

QXNullLight const* QXNullGraphics3D::FindLight(QdcUnicodeString const& strName) const {
  auto const light = m_mapLights.find(strName);
  return light == m_mapLights.end() ? nullptr : &light->second;
}

void QXNullGraphics3D::SetFog(QdcUnicodeString const& strSceneName, QXFog const& fog) {
  Record("SetFog", strSceneName, fog);
  if (QXNullScene* const pScene = FindScene(strSceneName)) {
    pScene->SetFog(fog);
  }
}

QXSkyGraphics3D* QXNullGraphics3D::CreateSky(QdcUnicodeString const& strSceneName, SceneType eSceneType) {
  Record("CreateSky", strSceneName, eSceneType);
  if (!HasScene(strSceneName)) {
    Fail(Join(L"there is no scene '", strSceneName, L"'"));
    return nullptr;
  }
  return new QXNullSkyGraphics3D(m_pLog, strSceneName, eSceneType);
}

QXTritonOceanGraphics3D* QXNullGraphics3D::CreateOcean(QdcUnicodeString const& strSceneName, SceneType eSceneType) {
  Record("CreateOcean", strSceneName, eSceneType);
  if (!HasScene(strSceneName)) {
    Fail(Join(L"there is no scene '", strSceneName, L"'"));
    return nullptr;
  }
  return new QXNullTritonOceanGraphics3D(m_pLog, strSceneName, eSceneType);
}

// --- Cameras ---

QXCamera* QXNullGraphics3D::CreateCamera(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) {
  Record("CreateCamera", strName, strSceneName);
  // A camera without a scene of its own draws that of its target, but there is none before Initialize.
  if (strSceneName.IsEmpty() ? !m_bInitialized : !HasScene(strSceneName)) {
    Fail(Join(L"there is no scene '", strSceneName, L"'"));
    return nullptr;
  }
  if (strName.IsEmpty() || m_mapCameras.count(strName) != 0) {
    Fail(Join(L"camera name '", strName, L"' is empty or taken"));
    return nullptr;
  }
  auto pCamera = std::make_unique<QXNullCamera>(*this, strName, strSceneName, m_pLog);
  return m_mapCameras.emplace(strName, std::move(pCamera)).first->second.get();
}

void QXNullGraphics3D::DestroyCamera(QXCamera* pCamera) {
  Record("DestroyCamera", pCamera);
  auto const camera = std::find_if(
      m_mapCameras.begin(), m_mapCameras.end(), [pCamera](auto const& entry) { return entry.second.get() == pCamera; });
  if (camera != m_mapCameras.end()) {
    DeleteCamera(camera);
  }
}

void QXNullGraphics3D::DeleteCamera(std::map<QdcUnicodeString, std::unique_ptr<QXNullCamera>>::iterator camera) {
  NotifyCameraRemoved(camera->second.get());
  // Targets that are not attached hold viewports too.
  for (QXNullRenderTarget* const pTarget : m_arrTargets) {
    if (GetRenderTarget(pTarget->GetName()) != pTarget) {
      pTarget->NotifyCameraRemoved(camera->second.get());
    }
  }
  if (GetCamera4QX() == camera->second.get()) {
    SetCamera4QX(nullptr);
  }
  m_mapCameras.erase(camera);
}

QXCamera* QXNullGraphics3D::GetCamera(QdcUnicodeString const& strName) const {
  auto const camera = m_mapCameras.find(strName);
  return camera == m_mapCameras.end() ? nullptr : camera->second.get();
}

void QXNullGraphics3D::SetRelativeOrigin(QXVector3d const& vecOrigin) {
  QXNullDevice::SetRelativeOrigin(vecOrigin);
  for (auto const& [strName, pCamera] : m_mapCameras) {
    QXVector3d const vecPosition = pCamera->GetPosition();
    pCamera->SetRelativeOrigin(vecOrigin);
    pCamera->SetPosition(vecPosition);
  }
}

// --- Targets ---

unsigned char QXNullGraphics3D::CheckTarget(
    QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight) {
  if (!m_bInitialized) {
    return Fail(Join(L"target '", strName, L"' asked for before Initialize"));
  }
  if (strName.IsEmpty() || GetRenderTarget(strName) != nullptr) {
    return Fail(Join(L"target name '", strName, L"' is empty or taken"));
  }
  if (nWidth == 0 || nHeight == 0 || nWidth > MaxTargetSize || nHeight > MaxTargetSize) {
    QdcUnicodeString strReason;
    strReason.Format(L"target '%s' of %u x %u pixels: a size of 1 to %u is possible", strName.Cstr(), nWidth, nHeight,
        MaxTargetSize);
    return Fail(strReason);
  }
  return 1;
}

QXRenderTarget* QXNullGraphics3D::MakeTarget(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight,
    unsigned char bTexture, QdcUnicodeString const& strSceneName) {
  if (!CheckTarget(strName, nWidth, nHeight)) {
    return nullptr;
  }
  auto pTarget = std::make_unique<QXNullRenderTarget>(strName, nWidth, nHeight, bTexture, m_pLog);
  pTarget->m_strSceneName = strSceneName;
  pTarget->SetGraphics3D(this);
  pTarget->m_pRenderer = this;
  m_arrTargets.push_back(pTarget.get());
  if (bTexture) {
    m_TextureManager.AddPicture(strName, pTarget->GetTexture());
  }
  return pTarget.release();
}

QXRenderTarget* QXNullGraphics3D::CreateRenderWindow(QdcUnicodeString const& strName, HWND hWindow, unsigned int nWidth,
    unsigned int nHeight, unsigned char bFullScreen) {
  Record("CreateRenderWindow", strName, QXLoggedMemory{hWindow}, nWidth, nHeight, bFullScreen);
  QXRenderTarget* const pTarget = MakeTarget(strName, nWidth, nHeight, 0, QdcUnicodeString());
  if (pTarget != nullptr) {
    pTarget->m_hWindow = hWindow;
    // A window is there to be drawn every frame; a texture waits until somebody asks for it.
    pTarget->SetActive(1);
  }
  return pTarget;
}

QXRenderTarget* QXNullGraphics3D::CreateRenderTexture(QdcUnicodeString const& strName, QX3DPixelFormat eFormat,
    unsigned int nWidth, unsigned int nHeight, int nMipmaps, unsigned int nColourDepth,
    QdcUnicodeString const& strSceneName) {
  Record("CreateRenderTexture", strName, eFormat, nWidth, nHeight, nMipmaps, nColourDepth, strSceneName);
  QXRenderTarget* const pTarget = MakeTarget(strName, nWidth, nHeight, 1, strSceneName);
  if (pTarget != nullptr) {
    pTarget->m_nColourDepth = nColourDepth;
  }
  return pTarget;
}

QXRenderTarget* QXNullGraphics3D::CreateReflectRenderTarget(
    QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, QdcUnicodeString const& strSceneName) {
  Record("CreateReflectRenderTarget", strName, nWidth, nHeight, strSceneName);
  return MakeTarget(strName, nWidth, nHeight, 1, strSceneName);
}

QXRenderTarget* QXNullGraphics3D::CreateSelectionRenderTarget(
    QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, QdcUnicodeString const& strSceneName) {
  Record("CreateSelectionRenderTarget", strName, nWidth, nHeight, strSceneName);
  return MakeTarget(strName, nWidth, nHeight, 1, strSceneName);
}

QXRenderTarget* QXNullGraphics3D::CreateVertexSelectionRenderTarget(
    QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, QdcUnicodeString const& strSceneName) {
  Record("CreateVertexSelectionRenderTarget", strName, nWidth, nHeight, strSceneName);
  return MakeTarget(strName, nWidth, nHeight, 1, strSceneName);
}

QXRenderTarget* QXNullGraphics3D::CreateMultiRenderTarget(
    QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, unsigned int nCount) {
  Record("CreateMultiRenderTarget", strName, nWidth, nHeight, nCount);
  return MakeTarget(strName, nWidth, nHeight, 1, QdcUnicodeString());
}

void QXNullGraphics3D::Forget(QXNullRenderTarget* pTarget) {
  std::erase(m_arrTargets, pTarget);
  if (pTarget->IsTextureTarget()) {
    m_TextureManager.RemovePicture(pTarget->GetName());
  }
}

void QXNullGraphics3D::AttachRenderTarget(QXRenderTarget* pTarget) {
  Record("AttachRenderTarget", pTarget);
  QXGraphics3D::AttachRenderTarget(pTarget);
}

void QXNullGraphics3D::DeleteRenderTarget(QXRenderTarget* pTarget) {
  Record("DeleteRenderTarget", pTarget);
  if (pTarget != nullptr && m_pViewport != nullptr && m_pViewport->GetTarget() == pTarget) {
    SetViewport(nullptr);
  }
  QXGraphics3D::DeleteRenderTarget(pTarget);
}

void QXNullGraphics3D::ShutDown() {
  Record("ShutDown");
  // It stands in a target that is about to go.
  SetViewport(nullptr);
  QXGraphics3D::ShutDown();
}

void QXNullGraphics3D::AttachReflectRenderTarget(QXRenderTarget* pTarget) {
  Record("AttachReflectRenderTarget", pTarget);
  QXGraphics3D::AttachReflectRenderTarget(pTarget);
}

void QXNullGraphics3D::AttachSelectionRenderTarget(QXRenderTarget* pTarget) {
  Record("AttachSelectionRenderTarget", pTarget);
  QXGraphics3D::AttachSelectionRenderTarget(pTarget);
}

void QXNullGraphics3D::AttachVertexSelectionRenderTarget(QXRenderTarget* pTarget) {
  Record("AttachVertexSelectionRenderTarget", pTarget);
  QXGraphics3D::AttachVertexSelectionRenderTarget(pTarget);
}

void QXNullGraphics3D::AttachMultiRenderTarget(QXRenderTarget* pTarget) {
  Record("AttachMultiRenderTarget", pTarget);
  QXGraphics3D::AttachMultiRenderTarget(pTarget);
}

QXTexture* QXNullGraphics3D::GetRenderTargetTexture(QXRenderTarget* pTarget) const {
  return pTarget == nullptr ? nullptr : pTarget->GetTexture();
}

unsigned char QXNullGraphics3D::ReadPixels(
    QXRenderTarget* pTarget, QdcRect const& rcPixels, unsigned char* pPixels, unsigned int nByteCount) {
  Record("ReadPixels", pTarget, rcPixels, nByteCount);
  if (pTarget == nullptr || pPixels == nullptr || rcPixels.left < 0 || rcPixels.top < 0 ||
      rcPixels.left > rcPixels.right || rcPixels.top > rcPixels.bottom ||
      static_cast<unsigned int>(rcPixels.right) > pTarget->GetWidth() ||
      static_cast<unsigned int>(rcPixels.bottom) > pTarget->GetHeight()) {
    return Fail(L"the rectangle to read leaves the target");
  }
  std::size_t const nTargetRow = std::size_t{4} * pTarget->GetWidth();
  std::size_t const nRow = std::size_t{4} * static_cast<std::size_t>(rcPixels.right - rcPixels.left);
  if (nByteCount < nRow * static_cast<std::size_t>(rcPixels.bottom - rcPixels.top)) {
    return Fail(L"the memory for the pixels to read is too small");
  }
  std::vector<unsigned char> arrPicture(nTargetRow * pTarget->GetHeight());
  if (!pTarget->CopyToMemory(arrPicture.data(), static_cast<unsigned int>(arrPicture.size()))) {
    return Fail(L"the target cannot be read back");
  }
  // The rectangle counts from the bottom, the picture's rows from the top.
  for (int nY = rcPixels.bottom - 1; nY >= rcPixels.top; --nY) {
    std::size_t const nRowFromTop = pTarget->GetHeight() - 1 - static_cast<std::size_t>(nY);
    std::size_t const nFirst = nRowFromTop * nTargetRow + std::size_t{4} * static_cast<std::size_t>(rcPixels.left);
    std::copy_n(arrPicture.data() + nFirst, nRow, pPixels);
    pPixels += nRow;
  }
  return 1;
}

void QXNullGraphics3D::RenderPatchToTexture(double dHalfWidth, double dHalfHeight, double dWidth, double dHeight,
    QXRenderTarget* pTarget, QdcRect2D const& rcPatch) {
  Record("RenderPatchToTexture", dHalfWidth, dHalfHeight, dWidth, dHeight, pTarget, rcPatch);
  auto* const pNullTarget = dynamic_cast<QXNullRenderTarget*>(pTarget);
  if (pNullTarget == nullptr) {
    return;
  }
  // Saturated ends: their differences may leave the range of int, and Clear takes what lies outside the target.
  auto const Pixel = [](double dFraction, unsigned int nSize) {
    return ToInt(std::clamp(dFraction, 0.0, 1.0) * nSize);
  };
  int const nLeft = Pixel(rcPatch.left, pTarget->GetWidth());
  int const nRight = Pixel(rcPatch.right, pTarget->GetWidth());
  int const nLow = Pixel(std::min(rcPatch.top, rcPatch.bottom), pTarget->GetHeight());
  int const nHigh = Pixel(std::max(rcPatch.top, rcPatch.bottom), pTarget->GetHeight());
  pNullTarget->Clear(nLeft, nLow, nRight - nLeft, nHigh - nLow, QXColorValue3D());
}

// --- The frame ---

void QXNullGraphics3D::UpdateAllRenderTargets() {
  Record("UpdateAllRenderTargets");
  QXGraphics3D::UpdateAllRenderTargets();
}

void QXNullGraphics3D::UpdatePrioritisedRenderTargets() {
  Record("UpdatePrioritisedRenderTargets");
  auto position = m_PrioritisedRenderTargets.GetStartPosition();
  for (; !m_PrioritisedRenderTargets.IsEOF(position); ++position) {
    QXRenderTarget* const pTarget = position->second;
    if (pTarget != nullptr && pTarget->IsActive() && pTarget->IsAutoUpdated()) {
      m_pActiveRenderTarget = pTarget;
      pTarget->Update();
    }
  }
}

void QXNullGraphics3D::SwapAllRenderTargetBuffers(unsigned char bWaitForVerticalBlank) {
  Record("SwapAllRenderTargetBuffers", bWaitForVerticalBlank);
  auto position = m_RenderTargets.GetStartPosition();
  for (; !m_RenderTargets.IsEOF(position); ++position) {
    if (position->second != nullptr && !position->second->IsTextureTarget()) {
      position->second->SwapBuffers(bWaitForVerticalBlank);
    }
  }
}

unsigned char QXNullGraphics3D::BeginSelection(
    QXRenderTarget* pTarget, int nLeft, int nBottom, int nWidth, int nHeight) {
  Record("BeginSelection", pTarget, nLeft, nBottom, nWidth, nHeight);
  return pTarget != nullptr ? 1 : Fail(L"a selection pass needs a target");
}

unsigned int QXNullGraphics3D::ReadSelectionID(int /*nX*/, int /*nY*/) const {
  return 0;
}

void QXNullGraphics3D::ReadSelectionIDs(QdcRect const& /*rcPixels*/, QdcArray<unsigned int>& /*arrIDs*/) const {}

}  // namespace QXC
