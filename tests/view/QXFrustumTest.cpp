#include <QxGraphics3D/view/QXFrustum.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXOrientedBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

using namespace QXC;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Opens the members and counts the calls of virtual operations.
class ProbeFrustum : public QXFrustum {
public:
  using QXFrustum::m_bFarDistSet;
  using QXFrustum::m_bFOVModeSet;
  using QXFrustum::m_bNearDistSet;
  using QXFrustum::m_bViewOutOfDate;
  using QXFrustum::m_dAspect;
  using QXFrustum::m_dFarDist;
  using QXFrustum::m_dFov;
  using QXFrustum::m_dFovSecond;
  using QXFrustum::m_dNearDist;
  using QXFrustum::m_dOrthoHeight;
  using QXFrustum::m_eFOVMode;
  using QXFrustum::m_eProjectionType;
  using QXFrustum::m_matProjection;
  using QXFrustum::m_matView;
  using QXFrustum::m_matWorld;
  using QXFrustum::m_Planes;

  void ComputerPlane(QXPlane* pPlanes, double dTolerance) const override {
    ++m_nPlaneCalls;
    m_dLastTolerance = dTolerance;
    m_bArrivedDefault = std::all_of(pPlanes, pPlanes + 6,
        [](QXPlane const& plane) { return plane.GetNormal() == QXVector3d::ZERO && plane.GetPlaneDistance() == 0.0; });
    if (!m_bShiftPlanes) return;
    for (int nPlane = 0; nPlane < 6; ++nPlane) {
      pPlanes[nPlane] = QXPlane(m_Planes[nPlane].GetNormal(), m_Planes[nPlane].GetPlaneDistance() + dTolerance);
    }
  }
  void UpdateViewImpl() override { ++m_nViewCalls; }

  mutable int m_nPlaneCalls = 0;
  mutable double m_dLastTolerance = 0.0;
  mutable bool m_bArrivedDefault = false;
  bool m_bShiftPlanes = false;
  int m_nViewCalls = 0;
};

/// World, view and projection of identity: the planes of the cube from -1 to 1.
ProbeFrustum MakeCube() {
  ProbeFrustum frustum;
  frustum.SetViewMatrix(QXMatrix4d::IDENTITY);
  frustum.SetProjectionMatrix(QXMatrix4d::IDENTITY);
  frustum.UpdateFrustum();
  return frustum;
}

QXBoundingSphere MakeSphere(QXVector3d const& center, double dRadius) {
  QXBoundingSphere sphere;
  sphere.SetCenter(center);
  sphere.SetRadius(dRadius);
  return sphere;
}

void ExpectPlane(QXPlane const& plane, QXVector3d const& normal, double dConstant) {
  EXPECT_EQ(plane.GetNormal().x, normal.x);
  EXPECT_EQ(plane.GetNormal().y, normal.y);
  EXPECT_EQ(plane.GetNormal().z, normal.z);
  EXPECT_EQ(plane.GetPlaneDistance(), dConstant);
}

TEST(QXFrustum, StartsWithItsDefaults) {
  ProbeFrustum const frustum;
  EXPECT_EQ(frustum.m_eProjectionType, 1);
  EXPECT_EQ(frustum.m_dOrthoHeight, 0.0);
  EXPECT_EQ(frustum.m_dFov, 0.7853981633974483);
  EXPECT_EQ(frustum.m_dFovSecond, 1.0471975511965976);
  EXPECT_EQ(frustum.m_dNearDist, 0.0);
  EXPECT_EQ(frustum.m_bNearDistSet, 0);
  EXPECT_EQ(frustum.m_dFarDist, 0.0);
  EXPECT_EQ(frustum.m_bFarDistSet, 0);
  EXPECT_EQ(frustum.m_dAspect, 0.0);
  EXPECT_EQ(frustum.m_matWorld, QXMatrix4d::IDENTITY);
  EXPECT_EQ(frustum.m_matView, QXMatrix4d::ZERO);
  EXPECT_EQ(frustum.m_matProjection, QXMatrix4d::ZERO);
  for (QXPlane const& plane : frustum.m_Planes) ExpectPlane(plane, QXVector3d::ZERO, 0.0);
  EXPECT_EQ(frustum.m_bViewOutOfDate, 0);
  EXPECT_EQ(frustum.m_eFOVMode, 0);
  EXPECT_EQ(frustum.m_bFOVModeSet, 0);
}

