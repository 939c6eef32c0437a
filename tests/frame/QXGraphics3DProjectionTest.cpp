// The renderer's arithmetic between world, window and viewport.
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include "QXTestGraphics3D.h"
#include "QXTestTarget.h"

namespace QXC {
namespace {

double const arrIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

struct Point {
  double x = -7.0;
  double y = -8.0;
  double z = -9.0;
};

int Project(double dX, double dY, double dZ, double const* pModel, double const* pProjection, int const* pViewport,
    Point& out) {
  return QXGraphics3D::Project(dX, dY, dZ, pModel, pProjection, pViewport, &out.x, &out.y, &out.z);
}

int UnProject(double dX, double dY, double dZ, double const* pModel, double const* pProjection, int const* pViewport,
    Point& out) {
  return QXGraphics3D::UnProject(dX, dY, dZ, pModel, pProjection, pViewport, &out.x, &out.y, &out.z);
}

/// Rows as a row vector sees them: a perspective with w = -z.
QXMatrix4d Perspective() {
  QXMatrix4d matrix = QXMatrix4d::ZERO;
  matrix[0][0] = 1.5;
  matrix[1][1] = 2.0;
  matrix[2][2] = -1.002;
  matrix[2][3] = -1.0;
  matrix[3][2] = -2.002;
  return matrix;
}

class QXGraphics3DProjection : public testing::Test {
protected:
  QXGraphics3DProjection() : m_Target(m_Log) {
    m_Target.m_nWidth = 640;
    m_Target.m_nHeight = 480;
    m_Graphics.m_matView[0][0] = m_Graphics.m_matView[1][1] = m_Graphics.m_matView[2][2] = 1.0;
    m_Graphics.m_matView[3][3] = 1.0;
    m_Graphics.m_matView[3][2] = -10.0;
    m_Graphics.m_matProjection = Perspective();
  }

  QXTestLog m_Log;
  QXTestTarget m_Target;
  QXTestGraphics3D m_Graphics;
};

TEST(QXGraphics3DFlattening, RowAndColumnFormsAreEachOthersTranspose) {
  QXMatrix4d matrix;
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) matrix[nRow][nColumn] = 10 * nRow + nColumn;
  }
  double arrRow[16];
  double arrColumn[16];
  QXGraphics3D::MakeRowGLMatrix(arrRow, matrix);
  QXGraphics3D::MakeColGLMatrix(arrColumn, matrix);
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      EXPECT_EQ(arrRow[4 * i + j], 10 * i + j);
      EXPECT_EQ(arrColumn[4 * i + j], 10 * j + i);
    }
  }
}

TEST_F(QXGraphics3DProjection, ProjectMapsClipSpaceToTheViewportAndDepthToUnit) {
  int const arrViewport[4] = {10, 20, 200, 100};
  Point out;
  ASSERT_EQ(Project(0.0, 0.0, 0.0, arrIdentity, arrIdentity, arrViewport, out), 1);
  EXPECT_EQ(out.x, 110.0);
  EXPECT_EQ(out.y, 70.0);
  EXPECT_EQ(out.z, 0.5);
  ASSERT_EQ(Project(-1.0, 1.0, 1.0, arrIdentity, arrIdentity, arrViewport, out), 1);
  EXPECT_EQ(out.x, 10.0);
  EXPECT_EQ(out.y, 120.0);
  EXPECT_EQ(out.z, 1.0);
}

TEST_F(QXGraphics3DProjection, ProjectAppliesTheModelFirst) {
  // A shift in the model and a scale in the projection: the scale must see the shifted point.
  double arrModel[16];
  double arrProjection[16];
  std::copy(arrIdentity, arrIdentity + 16, arrModel);
  std::copy(arrIdentity, arrIdentity + 16, arrProjection);
  arrModel[12] = 0.25;
  arrProjection[0] = 2.0;
  int const arrViewport[4] = {0, 0, 100, 100};
  Point out;
  ASSERT_EQ(Project(0.0, 0.0, 0.0, arrModel, arrProjection, arrViewport, out), 1);
  EXPECT_EQ(out.x, 75.0);
}

