// The renderer's construction, registry of targets, frame loop and end.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/model/QXModelManager.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/texture/QXTextureManager.h>
#include <QxGraphics3D/view/QXCamera.h>

#include "QXTestGraphics3D.h"
#include "QXTestTarget.h"

namespace QXC {
namespace {

/// A target that writes down how the renderer finds and leaves it.
class QXLoopTarget : public QXTestTarget {
public:
  QXLoopTarget(QXTestLog& log, wchar_t const* szName) : QXTestTarget(log) { m_strName = szName; }

  void Update() override {
    ++m_nUpdates;
    std::string strLine = "update " + Name(this) + " active " + std::to_string(m_bActive);
    if (m_pRenderer) {
      strLine += " current " + Name(m_pRenderer->m_pActiveRenderTarget);
      strLine += " companions " + Name(m_pRenderer->GetReflectRenderTarget()) +
                 Name(m_pRenderer->GetSelectionRenderTarget()) + Name(m_pRenderer->GetVertexSelectionRenderTarget());
    }
    m_Log.m_arrLines.push_back(strLine);
  }
  void NotifyCameraRemoved(QXCamera const* pCamera) override { m_pRemovedCamera = pCamera; }
  void SetSunPosition(QXVector3d const& vecPosition) override { m_vecSun = vecPosition; }
  QXVector3d GetSunPosition() const override { return m_vecSun; }
  void SetSunLightEnable(unsigned char bEnable) override { m_bSunLightEnable = bEnable; }

  static std::string Name(QXRenderTarget const* pTarget) {
    return pTarget ? std::string(pTarget->GetName().ToMBString().Cstr()) : std::string("-");
  }

  QXGraphics3D* m_pRenderer = nullptr;
  int m_nUpdates = 0;
  QXCamera const* m_pRemovedCamera = nullptr;
  QXVector3d m_vecSun;
};

/// Writes down the texture-unit calls, which the base leaves empty.
class QXUnitGraphics3D : public QXTestGraphics3D {
public:
  void DisableTextureUnit(unsigned int nUnit) override { m_arrDisabled.push_back(nUnit); }
  void SetTextureUnitFiltering(unsigned int nUnit, int nFilter0, int nFilter1, int nFilter2) override {
    m_arrFilters.push_back({static_cast<int>(nUnit), nFilter0, nFilter1, nFilter2});
  }
  std::vector<unsigned int> m_arrDisabled;
  std::vector<std::vector<int>> m_arrFilters;
};

class QXGraphics3DTest : public testing::Test {
protected:
  QXLoopTarget* Attach(wchar_t const* szName, unsigned char bActive, unsigned char bAutoUpdated) {
    auto* const pTarget = new QXLoopTarget(m_Log, szName);
    pTarget->m_bActive = bActive;
    pTarget->m_bAutoUpdated = bAutoUpdated;
    pTarget->m_pRenderer = &m_Graphics;
    m_Graphics.AttachRenderTarget(pTarget);
    return pTarget;
  }
  ~QXGraphics3DTest() override { m_Graphics.ShutDown(); }

