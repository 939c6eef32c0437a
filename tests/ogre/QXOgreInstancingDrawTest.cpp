// What instancings look like: as drawables at the same places do.
#include <initializer_list>
#include <limits>
#include <set>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include <tests/ogre/QXOgreInstancing.h>

namespace QXC {

using QXOgreInstancingDraw = QXOgreInstancingScenery;

TEST_F(QXOgreInstancingDraw, EachPlaceIsPickedByItsIdentifier) {
  GiveSquare(0.1F);
  QXSceneOperation const& numbering = m_pGraphics3D->m_SceneOperation;
  for (int i = 0; i < 16; ++i) {
    Add(At(-0.75 + 0.5 * (i % 4), -0.75 + 0.5 * (i / 4), 0.0));
    m_pManager->SetPlacementSelectionID(m_pTrees, static_cast<unsigned int>(i), numbering.GetID(2 + i % 2, 70000 + i));
  }
  Frame();
  unsigned int const nDrawn = Drawn();
  QXVector3d vecHit;
  for (int i = 0; i < 16; ++i) {
    int const nX = 8 + 16 * (i % 4);
    int const nY = 8 + 16 * (i / 4);
    EXPECT_EQ(m_pGraphics3D->PickObject(nX, nY, vecHit), numbering.GetID(2 + i % 2, 70000 + i)) << i;
    EXPECT_NEAR(vecHit.x, (nX + 0.5) / 32.0 - 1.0, 1e-6);
    std::set<int> setLayers{2};
    QdcArray<QXGeometry*> arrGeometries;
    int nLayer = 0;
    int nObject = 0;
    m_pGraphics3D->GetSelInfo(
        static_cast<float>(nX), static_cast<float>(nY), nLayer, nObject, arrGeometries, setLayers, 0, nullptr);
    EXPECT_EQ(nObject, i % 2 == 0 ? 70000 + i : 0) << i;
  }
  EXPECT_EQ(m_pGraphics3D->PickObject(16, 16, vecHit), 0U);
  EXPECT_EQ(Drawn(), nDrawn) << "a pick is no picture";
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(8, 8), RED_PIXEL);
}

TEST_F(QXOgreInstancingDraw, PickedPlacesAreShownAsSelected) {
  GiveSquare(0.1F);
  for (int i = 0; i < 3; ++i) {
    Add(At(-0.5 + 0.5 * i, 0.0, 0.0));
    if (i > 0) m_pManager->SetPlacementSelectionID(m_pTrees, static_cast<unsigned int>(i), 70 + i);
  }
  m_pGraphics3D->SetSelectionColor(QXColorValue3D(0.0, 0.0, 1.0, 1.0));
  auto const shows = [&](std::initializer_list<unsigned int> arrIDs, QXPixel const& second, QXPixel const& third) {
    QdcArray<unsigned int> arrSelected;
    for (unsigned int const nID : arrIDs) arrSelected.Add(nID);
    m_pGraphics3D->SetSelectedObjects(arrSelected);
    QXPicture const picture = Frame();
    EXPECT_EQ(picture.At(16, 32), RED_PIXEL) << "0 is no identifier";
    EXPECT_EQ(picture.At(32, 32), second);
    EXPECT_EQ(picture.At(48, 32), third);
  };
  QXPixel const blue{0, 0, 255, 255};
  shows({0, 71}, blue, RED_PIXEL);
  shows({72, 99}, RED_PIXEL, blue);
  QXVector3d vecHit;
  EXPECT_EQ(m_pGraphics3D->PickObject(48, 32, vecHit), 72U);
  EXPECT_EQ(m_pGraphics3D->PickObject(32, 32, vecHit), 71U);
  // The mark stays with its place, and another mesh has the same colour for it.
  m_pManager->RemovePlacements(m_pTrees, 1, 1);
  GiveSquare(0.1F);
  EXPECT_EQ(Frame().At(48, 32), blue);
  m_pGraphics3D->SetSelectionColor(GREEN);
  EXPECT_EQ(Frame().At(48, 32), GREEN_PIXEL);
  m_pGraphics3D->ClearSelectedObjects();
  EXPECT_EQ(Frame().At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreInstancingDraw, ThousandsOfPlacesAreOneOperation) {
  GiveSquare(0.005F);
  std::vector<QXMatrix4d> arrPlacements;
  for (int i = 0; i < 10000; ++i) arrPlacements.push_back(At(-0.99 + 0.02 * (i % 100), -0.99 + 0.02 * (i / 100), 0.0));
  EXPECT_EQ(m_pManager->AddPlacements(m_pTrees, arrPlacements.data(), 10000), 0U);
  Frame();
  EXPECT_EQ(Drawn(), 10000U);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 20000);
}

