#include <QxGraphics3D/testing/QXNullHwInstancingManager.h>

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/model/QXRenderObjectInstance.h>
#include <QxGraphics3D/model/QXRenderOperationInstance.h>
#include <QxGraphics3D/testing/QXNullCamera.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>

#include "QXTestGeometry.h"

namespace QXC {
namespace {

QXMatrix4d At(double dX, double dY, double dZ) {
  QXMatrix4d matrix;
  matrix.SetTrans(QXVector3d(dX, dY, dZ));
  return matrix;
}

/// A renderer with an instancing "trees" of squares and a camera that looks down on it from a height of 10.
class QXNullHwInstancing : public testing::Test {
protected:
  QXNullHwInstancing() : m_pGraphics(std::make_unique<QXNullGraphics3D>()) {
    m_pGraphics->Initialize(L"");
    m_pManager = m_pGraphics->GetHwInstancingManager();
    m_pTrees = m_pManager->CreateInstancing(L"trees", L"Scene3D");
    m_pCamera = dynamic_cast<QXNullCamera*>(m_pGraphics->CreateCamera(L"eye", L"Scene3D"));
    m_pCamera->SetPosition(0.0, 0.0, 10.0);
    m_pTarget.reset(dynamic_cast<QXNullRenderTarget*>(
        m_pGraphics->CreateRenderTexture(L"picture", PF_A8R8G8B8, 64, 64, 0, 32, L"")));
    m_pTarget->AddViewport(m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  }
  void GiveMesh() { m_pManager->SetMesh(m_pTrees, MakeSquare().get()); }
  void Add(double dX, double dY, double dZ) {
    QXMatrix4d const matrix = At(dX, dY, dZ);
    m_pManager->AddPlacements(m_pTrees, &matrix, 1);
  }
  unsigned int Draw() {
    m_pTarget->Update();
    return m_pManager->GetDrawnPlacementCount(m_pTrees);
  }

  std::unique_ptr<QXNullGraphics3D> m_pGraphics;
  QXHwInstancingManager* m_pManager;
  QXInstancing* m_pTrees;
  QXNullCamera* m_pCamera;
  std::unique_ptr<QXNullRenderTarget> m_pTarget;
};

TEST_F(QXNullHwInstancing, NamesAreUniqueAndNeedAScene) {
  EXPECT_EQ(m_pManager->IsSupported(), 1);
  EXPECT_GE(m_pManager->GetMaxPlacementCount(), 1u);
  EXPECT_NE(m_pTrees, nullptr);
  EXPECT_EQ(m_pManager->CreateInstancing(L"trees", L"Scene3D"), nullptr);
  EXPECT_EQ(m_pManager->CreateInstancing(L"", L"Scene3D"), nullptr);
  EXPECT_EQ(m_pManager->CreateInstancing(L"cars", L"nowhere"), nullptr);
  EXPECT_EQ(m_pManager->GetInstancing(L"trees"), m_pTrees);
  EXPECT_EQ(m_pManager->GetInstancing(L"cars"), nullptr);
  EXPECT_EQ(m_pManager->GetInstancingCount(), 1u);
  m_pManager->DestroyInstancing(m_pTrees);
  EXPECT_EQ(m_pManager->GetInstancingCount(), 0u);
  m_pManager->CreateInstancing(L"a", L"Scene3D");
  m_pManager->CreateInstancing(L"b", L"Scene3D");
  m_pManager->DestroyAllInstancings();
  EXPECT_EQ(m_pManager->GetInstancing(L"a"), nullptr);
}

TEST_F(QXNullHwInstancing, PlacementsAreNumberedInTheirOrderAndMoveUp) {
  std::vector<QXMatrix4d> const arrMatrices{At(0, 0, 0), At(1, 0, 0), At(2, 0, 0), At(3, 0, 0)};
  EXPECT_EQ(m_pManager->AddPlacements(m_pTrees, arrMatrices.data(), 2), 0u);
  EXPECT_EQ(m_pManager->AddPlacements(m_pTrees, arrMatrices.data() + 2, 2), 2u);
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 4u);
  m_pManager->RemovePlacements(m_pTrees, 1, 2);
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 2u);
  QXMatrix4d matrix;
  ASSERT_EQ(m_pManager->GetPlacement(m_pTrees, 1, matrix), 1);
  EXPECT_EQ(matrix[3][0], 3.0);
  EXPECT_EQ(m_pManager->GetPlacement(m_pTrees, 2, matrix), 0);
  EXPECT_EQ(matrix[3][0], 3.0);
  m_pManager->RemovePlacements(m_pTrees, 1, 100);
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 1u);
  m_pManager->RemovePlacements(m_pTrees, 1, 1);
  EXPECT_EQ(m_pManager->GetPlacementCount(m_pTrees), 1u);
}

