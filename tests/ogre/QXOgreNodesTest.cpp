// Nodes: what hangs under them moves, turns and vanishes with them.
#include <cmath>
#include <numbers>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

/// One unit is 32 pixels.
class QXOgreNodes : public QXOgreScenery {
protected:
  /// A red square over the middle 16 x 16 pixels.
  QXRenderOperation3D* DrawMiddle() { return DrawSquare(-0.25F, -0.25F, 0.25F, 0.25F, 0.0F, RED); }
  std::string Reason() const { return Text(m_pGraphics3D->GetErrorText()); }
  bool IsSeen() { return Frame().At(32, 32) == RED_PIXEL; }
  QXBoundingBox Bounds(wchar_t const* szNode, wchar_t const* szScene = L"3D") {
    QXBoundingBox box(QXVector3d(7.0, 7.0, 7.0), QXVector3d(8.0, 8.0, 8.0));
    m_pGraphics3D->GetSceneNodeBoundingBox(szScene, szNode, box);
    return box;
  }
};

TEST_F(QXOgreNodes, WhatHangsUnderThemMovesTurnsAndScales) {
  QXRenderOperation3D* const pSquare = DrawMiddle();
  ASSERT_EQ(m_pGraphics3D->CreateSceneNode(L"3D", L"", L"block"), 1);
  ASSERT_EQ(m_pGraphics3D->CreateSceneNode(L"3D", L"block", L"house"), 1);
  ASSERT_EQ(m_pGraphics3D->AttachToSceneNode(L"3D", L"house", pSquare), 1);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << "a new node changes nothing";
  // Twice as wide, then upright, then to the right.
  m_pGraphics3D->SetSceneNodeScale(L"3D", L"house", QXVector3d(2.0, 0.5, 1.0));
  QXPicture const wide = Frame();
  EXPECT_EQ(wide.At(17, 32), RED_PIXEL);
  EXPECT_EQ(wide.At(32, 27), BACKGROUND_PIXEL);
  QXQuaternion4d quarter;
  quarter.FromAngleAxis(std::numbers::pi / 2.0, QXVector3d(0.0, 0.0, 1.0));
  m_pGraphics3D->SetSceneNodeOrientation(L"3D", L"house", quarter);
  QXPicture const upright = Frame();
  EXPECT_EQ(upright.At(32, 17), RED_PIXEL);
  EXPECT_EQ(upright.At(27, 32), BACKGROUND_PIXEL);
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"block", QXVector3d(0.5, 0.0, 0.0));
  EXPECT_EQ(Frame().At(48, 17), RED_PIXEL);
  // The parent turns the place of the child as well.
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"house", QXVector3d(0.25, 0.0, 0.0));
  m_pGraphics3D->SetSceneNodeOrientation(L"3D", L"block", quarter);
  QXPicture const turned = Frame();
  EXPECT_EQ(turned.At(48, 24), RED_PIXEL) << "the middle";
  EXPECT_EQ(turned.At(34, 24), RED_PIXEL) << "lying again";
  EXPECT_EQ(turned.At(48, 19), BACKGROUND_PIXEL);
  EXPECT_NEAR(pSquare->GetWorldBoundingBox().GetMin().x, 0.0, 1.0e-12);
  EXPECT_NEAR(pSquare->GetWorldBoundingBox().GetMax().x, 1.0, 1.0e-12);
  EXPECT_EQ(pSquare->GetModelMatrix(), QXMatrix4d::IDENTITY);
  m_pGraphics3D->DetachFromSceneNode(L"3D", pSquare);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << "under the root again";
}

TEST_F(QXOgreNodes, TheModelMatrixComesBeforeTheNode) {
  QXRenderOperation3D* const pSquare = DrawMiddle();
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"node");
  m_pGraphics3D->AttachToSceneNode(L"3D", L"node", pSquare);
  m_pGraphics3D->SetSceneNodeScale(L"3D", L"node", QXVector3d(2.0, 2.0, 1.0));
  QXMatrix4d mat;
  mat.SetTrans(QXVector3d(0.25, 0.0, 0.0));
  pSquare->SetModelMatrix(mat);
  EXPECT_EQ(pSquare->GetWorldBoundingBox().GetMin().x, 0.0);
  EXPECT_EQ(pSquare->GetWorldBoundingBox().GetMax().x, 1.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(62, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(30, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreNodes, LargeCoordinatesOfNodesAreExact) {
  QXRenderOperation3D* const pSquare = DrawMiddle();
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"far");
  m_pGraphics3D->AttachToSceneNode(L"3D", L"far", pSquare);
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"far", QXVector3d(4000000.25, 5800000.25, 0.0));
  m_pCamera->SetPosition(4000000.25, 5800000.25, 10.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(24, 24), RED_PIXEL);
  EXPECT_EQ(picture.At(39, 39), RED_PIXEL);
  EXPECT_EQ(picture.At(23, 39), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(40, 39), BACKGROUND_PIXEL);
}