TEST(QXFrustum, CopiesEveryMember) {
  ProbeFrustum source = MakeCube();
  source.SetProjectionType(PROJECTION_ORTHOGRAPHIC);
  source.SetOrthoWindow(8.0, 4.0);
  source.SetFov(0.25);
  source.m_dFovSecond = 0.5;
  source.SetNearDist(3.0);
  source.SetFarDist(30.0);
  source.m_matWorld[3][0] = 9.0;
  source.InvalidateView();
  source.SetFOVMode(FOV_MODE_SECOND);
  ProbeFrustum const copy(source);
  ProbeFrustum assigned;
  assigned = source;
  for (ProbeFrustum const* pCopy : {&copy, static_cast<ProbeFrustum const*>(&assigned)}) {
    EXPECT_EQ(pCopy->m_eProjectionType, PROJECTION_ORTHOGRAPHIC);
    EXPECT_EQ(pCopy->m_dOrthoHeight, 4.0);
    EXPECT_EQ(pCopy->m_dAspect, 2.0);
    EXPECT_EQ(pCopy->m_dFov, 0.25);
    EXPECT_EQ(pCopy->m_dFovSecond, 0.5);
    EXPECT_EQ(pCopy->m_dNearDist, 3.0);
    EXPECT_EQ(pCopy->m_bNearDistSet, 1);
    EXPECT_EQ(pCopy->m_dFarDist, 30.0);
    EXPECT_EQ(pCopy->m_bFarDistSet, 1);
    EXPECT_EQ(pCopy->m_matWorld, source.m_matWorld);
    EXPECT_EQ(pCopy->m_matView, QXMatrix4d::IDENTITY);
    EXPECT_EQ(pCopy->m_matProjection, QXMatrix4d::IDENTITY);
    for (int nPlane = 0; nPlane < 6; ++nPlane) {
      ExpectPlane(pCopy->m_Planes[nPlane], source.m_Planes[nPlane].GetNormal(), 1.0);
    }
    EXPECT_EQ(pCopy->m_bViewOutOfDate, 1);
    EXPECT_EQ(pCopy->m_eFOVMode, FOV_MODE_SECOND);
    EXPECT_EQ(pCopy->m_bFOVModeSet, 1);
  }
}

TEST(QXFrustum, StoresWhatThePlainSettersAreGiven) {
  ProbeFrustum frustum;
  frustum.SetProjectionType(static_cast<ProjectionType>(42));
  EXPECT_EQ(static_cast<int>(frustum.GetProjectionType()), 42);
  frustum.SetFov(0.3);
  EXPECT_EQ(frustum.GetFov(), 0.3);
  frustum.SetOrthoWindowHeight(7.0);
  EXPECT_EQ(frustum.GetOrthoWindowHeight(), 7.0);
  QXMatrix4d matrix;
  matrix[2][1] = 5.0;
  frustum.SetProjectionMatrix(matrix);
  EXPECT_EQ(frustum.GetProjectionMatrix(), matrix);
  frustum.SetViewMatrix(matrix);
  EXPECT_EQ(frustum.GetViewMatrix(), matrix);
  frustum.m_matWorld = matrix;
  EXPECT_EQ(frustum.GetWorldMatrix(), matrix);
  EXPECT_EQ(frustum.GetFrustumPlanes(), frustum.m_Planes);
}

TEST(QXFrustum, LeavesPlanesAndViewMarkAloneInSetters) {
  ProbeFrustum frustum = MakeCube();
  QXMatrix4d scaled;
  scaled[0][0] = 10.0;
  frustum.SetProjectionMatrix(scaled);
  frustum.SetViewMatrix(scaled);
  frustum.SetNearDist(5.0);
  frustum.SetAspect(3.0);
  ExpectPlane(frustum.m_Planes[3], QXVector3d::UNIT_X, 1.0);
  EXPECT_EQ(frustum.IsViewOutOfDate(), 0);
}

