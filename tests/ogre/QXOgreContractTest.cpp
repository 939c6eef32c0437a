// What the abstract classes promise of every renderer.
#include <QxGraphics3D/view/QXLight.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

using QXOgreContract = QXOgreScenery;

TEST_F(QXOgreContract, TheColourOfAnOperationBecomesTheDrawables) {
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3});
  pMesh->m_Color = RED;
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(pOperation->GetColor(), RED);
  pOperation->SetIndexRangeColor(0, QXColorValue3D::White);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pOperation->SetColor(GREEN);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  pMesh->m_Color = QXColorValue3D::White;
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(pOperation->GetColor(), GREEN) << "white is no colour of the operation's";
}

TEST_F(QXOgreContract, OfObjectsWithOneIdentifierTheFirstOneMadeAnswers) {
  for (int i = 0; i < 20; ++i) DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED)->SetSelectionID(i < 7 ? 0 : 5);
  m_pGraphics3D->SetObjectVisible(5, 0);
  for (std::size_t i = 0; i < m_arrOperations.size(); ++i)
    EXPECT_EQ(m_arrOperations[i]->IsVisible(), i == 7 ? 0 : 1) << i;
}

TEST_F(QXOgreContract, OnlyActiveAutoUpdatedTargetsArePrioritised) {
  m_pGraphics3D->m_PrioritisedRenderTargets[1] = m_pTarget;
  m_pViewport->m_BackgroundColor = RED;
  m_pTarget->SetActive(0);
  m_pGraphics3D->UpdatePrioritisedRenderTargets();
  EXPECT_NE(QXPicture(*m_pTarget).At(0, 0), RED_PIXEL);
  m_pTarget->SetActive(1);
  m_pTarget->SetAutoUpdated(0);
  m_pGraphics3D->UpdatePrioritisedRenderTargets();
  EXPECT_NE(QXPicture(*m_pTarget).At(0, 0), RED_PIXEL);
  m_pTarget->SetAutoUpdated(1);
  m_pGraphics3D->m_pActiveRenderTarget = nullptr;
  m_pGraphics3D->UpdatePrioritisedRenderTargets();
  EXPECT_EQ(QXPicture(*m_pTarget).At(0, 0), RED_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetActiveRenderTarget(), m_pTarget);
}

TEST_F(QXOgreContract, WhatIsRefusedIsNamedInTheErrorText) {
  auto const reason = [this] { return Text(m_pGraphics3D->GetErrorText()); };
  EXPECT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"nowhere"), 0);
  EXPECT_EQ(reason(), "a light needs a name of its own and a scene that exists: 'lamp' in 'nowhere'");
  EXPECT_EQ(m_pGraphics3D->SetLight(L"lamp", QXLight()), 0);
  EXPECT_EQ(reason(), "there is no light 'lamp'");
  EXPECT_EQ(m_pGraphics3D->CreateMultiRenderTarget(L"multi", 8, 8, 2), nullptr);
  EXPECT_EQ(reason(), "the renderer on OGRE has no targets of several textures");
  EXPECT_EQ(m_pGraphics3D->SelectRenderSystem(L"other"), 0);
  EXPECT_EQ(reason(), "there is no render system 'other', only 'OpenGL 3+ Rendering Subsystem'");
  unsigned char arrBytes[4] = {};
  EXPECT_EQ(m_pGraphics3D->ReadPixels(m_pTarget, QdcRect(64, 0, 65, 1), arrBytes, 4), 0);
  EXPECT_EQ(reason(), "the rectangle to read leaves the target");
  EXPECT_EQ(m_pGraphics3D->ReadPixels(m_pTarget, QdcRect(0, 0, 1, 1), arrBytes, 3), 0);
  EXPECT_EQ(reason(), "the memory for the pixels to read is too small");
}

TEST_F(QXOgreContract, TwoWindowsKeepTheirPicturesApart) {
  QXRenderTarget* arrWindows[2] = {};
  for (int i = 0; i < 2; ++i) {
    arrWindows[i] = m_pGraphics3D->CreateRenderWindow(i == 0 ? L"first" : L"second", nullptr, 40, 31, 0);
    ASSERT_NE(arrWindows[i], nullptr) << Text(m_pGraphics3D->GetErrorText());
    m_pGraphics3D->AttachRenderTarget(arrWindows[i]);
    AddViewport(*arrWindows[i], *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0)->m_BackgroundColor = i == 0 ? RED : GREEN;
  }
  m_pGraphics3D->UpdateAllRenderTargets();
  EXPECT_EQ(QXPicture(*arrWindows[0]).At(39, 30), RED_PIXEL);
  EXPECT_EQ(QXPicture(*arrWindows[1]).At(39, 30), GREEN_PIXEL);
  m_pGraphics3D->DeleteRenderTarget(arrWindows[0]);
  m_pGraphics3D->UpdateAllRenderTargets();
  EXPECT_EQ(QXPicture(*arrWindows[1]).At(0, 0), GREEN_PIXEL);
}

TEST_F(QXOgreContract, EachTargetExaggeratesTheSharedSceneForItself) {
  m_pCamera->SetPosition(0.0, -10.0, 0.0);
  m_pCamera->LookAt(0.0, 0.0, 0.0);
  auto const pMesh = MakeMesh({{-1.0F, 0.0F, 0.1F}, {1.0F, 0.0F, 0.1F}, {1.0F, 0.0F, 0.4F}, {-1.0F, 0.0F, 0.4F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
  Draw(*pMesh);
  QXRenderTarget* const pHigh = MakeTarget(L"high");
  AddViewport(*pHigh, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  pHigh->SetVerticalExaggeration(2.0);
  for (int i = 0; i < 2; ++i) {
    m_pGraphics3D->UpdateAllRenderTargets();
    EXPECT_EQ(QXPicture(*m_pTarget).At(32, 22), RED_PIXEL);
    EXPECT_EQ(QXPicture(*m_pTarget).At(32, 10), BACKGROUND_PIXEL);
    EXPECT_EQ(QXPicture(*pHigh).At(32, 10), RED_PIXEL);
    EXPECT_EQ(QXPicture(*pHigh).At(32, 28), BACKGROUND_PIXEL);
  }
}

TEST_F(QXOgreContract, IndicesBeyond16BitsReachTheirVertices) {
  std::vector<QXCorner> arrCorners(70000, QXCorner{0.0F, 0.0F, 0.0F});
  arrCorners[69996] = {-1.0F, -1.0F, 0.0F};
  arrCorners[69997] = {1.0F, -1.0F, 0.0F};
  arrCorners[69998] = {1.0F, 1.0F, 0.0F};
  arrCorners[69999] = {-1.0F, 1.0F, 0.0F};
  auto const pMesh = MakeMesh(arrCorners);
  AddRange<unsigned int>(*pMesh, {69996, 69997, 69998, 69996, 69998, 69999}, RED);
  Draw(*pMesh);
  EXPECT_EQ(Frame().At(2, 2), RED_PIXEL);
}

}  // namespace QXC