TEST_F(QXNullHwInstancing, SetPlacementsMovesAllOrNone) {
  std::vector<QXMatrix4d> const arrMatrices{At(7, 0, 0), At(8, 0, 0)};
  Add(0.0, 0.0, 0.0);
  Add(1.0, 0.0, 0.0);
  EXPECT_EQ(m_pManager->SetPlacements(m_pTrees, 1, arrMatrices.data(), 2), 0);
  QXMatrix4d matrix;
  m_pManager->GetPlacement(m_pTrees, 1, matrix);
  EXPECT_EQ(matrix[3][0], 1.0);
  EXPECT_EQ(m_pManager->SetPlacements(m_pTrees, 0, arrMatrices.data(), 2), 1);
  m_pManager->GetPlacement(m_pTrees, 1, matrix);
  EXPECT_EQ(matrix[3][0], 8.0);
}

TEST_F(QXNullHwInstancing, AnInstancingFromElsewhereChangesNothing) {
  auto* const pForeign = reinterpret_cast<QXInstancing*>(sizeof(void*));  // looking at it would crash
  QXMatrix4d matrix = At(1, 2, 3);
  for (QXInstancing* const pNone : {static_cast<QXInstancing*>(nullptr), pForeign}) {
    m_pManager->DestroyInstancing(pNone);
    EXPECT_EQ(m_pManager->SetMesh(pNone, MakeSquare().get()), 0);
    EXPECT_EQ(m_pManager->SetSharedMesh(pNone, QXROInstancePtr()), 0);
    EXPECT_EQ(m_pManager->AddPlacements(pNone, &matrix, 1), 0u);
    EXPECT_EQ(m_pManager->SetPlacements(pNone, 0, &matrix, 1), 0);
    EXPECT_EQ(m_pManager->GetPlacement(pNone, 0, matrix), 0);
    m_pManager->RemovePlacements(pNone, 0, 1);
    EXPECT_EQ(m_pManager->GetPlacementCount(pNone), 0u);
    m_pManager->SetPlacementVisible(pNone, 0, 0);
    m_pManager->SetPlacementColor(pNone, 0, QXColorValue3D());
    m_pManager->SetPlacementSelectionID(pNone, 0, 1);
    m_pManager->SetVisibleDistance(pNone, 1.0, 2.0);
    m_pManager->SetCastShadow(pNone, 1);
    m_pManager->SetModelMatrix(pNone, matrix);
    EXPECT_EQ(m_pManager->GetBoundingBox(pNone).IsNULL(), 1);
    double dDistance = -1.0;
    unsigned int nPlacement = 9;
    EXPECT_EQ(m_pManager->Intersect(pNone, QXVector3d(), QXVector3d::UNIT_Z, dDistance, nPlacement), 0);
    EXPECT_EQ(m_pManager->GetDrawnPlacementCount(pNone), 0u);
  }
  EXPECT_EQ(m_pManager->GetInstancingCount(), 1u);
}

TEST_F(QXNullHwInstancing, CamerasDrawWhatTheySeeInOneOperationForEachRange) {
  GiveMesh();
  Add(0.0, 0.0, 0.0);
  Add(2.0, 0.0, 0.0);
  Add(1000.0, 0.0, 0.0);
  EXPECT_EQ(Draw(), 2u);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 4);
  EXPECT_EQ(m_pGraphics->GetDrawOperationCount(), 2u) << "the square has two ranges";
}

TEST_F(QXNullHwInstancing, AHostMayLimitThePlacesOfOneOperation) {
  GiveMesh();
  for (int i = 0; i < 5; ++i) Add(0.1 * i, 0.0, 0.0);
  m_pTrees->m_nMaxPlacements = 2;
  EXPECT_EQ(Draw(), 5u);
  EXPECT_EQ(m_pGraphics->GetDrawOperationCount(), 6u);
}

TEST_F(QXNullHwInstancing, NothingIsDrawnWithoutMeshOrPlaces) {
  EXPECT_EQ(Draw(), 0u);
  Add(0.0, 0.0, 0.0);
  EXPECT_EQ(Draw(), 0u);
  EXPECT_EQ(m_pGraphics->GetDrawOperationCount(), 0u);
  GiveMesh();
  EXPECT_EQ(Draw(), 1u);
  EXPECT_EQ(m_pManager->SetMesh(m_pTrees, nullptr), 1);
  EXPECT_EQ(Draw(), 0u);
}

