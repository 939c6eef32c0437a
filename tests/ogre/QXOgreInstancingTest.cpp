// What instancings keep, answer and refuse, and in what order they and their meshes may go.
#include <QxGraphics3D/model/QXRenderOperationInstance.h>
#include <QxGraphics3D/renderop/QXTexturePackage.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <tests/ogre/QXOgreInstancing.h>

namespace QXC {

class QXOgreInstancingOperations : public QXOgreInstancingScenery {
protected:
  /// A mesh that nobody has drawn yet.
  QXROInstancePtr MakeShared(std::unique_ptr<QXRenderOperationMultiIndex> pMesh) {
    return QXROInstancePtr(new QXRenderObjectInstance(pMesh.release(), m_pGraphics3D.get()));
  }
  QXPixel Middle() { return Frame().At(32, 32); }
};

TEST(QXOgreInstancingStart, BeforeInitializeThereIsNoSceneForAny) {
  QXOgrePtr const pGraphics3D = MakeRenderer();
  QXHwInstancingManager* const pManager = pGraphics3D->GetHwInstancingManager();
  ASSERT_NE(pManager, nullptr);
  EXPECT_EQ(pManager->IsSupported(), 0);
  EXPECT_EQ(pManager->CreateInstancing(L"trees", L"3D"), nullptr);
  EXPECT_FALSE(pGraphics3D->GetErrorText().IsEmpty());
  pManager->Update();
}

TEST_F(QXOgreInstancingOperations, NamesAreUniqueAndNeedAScene) {
  EXPECT_EQ(m_pManager->IsSupported(), 1);
  EXPECT_GE(m_pManager->GetMaxPlacementCount(), 10000U);
  EXPECT_EQ(m_pManager->CreateInstancing(L"trees", L"3D"), nullptr);
  EXPECT_EQ(m_pManager->CreateInstancing(L"", L"3D"), nullptr);
  EXPECT_EQ(m_pManager->CreateInstancing(L"cars", L"nowhere"), nullptr);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("cars"), std::string::npos);
  EXPECT_EQ(m_pManager->GetInstancing(L"trees"), m_pTrees);
  EXPECT_EQ(m_pManager->GetInstancing(L"cars"), nullptr);
  EXPECT_EQ(m_pManager->GetInstancingCount(), 1U);
  m_pManager->DestroyInstancing(m_pTrees);
  EXPECT_EQ(m_pManager->GetInstancingCount(), 0U);
  EXPECT_NE(m_pManager->CreateInstancing(L"trees", L"3D"), nullptr);
  EXPECT_NE(m_pManager->CreateInstancing(L"cars", L"3D"), nullptr);
  m_pManager->DestroyAllInstancings();
  EXPECT_EQ(m_pManager->GetInstancing(L"cars"), nullptr);
  EXPECT_EQ(m_pManager->GetInstancingCount(), 0U);
}

TEST_F(QXOgreInstancingOperations, PlacementsAreNumberedInTheirOrderAndMoveUp) {
  std::vector<QXMatrix4d> const arrMatrices{At(0, 0, 0), At(1, 0, 0), At(2, 0, 0), At(3, 0, 0)};
  EXPECT_EQ(m_pManager->AddPlacements(m_pTrees, arrMatrices.data(), 2), 0U);
  EXPECT_EQ(m_pManager->AddPlacements(m_pTrees, arrMatrices.data() + 2, 2), 2U);
  EXPECT_EQ(m_pManager->AddPlacements(m_pTrees, nullptr, 2), 0U);
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 4U);
  m_pManager->RemovePlacements(m_pTrees, 1, 2);
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 2U);
  QXMatrix4d mat;
  ASSERT_EQ(m_pManager->GetPlacement(m_pTrees, 1, mat), 1);
  EXPECT_EQ(mat, arrMatrices[3]);
  EXPECT_EQ(m_pManager->GetPlacement(m_pTrees, 2, mat), 0);
  EXPECT_EQ(mat, arrMatrices[3]);
  m_pManager->RemovePlacements(m_pTrees, 2, 1);
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 2U);
  m_pManager->RemovePlacements(m_pTrees, 1, 0xFFFFFFFFU);
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 1U);
}

