#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>

#include "QXTestMath.h"

#include <glm/gtc/matrix_transform.hpp>

#include <algorithm>
#include <iterator>
#include <limits>

using namespace QXC;
using QXTest::ExpectNear;
using QXTest::ToGlm;

namespace {

TEST(QXMathEngine, MapsTheEyeToTheOriginAndItsAxesToTheirNames) {
  SCOPED_TRACE(QXTest::Random::kSeed);
  QXTest::Random random;
  for (int nRound = 0; nRound < 200; ++nRound) {
    QXVector3d const eye = random.Vector(1000);
    QXQuaternion4d const orientation = random.Rotation();
    QXMatrix4d const view = QXMathEngine::MakeViewMatrix(eye, orientation);
    ExpectNear(eye.MultiplyMatrix(view), QXVector3d::ZERO, 1e-10);
    ExpectNear((eye + orientation * QXVector3d::UNIT_X).MultiplyMatrix(view), QXVector3d::UNIT_X, 1e-10);
    ExpectNear((eye + orientation * QXVector3d::UNIT_Y).MultiplyMatrix(view), QXVector3d::UNIT_Y, 1e-10);
    ExpectNear((eye - orientation * QXVector3d::UNIT_Z).MultiplyMatrix(view), -QXVector3d::UNIT_Z, 1e-10);
    ExpectNear(
        view, glm::inverse(glm::translate(glm::dmat4(1.0), ToGlm(eye)) * glm::mat4_cast(ToGlm(orientation))), 1e-9);
  }
}

TEST(QXMathEngine, KeepsTheFourthColumnOfAViewAffine) {
  QXMatrix4d const view = QXMathEngine::MakeViewMatrix({1, 2, 3}, QXQuaternion4d());
  EXPECT_EQ(view[0][3], 0.0);
  EXPECT_EQ(view[1][3], 0.0);
  EXPECT_EQ(view[2][3], 0.0);
  EXPECT_EQ(view[3][3], 1.0);
}

TEST(QXMathEngine, AgreesWithTheOracleOnOrthographicProjections) {
  ExpectNear(QXMathEngine::ComputeOrthoMatrix(-3, 7, -2, 11, 1, 20000),
      glm::orthoRH_NO(-3.0, 7.0, -2.0, 11.0, 1.0, 20000.0), 1e-15);
}

TEST(QXMathEngine, MapsTheOrthographicBoxToMinusOneToOne) {
  QXMatrix4d const projection = QXMathEngine::ComputeOrthoMatrix(-3, 7, -2, 11, 1, 20000);
  ExpectNear(QXVector3d(-3, -2, -1).MultiplyMatrix(projection), {-1, -1, -1}, 1e-12);
  ExpectNear(QXVector3d(7, 11, -20000).MultiplyMatrix(projection), {1, 1, 1}, 1e-12);
}

TEST(QXMathEngine, AgreesWithTheOracleOnPerspectiveProjections) {
  ExpectNear(QXMathEngine::ComputeFrustumMatrix(-3, 7, -2, 11, 1, 20000),
      glm::frustumRH_NO(-3.0, 7.0, -2.0, 11.0, 1.0, 20000.0), 1e-12);
  ExpectNear(
      QXMathEngine::ComputePerspectiveMatrix(0.8, 1.5, 0.5, 900), glm::perspectiveRH_NO(0.8, 1.5, 0.5, 900.0), 1e-12);
}

/// Depth of a point of view space after the division.
double DepthOf(QXMatrix4d const& matProjection, QXVector3d const& point) {
  auto const column = [&](int n) {
    return point.x * matProjection[0][n] + point.y * matProjection[1][n] + point.z * matProjection[2][n] +
           matProjection[3][n];
  };
  return column(2) / column(3);
}

TEST(QXMathEngine, ObliqueDepthPutsThePlaneNearAndTheOppositeCornerFar) {
  QXMatrix4d const matBefore = QXMathEngine::ComputeFrustumMatrix(-1.0, 2.0, -1.0, 1.0, 1.0, 100.0);
  QXMatrix4d mat = matBefore;
  // Kept is what lies beyond z = -5, leaning a little to the right and downwards.
  QXMathEngine::ApplyObliqueDepth(mat, QXPlane(QXVector3d(0.1, -0.2, -1.0), -5.0));
  EXPECT_NEAR(DepthOf(mat, {0.0, 0.0, -5.0}), -1.0, 1e-12);
  EXPECT_NEAR(DepthOf(mat, {2.0, 1.0, -5.0}), -1.0, 1e-12);
  EXPECT_LT(DepthOf(mat, {0.0, 0.0, -4.0}), -1.0);
  EXPECT_GT(DepthOf(mat, {0.0, 0.0, -6.0}), -1.0);
  // The corner at the far right bottom.
  EXPECT_NEAR(DepthOf(mat, {200.0, -100.0, -100.0}), 1.0, 1e-12);
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int const nColumn : {0, 1, 3}) EXPECT_EQ(mat[nRow][nColumn], matBefore[nRow][nColumn]);
  }
}

TEST(QXMathEngine, ObliqueDepthOfNoPlaneChangesNothing) {
  QXMatrix4d const matBefore = QXMathEngine::ComputePerspectiveMatrix(1.0, 1.5, 1.0, 100.0);
  QXMatrix4d mat = matBefore;
  QXMathEngine::ApplyObliqueDepth(mat, QXPlane());
  EXPECT_EQ(mat, matBefore);
  QXMathEngine::ApplyObliqueDepth(mat, QXPlane(QXVector3d(0.0, std::numeric_limits<double>::infinity(), 0.0), 1.0));
  EXPECT_EQ(mat, matBefore);
}