  QXTestLog m_Log;
  QXTestGraphics3D m_Graphics;
};

// --- Construction ---

TEST(QXGraphics3D, ConstructionLeavesTheDefaultsWhateverStoodInTheMemory) {
  alignas(QXTestGraphics3D) static unsigned char arrMemory[sizeof(QXTestGraphics3D)];
  std::memset(arrMemory, 0xCD, sizeof arrMemory);
  auto* const pGraphics = new (arrMemory) QXTestGraphics3D;
  QXTestGraphics3D& graphics = *pGraphics;
  EXPECT_EQ(graphics.m_RenderTargets.GetCount(), 0u);
  EXPECT_EQ(graphics.m_PrioritisedRenderTargets.GetCount(), 0u);
  EXPECT_EQ(graphics.m_pActiveRenderTarget, nullptr);
  EXPECT_EQ(graphics.m_pReflectRenderTarget, nullptr);
  EXPECT_EQ(graphics.m_pSelectionRenderTarget, nullptr);
  EXPECT_EQ(graphics.m_pVertexSelectionRenderTarget, nullptr);
  EXPECT_EQ(graphics.m_pMultiRenderTarget, nullptr);
  EXPECT_EQ(graphics.m_pTextureManager, nullptr);
  EXPECT_EQ(graphics.m_nCurrentPassIterationCount, 0u);
  EXPECT_EQ(graphics.m_bInvertVertexWinding, 0);
  EXPECT_EQ(graphics.m_nVertexCount, 0u);
  EXPECT_EQ(graphics.m_nFaceCount, 0u);
  EXPECT_EQ(static_cast<int>(graphics.m_eCullingMode), 1);
  EXPECT_EQ(graphics.m_bWaitForVerticalBlank, 1);
  EXPECT_EQ(graphics.m_pViewport, nullptr);
  EXPECT_TRUE(graphics.m_matWorld == QXMatrix4d::ZERO);
  EXPECT_TRUE(graphics.m_matView == QXMatrix4d::ZERO);
  EXPECT_TRUE(graphics.m_matProjection == QXMatrix4d::ZERO);
  ASSERT_EQ(std::size(graphics.m_arrWorldMatrices), 256u);
  for (QXMatrix4d const& matrix : graphics.m_arrWorldMatrices) ASSERT_TRUE(matrix == QXMatrix4d());
  EXPECT_EQ(graphics.m_nWorldMatrixCount, 0);
  EXPECT_NE(graphics.m_pModelManager, nullptr);
  EXPECT_EQ(graphics.m_nRenderBufferTarget, 0u);
  EXPECT_EQ(graphics.m_pHwInstancingManager, nullptr);
  EXPECT_EQ(graphics.m_eHMDMode, HMD_NONE);
  EXPECT_EQ(static_cast<int>(graphics.m_eHMDMode), 2);
  EXPECT_EQ(graphics.m_bResetQXCameraForVR, 1);
  EXPECT_TRUE(graphics.m_mapUpdateROViewProjCallBackProc.empty());
  EXPECT_TRUE(graphics.m_mapROManualNearFarDist.empty());
  EXPECT_TRUE(graphics.m_mapROManualSceneName.empty());
  EXPECT_TRUE(graphics.m_mapReInitRenderQueueProc.empty());
  EXPECT_EQ(graphics.m_arrReInitRenderQueue.GetSize(), 0u);
  EXPECT_TRUE(graphics.m_mapReInitObjectSceneName.empty());
  EXPECT_EQ(graphics.m_pfnHtcControllerPoints, nullptr);
  EXPECT_EQ(graphics.m_pRenderRay3D, nullptr);
  EXPECT_EQ(graphics.m_nVREventView, 0);
  EXPECT_EQ(graphics.m_pfnVRPickingObject, nullptr);
  EXPECT_EQ(graphics.m_nObjectsEventView, 0);
  EXPECT_EQ(graphics.m_pfnVRControllerHandle, nullptr);
  EXPECT_EQ(graphics.m_arrStrings.GetSize(), 0u);
  EXPECT_EQ(graphics.m_bFlagA, 0);
  EXPECT_EQ(graphics.m_bFlagB, 0);
  EXPECT_EQ(graphics.m_pReservedA, nullptr);
  EXPECT_EQ(graphics.m_bFlagC, 0);
  EXPECT_EQ(graphics.m_SceneOperation.GetRenderGroupID(), 50u);
  EXPECT_EQ(graphics.m_pResourceHolder, nullptr);
  EXPECT_EQ(static_cast<int>(graphics.m_eTextCharset), 0);
  EXPECT_EQ(graphics.m_bFlagD, 0);
  EXPECT_EQ(graphics.m_pRenderOperationManager, nullptr);
  pGraphics->~QXTestGraphics3D();
}

TEST(QXGraphics3D, MembersStandInTheOrderThatPluginsWereCompiledAgainst) {
  QXTestGraphics3D graphics;
  std::vector<void const*> const arrMembers = {&graphics.m_RenderTargets, &graphics.m_PrioritisedRenderTargets,
      &graphics.m_pActiveRenderTarget, &graphics.m_pReflectRenderTarget, &graphics.m_pSelectionRenderTarget,
      &graphics.m_pVertexSelectionRenderTarget, &graphics.m_pMultiRenderTarget, &graphics.m_pTextureManager,
      &graphics.m_nCurrentPassIterationCount, &graphics.m_bInvertVertexWinding, &graphics.m_nVertexCount,
      &graphics.m_nFaceCount, &graphics.m_eCullingMode, &graphics.m_bWaitForVerticalBlank, &graphics.m_pViewport,
      &graphics.m_matWorld, &graphics.m_matView, &graphics.m_matProjection, &graphics.m_arrWorldMatrices,
      &graphics.m_nWorldMatrixCount, &graphics.m_pModelManager, &graphics.m_nRenderBufferTarget,
      &graphics.m_pHwInstancingManager, &graphics.m_eHMDMode, &graphics.m_bResetQXCameraForVR,
      &graphics.m_mapUpdateROViewProjCallBackProc, &graphics.m_mapROManualNearFarDist, &graphics.m_mapROManualSceneName,
      &graphics.m_mapReInitRenderQueueProc, &graphics.m_arrReInitRenderQueue, &graphics.m_mapReInitObjectSceneName,
      &graphics.m_pfnHtcControllerPoints, &graphics.m_pRenderRay3D, &graphics.m_nVREventView,
      &graphics.m_pfnVRPickingObject, &graphics.m_nObjectsEventView, &graphics.m_pfnVRControllerHandle,
      &graphics.m_arrStrings, &graphics.m_bFlagA, &graphics.m_bFlagB, &graphics.m_Mutex, &graphics.m_pReservedA,
      &graphics.m_bFlagC, &graphics.m_SceneOperation, &graphics.m_pResourceHolder, &graphics.m_eTextCharset,
      &graphics.m_bFlagD, &graphics.m_pRenderOperationManager};
  EXPECT_TRUE(std::is_sorted(arrMembers.begin(), arrMembers.end(), std::less<void const*>()));
}

TEST(QXGraphics3D, StaticDataAtLoadIsAsHostsExpectIt) {
  EXPECT_EQ(QXGraphics3D::LogDepthCameraNearDist, 1.0);
  EXPECT_EQ(QXGraphics3D::LogDepthCameraFarDist, 1000000000.0);
  EXPECT_EQ(QXGraphics3D::m_pntScreenStereoOffset, QdcPoint(0, 0));
  EXPECT_EQ(QXGraphics3D::m_Capabilities.GetNumTextureUnits(), 0);
}

TEST(QXGraphics3D, MutexMayBeEnteredAgainByItsThread) {
  QXTestGraphics3D graphics;
  graphics.m_Mutex.lock();
  graphics.m_Mutex.lock();
  graphics.m_Mutex.unlock();
  graphics.m_Mutex.unlock();
}

// --- Registry of targets ---

TEST_F(QXGraphics3DTest, AttachingRegistersUnderTheNameAndMakesActive) {
  QXLoopTarget* const pFirst = Attach(L"first", 0, 1);
  QXLoopTarget* const pSecond = Attach(L"second", 0, 1);
  EXPECT_EQ(m_Graphics.GetRenderTarget(L"first"), pFirst);
  EXPECT_EQ(m_Graphics.GetRenderTarget(L"second"), pSecond);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pSecond);
  EXPECT_EQ(m_Graphics.GetRenderTarget(L"third"), nullptr);
}

TEST_F(QXGraphics3DTest, AttachingATakenNameOverwritesAndLeavesTheFormerTargetAlive) {
  int nDeaths = 0;
  std::unique_ptr<QXLoopTarget> const pFormer(Attach(L"window", 1, 1));
  pFormer->m_pDeaths = &nDeaths;
  QXLoopTarget* const pLatter = Attach(L"window", 1, 1);
  EXPECT_EQ(m_Graphics.m_RenderTargets.GetCount(), 1u);
  EXPECT_EQ(m_Graphics.GetRenderTarget(L"window"), pLatter);
  EXPECT_EQ(nDeaths, 0);
}

TEST_F(QXGraphics3DTest, DeletingTakesTheTargetOutAndLeavesTheActivePointer) {
  int nDeaths = 0;
  Attach(L"a", 1, 1);
  QXLoopTarget* const pTarget = Attach(L"b", 1, 1);
  pTarget->m_pDeaths = &nDeaths;
  QXRenderTarget* const pActive = m_Graphics.GetActiveRenderTarget();
  m_Graphics.DeleteRenderTarget(pTarget);
  EXPECT_EQ(nDeaths, 1);
  EXPECT_EQ(m_Graphics.GetRenderTarget(L"b"), nullptr);
  EXPECT_NE(m_Graphics.GetRenderTarget(L"a"), nullptr);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pActive);
}

