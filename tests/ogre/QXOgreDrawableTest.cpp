#include <limits>

#include <QxGraphics3D/renderop/QXIndexBlock.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperationSet.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

QXMatrix4d Translation(double x, double y, double z) {
  QXMatrix4d mat;
  mat.SetTrans({x, y, z});
  return mat;
}

/// A square of half a unit to each side of the origin, in the plane z.
std::vector<QXCorner> SquareCorners(float z = 0.0F, unsigned int nColor = 0xFFFFFFFF) {
  return {{-0.5F, -0.5F, z, QXVector3d::ZERO, nColor}, {0.5F, -0.5F, z, QXVector3d::ZERO, nColor},
      {0.5F, 0.5F, z, QXVector3d::ZERO, nColor}, {-0.5F, 0.5F, z, QXVector3d::ZERO, nColor}};
}

std::vector<unsigned short> const SQUARE = {0, 1, 2, 0, 2, 3};

}  // namespace

using QXOgreDrawable = QXOgreScenery;

TEST_F(QXOgreDrawable, ATriangleCoversItsPixelsAndNoOthers) {
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, RED);
  Draw(*pMesh);
  QXPicture const picture = Frame();
  // The lower left half: y counts downwards in the picture.
  EXPECT_EQ(picture.At(1, 62), RED_PIXEL);
  EXPECT_EQ(picture.At(20, 40), RED_PIXEL);
  EXPECT_EQ(picture.At(62, 1), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(40, 20), BACKGROUND_PIXEL);
}

TEST_F(QXOgreDrawable, RangesOf16And32BitsAreDrawnInTheirColours) {
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {0.0F, -1.0F, 0.0F}, {0.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F},
      {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, SQUARE, RED);
  AddRange<unsigned int>(*pMesh, {1, 4, 5, 1, 5, 2}, GREEN);
  QXRenderOperation3D const* const pOperation = Draw(*pMesh);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), GREEN_PIXEL);
  EXPECT_EQ(pOperation->GetIndexRangeCount(), 2U);
  EXPECT_EQ(pOperation->GetTriangleCount(), 4U);
  EXPECT_EQ(pOperation->GetVertexCount(), 6U);
}

TEST_F(QXOgreDrawable, ARangeStartsWhereItSays) {
  auto const pMesh = MakeMesh(SquareCorners());
  QXVertexIndexPackage* const pRange = AddRange<unsigned int>(*pMesh, {0, 0, 0, 0, 1, 2, 0, 2, 3, 99}, RED);
  pRange->m_nStart = 3;
  pRange->m_nIndexNum = 6;
  Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreDrawable, TheSingleRangeAndTheIndexBlockOfTheBaseAreDrawnToo) {
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {0.0F, -1.0F, 0.0F}, {0.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F},
      {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}});
  pMesh->m_Color = GREEN;
  pMesh->m_pVertexIndexPackage = new QXVertexIndexPackage;
  pMesh->m_pVertexIndexPackage->m_pIndices = new unsigned short[6]{0, 1, 2, 0, 2, 3};
  pMesh->m_pVertexIndexPackage->m_nIndexNum = 6;
  pMesh->m_pIndexBlock = new QXIndexBlock;
  pMesh->m_pIndexBlock->m_pBuffer = new unsigned short[6]{1, 4, 5, 1, 5, 2};
  pMesh->m_pIndexBlock->m_nIndexNum = 6;
  Draw(*pMesh);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(48, 32), GREEN_PIXEL);
}

TEST_F(QXOgreDrawable, VertexColoursAreRedGreenBlueAlphaWordsAndBlendOverTheFace) {
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F, QXVector3d::ZERO, QDCRGBA(200, 0, 0, 255)},
                                  {1.0F, -1.0F, 0.0F, QXVector3d::ZERO, QDCRGBA(200, 0, 0, 255)},
                                  {1.0F, 1.0F, 0.0F, QXVector3d::ZERO, QDCRGBA(0, 100, 50, 255)},
                                  {-1.0F, 1.0F, 0.0F, QXVector3d::ZERO, QDCRGBA(0, 100, 50, 255)}},
      false, true);
  AddRange(*pMesh, SQUARE);
  Draw(*pMesh);
  QXPicture const picture = Frame();
  QXPixel const low = picture.At(32, 63);
  EXPECT_NEAR(low.r, 198, 2);
  EXPECT_NEAR(low.g, 1, 2);
  QXPixel const middle = picture.At(32, 32);
  EXPECT_NEAR(middle.r, 100, 3);
  EXPECT_NEAR(middle.g, 50, 3);
  EXPECT_NEAR(middle.b, 25, 3);
}

