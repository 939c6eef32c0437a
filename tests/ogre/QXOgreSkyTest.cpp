#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

#include <QxGraphics3D/environment/QXSkyGraphics3D.h>
#include <QxGraphics3D/environment/QXSunPosition.h>
#include <QxGraphics3D/view/QXFog.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

/// 2024-06-21 00:00 UTC, and a night half a year later.
constexpr QXInt64 MIDSUMMER = 1718928000000;
constexpr QXInt64 WINTER_NIGHT = 1734822000000;

QdcTime At(double dHours) {
  return QdcTime(MIDSUMMER + static_cast<QXInt64>(dHours * 3600000.0));
}

int Sum(QXPixel const& pixel) {
  return pixel.r + pixel.g + pixel.b;
}

/// How many pixels of two pictures differ by more than noise.
int CountDifferences(QXPicture const& a, QXPicture const& b) {
  int nCount = 0;
  for (std::size_t i = 0; i < a.GetBytes().size(); ++i) nCount += std::abs(a.GetBytes()[i] - b.GetBytes()[i]) > 2;
  return nCount;
}

}  // namespace

/// A camera at 2 above the ground that looks to the north, 90 degrees wide, and a sky that has not been initialised.
class QXOgreSky : public QXOgreScenery {
protected:
  void SetUp() override {
    QXOgreScenery::SetUp();
    m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
    QXMatrix4d matProjection;
    m_pGraphics3D->MakeProjectionMatrix(std::acos(0.0), 1.0, 0.1, 1000.0, matProjection);
    m_pCamera->SetProjectionMatrix(matProjection);
    m_pCamera->SetPosition(0.0, 0.0, 2.0);
    m_pCamera->SetDirection(0.0, 1.0, 0.0);
    m_pSky.reset(m_pGraphics3D->CreateSky(L"3D", SCENE_PLANE));
    ASSERT_NE(m_pSky, nullptr) << Text(m_pGraphics3D->GetErrorText());
  }
  void TearDown() override {
    m_pSky.reset();
    QXOgreScenery::TearDown();
  }
  /// The sky at a moment.
  QXPicture Show(QdcTime time) {
    m_pSky->Initialize();
    m_pSky->SetTime(time);
    return Frame();
  }
  void LookAt(QXVector3d const& vecDirection) { m_pCamera->SetDirection(vecDirection); }

  std::unique_ptr<QXSkyGraphics3D> m_pSky;
};

TEST_F(QXOgreSky, ByDayItIsBlueAboveAndPaleAtTheHorizon) {
  QXPicture const picture = Show(At(9.0));
  QXPixel const above = picture.At(32, 2);
  QXPixel const horizon = picture.At(32, 30);
  EXPECT_GT(above.b, above.g);
  EXPECT_GT(above.g, above.r);
  EXPECT_GT(above.b - above.r, 50);
  EXPECT_GT(Sum(horizon), Sum(above));
  EXPECT_LT(std::abs(horizon.b - horizon.r), 40);
  EXPECT_EQ(above.a, 255);
  // Haze over the ground.
  EXPECT_LT(Sum(picture.At(32, 63)), Sum(horizon));
}

TEST_F(QXOgreSky, TheSunStandsWhereItShould) {
  QXSunPosition const sun(At(16.0));
  LookAt(sun.GetDirection());
  QXPicture const picture = Show(At(16.0));
  EXPECT_EQ(picture.At(32, 32), (QXPixel{255, 255, 255, 255}));
  EXPECT_LT(Sum(picture.At(32, 16)), 740);
  // A quarter of an hour later it has moved by almost four degrees.
  QXPicture const later = Show(At(16.25));
  EXPECT_LT(Sum(later.At(32, 32)), 755);
}

TEST_F(QXOgreSky, AtSunsetItIsBrighterAndRedderTowardsTheSun) {
  QXVector3d const vecSun = QXSunPosition(At(19.0)).GetDirection();
  LookAt(QXVector3d(vecSun.x, vecSun.y, 0.0));
  QXPixel const towards = Show(At(19.0)).At(32, 30);
  LookAt(QXVector3d(-vecSun.x, -vecSun.y, 0.0));
  QXPixel const away = Show(At(19.0)).At(32, 30);
  EXPECT_GT(Sum(towards), Sum(away) + 100);
  EXPECT_GT(towards.r, towards.b + 50);
  EXPECT_GT(towards.r - towards.b, away.r - away.b);
}

