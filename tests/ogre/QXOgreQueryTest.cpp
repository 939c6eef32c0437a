// Counts of visible pixels.
#include <cstdint>
#include <memory>

#include <QxGraphics3D/frame/QXRenderTargetListener.h>
#include <QxGraphics3D/renderop/QXQueryOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>
#include <QxGraphics3D/view/QXBloomSetting.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

/// Runs a query around the whole of its target.
class QXQueryListener : public QXRenderTargetListener {
public:
  explicit QXQueryListener(QXQueryOperation3D& query) : m_Query(query) {}
  void BeforeRender() override { m_Query.BeginQuery(); }
  void PostRender() override { m_Query.EndQuery(); }

private:
  QXQueryOperation3D& m_Query;
};

/// A unit is 32 pixels, so that a square of half a unit covers 16 x 16 of them.
class QXOgreQueries : public QXOgreScenery {
protected:
  std::unique_ptr<QXQueryOperation3D> MakeQuery(wchar_t const* szName = L"query") {
    return std::unique_ptr<QXQueryOperation3D>(
        m_pGraphics3D->GetRenderOperationManager()->CreateQueryOperation(szName));
  }
  /// A frame with the query around it.
  unsigned int Count(QXQueryOperation3D& query) {
    query.BeginQuery();
    Frame();
    query.EndQuery();
    return query.GetPixelCount();
  }
};

}  // namespace

TEST_F(QXOgreQueries, AFreshOneHasNoResult) {
  auto const pQuery = MakeQuery(L"fresh");
  ASSERT_NE(pQuery, nullptr);
  EXPECT_EQ(pQuery->GetName(), L"fresh");
  EXPECT_EQ(pQuery->IsResultReady(), 0);
  EXPECT_EQ(pQuery->GetPixelCount(), 0U);
  pQuery->EndQuery();
  EXPECT_EQ(pQuery->IsResultReady(), 0) << "it was never begun";
}

TEST_F(QXOgreQueries, ItCountsThePixelsThatAreDrawn) {
  auto const pQuery = MakeQuery();
  EXPECT_EQ(Count(*pQuery), 0U) << "the background is cleared, not drawn";
  QXRenderOperation3D* const pSquare = DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  EXPECT_EQ(Count(*pQuery), 256U);
  DrawSquare(-1.0F, -1.0F, -0.75F, 1.0F, 0.0F, GREEN);
  EXPECT_EQ(Count(*pQuery), 256U + 8U * 64U);
  pSquare->SetVisible(0);
  EXPECT_EQ(Count(*pQuery), 8U * 64U);
}

TEST_F(QXOgreQueries, TheResultComesOnceTheQueryHasEndedAndGoesWhenItBegins) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  auto const pQuery = MakeQuery();
  pQuery->BeginQuery();
  Frame();
  EXPECT_EQ(pQuery->IsResultReady(), 0);
  EXPECT_EQ(pQuery->GetPixelCount(), 0U) << "it still runs";
  pQuery->EndQuery();
  EXPECT_EQ(pQuery->GetPixelCount(), 256U);
  EXPECT_EQ(pQuery->IsResultReady(), 1) << "it was waited for";
  EXPECT_EQ(pQuery->GetPixelCount(), 256U);
  Frame();
  EXPECT_EQ(pQuery->GetPixelCount(), 256U) << "frames after the end do not count";
  pQuery->BeginQuery();
  EXPECT_EQ(pQuery->IsResultReady(), 0);
  pQuery->EndQuery();
  EXPECT_EQ(pQuery->IsResultReady(), 1);
  EXPECT_EQ(pQuery->GetPixelCount(), 0U) << "nothing was drawn";
}

TEST_F(QXOgreQueries, TheAnswerBecomesReadyWithoutAnybodyWaiting) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  auto const pQuery = MakeQuery();
  pQuery->BeginQuery();
  Frame();
  pQuery->EndQuery();
  int nTries = 0;
  while (!pQuery->IsResultReady() && nTries < 100000) ++nTries;
  EXPECT_LT(nTries, 100000);
  EXPECT_EQ(pQuery->GetPixelCount(), 256U);
}