TEST_F(QXOgreDrawable, ColoursOfVertexRangeAndDrawableMultiply) {
  auto const pMesh = MakeMesh(SquareCorners(0.0F, QDCRGBA(255, 255, 128, 255)), false, true);
  AddRange(*pMesh, SQUARE, QXColorValue3D(0.5, 1.0, 1.0, 1.0));
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  pOperation->SetColor(QXColorValue3D(1.0, 0.5, 1.0, 1.0));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 128, 1);
  EXPECT_NEAR(pixel.b, 128, 1);
  EXPECT_EQ(pOperation->GetColor(), QXColorValue3D(1.0, 0.5, 1.0, 1.0));
}

TEST_F(QXOgreDrawable, ARangeWithAnIndexBeyondTheVerticesDrawsNothingAndKeepsItsNumber) {
  auto const pMesh = MakeMesh(SquareCorners());
  AddRange<unsigned short>(*pMesh, {0, 1, 4}, GREEN);
  AddRange(*pMesh, SQUARE, RED);
  AddRange<unsigned int>(*pMesh, {0, 1, 0xFFFFFFFF}, GREEN);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  EXPECT_EQ(pOperation->GetIndexRangeCount(), 3U);
  EXPECT_EQ(pOperation->GetTriangleCount(), 2U);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  pOperation->SetIndexRangeVisible(0, 1);
  pOperation->SetIndexRangeVisible(1, 0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreDrawable, StripsFansLinesAndPointsAreWhatTheySay) {
  auto const pMesh = MakeMesh(SquareCorners());
  QXVertexIndexPackage* const pRange = AddRange<unsigned short>(*pMesh, {0, 1, 3, 2}, RED);
  pRange->m_eOperationType = QX_OPERATION_TRIANGLE_STRIP;
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  EXPECT_EQ(pOperation->GetTriangleCount(), 2U);

  auto const pFan = MakeMesh(SquareCorners());
  AddRange<unsigned short>(*pFan, {0, 1, 2, 3}, RED)->m_eOperationType = QX_OPERATION_TRIANGLE_FAN;
  pOperation->SetRenderOperationMultiIndex(pFan.get());
  EXPECT_EQ(Frame().At(40, 20), RED_PIXEL);
  EXPECT_EQ(Frame().At(20, 20), RED_PIXEL);
  EXPECT_EQ(pOperation->GetTriangleCount(), 2U);

  auto const pLines = MakeMesh({{-1.0F, 0.01F, 0.0F}, {1.0F, 0.01F, 0.0F}});
  AddRange<unsigned short>(*pLines, {0, 1}, RED)->m_eOperationType = QX_OPERATION_LINE_LIST;
  pOperation->SetRenderOperationMultiIndex(pLines.get());
  QXPicture const lines = Frame();
  EXPECT_EQ(lines.At(10, 31), RED_PIXEL);
  EXPECT_EQ(lines.At(10, 29), BACKGROUND_PIXEL);
  EXPECT_EQ(pOperation->GetTriangleCount(), 0U);

  auto const pPoints = MakeMesh({{0.01F, 0.01F, 0.0F}});
  AddRange<unsigned short>(*pPoints, {0}, RED)->m_eOperationType = QX_OPERATION_POINT_LIST;
  pOperation->SetRenderOperationMultiIndex(pPoints.get());
  pOperation->SetPointSize(6.0);
  QXPicture const points = Frame();
  EXPECT_EQ(points.At(34, 30), RED_PIXEL);
  EXPECT_EQ(points.At(38, 30), BACKGROUND_PIXEL);
}

TEST_F(QXOgreDrawable, AnUnknownKindOfRangeDrawsNothing) {
  auto const pMesh = MakeMesh(SquareCorners());
  AddRange(*pMesh, SQUARE, RED)->m_eOperationType = 77;
  QXRenderOperation3D const* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(pOperation->GetTriangleCount(), 0U);
}

TEST_F(QXOgreDrawable, TheModelMatrixIsForRowVectors) {
  auto const pMesh = MakeMesh({{0.0F, 0.0F, 0.0F}, {0.5F, 0.0F, 0.0F}, {0.5F, 0.25F, 0.0F}, {0.0F, 0.25F, 0.0F}});
  AddRange(*pMesh, SQUARE, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  // x becomes y: row 0 is where the x axis goes.
  QXMatrix4d mat;
  mat[0][0] = 0.0;
  mat[0][1] = 1.0;
  mat[1][0] = -1.0;
  mat[1][1] = 0.0;
  mat.SetTrans({0.5, 0.0, 0.0});
  pOperation->SetModelMatrix(mat);
  QXPicture const picture = Frame();
  // 0..0.5 in x became 0..0.5 in y, and 0..0.25 in y became 0.5..0.25 in x.
  EXPECT_EQ(picture.At(44, 20), RED_PIXEL);
  EXPECT_EQ(picture.At(44, 34), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(34, 28), BACKGROUND_PIXEL);
  EXPECT_EQ(pOperation->GetModelMatrix(), mat);
  QXBoundingBox const box = pOperation->GetWorldBoundingBox();
  EXPECT_EQ(box.GetMin(), QXVector3d(0.25, 0.0, 0.0));
  EXPECT_EQ(box.GetMax(), QXVector3d(0.5, 0.5, 0.0));
}

TEST_F(QXOgreDrawable, TheMatrixOfTheOperationBecomesTheModelMatrix) {
  auto const pMesh = MakeMesh(SquareCorners());
  AddRange(*pMesh, SQUARE, RED);
  QXMatrix4d mat = Translation(0.5, 0.5, 0.0);
  pMesh->SetMatrix(mat);
  QXRenderOperation3D const* const pOperation = Draw(*pMesh);
  EXPECT_EQ(pOperation->GetModelMatrix(), mat);
  EXPECT_EQ(Frame().At(60, 4), RED_PIXEL);
}

TEST_F(QXOgreDrawable, OnlyVisibleDrawablesAndRangesAreDrawnAndCounted) {
  auto const pMesh = MakeMesh(SquareCorners());
  AddRange(*pMesh, SQUARE, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(pOperation->IsVisible(), 1);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 2U);
  EXPECT_EQ(m_pGraphics3D->GetVertexCount(), 4U);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 2);
  pOperation->SetVisible(0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 0);
  pOperation->SetVisible(1);
  pOperation->SetIndexRangeVisible(0, 0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetVertexCount(), 0U);
  pOperation->SetIndexRangeVisible(0, 1);
  pOperation->SetIndexRangeVisible(1, 0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreDrawable, ARangeTakesANewColour) {
  auto const pMesh = MakeMesh(SquareCorners());
  AddRange(*pMesh, SQUARE, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  pOperation->SetIndexRangeColor(0, GREEN);
  pOperation->SetIndexRangeColor(1, RED);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreDrawable, TheNearerFaceHidesTheFartherInWhateverOrderTheyCame) {
  DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 1.0F, RED);
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, GREEN);
  DrawSquare(0.0F, -0.25F, 1.0F, 0.25F, 2.0F, QXColorValue3D::White);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(20, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(4, 4), GREEN_PIXEL);
  EXPECT_EQ(picture.At(40, 32), (QXPixel{255, 255, 255, 255}));
}

TEST_F(QXOgreDrawable, WithoutDepthTestADrawableShowsThroughWhatStandsBefore) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 1.0F, GREEN);
  QXRenderOperation3D* const pBehind = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  pBehind->SetDepthTest(0);
  pBehind->SetRenderPriority(1);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  EXPECT_EQ(pBehind->GetRenderPriority(), 1);
}