TEST_F(QXGraphics3DTest, DeletingAnUnknownOrNullTargetDoesNothing) {
  Attach(L"a", 1, 1);
  m_Graphics.m_RenderTargets[L"empty"] = nullptr;
  QXLoopTarget stranger(m_Log, L"a");
  m_Graphics.DeleteRenderTarget(&stranger);
  m_Graphics.DeleteRenderTarget(nullptr);
  EXPECT_EQ(m_Graphics.m_RenderTargets.GetCount(), 2u);
}

TEST_F(QXGraphics3DTest, DeletingATargetOfTwoNamesRemovesTheFirstEntryOnly) {
  QXLoopTarget* const pTarget = Attach(L"z", 1, 1);
  pTarget->m_strName = L"a";
  m_Graphics.AttachRenderTarget(pTarget);
  m_Graphics.DeleteRenderTarget(pTarget);
  EXPECT_TRUE(m_Graphics.m_RenderTargets.IsEOF(m_Graphics.m_RenderTargets.Find(L"a")));
  EXPECT_EQ(m_Graphics.GetRenderTarget(L"z"), pTarget);  // dangling: a renamed target is detached by its owner
  m_Graphics.m_RenderTargets.RemoveAll();
}

// --- The frame loop ---

TEST_F(QXGraphics3DTest, LoopsWithoutTargetsReturnAtOnce) {
  m_Graphics.UpdateAllRenderTargets();
  m_Graphics.InvalidateAllRenderTargets();
  m_Graphics.ShutDown();
  m_Graphics.NotifyCameraRemoved(nullptr);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), nullptr);
}

TEST_F(QXGraphics3DTest, ActiveTargetsUpdateInNameOrderAndTheLastStaysActive) {
  QXLoopTarget* const pLast = Attach(L"c", 1, 1);
  Attach(L"a", 1, 1);
  Attach(L"b", 1, 1);
  m_Graphics.UpdateAllRenderTargets();
  std::vector<std::string> const arrExpected = {"update a active 1 current a companions ---",
      "update b active 1 current b companions ---", "update c active 1 current c companions ---"};
  EXPECT_EQ(m_Log.m_arrLines, arrExpected);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pLast);
}

TEST_F(QXGraphics3DTest, ActiveTargetThatIsNotAutoUpdatedIsSkippedButBecomesActive) {
  QXLoopTarget* const pTarget = Attach(L"a", 1, 0);
  Attach(L"b", 0, 1);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_TRUE(m_Log.m_arrLines.empty());
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pTarget);
}

TEST_F(QXGraphics3DTest, InactiveTargetIsSkippedAndDoesNotBecomeActive) {
  Attach(L"b", 0, 1);
  QXLoopTarget* const pActive = Attach(L"a", 0, 1);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_TRUE(m_Log.m_arrLines.empty());
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pActive);
}

