// Flat drawings over the picture, and counts of what is visible.
#include <array>
#include <cstddef>
#include <cstdint>

#include <QxGraphics3D/renderop/QXQueryOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

namespace QXGallery {

namespace {

using QXC::QdcUnicodeString;
using QXC::QXColorValue3D;

constexpr int ROSE = 96;

/// A compass rose: transparent outside the circle, red towards the north.
QXC::QXTexture& MakeRose(QXGalleryStage& stage) {
  QXC::QXTexture& texture = stage.Keep(stage.GetGraphics3D().GetTextureManager()->CreateTexture());
  auto* const pBytes = new unsigned char[std::size_t{ROSE} * ROSE * 4];
  for (int y = 0; y < ROSE; ++y)
    for (int x = 0; x < ROSE; ++x) {
      double const dX = x + 0.5 - ROSE / 2.0;
      double const dY = ROSE / 2.0 - y - 0.5;
      double const dRadius = ROSE / 2.0 - 1.0;
      bool const bNeedle = (dX < 0.0 ? -dX : dX) * 4.0 + (dY < 0.0 ? -dY : dY) < dRadius * 0.9;
      bool const bDisc = dX * dX + dY * dY < dRadius * dRadius;
      bool const bRim = bDisc && dX * dX + dY * dY > (dRadius - 3.0) * (dRadius - 3.0);
      QXColorValue3D color(1.0, 1.0, 1.0, bDisc ? 0.6 : 0.0);
      if (bRim) color = {0.1, 0.1, 0.1, 1.0};
      if (bNeedle) color = dY > 0.0 ? QXColorValue3D(0.85, 0.1, 0.1, 1.0) : QXColorValue3D(0.2, 0.2, 0.25, 1.0);
      unsigned char* const pPixel = pBytes + (static_cast<std::size_t>(y) * ROSE + static_cast<std::size_t>(x)) * 4;
      std::size_t nChannel = 0;
      for (double const d : {color.b, color.g, color.r, color.a})
        pPixel[nChannel++] = static_cast<unsigned char>(d * 255.0);
    }
  // The texture owns the bytes.
  texture.SetTextureData(ROSE, ROSE, pBytes, 0, QXC::PF_A8R8G8B8);
  texture.LoadTexture(0, 0);
  return texture;
}

QXC::QXRenderOperationOverlay* AddRectangle(
    QXGalleryStage& stage, wchar_t const* szName, QXC::QdcRect2D const& rcArea, QXColorValue3D const& color) {
  QXC::QXRenderOperationOverlay* const pOverlay = stage.GetGraphics3D().CreateOverlay(szName);
  if (!pOverlay) return nullptr;
  pOverlay->SetRect(rcArea);
  pOverlay->SetColor(color);
  return pOverlay;
}

bool DrawOverlays(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  stage.AddView({5.0, -9.0, 5.0}, {0.0, 0.0, 0.7});
  QXC::QXRenderOperationOverlay* const pRose =
      AddRectangle(stage, L"rose", {528.0, 16.0, 624.0, 112.0}, QXColorValue3D::White);
  if (!pRose || !AddRectangle(stage, L"title", {0.0, 0.0, 640.0, 36.0}, {0.05, 0.1, 0.2, 0.6})) return false;
  pRose->SetTexture(&MakeRose(stage), {0.0, 0.0, 1.0, 1.0});
  // Fields of a scale bar by turns, with a frame below them, all counted from the lower left corner.
  for (int i = 0; i <= 4; ++i) {
    QdcUnicodeString strName;
    strName.Format(L"scale %d", i);
    QXColorValue3D const color = i == 0 || i % 2 == 1 ? QXColorValue3D(0.0, 0.0, 0.0, 1.0) : QXColorValue3D::White;
    double const dWidth = i == 0 ? 164.0 : 40.0;
    if (!AddRectangle(stage, strName.Cstr(), {0.0, 0.0, dWidth, i == 0 ? 12.0 : 8.0}, color)) return false;
    stage.GetGraphics3D().SetOverlayPosition(strName, i == 0 ? 16.0 : 18.0 + 40.0 * (i - 1), i == 0 ? 16.0 : 18.0);
    stage.GetGraphics3D().SetOverlayZOrder(strName, i == 0 ? 0 : 1);
  }
  stage.Write(L"A title, a compass rose and a scale bar", 16.0, 336.0);
  stage.Write(L"0                  4 m", 16.0, 34.0);
  return true;
}

QXC::QXQueryOperation3D& QueryOf(QXInt64 nHandle) {
  return *reinterpret_cast<QXC::QXQueryOperation3D*>(static_cast<std::intptr_t>(nHandle));
}

/// A quarter of the picture, with a ball that a second view draws over the first one's depths: the query runs while that
/// draws, so that it counts the ball alone. Null if the renderer makes no query.
QXC::QXQueryOperation3D* AddAskedPart(QXGalleryStage& stage, int nPart, double dBall) {
  QdcUnicodeString strScene;
  strScene.Format(L"asked %d", nPart);
  QXC::QXQueryOperation3D* const pQuery = stage.GetManager().CreateQueryOperation(strScene);
  if (!pQuery || !stage.GetGraphics3D().CreateScene(strScene)) return nullptr;
  // Without its far side, whose pixels would count as well where they are drawn before the near ones.
  stage.Add(QXGalleryMesh().AddSphere({dBall, 1.5, 1.0}, 0.9, LEAF), strScene.Cstr())
      .SetCullingMode(QXC::CULLING_CLOCKWISE);
  QXGalleryPart const part{0.25 * nPart, 0.0, 0.25, 1.0};
  QXC::QXCamera& camera = stage.AddView({0.0, -5.0, 2.2}, {0.0, 0.0, 1.0}, part);
  QXC::QXCamera& asking = stage.AddView({0.0, -5.0, 2.2}, {0.0, 0.0, 1.0}, part, strScene.Cstr());
  asking.GetViewport()->m_bClearEveryFrame = 0;
  // Depths of two views can be compared only if both have the same ends.
  for (QXC::QXCamera* const pCamera : {&camera, &asking}) {
    pCamera->SetNearDist(1.0);
    pCamera->SetFarDist(50.0);
  }
  // Called when a camera has drawn its viewport.
  auto const handle = static_cast<QXInt64>(reinterpret_cast<std::intptr_t>(&stage.Keep(pQuery)));
  camera.SetSceneRenderFunc(
      [](QXInt64 nHandle, QXC::QXCamera*, QXC::QXViewport*, unsigned char) { QueryOf(nHandle).BeginQuery(); }, handle);
  asking.SetSceneRenderFunc(
      [](QXInt64 nHandle, QXC::QXCamera*, QXC::QXViewport*, unsigned char) { QueryOf(nHandle).EndQuery(); }, handle);
  return pQuery;
}

bool DrawQuery(QXGalleryStage& stage) {
  QXGalleryMesh mesh;
  mesh.AddFloor(4, {0.8, 0.82, 0.78, 1.0}, {0.62, 0.66, 0.6, 1.0}).AddBox({-1.4, 0.0, 0.0}, {0.2, 0.2, 2.2}, BRICK);
  stage.Add(mesh);
  std::array<QXC::QXQueryOperation3D*, 4> arrQueries{};
  for (int i = 0; i < 4; ++i) {
    arrQueries[static_cast<std::size_t>(i)] = AddAskedPart(stage, i, 0.7 * i - 0.9);
    if (!arrQueries[static_cast<std::size_t>(i)]) return false;
  }
  stage.DrawFrame();
  double dLeft = 16.0;
  for (QXC::QXQueryOperation3D* const pQuery : arrQueries) {
    QdcUnicodeString strLine;
    strLine.Format(L"%u pixels", pQuery->GetPixelCount());
    stage.Write(strLine, dLeft, 330.0);
    dLeft += QXGalleryStage::WIDTH / 4.0;
  }
  return true;
}

constexpr std::array PICTURES = {
    QXGalleryPicture{
        "overlays", "Overlays in whole pixels: a title, a picture with soft alpha, a scale bar.", DrawOverlays},
    QXGalleryPicture{
        "query", "How many pixels of the ball the wall leaves visible, as four queries count them.", DrawQuery},
};

}  // namespace

std::span<QXGalleryPicture const> GetOverlayPictures() {
  return PICTURES;
}

}  // namespace QXGallery
