#include <cmath>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/testing/QXNullCamera.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>
#include <QxGraphics3D/testing/QXNullScene.h>
#include <QxGraphics3D/testing/QXNullSkyGraphics3D.h>
#include <QxGraphics3D/testing/QXNullTritonOceanGraphics3D.h>

#include "QXTestGeometry.h"

namespace QXC {
namespace {

using DrawablePtr = std::unique_ptr<QXRenderOperation3D>;

/// A renderer with a window of 80 x 40 pixels, and a camera ten units above the origin that looks down on it.
class QXNullGraphics3DTest : public testing::Test {
protected:
  QXNullGraphics3DTest() {
    m_Graphics.Initialize(QdcUnicodeString());
    m_pTarget = MakeWindow(L"main");
    m_pCamera = dynamic_cast<QXNullCamera*>(m_Graphics.CreateCamera(L"eye", m_Graphics.GetSceneName(0)));
    m_pCamera->SetPosition(0.0, 0.0, 10.0);
  }
  ~QXNullGraphics3DTest() override { m_Graphics.ShutDown(); }

  QXNullRenderTarget* MakeWindow(QdcUnicodeString const& strName) {
    auto* const pTarget = dynamic_cast<QXNullRenderTarget*>(m_Graphics.CreateRenderWindow(strName, nullptr, 80, 40, 0));
    m_Graphics.AttachRenderTarget(pTarget);
    return pTarget;
  }

  DrawablePtr MakeSquareAt(double dX, double dY, double dZ, QdcUnicodeString const& strScene = L"Scene3D") {
    DrawablePtr pDrawable(m_Graphics.GetRenderOperationManager()->CreateRenderOperation3D(strScene, 1));
    PlaceSquare(*pDrawable, dX, dY, dZ);
    return pDrawable;
  }

  QXNullGraphics3D m_Graphics;
  QXNullRenderTarget* m_pTarget = nullptr;
  QXNullCamera* m_pCamera = nullptr;
};

// --- Whole frames ---

TEST_F(QXNullGraphics3DTest, AFrameCullsAndCounts) {
  DrawablePtr const pSeen = MakeSquareAt(0.0, 0.0, 0.0);
  DrawablePtr const pAlsoSeen = MakeSquareAt(1.0, 1.0, 1.0);
  DrawablePtr const pBeside = MakeSquareAt(100.0, 0.0, 0.0);
  DrawablePtr const pBehind = MakeSquareAt(0.0, 0.0, 20.0);
  DrawablePtr const pHidden = MakeSquareAt(0.0, 0.0, 0.0);
  pHidden->SetVisible(0);
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.BeginGeometryCount();
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 2u);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 4);
  EXPECT_EQ(m_Graphics.GetDrawOperationCount(), 4u);
  EXPECT_EQ(m_Graphics.GetFaceCount(), 4u);
  EXPECT_EQ(m_Graphics.GetVertexCount(), 8u);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 4) << "of one frame";
  EXPECT_EQ(m_Graphics.GetDrawOperationCount(), 8u) << "since the count began";
  m_Graphics.BeginGeometryCount();
  EXPECT_EQ(m_Graphics.GetDrawOperationCount(), 0u);
  EXPECT_EQ(m_Graphics.GetFaceCount(), 0u);
}

TEST_F(QXNullGraphics3DTest, TurningTheCameraChangesWhatIsSeen) {
  DrawablePtr const pSquare = MakeSquareAt(100.0, 0.0, 10.0);
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 0u);
  m_pCamera->LookAt(100.0, 0.0, 10.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 1u);
  m_pCamera->SetFarDist(50.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 0u);
}

TEST_F(QXNullGraphics3DTest, ParallelViewsSeeTheirWindow) {
  DrawablePtr const pSquare = MakeSquareAt(15.0, 0.0, 0.0);
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_pCamera->SetProjectionType(PROJECTION_ORTHOGRAPHIC);
  m_pCamera->SetOrthoWindowHeight(10.0);  // 20 wide at the window's 2 : 1, so it ends at 10 and the square begins at 14
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 0u);
  m_pCamera->SetOrthoWindowHeight(15.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 1u);
}

TEST_F(QXNullGraphics3DTest, AProjectionOfTheHostStays) {
  DrawablePtr const pSquare = MakeSquareAt(0.0, 0.0, 0.0);
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  QXMatrix4d matProjection;
  m_Graphics.MakeOrthoMatrix(50.0, 60.0, 50.0, 60.0, 1.0, 100.0, matProjection);
  m_pCamera->SetProjectionMatrix(matProjection);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 0u);
  EXPECT_TRUE(m_pCamera->GetProjectionMatrix() == matProjection);
  EXPECT_TRUE(m_Graphics.m_matProjection == matProjection);
}

TEST_F(QXNullGraphics3DTest, ExaggeratedHeightsMoveWhatIsSeen) {
  DrawablePtr const pSquare = MakeSquareAt(0.0, 0.0, 4.0);
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 1u);
  m_pTarget->SetVerticalExaggeration(3.0);  // 12, above the eye
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 0u);
}

TEST_F(QXNullGraphics3DTest, EachViewportShowsItsBackground) {
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 0.5, 1.0)->m_BackgroundColor = QXColorValue3D(1.0, 0.0, 0.0, 1.0);
  QXViewport* const pRight = m_pTarget->AddViewport(m_pCamera, 1, 0.5, 0.0, 0.5, 1.0);
  pRight->m_BackgroundColor = QXColorValue3D(0.0, 0.0, 1.0, 1.0);
  m_Graphics.UpdateAllRenderTargets();
  unsigned char arrPixels[2 * 4] = {};
  EXPECT_EQ(m_Graphics.ReadPixels(m_pTarget, QdcRect(39, 20, 41, 21), arrPixels, sizeof(arrPixels)), 1);
  EXPECT_EQ(std::vector<int>(arrPixels, arrPixels + 8), (std::vector<int>{0, 0, 255, 255, 255, 0, 0, 255}));
  pRight->m_BackgroundColor = QXColorValue3D(0.0, 1.0, 0.0, 1.0);
  pRight->m_nClearBuffers = 2;  // depth alone
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_Graphics.ReadPixels(m_pTarget, QdcRect(40, 20, 41, 21), arrPixels, sizeof(arrPixels)), 1);
  EXPECT_EQ(arrPixels[0], 255) << "still blue";
  pRight->m_nClearBuffers = 3;
  pRight->m_bClearEveryFrame = 0;
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_Graphics.ReadPixels(m_pTarget, QdcRect(40, 20, 41, 21), arrPixels, sizeof(arrPixels)), 1);
  EXPECT_EQ(arrPixels[0], 255) << "still blue";
}

