// Which vertices a merge makes of the meshes that were added, and what merging twice does.
#include "QXMergeFixture.h"

namespace QXC {
namespace {

TEST_F(QXStaticGeometryBuild, AllFourListsAreMerged) {
  for (int nType : {0, 1}) {
    m_nType = nType;
    Add(MakeMesh({1, 2, 3}));
    Add(m_host.MakeCounted(65536));
  }
  Merge(Moved(1.0));
  for (auto* pList : {&m_geometry.m_vecBuckets16, &m_geometry.m_vecTypedBuckets16}) {
    ASSERT_EQ(pList->size(), 1u);
    EXPECT_EQ((*pList)[0]->m_pVertexPackage->m_pVertices[0], 0.0F);
  }
  for (auto* pList : {&m_geometry.m_vecBuckets32, &m_geometry.m_vecTypedBuckets32}) {
    ASSERT_EQ(pList->size(), 1u);
    EXPECT_NE((*pList)[0]->m_pVertexPackage->m_pVertices, nullptr);
  }
}

TEST_F(QXStaticGeometryBuild, BaseFrameStaysAsTheCallerPassedIt) {
  QXMatrix4d base = Moved(5.0);
  Add(MakeMesh({1, 2, 3}), Moved(7.0));
  m_geometry.AssignStaticGeometry(base, 0);
  EXPECT_TRUE(base == Moved(5.0));
  EXPECT_THAT(Positions(), ElementsAre(3.0F, 2.0F, 3.0F));
}

TEST_F(QXStaticGeometryBuild, ModelMatrixAppliesBeforeTheInverseOfTheBase) {
  Add(MakeMesh({1, 0, 0}), QuarterTurn(10.0));
  Merge(QuarterTurn());
  // Turned to (10, 1, 0), then turned back by the base.
  EXPECT_THAT(Positions(), ElementsAre(1.0F, -10.0F, 0.0F));
}

TEST_F(QXStaticGeometryBuild, PositionsBecomeFloatsOnlyRelativeToTheBase) {
  double const dFar = 6378137.0 + 0.25;
  Add(MakeMesh({0.125F, 0, 0}), Moved(dFar));
  Merge(Moved(6378137.0));
  EXPECT_THAT(Positions(), ElementsAre(0.375F, 0.0F, 0.0F));
}

TEST_F(QXStaticGeometryBuild, SingularBasePutsAllIntoTheOrigin) {
  Add(MakeMesh({1, 2, 3}), Moved(5.0));
  Merge(QXMatrix4d::ZERO);
  EXPECT_THAT(Positions(), ElementsAre(0.0F, 0.0F, 0.0F));
}

TEST_F(QXStaticGeometryBuild, MeshesStandInTheOrderOfAdding) {
  Add(MakeMesh({1, 2, 3, 4, 5, 6}), Moved(10.0));
  Add(MakeMesh({7, 8, 9}), Moved(20.0));
  Merge();
  EXPECT_THAT(Positions(), ElementsAre(11, 2, 3, 14, 5, 6, 27, 8, 9));
}

TEST_F(QXStaticGeometryBuild, MeshOfTwoDimensionsGetsZeroAsThird) {
  Add(MakeMesh({1, 2, 3}));
  Add(MakeMesh({4, 5}, 2), Moved(1.0));
  Merge();
  EXPECT_THAT(Positions(), ElementsAre(1, 2, 3, 5, 5, 0));
}

TEST_F(QXStaticGeometryBuild, MeshOfThreeDimensionsGetsOneAsFourth) {
  Add(MakeMesh({1, 2, 3, 4}, 4), Moved(1.0));
  Add(MakeMesh({5, 6, 7}));
  Merge();
  EXPECT_THAT(Positions(), ElementsAre(2, 2, 3, 4, 5, 6, 7, 1));
}

TEST_F(QXStaticGeometryBuild, DimensionsBeyondFourAreZeros) {
  Add(MakeMesh({1, 2, 3, 4, 5, 6}, 6), Moved(1.0));
  Merge();
  EXPECT_THAT(Positions(), ElementsAre(2, 2, 3, 4, 0, 0));
}

TEST_F(QXStaticGeometryBuild, PositionsHaveZeroedSlackBehindThem) {
  Add(MakeMesh({1, 2}, 2));
  Merge();
  for (int i = 3; i < 7; ++i) EXPECT_EQ(Merged().m_pVertices[i], 0.0F);
}

TEST_F(QXStaticGeometryBuild, MeshWithoutPositionsLeavesZeros) {
  Add(m_host.MakeCounted(2), Moved(5.0));
  Add(MakeMesh({1, 2, 3}));
  Merge();
  EXPECT_THAT(Positions(), ElementsAre(0, 0, 0, 0, 0, 0, 1, 2, 3));
}

TEST_F(QXStaticGeometryBuild, ArraysHaveTheNumberOfVerticesAndNoStride) {
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3, 4, 5, 6});
  SetNormals(mesh, {0, 0, 1});
  SetColors(mesh, {1, 2, 3});
  mesh.SetSecondColorNum(1, 0);
  SetCoords(mesh, 3, {1, 2, 3, 4, 5, 6});
  Add(mesh);
  QXVertexDataPackage& merged = Merged();
  merged.m_nVertexStride = merged.m_nNormalStride = merged.m_nColorStride = merged.m_nSecondColorStride = 7;
  merged.m_nTexCoordStrides[3] = 7;
  Merge();
  EXPECT_EQ(merged.m_nVertexNum, 2u);
  EXPECT_EQ(merged.m_nNormalNum, 2u);
  EXPECT_EQ(merged.m_nColorNum, 2u);
  EXPECT_EQ(merged.m_nSecondColorNum, 2u);
  EXPECT_EQ(merged.m_nTexCoordNums[3], 2u);
  EXPECT_EQ(merged.m_nVertexStride, 0);
  EXPECT_EQ(merged.m_nNormalStride, 0);
  EXPECT_EQ(merged.m_nColorStride, 0);
  EXPECT_EQ(merged.m_nSecondColorStride, 0);
  EXPECT_EQ(merged.m_nTexCoordStrides[3], 0);
}

