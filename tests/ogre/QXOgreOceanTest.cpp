#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <numbers>
#include <random>

#include <QxGraphics3D/environment/QXOceanParameters.h>
#include <QxGraphics3D/environment/QXSkyGraphics3D.h>
#include <QxGraphics3D/environment/QXSunPosition.h>
#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>
#include <QxGraphics3D/view/QXFog.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

constexpr double PI = std::numbers::pi;
constexpr double GRAVITY = 9.81;
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

int Sum(QXPixel const& pixel) {
  return pixel.r + pixel.g + pixel.b;
}

/// How many bytes of two pictures differ by more than noise.
int CountDifferences(QXPicture const& a, QXPicture const& b) {
  int nCount = 0;
  for (std::size_t i = 0; i < a.GetBytes().size(); ++i) nCount += std::abs(a.GetBytes()[i] - b.GetBytes()[i]) > 2;
  return nCount;
}

}  // namespace

/// A camera at 8 above the water that looks to the north and a little down, and an ocean without wind. Light comes from
/// everywhere, so that the water has its own colour where it mirrors nothing.
class QXOgreOcean : public QXOgreScenery {
protected:
  void SetUp() override {
    QXOgreScenery::SetUp();
    m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
    SetAngle(PI / 2.0);
    m_pCamera->SetPosition(0.0, 0.0, 8.0);
    m_pCamera->SetDirection(0.0, 1.0, -0.4);
    m_pOcean.reset(m_pGraphics3D->CreateOcean(L"3D", SCENE_PLANE));
    ASSERT_NE(m_pOcean, nullptr) << Text(m_pGraphics3D->GetErrorText());
    ASSERT_EQ(m_pOcean->Initialize(), 1) << Text(m_pGraphics3D->GetErrorText());
    m_pOcean->SetWaterColor(QXColorValue3D(0.0, 0.2, 0.4, 1.0));
    m_pOcean->SetLight(QXVector3d(0.0, 0.0, -1.0), QXColorValue3D(), QXColorValue3D::White);
  }
  void TearDown() override {
    m_pOcean.reset();
    QXOgreScenery::TearDown();
  }
  void SetAngle(double dAngle) {
    QXMatrix4d matProjection;
    m_pGraphics3D->MakeProjectionMatrix(dAngle, 1.0, 0.1, 1000.0, matProjection);
    m_pCamera->SetProjectionMatrix(matProjection);
  }
  /// Turns the camera to an azimuth clockwise from north and an altitude, with the horizon level.
  void SetUpright(double dAzimuth, double dAltitude) {
    QXQuaternion4d yaw;
    yaw.FromAngleAxis(-dAzimuth, QXVector3d::UNIT_Z);
    QXQuaternion4d pitch;
    pitch.FromAngleAxis(PI / 2.0 + dAltitude, QXVector3d::UNIT_X);
    m_pCamera->SetOrientation(yaw * pitch);
  }
  double HeightAt(double x, double y) const {
    double dHeight = NaN;
    QXVector3d vecNormal;
    EXPECT_EQ(m_pOcean->GetHeight(QXVector3d(x, y, 0.0), dHeight, vecNormal), 1);
    EXPECT_NEAR(vecNormal.Length(), 1.0, 1e-9);
    EXPECT_GT(vecNormal.z, 0.0);
    return dHeight;
  }
  /// Four times the standard deviation over many places and moments.
  double SignificantHeight() {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-5000.0, 5000.0);
    double dSum = 0.0;
    double dSquares = 0.0;
    constexpr int COUNT = 4000;
    for (int i = 0; i < COUNT; ++i) {
      double const dX = place(random);
      double const d = HeightAt(dX, place(random));
      m_pOcean->Update(1.7);
      dSum += d;
      dSquares += d * d;
    }
    return 4.0 * std::sqrt(dSquares / COUNT - dSum * dSum / COUNT / COUNT);
  }
  /// The height at which a red wall 20 to the north stands in the water, by the picture in the middle column of a
  /// camera that looks at it.
  double Waterline() {
    QXPicture const picture = Frame(m_pWallTarget);
    unsigned int nRed = 0;
    for (unsigned int y = 0; y < WALL_SIZE; ++y) nRed += picture.At(WALL_SIZE / 2, y).r > 150;
    // The wall reaches over the upper edge of the picture.
    double const dUp = 1.0 - 2.0 * nRed / WALL_SIZE;
    return 8.0 + 20.0 * std::tan(std::atan(-0.4) + std::atan(dUp * std::tan(0.15)));
  }
  void MakeWall() {
    auto const pMesh =
        MakeMesh({{-30.0F, 20.0F, -20.0F}, {30.0F, 20.0F, -20.0F}, {30.0F, 20.0F, 30.0F}, {-30.0F, 20.0F, 30.0F}});
    AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
    Draw(*pMesh);
    m_pWallTarget = MakeTarget(L"wall", WALL_SIZE, WALL_SIZE);
    AddViewport(*m_pWallTarget, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
    SetAngle(0.3);
  }

  static constexpr unsigned int WALL_SIZE = 256;
  std::unique_ptr<QXTritonOceanGraphics3D> m_pOcean;
  QXRenderTarget* m_pWallTarget = nullptr;
};

