// What the abstract classes promise of every renderer, where the null renderer could differ from one with a device.
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/testing/QXNullCamera.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>

#include "QXTestGeometry.h"

namespace QXC {
namespace {

class QXNullContract : public testing::Test {
protected:
  QXNullContract() : m_pGraphics(std::make_unique<QXNullGraphics3D>()) {
    m_pGraphics->Initialize(L"");
    m_pCamera = dynamic_cast<QXNullCamera*>(m_pGraphics->CreateCamera(L"eye", L"Scene3D"));
    m_pCamera->SetPosition(0.0, 0.0, 10.0);
  }
  QXNullRenderTarget* MakeTexture(wchar_t const* szName, wchar_t const* szScene = L"") {
    return dynamic_cast<QXNullRenderTarget*>(
        m_pGraphics->CreateRenderTexture(szName, PF_A8R8G8B8, 4, 4, 0, 32, szScene));
  }

  std::unique_ptr<QXNullGraphics3D> m_pGraphics;
  QXNullCamera* m_pCamera;
};

TEST_F(QXNullContract, APixelRectangleCountsFromTheBottomAndIsReadTopDown) {
  std::unique_ptr<QXNullRenderTarget> const pTarget(MakeTexture(L"texture"));
  std::vector<unsigned char> arrPicture(64);
  for (std::size_t i = 0; i < 16; ++i) arrPicture[4 * i] = static_cast<unsigned char>(i);
  pTarget->CopyFromMemory(arrPicture.data(), 64);
  unsigned char arrPixels[16] = {};
  ASSERT_EQ(m_pGraphics->ReadPixels(pTarget.get(), QdcRect(1, 0, 3, 2), arrPixels, 16), 1);
  EXPECT_EQ(arrPixels[0], 9);
  EXPECT_EQ(arrPixels[4], 10);
  EXPECT_EQ(arrPixels[8], 13);
  EXPECT_EQ(arrPixels[12], 14);
}

TEST_F(QXNullContract, APictureMayComeInMoreMemoryThanItTakes) {
  std::unique_ptr<QXNullRenderTarget> const pTarget(MakeTexture(L"texture"));
  std::vector<unsigned char> arrPicture(65, 7);
  pTarget->CopyFromMemory(arrPicture.data(), 65);
  std::vector<unsigned char> arrRead(64);
  EXPECT_EQ(pTarget->CopyToMemory(arrRead.data(), 64), 1);
  EXPECT_EQ(arrRead, std::vector<unsigned char>(64, 7));
  arrPicture.assign(65, 9);
  pTarget->CopyFromMemory(arrPicture.data(), 63);
  EXPECT_EQ(pTarget->CopyToMemory(arrRead.data(), 64), 1);
  EXPECT_EQ(arrRead, std::vector<unsigned char>(64, 7));
}

TEST_F(QXNullContract, ACameraWithoutASceneDrawsThatOfItsTarget) {
  m_pGraphics->CreateScene(L"city");
  auto* const pFree = dynamic_cast<QXNullCamera*>(m_pGraphics->CreateCamera(L"free", L""));
  ASSERT_NE(pFree, nullptr);
  pFree->SetPosition(0.0, 0.0, 10.0);
  std::unique_ptr<QXRenderOperation3D> const pDrawable(
      m_pGraphics->GetRenderOperationManager()->CreateRenderOperation3D(L"city", 1));
  pDrawable->SetRenderOperationMultiIndex(MakeSquare().get());
  std::unique_ptr<QXNullRenderTarget> const pMain(MakeTexture(L"main"));
  std::unique_ptr<QXNullRenderTarget> const pCity(MakeTexture(L"texture", L"city"));
  pMain->AddViewport(pFree, 0, 0.0, 0.0, 1.0, 1.0);
  pCity->AddViewport(pFree, 0, 0.0, 0.0, 1.0, 1.0);
  pMain->Update();
  EXPECT_EQ(pMain->GetTriangleCount(), 0);
  pCity->Update();
  EXPECT_EQ(pCity->GetTriangleCount(), 2);
  QXNullGraphics3D notStarted;
  EXPECT_EQ(notStarted.CreateCamera(L"free", L""), nullptr);
}

TEST_F(QXNullContract, ATargetOutlivesItsCameraAndItsRenderer) {
  std::unique_ptr<QXNullRenderTarget> const pTarget(MakeTexture(L"texture"));
  QXCamera* const pOther = m_pGraphics->CreateCamera(L"other", L"Scene3D");
  pTarget->AddViewport(pOther, 0, 0.0, 0.0, 1.0, 1.0);
  pTarget->AddViewport(m_pCamera, 1, 0.0, 0.0, 1.0, 1.0);
  m_pGraphics->DestroyCamera(pOther);
  EXPECT_EQ(pTarget->GetViewport(0)->GetCamera(), nullptr) << "though it is not attached";
  EXPECT_EQ(pTarget->GetViewport(1)->GetCamera(), m_pCamera);
  m_pGraphics.reset();
  EXPECT_EQ(pTarget->GetViewport(1)->GetCamera(), nullptr);
  EXPECT_EQ(pTarget->GetGraphics3D(), nullptr);
  pTarget->Update();
}

TEST_F(QXNullContract, TheOriginReachesCamerasOldAndNew) {
  m_pGraphics->SetRelativeOrigin(QXVector3d(100.0, 0.0, 0.0));
  EXPECT_TRUE(m_pCamera->GetPosition() == QXVector3d(0.0, 0.0, 10.0));
  EXPECT_TRUE(m_pCamera->GetRelativePosition() == QXVector3d(-100.0, 0.0, 10.0));
  EXPECT_TRUE(m_pGraphics->CreateCamera(L"new", L"Scene3D")->GetRelativeOrigin() == QXVector3d(100.0, 0.0, 0.0));
}

TEST_F(QXNullContract, HeightsMayBeTurnedUpsideDown) {
  std::unique_ptr<QXRenderOperation3D> const pDrawable(
      m_pGraphics->GetRenderOperationManager()->CreateRenderOperation3D(L"Scene3D", 1));
  pDrawable->SetRenderOperationMultiIndex(MakeSquare().get());
  pDrawable->SetBoundingBox(QXBoundingBox(QXVector3d(-1.0, -1.0, -30.0), QXVector3d(1.0, 1.0, -20.0)));
  std::unique_ptr<QXNullRenderTarget> const pTarget(MakeTexture(L"texture"));
  pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  pTarget->Update();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 1u);
  pTarget->SetVerticalExaggeration(-1.0);
  pTarget->Update();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 0u) << "above the eye now, which looks down";
}