TEST_F(QXStaticGeometryBuild, WhatNoMeshHasGetsNoArray) {
  Add(MakeMesh({1, 2, 3}));
  Merge();
  EXPECT_EQ(Merged().m_pNormals, nullptr);
  EXPECT_EQ(Merged().m_nNormalNum, 0u);
  EXPECT_EQ(Merged().m_pColors, nullptr);
  EXPECT_EQ(Merged().m_pSecondColors, nullptr);
  for (float const* pCoords : Merged().m_pTexCoords) EXPECT_EQ(pCoords, nullptr);
}

TEST_F(QXStaticGeometryBuild, NormalsTurnWithoutMovingAndGetLengthOne) {
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetNormals(mesh, {4, 0, 0});
  Add(mesh, QuarterTurn(100.0, 200.0, 300.0));
  Merge();
  EXPECT_THAT(Normals(), ElementsAre(0, 1, 0));
}

TEST_F(QXStaticGeometryBuild, ZeroNormalStaysZero) {
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetNormals(mesh, {0, 0, 0});
  Add(mesh, Moved(5.0));
  Merge();
  EXPECT_THAT(Normals(), ElementsAre(0, 0, 0));
}

TEST_F(QXStaticGeometryBuild, NormalsOfATypeFromZeroOnAreCopiedAsTheyAre) {
  for (int nType : {0, 2}) {
    QXVertexDataPackage& mesh = MakeMesh({1, 0, 0});
    SetNormals(mesh, {4, 0, 0});
    m_nType = nType;
    Add(mesh, QuarterTurn());
  }
  Merge();
  EXPECT_THAT(Normals(), ElementsAre(4, 0, 0, 4, 0, 0));
  EXPECT_THAT(Positions(), ElementsAre(0, 1, 0, 0, 1, 0));
}