TEST_F(QXOgreInstancingOperations, SetPlacementsMovesAllOrNone) {
  std::vector<QXMatrix4d> const arrMatrices{At(7, 0, 0), At(8, 0, 0)};
  Add(At(0, 0, 0));
  Add(At(1, 0, 0));
  EXPECT_EQ(m_pManager->SetPlacements(m_pTrees, 1, arrMatrices.data(), 2), 0);
  EXPECT_EQ(m_pManager->SetPlacements(m_pTrees, 3, arrMatrices.data(), 0), 0);
  EXPECT_EQ(m_pManager->SetPlacements(m_pTrees, 1, arrMatrices.data(), 0xFFFFFFFFU), 0);
  EXPECT_EQ(m_pManager->SetPlacements(m_pTrees, 0, nullptr, 2), 0);
  QXMatrix4d mat;
  m_pManager->GetPlacement(m_pTrees, 1, mat);
  EXPECT_EQ(mat, At(1, 0, 0));
  EXPECT_EQ(m_pManager->SetPlacements(m_pTrees, 0, arrMatrices.data(), 2), 1);
  m_pManager->GetPlacement(m_pTrees, 1, mat);
  EXPECT_EQ(mat, arrMatrices[1]);
}

TEST_F(QXOgreInstancingOperations, AnInstancingFromElsewhereChangesNothing) {
  auto* const pForeign = reinterpret_cast<QXInstancing*>(sizeof(void*));  // looking at it would crash
  QXMatrix4d mat = At(1, 2, 3);
  auto const pMesh = MakeSquare(0.1F, RED);
  for (QXInstancing* const pNone : {static_cast<QXInstancing*>(nullptr), pForeign}) {
    m_pManager->DestroyInstancing(pNone);
    EXPECT_EQ(m_pManager->SetMesh(pNone, pMesh.get()), 0);
    EXPECT_EQ(m_pManager->SetSharedMesh(pNone, QXROInstancePtr()), 0);
    EXPECT_EQ(m_pManager->AddPlacements(pNone, &mat, 1), 0U);
    EXPECT_EQ(m_pManager->SetPlacements(pNone, 0, &mat, 1), 0);
    EXPECT_EQ(m_pManager->GetPlacement(pNone, 0, mat), 0);
    m_pManager->RemovePlacements(pNone, 0, 1);
    EXPECT_EQ(m_pManager->GetPlacementCount(pNone), 0U);
    m_pManager->SetPlacementVisible(pNone, 0, 0);
    m_pManager->SetPlacementColor(pNone, 0, QXColorValue3D());
    m_pManager->SetPlacementSelectionID(pNone, 0, 1);
    m_pManager->SetVisibleDistance(pNone, 1.0, 2.0);
    m_pManager->SetCastShadow(pNone, 1);
    m_pManager->SetModelMatrix(pNone, mat);
    EXPECT_EQ(m_pManager->GetBoundingBox(pNone).IsNULL(), 1);
    double dDistance = -1.0;
    unsigned int nPlacement = 9;
    EXPECT_EQ(m_pManager->Intersect(pNone, QXVector3d(), QXVector3d::UNIT_Z, dDistance, nPlacement), 0);
    EXPECT_EQ(m_pManager->GetDrawnPlacementCount(pNone), 0U);
  }
  EXPECT_EQ(m_pManager->GetInstancingCount(), 1U);
  EXPECT_EQ(mat, At(1, 2, 3));
}

TEST_F(QXOgreInstancingOperations, PlacementsThatAreNotThereChangeNothing) {
  GiveSquare();
  Add(At(0, 0, 0));
  m_pManager->SetPlacementVisible(m_pTrees, 1, 0);
  m_pManager->SetPlacementColor(m_pTrees, 1, GREEN);
  m_pManager->SetPlacementSelectionID(m_pTrees, 1, 7);
  EXPECT_EQ(Middle(), RED_PIXEL);
  EXPECT_EQ(Drawn(), 1U);
}

