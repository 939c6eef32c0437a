// Lights of scenes, beside the sun.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <random>
#include <string>

#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/view/QXLight.h>

#include <tests/ogre/QXOgreBucketing.h>

namespace QXC {

namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double PI = std::numbers::pi;

/// White, and nothing on faces that look away.
QXLight Lamp(double dX, double dY, double dZ) {
  QXLight light;
  light.SetAmbientColour(0.0, 0.0, 0.0);
  light.SetPosition(dX, dY, dZ);
  return light;
}

QXLight Directional(QXVector3d const& vecDirection) {
  QXLight light = Lamp(0.0, 0.0, 0.0);
  light.SetType(LIGHT_DIRECTIONAL);
  light.SetDirection(vecDirection);
  return light;
}

/// Shines down.
QXLight Spot(double dX, double dY, double dZ, double dInner, double dOuter, double dFalloff) {
  QXLight light = Lamp(dX, dY, dZ);
  light.SetType(LIGHT_SPOTLIGHT);
  light.SetDirection(0.0, 0.0, -1.0);
  light.SetSpotlightRange(dInner, dOuter, dFalloff);
  return light;
}

double Dot(QXVector3d const& a, QXVector3d const& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// What a light with sound numbers adds to the red of a white face that looks up, by the words of the README.
double ShareOf(QXLight const& light, QXVector3d const& vecPoint) {
  QXVector3d const vecDirection = QXVector3d(light.GetDirection()).Normalize();
  double const dPower = light.GetPowerScale() == 0.0 ? 1.0 : light.GetPowerScale();
  double const dDiffuse = light.GetDiffuseColour().r * dPower;
  double const dAmbient = light.GetAmbientColour().r * dPower;
  if (light.GetType() == LIGHT_DIRECTIONAL) return dAmbient + dDiffuse * std::max(-vecDirection.z, 0.0);
  QXVector3d const vecWay = light.GetPosition() - vecPoint;
  double const d = vecWay.Length();
  if (light.GetAttenuationRange() > 0.0 && d > light.GetAttenuationRange()) return 0.0;
  double dShare =
      1.0 / (light.GetAttenuationConstant() + light.GetAttenuationLinear() * d + light.GetAttenuationQuadric() * d * d);
  if (!std::isfinite(dShare)) dShare = 1.0;
  if (light.GetType() == LIGHT_SPOTLIGHT) {
    double const dCos = -Dot(vecWay, vecDirection) / d;
    double const dInner = std::cos(light.GetSpotlightInnerAngle() / 2.0);
    double const dOuter = std::cos(light.GetSpotlightOuterAngle() / 2.0);
    if (dCos <= dOuter) return 0.0;
    if (dCos < dInner) dShare *= std::pow((dCos - dOuter) / (dInner - dOuter), light.GetSpotlightFalloff());
  }
  return dShare * (dAmbient + dDiffuse * std::max(vecWay.z / d, 0.0));
}

/// Where the middle of a pixel lies on the plane z = 0.
QXVector3d PlaceOf(double dColumn, double dRow) {
  return {(dColumn + 0.5) / 32.0 - 1.0, 1.0 - (dRow + 0.5) / 32.0, 0.0};
}

}  // namespace

/// A white square that faces the camera, without sun and without ambient light.
class QXOgreSceneLight : public QXOgreBucketing {
protected:
  void SetUp() override {
    QXOgreBucketing::SetUp();
    m_pTarget->SetAmbientLight(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
    m_pSquare = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D::White);
  }
  void Shine(wchar_t const* szName, QXLight const& light, wchar_t const* szScene = L"3D") {
    ASSERT_EQ(m_pGraphics3D->CreateLight(szName, szScene), 1) << Text(m_pGraphics3D->GetErrorText());
    ASSERT_EQ(m_pGraphics3D->SetLight(szName, light), 1);
  }
  /// The red of the pixel at the middle of the square, or elsewhere.
  int Red(unsigned int x = 32, unsigned int y = 32) { return Frame().At(x, y).r; }
  void ExpectRed(QXLight const& light, std::string const& strWhat) {
    ASSERT_EQ(m_pGraphics3D->SetLight(L"lamp", light), 1);
    QXPicture const picture = Frame();
    for (unsigned int const x : {3U, 20U, 32U, 50U}) {
      double const dShare = std::min(ShareOf(light, PlaceOf(x, 32)), 1.0);
      EXPECT_NEAR(picture.At(x, 32).r, 255.0 * dShare, 1.0) << strWhat << ", column " << x;
    }
  }

