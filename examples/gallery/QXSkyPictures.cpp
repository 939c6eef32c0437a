// Skies and oceans.
#include <array>

#include <QxGraphics3D/environment/QXSkyGraphics3D.h>
#include <QxGraphics3D/environment/QXSunPosition.h>
#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

namespace QXGallery {

namespace {

using QXC::QdcTime;
using QXC::QXColorValue3D;
using QXC::QXSkyGraphics3D;
using QXC::QXVector3d;

/// 2024-06-21 00:00 UTC.
constexpr QXInt64 MIDSUMMER = 1718928000000;

/// A moment of that day.
QdcTime At(double dHours) {
  return QdcTime(MIDSUMMER + static_cast<QXInt64>(dHours * 3600000.0));
}

/// A sky at a moment, and the light that fits it.
QXSkyGraphics3D* AddSky(QXGalleryStage& stage, QdcTime time) {
  QXSkyGraphics3D* const pSky = stage.GetGraphics3D().CreateSky(L"3D", QXC::SCENE_PLANE);
  if (!pSky) return nullptr;
  stage.Keep(pSky);
  pSky->Initialize();
  pSky->SetTime(time);
  QXC::QXSunPosition(time).ApplyTo(stage.GetTarget());
  return pSky;
}

/// The yard under a sky, seen from the side away from a direction.
bool DrawYard(QXGalleryStage& stage, double dHours, QXVector3d const& vecLook, QXC::QXConditionPresets eCondition) {
  stage.Add(MakeYard());
  QXSkyGraphics3D* const pSky = AddSky(stage, At(dHours));
  if (!pSky) return false;
  pSky->SetCondition(eCondition);
  QXVector3d const vecEye(-9.0 * vecLook.x, -9.0 * vecLook.y, 1.7);
  stage.AddView(vecEye, {0.0, 0.0, 3.0});
  return true;
}

bool DrawDawn(QXGalleryStage& stage) {
  return DrawYard(stage, 2.6, {0.75, 0.66, 0.0}, QXC::CONDITION_CLEAR);
}

bool DrawDay(QXGalleryStage& stage) {
  return DrawYard(stage, 9.0, {0.0, 1.0, 0.0}, QXC::CONDITION_CLEAR);
}

bool DrawEvening(QXGalleryStage& stage) {
  return DrawYard(stage, 19.0, {-0.82, 0.57, 0.0}, QXC::CONDITION_CLEAR);
}

bool DrawNight(QXGalleryStage& stage) {
  return DrawYard(stage, 24.0 * 183.0 + 22.0, {0.0, -1.0, 0.0}, QXC::CONDITION_CLEAR);
}

bool DrawClouds(QXGalleryStage& stage) {
  return DrawYard(stage, 13.0, {-0.6, -0.8, 0.0}, QXC::CONDITION_FAIR);
}

bool DrawCirrus(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  QXSkyGraphics3D* const pSky = AddSky(stage, At(17.5));
  if (!pSky) return false;
  pSky->SetCloudType(QXC::CLOUD_CIRRUS);
  pSky->SetCloudAltitude(8000.0);
  pSky->SetCloudVisibleDistance(80000.0);
  stage.AddView({4.0, -9.0, 1.7}, {0.0, 0.0, 3.0});
  return true;
}

bool DrawOvercast(QXGalleryStage& stage) {
  return DrawYard(stage, 12.0, {0.0, 1.0, 0.0}, QXC::CONDITION_OVERCAST);
}

bool DrawStorm(QXGalleryStage& stage) {
  return DrawYard(stage, 15.0, {1.0, 0.0, 0.0}, QXC::CONDITION_STORM);
}

/// Water under a sky, seen from a height above it, with three buoys that swim on it.
bool DrawWater(QXGalleryStage& stage, double dHours, double dBeaufort, QXVector3d const& vecLook,
    QXC::QXConditionPresets eCondition) {
  QXSkyGraphics3D* const pSky = AddSky(stage, At(dHours));
  QXC::QXTritonOceanGraphics3D* const pOcean = stage.GetGraphics3D().CreateOcean(L"3D", QXC::SCENE_PLANE);
  if (!pSky || !pOcean) return false;
  pSky->SetCondition(eCondition);
  stage.Keep(pOcean);
  pOcean->SetSeaState(dBeaufort);
  pOcean->SetWindDirection(0.6);
  if (!pOcean->Initialize()) return false;
  pOcean->Update(20.0);
  for (int i = 0; i < 3; ++i) {
    QXVector3d const vecRight(vecLook.y, -vecLook.x, 0.0);
    double const dAway = 12.0 + 14.0 * i;
    double const dAside = -5.0 + 6.0 * i;
    QXVector3d vecPlace(vecLook.x * dAway + vecRight.x * dAside, vecLook.y * dAway + vecRight.y * dAside, 0.0);
    QXVector3d vecNormal;
    pOcean->GetHeight(vecPlace, vecPlace.z, vecNormal);
    QXGalleryMesh buoy;
    buoy.AddCylinder({0.0, 0.0, -0.6}, 1.0, 1.0, 1.4, BRICK).AddCylinder({0.0, 0.0, 0.8}, 1.0, 0.25, 1.4, BRICK);
    buoy.AddCylinder({0.0, 0.0, 2.2}, 0.12, 0.12, 0.8, CHALK);
    QXC::QXMatrix4d matModel;
    matModel.SetTrans(vecPlace);
    stage.Add(buoy).SetModelMatrix(matModel);
  }
  double const dEye = 3.5 + dBeaufort;
  stage.AddView({0.0, 0.0, dEye}, {40.0 * vecLook.x, 40.0 * vecLook.y, dEye - 0.6 * dBeaufort - 1.0});
  return true;
}

bool DrawCalm(QXGalleryStage& stage) {
  return DrawWater(stage, 9.0, 2.0, {0.0, 1.0, 0.0}, QXC::CONDITION_FAIR);
}

bool DrawSea(QXGalleryStage& stage) {
  return DrawWater(stage, 13.0, 8.0, {0.6, 0.8, 0.0}, QXC::CONDITION_OVERCAST);
}

bool DrawEveningSea(QXGalleryStage& stage) {
  return DrawWater(stage, 18.7, 3.0, {-0.8, 0.6, 0.0}, QXC::CONDITION_CLEAR);
}

constexpr std::array<QXGalleryPicture, 11> PICTURES = {{
    {"sky-dawn", "A clear sky before sunrise, seen to the north-east.", &DrawDawn},
    {"sky-day", "The same place in the forenoon, seen to the north.", &DrawDay},
    {"sky-evening", "The sun sets, and its light on the things below goes with it.", &DrawEvening},
    {"sky-night", "A winter's night with stars.", &DrawNight},
    {"sky-clouds", "Fair weather: clouds that the wind moves.", &DrawClouds},
    {"sky-cirrus", "High thin clouds along the wind, late in the day.", &DrawCirrus},
    {"sky-overcast", "A closed layer of clouds.", &DrawOvercast},
    {"sky-storm", "Storm clouds.", &DrawStorm},
    {"ocean-calm", "A light breeze: small waves that mirror the sky.", &DrawCalm},
    {"ocean-rough", "A gale, Beaufort's 8: waves of more than five metres that carry foam.", &DrawSea},
    {"ocean-evening", "The evening sun on the water.", &DrawEveningSea},
}};

}  // namespace

std::span<QXGalleryPicture const> GetSkyPictures() {
  return PICTURES;
}

}  // namespace QXGallery
