/// @file
/// Comparisons and random values for the tests of 3D arithmetic.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <glm/glm.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <gtest/gtest.h>

#include <random>

namespace QXTest {

/// Repeatable random values; the seed is printed with a failure by SCOPED_TRACE.
class Random {
public:
  static constexpr unsigned int kSeed = 20261121;
  double Next(double dLow, double dHigh) { return std::uniform_real_distribution<double>(dLow, dHigh)(m_engine); }
  QXC::QXVector3d Vector(double dReach) {
    return {Next(-dReach, dReach), Next(-dReach, dReach), Next(-dReach, dReach)};
  }
  QXC::QXQuaternion4d Rotation() {
    QXC::QXQuaternion4d rotation(Next(-1, 1), Next(-1, 1), Next(-1, 1), Next(-1, 1));
    rotation.Normalize();
    return rotation;
  }
  QXC::QXMatrix4d Matrix(double dReach) {
    QXC::QXMatrix4d matrix;
    for (int nRow = 0; nRow < 4; ++nRow) {
      for (int nColumn = 0; nColumn < 4; ++nColumn) matrix[nRow][nColumn] = Next(-dReach, dReach);
    }
    return matrix;
  }

private:
  std::mt19937_64 m_engine{kSeed};
};

/// Rows for row vectors lie in memory as columns for column vectors do: the same sixteen numbers.
inline glm::dmat4 ToGlm(QXC::QXMatrix4d const& matrix) {
  return glm::make_mat4(&matrix.m[0][0]);
}
inline glm::dvec3 ToGlm(QXC::QXVector3d const& vector) {
  return {vector.x, vector.y, vector.z};
}
inline glm::dquat ToGlm(QXC::QXQuaternion4d const& q) {
  return {q.w, q.x, q.y, q.z};
}

inline void ExpectNear(QXC::QXVector3d const& actual, QXC::QXVector3d const& expected, double dTolerance) {
  EXPECT_NEAR(actual.x, expected.x, dTolerance);
  EXPECT_NEAR(actual.y, expected.y, dTolerance);
  EXPECT_NEAR(actual.z, expected.z, dTolerance);
}

inline void ExpectNear(QXC::QXMatrix4d const& actual, glm::dmat4 const& expected, double dTolerance) {
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) {
      EXPECT_NEAR(actual[nRow][nColumn], expected[nRow][nColumn], dTolerance)
          << "row " << nRow << " column " << nColumn;
    }
  }
}

inline void ExpectNear(QXC::QXMatrix4d const& actual, QXC::QXMatrix4d const& expected, double dTolerance) {
  ExpectNear(actual, ToGlm(expected), dTolerance);
}

}  // namespace QXTest