  QXRenderOperation3D* m_pSquare = nullptr;
};

// --- One light ---

TEST_F(QXOgreSceneLight, ANewLightShinesInAllDirectionsAndOnAllFacesAlike) {
  EXPECT_EQ(Red(), 255) << "without sun and lights colours are as given";
  ASSERT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"3D"), 1);
  EXPECT_EQ(Frame().At(3, 60), WHITE_PIXEL);
}

TEST_F(QXOgreSceneLight, APointLightFallsByTheCosine) {
  Shine(L"lamp", Lamp(0.0, 0.0, 1.0));
  ExpectRed(Lamp(0.0, 0.0, 1.0), "above the middle");
  ExpectRed(Lamp(-0.5, 0.0, 0.3), "at the side");
  // The side that is seen has its back to it.
  ExpectRed(Lamp(0.0, 0.0, -1.0), "behind");
  EXPECT_EQ(Red(), 0);
}

TEST_F(QXOgreSceneLight, ADirectionalLightIsTheSameEverywhere) {
  QXLight light = Directional({3.0e200, 0.0, -3.0e200});
  light.SetAttenuation(1.0, 100.0, 100.0, 100.0);
  light.SetPosition(NO_NUMBER, 1.0e300, 0.0);
  Shine(L"lamp", light);
  for (unsigned int const x : {3U, 60U}) EXPECT_NEAR(Red(x), 255 * std::sqrt(0.5), 1) << "neither place nor range";
  m_pGraphics3D->SetLight(L"lamp", Directional({0.0, 0.0, -1.0e-200}));
  EXPECT_NEAR(Red(), 255, 1);
  m_pGraphics3D->SetLight(L"lamp", Directional({0.0, 0.0, 1.0}));
  EXPECT_EQ(Red(), 0);
}

TEST_F(QXOgreSceneLight, ADirectionStandsStillWhenTheCameraTurns) {
  Shine(L"lamp", Directional({-1.0, 0.0, -1.0}));
  Shine(L"spot", Spot(0.0, 0.5, 0.5, 0.2, 0.4, 1.0));
  int const nMiddle = Red();
  EXPECT_NEAR(nMiddle, 255 * std::sqrt(0.5), 1);
  m_pCamera->Roll(PI / 2.0);
  QXPicture const picture = Frame();
  EXPECT_NEAR(picture.At(32, 32).r, nMiddle, 1);
  EXPECT_EQ(std::max(picture.At(48, 32).r, picture.At(15, 32).r), 255) << "the spot went to one of the sides";
}

TEST_F(QXOgreSceneLight, ASpotlightFadesBetweenItsAngles) {
  Shine(L"lamp", Lamp(0.0, 0.0, 1.0));
  for (double const dFalloff : {0.0, 0.5, 1.0, 3.0})
    ExpectRed(Spot(0.0, 0.0, 1.0, 0.4, 1.6, dFalloff), "falloff " + std::to_string(dFalloff));
  ExpectRed(Spot(0.3, 0.0, 0.8, 0.0, 1.4, 1.0), "without an inner angle");
  QXLight light = Spot(0.6, 0.0, 1.0, 0.3, 0.9, 1.0);
  light.SetDirection(-0.6, 0.0, -1.0);
  ExpectRed(light, "aimed at the middle");
  light.SetAttenuation(2.0, 0.5, 0.25, 1.0);
  ExpectRed(light, "attenuated too");
}

TEST_F(QXOgreSceneLight, AnglesThatNobodySetLimitNothing) {
  Shine(L"lamp", Spot(0.0, 0.0, 1.0, 0.0, 0.0, 1.0));
  int const nSide = Red(3);
  EXPECT_NEAR(nSide, 255 * ShareOf(Lamp(0.0, 0.0, 1.0), PlaceOf(3, 32)), 1);
  // An inner angle beyond the outer one ends there, and full circles are full.
  m_pGraphics3D->SetLight(L"lamp", Spot(0.0, 0.0, 1.0, 3.0, PI / 2.0, 1.0));
  EXPECT_NEAR(Red(2), 255 * std::cos(std::atan(PlaceOf(2, 32).x)), 1);
  EXPECT_EQ(Frame().At(1, 1).r, 0) << "54 degrees from the axis";
  m_pGraphics3D->SetLight(L"lamp", Spot(0.0, 0.0, 1.0, 100.0, 100.0, 1.0));
  EXPECT_NEAR(Red(3), nSide, 1);
}