TEST_F(QXNullGraphics3DTest, SeveralTargetsEachWithSeveralViewportsRunInEveryMode) {
  DrawablePtr const pSquare = MakeSquareAt(0.0, 0.0, 0.0);
  QXNullRenderTarget* const arrTargets[] = {m_pTarget, MakeWindow(L"a"), MakeWindow(L"z")};
  for (QXNullRenderTarget* const pTarget : arrTargets) {
    for (int const nZOrder : {0, 4, 9}) {
      pTarget->AddViewport(m_pCamera, nZOrder, 0.0, 0.0, 1.0, 1.0);
    }
  }
  for (int const nMode : {0, 1, 4}) {
    for (QXNullRenderTarget* const pTarget : arrTargets) {
      pTarget->SetMultiViewportMode(static_cast<MultiViewportMode>(nMode));
    }
    m_Graphics.BeginGeometryCount();
    m_Graphics.UpdateAllRenderTargets();
    EXPECT_EQ(m_Graphics.GetFaceCount(), 3u * 3 * 2) << nMode;
    for (QXNullRenderTarget const* const pTarget : arrTargets) {
      EXPECT_EQ(pTarget->GetTriangleCount(), 3 * 2) << nMode;
    }
    EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), arrTargets[2]) << "the last active one by name";
  }
  for (QXNullRenderTarget const* const pTarget : arrTargets) {
    EXPECT_EQ(pTarget->GetUpdateCount(), 3u);
    EXPECT_NE(pTarget->GetViewport(2), nullptr) << "renumbered in the ordered mode";
  }
}

TEST_F(QXNullGraphics3DTest, RefreshAndAlwaysActiveDrawInactiveTargets) {
  QXNullRenderTarget* const pIdle = MakeWindow(L"idle");
  pIdle->SetActive(0);
  pIdle->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(pIdle->GetUpdateCount(), 0u);
  pIdle->SetCurTargetRefresh(1);
  m_Graphics.UpdateAllRenderTargets();
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(pIdle->GetUpdateCount(), 1u);
  EXPECT_EQ(pIdle->IsCurTargetRefresh(), 0);
  pIdle->SetAlwaysActive(1);
  m_Graphics.UpdateAllRenderTargets();
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(pIdle->GetUpdateCount(), 3u);
  EXPECT_EQ(pIdle->IsActive(), 0);
}

TEST_F(QXNullGraphics3DTest, ViewportsWithoutTheSceneDrawNothingOfIt) {
  DrawablePtr const pSquare = MakeSquareAt(0.0, 0.0, 0.0);
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0)->m_bRenderSceneFlag = 0;
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_pCamera->GetDrawnCount(), 0u);
  EXPECT_EQ(m_Graphics.GetViewport(), m_pTarget->GetViewport(0));
}

TEST_F(QXNullGraphics3DTest, TheHostsRenderFunctionRunsInTheFrame) {
  static int s_nCalls = 0;
  static QXInt64 s_nHandle = 0;
  s_nCalls = 0;
  m_pCamera->SetSceneRenderFunc(
      [](QXInt64 nHandle, QXCamera* /*pCamera*/, QXViewport* /*pViewport*/, unsigned char bScene) {
        ++s_nCalls;
        s_nHandle = nHandle + bScene;
      },
      41);
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(s_nCalls, 1);
  EXPECT_EQ(s_nHandle, 42);
}

TEST_F(QXNullGraphics3DTest, PrioritisedTargetsUpdateByNumber) {
  QXNullRenderTarget* const pFirst = MakeWindow(L"z");
  QXNullRenderTarget* const pIdle = MakeWindow(L"b");
  pIdle->SetActive(0);
  m_Graphics.m_PrioritisedRenderTargets[1] = pFirst;
  m_Graphics.m_PrioritisedRenderTargets[2] = pIdle;
  m_Graphics.m_PrioritisedRenderTargets[5] = m_pTarget;
  m_Graphics.UpdatePrioritisedRenderTargets();
  EXPECT_EQ(pFirst->GetUpdateCount(), 1u);
  EXPECT_EQ(pIdle->GetUpdateCount(), 0u);
  EXPECT_EQ(m_pTarget->GetUpdateCount(), 1u);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), m_pTarget);
}

TEST_F(QXNullGraphics3DTest, WindowsAreShownAndTexturesAreNot) {
  auto* const pTexture =
      dynamic_cast<QXNullRenderTarget*>(m_Graphics.CreateRenderTexture(L"texture", PF_A8R8G8B8, 16, 16, 0, 32, L""));
  m_Graphics.AttachRenderTarget(pTexture);
  m_Graphics.SwapAllRenderTargetBuffers(1);
  EXPECT_EQ(m_pTarget->GetSwapCount(), 1u);
  EXPECT_EQ(pTexture->GetSwapCount(), 0u);
  EXPECT_EQ(pTexture->IsTextureTarget(), 1);
  EXPECT_EQ(pTexture->IsActive(), 0);
}

// --- Making and releasing ---

TEST(QXNullGraphics3D, NothingIsMadeBeforeInitialize) {
  QXNullGraphics3D graphics;
  EXPECT_EQ(graphics.IsInitialized(), 0);
  EXPECT_EQ(graphics.CreateScene(L"city"), 0);
  EXPECT_FALSE(graphics.GetErrorText().IsEmpty());
  EXPECT_EQ(graphics.CreateRenderWindow(L"main", nullptr, 8, 8, 0), nullptr);
  EXPECT_TRUE(graphics.GetSceneName(0).IsEmpty());
  EXPECT_TRUE(graphics.CreateSceneNode().IsEmpty());
  EXPECT_TRUE(graphics.GetRenderSystemName().IsEmpty());
  EXPECT_EQ(graphics.Initialize(L"/nowhere"), 1);
  EXPECT_EQ(graphics.Initialize(L"/nowhere"), 0);
  EXPECT_EQ(graphics.IsInitialized(), 1);
  EXPECT_TRUE(graphics.GetRenderSystemName() == L"null");
  EXPECT_TRUE(graphics.GetSceneName(1).IsEmpty());
}