TEST_F(QXOgreOcean, ASwellWithoutChoppinessIsACosine) {
  m_pOcean->SetChoppiness(0.0);
  m_pOcean->SetSeaLevel(3.0);
  // From the north-east, so it runs to the south-west.
  m_pOcean->AddSwell(PI / 4.0, 80.0, 4.0, 0.3);
  double const dK = 2.0 * PI / 80.0;
  double const dKX = -dK * std::sqrt(0.5);
  for (double const dTime : {0.0, 2.5}) {
    m_pOcean->Update(dTime);
    for (double const d : {0.0, 7.0, -33.0, 6.0e6}) {
      double const dAngle = dKX * d + dKX * 2.0 * d - std::sqrt(GRAVITY * dK) * dTime + 0.3;
      double dHeight = 0.0;
      QXVector3d vecNormal;
      ASSERT_EQ(m_pOcean->GetHeight(QXVector3d(d, 2.0 * d, 99.0), dHeight, vecNormal), 1);
      EXPECT_NEAR(dHeight, 3.0 + 2.0 * std::cos(dAngle), 1e-6) << d;
      QXVector3d vecExpected(2.0 * dKX * std::sin(dAngle), 2.0 * dKX * std::sin(dAngle), 1.0);
      vecExpected.Normalize();
      EXPECT_NEAR(vecNormal.DotProduct(vecExpected), 1.0, 1e-9) << d;
    }
  }
}

TEST_F(QXOgreOcean, ChoppinessMovesWaterTowardsTheCrests) {
  m_pOcean->AddSwell(0.0, 60.0, 6.0, 0.0);
  double const dK = 2.0 * PI / 60.0;
  // It runs to the south: k = -K.
  for (double const dRest : {0.0, 5.0, 15.0, 25.0, 30.0, 41.0}) {
    double const dAngle = -dK * dRest;
    EXPECT_NEAR(HeightAt(3.0, dRest + 3.0 * std::sin(dAngle)), 3.0 * std::cos(dAngle), 2e-4) << dRest;
  }
  // Crests are narrower than troughs.
  EXPECT_LT(HeightAt(0.0, 15.0), -0.5);
}

TEST_F(QXOgreOcean, TheNormalIsThatOfTheSurfaceAround) {
  m_pOcean->SetSeaState(5.0);
  m_pOcean->Update(100.0);
  for (double const d : {-20.0, 3.0, 57.0}) {
    double dHeight = 0.0;
    QXVector3d vecNormal;
    m_pOcean->GetHeight(QXVector3d(d, -d, 0.0), dHeight, vecNormal);
    double const dSlopeX = (HeightAt(d + 0.05, -d) - HeightAt(d - 0.05, -d)) / 0.1;
    double const dSlopeY = (HeightAt(d, -d + 0.05) - HeightAt(d, -d - 0.05)) / 0.1;
    EXPECT_NEAR(-vecNormal.x / vecNormal.z, dSlopeX, 0.01);
    EXPECT_NEAR(-vecNormal.y / vecNormal.z, dSlopeY, 0.01);
  }
}

TEST_F(QXOgreOcean, TheWindMakesWavesOfItsSignificantHeight) {
  EXPECT_EQ(HeightAt(1.0, 2.0), 0.0);
  EXPECT_EQ(m_pOcean->GetWindSpeed(), 0.0);
  m_pOcean->SetChoppiness(0.0);
  m_pOcean->SetWindSpeed(10.0);
  double const dExpected = 2.0 * std::sqrt(0.0081 / 0.74) * 100.0 / GRAVITY;
  EXPECT_NEAR(SignificantHeight(), dExpected, 0.07 * dExpected);
  m_pOcean->SetWindSpeed(0.0);
  EXPECT_EQ(HeightAt(1.0, 2.0), 0.0);
}