TEST(QXFrustum, MarksNearAndFarAsSetUntilCleared) {
  ProbeFrustum frustum;
  frustum.SetNearDist(2.5);
  frustum.SetFarDist(250.0);
  EXPECT_EQ(frustum.GetNearDist(), 2.5);
  EXPECT_EQ(frustum.GetFarDist(), 250.0);
  EXPECT_EQ(frustum.m_bNearDistSet, 1);
  EXPECT_EQ(frustum.m_bFarDistSet, 1);
  frustum.ClearNearDist();
  EXPECT_EQ(frustum.m_bNearDistSet, 0);
  EXPECT_EQ(frustum.m_bFarDistSet, 1);
  frustum.ClearFarDist();
  EXPECT_EQ(frustum.m_bFarDistSet, 0);
  EXPECT_EQ(frustum.GetNearDist(), 2.5);  // clearing keeps the distance
  EXPECT_EQ(frustum.GetFarDist(), 250.0);
}

TEST(QXFrustum, DerivesTheOrthographicWindowFromHeightAndAspect) {
  ProbeFrustum frustum;
  frustum.SetOrthoWindow(30.0, 20.0);
  EXPECT_EQ(frustum.GetOrthoWindowHeight(), 20.0);
  EXPECT_EQ(frustum.GetAspect(), 1.5);
  EXPECT_EQ(frustum.GetOrthoWindowWidth(), 30.0);
  frustum.SetOrthoWindowWidth(60.0);
  EXPECT_EQ(frustum.GetOrthoWindowHeight(), 40.0);
  EXPECT_EQ(frustum.GetAspect(), 1.5);
}

TEST(QXFrustum, KeepsTheFieldOfViewWhenTheWindowSetsTheAspect) {
  ProbeFrustum frustum;
  frustum.SetOrthoWindow(30.0, 20.0);
  EXPECT_EQ(frustum.GetFov(), 0.7853981633974483);
}

TEST(QXFrustum, DerivesTheFirstFieldFromTheAspectUntilAModeIsChosen) {
  ProbeFrustum frustum;
  frustum.SetAspect(2.0);
  EXPECT_EQ(frustum.GetAspect(), 2.0);
  EXPECT_EQ(frustum.GetFov(), 2.0 * std::atan(std::tan(1.0471975511965976 / 2.0) / 2.0));
  double const dKept = frustum.GetFov();
  frustum.SetFOVMode(FOV_MODE_SECOND);
  frustum.SetAspect(3.0);
  EXPECT_EQ(frustum.GetFov(), dKept);
  EXPECT_EQ(frustum.GetAspect(), 3.0);
}

TEST(QXFrustum, LeavesTheFirstFieldForGoodOnceModeZeroWasChosen) {
  ProbeFrustum frustum;
  frustum.SetFov(0.9);
  frustum.SetFOVMode(FOV_MODE_DERIVED);  // no change of mode, so nothing is derived either
  EXPECT_EQ(frustum.m_bFOVModeSet, 1);
  frustum.SetAspect(2.0);
  EXPECT_EQ(frustum.GetFov(), 0.9);
}

TEST(QXFrustum, DerivesNothingForAnAspectThatIsTheSameWithinTolerance) {
  ProbeFrustum frustum;
  frustum.SetAspect(2.0);
  frustum.SetFov(0.9);
  frustum.SetAspect(2.0 + 1e-12);
  EXPECT_EQ(frustum.GetFov(), 0.9);
  EXPECT_EQ(frustum.GetAspect(), 2.0 + 1e-12);
  frustum.SetAspect(2.001);
  EXPECT_NE(frustum.GetFov(), 0.9);
}

TEST(QXFrustum, DerivesNothingFromTheAspectInAModeSetByADerivedClass) {
  ProbeFrustum frustum;
  frustum.m_eFOVMode = FOV_MODE_SECOND;
  frustum.SetAspect(2.0);
  EXPECT_EQ(frustum.GetFov(), 0.7853981633974483);
}

TEST(QXFrustum, DerivesTheFirstFieldOnReturnToModeZero) {
  ProbeFrustum frustum;
  frustum.SetFOVMode(FOV_MODE_SECOND);
  EXPECT_EQ(frustum.GetFov(), 0.7853981633974483);
  frustum.SetAspect(4.0);
  frustum.SetFOVMode(FOV_MODE_DERIVED);
  EXPECT_EQ(frustum.GetFov(), 2.0 * std::atan(std::tan(1.0471975511965976 / 2.0) / 4.0));
  EXPECT_EQ(frustum.GetFOVMode(), FOV_MODE_DERIVED);
}

TEST(QXFrustum, LetsAZeroAspectDivide) {
  ProbeFrustum frustum;
  frustum.SetAspect(1.0);
  frustum.SetAspect(0.0);
  EXPECT_EQ(frustum.GetFov(), 2.0 * std::atan(kInfinity));
}

