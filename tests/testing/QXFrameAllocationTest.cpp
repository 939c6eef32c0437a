// A frame allocates nothing.
#include <memory>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/testing/QXNullCamera.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>

#include "QXAllocationCounter.h"
#include "QXTestGeometry.h"

namespace QXC {
namespace {

/// Two windows and an always-active texture, four viewports each under one camera, three drawables.
class QXFrameAllocationTest : public testing::Test {
protected:
  QXFrameAllocationTest() {
    m_Graphics.Initialize(QdcUnicodeString());
    m_pCamera = m_Graphics.CreateCamera(L"eye", L"Scene3D");
    m_pCamera->SetPosition(0.0, 0.0, 10.0);
    QXRenderTarget* const arrTargets[] = {m_Graphics.CreateRenderWindow(L"first", nullptr, 64, 64, 0),
        m_Graphics.CreateRenderWindow(L"second", nullptr, 64, 64, 0),
        m_Graphics.CreateRenderTexture(L"texture", PF_A8R8G8B8, 64, 64, 0, 32, L"")};
    arrTargets[2]->SetAlwaysActive(1);
    for (QXRenderTarget* const pTarget : arrTargets) {
      m_Graphics.AttachRenderTarget(pTarget);
      for (int i = 0; i < 4; ++i) {
        // The second is of half height, so that the ordered mode changes the first two in the first frame.
        pTarget->AddViewport(m_pCamera, i, 0.25 * i, 0.0, 0.25, i == 1 ? 0.5 : 1.0);
      }
    }
    for (auto& pDrawable : m_arrDrawables) {
      pDrawable.reset(m_Graphics.GetRenderOperationManager()->CreateRenderOperation3D(L"Scene3D", 1));
      PlaceSquare(*pDrawable, 0.0, 0.0, 0.0);
    }
    m_Graphics.CreateSceneNode(L"Scene3D", L"", L"node");
    m_Graphics.AttachToSceneNode(L"Scene3D", L"node", m_arrDrawables[0].get());
  }
  ~QXFrameAllocationTest() override { m_Graphics.ShutDown(); }

  long CountAllocations(int nFrames) {
    long const nBefore = GetAllocationCount();
    for (int i = 0; i < nFrames; ++i) {
      m_Graphics.BeginGeometryCount();
      m_Graphics.UpdateAllRenderTargets();
      m_Graphics.SwapAllRenderTargetBuffers(0);
    }
    return GetAllocationCount() - nBefore;
  }

  void SetMode(int nMode) {
    auto position = m_Graphics.m_RenderTargets.GetStartPosition();
    for (; !m_Graphics.m_RenderTargets.IsEOF(position); ++position) {
      position->second->SetMultiViewportMode(static_cast<MultiViewportMode>(nMode));
    }
  }

  QXNullGraphics3D m_Graphics;
  QXCamera* m_pCamera = nullptr;
  std::unique_ptr<QXRenderOperation3D> m_arrDrawables[3];
};

TEST_F(QXFrameAllocationTest, CounterSeesAllocationsInsideTheLibrary) {
  long const nBefore = GetAllocationCount();
  m_Graphics.GetRenderTarget(L"first")->AddViewport(m_pCamera, 9, 0.0, 0.0, 1.0, 1.0);
  EXPECT_GT(GetAllocationCount(), nBefore);
}

TEST_F(QXFrameAllocationTest, FramesAllocateNothingInAnyMode) {
  for (int const nMode : {0, 1, 2, 3, 4, 5}) {
    SetMode(nMode);
    EXPECT_EQ(CountAllocations(100), 0) << "mode " << nMode;
    EXPECT_EQ(m_Graphics.GetFaceCount(), 3u * 4 * 3 * 2) << "mode " << nMode;
  }
}

TEST_F(QXFrameAllocationTest, OrderedModePaysOnceForKeysWithGaps) {
  for (wchar_t const* const szName : {L"first", L"second", L"texture"}) {
    m_Graphics.GetRenderTarget(szName)->RemoveViewport(2);
  }
  SetMode(4);
  EXPECT_GT(CountAllocations(1), 0);
  EXPECT_EQ(CountAllocations(100), 0);
}

TEST_F(QXFrameAllocationTest, RefreshedTargetsAllocateNothing) {
  for (int i = 0; i < 3; ++i) {
    m_Graphics.GetRenderTarget(L"texture")->SetCurTargetRefresh(1);
    EXPECT_EQ(CountAllocations(1), 0);
  }
}

}  // namespace
}  // namespace QXC
