#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>
#include <QxGraphics3D/view/QXFrustum.h>

#include "QXTestTarget.h"

namespace QXC {
namespace {

unsigned int g_nNow = 0;
unsigned int ReadTestClock() {
  return g_nNow;
}

/// The clock under the test's hand, the real one back afterwards.
class QXRenderTargetTest : public testing::Test {
protected:
  QXRenderTargetTest() {
    g_nNow = 5000;
    QdcTime::SetClock(&ReadTestClock);
  }
  ~QXRenderTargetTest() override { QdcTime::SetClock(nullptr); }

  /// Full-size viewport without a camera.
  static QXViewport* Add(QXRenderTarget& target, int nZOrder, double dHeight = 1.0) {
    return target.AddViewport(nullptr, nZOrder, 0.0, 0.0, 1.0, dHeight);
  }

  QXTestLog m_Log;
};

/// The dictionary as a map, for comparisons.
std::map<int, QXViewport*> Viewports(QXRenderTarget const& target) {
  std::map<int, QXViewport*> mapViewports;
  int nKey = 0;
  QXViewport* pViewport = nullptr;
  auto position = target.m_Viewports.GetStartPosition();
  while (!target.m_Viewports.IsEOF(position)) {
    target.m_Viewports.GetNextAssoc(position, nKey, pViewport);
    mapViewports[nKey] = pViewport;
  }
  return mapViewports;
}

// --- Defaults and accessors ---

TEST_F(QXRenderTargetTest, ConstructionLeavesTheDefaults) {
  QXTestTarget const target(m_Log);
  EXPECT_TRUE(target.m_strName.IsEmpty());
  EXPECT_TRUE(target.m_strSceneName.IsEmpty());
  EXPECT_EQ(target.m_nPriority, 4);
  EXPECT_EQ(target.m_nWidth, 0u);
  EXPECT_EQ(target.m_nHeight, 0u);
  EXPECT_EQ(target.m_nColourDepth, 0u);
  EXPECT_TRUE(target.m_strDebugText.IsEmpty());
  EXPECT_EQ(target.m_nLastSecond, 5000u);
  EXPECT_EQ(target.m_nLastTime, 5000u);
  EXPECT_EQ(target.m_nFrameCount, 0u);
  EXPECT_EQ(target.m_dVerticalExaggeration, 1.0);
  EXPECT_EQ(target.m_bActive, 0);
  EXPECT_EQ(target.m_bAlwaysActive, 0);
  EXPECT_EQ(target.m_bAutoUpdated, 1);
  EXPECT_EQ(target.m_Viewports.GetCount(), 0u);
  EXPECT_EQ(target.m_hWindow, nullptr);
  EXPECT_EQ(target.m_hDisplay3D, nullptr);
  EXPECT_EQ(target.m_pGraphics3D, nullptr);
  EXPECT_EQ(target.m_bCurTargetRefresh, 0);
  EXPECT_EQ(target.m_bSunLightEnable, 1);
  EXPECT_EQ(target.m_bFlagA, 0);
  EXPECT_EQ(target.m_bRenderStencilSM, 0);
  EXPECT_EQ(target.m_pOsgbSelShadowTexture, nullptr);
  EXPECT_EQ(target.m_rcOsgbSelShadowBound.left, 0.0);
  EXPECT_EQ(target.m_rcOsgbSelShadowBound.bottom, 0.0);
  EXPECT_EQ(static_cast<int>(target.m_eRenderState), 1);
  EXPECT_EQ(target.m_pReflectRenderTarget, nullptr);
  EXPECT_EQ(target.m_pSelectionRenderTarget, nullptr);
  EXPECT_EQ(target.m_pVertexSelectionRenderTarget, nullptr);
  EXPECT_EQ(target.m_bRenderToTextureWithManual, 0);
  EXPECT_EQ(static_cast<int>(target.m_eMultiViewportMode), 0);
  EXPECT_EQ(target.m_bFlagB, 0);
  EXPECT_EQ(target.m_bRenderSceneWithTextureBuffer, 0);
  EXPECT_EQ(target.m_bLogDepthEnable, 0);
  EXPECT_EQ(target.m_pListener, nullptr);
  EXPECT_EQ(target.m_bFlagC, 1);
  EXPECT_EQ(QXRenderTarget::ms_nRefAdd, 0u);
}

TEST_F(QXRenderTargetTest, ConstructionResetsTheStatistics) {
  QXTestTarget const target(m_Log);
  EXPECT_EQ(target.m_Stats.lastFPS, 0.0);
  EXPECT_EQ(target.m_Stats.avgFPS, 0.0);
  EXPECT_EQ(target.m_Stats.bestFPS, 0.0);
  EXPECT_EQ(target.m_Stats.worstFPS, 999.0);
  EXPECT_EQ(target.m_Stats.bestFrameTime, 999999u);
  EXPECT_EQ(target.m_Stats.worstFrameTime, 0u);
  EXPECT_EQ(target.m_Stats.triangleCount, 0);
}

TEST_F(QXRenderTargetTest, AccessorsReadAndWriteTheirMembers) {
  QXTestTarget target(m_Log);
  target.m_strName = L"main";
  target.m_strSceneName = L"city";
  EXPECT_TRUE(target.GetName() == L"main");
  EXPECT_TRUE(target.GetSceneName() == L"city");
  target.SetPriority(9);
  EXPECT_EQ(target.GetPriority(), 9);
  target.SetWidth(640);
  target.SetHeight(480);
  target.SetColourDepth(24);
  EXPECT_EQ(target.GetWidth(), 640u);
  EXPECT_EQ(target.GetHeight(), 480u);
  EXPECT_EQ(target.GetColourDepth(), 24u);
  target.SetDebugText(L"debug");
  EXPECT_TRUE(target.GetDebugText() == L"debug");
  target.SetVerticalExaggeration(2.5);
  EXPECT_EQ(target.GetVerticalExaggeration(), 2.5);
  target.SetActive(1);
  EXPECT_EQ(target.IsActive(), 1);
  target.SetAlwaysActive(1);
  EXPECT_EQ(target.IsAlwaysActive(), 1);
  target.SetAutoUpdated(0);
  EXPECT_EQ(target.IsAutoUpdated(), 0);
  target.SetCurTargetRefresh(1);
  EXPECT_EQ(target.IsCurTargetRefresh(), 1);
  target.SetRenderStencilSM(1);
  EXPECT_EQ(target.m_bRenderStencilSM, 1);
  target.SetRenderToTextureWithManual(1);
  EXPECT_EQ(target.m_bRenderToTextureWithManual, 1);
  target.m_bRenderSceneWithTextureBuffer = 1;
  EXPECT_EQ(target.IsRenderSceneWithTextureBuffer(), 1);
  target.SetLogDepthEnable(1);
  EXPECT_EQ(target.IsLogDepthEnable(), 1);
  target.SetMultiViewportMode(MVM_ORDERED);
  EXPECT_EQ(target.GetMultiViewportMode(), MVM_ORDERED);
  target.SetMultiViewportMode(static_cast<MultiViewportMode>(-77));
  EXPECT_EQ(static_cast<int>(target.GetMultiViewportMode()), -77);
  QXRenderTargetListener listener;
  target.SetListener(&listener);
  EXPECT_EQ(target.GetListener(), &listener);
}

TEST_F(QXRenderTargetTest, HandlesAndCompanionsAreStored) {
  QXTestTarget target(m_Log);
  int nWindow = 0;
  target.m_hWindow = reinterpret_cast<HWND>(&nWindow);
  EXPECT_EQ(target.GetWindow(), target.m_hWindow);
  EXPECT_EQ(target.GetWindow3DHandle(), target.m_hWindow);
  target.SetDisplay3D(reinterpret_cast<HDC>(&nWindow));
  EXPECT_EQ(target.m_hDisplay3D, reinterpret_cast<HDC>(&nWindow));
  QXGraphics3D* const pGraphics3D = reinterpret_cast<QXGraphics3D*>(&nWindow);
  target.SetGraphics3D(pGraphics3D);
  EXPECT_EQ(target.GetGraphics3D(), pGraphics3D);
  QXTestTarget reflect(m_Log);
  QXTestTarget selection(m_Log);
  target.SetReflectRenderTarget(&reflect);
  target.SetSelectionRenderTarget(&selection);
  EXPECT_EQ(target.GetReflectRenderTarget(), &reflect);
  EXPECT_EQ(target.GetSelectionRenderTarget(), &selection);
  target.SetOsgbSelShadowBound(QdcRect2D(1.0, 2.0, 3.0, 4.0));
  EXPECT_EQ(target.GetOsgbSelShadowBound().left, 1.0);
  EXPECT_EQ(target.GetOsgbSelShadowBound().bottom, 4.0);
}

TEST_F(QXRenderTargetTest, ZeroSizeReadsOneButMetricsAreRaw) {
  QXTestTarget target(m_Log);
  EXPECT_EQ(target.GetWidth(), 1u);
  EXPECT_EQ(target.GetHeight(), 1u);
  unsigned int nWidth = 9;
  unsigned int nHeight = 9;
  unsigned int nColourDepth = 9;
  target.GetMetrics(nWidth, nHeight, nColourDepth);
  EXPECT_EQ(nWidth, 0u);
  EXPECT_EQ(nHeight, 0u);
  EXPECT_EQ(nColourDepth, 0u);
  target.m_nWidth = 3;
  target.m_nHeight = 4;
  target.m_nColourDepth = 32;
  target.GetMetrics(nWidth, nHeight, nColourDepth);
  EXPECT_EQ(nWidth, 3u);
  EXPECT_EQ(nHeight, 4u);
  EXPECT_EQ(nColourDepth, 32u);
}

TEST_F(QXRenderTargetTest, SetRenderStateReturnsTheFormerOne) {
  QXTestTarget target(m_Log);
  EXPECT_EQ(static_cast<int>(target.SetRenderState(static_cast<RenderStateSet>(7))), 1);
  EXPECT_EQ(static_cast<int>(target.SetRenderState(static_cast<RenderStateSet>(1))), 7);
}

TEST_F(QXRenderTargetTest, BaseAnswersAreFixed) {
  QXTestTarget target(m_Log);
  EXPECT_EQ(target.GetSceneAntialias(), 0);
  EXPECT_EQ(target.GetSceneAntialiasValue(), 0);
  EXPECT_EQ(target.GetShadowEnable(), 0);
  EXPECT_EQ(target.IsPrimary(), 0);
  EXPECT_EQ(target.GetDisplayWidth(), 0u);
  EXPECT_EQ(target.GetDisplayHeight(), 0u);
  EXPECT_EQ(target.GetShadowVisibleDistance(), 0.0);
  EXPECT_EQ(target.GetTextureID(), -1);
  EXPECT_TRUE(target.GetSunPosition() == QXVector3d::ZERO);
  EXPECT_TRUE(target.GetShadowSplitPoints() == QXVector3d::ZERO);
  EXPECT_TRUE(target.WriteContentsToTimestampedFile(L"/nowhere/picture", L".png").IsEmpty());
  unsigned char bClear = 7;
  unsigned int nBuffers = 7;
  target.SetClearEveryFrame(0, 1);
  target.GetClearEveryFrame(bClear, nBuffers);
  EXPECT_EQ(bClear, 1);
  EXPECT_EQ(nBuffers, 3u);
  QdcArray<QXCamera*> arrCameras;
  EXPECT_EQ(target.GetShadowTextureCameras(arrCameras), 0);
  EXPECT_EQ(arrCameras.GetSize(), 0u);
}

TEST_F(QXRenderTargetTest, EmptyOperationsLeaveTheTargetAsItIs) {
  QXTestTarget target(m_Log);
  target.m_nWidth = 64;
  target.m_nHeight = 48;
  QXTestCamera camera(m_Log);
  QXViewport* const pViewport = target.AddViewport(&camera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Log.m_arrLines.clear();
  unsigned char arrPixels[4] = {1, 2, 3, 4};
  int nAttribute = 5;
  target.SetSceneAntialias(1);
  target.SetSceneAntialiasValue(8);
  target.ReSize(1, 2);
  target.GetCustomAttribute(L"WINDOW", &nAttribute);
  target.NotifyCameraRemoved(&camera);
  target.SetSunPosition(QXVector3d(1.0, 2.0, 3.0));
  target.SetSunLightEnable(0);
  target.SetShadowEnable(1);
  target.SetShadowVisibleDistance(10.0);
  target.SetBackgroundColor(QXColorValue3D(1.0, 0.0, 0.0, 1.0));
  target.CopyFromMemory(arrPixels, 4);
  target.AddGlobalEffect(L"bloom");
  target.SetGlobalEffectFrustum(L"bloom", camera);
  target.RemoveGlobalEffectFrustum(L"bloom");
  target.RemoveGlobalEffect(L"bloom");
  target.SetRenderDepth(1);
  QXPlane const plane(QXVector3d(0.0, 0.0, 1.0), 0.0);
  target.SetCustomClipPlanes(&plane, 1);
  target.ClearCustomClipPlanes();
  target.ResetCameraViewport(&camera);
  target.CreateShadowSettingInfo();
  target.UpdateShadowTextureCameras();
  target.DeleteShadowSettingInfo();
  target.SetAmbientLight(QXColorValue3D(1.0, 0.0, 0.0, 1.0));
  target.SetDiffuseLight(QXColorValue3D(1.0, 0.0, 0.0, 1.0));
  target.AddDepthTextureRequest();
  target.RemoveDepthTextureRequest();
  EXPECT_TRUE(m_Log.m_arrLines.empty());
  EXPECT_EQ(nAttribute, 5);
  EXPECT_EQ(target.GetWidth(), 64u);
  EXPECT_EQ(target.GetHeight(), 48u);
  EXPECT_EQ(target.GetSunLightEnable(), 1) << "the plug-in writes the flag, not the empty setter";
  EXPECT_EQ(target.GetSceneAntialias(), 0);
  EXPECT_EQ(target.GetSceneAntialiasValue(), 0);
  EXPECT_EQ(target.GetShadowEnable(), 0);
  EXPECT_TRUE(target.GetSunPosition() == QXVector3d::ZERO);
  EXPECT_EQ(pViewport->GetCamera(), &camera);
  EXPECT_EQ(pViewport->m_BackgroundColor.r, 0.0);
}

TEST_F(QXRenderTargetTest, SunLightFlagIsReadByTheNonVirtualGetter) {
  QXTestTarget target(m_Log);
  target.m_bSunLightEnable = 0;
  EXPECT_EQ(target.GetSunLightEnable(), 0);
}

TEST(QXRenderTargetListener, BothHooksAreEmptyInTheBase) {
  QXRenderTargetListener listener;
  listener.BeforeRender();
  listener.PostRender();
  // One virtual table pointer and nothing else: no data, and no destructor that would take the first slot.
  static_assert(sizeof(QXRenderTargetListener) == sizeof(void*));
  static_assert(!std::has_virtual_destructor_v<QXRenderTargetListener>);
}

// --- Ownership ---

TEST_F(QXRenderTargetTest, DestructionDeletesTheShadowTextureAlone) {
  int nDeaths = 0;
  auto const pVertexSelection = std::make_unique<QXTestTarget>(m_Log);
  QXTestTarget reflect(m_Log);
  QXTestTarget selection(m_Log);
  pVertexSelection->m_pDeaths = &nDeaths;
  reflect.m_pDeaths = &nDeaths;
  selection.m_pDeaths = &nDeaths;
  int nShadowDeaths = 0;
  {
    QXTestTarget target(m_Log);
    auto* const pShadow = new QXTestTarget(m_Log);
    pShadow->m_pDeaths = &nShadowDeaths;
    target.m_pOsgbSelShadowTexture = pShadow;
    EXPECT_EQ(target.GetOsgbSelShadowTexture(), pShadow);
    target.SetVertexSelectionRenderTarget(pVertexSelection.get());
    target.SetReflectRenderTarget(&reflect);
    target.SetSelectionRenderTarget(&selection);
  }
  EXPECT_EQ(nShadowDeaths, 1);
  EXPECT_EQ(nDeaths, 0);
}

TEST_F(QXRenderTargetTest, SetVertexSelectionDeletesTheFormerButKeepsTheSame) {
  int nDeaths = 0;
  QXTestTarget target(m_Log);
  auto* const pFirst = new QXTestTarget(m_Log);
  pFirst->m_pDeaths = &nDeaths;
  target.SetVertexSelectionRenderTarget(pFirst);
  target.SetVertexSelectionRenderTarget(pFirst);
  EXPECT_EQ(nDeaths, 0);
  EXPECT_EQ(target.GetVertexSelectionRenderTarget(), pFirst);
  QXTestTarget second(m_Log);
  target.SetVertexSelectionRenderTarget(&second);
  EXPECT_EQ(nDeaths, 1);
  EXPECT_EQ(target.GetVertexSelectionRenderTarget(), &second);
}

TEST_F(QXRenderTargetTest, SettingReflectAndSelectionDeletesNothing) {
  int nDeaths = 0;
  QXTestTarget target(m_Log);
  QXTestTarget companion(m_Log);
  companion.m_pDeaths = &nDeaths;
  target.SetReflectRenderTarget(&companion);
  target.SetReflectRenderTarget(nullptr);
  target.SetSelectionRenderTarget(&companion);
  target.SetSelectionRenderTarget(nullptr);
  EXPECT_EQ(nDeaths, 0);
}

TEST_F(QXRenderTargetTest, CopyIsMemberByMemberAndSharesViewports) {
  QXTestTarget target(m_Log);
  target.m_strName = L"main";
  target.m_nPriority = 2;
  QXViewport* const pViewport = Add(target, 3);
  {
    QXTestTarget copy(target);
    EXPECT_TRUE(copy.GetName() == L"main");
    EXPECT_EQ(copy.GetPriority(), 2);
    EXPECT_EQ(copy.GetViewport(3), pViewport);
    copy.m_Viewports.RemoveAll();  // one of the two may delete the viewports
  }
  QXTestTarget assigned(m_Log);
  assigned.QXRenderTarget::operator=(target);
  EXPECT_EQ(assigned.GetViewport(3), pViewport);
  assigned.m_Viewports.RemoveAll();
  EXPECT_EQ(target.GetViewport(3)->GetOriZOrder(), 3);
}

// --- Viewports ---

TEST_F(QXRenderTargetTest, AddViewportStoresUnderTheZOrder) {
  QXTestTarget target(m_Log);
  target.m_nWidth = 640;
  target.m_nHeight = 480;
  QXTestCamera camera(m_Log);
  QXViewport* const pViewport = target.AddViewport(&camera, 5, 0.25, 0.5, 0.5, 0.25);
  ASSERT_NE(pViewport, nullptr);
  EXPECT_EQ(pViewport->GetTarget(), &target);
  EXPECT_EQ(pViewport->GetCamera(), &camera);
  EXPECT_EQ(pViewport->GetZOrder(), 5);
  EXPECT_EQ(pViewport->GetOriZOrder(), 5);
  EXPECT_EQ(pViewport->GetLeft(), 0.25);
  EXPECT_EQ(pViewport->GetBottom(), 0.5);
  EXPECT_EQ(pViewport->GetWidth(), 0.5);
  EXPECT_EQ(pViewport->GetHeight(), 0.25);
  EXPECT_EQ(pViewport->GetActualWidth(), 320);
  EXPECT_EQ(target.GetViewport(5), pViewport);
  EXPECT_EQ(target.GetNumViewports(), 1);
}

TEST_F(QXRenderTargetTest, AddViewportAtATakenZOrderReturnsTheOldOneWithItsCamera) {
  QXTestTarget target(m_Log);
  QXTestCamera first(m_Log);
  QXTestCamera second(m_Log);
  QXViewport* const pViewport = target.AddViewport(&first, 1, 0.0, 0.0, 1.0, 1.0);
  EXPECT_EQ(target.AddViewport(&second, 1, 0.5, 0.5, 0.5, 0.5), pViewport);
  EXPECT_EQ(pViewport->GetCamera(), &first);
  EXPECT_EQ(pViewport->GetLeft(), 0.0);
  EXPECT_EQ(second.GetViewport(), nullptr);
  EXPECT_EQ(target.GetNumViewports(), 1);
}

TEST_F(QXRenderTargetTest, AddViewportReplacesANullEntry) {
  QXTestTarget target(m_Log);
  target.m_Viewports[2] = nullptr;
  EXPECT_NE(Add(target, 2), nullptr);
  EXPECT_EQ(target.GetNumViewports(), 1);
}

TEST_F(QXRenderTargetTest, GetViewportTakesTheNumberAsAKey) {
  QXTestTarget target(m_Log);
  for (int nZOrder : {0, 1, 2, 3}) {
    Add(target, nZOrder);
  }
  target.RemoveViewport(1);
  EXPECT_EQ(target.GetNumViewports(), 3);
  EXPECT_EQ(target.GetViewport(1), nullptr);
  EXPECT_NE(target.GetViewport(3), nullptr);
  EXPECT_EQ(target.GetViewport(4), nullptr);
}

TEST_F(QXRenderTargetTest, RemoveViewportOfAnUnknownKeyDoesNothing) {
  QXTestTarget target(m_Log);
  Add(target, 0);
  target.RemoveViewport(7);
  target.RemoveViewport(-1);
  EXPECT_EQ(target.GetNumViewports(), 1);
}

TEST_F(QXRenderTargetTest, RemoveAllViewportsEmptiesTheTarget) {
  QXTestTarget target(m_Log);
  Add(target, 0);
  Add(target, 9);
  target.m_Viewports[4] = nullptr;
  target.RemoveAllViewports();
  EXPECT_EQ(target.GetNumViewports(), 0);
  target.RemoveAllViewports();
  EXPECT_EQ(target.GetNumViewports(), 0);
}

TEST_F(QXRenderTargetTest, RemovedViewportsAreDeleted) {
  QXTestTarget target(m_Log);
  auto pBuffer = std::shared_ptr<unsigned char>(new unsigned char, std::default_delete<unsigned char>());
  Add(target, 0)->m_pDepthBuffer = pBuffer;
  Add(target, 1)->m_pDepthBuffer = pBuffer;
  EXPECT_EQ(pBuffer.use_count(), 3);
  target.RemoveViewport(0);
  EXPECT_EQ(pBuffer.use_count(), 2);
  target.RemoveAllViewports();
  EXPECT_EQ(pBuffer.use_count(), 1);
  {
    QXTestTarget dying(m_Log);
    Add(dying, 0)->m_pDepthBuffer = pBuffer;
  }
  EXPECT_EQ(pBuffer.use_count(), 1);
}

// --- Update ---

TEST_F(QXRenderTargetTest, UpdateWalksInKeyOrder) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  for (int nZOrder : {5, -2, 0}) {
    target.AddViewport(&camera, nZOrder, 0.0, 0.0, 1.0, 1.0);
  }
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z-2 flag1",
                                  "camera render z0 flag1", "camera render z5 flag1"}));
  EXPECT_EQ(target.m_nFrameCount, 1u);
}