TEST(QXFrustum, GivesTheFieldOfTheCurrentMode) {
  ProbeFrustum frustum;
  EXPECT_EQ(frustum.GetCurrentModeFOV(), 0.7853981633974483);
  frustum.SetFOVMode(FOV_MODE_SECOND);
  EXPECT_EQ(frustum.GetCurrentModeFOV(), 1.0471975511965976);
  frustum.SetFOVMode(static_cast<QXCameraFOVMode>(7));
  EXPECT_EQ(static_cast<int>(frustum.GetFOVMode()), 7);
  EXPECT_EQ(frustum.GetCurrentModeFOV(), frustum.GetFov());
}

TEST(QXFrustum, UpdatesTheViewOnlyWhenItIsOutOfDate) {
  ProbeFrustum frustum;
  frustum.GetViewMatrix();
  EXPECT_EQ(frustum.m_nViewCalls, 0);
  frustum.InvalidateView();
  EXPECT_EQ(frustum.IsViewOutOfDate(), 1);
  frustum.GetViewMatrix();
  EXPECT_EQ(frustum.m_nViewCalls, 1);
  frustum.UpdateView();  // nothing cleared the mark: that is UpdateViewImpl's business
  EXPECT_EQ(frustum.m_nViewCalls, 2);
}

TEST(QXFrustum, HasAnEmptyViewUpdateOfItsOwn) {
  QXFrustum frustum;
  frustum.InvalidateView();
  EXPECT_EQ(frustum.GetViewMatrix(), QXMatrix4d::ZERO);
  EXPECT_EQ(frustum.IsViewOutOfDate(), 1);
}

TEST(QXFrustum, MultipliesWorldViewAndProjectionWithoutUpdatingTheView) {
  ProbeFrustum frustum;
  QXMatrix4d world;
  world.SetTrans({1, 0, 0});
  QXMatrix4d view;
  view[0][0] = 2.0;
  QXMatrix4d projection;
  projection.SetTrans({100, 0, 0});
  frustum.m_matWorld = world;
  frustum.SetViewMatrix(view);
  frustum.SetProjectionMatrix(projection);
  frustum.InvalidateView();
  EXPECT_EQ(frustum.GetModelViewProMatrix(), world * view * projection);
  EXPECT_EQ(QXVector3d(5, 0, 0).MultiplyMatrix(frustum.GetModelViewProMatrix()), QXVector3d(112, 0, 0));
  EXPECT_EQ(frustum.m_nViewCalls, 0);
}

TEST(QXFrustum, TakesSixInwardPlanesFromTheIdentity) {
  ProbeFrustum const frustum = MakeCube();
  ExpectPlane(frustum.m_Planes[0], {0, 1, 0}, 1.0);
  ExpectPlane(frustum.m_Planes[1], {0, 0, -1}, 1.0);
  ExpectPlane(frustum.m_Planes[2], {-1, 0, 0}, 1.0);
  ExpectPlane(frustum.m_Planes[3], {1, 0, 0}, 1.0);
  ExpectPlane(frustum.m_Planes[4], {0, 0, 1}, 1.0);
  ExpectPlane(frustum.m_Planes[5], {0, -1, 0}, 1.0);
  EXPECT_EQ(frustum.ContainsPoint(QXVector3d::ZERO), 1);
}

TEST(QXFrustum, NormalizesItsPlanes) {
  ProbeFrustum frustum;
  frustum.SetViewMatrix(QXMatrix4d::IDENTITY);
  frustum.SetProjectionMatrix(QXMathEngine::ComputeOrthoMatrix(-20, 20, -10, 10, 1, 101));
  frustum.UpdateFrustum();
  for (QXPlane const& plane : frustum.m_Planes) EXPECT_NEAR(plane.GetNormal().Length(), 1.0, 1e-15);
  EXPECT_NEAR(frustum.m_Planes[3].GetDistance({0, 0, -5}), 20.0, 1e-12);
  EXPECT_NEAR(frustum.m_Planes[4].GetDistance({0, 0, -5}), 4.0, 1e-12);
  EXPECT_NEAR(frustum.m_Planes[1].GetDistance({0, 0, -5}), 96.0, 1e-12);
}

