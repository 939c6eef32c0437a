// The renderer's registries of manually rendered objects and the hooks of the head-mounted display.
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "QXTestGraphics3D.h"

namespace QXC {
namespace {

void FirstProc(void*, QXMatrix4d, QXMatrix4d) {}
void SecondProc(void*, QXMatrix4d, QXMatrix4d) {}
void ControllerPoints(void*, QdcPoint3D*, int) {}
void PickingObject(QXInt64, QXVector3d&, QXVector3d&) {}
void ControllerHandle(QXInt64, int) {}

class QXManualObjects : public testing::Test {
protected:
  QXManualObjects() { m_Graphics.m_eHMDMode = HMD_HTC; }

  void RegisterManual(void* pObject) {
    m_Graphics.AddROManualUpdateProc(pObject, &FirstProc);
    m_Graphics.AddROManualNearFarDist(pObject, 1.0, 2.0);
    m_Graphics.AddROManualSceneName(pObject, L"scene");
  }
  void RegisterQueue(void* pObject) {
    m_Graphics.AddReInitRenderQueueProc(pObject, &FirstProc);
    m_Graphics.AddReInitObjectSceneName(pObject, L"scene");
  }

  QXTestGraphics3D m_Graphics;
  int m_arrObjects[3] = {};
};

TEST_F(QXManualObjects, EveryCallIsIgnoredInOtherModes) {
  RegisterManual(&m_arrObjects[0]);
  RegisterQueue(&m_arrObjects[0]);
  for (HMDMode const eMode : {HMD_NONE, HMD_OCULUS, static_cast<HMDMode>(3)}) {
    m_Graphics.m_eHMDMode = eMode;
    RegisterManual(&m_arrObjects[1]);
    RegisterQueue(&m_arrObjects[1]);
    m_Graphics.RemoveROManualMapAt(&m_arrObjects[0]);
    m_Graphics.RemoveReInitRenderQueueAt(&m_arrObjects[0]);
    EXPECT_EQ(m_Graphics.GetMapUpdateROViewProjCallBackProc().size(), 1u);
    EXPECT_EQ(m_Graphics.GetROManualNearFarDistMap().size(), 1u);
    EXPECT_EQ(m_Graphics.GetROManualSceneNameMap().size(), 1u);
    EXPECT_EQ(m_Graphics.m_mapReInitRenderQueueProc.size(), 1u);
    EXPECT_EQ(m_Graphics.GetArrayReInitRenderQueue().GetSize(), 1u);
    EXPECT_EQ(m_Graphics.GetReInitObjectSceneNameMap().size(), 1u);
  }
}

TEST_F(QXManualObjects, AddedValuesAreFoundUnderTheirObject) {
  RegisterManual(&m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.GetMapUpdateROViewProjCallBackProc().at(&m_arrObjects[0]), &FirstProc);
  EXPECT_EQ(m_Graphics.GetROManualNearFarDistMap().at(&m_arrObjects[0]).m_dNearDist, 1.0);
  EXPECT_EQ(m_Graphics.GetROManualNearFarDistMap().at(&m_arrObjects[0]).m_dFarDist, 2.0);
  EXPECT_TRUE(m_Graphics.GetROManualSceneNameMap().at(&m_arrObjects[0]) == L"scene");
}

TEST_F(QXManualObjects, SecondAddKeepsTheFirstEntry) {
  RegisterManual(&m_arrObjects[0]);
  RegisterQueue(&m_arrObjects[0]);
  m_Graphics.AddROManualUpdateProc(&m_arrObjects[0], &SecondProc);
  m_Graphics.AddROManualNearFarDist(&m_arrObjects[0], 3.0, 4.0);
  m_Graphics.AddROManualSceneName(&m_arrObjects[0], L"other");
  m_Graphics.AddReInitRenderQueueProc(&m_arrObjects[0], &SecondProc);
  m_Graphics.AddReInitObjectSceneName(&m_arrObjects[0], L"other");
  EXPECT_EQ(m_Graphics.GetMapUpdateROViewProjCallBackProc().at(&m_arrObjects[0]), &FirstProc);
  EXPECT_EQ(m_Graphics.GetROManualNearFarDistMap().at(&m_arrObjects[0]).m_dNearDist, 1.0);
  EXPECT_TRUE(m_Graphics.GetROManualSceneNameMap().at(&m_arrObjects[0]) == L"scene");
  EXPECT_EQ(m_Graphics.m_mapReInitRenderQueueProc.at(&m_arrObjects[0]), &FirstProc);
  EXPECT_EQ(m_Graphics.GetArrayReInitRenderQueue().GetSize(), 1u);
  EXPECT_EQ(m_Graphics.GetArrayReInitRenderQueue().GetAt(0).second, &FirstProc);
  EXPECT_TRUE(m_Graphics.GetReInitObjectSceneNameMap().at(&m_arrObjects[0]) == L"scene");
}

TEST_F(QXManualObjects, QueueKeepsTheOrderOfRegistration) {
  for (int const nIndex : {2, 0, 1}) m_Graphics.AddReInitRenderQueueProc(&m_arrObjects[nIndex], &FirstProc);
  auto const arrQueue = m_Graphics.GetArrayReInitRenderQueue();
  ASSERT_EQ(arrQueue.GetSize(), 3u);
  EXPECT_EQ(arrQueue[0].first, &m_arrObjects[2]);
  EXPECT_EQ(arrQueue[1].first, &m_arrObjects[0]);
  EXPECT_EQ(arrQueue[2].first, &m_arrObjects[1]);
}

TEST_F(QXManualObjects, GettersGiveCopies) {
  RegisterManual(&m_arrObjects[0]);
  RegisterQueue(&m_arrObjects[0]);
  m_Graphics.GetMapUpdateROViewProjCallBackProc().clear();
  m_Graphics.GetROManualNearFarDistMap().clear();
  m_Graphics.GetROManualSceneNameMap().clear();
  m_Graphics.GetReInitObjectSceneNameMap().clear();
  m_Graphics.GetArrayReInitRenderQueue().RemoveAll();
  EXPECT_EQ(m_Graphics.m_mapUpdateROViewProjCallBackProc.size(), 1u);
  EXPECT_EQ(m_Graphics.m_mapROManualNearFarDist.size(), 1u);
  EXPECT_EQ(m_Graphics.m_mapROManualSceneName.size(), 1u);
  EXPECT_EQ(m_Graphics.m_mapReInitObjectSceneName.size(), 1u);
  EXPECT_EQ(m_Graphics.m_arrReInitRenderQueue.GetSize(), 1u);
}

TEST_F(QXManualObjects, RemovingTakesTheObjectOutOfAllThreeMaps) {
  RegisterManual(&m_arrObjects[0]);
  RegisterManual(&m_arrObjects[1]);
  m_Graphics.m_mapROManualNearFarDist.erase(&m_arrObjects[0]);
  m_Graphics.RemoveROManualMapAt(&m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.m_mapUpdateROViewProjCallBackProc.count(&m_arrObjects[0]), 0u);
  EXPECT_EQ(m_Graphics.m_mapROManualSceneName.count(&m_arrObjects[0]), 0u);
  EXPECT_EQ(m_Graphics.m_mapUpdateROViewProjCallBackProc.count(&m_arrObjects[1]), 1u);
  EXPECT_EQ(m_Graphics.m_mapROManualNearFarDist.count(&m_arrObjects[1]), 1u);
  EXPECT_EQ(m_Graphics.m_mapROManualSceneName.count(&m_arrObjects[1]), 1u);
}

TEST_F(QXManualObjects, RemovingWhileAnyMapIsEmptyRemovesNothing) {
  RegisterManual(&m_arrObjects[0]);
  m_Graphics.m_mapROManualNearFarDist.clear();
  m_Graphics.RemoveROManualMapAt(&m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.m_mapUpdateROViewProjCallBackProc.size(), 1u);
  EXPECT_EQ(m_Graphics.m_mapROManualSceneName.size(), 1u);

  m_Graphics.AddROManualNearFarDist(&m_arrObjects[0], 1.0, 2.0);
  m_Graphics.m_mapROManualSceneName.clear();
  m_Graphics.RemoveROManualMapAt(&m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.m_mapUpdateROViewProjCallBackProc.size(), 1u);
  EXPECT_EQ(m_Graphics.m_mapROManualNearFarDist.size(), 1u);

  m_Graphics.AddROManualSceneName(&m_arrObjects[0], L"scene");
  m_Graphics.m_mapUpdateROViewProjCallBackProc.clear();
  m_Graphics.RemoveROManualMapAt(&m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.m_mapROManualNearFarDist.size(), 1u);
  EXPECT_EQ(m_Graphics.m_mapROManualSceneName.size(), 1u);
}

TEST_F(QXManualObjects, RemovingTheLastOfTheQueueTakesItOutOfAllThree) {
  RegisterQueue(&m_arrObjects[0]);
  RegisterQueue(&m_arrObjects[1]);
  m_Graphics.RemoveReInitRenderQueueAt(&m_arrObjects[1]);
  EXPECT_EQ(m_Graphics.m_mapReInitRenderQueueProc.count(&m_arrObjects[1]), 0u);
  ASSERT_EQ(m_Graphics.m_arrReInitRenderQueue.GetSize(), 1u);
  EXPECT_EQ(m_Graphics.m_arrReInitRenderQueue[0].first, &m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.m_mapReInitObjectSceneName.count(&m_arrObjects[1]), 0u);
  EXPECT_EQ(m_Graphics.m_mapReInitObjectSceneName.count(&m_arrObjects[0]), 1u);
}

TEST_F(QXManualObjects, RemovingAnyOtherOfTheQueueFailsBeforeTheSceneNameGoes) {
  for (int& nObject : m_arrObjects) RegisterQueue(&nObject);
  try {
    m_Graphics.RemoveReInitRenderQueueAt(&m_arrObjects[1]);
    FAIL() << "the checked subscript did not fail";
  } catch (std::out_of_range const& failure) {
    EXPECT_STREQ(failure.what(), "invalid vector<T> subscript");
  }
  EXPECT_EQ(m_Graphics.m_mapReInitRenderQueueProc.count(&m_arrObjects[1]), 0u);
  ASSERT_EQ(m_Graphics.m_arrReInitRenderQueue.GetSize(), 2u);
  EXPECT_EQ(m_Graphics.m_arrReInitRenderQueue[1].first, &m_arrObjects[2]);
  EXPECT_EQ(m_Graphics.m_mapReInitObjectSceneName.count(&m_arrObjects[1]), 1u);
}

TEST_F(QXManualObjects, RemovingAnUnknownObjectOfTheQueueOnlyTouchesTheNames) {
  RegisterQueue(&m_arrObjects[0]);
  m_Graphics.AddReInitObjectSceneName(&m_arrObjects[1], L"scene");
  m_Graphics.RemoveReInitRenderQueueAt(&m_arrObjects[1]);
  EXPECT_EQ(m_Graphics.m_arrReInitRenderQueue.GetSize(), 1u);
  EXPECT_EQ(m_Graphics.m_mapReInitRenderQueueProc.size(), 1u);
  EXPECT_EQ(m_Graphics.m_mapReInitObjectSceneName.size(), 1u);
}

TEST_F(QXManualObjects, RemovingFromTheQueueWhileAnyContainerIsEmptyRemovesNothing) {
  RegisterQueue(&m_arrObjects[0]);
  m_Graphics.m_mapReInitObjectSceneName.clear();
  m_Graphics.RemoveReInitRenderQueueAt(&m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.m_mapReInitRenderQueueProc.size(), 1u);
  EXPECT_EQ(m_Graphics.m_arrReInitRenderQueue.GetSize(), 1u);

  m_Graphics.AddReInitObjectSceneName(&m_arrObjects[0], L"scene");
  auto const mapProcs = m_Graphics.m_mapReInitRenderQueueProc;
  m_Graphics.m_mapReInitRenderQueueProc.clear();
  m_Graphics.RemoveReInitRenderQueueAt(&m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.m_arrReInitRenderQueue.GetSize(), 1u);
  EXPECT_EQ(m_Graphics.m_mapReInitObjectSceneName.size(), 1u);

  m_Graphics.m_mapReInitRenderQueueProc = mapProcs;
  m_Graphics.m_arrReInitRenderQueue.RemoveAll();
  m_Graphics.RemoveReInitRenderQueueAt(&m_arrObjects[0]);
  EXPECT_EQ(m_Graphics.m_mapReInitRenderQueueProc.size(), 1u);
  EXPECT_EQ(m_Graphics.m_mapReInitObjectSceneName.size(), 1u);
}

// --- Hooks ---

TEST_F(QXManualObjects, ControllerPointsHookIsStoredInItsModeOnly) {
  m_Graphics.m_eHMDMode = HMD_OCULUS;
  m_Graphics.SetHtcControllerPointsProc(&m_arrObjects[0], &ControllerPoints);
  EXPECT_EQ(m_Graphics.GetHtcControllerPointsFunc(), nullptr);
  EXPECT_EQ(m_Graphics.GetRenderRay3D(), nullptr);
  m_Graphics.m_eHMDMode = HMD_HTC;
  m_Graphics.SetHtcControllerPointsProc(&m_arrObjects[0], &ControllerPoints);
  EXPECT_EQ(m_Graphics.GetHtcControllerPointsFunc(), &ControllerPoints);
  EXPECT_EQ(m_Graphics.GetRenderRay3D(), &m_arrObjects[0]);
}

TEST_F(QXManualObjects, OtherHooksAreStoredInEveryMode) {
  m_Graphics.m_eHMDMode = HMD_NONE;
  m_Graphics.SetVRPickingObjectProc(0x123456789ALL, &PickingObject);
  EXPECT_EQ(m_Graphics.GetVREventView(), 0x123456789ALL);
  EXPECT_EQ(m_Graphics.GetVRPickingObjectProc(), &PickingObject);
  m_Graphics.SetVRControllerHandleProc(0x23456789ABLL, &ControllerHandle);
  EXPECT_EQ(m_Graphics.GetObjectsEventView(), 0x23456789ABLL);
  EXPECT_EQ(m_Graphics.GetVRControllerHandleProc(), &ControllerHandle);
}

TEST_F(QXManualObjects, ModeQueriesTellTheDisplays) {
  EXPECT_EQ(m_Graphics.GetHTCEnable(), 1);
  EXPECT_EQ(m_Graphics.GetOculusEnable(), 0);
  m_Graphics.m_eHMDMode = HMD_OCULUS;
  EXPECT_EQ(m_Graphics.GetHTCEnable(), 0);
  EXPECT_EQ(m_Graphics.GetOculusEnable(), 1);
  m_Graphics.m_eHMDMode = HMD_NONE;
  EXPECT_EQ(m_Graphics.GetHTCEnable(), 0);
  EXPECT_EQ(m_Graphics.GetOculusEnable(), 0);
  static_assert(HMD_OCULUS == 0 && HMD_HTC == 1 && HMD_NONE == 2);
}

TEST_F(QXManualObjects, CameraResetIsAskedForByAFlag) {
  m_Graphics.m_bResetQXCameraForVR = 0;
  m_Graphics.ResetQXCameraForVR();
  EXPECT_EQ(m_Graphics.m_bResetQXCameraForVR, 1);
}

}  // namespace
}  // namespace QXC