TEST_F(QXOgreSceneLight, SpotAndDirectionalLightsWithoutADirectionAreDark) {
  QXLight light = Spot(0.0, 0.0, 1.0, 1.0, 1.0, 1.0);
  light.SetAmbientColour(1.0, 1.0, 1.0);
  light.SetDirection(QXVector3d::ZERO);
  Shine(L"lamp", light);
  EXPECT_EQ(Red(), 0);
  light.SetType(LIGHT_DIRECTIONAL);
  m_pGraphics3D->SetLight(L"lamp", light);
  EXPECT_EQ(Red(), 0);
  light.SetType(static_cast<LightTypes>(77));
  m_pGraphics3D->SetLight(L"lamp", light);
  EXPECT_EQ(Red(), 255) << "any other type is a point light";
}

TEST_F(QXOgreSceneLight, AttenuationDividesAndTheRangeCuts) {
  Shine(L"lamp", Lamp(0.0, 0.0, 1.0));
  double const arrNumbers[][4] = {{0.0, 2.0, 0.0, 0.0}, {0.0, 0.0, 2.0, 0.0}, {0.0, 0.0, 0.0, 3.0},
      {0.0, 1.0, 0.5, 0.25}, {1.05, 0.0, 0.0, 0.0}, {1.05, 0.0, 0.0, 4.0}, {100.0, 0.5, 1.0, 0.0}};
  for (auto const& n : arrNumbers) {
    QXLight light = Lamp(0.0, 0.0, 1.0);
    light.SetAttenuation(n[0], n[1], n[2], n[3]);
    ExpectRed(light, "attenuation " + std::to_string(n[0]) + " " + std::to_string(n[1]) + " " + std::to_string(n[2]) +
                         " " + std::to_string(n[3]));
  }
  // Ambient colours fade and end with it.
  QXLight light = Lamp(0.0, 0.0, -1.0);
  light.SetAmbientColour(1.0, 1.0, 1.0);
  light.SetAttenuation(1.2, 0.0, 2.0, 0.0);
  m_pGraphics3D->SetLight(L"lamp", light);
  EXPECT_NEAR(Red(), 128, 1);
  EXPECT_EQ(Red(2), 0);
}

TEST_F(QXOgreSceneLight, ThePowerScaleMultipliesAndNobodySetsZero) {
  Shine(L"lamp", Lamp(0.0, 0.0, 1.0));
  QXLight light = Lamp(0.0, 0.0, 1.0);
  light.SetDiffuseColour(0.25, 0.25, 0.25);
  ExpectRed(light, "not set");
  EXPECT_NEAR(Red(), 64, 1);
  for (double const dPower : {0.5, 2.0, 3.0, 100.0}) {
    light.SetPowerScale(dPower);
    ExpectRed(light, "power " + std::to_string(dPower));
  }
  light.SetAmbientColour(0.125, 0.0, 0.0);
  light.SetPowerScale(2.0);
  ExpectRed(light, "ambient too");
}

TEST_F(QXOgreSceneLight, ColoursTintAndTheAmbientOneReachesBothSides) {
  QXLight light = Lamp(0.0, 0.0, -2.0);
  light.SetDiffuseColour(1.0, 1.0, 1.0);
  light.SetAmbientColour(0.2, 0.4, 0.0);
  Shine(L"lamp", light);
  QXPixel const behind = Frame().At(32, 32);
  EXPECT_NEAR(behind.r, 51, 1);
  EXPECT_NEAR(behind.g, 102, 1);
  EXPECT_EQ(behind.b, 0);
  light.SetPosition(0.0, 0.0, 2.0);
  light.SetDiffuseColour(0.0, 0.2, 0.6);
  m_pGraphics3D->SetLight(L"lamp", light);
  QXPixel const before = Frame().At(32, 32);
  EXPECT_NEAR(before.r, 51, 1);
  EXPECT_NEAR(before.g, 153, 1);
  EXPECT_NEAR(before.b, 153, 1);
}

// --- Several lights ---

