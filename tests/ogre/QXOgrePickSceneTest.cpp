// Picking in whole scenes: layers, objects of static geometry, billboards, several views, targets of every kind, rays.
#include <cmath>
#include <numbers>
#include <random>
#include <set>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/text/QXTextLayout.h>

#include <tests/ogre/QXOgreBucketing.h>

namespace QXC {
namespace {

class QXOgrePickScene : public QXOgreBucketing {
protected:
  void TearDown() override {
    m_arrBillboards.clear();
    QXOgreBucketing::TearDown();
  }
  QXRenderOperation3D* Square(float x0, float y0, float x1, float y1, float z, unsigned int nID) {
    QXRenderOperation3D* const pOperation = DrawSquare(x0, y0, x1, y1, z, RED);
    pOperation->SetSelectionID(nID);
    return pOperation;
  }
  QXBillboard* Billboard(QXVector3d const& vecPosition, double dWidth, double dHeight, unsigned int nID) {
    QXBillboard* const p = m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(L"3D");
    m_arrBillboards.emplace_back(p);
    p->SetPosition(vecPosition);
    p->SetSize(dWidth, dHeight, 1);
    p->SetSelectionID(nID);
    return p;
  }
  unsigned int ID(int nLayer, int nObject) const { return m_pGraphics3D->m_SceneOperation.GetID(nLayer, nObject); }
  unsigned int Pick(double x, double y) { return m_pGraphics3D->PickObject(x, y, m_vecHit); }
  void PassOver(QXRenderTarget& target) {
    ASSERT_EQ(m_pGraphics3D->BeginSelection(
                  &target, 0, 0, static_cast<int>(target.GetWidth()), static_cast<int>(target.GetHeight())),
        1);
    m_pGraphics3D->EndSelection();
  }
  /// Rectangles side by side over the whole picture, an object each but the last; the first package has the left ones.
  void FillBucket(QXStaticGeometryBucket& bucket, int nObjects) {
    std::vector<std::vector<float>> arrParts;
    float const fWidth = 2.0F / static_cast<float>(nObjects);
    for (int i = 0; i < nObjects; ++i) {
      float const x = -1.0F + fWidth * static_cast<float>(i);
      arrParts.push_back(Corners(x, -1, x + fWidth, 1));
    }
    SetPositions(*bucket.m_pVertexPackage, Join(arrParts));
    auto const nHalf = static_cast<unsigned int>(nObjects) / 2;
    bucket.m_mapLevelIndices[0] = {
        NewIndices(Rectangles(0, nHalf - 1)), NewIndices(Rectangles(nHalf, static_cast<unsigned int>(nObjects) - 1))};
    for (int i = 0; i + 1 < nObjects; ++i) {
      auto* const pObject = bucket.m_mapSubObjects[4 * i] = new QXSubObjectInfo;
      bool const bFirst = i < nObjects / 2;
      pObject->m_mapPassSlots[bFirst ? 0 : 1] = 0;
      pObject->m_arrOffsets.Add(6 * (bFirst ? i : i - nObjects / 2));
      pObject->m_arrCounts.Add(6);
    }
  }
  /// From above and obliquely, with perspective, over a place far from the zero.
  void LookFromFar(QXVector3d const& vecPlace) {
    m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
    m_pCamera->SetProjectionMatrix(QXMathEngine::ComputePerspectiveMatrix(std::numbers::pi / 3.0, 1.0, 1.0, 10000.0));
    m_pCamera->SetPosition(vecPlace.x, vecPlace.y, vecPlace.z + 500.0);
  }

