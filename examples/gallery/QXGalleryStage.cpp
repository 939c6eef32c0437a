#include <examples/gallery/QXGalleryStage.h>

#include <cstddef>

#include <QxGraphics3D/frame/QXPluginConfigs.h>
#include <QxGraphics3D/frame/foundation/base/QdcColor.h>

#include <apps/qx3d/QXPngWriter.h>
#include <apps/qx3d/QXPose.h>

namespace QXGallery {

using QXC::QdcUnicodeString;
using QXC::QXVector3d;

namespace {

constexpr wchar_t const* LINE_SCENE = L"lines";
constexpr int LINE_ORDER = 1000;
constexpr double LINE_PIXELS = 16.0;

std::string Narrow(QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

}  // namespace

QXGalleryStage::~QXGalleryStage() {
  while (!m_arrKept.empty()) m_arrKept.pop_back();
  if (!m_pGraphics3D) return;
  m_pGraphics3D->ShutDown();
  m_pModule->Destroy(m_pGraphics3D);
}

std::string QXGalleryStage::Start() {
  QdcUnicodeString strError;
  m_pModule.reset(QXC::QXPluginModule::Load(QXC::QXPluginConfigs(), QXC::QX_PLUGIN_KIND_RENDERER, L"ogre", strError));
  if (!m_pModule) return Narrow(strError);
  m_pGraphics3D = static_cast<QXC::QXGraphics3D*>(m_pModule->Create(strError));
  if (!m_pGraphics3D) return Narrow(strError);
  if (!m_pGraphics3D->Initialize(QdcUnicodeString()) || !m_pGraphics3D->CreateScene(LINE_SCENE)) return GetErrorText();
  m_pTarget = m_pGraphics3D->CreateRenderTexture(L"gallery", QXC::PF_A8R8G8B8, WIDTH, HEIGHT, 0, 32, L"");
  if (!m_pTarget) return GetErrorText();
  m_pGraphics3D->AttachRenderTarget(m_pTarget);
  m_pTarget->SetActive(1);
  m_pTarget->SetSceneAntialias(1);
  // A viewport of its own over all others: texts reach no farther than the viewport that was drawn last.
  m_pLineViewport =
      m_pTarget->AddViewport(m_pGraphics3D->CreateCamera(LINE_SCENE, LINE_SCENE), LINE_ORDER, 0.0, 0.0, 1.0, 1.0);
  m_pLineViewport->m_bClearEveryFrame = 0;
  return {};
}

std::string QXGalleryStage::GetErrorText() const {
  return m_pGraphics3D ? Narrow(m_pGraphics3D->GetErrorText()) : std::string();
}

QXC::QXCamera& QXGalleryStage::AddView(
    QXVector3d const& vecEye, QXVector3d const& vecLook, QXGalleryPart const& part, wchar_t const* szScene) {
  QdcUnicodeString strName;
  strName.Format(L"view %d", m_nViews);
  QXC::QXCamera& camera = *m_pGraphics3D->CreateCamera(strName, szScene);
  camera.SetPosition(vecEye);
  // QXCamera::LookAt turns the shortest way, which tilts the horizon.
  QXApp::QXPose pose;
  pose.SetEyeAndTarget(vecEye, vecLook);
  camera.SetOrientation(pose.GetOrientation());
  QXC::QXViewport& viewport =
      *m_pTarget->AddViewport(&camera, m_nViews++, part.m_dLeft, part.m_dBottom, part.m_dWidth, part.m_dHeight);
  viewport.m_BackgroundColor = SKY;
  return camera;
}

QXC::QXRenderOperation3D& QXGalleryStage::Add(QXGalleryMesh const& mesh, wchar_t const* szScene) {
  QXC::QXRenderOperation3D& drawable = Keep(GetManager().CreateRenderOperation3D(szScene, 1));
  drawable.SetRenderOperationMultiIndex(mesh.MakeOperation().get());
  return drawable;
}

void QXGalleryStage::Write(QdcUnicodeString const& strText, double dX, double dY) {
  m_arrLines.push_back({strText, dX, dY});
}

void QXGalleryStage::DrawFrame() {
  m_pGraphics3D->BeginGeometryCount();
  m_pGraphics3D->UpdateAllRenderTargets();
  WriteLines();
}

void QXGalleryStage::WriteLines() {
  m_pGraphics3D->SetRenderFont(L"DejaVu Sans", LINE_PIXELS);
  // A shade on each side keeps white letters readable before a bright sky.
  for (Line const& line : m_arrLines)
    for (double const dX : {-1.0, 1.0})
      for (double const dY : {-1.0, 1.0})
        m_pGraphics3D->TextOut2DText(line.m_strText, line.m_dX + dX, line.m_dY + dY, QDC::QDCRGBA(0, 0, 0, 160));
  for (Line const& line : m_arrLines)
    m_pGraphics3D->TextOut2DText(line.m_strText, line.m_dX, line.m_dY, QDC::QDCRGBA(255, 255, 255, 255));
  m_pGraphics3D->RenderTexts();
}

std::string QXGalleryStage::Save(std::string const& strPath) {
  std::vector<unsigned char> arrPixels(std::size_t{WIDTH} * HEIGHT * 4);
  if (!m_pTarget->CopyToMemory(arrPixels.data(), static_cast<unsigned int>(arrPixels.size()))) return GetErrorText();
  return QXApp::QXPngWriter::Write(strPath, WIDTH, HEIGHT, arrPixels.data());
}

}  // namespace QXGallery
