// Light and weather on their way to a renderer.
#include <apps/qx3d/QXEnvironment.h>

#include <QxGraphics3D/environment/QXSkyGraphics3D.h>
#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/testing/QXNullScene.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>
#include <QxGraphics3D/view/QXLight.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

namespace QXApp {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr QXInt64 Noon = 1782040800000;
constexpr QXInt64 Midnight = Noon + 12 * 3600000;

class QXEnvironmentTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_NE(m_Graphics3D.Initialize(QXC::QdcUnicodeString()), 0);
    m_pTarget = m_Graphics3D.CreateRenderTexture(
        L"T", static_cast<QXC::QX3DPixelFormat>(12), 16, 16, 0, 32, QXC::QdcUnicodeString(L"Scene3D"));
    ASSERT_NE(m_pTarget, nullptr);
    m_Graphics3D.AttachRenderTarget(m_pTarget);
    m_Graphics3D.GetLog().Clear();
  }
  void TearDown() override {
    m_Environment.GiveBack(m_Graphics3D);
    m_Graphics3D.ShutDown();
  }
  void Show() { m_Environment.Show(m_Graphics3D, L"Scene3D", *m_pTarget, m_Scene, m_Problems); }
  bool HasLogged(std::string const& strCall) {
    return m_Graphics3D.GetLog().GetText().find(strCall) != std::string::npos;
  }

  QXC::QXRecordingGraphics3D m_Graphics3D;
  QXC::QXRenderTarget* m_pTarget = nullptr;
  QXSceneFile m_Scene;
  QXSceneProblems m_Problems{"s.qxscene"};
  QXEnvironment m_Environment;
};

TEST_F(QXEnvironmentTest, WithoutATimeTheSunStandsInTheSouthWest) {
  Show();
  QXC::QXVector3d const vecSun = m_pTarget->GetSunPosition();
  EXPECT_LT(vecSun.x, -1e8);
  EXPECT_LT(vecSun.y, -1e8);
  EXPECT_GT(vecSun.z, 1e8);
  EXPECT_EQ(m_pTarget->GetSunLightEnable(), 1);
  EXPECT_TRUE(HasLogged("SetDiffuseLight((0.78 0.73 0.64")) << m_Graphics3D.GetLog().GetText();
  EXPECT_TRUE(HasLogged("SetAmbientLight((0.51 0.54 0.6"));
  EXPECT_FALSE(HasLogged("SetFog"));
  EXPECT_FALSE(HasLogged("CreateSky"));
  EXPECT_TRUE(m_Problems.IsEmpty());
}

TEST_F(QXEnvironmentTest, SunAndAmbientLightOfTheSceneGoFirst) {
  m_Scene.m_bSun = false;
  m_Scene.m_bAmbient = true;
  m_Scene.m_nAmbient[2] = 255;
  Show();
  EXPECT_EQ(m_pTarget->GetSunLightEnable(), 0);
  EXPECT_TRUE(HasLogged("SetAmbientLight((0 0 1")) << m_Graphics3D.GetLog().GetText();
}

TEST_F(QXEnvironmentTest, LightsArriveWholeAndGoInTheEnd) {
  QXSceneLight light;
  light.m_eKind = QXLightKind::Spot;
  light.m_vecPosition = QXC::QXVector3d(1.0, 2.0, 3.0);
  light.m_bTarget = true;
  light.m_vecTarget = QXC::QXVector3d(1.0, 2.0, 0.0);
  light.m_nColor[1] = 51;
  light.m_dInner = 90.0;
  light.m_dOuter = 180.0;
  light.m_dFalloff = 2.0;
  light.m_dRange = 40.0;
  light.m_dAttenuation[0] = 1.0;
  light.m_dAttenuation[2] = 0.25;
  light.m_dPower = 3.0;
  m_Scene.m_vecLights = {light, QXSceneLight()};
  Show();
  EXPECT_EQ(m_Environment.GetLightCount(), 2u);
  QXC::QXNullLight const* pLight = m_Graphics3D.FindLight(L"Light0");
  ASSERT_NE(pLight, nullptr);
  QXC::QXLight const& made = pLight->m_Light;
  EXPECT_EQ(made.GetType(), QXC::LIGHT_SPOTLIGHT);
  EXPECT_EQ(made.GetPosition(), light.m_vecPosition);
  EXPECT_EQ(made.GetDirection(), QXC::QXVector3d(0.0, 0.0, -3.0));
  EXPECT_EQ(made.GetDiffuseColour().g, 0.2);
  EXPECT_EQ(made.GetSpecularColour().g, 0.2);
  // Light from everywhere is the scene's own.
  EXPECT_EQ(made.GetAmbientColour().r, 0.0);
  EXPECT_DOUBLE_EQ(made.GetSpotlightInnerAngle(), 0.5 * std::numbers::pi);
  EXPECT_DOUBLE_EQ(made.GetSpotlightOuterAngle(), std::numbers::pi);
  EXPECT_EQ(made.GetSpotlightFalloff(), 2.0);
  EXPECT_EQ(made.GetAttenuationRange(), 40.0);
  EXPECT_EQ(made.GetAttenuationConstant(), 1.0);
  EXPECT_EQ(made.GetAttenuationQuadric(), 0.25);
  EXPECT_EQ(made.GetPowerScale(), 3.0);
  EXPECT_EQ(m_Graphics3D.FindLight(L"Light1")->m_Light.GetType(), QXC::LIGHT_POINT);
  m_Environment.GiveBack(m_Graphics3D);
  EXPECT_EQ(m_Graphics3D.FindLight(L"Light0"), nullptr);
  EXPECT_EQ(m_Graphics3D.FindLight(L"Light1"), nullptr);
}

