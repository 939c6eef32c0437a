// One frame of a target: what it calls, in which order, and how it keeps its viewports' order.
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>

#include "QXTestTarget.h"

namespace QXC {
namespace {

class QXRenderTargetUpdate : public testing::Test {
protected:
  /// Full-width viewport without a camera.
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

// --- Update ---

TEST_F(QXRenderTargetUpdate, UpdateWalksInKeyOrder) {
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

TEST_F(QXRenderTargetUpdate, UpdatePassesAPendingNotificationOnAfterTheViewport) {
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

TEST_F(QXRenderTargetUpdate, UpdateNotifiesAboutTheCameraThatDrewEvenIfItLeft) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bLeave = true;
  target.AddViewport(&camera, 0, 0.0, 0.0, 1.0, 1.0);
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(
      m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z0 flag1", "target camera state 1"}));
}

TEST_F(QXRenderTargetUpdate, UpdateInOrderedModeMakesEachCameraCurrent) {
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

TEST_F(QXRenderTargetUpdate, UpdateInOtherModesLeavesTheCameraWithItsViewport) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  target.AddViewport(&camera, 0, 0.0, 0.0, 1.0, 1.0);
  QXViewport* const pLast = target.AddViewport(&camera, 1, 0.0, 0.0, 1.0, 1.0);
  for (int const nMode : {0, 1, 2, 3, 5, -4}) {
    target.SetMultiViewportMode(static_cast<MultiViewportMode>(nMode));
    m_Log.m_arrLines.clear();
    target.Update();
    EXPECT_EQ(m_Log.m_arrLines,
        (std::vector<std::string>{"target begin", "camera render z0 flag1", "camera render z1 flag1"}))
        << nMode;
    EXPECT_EQ(camera.GetViewport(), pLast) << nMode;
  }
}

TEST_F(QXRenderTargetUpdate, UpdateOfAViewportWithoutACameraDrawsNothingInAnyMode) {
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

TEST_F(QXRenderTargetUpdate, UpdateSkipsNullEntries) {
  QXTestTarget target(m_Log);
  QXTestCamera camera(m_Log);
  camera.m_bTargetNotifyPending = 0;
  target.m_Viewports[0] = nullptr;
  target.AddViewport(&camera, 1, 0.0, 0.0, 1.0, 1.0);
  m_Log.m_arrLines.clear();
  target.Update();
  EXPECT_EQ(m_Log.m_arrLines, (std::vector<std::string>{"target begin", "camera render z1 flag1"}));
}

TEST_F(QXRenderTargetUpdate, UpdateStartsWhereBeginViewportUpdateLeavesThePosition) {
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

TEST_F(QXRenderTargetUpdate, UpdateGoesOnBehindAViewportThatTheSceneTakesAway) {
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

TEST_F(QXRenderTargetUpdate, UpdateDrawsViewportsThatTheSceneAddsBehind) {
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

TEST_F(QXRenderTargetUpdate, UpdateSeesAViewportPutIntoAnOldPlace) {
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

TEST_F(QXRenderTargetUpdate, UpdateOfACopyWalksTheCopysViewports) {
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

TEST_F(QXRenderTargetUpdate, UpdateInOrderedModeRenumbersSparseKeys) {
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

TEST_F(QXRenderTargetUpdate, UpdateInOrderedModeSetsZOrderEvenUnderDenseKeys) {
  QXTestTarget target(m_Log);
  Add(target, 0)->SetZOrder(40);
  Add(target, 1)->SetZOrder(41);
  target.SetMultiViewportMode(MVM_ORDERED);
  target.Update();
  EXPECT_EQ(target.GetViewport(0)->GetZOrder(), 0);
  EXPECT_EQ(target.GetViewport(1)->GetZOrder(), 1);
}

TEST_F(QXRenderTargetUpdate, UpdateInOrderedModeWithoutViewportsStillCountsTheFrame) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  target.Update();
  EXPECT_EQ(target.GetNumViewports(), 0);
  EXPECT_EQ(target.m_nFrameCount, 1u);
}

/// Looks at the target's and the camera's state where the plug-in is called.
class QXLookingTarget : public QXTestTarget {
public:
  using QXTestTarget::QXTestTarget;
  void BeginViewportUpdate(ViewportPosition&) override {
    for (auto const& [nKey, pViewport] : Viewports(*this)) m_arrKeysAtBegin.push_back(nKey);
  }
  void NotifyCameraStateChange(unsigned char) override {
    m_arrPendingAtNotify.push_back(m_pCamera->m_bTargetNotifyPending);
  }

  QXCamera* m_pCamera = nullptr;
  std::vector<int> m_arrKeysAtBegin;
  std::vector<int> m_arrPendingAtNotify;
};

/// Counts the frames of its target that are closed while it renders, and may take its own viewport away.
class QXLookingCamera : public QXCamera {
public:
  void RenderScene(QXViewport* pViewport, unsigned char) override {
    m_arrFramesAtRender.push_back(pViewport->GetTarget()->m_nFrameCount);
    if (m_bRemoveViewport) pViewport->GetTarget()->RemoveViewport(pViewport->GetZOrder());
  }
  std::vector<unsigned int> m_arrFramesAtRender;
  bool m_bRemoveViewport = false;
};

TEST_F(QXRenderTargetUpdate, UpdateRenumbersBeforeThePluginPrepares) {
  QXLookingTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  for (int const nZOrder : {0, 5, 9}) Add(target, nZOrder);
  target.Update();
  EXPECT_EQ(target.m_arrKeysAtBegin, (std::vector<int>{0, 1, 2}));
}

TEST_F(QXRenderTargetUpdate, UpdateClosesTheFrameInTheStatisticsAfterTheLastViewport) {
  QXLookingTarget target(m_Log);
  QXLookingCamera camera;
  target.m_pCamera = &camera;
  for (int const nZOrder : {0, 1}) target.AddViewport(&camera, nZOrder, 0.0, 0.0, 1.0, 1.0);
  target.Update();
  EXPECT_EQ(camera.m_arrFramesAtRender, (std::vector<unsigned int>{0, 0}));
  EXPECT_EQ(target.m_nFrameCount, 1u);
}

TEST_F(QXRenderTargetUpdate, UpdateClearsThePendingFlagOnlyAfterTheNotification) {
  QXLookingTarget target(m_Log);
  QXLookingCamera camera;
  target.m_pCamera = &camera;
  target.AddViewport(&camera, 0, 0.0, 0.0, 1.0, 1.0);
  camera.m_bTargetNotifyPending = 1;
  target.Update();
  EXPECT_EQ(target.m_arrPendingAtNotify, (std::vector<int>{1}));
  EXPECT_EQ(camera.m_bTargetNotifyPending, 0);
}

TEST_F(QXRenderTargetUpdate, UpdateGoesOnAfterASceneThatTakesItsOwnViewportAway) {
  QXLookingTarget target(m_Log);
  QXLookingCamera camera;
  target.m_pCamera = &camera;
  camera.m_bRemoveViewport = true;
  for (int const nZOrder : {0, 1, 2}) target.AddViewport(&camera, nZOrder, 0.0, 0.0, 1.0, 1.0);
  target.Update();
  EXPECT_EQ(camera.m_arrFramesAtRender.size(), 3u);
  EXPECT_EQ(target.GetNumViewports(), 0);
}

// --- Ordering ---

TEST_F(QXRenderTargetUpdate, MoveViewPortToLastDoesNothingInOtherModes) {
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

TEST_F(QXRenderTargetUpdate, MoveViewPortToLastOfTheLastIndexDoesNothing) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pFirst = Add(target, 3);
  QXViewport* const pSecond = Add(target, 8);
  target.MoveViewPortToLast(1);  // equals the count minus 1, although no key is 1
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{3, pFirst}, {8, pSecond}}));
}

TEST_F(QXRenderTargetUpdate, MoveViewPortToLastMovesTheFirstThreeIndicesAlone) {
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

TEST_F(QXRenderTargetUpdate, MoveViewPortToLastOfAnAbsentKeyOnlyRenumbers) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pFirst = Add(target, 1);
  QXViewport* const pSecond = Add(target, 2);
  QXViewport* const pThird = Add(target, 4);
  target.MoveViewPortToLast(0);
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{0, pFirst}, {1, pSecond}, {2, pThird}}));
}

TEST_F(QXRenderTargetUpdate, MoveViewPortToLastAmongSparseKeysLosesNoViewport) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pMoved = Add(target, 0);
  QXViewport* const pSecond = Add(target, 3);  // where the moved one would go: 2 remain, and 2 + 1 is 3
  QXViewport* const pThird = Add(target, 5);
  target.MoveViewPortToLast(0);
  // The next free key above 3 is 4, which still stands before 5.
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{0, pSecond}, {1, pMoved}, {2, pThird}}));
}

TEST_F(QXRenderTargetUpdate, MoveViewPortToLastGoesToCountPlusOneAndNotAboveAllKeys) {
  QXTestTarget target(m_Log);
  target.SetMultiViewportMode(MVM_ORDERED);
  QXViewport* const pMoved = Add(target, 0);
  QXViewport* const pSecond = Add(target, 2);
  QXViewport* const pThird = Add(target, 9);
  target.MoveViewPortToLast(0);
  EXPECT_EQ(Viewports(target), (std::map<int, QXViewport*>{{0, pSecond}, {1, pMoved}, {2, pThird}}));
}

TEST_F(QXRenderTargetUpdate, OrderedModeDropsNullEntries) {
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

TEST_F(QXRenderTargetUpdate, HalfHeightViewportSwapsTheFirstTwo) {
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

TEST_F(QXRenderTargetUpdate, TwoHalfHeightViewportsChangePlacesEveryFrame) {
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

TEST_F(QXRenderTargetUpdate, OrderingAgreesWithTheReferenceOnRandomSequences) {
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

}  // namespace
}  // namespace QXC