TEST_F(QXOgreInstancingDraw, PlacesLookAsDrawablesThereDo) {
  for (unsigned int const nSeed : {1U, 2U, 3U, 4U}) {
    SCOPED_TRACE(nSeed);
    auto const pMesh = MakeRoof();
    auto const arrPlacements = MakePlacements(40, nSeed, QXVector3d::ZERO);
    m_pTarget->SetSunLightEnable(nSeed % 2);
    DrawEach(*pMesh, arrPlacements);
    m_pManager->RemovePlacements(m_pTrees, 0, 1000);
    m_pManager->SetMesh(m_pTrees, nullptr);
    QXPicture const expected = Frame();
    EXPECT_GT(CountDrawn(expected), 500);
    DeleteDrawables();
    EXPECT_EQ(CountDrawn(Frame()), 0);
    ASSERT_EQ(m_pManager->SetMesh(m_pTrees, pMesh.get()), 1);
    m_pManager->AddPlacements(m_pTrees, arrPlacements.data(), 40);
    ExpectSame(Frame(), expected);
    EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U) << "the roof has two ranges";
  }
}

TEST_F(QXOgreInstancingDraw, PlacesFarFromTheWorldsZeroAreRightToThePixel) {
  QXVector3d const vecMiddle(6.0e6, -5.5e6, 120.0);
  auto const pMesh = MakeRoof();
  auto const arrPlacements = MakePlacements(40, 7, vecMiddle);
  m_pGraphics3D->SetRelativeOrigin(QXVector3d(6.0e6, -5.5e6, 0.0));
  m_pCamera->SetPosition(vecMiddle.x, vecMiddle.y, vecMiddle.z + 10.0);
  DrawEach(*pMesh, arrPlacements);
  QXPicture const expected = Frame();
  EXPECT_GT(CountDrawn(expected), 500);
  DeleteDrawables();
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  m_pManager->AddPlacements(m_pTrees, arrPlacements.data(), 40);
  ExpectSame(Frame(), expected);
  // Wherever the movable origin is, the places stay.
  m_pGraphics3D->SetRelativeOrigin(QXVector3d::ZERO);
  ExpectSame(Frame(), expected);
}

