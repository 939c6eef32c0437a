// OGRE checks what it computes by assertion, which would end the host: no number of a host's may get that far.
#include <limits>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

/// A red square before a camera that computes its projection itself.
class QXOgreBadNumbers : public QXOgreScenery {
protected:
  void SetUp() override {
    QXOgreScenery::SetUp();
    m_pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
    m_pCamera->SetPosition(0.0, 0.0, 10.0);
    m_pViewport->SetCamera(m_pCamera);
    m_pSquare = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
    ASSERT_EQ(Frame().At(32, 32), RED_PIXEL);
  }
  QXPixel Middle() { return Frame().At(32, 32); }

  QXRenderOperation3D* m_pSquare = nullptr;
};

}  // namespace

TEST_F(QXOgreBadNumbers, AFieldOfNothingShowsNothingUntilThereIsOneAgain) {
  m_pCamera->SetFOVMode(FOV_MODE_DERIVED);
  double const dFov = m_pCamera->GetFov();
  m_pCamera->SetFov(0.0);
  EXPECT_EQ(Middle(), BACKGROUND_PIXEL);
  m_pCamera->SetFov(dFov);
  EXPECT_EQ(Middle(), RED_PIXEL);
}

TEST_F(QXOgreBadNumbers, DistancesWithoutDepthBetweenThemShowNothing) {
  m_pCamera->SetNearDist(5.0);
  m_pCamera->SetFarDist(5.0);
  EXPECT_EQ(Middle(), BACKGROUND_PIXEL);
  m_pCamera->SetFarDist(NO_NUMBER);
  EXPECT_EQ(Middle(), BACKGROUND_PIXEL);
  m_pCamera->SetFarDist(50.0);
  EXPECT_EQ(Middle(), RED_PIXEL);
  m_pCamera->SetProjectionType(PROJECTION_ORTHOGRAPHIC);
  m_pCamera->SetFarDist(5.0);
  EXPECT_EQ(Middle(), BACKGROUND_PIXEL);
  m_pCamera->SetFarDist(50.0);
  EXPECT_EQ(Middle(), RED_PIXEL);
}

TEST_F(QXOgreBadNumbers, ACameraNowhereShowsNothing) {
  for (double const dPosition : {NO_NUMBER, INFINITE, 1.0e300}) {
    m_pCamera->SetPosition(dPosition, 0.0, 10.0);
    EXPECT_EQ(Middle(), BACKGROUND_PIXEL) << dPosition;
  }
  m_pCamera->SetPosition(0.0, 0.0, 10.0);
  EXPECT_EQ(Middle(), RED_PIXEL);
}

TEST_F(QXOgreBadNumbers, AProjectionOfTheHostsWithoutInverseShowsNothing) {
  for (double const dEntry : {0.0, NO_NUMBER, INFINITE, 1.0e300}) {
    QXMatrix4d mat;
    mat[0][0] = dEntry;
    m_pCamera->SetProjectionMatrix(mat);
    EXPECT_EQ(Middle(), BACKGROUND_PIXEL) << dEntry;
  }
  m_pCamera->SetProjectionMatrix(QXMatrix4d::ZERO);
  EXPECT_EQ(Middle(), RED_PIXEL);
}

TEST_F(QXOgreBadNumbers, ADrawableNowhereDoesNotTakeTheOthersOutOfSight) {
  QXRenderOperation3D* const pOther = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 1.0F, GREEN);
  pOther->SetOpacity(0.5);
  for (double const dEntry : {NO_NUMBER, INFINITE, 1.0e300}) {
    QXMatrix4d mat;
    mat[3][2] = dEntry;
    pOther->SetModelMatrix(mat);
    EXPECT_EQ(Middle(), RED_PIXEL) << dEntry;
    // Bounds of the host's keep it from being culled.
    pOther->SetModelMatrix(QXMatrix4d());
    pOther->SetBoundingBox(QXBoundingBox(QXVector3d(-1.0, -1.0, dEntry), QXVector3d(1.0, 1.0, dEntry)));
    Frame();
    pOther->SetBoundingBox(QXBoundingBox());
  }
}

TEST_F(QXOgreBadNumbers, ExaggerationPatchSunAndOriginOfNoNumbersAreSurvived) {
  for (double const d : {NO_NUMBER, INFINITE, 0.0, -1.0, 1.0e300}) {
    m_pTarget->SetVerticalExaggeration(d);
    Frame();
    m_pTarget->SetVerticalExaggeration(1.0);
    m_pGraphics3D->RenderPatchToTexture(d, 0.0, 2.0, 2.0, m_pTarget, QdcRect2D(0.0, 0.0, 1.0, 1.0));
    m_pGraphics3D->RenderPatchToTexture(0.0, 0.0, d, 2.0, m_pTarget, QdcRect2D(0.0, 0.0, 1.0, 1.0));
    m_pGraphics3D->RenderPatchToTexture(0.0, 0.0, 2.0, 2.0, m_pTarget, QdcRect2D(0.0, d, 1.0, 1.0));
    m_pTarget->SetSunPosition(QXVector3d(d, 0.0, 0.0));
    m_pGraphics3D->SetRelativeOrigin(QXVector3d(d, 0.0, 0.0));
    Frame();
    m_pGraphics3D->SetRelativeOrigin(QXVector3d::ZERO);
  }
  EXPECT_EQ(Middle(), RED_PIXEL);
}

TEST_F(QXOgreBadNumbers, WidthsOfLinesAndPointsOfNoNumbersAreSurvived) {
  for (double const d : {NO_NUMBER, INFINITE, -3.0, 1.0e300}) {
    m_pSquare->SetLineWidth(d);
    m_pSquare->SetPointSize(d);
    m_pSquare->SetDepthBias(d, d);
    Frame();
  }
  m_pSquare->SetDepthBias(0.0, 0.0);
  EXPECT_EQ(Middle(), RED_PIXEL);
}

}  // namespace QXC
