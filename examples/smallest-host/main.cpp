// The smallest host: draws one triangle with a renderer plug-in, off screen, and reads the picture back.
// usage: smallest-host RENDERER [FOLDER OF FURTHER PLUG-INS]
#include <bit>
#include <cstdio>
#include <memory>
#include <vector>

#include <QxGraphics3D/All.h>

using namespace QXC;

static int Draw(QXGraphics3D& graphics3D) {
  if (!graphics3D.Initialize(L"") || !graphics3D.CreateScene(L"world")) return 0;

  // Three vertices of position and colour, one range of 16-bit indices. The operation owns what it is given.
  QXRenderOperationMultiIndex triangle;
  float const fOrange = std::bit_cast<float>(QDCRGBA(255, 128, 0, 255));
  triangle.m_pVertexBlock = new QXVertexBlock;
  triangle.m_pVertexBlock->m_pBuffer = new float[12]{-1, 0, -1, fOrange, 1, 0, -1, fOrange, 0, 0, 1, fOrange};
  triangle.m_pVertexBlock->m_nVertexCount = 3;
  triangle.m_pVertexBlock->m_nStride = 4;
  triangle.m_pVertexBlock->m_nColorOffset = 3;
  auto* pRange = new QXVertexIndexPackage;
  pRange->m_pIndices = new unsigned short[3]{0, 1, 2};
  pRange->m_nIndexNum = 3;
  triangle.SetAt(pRange, nullptr);

  // The drawable copies it and stands in the scene until it is destroyed.
  QXRenderOperationManager* pManager = graphics3D.GetRenderOperationManager();
  QXRenderOperation3D* pDrawable = pManager->CreateRenderOperation3D(L"world", 1);
  pDrawable->SetRenderOperationMultiIndex(&triangle);

  // A camera looks at it, and a target of 320 x 240 pixels has one viewport for the camera.
  QXCamera* pCamera = graphics3D.CreateCamera(L"eye", L"world");
  QXRenderTarget* pTarget = graphics3D.CreateRenderTexture(L"picture", PF_A8R8G8B8, 320, 240, 0, 32, L"world");
  if (!pCamera || !pTarget) return 0;
  pCamera->SetPosition(0, -4, 0);
  pCamera->LookAt(0, 0, 0);
  pTarget->SetActive(1);                   // drawn in every frame
  graphics3D.AttachRenderTarget(pTarget);  // owned by the renderer from here on
  pTarget->AddViewport(pCamera, 0, 0, 0, 1, 1)->m_BackgroundColor = QXColorValue3D(0.5, 0.7, 1, 1);

  // One frame: targets, viewports, cameras, drawables.
  graphics3D.BeginGeometryCount();
  graphics3D.UpdateAllRenderTargets();
  std::vector<unsigned char> arrPixels(320 * 240 * 4);  // blue, green, red, alpha; top row first
  unsigned char const bRead = pTarget->CopyToMemory(arrPixels.data(), 320 * 240 * 4);
  std::printf("%u draw operations, %d triangles, the corner is %u %u %u\n", graphics3D.GetDrawOperationCount(),
      pTarget->GetTriangleCount(), arrPixels[2], arrPixels[1], arrPixels[0]);

  pManager->DestroyRenderOperation3D(pDrawable);
  graphics3D.ShutDown();
  return bRead;
}

int main(int nArgumentCount, char** arrArguments) {
  if (nArgumentCount > 2) QXPluginConfigs::AddSearchFolder(QdcUnicodeString::FromUTF8(arrArguments[2]));
  QdcUnicodeString const strName = QdcUnicodeString::FromUTF8(nArgumentCount > 1 ? arrArguments[1] : "");
  QdcUnicodeString strError;
  std::unique_ptr<QXPluginModule> const pModule(
      QXPluginModule::Load(QXPluginConfigs(), QX_PLUGIN_KIND_RENDERER, strName, strError));
  auto* pGraphics3D = pModule ? static_cast<QXGraphics3D*>(pModule->Create(strError)) : nullptr;
  int const nDrawn = pGraphics3D ? Draw(*pGraphics3D) : 0;
  if (!nDrawn) {
    std::fprintf(stderr, "%s\n", (pGraphics3D ? pGraphics3D->GetErrorText() : strError).ToMBString().Cstr());
  }
  if (pGraphics3D) pModule->Destroy(pGraphics3D);
  return nDrawn ? 0 : 1;
}