TEST_F(QXGraphics3DTest, RefreshFlagUpdatesOnceWhateverTheOtherFlagsAndIsCleared) {
  QXLoopTarget* const pTarget = Attach(L"b", 0, 0);
  QXLoopTarget* const pWindow = Attach(L"a", 1, 1);
  pTarget->m_bCurTargetRefresh = 1;
  m_Graphics.UpdateAllRenderTargets();
  std::vector<std::string> const arrExpected = {
      "update a active 1 current a companions ---", "update b active 1 current b companions ---"};
  EXPECT_EQ(m_Log.m_arrLines, arrExpected);
  EXPECT_EQ(pTarget->m_bCurTargetRefresh, 0);
  EXPECT_EQ(pTarget->m_bActive, 0);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pWindow);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(pTarget->m_nUpdates, 1);
}

TEST_F(QXGraphics3DTest, RefreshOfAnActiveTargetUpdatesItOnceAndAttachesNoCompanions) {
  QXLoopTarget companion(m_Log, L"mirror");
  QXLoopTarget* const pTarget = Attach(L"a", 1, 1);
  pTarget->m_bAlwaysActive = 1;
  pTarget->m_bCurTargetRefresh = 1;
  pTarget->SetReflectRenderTarget(&companion);
  m_Graphics.UpdateAllRenderTargets();
  std::vector<std::string> const arrExpected = {"update a active 1 current a companions ---"};
  EXPECT_EQ(m_Log.m_arrLines, arrExpected);
  EXPECT_EQ(pTarget->m_bActive, 1);
}

TEST_F(QXGraphics3DTest, AlwaysActiveTargetIsUpdatedOnceAsActiveWithItsCompanions) {
  QXLoopTarget mirror(m_Log, L"m");
  QXLoopTarget picker(m_Log, L"p");
  QXLoopTarget mirrorOfWindow(m_Log, L"M");
  QXLoopTarget pickerOfWindow(m_Log, L"P");
  auto* const pVertices = new QXLoopTarget(m_Log, L"v");
  QXLoopTarget* const pOverview = Attach(L"b", 0, 1);
  QXLoopTarget* const pWindow = Attach(L"a", 1, 1);
  pOverview->m_bAlwaysActive = 1;
  pOverview->SetReflectRenderTarget(&mirror);
  pOverview->SetSelectionRenderTarget(&picker);
  pOverview->SetVertexSelectionRenderTarget(pVertices);
  pWindow->SetReflectRenderTarget(&mirrorOfWindow);
  pWindow->SetSelectionRenderTarget(&pickerOfWindow);
  m_Graphics.UpdateAllRenderTargets();
  std::vector<std::string> const arrExpected = {
      "update a active 1 current a companions ---", "update b active 1 current b companions mpv"};
  EXPECT_EQ(m_Log.m_arrLines, arrExpected);
  EXPECT_EQ(pOverview->m_bActive, 0);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pWindow);
  EXPECT_EQ(m_Graphics.GetReflectRenderTarget(), &mirrorOfWindow);
  EXPECT_EQ(m_Graphics.GetSelectionRenderTarget(), &pickerOfWindow);
  EXPECT_EQ(m_Graphics.GetVertexSelectionRenderTarget(), nullptr);
  delete pVertices;
}

TEST_F(QXGraphics3DTest, AlwaysActiveTargetThatIsActiveButNotAutoUpdatedGoesTheSameWay) {
  QXLoopTarget mirror(m_Log, L"m");
  QXLoopTarget* const pTarget = Attach(L"a", 1, 0);
  pTarget->m_bAlwaysActive = 1;
  pTarget->SetReflectRenderTarget(&mirror);
  m_Graphics.UpdateAllRenderTargets();
  std::vector<std::string> const arrExpected = {"update a active 1 current a companions m--"};
  EXPECT_EQ(m_Log.m_arrLines, arrExpected);
  EXPECT_EQ(pTarget->m_bActive, 1);
}

TEST_F(QXGraphics3DTest, AlwaysActiveTargetWithNothingActiveBeforeKeepsItsCompanionsAttached) {
  QXLoopTarget mirror(m_Log, L"m");
  QXLoopTarget* const pTarget = Attach(L"a", 0, 1);
  pTarget->m_bAlwaysActive = 1;
  pTarget->SetReflectRenderTarget(&mirror);
  m_Graphics.m_pActiveRenderTarget = nullptr;
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(pTarget->m_nUpdates, 1);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), nullptr);
  EXPECT_EQ(m_Graphics.GetReflectRenderTarget(), &mirror);
}

