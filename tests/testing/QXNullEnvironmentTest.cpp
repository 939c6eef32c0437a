// Sky, ocean and display of the null renderer keep what the base classes forget or leave open.
#include <memory>

#include <gtest/gtest.h>

#include <QxGraphics3D/testing/QXNullSkyGraphics3D.h>
#include <QxGraphics3D/testing/QXNullTritonOceanGraphics3D.h>
#include <QxGraphics3D/testing/QXNullVirtualReality.h>

namespace QXC {
namespace {

TEST(QXNullSkyGraphics3D, KeepsEachValueApart) {
  QXNullSkyGraphics3D sky(nullptr, L"Scene3D", SCENE_PLANE);
  EXPECT_EQ(sky.IsInitialized(), 0);
  sky.Initialize();
  EXPECT_EQ(sky.IsInitialized(), 1);
  sky.SetVisible(0);
  EXPECT_EQ(sky.IsVisible(), 0);
  sky.SetTime(QdcTime(1234));
  EXPECT_EQ(sky.GetTime(), QdcTime(1234));
  sky.SetCondition(CONDITION_STORM);
  EXPECT_EQ(sky.GetCondition(), CONDITION_STORM);
  sky.SetPrecipitationType(PRECIPITATION_SNOW, 2.0);
  EXPECT_EQ(sky.GetPrecipitationType(), PRECIPITATION_SNOW);
  sky.SetCloudType(CLOUD_CIRRUS);
  EXPECT_EQ(sky.GetCloudType(), CLOUD_CIRRUS);
  sky.SetCloudVisibleDistance(1.0);
  sky.SetWindMinAltitude(2.0);
  sky.SetWindMaxAltitude(3.0);
  sky.SetWindDirection(4.0);
  sky.SetWindSpeed(5.0);
  sky.SetCloudAltitude(6.0);
  EXPECT_EQ(sky.GetCloudVisibleDistance(), 1.0);
  EXPECT_EQ(sky.GetWindMinAltitude(), 2.0);
  EXPECT_EQ(sky.GetWindMaxAltitude(), 3.0);
  EXPECT_EQ(sky.GetWindDirection(), 4.0);
  EXPECT_EQ(sky.GetWindSpeed(), 5.0);
  EXPECT_EQ(sky.GetCloudAltitude(), 6.0);
}

TEST(QXNullSkyGraphics3D, WritesItsCallsDown) {
  auto const pLog = std::make_shared<QXCallLog>();
  {
    QXNullSkyGraphics3D sky(pLog, L"Scene3D", SCENE_GLOBE);
    sky.SetRenderGroupID(3);
    sky.SetTime(QdcTime(7));
    sky.SetRenderWithTextureBuffer(1);
  }
  EXPECT_EQ(pLog->GetText(), "sky \"Scene3D\": SetRenderGroupID(3)\n"
                             "sky \"Scene3D\": SetTime(7)\n"
                             "sky \"Scene3D\": SetRenderWithTextureBuffer(1)\n"
                             "sky \"Scene3D\": destroyed()\n");
}

TEST(QXNullTritonOceanGraphics3D, KeepsEachValueApart) {
  QXNullTritonOceanGraphics3D ocean(nullptr, L"Scene3D", SCENE_PLANE);
  EXPECT_EQ(ocean.IsVisible(), 1);
  EXPECT_EQ(ocean.GetSeaState(), -1.0);
  EXPECT_EQ(ocean.GetChoppiness(), 1.0);
  ocean.SetVisible(0);
  ocean.SetSeaLevel(1.0);
  ocean.SetWindDirection(2.0);
  ocean.SetWindSpeed(3.0);
  ocean.SetSeaState(4.0);
  ocean.SetChoppiness(5.0);
  ocean.SetWaterColor(QXColorValue3D(0.1, 0.2, 0.3, 0.4));
  EXPECT_EQ(ocean.IsVisible(), 0);
  EXPECT_EQ(ocean.GetSeaLevel(), 1.0);
  EXPECT_EQ(ocean.GetWindDirection(), 2.0);
  EXPECT_EQ(ocean.GetWindSpeed(), 3.0);
  EXPECT_EQ(ocean.GetSeaState(), 4.0);
  EXPECT_EQ(ocean.GetChoppiness(), 5.0);
  EXPECT_EQ(ocean.GetWaterColor(), QXColorValue3D(0.1, 0.2, 0.3, 0.4));
}

TEST(QXNullTritonOceanGraphics3D, IsFlatAtSeaLevel) {
  QXNullTritonOceanGraphics3D ocean(nullptr, L"Scene3D", SCENE_PLANE);
  double dHeight = -5.0;
  QXVector3d vecNormal;
  EXPECT_EQ(ocean.GetHeight(QXVector3d(1.0, 2.0, 3.0), dHeight, vecNormal), 0);
  EXPECT_EQ(dHeight, -5.0);
  EXPECT_EQ(ocean.Initialize(), 1);
  ocean.SetSeaLevel(12.5);
  EXPECT_EQ(ocean.GetHeight(QXVector3d(1.0, 2.0, 3.0), dHeight, vecNormal), 1);
  EXPECT_EQ(dHeight, 12.5);
  EXPECT_EQ(vecNormal, QXVector3d(0.0, 0.0, 1.0));
}

TEST(QXNullTritonOceanGraphics3D, DisturbancesAreNumberedFromOneAndNeverAgain) {
  QXNullTritonOceanGraphics3D ocean(nullptr, L"Scene3D", SCENE_PLANE);
  EXPECT_EQ(ocean.CreateWakeGenerator(QXWakeGeneratorParameters()), 1u);
  EXPECT_EQ(ocean.CreateRotorWash(QXRotorWashParameters()), 2u);
  ocean.RemoveDisturbance(2);
  EXPECT_EQ(ocean.CreateTidalStreamWake(QXTidalStreamWakeParameters()), 3u);
  ocean.MoveDisturbance(3, QXVector3d(1.0, 2.0, 3.0), QXVector3d(0.0, 1.0, 0.0), 4.0);
  ocean.MoveDisturbance(2, QXVector3d(9.0, 9.0, 9.0), QXVector3d(), 9.0);
  ASSERT_EQ(ocean.GetDisturbances().size(), 2u);
  EXPECT_EQ(ocean.GetDisturbances().at(3).m_vecPosition, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(ocean.GetDisturbances().at(3).m_dSpeed, 4.0);
  EXPECT_EQ(ocean.GetDisturbances().at(1).m_dSpeed, 0.0);
}

TEST(QXNullTritonOceanGraphics3D, CountsSwellsImpactsAndSeconds) {
  QXNullTritonOceanGraphics3D ocean(nullptr, L"Scene3D", SCENE_PLANE);
  ocean.AddSwell(1.0, 80.0, 2.0, 0.0);
  ocean.AddSwell(2.0, 60.0, 1.0, 0.0);
  EXPECT_EQ(ocean.GetSwellCount(), 2u);
  ocean.RemoveAllSwells();
  EXPECT_EQ(ocean.GetSwellCount(), 0u);
  ocean.AddWaterImpact(QXWaterImpactParameters(), QXVector3d(), QXVector3d(), 30.0);
  EXPECT_EQ(ocean.GetImpactCount(), 1u);
  ocean.Update(0.25);
  ocean.Update(0.5);
  EXPECT_EQ(ocean.GetSeconds(), 0.75);
}

TEST(QXNullTritonOceanGraphics3D, WritesItsCallsDown) {
  auto const pLog = std::make_shared<QXCallLog>();
  {
    QXNullTritonOceanGraphics3D ocean(pLog, L"sea", SCENE_PLANE);
    ocean.SetRenderGroupID(2);
    ocean.SetTime(QdcTime(5));
    ocean.SetUnderwaterVisibility(30.0);
    ocean.SetFoamEnable(0);
    ocean.SetReflectionEnable(1);
    ocean.SetLight(QXVector3d(0.0, 0.0, -1.0), QXColorValue3D::White, QXColorValue3D::Black);
    ocean.SetRenderWithTextureBuffer(1);
  }
  EXPECT_EQ(pLog->GetLines().size(), 8u);
  EXPECT_EQ(pLog->GetLines()[3], "ocean \"sea\": SetFoamEnable(0)");
  EXPECT_EQ(pLog->GetLines()[7], "ocean \"sea\": destroyed()");
}

TEST(QXNullVirtualReality, GivesThePoseThatWasReadWhileItIsHeld) {
  QXNullVirtualReality display(nullptr);
  QXMatrix4d matView;
  QXMatrix4d matProjection;
  EXPECT_EQ(display.GetEyeMatrices(0, matView, matProjection), 0);
  EXPECT_EQ(display.Initialize(), 1);
  display.m_matHead.SetTrans(QXVector3d(0.0, 0.0, -7.0));
  display.m_matProjection = QXMatrix4d::ZERO;
  display.m_dEyeDistance = 0.5;
  ASSERT_EQ(display.GetEyeMatrices(0, matView, matProjection), 1);
  EXPECT_EQ(matView[3][2], 0.0) << "the head is read by UpdatePose";
  display.UpdatePose();
  ASSERT_EQ(display.GetEyeMatrices(0, matView, matProjection), 1);
  EXPECT_EQ(matView[3][2], -7.0);
  EXPECT_EQ(matView[3][0], 0.25);
  EXPECT_EQ(matProjection, QXMatrix4d::ZERO);
  ASSERT_EQ(display.GetEyeMatrices(1, matView, matProjection), 1);
  EXPECT_EQ(matView[3][0], -0.25);
  EXPECT_EQ(display.GetEyeMatrices(2, matView, matProjection), 0);
  EXPECT_EQ(display.GetEyeMatrices(-1, matView, matProjection), 0);
  display.Release();
  EXPECT_EQ(display.IsHeld(), 0);
  EXPECT_EQ(display.GetEyeMatrices(0, matView, matProjection), 0);
}

TEST(QXNullVirtualReality, GivesTheDeviceBackWhenItGoes) {
  auto const pLog = std::make_shared<QXCallLog>();
  { QXNullVirtualReality const idle(pLog); }
  {
    QXNullVirtualReality display(pLog);
    display.Initialize();
  }
  EXPECT_EQ(pLog->GetText(), "display: destroyed()\n"
                             "display: Initialize()\n"
                             "display: Release()\n"
                             "display: destroyed()\n");
}

TEST(QXNullVirtualReality, CountsThePicturesItTakes) {
  QXNullVirtualReality display(nullptr);
  display.Submit(nullptr, nullptr);
  EXPECT_EQ(display.GetSubmitCount(), 0u);
  display.Initialize();
  display.Submit(nullptr, nullptr);
  EXPECT_EQ(display.GetSubmitCount(), 1u);
}

}  // namespace
}  // namespace QXC