TEST_F(QXOgreSceneLight, LightsAddThemselvesToTheSunAndToEachOther) {
  m_pTarget->SetSunLightEnable(1);
  m_pTarget->SetAmbientLight(QXColorValue3D(0.1, 0.1, 0.1, 1.0));
  m_pTarget->SetDiffuseLight(QXColorValue3D(0.0, 0.4, 0.0, 1.0));
  m_pTarget->SetSunPosition({0.0, 0.0, 1000.0});
  QXLight red = Lamp(0.0, 0.0, 1.0);
  red.SetDiffuseColour(0.5, 0.0, 0.0);
  QXLight blue = Lamp(0.0, 0.0, 2.0);
  blue.SetDiffuseColour(0.25, 0.0, 2.0);
  Shine(L"red", red);
  Shine(L"blue", blue);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 255 * 0.85, 1);
  EXPECT_NEAR(pixel.g, 255 * 0.5, 1);
  EXPECT_EQ(pixel.b, 255);
  m_pTarget->SetSunLightEnable(0);
  EXPECT_NEAR(Frame().At(32, 32).g, 255 * 0.1, 1) << "the ambient light stays";
}

TEST_F(QXOgreSceneLight, RandomLightsMatchTheirFormula) {
  unsigned int const nSeed = 20240607;
  std::mt19937 random(nSeed);
  auto const number = [&](double dMin, double dMax) { return std::uniform_real_distribution(dMin, dMax)(random); };
  wchar_t const* const arrNames[] = {L"a", L"b", L"c", L"d", L"e"};
  for (auto const* const szName : arrNames) Shine(szName, QXLight());
  for (int nRound = 0; nRound < 30; ++nRound) {
    std::vector<QXLight> arrLights;
    for (int i = 0; i < 5; ++i) {
      QXLight light = Lamp(number(-1.5, 1.5), number(-1.5, 1.5), number(0.2, 2.0));
      light.SetType(static_cast<LightTypes>(random() % 3));
      light.SetDirection(number(-1.0, 1.0), number(-1.0, 1.0), number(-2.0, -0.1));
      light.SetDiffuseColour(number(0.0, 0.4), 0.0, 0.0);
      light.SetAmbientColour(number(0.0, 0.05), 0.0, 0.0);
      double const dInner = number(0.1, 1.0);
      light.SetSpotlightRange(dInner, dInner + number(0.2, 1.0), number(0.0, 3.0));
      light.SetAttenuation(
          random() % 2 == 0 ? number(0.5, 3.0) : 0.0, number(0.1, 1.0), number(0.0, 1.0), number(0.0, 1.0));
      light.SetPowerScale(random() % 2 == 0 ? number(0.2, 2.0) : 0.0);
      arrLights.push_back(light);
      ASSERT_EQ(m_pGraphics3D->SetLight(arrNames[i], light), 1);
    }
    QXPicture const picture = Frame();
    for (unsigned int y = 1; y < SIZE; y += 7) {
      for (unsigned int x = 1; x < SIZE; x += 7) {
        // At the edge of a light a pixel is on one side or the other.
        double dLeast = INFINITE;
        double dMost = 0.0;
        for (double const dX : {-0.02, 0.0, 0.02}) {
          for (double const dY : {-0.02, 0.0, 0.02}) {
            double dSum = 0.0;
            for (QXLight const& light : arrLights) dSum += ShareOf(light, PlaceOf(x + dX, y + dY));
            dLeast = std::min(dLeast, 255.0 * std::min(dSum, 1.0));
            dMost = std::max(dMost, 255.0 * std::min(dSum, 1.0));
          }
        }
        EXPECT_GE(picture.At(x, y).r, dLeast - 1.0)
            << "seed " << nSeed << ", round " << nRound << ", " << x << " " << y;
        EXPECT_LE(picture.At(x, y).r, dMost + 1.0) << "seed " << nSeed << ", round " << nRound << ", " << x << " " << y;
      }
    }
  }
}

TEST_F(QXOgreSceneLight, ThirtyTwoLightsShineAtOnceAndEqualsInTheOrderOfTheirMaking) {
  for (int i = 0; i < 40; ++i) {
    QXLight light = Directional({0.0, 0.0, -1.0});
    light.SetDiffuseColour(i < 32 ? 0.02 : 0.0, i < 32 ? 0.0 : 0.02, 0.02);
    Shine(std::to_wstring(i).c_str(), light);
  }
  QXPixel pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 255 * 0.64, 1);
  EXPECT_EQ(pixel.g, 0);
  EXPECT_NEAR(pixel.b, 255 * 0.64, 1);
  // Those that are switched off, black or out of sight make room.
  for (int i = 0; i < 4; ++i) m_pGraphics3D->SetLightEnable(std::to_wstring(i).c_str(), 0);
  QXLight black = Directional({0.0, 0.0, -1.0});
  black.SetDiffuseColour(0.0, 0.0, 0.0);
  black.SetSpecularColour(0.0, 0.0, 0.0);
  for (int i = 4; i < 6; ++i) m_pGraphics3D->SetLight(std::to_wstring(i).c_str(), black);
  QXLight distant = Lamp(500.0, 0.0, 0.0);
  distant.SetAttenuation(400.0, 0.0, 0.0, 0.0);
  for (int i = 6; i < 8; ++i) m_pGraphics3D->SetLight(std::to_wstring(i).c_str(), distant);
  pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 255 * 0.48, 1);
  EXPECT_NEAR(pixel.g, 255 * 0.16, 1);
}