TEST_F(QXRenderTargetTest, UpdatePassesAPendingNotificationOnAfterTheViewport) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  target.AddViewport(&camera, 0, 0.0, 0.0, 1.0, 1.0);
  target.AddViewport(&camera, 1, 0.0, 0.0, 1.0, 1.0);
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z0 flag1",
                                  "target camera state 1", "camera render z1 flag1"}));
  EXPECT_EQ(camera.m_bTargetNotifyPending, 0);
}

TEST_F(QXRenderTargetTest, UpdateNotifiesAboutTheCameraThatDrewEvenIfItLeft) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bLeave = true;
  target.AddViewport(&camera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(
      m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z0 flag1", "target camera state 1"}));
}

TEST_F(QXRenderTargetTest, UpdateInOrderedModeMakesEachCameraCurrent) {
  QXTestTarget target(m_Log);
  target.m_nWidth = 20;
  target.m_nHeight = 10;
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  target.AddViewport(&camera, 0, 0.0, 0.0, 1.0, 1.0);
  target.AddViewport(&camera, 1, 0.0, 0.0, 0.5, 1.0);
  target.SetMultiViewportMode(MVM_ORDERED);
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera view 20x10", "camera projection",
                                  "target apply z0 0,0", "camera render z0 flag1", "camera view 10x10",
                                  "camera projection", "target apply z1 0,0", "camera render z1 flag1"}));
  EXPECT_EQ(camera.GetViewport(), target.GetViewport(1));
}