TEST_F(QXOgreSky, BeforeSunriseThereIsARedBandUnderADarkBlueSky) {
  QXVector3d const vecSun = QXSunPosition(At(2.6)).GetDirection();
  ASSERT_LT(vecSun.z, 0.0);
  LookAt(QXVector3d(vecSun.x, vecSun.y, 0.0));
  QXPicture const picture = Show(At(2.6));
  EXPECT_GT(picture.At(32, 30).r, 2 * picture.At(32, 30).b);
  EXPECT_GT(picture.At(32, 2).b, picture.At(32, 2).r);
  EXPECT_LT(Sum(picture.At(32, 2)), 350);
}

TEST_F(QXOgreSky, AtNightItIsDarkAndHasStars) {
  LookAt(QXVector3d(0.0, 0.3, 1.0));
  QXPicture const picture = Show(QdcTime(WINTER_NIGHT));
  int nStars = 0;
  std::int64_t nSum = 0;
  for (unsigned int y = 0; y < SIZE; ++y)
    for (unsigned int x = 0; x < SIZE; ++x) {
      nStars += Sum(picture.At(x, y)) > 150;
      nSum += Sum(picture.At(x, y));
    }
  EXPECT_LT(nSum / (SIZE * SIZE), 90);
  EXPECT_GT(nStars, 3);
  EXPECT_LT(nStars, 400);
  // They turn.
  EXPECT_GT(CountDifferences(picture, Show(QdcTime(WINTER_NIGHT + 3600000))), 30);
}

TEST_F(QXOgreSky, ANewOneShowsAForenoonAndNothingBeforeInitialize) {
  EXPECT_EQ(Frame().At(32, 2), BACKGROUND_PIXEL);
  m_pSky->Initialize();
  QXPicture const picture = Frame();
  m_pSky->Initialize();
  EXPECT_EQ(picture.GetBytes(), Show(At(9.0)).GetBytes());
}