/// The rules of the loop once more, word by word on a plain record, for comparison on random flags.
std::vector<std::string> ReferenceLoop(std::map<std::string, QXLoopTarget*> const& mapTargets,
    QXRenderTarget*& pCurrent, std::vector<QXRenderTarget*>& arrCompanions) {
  std::vector<std::string> arrLines;
  auto const update = [&](QXLoopTarget* pTarget, int nActive) {
    std::string strLine = "update " + QXLoopTarget::Name(pTarget) + " active " + std::to_string(nActive) + " current " +
                          QXLoopTarget::Name(pCurrent) + " companions ";
    for (QXRenderTarget* pCompanion : arrCompanions) strLine += QXLoopTarget::Name(pCompanion);
    arrLines.push_back(strLine);
  };
  for (auto const& [strName, pTarget] : mapTargets) {
    if (pTarget->m_bActive) pCurrent = pTarget;
    QXRenderTarget* const pSaved = pCurrent;
    if (pTarget->m_bCurTargetRefresh) {
      pCurrent = pTarget;
      update(pTarget, 1);
      pCurrent = pSaved;
    } else if (pTarget->m_bActive && pTarget->m_bAutoUpdated) {
      update(pTarget, 1);
    } else if (pTarget->m_bAlwaysActive) {
      pCurrent = pTarget;
      arrCompanions = {pTarget->GetReflectRenderTarget(), pTarget->GetSelectionRenderTarget(), nullptr};
      update(pTarget, 1);
      pCurrent = pSaved;
      if (pSaved) arrCompanions = {pSaved->GetReflectRenderTarget(), pSaved->GetSelectionRenderTarget(), nullptr};
    }
  }
  return arrLines;
}

TEST_F(QXGraphics3DTest, LoopFollowsTheRulesOnRandomFlags) {
  unsigned int const nSeed = 20261121;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  std::vector<std::unique_ptr<QXLoopTarget>> arrCompanionTargets;
  std::map<std::string, QXLoopTarget*> mapTargets;
  for (wchar_t c = L'a'; c < L'h'; ++c) {
    wchar_t const szName[] = {c, L'\0'};
    mapTargets[std::string(1, static_cast<char>(c))] = Attach(szName, 0, 1);
    wchar_t const szMirror[] = {static_cast<wchar_t>(c - L'a' + L'A'), L'\0'};
    arrCompanionTargets.push_back(std::make_unique<QXLoopTarget>(m_Log, szMirror));
  }
  QXRenderTarget* pCurrent = nullptr;
  std::vector<QXRenderTarget*> arrCompanions = {nullptr, nullptr, nullptr};
  m_Graphics.m_pActiveRenderTarget = nullptr;
  for (int nFrame = 0; nFrame < 2000; ++nFrame) {
    for (auto const& [strName, pTarget] : mapTargets) {
      pTarget->m_bActive = static_cast<unsigned char>(random() % 3 == 0);
      pTarget->m_bAutoUpdated = static_cast<unsigned char>(random() % 2);
      pTarget->m_bAlwaysActive = static_cast<unsigned char>(random() % 3 == 0);
      pTarget->m_bCurTargetRefresh = static_cast<unsigned char>(random() % 4 == 0);
      std::size_t const nMirror = random() % (arrCompanionTargets.size() + 1);
      pTarget->m_pReflectRenderTarget =
          nMirror < arrCompanionTargets.size() ? arrCompanionTargets[nMirror].get() : nullptr;
      pTarget->m_pSelectionRenderTarget = arrCompanionTargets[random() % arrCompanionTargets.size()].get();
    }
    m_Log.m_arrLines.clear();
    std::vector<std::string> const arrExpected = ReferenceLoop(mapTargets, pCurrent, arrCompanions);
    m_Graphics.UpdateAllRenderTargets();
    ASSERT_EQ(m_Log.m_arrLines, arrExpected) << "frame " << nFrame;
    ASSERT_EQ(m_Graphics.GetActiveRenderTarget(), pCurrent);
    for (auto const& [strName, pTarget] : mapTargets) ASSERT_EQ(pTarget->m_bCurTargetRefresh, 0);
  }
}

TEST_F(QXGraphics3DTest, InvalidationRedrawsEveryTargetWhateverItsFlags) {
  QXLoopTarget* const pFirst = Attach(L"a", 0, 0);
  QXLoopTarget* const pSecond = Attach(L"b", 1, 1);
  m_Graphics.m_RenderTargets[L"aa"] = nullptr;
  m_Graphics.InvalidateAllRenderTargets();
  EXPECT_EQ(pFirst->m_nUpdates, 1);
  EXPECT_EQ(pSecond->m_nUpdates, 1);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pSecond);
}

TEST_F(QXGraphics3DTest, CameraRemovalReachesEveryTarget) {
  QXLoopTarget* const pFirst = Attach(L"a", 0, 0);
  QXLoopTarget* const pSecond = Attach(L"b", 1, 1);
  m_Graphics.m_RenderTargets[L"aa"] = nullptr;
  QXCamera const camera;
  m_Graphics.NotifyCameraRemoved(&camera);
  EXPECT_EQ(pFirst->m_pRemovedCamera, &camera);
  EXPECT_EQ(pSecond->m_pRemovedCamera, &camera);
}

// --- The end ---

