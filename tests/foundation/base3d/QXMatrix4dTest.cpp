#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix3d.h>

#include "QXTestMath.h"

#include <algorithm>
#include <array>
#include <limits>
#include <type_traits>

using namespace QXC;
using QXTest::ExpectNear;
using QXTest::ToGlm;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

QXMatrix4d Counted() {
  QXMatrix4d matrix;
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) matrix[nRow][nColumn] = 4 * nRow + nColumn + 1;
  }
  return matrix;
}

QXMatrix4d Scaled(double dScale) {
  QXMatrix4d matrix;
  for (int nIndex = 0; nIndex < 4; ++nIndex) matrix[nIndex][nIndex] = dScale;
  return matrix;
}

int Invert(QXMatrix4d const& in, QXMatrix4d& out) {
  return QXMatrix4d::InvertMatrixd(&in.m[0][0], &out.m[0][0]);
}

TEST(QXMatrix4d, IsTheIdentityWhenDefaultConstructed) {
  EXPECT_EQ(QXMatrix4d(), QXMatrix4d::IDENTITY);
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) {
      EXPECT_EQ(QXMatrix4d::IDENTITY[nRow][nColumn], nRow == nColumn ? 1.0 : 0.0);
      EXPECT_EQ(QXMatrix4d::ZERO[nRow][nColumn], 0.0);
    }
  }
}

TEST(QXMatrix4d, HasAVirtualDestructor) {
  EXPECT_TRUE(std::has_virtual_destructor_v<QXMatrix4d>);
}

TEST(QXMatrix4d, ComparesAllSixteenValues) {
  for (int nIndex = 0; nIndex < 16; ++nIndex) {
    QXMatrix4d changed = Counted();
    changed[nIndex / 4][nIndex % 4] += 0.5;
    EXPECT_FALSE(changed == Counted()) << nIndex;
  }
  EXPECT_TRUE(Counted() == Counted());
}

TEST(QXMatrix4d, CopiesAllSixteenValues) {
  QXMatrix4d const source = Counted();
  QXMatrix4d const copy(source);
  QXMatrix4d assigned;
  assigned = source;
  EXPECT_EQ(copy, source);
  EXPECT_EQ(assigned, source);
}

TEST(QXMatrix4d, AppliesTheLeftFactorFirst) {
  QXMatrix4d move;
  move.SetTrans({1, 0, 0});
  QXMatrix4d scale;
  scale[0][0] = scale[1][1] = scale[2][2] = 2.0;
  EXPECT_EQ(QXVector3d(5, 0, 0).MultiplyMatrix(move * scale), QXVector3d(12, 0, 0));
  EXPECT_EQ(QXVector3d(5, 0, 0).MultiplyMatrix(scale * move), QXVector3d(11, 0, 0));
}

TEST(QXMatrix4d, StoresTheTranslationInRowThreeOnly) {
  QXMatrix4d matrix = Counted();
  matrix.SetTrans({-1, -2, -3});
  QXMatrix4d expected = Counted();
  expected[3][0] = -1;
  expected[3][1] = -2;
  expected[3][2] = -3;
  EXPECT_EQ(matrix, expected);
}

TEST(QXMatrix4d, TakesTheThreeByThreePartAndKeepsTheRest) {
  QXMatrix3d rotation;
  rotation.FromAxes({-1, -2, -3}, {-4, -5, -6}, {-7, -8, -9});
  QXMatrix4d matrix = Counted();
  matrix = rotation;
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) {
      double const dExpected = nRow < 3 && nColumn < 3 ? rotation[nRow][nColumn] : Counted()[nRow][nColumn];
      EXPECT_EQ(matrix[nRow][nColumn], dExpected);
    }
  }
}

TEST(QXMatrix4d, AgreesWithTheOracleOnProducts) {
  SCOPED_TRACE(QXTest::Random::kSeed);
  QXTest::Random random;
  for (int nRound = 0; nRound < 500; ++nRound) {
    QXMatrix4d const a = random.Matrix(10);
    QXMatrix4d const b = random.Matrix(10);
    ExpectNear(a * b, ToGlm(b) * ToGlm(a), 1e-12);
    QXMatrix4d flat;
    QXMatrix4d::MultMatricesd(&a.m[0][0], &b.m[0][0], &flat.m[0][0]);
    EXPECT_EQ(flat, a * b);
    double const in[4] = {random.Next(-1, 1), random.Next(-1, 1), random.Next(-1, 1), random.Next(-1, 1)};
    double out[4];
    QXMatrix4d::MultMatrixVecd(&a.m[0][0], in, out);
    glm::dvec4 const expected = ToGlm(a) * glm::dvec4(in[0], in[1], in[2], in[3]);
    for (int nIndex = 0; nIndex < 4; ++nIndex) EXPECT_NEAR(out[nIndex], expected[nIndex], 1e-13);
  }
}