TEST_F(QXNullContract, AFieldOfNothingShowsNothingUntilThereIsOneAgain) {
  std::unique_ptr<QXNullRenderTarget> const pTarget(MakeTexture(L"texture"));
  pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_pCamera->SetFOVMode(FOV_MODE_DERIVED);
  pTarget->Update();
  QXMatrix4d const matBefore = m_pCamera->GetProjectionMatrix();
  double const dFov = m_pCamera->GetFov();
  m_pCamera->SetFov(0.0);
  pTarget->Update();
  m_pCamera->SetFov(dFov);
  pTarget->Update();
  EXPECT_EQ(m_pCamera->GetProjectionMatrix(), matBefore);
}

TEST_F(QXNullContract, NoViewportIsNothingToDraw) {
  m_pCamera->RenderScene(nullptr, 1);
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 0u);
}

TEST_F(QXNullContract, WhiteIsNoColourOfAnOperations) {
  std::unique_ptr<QXRenderOperation3D> const pDrawable(
      m_pGraphics->GetRenderOperationManager()->CreateRenderOperation3D(L"Scene3D", 1));
  auto const pSquare = MakeSquare();
  pSquare->m_Color = QXColorValue3D(0.5, 0.0, 0.0, 1.0);
  pDrawable->SetRenderOperationMultiIndex(pSquare.get());
  pSquare->m_Color = QXColorValue3D::White;
  pDrawable->SetRenderOperationMultiIndex(pSquare.get());
  EXPECT_EQ(pDrawable->GetColor(), QXColorValue3D(0.5, 0.0, 0.0, 1.0));
}

}  // namespace
}  // namespace QXC