TEST_F(QXOgreSky, ItIsDrawnWhileItIsVisible) {
  QXPicture const shown = Show(At(9.0));
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  m_pSky->SetVisible(0);
  EXPECT_EQ(Frame().At(32, 2), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  m_pSky->SetVisible(1);
  EXPECT_EQ(Frame().GetBytes(), shown.GetBytes());
}

TEST_F(QXOgreSky, ItIsBehindEverythingAndNoPartOfTheWorld) {
  Show(At(9.0));
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
  // At the far end of the view.
  auto const pMesh = MakeMesh({{-900.0F, 900.0F, -900.0F}, {900.0F, 900.0F, -900.0F}, {900.0F, 900.0F, 900.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, RED);
  Draw(*pMesh);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
  EXPECT_GT(picture.At(8, 8).b, picture.At(8, 8).r);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U);
}

TEST_F(QXOgreSky, FilledEvenWhereTheSceneIsDrawnAsEdges) {
  QXPicture const picture = Show(At(9.0));
  m_pTarget->SetRenderState(RENDER_STATE_LINE);
  EXPECT_EQ(CountDifferences(picture, Frame()), 0);
}

TEST_F(QXOgreSky, ItHidesWhatTheViewportKeptFromTheFrameBefore) {
  Show(At(9.0));
  QXPicture const picture = Frame();
  m_pViewport->m_bClearEveryFrame = 0;
  EXPECT_EQ(CountDifferences(picture, Frame()), 0);
}

TEST_F(QXOgreSky, CloudsComeWithTheirTypeAndGoWithNone) {
  LookAt(QXVector3d(0.0, 1.0, 0.6));
  QXPicture const clear = Show(At(9.0));
  for (QXCloudTypes const eType : {CLOUD_CUMULUS, CLOUD_STRATUS, CLOUD_CIRRUS, CLOUD_CUMULONIMBUS}) {
    m_pSky->SetCloudType(eType);
    EXPECT_GT(CountDifferences(clear, Frame()), 500) << eType;
  }
  m_pSky->SetCloudType(CLOUD_NONE);
  EXPECT_EQ(CountDifferences(clear, Frame()), 0);
  m_pSky->SetCloudType(static_cast<QXCloudTypes>(77));
  EXPECT_EQ(CountDifferences(clear, Frame()), 0);
  EXPECT_EQ(static_cast<int>(m_pSky->GetCloudType()), 77);
}

TEST_F(QXOgreSky, AClosedLayerIsGrayAndStormCloudsAreDarker) {
  LookAt(QXVector3d(0.0, 1.0, 1.0));
  m_pSky->SetCondition(CONDITION_OVERCAST);
  QXPixel const overcast = Show(At(9.0)).At(32, 32);
  EXPECT_LT(std::abs(overcast.r - overcast.b), 25);
  m_pSky->SetCondition(CONDITION_STORM);
  EXPECT_LT(Sum(Frame().At(32, 32)), Sum(overcast));
}

TEST_F(QXOgreSky, TheWindMovesCloudsTheWayItBlows) {
  LookAt(QXVector3d(0.0, 0.001, 1.0));
  m_pSky->SetCondition(CONDITION_FAIR);
  m_pSky->SetWindSpeed(100.0);
  QXPicture const before = Show(At(9.0));
  // From the west, which is at the left: 400 to the right at a height of 1998, as the eye is at 2. The middle of the
  // picture shows 2 * 1998 over 64 pixels.
  m_pSky->SetWindDirection(1.5 * std::acos(-1.0));
  QXPicture const after = Show(QdcTime(At(9.0).GetMillisecondsUTC() + 4000));
  int nError = 0;
  int nStill = 0;
  for (unsigned int y = 24; y < 40; ++y)
    for (unsigned int x = 24; x < 40; ++x) {
      // Six pixels and a little to one side; which side depends on what is up in the picture.
      int const nMoved = std::min(
          std::abs(after.At(x, y).r - before.At(x - 6, y).r), std::abs(after.At(x, y).r - before.At(x + 6, y).r));
      nError += nMoved;
      nStill += std::abs(after.At(x, y).r - before.At(x, y).r);
    }
  EXPECT_LT(2 * nError, nStill);
}

TEST_F(QXOgreSky, CloudsStandStillWithoutWindOrOutsideOfIt) {
  LookAt(QXVector3d(0.0, 1.0, 1.0));
  m_pSky->SetCondition(CONDITION_FAIR);
  QXPicture const picture = Show(At(9.0));
  // So short that the light does not change.
  QdcTime const later(At(9.0).GetMillisecondsUTC() + 10000);
  m_pSky->SetWindSpeed(0.0);
  EXPECT_LT(CountDifferences(picture, Show(later)), 30);
  m_pSky->SetTime(At(9.0));
  m_pSky->SetWindSpeed(200.0);
  m_pSky->SetWindMinAltitude(3000.0);
  EXPECT_LT(CountDifferences(picture, Show(later)), 30);
  m_pSky->SetTime(At(9.0));
  m_pSky->SetWindMinAltitude(0.0);
  m_pSky->SetWindMaxAltitude(1000.0);
  EXPECT_LT(CountDifferences(picture, Show(later)), 30);
  m_pSky->SetTime(At(9.0));
  m_pSky->SetWindMaxAltitude(3000.0);
  EXPECT_GT(CountDifferences(picture, Show(later)), 300);
}

TEST_F(QXOgreSky, AMomentHasTheSameCloudsWheneverItIsShownFirst) {
  LookAt(QXVector3d(0.0, 1.0, 1.0));
  m_pSky->SetCondition(CONDITION_FAIR);
  QXPicture const picture = Show(At(9.0));
  std::unique_ptr<QXSkyGraphics3D> const pOther(m_pGraphics3D->CreateSky(L"3D", SCENE_PLANE));
  m_pSky->SetVisible(0);
  pOther->Initialize();
  pOther->SetCondition(CONDITION_FAIR);
  pOther->SetTime(At(8.0));
  pOther->SetTime(At(9.0));
  EXPECT_LT(CountDifferences(picture, Frame()), 10);
}

TEST_F(QXOgreSky, CloudsAreSeenAsFarAsTheyAreSaidToBe) {
  QXPicture const clear = Show(At(9.0));
  m_pSky->SetCloudType(CLOUD_CUMULUS);
  m_pSky->SetCloudVisibleDistance(3000.0);
  // The horizon's are farther away; so is everything in a view that ends at 45 degrees.
  EXPECT_LT(CountDifferences(clear, Frame()), 40);
  m_pSky->SetCloudVisibleDistance(100000.0);
  EXPECT_GT(CountDifferences(clear, Frame()), 300);
  m_pSky->SetCloudVisibleDistance(0.0);
  EXPECT_EQ(CountDifferences(clear, Frame()), 0);
}

TEST_F(QXOgreSky, FromAboveTheCloudsLieBelow) {
  m_pSky->SetCloudType(CLOUD_CUMULUS);
  m_pCamera->SetPosition(0.0, 0.0, 5000.0);
  LookAt(QXVector3d(0.0, 1.0, -1.0));
  QXPicture const picture = Show(At(9.0));
  m_pSky->SetCloudType(CLOUD_NONE);
  EXPECT_GT(CountDifferences(picture, Frame()), 300);
}

TEST_F(QXOgreSky, ConditionsSetWhatBelongsToThem) {
  m_pSky->SetCondition(CONDITION_STORM);
  EXPECT_EQ(m_pSky->GetCondition(), CONDITION_STORM);
  EXPECT_EQ(m_pSky->GetCloudType(), CLOUD_CUMULONIMBUS);
  EXPECT_EQ(m_pSky->GetPrecipitationType(), PRECIPITATION_RAIN);
  EXPECT_EQ(m_pSky->GetCloudAltitude(), 1000.0);
  EXPECT_EQ(m_pSky->GetCloudVisibleDistance(), 20000.0);
  EXPECT_EQ(m_pSky->GetWindSpeed(), 20.0);
  m_pSky->SetCondition(CONDITION_OVERCAST);
  EXPECT_EQ(m_pSky->GetCloudType(), CLOUD_STRATUS);
  EXPECT_EQ(m_pSky->GetPrecipitationType(), PRECIPITATION_NONE);
  EXPECT_EQ(m_pSky->GetCloudAltitude(), 1500.0);
  m_pSky->SetCondition(CONDITION_FAIR);
  EXPECT_EQ(m_pSky->GetCloudType(), CLOUD_CUMULUS);
  m_pSky->SetCondition(static_cast<QXConditionPresets>(99));
  EXPECT_EQ(static_cast<int>(m_pSky->GetCondition()), 99);
  EXPECT_EQ(m_pSky->GetCloudType(), CLOUD_CUMULUS);
  m_pSky->SetCondition(CONDITION_CLEAR);
  EXPECT_EQ(m_pSky->GetCloudType(), CLOUD_NONE);
}

TEST_F(QXOgreSky, GettersGiveWhatWasSet) {
  EXPECT_EQ(m_pSky->GetCondition(), CONDITION_CLEAR);
  EXPECT_EQ(m_pSky->GetCloudType(), CLOUD_NONE);
  EXPECT_EQ(m_pSky->GetPrecipitationType(), PRECIPITATION_NONE);
  EXPECT_EQ(m_pSky->GetCloudVisibleDistance(), 40000.0);
  EXPECT_EQ(m_pSky->GetCloudAltitude(), 2000.0);
  EXPECT_EQ(m_pSky->GetWindMinAltitude(), 0.0);
  EXPECT_EQ(m_pSky->GetWindMaxAltitude(), 20000.0);
  EXPECT_NEAR(m_pSky->GetWindDirection(), 1.5 * std::acos(-1.0), 1e-12);
  EXPECT_EQ(m_pSky->GetWindSpeed(), 5.0);
  m_pSky->SetPrecipitationType(PRECIPITATION_SNOW, 4.0);
  m_pSky->SetCloudVisibleDistance(1.0);
  m_pSky->SetCloudAltitude(2.0);
  m_pSky->SetWindMinAltitude(3.0);
  m_pSky->SetWindMaxAltitude(4.0);
  m_pSky->SetWindDirection(5.0);
  m_pSky->SetWindSpeed(6.0);
  EXPECT_EQ(m_pSky->GetPrecipitationType(), PRECIPITATION_SNOW);
  EXPECT_EQ(m_pSky->GetCloudVisibleDistance(), 1.0);
  EXPECT_EQ(m_pSky->GetCloudAltitude(), 2.0);
  EXPECT_EQ(m_pSky->GetWindMinAltitude(), 3.0);
  EXPECT_EQ(m_pSky->GetWindMaxAltitude(), 4.0);
  EXPECT_EQ(m_pSky->GetWindDirection(), 5.0);
  EXPECT_EQ(m_pSky->GetWindSpeed(), 6.0);
}

TEST_F(QXOgreSky, NumbersThatAreNoneDrawASkyAllTheSame) {
  double const dNaN = std::numeric_limits<double>::quiet_NaN();
  m_pSky->SetCloudType(CLOUD_CUMULUS);
  m_pSky->SetWindSpeed(dNaN);
  m_pSky->SetWindDirection(std::numeric_limits<double>::infinity());
  m_pSky->SetCloudAltitude(dNaN);
  m_pSky->SetCloudVisibleDistance(dNaN);
  Show(QdcTime(std::numeric_limits<QXInt64>::max()));
  Show(QdcTime(std::numeric_limits<QXInt64>::min()));
  m_pSky->SetWindSpeed(5.0);
  m_pSky->SetWindDirection(0.0);
  m_pSky->SetCloudType(CLOUD_NONE);
  QXPixel const above = Show(At(9.0)).At(32, 2);
  EXPECT_GT(above.b - above.r, 50);
}

TEST_F(QXOgreSky, CloudsTooHighToBeSeenAreNotHoweverHigh) {
  QXPicture const clear = Show(At(9.0));
  m_pSky->SetCloudType(CLOUD_STRATUS);
  m_pSky->SetCloudVisibleDistance(100.0);
  QXPicture const unseen = Frame();
  for (double const dAltitude : {1.0e5, 1.0e20, 1.0e300, -1.0e300}) {
    for (double const dDistance : {100.0, 1.0e-300}) {
      m_pSky->SetCloudAltitude(dAltitude);
      m_pSky->SetCloudVisibleDistance(dDistance);
      EXPECT_EQ(CountDifferences(unseen, Frame()), 0) << dAltitude << ", " << dDistance;
    }
  }
  // And what is seen from everywhere is a picture, too.
  m_pSky->SetCloudAltitude(1.0e300);
  m_pSky->SetCloudVisibleDistance(1.0e300);
  QXPicture const endless = Frame();
  for (unsigned int y = 0; y < SIZE / 2; ++y)
    for (unsigned int x = 0; x < SIZE; ++x) EXPECT_GT(Sum(endless.At(x, y)), 200) << x << ", " << y;
  m_pSky->SetCloudType(CLOUD_NONE);
  EXPECT_EQ(CountDifferences(clear, Frame()), 0);
}

TEST_F(QXOgreSky, EachViewportAndTargetShowsItsOwnPart) {
  Show(At(9.0));
  QXRenderTarget* const pOther = MakeTarget(L"other", 32, 64);
  QXCamera* const pUp = MakeCamera(L"up");
  pUp->SetProjectionType(PROJECTION_PERSPECTIVE);
  QXMatrix4d matProjection;
  m_pGraphics3D->MakeProjectionMatrix(1.0, 1.0, 0.1, 1000.0, matProjection);
  pUp->SetProjectionMatrix(matProjection);
  pUp->SetDirection(0.0, 0.01, 1.0);
  AddViewport(*pOther, *m_pCamera, 0, 0.0, 0.0, 1.0, 0.5);
  AddViewport(*pOther, *pUp, 1, 0.0, 0.5, 1.0, 0.5);
  QXPicture const picture = Frame(pOther);
  // The whole picture of the first camera, in a quarter of its size, lies below; above it the zenith.
  EXPECT_NEAR(picture.At(16, 33).r, QXPicture(*m_pTarget).At(32, 2).r, 6);
  EXPECT_NEAR(picture.At(16, 47).r, QXPicture(*m_pTarget).At(32, 30).r, 12);
  EXPECT_LT(Sum(picture.At(16, 16)), Sum(picture.At(16, 47)));
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 3U);
}

TEST_F(QXOgreSky, AParallelViewHasOneColour) {
  QXCamera* const pMap = MakeCamera(L"map");
  m_pViewport->m_pCamera = pMap;
  QXPicture const picture = Show(At(9.0));
  for (unsigned int i = 0; i < SIZE; ++i) EXPECT_EQ(picture.At(i, 63 - i), picture.At(0, 0));
  EXPECT_NE(picture.At(0, 0), BACKGROUND_PIXEL);
  // However the map is turned.
  pMap->Roll(1.0);
  EXPECT_EQ(Frame().At(3, 3), picture.At(0, 0));
  m_pSky->SetCondition(CONDITION_FAIR);
  EXPECT_EQ(Frame().At(3, 3), picture.At(0, 0));
}

TEST_F(QXOgreSky, ItIsTheSameFarFromTheOrigin) {
  m_pSky->SetCondition(CONDITION_FAIR);
  QXPicture const clear = Show(At(9.0));
  // The pattern of the clouds repeats itself after 11 kilometres.
  QXVector3d const vecFar(11000.0 * 545.0, -11000.0 * 545.0, 2.0);
  for (QXVector3d const& vecOrigin : {QXVector3d::ZERO, vecFar}) {
    m_pGraphics3D->SetRelativeOrigin(vecOrigin);
    m_pCamera->SetPosition(vecFar);
    EXPECT_LT(CountDifferences(clear, Frame()), 20);
  }
}

TEST_F(QXOgreSky, TheHorizonIsLostInFogAndTheZenithLess) {
  QXPicture const clear = Show(At(9.0));
  QXFog fog;
  fog.SetFogColor(GREEN);
  fog.SetFogMode(FOG_EXPONENTIAL);
  fog.SetFogDensity(0.001);
  m_pGraphics3D->SetFog(L"3D", fog);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 40), GREEN_PIXEL);
  EXPECT_EQ(picture.At(32, 32), GREEN_PIXEL);
  // Through 300 of fog, seen at a slope of 59 to 64.
  double const dLost = 1.0 - std::exp(-0.3 / std::sin(std::atan(59.0 / 64.0)));
  EXPECT_NEAR(picture.At(32, 2).b, clear.At(32, 2).b * (1.0 - dLost), 3);
  EXPECT_NEAR(picture.At(32, 2).g, clear.At(32, 2).g * (1.0 - dLost) + 255 * dLost, 3);
  fog.SetFogMode(FOG_LINEAR);
  fog.SetFogEnd(300.0);
  m_pGraphics3D->SetFog(L"3D", fog);
  EXPECT_EQ(Frame().At(32, 2), GREEN_PIXEL);
  fog.SetFogStart(1000.0);
  fog.SetFogEnd(2000.0);
  m_pGraphics3D->SetFog(L"3D", fog);
  EXPECT_EQ(Frame().At(32, 2), clear.At(32, 2));
  EXPECT_EQ(Frame().At(32, 31), GREEN_PIXEL);
  m_pGraphics3D->SetFog(L"3D", QXFog());
  EXPECT_EQ(CountDifferences(clear, Frame()), 0);
}