TEST_F(QXOgreInstancingDraw, AMeshFarFromItsOwnZeroIsRightToThePixel) {
  auto const pMesh = MakeMesh({{4.0e6F, 2.0e6F, 0.0F}, {4.0e6F + 0.5F, 2.0e6F, 0.0F},
      {4.0e6F + 0.5F, 2.0e6F + 0.5F, 0.0F}, {4.0e6F, 2.0e6F + 0.5F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  Add(At(-4.0e6, -2.0e6, 0.0));
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(33, 30), RED_PIXEL);
  EXPECT_EQ(picture.At(46, 17), RED_PIXEL);
  EXPECT_EQ(picture.At(31, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(CountDrawn(picture), 16 * 16);
}

TEST_F(QXOgreInstancingDraw, ThePerspectiveOfOneCameraIsNotThatOfAnother) {
  QXRenderTarget* const pOther = MakeTarget(L"other");
  QXCamera* const pOblique = MakeCamera(L"oblique");
  pOblique->SetPosition(3.0, -2.0, 4.0);
  pOblique->SetDirection(QXVector3d(-3.0, 2.0, -4.0));
  pOblique->SetProjectionType(PROJECTION_PERSPECTIVE);
  pOblique->SetProjectionMatrix(QXMatrix4d::ZERO);
  pOblique->SetNearDist(0.5);
  pOblique->SetFarDist(20.0);
  AddViewport(*pOther, *pOblique, 0, 0.0, 0.0, 1.0, 1.0);
  m_pTarget->SetSunLightEnable(1);
  pOther->SetSunLightEnable(1);
  auto const pMesh = MakeRoof();
  auto const arrPlacements = MakePlacements(40, 11, QXVector3d::ZERO);
  DrawEach(*pMesh, arrPlacements);
  Frame();
  QXPicture const expected(*m_pTarget);
  QXPicture const expectedOther(*pOther);
  EXPECT_GT(CountDrawn(expectedOther), 200);
  DeleteDrawables();
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  m_pManager->AddPlacements(m_pTrees, arrPlacements.data(), 40);
  Frame();
  ExpectSame(QXPicture(*m_pTarget), expected);
  ExpectSame(QXPicture(*pOther), expectedOther);
}

TEST_F(QXOgreInstancingDraw, HeightsAreExaggeratedWithTheTarget) {
  m_pTarget->SetSunLightEnable(1);
  m_pTarget->SetVerticalExaggeration(2.5);
  m_pCamera->SetPosition(3.0, 0.0, 4.0);
  m_pCamera->SetDirection(QXVector3d(-3.0, 0.0, -4.0));
  auto const pMesh = MakeRoof();
  auto const arrPlacements = MakePlacements(40, 13, QXVector3d::ZERO);
  DrawEach(*pMesh, arrPlacements);
  QXPicture const expected = Frame();
  EXPECT_GT(CountDrawn(expected), 200);
  DeleteDrawables();
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  m_pManager->AddPlacements(m_pTrees, arrPlacements.data(), 40);
  ExpectSame(Frame(), expected);
}

TEST_F(QXOgreInstancingDraw, AFlattenedPlaceIsLitByItsNormals) {
  m_pTarget->SetSunLightEnable(1);
  QXVector3d const up = QXVector3d::UNIT_Z;
  auto const pMesh =
      MakeMesh({{-0.5F, -0.5F, 0, up}, {0.5F, -0.5F, 0, up}, {0.5F, 0.5F, 0, up}, {-0.5F, 0.5F, 0, up}}, true);
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3});
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  // A matrix without an inverse: normals turn with what it makes of areas all the same.
  QXMatrix4d matFlat;
  matFlat[2][2] = 0.0;
  Add(matFlat);
  QXPixel const flat = Frame().At(32, 32);
  QXMatrix4d const matPlain;
  m_pManager->SetPlacements(m_pTrees, 0, &matPlain, 1);
  EXPECT_EQ(Frame().At(32, 32), flat);
  EXPECT_NE(flat, BACKGROUND_PIXEL);
}

TEST_F(QXOgreInstancingDraw, WhatIsOutOfSightIsNotDrawn) {
  GiveSquare();
  Add(At(0.0, 0.0, 0.0));
  Add(At(5.0, 0.0, 0.0));
  Add(At(0.5, 0.0, 30.0));
  Add(At(0.0, 1.05, 0.0));
  Frame();
  EXPECT_EQ(Drawn(), 2U);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 4);
  m_pCamera->SetPosition(100.0, 0.0, 10.0);
  EXPECT_EQ(CountDrawn(Frame()), 0);
  EXPECT_EQ(Drawn(), 0U);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
}

TEST_F(QXOgreInstancingDraw, AHiddenPlaceIsLeftOutAndAHiddenInstancingAltogether) {
  GiveSquare();
  Add(At(-0.5, 0.0, 0.0));
  Add(At(0.5, 0.0, 0.0));
  m_pManager->SetPlacementVisible(m_pTrees, 0, 0);
  QXPicture const half = Frame();
  EXPECT_EQ(half.At(16, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(half.At(48, 32), RED_PIXEL);
  EXPECT_EQ(Drawn(), 1U);
  m_pManager->SetPlacementVisible(m_pTrees, 0, 1);
  EXPECT_EQ(Frame().At(16, 32), RED_PIXEL);
  m_pTrees->SetVisible(0);
  EXPECT_EQ(CountDrawn(Frame()), 0);
  EXPECT_EQ(Drawn(), 0U);
  m_pTrees->SetVisible(1);
  EXPECT_EQ(Frame().At(16, 32), RED_PIXEL);
}

TEST_F(QXOgreInstancingDraw, PlacesAreDrawnBetweenTheirDistances) {
  GiveSquare();
  Add(At(-0.5, 0.0, 8.0));
  Add(At(0.0, 0.0, 5.0));
  Add(At(0.5, 0.0, 0.0));
  m_pManager->SetVisibleDistance(m_pTrees, 3.0, 7.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(32, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(Drawn(), 1U);
  m_pManager->SetVisibleDistance(m_pTrees, 3.0, 0.0);
  Frame();
  EXPECT_EQ(Drawn(), 2U) << "a far distance of 0 is without limit";
}

TEST_F(QXOgreInstancingDraw, ColorsAreMultipliedAndStayWithTheirPlaces) {
  GiveSquare(0.1F, QXColorValue3D(1.0, 1.0, 0.0, 1.0));
  Add(At(-0.5, 0.0, 0.0));
  Add(At(0.0, 0.0, 0.0));
  Add(At(0.5, 0.0, 0.0));
  m_pManager->SetPlacementColor(m_pTrees, 1, RED);
  m_pManager->SetPlacementColor(m_pTrees, 2, QXColorValue3D(0.2, 1.0, 1.0, 1.0));
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), (QXPixel{255, 255, 0, 255}));
  EXPECT_EQ(picture.At(32, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), (QXPixel{51, 255, 0, 255}));
  m_pManager->RemovePlacements(m_pTrees, 0, 1);
  QXPicture const moved = Frame();
  EXPECT_EQ(moved.At(16, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(moved.At(32, 32), RED_PIXEL);
  EXPECT_EQ(moved.At(48, 32), (QXPixel{51, 255, 0, 255}));
}

TEST_F(QXOgreInstancingDraw, TransparentPlacesAreBlendedFromBackToFront) {
  // The nearer one comes first, so that their own order would be the wrong one.
  GiveSquare(0.2F, QXColorValue3D::White);
  Add(At(0.0, 0.0, 2.0));
  Add(At(0.0, 0.0, 0.0));
  m_pManager->SetPlacementColor(m_pTrees, 0, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  m_pManager->SetPlacementColor(m_pTrees, 1, QXColorValue3D(0.0, 1.0, 0.0, 0.5));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 64, 1);
  EXPECT_NEAR(pixel.b, 13, 1);
  // Opaque again, they hide each other and what is behind them.
  m_pManager->SetPlacementColor(m_pTrees, 0, RED);
  m_pManager->SetPlacementColor(m_pTrees, 1, GREEN);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreInstancingDraw, ATransparentInstancingIsBlendedAmongDrawables) {
  GiveSquare(0.2F, QXColorValue3D(1.0, 1.0, 1.0, 0.5));
  Add(At(0.0, 0.0, 2.0));
  DrawSquare(-0.2F, -0.2F, 0.2F, 0.2F, 4.0F, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  DrawSquare(-0.2F, -0.2F, 0.2F, 0.2F, 0.0F, GREEN);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 191, 1);
  EXPECT_NEAR(pixel.g, 128, 1);
  EXPECT_NEAR(pixel.b, 64, 1);
}

TEST_F(QXOgreInstancingDraw, AllOfThemMoveWithTheModelMatrix) {
  GiveSquare();
  Add(At(-0.5, 0.0, 0.0));
  m_pManager->SetModelMatrix(m_pTrees, At(0.25, 0.5, 0.0));
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(24, 16), RED_PIXEL);
  EXPECT_EQ(picture.At(16, 32), BACKGROUND_PIXEL);
  // Behind the placement: it turns the place, too.
  QXMatrix4d matTurn;
  matTurn[0][0] = matTurn[1][1] = 0.0;
  matTurn[0][1] = 1.0;
  matTurn[1][0] = -1.0;
  m_pManager->SetModelMatrix(m_pTrees, matTurn);
  EXPECT_EQ(Frame().At(32, 48), RED_PIXEL);
}

TEST_F(QXOgreInstancingDraw, TheMatrixOfTheMeshComesFirst) {
  auto const pMesh = MakeSquare(0.1F, RED);
  QXMatrix4d matMesh = At(0.25, 0.0, 0.0);
  pMesh->SetMatrix(matMesh);
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  QXMatrix4d matTwice;
  matTwice[0][0] = matTwice[1][1] = 2.0;
  Add(matTwice);
  EXPECT_EQ(Frame().At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreInstancingDraw, AHostMayLimitThePlacesOfOneOperation) {
  auto const pMesh = MakeRoof();
  auto const arrPlacements = MakePlacements(40, 17, QXVector3d::ZERO);
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  m_pManager->AddPlacements(m_pTrees, arrPlacements.data(), 40);
  QXPicture const expected = Frame();
  unsigned int const nDrawn = Drawn();
  EXPECT_GT(nDrawn, 20U);
  for (int const nMost : {7, 1, 1000, 0, -3}) {
    m_pTrees->m_nMaxPlacements = nMost;
    ExpectSame(Frame(), expected, 0);
    unsigned int const nOperations = nMost == 7 ? (nDrawn + 6) / 7 : nMost == 1 ? nDrawn : 1;
    EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2 * nOperations) << nMost;
    EXPECT_EQ(Drawn(), nDrawn);
  }
}

TEST_F(QXOgreInstancingDraw, MatricesThatAreNoPlacesDrawNothing) {
  double const dNaN = std::numeric_limits<double>::quiet_NaN();
  double const dInfinity = std::numeric_limits<double>::infinity();
  GiveSquare();
  Add(At(0.5, 0.0, 0.0));
  for (double const dBad : {dNaN, dInfinity, -dInfinity, 1.0e300}) {
    for (int nRow = 0; nRow < 4; ++nRow) {
      for (int nColumn = 0; nColumn < 4; ++nColumn) {
        QXMatrix4d mat;
        mat[nRow][nColumn] = dBad;
        Add(mat);
      }
    }
  }
  QXMatrix4d matPerspective;
  matPerspective[2][3] = -1.0;
  Add(matPerspective);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(Drawn(), 1U);
  QXBoundingBox const box = m_pManager->GetBoundingBox(m_pTrees);
  EXPECT_NEAR(box.GetMin().x, 0.4, 1.0e-6);
  EXPECT_NEAR(box.GetMax().x, 0.6, 1.0e-6);
  // One that comes right is drawn again.
  QXMatrix4d const mat;
  m_pManager->SetPlacements(m_pTrees, 1, &mat, 1);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  QXMatrix4d matBad;
  matBad[0][0] = dNaN;
  m_pManager->SetModelMatrix(m_pTrees, matBad);
  EXPECT_EQ(CountDrawn(Frame()), 0);
  EXPECT_EQ(m_pManager->GetBoundingBox(m_pTrees).IsNULL(), 1);
}

TEST_F(QXOgreInstancingDraw, WhatIsMovedIsDrawnThereInTheNextFrame) {
  GiveSquare();
  Add(At(-0.5, 0.0, 0.0));
  Add(At(0.5, 0.0, 0.0));
  Frame();
  QXMatrix4d const mat = At(0.0, 0.5, 0.0);
  EXPECT_EQ(m_pManager->SetPlacements(m_pTrees, 1, &mat, 1), 1);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 16), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  // A host that draws a target by itself.
  QXMatrix4d const matBack = At(0.5, 0.0, 0.0);
  m_pManager->SetPlacements(m_pTrees, 1, &matBack, 1);
  m_pManager->Update();
  m_pTarget->Update();
  EXPECT_EQ(QXPicture(*m_pTarget).At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreInstancingDraw, LinesAndPointsHaveManyPlacesToo) {
  auto const pMesh = MakeMesh({{-0.2F, 0.0F, 0.0F}, {0.2F, 0.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1}, RED)->m_eOperationType = QX_OPERATION_LINE_LIST;
  ASSERT_EQ(m_pManager->SetMesh(m_pTrees, pMesh.get()), 1);
  auto const arrPlacements = MakePlacements(20, 19, QXVector3d::ZERO);
  m_pManager->AddPlacements(m_pTrees, arrPlacements.data(), 20);
  QXPicture const picture = Frame();
  EXPECT_GT(CountDrawn(picture), 50);
  m_pManager->SetMesh(m_pTrees, nullptr);
  DrawEach(*pMesh, arrPlacements);
  ExpectSame(picture, Frame());
}

}  // namespace QXC
