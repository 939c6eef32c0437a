/// @file
/// The smallest host: loads a renderer by its configured name, draws one triangle into an off-screen target and
/// reads the picture back.
///
///     smallest-host RENDERER [PLUGIN_FOLDER]
#include <bit>
#include <cstdio>
#include <memory>
#include <vector>

#include <QxGraphics3D/All.h>

namespace {

constexpr unsigned int Width = 320;
constexpr unsigned int Height = 240;

/// Three vertices of position and colour, one range of 16-bit indices. The operation owns all of it.
void FillTriangle(QXC::QXRenderOperationMultiIndex& operation) {
  auto* pVertices = new QXC::QXVertexBlock;
  pVertices->m_nVertexCount = 3;
  pVertices->m_nStride = 4;
  pVertices->m_nColorOffset = 3;
  float const fOrange = std::bit_cast<float>(QXC::QDCRGBA(255, 128, 0, 255));
  pVertices->m_pBuffer = new float[12]{-1, 0, -1, fOrange, 1, 0, -1, fOrange, 0, 0, 1, fOrange};
  operation.m_pVertexBlock = pVertices;

  auto* pIndices = new QXC::QXVertexIndexPackage;
  pIndices->m_nIndexNum = 3;
  pIndices->m_pIndices = new unsigned short[3]{0, 1, 2};
  operation.SetAt(pIndices, nullptr);
}

/// A target whose one viewport shows the scene from the south, sky above and below.
QXC::QXRenderTarget* MakeTarget(QXC::QXGraphics3D& graphics3D, QXC::QdcUnicodeString const& strScene) {
  QXC::QXCamera* pCamera = graphics3D.CreateCamera(L"eye", strScene);
  if (!pCamera) return nullptr;
  pCamera->SetPosition(0, -4, 0);
  pCamera->LookAt(0, 0, 0);

  QXC::QXRenderTarget* pTarget =
      graphics3D.CreateRenderTexture(L"picture", QXC::PF_A8R8G8B8, Width, Height, 0, 32, strScene);
  if (!pTarget) return nullptr;
  graphics3D.AttachRenderTarget(pTarget);  // the renderer owns it from here on
  QXC::QXViewport* pViewport = pTarget->AddViewport(pCamera, 0, 0, 0, 1, 1);
  pViewport->m_BackgroundColor = QXC::QXColorValue3D(0.5, 0.7, 1.0, 1.0);
  return pTarget;
}

int DrawOneFrame(QXC::QXGraphics3D& graphics3D) {
  QXC::QdcUnicodeString const strScene(L"world");
  if (!graphics3D.Initialize(L"") || !graphics3D.CreateScene(strScene)) return 0;
  QXC::QXRenderTarget* pTarget = MakeTarget(graphics3D, strScene);
  if (!pTarget) return 0;

  QXC::QXRenderOperationManager* pManager = graphics3D.GetRenderOperationManager();
  QXC::QXRenderOperation3D* pDrawable = pManager->CreateRenderOperation3D(strScene, 1);
  QXC::QXRenderOperationMultiIndex triangle;
  FillTriangle(triangle);
  pDrawable->SetRenderOperationMultiIndex(&triangle);  // copied

  graphics3D.BeginGeometryCount();
  graphics3D.UpdateAllRenderTargets();
  std::vector<unsigned char> arrPixels(Width * Height * 4);
  unsigned char const bRead = pTarget->CopyToMemory(arrPixels.data(), Width * Height * 4);
  std::printf("%u draw operations, %d triangles, the corner is %u %u %u\n", graphics3D.GetDrawOperationCount(),
      pTarget->GetTriangleCount(), arrPixels[2], arrPixels[1], arrPixels[0]);

  pManager->DestroyRenderOperation3D(pDrawable);
  graphics3D.ShutDown();
  return bRead;
}

}  // namespace

int main(int nArgumentCount, char** arrArguments) {
  if (nArgumentCount < 2) {
    std::fprintf(stderr, "usage: smallest-host RENDERER [PLUGIN_FOLDER]\n");
    return 2;
  }
  if (nArgumentCount > 2) {
    QXC::QXPluginConfigs::AddSearchFolder(QXC::QdcUnicodeString::FromUTF8(arrArguments[2]));
  }
  QXC::QXPluginConfigs const configs;
  QXC::QdcUnicodeString const strName = QXC::QdcUnicodeString::FromUTF8(arrArguments[1]);
  QXC::QdcUnicodeString strError;
  std::unique_ptr<QXC::QXPluginModule> const pModule(
      QXC::QXPluginModule::Load(configs, QXC::QX_PLUGIN_KIND_RENDERER, strName, strError));
  auto* pGraphics3D = pModule ? static_cast<QXC::QXGraphics3D*>(pModule->Create(strError)) : nullptr;
  if (!pGraphics3D) {
    std::fprintf(stderr, "%s\n", strError.ToMBString().Cstr());
    return 1;
  }
  int const nDrawn = DrawOneFrame(*pGraphics3D);
  if (!nDrawn) std::fprintf(stderr, "%s\n", pGraphics3D->GetErrorText().ToMBString().Cstr());
  pModule->Destroy(pGraphics3D);
  return nDrawn ? 0 : 1;
}
