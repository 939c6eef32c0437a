#include <plugins/ogre/QXOgreRenderTarget.h>

#include <algorithm>
#include <cmath>

#include <OgreRenderTarget.h>
#include <OgreViewport.h>

#include <QxGraphics3D/frame/QXRenderTargetListener.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>

#include <plugins/ogre/QXOgreCamera.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/QXOgreRenderOperationManager.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/QXOgreTextureSource.h>
#include <plugins/ogre/effects/QXOgreBloom.h>
#include <plugins/ogre/effects/QXOgreOverlays.h>
#include <plugins/ogre/effects/QXOgreQueryOperation3D.h>
#include <plugins/ogre/effects/QXOgreSampleCounts.h>
#include <plugins/ogre/picking/QXOgreSelection.h>

namespace QXC {

namespace {

/// From the south-west and well above, as maps are shaded.
QXVector3d const DEFAULT_SUN(-1.0e6, -1.6e6, 2.2e6);
QXColorValue3D const DEFAULT_AMBIENT(0.4, 0.4, 0.4, 1.0);
QXColorValue3D const DEFAULT_DIFFUSE(0.6, 0.6, 0.6, 1.0);
/// Of patches, as symbols are shaded: from the upper left of the picture, so bright that what faces the viewer keeps its
/// own colours.
QXVector3d const PATCH_SUN(-1.0, 1.2, 2.0);
QXColorValue3D const PATCH_DIFFUSE(0.7624, 0.7624, 0.7624, 1.0);
constexpr int DEFAULT_SAMPLES = 4;
constexpr int MAX_SAMPLES = 16;

/// Glyphs that were asked for since the last picture are in the next one.
void UploadGlyphs() {
  QXTextureFontManager::GetSingleton().AddCharBitmapToTexture();
}

}  // namespace

QXOgreRenderTarget::QXOgreRenderTarget(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName,
    QdcUnicodeString const& strSceneName, unsigned int nWidth, unsigned int nHeight)
    : m_pRenderer(&graphics3D), m_pOgreTarget(nullptr), m_pOgreViewport(nullptr), m_pDrawnViewport(nullptr),
      m_bBloom(false), m_vecSun(DEFAULT_SUN), m_AmbientLight(DEFAULT_AMBIENT), m_DiffuseLight(DEFAULT_DIFFUSE),
      m_nSamples(1), m_bHostLight(false), m_bPatch(false), m_bRenderDepth(false), m_bIdentifiers(false),
      m_bOverlaysShown(true) {
  m_strName = strName;
  m_strSceneName = strSceneName;
  m_nWidth = nWidth;
  m_nHeight = nHeight;
  m_nColourDepth = 32;
  m_bActive = 1;
  m_pGraphics3D = &graphics3D;
  graphics3D.AddTarget(this);
}

QXOgreRenderTarget::~QXOgreRenderTarget() {
  // The derived class has let its OGRE target go already: its part of ReleaseDevice is gone by now.
  if (m_pRenderer) m_pRenderer->RemoveTarget(this);
}

void QXOgreRenderTarget::LeaveRenderer() {
  m_pBloom.reset();
  ReleaseDevice();
  m_pRenderer = nullptr;
  m_pGraphics3D = nullptr;
}

void QXOgreRenderTarget::SetOgreTarget(Ogre::RenderTarget* pOgreTarget) {
  m_pSampleCounts.reset();
  // They may be those of this target's context.
  if (m_pBloom) m_pBloom->DropSampleCounts();
  if (m_pOgreTarget) m_pOgreTarget->removeAllViewports();
  m_pOgreTarget = pOgreTarget;
  m_pOgreViewport = nullptr;
  m_pDrawnViewport = nullptr;
  if (!m_pOgreTarget) return;
  m_pOgreTarget->setAutoUpdated(false);
  m_pOgreViewport = m_pOgreTarget->addViewport(nullptr);
  m_pOgreViewport->setAutoUpdated(false);
  m_pOgreViewport->setOverlaysEnabled(false);
  m_pOgreViewport->setShadowsEnabled(false);
  m_pDrawnViewport = m_pOgreViewport;
}

Ogre::PolygonMode QXOgreRenderTarget::GetPolygonMode() const {
  if (m_eRenderState == RENDER_STATE_POINT) return Ogre::PM_POINTS;
  return m_eRenderState == RENDER_STATE_LINE ? Ogre::PM_WIREFRAME : Ogre::PM_SOLID;
}

void QXOgreRenderTarget::SetSceneAntialias(unsigned char bEnable) {
  if ((bEnable != 0) != (m_nSamples > 1)) SetSceneAntialiasValue(bEnable ? DEFAULT_SAMPLES : 1);
}

void QXOgreRenderTarget::SetSceneAntialiasValue(int nSamples) {
  nSamples = std::clamp(nSamples, 1, MAX_SAMPLES);
  if (!m_pRenderer || m_bIdentifiers || nSamples == m_nSamples) return;
  if (m_pRenderer->Try([&] { MakeDevice(m_nWidth, m_nHeight, nSamples); })) m_nSamples = nSamples;
}

void QXOgreRenderTarget::ReSize(unsigned int nWidth, unsigned int nHeight) {
  if (!m_pRenderer || !m_pRenderer->IsTargetSize(nWidth, nHeight)) return;
  if (!m_pRenderer->Try([&] { ResizeDevice(nWidth, nHeight); })) return;
  m_nWidth = nWidth;
  m_nHeight = nHeight;
  for (auto position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position)
    if (position->second) position->second->UpdateDimensions();
}

void QXOgreRenderTarget::Update() {
  if (!m_pOgreTarget) return;
  TellTexture(false);
  if (m_pListener) m_pListener->BeforeRender();
  UploadGlyphs();
  m_Stats.triangleCount = 0;
  m_pRenderer->Try([this] {
    m_pRenderer->GetDevice()->BeginFrame();
    DrawPicture();
    FinishPicture();
  });
  // Also where something was thrown: patches and texts go straight into the target.
  m_pDrawnViewport = m_pOgreViewport;
  if (m_pListener) m_pListener->PostRender();
}

bool QXOgreRenderTarget::IsGlowing() const {
  // Without a viewport the picture stays as it is.
  return m_bBloom && GetNumViewports() > 0 && m_pRenderer->IsBloomEnabled() &&
         QXOgreBloom::IsVisible(m_pRenderer->GetBloomSetting());
}

void QXOgreRenderTarget::DrawPicture() {
  bool const bGlows = IsGlowing();
  // Not when it is taken away: a host may do that while the picture is being drawn.
  if (!m_bBloom) m_pBloom.reset();
  if (bGlows && !m_pBloom) m_pBloom = std::make_unique<QXOgreBloom>(*m_pRenderer->GetDevice());
  if (bGlows) m_pDrawnViewport = &m_pBloom->Begin(m_nWidth, m_nHeight, m_nSamples);
  Ogre::RenderTarget& drawn = *m_pDrawnViewport->getTarget();
  drawn._beginUpdate();
  QXRenderTarget::Update();
  drawn._endUpdate();
  if (bGlows) {
    m_pOgreViewport->setDimensions(0.0F, 0.0F, 1.0F, 1.0F);
    m_pBloom->Finish(*m_pOgreViewport, m_pRenderer->GetBloomSetting());
    m_pDrawnViewport = m_pOgreViewport;
  }
  if (m_bOverlaysShown && !m_bIdentifiers && GetNumViewports() > 0) m_pRenderer->GetOverlays().DrawInto(*this);
}

void QXOgreRenderTarget::SwapBuffers(unsigned char bWaitForVerticalBlank) {
  if (m_pOgreTarget) m_pRenderer->Try([&] { ShowPicture(bWaitForVerticalBlank); });
}

void QXOgreRenderTarget::NotifyCameraRemoved(QXCamera const* pCamera) {
  for (auto position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position)
    if (position->second && position->second->m_pCamera == pCamera) position->second->m_pCamera = nullptr;
}

void QXOgreRenderTarget::BeginViewportUpdate(ViewportPosition&) {
  // OGRE makes the target current with each viewport.
}

QXTexture* QXOgreRenderTarget::GetTexture() const {
  return nullptr;
}

void QXOgreRenderTarget::SetClearEveryFrame(unsigned char bClear, unsigned int nBuffers) {
  for (auto position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position) {
    if (!position->second) continue;
    position->second->m_bClearEveryFrame = bClear;
    position->second->m_nClearBuffers = nBuffers;
  }
}

void QXOgreRenderTarget::GetClearEveryFrame(unsigned char& bClear, unsigned int& nBuffers) const {
  auto const position = m_Viewports.GetStartPosition();
  if (m_Viewports.IsEOF(position) || !position->second) return QXRenderTarget::GetClearEveryFrame(bClear, nBuffers);
  bClear = position->second->m_bClearEveryFrame;
  nBuffers = position->second->m_nClearBuffers;
}

void QXOgreRenderTarget::SetBackgroundColor(QXColorValue3D const& color) {
  for (auto position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position)
    if (position->second) position->second->m_BackgroundColor = color;
}

unsigned char QXOgreRenderTarget::CopyToMemory(unsigned char* pPixels, unsigned int nByteCount) {
  if (!m_pRenderer || !m_pOgreTarget) return 0;
  if (!pPixels || nByteCount / 4 < std::uint64_t{m_nWidth} * m_nHeight) {
    m_pRenderer->SetErrorText("the picture does not fit into the memory given: it takes width x height x 4 bytes");
    return 0;
  }
  return m_pRenderer->Try([&] { ReadPicture(0, 0, m_nWidth, m_nHeight, pPixels); });
}

unsigned char QXOgreRenderTarget::ReadPixel(int nX, int nY, unsigned char (&nPixel)[4]) {
  if (!m_pRenderer || !m_pOgreTarget) return 0;
  auto const nTop = m_nHeight - 1 - static_cast<unsigned int>(nY);
  return m_pRenderer->Try([&] { ReadPicture(static_cast<unsigned int>(nX), nTop, 1, 1, nPixel); });
}

void QXOgreRenderTarget::DrawViewport(
    QXViewport const& viewport, QXOgreScene* pScene, QXOgreView const& view, unsigned char bDrawables) {
  if (!m_pDrawnViewport || !pScene || viewport.GetActualWidth() < 0 || viewport.GetActualHeight() < 0) return;
  PlaceViewport(viewport);
  m_pDrawnViewport->setBackgroundColour(m_bIdentifiers ? Ogre::ColourValue::ZERO : ToOgre(viewport.m_BackgroundColor));
  m_pDrawnViewport->setClearEveryFrame(viewport.m_bClearEveryFrame != 0, viewport.m_nClearBuffers);
  SetLight(view, *pScene);
  QXOgrePickFilter const everything{&m_pRenderer->m_SceneOperation, nullptr};
  QXOgreView drawn = view;
  if (m_bIdentifiers) drawn.m_pPick = &everything;
  bool const bCounted = !m_pRenderer->GetOperations().GetRunningQueries().empty();
  QXOgreCounts const counts =
      bCounted ? DrawCounted(*pScene, drawn, bDrawables) : pScene->Draw(*m_pDrawnViewport, drawn, bDrawables);
  m_Stats.triangleCount += static_cast<int>(counts.m_nTriangles);
  m_pRenderer->Count(counts);
}

QXOgreCounts QXOgreRenderTarget::DrawCounted(QXOgreScene& scene, QXOgreView const& view, unsigned char bDrawables) {
  if (!m_pSampleCounts)
    m_pSampleCounts = std::make_unique<QXOgreSampleCounts>(m_pRenderer->GetDevice()->GetRenderSystem(), *m_pOgreTarget);
  bool const bGlows = m_pDrawnViewport != m_pOgreViewport;
  QXOgreSampleCounts& counts = bGlows ? m_pBloom->GetSampleCounts() : *m_pSampleCounts;
  std::shared_ptr<QXOgreSampleCount> const pCount = counts.Begin(*m_pDrawnViewport);
  // Ended whatever happens: OpenGL counts one thing at a time.
  struct End {
    ~End() { QXOgreSampleCounts::End(); }
  } const end{};
  for (QXOgreQueryOperation3D* const pQuery : m_pRenderer->GetOperations().GetRunningQueries()) pQuery->Add(pCount);
  return scene.Draw(*m_pDrawnViewport, view, bDrawables);
}

void QXOgreRenderTarget::TellTexture(bool bPremultiplied) {
  if (QXOgreTextureSource* const pSource = QXOgreTextureSource::Of(GetTexture()))
    pSource->SetPremultiplied(bPremultiplied);
}

void QXOgreRenderTarget::DrawPatch(QXOgreCamera& camera, QdcRect2D const& rcPatch) {
  if (!m_pOgreTarget) return;
  // The renderer's current view is the host's, who did not ask for another.
  TellTexture(true);
  QXViewport* const pFormerViewport = m_pRenderer->GetViewport();
  QXMatrix4d const matFormerView = m_pRenderer->m_matView;
  QXMatrix4d const matFormerProjection = m_pRenderer->m_matProjection;
  QXViewport viewport(nullptr, this, rcPatch.left, std::min(rcPatch.top, rcPatch.bottom), rcPatch.right - rcPatch.left,
      std::abs(rcPatch.bottom - rcPatch.top), 0);
  viewport.m_BackgroundColor = QXColorValue3D(0.0, 0.0, 0.0, 0.0);
  UploadGlyphs();
  m_bPatch = true;
  m_pRenderer->Try([&] {
    m_pRenderer->GetDevice()->BeginFrame();
    m_pOgreTarget->_beginUpdate();
    camera.RenderScene(&viewport, 1);
    m_pOgreTarget->_endUpdate();
    FinishPicture();
  });
  m_bPatch = false;
  m_pRenderer->SetViewport(pFormerViewport);
  m_pRenderer->SetViewMatrix(matFormerView);
  m_pRenderer->SetProjectionMatrix(matFormerProjection);
}

QXOgreView QXOgreRenderTarget::MakePixelView(QXViewport const& viewport) {
  double const dLeft = viewport.GetActualLeft();
  double const dBottom = viewport.GetActualBottom();
  QXOgreView view{};
  view.m_matProjection = QXMathEngine::ComputeOrthoMatrix(
      dLeft, dLeft + viewport.GetActualWidth(), dBottom, dBottom + viewport.GetActualHeight(), -1.0, 1.0);
  view.m_dVerticalExaggeration = 1.0;
  view.m_ePolygonMode = Ogre::PM_SOLID;
  view.m_nWidth = viewport.GetActualWidth();
  view.m_nHeight = viewport.GetActualHeight();
  return view;
}

void QXOgreRenderTarget::DrawAbove(QXViewport const& viewport, QXOgreScene& scene, QXOgreView const& view) {
  PlaceViewport(viewport);
  m_pDrawnViewport->setClearEveryFrame(false, 0);
  SetLight(view, scene);
  QXOgreCounts const counts = scene.Draw(*m_pDrawnViewport, view, 1);
  m_Stats.triangleCount += static_cast<int>(counts.m_nTriangles);
  m_pRenderer->Count(counts);
}

void QXOgreRenderTarget::DrawOver(QXViewport const& viewport, QXOgreScene& scene, QXOgreView const& view) {
  if (!m_pOgreTarget) return;
  m_pRenderer->GetDevice()->BeginFrame();
  m_pOgreTarget->_beginUpdate();
  DrawAbove(viewport, scene, view);
  m_pOgreTarget->_endUpdate();
  FinishPicture();
}

bool QXOgreRenderTarget::HasViewport(QXViewport const* pViewport) const {
  for (auto position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position)
    if (position->second == pViewport) return true;
  return false;
}

void QXOgreRenderTarget::DrawIdentifiers() {
  SetSceneAntialiasValue(1);
  m_bBloom = false;
  m_bIdentifiers = true;
}

std::vector<QXViewport*> QXOgreRenderTarget::GetViewports() const {
  std::vector<QXViewport*> arrViewports;
  for (auto position = m_Viewports.GetStartPosition(); !m_Viewports.IsEOF(position); ++position)
    if (position->second) arrViewports.push_back(position->second);
  return arrViewports;
}

unsigned char QXOgreRenderTarget::CopyDepthToMemory(float* pDepths, unsigned int nValueCount) {
  if (!m_bRenderDepth || !m_pRenderer || !m_pOgreTarget) return 0;
  if (!pDepths || nValueCount < std::uint64_t{m_nWidth} * m_nHeight) {
    m_pRenderer->SetErrorText("the depths do not fit into the memory given: it takes width x height values");
    return 0;
  }
  return m_pRenderer->GetSelection()->CopyDepths(*this, pDepths);
}

void QXOgreRenderTarget::PlaceViewport(QXViewport const& viewport) {
  // OGRE takes fractions in float and truncates; half a pixel more keeps it on the pixel that is meant.
  Ogre::Real const fWidth = static_cast<Ogre::Real>(m_nWidth);
  Ogre::Real const fHeight = static_cast<Ogre::Real>(m_nHeight);
  int const nTop = static_cast<int>(m_nHeight) - viewport.GetActualBottom() - viewport.GetActualHeight();
  auto const fraction = [](int nPixels, Ogre::Real fSize) {
    return (static_cast<Ogre::Real>(nPixels) + (nPixels < 0 ? -0.5F : 0.5F)) / fSize;
  };
  m_pDrawnViewport->setDimensions(fraction(viewport.GetActualLeft(), fWidth), fraction(nTop, fHeight),
      fraction(viewport.GetActualWidth(), fWidth), fraction(viewport.GetActualHeight(), fHeight));
}

void QXOgreRenderTarget::SetLight(QXOgreView const& view, QXOgreScene& scene) {
  QXOgreMaterials& materials = m_pRenderer->GetDevice()->GetMaterials();
  MakeLight(view, scene, materials.GetLight());
  materials.ApplyLight();
}

void QXOgreRenderTarget::MakeLight(QXOgreView const& view, QXOgreScene& scene, QXOgreLight& light) const {
  light.m_fOrthographic = view.IsParallel() ? 1.0F : 0.0F;
  // A patch is none of the world's: where that has its origin must not turn the light on it.
  bool const bPatchLight = m_bPatch && !m_bHostLight;
  QXVector3d vecSun = m_bPatch ? m_vecSun : m_vecSun - view.m_vecOrigin;
  if (bPatchLight) vecSun = PATCH_SUN;
  QXMatrix4d matTurn = view.m_matView;
  matTurn.SetTrans(QXVector3d::ZERO);
  light.m_vecToSun = ToOgre(vecSun.Normalize().MultiplyMatrix(matTurn));
  scene.GetLights().Choose(view, light.m_Lamps);
  light.m_Fog = QXOgreFog(scene.GetFog());
  // Without the sun and any light there is nothing to tell faces by, so colours are shown as they are. Which lights the
  // view happens to see does not count: turning the eye must not bring daylight.
  bool const bLit = m_bSunLightEnable || scene.GetLights().IsAnyEnabled();
  light.m_Ambient = bLit ? ToOgre(m_AmbientLight) : Ogre::ColourValue::White;
  light.m_Diffuse = m_bSunLightEnable ? ToOgre(bPatchLight ? PATCH_DIFFUSE : m_DiffuseLight) : Ogre::ColourValue::Black;
}

}  // namespace QXC