TEST_F(QXOgreOcean, TheSeaStateHasTheProbableHeightsOfBeaufortsNumbers) {
  EXPECT_LT(m_pOcean->GetSeaState(), 0.0);
  m_pOcean->SetChoppiness(0.0);
  m_pOcean->SetWindSpeed(30.0);
  struct {
    double m_dBeaufort, m_dHeight;
  } const arrStates[] = {{2.0, 0.2}, {6.0, 3.0}, {6.5, 3.5}, {12.0, 14.0}, {20.0, 14.0}};
  for (auto const& [dBeaufort, dHeight] : arrStates) {
    m_pOcean->SetSeaState(dBeaufort);
    EXPECT_EQ(m_pOcean->GetSeaState(), dBeaufort);
    EXPECT_NEAR(SignificantHeight(), dHeight, 0.07 * dHeight) << dBeaufort;
  }
  m_pOcean->SetSeaState(0.0);
  EXPECT_EQ(HeightAt(1.0, 2.0), 0.0);
  m_pOcean->SetSeaState(-1.0);
  EXPECT_GT(SignificantHeight(), 15.0);
}

TEST_F(QXOgreOcean, WavesRunAwayFromTheWind) {
  m_pOcean->SetWindSpeed(8.0);
  m_pOcean->SetWindDirection(PI / 2.0);
  // From the east: what stood at x stands farther west a little later. Compared over many places.
  double dWest = 0.0;
  double dEast = 0.0;
  for (int i = 0; i < 200; ++i) {
    double const x = 13.7 * i;
    double const dBefore = HeightAt(x, 5.0 * i);
    m_pOcean->Update(1.0);
    dWest += std::abs(HeightAt(x - 4.0, 5.0 * i) - dBefore);
    dEast += std::abs(HeightAt(x + 4.0, 5.0 * i) - dBefore);
    m_pOcean->Update(-1.0);
  }
  EXPECT_LT(dWest, dEast);
}

TEST_F(QXOgreOcean, HoweverChoppyTheSurfaceDoesNotFold) {
  m_pOcean->SetSeaState(8.0);
  m_pOcean->SetChoppiness(100.0);
  EXPECT_EQ(m_pOcean->GetChoppiness(), 100.0);
  double dBefore = HeightAt(0.0, 0.0);
  for (int i = 1; i < 400; ++i) {
    double const dHeight = HeightAt(0.0, 0.25 * i);
    EXPECT_LT(std::abs(dHeight - dBefore), 3.0);
    EXPECT_LT(std::abs(dHeight), 12.0);
    dBefore = dHeight;
  }
}

TEST_F(QXOgreOcean, WhatIsDrawnStandsAsHighAsGetHeightSays) {
  MakeWall();
  m_pOcean->SetSeaState(4.0);
  for (int i = 0; i < 6; ++i) {
    EXPECT_NEAR(Waterline(), HeightAt(0.0, 20.0), 0.12) << i;
    m_pOcean->Update(1.3);
  }
  m_pOcean->SetSeaState(0.0);
  m_pOcean->SetSeaLevel(0.7);
  m_pOcean->AddSwell(2.5, 70.0, 2.0, 1.0);
  for (int i = 0; i < 4; ++i) {
    EXPECT_NEAR(Waterline(), HeightAt(0.0, 20.0), 0.06) << i;
    m_pOcean->Update(2.0);
  }
}

TEST_F(QXOgreOcean, StillWaterLiesAtItsLevelWithExaggeratedHeights) {
  MakeWall();
  EXPECT_NEAR(Waterline(), 0.0, 0.05);
  m_pOcean->SetSeaLevel(1.0);
  EXPECT_EQ(m_pOcean->GetSeaLevel(), 1.0);
  EXPECT_NEAR(Waterline(), 1.0, 0.05);
  m_pWallTarget->SetVerticalExaggeration(1.5);
  EXPECT_NEAR(Waterline(), 1.5, 0.05);
}

TEST_F(QXOgreOcean, ItReachesToTheHorizonAndNotAboveIt) {
  // The view is as wide as it is far, so slopes are parts of half a picture.
  QXPicture const picture = Frame();
  double const dHorizon = 32.0 - 32.0 * 0.4;
  for (unsigned int x = 0; x < SIZE; ++x) {
    EXPECT_EQ(picture.At(x, static_cast<unsigned int>(dHorizon) - 1), BACKGROUND_PIXEL) << x;
    EXPECT_NE(picture.At(x, static_cast<unsigned int>(dHorizon) + 2), BACKGROUND_PIXEL) << x;
    EXPECT_NE(picture.At(x, 63), BACKGROUND_PIXEL) << x;
  }
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
}