TEST_F(QXOgreInstancingOperations, GeometryThatCannotBeDrawnIsRefused) {
  GiveSquare();
  Add(At(0, 0, 0));
  QXRenderOperationMultiIndex empty;
  EXPECT_EQ(m_pManager->SetMesh(m_pTrees, &empty), 0);
  auto const pBeyond = MakeMesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
  AddRange<unsigned short>(*pBeyond, {0, 1, 3});
  EXPECT_EQ(m_pManager->SetMesh(m_pTrees, pBeyond.get()), 0);
  auto const pNoRange = MakeMesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
  EXPECT_EQ(m_pManager->SetMesh(m_pTrees, pNoRange.get()), 0);
  EXPECT_EQ(m_pManager->SetSharedMesh(m_pTrees, MakeShared(MakeMesh({{0, 0, 0}}))), 0);
  EXPECT_EQ(m_pManager->SetSharedMesh(m_pTrees, QXROInstancePtr(new QXRenderObjectInstance)), 0);
  EXPECT_EQ(Middle(), RED_PIXEL) << "the mesh that it had is still drawn";
  EXPECT_EQ(m_pManager->SetMesh(m_pTrees, nullptr), 1);
  EXPECT_EQ(Middle(), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pManager->GetBoundingBox(m_pTrees).IsNULL(), 1);
}

TEST_F(QXOgreInstancingOperations, OneMeshFollowsAnother) {
  GiveSquare(0.1F, RED);
  Add(At(0, 0, 0));
  EXPECT_EQ(Middle(), RED_PIXEL);
  GiveSquare(0.2F, GREEN);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(37, 32), GREEN_PIXEL);
  EXPECT_NEAR(m_pManager->GetBoundingBox(m_pTrees).GetMax().x, 0.2, 1.0e-6);
}

TEST_F(QXOgreInstancingOperations, BoundsHoldHiddenPlacesAndFollowWhatMoves) {
  EXPECT_EQ(m_pManager->GetBoundingBox(m_pTrees).IsNULL(), 1);
  GiveSquare(0.1F);
  EXPECT_EQ(m_pManager->GetBoundingBox(m_pTrees).IsNULL(), 1);
  Add(At(1, 0, 0));
  Add(At(3, 5, -2));
  m_pManager->SetPlacementVisible(m_pTrees, 1, 0);
  QXBoundingBox box = m_pManager->GetBoundingBox(m_pTrees);
  EXPECT_NEAR(box.GetMin().x, 0.9, 1.0e-6);
  EXPECT_NEAR(box.GetMin().z, -2.0, 1.0e-6);
  EXPECT_NEAR(box.GetMax().x, 3.1, 1.0e-6);
  EXPECT_NEAR(box.GetMax().y, 5.1, 1.0e-6);
  m_pManager->SetModelMatrix(m_pTrees, At(10, 0, 0));
  EXPECT_NEAR(m_pManager->GetBoundingBox(m_pTrees).GetMin().x, 10.9, 1.0e-6);
  m_pManager->RemovePlacements(m_pTrees, 0, 1);
  EXPECT_NEAR(m_pManager->GetBoundingBox(m_pTrees).GetMin().x, 12.9, 1.0e-6);
  QXMatrix4d const mat = At(-20, 0, 0);
  m_pManager->SetPlacements(m_pTrees, 0, &mat, 1);
  EXPECT_NEAR(m_pManager->GetBoundingBox(m_pTrees).GetMin().x, -10.1, 1.0e-6);
}

TEST_F(QXOgreInstancingOperations, ACameraWithoutDistancesSeesWhatIsVisible) {
  GiveSquare(0.2F);
  Add(At(0, 0, 500.0));
  Add(At(0, 0, 1.0e6));
  m_pManager->SetPlacementVisible(m_pTrees, 1, 0);
  m_pCamera->SetPosition(0.0, 0.0, 501.0);
  m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
  m_pCamera->SetProjectionMatrix(QXMatrix4d::ZERO);
  EXPECT_EQ(Middle(), RED_PIXEL);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 1);
  m_pTrees->SetVisible(0);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
}

