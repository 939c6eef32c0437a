#include <apps/qx3d/QXModelColors.h>
#include <apps/qx3d/QXModelPictures.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>

#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

using QXC::QXVector3d;

QXModelPictures const NoPictures;
QXC::QXBoundingBox const Box(QXVector3d(0.0, 0.0, 0.0), QXVector3d(100.0, 100.0, 50.0));

unsigned int ColorOf(QXC::ModelDataInfo const& model, double z, QXVector3d const& vecNormal) {
  return QXModelColors(model, Box, NoPictures).GetColor(*model.GetMesh(0), 0, QXVector3d(0.0, 0.0, z), vecNormal);
}

QXC::ModelDataInfo MakeModel(QXC::QXColorValue3D const& color) {
  QXC::ModelDataInfo model;
  QXC::QXModelMesh* pMesh = QXC::MakeTriangle();
  pMesh->m_bBaseColorSet = 1;
  pMesh->m_BaseColor = color;
  model.AddMesh(pMesh);
  return model;
}

TEST(QXModelColors, ColourOfTheFileIsShownAsItIs) {
  EXPECT_EQ(ColorOf(MakeModel({1.0, 0.0, 0.2, 1.0}), 0.0, QXVector3d::UNIT_Z), QDC::QDCRGBA(255, 0, 51, 255));
}

TEST(QXModelColors, VertexColourIsMultiplied) {
  QXC::ModelDataInfo model = MakeModel({1.0, 0.5, 1.0, 1.0});
  model.GetMesh(0)->m_pVertexPackage->SetColorNum(3, 0);
  model.GetMesh(0)->m_pVertexPackage->m_pColors[0] = QDC::QDCRGBA(255, 255, 0, 128);
  EXPECT_EQ(ColorOf(model, 0.0, QXVector3d::UNIT_Z), QDC::QDCRGBA(255, 128, 0, 128));
}

TEST(QXModelColors, MeshWithoutColoursIsGroundRoofAndWall) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  unsigned int const nGround = ColorOf(model, 0.5, QXVector3d::UNIT_Z);
  unsigned int const nRoof = ColorOf(model, 20.0, QXVector3d::UNIT_Z);
  unsigned int const nWall = ColorOf(model, 20.0, QXVector3d::UNIT_X);
  EXPECT_NE(nGround, nRoof);
  EXPECT_NE(nRoof, nWall);
  EXPECT_NE(nGround, nWall);
  EXPECT_EQ(ColorOf(model, 0.5, QXVector3d::UNIT_X), nWall);
  EXPECT_EQ(ColorOf(model, 20.0, -QXVector3d::UNIT_Z), nWall);
}

TEST(QXModelColors, DarkPaletteIsDrawnOnPaper) {
  QXC::ModelDataInfo const dark = MakeModel({0.5, 0.0, 0.0, 1.0});
  EXPECT_TRUE(QXModelColors(dark, Box, NoPictures).IsDark());
  // 0.55 of the colour and 0.45 of the paper.
  EXPECT_EQ(ColorOf(dark, 0.0, QXVector3d::UNIT_Z), QDC::QDCRGBA(176, 103, 95, 255));
}

TEST(QXModelColors, OneBrightColourKeepsAllAsTheyAre) {
  QXC::ModelDataInfo model = MakeModel({0.5, 0.0, 0.0, 1.0});
  QXC::QXModelMesh* pBright = QXC::MakeTriangle();
  pBright->m_bBaseColorSet = 1;
  pBright->m_BaseColor = QXC::QXColorValue3D(0.7, 0.7, 0.7, 1.0);
  model.AddMesh(pBright);
  EXPECT_FALSE(QXModelColors(model, Box, NoPictures).IsDark());
  EXPECT_EQ(ColorOf(model, 0.0, QXVector3d::UNIT_Z), QDC::QDCRGBA(128, 0, 0, 255));
}

TEST(QXModelColors, BlackModelStaysBlack) {
  EXPECT_EQ(ColorOf(MakeModel({0.0, 0.0, 0.0, 1.0}), 0.0, QXVector3d::UNIT_Z), QDC::QDCRGBA(0, 0, 0, 255));
}

TEST(QXModelColors, TransparencyIsThatOfMaterialOrVertices) {
  QXC::ModelDataInfo model = MakeModel({1.0, 1.0, 1.0, 1.0});
  QXModelColors const colors(model, Box, NoPictures);
  EXPECT_FALSE(colors.IsTransparent(*model.GetMesh(0)));
  model.GetMesh(0)->m_pVertexPackage->m_bTransparent = 1;
  EXPECT_TRUE(colors.IsTransparent(*model.GetMesh(0)));
  EXPECT_TRUE(colors.IsTransparent(*MakeModel({1.0, 1.0, 1.0, 0.5}).GetMesh(0)));
}

}  // namespace
}  // namespace QXApp
