#include <QxGraphics3D/view/QXFog.h>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace QXC {
namespace {

class OpenFog : public QXFog {
public:
  using QXFog::m_Color;
  using QXFog::m_dDensity;
  using QXFog::m_dEnd;
  using QXFog::m_dStart;
  using QXFog::m_eMode;
};

void ExpectDefaults(QXFog const& fog) {
  EXPECT_EQ(static_cast<int>(fog.GetFogMode()), 0);
  EXPECT_EQ(fog.GetFogColor(), QXColorValue3D::White);
  EXPECT_EQ(fog.GetFogStart(), 0.0);
  EXPECT_EQ(fog.GetFogEnd(), 1.0);
  EXPECT_EQ(fog.GetFogDensity(), 1.0);
}

QXFog MakeFog() {
  QXFog fog;
  fog.SetFogMode(FOG_LINEAR);
  fog.SetFogColor(QXColorValue3D(0.1, 0.2, 0.3, 0.4));
  fog.SetFogStart(5.0);
  fog.SetFogEnd(6.0);
  fog.SetFogDensity(7.0);
  return fog;
}

void ExpectMade(QXFog const& fog) {
  EXPECT_EQ(fog.GetFogMode(), FOG_LINEAR);
  EXPECT_EQ(fog.GetFogColor(), QXColorValue3D(0.1, 0.2, 0.3, 0.4));
  EXPECT_EQ(fog.GetFogStart(), 5.0);
  EXPECT_EQ(fog.GetFogEnd(), 6.0);
  EXPECT_EQ(fog.GetFogDensity(), 7.0);
}

TEST(QXFog, ANewOneIsOffAndWhite) {
  ExpectDefaults(QXFog());
}

TEST(QXFog, FieldsStandInTheirOrderBehindTheTable) {
  OpenFog fog;
  ExpectInOrder({&fog, &fog.m_eMode, &fog.m_Color, &fog.m_dStart, &fog.m_dEnd, &fog.m_dDensity});
  EXPECT_TRUE(std::has_virtual_destructor_v<QXFog>);
}

TEST(QXFog, CopyAndAssignmentCopyEveryField) {
  QXFog const fog = MakeFog();
  ExpectMade(fog);
  ExpectMade(QXFog(fog));
  QXFog other;
  other = fog;
  ExpectMade(other);
}

TEST(QXFog, AssignmentTakesAValueAndGivesNothing) {
  EXPECT_TRUE((std::is_void_v<decltype(std::declval<QXFog&>() = std::declval<QXFog const&>())>));
  EXPECT_TRUE((std::is_same_v<void (QXFog::*)(QXFog), decltype(&QXFog::operator=)>));
}

TEST(QXFog, ResetGivesTheValuesOfANewOne) {
  QXFog fog = MakeFog();
  fog.Reset();
  ExpectDefaults(fog);
}

TEST(QXFog, AnyModeSurvives) {
  QXFog fog;
  fog.SetFogMode(static_cast<FogMode>(1000));
  EXPECT_EQ(fog.GetFogMode(), static_cast<FogMode>(1000));
}

}  // namespace
}  // namespace QXC