TEST_F(QXOgreOcean, ATurnedCameraSeesItAllAround) {
  for (double const dAzimuth : {0.2, 1.5, 2.8, 4.1, 5.4}) {
    SetUpright(dAzimuth, -0.46);
    EXPECT_NE(Frame().At(32, 32), BACKGROUND_PIXEL) << dAzimuth;
    EXPECT_NE(QXPicture(*m_pTarget).At(0, 60), BACKGROUND_PIXEL) << dAzimuth;
    EXPECT_NE(QXPicture(*m_pTarget).At(63, 60), BACKGROUND_PIXEL) << dAzimuth;
    // So steep that there is nothing but water.
    SetUpright(dAzimuth, -1.25);
    m_pCamera->Roll(dAzimuth);
    QXPicture const picture = Frame();
    for (unsigned int n = 4; n < 60; ++n) EXPECT_NE(picture.At(n, 63 - n), BACKGROUND_PIXEL) << dAzimuth << " " << n;
  }
}

TEST_F(QXOgreOcean, ItIsDrawnWhileItIsVisible) {
  EXPECT_EQ(m_pOcean->IsVisible(), 1);
  m_pOcean->SetVisible(0);
  EXPECT_EQ(m_pOcean->IsVisible(), 0);
  EXPECT_EQ(Frame().At(32, 60), BACKGROUND_PIXEL);
  m_pOcean->SetVisible(1);
  EXPECT_NE(Frame().At(32, 60), BACKGROUND_PIXEL);
}