TEST_F(QXRenderTargetTest, UpdateOfAViewportWithoutACameraDrawsNothingInAnyMode) {
  QXTestTarget target(m_Log);
  Add(target, 0);
  for (int nMode : {0, 1, 4, 5}) {
    target.SetMultiViewportMode(static_cast<MultiViewportMode>(nMode));
    m_Log.m_arrLines.clear();
    target.Update();
    EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin"})) << nMode;
  }
  EXPECT_EQ(target.m_nFrameCount, 4u);
}

TEST_F(QXRenderTargetTest, UpdateSkipsNullEntries) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  target.m_Viewports[0] = nullptr;
  target.AddViewport(&camera, 1, 0.0, 0.0, 1.0, 1.0);
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z1 flag1"}));
}

TEST_F(QXRenderTargetTest, UpdateStartsWhereBeginViewportUpdateLeavesThePosition) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  for (int nZOrder : {0, 1, 2}) {
    target.AddViewport(&camera, nZOrder, 0.0, 0.0, 1.0, 1.0);
  }
  target.m_nSkip = 2;
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z2 flag1"}));
  target.m_nSkip = 9;
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin"}));
}

TEST_F(QXRenderTargetTest, UpdateGoesOnBehindAViewportThatTheSceneTakesAway) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  for (int const nZOrder : {0, 1, 2, 5}) {
    target.AddViewport(&camera, nZOrder, 0.0, 0.0, 1.0, 1.0);
  }
  camera.m_pfnDuringRender = [&target](QXViewport& viewport) {
    if (viewport.GetZOrder() == 1) {
      target.RemoveViewport(1);
      target.RemoveViewport(2);
    }
  };
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z0 flag1",
                                  "camera render z1 flag1", "camera render z5 flag1"}));
}