TEST_F(QXGraphics3DProjection, ProjectRefusesAPointNearTheEyePlaneAndLeavesTheOutputs) {
  int const arrViewport[4] = {0, 0, 2, 2};
  double arrProjection[16];
  for (double const dW : {0.5e-10, -0.5e-10, 0.0}) {
    std::copy(arrIdentity, arrIdentity + 16, arrProjection);
    arrProjection[15] = dW;
    Point out;
    EXPECT_EQ(Project(0.0, 0.0, 0.0, arrIdentity, arrProjection, arrViewport, out), 0) << dW;
    EXPECT_EQ(out.x, -7.0);
    EXPECT_EQ(out.y, -8.0);
    EXPECT_EQ(out.z, -9.0);
  }
  for (double const dW : {1e-10, -1e-10}) {
    std::copy(arrIdentity, arrIdentity + 16, arrProjection);
    arrProjection[15] = dW;
    Point out;
    EXPECT_EQ(Project(0.0, 0.0, 0.0, arrIdentity, arrProjection, arrViewport, out), 1) << dW;
    EXPECT_EQ(out.x, 1.0);
  }
}

TEST_F(QXGraphics3DProjection, UnProjectTakesWindowBackToWorld) {
  int const arrViewport[4] = {10, 20, 200, 100};
  Point out;
  ASSERT_EQ(UnProject(110.0, 70.0, 0.5, arrIdentity, arrIdentity, arrViewport, out), 1);
  EXPECT_EQ(out.x, 0.0);
  EXPECT_EQ(out.y, 0.0);
  EXPECT_EQ(out.z, 0.0);
  ASSERT_EQ(UnProject(10.0, 120.0, 1.0, arrIdentity, arrIdentity, arrViewport, out), 1);
  EXPECT_EQ(out.x, -1.0);
  EXPECT_EQ(out.y, 1.0);
  EXPECT_EQ(out.z, 1.0);
}

TEST_F(QXGraphics3DProjection, UnProjectRefusesASingularMatrixAndLeavesTheOutputs) {
  double arrSingular[16] = {};
  int const arrViewport[4] = {0, 0, 2, 2};
  Point out;
  EXPECT_EQ(UnProject(1.0, 1.0, 0.5, arrIdentity, arrSingular, arrViewport, out), 0);
  EXPECT_EQ(UnProject(1.0, 1.0, 0.5, arrSingular, arrIdentity, arrViewport, out), 0);
  EXPECT_EQ(out.x, -7.0);
  EXPECT_EQ(out.y, -8.0);
  EXPECT_EQ(out.z, -9.0);
}

TEST_F(QXGraphics3DProjection, UnProjectRefusesADegenerateWAndAcceptsTheBound) {
  int const arrViewport[4] = {0, 0, 2, 2};
  double arrModel[16];
  std::copy(arrIdentity, arrIdentity + 16, arrModel);
  Point out;
  arrModel[15] = 2e10;  // its inverse gives w = 0.5e-10
  EXPECT_EQ(UnProject(1.0, 1.0, 0.5, arrModel, arrIdentity, arrViewport, out), 0);
  EXPECT_EQ(out.x, -7.0);
  arrModel[15] = 1e10;
  EXPECT_EQ(1.0 / 1e10, 1e-10);
  EXPECT_EQ(UnProject(1.0, 1.0, 0.5, arrModel, arrIdentity, arrViewport, out), 1);
}

TEST_F(QXGraphics3DProjection, UnProjectReversesProjectOnRandomPoints) {
  unsigned int const nSeed = 20261121;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  std::uniform_real_distribution<double> side(-5.0, 5.0);
  std::uniform_real_distribution<double> depth(-50.0, 5.0);
  double arrModel[16];
  double arrProjection[16];
  QXGraphics3D::MakeRowGLMatrix(arrModel, m_Graphics.m_matView);
  QXGraphics3D::MakeRowGLMatrix(arrProjection, m_Graphics.m_matProjection);
  int const arrViewport[4] = {3, 5, 640, 480};
  for (int nRound = 0; nRound < 1000; ++nRound) {
    double const dX = side(random);
    double const dY = side(random);
    double const dZ = depth(random);
    // The slow way: the point by hand through view and projection, one coordinate after the other.
    double const dEyeZ = dZ - 10.0;
    double const dW = -dEyeZ;
    Point window;
    ASSERT_EQ(Project(dX, dY, dZ, arrModel, arrProjection, arrViewport, window), 1);
    ASSERT_NEAR(window.x, (dX * 1.5 / dW * 0.5 + 0.5) * 640 + 3, 1e-9);
    ASSERT_NEAR(window.y, (dY * 2.0 / dW * 0.5 + 0.5) * 480 + 5, 1e-9);
    ASSERT_NEAR(window.z, (dEyeZ * -1.002 - 2.002) / dW * 0.5 + 0.5, 1e-9);
    Point back;
    ASSERT_EQ(UnProject(window.x, window.y, window.z, arrModel, arrProjection, arrViewport, back), 1);
    ASSERT_NEAR(back.x, dX, 1e-8);
    ASSERT_NEAR(back.y, dY, 1e-8);
    ASSERT_NEAR(back.z, dZ, 1e-8);
  }
}