TEST(QXMatrix4d, MultipliesIntoItsOwnArguments) {
  QXTest::Random random;
  QXMatrix4d const a = random.Matrix(10);
  QXMatrix4d const b = random.Matrix(10);
  QXMatrix4d left = a;
  QXMatrix4d::MultMatricesd(&left.m[0][0], &b.m[0][0], &left.m[0][0]);
  EXPECT_EQ(left, a * b);
  QXMatrix4d right = b;
  QXMatrix4d::MultMatricesd(&a.m[0][0], &right.m[0][0], &right.m[0][0]);
  EXPECT_EQ(right, a * b);
  double vector[4] = {1, 2, 3, 4};
  double expected[4];
  QXMatrix4d::MultMatrixVecd(&a.m[0][0], vector, expected);
  QXMatrix4d::MultMatrixVecd(&a.m[0][0], vector, vector);
  EXPECT_TRUE(std::equal(vector, vector + 4, expected));
}

TEST(QXMatrix4d, AgreesWithTheOracleOnInverses) {
  SCOPED_TRACE(QXTest::Random::kSeed);
  QXTest::Random random;
  for (int nRound = 0; nRound < 500; ++nRound) {
    QXMatrix4d const matrix = random.Matrix(10);
    QXMatrix4d inverse;
    ASSERT_EQ(Invert(matrix, inverse), 1);
    glm::dmat4 const expected = glm::inverse(ToGlm(matrix));
    double dLargest = 1.0;
    for (int nIndex = 0; nIndex < 16; ++nIndex)
      dLargest = std::max(dLargest, std::fabs(expected[nIndex / 4][nIndex % 4]));
    ExpectNear(inverse, expected, 1e-11 * dLargest * dLargest);
    EXPECT_EQ(matrix.Invert(), inverse);
    ExpectNear(matrix * inverse, QXMatrix4d::IDENTITY, 1e-10 * dLargest);
  }
}

TEST(QXMatrix4d, InvertsInPlace) {
  QXMatrix4d matrix = QXTest::Random().Matrix(10);
  QXMatrix4d const expected = matrix.Invert();
  ASSERT_EQ(QXMatrix4d::InvertMatrixd(&matrix.m[0][0], &matrix.m[0][0]), 1);
  EXPECT_EQ(matrix, expected);
}

TEST(QXMatrix4d, InvertsWhereTheDiagonalIsZero) {
  QXMatrix4d matrix = QXMatrix4d::ZERO;
  matrix[0][2] = matrix[1][3] = matrix[2][0] = matrix[3][1] = 4.0;
  QXMatrix4d inverse;
  ASSERT_EQ(Invert(matrix, inverse), 1);
  EXPECT_EQ(matrix * inverse, QXMatrix4d::IDENTITY);
}

struct SingularCase {
  char const* m_szName;
  std::array<double, 16> m_values;
};

class QXMatrix4dSingular : public testing::TestWithParam<SingularCase> {};

TEST_P(QXMatrix4dSingular, IsRefusedAndLeavesTheOutputAlone) {
  double out[16];
  std::fill_n(out, 16, 42.0);
  EXPECT_EQ(QXMatrix4d::InvertMatrixd(GetParam().m_values.data(), out), 0);
  for (double const dValue : out) EXPECT_EQ(dValue, 42.0);
  QXMatrix4d matrix;
  std::copy_n(GetParam().m_values.begin(), 16, &matrix.m[0][0]);
  EXPECT_EQ(matrix.Invert(), QXMatrix4d::ZERO);
}