TEST_F(QXOgreSceneLight, OfMoreLightsTheBrightestShineAndTheLastOfThemFade) {
  for (int i = 0; i < 40; ++i) {
    QXLight light = Directional({0.0, 0.0, -1.0});
    // Brightness 1 to 40 hundredths of one channel; all give the same green.
    light.SetDiffuseColour(0.0, 0.0, 0.01 * (i + 1));
    light.SetAmbientColour(0.0, 0.0, 0.0);
    if (i == 7) light.SetDiffuseColour(0.0, 0.08, 0.0);
    if (i == 8) light.SetDiffuseColour(0.09, 0.0, 0.0);
    if (i == 11) light.SetDiffuseColour(0.0, 0.12, 0.0);
    Shine(std::to_wstring(i).c_str(), light);
  }
  // The first that finds no place is that of 8 hundredths, the last that shines in full that of 13.
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 255 * 0.09 * (0.09 - 0.08) / (0.13 - 0.08), 1);
  EXPECT_NEAR(pixel.g, 255 * 0.12 * (0.12 - 0.08) / (0.13 - 0.08), 1);
}

TEST_F(QXOgreSceneLight, NoLampFlickersWhenTheEyePassesManyOfThem) {
  m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
  QXMatrix4d matProjection;
  m_pGraphics3D->MakeProjectionMatrix(PI / 2.0, 1.0, 0.1, 200.0, matProjection);
  m_pCamera->SetProjectionMatrix(matProjection);
  delete m_arrOperations.back();
  m_arrOperations.pop_back();
  DrawSquare(-100.0F, -100.0F, 100.0F, 100.0F, 0.0F, QXColorValue3D::White);
  for (int i = 0; i < 80; ++i) {
    QXLight light = Lamp(1.0 * (i % 40) - 28.0, i < 40 ? -3.0 : 3.0, 0.7);
    light.SetAttenuation(0.0, 1.0, 0.0, 3.0);
    Shine(std::to_wstring(i).c_str(), light);
  }
  std::vector<unsigned char> arrBefore;
  for (int nStep = 0; nStep < 60; ++nStep) {
    m_pCamera->SetPosition(-8.0 + 0.02 * nStep, 0.0, 12.0);
    QXPicture const picture = Frame();
    int nMost = 0;
    for (std::size_t i = 0; i < arrBefore.size(); ++i)
      nMost = std::max(nMost, std::abs(arrBefore[i] - picture.GetBytes()[i]));
    // A lamp that came or went at once would be seen by 94 steps.
    EXPECT_LT(nMost, 10) << nStep;
    arrBefore = picture.GetBytes();
  }
}

// --- Lights by name ---

TEST_F(QXOgreSceneLight, SwitchingAndMovingLeaveTheRestAsItIs) {
  QXLight light = Lamp(0.0, 0.0, 1.0);
  light.SetDiffuseColour(0.5, 0.5, 0.5);
  Shine(L"lamp", light);
  Shine(L"other", QXLight());
  m_pGraphics3D->SetLightEnable(L"other", 0);
  EXPECT_NEAR(Red(), 128, 1);
  m_pGraphics3D->SetLight(L"other", QXLight());
  EXPECT_NEAR(Red(), 128, 1) << "it stays switched off";
  m_pGraphics3D->SetLightPos(L"lamp", {0.0, 0.0, -1.0});
  EXPECT_EQ(Red(), 0);
  m_pGraphics3D->SetLightPos(L"lamp", {0.0, 0.0, 3.0});
  EXPECT_NEAR(Red(), 128, 1);
  m_pGraphics3D->SetLightEnable(L"lamp", 0);
  EXPECT_EQ(Red(), 255) << "without sun and lights colours are as given";
  m_pGraphics3D->SetLightEnable(L"lamp", 1);
  m_pGraphics3D->SetLightEnable(L"unknown", 1);
  m_pGraphics3D->SetLightPos(L"unknown", {0.0, 0.0, 3.0});
  m_pGraphics3D->DestroyLight(L"unknown");
  EXPECT_NEAR(Red(), 128, 1);
}