TEST(QXNullGraphics3D, EverythingMadeIsReleased) {
  int const nBefore = QXNullObject::GetLiveCount();
  {
    QXNullGraphics3D graphics;
    graphics.Initialize(L"");
    graphics.CreateScene(L"city");
    graphics.AttachRenderTarget(graphics.CreateRenderWindow(L"main", nullptr, 8, 8, 0));
    graphics.CreateCamera(L"eye", L"city");
    graphics.CreateOverlay(L"logo");
    graphics.CreateUniformBuffer(L"light");
    graphics.GetTextureManager()->GetTexture(L"road", 1);
    QXRenderOperation3D* const pDrawable = graphics.GetRenderOperationManager()->CreateRenderOperation3D(L"city", 1);
    EXPECT_EQ(QXNullObject::GetLiveCount(), nBefore + 10);
    delete pDrawable;
    graphics.ShutDown();
    EXPECT_EQ(QXNullObject::GetLiveCount(), nBefore + 8);
  }
  EXPECT_EQ(QXNullObject::GetLiveCount(), nBefore);
}

TEST(QXNullGraphics3D, DrawablesAndTargetsMayOutliveTheRenderer) {
  DrawablePtr pDrawable;
  std::unique_ptr<QXRenderTarget> pTarget;
  {
    QXNullGraphics3D graphics;
    graphics.Initialize(L"");
    pDrawable.reset(graphics.GetRenderOperationManager()->CreateRenderOperation3D(graphics.GetSceneName(0), 1));
    pTarget.reset(graphics.CreateRenderTexture(L"t", PF_A8R8G8B8, 4, 4, 0, 32, L""));
  }
  PlaceSquare(*pDrawable, 0.0, 0.0, 0.0);
  EXPECT_EQ(pDrawable->GetTriangleCount(), 2u);
  pTarget->Update();
  EXPECT_EQ(pTarget->m_nFrameCount, 1u);
}

TEST_F(QXNullGraphics3DTest, ScenesHaveNamesOfTheirOwn) {
  EXPECT_EQ(m_Graphics.HasScene(L"city"), 0);
  EXPECT_EQ(m_Graphics.CreateScene(L"city"), 1);
  EXPECT_EQ(m_Graphics.HasScene(L"city"), 1);
  EXPECT_EQ(m_Graphics.CreateScene(L"city"), 0);
  EXPECT_EQ(m_Graphics.CreateScene(L""), 0);
  m_Graphics.DestroyScene(L"city");
  EXPECT_EQ(m_Graphics.HasScene(L"city"), 0);
  m_Graphics.DestroyScene(L"city");
}