TEST_F(QXOgreQueries, BeginningTwiceBeginsAnew) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  auto const pQuery = MakeQuery();
  pQuery->BeginQuery();
  Frame();
  EXPECT_EQ(Count(*pQuery), 256U);
}

TEST_F(QXOgreQueries, OneThingIsAskedForByAViewportOfItsOwnOverTheDepthsOfTheOne) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"asked"), 1);
  // A wall over the left half at z = 5, and what is asked for behind it: 32 x 32 pixels, half of them covered.
  DrawSquare(-1.0F, -1.0F, 0.0F, 1.0F, 5.0F, RED);
  auto const pMesh = MakeMesh({{-0.5F, -0.5F, 0.0F}, {0.5F, -0.5F, 0.0F}, {0.5F, 0.5F, 0.0F}, {-0.5F, 0.5F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, GREEN);
  QXRenderOperation3D* const pAsked = Draw(*pMesh, L"asked");
  QXCamera* const pCamera = MakeCamera(L"asking", L"asked");
  QXViewport* const pViewport = AddViewport(*m_pTarget, *pCamera, 1, 0.0, 0.0, 1.0, 1.0);
  pViewport->m_bClearEveryFrame = 0;
  auto const pQuery = MakeQuery();
  // Behind the first viewport it begins, behind the second one it ends.
  auto const handle = [](QXQueryOperation3D* p) { return static_cast<QXInt64>(reinterpret_cast<std::intptr_t>(p)); };
  m_pCamera->SetSceneRenderFunc(
      [](QXInt64 nHandle, QXCamera*, QXViewport*, unsigned char) {
        reinterpret_cast<QXQueryOperation3D*>(static_cast<std::intptr_t>(nHandle))->BeginQuery();
      },
      handle(pQuery.get()));
  pCamera->SetSceneRenderFunc(
      [](QXInt64 nHandle, QXCamera*, QXViewport*, unsigned char) {
        reinterpret_cast<QXQueryOperation3D*>(static_cast<std::intptr_t>(nHandle))->EndQuery();
      },
      handle(pQuery.get()));
  Frame();
  EXPECT_EQ(pQuery->GetPixelCount(), 512U);
  QXMatrix4d matModel;
  matModel.SetTrans({-0.5, 0.0, 0.0});
  pAsked->SetModelMatrix(matModel);
  Frame();
  EXPECT_EQ(pQuery->GetPixelCount(), 0U) << "all of it is covered";
  matModel.SetTrans({-0.5, 0.0, 6.0});
  pAsked->SetModelMatrix(matModel);
  Frame();
  EXPECT_EQ(pQuery->GetPixelCount(), 1024U) << "it stands before the wall";
}

TEST_F(QXOgreQueries, AListenerCountsAWholeTargetAndSeveralViewportsAddUp) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  AddViewport(*m_pTarget, *m_pCamera, 1, 0.0, 0.0, 0.5, 0.5);
  QXRenderTarget* const pOther = MakeTarget(L"other");
  AddViewport(*pOther, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  auto const pQuery = MakeQuery();
  QXQueryListener listener(*pQuery);
  m_pTarget->SetListener(&listener);
  m_pGraphics3D->CreateOverlay(L"over")->SetRect({0.0, 0.0, 30.0, 30.0});
  Frame();
  m_pTarget->SetListener(nullptr);
  EXPECT_EQ(pQuery->GetPixelCount(), 256U + 64U) << "no other target counts, and no overlay";
}

TEST_F(QXOgreQueries, SeveralRunAtATimeAndCountTheSame) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  auto const pFirst = MakeQuery(L"first");
  auto const pSecond = MakeQuery(L"second");
  pFirst->BeginQuery();
  Frame();
  pSecond->BeginQuery();
  Frame();
  pFirst->EndQuery();
  Frame();
  pSecond->EndQuery();
  EXPECT_EQ(pFirst->GetPixelCount(), 512U);
  EXPECT_EQ(pSecond->GetPixelCount(), 512U);
}

