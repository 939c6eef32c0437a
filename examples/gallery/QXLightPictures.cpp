// Lights of scenes, and fog.
#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/view/QXFog.h>
#include <QxGraphics3D/view/QXLight.h>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

namespace QXGallery {

namespace {

using QXC::QXColorValue3D;
using QXC::QXFog;
using QXC::QXLight;
using QXC::QXVector3d;

constexpr QXColorValue3D NIGHT(0.03, 0.04, 0.09, 1.0);
constexpr QXColorValue3D LAMPLIGHT(1.0, 0.78, 0.45, 1.0);

/// One colour for what faces it, nothing for what looks away.
QXLight MakeLight(QXC::LightTypes eType, QXVector3d const& vecPosition, QXColorValue3D const& color) {
  QXLight light;
  light.SetType(eType);
  light.SetPosition(vecPosition);
  light.SetDiffuseColour(color);
  light.SetAmbientColour(0.0, 0.0, 0.0);
  return light;
}

bool Shine(QXGalleryStage& stage, QXLight const& light) {
  static int s_nLights = 0;
  QXC::QdcUnicodeString const strName = std::to_wstring(s_nLights++).c_str();
  return stage.GetGraphics3D().CreateLight(strName, L"3D") && stage.GetGraphics3D().SetLight(strName, light);
}

/// Without the sun, so that lights are seen.
void MakeDark(QXGalleryStage& stage, double dAmbient) {
  stage.GetTarget().SetSunLightEnable(0);
  stage.GetTarget().SetAmbientLight({dAmbient, dAmbient, dAmbient * 1.2, 1.0});
  stage.GetTarget().SetBackgroundColor(NIGHT);
}

void ShowYard(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  stage.AddView({5.0, -9.0, 5.0}, {0.0, 0.0, 0.7});
}

bool DrawPoints(QXGalleryStage& stage) {
  ShowYard(stage);
  MakeDark(stage, 0.06);
  std::array<QXVector3d, 3> const arrPlaces = {
      QXVector3d(-3.2, -2.4, 0.9), QXVector3d(-0.6, -3.0, 1.1), QXVector3d(3.4, -1.0, 1.2)};
  std::array<QXColorValue3D, 3> const arrColors = {
      QXColorValue3D(1.0, 0.35, 0.2, 1.0), QXColorValue3D(1.0, 0.9, 0.6, 1.0), QXColorValue3D(0.3, 0.5, 1.0, 1.0)};
  for (std::size_t i = 0; i < 3; ++i) {
    QXLight light = MakeLight(QXC::LIGHT_POINT, arrPlaces[i], arrColors[i]);
    light.SetAttenuation(0.0, 0.4, 0.0, 0.35);
    if (!Shine(stage, light)) return false;
    QXC::QXBillboard& bulb = stage.Keep(stage.GetManager().CreateBillboard(L"3D"));
    bulb.SetPosition(arrPlaces[i] - QXVector3d(0.0, 0.0, 0.06));
    bulb.SetSize(0.12, 0.12, 0);
    bulb.SetColor(arrColors[i]);
  }
  return true;
}

bool DrawDirectional(QXGalleryStage& stage) {
  ShowYard(stage);
  MakeDark(stage, 0.12);
  QXLight moon = MakeLight(QXC::LIGHT_DIRECTIONAL, {}, {0.5, 0.6, 0.8, 1.0});
  moon.SetDirection(1.0, 0.35, -0.7);
  QXLight dusk = MakeLight(QXC::LIGHT_DIRECTIONAL, {}, {0.75, 0.35, 0.2, 1.0});
  dusk.SetDirection(-1.0, 0.5, -0.25);
  return Shine(stage, moon) && Shine(stage, dusk);
}

bool DrawSpots(QXGalleryStage& stage) {
  ShowYard(stage);
  MakeDark(stage, 0.06);
  std::array<double, 3> const arrFalloffs = {0.0, 1.0, 4.0};
  for (std::size_t i = 0; i < 3; ++i) {
    double const dX = -4.2 + 3.1 * static_cast<double>(i);
    QXLight light = MakeLight(QXC::LIGHT_SPOTLIGHT, {dX, -2.6, 4.0}, QXColorValue3D(1.0, 1.0, 0.9, 1.0));
    light.SetDirection(0.0, 0.08, -1.0);
    light.SetSpotlightRange(0.15, 0.85, arrFalloffs[i]);
    if (!Shine(stage, light)) return false;
  }
  return true;
}

bool DrawAttenuations(QXGalleryStage& stage) {
  std::array<std::array<double, 4>, 4> const arrNumbers = {
      {{0.0, 0.0, 0.0, 0.0}, {2.5, 0.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0}, {0.0, 0.0, 0.0, 1.0}}};
  // Each quarter of the picture has the light of its own scene.
  for (std::size_t i = 0; i < 4; ++i) {
    std::wstring const strScene = L"quarter" + std::to_wstring(i);
    QXC::QdcUnicodeString const strName = strScene.c_str();
    if (!stage.GetGraphics3D().CreateScene(strName)) return false;
    stage.Add(MakeYard(), strScene.c_str());
    stage.AddView({5.0, -9.0, 5.0}, {0.0, -0.3, 0.5}, {0.5 * static_cast<double>(i % 2), i < 2 ? 0.5 : 0.0, 0.5, 0.5},
        strScene.c_str());
    QXLight light = MakeLight(QXC::LIGHT_POINT, {0.2, -2.2, 1.0}, {1.0, 0.95, 0.8, 1.0});
    light.SetAttenuation(arrNumbers[i][0], arrNumbers[i][1], arrNumbers[i][2], arrNumbers[i][3]);
    if (!stage.GetGraphics3D().CreateLight(strName, strName)) return false;
    if (!stage.GetGraphics3D().SetLight(strName, light)) return false;
  }
  MakeDark(stage, 0.06);
  return true;
}

/// Houses and trees at both sides of a road along y, with lamp posts every 12 units, from y = 0 on.
QXGalleryMesh MakeStreet(int nLength) {
  QXGalleryMesh mesh;
  double const dEnd = 12.0 * nLength;
  mesh.AddQuad({-80.0, -20.0, 0.0}, {80.0, -20.0, 0.0}, {80.0, dEnd, 0.0}, {-80.0, dEnd, 0.0}, {0.42, 0.5, 0.34, 1.0});
  mesh.AddQuad({-4.0, -20.0, 0.02}, {4.0, -20.0, 0.02}, {4.0, dEnd, 0.02}, {-4.0, dEnd, 0.02}, {0.5, 0.5, 0.52, 1.0});
  for (int i = 0; i < nLength; ++i) {
    double const dY = 12.0 * i;
    for (double const dSide : {-1.0, 1.0}) {
      double const dHeight = 5.0 + (i * 7 + (dSide > 0.0 ? 3 : 0)) % 4;
      double const dNear = dSide * 9.0;
      double const dFar = dSide * 17.0;
      mesh.AddBox({std::min(dNear, dFar), dY + 1.0, 0.0}, {std::max(dNear, dFar), dY + 8.5, dHeight},
          (i + (dSide > 0.0 ? 1 : 0)) % 3 == 0 ? CHALK : BRICK);
      mesh.AddCylinder({dSide * 6.5, dY + 10.0, 0.0}, 0.15, 0.15, 1.5, SLATE);
      mesh.AddCylinder({dSide * 6.5, dY + 10.0, 1.5}, 1.2, 0.0, 3.5, LEAF);
      mesh.AddCylinder({dSide * 4.6, dY + 4.0, 0.0}, 0.08, 0.05, 4.2, SLATE);
    }
  }
  return mesh;
}

bool DrawFog(QXGalleryStage& stage, QXC::FogMode eMode, double dDensity, double dStart, double dEnd) {
  stage.Add(MakeStreet(30));
  stage.AddView({1.5, -16.0, 5.0}, {0.0, 40.0, 1.5});
  QXColorValue3D const color(0.8, 0.84, 0.88, 1.0);
  stage.GetTarget().SetBackgroundColor(color);
  QXFog fog;
  fog.SetFogMode(eMode);
  fog.SetFogColor(color);
  fog.SetFogDensity(dDensity);
  fog.SetFogStart(dStart);
  fog.SetFogEnd(dEnd);
  stage.GetGraphics3D().SetFog(L"3D", fog);
  return true;
}

bool DrawNoFog(QXGalleryStage& stage) {
  return DrawFog(stage, QXC::FOG_NONE, 0.0, 0.0, 0.0);
}

bool DrawExponential(QXGalleryStage& stage) {
  return DrawFog(stage, QXC::FOG_EXPONENTIAL, 0.012, 0.0, 0.0);
}

bool DrawSquared(QXGalleryStage& stage) {
  return DrawFog(stage, QXC::FOG_EXPONENTIAL_SQUARED, 0.012, 0.0, 0.0);
}

bool DrawLinear(QXGalleryStage& stage) {
  return DrawFog(stage, QXC::FOG_LINEAR, 0.0, 30.0, 180.0);
}

bool DrawEvening(QXGalleryStage& stage) {
  stage.Add(MakeStreet(30));
  stage.AddView({1.5, -16.0, 5.0}, {0.0, 40.0, 1.5});
  MakeDark(stage, 0.16);
  QXColorValue3D const haze(0.1, 0.12, 0.2, 1.0);
  stage.GetTarget().SetBackgroundColor(haze);
  QXFog fog;
  fog.SetFogMode(QXC::FOG_EXPONENTIAL);
  fog.SetFogColor(haze);
  fog.SetFogDensity(0.008);
  stage.GetGraphics3D().SetFog(L"3D", fog);
  // Sixty lamps, of which a picture shows those that matter most.
  for (int i = 0; i < 60; ++i) {
    QXVector3d const vecPlace(i % 2 == 0 ? -4.3 : 4.3, 12.0 * (i / 2) + 4.0, 4.2);
    QXLight lamp = MakeLight(QXC::LIGHT_SPOTLIGHT, vecPlace, LAMPLIGHT);
    lamp.SetDirection(i % 2 == 0 ? 0.25 : -0.25, 0.0, -1.0);
    lamp.SetSpotlightRange(1.0, 2.6, 1.0);
    lamp.SetAttenuation(30.0, 0.4, 0.0, 0.03);
    if (!Shine(stage, lamp)) return false;
    QXC::QXBillboard& bulb = stage.Keep(stage.GetManager().CreateBillboard(L"3D"));
    bulb.SetPosition(vecPlace - QXVector3d(0.0, 0.0, 0.1));
    bulb.SetSize(0.35, 0.25, 0);
    bulb.SetColor({1.0, 0.93, 0.7, 1.0});
  }
  return true;
}

constexpr std::array PICTURES = {
    QXGalleryPicture{"lights-point", "Three point lights of different colours, each at its bulb.", DrawPoints},
    QXGalleryPicture{
        "lights-directional", "Two directional lights, from the left and from the right.", DrawDirectional},
    QXGalleryPicture{"lights-spot", "Three spotlights with the same angles and a falloff of 0, 1 and 4.", DrawSpots},
    QXGalleryPicture{"lights-attenuation",
        "One point light in four scenes: unattenuated, within a range, and with linear and quadric attenuation.",
        DrawAttenuations},
    QXGalleryPicture{"fog-none", "A street without fog.", DrawNoFog},
    QXGalleryPicture{"fog-exponential", "Exponential fog: some of it everywhere.", DrawExponential},
    QXGalleryPicture{
        "fog-exponential-squared", "Squared exponential fog: clear nearby, closed in the distance.", DrawSquared},
    QXGalleryPicture{"fog-linear", "Linear fog, which begins at 30 and hides everything from 180 on.", DrawLinear},
    QXGalleryPicture{"lights-evening", "The same street in the evening: sixty lamps in a light haze.", DrawEvening},
};

}  // namespace

std::span<QXGalleryPicture const> GetLightPictures() {
  return PICTURES;
}

}  // namespace QXGallery
