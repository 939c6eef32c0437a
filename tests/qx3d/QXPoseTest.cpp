#include <apps/qx3d/QXPose.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector4d.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>
#include <random>

namespace QXApp {
namespace {

using QXC::QXVector3d;

constexpr double Pi = std::numbers::pi;

void ExpectNear(QXVector3d const& vec, double x, double y, double z) {
  EXPECT_NEAR(vec.x, x, 1e-12);
  EXPECT_NEAR(vec.y, y, 1e-12);
  EXPECT_NEAR(vec.z, z, 1e-12);
}

TEST(QXPose, HeadingTurnsClockwiseFromNorth) {
  QXPose pose;
  ExpectNear(pose.GetDirection(), 0.0, 1.0, 0.0);
  pose.m_dHeading = 0.5 * Pi;
  ExpectNear(pose.GetDirection(), 1.0, 0.0, 0.0);
}

TEST(QXPose, UpInThePictureIsUpInTheWorldAndNorthStraightDown) {
  QXPose pose;
  ExpectNear(pose.GetOrientation() * QXVector3d::UNIT_Y, 0.0, 0.0, 1.0);
  ExpectNear(pose.GetOrientation() * QXVector3d::UNIT_X, 1.0, 0.0, 0.0);
  pose.m_dElevation = -0.5 * Pi;
  ExpectNear(pose.GetDirection(), 0.0, 0.0, -1.0);
  ExpectNear(pose.GetOrientation() * QXVector3d::UNIT_Y, 0.0, 1.0, 0.0);
}

TEST(QXPose, EyeStandsAtItsDistanceBehindTheTarget) {
  QXPose pose;
  pose.m_vecTarget = QXVector3d(10.0, 20.0, 30.0);
  pose.m_dElevation = -0.25 * Pi;
  pose.m_dDistance = std::sqrt(2.0);
  ExpectNear(pose.GetEye(), 10.0, 19.0, 31.0);
}

TEST(QXPose, EyeAndTargetGiveThePoseBack) {
  for (QXVector3d const& vecEye : {QXVector3d(3.0, -4.0, 5.0), QXVector3d(-1.0, 2.0, -3.0), QXVector3d(0.0, 0.0, 9.0),
           QXVector3d(0.0, 0.0, -9.0), QXVector3d(604099.0, 5792153.0, 71.0)}) {
    QXPose pose;
    ASSERT_TRUE(pose.SetEyeAndTarget(vecEye, QXVector3d(0.5, 0.25, 0.0)));
    EXPECT_LT((pose.GetEye() - vecEye).Length(), 1e-9 * (1.0 + vecEye.Length()));
  }
}

TEST(QXPose, EyeOnItsTargetIsNoPose) {
  QXPose pose;
  EXPECT_FALSE(pose.SetEyeAndTarget(QXVector3d(1.0, 2.0, 3.0), QXVector3d(1.0, 2.0, 3.0)));
  EXPECT_EQ(pose.m_dDistance, 1.0);
}

TEST(QXPose, OrbitStopsAtStraightUpAndDown) {
  QXPose pose;
  pose.Orbit(0.0, -10.0);
  EXPECT_EQ(pose.m_dElevation, -0.5 * Pi);
  pose.Orbit(0.0, 10.0);
  EXPECT_EQ(pose.m_dElevation, 0.5 * Pi);
}

TEST(QXPose, PanMovesAlongThePictureByPartsOfTheDistance) {
  QXPose pose;
  pose.m_dDistance = 10.0;
  pose.Pan(0.5, 0.25);
  ExpectNear(pose.m_vecTarget, 5.0, 0.0, 2.5);
}

TEST(QXPose, ZoomKeepsTheTargetAndNeverEnds) {
  QXPose pose;
  for (int i = 0; i < 1000; ++i) pose.Zoom(0.5);
  EXPECT_GT(pose.m_dDistance, 0.0);
  for (int i = 0; i < 1000; ++i) pose.Zoom(2.0);
  EXPECT_TRUE(std::isfinite(pose.m_dDistance));
  ExpectNear(pose.m_vecTarget, 0.0, 0.0, 0.0);
}

/// Place of a point in the picture, -1 to 1 from edge to edge, by the matrices that a camera gets.
QXVector3d Project(QXPose const& pose, QXC::QXMatrix4d const& matProjection, QXVector3d const& vecPoint) {
  QXC::QXMatrix4d const mat = QXC::QXMathEngine::MakeViewMatrix(pose.GetEye(), pose.GetOrientation()) * matProjection;
  double const in[4] = {vecPoint.x, vecPoint.y, vecPoint.z, 1.0};
  double out[4];
  QXC::QXMatrix4d::MultMatrixVecd(&mat[0][0], in, out);
  return QXVector3d(out[0] / out[3], out[1] / out[3], out[2] / out[3]);
}

TEST(QXPose, FramedBoxLiesInThePictureAndTouchesTwoOppositeEdges) {
  unsigned int const nSeed = 37;
  std::printf("seed %u\n", nSeed);
  std::mt19937 random(nSeed);
  auto const draw = [&random](double dLow, double dHigh) {
    return dLow + (dHigh - dLow) * static_cast<double>(random() % 100000) / 1e5;
  };
  for (int nRound = 0; nRound < 300; ++nRound) {
    QXVector3d const vecMin(draw(-500.0, 500.0), draw(-500.0, 500.0), draw(-50.0, 50.0));
    QXC::QXBoundingBox const box(vecMin, vecMin + QXVector3d(draw(0.1, 900.0), draw(0.1, 900.0), draw(0.1, 90.0)));
    double const dAspect = draw(0.5, 3.0);
    QXPose const pose = FrameBox(box, draw(-Pi, Pi), draw(-0.5 * Pi, 0.4), 0.55, dAspect, 1.0);
    double dNear = 0.0;
    double dFar = 0.0;
    ComputeNearFar(pose, box, 0.0, dNear, dFar);
    QXC::QXMatrix4d const matProjection = MakePerspective(0.55, dAspect, dNear, dFar);
    double dMin[2] = {1e300, 1e300};
    double dMax[2] = {-1e300, -1e300};
    for (QXVector3d const& vecCorner : box.GetCorners()) {
      QXVector3d const vec = Project(pose, matProjection, vecCorner);
      EXPECT_LT(std::fabs(vec.z), 1.0) << nRound;
      dMin[0] = std::min(dMin[0], vec.x);
      dMax[0] = std::max(dMax[0], vec.x);
      dMin[1] = std::min(dMin[1], vec.y);
      dMax[1] = std::max(dMax[1], vec.y);
    }
    for (int i = 0; i < 2; ++i) {
      EXPECT_GT(dMin[i], -1.0 - 1e-9) << nRound;
      EXPECT_LT(dMax[i], 1.0 + 1e-9) << nRound;
    }
    bool const bWide = dMin[0] < -1.0 + 1e-6 && dMax[0] > 1.0 - 1e-6;
    bool const bHigh = dMin[1] < -1.0 + 1e-6 && dMax[1] > 1.0 - 1e-6;
    EXPECT_TRUE(bWide || bHigh) << nRound;
  }
}

TEST(QXPose, BoxOfOnePointIsFramedFromSomewhere) {
  QXPose const pose =
      FrameBox(QXC::QXBoundingBox(QXVector3d(1.0, 2.0, 3.0), QXVector3d(1.0, 2.0, 3.0)), 0.0, 0.0, 0.55, 1.0, 1.0);
  EXPECT_EQ(pose.m_dDistance, 1.0);
}

TEST(QXPose, NearPlaneStaysInFrontOfAnEyeInsideTheBox) {
  QXPose pose;
  double dNear = 0.0;
  double dFar = 0.0;
  ComputeNearFar(
      pose, QXC::QXBoundingBox(QXVector3d(-100.0, -100.0, -100.0), QXVector3d(100.0, 100.0, 100.0)), 0.0, dNear, dFar);
  EXPECT_GT(dNear, 0.0);
  EXPECT_GT(dFar, 100.0);
  // A model wholly behind the eye leaves a range as well.
  ComputeNearFar(
      pose, QXC::QXBoundingBox(QXVector3d(-1.0, -100.0, -1.0), QXVector3d(1.0, -90.0, 1.0)), 0.0, dNear, dFar);
  EXPECT_GT(dNear, 0.0);
  EXPECT_GT(dFar, dNear);
}

TEST(QXPose, PerspectiveMapsNearAndFarToTheEndsOfClipSpace) {
  QXC::QXMatrix4d const mat = MakePerspective(0.5 * Pi, 2.0, 3.0, 300.0);
  auto const depth = [&mat](double z) {
    double const in[4] = {0.0, 0.0, z, 1.0};
    double out[4];
    QXC::QXMatrix4d::MultMatrixVecd(&mat[0][0], in, out);
    return out[2] / out[3];
  };
  EXPECT_NEAR(depth(-3.0), -1.0, 1e-12);
  EXPECT_NEAR(depth(-300.0), 1.0, 1e-12);
  EXPECT_NEAR(mat[1][1], 1.0, 1e-12) << "45 degrees to each side";
  EXPECT_NEAR(mat[0][0], 0.5, 1e-12);
}

TEST(QXPose, FirstViewsAreObliqueTopSouthEastNorthWest) {
  double dHeading = 0.0;
  double dElevation = 0.0;
  GetViewAngles(0, dHeading, dElevation);
  EXPECT_NEAR(dElevation, -37.0 * Pi / 180.0, 1e-12);
  GetViewAngles(1, dHeading, dElevation);
  EXPECT_NEAR(dElevation, -0.5 * Pi, 1e-12);
  double const dHeadings[] = {0.0, -0.5 * Pi, Pi, 0.5 * Pi};
  for (int i = 0; i < 4; ++i) {
    GetViewAngles(2 + i, dHeading, dElevation);
    EXPECT_NEAR(dHeading, dHeadings[i], 1e-12);
    EXPECT_NEAR(dElevation, -8.0 * Pi / 180.0, 1e-12);
  }
}

TEST(QXPose, CellsTileTheTargetInWholePixels) {
  for (int nViews = 1; nViews <= 16; ++nViews) {
    for (int nWidth : {16, 1280, 1279, 853}) {
      int const nHeight = nWidth * 9 / 16 + 7;
      std::vector<int> vecCovered(static_cast<std::size_t>(nWidth * nHeight), 0);
      for (int i = 0; i < nViews; ++i) {
        QXCell const cell = GetViewCell(i, nViews, nWidth, nHeight);
        // As a viewport turns fractions into pixels.
        int const nLeft = static_cast<int>(cell.m_dLeft * nWidth);
        int const nBottom = static_cast<int>(cell.m_dBottom * nHeight);
        int const nCellWidth = static_cast<int>(cell.m_dWidth * nWidth);
        int const nCellHeight = static_cast<int>(cell.m_dHeight * nHeight);
        for (int y = nBottom; y < nBottom + nCellHeight; ++y)
          for (int x = nLeft; x < nLeft + nCellWidth; ++x) ++vecCovered.at(static_cast<std::size_t>(y * nWidth + x));
      }
      for (int nCount : vecCovered) ASSERT_EQ(nCount, 1) << nViews << " views, " << nWidth << " wide";
    }
  }
}

}  // namespace
}  // namespace QXApp