TEST_F(QXOgreSceneLight, NamesAreTakenUntilTheLightOrItsSceneGoes) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"city"), 1);
  EXPECT_EQ(m_pGraphics3D->CreateLight(L"", L"3D"), 0);
  EXPECT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"nowhere"), 0);
  EXPECT_EQ(m_pGraphics3D->CreateLight(L"lamp", L""), 0);
  EXPECT_EQ(m_pGraphics3D->SetLight(L"lamp", QXLight()), 0);
  EXPECT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"city"), 1);
  EXPECT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"3D"), 0) << "taken in another scene";
  m_pGraphics3D->DestroyScene(L"city");
  EXPECT_EQ(m_pGraphics3D->SetLight(L"lamp", QXLight()), 0) << "gone with its scene";
  EXPECT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"3D"), 1);
  m_pGraphics3D->DestroyLight(L"lamp");
  EXPECT_EQ(Red(), 255);
  EXPECT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"3D"), 1);
}

TEST_F(QXOgreSceneLight, AHundredThousandLightsComeMoveAndGoInTime) {
  int const nCount = 100000;
  auto const nameOf = [](int i) { return QdcUnicodeString(std::to_wstring(i).c_str()); };
  auto const start = std::chrono::steady_clock::now();
  for (int i = 0; i < nCount; ++i) ASSERT_EQ(m_pGraphics3D->CreateLight(nameOf(i), L"3D"), 1);
  for (int i = 0; i < nCount; ++i) {
    QXLight light = Lamp(0.0, 0.0, 1.0);
    light.SetDiffuseColour(i % 2 == 0 ? 0.01 : 0.0, 0.01, 0.0);
    ASSERT_EQ(m_pGraphics3D->SetLight(nameOf(i), light), 1);
  }
  QXPixel const pixel = Frame().At(32, 32);
  // Thirty-two of equals: the first sixteen pairs.
  EXPECT_NEAR(pixel.g, 255 * 0.32, 1);
  EXPECT_NEAR(pixel.r, 255 * 0.16, 1);
  for (int i = 0; i < nCount; ++i) m_pGraphics3D->DestroyLight(nameOf(i));
  double const dSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  // It takes about one; looking for each name among all would take minutes.
  EXPECT_LT(dSeconds, 30.0);
  EXPECT_EQ(Red(), 255);
}

TEST_F(QXOgreSceneLight, NothingIsLitBeforeTheRendererRuns) {
  QXOgrePtr const pOther = MakeRenderer();
  EXPECT_EQ(pOther->CreateLight(L"lamp", L"3D"), 0);
  EXPECT_EQ(pOther->SetLight(L"lamp", QXLight()), 0);
  pOther->SetLightEnable(L"lamp", 1);
  pOther->DestroyLight(L"lamp");
}

TEST_F(QXOgreSceneLight, ALightShinesInItsOwnSceneAlone) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"city"), 1);
  Shine(L"lamp", Lamp(0.0, 0.0, 1.0), L"city");
  EXPECT_EQ(Frame().At(3, 3), WHITE_PIXEL) << "as given";
  Shine(L"here", Directional({0.0, 0.0, 1.0}));
  EXPECT_EQ(Red(), 0);
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3});
  Draw(*pMesh, L"city");
  QXRenderTarget* const pTarget = MakeTarget(L"other");
  pTarget->SetAmbientLight(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  AddViewport(*pTarget, *MakeCamera(L"eye", L"city"), 0, 0.0, 0.0, 1.0, 1.0);
  EXPECT_NEAR(Frame(pTarget).At(32, 32).r, 255, 1);
}

// --- Places ---

TEST_F(QXOgreSceneLight, FarFromTheOriginPicturesAreTheSame) {
  QXVector3d const vecFar(6.0e6, -6.0e6, 6.0e6);
  QXLight const spot = Spot(0.4, 0.2, 0.7, 0.5, 1.0, 1.0);
  QXLight lamp = Lamp(-0.5, -0.5, 0.3);
  lamp.SetAttenuation(0.9, 1.0, 1.0, 0.0);
  Shine(L"spot", spot);
  Shine(L"lamp", lamp);
  QXPicture const here = Frame();
  EXPECT_NEAR(here.At(44, 26).r, 255 * (ShareOf(spot, PlaceOf(44, 26))), 1);
  m_pGraphics3D->SetLightPos(L"spot", spot.GetPosition() + vecFar);
  m_pGraphics3D->SetLightPos(L"lamp", lamp.GetPosition() + vecFar);
  QXMatrix4d mat;
  mat.SetTrans(vecFar);
  m_pSquare->SetModelMatrix(mat);
  m_pCamera->SetPosition(vecFar.x, vecFar.y, vecFar.z + 10.0);
  for (QXVector3d const& vecOrigin : {QXVector3d(), vecFar, QXVector3d(5.9e6, 0.0, 6.1e6)}) {
    m_pGraphics3D->SetRelativeOrigin(vecOrigin);
    QXPicture const there = Frame();
    int nMost = 0;
    for (std::size_t i = 0; i < here.GetBytes().size(); ++i)
      nMost = std::max(nMost, std::abs(here.GetBytes()[i] - there.GetBytes()[i]));
    EXPECT_LE(nMost, 1) << vecOrigin.x;
  }
}

