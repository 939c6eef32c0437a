#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>

#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(ModelDataInfo, FreshOneIsEmpty) {
  ModelDataInfo const model;
  EXPECT_EQ(model.GetName().IsEmpty(), 1);
  EXPECT_EQ(model.GetUpAxis(), QX_UP_UNKNOWN);
  EXPECT_EQ(model.GetMeshCount(), 0);
  EXPECT_EQ(model.GetNodeCount(), 0);
  EXPECT_EQ(model.GetBoundingBox().IsNULL(), 1);
}

TEST(ModelDataInfo, NullMeshAndNodeOfNoMeshAreRefused) {
  ModelDataInfo model;
  EXPECT_EQ(model.AddMesh(nullptr), -1);
  EXPECT_EQ(model.AddNode(MakeNode(0, 0.0, 0.0, 0.0)), -1);
  EXPECT_EQ(model.AddNode(MakeNode(-1, 0.0, 0.0, 0.0)), -1);
  EXPECT_EQ(model.AddMesh(MakeTriangle()), 0);
  EXPECT_EQ(model.AddNode(MakeNode(1, 0.0, 0.0, 0.0)), -1);
  EXPECT_EQ(model.AddNode(MakeNode(0, 0.0, 0.0, 0.0)), 0);
}

TEST(ModelDataInfo, IndexOutOfRangeGivesNull) {
  ModelDataInfo model;
  model.AddMesh(MakeTriangle());
  model.AddNode(MakeNode(0, 0.0, 0.0, 0.0));
  EXPECT_NE(model.GetMesh(0), nullptr);
  EXPECT_EQ(model.GetMesh(1), nullptr);
  EXPECT_EQ(model.GetMesh(-1), nullptr);
  EXPECT_EQ(model.GetNode(1), nullptr);
  EXPECT_EQ(model.GetNode(-1), nullptr);
  EXPECT_EQ(static_cast<ModelDataInfo const&>(model).GetNode(1), nullptr);
}

QXModelImage* MakeImage(wchar_t const* szName, unsigned char nByte) {
  auto* pImage = new QXModelImage;
  pImage->m_strName = szName;
  pImage->m_arrBytes.Add(nByte);
  return pImage;
}

TEST(ModelDataInfo, PicturesAreNumberedInTheirOrder) {
  ModelDataInfo model;
  EXPECT_EQ(model.GetImageCount(), 0);
  EXPECT_EQ(model.AddImage(nullptr), -1);
  EXPECT_EQ(model.AddImage(MakeImage(L"wall", 1)), 0);
  EXPECT_EQ(model.AddImage(MakeImage(L"roof", 2)), 1);
  EXPECT_EQ(model.GetImageCount(), 2);
  EXPECT_TRUE(model.GetImage(1)->m_strName == L"roof");
  EXPECT_EQ(model.GetImage(2), nullptr);
  EXPECT_EQ(model.GetImage(-1), nullptr);
}

TEST(ModelDataInfo, CopyHasPicturesOfItsOwn) {
  ModelDataInfo model;
  model.AddImage(MakeImage(L"wall", 7));
  model.GetImage(0)->m_strFilePath = L"/models/wall.png";
  ModelDataInfo copy(model);
  copy.GetImage(0)->m_arrBytes[0] = 8;
  copy.GetImage(0)->m_strName = L"roof";
  ASSERT_EQ(model.GetImage(0)->m_arrBytes.GetSize(), 1u);
  EXPECT_EQ(model.GetImage(0)->m_arrBytes[0], 7);
  EXPECT_TRUE(model.GetImage(0)->m_strName == L"wall");
  EXPECT_TRUE(copy.GetImage(0)->m_strFilePath == L"/models/wall.png");
  ModelDataInfo other;
  other.AddImage(MakeImage(L"a", 1));
  other.AddImage(MakeImage(L"b", 2));
  other = model;
  EXPECT_EQ(other.GetImageCount(), 1);
  EXPECT_EQ(other.GetImage(0)->m_arrBytes[0], 7);
}

TEST(ModelDataInfo, MeshPlacedTwiceCountsTwiceAndStandsOnce) {
  ModelDataInfo model;
  model.AddMesh(MakeTriangle());
  model.AddNode(MakeNode(0, 0.0, 0.0, 0.0));
  model.AddNode(MakeNode(0, 10.0, 0.0, 0.0));
  EXPECT_EQ(model.GetMeshCount(), 1);
  EXPECT_EQ(model.GetTriangleCount(), 2u);
  EXPECT_EQ(model.GetVertexCount(), 6u);
  EXPECT_EQ(model.GetBoundingBox().GetMin(), QXVector3d(0.0, 0.0, 0.0));
  EXPECT_EQ(model.GetBoundingBox().GetMax(), QXVector3d(12.0, 3.0, 1.0));
}

TEST(ModelDataInfo, MeshWithoutANodeIsNotCounted) {
  ModelDataInfo model;
  model.AddMesh(MakeTriangle());
  EXPECT_EQ(model.GetTriangleCount(), 0u);
  EXPECT_EQ(model.GetBoundingBox().IsNULL(), 1);
}

TEST(ModelDataInfo, BoundsAreExactAtMapCoordinates) {
  ModelDataInfo model;
  model.AddMesh(MakeTriangle());
  model.AddNode(MakeNode(0, 604099.125, 5792153.25, 71.5));
  EXPECT_EQ(model.GetBoundingBox().GetMax(), QXVector3d(604101.125, 5792156.25, 72.5));
}

TEST(ModelDataInfo, TransformIsAppliedBehindTheNodes) {
  ModelDataInfo model;
  model.AddMesh(MakeTriangle());
  model.AddNode(MakeNode(0, 10.0, 0.0, 0.0));
  QXMatrix4d matScale;
  matScale[0][0] = 2.0;
  model.Transform(matScale);
  EXPECT_EQ(model.GetBoundingBox().GetMin().x, 20.0);
  EXPECT_EQ(model.GetBoundingBox().GetMax().x, 24.0);
}

TEST(ModelDataInfo, CopyIsIndependent) {
  ModelDataInfo model;
  model.SetName(L"a");
  model.SetUpAxis(QX_UP_Z);
  model.AddMesh(MakeTriangle());
  model.AddNode(MakeNode(0, 1.0, 2.0, 3.0));
  ModelDataInfo copy(model);
  copy.SetName(L"b");
  copy.GetMesh(0)->m_pVertexPackage->m_pVertices[0] = 50.0f;
  copy.GetNode(0)->m_matWorld = QXMatrix4d::IDENTITY;
  EXPECT_TRUE(model.GetName() == L"a");
  EXPECT_EQ(model.GetMesh(0)->m_pVertexPackage->m_pVertices[0], 0.0f);
  EXPECT_EQ(model.GetNode(0)->m_matWorld[3][2], 3.0);
  EXPECT_EQ(copy.GetUpAxis(), QX_UP_Z);
}

TEST(ModelDataInfo, AssignmentReplacesAndSurvivesItself) {
  ModelDataInfo model;
  model.AddMesh(MakeTriangle());
  model.AddNode(MakeNode(0, 1.0, 2.0, 3.0));
  ModelDataInfo other;
  other.AddMesh(MakeTriangle());
  other.AddMesh(MakeTriangle());
  other = model;
  EXPECT_EQ(other.GetMeshCount(), 1);
  EXPECT_EQ(other.GetNodeCount(), 1);
  ModelDataInfo const& self = other;
  other = self;
  EXPECT_EQ(other.GetTriangleCount(), 1u);
}

}  // namespace
}  // namespace QXC