TEST(QXFrustum, TakesPlanesFromAPerspectiveInRowVectorConvention) {
  ProbeFrustum frustum;
  QXMatrix4d projection = QXMatrix4d::ZERO;  // 90 degrees, near 1, far 101
  projection[0][0] = projection[1][1] = 1.0;
  projection[2][2] = -102.0 / 100.0;
  projection[2][3] = -1.0;
  projection[3][2] = -202.0 / 100.0;
  frustum.SetViewMatrix(QXMathEngine::MakeViewMatrix({1000, 0, 0}, QXQuaternion4d()));
  frustum.SetProjectionMatrix(projection);
  frustum.UpdateFrustum();
  EXPECT_EQ(frustum.ContainsPoint({1000, 0, -50}), 1);
  EXPECT_EQ(frustum.ContainsPoint({1000, 0, 50}), 0);
  EXPECT_EQ(frustum.ContainsPoint({1049, 0, -50}), 1);
  EXPECT_EQ(frustum.ContainsPoint({1051, 0, -50}), 0);
  EXPECT_EQ(frustum.ContainsPoint({1000, 0, -0.9}), 0);
  EXPECT_EQ(frustum.ContainsPoint({1000, 0, -102}), 0);
}

TEST(QXFrustum, ReadsTheMatrixThroughTheVirtualOperation) {
  class Other : public ProbeFrustum {
  public:
    QXMatrix4d GetModelViewProMatrix() const override { return QXMatrix4d::IDENTITY; }
  };
  Other frustum;
  frustum.UpdateFrustum();
  ExpectPlane(frustum.m_Planes[0], {0, 1, 0}, 1.0);
}

TEST(QXFrustum, KeepsPlanesOfZerosFromAZeroMatrix) {
  ProbeFrustum frustum;
  frustum.UpdateFrustum();
  for (QXPlane const& plane : frustum.m_Planes) ExpectPlane(plane, QXVector3d::ZERO, 0.0);
}

TEST(QXFrustum, ContainsPointsOnItsPlanes) {
  ProbeFrustum const frustum = MakeCube();
  EXPECT_EQ(frustum.ContainsPoint({1, 0, 0}), 1);
  EXPECT_EQ(frustum.ContainsPoint({-1, 1, -1}), 1);
  for (double const dSign : {-1.0, 1.0}) {
    EXPECT_EQ(frustum.ContainsPoint({dSign * 1.0001, 0, 0}), 0);
    EXPECT_EQ(frustum.ContainsPoint({0, dSign * 1.0001, 0}), 0);
    EXPECT_EQ(frustum.ContainsPoint({0, 0, dSign * 1.0001}), 0);
  }
}

TEST(QXFrustum, ContainsAPointThatIsNoNumberSinceNoPlaneHasItBelow) {
  EXPECT_EQ(MakeCube().ContainsPoint({kNaN, kNaN, kNaN}), 1);
}

TEST(QXFrustum, RejectsABoxWithAllCornersBeyondOnePlane) {
  ProbeFrustum const frustum = MakeCube();
  for (double const dSign : {-1.0, 1.0}) {
    QXVector3d const offsets[3] = {{dSign * 3, 0, 0}, {0, dSign * 3, 0}, {0, 0, dSign * 3}};
    for (QXVector3d const& offset : offsets) {
      EXPECT_EQ(frustum.IsVisible(QXBoundingBox(offset - QXVector3d(1, 1, 1), offset + QXVector3d(1, 1, 1)), 0.0), 0);
    }
  }
  EXPECT_EQ(frustum.IsVisible(QXBoundingBox({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}), 0.0), 1);
}

TEST(QXFrustum, SeesABoxWithOneCornerOnThePlaneAndSevenBeyond) {
  ProbeFrustum frustum = MakeCube();
  // Tilted, so that a single corner is the nearest: (1, 1, 1) at distance exactly 0.
  frustum.m_Planes[2] = QXPlane({-1, -1, -1}, 3);
  EXPECT_EQ(frustum.IsVisible(QXBoundingBox({1, 1, 1}, {2, 2, 2}), 0.0), 1);
  EXPECT_EQ(frustum.IsVisible(QXBoundingBox({1, 1, 1.0001}, {2, 2, 2}), 0.0), 0);
}