TEST_F(QXOgreSceneLight, ExaggeratedHeightsMoveLightsAndWhatTheyAimAt) {
  QXLight spot = Spot(0.5, 0.0, 0.25, 0.3, 0.3, 0.0);
  spot.SetDirection(-0.5, 0.0, -0.25);
  Shine(L"lamp", spot);
  m_pTarget->SetVerticalExaggeration(2.0);
  double const dExpected = 255 * ShareOf(Lamp(0.5, 0.0, 0.5), PlaceOf(32, 32));
  // It stands at 0.5 now and still hits the middle, at 45 degrees.
  EXPECT_NEAR(Red(), dExpected, 1);
  m_pGraphics3D->SetLight(L"lamp", Lamp(0.5, 0.0, 0.25));
  EXPECT_NEAR(Red(), dExpected, 1);
}

TEST_F(QXOgreSceneLight, LightFallsRightInPerspective) {
  m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
  QXMatrix4d matProjection;
  m_pGraphics3D->MakeProjectionMatrix(2.0 * std::atan(0.1), 1.0, 0.1, 20.0, matProjection);
  m_pCamera->SetProjectionMatrix(matProjection);
  QXLight light = Lamp(0.5, 0.0, 0.5);
  light.SetAttenuation(0.0, 0.0, 1.0, 1.0);
  Shine(L"lamp", light);
  // The plane is seen as by the parallel camera.
  ExpectRed(light, "perspective");
}

TEST_F(QXOgreSceneLight, LightsOutOfSightKeepTheSceneDark) {
  QXLight light = Lamp(1000.0, 0.0, 1.0);
  light.SetAttenuation(1.0, 0.0, 0.0, 0.0);
  Shine(L"lamp", light);
  EXPECT_EQ(Red(), 0) << "turning the eye brings no daylight";
  light.SetPosition(0.0, 0.0, 0.5);
  m_pGraphics3D->SetLight(L"lamp", light);
  EXPECT_NEAR(Red(), 255, 1);
}

// --- What is lit ---

TEST_F(QXOgreSceneLight, WhatTakesNoLightStaysAsItIs) {
  Shine(L"lamp", Directional({0.0, 0.0, 1.0}));
  EXPECT_EQ(Red(), 0);
  m_pSquare->SetLightEnable(0);
  EXPECT_EQ(Red(), 255);
  m_pSquare->SetLightEnable(1);
  std::unique_ptr<QXBillboard> const pBillboard(m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(L"3D"));
  pBillboard->SetPosition({0.0, 0.0, 1.0});
  pBillboard->SetSize(8.0, 8.0, 1);
  pBillboard->SetColor(GREEN);
  EXPECT_EQ(Frame().At(32, 28), GREEN_PIXEL);
}