TEST_F(QXNullGraphics3DTest, DestroyingASceneTakesItsCamerasAndFreesItsDrawables) {
  m_Graphics.CreateScene(L"city");
  QXCamera* const pCamera = m_Graphics.CreateCamera(L"city eye", L"city");
  QXViewport const* const pViewport = m_pTarget->AddViewport(pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  DrawablePtr const pDrawable = MakeSquareAt(0.0, 0.0, 0.0, L"city");
  EXPECT_EQ(m_Graphics.HasRenderableObjects(L"city"), 1);
  EXPECT_EQ(m_Graphics.CreateLight(L"lamp", L"city"), 1);
  m_Graphics.DestroyScene(L"city");
  EXPECT_EQ(m_Graphics.GetCamera(L"city eye"), nullptr);
  EXPECT_EQ(pViewport->GetCamera(), nullptr);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(pDrawable->GetTriangleCount(), 2u);
  EXPECT_EQ(m_Graphics.GetRenderOperationManager()->AttachRenderOperation3D(pDrawable.get(), L"Scene3D"), 1);
  EXPECT_EQ(m_Graphics.HasRenderableObjects(L"Scene3D"), 1);
  EXPECT_EQ(m_Graphics.CreateLight(L"lamp", L"Scene3D"), 1) << "the name is free again";
  EXPECT_EQ(m_Graphics.CreateLight(L"lamp", L"Scene3D"), 0);
  m_Graphics.DestroyLight(L"lamp");
  EXPECT_EQ(m_Graphics.CreateLight(L"lamp", L"Scene3D"), 1);
}

TEST_F(QXNullGraphics3DTest, LightsAreNewUntilTheyAreToldOtherwise) {
  EXPECT_EQ(m_Graphics.CreateLight(L"", L"Scene3D"), 0);
  EXPECT_EQ(m_Graphics.CreateLight(L"lamp", L"nowhere"), 0);
  EXPECT_EQ(m_Graphics.FindLight(L"lamp"), nullptr);
  ASSERT_EQ(m_Graphics.CreateLight(L"lamp", L"Scene3D"), 1);
  QXNullLight const* const pLight = m_Graphics.FindLight(L"lamp");
  ASSERT_NE(pLight, nullptr);
  EXPECT_TRUE(pLight->m_strSceneName == L"Scene3D");
  EXPECT_EQ(pLight->m_bEnable, 1);
  EXPECT_EQ(pLight->m_Light.GetType(), LIGHT_POINT);
  EXPECT_EQ(pLight->m_Light.GetPowerScale(), 0.0);
  EXPECT_TRUE(pLight->m_Light.GetPosition() == QXVector3d());
}

TEST_F(QXNullGraphics3DTest, LightsKeepTheWholeRecordAndTheirSwitch) {
  ASSERT_EQ(m_Graphics.CreateLight(L"lamp", L"Scene3D"), 1);
  m_Graphics.SetLightEnable(L"lamp", 0);
  QXLight light;
  light.SetType(LIGHT_SPOTLIGHT);
  light.SetSpotlightRange(0.5, 1.0, 2.0);
  light.SetAttenuation(100.0, 1.0, 0.5, 0.25);
  light.SetPosition(1.0, 2.0, 3.0);
  EXPECT_EQ(m_Graphics.SetLight(L"lamp", light), 1);
  EXPECT_EQ(m_Graphics.SetLight(L"no lamp", light), 0);
  m_Graphics.SetLightPos(L"lamp", QXVector3d(4.0, 5.0, 6.0));
  m_Graphics.SetLightPos(L"no lamp", QXVector3d(7.0, 8.0, 9.0));
  m_Graphics.SetLightEnable(L"no lamp", 1);
  QXNullLight const* const pLight = m_Graphics.FindLight(L"lamp");
  ASSERT_NE(pLight, nullptr);
  EXPECT_EQ(pLight->m_bEnable, 0);
  EXPECT_EQ(pLight->m_Light.GetType(), LIGHT_SPOTLIGHT);
  EXPECT_EQ(pLight->m_Light.GetSpotlightFalloff(), 2.0);
  EXPECT_EQ(pLight->m_Light.GetAttenuationQuadric(), 0.25);
  EXPECT_TRUE(pLight->m_Light.GetPosition() == QXVector3d(4.0, 5.0, 6.0));
}

TEST_F(QXNullGraphics3DTest, EachSceneKeepsItsFog) {
  m_Graphics.CreateScene(L"city");
  QXFog fog;
  fog.SetFogMode(FOG_LINEAR);
  fog.SetFogEnd(500.0);
  m_Graphics.SetFog(L"city", fog);
  m_Graphics.SetFog(L"nowhere", fog);
  EXPECT_EQ(m_Graphics.FindScene(L"city")->GetFog().GetFogMode(), FOG_LINEAR);
  EXPECT_EQ(m_Graphics.FindScene(L"city")->GetFog().GetFogEnd(), 500.0);
  EXPECT_EQ(m_Graphics.FindScene(L"Scene3D")->GetFog().GetFogMode(), FOG_NONE);
}

TEST_F(QXNullGraphics3DTest, SkiesAndOceansBelongToTheCaller) {
  EXPECT_EQ(m_Graphics.CreateSky(L"nowhere", SCENE_PLANE), nullptr);
  EXPECT_EQ(m_Graphics.CreateOcean(L"nowhere", SCENE_PLANE), nullptr);
  std::unique_ptr<QXSkyGraphics3D> const pSky(m_Graphics.CreateSky(L"Scene3D", SCENE_PLANE));
  std::unique_ptr<QXSkyGraphics3D> const pOtherSky(m_Graphics.CreateSky(L"Scene3D", SCENE_PLANE));
  std::unique_ptr<QXTritonOceanGraphics3D> const pOcean(m_Graphics.CreateOcean(L"Scene3D", SCENE_PLANE));
  ASSERT_NE(dynamic_cast<QXNullSkyGraphics3D*>(pSky.get()), nullptr);
  EXPECT_NE(pSky, pOtherSky) << "each call makes a new one";
  pSky->SetWindSpeed(3.0);
  EXPECT_EQ(pSky->GetWindSpeed(), 3.0);
  ASSERT_NE(dynamic_cast<QXNullTritonOceanGraphics3D*>(pOcean.get()), nullptr);
  pOcean->SetSeaLevel(2.0);
  EXPECT_EQ(pOcean->GetSeaLevel(), 2.0);
}

TEST_F(QXNullGraphics3DTest, CamerasAreRefusedWithoutANameOrAScene) {
  EXPECT_EQ(m_Graphics.CreateCamera(L"eye", L"Scene3D"), nullptr);
  EXPECT_EQ(m_Graphics.CreateCamera(L"", L"Scene3D"), nullptr);
  EXPECT_EQ(m_Graphics.CreateCamera(L"other", L"nowhere"), nullptr);
  EXPECT_FALSE(m_Graphics.GetErrorText().IsEmpty());
  EXPECT_EQ(m_Graphics.GetCamera(L"eye"), m_pCamera);
}

TEST_F(QXNullGraphics3DTest, DestroyedCamerasLeaveTheirViewports) {
  QXViewport const* const pViewport = m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.SetCamera4QX(m_pCamera);
  m_Graphics.DestroyCamera(nullptr);
  m_Graphics.DestroyCamera(m_pCamera);
  EXPECT_EQ(pViewport->GetCamera(), nullptr);
  EXPECT_EQ(m_Graphics.GetCamera(L"eye"), nullptr);
  EXPECT_EQ(m_Graphics.GetCamera4QX(), nullptr);
  m_Graphics.UpdateAllRenderTargets();
}

TEST_F(QXNullGraphics3DTest, ImpossibleTargetsAreRefusedWithAReason) {
  struct Case {
    wchar_t const* m_szName;
    unsigned int m_nWidth;
    unsigned int m_nHeight;
  };
  for (Case const& entry : {Case{L"", 8, 8}, Case{L"main", 8, 8}, Case{L"new", 0, 8}, Case{L"new", 8, 0},
           Case{L"new", 16385, 8}, Case{L"new", 8, 0xFFFFFFFFu}}) {
    EXPECT_EQ(m_Graphics.CreateRenderWindow(entry.m_szName, nullptr, entry.m_nWidth, entry.m_nHeight, 0), nullptr);
    EXPECT_FALSE(m_Graphics.GetErrorText().IsEmpty());
  }
  std::unique_ptr<QXRenderTarget> const pLargest(m_Graphics.CreateRenderWindow(L"new", nullptr, 16384, 1, 0));
  EXPECT_NE(pLargest, nullptr);
}

TEST_F(QXNullGraphics3DTest, CompanionTargetsAreTheCallers) {
  std::unique_ptr<QXRenderTarget> const arrTargets[] = {
      std::unique_ptr<QXRenderTarget>(m_Graphics.CreateReflectRenderTarget(L"reflect", 8, 4, L"Scene3D")),
      std::unique_ptr<QXRenderTarget>(m_Graphics.CreateSelectionRenderTarget(L"selection", 8, 4, L"Scene3D")),
      std::unique_ptr<QXRenderTarget>(m_Graphics.CreateVertexSelectionRenderTarget(L"vertex", 8, 4, L"Scene3D")),
      std::unique_ptr<QXRenderTarget>(m_Graphics.CreateMultiRenderTarget(L"multi", 8, 4, 3))};
  for (auto const& pTarget : arrTargets) {
    ASSERT_NE(pTarget, nullptr);
    EXPECT_EQ(pTarget->IsTextureTarget(), 1);
    EXPECT_EQ(pTarget->GetWidth(), 8u);
    EXPECT_EQ(pTarget->GetGraphics3D(), &m_Graphics);
    EXPECT_NE(m_Graphics.GetRenderTargetTexture(pTarget.get()), nullptr);
  }
  m_Graphics.AttachReflectRenderTarget(arrTargets[0].get());
  m_Graphics.AttachSelectionRenderTarget(arrTargets[1].get());
  m_Graphics.AttachVertexSelectionRenderTarget(arrTargets[2].get());
  m_Graphics.AttachMultiRenderTarget(arrTargets[3].get());
  EXPECT_EQ(m_Graphics.GetReflectRenderTarget(), arrTargets[0].get());
  EXPECT_EQ(m_Graphics.GetSelectionRenderTarget(), arrTargets[1].get());
  EXPECT_EQ(m_Graphics.GetVertexSelectionRenderTarget(), arrTargets[2].get());
  EXPECT_EQ(m_Graphics.m_pMultiRenderTarget, arrTargets[3].get());
}

TEST_F(QXNullGraphics3DTest, DeletingTheTargetOfTheCurrentViewportLeavesNone) {
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_NE(m_Graphics.GetViewport(), nullptr);
  m_Graphics.DeleteRenderTarget(m_pTarget);
  EXPECT_EQ(m_Graphics.GetViewport(), nullptr);
  EXPECT_EQ(m_Graphics.GetRenderTarget(L"main"), nullptr);
}

TEST_F(QXNullGraphics3DTest, TheManagerCountsAttachesAndDestroys) {
  QXRenderOperationManager& manager = *m_Graphics.GetRenderOperationManager();
  QXRenderOperation3D* const pLoose = manager.CreateRenderOperation3D(L"Scene3D", 0);
  QXRenderOperation3D* const pNowhere = manager.CreateRenderOperation3D(L"nowhere", 1);
  ASSERT_NE(pNowhere, nullptr) << "never null";
  EXPECT_EQ(manager.GetRenderOperationCount(), 2u);
  PlaceSquare(*pLoose, 0.0, 0.0, 0.0);
  EXPECT_EQ(m_Graphics.HasRenderableObjects(L"Scene3D"), 0);
  EXPECT_EQ(manager.AttachRenderOperation3D(pLoose, L"nowhere"), 0);
  EXPECT_EQ(manager.AttachRenderOperation3D(nullptr, L"Scene3D"), 0);
  EXPECT_EQ(manager.AttachRenderOperation3D(pLoose, L"Scene3D"), 1);
  EXPECT_EQ(manager.AttachRenderOperation3D(pLoose, L"Scene3D"), 1);
  EXPECT_EQ(m_Graphics.FindScene(L"Scene3D")->GetDrawables().size(), 1u) << "not twice";
  manager.DetachRenderOperation3D(pLoose);
  manager.DetachRenderOperation3D(pLoose);
  EXPECT_EQ(m_Graphics.HasRenderableObjects(L"Scene3D"), 0);
  EXPECT_EQ(pLoose->GetTriangleCount(), 2u);
  manager.DestroyRenderOperation3D(nullptr);
  manager.DestroyRenderOperation3D(pLoose);
  delete pNowhere;
  EXPECT_EQ(manager.GetRenderOperationCount(), 0u);
}

// --- Nodes ---

TEST_F(QXNullGraphics3DTest, NodesMoveTurnAndScaleWhatHangsUnderThem) {
  DrawablePtr const pSquare = MakeSquareAt(1.0, 0.0, 0.0);
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"Scene3D", L"", L"block"), 1);
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"Scene3D", L"block", L"house"), 1);
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"Scene3D", L"", L"house"), 0);
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"Scene3D", L"unknown", L"other"), 0);
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"nowhere", L"", L"other"), 0);
  EXPECT_EQ(m_Graphics.AttachToSceneNode(L"Scene3D", L"house", pSquare.get()), 1);
  EXPECT_EQ(m_Graphics.AttachToSceneNode(L"Scene3D", L"unknown", pSquare.get()), 0);
  m_Graphics.SetSceneNodeScale(L"Scene3D", L"house", QXVector3d(2.0, 1.0, 1.0));
  QXQuaternion4d quarter;
  quarter.FromAngleAxis(std::acos(0.0), QXVector3d::UNIT_Z);
  m_Graphics.SetSceneNodeOrientation(L"Scene3D", L"house", quarter);
  m_Graphics.SetSceneNodePosition(L"Scene3D", L"block", QXVector3d(100.0, 0.0, 0.0));
  // The square 0..2 x -1..1 becomes 0..4 x -1..1, turned -1..1 x 0..4, moved 99..101 x 0..4.
  QXBoundingBox const box = pSquare->GetWorldBoundingBox();
  EXPECT_NEAR(box.GetMin().x, 99.0, 1e-12);
  EXPECT_NEAR(box.GetMax().x, 101.0, 1e-12);
  EXPECT_NEAR(box.GetMin().y, 0.0, 1e-12);
  EXPECT_NEAR(box.GetMax().y, 4.0, 1e-12);
  QXBoundingBox node;
  m_Graphics.GetSceneNodeBoundingBox(L"Scene3D", L"block", node);
  EXPECT_NEAR(node.GetMax().x, 101.0, 1e-12);
  m_Graphics.GetSceneNodeBoundingBox(L"Scene3D", L"unknown", node);
  EXPECT_TRUE(node.IsNULL());
  m_Graphics.DetachFromSceneNode(L"Scene3D", pSquare.get());
  EXPECT_EQ(pSquare->GetWorldBoundingBox().GetMax().x, 2.0);
}