TEST_F(QXGraphics3DTest, ShutDownDeletesTheTargetsAndLeavesThePointers) {
  int nDeaths = 0;
  Attach(L"a", 1, 1)->m_pDeaths = &nDeaths;
  Attach(L"b", 0, 0)->m_pDeaths = &nDeaths;
  m_Graphics.m_RenderTargets[L"c"] = nullptr;
  QXRenderTarget* const pActive = m_Graphics.GetActiveRenderTarget();
  m_Graphics.AttachReflectRenderTarget(pActive);
  m_Graphics.ShutDown();
  EXPECT_EQ(nDeaths, 2);
  EXPECT_EQ(m_Graphics.m_RenderTargets.GetCount(), 0u);
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pActive);
  EXPECT_EQ(m_Graphics.GetReflectRenderTarget(), pActive);
  EXPECT_NE(m_Graphics.m_pModelManager, nullptr);
}

TEST_F(QXGraphics3DTest, ShutDownDeletesATargetOfTwoNamesOnce) {
  int nDeaths = 0;
  QXLoopTarget* const pTarget = Attach(L"a", 1, 1);
  pTarget->m_pDeaths = &nDeaths;
  pTarget->m_strName = L"b";
  m_Graphics.AttachRenderTarget(pTarget);
  m_Graphics.ShutDown();
  EXPECT_EQ(nDeaths, 1);
}

TEST(QXGraphics3D, DestructorLeavesTheTargetsAlive) {
  QXTestLog log;
  int nDeaths = 0;
  QXLoopTarget target(log, L"a");
  target.m_pDeaths = &nDeaths;
  {
    QXTestGraphics3D graphics;
    graphics.AttachRenderTarget(&target);
  }
  EXPECT_EQ(nDeaths, 0);
}

/// Writes down what ClearResource does to it.
class QXTestHolder : public QXResourceHolder {
public:
  explicit QXTestHolder(QXTestLog& log) : m_Log(log) {}
  unsigned int GetResourceCount() const override { return 0; }
  void ReleaseResources() override { m_Log.m_arrLines.push_back("holder"); }
  QXTestLog& m_Log;
};

class QXTestTextureManager : public QXTextureManager {
public:
  explicit QXTestTextureManager(QXTestLog& log) : m_Log(log) {}
  QXTexture* GetTexture(QdcUnicodeString const&, unsigned char) override { return nullptr; }
  unsigned char ManagerOperation2(QdcUnicodeString const&) const override { return 0; }
  void Release() override { m_Log.m_arrLines.push_back(QXModelManager::GetSingletonPtr() ? "models" : "textures"); }
  QXTestLog& m_Log;
};

void IgnoreUpdate(void*, QXMatrix4d, QXMatrix4d) {}

TEST(QXGraphics3D, ClearResourceFreesModelsThenHolderThenTexturesAndTheRegistries) {
  QXTestLog log;
  QXTestHolder holder(log);
  QXTestTextureManager textures(log);
  QXTestGraphics3D graphics;
  ASSERT_EQ(QXModelManager::GetSingletonPtr(), graphics.m_pModelManager);
  graphics.m_pResourceHolder = &holder;
  graphics.m_pTextureManager = &textures;
  graphics.m_eHMDMode = HMD_HTC;
  graphics.AddROManualUpdateProc(&holder, &IgnoreUpdate);
  graphics.AddROManualNearFarDist(&holder, 1.0, 2.0);
  graphics.AddROManualSceneName(&holder, L"scene");
  graphics.AddReInitRenderQueueProc(&holder, &IgnoreUpdate);
  graphics.AddReInitObjectSceneName(&holder, L"scene");
  graphics.ClearResource();
  std::vector<std::string> const arrExpected = {"holder", "textures"};
  EXPECT_EQ(log.m_arrLines, arrExpected);
  EXPECT_EQ(graphics.m_pModelManager, nullptr);
  EXPECT_EQ(graphics.m_pTextureManager, &textures);
  EXPECT_EQ(graphics.m_pResourceHolder, &holder);
  EXPECT_TRUE(graphics.m_mapUpdateROViewProjCallBackProc.empty());
  EXPECT_TRUE(graphics.m_mapROManualNearFarDist.empty());
  EXPECT_TRUE(graphics.m_mapROManualSceneName.empty());
  EXPECT_TRUE(graphics.m_mapReInitRenderQueueProc.empty());
  EXPECT_EQ(graphics.m_arrReInitRenderQueue.GetSize(), 0u);
  EXPECT_EQ(graphics.m_arrReInitRenderQueue.GetCapacity(), 0u);
  EXPECT_TRUE(graphics.m_mapReInitObjectSceneName.empty());
  graphics.ClearResource();
  EXPECT_EQ(log.m_arrLines.size(), 4u);
  graphics.m_pResourceHolder = nullptr;
  graphics.m_pTextureManager = nullptr;
}

TEST(QXGraphics3D, DestructorRunsItsOwnClearResourceOnly) {
  QXTestLog log;
  QXTestHolder holder(log);
  class Graphics : public QXTestGraphics3D {
  public:
    void ClearResource() override { ++m_nCalls; }
    int m_nCalls = 0;
  };
  {
    Graphics graphics;
    graphics.m_pResourceHolder = &holder;
    graphics.ClearResource();
    EXPECT_TRUE(log.m_arrLines.empty());
  }
  EXPECT_EQ(log.m_arrLines, std::vector<std::string>{"holder"});
}