TEST_F(QXOgreSceneLight, PassesTakeLightAndHighlightsHaveTheSpecularColour) {
  m_pSquare->SetVisible(0);
  QXStaticGeometryBucket bucket;
  SetPositions(*bucket.m_pVertexPackage, Corners(-1, -1, 1, 1));
  bucket.m_mapLevelIndices[0] = {NewIndices(Rectangles(0, 0), L"pass")};
  QXPass* const pPass = AddPass(bucket.m_mapPasses, L"pass");
  pPass->m_clrDiffuse = QXColorValue3D(0.4, 0.4, 0.4, 1.0);
  pPass->m_clrAmbient = QXColorValue3D(0.5, 0.5, 0.5, 1.0);
  pPass->m_clrSpecular = QXColorValue3D(0.5, 0.5, 0.5, 1.0);
  pPass->m_dShininess = 10.0;
  Show(bucket);
  QXLight light = Lamp(0.0, 0.0, 1.0);
  light.SetAmbientColour(0.0, 1.0, 0.0);
  light.SetSpecularColour(1.0, 0.0, 0.5);
  light.SetAttenuation(0.0, 2.0, 0.0, 0.0);
  Shine(L"lamp", light);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 255 * (0.2 + 0.25), 2);
  EXPECT_NEAR(pixel.g, 255 * (0.2 + 0.4 * 0.5 * 0.5), 2);
  EXPECT_NEAR(pixel.b, 255 * (0.2 + 0.125), 2);
  // The eye looks straight down, so halfway to a light at 45 degrees is at 22.5 degrees.
  light.SetPosition(1.0 / 64.0 + 1.0, -1.0 / 64.0, 1.0);
  light.SetDiffuseColour(0.0, 0.0, 0.0);
  light.SetAmbientColour(0.0, 0.0, 0.0);
  m_pGraphics3D->SetLight(L"lamp", light);
  EXPECT_NEAR(Frame().At(32, 32).r, 255 * 0.25 * std::pow(std::cos(PI / 8.0), 10.0), 2);
}

// --- Numbers that are none ---

TEST_F(QXOgreSceneLight, NoNumberPoisonsThePicture) {
  QXLight good = Lamp(0.0, 0.0, 1.0);
  good.SetDiffuseColour(0.5, 0.5, 0.5);
  Shine(L"good", good);
  Shine(L"bad", QXLight());
  m_pGraphics3D->SetLightEnable(L"bad", 0);
  QXPicture const alone = Frame();
  m_pGraphics3D->SetLightEnable(L"bad", 1);
  double const arrBad[] = {NO_NUMBER, INFINITE, -INFINITE, 1.0e300, -1.0e300, -1.0, 1.0e-300, 0.0, 4.0e38, 1.0e18};
  for (LightTypes const eType : {LIGHT_POINT, LIGHT_DIRECTIONAL, LIGHT_SPOTLIGHT}) {
    for (double const d : arrBad) {
      for (int nField = 0; nField < 14; ++nField) {
        QXLight bad = Spot(0.25, 0.0, 0.5, 0.5, 1.0, 1.0);
        bad.SetType(eType);
        switch (nField) {
        case 0: bad.SetSpotlightFalloff(d); break;
        case 1: bad.SetSpotlightInnerAngle(d); break;
        case 2: bad.SetSpotlightOuterAngle(d); break;
        case 3: bad.SetDiffuseColour(d, d, d); break;
        case 4: bad.SetSpecularColour(d, d, d); break;
        case 5: bad.SetAmbientColour(d, d, d); break;
        case 6: bad.SetAttenuation(d, 0.0, 0.0, 0.0); break;
        case 7: bad.SetAttenuation(0.0, d, 0.0, 0.0); break;
        case 8: bad.SetAttenuation(0.0, 0.0, d, 0.0); break;
        case 9: bad.SetAttenuation(0.0, 0.0, 0.0, d); break;
        case 10: bad.SetPowerScale(d); break;
        case 11: bad.SetPosition(d, 0.0, 1.0); break;
        case 12: bad.SetPosition(0.0, 0.0, d); break;
        default: bad.SetDirection(d, 0.0, -1.0); break;
        }
        m_pGraphics3D->SetLight(L"bad", bad);
        QXPicture const both = Frame();
        // Light only ever adds itself.
        bool bDarker = false;
        for (std::size_t i = 0; i < alone.GetBytes().size(); ++i)
          bDarker = bDarker || both.GetBytes()[i] + 1 < alone.GetBytes()[i];
        EXPECT_FALSE(bDarker) << "type " << eType << ", field " << nField << ", " << d;
      }
    }
  }
  m_pGraphics3D->DestroyLight(L"bad");
  EXPECT_EQ(Frame().GetBytes(), alone.GetBytes());
}

TEST_F(QXOgreSceneLight, NumbersThatAreNoneCountAsNotSet) {
  Shine(L"lamp", Lamp(0.0, 0.0, 1.0));
  QXPicture const usual = Frame();
  for (double const d : {NO_NUMBER, INFINITE, -INFINITE, -3.0}) {
    QXLight light = Lamp(0.0, 0.0, 1.0);
    light.SetAttenuation(d, d, d, d);
    if (!std::isfinite(d)) light.SetPowerScale(d);
    m_pGraphics3D->SetLight(L"lamp", light);
    EXPECT_EQ(Frame().GetBytes(), usual.GetBytes()) << d;
  }
}

}  // namespace QXC