TEST_F(QXOgreDrawable, WithoutDepthWriteADrawableHidesNothingThatComesLater) {
  QXRenderOperation3D* const pFront = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 1.0F, GREEN);
  QXRenderOperation3D* const pBehind = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  pBehind->SetRenderPriority(1);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  pFront->SetDepthWrite(0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreDrawable, LowerPrioritiesAreDrawnFirst) {
  QXRenderOperation3D* const pFirst = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, GREEN);
  QXRenderOperation3D* const pSecond = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  pFirst->SetDepthTest(0);
  pSecond->SetDepthTest(0);
  pFirst->SetRenderPriority(-5);
  pSecond->SetRenderPriority(5);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pFirst->SetRenderPriority(std::numeric_limits<int>::max());
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  pSecond->SetRenderPriority(std::numeric_limits<int>::min());
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreDrawable, DepthBiasDecidesBetweenFacesInOnePlane) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, GREEN);
  QXRenderOperation3D* const pDecal = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, -1.0e-5F, RED);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  pDecal->SetDepthBias(-50.0, 0.0);
  pDecal->SetRenderPriority(1);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << "below 0 is towards the eye";
}

TEST_F(QXOgreDrawable, APositiveDepthBiasMovesAwayFromTheEye) {
  QXRenderOperation3D* const pGround = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, GREEN);
  QXRenderOperation3D* const pDecal = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, -1.0e-5F, RED);
  pDecal->SetRenderPriority(1);
  pGround->SetDepthBias(50.0, 0.0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pDecal->SetDepthBias(100.0, 0.0);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreDrawable, ThePartOfTheSlopeCountsForFacesThatLeanAway) {
  QXRenderOperation3D* const pGround = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, GREEN);
  QXRenderOperation3D* const pDecal = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 1.0e-5F, RED);
  pDecal->SetRenderPriority(1);
  pDecal->SetDepthBias(0.0, 50.0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << "a face seen square on has no slope";
  QXMatrix4d matLean = QXMatrix4d::IDENTITY;
  matLean[0][2] = 1.0;
  for (QXRenderOperation3D* const p : {pGround, pDecal}) p->SetModelMatrix(matLean);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreDrawable, WhatIsTransparentIsBlendedAndThePictureStaysSolid) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  QXRenderOperation3D* const pPane = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 1.0F, QXColorValue3D(0.0, 1.0, 0.0, 0.5));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 128, 1);
  EXPECT_EQ(pixel.a, 255);
  pPane->SetOpacity(0.5);
  EXPECT_EQ(pPane->GetOpacity(), 0.5);
  EXPECT_NEAR(Frame().At(32, 32).g, 64, 1);
  pPane->SetOpacity(1.0);
  pPane->SetColor(QXColorValue3D(1.0, 1.0, 1.0, 0.5));
  EXPECT_NEAR(Frame().At(32, 32).g, 64, 1);
}

