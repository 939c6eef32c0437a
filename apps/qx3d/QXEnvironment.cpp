#include <apps/qx3d/QXEnvironment.h>

#include <apps/qx3d/QXSceneText.h>

#include <QxGraphics3D/environment/QXSkyGraphics3D.h>
#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>
#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/view/QXFog.h>
#include <QxGraphics3D/view/QXLight.h>

#include <cmath>
#include <numbers>

namespace QXApp {

namespace {

using QXC::QXColorValue3D;

constexpr double Degree = std::numbers::pi / 180.0;

/// Behind everything by day.
constexpr double DayColor[] = {0.78, 0.87, 0.95};

QXColorValue3D MakeColor(unsigned char const (&nColor)[3]) {
  return QXColorValue3D(nColor[0] / 255.0, nColor[1] / 255.0, nColor[2] / 255.0, 1.0);
}

/// Of a scene without a time: where the sun stands, in the south-west, 38 degrees high, and a warm sun and a bluish sky
/// that together leave what looks up nearly at its own colour.
QXC::QXVector3d GetFixedSunDirection() {
  return QXC::QXVector3d(-0.62, -0.48, 0.62);
}
QXColorValue3D MakeFixedSun() {
  return QXColorValue3D(0.78, 0.73, 0.64, 1.0);
}
QXColorValue3D MakeFixedAmbient() {
  return QXColorValue3D(0.51, 0.54, 0.60, 1.0);
}

/// Noon of a summer day: the light that the day's colours stand for.
QXColorValue3D GetDayLight() {
  constexpr QXInt64 Noon = 1782040800000;
  return QXC::QXSunPosition(QXC::QdcTime(Noon)).GetAmbientColor();
}

}  // namespace

QXC::QXLight MakeLight(QXSceneLight const& light) {
  QXC::QXLight made;
  constexpr QXC::LightTypes Types[] = {QXC::LIGHT_POINT, QXC::LIGHT_DIRECTIONAL, QXC::LIGHT_SPOTLIGHT};
  made.SetType(Types[static_cast<int>(light.m_eKind)]);
  made.SetDiffuseColour(MakeColor(light.m_nColor));
  made.SetSpecularColour(MakeColor(light.m_nColor));
  made.SetAmbientColour(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  made.SetPosition(light.m_vecPosition);
  if (light.m_bDirection) made.SetDirection(light.m_vecDirection);
  if (light.m_bTarget) made.SetDirection(light.m_vecTarget - light.m_vecPosition);
  made.SetSpotlightRange(light.m_dInner * Degree, light.m_dOuter * Degree, light.m_dFalloff);
  made.SetAttenuation(light.m_dRange, light.m_dAttenuation[0], light.m_dAttenuation[1], light.m_dAttenuation[2]);
  made.SetPowerScale(light.m_dPower);
  return made;
}

QXColorValue3D ChooseBackground(QXSceneFile const& scene, QXC::QXSunPosition const* pSun) {
  if (scene.m_bBackground) return MakeColor(scene.m_nBackground);
  if (pSun == nullptr) return QXColorValue3D(DayColor[0], DayColor[1], DayColor[2], 1.0);
  QXColorValue3D const day = GetDayLight();
  QXColorValue3D const now = pSun->GetAmbientColor();
  return QXColorValue3D(DayColor[0] * now.r / day.r, DayColor[1] * now.g / day.g, DayColor[2] * now.b / day.b, 1.0);
}

QXEnvironment::QXEnvironment() = default;
QXEnvironment::~QXEnvironment() = default;

void QXEnvironment::Show(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXC::QXRenderTarget& target,
    QXSceneFile const& scene, QXSceneProblems& problems) {
  if (scene.m_Sky.m_bSky) m_pSun = std::make_unique<QXC::QXSunPosition>(scene.m_Sky.m_Time);
  LightTarget(graphics3D, target, scene);
  AddLights(graphics3D, strScene, scene, problems);
  if (scene.m_Fog.m_eKind != QXFogKind::None) {
    QXSceneFog const& fog = scene.m_Fog;
    QXC::QXFog made;
    made.SetFogMode(static_cast<QXC::FogMode>(fog.m_eKind));
    made.SetFogColor(fog.m_bColor ? MakeColor(fog.m_nColor) : ChooseBackground(scene, m_pSun.get()));
    made.SetFogStart(fog.m_dStart);
    made.SetFogEnd(fog.m_dEnd);
    made.SetFogDensity(fog.m_dDensity);
    graphics3D.SetFog(strScene.c_str(), made);
  }
  if (scene.m_Sky.m_bSky) AddSky(graphics3D, strScene, scene.m_Sky, problems);
  if (scene.m_Ocean.m_bOcean) AddOcean(graphics3D, strScene, scene, problems);
}

void QXEnvironment::LightTarget(QXC::QXGraphics3D& graphics3D, QXC::QXRenderTarget& target, QXSceneFile const& scene) {
  if (m_pSun != nullptr) {
    m_pSun->ApplyTo(target);
  } else {
    // So far away that it stands in the same direction from everywhere.
    constexpr double Far = 1e9;
    QXC::QXVector3d const vecSun = GetFixedSunDirection();
    target.SetSunPosition(QXC::QXVector3d(vecSun.x * Far, vecSun.y * Far, vecSun.z * Far));
    target.SetDiffuseLight(MakeFixedSun());
    target.SetAmbientLight(MakeFixedAmbient());
  }
  if (scene.m_bAmbient) target.SetAmbientLight(MakeColor(scene.m_nAmbient));
  graphics3D.SetSunLightEnable(scene.m_bSun ? 1 : 0);
}

void QXEnvironment::AddLights(
    QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXSceneFile const& scene, QXSceneProblems& problems) {
  for (QXSceneLight const& light : scene.m_vecLights) {
    std::wstring strName = L"Light" + std::to_wstring(m_vecLights.size());
    if (graphics3D.CreateLight(strName.c_str(), strScene.c_str()) == 0) {
      problems.Add(light.m_nLine, "the renderer has no lights, and those of the scene are left out");
      return;
    }
    graphics3D.SetLight(strName.c_str(), MakeLight(light));
    m_vecLights.push_back(std::move(strName));
  }
}

void QXEnvironment::AddSky(
    QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXSceneSky const& sky, QXSceneProblems& problems) {
  m_pSky.reset(graphics3D.CreateSky(strScene.c_str(), QXC::SCENE_PLANE));
  if (m_pSky == nullptr) {
    problems.Add(sky.m_nLine, "the renderer has no sky, and the background is shown in its colour alone");
    return;
  }
  m_pSky->Initialize();
  m_pSky->SetTime(sky.m_Time);
  // The condition first: it sets what the others set one by one.
  if (sky.m_nCondition >= 0) m_pSky->SetCondition(static_cast<QXC::QXConditionPresets>(sky.m_nCondition));
  if (sky.m_nClouds >= 0) m_pSky->SetCloudType(static_cast<QXC::QXCloudTypes>(sky.m_nClouds));
  if (sky.m_dCloudHeight > 0.0) m_pSky->SetCloudAltitude(sky.m_dCloudHeight);
  if (sky.m_dWindFrom >= 0.0) {
    m_pSky->SetWindDirection(sky.m_dWindFrom * Degree);
    m_pSky->SetWindSpeed(sky.m_dWindSpeed);
  }
  m_pSky->SetVisible(1);
}

void QXEnvironment::AddOcean(
    QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXSceneFile const& scene, QXSceneProblems& problems) {
  QXSceneOcean const& ocean = scene.m_Ocean;
  m_pOcean.reset(graphics3D.CreateOcean(strScene.c_str(), QXC::SCENE_PLANE));
  if (m_pOcean == nullptr || m_pOcean->Initialize() == 0) {
    problems.Add(ocean.m_nLine, "the renderer has no ocean, and the scene is shown without it");
    m_pOcean.reset();
    return;
  }
  m_pOcean->SetSeaLevel(ocean.m_dLevel);
  m_pOcean->SetSeaState(ocean.m_dBeaufort);
  m_pOcean->SetWindDirection(ocean.m_dWindFrom * Degree);
  if (m_pSun != nullptr) m_pOcean->SetTime(scene.m_Sky.m_Time);
  // The water is under the same light as what stands in it.
  QXColorValue3D const ambient = m_pSun != nullptr ? m_pSun->GetAmbientColor() : MakeFixedAmbient();
  QXColorValue3D const sun = m_pSun != nullptr ? m_pSun->GetSunColor() : MakeFixedSun();
  m_pOcean->SetLight(m_pSun != nullptr ? -m_pSun->GetDirection() : -GetFixedSunDirection(),
      scene.m_bSun ? sun : QXColorValue3D(0.0, 0.0, 0.0, 1.0),
      scene.m_bAmbient ? MakeColor(scene.m_nAmbient) : ambient);
}

void QXEnvironment::Advance(double dSeconds) {
  if (m_pOcean != nullptr) m_pOcean->Update(dSeconds);
}

void QXEnvironment::GiveBack(QXC::QXGraphics3D& graphics3D) {
  m_pOcean.reset();
  m_pSky.reset();
  for (std::wstring const& strName : m_vecLights) graphics3D.DestroyLight(strName.c_str());
  m_vecLights.clear();
}

}  // namespace QXApp