// --- The vector forms ---

TEST_F(QXGraphics3DProjection, VectorProjectDoesNothingWithoutACurrentViewport) {
  m_Target.AddViewport(nullptr, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  QXVector3d vecWindow(1.0, 2.0, 3.0);
  m_Graphics.Project(QXVector3d(0.0, 0.0, 0.0), vecWindow);
  EXPECT_TRUE(vecWindow == QXVector3d(1.0, 2.0, 3.0));
}

TEST_F(QXGraphics3DProjection, VectorProjectUsesTheCurrentViewportOnly) {
  QXViewport viewport(100, 50, 200, 100);
  m_Graphics.m_pViewport = &viewport;
  m_Target.AddViewport(nullptr, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  QXVector3d vecWindow;
  m_Graphics.Project(QXVector3d(0.0, 0.0, 0.0), vecWindow);
  EXPECT_EQ(vecWindow.x, 200.0);
  EXPECT_EQ(vecWindow.y, 100.0);
}

TEST_F(QXGraphics3DProjection, VectorUnProjectPrefersTheViewportUnderThePoint) {
  QXViewport current(0, 0, 640, 480);
  m_Graphics.m_pViewport = &current;
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  m_Target.AddViewport(nullptr, 0, 0.5, 0.0, 0.5, 1.0);  // right half: its centre is (480, 240)
  QXVector3d vecWorld;
  m_Graphics.UnProject(QXVector3d(480.0, 240.0, 0.5), vecWorld);
  EXPECT_NEAR(vecWorld.x, 0.0, 1e-12);
  // Left half: no viewport stands there, the current one is used, whose centre is (320, 240).
  m_Graphics.UnProject(QXVector3d(160.0, 240.0, 0.5), vecWorld);
  double const dDepth = -(vecWorld.z - 10.0);
  EXPECT_NEAR(vecWorld.x, -0.5 * dDepth / 1.5, 1e-9);
}

TEST_F(QXGraphics3DProjection, VectorUnProjectLooksUpTheTruncatedPoint) {
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  m_Target.AddViewport(nullptr, 0, 0.5, 0.0, 0.5, 1.0);
  QXVector3d vecWorld(4.0, 5.0, 6.0);
  m_Graphics.UnProject(QXVector3d(319.9, 240.0, 0.5), vecWorld);
  EXPECT_TRUE(vecWorld == QXVector3d(4.0, 5.0, 6.0));
  m_Graphics.UnProject(QXVector3d(320.9, 240.0, 0.5), vecWorld);
  EXPECT_FALSE(vecWorld == QXVector3d(4.0, 5.0, 6.0));
  // Beyond the range of int in either direction no pixel is hit, and nothing is undefined.
  vecWorld = QXVector3d(4.0, 5.0, 6.0);
  for (double const dFar : {1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
    m_Graphics.UnProject(QXVector3d(dFar, 240.0, 0.5), vecWorld);
    EXPECT_TRUE(vecWorld == QXVector3d(4.0, 5.0, 6.0));
  }
}

TEST_F(QXGraphics3DProjection, VectorUnProjectTruncatesTowardZeroOnBothAxes) {
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  m_Target.AddViewport(nullptr, 0, 0.0, 0.0, 1.0, 1.0);
  // Just outside on the left and below counts as the first pixel, a fraction below the top as the last one.
  for (QXVector3d const& vecWindow : {QXVector3d(-0.9, -0.9, 0.5), QXVector3d(639.9, 479.9, 0.5)}) {
    QXVector3d vecWorld(4.0, 5.0, 6.0);
    m_Graphics.UnProject(vecWindow, vecWorld);
    EXPECT_FALSE(vecWorld == QXVector3d(4.0, 5.0, 6.0)) << vecWindow.x;
  }
  for (QXVector3d const& vecWindow : {QXVector3d(-1.0, 0.0, 0.5), QXVector3d(0.0, -1.0, 0.5),
           QXVector3d(640.0, 0.0, 0.5), QXVector3d(0.0, 480.0, 0.5)}) {
    QXVector3d vecWorld(4.0, 5.0, 6.0);
    m_Graphics.UnProject(vecWindow, vecWorld);
    EXPECT_TRUE(vecWorld == QXVector3d(4.0, 5.0, 6.0)) << vecWindow.x << " " << vecWindow.y;
  }
}

TEST_F(QXGraphics3DProjection, VectorFormsTakeAViewportOfNoSizeForOnePixel) {
  QXViewport viewport(10, 20, 0, 0);
  m_Graphics.m_pViewport = &viewport;
  QXVector3d vecWindow;
  m_Graphics.Project(QXVector3d(0.0, 0.0, 0.0), vecWindow);
  EXPECT_EQ(vecWindow.x, 10.5);
  EXPECT_EQ(vecWindow.y, 20.5);
  QXVector3d vecWorld(4.0, 5.0, 6.0);
  m_Graphics.UnProject(vecWindow, vecWorld);
  EXPECT_NEAR(vecWorld.Length(), 0.0, 1e-9);
}

TEST_F(QXGraphics3DProjection, VectorUnProjectDoesNothingWithoutAnyViewport) {
  QXVector3d vecWorld(1.0, 2.0, 3.0);
  m_Graphics.UnProject(QXVector3d(0.0, 0.0, 0.0), vecWorld);
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  m_Graphics.UnProject(QXVector3d(0.0, 0.0, 0.0), vecWorld);
  EXPECT_TRUE(vecWorld == QXVector3d(1.0, 2.0, 3.0));
}

TEST_F(QXGraphics3DProjection, VectorFormsSurviveADegenerateViewSilently) {
  QXViewport viewport(0, 0, 640, 480);
  m_Graphics.m_pViewport = &viewport;
  m_Graphics.m_matView = QXMatrix4d::ZERO;
  QXVector3d vecOut;
  m_Graphics.Project(QXVector3d(1.0, 1.0, 1.0), vecOut);
  m_Graphics.UnProject(QXVector3d(1.0, 1.0, 1.0), vecOut);
  EXPECT_GE(m_Graphics.ComputerOnePix2RealLength(QXVector3d(1.0, 1.0, 1.0)), 0.0);
}

TEST_F(QXGraphics3DProjection, OnePixelLengthIsTheHeightOfAPixelAtThePointsDepth) {
  QXViewport viewport(0, 0, 640, 480);
  m_Graphics.m_pViewport = &viewport;
  // At distance d the 480 pixels show a height of 2 d / 2.0.
  EXPECT_NEAR(m_Graphics.ComputerOnePix2RealLength(QXVector3d(0.0, 0.0, 0.0)), 10.0 / 480.0, 1e-12);
  EXPECT_NEAR(m_Graphics.ComputerOnePix2RealLength(QXVector3d(3.0, -2.0, -90.0)), 100.0 / 480.0, 1e-10);
}

TEST_F(QXGraphics3DProjection, OnePixelLengthIsMeasuredStraightDownTheScreen) {
  // Twice as wide as high a pixel: a step to the side would be another length.
  QXViewport wide(0, 0, 320, 480);
  m_Graphics.m_pViewport = &wide;
  m_Graphics.m_matProjection[0][0] = 2.0;
  EXPECT_NEAR(m_Graphics.ComputerOnePix2RealLength(QXVector3d(0.0, 0.0, 0.0)), 10.0 / 480.0, 1e-12);

  // A quarter of a pixel above the lower edge of the upper view: one pixel down lies in the lower view, where the same
  // window point is another place in the world; one pixel up would stay in the upper view.
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  m_Target.AddViewport(nullptr, 0, 0.0, 0.0, 1.0, 0.5);
  m_Graphics.m_pViewport = m_Target.AddViewport(nullptr, 1, 0.0, 0.5, 1.0, 0.5);
  double const dY = 5.0 * (0.25 / 240.0 * 2.0 - 1.0);
  double const dLowerY = 5.0 * (239.25 / 240.0 * 2.0 - 1.0);
  EXPECT_NEAR(m_Graphics.ComputerOnePix2RealLength(QXVector3d(0.0, dY, 0.0)), dLowerY - dY, 1e-9);
}

// --- Viewport lookup ---

TEST_F(QXGraphics3DProjection, LogicalLookupGivesTheFirstHitByNumber) {
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  QXViewport* const pFirst = m_Target.AddViewport(nullptr, 0, 0.0, 0.0, 0.5, 1.0);
  QXViewport* const pSecond = m_Target.AddViewport(nullptr, 1, 0.0, 0.0, 1.0, 1.0);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(0, 0)), pFirst);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(319, 479)), pFirst);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(320, 0)), pSecond);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(639, 479)), pSecond);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(640, 0)), nullptr);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(0, 480)), nullptr);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(-1, 0)), nullptr);
}

