// Ranges, levels and objects of buckets, and buckets that are not whole.
#include <limits>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>

#include <tests/ogre/QXOgreBucketing.h>

namespace QXC {

namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// A bucket whose rectangles are the left and the right half of the picture, each in a package of its own.
class QXOgreBucketTest : public QXOgreBucketing {
protected:
  void SetUp() override {
    QXOgreBucketing::SetUp();
    SetPositions(*m_Bucket.m_pVertexPackage, Join({Corners(-1, -1, 0, 1), Corners(0, -1, 1, 1)}));
    AddPass(m_Bucket.m_mapPasses, L"red")->m_clrDiffuse = RED;
    AddPass(m_Bucket.m_mapPasses, L"green")->m_clrDiffuse = GREEN;
  }
  void AddLevel(int nLevel, std::vector<QXIndexPackage*> const& vecPackages) {
    m_Bucket.m_mapLevelIndices[nLevel] = vecPackages;
  }
  /// Both halves on level 0.
  void AddHalves() { AddLevel(0, {NewIndices(Rectangles(0, 0), L"green"), NewIndices(Rectangles(1, 1), L"red")}); }
  /// An object at a vertex, with its part of each package.
  void AddObject(int nKey, int nPackage, int nOffset, int nCount) {
    QXSubObjectInfo*& pObject = m_Bucket.m_mapSubObjects[nKey];
    if (!pObject) pObject = new QXSubObjectInfo;
    pObject->m_mapPassSlots[nPackage] = static_cast<int>(pObject->m_arrOffsets.GetSize());
    pObject->m_arrOffsets.Add(nOffset);
    pObject->m_arrCounts.Add(nCount);
  }

  QXStaticGeometryBucket m_Bucket;
};

}  // namespace

TEST_F(QXOgreBucketTest, EachPackageIsOneOperationInTheColourOfItsPass) {
  AddHalves();
  QXRenderOperation3D const* const pOperation = Show(m_Bucket);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
  EXPECT_EQ(Operations(), 2U);
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 4U);
  EXPECT_EQ(pOperation->GetIndexRangeCount(), 2U);
  EXPECT_EQ(pOperation->GetVertexCount(), 8U);
  EXPECT_EQ(pOperation->GetTriangleCount(), 4U);
}