TEST_F(QXRenderTargetTest, UpdateDrawsViewportsThatTheSceneAddsBehind) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  target.AddViewport(&camera, 3, 0.0, 0.0, 1.0, 1.0);
  camera.m_pfnDuringRender = [&target, &camera](QXViewport& viewport) {
    if (viewport.GetZOrder() == 3) {
      target.AddViewport(&camera, 1, 0.0, 0.0, 1.0, 1.0);
      target.AddViewport(&camera, 7, 0.0, 0.0, 1.0, 1.0);
    }
  };
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(
      m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z3 flag1", "camera view 1x1",
                            "camera projection", "camera view 1x1", "camera projection", "camera render z7 flag1"}));
}

TEST_F(QXRenderTargetTest, UpdateSeesAViewportPutIntoAnOldPlace) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  QXViewport*& pPlace = target.m_Viewports[0];
  pPlace = nullptr;
  target.Update();
  pPlace = new QXViewport(&camera, &target, 0.0, 0.0, 1.0, 1.0, 8);
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z8 flag1"}));
}

TEST_F(QXRenderTargetTest, UpdateOfACopyWalksTheCopysViewports) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  target.AddViewport(&camera, 0, 0.0, 0.0, 1.0, 1.0);
  target.AddViewport(&camera, 1, 0.0, 0.0, 1.0, 1.0);
  target.Update();
  QXTestTarget copy(target);
  QXTestTarget assigned(m_Log);
  assigned.Update();
  assigned.QXRenderTarget::operator=(target);
  target.RemoveAllViewports();
  copy.m_Viewports.RemoveAll();
  assigned.m_Viewports.RemoveAll();
  copy.AddViewport(&camera, 4, 0.0, 0.0, 1.0, 1.0);
  assigned.AddViewport(&camera, 5, 0.0, 0.0, 1.0, 1.0);
  m_Log.m_arrLines.clear();
  copy.Update();
  assigned.Update();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z4 flag1", "target begin",
                                  "camera render z5 flag1", "target begin"}));
}