INSTANTIATE_TEST_SUITE_P(Cases, QXMatrix4dSingular,
    testing::Values(SingularCase{"Zero", {}},
        SingularCase{"Counted", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
        // The last row is made of the first three, yet elimination alone leaves a pivot of rounding noise.
        SingularCase{"SumOfRows", {-2, 3, 1, -1, 9, -8, -6, 9, -7, -9, 2, -6, 21, -1, -12, 22}},
        SingularCase{"DifferenceOfRows", {5, -9, 9, -3, 2, 2, 1, 5, 9, 4, 3, -9, 1, 33, -22, -14}},
        SingularCase{"EqualRows", {0.1, 0.7, 0.3, 0.9, 0.1, 0.7, 0.3, 0.9, 5, 1, 2, 3, 7, 2, 8, 1}},
        SingularCase{"ZeroColumn", {1, 0, 3, 4, 5, 0, 7, 8, 9, 0, 1, 12, 13, 0, 15, 1}},
        SingularCase{"ZeroScaleInX", {0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1}},
        SingularCase{
            "NotANumber", {std::numeric_limits<double>::quiet_NaN(), 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}},
        SingularCase{"Infinite", {kInfinity, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}},
        SingularCase{"InverseOverflows", {1e-310, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}),
    [](testing::TestParamInfo<SingularCase> const& testCase) { return testCase.param.m_szName; });

TEST(QXMatrix4d, InvertsVerySmallAndVeryLargeScales) {
  for (double const dScale : {1e-120, 1e-10, 1e120}) {
    QXMatrix4d inverse;
    ASSERT_EQ(Invert(Scaled(dScale), inverse), 1) << dScale;
    for (int nIndex = 0; nIndex < 4; ++nIndex) EXPECT_DOUBLE_EQ(inverse[nIndex][nIndex], 1.0 / dScale);
  }
}

// The determinant of each, 1e-400 or 1e400 times that of the plain matrix, lies outside the range of doubles.
TEST(QXMatrix4d, InvertsWhereTwoRowsOrColumnsAreOfAnotherScale) {
  QXMatrix4d plain;
  std::copy_n(std::array<double, 16>{2, -1, 3, 1, 1, 4, -2, 2, -3, 1, 2, 5, 1, 2, 1, -4}.begin(), 16, &plain.m[0][0]);
  QXMatrix4d const expected = plain.Invert();
  for (double const dScale : {1e-200, 1e200}) {
    for (bool const bRows : {true, false}) {
      auto const scale = [&](int nLine) { return nLine < 2 ? dScale : 1.0; };
      QXMatrix4d matrix = plain;
      for (int nIndex = 0; nIndex < 16; ++nIndex) {
        matrix[nIndex / 4][nIndex % 4] *= scale(bRows ? nIndex / 4 : nIndex % 4);
      }
      QXMatrix4d inverse;
      ASSERT_EQ(Invert(matrix, inverse), 1) << dScale << (bRows ? " rows" : " columns");
      for (int nIndex = 0; nIndex < 16; ++nIndex) {  // what stretches rows shrinks the columns of the inverse
        inverse[nIndex / 4][nIndex % 4] *= scale(bRows ? nIndex % 4 : nIndex / 4);
      }
      ExpectNear(inverse, expected, 1e-15);
    }
  }
}

TEST(QXMatrix4d, InvertsATranslationFarBeyondTheEarth) {
  QXMatrix4d matrix;
  matrix.SetTrans({1e20, -3e20, 7});
  QXMatrix4d inverse;
  ASSERT_EQ(Invert(matrix, inverse), 1);
  EXPECT_EQ(inverse[3][0], -1e20);
  EXPECT_EQ(inverse[3][1], 3e20);
  EXPECT_EQ(inverse[3][2], -7.0);
}

TEST(QXMatrix4d, InvertsAnEarthCentredViewWithADeepProjection) {
  QXMatrix4d projection = QXMatrix4d::ZERO;  // perspective, near 1, far 1e9
  projection[0][0] = projection[1][1] = 1.7;
  projection[2][2] = -(1e9 + 1) / (1e9 - 1);
  projection[2][3] = -1.0;
  projection[3][2] = -2e9 / (1e9 - 1);
  QXQuaternion4d orientation(0.3, -0.2, 0.8, 0.4);
  orientation.Normalize();
  QXMatrix4d const matrix = QXMathEngine::MakeViewMatrix({3.9e6, 6.5e5, 5.0e6}, orientation) * projection;
  QXMatrix4d inverse;
  ASSERT_EQ(Invert(matrix, inverse), 1);
  double const in[4] = {3.9e6 + 10, 6.5e5 - 20, 5.0e6 + 5, 1.0};
  double out[4];
  QXMatrix4d::MultMatrixVecd(&matrix.m[0][0], in, out);
  QXMatrix4d::MultMatrixVecd(&inverse.m[0][0], out, out);
  for (int nIndex = 0; nIndex < 3; ++nIndex) EXPECT_NEAR(out[nIndex] / out[3], in[nIndex], 0.05);
}

}  // namespace
