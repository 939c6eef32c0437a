#include <QxGraphics3D/view/QXCamera.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>

using namespace QXC;

namespace {

constexpr double kPi = std::numbers::pi;

class ProbeCamera : public QXCamera {
public:
  using QXCamera::m_bCameraStateChanged;
  using QXCamera::m_bFixedYawAxis;
  using QXCamera::m_bViewOutOfDate;
  using QXCamera::m_dFov;
  using QXCamera::m_matView;
  using QXCamera::m_pViewport;
  using QXCamera::m_qOrientation;
  using QXCamera::m_strName;
  using QXCamera::m_vecFixedYawAxis;
  using QXCamera::m_vecPosition;
  using QXCamera::m_vecRelativeOrigin;
  using QXCamera::m_vecRelativePosition;

  void UpdateViewMatrix(QXViewport* pViewport) override {
    m_strCalls += "view ";
    m_pGiven = pViewport;
    m_pHeldThen = m_pViewport;
  }
  void UpdateProMatrix() override { m_strCalls += "projection "; }

  std::string m_strCalls;
  QXViewport* m_pGiven = nullptr;
  QXViewport* m_pHeldThen = nullptr;
};

void ExpectNear(QXVector3d const& actual, QXVector3d const& expected, double dTolerance = 1e-12) {
  EXPECT_NEAR(actual.x, expected.x, dTolerance);
  EXPECT_NEAR(actual.y, expected.y, dTolerance);
  EXPECT_NEAR(actual.z, expected.z, dTolerance);
}

void RenderNothing(QXInt64, QXCamera*, QXViewport*, unsigned char) {}

TEST(QXCamera, StartsWithItsDefaults) {
  ProbeCamera const camera;
  EXPECT_EQ(camera.m_bRefresh, 1);
  EXPECT_EQ(camera.m_bCameraFlagA, 1);
  EXPECT_EQ(camera.m_bCameraFlagB, 1);
  EXPECT_EQ(camera.m_bTargetNotifyPending, 1);
  EXPECT_EQ(camera.m_bCameraFlagC, 0);
  EXPECT_EQ(camera.m_nSceneRenderHandle, 0);
  EXPECT_EQ(camera.m_pfnSceneRender, nullptr);
  EXPECT_EQ(camera.GetViewport(), nullptr);
  EXPECT_EQ(camera.m_fCameraValue, 0.0F);
  EXPECT_EQ(camera.m_vecReserved, QXVector3d::ZERO);
  EXPECT_EQ(camera.GetPosition(), QXVector3d::ZERO);
  EXPECT_EQ(camera.GetRelativeOrigin(), QXVector3d::ZERO);
  EXPECT_EQ(camera.GetRelativePosition(), QXVector3d::ZERO);
  EXPECT_EQ(camera.GetOrientation(), QXQuaternion4d::IDENTITY);
  EXPECT_EQ(camera.m_bFixedYawAxis, 1);
  EXPECT_EQ(camera.m_vecFixedYawAxis, QXVector3d::UNIT_Z);
  EXPECT_EQ(camera.IsCameraStateChanged(), 1);
  EXPECT_TRUE(camera.GetName() == L"Camera");
  EXPECT_EQ(camera.GetFov(), 0.7853981633974483);  // the frustum's own defaults stay
  EXPECT_EQ(camera.m_bViewOutOfDate, 0);
}

TEST(QXCamera, CopiesEveryMember) {
  QXViewport viewport;
  ProbeCamera source;
  source.m_bRefresh = source.m_bCameraFlagA = source.m_bCameraFlagB = source.m_bTargetNotifyPending = 0;
  source.m_bCameraFlagC = 1;
  source.SetSceneRenderFunc(&RenderNothing, 77);
  source.NotifyViewport(&viewport);
  source.m_fCameraValue = 2.5F;
  source.m_vecReserved = {7, 8, 9};
  source.SetRelativeOrigin({1, 1, 1});
  source.SetPosition(5, 6, 7);
  source.SetOrientation(QXQuaternion4d(0, 1, 0, 0));
  source.m_bFixedYawAxis = 0;
  source.m_vecFixedYawAxis = {0, 1, 0};
  source.SetCameraStateChanged(0);
  source.SetName(L"Left");
  source.SetFov(0.5);
  ProbeCamera const copy(source);
  ProbeCamera assigned;
  assigned = source;
  for (ProbeCamera const* pCopy : {&copy, static_cast<ProbeCamera const*>(&assigned)}) {
    EXPECT_EQ(pCopy->m_bRefresh, 0);
    EXPECT_EQ(pCopy->m_bCameraFlagA, 0);
    EXPECT_EQ(pCopy->m_bCameraFlagB, 0);
    EXPECT_EQ(pCopy->m_bTargetNotifyPending, 0);
    EXPECT_EQ(pCopy->m_bCameraFlagC, 1);
    EXPECT_EQ(pCopy->m_nSceneRenderHandle, 77);
    EXPECT_EQ(pCopy->m_pfnSceneRender, &RenderNothing);
    EXPECT_EQ(pCopy->GetViewport(), &viewport);
    EXPECT_EQ(pCopy->m_fCameraValue, 2.5F);
    EXPECT_EQ(pCopy->m_vecReserved, QXVector3d(7, 8, 9));
    EXPECT_EQ(pCopy->GetPosition(), QXVector3d(5, 6, 7));
    EXPECT_EQ(pCopy->GetRelativeOrigin(), QXVector3d(1, 1, 1));
    EXPECT_EQ(pCopy->GetRelativePosition(), QXVector3d(4, 5, 6));
    EXPECT_EQ(pCopy->GetOrientation(), QXQuaternion4d(0, 1, 0, 0));
    EXPECT_EQ(pCopy->m_bFixedYawAxis, 0);
    EXPECT_EQ(pCopy->m_vecFixedYawAxis, QXVector3d(0, 1, 0));
    EXPECT_EQ(pCopy->IsCameraStateChanged(), 0);
    EXPECT_TRUE(pCopy->GetName() == L"Left");
    EXPECT_EQ(pCopy->GetFov(), 0.5);
    EXPECT_EQ(pCopy->m_bViewOutOfDate, 1);
  }
}

TEST(QXCamera, StoresNameStateAndRenderFunction) {
  QXCamera camera;
  camera.SetName(L"Overview");
  EXPECT_TRUE(camera.GetName() == L"Overview");
  camera.SetCameraStateChanged(0);
  EXPECT_EQ(camera.IsCameraStateChanged(), 0);
  camera.SetCameraStateChanged(1);
  EXPECT_EQ(camera.IsCameraStateChanged(), 1);
  camera.SetSceneRenderFunc(&RenderNothing, 0x123456789ABCLL);
  EXPECT_EQ(camera.m_pfnSceneRender, &RenderNothing);
  EXPECT_EQ(camera.m_nSceneRenderHandle, 0x123456789ABCLL);
  camera.m_bRefresh = 0;
  camera.Refresh();
  EXPECT_EQ(camera.m_bRefresh, 1);
}

TEST(QXCamera, LooksAlongMinusZWithXToTheRight) {
  QXCamera const camera;
  EXPECT_EQ(camera.GetDirection(), QXVector3d(0, 0, -1));
  EXPECT_EQ(camera.GetRight(), QXVector3d::UNIT_X);
  EXPECT_EQ(camera.GetUp(), QXVector3d::UNIT_Y);
}

TEST(QXCamera, TurnsItsAxesWithTheOrientation) {
  QXCamera camera;
  QXQuaternion4d quarter;
  quarter.FromAngleAxis(kPi / 2, QXVector3d::UNIT_X);
  camera.SetOrientation(quarter);
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
  ExpectNear(camera.GetDirection(), {0, 1, 0});
  ExpectNear(camera.GetRight(), {1, 0, 0});
  ExpectNear(camera.GetUp(), {0, 0, 1});
}

TEST(QXCamera, KeepsThePositionTwice) {
  ProbeCamera camera;
  camera.SetRelativeOrigin({100, 200, 300});
  camera.SetPosition(QXVector3d(101, 202, 303));
  EXPECT_EQ(camera.GetPosition(), QXVector3d(101, 202, 303));
  EXPECT_EQ(camera.GetRelativePosition(), QXVector3d(1, 2, 3));
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
}

TEST(QXCamera, ChangesTheRelativePositionOnlyAtTheNextSetPosition) {
  ProbeCamera camera;
  camera.SetPosition(10, 20, 30);
  camera.m_bViewOutOfDate = 0;
  camera.SetRelativeOrigin({1, 2, 3});
  EXPECT_EQ(camera.GetRelativeOrigin(), QXVector3d(1, 2, 3));
  EXPECT_EQ(camera.GetRelativePosition(), QXVector3d(10, 20, 30));
  EXPECT_EQ(camera.IsViewOutOfDate(), 0);
  camera.SetPosition(10, 20, 30);
  EXPECT_EQ(camera.GetRelativePosition(), QXVector3d(9, 18, 27));
}

TEST(QXCamera, MovesBothPositionsInWorldAxes) {
  ProbeCamera camera;
  camera.SetRelativeOrigin({5, 5, 5});
  camera.SetPosition(10, 10, 10);
  camera.m_bViewOutOfDate = 0;
  camera.Move({1, 2, 3});
  EXPECT_EQ(camera.GetPosition(), QXVector3d(11, 12, 13));
  EXPECT_EQ(camera.GetRelativePosition(), QXVector3d(6, 7, 8));
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
}

TEST(QXCamera, MovesBothPositionsInItsOwnAxes) {
  ProbeCamera camera;
  camera.SetRelativeOrigin({5, 5, 5});
  camera.SetPosition(10, 10, 10);
  QXQuaternion4d quarter;
  quarter.FromAngleAxis(kPi / 2, QXVector3d::UNIT_Z);
  camera.SetOrientation(quarter);
  camera.m_bViewOutOfDate = 0;
  camera.MoveRelative({1, 0, 0});
  ExpectNear(camera.GetPosition(), {10, 11, 10});
  ExpectNear(camera.GetRelativePosition(), {5, 6, 5});
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
}

TEST(QXCamera, TakesItsOwnPositionsAsArguments) {
  QXCamera camera;
  camera.SetRelativeOrigin({5, 5, 5});
  camera.SetPosition(10, 20, 30);
  camera.Move(camera.GetPosition());
  EXPECT_EQ(camera.GetPosition(), QXVector3d(20, 40, 60));
  EXPECT_EQ(camera.GetRelativePosition(), QXVector3d(15, 35, 55));
  camera.Move(camera.GetRelativePosition());
  EXPECT_EQ(camera.GetPosition(), QXVector3d(35, 75, 115));
  EXPECT_EQ(camera.GetRelativePosition(), QXVector3d(30, 70, 110));
  camera.SetPosition(camera.GetRelativePosition());
  EXPECT_EQ(camera.GetPosition(), QXVector3d(30, 70, 110));
  EXPECT_EQ(camera.GetRelativePosition(), QXVector3d(25, 65, 105));
}

TEST(QXCamera, ReflectsAMoveInTheViewMatrix) {
  QXCamera camera;
  camera.SetPosition(1, 2, 3);
  ExpectNear(QXVector3d(1, 2, 3).MultiplyMatrix(camera.GetViewMatrix()), {0, 0, 0});
  camera.Move({10, 0, 0});
  ExpectNear(QXVector3d(11, 2, 3).MultiplyMatrix(camera.GetViewMatrix()), {0, 0, 0});
  EXPECT_EQ(camera.IsViewOutOfDate(), 0);
}

TEST(QXCamera, ComputesTheViewFromTheAbsolutePosition) {
  ProbeCamera camera;
  camera.SetRelativeOrigin({100, 0, 0});
  camera.SetPosition(101, 2, 3);
  QXQuaternion4d turned(0.5, 0.5, 0.5, 0.5);
  camera.SetOrientation(turned);
  EXPECT_EQ(camera.GetViewMatrix(), QXMathEngine::MakeViewMatrix({101, 2, 3}, turned));
  QXMatrix4d const stored = camera.m_matView;
  EXPECT_EQ(camera.GetViewMatrixInECEF(), QXMathEngine::MakeViewMatrix({1, 2, 3}, turned));
  EXPECT_EQ(camera.m_matView, stored);
}

TEST(QXCamera, LeavesTheMarkWhenTheRelativeViewIsAsked) {
  ProbeCamera camera;
  camera.SetPosition(1, 2, 3);
  camera.GetViewMatrixInECEF();
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
  EXPECT_EQ(camera.m_matView, QXMatrix4d::ZERO);
}

TEST(QXCamera, AppliesRotationsFromTheLeftAndNormalized) {
  ProbeCamera camera;
  QXQuaternion4d first;
  first.FromAngleAxis(0.7, QXVector3d::UNIT_X);
  camera.SetOrientation(first);
  camera.m_bViewOutOfDate = 0;
  QXQuaternion4d second;
  second.FromAngleAxis(kPi / 2, QXVector3d::UNIT_Z);
  QXQuaternion4d const doubled(2 * second.w, 2 * second.x, 2 * second.y, 2 * second.z);
  camera.Rotate(doubled);
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
  QXQuaternion4d const expected = second * first;
  EXPECT_NEAR(camera.GetOrientation().w, expected.w, 1e-15);
  EXPECT_NEAR(camera.GetOrientation().x, expected.x, 1e-15);
  EXPECT_NEAR(camera.GetOrientation().y, expected.y, 1e-15);
  EXPECT_NEAR(camera.GetOrientation().z, expected.z, 1e-15);
}

TEST(QXCamera, RotatesAboutAWorldAxis) {
  QXCamera camera;
  camera.Rotate(QXVector3d::UNIT_Y, kPi / 2);
  ExpectNear(camera.GetDirection(), {-1, 0, 0});
}

TEST(QXCamera, PitchesAboutItsOwnXAxis) {
  ProbeCamera camera;
  camera.Rotate(QXVector3d::UNIT_Z, kPi / 2);  // its x axis is now world y
  camera.m_bViewOutOfDate = 0;
  camera.Pitch(kPi / 2);
  ExpectNear(camera.GetRight(), {0, 1, 0});
  ExpectNear(camera.GetDirection(), {-1, 0, 0});
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
}

TEST(QXCamera, RollsAboutItsOwnZAxis) {
  ProbeCamera camera;
  camera.Rotate(QXVector3d::UNIT_X, kPi / 2);  // it looks along world y
  camera.m_bViewOutOfDate = 0;
  camera.Roll(kPi / 2);
  ExpectNear(camera.GetDirection(), {0, 1, 0});
  ExpectNear(camera.GetRight(), {0, 0, 1});
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
}

TEST(QXCamera, YawsAboutWorldZWhateverTheOrientation) {
  ProbeCamera camera;
  camera.Rotate(QXVector3d::UNIT_X, kPi / 2);  // it looks along world y
  camera.Roll(0.4);
  camera.m_bViewOutOfDate = 0;
  QXVector3d const before = camera.GetUp();
  camera.Yaw(kPi / 2);
  ExpectNear(camera.GetDirection(), {-1, 0, 0});
  ExpectNear(camera.GetUp(), {-before.y, before.x, before.z});
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
}

TEST(QXCamera, YawsAboutItsOwnYAxisWithoutAFixedAxis) {
  ProbeCamera camera;
  camera.m_bFixedYawAxis = 0;
  camera.Rotate(QXVector3d::UNIT_X, kPi / 4);
  QXVector3d const up = camera.GetUp();
  camera.Yaw(0.6);
  ExpectNear(camera.GetUp(), up);
  EXPECT_NEAR(camera.GetDirection().x, -std::sin(0.6), 1e-12);
}

TEST(QXCamera, YawsAboutAnotherFixedAxis) {
  ProbeCamera camera;
  camera.m_vecFixedYawAxis = QXVector3d::UNIT_Y;
  camera.Pitch(0.3);
  double const dHeight = camera.GetDirection().y;
  camera.Yaw(1.0);
  EXPECT_NEAR(camera.GetDirection().y, dHeight, 1e-12);
}

TEST(QXCamera, TurnsToADirectionOfAnyLength) {
  QXCamera camera;
  camera.SetDirection(QXVector3d(0, 30, 40));
  ExpectNear(camera.GetDirection(), {0, 0.6, 0.8});
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
  camera.SetDirection(5, 0, 0);
  ExpectNear(camera.GetDirection(), {1, 0, 0});
}

TEST(QXCamera, TurnsByTheShortestWayWithoutKeepingUpright) {
  QXCamera camera;
  camera.SetDirection(-1, 0, 0);  // a quarter about y, although yaw would turn about z
  ExpectNear(camera.GetUp(), {0, 1, 0});
  camera.SetDirection(0, 1, 0);
  ExpectNear(camera.GetUp(), {1, 0, 0});
}

TEST(QXCamera, IgnoresTheZeroDirection) {
  ProbeCamera camera;
  camera.Pitch(0.4);
  camera.m_bViewOutOfDate = 0;
  QXQuaternion4d const before = camera.GetOrientation();
  camera.SetDirection(QXVector3d::ZERO);
  EXPECT_EQ(camera.GetOrientation(), before);
  EXPECT_EQ(camera.IsViewOutOfDate(), 0);
}

TEST(QXCamera, TurnsByPiAboutItsUpAxisToTheExactReverse) {
  QXCamera camera;
  camera.Pitch(0.4);
  camera.Roll(0.2);
  QXVector3d const up = camera.GetUp();
  QXVector3d const right = camera.GetRight();
  QXVector3d const direction = camera.GetDirection();
  camera.SetDirection(-direction);
  ExpectNear(camera.GetUp(), up);
  ExpectNear(camera.GetRight(), -right);
  ExpectNear(camera.GetDirection(), -direction);
  camera.SetDirection(7 * direction.x, 7 * direction.y, 7 * direction.z);  // of any length
  ExpectNear(camera.GetUp(), up);
  ExpectNear(camera.GetDirection(), direction);
}

TEST(QXCamera, TreatsNearlyOppositeDirectionsAsTheReverse) {
  // |axis + z| squared is about the square of the angle: 0.0070710 lies just below the bound, 0.0070711 above it.
  QXCamera near;
  near.SetDirection(0, std::sin(0.0070710), std::cos(0.0070710));
  ExpectNear(near.GetDirection(), {0, 0, 1});
  ExpectNear(near.GetUp(), {0, 1, 0});
  QXCamera beyond;
  beyond.SetDirection(0, std::sin(0.0070711), std::cos(0.0070711));
  ExpectNear(beyond.GetDirection(), {0, std::sin(0.0070711), std::cos(0.0070711)});
}

TEST(QXCamera, BringsTheViewUpToDateBeforeItTurns) {
  ProbeCamera camera;
  camera.SetPosition(1, 2, 3);
  camera.SetDirection(1, 0, 0);
  EXPECT_EQ(camera.m_matView, QXMathEngine::MakeViewMatrix({1, 2, 3}, QXQuaternion4d()));
  EXPECT_EQ(camera.IsViewOutOfDate(), 1);
}

TEST(QXCamera, LooksAtAPoint) {
  QXCamera camera;
  camera.SetRelativeOrigin({100, 0, 0});  // plays no part
  camera.SetPosition(1, 1, 1);
  camera.LookAt(QXVector3d(4, 1, 5));
  ExpectNear(camera.GetDirection(), {0.6, 0, 0.8});
  camera.LookAt(1, 9, 1);
  ExpectNear(camera.GetDirection(), {0, 1, 0});
  camera.LookAt(1, 1, 1);  // its own position: the zero direction
  ExpectNear(camera.GetDirection(), {0, 1, 0});
}

TEST(QXCamera, NotifiesViewBeforeProjectionWithTheViewportStored) {
  QXViewport viewport;
  ProbeCamera camera;
  camera.NotifyViewport(&viewport);
  EXPECT_EQ(camera.m_strCalls, "view projection ");
  EXPECT_EQ(camera.m_pGiven, &viewport);
  EXPECT_EQ(camera.m_pHeldThen, &viewport);
  EXPECT_EQ(camera.GetViewport(), &viewport);
}

TEST(QXCamera, HasEmptyRenderAndUpdateOperations) {
  QXViewport viewport;
  QXCamera camera;
  camera.RenderScene(&viewport, 1);
  camera.UpdateViewMatrix(&viewport);
  camera.UpdateProMatrix();
  EXPECT_EQ(camera.GetViewport(), nullptr);
  EXPECT_EQ(camera.GetProjectionMatrix(), QXMatrix4d::ZERO);
}

TEST(QXCamera, MeasuresDistancesFromTheEye) {
  QXCamera camera;
  camera.SetRelativeOrigin({100, 0, 0});  // plays no part
  camera.SetPosition(1, 2, 3);
  EXPECT_NEAR(camera.GetDistFromEye({3, 5, 9}), 7.0, 1e-12);
  EXPECT_EQ(camera.IsViewOutOfDate(), 0);  // the view was brought up to date
  EXPECT_EQ(camera.GetDistFromEyeEx({3, 5, 9}), 7.0);
  QXMatrix4d model;
  model.SetTrans({2, 3, 6});
  EXPECT_NEAR(camera.GetDistFromEye({1, 2, 3}, model), 7.0, 1e-12);
}

TEST(QXCamera, MeasuresByTheViewMatrixAsItIs) {
  QXCamera camera;
  QXMatrix4d scaled;
  scaled[0][0] = scaled[1][1] = scaled[2][2] = 2.0;
  camera.SetViewMatrix(scaled);
  EXPECT_EQ(camera.GetDistFromEye({3, 0, 4}), 10.0);
  EXPECT_EQ(camera.GetDistFromEyeEx({3, 0, 4}), 5.0);
}

class QXCameraPixels : public testing::Test {
protected:
  void SetHeight(int nHeight) {
    m_viewport.m_nActHeight = nHeight;
    m_camera.NotifyViewport(&m_viewport);
  }
  QXViewport m_viewport;
  QXCamera m_camera;
};

TEST_F(QXCameraPixels, CoverALengthByFieldAndHeight) {
  SetHeight(480);
  // 240 / tan(pi / 8) * 10 / 100 = 57.94, and a distance of 100 beyond the limit of 10 takes a tenth of it.
  EXPECT_EQ(m_camera.ComputerLength2Pix(10, 100, 0), 6);
  // A limit beyond the distance leaves the perspective alone.
  EXPECT_EQ(m_camera.ComputerLength2Pix(10, 100, 100), 58);
  EXPECT_EQ(m_camera.ComputerLength2Pix(10, 100, 1000), 58);
  // Between them the limit counts: half of it.
  EXPECT_EQ(m_camera.ComputerLength2Pix(10, 100, 50), 29);
}

TEST_F(QXCameraPixels, TakeTheLengthAsLimitWhenItIsLarger) {
  SetHeight(480);
  EXPECT_EQ(m_camera.ComputerLength2Pix(100, 100, 1), 580);
}

TEST_F(QXCameraPixels, DropTheHalfPixelOfAnOddHeight) {
  SetHeight(481);
  int const nOdd = m_camera.ComputerLength2Pix(1000, 10, 0);
  SetHeight(480);
  EXPECT_EQ(nOdd, m_camera.ComputerLength2Pix(1000, 10, 0));
}

TEST_F(QXCameraPixels, UseTheFirstFieldOfViewInEveryMode) {
  SetHeight(480);
  m_camera.SetFOVMode(FOV_MODE_SECOND);
  EXPECT_EQ(m_camera.ComputerLength2Pix(10, 100, 100), 58);
  m_camera.SetFov(kPi / 2);
  EXPECT_EQ(m_camera.ComputerLength2Pix(10, 100, 100), 25);  // 24 and a rounding error: tan(pi / 4) is below 1
}

TEST_F(QXCameraPixels, SaturateInsteadOfOverflowing) {
  SetHeight(480);
  EXPECT_EQ(m_camera.ComputerLength2Pix(10, 0, 0), std::numeric_limits<int>::max());
  EXPECT_EQ(m_camera.ComputerLength2Pix(1e30, 1, 0), std::numeric_limits<int>::max());
  EXPECT_EQ(m_camera.ComputerLength2Pix(-1e30, 1, 1), std::numeric_limits<int>::min());
  EXPECT_EQ(m_camera.ComputerLength2Pix(0, 0, 0), 0);  // 0 / 0 is no number
}

/// Shows what a renderer's camera sees.
class OwnCamera : public QXCamera {
public:
  using QXCamera::MakeOwnProjection;
  using QXFrustum::m_dFovSecond;
  using QXFrustum::m_dOrthoHeight;
};

TEST(QXCamera, DescribesAPerspectiveByItsFieldOfView) {
  OwnCamera camera;
  camera.SetAspect(2.0);
  camera.SetFov(0.8);
  EXPECT_EQ(camera.MakeOwnProjection(1, 100), QXMathEngine::ComputePerspectiveMatrix(0.8, 2.0, 1, 100));
}

TEST(QXCamera, TakesTheSecondFieldForTheHorizontalOne) {
  OwnCamera camera;
  camera.SetAspect(2.0);
  camera.SetFOVMode(FOV_MODE_SECOND);
  camera.m_dFovSecond = kPi / 2;
  QXMatrix4d const projection = camera.MakeOwnProjection(1, 100);
  EXPECT_NEAR(projection[0][0], 1.0, 1e-12);
  EXPECT_NEAR(projection[1][1], 2.0, 1e-12);
}

TEST(QXCamera, DescribesAParallelProjectionByTheHeightOfItsWindow) {
  OwnCamera camera;
  camera.SetAspect(1.5);
  camera.SetProjectionType(PROJECTION_ORTHOGRAPHIC);
  camera.m_dOrthoHeight = 8.0;
  EXPECT_EQ(camera.MakeOwnProjection(1, 100), QXMathEngine::ComputeOrthoMatrix(-6, 6, -4, 4, 1, 100));
  camera.m_dOrthoHeight = 0.0;
  EXPECT_EQ(camera.MakeOwnProjection(1, 100), QXMathEngine::ComputeOrthoMatrix(-1.5, 1.5, -1, 1, 1, 100));
}

TEST(QXCamera, DescribesNoProjectionWhereItsSettingsGiveNone) {
  OwnCamera camera;
  camera.SetAspect(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(camera.MakeOwnProjection(1, 100), QXMatrix4d::ZERO);
  camera.SetAspect(1.0);
  EXPECT_EQ(camera.MakeOwnProjection(5, 5), QXMatrix4d::ZERO);
}

TEST(QXCamera, KeepsThePlainViewForAFlatScene) {
  QXCamera camera = QXCamera::CreateNormalCamera(SCENE_PLANE, 40, 20, {3, 4, 12});
  EXPECT_EQ(camera.GetViewMatrix(), QXMathEngine::MakeViewMatrix({3, 4, 12}, QXQuaternion4d()));
}

TEST(QXCamera, SetsUpAnOrthographicNormalCamera) {
  QXCamera camera = QXCamera::CreateNormalCamera(SCENE_PLANE, 40, 20, {3, 4, 12});
  EXPECT_EQ(camera.GetProjectionType(), 0);
  EXPECT_EQ(camera.GetOrthoWindowHeight(), 20.0);
  EXPECT_EQ(camera.GetAspect(), 2.0);
  EXPECT_EQ(camera.GetPosition(), QXVector3d(3, 4, 12));
  EXPECT_EQ(camera.GetOrientation(), QXQuaternion4d::IDENTITY);
  EXPECT_EQ(camera.GetNearDist(), 1.0);
  EXPECT_EQ(camera.GetFarDist(), 20000.0);
  EXPECT_EQ(camera.IsViewOutOfDate(), 0);
  EXPECT_EQ(camera.GetProjectionMatrix(), QXMathEngine::ComputeOrthoMatrix(-20, 20, -10, 10, 1, 20000));
}

TEST(QXCamera, LooksFromItsPositionToTheOriginOfAGlobe) {
  for (SceneType const eType : {SCENE_GLOBE, static_cast<SceneType>(1), static_cast<SceneType>(99)}) {
    QXVector3d const position(3, 4, 12);
    QXCamera camera = QXCamera::CreateNormalCamera(eType, 40, 20, position);
    QXMatrix4d const view = camera.GetViewMatrix();
    ExpectNear(position.MultiplyMatrix(view), {0, 0, 0});
    ExpectNear(QXVector3d::ZERO.MultiplyMatrix(view), {0, 0, -13});
    // World up has no part to the right, and its part upwards on the screen is positive.
    QXVector3d const up = (position + QXVector3d::UNIT_Z).MultiplyMatrix(view);
    EXPECT_NEAR(up.x, 0.0, 1e-12);
    EXPECT_GT(up.y, 0.0);
    EXPECT_NEAR(up.y, 5.0 / 13.0, 1e-12);
    ExpectNear({view[0][0], view[1][0], view[2][0]}, {-0.8, 0.6, 0});  // of length 1, though z is not across
    EXPECT_EQ(view[3][3], 1.0);
    EXPECT_EQ(view[0][3], 0.0);
    EXPECT_EQ(camera.GetOrientation(), QXQuaternion4d::IDENTITY);
  }
}

TEST(QXCamera, PutsTheAxesOfTheGlobeViewIntoColumns) {
  QXCamera camera = QXCamera::CreateNormalCamera(SCENE_GLOBE, 40, 20, {5, 0, 0});
  QXMatrix4d const view = camera.GetViewMatrix();
  // d = x, a = z cross d = y, b = d cross a = z
  ExpectNear({view[0][0], view[1][0], view[2][0]}, {0, 1, 0});
  ExpectNear({view[0][1], view[1][1], view[2][1]}, {0, 0, 1});
  ExpectNear({view[0][2], view[1][2], view[2][2]}, {1, 0, 0});
  ExpectNear({view[3][0], view[3][1], view[3][2]}, {0, 0, -5});
}

}  // namespace