TEST_F(QXRenderTargetTest, UpdateInOrderedModeRenumbersSparseKeys) {
  QXTestTarget target(m_Log);
  QXViewport* const arrViewports[] = {Add(target, 0), Add(target, 5), Add(target, 9)};
  target.SetMultiViewportMode(MVM_ORDERED);
  target.Update();
  EXPECT_EQ(Viewports(target),
      (std::map<int, QXViewport*>{{0, arrViewports[0]}, {1, arrViewports[1]}, {2, arrViewports[2]}}));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(arrViewports[i]->GetZOrder(), i);
  }
  EXPECT_EQ(arrViewports[1]->GetOriZOrder(), 5);
  EXPECT_EQ(arrViewports[2]->GetOriZOrder(), 9);
}

TEST_F(QXRenderTargetTest, UpdateInOrderedModeSetsZOrderEvenUnderDenseKeys) {
  QXTestTarget target(m_Log);
  Add(target, 0)->SetZOrder(40);
  Add(target, 1)->SetZOrder(41);
  target.SetMultiViewportMode(MVM_ORDERED);
  target.Update();
  EXPECT_EQ(target.GetViewport(0)->GetZOrder(), 0);
  EXPECT_EQ(target.GetViewport(1)->GetZOrder(), 1);
}

TEST_F(QXRenderTargetTest, UpdateInOrderedModeWithoutViewportsStillCountsTheFrame) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  target.Update();
  EXPECT_EQ(target.GetNumViewports(), 0);
  EXPECT_EQ(target.m_nFrameCount, 1u);
}

