// Ribbons behind what moves.
#include <array>
#include <cmath>
#include <cstddef>

#include <QxGraphics3D/renderop/QXRibbonTrail3D.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

namespace QXGallery {

namespace {

using QXC::QXColorValue3D;
using QXC::QXVector3d;

constexpr unsigned int STEPS = 120;
constexpr double STEP_SECONDS = 0.05;

/// Three balls on their ways, one after the other as time goes by.
QXVector3d PlaceOf(unsigned int nBall, double dSeconds) {
  double const dAngle = 1.1 * dSeconds + 2.1 * nBall;
  double const dRadius = 2.2 + 0.9 * nBall;
  return {dRadius * std::cos(dAngle), dRadius * std::sin(dAngle), 1.2 + 0.5 * nBall + 0.3 * std::sin(3.0 * dAngle)};
}

bool DrawRibbons(QXGalleryStage& stage) {
  stage.Add(QXGalleryMesh().AddFloor(6, {0.8, 0.82, 0.78, 1.0}, {0.62, 0.66, 0.6, 1.0}));
  QXC::QXRibbonTrail3D* const pTrail = stage.GetManager().CreateRibbonTrail(L"3D", L"balls", L"");
  if (!pTrail) return false;
  stage.Keep(pTrail);
  pTrail->SetTrailCount(3);
  pTrail->SetMaxPointCount(STEPS);
  for (unsigned int i = 0; i < 3; ++i) {
    pTrail->SetInitialColor(i, {i == 0 ? 1.0 : 0.2, i == 1 ? 0.9 : 0.4, i == 2 ? 1.0 : 0.1, 1.0});
    pTrail->SetColorChange(i, {0.0, 0.0, 0.0, 0.22});
    pTrail->SetInitialWidth(i, 0.5);
    pTrail->SetWidthChange(i, 0.1);
  }
  for (unsigned int nStep = 0; nStep <= STEPS; ++nStep) {
    pTrail->Advance(STEP_SECONDS);
    for (unsigned int i = 0; i < 3; ++i) pTrail->AddPoint(i, PlaceOf(i, nStep * STEP_SECONDS));
  }
  for (unsigned int i = 0; i < 3; ++i)
    stage.Add(QXGalleryMesh().AddSphere(PlaceOf(i, STEPS * STEP_SECONDS), 0.3, CHALK));
  stage.AddView({3.0, -7.0, 9.0}, {0.0, 0.0, 0.6});
  return true;
}

QXC::QXTexture& MakeArrows(QXGalleryStage& stage) {
  constexpr int WIDTH = 512;
  constexpr int HEIGHT = 32;
  constexpr int ARROW = 32;
  QXC::QXTexture& texture = stage.Keep(stage.GetGraphics3D().GetTextureManager()->CreateTexture());
  auto* const pBytes = new unsigned char[std::size_t{WIDTH} * HEIGHT * 4];
  unsigned char* p = pBytes;
  for (int y = 0; y < HEIGHT; ++y)
    for (int x = 0; x < WIDTH; ++x) {
      // The head is on the left of the picture, and the tips point there.
      int const nFromMiddle = y < HEIGHT / 2 ? HEIGHT / 2 - 1 - y : y - HEIGHT / 2;
      bool const bArrow = (x - nFromMiddle + WIDTH) % ARROW < ARROW / 2;
      for (int const n : {bArrow ? 40 : 200, bArrow ? 60 : 230, bArrow ? 200 : 250, bArrow ? 255 : 90})
        *p++ = static_cast<unsigned char>(n);
    }
  // The texture owns the bytes.
  texture.SetTextureData(WIDTH, HEIGHT, pBytes, 0, QXC::PF_A8R8G8B8);
  texture.LoadTexture(0, 0);
  return texture;
}

bool DrawRoute(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  QXC::QXRibbonTrail3D* const pTrail = stage.GetManager().CreateRibbonTrail(L"3D", L"route", L"");
  if (!pTrail) return false;
  stage.Keep(pTrail);
  pTrail->SetTexture(&MakeArrows(stage));
  pTrail->SetInitialWidth(0, 0.6);
  pTrail->SetFaceCamera(0, {0.0, 0.0, 1.0});
  for (QXVector3d const& vec : {QXVector3d(-5.0, -4.0, 0.05), {-0.6, -3.8, 0.05}, {-0.4, 0.4, 0.05}, {0.6, 2.4, 0.05},
           {3.6, 3.0, 0.05}, {4.4, 0.4, 0.05}, {1.6, -2.0, 0.05}, {2.0, -4.6, 0.05}})
    pTrail->AddPoint(0, vec);
  stage.AddView({2.0, -9.0, 7.5}, {0.0, -0.6, 0.0});
  return true;
}

constexpr std::array PICTURES = {
    QXGalleryPicture{
        "trail-ribbons", "Ribbons that turn to the camera, and fade and narrow behind three balls.", DrawRibbons},
    QXGalleryPicture{"trail-route", "A route that lies flat on the ground, with a picture along it.", DrawRoute},
};

}  // namespace

std::span<QXGalleryPicture const> GetTrailPictures() {
  return PICTURES;
}

}  // namespace QXGallery