TEST_F(QXNullGraphics3DTest, NodesHideWhatHangsUnderThem) {
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  DrawablePtr const pSquare = MakeSquareAt(0.0, 0.0, 0.0);
  m_Graphics.CreateSceneNode(L"Scene3D", L"", L"block");
  m_Graphics.CreateSceneNode(L"Scene3D", L"block", L"house");
  m_Graphics.AttachToSceneNode(L"Scene3D", L"house", pSquare.get());
  auto const IsSeen = [this] {
    m_Graphics.UpdateAllRenderTargets();
    return m_pCamera->GetDrawnCount() == 1;
  };
  EXPECT_TRUE(IsSeen());
  m_Graphics.SetSceneNodeVisible(L"Scene3D", L"block", 0, 0);
  EXPECT_TRUE(IsSeen()) << "the node alone";
  m_Graphics.SetSceneNodeVisible(L"block", 0);
  EXPECT_FALSE(IsSeen());
  m_Graphics.SetSceneNodeVisible(L"Scene3D", L"block", 1, 1);
  EXPECT_TRUE(IsSeen());
  m_Graphics.SetSceneNodeVisibleDistance(L"house", 0.0, 5.0);
  EXPECT_FALSE(IsSeen());
  EXPECT_EQ(m_Graphics.DestroySceneNode(L"Scene3D", L"block"), 1);
  EXPECT_EQ(m_Graphics.DestroySceneNode(L"Scene3D", L"house"), 0) << "gone with its parent";
  EXPECT_TRUE(IsSeen()) << "under the root again";
}