TEST_F(QXOgreInstancingOperations, UsesOfAMeshTakeThePlaceOfPlacements) {
  GiveSquare();
  Add(At(-0.5, 0, 0));
  QXMatrix4d matFirst = At(0.5, 0, 0);
  QXMatrix4d matSecond = At(0, 0.5, 0);
  QXRenderOperationInstance first;
  first.AddMatrix(&matFirst);
  first.AddMatrix(nullptr);
  QXRenderOperationInstance second;
  second.AddMatrix(&matSecond);
  m_pTrees->m_arrInstances.Add(&first);
  m_pTrees->m_arrInstances.Add(nullptr);
  m_pTrees->m_arrInstances.Add(&second);
  Frame();
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 1U) << "nothing is read before UpdateInstances";
  m_pTrees->UpdateInstances();
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 2U);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 16), RED_PIXEL);
  EXPECT_EQ(picture.At(16, 32), BACKGROUND_PIXEL);
  // The matrices are copied.
  matFirst = At(50, 0, 0);
  EXPECT_EQ(Frame().At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreInstancingOperations, ARayFindsTheNearestVisiblePlace) {
  GiveSquare(0.5F);
  QXMatrix4d matMirrored = At(0, 0, 3);
  matMirrored[0][0] = -1.0;
  Add(At(0, 0, 1));
  Add(matMirrored);
  Add(At(10, 0, 7));
  double dDistance = 0.0;
  unsigned int nPlacement = 99;
  QXVector3d const vecDown(0.0, 0.0, -2.0);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.1, 0.2, 9.0), vecDown, dDistance, nPlacement), 1);
  EXPECT_EQ(nPlacement, 1U);
  EXPECT_DOUBLE_EQ(dDistance, 3.0);
  m_pManager->SetPlacementVisible(m_pTrees, 1, 0);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.1, 0.2, 9.0), vecDown, dDistance, nPlacement), 1);
  EXPECT_EQ(nPlacement, 0U);
  EXPECT_DOUBLE_EQ(dDistance, 4.0);
  dDistance = -7.0;
  nPlacement = 99;
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(3.0, 0.0, 9.0), vecDown, dDistance, nPlacement), 0);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.1, 0.2, 0.5), vecDown, dDistance, nPlacement), 0)
      << "what is behind the ray is not hit";
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.1, 0.2, 9.0), QXVector3d::ZERO, dDistance, nPlacement), 0);
  EXPECT_EQ(dDistance, -7.0);
  EXPECT_EQ(nPlacement, 99U);
  m_pManager->SetModelMatrix(m_pTrees, At(3, 0, 0));
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(3.0, 0.0, 9.0), vecDown, dDistance, nPlacement), 1);
  m_pTrees->SetVisible(0);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(3.0, 0.0, 9.0), vecDown, dDistance, nPlacement), 0);
  m_pTrees->SetVisible(1);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(3.0, 0.0, 9.0), vecDown, dDistance, nPlacement), 1);
}

TEST_F(QXOgreInstancingOperations, RaysMeetTheTrianglesThatAMeshIsMadeOf) {
  // The same against all triangles of all places, one after the other.
  auto const pMesh = MakeRoof();
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  auto const arrPlacements = MakePlacements(60, 23, QXVector3d(6.0e6, 5.0e6, 0.0));
  m_pManager->AddPlacements(m_pTrees, arrPlacements.data(), 60);
  float const* const p = pMesh->m_pVertexBlock->m_pBuffer;
  std::size_t const nStride = pMesh->m_pVertexBlock->m_nStride;
  unsigned int const arrIndices[] = {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7};
  std::mt19937 engine(29);
  std::uniform_real_distribution<double> across(-1.0, 1.0);
  int nHits = 0;
  for (int nRay = 0; nRay < 300; ++nRay) {
    QXVector3d const vecOrigin(6.0e6 + across(engine), 5.0e6 + across(engine), 10.0);
    QXVector3d const vecDirection(0.1 * across(engine), 0.1 * across(engine), -1.0);
    double dExpected = -1.0;
    unsigned int nExpected = 0;
    for (unsigned int i = 0; i < 60; ++i) {
      for (int k = 0; k < 12; k += 3) {
        QXVector3d vecCorners[3];
        for (int c = 0; c < 3; ++c) {
          float const* const q = p + nStride * arrIndices[k + c];
          vecCorners[c] = QXVector3d(q[0], q[1], q[2]).MultiplyMatrix(arrPlacements[i]);
        }
        QXVector3d const vecNormal = (vecCorners[1] - vecCorners[0]).CrossProduct(vecCorners[2] - vecCorners[0]);
        double const d = (vecCorners[0] - vecOrigin).DotProduct(vecNormal) / vecDirection.DotProduct(vecNormal);
        QXVector3d const vecHit = vecOrigin + QXVector3d(d * vecDirection.x, d * vecDirection.y, d * vecDirection.z);
        bool bInside = d >= 0.0;
        for (int c = 0; c < 3; ++c)
          bInside =
              bInside &&
              (vecCorners[(c + 1) % 3] - vecCorners[c]).CrossProduct(vecHit - vecCorners[c]).DotProduct(vecNormal) >=
                  0.0;
        if (!bInside || (dExpected >= 0.0 && d >= dExpected)) continue;
        dExpected = d;
        nExpected = i;
      }
    }
    double dDistance = -1.0;
    unsigned int nPlacement = 0;
    unsigned char const bHit = m_pManager->Intersect(m_pTrees, vecOrigin, vecDirection, dDistance, nPlacement);
    ASSERT_EQ(bHit, dExpected >= 0.0 ? 1 : 0) << nRay;
    if (!bHit) continue;
    ++nHits;
    EXPECT_NEAR(dDistance, dExpected, 1.0e-6);
    EXPECT_EQ(nPlacement, nExpected);
  }
  EXPECT_GT(nHits, 100);
}

