#include <cmath>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

/// A square of half a unit to each side of the origin, in the plane z = 0.
std::vector<QXCorner> SquareCorners() {
  return {{-0.5F, -0.5F, 0.0F}, {0.5F, -0.5F, 0.0F}, {0.5F, 0.5F, 0.0F}, {-0.5F, 0.5F, 0.0F}};
}

std::vector<unsigned short> const SQUARE = {0, 1, 2, 0, 2, 3};

}  // namespace

/// A square that faces the camera or leans by 45 degrees, lit by a sun.
class QXOgreLighting : public QXOgreScenery {
protected:
  void SetUp() override {
    QXOgreScenery::SetUp();
    m_pTarget->SetSunLightEnable(1);
    m_pTarget->SetAmbientLight(QXColorValue3D(0.2, 0.2, 0.2, 1.0));
    m_pTarget->SetDiffuseLight(QXColorValue3D(0.8, 0.8, 0.8, 1.0));
  }
  int Brightness() { return Frame().At(32, 32).r; }
};

TEST_F(QXOgreLighting, AFaceWithoutNormalsIsLitByTheCosineOfItsOwn) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D::White);
  m_pTarget->SetSunPosition({0.0, 0.0, 1000.0});
  EXPECT_NEAR(Brightness(), 255, 1);
  m_pTarget->SetSunPosition({1000.0, 0.0, 1000.0});
  EXPECT_NEAR(Brightness(), 255 * (0.2 + 0.8 * std::sqrt(0.5)), 1);
  m_pTarget->SetSunPosition({1000.0, 0.0, 0.0});
  EXPECT_NEAR(Brightness(), 51, 1);
  m_pTarget->SetSunPosition({0.0, 0.0, -1000.0});
  EXPECT_NEAR(Brightness(), 51, 1);
  EXPECT_EQ(m_pTarget->GetSunPosition(), QXVector3d(0.0, 0.0, -1000.0));
}

TEST_F(QXOgreLighting, VertexNormalsLightTheFaceInTheirDirection) {
  auto corners = SquareCorners();
  for (QXCorner& corner : corners) corner.normal = QXVector3d(1.0, 0.0, 1.0);
  auto const pMesh = MakeMesh(corners, true);
  AddRange(*pMesh, SQUARE);
  Draw(*pMesh);
  m_pTarget->SetSunPosition({1000.0, 0.0, 1000.0});
  EXPECT_NEAR(Brightness(), 255, 1);
  m_pTarget->SetSunPosition({-1000.0, 0.0, 1000.0});
  EXPECT_NEAR(Brightness(), 51, 1);
  m_pTarget->SetSunPosition({0.0, 0.0, 1000.0});
  EXPECT_NEAR(Brightness(), 255 * (0.2 + 0.8 * std::sqrt(0.5)), 1);
}

TEST_F(QXOgreLighting, BothSidesAreLitWithAndWithoutNormals) {
  m_pTarget->SetSunPosition({0.0, 0.0, 1000.0});
  auto corners = SquareCorners();
  for (QXCorner& corner : corners) corner.normal = -QXVector3d::UNIT_Z;
  auto const pMesh = MakeMesh(corners, true);
  AddRange<unsigned short>(*pMesh, {2, 1, 0, 3, 2, 0});
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_NEAR(Brightness(), 255, 1);
  auto const pBare = MakeMesh(SquareCorners());
  AddRange<unsigned short>(*pBare, {2, 1, 0, 3, 2, 0});
  pOperation->SetRenderOperationMultiIndex(pBare.get());
  EXPECT_NEAR(Brightness(), 255, 1);
}

TEST_F(QXOgreLighting, NormalsTurnWithTheModelMatrixAndIgnoreItsScale) {
  auto corners = SquareCorners();
  for (QXCorner& corner : corners) corner.normal = QXVector3d::UNIT_Z;
  auto const pMesh = MakeMesh(corners, true);
  AddRange(*pMesh, SQUARE);
  // Leans by 45 degrees about the y axis, and is ten times as large: z goes to (1, 0, 1).
  QXMatrix4d mat;
  double const d = 10.0 * std::sqrt(0.5);
  mat[0][0] = d;
  mat[0][2] = -d;
  mat[1][1] = 10.0;
  mat[2][0] = d;
  mat[2][2] = d;
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  pOperation->SetModelMatrix(mat);
  m_pTarget->SetSunPosition({1000.0, 0.0, 1000.0});
  EXPECT_NEAR(Brightness(), 255, 1);
  m_pTarget->SetSunPosition({0.0, 0.0, 1000.0});
  EXPECT_NEAR(Brightness(), 255 * (0.2 + 0.8 * std::sqrt(0.5)), 2);
}