TEST_F(QXOgreOcean, WavesMoveWithItsClockAlone) {
  m_pOcean->SetWindSpeed(8.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(Frame().GetBytes(), picture.GetBytes());
  m_pOcean->Update(0.5);
  EXPECT_GT(CountDifferences(picture, Frame()), 500);
  m_pOcean->Update(-0.5);
  EXPECT_EQ(CountDifferences(picture, Frame()), 0);
  // Still water looks the same all the time.
  m_pOcean->SetWindSpeed(0.0);
  QXPicture const still = Frame();
  m_pOcean->Update(10.0);
  EXPECT_EQ(CountDifferences(still, Frame()), 0);
}

TEST_F(QXOgreOcean, FromAboveItHasItsColourAndHidesAsMuchAsThatsAlpha) {
  m_pCamera->SetDirection(0.0, 0.001, -1.0);
  DrawSquare(-20.0F, -20.0F, 20.0F, 20.0F, -3.0F, GREEN);
  QXPixel pixel = Frame().At(32, 32);
  // Fresnel's 2 hundredths of the sky come in addition.
  EXPECT_NEAR(pixel.r, 0, 6);
  EXPECT_NEAR(pixel.g, 51, 6);
  EXPECT_NEAR(pixel.b, 102, 6);
  EXPECT_EQ(m_pOcean->GetWaterColor(), QXColorValue3D(0.0, 0.2, 0.4, 1.0));
  m_pOcean->SetWaterColor(QXColorValue3D(0.0, 0.2, 0.4, 0.5));
  pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.g, 153, 8);
  EXPECT_NEAR(pixel.b, 51, 8);
  // What is blended comes after it: not hidden behind the water's depth.
  DrawSquare(-20.0F, -20.0F, 20.0F, 20.0F, 1.0F, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  EXPECT_NEAR(Frame().At(32, 32).r, 128, 8);
}

TEST_F(QXOgreOcean, ItMirrorsTheSkyTheMoreTheFlatterItIsLookedAt) {
  m_pOcean->SetWaterColor(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  QXPicture const picture = Frame();
  EXPECT_GT(Sum(picture.At(32, 24)), Sum(picture.At(32, 60)) + 60);
}

TEST_F(QXOgreOcean, InTheEveningItIsRedderTowardsTheSun) {
  QdcTime const evening(1718928000000 + 68400000);  // 2024-06-21 19:00 UTC
  QXVector3d const vecSun = QXSunPosition(evening).GetDirection();
  m_pOcean->SetTime(evening);
  m_pCamera->SetDirection(vecSun.x, vecSun.y, -0.4);
  QXPixel const towards = Frame().At(32, 24);
  m_pCamera->SetDirection(-vecSun.x, -vecSun.y, -0.4);
  QXPixel const away = Frame().At(32, 24);
  EXPECT_GT(towards.r - towards.b, away.r - away.b + 20);
}

TEST_F(QXOgreOcean, AnOvercastSkyOverItMakesItGrayer) {
  m_pOcean->SetWaterColor(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  std::unique_ptr<QXSkyGraphics3D> const pSky(m_pGraphics3D->CreateSky(L"3D", SCENE_PLANE));
  pSky->Initialize();
  QXPixel const clear = Frame().At(32, 24);
  pSky->SetCondition(CONDITION_OVERCAST);
  QXPixel const overcast = Frame().At(32, 24);
  EXPECT_LT(overcast.b - overcast.r, clear.b - clear.r);
  // The sky's time counts.
  pSky->SetCondition(CONDITION_CLEAR);
  pSky->SetTime(QdcTime(1734822000000));
  EXPECT_LT(2 * Sum(Frame().At(32, 24)), Sum(clear));
  // Its own where the sky is not seen.
  pSky->SetVisible(0);
  EXPECT_EQ(Frame().At(32, 24), clear);
}

TEST_F(QXOgreOcean, TheSunGlintsWhereItIsMirrored) {
  m_pOcean->SetWindSpeed(3.0);
  m_pCamera->SetDirection(0.0, 1.0, -1.0);
  QXColorValue3D const sun(1.0, 0.5, 0.0, 1.0);
  QXColorValue3D const none;
  m_pOcean->SetWaterColor(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  // Along the ray that is mirrored up into the camera's middle, and the other way.
  m_pOcean->SetLight(QXVector3d(0.0, -1.0, -1.0), sun, none);
  QXPicture const towards = Frame();
  m_pOcean->SetLight(QXVector3d(0.0, 1.0, -1.0), sun, none);
  QXPicture const away = Frame();
  int nRed = 0;
  int nBlue = 0;
  for (unsigned int y = 24; y < 40; ++y)
    for (unsigned int x = 24; x < 40; ++x) {
      nRed += towards.At(x, y).r - away.At(x, y).r;
      nBlue += towards.At(x, y).b - away.At(x, y).b;
    }
  EXPECT_GT(nRed / 256, 5);
  EXPECT_NEAR(nBlue / 256, 0, 2);
}

TEST_F(QXOgreOcean, StormsCarryFoamUnlessTheyAreToldNotTo) {
  m_pOcean->SetSeaState(10.0);
  m_pCamera->SetPosition(0.0, 0.0, 60.0);
  auto const countWhite = [this] {
    QXPicture const picture = Frame();
    int nWhite = 0;
    for (unsigned int y = 24; y < SIZE; ++y)
      for (unsigned int x = 0; x < SIZE; ++x) nWhite += picture.At(x, y).r > 110;
    return nWhite;
  };
  int const nFoam = countWhite();
  m_pOcean->SetFoamEnable(0);
  int const nNone = countWhite();
  EXPECT_GT(nFoam, nNone + 10);
  m_pOcean->SetFoamEnable(1);
  EXPECT_EQ(countWhite(), nFoam);
  // None of it where no crest breaks.
  m_pOcean->SetSeaState(1.0);
  QXPicture const calm = Frame();
  m_pOcean->SetFoamEnable(0);
  EXPECT_EQ(CountDifferences(calm, Frame()), 0);
}

TEST_F(QXOgreOcean, FogHidesWhatIsFar) {
  QXFog fog;
  fog.SetFogMode(FOG_LINEAR);
  fog.SetFogColor(RED);
  fog.SetFogStart(20.0);
  fog.SetFogEnd(60.0);
  QXPicture const clear = Frame();
  m_pGraphics3D->SetFog(L"3D", fog);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 21), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 62), clear.At(32, 62));
}

TEST_F(QXOgreOcean, AMapShowsItWhateverItsNearAndFar) {
  QXCamera* const pMap = MakeCamera(L"map");
  m_pViewport->m_pCamera = pMap;
  for (double const dHeight : {10.0, 500.0, -5.0}) {
    pMap->SetPosition(0.0, 0.0, dHeight);
    QXPicture const picture = Frame();
    for (unsigned int i = 0; i < SIZE; ++i) EXPECT_NEAR(picture.At(i, 63 - i).b, 102, 8) << dHeight << " " << i;
  }
  // Along the water there is nothing to be seen of it.
  pMap->SetDirection(0.0, 1.0, 0.0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreOcean, AMapShowsTheWavesToo) {
  QXCamera* const pMap = MakeCamera(L"map");
  m_pViewport->m_pCamera = pMap;
  pMap->SetProjectionMatrix(QXMathEngine::ComputeOrthoMatrix(-50.0, 50.0, -50.0, 50.0, 0.0, 20.0));
  m_pOcean->SetLight(QXVector3d(1.0, 0.0, -1.0), QXColorValue3D::White, QXColorValue3D());
  QXPicture const still = Frame();
  m_pOcean->AddSwell(PI / 2.0, 25.0, 2.0, 0.0);
  QXPicture const picture = Frame();
  EXPECT_GT(CountDifferences(still, picture), 500);
  // Four of them from left to right: crests repeat after 16 pixels.
  for (unsigned int x = 8; x < 40; ++x) EXPECT_NEAR(picture.At(x, 32).b, picture.At(x + 16, 32).b, 4) << x;
}

TEST_F(QXOgreOcean, ACameraThatFollowsTheSceneSeesTheWaterNearIt) {
  DrawSquare(-1.0F, 200.0F, 1.0F, 202.0F, 1.0F, RED);
  m_pCamera->SetProjectionMatrix(QXMatrix4d::ZERO);
  m_pCamera->SetFov(PI / 2.0);
  QXPicture const picture = Frame();
  EXPECT_NE(picture.At(32, 62), BACKGROUND_PIXEL);
  EXPECT_NE(picture.At(32, 24), BACKGROUND_PIXEL);
}

TEST_F(QXOgreOcean, ItIsTheSameFarFromTheOrigin) {
  m_pOcean->AddSwell(PI / 2.0, 100.0, 3.0, 0.0);
  m_pOcean->AddSwell(0.0, 60.0, 2.0, 1.0);
  QXPicture const picture = Frame();
  double const dHeight = HeightAt(12.0, 34.0);
  QXVector3d const vecFar(6.0e6, -6.0e6, 0.0);
  EXPECT_NEAR(HeightAt(6.0e6 + 12.0, -6.0e6 + 34.0), dHeight, 1e-5);
  for (QXVector3d const& vecOrigin : {QXVector3d::ZERO, vecFar}) {
    m_pGraphics3D->SetRelativeOrigin(vecOrigin);
    m_pCamera->SetPosition(vecFar + QXVector3d(0.0, 0.0, 8.0));
    EXPECT_LT(CountDifferences(picture, Frame()), 20);
  }
}

TEST_F(QXOgreOcean, SwellsAddUpToEightAndGoTogether) {
  m_pOcean->SetChoppiness(0.0);
  for (int i = 0; i < 9; ++i) m_pOcean->AddSwell(0.0, 100.0, 2.0, 0.0);
  EXPECT_NEAR(HeightAt(0.0, 0.0), 8.0, 1e-9);
  m_pOcean->RemoveAllSwells();
  EXPECT_EQ(HeightAt(0.0, 0.0), 0.0);
  m_pOcean->AddSwell(0.0, 0.0, 2.0, 0.0);
  m_pOcean->AddSwell(0.0, -5.0, 2.0, 0.0);
  m_pOcean->AddSwell(NaN, 100.0, 2.0, 0.0);
  m_pOcean->AddSwell(0.0, 100.0, NaN, 0.0);
  EXPECT_EQ(HeightAt(0.0, 0.0), 0.0);
}

TEST_F(QXOgreOcean, NobodyDisturbsIt) {
  EXPECT_EQ(m_pOcean->CreateWakeGenerator(QXWakeGeneratorParameters()), 0U);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("wakes"), std::string::npos);
  EXPECT_EQ(m_pOcean->CreateRotorWash(QXRotorWashParameters()), 0U);
  EXPECT_EQ(m_pOcean->CreateTidalStreamWake(QXTidalStreamWakeParameters()), 0U);
  QXPicture const picture = Frame();
  m_pOcean->AddWaterImpact(QXWaterImpactParameters(), QXVector3d(0.0, 15.0, 0.0), QXVector3d(0.0, 0.0, -1.0), 50.0);
  m_pOcean->MoveDisturbance(1, QXVector3d(0.0, 15.0, 0.0), QXVector3d(1.0, 0.0, 0.0), 10.0);
  m_pOcean->RemoveDisturbance(1);
  m_pOcean->Update(1.0);
  EXPECT_EQ(CountDifferences(picture, Frame()), 0);
}

TEST_F(QXOgreOcean, NumbersThatAreNoneAreStillWaterOrNothing) {
  m_pOcean->SetWindSpeed(NaN);
  m_pOcean->SetWindDirection(std::numeric_limits<double>::infinity());
  m_pOcean->SetSeaState(NaN);
  m_pOcean->SetChoppiness(NaN);
  m_pOcean->Update(NaN);
  EXPECT_EQ(HeightAt(0.0, 0.0), 0.0);
  Frame();
  double dHeight = 5.0;
  QXVector3d vecNormal(1.0, 2.0, 3.0);
  EXPECT_EQ(m_pOcean->GetHeight(QXVector3d(NaN, 0.0, 0.0), dHeight, vecNormal), 0);
  EXPECT_EQ(dHeight, 5.0);
  EXPECT_EQ(vecNormal, QXVector3d(1.0, 2.0, 3.0));
  m_pOcean->SetSeaLevel(NaN);
  EXPECT_EQ(Frame().At(32, 60), BACKGROUND_PIXEL);
}

TEST_F(QXOgreOcean, WavesThatNoSeaHasAreLeftOut) {
  double const dInfinity = std::numeric_limits<double>::infinity();
  for (double const d : {1.0e-300, 1.0e-160, 1.0e-3, 1.0e300, dInfinity, -1.0, -dInfinity}) {
    m_pOcean->SetWindSpeed(d);
    EXPECT_EQ(HeightAt(3.0, 4.0), 0.0) << d;
  }
  m_pOcean->SetSeaState(1.0e-300);
  EXPECT_EQ(HeightAt(3.0, 4.0), 0.0);
  m_pOcean->SetSeaState(-1.0);
  m_pOcean->SetWindSpeed(0.0);
  QXPicture const still = Frame();
  double const arrSwells[][2] = {{1.0e-310, 1.0}, {0.009, 1.0}, {1.1e7, 1.0}, {1.0e300, 1.0}, {NaN, 1.0}, {-9.0, 1.0},
      {100.0, 1.1e4}, {100.0, -1.0e300}, {100.0, NaN}, {dInfinity, 1.0}};
  for (auto const& swell : arrSwells) {
    m_pOcean->AddSwell(0.0, swell[0], swell[1], 0.0);
    EXPECT_EQ(HeightAt(3.0, 4.0), 0.0) << swell[0] << ", " << swell[1];
  }
  m_pOcean->AddSwell(dInfinity, 100.0, 1.0, 0.0);
  m_pOcean->AddSwell(0.0, 100.0, 1.0, NaN);
  EXPECT_EQ(Frame().GetBytes(), still.GetBytes());
  // They took no place from those that are.
  for (int i = 0; i < 8; ++i) m_pOcean->AddSwell(0.0, 100.0, 2.0, 0.0);
  EXPECT_NEAR(HeightAt(0.0, 0.0), 8.0, 1e-9);
}

TEST_F(QXOgreOcean, ColoursAndLightThatAreNoneStillDrawWater) {
  double const dInfinity = std::numeric_limits<double>::infinity();
  for (double const d : {NaN, dInfinity, -dInfinity, -1.0, 1.0e300}) {
    m_pOcean->SetWaterColor(QXColorValue3D(d, 0.2, d, d));
    m_pOcean->SetLight(QXVector3d(0.0, 0.0, -1.0), QXColorValue3D(d, 0.0, 0.0, d), QXColorValue3D(0.0, 1.0, d, d));
    // Looking down, hardly anything is mirrored: the green is the water's alone.
    m_pCamera->SetDirection(0.0, 0.001, -1.0);
    QXPixel const pixel = Frame().At(32, 32);
    EXPECT_EQ(pixel.a, 255) << d;
    if (std::isnan(d)) {
      EXPECT_LT(pixel.r, 30);
    }
  }
  m_pOcean->SetWaterColor(QXColorValue3D(0.0, 0.2, 0.4, 1.0));
  m_pOcean->SetLight(QXVector3d(0.0, 0.0, -1.0), QXColorValue3D(), QXColorValue3D::White);
  QXPicture const picture = Frame();
  // Of any length.
  for (double const d : {1.0e-300, 1.0e300}) {
    m_pOcean->SetLight(QXVector3d(0.0, 0.0, -d), QXColorValue3D(), QXColorValue3D::White);
    EXPECT_EQ(Frame().GetBytes(), picture.GetBytes()) << d;
  }
  m_pOcean->SetVisible(7);
  EXPECT_EQ(m_pOcean->IsVisible(), 1);
}

TEST_F(QXOgreOcean, HoweverFarAwayThereIsAHeight) {
  m_pOcean->SetWindSpeed(10.0);
  m_pOcean->Update(1.0e300);
  for (double const d : {1.0e18, 1.0e300, -1.0e308}) EXPECT_LT(std::abs(HeightAt(d, -d)), 20.0) << d;
  for (double const d : {1.0e7, 1.0e20, 1.0e300}) {
    m_pOcean->SetSeaLevel(-d);
    // The horizon stands level.
    EXPECT_NE(Frame().At(32, 60), BACKGROUND_PIXEL) << d;
    m_pOcean->SetSeaLevel(d);
    EXPECT_EQ(Frame().At(32, 60), BACKGROUND_PIXEL) << d;
  }
}

TEST_F(QXOgreOcean, ANewOneIsStillAndNothingBeforeInitialize) {
  m_pOcean.reset(m_pGraphics3D->CreateOcean(L"3D", SCENE_PLANE));
  EXPECT_EQ(m_pOcean->IsVisible(), 1);
  EXPECT_EQ(m_pOcean->GetSeaLevel(), 0.0);
  EXPECT_EQ(m_pOcean->GetWindSpeed(), 0.0);
  EXPECT_LT(m_pOcean->GetSeaState(), 0.0);
  EXPECT_EQ(m_pOcean->GetChoppiness(), 1.0);
  double dHeight = 5.0;
  QXVector3d vecNormal;
  EXPECT_EQ(m_pOcean->GetHeight(QXVector3d::ZERO, dHeight, vecNormal), 0);
  EXPECT_EQ(dHeight, 5.0);
  EXPECT_EQ(Frame().At(32, 60), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pOcean->Initialize(), 1);
  EXPECT_EQ(m_pOcean->Initialize(), 1);
  EXPECT_NE(Frame().At(32, 60), BACKGROUND_PIXEL);
}

TEST_F(QXOgreOcean, UnknownScenesAndGlobesHaveNone) {
  EXPECT_EQ(m_pGraphics3D->CreateOcean(L"nowhere", SCENE_PLANE), nullptr);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("nowhere"), std::string::npos);
  EXPECT_EQ(m_pGraphics3D->CreateOcean(L"3D", SCENE_GLOBE), nullptr);
}

