#include <QxGraphics3D/environment/QXSkyGraphics3D.h>

#include <gtest/gtest.h>

#include <type_traits>

#include "../renderop/QXSlotOf.h"

namespace QXC {
namespace {

TEST(QXSkyGraphics3D, ABareSkyForgetsWhatItIsTold) {
  QXSkyGraphics3D sky;
  sky.SetPrecipitationType(PRECIPITATION_RAIN, 5.0);
  EXPECT_EQ(static_cast<int>(sky.GetPrecipitationType()), 0);
  sky.SetCloudType(CLOUD_STRATUS);
  EXPECT_EQ(static_cast<int>(sky.GetCloudType()), 0);
  sky.SetCloudVisibleDistance(12.5);
  EXPECT_EQ(sky.GetCloudVisibleDistance(), 0.0);
  sky.SetWindMinAltitude(12.5);
  EXPECT_EQ(sky.GetWindMinAltitude(), 0.0);
  sky.SetWindMaxAltitude(12.5);
  EXPECT_EQ(sky.GetWindMaxAltitude(), 0.0);
  sky.SetWindDirection(12.5);
  EXPECT_EQ(sky.GetWindDirection(), 0.0);
  sky.SetWindSpeed(12.5);
  EXPECT_EQ(sky.GetWindSpeed(), 0.0);
  sky.SetCloudAltitude(12.5);
  EXPECT_EQ(sky.GetCloudAltitude(), 0.0);
}

TEST(QXSkyGraphics3D, ABareSkyIsAlwaysClear) {
  QXSkyGraphics3D sky;
  EXPECT_EQ(static_cast<int>(sky.GetCondition()), 1);
  sky.SetCondition(CONDITION_STORM);
  EXPECT_EQ(static_cast<int>(sky.GetCondition()), 1);
  sky.SetCondition(static_cast<QXConditionPresets>(0));
  EXPECT_EQ(static_cast<int>(sky.GetCondition()), 1);
}

TEST(QXSkyGraphics3D, ABareSkyMayBeDrivenAsAnyOther) {
  QXSkyGraphics3D sky(L"Scene3D", SCENE_GLOBE);
  sky.SetVisible(1);
  sky.Initialize();
  sky.SetRenderGroupID(4);
  sky.SetTime(QdcTime(1000));
  sky.SetRenderWithTextureBuffer(1);
  QXSkyGraphics3D copy(sky);
  copy = sky;
  EXPECT_EQ(copy.GetWindSpeed(), 0.0);
}

TEST(QXSkyGraphics3D, HasNoDataOfItsOwn) {
  EXPECT_EQ(sizeof(QXSkyGraphics3D), sizeof(void*));
  EXPECT_FALSE(std::is_abstract_v<QXSkyGraphics3D>);
}

// A plug-in's sky overrides by place.
TEST(QXSkyGraphics3D, OperationsStandInTheirSlots) {
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetVisible), 1);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::Initialize), 2);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetRenderGroupID), 3);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetTime), 4);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetCondition), 5);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetCondition), 6);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetPrecipitationType), 7);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetPrecipitationType), 8);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetCloudType), 9);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetCloudType), 10);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetCloudVisibleDistance), 11);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetCloudVisibleDistance), 12);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetWindMinAltitude), 13);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetWindMinAltitude), 14);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetWindMaxAltitude), 15);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetWindMaxAltitude), 16);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetWindDirection), 17);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetWindDirection), 18);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetWindSpeed), 19);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetWindSpeed), 20);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetCloudAltitude), 21);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::GetCloudAltitude), 22);
  EXPECT_EQ(SlotOf(&QXSkyGraphics3D::SetRenderWithTextureBuffer), 23);
}

struct Appended : QXSkyGraphics3D {
  virtual void Append() {}
};

TEST(QXSkyGraphics3D, NothingStandsBehindTheLastOperation) {
  EXPECT_EQ(SlotOf(&Appended::Append), 24);
}

}  // namespace
}  // namespace QXC