  std::vector<std::unique_ptr<QXBillboard>> m_arrBillboards;
  QXVector3d m_vecHit;
};

TEST_F(QXOgrePickScene, SelInfoTellsLayerObjectAndPosition) {
  Square(-1, -1, 1, 1, 0, ID(3, 70000));
  int nLayer = -1;
  int nObject = -1;
  QXVector3d const vecPosition = m_pGraphics3D->GetSelInfo(40.0F, 8.0F, nLayer, nObject, 0);
  EXPECT_EQ(nLayer, 3);
  EXPECT_EQ(nObject, 70000);
  EXPECT_NEAR(vecPosition.x, 40.5 / 32.0 - 1.0, 1e-9);
  EXPECT_NEAR(vecPosition.y, 8.5 / 32.0 - 1.0, 1e-9);
  EXPECT_NEAR(m_pGraphics3D->GetSelInfo(-5.0F, 8.0F, nLayer, nObject, 0).Length(), 0.0, 0.0);
  EXPECT_EQ(nLayer, 0);
  EXPECT_EQ(nObject, 0);
}

TEST_F(QXOgrePickScene, SelInfoFollowsTheLayerBits) {
  m_pGraphics3D->m_SceneOperation.SetLayerIDUnit(12);
  Square(-1, -1, 1, 1, 0, ID(4000, 1000000));
  int nLayer = 0;
  int nObject = 0;
  m_pGraphics3D->GetSelInfo(32.0F, 32.0F, nLayer, nObject, 0);
  EXPECT_EQ(nLayer, 4000);
  EXPECT_EQ(nObject, 1000000);
}

TEST_F(QXOgrePickScene, SelInfoIsConfinedToLayers) {
  Square(-1, -1, 1, 1, 0, ID(1, 11));
  Square(-1, -1, 1, 1, 1, ID(2, 22));
  Square(-1, -1, 1, 1, 2, 0);
  int nLayer = 0;
  int nObject = 0;
  QdcArray<QXGeometry*> arrGeometries;
  for (int const nWanted : {1, 2}) {
    std::set<int> setLayers{nWanted};
    m_pGraphics3D->GetSelInfo(32.0F, 32.0F, nLayer, nObject, arrGeometries, setLayers, 0, nullptr);
    EXPECT_EQ(nLayer, nWanted);
    EXPECT_EQ(nObject, 11 * nWanted);
    EXPECT_EQ(setLayers, std::set<int>{nWanted});
  }
  // Layer 0 is one of those that things are on, and what has no identifier is on none.
  QXRenderOperation3D* const pGround = Square(-1, -1, 1, 1, -1, ID(0, 33));
  std::set<int> setGround{0};
  m_pGraphics3D->GetSelInfo(32.0F, 32.0F, nLayer, nObject, arrGeometries, setGround, 0, nullptr);
  EXPECT_EQ(nObject, 33);
  pGround->SetVisible(0);
  std::set<int> setNone{5};
  m_pGraphics3D->GetSelInfo(32.0F, 32.0F, nLayer, nObject, arrGeometries, setNone, 0, nullptr);
  EXPECT_EQ(nObject, 0);
  // Without layers the picture counts, and what covers it has no identifier.
  std::set<int> setAll;
  m_pGraphics3D->GetSelInfo(32.0F, 32.0F, nLayer, nObject, arrGeometries, setAll, 0, nullptr);
  EXPECT_EQ(nObject, 0);
  EXPECT_EQ(arrGeometries.GetSize(), 0U);
}

TEST_F(QXOgrePickScene, SelInfoCountsALayerOnlyInsideItsBounds) {
  Square(-1, -1, 1, 1, 0, ID(1, 11));
  std::map<int, QdcRect2D> const mapBounds{{1, QdcRect2D(0.0, -1.0, 1.0, 1.0)}, {2, QdcRect2D(9.0, 9.0, 9.0, 9.0)}};
  int nLayer = 0;
  int nObject = 0;
  QdcArray<QXGeometry*> arrGeometries;
  std::set<int> setLayers;
  m_pGraphics3D->GetSelInfo(40.0F, 32.0F, nLayer, nObject, arrGeometries, setLayers, 0, &mapBounds);
  EXPECT_EQ(nObject, 11);
  m_pGraphics3D->GetSelInfo(20.0F, 32.0F, nLayer, nObject, arrGeometries, setLayers, 0, &mapBounds);
  EXPECT_EQ(nObject, 0);
}

TEST_F(QXOgrePickScene, SelInfoOfAllKeepsWhatIsWithinTheTolerance) {
  Square(-1, -1, 0, 1, 0, ID(1, 11));
  Square(0, -1, 1, 1, 0, ID(2, 22));
  m_pGraphics3D->SetSelectionTolerance(3.0);
  int nLayer = 0;
  int nObject = 0;
  m_pGraphics3D->GetSelInfo(31.0F, 32.0F, nLayer, nObject, 1);
  EXPECT_EQ(nObject, 11);
  QdcArray<unsigned int> arrIDs;
  m_pGraphics3D->ReadSelectionIDs(QdcRect(0, 0, 64, 64), arrIDs);
  ASSERT_EQ(arrIDs.GetSize(), 2U);
  EXPECT_EQ(arrIDs[0], ID(1, 11));
  EXPECT_EQ(arrIDs[1], ID(2, 22));
}

TEST_F(QXOgrePickScene, AMillionIdentifiersOverSeveralLayersAreExact) {
  constexpr unsigned int nEdge = 250;
  constexpr unsigned int nRounds = 16;
  QXRenderTarget* const pTarget = MakeTarget(L"million", nEdge, nEdge);
  AddViewport(*pTarget, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  for (unsigned int i = 0; i < nEdge * nEdge; ++i) {
    double const x = 2.0 * (i % nEdge + 0.5) / nEdge - 1.0;
    double const y = 2.0 * (i / nEdge) / nEdge - 1.0;
    Billboard({x, y, 0.0}, 1.0, 1.0, 0);
  }
  for (unsigned int nRound = 0; nRound < nRounds; ++nRound) {
    auto const identifier = [&](unsigned int i) {
      unsigned int const n = nRound * nEdge * nEdge + i;
      return ID(static_cast<int>(1 + n % 7 * 36), static_cast<int>(n * 16 + n % 16));
    };
    for (unsigned int i = 0; i < nEdge * nEdge; ++i) m_arrBillboards[i]->SetSelectionID(identifier(i));
    PassOver(*pTarget);
    for (unsigned int i = 0; i < nEdge * nEdge; ++i)
      ASSERT_EQ(m_pGraphics3D->ReadSelectionID(static_cast<int>(i % nEdge), static_cast<int>(i / nEdge)), identifier(i))
          << nRound << ", " << i;
  }
}

TEST_F(QXOgrePickScene, ObjectsOfStaticGeometryAddTheirKeys) {
  QXStaticGeometryBucket bucket;
  FillBucket(bucket, 8);
  QXRenderOperation3D* const pOperation = Show(bucket);
  EXPECT_EQ(Pick(4, 32), 0U);
  pOperation->SetSelectionID(ID(5, 1000));
  for (unsigned int i = 0; i < 7; ++i) EXPECT_EQ(Pick(8 * i + 4, 32), ID(5, 1000) + 4 * i) << i;
  // The last rectangle is no object's.
  EXPECT_EQ(Pick(60, 32), 0U);
  pOperation->SetSelectionID(ID(6, 0));
  EXPECT_EQ(Pick(12, 32), ID(6, 4));
}

TEST_F(QXOgrePickScene, StaticGeometryWithoutObjectsHasTheIdentifierOfItsDrawable) {
  QXStaticGeometryBucket bucket;
  SetPositions(*bucket.m_pVertexPackage, Corners(-1, -1, 1, 1));
  bucket.m_mapLevelIndices[0] = {NewIndices(Rectangles(0, 0))};
  Show(bucket)->SetSelectionID(ID(5, 9));
  EXPECT_EQ(Pick(32, 32), ID(5, 9));
}

TEST_F(QXOgrePickScene, SelectionAndNumbersOfObjectsStandBesideEachOther) {
  QXStaticGeometryBucket bucket;
  FillBucket(bucket, 8);
  QXRenderOperation3D* const pOperation = Show(bucket);
  pOperation->SetSelectionID(ID(5, 1000));
  pOperation->SetSelectionColor(QXColorValue3D(0.0, 0.0, 1.0, 1.0));
  QXBatchSelAndVertexColor state;
  state.m_mapSelections = {{8, 1}};
  pOperation->SetBatchState(state);
  EXPECT_EQ(PixelAt(20, 32), BLUE_PIXEL);
  EXPECT_EQ(Pick(20, 32), ID(5, 1008));
  EXPECT_EQ(Pick(12, 32), ID(5, 1004));
  state.m_mapSelections = {{8, 0}, {4, 1}};
  pOperation->SetBatchState(state);
  EXPECT_EQ(PixelAt(20, 32), WHITE_PIXEL);
  EXPECT_EQ(PixelAt(12, 32), BLUE_PIXEL);
  EXPECT_EQ(Pick(20, 32), ID(5, 1008));
  EXPECT_EQ(Pick(12, 32), ID(5, 1004));
}

TEST_F(QXOgrePickScene, PickedObjectsAreShownAsSelected) {
  QXStaticGeometryBucket bucket;
  FillBucket(bucket, 8);
  Show(bucket)->SetSelectionID(ID(5, 1000));
  Billboard({-0.75, 0.5, 5.0}, 4.0, 4.0, ID(6, 1));
  m_pGraphics3D->SetSelectionColor(QXColorValue3D(0.0, 0.0, 1.0, 1.0));
  QdcArray<unsigned int> arrIDs;
  arrIDs.Add(ID(5, 1012));
  arrIDs.Add(ID(6, 1));
  m_pGraphics3D->SetSelectedObjects(arrIDs);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(28, 32), BLUE_PIXEL);
  EXPECT_EQ(picture.At(20, 32), WHITE_PIXEL);
  EXPECT_EQ(picture.At(8, 14), BLUE_PIXEL);
  arrIDs.RemoveAll();
  arrIDs.Add(ID(5, 1008));
  m_pGraphics3D->SetSelectedObjects(arrIDs);
  QXPicture const other = Frame();
  EXPECT_EQ(other.At(28, 32), WHITE_PIXEL);
  EXPECT_EQ(other.At(20, 32), BLUE_PIXEL);
  EXPECT_EQ(other.At(8, 14), WHITE_PIXEL);
  m_pGraphics3D->ClearSelectedObjects();
  EXPECT_EQ(PixelAt(20, 32), WHITE_PIXEL);
}

TEST_F(QXOgrePickScene, BoundsAreThoseOfTheObject) {
  QXStaticGeometryBucket bucket;
  FillBucket(bucket, 8);
  QXRenderOperation3D* const pOperation = Show(bucket);
  pOperation->SetSelectionID(ID(5, 1000));
  QXMatrix4d matModel;
  matModel.SetTrans({6.0e6, 10.0, 2.0});
  pOperation->SetModelMatrix(matModel);
  QXBoundingBox box;
  ASSERT_EQ(m_pGraphics3D->GetObjectBoundingBox(ID(5, 1008), box), 1);
  EXPECT_EQ(box.GetMin(), QXVector3d(6.0e6 - 0.5, 9.0, 2.0));
  EXPECT_EQ(box.GetMax(), QXVector3d(6.0e6 - 0.25, 11.0, 2.0));
  EXPECT_EQ(m_pGraphics3D->GetObjectBoundingBox(ID(5, 1009), box), 0);
}

TEST_F(QXOgrePickScene, BillboardsAreFoundAboveWhatTheyCover) {
  Square(-1, -1, 1, 1, 0, ID(1, 1));
  Billboard({0.0, 0.0, 5.0}, 8.0, 8.0, ID(2, 0xABCDEF));
  EXPECT_EQ(Pick(32, 34), ID(2, 0xABCDEF));
  EXPECT_EQ(Pick(32, 30), ID(1, 1));
  m_arrBillboards[0]->SetVisible(0);
  EXPECT_EQ(Pick(32, 34), ID(1, 1));
}

TEST_F(QXOgrePickScene, ClearTexelsAreNotHit) {
  Square(-1, -1, 1, 1, 0, ID(1, 1));
  QXBillboard* const pBillboard = Billboard({0.0, 0.0, 5.0}, 16.0, 8.0, ID(2, 1));
  // The left half is clear, the right half hardly seen.
  pBillboard->SetTexture(MakeTexture(2, 1, PF_A8R8G8B8, {0, 0, 255, 0, 0, 0, 255, 40}), QdcRect2D(0.0, 0.0, 1.0, 1.0));
  EXPECT_EQ(Pick(27, 34), ID(1, 1));
  EXPECT_EQ(Pick(37, 34), ID(2, 1));
}

TEST_F(QXOgrePickScene, LabelsAreHitWhereTheyAreDrawn) {
  auto const pMesh = MakeMesh({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3});
  pMesh->m_pTexCoordBlock = new QXTexCoordBlock;
  for (unsigned int const nSet : {0U, 1U}) {
    pMesh->m_pTexCoordBlock->m_pBuffers[nSet] = new float[8]{4, 8, 20, 8, 20, 12, 4, 12};
    pMesh->m_pTexCoordBlock->m_nCounts[nSet] = 4;
  }
  QXRenderOperation3D* const pLabel = Draw(*pMesh);
  ASSERT_EQ(pLabel->SetShaderPrograms(LABEL_VERTEX_PROGRAM, LABEL_FRAGMENT_PROGRAM), 1);
  pLabel->SetSelectionID(ID(4, 4));
  QXPicture const picture = Frame();
  PassOver(*m_pTarget);
  int nHits = 0;
  for (unsigned int y = 0; y < SIZE; ++y) {
    for (unsigned int x = 0; x < SIZE; ++x) {
      bool const bDrawn = picture.At(x, y) != BACKGROUND_PIXEL;
      nHits += bDrawn ? 1 : 0;
      int const nY = static_cast<int>(SIZE - 1 - y);
      ASSERT_EQ(m_pGraphics3D->ReadSelectionID(static_cast<int>(x), nY), bDrawn ? ID(4, 4) : 0U) << x << ", " << y;
      if (!bDrawn || x % 5 != 0) continue;
      ASSERT_EQ(Pick(x, nY), ID(4, 4)) << x << ", " << y;
    }
  }
  EXPECT_EQ(nHits, 64);
}

TEST_F(QXOgrePickScene, WhatTheAlphaTestDropsIsNotHit) {
  Square(-1, -1, 1, 1, -1, ID(1, 1));
  QXStaticGeometryBucket bucket;
  SetPositions(*bucket.m_pVertexPackage, Join({Corners(-1, -1, 0, 1), Corners(0, -1, 1, 1)}));
  SetColors(*bucket.m_pVertexPackage,
      {0x40FFFFFF, 0x40FFFFFF, 0x40FFFFFF, 0x40FFFFFF, 0xC0FFFFFF, 0xC0FFFFFF, 0xC0FFFFFF, 0xC0FFFFFF});
  QXPass* const pPass = AddPass(bucket.m_mapPasses, L"tested");
  pPass->m_eAlphaFunction = COMPARE_GREATER;
  pPass->m_nAlphaReference = 128;
  bucket.m_mapLevelIndices[0] = {NewIndices(Rectangles(0, 1), L"tested")};
  Show(bucket)->SetSelectionID(ID(2, 1));
  EXPECT_EQ(Pick(16, 32), ID(1, 1));
  EXPECT_EQ(Pick(48, 32), ID(2, 1));
}

TEST_F(QXOgrePickScene, ViewportsAreFoundByThePoint) {
  m_pGraphics3D->CreateScene(L"other");
  QXCamera* const pOther = MakeCamera(L"other", L"other");
  AddViewport(*m_pTarget, *pOther, 1, 0.5, 0.0, 0.5, 0.5);
  Square(-1, -1, 1, 1, 0, 5);
  auto const pMesh = MakeMesh({{-1, -1, 2}, {1, -1, 2}, {1, 0, 2}, {-1, 0, 2}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3});
  Draw(*pMesh, L"other")->SetSelectionID(6);
  EXPECT_EQ(Pick(16, 16), 5U);
  EXPECT_EQ(Pick(48, 48), 5U);
  // The lower half of the other viewport has its square, and its upper half only its background.
  EXPECT_EQ(Pick(48, 8), 6U);
  EXPECT_NEAR(m_vecHit.x, 2.0 * (16.5 / 32.0) - 1.0, 1e-9);
  EXPECT_EQ(Pick(48, 24), 0U);
  // One that clears no colours lets through what is under it.
  m_pTarget->GetViewport(1)->m_nClearBuffers = 2;
  EXPECT_EQ(Pick(48, 24), 5U);
  EXPECT_NEAR(m_vecHit.x, 48.5 / 32.0 - 1.0, 1e-9) << "the place is that of the view which drew it";
  EXPECT_NEAR(m_vecHit.z, 0.0, 1e-4);
  EXPECT_EQ(Pick(48, 8), 6U);
  EXPECT_NEAR(m_vecHit.x, 2.0 * (16.5 / 32.0) - 1.0, 1e-9);
  m_pGraphics3D->SetSelectionEnable(L"other", 0);
  EXPECT_EQ(Pick(48, 8), 5U);
  m_pGraphics3D->SetSelectionEnable(L"other", 1);
  EXPECT_EQ(Pick(48, 8), 6U);
}

TEST_F(QXOgrePickScene, FollowsTheSizeOfTheTargetAndItsSamples) {
  Square(0.5F, -1, 1, 1, 0, 5);
  m_pTarget->SetSceneAntialiasValue(4);
  EXPECT_EQ(Pick(48, 32), 5U);
  EXPECT_EQ(Pick(47, 32), 0U);
  m_pTarget->ReSize(200, 100);
  EXPECT_EQ(Pick(150, 99), 5U);
  EXPECT_EQ(Pick(149, 99), 0U);
  EXPECT_EQ(Pick(48, 32), 0U);
}

TEST_F(QXOgrePickScene, PositionsAreRightSixMillionUnitsFromTheZero) {
  QXVector3d const vecPlace(6.0e6 + 0.25, -6.0e6 - 0.75, 100.0);
  LookFromFar(vecPlace);
  m_pGraphics3D->SetRelativeOrigin(vecPlace);
  QXRenderOperation3D* const pOperation = Square(-400, -400, 400, 400, 0, 5);
  QXMatrix4d matModel;
  matModel.SetTrans(vecPlace);
  pOperation->SetModelMatrix(matModel);
  double const dHalf = 500.0 * std::tan(std::numbers::pi / 6.0);
  for (int const nX : {3, 32, 60}) {
    for (int const nY : {5, 31, 59}) {
      ASSERT_EQ(Pick(nX, nY), 5U);
      EXPECT_NEAR(m_vecHit.x, vecPlace.x + dHalf * ((nX + 0.5) / 32.0 - 1.0), 2e-3);
      EXPECT_NEAR(m_vecHit.y, vecPlace.y + dHalf * ((nY + 0.5) / 32.0 - 1.0), 2e-3);
      EXPECT_NEAR(m_vecHit.z, 100.0, 2e-3);
      EXPECT_EQ(m_pGraphics3D->GetPixelPosition(m_pTarget, nX, nY), m_vecHit);
      EXPECT_EQ(m_pGraphics3D->ScreenToCartesian(nX, nY), m_vecHit);
    }
  }
}

TEST_F(QXOgrePickScene, PositionsAreThoseOfTheWorldAndNotOfExaggeratedHeights) {
  m_pTarget->SetVerticalExaggeration(2.0);
  Square(-1, -1, 1, 1, 3, 5);
  ASSERT_EQ(Pick(32, 32), 5U);
  EXPECT_NEAR(m_vecHit.z, 3.0, 1e-4);
}

TEST_F(QXOgrePickScene, WhatIsBehindTheEyeIsNotFound) {
  LookFromFar({0.0, 0.0, 0.0});
  Square(-4000, -4000, 4000, 4000, 600, 5);
  EXPECT_EQ(Pick(32, 32), 0U);
  Square(-400, -400, 400, 400, 0, 6);
  EXPECT_EQ(Pick(32, 32), 6U);
}

TEST_F(QXOgrePickScene, DepthsAreThoseOfTheWindow) {
  Square(-1, -1, 0, 1, 5, 0);  // 5 of 20 below the eye
  EXPECT_NEAR(m_pGraphics3D->ReadDepth(m_pTarget, 16, 32), 0.25, 1e-6);
  EXPECT_EQ(m_pGraphics3D->ReadDepth(m_pTarget, 48, 32), 1.0);
  EXPECT_EQ(m_pGraphics3D->ReadDepth(m_pTarget, 64, 32), 1.0);
  EXPECT_EQ(m_pGraphics3D->ReadDepth(nullptr, 16, 32), 1.0);
}

TEST_F(QXOgrePickScene, DepthsOfAWholeTargetAreCopiedTopRowFirst) {
  Square(-1, 0.5F, 0, 1, 5, 0);
  std::vector<float> arrDepths(64 * 64, -1.0F);
  EXPECT_EQ(m_pTarget->IsRenderDepth(), 0);
  EXPECT_EQ(m_pTarget->CopyDepthToMemory(arrDepths.data(), 64 * 64), 0);
  EXPECT_EQ(arrDepths[0], -1.0F);
  m_pTarget->SetRenderDepth(1);
  EXPECT_EQ(m_pTarget->IsRenderDepth(), 1);
  EXPECT_EQ(m_pTarget->CopyDepthToMemory(arrDepths.data(), 64 * 64 - 1), 0);
  EXPECT_EQ(m_pTarget->CopyDepthToMemory(nullptr, 64 * 64), 0);
  EXPECT_EQ(arrDepths[0], -1.0F);
  ASSERT_EQ(m_pTarget->CopyDepthToMemory(arrDepths.data(), 64 * 64), 1);
  for (std::size_t y = 0; y < 64; ++y)
    for (std::size_t x = 0; x < 64; ++x)
      ASSERT_NEAR(arrDepths[64 * y + x], x < 32 && y < 16 ? 0.25F : 1.0F, 1e-6F) << x << ", " << y;
}

TEST_F(QXOgrePickScene, ColoursArePixelsOfThePicture) {
  Square(-1, -1, 0, 0, 0, 0);
  Frame();
  EXPECT_EQ(m_pGraphics3D->ScreenToColor(0, 0), RED);
  EXPECT_EQ(m_pGraphics3D->ScreenToColor(63, 63), QXColorValue3D(0.0, 0.0, 51.0 / 255.0, 1.0));
  EXPECT_EQ(m_pGraphics3D->ScreenToColor(64, 0), QXColorValue3D::White);
  EXPECT_EQ(m_pGraphics3D->ScreenToColor(0, -1), QXColorValue3D::White);
}

TEST_F(QXOgrePickScene, APassOutsideOfTheTargetFindsNothing) {
  Square(-1, -1, 1, 1, 0, 5);
  EXPECT_EQ(m_pGraphics3D->BeginSelection(nullptr, 0, 0, 4, 4), 0);
  EXPECT_EQ(m_pGraphics3D->BeginSelection(m_pTarget, 0, 0, 0, 4), 0);
  EXPECT_EQ(m_pGraphics3D->BeginSelection(m_pTarget, 0, 0, 4, -1), 0);
  ASSERT_EQ(m_pGraphics3D->BeginSelection(m_pTarget, 0x7FFFFFF0, -0x7FFFFFF0, 0x7FFFFFFF, 0x7FFFFFFF), 1);
  m_pGraphics3D->EndSelection();
  EXPECT_EQ(m_pGraphics3D->ReadSelectionID(10, 10), 0U);
  ASSERT_EQ(m_pGraphics3D->BeginSelection(m_pTarget, 60, 60, 100, 100), 1);
  m_pGraphics3D->EndSelection();
  EXPECT_EQ(m_pGraphics3D->ReadSelectionID(60, 63), 5U);
  EXPECT_EQ(m_pGraphics3D->ReadSelectionID(59, 63), 0U);
  EXPECT_EQ(m_pGraphics3D->ReadSelectionID(64, 63), 0U);
  QdcArray<unsigned int> arrIDs;
  m_pGraphics3D->ReadSelectionIDs(QdcRect(-0x7FFFFFFF, -0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF), arrIDs);
  ASSERT_EQ(arrIDs.GetSize(), 1U);
  m_pGraphics3D->ReadSelectionIDs(QdcRect(5, 5, 5, 5), arrIDs);
  EXPECT_EQ(arrIDs.GetSize(), 1U);
  // A pass whose target dies before its end.
  QXRenderTarget* const pShort = MakeTarget(L"short");
  ASSERT_EQ(m_pGraphics3D->BeginSelection(pShort, 0, 0, 4, 4), 1);
  m_pGraphics3D->DeleteRenderTarget(pShort);
  m_pGraphics3D->EndSelection();
  EXPECT_EQ(m_pGraphics3D->ReadSelectionID(0, 0), 0U);
}

TEST_F(QXOgrePickScene, ASelectionTargetShowsIdentifiersAsPixels) {
  Square(-1, -1, 0, 1, 0, ID(200, 0x123456));
  Square(0, -1, 1, 1, 0, 0);
  QXRenderTarget* const pTarget = m_pGraphics3D->CreateSelectionRenderTarget(L"identifiers", 64, 64, L"3D");
  ASSERT_NE(pTarget, nullptr);
  pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  pTarget->SetSceneAntialias(1);
  EXPECT_EQ(pTarget->GetSceneAntialias(), 0);
  pTarget->Update();
  QXPicture const picture(*pTarget);
  QXPixel const pixel = picture.At(16, 32);
  unsigned char nPixel[4] = {static_cast<unsigned char>(pixel.r), static_cast<unsigned char>(pixel.g),
      static_cast<unsigned char>(pixel.b), static_cast<unsigned char>(pixel.a)};
  int nLayer = 0;
  int nObject = 0;
  m_pGraphics3D->m_SceneOperation.GetID(nPixel, nLayer, nObject);
  EXPECT_EQ(nLayer, 200);
  EXPECT_EQ(nObject, 0x123456);
  EXPECT_EQ(picture.At(48, 32), (QXPixel{0, 0, 0, 0}));
  delete pTarget;
}

TEST_F(QXOgrePickScene, IntersectFindsTheNearestTriangleFromEitherSide) {
  QXRenderOperation3D* const pOperation = Square(-1, -1, 1, 1, 3, 0);
  double dDistance = -1.0;
  ASSERT_EQ(pOperation->Intersect({0.3, 0.2, 10.0}, {0.0, 0.0, -2.0}, dDistance), 1);
  EXPECT_DOUBLE_EQ(dDistance, 3.5);
  ASSERT_EQ(pOperation->Intersect({0.3, 0.2, 0.0}, {0.0, 0.0, 1.0}, dDistance), 1);
  EXPECT_DOUBLE_EQ(dDistance, 3.0);
  dDistance = 77.0;
  EXPECT_EQ(pOperation->Intersect({0.3, 0.2, 10.0}, {0.0, 0.0, 1.0}, dDistance), 0);
  EXPECT_EQ(pOperation->Intersect({1.3, 0.2, 10.0}, {0.0, 0.0, -1.0}, dDistance), 0);
  EXPECT_EQ(pOperation->Intersect({0.3, 0.2, 10.0}, {0.0, 0.0, 0.0}, dDistance), 0);
  EXPECT_EQ(dDistance, 77.0);
  pOperation->SetIndexRangeVisible(0, 0);
  EXPECT_EQ(pOperation->Intersect({0.3, 0.2, 10.0}, {0.0, 0.0, -2.0}, dDistance), 0);
}

TEST_F(QXOgrePickScene, IntersectKnowsStripsFansAndWideIndices) {
  auto const pStrip = MakeMesh({{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}});
  AddRange<unsigned int>(*pStrip, {0, 1, 3, 2})->m_eOperationType = QX_OPERATION_TRIANGLE_STRIP;
  auto const pFan = MakeMesh({{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}});
  AddRange<unsigned short>(*pFan, {0, 1, 2, 3})->m_eOperationType = QX_OPERATION_TRIANGLE_FAN;
  for (QXRenderOperationMultiIndex* const pMesh : {pStrip.get(), pFan.get()}) {
    QXRenderOperation3D const* const pOperation = Draw(*pMesh);
    for (double const x : {-0.8, 0.8}) {
      // Half-way up on the left a fan that is read as a strip has a hole.
      for (double const y : {-0.9, 0.0, 0.9}) {
        double dDistance = 0.0;
        EXPECT_EQ(pOperation->Intersect({x, y, 4.0}, {0.0, 0.0, -1.0}, dDistance), 1) << x << ", " << y;
        EXPECT_DOUBLE_EQ(dDistance, 4.0);
      }
    }
  }
}

TEST_F(QXOgrePickScene, IntersectFollowsThePlaceOfTheDrawableFarOut) {
  QXRenderOperation3D* const pOperation = Square(-1, -1, 1, 1, 0, 0);
  QXMatrix4d matModel;
  matModel[0][0] = matModel[1][1] = matModel[2][2] = 100.0;
  matModel.SetTrans({6.0e6, 5.0e6, 12.5});
  pOperation->SetModelMatrix(matModel);
  double dDistance = 0.0;
  ASSERT_EQ(pOperation->Intersect({6.0e6 + 99.0, 5.0e6 - 99.0, 1012.5}, {0.0, 0.0, -1.0}, dDistance), 1);
  EXPECT_NEAR(dDistance, 1000.0, 1e-9);
  EXPECT_EQ(pOperation->Intersect({6.0e6 + 101.0, 5.0e6, 1012.5}, {0.0, 0.0, -1.0}, dDistance), 0);
}

TEST_F(QXOgrePickScene, RaysFindWhatIntersectFinds) {
  constexpr unsigned int nSeed = 77123;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  std::uniform_real_distribution<float> place(-50.0F, 50.0F);
  for (unsigned int i = 1; i <= 40; ++i) {
    std::vector<QXCorner> arrCorners;
    float const x = place(random), y = place(random), z = place(random);
    for (int k = 0; k < 3; ++k)
      arrCorners.push_back({x + 0.4F * place(random), y + 0.4F * place(random), z + 0.4F * place(random)});
    auto const pMesh = MakeMesh(arrCorners);
    AddRange<unsigned short>(*pMesh, {0, 1, 2});
    Draw(*pMesh)->SetSelectionID(i);
  }
  int nHits = 0;
  for (int nRay = 0; nRay < 300; ++nRay) {
    QXVector3d const vecOrigin(
        2.0 * static_cast<double>(place(random)), 2.0 * static_cast<double>(place(random)), 90.0);
    QXVector3d vecDirection = QXVector3d(static_cast<double>(place(random)), static_cast<double>(place(random)),
                                  static_cast<double>(place(random))) -
                              vecOrigin;
    vecDirection.Normalize();
    unsigned int nExpected = 0;
    double dNearest = HUGE_VAL;
    for (QXRenderOperation3D const* const pOperation : m_arrOperations) {
      double dDistance = 0.0;
      if (!pOperation->Intersect(vecOrigin, vecDirection, dDistance) || dDistance >= dNearest) continue;
      dNearest = dDistance;
      nExpected = pOperation->GetSelectionID();
    }
    QXVector3d vecHit;
    ASSERT_EQ(m_pGraphics3D->PickObjectByRay(L"3D", vecOrigin, vecDirection, vecHit), nExpected) << nRay;
    if (nExpected == 0) continue;
    ++nHits;
    EXPECT_NEAR((vecHit - vecOrigin).Length(), dNearest, 1e-3) << nRay;
  }
  EXPECT_GT(nHits, 50);
}

TEST_F(QXOgrePickScene, RaysOfNoLengthAndOfOtherScenesFindNothing) {
  Square(-1, -1, 1, 1, 0, 5);
  QXVector3d vecHit(1.0, 2.0, 3.0);
  EXPECT_EQ(m_pGraphics3D->PickObjectByRay(L"3D", {0.1, 0.1, 9.0}, {0.0, 0.0, -1.0}, vecHit), 5U);
  EXPECT_NEAR(vecHit.z, 0.0, 1e-4);
  vecHit = QXVector3d(1.0, 2.0, 3.0);
  EXPECT_EQ(m_pGraphics3D->PickObjectByRay(L"3D", {0.1, 0.1, 9.0}, {0.0, 0.0, 1.0}, vecHit), 0U);
  EXPECT_EQ(m_pGraphics3D->PickObjectByRay(L"3D", {0.1, 0.1, 9.0}, {0.0, 0.0, 0.0}, vecHit), 0U);
  EXPECT_EQ(m_pGraphics3D->PickObjectByRay(L"3D", {0.1, 0.1, 9.0}, {0.0, 0.0, std::nan("")}, vecHit), 0U);
  EXPECT_EQ(m_pGraphics3D->PickObjectByRay(L"none", {0.1, 0.1, 9.0}, {0.0, 0.0, -1.0}, vecHit), 0U);
  m_pGraphics3D->SetSelectionEnable(L"3D", 0);
  EXPECT_EQ(m_pGraphics3D->PickObjectByRay(L"3D", {0.1, 0.1, 9.0}, {0.0, 0.0, -1.0}, vecHit), 0U);
  EXPECT_EQ(vecHit, QXVector3d(1.0, 2.0, 3.0));
}

}  // namespace
}  // namespace QXC