TEST_F(QXStaticGeometryBuild, TypeOfTheLastMeshDecidesAboutAllNormalsOfABucket) {
  for (int nType : {0, -1}) {
    QXVertexDataPackage& mesh = MakeMesh({1, 0, 0});
    SetNormals(mesh, {4, 0, 0});
    m_nType = nType;
    Add(mesh, QuarterTurn());
  }
  Merge();
  EXPECT_THAT(Normals(), ElementsAre(0, 1, 0, 0, 1, 0));
}

TEST_F(QXStaticGeometryBuild, MeshWithoutNormalsLeavesZeros) {
  Add(MakeMesh({1, 2, 3, 4, 5, 6}));
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetNormals(mesh, {0, 0, 1});
  Add(mesh);
  Merge();
  EXPECT_THAT(Normals(), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 1));
}

TEST_F(QXStaticGeometryBuild, NormalsOfOtherDimensionsAreFilledUp) {
  QXVertexDataPackage& two = MakeMesh({0, 0, 0});
  SetNormals(two, {3, 4}, 2);
  Add(two);
  QXVertexDataPackage& four = MakeMesh({0, 0, 0});
  SetNormals(four, {0, 0, 5, 7}, 4);
  Add(four);
  Merge();
  EXPECT_THAT(Normals(), ElementsAre(0.6F, 0.8F, 0, 1, 0, 0, 1, 7));
}

TEST_F(QXStaticGeometryBuild, NormalsRunOnByTheirOwnNumberAndNeverPastTheArray) {
  QXVertexDataPackage& few = MakeMesh({0, 0, 0, 0, 0, 0});
  SetNormals(few, {1, 0, 0});
  Add(few);
  QXVertexDataPackage& many = MakeMesh({0, 0, 0});
  SetNormals(many, {0, 1, 0, 0, 0, 1, 1, 0, 0, 0, 1, 0});
  Add(many);
  Merge();
  EXPECT_THAT(Normals(), ElementsAre(1, 0, 0, 0, 1, 0, 0, 0, 1));
}

TEST_F(QXStaticGeometryBuild, MeshWithoutColorsBesideOneWithThemIsWhiteAndOpaque) {
  Add(MakeMesh({0, 0, 0, 0, 0, 0}));
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetColors(mesh, {0x11223344});
  Add(mesh);
  Merge();
  EXPECT_THAT(Colors(), ElementsAre(0xFFFFFFFFu, 0xFFFFFFFFu, 0x11223344u));
}

TEST_F(QXStaticGeometryBuild, SecondColorsFollowTheSameRule) {
  Add(MakeMesh({0, 0, 0}));
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0, 0, 0, 0});
  mesh.SetSecondColorNum(2, 0);
  mesh.m_pSecondColors[0] = 5;
  mesh.m_pSecondColors[1] = 6;
  Add(mesh);
  Merge();
  EXPECT_EQ(Merged().m_pColors, nullptr);
  EXPECT_THAT(Words(Merged().m_pSecondColors, Merged().m_pSecondColors + 3), ElementsAre(0xFFFFFFFFu, 5u, 6u));
}

TEST_F(QXStaticGeometryBuild, FewerColorsThanVerticesMoveTheColorsOfLaterMeshes) {
  QXVertexDataPackage& few = MakeMesh({0, 0, 0, 0, 0, 0, 0, 0, 0});
  SetColors(few, {1});
  Add(few);
  QXVertexDataPackage& next = MakeMesh({0, 0, 0});
  SetColors(next, {2});
  Add(next);
  Merge();
  EXPECT_THAT(Colors(), ElementsAre(1u, 2u, 0u, 0u));
}

TEST_F(QXStaticGeometryBuild, MoreColorsThanVerticesStopAtTheEndOfTheArray) {
  QXVertexDataPackage& many = MakeMesh({0, 0, 0});
  SetColors(many, {1, 2, 3, 4, 5});
  Add(many);
  Add(MakeMesh({0, 0, 0}));
  Merge();
  EXPECT_THAT(Colors(), ElementsAre(1u, 2u));
}

