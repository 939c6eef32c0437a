#include <limits>

#include <gtest/gtest.h>

#include <QxGraphics3D/testing/QXCallLog.h>
#include <QxGraphics3D/view/QXFog.h>
#include <QxGraphics3D/view/QXLight.h>

namespace QXC {
namespace {

TEST(QXCallLog, WritesOneLineACallWithTheShortestNumbers) {
  QXCallLog log;
  log.Write("graphics", "Nothing");
  log.Write("graphics", "Numbers", 1, -2, 3u, static_cast<unsigned char>(4), 0.1, 0.1F, 1e300, -0.0);
  EXPECT_EQ(log.GetText(), "graphics: Nothing()\ngraphics: Numbers(1, -2, 3, 4, 0.1, 0.1, 1e+300, -0)\n");
  log.Clear();
  EXPECT_TRUE(log.GetLines().empty());
  EXPECT_EQ(log.GetText(), "");
}

TEST(QXCallLog, WritesValuesByTheirContent) {
  QXCallLog log;
  QXMatrix4d matrix;
  matrix.SetTrans(QXVector3d(1.0, 2.5, 3.0));
  log.Write("o", "f", QXVector3d(1.0, 2.0, 3.5), QXColorValue3D(0.5, 0.25, 0.0, 1.0), QXQuaternion4d());
  log.Write("o", "f", matrix);
  log.Write("o", "f", QXPlane(QXVector3d(0.0, 0.0, 1.0), -2.0), QXVector4d(1.0, 2.0, 3.0, 4.0));
  log.Write("o", "f", QXBoundingBox(), QXBoundingBox(QXVector3d(-1.0, -1.0, 0.0), QXVector3d(1.0, 1.0, 2.0)));
  log.Write("o", "f", QdcRect(1, 2, 3, 4), QdcRect2D(0.0, 0.5, 1.0, 1.5));
  QdcArray<unsigned int> arrNumbers;
  log.Write("o", "f", arrNumbers);
  arrNumbers.Add(7);
  arrNumbers.Add(9);
  log.Write("o", "f", arrNumbers);
  std::vector<std::string> const arrExpected = {
      "o: f((1 2 3.5), (0.5 0.25 0 1), (1 0 0 0))",
      "o: f([(1 0 0 0)(0 1 0 0)(0 0 1 0)(1 2.5 3 1)])",
      "o: f((0 0 1 -2), (1 2 3 4))",
      "o: f(null box, (-1 -1 0)..(1 1 2))",
      "o: f((1 2 3 4), (0 0.5 1 1.5))",
      "o: f({})",
      "o: f({7 9})",
  };
  EXPECT_EQ(log.GetLines(), arrExpected);
}

TEST(QXCallLog, WritesEveryValueOfALightAndOfAFog) {
  QXCallLog log;
  QXLight light;
  light.SetType(LIGHT_SPOTLIGHT);
  light.SetDiffuseColour(0.125, 0.25, 0.5);
  light.SetSpecularColour(2.0, 3.0, 4.0);
  light.SetAmbientColour(5.0, 6.0, 7.0);
  light.SetPosition(8.0, 9.0, 10.0);
  light.SetDirection(11.0, 12.0, 13.0);
  light.SetSpotlightRange(14.0, 15.0, 16.0);
  light.SetAttenuation(17.0, 18.0, 19.0, 20.0);
  light.SetPowerScale(21.0);
  log.Write("o", "f", light);
  QXFog fog;
  fog.SetFogMode(FOG_LINEAR);
  fog.SetFogDensity(22.0);
  fog.SetFogStart(23.0);
  fog.SetFogEnd(24.0);
  log.Write("o", "f", fog);
  EXPECT_EQ(log.GetText(), "o: f(light 2 (0.125 0.25 0.5 1)(2 3 4 1)(5 6 7 1)(8 9 10)(11 12 13)(14 15 16)"
                           "(17 18 19 20)(21))\n"
                           "o: f(fog 3 (1 1 1 1)(22 23 24))\n");
}

TEST(QXCallLog, WritesObjectsWithoutTheirAddresses) {
  QXCallLog log;
  int nMemory = 0;
  log.Write("o", "f", QXLoggedMemory{&nMemory}, QXLoggedMemory{nullptr});
  log.Write("o", "f", static_cast<QXRenderTarget const*>(nullptr), static_cast<QXCamera const*>(nullptr),
      static_cast<QXViewport const*>(nullptr));
  EXPECT_EQ(log.GetText(), "o: f(memory, no memory)\no: f(no target, no camera, no viewport)\n");
}

TEST(QXCallLog, QuotesNamesSoThatALineStaysALine) {
  EXPECT_EQ(QXCallLog::Quote(L"Gr\u00fcn \"a\\b\"\n\x01"), "\"Gr\xC3\xBCn \\\"a\\\\b\\\"\\x0a\\x01\"");
  EXPECT_EQ(QXCallLog::Quote(QdcUnicodeString()), "\"\"");
}

}  // namespace
}  // namespace QXC