TEST(QXGraphics3D, ResourceHolderIsReleasedThroughTheThirdSlotOfItsClass) {
  QXTestLog log;
  QXTestHolder holder(log);
  // The destructor has two entries in the table, so that the third operation has index 3.
  void** pTable = nullptr;
  std::memcpy(&pTable, static_cast<void const*>(&holder), sizeof pTable);
  reinterpret_cast<void (*)(QXTestHolder*)>(pTable[3])(&holder);
  EXPECT_EQ(log.m_arrLines, std::vector<std::string>{"holder"});
}

// --- Accessors, forwarders, small operations ---

TEST_F(QXGraphics3DTest, SunOperationsGoToTheActiveTarget) {
  QXLoopTarget* const pOther = Attach(L"a", 1, 1);
  QXLoopTarget* const pActive = Attach(L"b", 1, 1);
  m_Graphics.SetSunPosition(QXVector3d(1.0, 2.0, 3.0));
  EXPECT_TRUE(pActive->m_vecSun == QXVector3d(1.0, 2.0, 3.0));
  EXPECT_TRUE(pOther->m_vecSun == QXVector3d::ZERO);
  EXPECT_TRUE(m_Graphics.GetSunPosition() == QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(m_Graphics.GetSunLightEnalble(), 1);
  m_Graphics.SetSunLightEnable(0);
  EXPECT_EQ(pActive->m_bSunLightEnable, 0);
  EXPECT_EQ(pOther->m_bSunLightEnable, 1);
  EXPECT_EQ(m_Graphics.GetSunLightEnalble(), 0);
}

TEST_F(QXGraphics3DTest, AttachedCompanionsAreKept) {
  QXLoopTarget target(m_Log, L"t");
  m_Graphics.AttachReflectRenderTarget(&target);
  EXPECT_EQ(m_Graphics.GetReflectRenderTarget(), &target);
  m_Graphics.AttachSelectionRenderTarget(&target);
  EXPECT_EQ(m_Graphics.GetSelectionRenderTarget(), &target);
  m_Graphics.AttachVertexSelectionRenderTarget(&target);
  EXPECT_EQ(m_Graphics.GetVertexSelectionRenderTarget(), &target);
  m_Graphics.AttachMultiRenderTarget(&target);
  EXPECT_EQ(m_Graphics.m_pMultiRenderTarget, &target);
}

TEST(QXGraphics3D, PlainAccessorsReadAndWriteTheirMembers) {
  QXTestLog log;
  QXTestTextureManager textures(log);
  QXViewport viewport;
  QXTestGraphics3D graphics;
  graphics.m_pTextureManager = &textures;
  EXPECT_EQ(graphics.GetTextureManager(), &textures);
  graphics.m_pTextureManager = nullptr;
  auto* const pHwInstancing = reinterpret_cast<QXHwInstancingManager*>(&log);
  graphics.m_pHwInstancingManager = pHwInstancing;
  EXPECT_EQ(graphics.GetHwInstancingManager(), pHwInstancing);
  auto* const pOperations = reinterpret_cast<QXRenderOperationManager*>(&log);
  graphics.m_pRenderOperationManager = pOperations;
  EXPECT_EQ(graphics.GetRenderOperationManager(), pOperations);
  graphics.m_pViewport = &viewport;
  EXPECT_EQ(graphics.GetViewport(), &viewport);
  graphics.m_eCullingMode = static_cast<CullingMode>(7);
  EXPECT_EQ(static_cast<int>(graphics.GetCullingMode()), 7);
  graphics.SetInvertVertexWinding(1);
  EXPECT_EQ(graphics.m_bInvertVertexWinding, 1);
  graphics.SetCurrentPassIterationCount(9);
  EXPECT_EQ(graphics.m_nCurrentPassIterationCount, 9u);
  EXPECT_EQ(graphics.GetWaitForVerticalBlank(), 1);
  graphics.SetWaitForVerticalBlank(0);
  EXPECT_EQ(graphics.GetWaitForVerticalBlank(), 0);
  graphics.SetTextCharset(static_cast<QDCCharset::Charset>(134));
  EXPECT_EQ(static_cast<int>(graphics.GetTextCharset()), 134);
}

TEST(QXGraphics3D, RenderBufferTargetSetterGivesTheFormerValue) {
  QXTestGraphics3D graphics;
  EXPECT_EQ(graphics.SetRenderBufferTarget(5), 0u);
  EXPECT_EQ(graphics.GetRenderBufferTarget(), 5u);
  EXPECT_EQ(graphics.SetRenderBufferTarget(6), 5u);
}

TEST(QXGraphics3D, BeginGeometryCountZeroesBothCounters) {
  QXTestGraphics3D graphics;
  graphics.m_nFaceCount = 3;
  graphics.m_nVertexCount = 4;
  EXPECT_EQ(graphics.GetFaceCount(), 3u);
  EXPECT_EQ(graphics.GetVertexCount(), 4u);
  graphics.BeginGeometryCount();
  EXPECT_EQ(graphics.GetFaceCount(), 0u);
  EXPECT_EQ(graphics.GetVertexCount(), 0u);
}

TEST(QXGraphics3D, SetWorldMatricesFillsThePaletteFromTheStartAndResetsTheWorldMatrix) {
  QXTestGraphics3D graphics;
  QXMatrix4d arrMatrices[3];
  for (int nIndex = 0; nIndex < 3; ++nIndex) arrMatrices[nIndex][3][0] = nIndex + 1.0;
  graphics.SetWorldMatrices(arrMatrices, 3);
  for (int nIndex = 0; nIndex < 3; ++nIndex) {
    EXPECT_TRUE(graphics.m_arrWorldMatrices[nIndex] == arrMatrices[nIndex]);
  }
  EXPECT_TRUE(graphics.m_arrWorldMatrices[3] == QXMatrix4d());
  ASSERT_EQ(graphics.m_arrWorldMatricesSet.size(), 1u);
  EXPECT_TRUE(graphics.m_arrWorldMatricesSet[0] == QXMatrix4d::IDENTITY);
  EXPECT_EQ(graphics.m_nWorldMatrixCount, 0);
  graphics.SetWorldMatrices(nullptr, 0);
  EXPECT_EQ(graphics.m_arrWorldMatricesSet.size(), 2u);
}

TEST(QXGraphics3D, SetWorldMatricesStopsAtTheEndOfThePalette) {
  QXTestGraphics3D graphics;
  std::vector<QXMatrix4d> arrMatrices(300);
  for (QXMatrix4d& matrix : arrMatrices) matrix[3][0] = 8.0;
  QXModelManager* const pModelManager = graphics.m_pModelManager;
  graphics.SetWorldMatrices(arrMatrices.data(), 300);
  EXPECT_TRUE(graphics.m_arrWorldMatrices[255] == arrMatrices[255]);
  EXPECT_EQ(graphics.m_nWorldMatrixCount, 0);
  EXPECT_EQ(graphics.m_pModelManager, pModelManager);
  EXPECT_EQ(graphics.m_arrWorldMatricesSet.size(), 1u);
}

TEST(QXGraphics3D, DisableTextureUnitsFromGoesUpToTheDevicesUnits) {
  QXUnitGraphics3D graphics;
  QXGraphics3D::m_Capabilities.SetNumTextureUnits(5);
  graphics.DisableTextureUnitsFrom(2);
  EXPECT_EQ(graphics.m_arrDisabled, (std::vector<unsigned int>{2, 3, 4}));
  graphics.m_arrDisabled.clear();
  graphics.DisableTextureUnitsFrom(5);
  graphics.DisableTextureUnitsFrom(0xFFFFFFFFu);
  EXPECT_TRUE(graphics.m_arrDisabled.empty());
  QXGraphics3D::m_Capabilities.SetNumTextureUnits(0);
  graphics.DisableTextureUnitsFrom(0);
  EXPECT_TRUE(graphics.m_arrDisabled.empty());
}

TEST(QXGraphics3D, SetTextureUnitSettingsHandsOnTheThreeFiltersInTheirOrder) {
  QXUnitGraphics3D graphics;
  QXTextureUnitState state;
  state.SetTextureFiltering(0, 3);
  state.SetTextureFiltering(1, 1);
  state.SetTextureFiltering(2, 2);
  state.SetEffect({TEXTURE_EFFECT_PROJECTIVE, 0});
  graphics.SetTextureUnitSettings(6, std::as_const(state));
  EXPECT_EQ(graphics.m_arrFilters, (std::vector<std::vector<int>>{{6, 3, 1, 2}}));
}

// --- The model manager's registration and the other managers ---

TEST(QXModelManager, TheFirstRenderersManagerIsRegisteredAndAnyEndUnregisters) {
  ASSERT_EQ(QXModelManager::GetSingletonPtr(), nullptr);
  QXTestGraphics3D first;
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), first.m_pModelManager);
  EXPECT_EQ(&QXModelManager::GetSingleton(), first.m_pModelManager);
  {
    QXTestGraphics3D second;
    EXPECT_NE(second.m_pModelManager, first.m_pModelManager);
    EXPECT_EQ(QXModelManager::GetSingletonPtr(), first.m_pModelManager);
  }
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), nullptr);
}