// --- Ordering ---

TEST_F(QXRenderTargetTest, MoveViewPortToLastDoesNothingInOtherModes) {
  QXTestTarget target(m_Log);
  QXViewport* const pFirst = Add(target, 0);
  QXViewport* const pSecond = Add(target, 7);
  for (int nMode : {0, 1, 2, 3, 5, -4}) {
    target.SetMultiViewportMode(static_cast<MultiViewportMode>(nMode));
    target.MoveViewPortToLast(0);
    target.MoveViewPortToLast(-1);
    EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{0, pFirst}, {7, pSecond}})) << nMode;
    EXPECT_EQ(pSecond->GetZOrder(), 7);
  }
}

TEST_F(QXRenderTargetTest, MoveViewPortToLastOfTheLastIndexDoesNothing) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pFirst = Add(target, 3);
  QXViewport* const pSecond = Add(target, 8);
  target.MoveViewPortToLast(1);  // equals the count minus 1, although no key is 1
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{3, pFirst}, {8, pSecond}}));
}

TEST_F(QXRenderTargetTest, MoveViewPortToLastMovesTheFirstThreeIndicesAlone) {
  for (int nIndex = 0; nIndex < 5; ++nIndex) {
    QXTestTarget target(m_Log);
    target.SetMultiViewportMode(MVM_ORDERED);
    std::vector<QXViewport*> arrExpected;
    for (int i = 0; i < 6; ++i) {
      arrExpected.push_back(Add(target, i));
    }
    if (nIndex <= 2) {
      QXViewport* const pMoved = arrExpected[static_cast<std::size_t>(nIndex)];
      arrExpected.erase(arrExpected.begin() + nIndex);
      arrExpected.push_back(pMoved);
    }
    target.MoveViewPortToLast(nIndex);
    for (int i = 0; i < 6; ++i) {
      EXPECT_EQ(target.GetViewport(static_cast<unsigned short>(i)), arrExpected[static_cast<std::size_t>(i)])
          << nIndex << " " << i;
      EXPECT_EQ(arrExpected[static_cast<std::size_t>(i)]->GetZOrder(), i);
    }
  }
}

TEST_F(QXRenderTargetTest, MoveViewPortToLastOfAnAbsentKeyOnlyRenumbers) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pFirst = Add(target, 1);
  QXViewport* const pSecond = Add(target, 2);
  QXViewport* const pThird = Add(target, 4);
  target.MoveViewPortToLast(0);
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{0, pFirst}, {1, pSecond}, {2, pThird}}));
}

TEST_F(QXRenderTargetTest, MoveViewPortToLastAmongSparseKeysLosesNoViewport) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pMoved = Add(target, 0);
  QXViewport* const pSecond = Add(target, 3);  // where the moved one would go: 2 remain, and 2 + 1 is 3
  QXViewport* const pThird = Add(target, 5);
  target.MoveViewPortToLast(0);
  // The next free key above 3 is 4, which still stands before 5.
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{0, pSecond}, {1, pMoved}, {2, pThird}}));
}

TEST_F(QXRenderTargetTest, MoveViewPortToLastGoesToCountPlusOneAndNotAboveAllKeys) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pMoved = Add(target, 0);
  QXViewport* const pSecond = Add(target, 2);
  QXViewport* const pThird = Add(target, 9);
  target.MoveViewPortToLast(0);
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{0, pSecond}, {1, pMoved}, {2, pThird}}));
}

