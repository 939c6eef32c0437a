#include <QxGraphics3D/environment/QXSunPosition.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>

#include <QxGraphics3D/testing/QXCallLog.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>

namespace QXC {
namespace {

constexpr double DEGREE = std::numbers::pi / 180.0;
/// What the formula promises, and the rounding of the almanac's values.
constexpr double TOLERANCE = 0.02;

/// At the north pole the altitude is the declination.
double Declination(QXInt64 nTime) {
  return QXSunPosition(QdcTime(nTime), 90.0 * DEGREE, 0.0).GetAltitude() / DEGREE;
}

/// A moment of 2024-06-21, at the default place.
QXSunPosition Midsummer(double dHoursUTC) {
  return QXSunPosition(QdcTime(1718928000000 + static_cast<QXInt64>(dHoursUTC * 3600000.0)));
}

TEST(QXSunPosition, DeclinationIsTheObliquityAtSolsticesAndNothingAtEquinoxes) {
  EXPECT_NEAR(Declination(1718916660000), 23.436, TOLERANCE);   // 2024-06-20 20:51 UTC
  EXPECT_NEAR(Declination(1734772860000), -23.436, TOLERANCE);  // 2024-12-21 09:21 UTC
  EXPECT_NEAR(Declination(1710903960000), 0.0, TOLERANCE);      // 2024-03-20 03:06 UTC
  EXPECT_NEAR(Declination(1727009040000), 0.0, TOLERANCE);      // 2024-09-22 12:44 UTC
  EXPECT_NEAR(Declination(718934400000), -7.785, TOLERANCE);    // 1992-10-13 00:00
}

TEST(QXSunPosition, TheEquationOfTimeMovesNoonThroughTheYear) {
  // The sun passes the meridian of Greenwich 16 minutes 26 seconds early and 14 minutes 14 seconds late.
  EXPECT_NEAR(QXSunPosition(QdcTime(1730634214000), 52.0 * DEGREE, 0.0).GetAzimuth() / DEGREE, 180.0, 0.05);
  EXPECT_NEAR(QXSunPosition(QdcTime(1707653654000), 52.0 * DEGREE, 0.0).GetAzimuth() / DEGREE, 180.0, 0.05);
}

TEST(QXSunPosition, AltitudeAndAzimuthAgreeWithAFullComputation) {
  // Colorado on 2003-10-17 at 19:30:30 UTC; without refraction.
  QXSunPosition const sun(QdcTime(1066419030000), 39.742476 * DEGREE, -105.1786 * DEGREE);
  EXPECT_NEAR(sun.GetAltitude() / DEGREE, 39.872, TOLERANCE);
  EXPECT_NEAR(sun.GetAzimuth() / DEGREE, 194.340, TOLERANCE);
}

TEST(QXSunPosition, TheDirectionIsTheUnitVectorOfAltitudeAndAzimuth) {
  for (double const dHour : {2.0, 6.0, 11.3, 17.0, 23.0}) {
    QXSunPosition const sun = Midsummer(dHour);
    QXVector3d const& vec = sun.GetDirection();
    EXPECT_NEAR(vec.Length(), 1.0, 1e-12);
    EXPECT_NEAR(vec.x, std::cos(sun.GetAltitude()) * std::sin(sun.GetAzimuth()), 1e-12) << dHour;
    EXPECT_NEAR(vec.y, std::cos(sun.GetAltitude()) * std::cos(sun.GetAzimuth()), 1e-12) << dHour;
    EXPECT_NEAR(vec.z, std::sin(sun.GetAltitude()), 1e-12) << dHour;
  }
}

TEST(QXSunPosition, TheDefaultPlaceIs52NorthAnd10East) {
  EXPECT_NEAR(QXSunPosition::DEFAULT_LATITUDE / DEGREE, 52.0, 1e-12);
  EXPECT_NEAR(QXSunPosition::DEFAULT_LONGITUDE / DEGREE, 10.0, 1e-12);
  QXSunPosition const sun(QdcTime(1718960400000), 52.0 * DEGREE, 10.0 * DEGREE);
  EXPECT_NEAR(Midsummer(9.0).GetAltitude(), sun.GetAltitude(), 1e-12);
}

TEST(QXSunPosition, ItStandsInTheEastInTheMorningInTheSouthAtNoonInTheWestInTheEvening) {
  EXPECT_GT(Midsummer(5.0).GetDirection().x, 0.5);
  EXPECT_NEAR(Midsummer(11.36).GetAzimuth() / DEGREE, 180.0, 1.0);
  EXPECT_NEAR(Midsummer(11.36).GetAltitude() / DEGREE, 90.0 - 52.0 + 23.43, 0.05);
  EXPECT_LT(Midsummer(18.0).GetDirection().x, -0.5);
  EXPECT_LT(Midsummer(23.36).GetAltitude(), 0.0);
}

TEST(QXSunPosition, ThePositionLiesInTheDirectionFromAnywhereInTheWorld) {
  QXSunPosition const sun = Midsummer(8.0);
  QXVector3d vecSeen = sun.GetPosition() - QXVector3d(6.0e6, -6.0e6, 1.0e3);
  vecSeen.Normalize();
  EXPECT_NEAR(vecSeen.DotProduct(sun.GetDirection()), 1.0, 1e-8);
}

TEST(QXSunPosition, TheStarsTurnOnceInASiderealDay) {
  // Greenwich, 2000-01-01 12:00, the zero of the formula.
  EXPECT_NEAR(QXSunPosition(QdcTime(946728000000), 0.0, 0.0).GetSiderealAngle() / DEGREE, 280.4606, 1e-3);
  EXPECT_NEAR(QXSunPosition(QdcTime(946728000000 + 86164091), 0.0, 0.0).GetSiderealAngle() / DEGREE, 280.4606, 1e-3);
  EXPECT_NEAR(QXSunPosition(QdcTime(946728000000), 0.0, 10.0 * DEGREE).GetSiderealAngle() / DEGREE, 290.4606, 1e-3);
}

TEST(QXSunPosition, TheSunsLightReddensAndFadesAsItSets) {
  QXColorValue3D const noon = Midsummer(11.36).GetSunColor();
  QXColorValue3D const evening = Midsummer(18.7).GetSunColor();
  ASSERT_GT(Midsummer(18.7).GetAltitude(), 0.0);
  EXPECT_NEAR(noon.r, 0.7, 0.02);
  EXPECT_GT(noon.b, 0.93 * noon.r);
  EXPECT_LT(evening.g, 0.8 * evening.r);
  EXPECT_LT(evening.b, 0.6 * evening.g);
  EXPECT_LT(evening.r, noon.r);
  QXColorValue3D const night = Midsummer(23.36).GetSunColor();
  EXPECT_EQ(night, QXColorValue3D(0.0, 0.0, 0.0, 1.0));
}

TEST(QXSunPosition, TheLightOfTheSkyFadesThroughTwilightAndNeverQuite) {
  QXColorValue3D const noon = Midsummer(11.36).GetAmbientColor();
  QXColorValue3D const dusk = Midsummer(20.2).GetAmbientColor();
  ASSERT_LT(Midsummer(20.2).GetAltitude(), 0.0);
  // In winter: at 52 degrees north the nights of June do not get quite dark.
  QXColorValue3D const night = QXSunPosition(QdcTime(1734822000000)).GetAmbientColor();
  EXPECT_EQ(noon, QXColorValue3D(0.34, 0.37, 0.42, 1.0));
  EXPECT_LT(dusk.g, noon.g);
  EXPECT_GT(dusk.g, night.g);
  EXPECT_EQ(night, QXColorValue3D(0.05, 0.06, 0.10, 1.0));
}

TEST(QXSunPosition, BothLightsTogetherShowWhiteAsAboutWhiteByDay) {
  QXSunPosition const sun = Midsummer(11.36);
  EXPECT_NEAR(sun.GetSunColor().r + sun.GetAmbientColor().r, 1.0, 0.05);
  EXPECT_NEAR(sun.GetSunColor().b + sun.GetAmbientColor().b, 1.08, 0.05);
}

TEST(QXSunPosition, ItLightsATarget) {
  auto const pLog = std::make_shared<QXCallLog>();
  auto const pExpected = std::make_shared<QXCallLog>();
  QXNullRenderTarget target(L"picture", 8, 8, 1, pLog);
  QXNullRenderTarget expected(L"picture", 8, 8, 1, pExpected);
  QXSunPosition const sun = Midsummer(17.0);
  sun.ApplyTo(target);
  EXPECT_EQ(target.GetSunPosition(), sun.GetPosition());
  expected.SetSunPosition(sun.GetPosition());
  expected.SetDiffuseLight(sun.GetSunColor());
  expected.SetAmbientLight(sun.GetAmbientColor());
  EXPECT_EQ(pLog->GetText(), pExpected->GetText());
}

}  // namespace
}  // namespace QXC