TEST(QXModelManager, GetSingletonMakesOneIfNoneIsRegistered) {
  ASSERT_EQ(QXModelManager::GetSingletonPtr(), nullptr);
  QXModelManager& manager = QXModelManager::GetSingleton();
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), &manager);
  EXPECT_EQ(&QXModelManager::GetSingleton(), &manager);
  delete &manager;
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), nullptr);
}

TEST(QXTextureFontManager, ThereIsOneObjectAndClearingItIsSafe) {
  EXPECT_EQ(&QXTextureFontManager::GetSingleton(), QXTextureFontManager::GetSingletonPtr());
  QXTextureFontManager::GetSingleton().Clear();
  EXPECT_EQ(QXSingleton<QXTextureFontManager>::ms_pSingleton, QXTextureFontManager::GetSingletonPtr());
}

TEST(QXTextureImageManagerEx, ThereIsOneObjectAndClearingItIsSafe) {
  EXPECT_EQ(&QXTextureImageManagerEx::GetSingleton(), QXTextureImageManagerEx::GetSingletonPtr());
  QXTextureImageManagerEx::GetSingleton().Clear();
  EXPECT_EQ(QXSingleton<QXTextureImageManagerEx>::ms_pSingleton, QXTextureImageManagerEx::GetSingletonPtr());
}

}  // namespace
}  // namespace QXC
