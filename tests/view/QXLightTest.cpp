#include <QxGraphics3D/view/QXLight.h>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace QXC {
namespace {

/// Opens the fields, to see their order and to tell the white of a new colour from one that was set.
class OpenLight : public QXLight {
public:
  using QXLight::m_AmbientColour;
  using QXLight::m_dAttenuationConstant;
  using QXLight::m_dAttenuationLinear;
  using QXLight::m_dAttenuationQuadric;
  using QXLight::m_dAttenuationRange;
  using QXLight::m_DiffuseColour;
  using QXLight::m_dPowerScale;
  using QXLight::m_dSpotlightFalloff;
  using QXLight::m_dSpotlightInnerAngle;
  using QXLight::m_dSpotlightOuterAngle;
  using QXLight::m_eType;
  using QXLight::m_SpecularColour;
  using QXLight::m_vecDirection;
  using QXLight::m_vecPosition;
  using QXLight::QXLight;
};

void ExpectDefaults(QXLight const& light) {
  // Angles set at once are for spotlights, which a light without a type is not.
  EXPECT_NE(static_cast<int>(light.GetType()), 2);
  EXPECT_EQ(light.GetSpotlightFalloff(), 0.0);
  EXPECT_EQ(light.GetSpotlightInnerAngle(), 0.0);
  EXPECT_EQ(light.GetSpotlightOuterAngle(), 0.0);
  EXPECT_EQ(light.GetDiffuseColour(), QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(light.GetSpecularColour(), QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(light.GetAmbientColour(), QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(light.GetAttenuationRange(), 0.0);
  EXPECT_EQ(light.GetPowerScale(), 0.0);
  EXPECT_EQ(light.GetAttenuationConstant(), 0.0);
  EXPECT_EQ(light.GetAttenuationLinear(), 0.0);
  EXPECT_EQ(light.GetAttenuationQuadric(), 0.0);
  EXPECT_EQ(light.GetPosition(), QXVector3d());
  EXPECT_EQ(light.GetDirection(), QXVector3d());
}

/// Each field another value.
QXLight MakeLight() {
  QXLight light;
  light.SetType(LIGHT_SPOTLIGHT);
  light.SetSpotlightRange(1.0, 2.0, 3.0);
  light.SetDiffuseColour(QXColorValue3D(0.1, 0.2, 0.3, 0.4));
  light.SetSpecularColour(QXColorValue3D(0.5, 0.6, 0.7, 0.8));
  light.SetAmbientColour(QXColorValue3D(0.9, 1.0, 1.1, 1.2));
  light.SetAttenuation(4.0, 5.0, 6.0, 7.0);
  light.SetPowerScale(8.0);
  light.SetPosition(QXVector3d(9.0, 10.0, 11.0));
  light.SetDirection(QXVector3d(12.0, 13.0, 14.0));
  return light;
}

void ExpectMade(QXLight const& light) {
  EXPECT_EQ(light.GetType(), LIGHT_SPOTLIGHT);
  EXPECT_EQ(light.GetSpotlightInnerAngle(), 1.0);
  EXPECT_EQ(light.GetSpotlightOuterAngle(), 2.0);
  EXPECT_EQ(light.GetSpotlightFalloff(), 3.0);
  EXPECT_EQ(light.GetDiffuseColour(), QXColorValue3D(0.1, 0.2, 0.3, 0.4));
  EXPECT_EQ(light.GetSpecularColour(), QXColorValue3D(0.5, 0.6, 0.7, 0.8));
  EXPECT_EQ(light.GetAmbientColour(), QXColorValue3D(0.9, 1.0, 1.1, 1.2));
  EXPECT_EQ(light.GetAttenuationRange(), 4.0);
  EXPECT_EQ(light.GetAttenuationConstant(), 5.0);
  EXPECT_EQ(light.GetAttenuationLinear(), 6.0);
  EXPECT_EQ(light.GetAttenuationQuadric(), 7.0);
  EXPECT_EQ(light.GetPowerScale(), 8.0);
  EXPECT_EQ(light.GetPosition(), QXVector3d(9.0, 10.0, 11.0));
  EXPECT_EQ(light.GetDirection(), QXVector3d(12.0, 13.0, 14.0));
}

TEST(QXLight, ANewOneIsWhiteAndHasNoRange) {
  ExpectDefaults(QXLight());
}

TEST(QXLight, ANameChangesNothing) {
  ExpectDefaults(QXLight(L"lamp"));
}

TEST(QXLight, FieldsStandInTheirOrder) {
  OpenLight light;
  ExpectInOrder({&light.m_eType, &light.m_dSpotlightFalloff, &light.m_dSpotlightInnerAngle,
      &light.m_dSpotlightOuterAngle, &light.m_DiffuseColour, &light.m_SpecularColour, &light.m_AmbientColour,
      &light.m_dAttenuationRange, &light.m_dPowerScale, &light.m_dAttenuationConstant, &light.m_dAttenuationLinear,
      &light.m_dAttenuationQuadric, &light.m_vecPosition, &light.m_vecDirection});
  EXPECT_EQ(static_cast<void const*>(&light.m_eType), &light) << "there is no virtual table";
  EXPECT_FALSE(std::is_polymorphic_v<QXLight>);
}

TEST(QXLight, EachSetterReachesItsOwnField) {
  ExpectMade(MakeLight());
}

TEST(QXLight, CopyAndAssignmentCopyEveryField) {
  QXLight const light = MakeLight();
  ExpectMade(QXLight(light));
  QXLight other;
  other = light;
  ExpectMade(other);
}

TEST(QXLight, AnyTypeSurvives) {
  QXLight light;
  light.SetType(static_cast<LightTypes>(-17));
  EXPECT_EQ(light.GetType(), static_cast<LightTypes>(-17));
  EXPECT_EQ(static_cast<int>(LIGHT_SPOTLIGHT), 2);
}

TEST(QXLight, ThreeNumbersLeaveAlphaAlone) {
  QXLight light;
  light.SetDiffuseColour(0.5, 0.5, 0.5);
  EXPECT_EQ(light.GetDiffuseColour(), QXColorValue3D(0.5, 0.5, 0.5, 1.0));
  light.SetSpecularColour(QXColorValue3D(0.0, 0.0, 0.0, 0.25));
  light.SetSpecularColour(0.1, 0.2, 0.3);
  EXPECT_EQ(light.GetSpecularColour(), QXColorValue3D(0.1, 0.2, 0.3, 0.25));
  light.SetAmbientColour(QXColorValue3D(0.0, 0.0, 0.0, 0.75));
  light.SetAmbientColour(0.4, 0.5, 0.6);
  EXPECT_EQ(light.GetAmbientColour(), QXColorValue3D(0.4, 0.5, 0.6, 0.75));
}

TEST(QXLight, PositionAndDirectionTakeThreeNumbers) {
  QXLight light;
  light.SetPosition(1.0, 2.0, 3.0);
  light.SetDirection(4.0, 5.0, 6.0);
  EXPECT_EQ(light.GetPosition(), QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(light.GetDirection(), QXVector3d(4.0, 5.0, 6.0));
}

TEST(QXLight, AttenuationLeavesThePowerScaleAlone) {
  QXLight light;
  light.SetPowerScale(2.5);
  light.SetAttenuation(1.0, 2.0, 3.0, 4.0);
  EXPECT_EQ(light.GetPowerScale(), 2.5);
}

TEST(QXLight, TheSpotlightRangeIsForSpotlightsOnly) {
  for (int const nType : {0, 1, 3, -1}) {
    QXLight light;
    light.SetSpotlightInnerAngle(0.1);
    light.SetSpotlightOuterAngle(0.2);
    light.SetSpotlightFalloff(0.3);
    light.SetType(static_cast<LightTypes>(nType));
    light.SetSpotlightRange(1.0, 2.0, 3.0);
    EXPECT_EQ(light.GetSpotlightInnerAngle(), 0.1) << nType;
    EXPECT_EQ(light.GetSpotlightOuterAngle(), 0.2) << nType;
    EXPECT_EQ(light.GetSpotlightFalloff(), 0.3) << nType;
  }
}

TEST(QXLight, TheSingleSpotlightSettersAlwaysStore) {
  QXLight light;
  light.SetType(LIGHT_DIRECTIONAL);
  light.SetSpotlightInnerAngle(0.1);
  light.SetSpotlightOuterAngle(0.2);
  light.SetSpotlightFalloff(0.3);
  EXPECT_EQ(light.GetSpotlightInnerAngle(), 0.1);
  EXPECT_EQ(light.GetSpotlightOuterAngle(), 0.2);
  EXPECT_EQ(light.GetSpotlightFalloff(), 0.3);
}

}  // namespace
}  // namespace QXC