TEST_F(QXOgreLighting, ExaggeratedHeightsMoveAndTiltFacesAndTheirNormals) {
  // A plane that rises by a half of x, with its normal: exaggerated by 2 it rises by x.
  auto const corners = [](bool bNormals) {
    std::vector<QXCorner> result = SquareCorners();
    for (QXCorner& corner : result) {
      corner.z = corner.x * 0.5F;
      if (bNormals) corner.normal = QXVector3d(-0.5, 0.0, 1.0);
    }
    return result;
  };
  m_pTarget->SetVerticalExaggeration(2.0);
  m_pTarget->SetSunPosition({-1000.0, 0.0, 1000.0});
  for (bool const bNormals : {false, true}) {
    auto const pMesh = MakeMesh(corners(bNormals), bNormals);
    AddRange(*pMesh, SQUARE);
    QXRenderOperation3D* const pOperation = Draw(*pMesh);
    EXPECT_NEAR(Brightness(), 255, 1) << bNormals;
    pOperation->SetVisible(0);
  }
}

TEST_F(QXOgreLighting, TheSunStandsStillWhenTheCameraTurns) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D::White);
  m_pTarget->SetSunPosition({1000.0, 0.0, 1000.0});
  m_pCamera->Roll(1.2);
  EXPECT_NEAR(Brightness(), 255 * (0.2 + 0.8 * std::sqrt(0.5)), 1);
}

TEST_F(QXOgreLighting, AmbientAndDiffuseHaveTheirColours) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D::White);
  m_pTarget->SetSunPosition({0.0, 0.0, 1000.0});
  m_pTarget->SetAmbientLight(QXColorValue3D(0.0, 0.0, 0.5, 1.0));
  m_pTarget->SetDiffuseLight(QXColorValue3D(0.5, 0.25, 0.0, 1.0));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 64, 1);
  EXPECT_NEAR(pixel.b, 128, 1);
}

TEST_F(QXOgreLighting, WithoutTheSunOrLightColoursAreAsGiven) {
  QXRenderOperation3D* const pOperation = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D::White);
  m_pTarget->SetSunPosition({1000.0, 0.0, 0.0});
  EXPECT_NEAR(Brightness(), 51, 1);
  pOperation->SetLightEnable(0);
  EXPECT_EQ(Brightness(), 255);
  pOperation->SetLightEnable(1);
  EXPECT_NEAR(Brightness(), 51, 1);
  m_pTarget->SetSunLightEnable(0);
  EXPECT_EQ(Brightness(), 255);
  EXPECT_EQ(m_pTarget->GetSunLightEnable(), 0);
}

TEST_F(QXOgreLighting, ThePerspectiveEyeTellsFrontFromBackToo) {
  // Leans so far that its front is seen from the eye's place, though it looks away from the view's direction.
  m_pCamera->SetPosition(0.0, 0.0, 2.0);
  QXMatrix4d matProjection;
  m_pGraphics3D->MakeProjectionMatrix(2.4, 1.0, 0.1, 20.0, matProjection);
  m_pCamera->SetProjectionMatrix(matProjection);
  auto corners =
      std::vector<QXCorner>{{3.0F, -1.0F, 0.0F}, {3.4F, -1.0F, 2.5F}, {3.4F, 1.0F, 2.5F}, {3.0F, 1.0F, 0.0F}};
  for (QXCorner& corner : corners) corner.normal = QXVector3d(-1.0, 0.0, 0.16);
  auto const pMesh = MakeMesh(corners, true);
  AddRange(*pMesh, SQUARE);
  Draw(*pMesh);
  m_pTarget->SetSunPosition({-1000.0, 0.0, 160.0});
  EXPECT_NEAR(Frame().At(51, 32).r, 255, 2);
  m_pTarget->SetSunPosition({1000.0, 0.0, -160.0});
  EXPECT_NEAR(Frame().At(51, 32).r, 51, 2);
}

}  // namespace QXC