TEST_F(QXStaticGeometryBuild, CoordinatesAreCopiedAndFilledUpWithZeros) {
  QXVertexDataPackage& two = MakeMesh({0, 0, 0, 0, 0, 0});
  SetCoords(two, 1, {1, 2, 3, 4});
  Add(two);
  QXVertexDataPackage& three = MakeMesh({0, 0, 0});
  SetCoords(three, 1, {5, 6, 7}, 3);
  Add(three);
  Add(MakeMesh({0, 0, 0}));
  Merge();
  EXPECT_THAT(Coords(1), ElementsAre(1, 2, 0, 3, 4, 0, 5, 6, 7, 0, 0, 0));
}

TEST_F(QXStaticGeometryBuild, CoordinatesThatAMeshLacksAreZeros) {
  QXVertexDataPackage& few = MakeMesh({0, 0, 0, 0, 0, 0});
  SetCoords(few, 0, {1, 2});
  Add(few);
  QXVertexDataPackage& next = MakeMesh({0, 0, 0});
  SetCoords(next, 0, {3, 4, 5, 6, 7, 8});
  Add(next);
  Merge();
  EXPECT_THAT(Coords(), ElementsAre(1, 2, 0, 0, 3, 4));
}

TEST_F(QXStaticGeometryBuild, WithoutTransformingAllComesThroughUnchanged) {
  AddTransformedPass(L"a", 2.0, 1.0);
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3});
  SetNormals(mesh, {4, 5, 6});
  SetCoords(mesh, 0, {7, 8});
  Add(mesh, QuarterTurn(9.0), {&MakeTriangles(L"a", {0, 0, 0})});
  Merge(Moved(5.0), 1);
  EXPECT_THAT(Positions(), ElementsAre(1, 2, 3));
  EXPECT_THAT(Normals(), ElementsAre(4, 5, 6));
  EXPECT_THAT(Coords(), ElementsAre(7, 8));
  EXPECT_THAT(Indices(), ElementsAre(0, 0, 0));
}

// Polylines.

TEST_F(QXStaticGeometryBuild, PolylineKeepsTheTranslationInNormalsAndDoesNotNormalise) {
  m_host.AddPass(L"PolyLine", {});
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3, -1}, 4);
  SetNormals(mesh, {4, 5, 6});
  Add(mesh, Moved(10.0), {&MakeTriangles(L"PolyLine", {0})});
  Merge(Moved(1.0));
  EXPECT_THAT(Positions(), ElementsAre(10, 2, 3, -1));
  EXPECT_THAT(Normals(), ElementsAre(13, 5, 6));
}

TEST_F(QXStaticGeometryBuild, PolylineNormalsOfATypeFromZeroOnAreCopied) {
  m_host.AddPass(L"PolyLine", {});
  m_nType = 0;
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3});
  SetNormals(mesh, {4, 5, 6});
  Add(mesh, Moved(10.0), {&MakeTriangles(L"PolyLine", {0})});
  Merge();
  EXPECT_THAT(Normals(), ElementsAre(4, 5, 6));
}

TEST_F(QXStaticGeometryBuild, PolylineUnit0OfThreeDimensionsIsAPoint) {
  m_host.AddPass(L"PolyLine", {});
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3});
  SetCoords(mesh, 0, {4, 5, 6}, 3);
  SetCoords(mesh, 1, {7, 8, 9}, 3);
  Add(mesh, QuarterTurn(10.0), {&MakeTriangles(L"PolyLine", {0})});
  Merge();
  EXPECT_THAT(Coords(0), ElementsAre(5, 4, 6));
  EXPECT_THAT(Coords(1), ElementsAre(7, 8, 9));
}

TEST_F(QXStaticGeometryBuild, PolylineUnit0OfTwoDimensionsIsCopied) {
  m_host.AddPass(L"PolyLine", {});
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3});
  SetCoords(mesh, 0, {4, 5});
  Add(mesh, Moved(10.0), {&MakeTriangles(L"PolyLine", {0})});
  Merge();
  EXPECT_THAT(Coords(0), ElementsAre(4, 5));
}

