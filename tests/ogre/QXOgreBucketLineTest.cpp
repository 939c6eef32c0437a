// Lines that are so many pixels wide.
#include <cmath>

#include <tests/ogre/QXOgreBucketing.h>

namespace QXC {

namespace {

constexpr double PI = 3.14159265358979323846;

/// A bucket of one line, red and five pixels wide.
class QXOgreBucketLine : public QXOgreBucketing {
protected:
  void SetUp() override {
    QXOgreBucketing::SetUp();
    m_pPass = AddPass(m_Bucket.m_mapPasses, L"PolyLine");
    m_pPass->m_clrDiffuse = RED;
    m_pPass->m_dLineWidth = 5.0;
  }
  /// Two corners a point, two triangles a part.
  static void MakeLine(QXVertexDataPackage& package, std::vector<QXVector3d> const& arrPoints) {
    std::vector<float> arrCorners;
    std::vector<float> arrBefore;
    std::vector<float> arrAfter;
    auto const add = [](std::vector<float>& arrTarget, QXVector3d const& vec) {
      for (double const d : {vec.x, vec.y, vec.z}) arrTarget.push_back(static_cast<float>(d));
    };
    for (std::size_t i = 0; i < arrPoints.size(); ++i) {
      for (float const fSide : {-1.0F, 1.0F}) {
        add(arrCorners, arrPoints[i]);
        arrCorners.push_back(fSide);
        add(arrBefore, arrPoints[i == 0 ? 0 : i - 1]);
        add(arrAfter, arrPoints[i + 1 == arrPoints.size() ? i : i + 1]);
      }
    }
    SetPositions(package, arrCorners, 4);
    SetNormals(package, arrBefore);
    SetTexCoords(package, 0, arrAfter, 3);
  }
  static QXIndexPackage* NewLineIndices(std::size_t nPoints) {
    std::vector<unsigned short> arrIndices;
    for (std::size_t i = 0; i + 1 < nPoints; ++i)
      for (std::size_t const n : {0U, 1U, 2U, 1U, 3U, 2U}) arrIndices.push_back(static_cast<unsigned short>(2 * i + n));
    return NewIndices(arrIndices, L"PolyLine");
  }
  QXRenderOperation3D* ShowLine(std::vector<QXVector3d> const& arrPoints) {
    MakeLine(*m_Bucket.m_pVertexPackage, arrPoints);
    m_Bucket.m_mapLevelIndices[0] = {NewLineIndices(arrPoints.size())};
    return Show(m_Bucket);
  }
  /// Looks along -z with a field of 90 degrees: at the distance d half the picture is d units high.
  QXCamera* LookFrom(QXVector3d const& vecEye) {
    m_pCamera->SetPosition(vecEye.x, vecEye.y, vecEye.z);
    m_pGraphics3D->MakeProjectionMatrix(PI / 2.0, 1.0, 0.1, 1000.0, m_matProjection);
    m_pCamera->SetProjectionMatrix(m_matProjection);
    return m_pCamera;
  }
  static unsigned int CountInColumn(QXPicture const& picture, unsigned int x) {
    unsigned int nCount = 0;
    for (unsigned int y = 0; y < SIZE; ++y) nCount += picture.At(x, y) == RED_PIXEL ? 1 : 0;
    return nCount;
  }
  static unsigned int CountInRow(QXPicture const& picture, unsigned int y) {
    unsigned int nCount = 0;
    for (unsigned int x = 0; x < SIZE; ++x) nCount += picture.At(x, y) == RED_PIXEL ? 1 : 0;
    return nCount;
  }

  QXStaticGeometryBucket m_Bucket;
  QXPass* m_pPass = nullptr;
  QXMatrix4d m_matProjection;
};

}  // namespace

TEST_F(QXOgreBucketLine, ItIsFivePixelsWideFromAnyDistance) {
  // Half a pixel above the middle from a distance of 10, so that its edges are clear of the middles of pixels.
  ShowLine({{-500.0, 0.15625, 0.0}, {500.0, 0.15625, 0.0}});
  for (double const dDistance : {10.0, 40.0}) {
    LookFrom({0.0, 0.0, dDistance});
    QXPicture const picture = Frame();
    for (unsigned int const x : {0U, 20U, 63U}) EXPECT_EQ(CountInColumn(picture, x), 5U) << dDistance << " " << x;
  }
  EXPECT_EQ(Operations(), 1U);
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 2U);
}

TEST_F(QXOgreBucketLine, ItIsAsWideInPerspectiveAlongItsWay) {
  // Away from the eye, below it.
  ShowLine({{0.2, -5.0, -6.0}, {2.0, -5.0, -60.0}});
  LookFrom({0.0, 0.0, 0.0});
  QXPicture const picture = Frame();
  for (unsigned int const y : {40U, 48U, 56U}) EXPECT_EQ(CountInRow(picture, y), 5U) << y;
  EXPECT_EQ(CountInRow(picture, 20), 0U);
}

TEST_F(QXOgreBucketLine, WhatPassesTheEyeKeepsItsWidthAndItsPlace) {
  ShowLine({{0.05, -1.0, 50.0}, {0.05, -1.0, -50.0}});
  LookFrom({0.0, 0.0, 0.0});
  QXPicture const picture = Frame();
  // In the picture it comes from below and ends in the middle.
  for (unsigned int const y : {40U, 50U, 60U}) {
    EXPECT_EQ(CountInRow(picture, y), 5U) << y;
    EXPECT_EQ(picture.At(33, y), RED_PIXEL) << y;
  }
  for (unsigned int const y : {0U, 10U, 28U}) EXPECT_EQ(CountInRow(picture, y), 0U) << y;
}