TEST_F(QXOgreNodes, AnInvisibleOneHidesWhatHangsUnderItFromPictureAndCount) {
  QXRenderOperation3D* const pSquare = DrawMiddle();
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"block");
  m_pGraphics3D->CreateSceneNode(L"3D", L"block", L"house");
  m_pGraphics3D->AttachToSceneNode(L"3D", L"house", pSquare);
  m_pGraphics3D->SetSceneNodeVisible(L"3D", L"block", 0, 0);
  EXPECT_TRUE(IsSeen()) << "the node below stays as it is";
  m_pGraphics3D->SetSceneNodeVisible(L"3D", L"block", 0, 1);
  EXPECT_FALSE(IsSeen());
  EXPECT_EQ(m_pGraphics3D->m_nFaceCount, 0U);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
  EXPECT_EQ(pSquare->IsVisible(), 1) << "its own word stays";
  EXPECT_FALSE(Bounds(L"block").IsNULL()) << "bounds are of all";
  m_pGraphics3D->SetSceneNodeVisible(L"3D", L"house", 1, 0);
  EXPECT_TRUE(IsSeen());
  m_pGraphics3D->SetSceneNodeVisible(L"block", 0);
  EXPECT_FALSE(IsSeen()) << "the short form takes the nodes below along";
  m_pGraphics3D->SetSceneNodeVisible(L"block", 1);
  EXPECT_TRUE(IsSeen());
  pSquare->SetVisible(0);
  EXPECT_FALSE(IsSeen());
}

TEST_F(QXOgreNodes, DistancesLimitWhereANodeIsDrawn) {
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"node");
  m_pGraphics3D->AttachToSceneNode(L"3D", L"node", DrawMiddle());
  m_pGraphics3D->SetSceneNodeVisibleDistance(L"node", 0.0, 9.0);
  EXPECT_FALSE(IsSeen()) << "it stands 10 away";
  m_pGraphics3D->SetSceneNodeVisibleDistance(L"node", 11.0, 0.0);
  EXPECT_FALSE(IsSeen());
  m_pGraphics3D->SetSceneNodeVisibleDistance(L"node", 9.0, 11.0);
  EXPECT_TRUE(IsSeen());
}

TEST_F(QXOgreNodes, WhatCannotBeIsRefusedWithAReason) {
  EXPECT_EQ(m_pGraphics3D->CreateSceneNode(L"3D", L"", L"node"), 1);
  for (auto const& [szScene, szParent, szNode] : {std::tuple{L"3D", L"", L"node"}, std::tuple{L"3D", L"", L""},
           std::tuple{L"3D", L"nobody", L"other"}, std::tuple{L"nowhere", L"", L"other"}}) {
    m_pGraphics3D->CreateLight(L"", L"");
    EXPECT_EQ(m_pGraphics3D->CreateSceneNode(szScene, szParent, szNode), 0);
    EXPECT_NE(Reason().find("a node needs a scene, a parent in it and a name of its own"), std::string::npos);
  }
  EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"3D", L"other"), 0);
  EXPECT_EQ(Reason(), "there is no node 'other' in '3D'");
  EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"nowhere", L"node"), 0);
  EXPECT_EQ(Reason(), "there is no node 'node' in 'nowhere'");
  EXPECT_EQ(m_pGraphics3D->AttachToSceneNode(L"3D", L"other", DrawMiddle()), 0);
  EXPECT_EQ(Reason(), "there is no node 'other' in '3D'");
  EXPECT_EQ(m_pGraphics3D->AttachToSceneNode(L"3D", L"node", nullptr), 0);
  EXPECT_EQ(Reason(), "what hangs under a node must be a drawable of this renderer");
  // Nothing to say no to, and nothing happens.
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"other", QXVector3d(1.0, 1.0, 1.0));
  m_pGraphics3D->SetSceneNodeOrientation(L"nowhere", L"node", QXQuaternion4d());
  m_pGraphics3D->SetSceneNodeScale(L"3D", L"other", QXVector3d(1.0, 1.0, 1.0));
  m_pGraphics3D->SetSceneNodeVisible(L"3D", L"other", 0, 1);
  m_pGraphics3D->SetSceneNodeVisible(L"other", 0);
  m_pGraphics3D->SetSceneNodeVisibleDistance(L"other", 1.0, 2.0);
  m_pGraphics3D->DetachFromSceneNode(L"3D", nullptr);
  EXPECT_TRUE(Bounds(L"other").IsNULL());
  EXPECT_TRUE(Bounds(L"node", L"nowhere").IsNULL());
  EXPECT_TRUE(Bounds(L"node").IsNULL()) << "nothing hangs there";
  EXPECT_TRUE(IsSeen());
}