TEST_F(QXOgreDrawable, TransparentPanesAreBlendedFromBackToFront) {
  // Given front first: blended in that order, the rear one would be hidden or lie on top.
  auto const pane = [&](float z, QXColorValue3D const& color) {
    auto const pMesh = MakeMesh(SquareCorners());
    AddRange(*pMesh, SQUARE, color);
    Draw(*pMesh)->SetModelMatrix(Translation(0.0, 0.0, z));
  };
  pane(2.0F, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  pane(1.0F, QXColorValue3D(0.0, 1.0, 0.0, 0.5));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 64, 1);
  EXPECT_NEAR(pixel.b, 13, 1);
}

TEST_F(QXOgreDrawable, AVertexColourWithAlphaMakesTheDrawableTransparent) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  auto const pMesh = MakeMesh(SquareCorners(1.0F, QDCRGBA(0, 255, 0, 128)), false, true);
  AddRange(*pMesh, SQUARE);
  Draw(*pMesh);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 127, 1);
  EXPECT_NEAR(pixel.g, 128, 1);
}

TEST_F(QXOgreDrawable, CullingLeavesOutTheSideThatItNames) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  // Seen from above the square's corners run counter-clockwise.
  pOperation->SetCullingMode(CULLING_ANTICLOCKWISE);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  pOperation->SetCullingMode(CULLING_CLOCKWISE);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pOperation->SetCullingMode(static_cast<CullingMode>(42));
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreDrawable, WireframeLeavesTheFaceOpen) {
  auto const pMesh = MakeMesh(SquareCorners());
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(40, 40), RED_PIXEL);
  pOperation->SetWireframe(1);
  EXPECT_EQ(Frame().At(40, 40), BACKGROUND_PIXEL);
}

TEST_F(QXOgreDrawable, LinesTakeTheirWidth) {
  auto const pMesh = MakeMesh({{-1.0F, 0.01F, 0.0F}, {1.0F, 0.01F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1}, RED)->m_eOperationType = QX_OPERATION_LINE_STRIP;
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 29), BACKGROUND_PIXEL);
  pOperation->SetLineWidth(7.0);
  EXPECT_EQ(Frame().At(32, 29), RED_PIXEL);
}