TEST(QXFrustum, AcceptsABoxOutsideThatNoSinglePlaneSeparates) {
  ProbeFrustum frustum = MakeCube();
  frustum.m_Planes[2] = QXPlane({-1, -1, 0}, 1.0);  // cuts the cube's edge off
  EXPECT_EQ(frustum.IsVisible(QXBoundingBox({-5, 0.9, -0.1}, {5, 5, 0.1}), 0.0), 1);
}

TEST(QXFrustum, FollowsThePlanesAsTheyAreAtTheCall) {
  ProbeFrustum frustum = MakeCube();
  QXBoundingBox const box({2, -1, -1}, {3, 1, 1});
  EXPECT_EQ(frustum.IsVisible(box, 0.0), 0);
  frustum.m_Planes[2] = QXPlane({-1, 0, 0}, 2.5);
  EXPECT_EQ(frustum.IsVisible(box, 0.0), 1);
  frustum.m_Planes[2] = QXPlane({-1, 0, 0}, 1.5);
  EXPECT_EQ(frustum.IsVisible(box, 0.0), 0);
}

TEST(QXFrustum, TestsANullBoxByItsZeroCorners) {
  ProbeFrustum frustum = MakeCube();
  EXPECT_EQ(frustum.IsVisible(QXBoundingBox(), 0.0), 1);
  frustum.m_Planes[3] = QXPlane({1, 0, 0}, -0.5);
  EXPECT_EQ(frustum.IsVisible(QXBoundingBox(), 0.0), 0);
}

TEST(QXFrustum, RejectsASphereThatTouchesFromOutside) {
  ProbeFrustum const frustum = MakeCube();
  EXPECT_EQ(frustum.IsVisible(MakeSphere({2, 0, 0}, 1.0), 0.0), 0);
  EXPECT_EQ(frustum.IsVisible(MakeSphere({1.999, 0, 0}, 1.0), 0.0), 1);
  EXPECT_EQ(frustum.IsVisible(MakeSphere({0, -2, 0}, 1.0), 0.0), 0);
  EXPECT_EQ(frustum.IsVisible(MakeSphere({0, -1.999, 0}, 1.0), 0.0), 1);
}

TEST(QXFrustum, RejectsAnInvalidSphereThatNoPlaneWouldReject) {
  ProbeFrustum frustum = MakeCube();
  frustum.m_bShiftPlanes = true;
  // A radius below 0 that is still farther from all planes than its amount: only its being invalid makes it invisible.
  EXPECT_EQ(frustum.IsVisible(MakeSphere(QXVector3d::ZERO, -0.5), 0.0), 0);
  EXPECT_EQ(frustum.IsVisible(MakeSphere(QXVector3d::ZERO, -0.5), 5.0), 0);
  EXPECT_EQ(frustum.IsVisible(MakeSphere(QXVector3d::ZERO, kNaN), 0.0), 0);
  EXPECT_EQ(frustum.IsVisible(MakeSphere(QXVector3d::ZERO, kNaN), 5.0), 0);
  EXPECT_EQ(frustum.IsVisible(QXBoundingSphere(), 5.0), 0);
  EXPECT_EQ(frustum.m_nPlaneCalls, 3);  // a test with a tolerance always starts with the planes
}

TEST(QXFrustum, SeesASphereWhoseDistanceIsNoNumber) {
  EXPECT_EQ(MakeCube().IsVisible(MakeSphere({kNaN, 0, 0}, 1.0), 0.0), 1);
}

TEST(QXFrustum, RejectsAnOrientedBoxBehindOnePlane) {
  ProbeFrustum const frustum = MakeCube();
  QXMatrix4d turned;  // an eighth of a turn about z
  turned[0][0] = turned[1][1] = turned[0][1] = 0.7071067811865476;
  turned[1][0] = -0.7071067811865476;
  turned.SetTrans({2.4, 0, 0});
  QXBoundingBox const unit({-1, -1, -1}, {1, 1, 1});
  QXOrientedBoundingBox reaching(unit, turned);
  EXPECT_EQ(frustum.IsVisible(reaching, 0.0), 1);
  turned.SetTrans({2.5, 0, 0});
  QXOrientedBoundingBox away(unit, turned);
  EXPECT_EQ(frustum.IsVisible(away, 0.0), 0);
  turned.SetTrans({0, 0, 0});
  QXOrientedBoundingBox inside(QXBoundingBox({-0.1, -0.1, -0.1}, {0.1, 0.1, 0.1}), turned);
  EXPECT_EQ(frustum.IsVisible(inside, 0.0), 1);
}