TEST_F(QXOgreNodes, BoundsGoAroundEverythingBelow) {
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"block");
  m_pGraphics3D->CreateSceneNode(L"3D", L"block", L"house");
  m_pGraphics3D->AttachToSceneNode(L"3D", L"block", DrawSquare(0.0F, 0.0F, 1.0F, 1.0F, 2.0F, RED));
  m_pGraphics3D->AttachToSceneNode(L"3D", L"house", DrawSquare(-3.0F, 0.0F, -2.0F, 1.0F, 5.0F, RED));
  DrawSquare(50.0F, 0.0F, 51.0F, 1.0F, 0.0F, RED);
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"house", QXVector3d(0.0, 10.0, 0.0));
  EXPECT_EQ(Bounds(L"house").GetMin(), QXVector3d(-3.0, 10.0, 5.0));
  EXPECT_EQ(Bounds(L"block").GetMin(), QXVector3d(-3.0, 0.0, 2.0));
  EXPECT_EQ(Bounds(L"block").GetMax(), QXVector3d(1.0, 11.0, 5.0));
  EXPECT_EQ(Bounds(L"").GetMax(), QXVector3d(51.0, 11.0, 5.0)) << "the root has all";
}

TEST_F(QXOgreNodes, DestroyingOneTakesThoseUnderItAndLeavesTheDrawables) {
  QXRenderOperation3D* const pSquare = DrawMiddle();
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"block");
  m_pGraphics3D->CreateSceneNode(L"3D", L"block", L"house");
  m_pGraphics3D->CreateSceneNode(L"3D", L"house", L"room");
  m_pGraphics3D->AttachToSceneNode(L"3D", L"room", pSquare);
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"block", QXVector3d(5.0, 0.0, 0.0));
  EXPECT_FALSE(IsSeen());
  EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"3D", L"block"), 1);
  for (wchar_t const* szNode : {L"block", L"house", L"room"})
    EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"3D", szNode), 0) << "gone with their parent";
  EXPECT_TRUE(IsSeen()) << "under the root, where nothing moves it";
  EXPECT_EQ(m_pGraphics3D->CreateSceneNode(L"3D", L"", L"house"), 1) << "the name is free";
}

TEST_F(QXOgreNodes, WithoutANameTheyGetOne) {
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"Node1");
  QdcUnicodeString const strName = m_pGraphics3D->CreateSceneNode();
  EXPECT_EQ(Text(strName), "Node2");
  EXPECT_EQ(m_pGraphics3D->AttachToSceneNode(L"3D", strName, DrawMiddle()), 1);
  m_pGraphics3D->SetSceneNodePosition(L"3D", strName, QXVector3d(5.0, 0.0, 0.0));
  EXPECT_FALSE(IsSeen());
  m_pGraphics3D->DestroySceneNode(strName);
  EXPECT_TRUE(IsSeen());
  EXPECT_EQ(MakeRenderer()->CreateSceneNode(), QdcUnicodeString()) << "before Initialize";
}

TEST_F(QXOgreNodes, ADrawableLeavesItsNodeWithTheSceneAndMayDieUnderIt) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"second"), 1);
  QXRenderOperation3D* const pSquare = DrawSquare(-0.25F, -0.25F, 0.25F, 0.25F, 0.0F, RED);
  m_pGraphics3D->CreateSceneNode(L"second", L"", L"node");
  ASSERT_EQ(m_pGraphics3D->AttachToSceneNode(L"second", L"node", pSquare), 1);
  EXPECT_FALSE(IsSeen()) << "it went to the scene of the node";
  m_pGraphics3D->DetachFromSceneNode(L"3D", pSquare);
  EXPECT_FALSE(Bounds(L"node", L"second").IsNULL()) << "it stands in another scene";
  ASSERT_EQ(m_pGraphics3D->GetRenderOperationManager()->AttachRenderOperation3D(pSquare, L"3D"), 1);
  EXPECT_TRUE(Bounds(L"node", L"second").IsNULL());
  EXPECT_TRUE(IsSeen());
  m_pGraphics3D->AttachToSceneNode(L"second", L"node", pSquare);
  m_pGraphics3D->DestroyScene(L"second");
  EXPECT_EQ(m_pGraphics3D->AttachToSceneNode(L"second", L"node", pSquare), 0);
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"node");
  m_pGraphics3D->AttachToSceneNode(L"3D", L"node", pSquare);
  EXPECT_TRUE(IsSeen());
  std::erase(m_arrOperations, pSquare);
  delete pSquare;
  EXPECT_TRUE(Bounds(L"node").IsNULL());
  EXPECT_FALSE(IsSeen());
}