TEST_F(QXOgreInstancingOperations, ASharedMeshStandsAtItsOwnPlaceToo) {
  QXROInstancePtr const pMesh = MakeShared(MakeSquare(0.1F, RED));
  ASSERT_EQ(m_pManager->SetSharedMesh(m_pTrees, pMesh), 1);
  Add(At(0.5, 0, 0));
  EXPECT_EQ(m_pManager->GetBoundingBox(m_pTrees).IsNULL(), 0);
  QXPicture const both = Frame();
  EXPECT_EQ(both.At(32, 32), RED_PIXEL);
  EXPECT_EQ(both.At(48, 32), RED_PIXEL);
  pMesh->GetRenderOperation3D()->SetVisible(0);
  QXPicture const one = Frame();
  EXPECT_EQ(one.At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(one.At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreInstancingOperations, ASharedMeshLooksAsItsDrawableDoes) {
  QXROInstancePtr const pMesh = MakeShared(MakeSquare(0.1F, QXColorValue3D::White));
  m_pManager->SetSharedMesh(m_pTrees, pMesh);
  Add(At(0.5, 0, 0));
  Frame();
  QXRenderOperation3D& drawable = *pMesh->GetRenderOperation3D();
  drawable.SetColor(GREEN);
  EXPECT_EQ(Frame().At(48, 32), GREEN_PIXEL);
  drawable.SetModelMatrix(At(0, 0.5, 0));
  EXPECT_EQ(Frame().At(48, 16), GREEN_PIXEL);
  drawable.SetModelMatrix(QXMatrix4d());
  drawable.SetIndexRangeVisible(0, 0);
  EXPECT_EQ(Frame().At(48, 32), BACKGROUND_PIXEL);
  double dDistance = 0.0;
  unsigned int nPlacement = 0;
  QXVector3d const vecDown(0, 0, -1);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.5, 0, 1), vecDown, dDistance, nPlacement), 0);
  drawable.SetIndexRangeVisible(0, 1);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.5, 0, 1), vecDown, dDistance, nPlacement), 1);
  drawable.SetOpacity(0.5);
  EXPECT_NEAR(Frame().At(48, 32).g, 128, 1);
  drawable.SetOpacity(1.0);
  float const fWide[] = {-0.3F, -0.3F, 0, 0.3F, -0.3F, 0, 0.3F, 0.3F, 0, -0.3F, 0.3F, 0};
  drawable.UpdatePositions(0, 4, fWide);
  EXPECT_EQ(Frame().At(40, 32), GREEN_PIXEL);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.25, 0, 1), vecDown, dDistance, nPlacement), 1);
  drawable.SetRenderOperationMultiIndex(MakeSquare(0.1F, RED).get());
  drawable.SetColor(QXColorValue3D::White);
  EXPECT_EQ(Frame().At(48, 32), RED_PIXEL);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.25, 0, 1), vecDown, dDistance, nPlacement), 0);
  drawable.ClearGeometry();
  EXPECT_EQ(Frame().At(48, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pManager->GetBoundingBox(m_pTrees).IsNULL(), 1);
}

