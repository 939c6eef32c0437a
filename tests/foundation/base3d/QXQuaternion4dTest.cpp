#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>

#include "QXTestMath.h"

#include <numbers>

using namespace QXC;
using QXTest::ExpectNear;
using QXTest::ToGlm;

namespace {

TEST(QXQuaternion4d, IsTheIdentityWhenDefaultConstructed) {
  EXPECT_EQ(QXQuaternion4d(), QXQuaternion4d::IDENTITY);
  EXPECT_EQ(QXQuaternion4d::IDENTITY, QXQuaternion4d(1, 0, 0, 0));
}

TEST(QXQuaternion4d, ComparesAllFourValues) {
  QXQuaternion4d const q(1, 2, 3, 4);
  EXPECT_TRUE(q == QXQuaternion4d(1, 2, 3, 4));
  EXPECT_FALSE(q == QXQuaternion4d(0, 2, 3, 4));
  EXPECT_FALSE(q == QXQuaternion4d(1, 0, 3, 4));
  EXPECT_FALSE(q == QXQuaternion4d(1, 2, 0, 4));
  EXPECT_FALSE(q == QXQuaternion4d(1, 2, 3, 0));
}

TEST(QXQuaternion4d, TurnsRightHandedAboutItsAxis) {
  QXQuaternion4d quarter;
  quarter.FromAngleAxis(std::numbers::pi / 2, QXVector3d::UNIT_Z);
  ExpectNear(quarter * QXVector3d::UNIT_X, QXVector3d::UNIT_Y, 1e-15);
  ExpectNear(quarter * QXVector3d::UNIT_Y, -QXVector3d::UNIT_X, 1e-15);
}

TEST(QXQuaternion4d, NormalizesAndReturnsTheFormerLength) {
  QXQuaternion4d q(2, 2, -2, 2);
  EXPECT_EQ(q.Normalize(), 4.0);
  EXPECT_EQ(q, QXQuaternion4d(0.5, 0.5, -0.5, 0.5));
  QXQuaternion4d zero(0, 0, 0, 0);
  EXPECT_EQ(zero.Normalize(), 0.0);
  EXPECT_EQ(zero, QXQuaternion4d(0, 0, 0, 0));
}

TEST(QXQuaternion4d, GivesItsAxesAsRotatedUnitVectors) {
  QXQuaternion4d quarter;
  quarter.FromAngleAxis(std::numbers::pi / 2, QXVector3d::UNIT_X);
  QXVector3d axes[3];
  quarter.ToAxes(axes);
  ExpectNear(axes[0], {1, 0, 0}, 1e-15);
  ExpectNear(axes[1], {0, 0, 1}, 1e-15);
  ExpectNear(axes[2], {0, -1, 0}, 1e-15);
}

TEST(QXQuaternion4d, AgreesWithTheOracle) {
  SCOPED_TRACE(QXTest::Random::kSeed);
  QXTest::Random random;
  for (int nRound = 0; nRound < 1000; ++nRound) {
    QXQuaternion4d const p = random.Rotation();
    QXQuaternion4d const q = random.Rotation();
    QXVector3d const v = random.Vector(10);
    glm::dvec3 const rotated = ToGlm(p) * ToGlm(v);
    ExpectNear(p * v, {rotated.x, rotated.y, rotated.z}, 1e-13);
    glm::dquat const product = ToGlm(p) * ToGlm(q);
    QXQuaternion4d const actual = p * q;
    EXPECT_NEAR(actual.w, product.w, 1e-15);
    EXPECT_NEAR(actual.x, product.x, 1e-15);
    EXPECT_NEAR(actual.y, product.y, 1e-15);
    EXPECT_NEAR(actual.z, product.z, 1e-15);
    ExpectNear(actual * v, p * (q * v), 1e-12);
    QXVector3d axis = random.Vector(1);
    axis.Normalize();
    QXQuaternion4d turned;
    turned.FromAngleAxis(random.Next(-7, 7), axis);
    EXPECT_NEAR(turned.Normalize(), 1.0, 1e-14);
  }
}

}  // namespace