TEST_F(QXEnvironmentTest, DirectionalLightGoesItsWay) {
  QXSceneLight light;
  light.m_eKind = QXLightKind::Directional;
  light.m_bDirection = true;
  light.m_vecDirection = QXC::QXVector3d(0.0, 1.0, -1.0);
  QXC::QXLight const made = MakeLight(light);
  EXPECT_EQ(made.GetType(), QXC::LIGHT_DIRECTIONAL);
  EXPECT_EQ(made.GetDirection(), light.m_vecDirection);
}

TEST_F(QXEnvironmentTest, FogHasTheColourOfTheBackgroundUnlessItSaysAnother) {
  m_Scene.m_bBackground = true;
  m_Scene.m_nBackground[0] = 51;
  m_Scene.m_Fog.m_eKind = QXFogKind::Linear;
  m_Scene.m_Fog.m_dStart = 10.0;
  m_Scene.m_Fog.m_dEnd = 90.0;
  Show();
  QXC::QXFog const& fog = m_Graphics3D.FindScene(L"Scene3D")->GetFog();
  EXPECT_EQ(fog.GetFogMode(), QXC::FOG_LINEAR);
  EXPECT_EQ(fog.GetFogColor().r, 0.2);
  EXPECT_EQ(fog.GetFogColor().g, 0.0);
  EXPECT_EQ(fog.GetFogStart(), 10.0);
  EXPECT_EQ(fog.GetFogEnd(), 90.0);
  m_Scene.m_Fog.m_eKind = QXFogKind::ExponentialSquared;
  m_Scene.m_Fog.m_dDensity = 0.01;
  m_Scene.m_Fog.m_bColor = true;
  m_Scene.m_Fog.m_nColor[1] = 255;
  Show();
  EXPECT_EQ(fog.GetFogMode(), QXC::FOG_EXPONENTIAL_SQUARED);
  EXPECT_EQ(fog.GetFogColor().g, 1.0);
  EXPECT_EQ(fog.GetFogDensity(), 0.01);
}

TEST_F(QXEnvironmentTest, SkyTakesWhatTheSceneSaysAndNothingElse) {
  m_Scene.m_Sky.m_bSky = true;
  m_Scene.m_Sky.m_Time = QDC::QdcTime(Noon);
  Show();
  EXPECT_TRUE(HasLogged("Initialize()"));
  EXPECT_TRUE(HasLogged("SetTime(1782040800000)")) << m_Graphics3D.GetLog().GetText();
  EXPECT_FALSE(HasLogged("SetCondition"));
  EXPECT_FALSE(HasLogged("SetCloudType"));
  EXPECT_FALSE(HasLogged("SetCloudAltitude"));
  EXPECT_FALSE(HasLogged("SetWind"));
  m_Environment.GiveBack(m_Graphics3D);
  m_Graphics3D.GetLog().Clear();
  m_Scene.m_Sky.m_nCondition = 3;
  m_Scene.m_Sky.m_nClouds = 0;
  m_Scene.m_Sky.m_dCloudHeight = 900.0;
  m_Scene.m_Sky.m_dWindFrom = 180.0;
  m_Scene.m_Sky.m_dWindSpeed = 8.0;
  Show();
  std::string const strLog = m_Graphics3D.GetLog().GetText();
  EXPECT_LT(strLog.find("SetCondition(3)"), strLog.find("SetCloudType(0)")) << "the condition sets the clouds, too";
  EXPECT_TRUE(HasLogged("SetCloudType(0)"));
  EXPECT_TRUE(HasLogged("SetCloudAltitude(900)"));
  EXPECT_TRUE(HasLogged("SetWindDirection(3.14159"));
  EXPECT_TRUE(HasLogged("SetWindSpeed(8)"));
}

