#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include "QXTestMath.h"

#include <cmath>
#include <numbers>
#include <type_traits>

using namespace QXC;
using QXTest::ExpectNear;

namespace {

TEST(QXVector3d, IsZeroWhenDefaultConstructed) {
  QXVector3d const vector;
  EXPECT_EQ(vector.x, 0.0);
  EXPECT_EQ(vector.y, 0.0);
  EXPECT_EQ(vector.z, 0.0);
}

TEST(QXVector3d, HasItsConstants) {
  EXPECT_EQ(QXVector3d::ZERO, QXVector3d(0, 0, 0));
  EXPECT_EQ(QXVector3d::UNIT_X, QXVector3d(1, 0, 0));
  EXPECT_EQ(QXVector3d::UNIT_Y, QXVector3d(0, 1, 0));
  EXPECT_EQ(QXVector3d::UNIT_Z, QXVector3d(0, 0, 1));
}

TEST(QXVector3d, HasAVirtualDestructor) {
  EXPECT_TRUE(std::has_virtual_destructor_v<QXVector3d>);
}

TEST(QXVector3d, AddsSubtractsNegatesAndCompares) {
  QXVector3d const a(1, -2, 3);
  QXVector3d const b(10, 20, -30);
  EXPECT_EQ(a + b, QXVector3d(11, 18, -27));
  EXPECT_EQ(a - b, QXVector3d(-9, -22, 33));
  EXPECT_EQ(-a, QXVector3d(-1, 2, -3));
  EXPECT_FALSE(a == QXVector3d(9, -2, 3));
  EXPECT_FALSE(a == QXVector3d(1, 9, 3));
  EXPECT_FALSE(a == QXVector3d(1, -2, 9));
}

TEST(QXVector3d, CopiesByConstructionAndAssignment) {
  QXVector3d const source(4, 5, 6);
  QXVector3d const copy(source);
  QXVector3d assigned;
  assigned = source;
  EXPECT_EQ(copy, QXVector3d(4, 5, 6));
  EXPECT_EQ(assigned, QXVector3d(4, 5, 6));
}

TEST(QXVector3d, MeasuresLengthAndSquaredLength) {
  EXPECT_EQ(QXVector3d(2, 3, 6).Length(), 7.0);
  EXPECT_EQ(QXVector3d(2, 3, 6).Length2(), 49.0);
}

TEST(QXVector3d, NormalizesInPlaceAndReturnsItself) {
  QXVector3d vector(2, 3, 6);
  EXPECT_EQ(&vector.Normalize(), &vector);
  ExpectNear(vector, {2.0 / 7, 3.0 / 7, 6.0 / 7}, 1e-15);
}

TEST(QXVector3d, KeepsTheZeroVectorWhenNormalized) {
  QXVector3d vector;
  EXPECT_EQ(vector.Normalize(), QXVector3d::ZERO);
}

TEST(QXVector3d, AgreesWithTheOracleOnProducts) {
  SCOPED_TRACE(QXTest::Random::kSeed);
  QXTest::Random random;
  for (int nRound = 0; nRound < 1000; ++nRound) {
    QXVector3d const a = random.Vector(100);
    QXVector3d const b = random.Vector(100);
    EXPECT_NEAR(a.DotProduct(b), glm::dot(QXTest::ToGlm(a), QXTest::ToGlm(b)), 1e-9);
    glm::dvec3 const cross = glm::cross(QXTest::ToGlm(a), QXTest::ToGlm(b));
    ExpectNear(a.CrossProduct(b), {cross.x, cross.y, cross.z}, 1e-9);
  }
}

TEST(QXVector3d, MultipliesAsAPointWithTranslationInRowThree) {
  QXMatrix4d matrix;
  matrix[0][1] = 5.0;  // x adds to y: a row vector stands left of the matrix
  matrix.SetTrans({10, 20, 30});
  EXPECT_EQ(QXVector3d(1, 2, 3).MultiplyMatrix(matrix), QXVector3d(11, 27, 33));
  EXPECT_EQ(QXVector3d::MultiplyMatrix({1, 2, 3}, matrix), QXVector3d(11, 27, 33));
}

TEST(QXVector3d, IgnoresTheFourthColumnOfTheMatrix) {
  QXMatrix4d matrix;
  for (int nRow = 0; nRow < 4; ++nRow) matrix[nRow][3] = 7.0;
  EXPECT_EQ(QXVector3d(1, 2, 3).MultiplyMatrix(matrix), QXVector3d(1, 2, 3));
}

TEST(QXVector3d, FindsTheShortestRotationToAnotherDirection) {
  SCOPED_TRACE(QXTest::Random::kSeed);
  QXTest::Random random;
  for (int nRound = 0; nRound < 1000; ++nRound) {
    QXVector3d from = random.Vector(10);
    QXVector3d to = random.Vector(10);
    QXQuaternion4d const rotation = from.GetRotationTo(to, QXVector3d::ZERO);
    from.Normalize();
    to.Normalize();
    ExpectNear(rotation * from, to, 1e-9);
    // The shortest way turns about the perpendicular of both, which stays where it is.
    QXVector3d perpendicular = from.CrossProduct(to);
    ExpectNear(rotation * perpendicular, perpendicular, 1e-9);
    EXPECT_NEAR(2.0 * std::acos(std::min(1.0, rotation.w)), std::acos(from.DotProduct(to)), 1e-6);
  }
}

TEST(QXVector3d, NeedsNoRotationToItsOwnDirection) {
  EXPECT_EQ(QXVector3d(0, 3, 0).GetRotationTo({0, 5, 0}, QXVector3d::ZERO), QXQuaternion4d::IDENTITY);
}

TEST(QXVector3d, TurnsHalfwayAboutTheFallbackAxisToTheOpposite) {
  QXQuaternion4d const rotation = QXVector3d::UNIT_X.GetRotationTo({-4, 0, 0}, QXVector3d::UNIT_Z);
  ExpectNear(rotation * QXVector3d::UNIT_X, {-1, 0, 0}, 1e-15);
  ExpectNear(rotation * QXVector3d::UNIT_Z, {0, 0, 1}, 1e-15);
}

TEST(QXVector3d, ChoosesAPerpendicularAxisToTheOppositeWithoutFallback) {
  for (QXVector3d direction :
      {QXVector3d(1, 0, 0), QXVector3d(0, 1, 0), QXVector3d(0, 0, 1), QXVector3d(1, 1, 1), QXVector3d(-1, 0.001, 0)}) {
    direction.Normalize();
    QXQuaternion4d const rotation = direction.GetRotationTo(-direction, QXVector3d::ZERO);
    ExpectNear(rotation * direction, -direction, 1e-12);
    EXPECT_NEAR(rotation.w, 0.0, 1e-15);
  }
}

TEST(QXVector3d, NeedsNoRotationWithAZeroVector) {
  EXPECT_EQ(QXVector3d::ZERO.GetRotationTo({1, 0, 0}, QXVector3d::ZERO), QXQuaternion4d::IDENTITY);
  EXPECT_EQ(QXVector3d::UNIT_X.GetRotationTo(QXVector3d::ZERO, QXVector3d::ZERO), QXQuaternion4d::IDENTITY);
}

}  // namespace