TEST_F(QXNullHwInstancing, HiddenAndFarPlacesAreLeftOut) {
  GiveMesh();
  Add(0.0, 0.0, 0.0);
  Add(0.0, 0.0, -20.0);
  EXPECT_EQ(Draw(), 2u);
  m_pManager->SetVisibleDistance(m_pTrees, 0.0, 15.0);
  EXPECT_EQ(Draw(), 1u);
  m_pManager->SetVisibleDistance(m_pTrees, 15.0, 0.0);
  EXPECT_EQ(Draw(), 1u);
  m_pManager->SetVisibleDistance(m_pTrees, 0.0, 0.0);
  m_pManager->SetPlacementVisible(m_pTrees, 1, 0);
  EXPECT_EQ(Draw(), 1u);
  m_pTrees->SetVisible(0);
  EXPECT_EQ(Draw(), 0u);
}

TEST_F(QXNullHwInstancing, BoundsFollowThePlacesAndTheMatrixOfTheWhole) {
  EXPECT_EQ(m_pManager->GetBoundingBox(m_pTrees).IsNULL(), 1);
  GiveMesh();
  EXPECT_EQ(m_pManager->GetBoundingBox(m_pTrees).IsNULL(), 1);
  Add(0.0, 0.0, 0.0);
  Add(10.0, 0.0, 5.0);
  m_pManager->SetModelMatrix(m_pTrees, At(100.0, 0.0, 0.0));
  QXBoundingBox const box = m_pManager->GetBoundingBox(m_pTrees);
  EXPECT_EQ(box.GetMin(), QXVector3d(99.0, -1.0, 0.0));
  EXPECT_EQ(box.GetMax(), QXVector3d(111.0, 1.0, 5.0));
}

// From the mesh outwards: the matrix that its operation brought, that of the place, that of the whole.
TEST_F(QXNullHwInstancing, TheMatrixOfTheMeshComesFirst) {
  auto pSquare = MakeSquare();
  QXMatrix4d matMesh = At(3.0, 0.0, 0.0);
  pSquare->SetMatrix(matMesh);
  m_pManager->SetMesh(m_pTrees, pSquare.get());
  QXMatrix4d matDouble;
  matDouble[0][0] = 2.0;
  m_pManager->AddPlacements(m_pTrees, &matDouble, 1);
  QXBoundingBox const box = m_pManager->GetBoundingBox(m_pTrees);
  EXPECT_EQ(box.GetMin(), QXVector3d(4.0, -1.0, 0.0));
  EXPECT_EQ(box.GetMax(), QXVector3d(8.0, 1.0, 0.0));
}

TEST_F(QXNullHwInstancing, ARayFindsTheNearestVisiblePlace) {
  GiveMesh();
  Add(0.0, 0.0, 0.0);
  Add(0.0, 0.0, 4.0);
  Add(50.0, 0.0, 8.0);
  double dDistance = -1.0;
  unsigned int nPlacement = 9;
  QXVector3d const vecDown(0.0, 0.0, -2.0);
  ASSERT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.5, 0.2, 10.0), vecDown, dDistance, nPlacement), 1);
  EXPECT_DOUBLE_EQ(dDistance, 3.0);
  EXPECT_EQ(nPlacement, 1u);
  m_pManager->SetPlacementVisible(m_pTrees, 1, 0);
  ASSERT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(0.5, 0.2, 10.0), vecDown, dDistance, nPlacement), 1);
  EXPECT_EQ(nPlacement, 0u);
  EXPECT_EQ(m_pManager->Intersect(m_pTrees, QXVector3d(20.0, 0.0, 10.0), vecDown, dDistance, nPlacement), 0);
}

TEST_F(QXNullHwInstancing, ASharedMeshLivesAsLongAsItIsDrawn) {
  auto pSquare = MakeSquare();
  pSquare->m_Bounds = QXBoundingBox(QXVector3d(-1.0, -1.0, 0.0), QXVector3d(1.0, 1.0, 0.0));
  QXROInstancePtr pMesh(new QXRenderObjectInstance(pSquare.release(), m_pGraphics.get()));
  EXPECT_EQ(m_pManager->SetSharedMesh(m_pTrees, pMesh), 1);
  EXPECT_EQ(pMesh.UseCount(), 2u);
  Add(0.0, 0.0, 0.0);
  pMesh->GetRenderOperation3D()->SetVisible(0);
  pMesh.SetNull();
  EXPECT_EQ(Draw(), 1u);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 2);
  EXPECT_EQ(m_pManager->SetSharedMesh(m_pTrees, QXROInstancePtr()), 1);
  EXPECT_EQ(Draw(), 0u);
  EXPECT_EQ(m_pManager->SetSharedMesh(m_pTrees, QXROInstancePtr(new QXRenderObjectInstance)), 0)
      << "an object without a renderer has no drawable";
}

