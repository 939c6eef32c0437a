#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <type_traits>
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

// --- Defaults and accessors ---

TEST_F(QXRenderTargetTest, ConstructionLeavesTheDefaultsWhateverStoodInTheMemory) {
  alignas(QXTestTarget) static unsigned char arrMemory[sizeof(QXTestTarget)];
  std::memset(arrMemory, 0xCD, sizeof arrMemory);
  auto* const pTarget = new (arrMemory) QXTestTarget(m_Log);
  QXTestTarget const& target = *pTarget;
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
  pTarget->~QXTestTarget();
}

TEST_F(QXRenderTargetTest, MembersStandInTheOrderThatPluginsWereCompiledAgainst) {
  QXTestTarget const target(m_Log);
  std::vector<void const*> const arrMembers = {&target.m_strName, &target.m_strSceneName, &target.m_nPriority,
      &target.m_nWidth, &target.m_nHeight, &target.m_nColourDepth, &target.m_Stats.lastFPS, &target.m_Stats.avgFPS,
      &target.m_Stats.bestFPS, &target.m_Stats.worstFPS, &target.m_Stats.bestFrameTime, &target.m_Stats.worstFrameTime,
      &target.m_Stats.triangleCount, &target.m_strDebugText, &target.m_nLastSecond, &target.m_nLastTime,
      &target.m_nFrameCount, &target.m_dVerticalExaggeration, &target.m_bActive, &target.m_bAlwaysActive,
      &target.m_bAutoUpdated, &target.m_Viewports, &target.m_hWindow, &target.m_hDisplay3D, &target.m_pGraphics3D,
      &target.m_bCurTargetRefresh, &target.m_bSunLightEnable, &target.m_bFlagA, &target.m_bRenderStencilSM,
      &target.m_pOsgbSelShadowTexture, &target.m_rcOsgbSelShadowBound, &target.m_eRenderState,
      &target.m_pReflectRenderTarget, &target.m_pSelectionRenderTarget, &target.m_pVertexSelectionRenderTarget,
      &target.m_bRenderToTextureWithManual, &target.m_eMultiViewportMode, &target.m_bFlagB,
      &target.m_bRenderSceneWithTextureBuffer, &target.m_bLogDepthEnable, &target.m_pListener, &target.m_bFlagC};
  EXPECT_TRUE(std::is_sorted(arrMembers.begin(), arrMembers.end(), std::less<void const*>()));
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

/// Counts the target's viewports when it is told of its own.
class QXCountingCamera : public QXCamera {
public:
  void UpdateViewMatrix(QXViewport* pViewport) override { m_nViewports = pViewport->GetTarget()->GetNumViewports(); }
  int m_nViewports = -1;
};

TEST_F(QXRenderTargetTest, AddViewportStoresTheViewportOnceItsCameraKnowsIt) {
  QXTestTarget target(m_Log);
  QXCountingCamera camera;
  Add(target, 0);
  target.AddViewport(&camera, 1, 0.0, 0.0, 1.0, 1.0);
  EXPECT_EQ(camera.m_nViewports, 1);
  EXPECT_EQ(target.GetNumViewports(), 2);
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