TEST(QXFrustum, RejectsAnOrientedBoxBehindAnyOfItsPlanes) {
  ProbeFrustum const frustum = MakeCube();
  for (double const dSign : {-1.0, 1.0}) {
    QXVector3d const offsets[3] = {{dSign * 3, 0, 0}, {0, dSign * 3, 0}, {0, 0, dSign * 3}};
    for (QXVector3d const& offset : offsets) {
      QXMatrix4d shift;
      shift.SetTrans(offset);
      QXOrientedBoundingBox away(QXBoundingBox({-1, -1, -1}, {1, 1, 1}), shift);
      EXPECT_EQ(frustum.IsVisible(away, 0.0), 0);
      QXOrientedBoundingBox touching(QXBoundingBox({-2, -2, -2}, {2, 2, 2}), shift);
      EXPECT_EQ(frustum.IsVisible(touching, 0.0), 1);
    }
  }
}

TEST(QXFrustum, AsksForTolerancePlanesOnlyWithATolerance) {
  ProbeFrustum const frustum = MakeCube();
  QXBoundingBox const box({-1, -1, -1}, {1, 1, 1});
  QXOrientedBoundingBox oriented(box, QXMatrix4d::IDENTITY);
  frustum.IsVisible(box, 0.0);
  frustum.IsVisible(box, 1e-12);  // 0 by tolerance
  frustum.IsVisible(MakeSphere({0, 0, 0}, 1.0), 0.0);
  frustum.IsVisible(MakeSphere({0, 0, 0}, 1.0), 1e-12);
  frustum.IsVisible(oriented, 0.0);
  frustum.IsVisible(oriented, -1e-12);
  EXPECT_EQ(frustum.m_nPlaneCalls, 0);
  frustum.IsVisible(box, 0.25);
  EXPECT_EQ(frustum.m_nPlaneCalls, 1);
  EXPECT_EQ(frustum.m_dLastTolerance, 0.25);
  EXPECT_TRUE(frustum.m_bArrivedDefault);
  frustum.IsVisible(MakeSphere({0, 0, 0}, 1.0), -3.0);
  EXPECT_EQ(frustum.m_nPlaneCalls, 2);
  EXPECT_EQ(frustum.m_dLastTolerance, -3.0);
  frustum.IsVisible(oriented, kNaN);
  EXPECT_EQ(frustum.m_nPlaneCalls, 3);
}

TEST(QXFrustum, TestsAgainstThePlanesThatADerivedClassShifts) {
  ProbeFrustum frustum = MakeCube();
  frustum.m_bShiftPlanes = true;
  QXBoundingBox const box({1.5, -1, -1}, {2, 1, 1});
  QXOrientedBoundingBox oriented(box, QXMatrix4d::IDENTITY);
  EXPECT_EQ(frustum.IsVisible(box, 0.0), 0);
  EXPECT_EQ(frustum.IsVisible(box, 0.4), 0);
  EXPECT_EQ(frustum.IsVisible(box, 0.6), 1);
  EXPECT_EQ(frustum.IsVisible(oriented, 0.4), 0);
  EXPECT_EQ(frustum.IsVisible(oriented, 0.6), 1);
  EXPECT_EQ(frustum.IsVisible(MakeSphere({2, 0, 0}, 0.5), 0.4), 0);
  EXPECT_EQ(frustum.IsVisible(MakeSphere({2, 0, 0}, 0.5), 0.6), 1);
  ExpectPlane(frustum.m_Planes[3], QXVector3d::UNIT_X, 1.0);
}

TEST(QXFrustum, TestsAgainstPlanesOfZerosWithTheBasesTolerance) {
  ProbeFrustum const frustum = MakeCube();  // every point then has distance 0
  QXBoundingBox const far({100, 100, 100}, {101, 101, 101});
  QXOrientedBoundingBox oriented(far, QXMatrix4d::IDENTITY);
  EXPECT_EQ(frustum.IsVisible(far, 1.0), 1);
  EXPECT_EQ(frustum.IsVisible(oriented, 1.0), 1);
  EXPECT_EQ(frustum.IsVisible(MakeSphere({100, 0, 0}, 1.0), 1.0), 1);
  EXPECT_EQ(frustum.IsVisible(MakeSphere({0, 0, 0}, 0.0), 1.0), 0);  // 0 is at minus the radius
}

}  // namespace