TEST_F(QXOgreSky, UnknownScenesAndGlobesHaveNone) {
  EXPECT_EQ(m_pGraphics3D->CreateSky(L"nowhere", SCENE_PLANE), nullptr);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("nowhere"), std::string::npos);
  EXPECT_EQ(m_pGraphics3D->CreateSky(L"3D", SCENE_GLOBE), nullptr);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("globe"), std::string::npos);
}

TEST_F(QXOgreSky, ItMayGoBeforeItsSceneAndAfterIt) {
  Show(At(9.0));
  m_pSky.reset();
  EXPECT_EQ(Frame().At(32, 2), BACKGROUND_PIXEL);
  m_pGraphics3D->CreateScene(L"other");
  m_pSky.reset(m_pGraphics3D->CreateSky(L"other", SCENE_PLANE));
  m_pSky->Initialize();
  m_pGraphics3D->DestroyScene(L"other");
  m_pSky->SetTime(At(12.0));
  m_pSky->SetVisible(1);
  m_pSky->Initialize();
  EXPECT_EQ(Frame().At(32, 2), BACKGROUND_PIXEL);
}

TEST_F(QXOgreSky, ItMayOutliveItsRenderer) {
  Show(At(9.0));
  m_pTarget = nullptr;
  m_pGraphics3D.reset();
  m_pSky->SetTime(At(12.0));
  m_pSky->SetCondition(CONDITION_STORM);
  m_pSky->Initialize();
  EXPECT_EQ(m_pSky->GetCondition(), CONDITION_STORM);
}

}  // namespace QXC