TEST_F(QXOgreBucketLine, CornersAreMitredAndSharpOnesEndAtTwiceTheHalfWidth) {
  m_pPass->m_dLineWidth = 8.0;
  // The corner stands in the middle between pixels: columns and rows from 28 to 35.
  ShowLine({{-0.9, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, -0.9, 0.0}});
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(35, 28), RED_PIXEL) << "the outer corner is filled";
  EXPECT_EQ(picture.At(36, 28), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(35, 27), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(27, 36), BACKGROUND_PIXEL) << "the inner one is not";
  EXPECT_EQ(CountInColumn(picture, 10), 8U);
  EXPECT_EQ(CountInRow(picture, 55), 8U);
  m_arrOperations.back()->SetVisible(0);
  ShowLine({{-0.9, 0.05, 0.0}, {0.0, 0.0, 0.0}, {-0.9, -0.05, 0.0}});
  QXPicture const sharp = Frame();
  EXPECT_EQ(sharp.At(50, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreBucketLine, ThereAndBackAgainIsALine) {
  ShowLine({{-0.5, 0.0, 0.0}, {0.5, 0.0, 0.0}, {-0.5, 0.0, 0.0}});
  EXPECT_GE(CountInColumn(Frame(), 32), 4U);
}

TEST_F(QXOgreBucketLine, PointsThatAreTheSameHarmNobody) {
  ShowLine({{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}});
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(10, 10), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(50, 50), BACKGROUND_PIXEL);
}

TEST_F(QXOgreBucketLine, ItReachesIntoThePictureFromBeyondItsEdge) {
  m_pPass->m_dLineWidth = 8.0;
  // One pixel beyond the left edge, and all of it there.
  ShowLine({{-1.0 - 1.0 / 32.0, -3.0, 0.0}, {-1.0 - 1.0 / 32.0, 3.0, 0.0}});
  EXPECT_EQ(CountInRow(Frame(), 32), 3U);
}

TEST_F(QXOgreBucketLine, FarFromTheZeroOfItsCoordinatesItIsTheSame) {
  double const dFar = 1048576.0;
  QXRenderOperation3D* const pOperation = ShowLine({{dFar - 1.0, dFar, 0.0}, {dFar + 1.0, dFar, 0.0}});
  QXMatrix4d matModel;
  matModel.SetTrans({-dFar, 0.25 / 32.0 - dFar, 0.0});
  pOperation->SetModelMatrix(matModel);
  QXPicture const picture = Frame();
  EXPECT_EQ(CountInColumn(picture, 10), 5U);
  EXPECT_EQ(CountInColumn(picture, 50), 5U);
  float const fNumbers[3] = {};
  EXPECT_EQ(pOperation->UpdatePositions(0, 1, fNumbers), 0) << "corners are more than positions";
}

TEST_F(QXOgreBucketLine, MergedLinesOfPlacedMeshesStandWhereTheyBelong) {
  QXStaticGeometry geometry;
  QXStaticMesh mesh;
  MakeLine(mesh.m_Vertices, {{-1.0, 0.0, 0.0}, {1.0, 0.0, 0.0}});
  mesh.m_arrIndices.Add(NewLineIndices(2));
  // The points beside take part in a turn as normals do, which those of other types than -1 do not.
  // A quarter turn, and to the right by a quarter of the picture's half and a quarter of a pixel.
  mesh.m_matModel[0][0] = mesh.m_matModel[1][1] = 0.0;
  mesh.m_matModel[0][1] = 1.0;
  mesh.m_matModel[1][0] = -1.0;
  mesh.m_matModel.SetTrans({0.5 + 0.25 / 32.0, 0.0, 0.0});
  geometry.AddVertexDataAndIndexPackage(
      &mesh.m_Vertices, mesh.m_arrIndices, m_Bucket.m_mapPasses, mesh.m_matModel, nullptr, -1);
  geometry.AssignStaticGeometry(QXMatrix4d(), 0);
  Show(*geometry.m_vecBuckets16.at(0));
  QXPicture const picture = Frame();
  EXPECT_EQ(CountInRow(picture, 5), 5U);
  EXPECT_EQ(CountInRow(picture, 60), 5U);
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketLine, LightAndCullingDoNotTouchIt) {
  m_pTarget->SetSunLightEnable(1);
  m_pTarget->SetSunPosition({0.0, 0.0, -1000.0});
  m_pPass->m_eCulling = CULLING_CLOCKWISE;
  QXRenderOperation3D* const pOperation = ShowLine({{-1.0, 0.01, 0.0}, {1.0, 0.01, 0.0}});
  EXPECT_EQ(CountInColumn(Frame(), 32), 5U);
  pOperation->SetCullingMode(CULLING_ANTICLOCKWISE);
  EXPECT_EQ(CountInColumn(Frame(), 32), 5U);
}

TEST_F(QXOgreBucketLine, TheDrawableMaySayHowWideItIs) {
  ShowLine({{-1.0, 0.25 / 32.0, 0.0}, {1.0, 0.25 / 32.0, 0.0}})->SetLineWidth(9.0);
  EXPECT_EQ(CountInColumn(Frame(), 32), 9U);
}

TEST_F(QXOgreBucketLine, WithoutThePointsBesideItHasNoWidth) {
  MakeLine(*m_Bucket.m_pVertexPackage, {{-1.0, 0.01, 0.0}, {1.0, 0.01, 0.0}});
  m_Bucket.m_mapLevelIndices[0] = {NewLineIndices(2)};
  SetTexCoords(*m_Bucket.m_pVertexPackage, 0, {}, 3);
  Show(m_Bucket);
  EXPECT_EQ(CountInColumn(Frame(), 32), 0U);
}

}  // namespace QXC