TEST_F(QXGraphics3DProjection, LookupSkipsMissingNumbersAndStopsAtTheCount) {
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  QXViewport* const pSecond = m_Target.AddViewport(nullptr, 1, 0.0, 0.0, 1.0, 1.0);
  // One viewport under number 1: only number 0 is asked for, and there is none.
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(5, 5)), nullptr);
  m_Target.AddViewport(nullptr, 7, 0.0, 0.0, 1.0, 1.0);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(5, 5)), pSecond);
}

TEST_F(QXGraphics3DProjection, LookupTakesAViewportOfNoSizeForOnePixel) {
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  QXViewport* const pViewport = m_Target.AddViewport(nullptr, 0, 0.5, 0.25, 0.0, 0.0);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(320, 120)), pViewport);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(321, 120)), nullptr);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(320, 121)), nullptr);
}

TEST_F(QXGraphics3DProjection, LookupHoldsRectanglesThatLeaveTheRangeOfInt) {
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  QXViewport* const pViewport = m_Target.AddViewport(nullptr, 0, 0.0, 0.0, 1.0, 1.0);
  pViewport->m_nActLeft = std::numeric_limits<int>::max() - 1;
  pViewport->m_nActWidth = 640;
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(std::numeric_limits<int>::max() - 1, 5)), pViewport);
  EXPECT_EQ(m_Graphics.GetViewportByLogicalPosition(QdcPoint(std::numeric_limits<int>::min(), 5)), nullptr);
}