TEST_F(QXRenderTargetTest, OrderedModeDropsNullEntries) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pFirst = Add(target, 0);
  target.m_Viewports[1] = nullptr;
  QXViewport* const pSecond = Add(target, 2);
  target.MoveViewPortToLast(-1);
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{0, pFirst}, {1, pSecond}}));
}

struct HalfHeightCase {
  char const* m_szName;
  std::vector<double> m_arrHeights;  // under keys 0, 1, 2..
  std::vector<int> m_arrOrder;       // original key that stands at 0, 1, 2.. afterwards
};

TEST_F(QXRenderTargetTest, HalfHeightViewportSwapsTheFirstTwo) {
  HalfHeightCase const arrCases[] = {
      {"none", {1.0, 1.0, 1.0}, {0, 1, 2}},
      {"the first stays first", {0.5, 1.0, 1.0}, {0, 1, 2}},
      {"the second goes behind the first", {1.0, 0.5, 1.0}, {1, 0, 2}},
      {"the third does not count", {1.0, 1.0, 0.5}, {0, 1, 2}},
      {"the fourth swaps the first two all the same", {1.0, 1.0, 1.0, 0.5}, {1, 0, 2, 3}},
      {"the last one counts: first and second swap", {0.5, 0.5}, {1, 0}},
      {"the third does not hide the second", {1.0, 0.5, 0.5}, {1, 0, 2}},
      {"first and third do nothing", {0.5, 1.0, 0.5}, {0, 1, 2}},
      {"nearly half is not half", {1.0, 0.5000000000000001}, {0, 1}},
      {"no height reads as full height", {1.0, 0.0}, {0, 1}},
      {"alone", {0.5}, {0}},
  };
  for (HalfHeightCase const& entry : arrCases) {
    QXTestTarget target(m_Log);
    target.SetMultiViewportMode(MVM_ORDERED);
    std::vector<QXViewport*> arrViewports;
    for (std::size_t i = 0; i < entry.m_arrHeights.size(); ++i) {
      arrViewports.push_back(Add(target, static_cast<int>(i), entry.m_arrHeights[i]));
    }
    target.MoveViewPortToLast(-1);
    for (std::size_t i = 0; i < arrViewports.size(); ++i) {
      QXViewport* const pExpected = arrViewports[static_cast<std::size_t>(entry.m_arrOrder[i])];
      EXPECT_EQ(target.GetViewport(static_cast<unsigned short>(i)), pExpected) << entry.m_szName << " at " << i;
      EXPECT_EQ(pExpected->GetZOrder(), static_cast<int>(i)) << entry.m_szName << " at " << i;
    }
  }
}

TEST_F(QXRenderTargetTest, TwoHalfHeightViewportsChangePlacesEveryFrame) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pFirst = Add(target, 0, 0.5);
  Add(target, 1, 0.5);
  target.Update();
  EXPECT_EQ(target.GetViewport(1), pFirst);
  target.Update();
  EXPECT_EQ(target.GetViewport(0), pFirst);
}

/// The ordering as it is told, with a fresh map each time.
void MoveToLastReference(std::map<int, QXViewport*>& mapViewports, std::map<QXViewport*, int>& mapZOrder, int nIndex) {
  if (nIndex == static_cast<int>(mapViewports.size()) - 1) {
    return;
  }
  if (nIndex >= 0 && nIndex <= 2 && mapViewports.count(nIndex) == 1) {
    QXViewport* const pMoved = mapViewports[nIndex];
    mapViewports.erase(nIndex);
    int nTop = static_cast<int>(mapViewports.size()) + 1;
    while (mapViewports.count(nTop) == 1) {
      ++nTop;
    }
    mapViewports[nTop] = pMoved;
  }
  std::map<int, QXViewport*> mapFresh;
  int i = 0;
  int nRemembered = 0;
  for (auto const& [nKey, pViewport] : mapViewports) {
    if (pViewport->GetHeight() == 0.5 && i != 2) {
      nRemembered = i;
    }
    mapZOrder[pViewport] = i;
    mapFresh[i++] = pViewport;
  }
  mapViewports = mapFresh;
  if (nRemembered != 0) {
    mapZOrder[mapViewports[0]] = 1;
    mapZOrder[mapViewports[1]] = 0;
    std::swap(mapViewports[0], mapViewports[1]);
  }
}

TEST_F(QXRenderTargetTest, OrderingAgreesWithTheReferenceOnRandomSequences) {
  constexpr unsigned int nSeed = 20261121;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  for (int nRun = 0; nRun < 200; ++nRun) {
    QXTestTarget target(m_Log);
    target.SetMultiViewportMode(MVM_ORDERED);
    std::map<int, QXViewport*> mapExpected;
    std::map<QXViewport*, int> mapZOrder;
    for (int nStep = 0; nStep < 40; ++nStep) {
      int const nKey = static_cast<int>(random() % 9) - 2;
      switch (random() % 4) {
      case 0: {
        QXViewport* const pViewport = Add(target, nKey, random() % 3 == 0 ? 0.5 : 1.0);
        if (mapExpected.emplace(nKey, pViewport).second) {
          mapZOrder[pViewport] = nKey;
        }
        break;
      }
      case 1:
        target.RemoveViewport(nKey);
        mapExpected.erase(nKey);
        break;
      default: target.MoveViewPortToLast(nKey); MoveToLastReference(mapExpected, mapZOrder, nKey);
      }
      ASSERT_EQ(Viewports(target), mapExpected) << "run " << nRun << " step " << nStep;
      for (auto const& [nPlace, pViewport] : mapExpected) {
        ASSERT_EQ(pViewport->GetZOrder(), mapZOrder[pViewport]) << "run " << nRun << " step " << nStep;
      }
    }
  }
}