TEST(QXMathEngine, RoundsUpToPowersOfTwo) {
  EXPECT_EQ(QXMathEngine::NextP2(0), 1U);
  EXPECT_EQ(QXMathEngine::NextP2(1), 1U);
  EXPECT_EQ(QXMathEngine::NextP2(2), 2U);
  EXPECT_EQ(QXMathEngine::NextP2(3), 4U);
  EXPECT_EQ(QXMathEngine::NextP2(4), 4U);
  EXPECT_EQ(QXMathEngine::NextP2(1023), 1024U);
  EXPECT_EQ(QXMathEngine::NextP2(1025), 2048U);
  EXPECT_EQ(QXMathEngine::NextP2(0x80000000U), 0x80000000U);
  EXPECT_EQ(QXMathEngine::NextP2(0x80000001U), 0U);
}

TEST(QXMathEngine, GivesTheExponentOfThatPower) {
  EXPECT_EQ(QXMathEngine::NextLog2(0), 0U);
  EXPECT_EQ(QXMathEngine::NextLog2(1), 0U);
  EXPECT_EQ(QXMathEngine::NextLog2(2), 1U);
  EXPECT_EQ(QXMathEngine::NextLog2(3), 2U);
  EXPECT_EQ(QXMathEngine::NextLog2(1024), 10U);
  EXPECT_EQ(QXMathEngine::NextLog2(1025), 11U);
  EXPECT_EQ(QXMathEngine::NextLog2(0x80000000U), 31U);
  EXPECT_EQ(QXMathEngine::NextLog2(0x80000001U), 32U);
}

TEST(QXMathEngine, ScalesAnImage) {
  unsigned char const arrSource[] = {0, 100, 200};
  unsigned char arrTarget[7] = {9, 9, 9, 9, 9, 9, 9};
  EXPECT_EQ(QXMathEngine::ScaleImageInternal(1, 3, 1, arrSource, 6, 1, arrTarget, -1), 1);
  unsigned char const arrExpected[] = {0, 25, 75, 125, 175, 200, 9};
  EXPECT_TRUE(std::equal(std::begin(arrTarget), std::end(arrTarget), arrExpected));
}

TEST(QXMathEngine, BelievesALengthThatHoldsThePixels) {
  unsigned char const arrSource[12] = {};
  unsigned char arrTarget[48] = {};
  EXPECT_EQ(QXMathEngine::ScaleImageInternal(3, 2, 2, arrSource, 4, 4, arrTarget, 12), 1);
  EXPECT_EQ(QXMathEngine::ScaleImageInternal(3, 2, 2, arrSource, 4, 4, arrTarget, 1000), 1);
}

TEST(QXMathEngine, RefusesToScaleWhatIsNoImage) {
  unsigned char const arrSource[16] = {};
  unsigned char arrTarget[16];
  std::fill(std::begin(arrTarget), std::end(arrTarget), static_cast<unsigned char>(9));
  auto const scale = [&](int nBytes, int nWidth, int nHeight, int nNewWidth, int nNewHeight, int nLength) {
    return QXMathEngine::ScaleImageInternal(
        nBytes, nWidth, nHeight, arrSource, nNewWidth, nNewHeight, arrTarget, nLength);
  };
  EXPECT_EQ(scale(0, 2, 2, 1, 1, -1), 0);
  EXPECT_EQ(scale(-1, 2, 2, 1, 1, -1), 0);
  EXPECT_EQ(scale(5, 1, 1, 2, 1, -1), 0);
  for (int const nEdge : {0, -1}) {
    EXPECT_EQ(scale(1, nEdge, 2, 1, 1, -1), 0);
    EXPECT_EQ(scale(1, 2, nEdge, 1, 1, -1), 0);
    EXPECT_EQ(scale(1, 2, 2, nEdge, 1, -1), 0);
    EXPECT_EQ(scale(1, 2, 2, 1, nEdge, -1), 0);
  }
  EXPECT_EQ(scale(4, 2, 2, 1, 1, 15), 0) << "one byte short";
  EXPECT_EQ(scale(1, 2, 2, 1, 1, 0), 0);
  EXPECT_EQ(scale(1, 2, 2, 1, 1, -2), 0);
  EXPECT_EQ(scale(4, 46341, 46341, 1, 1, 16), 0) << "a product of 32 bits would pass";
  EXPECT_EQ(QXMathEngine::ScaleImageInternal(1, 2, 2, nullptr, 1, 1, arrTarget, -1), 0);
  EXPECT_EQ(QXMathEngine::ScaleImageInternal(1, 2, 2, arrSource, 1, 1, nullptr, -1), 0);
  for (unsigned char const nByte : arrTarget) EXPECT_EQ(nByte, 9);
}

TEST(QXMathEngine, HoldsTheKindOfRendererForTheProcess) {
  EXPECT_EQ(QXMathEngine::m_msGraphics3DType, GRAPHICS3D_UNKNOWN);
  QXMathEngine::m_msGraphics3DType = GRAPHICS3D_DEFERRED;
  EXPECT_EQ(QXMathEngine::m_msGraphics3DType, 7);
  QXMathEngine::m_msGraphics3DType = GRAPHICS3D_UNKNOWN;
}

}  // namespace