TEST_F(QXGraphics3DProjection, MouseLookupCountsFromTheTop) {
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  QXViewport* const pTopRow = m_Target.AddViewport(nullptr, 0, 0.0, 0.0, 1.0, 1.0);
  pTopRow->m_nActBottom = 479;
  pTopRow->m_nActHeight = 1;
  EXPECT_EQ(m_Graphics.GetViewportByMousePosition(QdcPoint(3, 0)), pTopRow);
  EXPECT_EQ(m_Graphics.GetViewportByMousePosition(QdcPoint(3, 1)), nullptr);
  EXPECT_EQ(m_Graphics.GetViewportByMousePosition(QdcPoint(3, -1)), nullptr);
  EXPECT_EQ(m_Graphics.GetViewportByMousePosition(QdcPoint(3, std::numeric_limits<int>::min())), nullptr);
}

TEST_F(QXGraphics3DProjection, MouseLookupTakesATargetOfNoHeightForOnePixel) {
  m_Graphics.m_pActiveRenderTarget = &m_Target;
  m_Target.m_nHeight = 0;
  QXViewport* const pViewport = m_Target.AddViewport(nullptr, 0, 0.0, 0.0, 1.0, 1.0);
  EXPECT_EQ(m_Graphics.GetViewportByMousePosition(QdcPoint(3, 0)), pViewport);
  EXPECT_EQ(m_Graphics.GetViewportByMousePosition(QdcPoint(3, 1)), nullptr);
}

}  // namespace
}  // namespace QXC
