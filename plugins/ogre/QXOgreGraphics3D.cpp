#include <plugins/ogre/QXOgreGraphics3D.h>

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <utility>

#include <OgreException.h>
#include <OgreRenderSystem.h>
#include <OgreRenderSystemCapabilities.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>

#include <plugins/ogre/QXOgreCamera.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/QXOgreOpenGL.h>
#include <plugins/ogre/QXOgreRenderOperationManager.h>
#include <plugins/ogre/QXOgreRenderTexture.h>
#include <plugins/ogre/QXOgreRenderWindow.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/QXOgreTexts.h>
#include <plugins/ogre/QXOgreTextureManager.h>
#include <plugins/ogre/QXOgreTextureUnits.h>
#include <plugins/ogre/effects/QXOgreOverlays.h>
#include <plugins/ogre/instancing/QXOgreHwInstancingManager.h>
#include <plugins/ogre/picking/QXOgreSelection.h>

namespace QXC {

namespace {

constexpr wchar_t const* MAIN_SCENE = L"3D";
constexpr wchar_t const* RENDER_SYSTEM = L"OpenGL 3+ Rendering Subsystem";

constexpr std::pair<Ogre::Capabilities, Capabilities> CAPABILITIES[] = {
    {Ogre::RSC_ANISOTROPY, CAP_ANISOTROPY},
    {Ogre::RSC_HWSTENCIL, CAP_HWSTENCIL},
    {Ogre::RSC_VERTEX_PROGRAM, CAP_VERTEX_PROGRAM},
    {Ogre::RSC_FRAGMENT_PROGRAM, CAP_FRAGMENT_PROGRAM},
    {Ogre::RSC_TEXTURE_COMPRESSION, CAP_TEXTURE_COMPRESSION},
    {Ogre::RSC_HWRENDER_TO_TEXTURE, CAP_HWRENDER_TO_TEXTURE},
    {Ogre::RSC_VERTEX_BUFFER_INSTANCE_DATA, CAP_INSTANCING},
    {Ogre::RSC_NON_POWER_OF_2_TEXTURES, CAP_NON_POWER_OF_2_TEXTURES},
    {Ogre::RSC_USER_CLIP_PLANES, CAP_USER_CLIP_PLANES},
    {Ogre::RSC_TEXTURE_FLOAT, CAP_TEXTURE_FLOAT},
};

/// OGRE numbers the makers otherwise than the library does.
GPUVendor ToVendor(Ogre::GPUVendor eVendor, std::string const& strDevice) {
  if (strDevice.find("llvmpipe") != std::string::npos || strDevice.find("softpipe") != std::string::npos)
    return GPU_SOFTWARE;
  switch (eVendor) {
  case Ogre::GPU_NVIDIA: return GPU_NVIDIA;
  case Ogre::GPU_AMD: return GPU_AMD;
  case Ogre::GPU_INTEL: return GPU_INTEL;
  default: return GPU_UNKNOWN;
  }
}

}  // namespace

QXOgreGraphics3D::QXOgreGraphics3D()
    : m_pManager(std::make_unique<QXOgreRenderOperationManager>(*this)),
      m_pTextures(std::make_unique<QXOgreTextureManager>(*this)),
      m_pInstancings(std::make_unique<QXOgreHwInstancingManager>(*this)), m_pTextureScene(nullptr),
      m_pTextScene(nullptr), m_pOverlayScene(nullptr), m_pSelection(std::make_unique<QXOgreSelection>(*this)),
      m_strName(L"ogre"), m_nDrawOperationCount(0), m_nNodesMade(0) {
  m_pRenderOperationManager = m_pManager.get();
  m_pTextureManager = m_pTextures.get();
  m_pHwInstancingManager = m_pInstancings.get();
}

QXOgreGraphics3D::~QXOgreGraphics3D() {
  // Targets that the host has not deleted live on; neither cameras nor the device may be reached through them.
  for (QXOgreRenderTarget* const pTarget : m_setTargets) {
    for (auto const& pCamera : m_arrCameras) pTarget->NotifyCameraRemoved(pCamera.get());
    pTarget->LeaveRenderer();
  }
  m_arrCameras.clear();
  for (auto const& [strName, pScene] : m_mapScenes) m_pDevice->DestroyScene(pScene);
  m_mapScenes.clear();
  m_pResourceHolder = nullptr;
  m_pTexts.reset();
  m_pSelection.reset();
  m_pOverlays.reset();
  for (QXOgreScene* const pScene : {m_pTextureScene, m_pTextScene, m_pOverlayScene})
    if (pScene) m_pDevice->DestroyScene(pScene);
  m_pTextureScene = nullptr;
  m_pTextScene = nullptr;
  m_pOverlayScene = nullptr;
  // Models, instancings and atlases give their textures back to a manager that is still there.
  QXOgreGraphics3D::ClearResource();
  m_pHwInstancingManager = nullptr;
  m_pInstancings.reset();
  if (m_pDevice) QXTextureFontManager::GetSingleton().SetTextureManager(nullptr);
  m_pTextures->LeaveDevice();
  m_pTextureManager = nullptr;
  m_pTextures.reset();
  m_pDevice.reset();
  m_pRenderOperationManager = nullptr;
}

QXOgreDevice& QXOgreGraphics3D::RequireDevice() const {
  if (!m_pDevice) throw std::runtime_error("a texture needs an initialised renderer");
  return *m_pDevice;
}

QXOgreScene* QXOgreGraphics3D::FindScene(QdcUnicodeString const& strName) const {
  auto const position = m_mapScenes.find(strName);
  return position == m_mapScenes.end() ? nullptr : position->second;
}

QXOgreScene* QXOgreGraphics3D::FindNodeScene(QdcUnicodeString const& strName) const {
  return strName.IsEmpty() ? m_pTextureScene : FindScene(strName);
}

QXOgreRenderTarget* QXOgreGraphics3D::FindTarget(QdcUnicodeString const& strName) const {
  for (QXOgreRenderTarget* const pTarget : m_setTargets)
    if (pTarget->GetName() == strName) return pTarget;
  return nullptr;
}

void QXOgreGraphics3D::Count(QXOgreCounts const& counts) {
  m_nDrawOperationCount += counts.m_nDrawOperations;
  m_nFaceCount += counts.m_nTriangles;
  m_nVertexCount += counts.m_nVertices;
}

void QXOgreGraphics3D::SetErrorText(std::string const& strText) {
  m_strError = FromUtf8(OneLine(strText));
}

unsigned char QXOgreGraphics3D::IsTargetSize(unsigned int nWidth, unsigned int nHeight) {
  unsigned int const nMax = m_pDevice ? m_pDevice->GetMaxTargetSize() : 0;
  if (nWidth >= 1 && nHeight >= 1 && nWidth <= nMax && nHeight <= nMax) return 1;
  SetErrorText("a target of " + std::to_string(nWidth) + " x " + std::to_string(nHeight) +
               " pixels is impossible: each side takes 1 to " + std::to_string(nMax) + " pixels");
  return 0;
}

unsigned char QXOgreGraphics3D::Refuse(char const* szWhat) {
  SetErrorText(std::string("the renderer on OGRE has no ") + szWhat);
  return 0;
}

void QXOgreGraphics3D::Fail(std::exception const& exception) {
  auto const* const pOgre = dynamic_cast<Ogre::Exception const*>(&exception);
  SetErrorText(pOgre ? pOgre->getDescription() : exception.what());
}

unsigned char QXOgreGraphics3D::Initialize(QdcUnicodeString const& strResourcePath) {
  if (m_pDevice) {
    SetErrorText("the renderer is running already");
    return 0;
  }
  std::string strError;
  m_pDevice = QXOgreDevice::Start(ToUtf8(strResourcePath), strError);
  if (!m_pDevice) {
    SetErrorText(strError);
    return 0;
  }
  FillCapabilities();
  QXMathEngine::m_msGraphics3DType = GRAPHICS3D_IMMEDIATE;
  QXTextureFontManager::GetSingleton().SetTextureManager(m_pTextures.get());
  return Try([this] { MakeOwnScenes(); }) && CreateScene(MAIN_SCENE);
}

void QXOgreGraphics3D::MakeOwnScenes() {
  m_pTextureScene = m_pDevice->CreateScene();
  m_pTextScene = m_pDevice->CreateScene();
  m_pOverlayScene = m_pDevice->CreateScene();
  m_pTexts = std::make_unique<QXOgreTexts>(*this, *m_pTextScene);
  m_pOverlays = std::make_unique<QXOgreOverlays>(*m_pDevice, *m_pOverlayScene);
  m_pResourceHolder = m_pTexts.get();
}

void QXOgreGraphics3D::FillCapabilities() {
  Ogre::RenderSystemCapabilities const& source = *m_pDevice->GetRenderSystem().getCapabilities();
  QXGraphics3DCapabilities capabilities;
  capabilities.SetDeviceName(FromUtf8(source.getDeviceName()));
  capabilities.SetVendor(ToVendor(source.getVendor(), source.getDeviceName()));
  capabilities.SetNumTextureUnits(source.getNumTextureUnits());
  capabilities.SetMaxPointSize(source.getMaxPointSize());
  capabilities.SetMaxTextureSize(QXOgreOpenGL::Get().GetMaxTextureSize());
  capabilities.SetStencilBufferBitDepth(QXOgreOpenGL::Get().GetStencilBits());
  // What every OpenGL of version 3.3 has, and OGRE no names for.
  capabilities.SetCapability(CAP_AUTOMIPMAP);
  capabilities.SetCapability(CAP_BLENDING);
  capabilities.SetCapability(CAP_CUBEMAPPING);
  for (auto const& [eOgre, eCapability] : CAPABILITIES)
    if (source.hasCapability(eOgre)) capabilities.SetCapability(eCapability);
  if (source.hasCapability(Ogre::RSC_ANISOTROPY))
    capabilities.SetMaxAnisotropy(static_cast<float>(source.getMaxSupportedAnisotropy()));
  m_Capabilities = capabilities;
}

unsigned char QXOgreGraphics3D::CreateScene(QdcUnicodeString const& strName) {
  if (!m_pDevice || strName.IsEmpty() || FindScene(strName)) {
    SetErrorText("a scene needs an initialised renderer and a name of its own: '" + ToUtf8(strName) + "'");
    return 0;
  }
  return Try([&] { m_mapScenes[strName] = m_pDevice->CreateScene(); });
}

void QXOgreGraphics3D::DestroyScene(QdcUnicodeString const& strName) {
  QXOgreScene* const pScene = FindScene(strName);
  if (!pScene) return;
  for (std::size_t i = m_arrCameras.size(); i-- > 0;)
    if (m_arrCameras[i]->GetSceneName() == strName) DestroyCamera(m_arrCameras[i].get());
  m_mapScenes.erase(strName);
  m_pDevice->DestroyScene(pScene);
}

QXCamera* QXOgreGraphics3D::CreateCamera(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) {
  if (GetCamera(strName) || (!strSceneName.IsEmpty() && !FindScene(strSceneName))) {
    SetErrorText("a camera needs a name of its own and a scene that exists: '" + ToUtf8(strName) + "' in '" +
                 ToUtf8(strSceneName) + "'");
    return nullptr;
  }
  m_arrCameras.push_back(std::make_unique<QXOgreCamera>(*this, strName, strSceneName));
  return m_arrCameras.back().get();
}

void QXOgreGraphics3D::DestroyCamera(QXCamera* pCamera) {
  auto const position =
      std::find_if(m_arrCameras.begin(), m_arrCameras.end(), [&](auto const& p) { return p.get() == pCamera; });
  if (position == m_arrCameras.end()) return;
  NotifyCameraRemoved(pCamera);
  // Targets that are not attached hold viewports too.
  for (QXOgreRenderTarget* const pTarget : m_setTargets) pTarget->NotifyCameraRemoved(pCamera);
  m_arrCameras.erase(position);
}

QXCamera* QXOgreGraphics3D::GetCamera(QdcUnicodeString const& strName) const {
  for (auto const& pCamera : m_arrCameras)
    if (pCamera->GetName() == strName) return pCamera.get();
  return nullptr;
}

unsigned char QXOgreGraphics3D::CanMakeTarget(
    QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight) {
  if (!m_pDevice || strName.IsEmpty() || FindTarget(strName)) {
    SetErrorText("a target needs an initialised renderer and a name of its own: '" + ToUtf8(strName) + "'");
    return 0;
  }
  return IsTargetSize(nWidth, nHeight);
}

template <class Target, class... Arguments>
QXRenderTarget* QXOgreGraphics3D::MakeTarget(Arguments const&... arguments) {
  QXRenderTarget* pTarget = nullptr;
  Try([&] { pTarget = new Target(*this, arguments...); });
  return pTarget;
}

QXRenderTarget* QXOgreGraphics3D::CreateRenderWindow(QdcUnicodeString const& strName, HWND hWindow, unsigned int nWidth,
    unsigned int nHeight, unsigned char bFullScreen) {
  if (!CanMakeTarget(strName, nWidth, nHeight)) return nullptr;
  return MakeTarget<QXOgreRenderWindow>(strName, hWindow, nWidth, nHeight, bFullScreen);
}

QXRenderTarget* QXOgreGraphics3D::CreateRenderTexture(QdcUnicodeString const& strName, QX3DPixelFormat,
    unsigned int nWidth, unsigned int nHeight, int nMipmaps, unsigned int, QdcUnicodeString const& strSceneName) {
  if (!CanMakeTarget(strName, nWidth, nHeight)) return nullptr;
  return MakeTarget<QXOgreRenderTexture>(strName, nWidth, nHeight, nMipmaps, strSceneName);
}

QXRenderTarget* QXOgreGraphics3D::CreateReflectRenderTarget(
    QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, QdcUnicodeString const& strSceneName) {
  QXRenderTarget* const pTarget = CreateRenderTexture(strName, PF_A8R8G8B8, nWidth, nHeight, 0, 32, strSceneName);
  if (pTarget) static_cast<QXOgreRenderTarget*>(pTarget)->SetOverlaysShown(false);
  return pTarget;
}

void QXOgreGraphics3D::SwapAllRenderTargetBuffers(unsigned char bWaitForVerticalBlank) {
  for (auto position = m_RenderTargets.GetStartPosition(); !m_RenderTargets.IsEOF(position); ++position)
    if (position->second && !position->second->IsTextureTarget()) position->second->SwapBuffers(bWaitForVerticalBlank);
}

void QXOgreGraphics3D::ClearResource() {
  m_pInstancings->DestroyAllInstancings();
  QXGraphics3D::ClearResource();
}

void QXOgreGraphics3D::UpdateAllRenderTargets() {
  m_pInstancings->Update();
  QXGraphics3D::UpdateAllRenderTargets();
}

void QXOgreGraphics3D::UpdatePrioritisedRenderTargets() {
  auto const& targets = m_PrioritisedRenderTargets;
  for (auto position = targets.GetStartPosition(); !targets.IsEOF(position); ++position) {
    QXRenderTarget* const pTarget = position->second;
    if (!pTarget || !pTarget->IsActive() || !pTarget->IsAutoUpdated()) continue;
    m_pActiveRenderTarget = pTarget;
    pTarget->Update();
  }
}

void QXOgreGraphics3D::SetTextureUnitFiltering(unsigned int nUnit, int nFilter0, int nFilter1, int nFilter2) {
  if (m_pDevice) m_pDevice->GetTextureUnits().SetFilters(nUnit, {nFilter0, nFilter1, nFilter2});
}

void QXOgreGraphics3D::SetTextureCoordSet(unsigned int nUnit, unsigned int nSet) {
  if (!m_pDevice) return;
  m_pDevice->GetTextureUnits().SetCoordSet(nUnit, nSet);
  Try([&] { m_pDevice->UpdateCoordSets(); });
}

void QXOgreGraphics3D::SetTextureAnisotropy(unsigned int nUnit, unsigned int nMaxAnisotropy) {
  if (m_pDevice) m_pDevice->GetTextureUnits().SetAnisotropy(nUnit, nMaxAnisotropy);
}

void QXOgreGraphics3D::SetTextureMipmapBias(unsigned int nUnit, double dBias) {
  if (m_pDevice) m_pDevice->GetTextureUnits().SetMipmapBias(nUnit, dBias);
}

void QXOgreGraphics3D::SetRelativeOrigin(QXVector3d const& vecOrigin) {
  m_vecRelativeOrigin = vecOrigin;
  for (auto const& pCamera : m_arrCameras) {
    QXVector3d const vecPosition = pCamera->GetPosition();
    pCamera->SetRelativeOrigin(vecOrigin);
    pCamera->SetPosition(vecPosition);
  }
}

void QXOgreGraphics3D::BeginGeometryCount() {
  QXGraphics3D::BeginGeometryCount();
  m_nDrawOperationCount = 0;
}

void QXOgreGraphics3D::TextOut2DText(QdcUnicodeString const& strText, double dX, double dY, unsigned int nColor) {
  if (m_pTexts) m_pTexts->Add(strText, {dX, dY, 0.0}, 1, nColor);
}

void QXOgreGraphics3D::TextOut3DText(
    QdcUnicodeString const& strText, double dX, double dY, double dZ, unsigned int nColor) {
  if (m_pTexts) m_pTexts->Add(strText, {dX, dY, dZ}, 0, nColor);
}

void QXOgreGraphics3D::SetRenderFont(QdcUnicodeString const& strFaceName, double dSize) {
  if (m_pTexts) m_pTexts->SetFont(strFaceName, dSize);
}

void QXOgreGraphics3D::RenderTexts() {
  if (!m_pTexts) return;
  // The viewport may have died since it was drawn.
  auto const position = std::find_if(m_setTargets.begin(), m_setTargets.end(),
      [this](QXOgreRenderTarget const* pTarget) { return pTarget->HasViewport(m_pViewport); });
  m_pTexts->Draw(position == m_setTargets.end() ? nullptr : *position, m_pViewport);
}

void QXOgreGraphics3D::GetRenderSystems(QdcArray<QdcUnicodeString>& arrNames) const {
  arrNames.Add(RENDER_SYSTEM);
}

unsigned char QXOgreGraphics3D::SelectRenderSystem(QdcUnicodeString const& strName) {
  if (strName == RENDER_SYSTEM) return 1;
  SetErrorText("there is no render system '" + ToUtf8(strName) + "', only '" + ToUtf8(RENDER_SYSTEM) + "'");
  return 0;
}

QdcUnicodeString QXOgreGraphics3D::GetRenderSystemName() const {
  return m_pDevice ? RENDER_SYSTEM : L"";
}

QdcUnicodeString QXOgreGraphics3D::GetRenderSystemVersion() const {
  if (!m_pDevice) return {};
  return FromUtf8(m_pDevice->GetRenderSystem().getDriverVersion().toString());
}

unsigned char QXOgreGraphics3D::IsRenderSystemSupported(QdcUnicodeString const& strName) const {
  return m_pDevice && strName == RENDER_SYSTEM;
}

QdcUnicodeString QXOgreGraphics3D::GetSceneName(int nSceneManagerType) const {
  return nSceneManagerType == 0 ? MAIN_SCENE : L"";
}

unsigned char QXOgreGraphics3D::HasRenderableObjects(QdcUnicodeString const& strSceneName) const {
  QXOgreScene const* const pScene = FindScene(strSceneName);
  return pScene && !pScene->GetBounds().IsNULL();
}

}  // namespace QXC
