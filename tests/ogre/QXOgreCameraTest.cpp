#include <cmath>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

constexpr double PI = 3.14159265358979323846;

struct QXRenderCall {
  QXInt64 nHandle = 0;
  QXCamera* pCamera = nullptr;
  QXViewport* pViewport = nullptr;
  int bRenderScene = -1;
  int nCalls = 0;
};
QXRenderCall s_RenderCall;

void RecordCall(QXInt64 nHandle, QXCamera* pCamera, QXViewport* pViewport, unsigned char bRenderScene) {
  s_RenderCall = {nHandle, pCamera, pViewport, bRenderScene, s_RenderCall.nCalls + 1};
}

}  // namespace

using QXOgreCamera = QXOgreScenery;

TEST_F(QXOgreCamera, WithoutAProjectionOfTheHostsItComputesOneForItsViewport) {
  QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
  pCamera->SetNearDist(1.0);
  pCamera->SetFarDist(100.0);
  AddViewport(*m_pTarget, *pCamera, 1, 0.0, 0.0, 1.0, 0.5);
  EXPECT_EQ(pCamera->GetAspect(), 2.0);
  QXMatrix4d matExpected;
  // Half a horizontal field of 60 degrees has a tangent of 0.577, and the height is half the width.
  m_pGraphics3D->MakeProjectionMatrix(2.0 * std::atan(std::tan(PI / 6.0) / 2.0), 2.0, 1.0, 100.0, matExpected);
  QXMatrix4d const& mat = pCamera->GetProjectionMatrix();
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) EXPECT_NEAR(mat[i][j], matExpected[i][j], 1.0e-12) << i << j;
  EXPECT_NEAR(mat[0][0], 1.0 / std::tan(PI / 6.0), 1.0e-12);
}

TEST_F(QXOgreCamera, AFieldOfTheHostsCountsOnceAModeIsChosen) {
  QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
  pCamera->SetFOVMode(FOV_MODE_DERIVED);
  pCamera->SetFov(PI / 2.0);
  AddViewport(*m_pTarget, *pCamera, 1, 0.0, 0.0, 1.0, 0.5);
  EXPECT_NEAR(pCamera->GetProjectionMatrix()[1][1], 1.0, 1.0e-12);
  // The second field is horizontal.
  pCamera->SetFOVMode(FOV_MODE_SECOND);
  Frame();
  EXPECT_NEAR(pCamera->GetProjectionMatrix()[0][0], 1.0 / std::tan(PI / 6.0), 1.0e-12);
}

TEST_F(QXOgreCamera, AProjectionOfTheHostsIsKeptUntilItIsTakenBack) {
  QXMatrix4d const matHost = m_pCamera->GetProjectionMatrix();
  Frame();
  m_pCamera->NotifyViewport(m_pViewport);
  EXPECT_EQ(m_pCamera->GetProjectionMatrix(), matHost);
  m_pCamera->SetProjectionMatrix(QXMatrix4d::ZERO);
  Frame();
  EXPECT_NE(m_pCamera->GetProjectionMatrix()[0][0], 0.0);
  EXPECT_EQ(m_pCamera->GetAspect(), 1.0);
}

TEST_F(QXOgreCamera, TheOrthographicWindowHasItsHeight) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  m_pCamera->SetProjectionMatrix(QXMatrix4d::ZERO);
  m_pCamera->SetOrthoWindowHeight(4.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(17, 17), RED_PIXEL);
  EXPECT_EQ(picture.At(14, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(46, 46), RED_PIXEL);
}

TEST_F(QXOgreCamera, DistancesThatAreNotSetFollowTheScene) {
  QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
  pCamera->SetPosition(0.0, 0.0, 5.0e6);
  AddViewport(*m_pTarget, *pCamera, 1, 0.0, 0.0, 1.0, 1.0);
  float const fFar = 3.0e6F;
  DrawSquare(-fFar, -fFar, fFar, fFar, 0.0F, RED);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  // Flat against the eye's direction: near and far close around it.
  double const dNear = pCamera->GetProjectionMatrix()[3][2] / (pCamera->GetProjectionMatrix()[2][2] - 1.0);
  double const dFar = pCamera->GetProjectionMatrix()[3][2] / (pCamera->GetProjectionMatrix()[2][2] + 1.0);
  EXPECT_LT(dNear, 5.0e6);
  EXPECT_GT(dFar, 5.0e6);
  EXPECT_LT(dFar, 5.1e6);
  pCamera->SetFarDist(4.0e6);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  pCamera->SetFarDist(6.0e6);
  pCamera->SetNearDist(5.5e6);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  pCamera->SetNearDist(1.0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreCamera, InsideTheSceneTheNearDistanceStaysAFractionOfTheFarOne) {
  QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
  AddViewport(*m_pTarget, *pCamera, 1, 0.0, 0.0, 1.0, 1.0);
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1000.0F, RED);
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 1000.0F, RED);
  Frame();
  QXMatrix4d const& mat = pCamera->GetProjectionMatrix();
  double const dNear = mat[3][2] / (mat[2][2] - 1.0);
  double const dFar = mat[3][2] / (mat[2][2] + 1.0);
  EXPECT_NEAR(dFar, 1002.0, 1.0);
  EXPECT_NEAR(dFar / dNear, 1.0e4, 1.0);
}