TEST_F(QXOgreDrawable, ItIsDrawnBetweenItsDistancesOnly) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  // The eye stands at 10.
  pOperation->SetVisibleDistance(0.0, 9.0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  pOperation->SetVisibleDistance(11.0, 0.0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  pOperation->SetVisibleDistance(9.0, 11.0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreDrawable, ASelectedDrawableIsCoveredByTheSelectionColour) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  pOperation->SetSelectionColor(QXColorValue3D(0.0, 1.0, 0.0, 0.5));
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pOperation->SetSelected(1);
  EXPECT_EQ(pOperation->IsSelected(), 1);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 128, 1);
  pOperation->SetSelected(0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreDrawable, ItTakesCopiesOfEverything) {
  auto pMesh = MakeMesh(SquareCorners(), true, true);
  AddRange(*pMesh, SQUARE, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  std::fill_n(pMesh->m_pVertexBlock->m_pBuffer, 4 * 7, 0.0F);
  pMesh.reset();
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pOperation->SetName(L"square");
  EXPECT_EQ(pOperation->GetName(), QdcUnicodeString(L"square"));
}

TEST_F(QXOgreDrawable, NewGeometryReplacesTheOldAndNullClearsIt) {
  QXRenderOperation3D* const pOperation = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  auto const pMesh = MakeMesh(SquareCorners());
  AddRange(*pMesh, SQUARE, GREEN);
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(2, 2), BACKGROUND_PIXEL);
  pOperation->SetRenderOperationMultiIndex(nullptr);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  pOperation->ClearGeometry();
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(pOperation->GetDeviceMemory(), 0U);
  EXPECT_EQ(pOperation->GetWorldBoundingBox().IsNULL(), 1);
}

TEST_F(QXOgreDrawable, BrokenVertexBlocksDrawNothing) {
  QXRenderOperationMultiIndex empty;
  QXRenderOperation3D* const pOperation = Draw(empty);
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
  auto const pBeyond = MakeMesh(SquareCorners());
  AddRange(*pBeyond, SQUARE, RED);
  pBeyond->m_pVertexBlock->m_nNormalOffset = 1;
  pOperation->SetRenderOperationMultiIndex(pBeyond.get());
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
  pBeyond->m_pVertexBlock->m_nNormalOffset = -1;
  pBeyond->m_pVertexBlock->m_nColorOffset = 3;
  pOperation->SetRenderOperationMultiIndex(pBeyond.get());
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
  pBeyond->m_pVertexBlock->m_nColorOffset = -1;
  pBeyond->m_pVertexBlock->m_nPositionOffset = -1;
  pOperation->SetRenderOperationMultiIndex(pBeyond.get());
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreDrawable, PositionsThatAreNoNumbersDoNotDisturbTheOthers) {
  float const fNaN = std::numeric_limits<float>::quiet_NaN();
  auto const pMesh = MakeMesh({{-0.5F, -0.5F, 0.0F}, {0.5F, -0.5F, 0.0F}, {0.5F, 0.5F, 0.0F}, {fNaN, fNaN, fNaN}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, RED);
  QXRenderOperation3D const* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(40, 40), RED_PIXEL);
  EXPECT_EQ(pOperation->GetBoundingBox().GetMax(), QXVector3d(0.5, 0.5, 0.0));
}

TEST_F(QXOgreDrawable, TextureCoordinatesComeAlongAndShortSetsAreLeftOut) {
  auto const pMesh = MakeMesh(SquareCorners());
  AddRange(*pMesh, SQUARE, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  unsigned int const nPlain = pOperation->GetDeviceMemory();
  pMesh->m_pTexCoordBlock = new QXTexCoordBlock;
  pMesh->m_pTexCoordBlock->m_pBuffers[2] = new float[12]();
  pMesh->m_pTexCoordBlock->m_nStrides[2] = 3;
  pMesh->m_pTexCoordBlock->m_nCounts[2] = 4;
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(pOperation->GetDeviceMemory(), nPlain + 4 * 2 * sizeof(float));
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pMesh->m_pTexCoordBlock->m_nCounts[2] = 3;
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(pOperation->GetDeviceMemory(), nPlain);
}

TEST_F(QXOgreDrawable, BoundsOutsideTheViewLeaveTheDrawableOut) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  EXPECT_EQ(pOperation->GetBoundingBox().GetMin(), QXVector3d(-0.5, -0.5, 0.0));
  pOperation->SetBoundingBox(QXBoundingBox({5.0, 5.0, 0.0}, {6.0, 6.0, 0.0}));
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  EXPECT_EQ(pOperation->GetBoundingBox().GetMax(), QXVector3d(6.0, 6.0, 0.0));
  pOperation->SetBoundingBox(QXBoundingBox());
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pOperation->SetModelMatrix(Translation(3.0, 0.0, 0.0));
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
}

TEST_F(QXOgreDrawable, PositionsAreOverwrittenInPlace) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  // The right edge moves out.
  float const arrPositions[] = {1.0F, -0.5F, 0.0F, 1.0F, 0.5F, 0.0F};
  EXPECT_EQ(pOperation->UpdatePositions(1, 2, arrPositions), 1);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(60, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(10, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(pOperation->GetBoundingBox().GetMax(), QXVector3d(1.0, 0.5, 0.0));
  EXPECT_EQ(pOperation->UpdatePositions(3, 2, arrPositions), 0);
  EXPECT_EQ(pOperation->UpdatePositions(0xFFFFFFFF, 2, arrPositions), 0);
  EXPECT_EQ(pOperation->UpdatePositions(0, 1, nullptr), 0);
}

TEST_F(QXOgreDrawable, ColoursAreOverwrittenInPlaceWhereThereAreAny) {
  auto const pMesh = MakeMesh(SquareCorners(), false, true);
  AddRange(*pMesh, SQUARE);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  std::vector<unsigned int> const arrColors(4, QDCRGBA(0, 255, 0, 255));
  EXPECT_EQ(pOperation->UpdateColors(0, 4, arrColors.data()), 1);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(pOperation->UpdateColors(1, 4, arrColors.data()), 0);
  std::vector<unsigned int> const arrClear(4, QDCRGBA(0, 255, 0, 0));
  EXPECT_EQ(pOperation->UpdateColors(0, 4, arrClear.data()), 1);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  QXRenderOperation3D* const pPlain = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  EXPECT_EQ(pPlain->UpdateColors(0, 4, arrColors.data()), 0);
}

TEST_F(QXOgreDrawable, ASelfContainedOperationIsDrawnInItsColour) {
  QXRenderOperation operation;
  operation.SetVertexNum(4);
  operation.SetVertexValue(0, -0.5, -0.5, 0.0);
  operation.SetVertexValue(1, 0.5, -0.5, 0.0);
  operation.SetVertexValue(2, 0.5, 0.5, 0.0);
  operation.SetVertexValue(3, -0.5, 0.5, 0.0);
  operation.SetIndexNum(6);
  for (unsigned int i = 0; i < 6; ++i) operation.SetIndexValue(i, SQUARE[i]);
  operation.m_Color0 = RED;
  QXMatrix4d mat = Translation(0.5, 0.0, 0.0);
  operation.SetMatrix(mat);
  QXRenderOperationMultiIndex empty;
  QXRenderOperation3D* const pOperation = Draw(empty);
  pOperation->SetRenderOperation(&operation);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(60, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(28, 32), BACKGROUND_PIXEL);
  pOperation->SetRenderOperation(nullptr);
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
}

TEST_F(QXOgreDrawable, ASetIsOneRangeForEachOperationAndIndicesStayInTheirOwn) {
  QXRenderOperation first;
  first.SetVertexNum(3);
  first.SetVertexValue(0, -1.0, -1.0, 0.0);
  first.SetVertexValue(1, 0.0, -1.0, 0.0);
  first.SetVertexValue(2, -1.0, 1.0, 0.0);
  first.m_Color0 = RED;
  QXRenderOperation second;
  second.SetVertexNum(3);
  second.SetVertexValue(0, 0.0, -1.0, 0.0);
  second.SetVertexValue(1, 1.0, -1.0, 0.0);
  second.SetVertexValue(2, 1.0, 1.0, 0.0);
  second.SetIndexNum(3);
  for (unsigned short i = 0; i < 3; ++i) second.SetIndexValue(i, i);
  second.m_Color0 = GREEN;
  QXRenderOperation bad;
  bad.SetVertexNum(3);
  for (unsigned int i = 0; i < 3; ++i) bad.SetVertexValue(i, 0.0, 0.0, 0.0);
  bad.SetIndexNum(3);
  // The fourth vertex of a neighbour, not one of its own.
  for (unsigned int i = 0; i < 3; ++i) bad.SetIndexValue(i, 3);
  QXRenderOperationSet set;
  for (QXRenderOperation* const pOperation : {&first, &second, &bad}) set.m_arrRenderOperations.Add(pOperation);
  set.m_arrRenderOperations.Add(nullptr);
  QXRenderOperationMultiIndex empty;
  QXRenderOperation3D* const pOperation = Draw(empty);
  pOperation->SetRenderOperationSet(set);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(4, 50), RED_PIXEL);
  EXPECT_EQ(picture.At(60, 50), GREEN_PIXEL);
  EXPECT_EQ(pOperation->GetIndexRangeCount(), 3U);
  EXPECT_EQ(pOperation->GetTriangleCount(), 2U);
  EXPECT_EQ(pOperation->GetVertexCount(), 9U);
}

// Coordinates of four million units are half a unit apart as floats; pixels here are a 32nd of a unit.
TEST_F(QXOgreDrawable, LargeModelMatricesStayRightToTheSubPixel) {
  QXVector3d const vecFar(4.0e6 + 0.28125, 5.0e6 + 0.40625, 100.0);
  m_pGraphics3D->SetRelativeOrigin({4.0e6, 5.0e6, 0.0});
  m_pCamera->SetPosition(vecFar + QXVector3d(0.0, 0.0, 10.0));
  auto const pMesh = MakeMesh({{0.0F, 0.0F, 0.0F}, {0.5F, 0.0F, 0.0F}, {0.5F, 0.5F, 0.0F}, {0.0F, 0.5F, 0.0F}});
  AddRange(*pMesh, SQUARE, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  for (int nStep = -8; nStep <= 8; ++nStep) {
    // Eighths of a pixel, a quarter of a pixel away from the pixel's middle at the nearest.
    double const dShift = nStep / 32.0 + 1.0 / 128.0;
    pOperation->SetModelMatrix(Translation(vecFar.x + dShift, vecFar.y, vecFar.z));
    QXPicture const picture = Frame();
    int const nEdge = 32 + nStep;
    EXPECT_EQ(picture.At(static_cast<unsigned int>(nEdge), 30), RED_PIXEL) << nStep;
    EXPECT_EQ(picture.At(static_cast<unsigned int>(nEdge - 1), 30), BACKGROUND_PIXEL) << nStep;
    EXPECT_EQ(picture.At(static_cast<unsigned int>(nEdge + 15), 30), RED_PIXEL) << nStep;
    EXPECT_EQ(picture.At(static_cast<unsigned int>(nEdge + 16), 30), BACKGROUND_PIXEL) << nStep;
  }
}

TEST_F(QXOgreDrawable, LargeVertexCoordinatesLoseNothingMore) {
  // Floats hold halves at four million: what they hold must arrive.
  m_pCamera->SetPosition(4.0e6, 4.0e6, 10.0);
  auto const pMesh = MakeMesh({{4000000.0F, 4000000.0F, 0.0F}, {4000000.5F, 4000000.0F, 0.0F},
      {4000000.5F, 4000000.5F, 0.0F}, {4000000.0F, 4000000.5F, 0.0F}});
  AddRange(*pMesh, SQUARE, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 31), RED_PIXEL);
  EXPECT_EQ(picture.At(31, 31), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(47, 16), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 16), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(32, 15), BACKGROUND_PIXEL);
  // Overwriting positions goes by the same coordinates.
  float const arrPositions[] = {4000000.5F, 4000000.0F, 0.0F};
  EXPECT_EQ(pOperation->UpdatePositions(0, 1, arrPositions), 1);
  EXPECT_EQ(Frame().At(33, 31), BACKGROUND_PIXEL);
}

TEST_F(QXOgreDrawable, TheOriginMovesNothing) {
  DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  QXPicture const before = Frame();
  m_pGraphics3D->SetRelativeOrigin({123.0, -456.0, 789.0});
  EXPECT_EQ(m_pGraphics3D->GetRelativeOrigin(), QXVector3d(123.0, -456.0, 789.0));
  EXPECT_EQ(Frame().GetBytes(), before.GetBytes());
}

}  // namespace QXC