TEST_F(QXOgreQueries, SamplesAreDividedByTheirNumberInAPixel) {
  m_pTarget->SetSceneAntialiasValue(4);
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  auto const pQuery = MakeQuery();
  EXPECT_EQ(Count(*pQuery), 256U);
  m_pTarget->SetSceneAntialiasValue(1);
  EXPECT_EQ(Count(*pQuery), 256U);
}

TEST_F(QXOgreQueries, WhatGlowsIsCountedWithoutItsGlow) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  QXBloomSetting setting;
  setting.m_dThreshold = 0.0;
  m_pGraphics3D->SetBloomSetting(setting);
  ASSERT_EQ(m_pGraphics3D->AddCompositor(m_pTarget, L"bloom"), 1) << Text(m_pGraphics3D->GetErrorText());
  auto const pQuery = MakeQuery();
  EXPECT_EQ(Count(*pQuery), 256U);
  // Another size makes another picture for the effect; the answer of the former one must not be lost.
  pQuery->BeginQuery();
  Frame();
  pQuery->EndQuery();
  m_pTarget->ReSize(128, 128);
  Frame();
  EXPECT_EQ(pQuery->GetPixelCount(), 256U);
  EXPECT_EQ(Count(*pQuery), 1024U);
}

TEST_F(QXOgreQueries, WindowsAreCountedInTheirOwnContexts) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  m_pTarget->SetActive(0);
  QXRenderTarget* arrWindows[2] = {};
  std::unique_ptr<QXQueryOperation3D> arrQueries[2];
  for (int i = 0; i < 2; ++i) {
    auto const nSize = static_cast<unsigned int>(64 << i);
    arrWindows[i] = m_pGraphics3D->CreateRenderWindow(i == 0 ? L"first" : L"second", nullptr, nSize, nSize, 0);
    ASSERT_NE(arrWindows[i], nullptr) << Text(m_pGraphics3D->GetErrorText());
    m_pGraphics3D->AttachRenderTarget(arrWindows[i]);
    arrWindows[i]->SetSunLightEnable(0);
    AddViewport(*arrWindows[i], *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
    arrQueries[i] = MakeQuery();
  }
  for (int i = 0; i < 2; ++i) {
    arrQueries[i]->BeginQuery();
    arrWindows[i]->Update();
    arrQueries[i]->EndQuery();
  }
  // Each is asked while the other window's context is current.
  EXPECT_EQ(arrQueries[0]->GetPixelCount(), 256U);
  EXPECT_EQ(arrQueries[1]->GetPixelCount(), 1024U);
  arrWindows[0]->Update();
  EXPECT_EQ(QXPicture(*arrWindows[0]).At(40, 24), RED_PIXEL) << "asking leaves the drawing alone";
}

TEST_F(QXOgreQueries, AnAnswerOutlivesItsTargetAndTheRenderer) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  auto const pQuery = MakeQuery();
  auto const pRunning = MakeQuery(L"running");
  pQuery->BeginQuery();
  Frame();
  pQuery->EndQuery();
  pRunning->BeginQuery();
  m_pGraphics3D->DeleteRenderTarget(m_pTarget);
  m_pTarget = nullptr;
  EXPECT_EQ(pQuery->IsResultReady(), 1);
  EXPECT_EQ(pQuery->GetPixelCount(), 256U);
  for (QXRenderOperation3D* const pOperation : m_arrOperations) delete pOperation;
  m_arrOperations.clear();
  m_pGraphics3D.reset();
  EXPECT_EQ(pQuery->GetPixelCount(), 256U);
  pRunning->EndQuery();
  EXPECT_EQ(pRunning->GetPixelCount(), 0U);
  pRunning->BeginQuery();
  pRunning->EndQuery();
  EXPECT_EQ(pRunning->GetPixelCount(), 0U);
}

TEST_F(QXOgreQueries, OneThatDiesWhileItRunsIsForgotten) {
  DrawSquare(0.0F, 0.0F, 0.5F, 0.5F, 0.0F, RED);
  auto pQuery = MakeQuery();
  pQuery->BeginQuery();
  pQuery.reset();
  EXPECT_EQ(Frame().At(40, 24), RED_PIXEL);
}

}  // namespace QXC