TEST_F(QXNullGraphics3DTest, NodesOfTheEmptySceneNameStandInASceneOfTheirOwn) {
  DrawablePtr const pSquare = MakeSquareAt(1.0, 0.0, 0.0);
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"", L"", L"page"), 1);
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"Scene3D", L"", L"page"), 1) << "another one";
  EXPECT_EQ(m_Graphics.AttachToSceneNode(L"", L"page", pSquare.get()), 1);
  m_Graphics.SetSceneNodePosition(L"", L"page", QXVector3d(7.0, 0.0, 0.0));
  QXBoundingBox box;
  m_Graphics.GetSceneNodeBoundingBox(L"", L"page", box);
  EXPECT_EQ(box.GetMin(), pSquare->GetWorldBoundingBox().GetMin());
  EXPECT_EQ(box.GetMax().x, 9.0);
  EXPECT_FALSE(box.IsNULL());
  m_Graphics.GetSceneNodeBoundingBox(L"Scene3D", L"page", box);
  EXPECT_TRUE(box.IsNULL());
  EXPECT_EQ(m_Graphics.HasRenderableObjects(L"Scene3D"), 0);
  EXPECT_EQ(m_Graphics.HasScene(L""), 0) << "no camera can name it";
  m_Graphics.DetachFromSceneNode(L"", pSquare.get());
  m_Graphics.GetSceneNodeBoundingBox(L"", L"page", box);
  EXPECT_TRUE(box.IsNULL());
  EXPECT_EQ(m_Graphics.DestroySceneNode(L"", L"page"), 1);
  EXPECT_EQ(m_Graphics.DestroySceneNode(L"", L"page"), 0);
}

TEST_F(QXNullGraphics3DTest, PicturesOfTextureTargetsAreFoundByTheTargetsName) {
  QXTextureManager& textures = *m_Graphics.GetTextureManager();
  EXPECT_EQ(textures.GetTexture(L"page", 0), nullptr);
  std::unique_ptr<QXRenderTarget> pTarget(m_Graphics.CreateRenderTexture(L"page", PF_A8R8G8B8, 8, 8, 0, 32, L""));
  EXPECT_EQ(textures.GetTexture(L"page", 1), m_Graphics.GetRenderTargetTexture(pTarget.get()));
  EXPECT_EQ(textures.ManagerOperation2(L"page"), 1);
  pTarget.reset();
  EXPECT_EQ(textures.GetTexture(L"page", 0), nullptr);
  EXPECT_EQ(textures.ManagerOperation2(L"page"), 0);
}

TEST_F(QXNullGraphics3DTest, NodesWithoutANameGetOne) {
  m_Graphics.CreateSceneNode(L"Scene3D", L"", L"Node1");
  QdcUnicodeString const strName = m_Graphics.CreateSceneNode();
  EXPECT_TRUE(strName == L"Node2");
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"Scene3D", strName, L"child"), 1);
  m_Graphics.DestroySceneNode(strName);
  EXPECT_EQ(m_Graphics.CreateSceneNode(L"Scene3D", strName, L"other"), 0);
}

// --- Objects ---

TEST_F(QXNullGraphics3DTest, ObjectsAreFoundByTheirIdentifier) {
  DrawablePtr const pSquare = MakeSquareAt(5.0, 0.0, 0.0);
  DrawablePtr const pUnnamed = MakeSquareAt(0.0, 0.0, 0.0);
  pSquare->SetSelectionID(7);
  pSquare->SetColor(QXColorValue3D(0.5, 1.0, 1.0, 1.0));
  QXBoundingBox box;
  EXPECT_EQ(m_Graphics.GetObjectBoundingBox(7, box), 1);
  EXPECT_EQ(box.GetMax().x, 6.0);
  EXPECT_EQ(m_Graphics.GetObjectBoundingBox(8, box), 0);
  EXPECT_EQ(m_Graphics.GetObjectBoundingBox(0, box), 0) << "0 cannot be picked";
  m_Graphics.SetObjectVisible(7, 0);
  EXPECT_EQ(m_Graphics.IsObjectVisible(7), 0);
  EXPECT_EQ(pSquare->IsVisible(), 0);
  m_Graphics.SetObjectVisible(7, 1);
  EXPECT_EQ(m_Graphics.IsObjectVisible(7), 1);
  EXPECT_EQ(m_Graphics.IsObjectVisible(8), 0);
  m_Graphics.SetObjectColor(7, QXColorValue3D(0.5, 0.5, 0.5, 1.0));
  m_Graphics.SetObjectColor(7, QXColorValue3D(0.5, 0.25, 0.5, 1.0));
  EXPECT_EQ(pSquare->GetColor(), QXColorValue3D(0.25, 0.25, 0.5, 1.0));
  m_Graphics.ResetObjectColor(7);
  EXPECT_EQ(pSquare->GetColor(), QXColorValue3D(0.5, 1.0, 1.0, 1.0));
  m_Graphics.ResetObjectColor(7);
  QdcArray<unsigned int> arrIDs;
  arrIDs.Add(7);
  m_Graphics.SetSelectedObjects(arrIDs);
  EXPECT_EQ(pSquare->IsSelected(), 1);
  EXPECT_EQ(pUnnamed->IsSelected(), 0);
  m_Graphics.ClearSelectedObjects();
  EXPECT_EQ(pSquare->IsSelected(), 0);
}

TEST_F(QXNullGraphics3DTest, PickingAsksTheGeometry) {
  DrawablePtr const pLow = MakeSquareAt(0.0, 0.0, 0.0);
  DrawablePtr const pHigh = MakeSquareAt(0.0, 0.0, 3.0);
  pLow->SetSelectionID(1);
  pHigh->SetSelectionID(2);
  QXVector3d vecHit;
  EXPECT_EQ(m_Graphics.PickObject(40.0, 20.0, vecHit), 0u) << "no frame yet";
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_Graphics.PickObject(40.25, 20.0, vecHit), 2u);
  EXPECT_NEAR(vecHit.z, 3.0, 1e-6);
  pHigh->SetVisible(0);
  EXPECT_EQ(m_Graphics.PickObject(40.25, 20.0, vecHit), 1u);
  EXPECT_NEAR(vecHit.z, 0.0, 1e-6);
  EXPECT_EQ(m_Graphics.PickObject(1.0, 1.0, vecHit), 0u);
  EXPECT_EQ(m_Graphics.PickObjectByRay(L"nowhere", vecHit, QXVector3d::UNIT_Z, vecHit), 0u);
  EXPECT_EQ(m_Graphics.BeginSelection(m_pTarget, 0, 0, 1, 1), 1);
  EXPECT_EQ(m_Graphics.BeginSelection(nullptr, 0, 0, 1, 1), 0);
  m_Graphics.EndSelection();
  EXPECT_EQ(m_Graphics.ReadSelectionID(40, 20), 0u);
}