TEST_F(QXOgreCamera, TheDistancesFollowExaggeratedHeights) {
  QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
  pCamera->SetPosition(0.0, 0.0, 100.0);
  AddViewport(*m_pTarget, *pCamera, 1, 0.0, 0.0, 1.0, 1.0);
  DrawSquare(-9.0F, -9.0F, 9.0F, 9.0F, -10.0F, RED);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_pTarget->SetVerticalExaggeration(10.0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreCamera, ACameraThatWasNeverMovedLooksDownFromZero) {
  QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
  AddViewport(*m_pTarget, *pCamera, 1, 0.0, 0.0, 1.0, 1.0);
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -2.0F, RED);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreCamera, ACameraWithoutASceneDrawsThatOfItsTarget) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"other"), 1);
  QXRenderTarget* const pOther = m_pGraphics3D->CreateRenderTexture(L"other", PF_A8R8G8B8, SIZE, SIZE, 0, 32, L"other");
  m_pGraphics3D->AttachRenderTarget(pOther);
  pOther->SetSunLightEnable(0);
  EXPECT_EQ(pOther->GetSceneName(), QdcUnicodeString(L"other"));
  QXCamera* const pCamera = MakeCamera(L"any", L"");
  AddViewport(*pOther, *pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  AddViewport(*m_pTarget, *pCamera, 1, 0.0, 0.0, 0.5, 1.0);
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, GREEN);
  Draw(*pMesh, L"other");
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  QXPicture const main = Frame();
  EXPECT_EQ(QXPicture(*pOther).At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(main.At(16, 32), RED_PIXEL);
}

TEST_F(QXOgreCamera, AViewOfTheHostsIsTaken) {
  DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  Frame();
  QXMatrix4d matView;
  matView.SetTrans({0.75, 0.0, -10.0});
  m_pCamera->SetViewMatrix(matView);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(60, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(36, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreCamera, ACopiedCameraOfTheLibraryDrawsWithItsMatrices) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  static_cast<QXCamera&>(*m_pCamera) = QXCamera::CreateNormalCamera(SCENE_PLANE, 4.0, 4.0, {1.0, 0.0, 10.0});
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(30, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(34, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreCamera, AfterAFrameTheRendererHasItsViewportAndMatrices) {
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetViewport(), m_pViewport);
  EXPECT_EQ(m_pGraphics3D->m_matView, m_pCamera->GetViewMatrix());
  EXPECT_EQ(m_pGraphics3D->m_matProjection, m_pCamera->GetProjectionMatrix());
  EXPECT_EQ(m_pCamera->m_bRefresh, 0);
  EXPECT_EQ(m_pCamera->ContainsPoint({0.9, 0.0, 0.0}), 1);
  EXPECT_EQ(m_pCamera->ContainsPoint({1.1, 0.0, 0.0}), 0);
}

TEST_F(QXOgreCamera, AWorldPointIsFoundWhereItIsDrawn) {
  QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
  pCamera->SetPosition(3.0, -4.0, 5.0);
  pCamera->LookAt(0.0, 0.0, 0.0);
  m_pTarget->RemoveAllViewports();
  AddViewport(*m_pTarget, *pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  auto const pMesh = MakeMesh({{0.5F, 0.7F, 0.2F}});
  AddRange<unsigned short>(*pMesh, {0}, RED)->m_eOperationType = QX_OPERATION_POINT_LIST;
  Draw(*pMesh)->SetPointSize(3.0);
  QXPicture const picture = Frame();
  QXVector3d vecWindow;
  ASSERT_EQ(m_pGraphics3D->GetScreenPosition({0.5, 0.7, 0.2}, vecWindow), 1);
  EXPECT_EQ(
      picture.At(static_cast<unsigned int>(vecWindow.x), static_cast<unsigned int>(64.0 - vecWindow.y)), RED_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetScreenPosition({6.0, -8.0, 10.0}, vecWindow), 0);
}

TEST_F(QXOgreCamera, TheFunctionOfTheHostIsCalledAfterTheScene) {
  s_RenderCall = {};
  m_pCamera->SetSceneRenderFunc(RecordCall, 77);
  m_pViewport->m_bRenderSceneFlag = 0;
  Frame();
  EXPECT_EQ(s_RenderCall.nCalls, 1);
  EXPECT_EQ(s_RenderCall.nHandle, 77);
  EXPECT_EQ(s_RenderCall.pCamera, m_pCamera);
  EXPECT_EQ(s_RenderCall.pViewport, m_pViewport);
  EXPECT_EQ(s_RenderCall.bRenderScene, 0);
}

TEST_F(QXOgreCamera, TheOriginReachesCamerasOldAndNew) {
  m_pGraphics3D->SetRelativeOrigin({1.0, 2.0, 3.0});
  EXPECT_EQ(m_pCamera->GetRelativeOrigin(), QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(m_pCamera->GetRelativePosition(), QXVector3d(-1.0, -2.0, 7.0));
  QXCamera* const pNew = m_pGraphics3D->CreateCamera(L"new", L"3D");
  pNew->SetPosition(1.0, 2.0, 4.0);
  EXPECT_EQ(pNew->GetRelativePosition(), QXVector3d(0.0, 0.0, 1.0));
}

TEST_F(QXOgreCamera, ViewportsOfNoTargetOfThisRendererAreLeftAlone) {
  QXViewport viewport(0, 0, 10, 10);
  m_pCamera->RenderScene(&viewport, 1);
  m_pCamera->RenderScene(nullptr, 1);
  EXPECT_EQ(m_pGraphics3D->GetViewport(), nullptr);
}

}  // namespace QXC