TEST_F(QXNullHwInstancing, UsesOfAMeshBecomePlacements) {
  GiveMesh();
  Add(9.0, 9.0, 9.0);
  QXMatrix4d matFirst = At(1, 0, 0);
  QXMatrix4d matSecond = At(2, 0, 0);
  QXRenderOperationInstance first;
  QXRenderOperationInstance second;
  first.AddMatrix(&matFirst);
  first.AddMatrix(nullptr);
  second.AddMatrix(&matSecond);
  m_pTrees->m_arrInstances.Add(&first);
  m_pTrees->m_arrInstances.Add(nullptr);
  m_pTrees->m_arrInstances.Add(&second);
  m_pTrees->UpdateInstances();
  ASSERT_EQ(m_pManager->GetPlacementCount(m_pTrees), 2u);
  QXMatrix4d matrix;
  m_pManager->GetPlacement(m_pTrees, 1, matrix);
  EXPECT_EQ(matrix[3][0], 2.0);
}

TEST_F(QXNullHwInstancing, ColoursAndIdentifiersStayWithTheirPlace) {
  Add(0.0, 0.0, 0.0);
  Add(1.0, 0.0, 0.0);
  m_pManager->SetPlacementColor(m_pTrees, 1, QXColorValue3D(0.5, 0.25, 0.125, 1.0));
  m_pManager->SetPlacementSelectionID(m_pTrees, 1, 77);
  m_pManager->SetPlacementSelectionID(m_pTrees, 2, 78);
  m_pManager->RemovePlacements(m_pTrees, 0, 1);
  auto const& placements = dynamic_cast<QXNullInstancing&>(*m_pTrees).m_arrPlacements;
  ASSERT_EQ(placements.size(), 1u);
  EXPECT_EQ(placements[0].m_nSelectionID, 77u);
  EXPECT_EQ(placements[0].m_Color.g, 0.25);
}

TEST_F(QXNullHwInstancing, AnInstancingOutlivesItsScene) {
  m_pGraphics->CreateScene(L"city");
  QXInstancing* const pCars = m_pManager->CreateInstancing(L"cars", L"city");
  m_pManager->SetMesh(pCars, MakeSquare().get());
  m_pGraphics->DestroyScene(L"city");
  QXMatrix4d const matrix;
  EXPECT_EQ(m_pManager->AddPlacements(pCars, &matrix, 1), 0u);
  EXPECT_EQ(m_pManager->GetPlacementCount(pCars), 1u);
  m_pManager->DestroyInstancing(pCars);
}

TEST_F(QXNullHwInstancing, ClearResourceEndsThemBeforeTheirTextures) {
  auto pSquare = MakeSquare();
  auto* const pPackage = new QXTexturePackage;
  pPackage->m_pTextures[0] = m_pGraphics->GetTextureManager()->GetTexture(L"bark", 1);
  pSquare->SetAt(new QXVertexIndexPackage, pPackage);
  m_pManager->SetMesh(m_pTrees, pSquare.get());
  m_pGraphics->ClearResource();
  EXPECT_EQ(m_pManager->GetInstancingCount(), 0u);
}

TEST(QXNullHwInstancingManager, EverythingIsReleasedWithTheRenderer) {
  int const nBefore = QXNullObject::GetLiveCount();
  {
    QXNullGraphics3D graphics;
    graphics.Initialize(L"");
    QXInstancing* const pTrees = graphics.GetHwInstancingManager()->CreateInstancing(L"trees", L"Scene3D");
    graphics.GetHwInstancingManager()->SetMesh(pTrees, MakeSquare().get());
  }
  EXPECT_EQ(QXNullObject::GetLiveCount(), nBefore);
}

TEST(QXNullHwInstancingManager, CallsAreWrittenDown) {
  QXRecordingGraphics3D graphics;
  graphics.Initialize(L"");
  graphics.GetLog().Clear();
  QXHwInstancingManager& manager = *graphics.GetHwInstancingManager();
  QXInstancing* const pTrees = manager.CreateInstancing(L"trees", L"Scene3D");
  QXMatrix4d const matrix;
  manager.AddPlacements(pTrees, &matrix, 1);
  manager.Update();
  EXPECT_EQ(graphics.GetLog().GetText(), "instancings: CreateInstancing(\"trees\", \"Scene3D\")\n"
                                         "instancings: AddPlacements(instancing \"trees\", 1)\n"
                                         "instancings: Update()\n");
}

}  // namespace
}  // namespace QXC
