#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>

#include <gtest/gtest.h>

#include <type_traits>

#include "../renderop/QXSlotOf.h"

namespace QXC {
namespace {

/// The least that a plug-in must bring.
class BareOcean : public QXTritonOceanGraphics3D {
public:
  using QXTritonOceanGraphics3D::QXTritonOceanGraphics3D;
  unsigned char Initialize() override { return 0; }
  void SetVisible(unsigned char) override {}
  unsigned char IsVisible() const override { return 0; }
  void SetRenderGroupID(unsigned int) override {}
  void SetTime(QdcTime) override {}
  void SetSeaLevel(double) override {}
  double GetSeaLevel() const override { return 0.0; }
  void SetWindDirection(double) override {}
  double GetWindDirection() const override { return 0.0; }
  void SetWindSpeed(double) override {}
  double GetWindSpeed() const override { return 0.0; }
  void SetSeaState(double) override {}
  double GetSeaState() const override { return 0.0; }
  void SetChoppiness(double) override {}
  double GetChoppiness() const override { return 0.0; }
  void SetWaterColor(QXColorValue3D const&) override {}
  QXColorValue3D GetWaterColor() const override { return {}; }
  void SetUnderwaterVisibility(double) override {}
  void SetFoamEnable(unsigned char) override {}
  void SetReflectionEnable(unsigned char) override {}
  void SetLight(QXVector3d const&, QXColorValue3D const&, QXColorValue3D const&) override {}
  void AddSwell(double, double, double, double) override {}
  void RemoveAllSwells() override {}
  unsigned char GetHeight(QXVector3d const&, double&, QXVector3d&) const override { return 0; }
  unsigned int CreateWakeGenerator(QXWakeGeneratorParameters const&) override { return 0; }
  unsigned int CreateRotorWash(QXRotorWashParameters const&) override { return 0; }
  unsigned int CreateTidalStreamWake(QXTidalStreamWakeParameters const&) override { return 0; }
  void AddWaterImpact(QXWaterImpactParameters const&, QXVector3d const&, QXVector3d const&, double) override {}
  void MoveDisturbance(unsigned int, QXVector3d const&, QXVector3d const&, double) override {}
  void RemoveDisturbance(unsigned int) override {}
  void Update(double) override {}

  virtual void Append() {}
};

TEST(QXTritonOceanGraphics3D, IsAnInterfaceWithoutData) {
  EXPECT_TRUE(std::is_abstract_v<QXTritonOceanGraphics3D>);
  EXPECT_EQ(sizeof(QXTritonOceanGraphics3D), sizeof(void*));
}

TEST(QXTritonOceanGraphics3D, IsMadeInThreeWaysAndCopied) {
  BareOcean const plain;
  BareOcean named(L"Scene3D", SCENE_PLANE);
  BareOcean copy(named);
  copy = plain;
  copy.SetRenderWithTextureBuffer(1);
  EXPECT_TRUE((std::is_constructible_v<BareOcean, QdcUnicodeString const&, SceneType>));
}

TEST(QXTritonOceanGraphics3D, HasThirtyThreeOperations) {
  EXPECT_EQ(SlotOf(&QXTritonOceanGraphics3D::Initialize), 1);
  EXPECT_EQ(SlotOf(&QXTritonOceanGraphics3D::Update), 31);
  EXPECT_EQ(SlotOf(&QXTritonOceanGraphics3D::SetRenderWithTextureBuffer), 32);
  EXPECT_EQ(SlotOf(&BareOcean::Append), 33);
}

}  // namespace
}  // namespace QXC
