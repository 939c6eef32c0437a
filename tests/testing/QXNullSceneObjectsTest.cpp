#include <memory>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/renderop/QXParticleSystem3D.h>
#include <QxGraphics3D/renderop/QXQueryOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>
#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRibbonTrail3D.h>
#include <QxGraphics3D/testing/QXNullUniformBuffer.h>

#include "../QXBareTexture.h"

namespace QXC {
namespace {

class QXNullSceneObjectsTest : public testing::Test {
protected:
  QXNullSceneObjectsTest() { m_Graphics.Initialize(QdcUnicodeString()); }
  QXRenderOperationManager& Manager() { return *m_Graphics.GetRenderOperationManager(); }

  QXNullGraphics3D m_Graphics;
};

TEST_F(QXNullSceneObjectsTest, BillboardKeepsPlaceAndTexture) {
  QXBareTexture texture;
  {
    std::unique_ptr<QXBillboard> const pBillboard(Manager().CreateBillboard(L"Scene3D"));
    EXPECT_EQ(pBillboard->IsVisible(), 1);
    pBillboard->SetVisible(0);
    EXPECT_EQ(pBillboard->IsVisible(), 0);
    pBillboard->SetPosition(QXVector3d(1.0, 2.0, 3.0));
    EXPECT_TRUE(pBillboard->GetPosition() == QXVector3d(1.0, 2.0, 3.0));
    pBillboard->SetTexture(&texture, QdcRect2D(0.0, 0.0, 1.0, 1.0));
    pBillboard->SetTexture(&texture, QdcRect2D(0.0, 0.0, 0.5, 0.5));
    EXPECT_EQ(texture.GetRef(), 1);
  }
  EXPECT_EQ(texture.GetRef(), 0);
}

TEST_F(QXNullSceneObjectsTest, BillboardNeedsASceneThatExists) {
  EXPECT_EQ(Manager().CreateBillboard(L"nowhere"), nullptr);
  EXPECT_EQ(Manager().CreateBillboard(L""), nullptr);
}

TEST_F(QXNullSceneObjectsTest, OverlayKeepsItsNameAndTexture) {
  QXBareTexture texture;
  {
    QXRenderOperationOverlay* const pOverlay = m_Graphics.CreateOverlay(L"logo");
    EXPECT_TRUE(pOverlay->GetName() == L"logo");
    pOverlay->SetVisible(0);
    EXPECT_EQ(pOverlay->IsVisible(), 0);
    pOverlay->SetTexture(&texture, QdcRect2D());
    EXPECT_EQ(texture.GetRef(), 1);
    m_Graphics.DestroyOverlay(L"logo");
  }
  EXPECT_EQ(texture.GetRef(), 0);
}

TEST_F(QXNullSceneObjectsTest, ParticlesComeByTheirRateWhileEmitting) {
  std::unique_ptr<QXParticleSystem3D> const pParticles(Manager().CreateParticleSystem(L"Scene3D", L""));
  pParticles->SetEmissionRate(10.0);
  pParticles->Advance(0.25);
  EXPECT_EQ(pParticles->GetParticleCount(), 2u);
  pParticles->Advance(0.25);
  EXPECT_EQ(pParticles->GetParticleCount(), 5u);
  pParticles->SetEmitting(0);
  pParticles->Advance(1.0);
  EXPECT_EQ(pParticles->GetParticleCount(), 5u);
  pParticles->SetEmitting(1);
  pParticles->Advance(-1.0);
  pParticles->Advance(1e300);
  EXPECT_EQ(pParticles->GetParticleCount(), 5u);
}

TEST_F(QXNullSceneObjectsTest, QueryIsReadyAtItsEndAndCountsNoPixel) {
  std::unique_ptr<QXQueryOperation3D> const pQuery(Manager().CreateQueryOperation(L"q"));
  EXPECT_TRUE(pQuery->GetName() == L"q");
  EXPECT_EQ(pQuery->IsResultReady(), 0);
  pQuery->BeginQuery();
  pQuery->EndQuery();
  EXPECT_EQ(pQuery->IsResultReady(), 1);
  EXPECT_EQ(pQuery->GetPixelCount(), 0u);
  pQuery->BeginQuery();
  EXPECT_EQ(pQuery->IsResultReady(), 0);
}

TEST_F(QXNullSceneObjectsTest, TrailsKeepTheNewestPoints) {
  std::unique_ptr<QXRibbonTrail3D> const pTrail(Manager().CreateRibbonTrail(L"Scene3D", L"tram", L""));
  auto const& trail = dynamic_cast<QXNullRibbonTrail3D const&>(*pTrail);
  EXPECT_TRUE(pTrail->GetName() == L"tram");
  pTrail->SetTrailCount(2);
  pTrail->SetMaxPointCount(3);
  for (int i = 0; i < 5; ++i) {
    pTrail->AddPoint(1, QXVector3d(i, 0.0, 0.0));
    pTrail->AddPoint(2, QXVector3d(i, 0.0, 0.0));
  }
  ASSERT_EQ(trail.GetPoints(1).size(), 3u);
  EXPECT_EQ(trail.GetPoints(1)[0].x, 2.0);
  EXPECT_EQ(trail.GetPoints(1)[2].x, 4.0);
  EXPECT_TRUE(trail.GetPoints(2).empty()) << "past the last trail";
  pTrail->SetMaxPointCount(1);
  ASSERT_EQ(trail.GetPoints(1).size(), 1u);
  EXPECT_EQ(trail.GetPoints(1)[0].x, 4.0);
  pTrail->ClearTrail(0);
  EXPECT_EQ(trail.GetPoints(1).size(), 1u);
  pTrail->ClearAllTrails();
  EXPECT_TRUE(trail.GetPoints(1).empty());
}

TEST_F(QXNullSceneObjectsTest, TrailsKeepTheirSettings) {
  std::unique_ptr<QXRibbonTrail3D> const pTrail(Manager().CreateRibbonTrail(L"Scene3D", L"tram", L""));
  pTrail->SetTrailCount(2);
  QXColorValue3D const color(0.5, 0.25, 0.0, 1.0);
  pTrail->SetInitialColor(1, color);
  pTrail->SetColorChange(1, color);
  pTrail->SetInitialWidth(1, 4.0);
  pTrail->SetWidthChange(1, 0.5);
  pTrail->SetTrailLength(9.0);
  pTrail->SetVisible(0);
  pTrail->SetInitialWidth(2, 8.0);
  EXPECT_EQ(pTrail->GetInitialColor(1), color);
  EXPECT_EQ(pTrail->GetColorChange(1), color);
  EXPECT_EQ(pTrail->GetInitialWidth(1), 4.0);
  EXPECT_EQ(pTrail->GetWidthChange(1), 0.5);
  EXPECT_EQ(pTrail->GetTrailLength(), 9.0);
  EXPECT_EQ(pTrail->IsVisible(), 0);
  EXPECT_EQ(pTrail->GetInitialWidth(2), pTrail->GetInitialWidth(0)) << "past the last: as new trails are";
}

TEST_F(QXNullSceneObjectsTest, SkeletonKeepsBonesAndTime) {
  std::unique_ptr<QXSkeletonAnimation> const pAnimation(Manager().CreateSkeletonAnimation(L"walk"));
  EXPECT_EQ(pAnimation->AddBone(L"root", -1, QXMatrix4d()), 0);
  EXPECT_EQ(pAnimation->AddBone(L"leg", 0, QXMatrix4d()), 1);
  EXPECT_EQ(pAnimation->AddBone(L"lost", 2, QXMatrix4d()), -1);
  EXPECT_EQ(pAnimation->GetBoneCount(), 2);
  QdcArray<QXAnimationKey*> arrKeys;
  arrKeys.SetSize(5);
  EXPECT_EQ(pAnimation->SetKeys(1, arrKeys), 1);
  EXPECT_EQ(pAnimation->SetKeys(2, arrKeys), 0);
  EXPECT_EQ(pAnimation->SetKeys(-1, arrKeys), 0);
  EXPECT_EQ(pAnimation->GetLength(), 4.0);
  pAnimation->Advance(1.0);
  EXPECT_EQ(pAnimation->GetTime(), 0.0) << "it stands still at first";
  pAnimation->SetPlaying(1);
  pAnimation->Advance(3.0);
  EXPECT_EQ(pAnimation->GetTime(), 3.0);
  pAnimation->Advance(3.0);
  EXPECT_EQ(pAnimation->GetTime(), 4.0);
  pAnimation->SetLoop(1);
  pAnimation->SetTime(3.0);
  pAnimation->Advance(3.0);
  EXPECT_EQ(pAnimation->GetTime(), 2.0);
}

TEST_F(QXNullSceneObjectsTest, OverlaysAndUniformBuffersOfTheRendererHaveNamesOfTheirOwn) {
  QXRenderOperationOverlay* const pOverlay = m_Graphics.CreateOverlay(L"scale");
  ASSERT_NE(pOverlay, nullptr);
  EXPECT_EQ(m_Graphics.CreateOverlay(L"scale"), nullptr);
  m_Graphics.SetOverlayVisible(L"scale", 0);
  EXPECT_EQ(pOverlay->IsVisible(), 0);
  m_Graphics.DestroyOverlay(L"scale");
  EXPECT_NE(m_Graphics.CreateOverlay(L"scale"), nullptr);

  QXUniformBuffer* const pBuffer = m_Graphics.CreateUniformBuffer(L"light");
  ASSERT_NE(pBuffer, nullptr);
  EXPECT_EQ(m_Graphics.CreateUniformBuffer(L"light"), nullptr);
  pBuffer->AddUniformDefinition(L"position", 4, 3);
  pBuffer->AddUniformDefinition(L"color", 16, 1);
  EXPECT_EQ(dynamic_cast<QXNullUniformBuffer&>(*pBuffer).GetByteCount(), 28u);
  EXPECT_EQ(m_Graphics.GetUniformBuffer(L"light"), pBuffer);
  m_Graphics.DestroyUniformBuffer(L"light");
  EXPECT_EQ(m_Graphics.GetUniformBuffer(L"light"), nullptr);
}

TEST_F(QXNullSceneObjectsTest, TextureManagerHoldsTexturesByName) {
  QXTextureManager* const pManager = m_Graphics.GetTextureManager();
  EXPECT_EQ(pManager->GetTexture(L"road", 0), nullptr);
  QXTexture* const pTexture = pManager->GetTexture(L"road", 1);
  ASSERT_NE(pTexture, nullptr);
  EXPECT_EQ(pManager->GetTexture(L"road", 0), pTexture);
  pTexture->AddRef();
  pManager->DeleteUnusedTextures();
  EXPECT_EQ(pManager->GetTexture(L"road", 0), pTexture);
  m_Graphics.ClearResource();
  EXPECT_EQ(pManager->GetTexture(L"road", 0), nullptr);
  std::unique_ptr<QXTexture> const pNameless(pManager->CreateTexture());
  EXPECT_NE(pNameless, nullptr);
}

}  // namespace
}  // namespace QXC