TEST_F(QXOgreBucketTest, TheBucketMayDieAndItsNumbersStay) {
  auto pBucket = std::make_unique<QXStaticGeometryBucket>();
  SetPositions(*pBucket->m_pVertexPackage, Corners(-1, -1, 1, 1));
  AddPass(pBucket->m_mapPasses, L"red")->m_clrDiffuse = RED;
  pBucket->m_mapLevelIndices[0] = {NewIndices(Rectangles(0, 0), L"red")};
  pBucket->m_mapSubObjects[0] = new QXSubObjectInfo;
  Show(*pBucket);
  pBucket.reset();
  EXPECT_EQ(PixelAt(32, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketTest, WithoutAPassTheColoursOfVerticesAreShown) {
  SetColors(*m_Bucket.m_pVertexPackage, std::vector<unsigned int>(8, RED_WORD));
  AddLevel(0, {NewIndices(Rectangles(0, 0), L"none"), NewIndices(Rectangles(1, 1), L"green")});
  m_Bucket.m_mapPasses[L"none"] = nullptr;
  Show(m_Bucket);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  // Green times red.
  EXPECT_EQ(picture.At(48, 32), (QXPixel{0, 0, 0, 255}));
}

TEST_F(QXOgreBucketTest, OnlyTheFirstPassNameCounts) {
  AddLevel(0, {NewIndices(Rectangles(0, 1), L"red")});
  m_Bucket.m_mapLevelIndices[0][0]->m_arrPassNames.Add(L"green");
  Show(m_Bucket);
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketTest, RangesAreNumberedLevelByLevel) {
  AddLevel(1, {NewIndices(Rectangles(1, 1), L"red")});
  AddLevel(0, {NewIndices(Rectangles(0, 0), L"green"), nullptr, NewIndices(Rectangles(1, 1), L"green")});
  QXRenderOperation3D* const pOperation = Show(m_Bucket, {0.0, 5.0});
  EXPECT_EQ(pOperation->GetIndexRangeCount(), 4U);
  EXPECT_EQ(PixelAt(48, 32), RED_PIXEL);
  pOperation->SetIndexRangeVisible(3, 0);
  EXPECT_EQ(PixelAt(48, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(Operations(), 0U);
  m_pCamera->SetPosition(0.0, 0.0, 4.0);
  EXPECT_EQ(PixelAt(16, 32), GREEN_PIXEL);
  EXPECT_EQ(Operations(), 2U);
  pOperation->SetIndexRangeVisible(0, 0);
  EXPECT_EQ(PixelAt(16, 32), BACKGROUND_PIXEL);
  pOperation->SetIndexRangeColor(2, RED);
  EXPECT_EQ(PixelAt(48, 32), (QXPixel{0, 0, 0, 255})) << "red times green";
}

TEST_F(QXOgreBucketTest, LevelsComeAndGoWithTheNearestDistanceToTheBounds) {
  // Up to z = 4, so the eye at 10 is 6 away.
  SetPositions(*m_Bucket.m_pVertexPackage, Join({Corners(-1, -1, 0, 1, 4.0F), Corners(0, -1, 1, 1, -1.0F)}));
  AddLevel(0, {NewIndices(Rectangles(0, 1), L"red")});
  AddLevel(1, {NewIndices(Rectangles(0, 1), L"green")});
  Show(m_Bucket, {0.0, 6.0, 8.0});
  EXPECT_EQ(PixelAt(16, 32), GREEN_PIXEL);
  m_pCamera->SetPosition(0.0, 0.0, 9.99);
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
  EXPECT_EQ(Operations(), 1U);
  m_pCamera->SetPosition(0.0, 0.0, 12.0);
  EXPECT_EQ(PixelAt(16, 32), BACKGROUND_PIXEL) << "the second level ends where a third would begin";
  EXPECT_EQ(Operations(), 0U);
  m_pCamera->SetPosition(0.0, 0.0, 1.0);
  EXPECT_EQ(PixelAt(48, 32), RED_PIXEL) << "inside the bounds the distance is 0";
}

TEST_F(QXOgreBucketTest, TheDistanceFollowsModelMatrixOriginAndViewport) {
  AddLevel(0, {NewIndices(Rectangles(0, 1), L"red")});
  AddLevel(1, {NewIndices(Rectangles(0, 1), L"green")});
  QXRenderOperation3D* const pOperation = Show(m_Bucket, {0.0, 5.0});
  EXPECT_EQ(PixelAt(16, 32), GREEN_PIXEL);
  QXMatrix4d matModel;
  matModel.SetTrans({0.0, 0.0, 6.0});
  pOperation->SetModelMatrix(matModel);
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
  m_pGraphics3D->SetRelativeOrigin({1000.0, -500.0, 3.0});
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
  // Another eye in the same frame sees the other level.
  QXCamera* const pNear = MakeCamera(L"far");
  pNear->SetPosition(0.0, 0.0, 15.0);
  AddViewport(*m_pTarget, *pNear, 1, 0.5, 0.0, 0.5, 1.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), GREEN_PIXEL);
}

TEST_F(QXOgreBucketTest, WithoutDistancesLevelZeroIsDrawnAlone) {
  AddLevel(-1, {NewIndices(Rectangles(0, 1), L"green")});
  AddLevel(0, {NewIndices(Rectangles(0, 0), L"red")});
  AddLevel(1, {NewIndices(Rectangles(0, 1), L"green")});
  Show(m_Bucket);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(Operations(), 1U);
}

TEST_F(QXOgreBucketTest, LevelsWithoutADistanceOfTheirOwnAreNotDrawn) {
  AddLevel(0, {NewIndices(Rectangles(0, 0), L"red")});
  AddLevel(1, {NewIndices(Rectangles(1, 1), L"green")});
  AddLevel(std::numeric_limits<int>::min(), {NewIndices(Rectangles(0, 1), L"green")});
  AddLevel(std::numeric_limits<int>::max(), {NewIndices(Rectangles(0, 1), L"green")});
  Show(m_Bucket, {2.0});
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), BACKGROUND_PIXEL);
  m_pCamera->SetPosition(0.0, 0.0, 1.0);
  EXPECT_EQ(PixelAt(16, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreBucketTest, DistancesThatAreNoNumbersDrawNothing) {
  AddHalves();
  Show(m_Bucket, {NO_NUMBER, NO_NUMBER});
  EXPECT_EQ(PixelAt(16, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreBucketTest, IndicesOf32BitsReachVerticesBeyond16) {
  constexpr unsigned int COUNT = 70000;
  std::vector<float> arrNumbers(std::size_t{COUNT} * 3, 0.0F);
  std::vector<float> const arrCorners = Corners(-1, -1, 0, 1);
  std::copy(arrCorners.begin(), arrCorners.end(), arrNumbers.end() - 12);
  SetPositions(*m_Bucket.m_pVertexPackage, arrNumbers);
  m_Bucket.m_nIndexType = 1;
  std::vector<unsigned int> arrIndices;
  for (unsigned int const n : {4U, 3U, 2U, 4U, 2U, 1U}) arrIndices.push_back(COUNT - n);
  AddLevel(0, {NewIndices(arrIndices, L"red")});
  QXRenderOperation3D const* const pOperation = Show(m_Bucket);
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
  EXPECT_EQ(PixelAt(48, 32), BACKGROUND_PIXEL);
  // Twelve bytes of position, twelve of normal, four of colour; four an index.
  EXPECT_EQ(pOperation->GetDeviceMemory(), COUNT * 28U + 24U);
}

TEST_F(QXOgreBucketTest, IndicesOf16BitsStaySoOnTheDevice) {
  AddHalves();
  EXPECT_EQ(Show(m_Bucket)->GetDeviceMemory(), 8U * 28U + 12U * 2U);
}

TEST_F(QXOgreBucketTest, PositionsOfTwoAndOfFourNumbersAreTaken) {
  SetPositions(*m_Bucket.m_pVertexPackage, {-1, -1, 0, -1, 0, 1, -1, 1}, 2);
  AddLevel(0, {NewIndices(Rectangles(0, 0), L"red")});
  QXRenderOperation3D const* const pFlat = Show(m_Bucket);
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
  EXPECT_EQ(PixelAt(48, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(pFlat->GetBoundingBox().GetMax(), QXVector3d(0.0, 1.0, 0.0));
  SetPositions(*m_Bucket.m_pVertexPackage, {0, -1, 2, 5, 1, -1, 2, 0.5F, 1, 1, 2, 0, 0, 1, 2, -3}, 4);
  QXRenderOperation3D const* const pHigh = Show(m_Bucket);
  EXPECT_EQ(PixelAt(48, 32), RED_PIXEL) << "the fourth number is no divisor";
  EXPECT_EQ(pHigh->GetBoundingBox().GetMax(), QXVector3d(1.0, 1.0, 2.0));
}

TEST_F(QXOgreBucketTest, AnObjectIsHighlightedAndNothingElse) {
  SetPositions(*m_Bucket.m_pVertexPackage,
      Join({Corners(-1, -1, 0, 0), Corners(0, -1, 1, 0), Corners(-1, 0, 0, 1), Corners(0, 0, 1, 1)}));
  SetColors(*m_Bucket.m_pVertexPackage, std::vector<unsigned int>(16, 0xFFFFFFFF));
  // The second object has a rectangle in each package, the third is one of the first package.
  AddLevel(0, {NewIndices(Rectangles(0, 1), L"red"), NewIndices(Rectangles(2, 3), L"green")});
  AddObject(4, 0, 6, 6);
  AddObject(4, 1, 0, 6);
  AddObject(0, 0, 0, 6);
  AddObject(12, 1, 6, 6);
  QXRenderOperation3D* const pOperation = Show(m_Bucket);
  pOperation->SetSelectionColor(QXColorValue3D(0.0, 0.0, 1.0, 1.0));
  EXPECT_EQ(PixelAt(48, 48), RED_PIXEL);
  QXBatchSelAndVertexColor state;
  state.m_mapSelections = {{4, 1}, {5, 1}, {999, 1}};
  pOperation->SetBatchState(state);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 48), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 48), BLUE_PIXEL);
  EXPECT_EQ(picture.At(16, 16), BLUE_PIXEL);
  EXPECT_EQ(picture.At(48, 16), GREEN_PIXEL);
  EXPECT_EQ(Operations(), 2U) << "a selection costs no operation";
  state.m_mapSelections = {{4, 0}, {12, 1}};
  pOperation->SetBatchState(state);
  QXPicture const other = Frame();
  EXPECT_EQ(other.At(48, 48), RED_PIXEL);
  EXPECT_EQ(other.At(16, 16), GREEN_PIXEL);
  EXPECT_EQ(other.At(48, 16), BLUE_PIXEL);
  // What is not named stays as it is.
  pOperation->SetBatchState(QXBatchSelAndVertexColor());
  EXPECT_EQ(PixelAt(48, 16), BLUE_PIXEL);
  pOperation->SetSelected(1);
  EXPECT_EQ(PixelAt(16, 48), BLUE_PIXEL);
  pOperation->SetSelected(0);
  EXPECT_EQ(PixelAt(16, 48), RED_PIXEL);
}

TEST_F(QXOgreBucketTest, ASelectedObjectIsSoOnEveryLevelOfItsVertices) {
  AddLevel(0, {NewIndices(Rectangles(0, 1), L"red")});
  AddLevel(1, {NewIndices(Rectangles(0, 1), L"green")});
  AddObject(4, 0, 6, 6);
  QXRenderOperation3D* const pOperation = Show(m_Bucket, {0.0, 5.0});
  pOperation->SetSelectionColor(QXColorValue3D(0.0, 0.0, 1.0, 1.0));
  QXBatchSelAndVertexColor state;
  state.m_mapSelections[4] = 1;
  pOperation->SetBatchState(state);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(48, 32), BLUE_PIXEL);
}

TEST_F(QXOgreBucketTest, TheSelectionCoversAsMuchAsItsAlphaSays) {
  AddHalves();
  AddObject(0, 0, 0, 6);
  QXRenderOperation3D* const pOperation = Show(m_Bucket);
  pOperation->SetSelectionColor(QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  QXBatchSelAndVertexColor state;
  state.m_mapSelections[0] = 1;
  pOperation->SetBatchState(state);
  QXPixel const pixel = PixelAt(16, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 128, 1);
  EXPECT_EQ(PixelAt(48, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketTest, AnObjectTakesAColourInPlaceOfThoseOfItsVertices) {
  AddLevel(0, {NewIndices(Rectangles(0, 1))});
  AddObject(4, 0, 6, 6);
  QXRenderOperation3D* const pOperation = Show(m_Bucket);
  EXPECT_EQ(PixelAt(48, 32), WHITE_PIXEL);
  QXBatchSelAndVertexColor state;
  state.m_mapVertexColors[4] = RED_WORD;
  pOperation->SetBatchState(state);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), WHITE_PIXEL);
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
  state.m_mapVertexColors[4] = QDCRGBA(0, 255, 0, 128);
  pOperation->SetBatchState(state);
  QXPixel const pixel = PixelAt(48, 32);
  EXPECT_NEAR(pixel.g, 128, 1) << "blended over the background";
  EXPECT_NEAR(pixel.b, 25, 1);
}

TEST_F(QXOgreBucketTest, ObjectsThatClaimWhatIsNotTheirsAreLeftOut) {
  AddHalves();
  AddObject(-1, 0, 0, 6);
  AddObject(0, 0, 1, 6);
  AddObject(1, 0, -1, 3);
  AddObject(2, 0, 0, -6);
  AddObject(3, 0, std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
  AddObject(4, 7, 0, 6);
  AddObject(5, -1, 0, 6);
  AddObject(6, 0, 0, 3);
  m_Bucket.m_mapSubObjects[6]->m_mapPassSlots[0] = 5;
  m_Bucket.m_mapSubObjects[7] = nullptr;
  // Behind its own vertices.
  AddObject(100, 0, 0, 6);
  QXRenderOperation3D* const pOperation = Show(m_Bucket);
  QXBatchSelAndVertexColor state;
  for (unsigned int const n : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 100U, 0xFFFFFFFFU}) {
    state.m_mapSelections[n] = 1;
    state.m_mapVertexColors[n] = 0;
  }
  pOperation->SetBatchState(state);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
}

// A file may hold a hundred thousand objects that each claim a million indices: looking through that would not end.
TEST_F(QXOgreBucketTest, ObjectsTogetherClaimNoMoreThanThereIs) {
  std::vector<unsigned short> arrIndices(600000, 0);
  for (unsigned short const n : Rectangles(0, 0)) arrIndices.push_back(n);
  AddLevel(0, {NewIndices(arrIndices, L"red")});
  for (int i = 0; i < 20000; ++i) AddObject(i, 0, 0, static_cast<int>(arrIndices.size()));
  QXRenderOperation3D* const pOperation = Show(m_Bucket);
  QXBatchSelAndVertexColor state;
  state.m_mapVertexColors[1] = 0xFF000000;
  pOperation->SetBatchState(state);
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL) << "the first object has claimed everything";
  state.m_mapVertexColors = {{0, 0xFF000000}};
  pOperation->SetBatchState(state);
  EXPECT_EQ(PixelAt(16, 32), (QXPixel{0, 0, 0, 255}));
}

TEST_F(QXOgreBucketTest, RangesThatAreNotWholeDrawNothingAndKeepTheirNumbers) {
  QXIndexPackage* const pBeyond = NewIndices(std::vector<unsigned short>{0, 1, 8}, L"red");
  QXIndexPackage* const pWide = NewIndices(std::vector<unsigned int>{0, 1, 0xFFFFFFFF}, L"red");
  QXIndexPackage* const pNegative = NewIndices(Rectangles(0, 0), L"red");
  pNegative->m_nIndexNum = -6;
  QXIndexPackage* const pStrange = NewIndices(Rectangles(0, 0), L"red");
  pStrange->m_nIndexType = 9;
  QXIndexPackage* const pKind = NewIndices(Rectangles(0, 0), L"red");
  pKind->m_eOperationType = 77;
  QXIndexPackage* const pNone = new QXIndexPackage;
  pNone->m_nIndexNum = 6;
  AddLevel(0, {nullptr, pBeyond, pWide, pNegative, pStrange, pKind, pNone, new QXIndexPackage,
                  NewIndices(Rectangles(1, 1), L"green")});
  AddLevel(1, {});
  QXRenderOperation3D* const pOperation = Show(m_Bucket);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(48, 32), GREEN_PIXEL);
  EXPECT_EQ(Operations(), 1U);
  EXPECT_EQ(pOperation->GetIndexRangeCount(), 9U);
  pOperation->SetIndexRangeVisible(8, 0);
  EXPECT_EQ(PixelAt(48, 32), BACKGROUND_PIXEL);
  pStrange->m_nIndexType = 0;
  pNegative->m_nIndexNum = 6;
}

TEST_F(QXOgreBucketTest, ArraysThatDoNotReachAllVerticesAreLeftOut) {
  AddHalves();
  QXVertexDataPackage& package = *m_Bucket.m_pVertexPackage;
  SetNormals(package, {0, 0, 1});
  SetColors(package, {0x00000000});
  SetTexCoords(package, 0, {5, 5}, 2);
  package.m_nTexCoordNums[1] = 8;
  Show(m_Bucket);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketTest, WithoutPositionsThereIsNothing) {
  AddHalves();
  QXVertexDataPackage* const pWhole = m_Bucket.m_pVertexPackage;
  QXVertexDataPackage counts;
  counts.m_nVertexNum = 8;
  counts.m_nNormalNum = 8;
  counts.m_nColorNum = 8;
  QXVertexDataPackage noDimension;
  noDimension.m_nVertexDim = 0;
  noDimension.SetVertexNum(8, 0);
  QXVertexDataPackage empty;
  for (QXVertexDataPackage* const pPackage :
      {static_cast<QXVertexDataPackage*>(nullptr), &counts, &noDimension, &empty}) {
    m_Bucket.m_pVertexPackage = pPackage;
    QXRenderOperation3D* const pOperation = Show(m_Bucket, {0.0});
    QXBatchSelAndVertexColor state;
    state.m_mapSelections[0] = 1;
    state.m_mapVertexColors[0] = 1;
    pOperation->SetBatchState(state);
    pOperation->SetIndexRangeVisible(0, 1);
    pOperation->SetColor(RED);
    EXPECT_EQ(pOperation->GetVertexCount(), 0U);
  }
  m_Bucket.m_pVertexPackage = pWhole;
  EXPECT_EQ(PixelAt(16, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(Operations(), 0U);
}

TEST_F(QXOgreBucketTest, PositionsThatAreNoNumbersHarmNobody) {
  std::vector<float> arrNumbers = Join({Corners(-1, -1, 0, 1), Corners(0, -1, 1, 1)});
  arrNumbers[0] = std::numeric_limits<float>::quiet_NaN();
  arrNumbers[5] = std::numeric_limits<float>::infinity();
  SetPositions(*m_Bucket.m_pVertexPackage, arrNumbers);
  AddHalves();
  QXRenderOperation3D* const pOperation = Show(m_Bucket, {0.0, 5.0});
  pOperation->SetOpacity(0.5);
  Frame();
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 5.0F, RED);
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketTest, OtherGeometryTakesItsPlace) {
  AddHalves();
  AddObject(0, 0, 0, 6);
  QXRenderOperation3D* const pOperation = Show(m_Bucket, {1000.0});
  EXPECT_EQ(PixelAt(16, 32), BACKGROUND_PIXEL);
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
  QXBatchSelAndVertexColor state;
  state.m_mapSelections[0] = 1;
  pOperation->SetBatchState(state);
  EXPECT_EQ(PixelAt(16, 32), RED_PIXEL);
  pOperation->ClearGeometry();
  EXPECT_EQ(PixelAt(16, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreBucketTest, ASceneThatDoesNotExistMakesADrawableThatStandsInNone) {
  AddHalves();
  QXRenderOperationManager& manager = *m_pGraphics3D->GetRenderOperationManager();
  QXRenderOperation3D* const pOperation = manager.CreateStaticGeometry3D(L"nowhere", m_Bucket, QdcArray<double>());
  ASSERT_NE(pOperation, nullptr);
  m_arrOperations.push_back(pOperation);
  EXPECT_EQ(PixelAt(16, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(manager.AttachRenderOperation3D(pOperation, L"3D"), 1);
  EXPECT_EQ(PixelAt(16, 32), GREEN_PIXEL);
}

TEST_F(QXOgreBucketTest, ItOutlivesTheRenderer) {
  AddHalves();
  QXRenderOperation3D* const pOperation = Show(m_Bucket);
  Frame();
  m_pGraphics3D.reset();
  QXBatchSelAndVertexColor state;
  state.m_mapSelections[0] = 1;
  pOperation->SetBatchState(state);
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
}

}  // namespace QXC