TEST_F(QXStaticGeometryBuild, PolylineUnit0IsMovedEvenWithoutTransforming) {
  m_host.AddPass(L"PolyLine", {});
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3});
  SetNormals(mesh, {4, 5, 6});
  SetCoords(mesh, 0, {7, 8, 9}, 3);
  Add(mesh, Moved(10.0), {&MakeTriangles(L"PolyLine", {0})});
  Merge(QXMatrix4d(), 1);
  EXPECT_THAT(Positions(), ElementsAre(1, 2, 3));
  EXPECT_THAT(Normals(), ElementsAre(4, 5, 6));
  EXPECT_THAT(Coords(0), ElementsAre(17, 8, 9));
}

TEST_F(QXStaticGeometryBuild, PolylineCoordinatesKeepTheirPlaceInTheTexture) {
  m_host.AddPass(L"PolyLine", {});
  AddTransformedPass(L"a", 2.0, 1.0);
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3});
  SetCoords(mesh, 0, {4, 5});
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"PolyLine", {0}), &MakeTriangles(L"a", {0})});
  Merge();
  EXPECT_THAT(Coords(0), ElementsAre(4, 5));
}

// Texture transformations.

TEST_F(QXStaticGeometryBuild, TouchedVerticesAreTransformedOnce) {
  AddTransformedPass(L"a", 2.0, 1.0);
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0, 0, 0, 0, 0, 0, 0});
  SetCoords(mesh, 0, {1, 2, 3, 4, 5, 6});
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {0, 2, 0, 0, 2, 2})});
  Merge();
  EXPECT_THAT(Coords(), ElementsAre(3, 4, 3, 4, 11, 12));
}

TEST_F(QXStaticGeometryBuild, ThirdRowOfATextureTransformationIsAddedToo) {
  m_host.AddPass(L"a", {L"a.png"});
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetCoords(mesh, 0, {1, 2});
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {0})});
  QXMatrix4d& matrix = Records(L"a")[0].m_matTextures[0];
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) matrix[nRow][nColumn] = 10.0 * (nRow + 1) + nColumn;
  }
  Merge();
  // 1 * 10 + 2 * 20 + 30 + 40 and 1 * 11 + 2 * 21 + 31 + 41
  EXPECT_THAT(Coords(), ElementsAre(120, 125));
}

TEST_F(QXStaticGeometryBuild, RecordsOfTwoPassesTransformASharedVertexOneAfterTheOther) {
  AddTransformedPass(L"a", 2.0, 0.0);
  AddTransformedPass(L"b", 1.0, 1.0);
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetCoords(mesh, 0, {5, 5});
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"b", {0}), &MakeTriangles(L"a", {0})});
  Merge();
  // Doubled first, by the order of the keys, and moved then.
  EXPECT_THAT(Coords(), ElementsAre(11, 10));
}

TEST_F(QXStaticGeometryBuild, EachUnitHasItsOwnTransformation) {
  m_host.AddPass(L"a", {L"a.png", L"b.png"});
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetCoords(mesh, 0, {1, 1});
  SetCoords(mesh, 7, {1, 1});
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {0})});
  Records(L"a")[0].m_matTextures[0].SetTrans(QXVector3d(1, 2, 3));
  Records(L"a")[0].m_matTextures[7].SetTrans(QXVector3d(4, 5, 6));
  Merge();
  EXPECT_THAT(Coords(0), ElementsAre(2, 3));
  EXPECT_THAT(Coords(7), ElementsAre(5, 6));
}