TEST_F(QXNullGraphics3DTest, ObjectsDrawnByHandStandUnderTheirNames) {
  DrawablePtr const pSquare(m_Graphics.GetRenderOperationManager()->CreateRenderOperation3D(L"Scene3D", 0));
  PlaceSquare(*pSquare, 0.0, 0.0, 0.0);
  pSquare->SetName(L"ray");
  EXPECT_TRUE(m_Graphics.UpdateManualRenderObject(pSquare.get(), L"nowhere").IsEmpty());
  EXPECT_TRUE(m_Graphics.UpdateManualRenderObject(pSquare.get(), L"Scene3D") == L"ray");
  EXPECT_EQ(m_Graphics.HasRenderableObjects(L"Scene3D"), 1);
  m_Graphics.SetManualRenderObjectVisible(L"ray", 0);
  EXPECT_EQ(pSquare->IsVisible(), 0);
  m_Graphics.RemoveManualRenderObject(L"ray", L"nowhere");
  EXPECT_EQ(m_Graphics.HasRenderableObjects(L"Scene3D"), 1);
  m_Graphics.RemoveManualRenderObject(L"ray", L"Scene3D");
  EXPECT_EQ(m_Graphics.HasRenderableObjects(L"Scene3D"), 0);
}

// --- The device ---

TEST_F(QXNullGraphics3DTest, ProjectionsMapTheirVolumeToTheClipCube) {
  QXMatrix4d mat;
  m_Graphics.MakeProjectionMatrix(std::acos(0.0), 2.0, 1.0, 100.0, mat);
  auto const Map = [&mat](double dX, double dY, double dZ) {
    double const in[4] = {dX, dY, dZ, 1.0};
    double arrFlat[16];
    QXGraphics3D::MakeRowGLMatrix(arrFlat, mat);
    double out[4];
    QXMatrix4d::MultMatrixVecd(arrFlat, in, out);
    return QXVector3d(out[0] / out[3], out[1] / out[3], out[2] / out[3]);
  };
  auto const ExpectNear = [](QXVector3d const& is, QXVector3d const& should) {
    EXPECT_NEAR(is.x, should.x, 1e-12);
    EXPECT_NEAR(is.y, should.y, 1e-12);
    EXPECT_NEAR(is.z, should.z, 1e-12);
  };
  ExpectNear(Map(2.0, 1.0, -1.0), QXVector3d(1.0, 1.0, -1.0));
  ExpectNear(Map(-200.0, -100.0, -100.0), QXVector3d(-1.0, -1.0, 1.0));
  m_Graphics.MakeFrustumMatrix(0.0, 1.0, 0.0, 2.0, 1.0, 10.0, mat);
  ExpectNear(Map(0.0, 0.0, -1.0), QXVector3d(-1.0, -1.0, -1.0));
  ExpectNear(Map(10.0, 20.0, -10.0), QXVector3d(1.0, 1.0, 1.0));
  m_Graphics.MakeOrthoMatrix(0.0, 4.0, 0.0, 2.0, 1.0, 3.0, mat);
  ExpectNear(Map(4.0, 0.0, -3.0), QXVector3d(1.0, -1.0, 1.0));
  QXMatrix4d matConverted;
  m_Graphics.ConvertProjectionMatrix(mat, matConverted);
  EXPECT_TRUE(matConverted == mat);
}

TEST_F(QXNullGraphics3DTest, ObliqueProjectionPutsThePlaneAtTheNearEnd) {
  QXMatrix4d mat;
  m_Graphics.MakeProjectionMatrix(1.0, 1.5, 1.0, 100.0, mat);
  // Kept is what lies below: normal down, through (0, -0.5, -5), in view space.
  QXPlane const plane(QXVector3d(0.0, -1.0, 0.0), -0.5);
  m_Graphics.ApplyObliqueDepthProjection(mat, plane);
  for (double const dZ : {-3.0, -50.0}) {
    double const in[4] = {0.3, -0.5, dZ, 1.0};
    double arrFlat[16];
    QXGraphics3D::MakeRowGLMatrix(arrFlat, mat);
    double out[4];
    QXMatrix4d::MultMatrixVecd(arrFlat, in, out);
    EXPECT_NEAR(out[2] / out[3], -1.0, 1e-12) << dZ;
  }
}

TEST_F(QXNullGraphics3DTest, WorldMatricesStack) {
  QXMatrix4d matMove;
  matMove.SetTrans(QXVector3d(1.0, 0.0, 0.0));
  QXMatrix4d matScale;
  matScale[0][0] = 2.0;
  m_Graphics.SetWorldMatrix(matMove);
  m_Graphics.PushMatrix();
  m_Graphics.MultiMatrix(matScale);
  EXPECT_TRUE(m_Graphics.m_matWorld == matScale * matMove);
  m_Graphics.PopMatrix();
  EXPECT_TRUE(m_Graphics.m_matWorld == matMove);
  m_Graphics.PopMatrix();
  EXPECT_TRUE(m_Graphics.m_matWorld == matMove) << "nothing to return to";
}

TEST_F(QXNullGraphics3DTest, ScreenProjectionIsOneUnitAPixelAndGoesAgain) {
  m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Graphics.UpdateAllRenderTargets();
  QXMatrix4d const matView = m_Graphics.m_matView;
  m_Graphics.BeginScreenProjection();
  QXVector3d vecWindow;
  EXPECT_EQ(m_Graphics.GetScreenPosition(QXVector3d(30.0, 10.0, 0.0), vecWindow), 1);
  EXPECT_NEAR(vecWindow.x, 30.0, 1e-9);
  EXPECT_NEAR(vecWindow.y, 10.0, 1e-9);
  m_Graphics.EndScreenProjection();
  EXPECT_TRUE(m_Graphics.m_matView == matView);
  m_Graphics.EndScreenProjection();
  EXPECT_EQ(m_Graphics.GetScreenPosition(QXVector3d(0.0, 0.0, 0.0), vecWindow), 1);
  EXPECT_NEAR(vecWindow.x, 40.0, 1e-9);
  EXPECT_NEAR(vecWindow.y, 20.0, 1e-9);
  EXPECT_EQ(m_Graphics.GetScreenPosition(QXVector3d(0.0, 0.0, 11.0), vecWindow), 0) << "behind the eye";
}

TEST_F(QXNullGraphics3DTest, ImmediateDrawingCounts) {
  QXRenderOperation operation;
  operation.SetVertexNum(4);
  operation.SetIndexNum(6);
  m_Graphics.BeginGeometryCount();
  m_Graphics.Render(operation);
  EXPECT_EQ(m_Graphics.GetFaceCount(), 2u);
  EXPECT_EQ(m_Graphics.GetVertexCount(), 4u);
  EXPECT_EQ(m_Graphics.GetDrawOperationCount(), 1u);
  unsigned int const nList = m_Graphics.ToDisplayList(operation);
  EXPECT_NE(nList, 0u);
  EXPECT_NE(m_Graphics.BeginList(), nList);
  m_Graphics.EndList();
  EXPECT_EQ(m_Graphics.DeleteDisplayList(nList), 1);
  EXPECT_EQ(m_Graphics.DeleteDisplayList(nList), 0);
}