TEST_F(QXEnvironmentTest, SunFollowsTheTimeOfTheSky) {
  m_Scene.m_Sky.m_bSky = true;
  m_Scene.m_Sky.m_Time = QDC::QdcTime(Noon);
  Show();
  QXC::QXVector3d const vecNoon = m_pTarget->GetSunPosition();
  EXPECT_LT(vecNoon.y, 0.0) << "in the south";
  EXPECT_GT(vecNoon.z, -vecNoon.y) << "higher than 45 degrees";
  EXPECT_NEAR(vecNoon.x / vecNoon.z, 0.0, 0.02);
  m_Environment.GiveBack(m_Graphics3D);
  m_Scene.m_Sky.m_Time = QDC::QdcTime(Midnight);
  m_Graphics3D.GetLog().Clear();
  Show();
  EXPECT_LT(m_pTarget->GetSunPosition().z, 0.0);
  EXPECT_TRUE(HasLogged("SetDiffuseLight((0 0 0")) << m_Graphics3D.GetLog().GetText();
}

TEST_F(QXEnvironmentTest, BackgroundGetsDarkWithTheSky) {
  QXC::QXSunPosition const noon{QDC::QdcTime(Noon)};
  QXC::QXSunPosition const midnight{QDC::QdcTime(Midnight)};
  QXC::QXColorValue3D const plain = ChooseBackground(m_Scene, nullptr);
  QXC::QXColorValue3D const day = ChooseBackground(m_Scene, &noon);
  QXC::QXColorValue3D const night = ChooseBackground(m_Scene, &midnight);
  EXPECT_DOUBLE_EQ(day.r, plain.r);
  EXPECT_DOUBLE_EQ(day.b, plain.b);
  EXPECT_LT(night.r, 0.2 * day.r);
  EXPECT_GT(night.b, night.r);
  m_Scene.m_bBackground = true;
  m_Scene.m_nBackground[0] = 255;
  EXPECT_EQ(ChooseBackground(m_Scene, &midnight).r, 1.0);
}

TEST_F(QXEnvironmentTest, OceanIsUnderTheLightOfTheScene) {
  m_Scene.m_Ocean.m_bOcean = true;
  Show();
  EXPECT_TRUE(HasLogged("SetLight((0.62 0.48 -0.62), (0.78 0.73 0.64 1), (0.51 0.54 0.6 1))"))
      << m_Graphics3D.GetLog().GetText();
  m_Scene.m_bSun = false;
  m_Scene.m_bAmbient = true;
  m_Scene.m_nAmbient[2] = 255;
  Show();
  EXPECT_TRUE(HasLogged("SetLight((0.62 0.48 -0.62), (0 0 0 1), (0 0 1 1))")) << m_Graphics3D.GetLog().GetText();
}

TEST_F(QXEnvironmentTest, OceanMovesOnBeforeEachFrame) {
  m_Environment.Advance(1.0);
  m_Scene.m_Ocean.m_bOcean = true;
  m_Scene.m_Ocean.m_dLevel = -2.0;
  m_Scene.m_Ocean.m_dBeaufort = 6.0;
  Show();
  EXPECT_TRUE(HasLogged("SetSeaLevel(-2)")) << m_Graphics3D.GetLog().GetText();
  EXPECT_TRUE(HasLogged("SetSeaState(6)"));
  EXPECT_TRUE(HasLogged("SetWindDirection(4.71"));
  EXPECT_TRUE(HasLogged("SetLight("));
  m_Environment.Advance(0.25);
  EXPECT_TRUE(HasLogged("Update(0.25)"));
  m_Environment.GiveBack(m_Graphics3D);
  EXPECT_TRUE(HasLogged("destroyed"));
  m_Environment.Advance(1.0);
  EXPECT_FALSE(HasLogged("Update(1)"));
}

TEST_F(QXEnvironmentTest, WhatTheRendererHasNotIsToldAtItsLine) {
  m_Scene.m_vecLights.resize(2);
  m_Scene.m_vecLights[0].m_nLine = 4;
  m_Scene.m_Sky.m_bSky = true;
  m_Scene.m_Sky.m_nLine = 7;
  m_Scene.m_Ocean.m_bOcean = true;
  m_Scene.m_Ocean.m_nLine = 9;
  // As a renderer without any of it answers for every scene.
  m_Environment.Show(m_Graphics3D, L"Nowhere", *m_pTarget, m_Scene, m_Problems);
  EXPECT_THAT(m_Problems.GetLines(),
      ElementsAre(HasSubstr("s.qxscene:4: the renderer has no lights"),
          HasSubstr("s.qxscene:7: the renderer has no sky"), HasSubstr("s.qxscene:9: the renderer has no ocean")));
}

}  // namespace
}  // namespace QXApp