TEST_F(QXStaticGeometryBuild, FourthCoordinateOfUnits0And1IsTheLayer) {
  m_host.AddPass(L"a", {L"a.png"});
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0, 0, 0, 0});
  for (unsigned int unit = 0; unit < 2; ++unit) SetCoords(mesh, unit, {1, 2, 3, 4, 5, 6, 7, 8}, 4);
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {1})});
  Records(L"a")[0].m_fTextureLayer = 6.0F;
  for (QXMatrix4d& matrix : Records(L"a")[0].m_matTextures) matrix.SetTrans(QXVector3d(10, 20, 30));
  Merge();
  for (unsigned int unit = 0; unit < 2; ++unit) EXPECT_THAT(Coords(unit), ElementsAre(1, 2, 3, 4, 15, 26, 7, 6));
}

TEST_F(QXStaticGeometryBuild, LayerIsOneUnlessPassesWereFolded) {
  m_host.AddPass(L"a", {L"a.png"});
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetCoords(mesh, 0, {1, 2, 3, 4}, 4);
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {0})});
  Merge();
  EXPECT_THAT(Coords(), ElementsAre(1, 2, 3, 1));
}

TEST_F(QXStaticGeometryBuild, FourCoordinatesFromUnit2OnStayAsTheyAre) {
  m_host.AddPass(L"a", {L"a.png"});
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0});
  SetCoords(mesh, 2, {1, 2, 3, 4}, 4);
  SetCoords(mesh, 3, {1, 2, 3}, 3);
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {0})});
  for (QXMatrix4d& matrix : Records(L"a")[0].m_matTextures) matrix.SetTrans(QXVector3d(10, 20, 30));
  Merge();
  EXPECT_THAT(Coords(2), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(Coords(3), ElementsAre(11, 22, 3));
}

TEST_F(QXStaticGeometryBuild, SingleCoordinateHasNoSecondOne) {
  m_host.AddPass(L"a", {L"a.png"});
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0, 0, 0, 0});
  SetCoords(mesh, 0, {1, 2}, 1);
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {0, 1})});
  Records(L"a")[0].m_matTextures[0].SetTrans(QXVector3d(10, 20, 30));
  Merged().m_nTexDims[0] = 1;
  Merge();
  EXPECT_THAT(Coords(), ElementsAre(11, 12));
}

// State.

TEST_F(QXStaticGeometryBuild, GatheredMembersStay) {
  m_host.AddPass(L"a", {});
  Add(MakeMesh({0, 0, 0}), Moved(1.0), {&MakeTriangles(L"a", {0})});
  Merge();
  EXPECT_EQ(Bucket().m_vecPackages.size(), 1u);
  EXPECT_EQ(Bucket().m_vecMatrices.size(), 1u);
  EXPECT_EQ(Records(L"a").size(), 1u);
  EXPECT_FALSE(m_geometry.m_BoundingSphere.valid());
}

TEST_F(QXStaticGeometryBuild, SecondMergeMakesVerticesAnewAndAppendsPackages) {
  m_host.AddPass(L"a", {});
  Add(MakeMesh({1, 2, 3}), Moved(10.0), {&MakeTriangles(L"a", {0, 0})}, MakeSubObject(0.0, 1.0));
  Merge();
  Merge(Moved(1.0));
  EXPECT_THAT(Positions(), ElementsAre(10, 2, 3));
  auto const& packages = Bucket().m_mapLevelIndices.at(0);
  ASSERT_EQ(packages.size(), 2u);
  EXPECT_THAT(Indices(*packages[0]), ElementsAre(0, 0));
  EXPECT_THAT(Indices(*packages[1]), ElementsAre(0, 0));
  EXPECT_THAT(Ints(Bucket().m_mapSubObjects.at(0)->m_arrCounts), ElementsAre(4));
}

TEST_F(QXStaticGeometryBuild, SecondMergeAfterMoreMeshesStaysWithinTheFirstSet) {
  m_host.AddPass(L"a", {});
  Add(MakeMesh({0, 0, 0, 0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {0, 1})});
  Merge();
  Add(MakeMesh({7, 8, 9}), QXMatrix4d(), {&MakeTriangles(L"a", {0, 0, 0})});
  Merge();
  auto const& packages = Bucket().m_mapLevelIndices.at(0);
  ASSERT_EQ(packages.size(), 2u);
  EXPECT_THAT(Indices(*packages[0]), ElementsAre(0, 1));
  EXPECT_THAT(Indices(*packages[1]), ElementsAre(0, 0, 0, 0, 0));
  EXPECT_THAT(Positions(), ElementsAre(0, 0, 0, 0, 0, 0, 7, 8, 9));
}