TEST_F(QXNullGraphics3DTest, StateThatCanBeAskedForIsKept) {
  m_Graphics.SetCullingMode(CULLING_ANTICLOCKWISE);
  m_Graphics.SetInvertVertexWinding(1);
  m_Graphics.SetStereoMode(2);
  m_Graphics.SetHMDMode(HMD_HTC);
  m_Graphics.SetRelativeOrigin(QXVector3d(1.0, 2.0, 3.0));
  m_Graphics.SetSkyDome(L"Scene3D", L"clouds", 1);
  EXPECT_EQ(m_Graphics.GetCullingMode(), CULLING_ANTICLOCKWISE);
  EXPECT_EQ(m_Graphics.m_bInvertVertexWinding, 1);
  EXPECT_EQ(m_Graphics.GetStereoMode(), 2);
  EXPECT_EQ(m_Graphics.GetHTCEnable(), 1);
  EXPECT_TRUE(m_Graphics.GetRelativeOrigin() == QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(m_Graphics.IsSkyDomeVisible(), 1);
  unsigned int nColor = 0;
  m_Graphics.ConvertColourValue(QXColorValue3D(1.0, 0.5, 0.0, 1.0), &nColor);
  EXPECT_EQ(nColor, 0xFF0080FFu);
  EXPECT_EQ(m_Graphics.ReadDepth(m_pTarget, 1, 1), 1.0);
  EXPECT_EQ(m_Graphics.GetMinimumDepthInputValue(), -1.0);
  EXPECT_EQ(m_Graphics.GetMaximumDepthInputValue(), 1.0);
}

TEST_F(QXNullGraphics3DTest, WhatIsNotThereAnswersSo) {
  EXPECT_EQ(m_Graphics.BindGpuProgram(L"a.glsl", L"b.glsl"), 0);
  float const fValue = 1.0F;
  EXPECT_EQ(m_Graphics.SetGpuProgramParameter(L"x", &fValue, 1), 0);
  EXPECT_EQ(m_Graphics.AddCompositor(m_pTarget, L"bloom"), 0);
  EXPECT_EQ(m_Graphics.SetCompositorParameter(L"bloom", L"x", 1.0), 0);
  EXPECT_EQ(m_Graphics.IsHMDAvailable(HMD_HTC), 0);
  EXPECT_EQ(m_Graphics.InitializeVR(), 0);
  EXPECT_FALSE(m_Graphics.GetErrorText().IsEmpty());
  unsigned int nWidth = 9;
  unsigned int nHeight = 9;
  EXPECT_EQ(m_Graphics.GetHMDRenderSize(nWidth, nHeight), 0);
  EXPECT_EQ(nWidth, 0u);
  EXPECT_EQ(nHeight, 0u);
  QXMatrix4d mat;
  EXPECT_EQ(m_Graphics.GetHMDPose(0, mat, mat), 0);
}

TEST_F(QXNullGraphics3DTest, ThereIsOneRenderSystemAndFoldersMustExist) {
  QdcArray<QdcUnicodeString> arrNames;
  m_Graphics.GetRenderSystems(arrNames);
  ASSERT_EQ(arrNames.GetSize(), 1u);
  EXPECT_TRUE(arrNames[0] == L"null");
  EXPECT_EQ(m_Graphics.SelectRenderSystem(L"null"), 1);
  EXPECT_EQ(m_Graphics.SelectRenderSystem(L"other"), 0);
  EXPECT_EQ(m_Graphics.IsRenderSystemSupported(L"null"), 1);
  EXPECT_EQ(m_Graphics.IsRenderSystemSupported(L"other"), 0);
  EXPECT_EQ(m_Graphics.AddResourceFolder(L"/"), 1);
  EXPECT_EQ(m_Graphics.AddResourceFolder(L"/no such folder"), 0);
}

TEST_F(QXNullGraphics3DTest, ReadingPixelsOutsideTheTargetIsRefused) {
  std::vector<unsigned char> arrPixels(80 * 40 * 4, 7);
  unsigned int const nBytes = static_cast<unsigned int>(arrPixels.size());
  for (QdcRect const& rcPixels : {QdcRect(-1, 0, 1, 1), QdcRect(0, -1, 1, 1), QdcRect(0, 0, 81, 1),
           QdcRect(0, 0, 1, 41), QdcRect(2, 0, 1, 1), QdcRect(0, 2, 1, 1)}) {
    EXPECT_EQ(m_Graphics.ReadPixels(m_pTarget, rcPixels, arrPixels.data(), nBytes), 0);
  }
  EXPECT_EQ(m_Graphics.ReadPixels(m_pTarget, QdcRect(0, 0, 80, 40), arrPixels.data(), nBytes - 1), 0);
  EXPECT_EQ(m_Graphics.ReadPixels(nullptr, QdcRect(0, 0, 1, 1), arrPixels.data(), nBytes), 0);
  EXPECT_EQ(arrPixels[0], 7);
  EXPECT_EQ(m_Graphics.ReadPixels(m_pTarget, QdcRect(0, 0, 80, 40), arrPixels.data(), nBytes), 1);
  EXPECT_EQ(arrPixels[0], 0);
}

TEST_F(QXNullGraphics3DTest, APatchIsClearedInItsPlace) {
  auto* const pTexture =
      dynamic_cast<QXNullRenderTarget*>(m_Graphics.CreateRenderTexture(L"texture", PF_A8R8G8B8, 4, 4, 0, 32, L""));
  m_Graphics.AttachRenderTarget(pTexture);
  std::vector<unsigned char> arrPixels(64, 255);
  pTexture->CopyFromMemory(arrPixels.data(), 64);
  m_Graphics.RenderPatchToTexture(1.0, 1.0, 2.0, 2.0, pTexture, QdcRect2D(0.5, 0.0, 1.0, 0.25));
  pTexture->CopyToMemory(arrPixels.data(), 64);
  std::vector<unsigned char> arrExpected(64, 255);
  std::fill(arrExpected.begin() + 56, arrExpected.begin() + 64, static_cast<unsigned char>(0));
  EXPECT_EQ(arrPixels, arrExpected);
}

}  // namespace
}  // namespace QXC