TEST_F(QXOgreOcean, TheSkyThatItMirrorsMayGoFirst) {
  QXPicture const own = Frame();
  std::unique_ptr<QXSkyGraphics3D> pSky(m_pGraphics3D->CreateSky(L"3D", SCENE_PLANE));
  pSky->Initialize();
  pSky->SetTime(QdcTime(1734822000000));
  EXPECT_GT(CountDifferences(own, Frame()), 1000);
  pSky.reset();
  EXPECT_EQ(Frame().GetBytes(), own.GetBytes());
  // Nothing is drawn between its end and the renderer's.
  pSky.reset(m_pGraphics3D->CreateSky(L"3D", SCENE_PLANE));
  pSky->Initialize();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U);
  pSky.reset();
  m_pTarget = nullptr;
  m_pGraphics3D.reset();
  EXPECT_EQ(m_pOcean->Initialize(), 0);
}

TEST_F(QXOgreOcean, ItMayGoBeforeItsSceneAndAfterItAndAfterTheRenderer) {
  m_pOcean.reset();
  EXPECT_EQ(Frame().At(32, 60), BACKGROUND_PIXEL);
  m_pGraphics3D->CreateScene(L"other");
  m_pOcean.reset(m_pGraphics3D->CreateOcean(L"other", SCENE_PLANE));
  EXPECT_EQ(m_pOcean->Initialize(), 1);
  m_pGraphics3D->DestroyScene(L"other");
  EXPECT_EQ(m_pOcean->Initialize(), 0);
  m_pOcean->SetSeaState(3.0);
  m_pOcean->Update(1.0);
  Frame();
  std::unique_ptr<QXTritonOceanGraphics3D> const pLast(m_pGraphics3D->CreateOcean(L"3D", SCENE_PLANE));
  pLast->Initialize();
  Frame();
  m_pGraphics3D.reset();
  EXPECT_EQ(pLast->Initialize(), 0);
  EXPECT_EQ(pLast->CreateWakeGenerator(QXWakeGeneratorParameters()), 0U);
}

}  // namespace QXC