// The first set has no arrays; a renderer that takes them for what they say reads nothing.
TEST_F(QXStaticGeometryBuild, SecondMergeAfterOneWithoutVerticesLeavesTheFirstSetWithoutArrays) {
  AddTransformedPass(L"a", 1.0, 2.0);
  std::vector<unsigned short> const indices(100, 0);
  QXVertexDataPackage& empty = m_host.MakeCounted(0);
  Add(empty, QXMatrix4d(), {&MakeTriangles(L"a", indices)});
  Merge();
  QXVertexDataPackage& mesh = MakeMesh({1, 2, 3});
  SetCoords(mesh, 0, {0, 0});
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", indices)});
  Merge();
  auto const& packages = Bucket().m_mapLevelIndices.at(0);
  ASSERT_EQ(packages.size(), 2u);
  EXPECT_EQ(packages[0]->m_pIndices, nullptr);
  EXPECT_EQ(Indices(*packages[1]), std::vector<unsigned short>(200, 0));
  // Once for each of the two records.
  EXPECT_THAT(Coords(), ElementsAre(4, 0));
}

// The first merge leaves its numbers in the memory that the second one gets.
TEST_F(QXStaticGeometryBuild, WhatNoMeshFillsAnyMoreIsZero) {
  constexpr std::size_t Vertices = 64;
  QXVertexDataPackage& mesh = MakeMesh(Floats(3 * Vertices, 7.0F));
  SetNormals(mesh, Floats(3 * Vertices, 7.0F));
  SetColors(mesh, Words(Vertices, 7));
  mesh.SetSecondColorNum(Vertices, 0);
  std::fill_n(mesh.m_pSecondColors, Vertices, 7U);
  SetCoords(mesh, 0, Floats(2 * Vertices, 7.0F));
  Add(mesh);
  Merge();
  Bucket().m_vecPackages[0] = nullptr;
  Merge();
  EXPECT_EQ(Positions(), Floats(3 * Vertices, 0.0F));
  EXPECT_EQ(Normals(), Floats(3 * Vertices, 0.0F));
  EXPECT_EQ(Colors(), Words(Vertices, 0));
  EXPECT_EQ(Words(Merged().m_pSecondColors, Merged().m_pSecondColors + Vertices), Words(Vertices, 0));
  EXPECT_EQ(Coords(), Floats(2 * Vertices, 0.0F));
}

TEST_F(QXStaticGeometryBuild, NormalsWithoutVerticesAreFreed) {
  Add(MakeMesh({1, 2, 3}));
  Merge();
  Merged().m_nVertexNum = 0;
  Merged().SetNormalNum(2, 12);
  Bucket().m_vecPackages.clear();
  Merge();
  EXPECT_EQ(Merged().m_nNormalNum, 0u);
  EXPECT_EQ(Merged().m_nNormalStride, 0);
  EXPECT_EQ(Merged().m_pNormals, nullptr);
}

TEST_F(QXStaticGeometryBuild, NullPackagesAreSkipped) {
  m_host.AddPass(L"a", {});
  Add(MakeMesh({1, 2, 3}), QXMatrix4d(), {&MakeTriangles(L"a", {0})});
  m_geometry.m_vecBuckets16.push_back(nullptr);
  auto* const pBare = new QXStaticGeometryBucket;
  delete pBare->m_pVertexPackage;
  pBare->m_pVertexPackage = nullptr;
  m_geometry.m_vecBuckets16.push_back(pBare);
  Merge();
  EXPECT_THAT(Positions(), ElementsAre(1, 2, 3));
  EXPECT_TRUE(pBare->m_mapLevelIndices.empty());
}

}  // namespace
}  // namespace QXC