TEST_F(QXOgreInstancingOperations, ASharedMeshLivesAsLongAsItIsDrawn) {
  QXROInstancePtr pMesh = MakeShared(MakeSquare(0.1F, RED));
  m_pManager->SetSharedMesh(m_pTrees, pMesh);
  QXInstancing* const pCars = m_pManager->CreateInstancing(L"cars", L"3D");
  m_pManager->SetSharedMesh(pCars, pMesh);
  Add(At(0.5, 0, 0));
  QXMatrix4d const mat = At(-0.5, 0, 0);
  m_pManager->AddPlacements(pCars, &mat, 1);
  unsigned int const nDrawables = m_pGraphics3D->GetRenderOperationManager()->GetRenderOperationCount();
  pMesh.SetNull();
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  m_pManager->DestroyInstancing(m_pTrees);
  EXPECT_EQ(m_pGraphics3D->GetRenderOperationManager()->GetRenderOperationCount(), nDrawables);
  EXPECT_EQ(Frame().At(16, 32), RED_PIXEL);
  EXPECT_EQ(m_pManager->SetSharedMesh(pCars, QXROInstancePtr()), 1);
  EXPECT_EQ(m_pGraphics3D->GetRenderOperationManager()->GetRenderOperationCount(), nDrawables - 1);
  EXPECT_EQ(CountDrawn(Frame()), 0);
}

TEST_F(QXOgreInstancingOperations, ASharedMeshMayTakeItsOwnPlace) {
  // The pointer that is given may be the one that is held.
  QXROInstancePtr pMesh = MakeShared(MakeSquare(0.1F, RED));
  m_pManager->SetSharedMesh(m_pTrees, pMesh);
  EXPECT_EQ(m_pManager->SetSharedMesh(m_pTrees, pMesh), 1);
  pMesh.SetNull();
  Add(At(0.5, 0, 0));
  EXPECT_EQ(Frame().At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreInstancingOperations, AMeshWithANewDrawableIsDrawnWithThat) {
  QXROInstancePtr const pMesh = MakeShared(MakeSquare(0.1F, RED));
  m_pManager->SetSharedMesh(m_pTrees, pMesh);
  Add(At(0.5, 0, 0));
  Frame();
  pMesh->m_pROMultiIndex = MakeSquare(0.1F, GREEN).release();
  pMesh->Initialize();
  EXPECT_EQ(Frame().At(48, 32), GREEN_PIXEL);
}

TEST_F(QXOgreInstancingOperations, TheSceneMayGoFirst) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"other"), 1);
  QXInstancing* const pOther = m_pManager->CreateInstancing(L"other", L"other");
  m_pManager->SetMesh(pOther, MakeSquare(0.1F, RED).get());
  QXMatrix4d const mat;
  m_pManager->AddPlacements(pOther, &mat, 1);
  EXPECT_EQ(CountDrawn(Frame()), 0) << "it stands in its own scene";
  m_pGraphics3D->DestroyScene(L"other");
  EXPECT_EQ(m_pManager->GetInstancing(L"other"), pOther);
  EXPECT_EQ(m_pManager->GetBoundingBox(pOther).IsNULL(), 0);
  m_pManager->AddPlacements(pOther, &mat, 1);
  m_pManager->Update();
  EXPECT_EQ(CountDrawn(Frame()), 0);
  m_pManager->DestroyInstancing(pOther);
}

TEST_F(QXOgreInstancingOperations, InstancingsGoWithTheResources) {
  GiveSquare();
  Add(At(0, 0, 0));
  m_pGraphics3D->ClearResource();
  EXPECT_EQ(m_pManager->GetInstancingCount(), 0U);
  EXPECT_EQ(CountDrawn(Frame()), 0);
}

TEST_F(QXOgreInstancingOperations, TheRendererMayGoWithAllOfThem) {
  GiveSquare();
  Add(At(0, 0, 0));
  QXInstancing* const pShared = m_pManager->CreateInstancing(L"shared", L"3D");
  m_pManager->SetSharedMesh(pShared, MakeShared(MakeRoof()));
  QXMatrix4d const mat;
  m_pManager->AddPlacements(pShared, &mat, 1);
  Frame();
  m_pGraphics3D.reset();
}

TEST_F(QXOgreInstancingOperations, APlaceUnderANodeIsNotTheirs) {
  // What is drawn of one node alone shows nothing of the scene's instancings.
  GiveSquare();
  Add(At(0, 0, 0));
  QXRenderTarget* const pPage = MakeTarget(L"page");
  ASSERT_EQ(m_pGraphics3D->CreateSceneNode(L"", L"", L"page"), 1);
  m_pGraphics3D->RenderPatchToTexture(32.0, 32.0, 64.0, 64.0, pPage, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  EXPECT_EQ(Drawn(), 0U);
}

}  // namespace QXC