TEST_F(QXOgreNodes, PlacesThatAreNoNumbersTakeNobodyElseOutOfSight) {
  DrawMiddle();
  m_pGraphics3D->CreateSceneNode(L"3D", L"", L"node");
  m_pGraphics3D->AttachToSceneNode(L"3D", L"node", DrawMiddle());
  m_pCamera->SetProjectionMatrix(QXMatrix4d::ZERO);
  for (double const d : {std::nan(""), HUGE_VAL, 1.0e300}) {
    m_pGraphics3D->SetSceneNodePosition(L"3D", L"node", QXVector3d(d, 0.0, 0.0));
    EXPECT_TRUE(IsSeen()) << d;
    m_pGraphics3D->SetSceneNodePosition(L"3D", L"node", QXVector3d(0.0, 0.0, 0.0));
    m_pGraphics3D->SetSceneNodeScale(L"3D", L"node", QXVector3d(d, 1.0, 1.0));
    EXPECT_TRUE(IsSeen()) << d;
    m_pGraphics3D->SetSceneNodeScale(L"3D", L"node", QXVector3d(1.0, 1.0, 1.0));
  }
}

TEST_F(QXOgreNodes, NeighboursOfANodeThatGoesAreStillReached) {
  for (wchar_t const* szName : {L"a", L"b", L"c", L"d"}) m_pGraphics3D->CreateSceneNode(L"3D", L"", szName);
  for (wchar_t const* szName : {L"b1", L"b2"}) m_pGraphics3D->CreateSceneNode(L"3D", L"b", szName);
  for (wchar_t const* szName : {L"c1", L"c2", L"c3"}) m_pGraphics3D->CreateSceneNode(L"3D", L"c", szName);
  m_pGraphics3D->AttachToSceneNode(L"3D", L"c3", DrawMiddle());
  EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"3D", L"a"), 1);
  EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"3D", L"c1"), 1);
  EXPECT_FALSE(Bounds(L"c").IsNULL());
  EXPECT_TRUE(Bounds(L"b").IsNULL()) << "nothing of a neighbour is below";
  EXPECT_TRUE(Bounds(L"c2").IsNULL());
  m_pGraphics3D->SetSceneNodeVisible(L"3D", L"b", 0, 1);
  EXPECT_TRUE(IsSeen());
  m_pGraphics3D->SetSceneNodeVisible(L"3D", L"c", 0, 1);
  EXPECT_FALSE(IsSeen());
  m_pGraphics3D->SetSceneNodeVisible(L"3D", L"c", 1, 1);
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"b", QXVector3d(9.0, 0.0, 0.0));
  EXPECT_TRUE(IsSeen());
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"c", QXVector3d(9.0, 0.0, 0.0));
  EXPECT_FALSE(IsSeen());
}

TEST_F(QXOgreNodes, AChainOfAHundredThousandIsMovedHiddenMeasuredAndTakenDown) {
  constexpr int LENGTH = 100000;
  QdcUnicodeString strParent;
  QdcUnicodeString strName;
  for (int i = 0; i < LENGTH; ++i) {
    strName.Format(L"link%d", i);
    ASSERT_EQ(m_pGraphics3D->CreateSceneNode(L"3D", strParent, strName), 1);
    strParent = strName;
  }
  m_pGraphics3D->AttachToSceneNode(L"3D", strName, DrawMiddle());
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"link0", QXVector3d(2.0, 0.0, 0.0));
  EXPECT_NEAR(Bounds(L"link0").GetCenter().x, 2.0, 1.0e-6);
  m_pGraphics3D->SetSceneNodePosition(L"3D", L"link0", QXVector3d(0.0, 0.0, 0.0));
  EXPECT_TRUE(IsSeen());
  m_pGraphics3D->SetSceneNodeVisible(L"3D", L"link0", 0, 1);
  EXPECT_FALSE(IsSeen());
  EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"3D", L"link0"), 1);
  EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"3D", strName), 0) << "it went with those above it";
  EXPECT_TRUE(IsSeen()) << "what hung there hangs under the root";
}

}  // namespace QXC