// --- Statistics ---

TEST_F(QXRenderTargetTest, RatesWaitForMoreThanASecond) {
  for (auto const& [nElapsed, dExpected] :
      {std::pair{999u, 0.0}, std::pair{1000u, 0.0}, std::pair{1001u, 1000.0 / 1001.0}}) {
    g_nNow = 5000;
    QXTestTarget target(m_Log);
    g_nNow += nElapsed;
    target.UpdateStats();
    EXPECT_DOUBLE_EQ(target.GetLastFPS(), dExpected) << nElapsed;
  }
}

TEST_F(QXRenderTargetTest, APeriodThatIsNotOverGoesOnCounting) {
  QXTestTarget target(m_Log);
  for (int i = 0; i < 10; ++i) {
    g_nNow += 100;
    target.UpdateStats();
  }
  EXPECT_EQ(target.m_nFrameCount, 10u);
  EXPECT_EQ(target.m_nLastSecond, 5000u);
  EXPECT_EQ(target.m_nLastTime, 6000u);
  g_nNow += 100;
  target.UpdateStats();
  EXPECT_EQ(target.GetLastFPS(), 11.0 / 1100.0 * 1000.0);
  EXPECT_EQ(target.m_nFrameCount, 0u);
  EXPECT_EQ(target.m_nLastSecond, 6100u);
}

TEST_F(QXRenderTargetTest, AverageWeighsTheNewestPeriodHalf) {
  QXTestTarget target(m_Log);
  auto const RunPeriod = [&target](unsigned int nFrames) {
    // The last frame takes the rest of 2000 ms, a period that divides without rounding.
    for (unsigned int i = 1; i < nFrames; ++i) {
      g_nNow += 1;
      target.UpdateStats();
    }
    g_nNow += 2000 - (nFrames - 1);
    target.UpdateStats();
  };
  RunPeriod(120);
  EXPECT_EQ(target.GetLastFPS(), 60.0);
  EXPECT_EQ(target.GetAverageFPS(), 60.0);
  RunPeriod(60);
  EXPECT_EQ(target.GetLastFPS(), 30.0);
  EXPECT_EQ(target.GetAverageFPS(), 45.0);
  EXPECT_EQ(target.GetBestFPS(), 60.0);
  EXPECT_EQ(target.GetWorstFPS(), 30.0);
  RunPeriod(100);
  EXPECT_EQ(target.GetAverageFPS(), 47.5);
  EXPECT_EQ(target.GetBestFPS(), 60.0);
  EXPECT_EQ(target.GetWorstFPS(), 30.0);
  double dLast = 0.0;
  double dAverage = 0.0;
  double dBest = 0.0;
  double dWorst = 0.0;
  target.GetStatistics(dLast, dAverage, dBest, dWorst);
  EXPECT_EQ(dLast, 50.0);
  EXPECT_EQ(dAverage, 47.5);
  EXPECT_EQ(dBest, 60.0);
  EXPECT_EQ(dWorst, 30.0);
}

TEST_F(QXRenderTargetTest, FrameTimesKeepTheShortestAndTheLongest) {
  QXTestTarget target(m_Log);
  for (unsigned int nFrame : {16u, 40u, 7u}) {
    g_nNow += nFrame;
    target.UpdateStats();
  }
  EXPECT_EQ(target.GetBestFrameTime(), 7u);
  EXPECT_EQ(target.GetWorstFrameTime(), 40u);
  EXPECT_EQ(&target.GetStatistics(), &target.m_Stats);
}

TEST_F(QXRenderTargetTest, TheFrameInWhichTheClockWrapsIsEnormous) {
  g_nNow = 0xFFFFFFF0u;
  QXTestTarget target(m_Log);
  g_nNow = 0x00000010u;
  target.UpdateStats();
  std::uint64_t const nEnormous = std::uint64_t{0x10} - std::uint64_t{0xFFFFFFF0u};
  EXPECT_EQ(target.GetWorstFrameTime(), nEnormous);
  EXPECT_EQ(target.GetLastFPS(), 1.0 / static_cast<double>(nEnormous) * 1000.0);
  EXPECT_EQ(target.m_nLastSecond, 0x10u);
}

TEST_F(QXRenderTargetTest, ResetStatisticsStartsAnew) {
  QXTestTarget target(m_Log);
  g_nNow += 1500;
  target.UpdateStats();
  g_nNow += 10;
  target.UpdateStats();
  target.m_Stats.triangleCount = 12;
  EXPECT_EQ(target.GetTriangleCount(), 12);
  g_nNow += 1;
  target.ResetStatistics();
  EXPECT_EQ(target.GetLastFPS(), 0.0);
  EXPECT_EQ(target.GetAverageFPS(), 0.0);
  EXPECT_EQ(target.GetBestFPS(), 0.0);
  EXPECT_EQ(target.GetWorstFPS(), 999.0);
  EXPECT_EQ(target.GetTriangleCount(), 0);
  EXPECT_EQ(target.GetBestFrameTime(), 999999u);
  EXPECT_EQ(target.GetWorstFrameTime(), 0u);
  EXPECT_EQ(target.m_nLastTime, 6511u);
  EXPECT_EQ(target.m_nLastSecond, 6511u);
  EXPECT_EQ(target.m_nFrameCount, 0u);
}

}  // namespace
}  // namespace QXC
