#include <apps/qx3d/QXSceneBuilder.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

namespace QXApp {
namespace {

using QXC::QXVector3d;

QXC::QXRenderOperationMultiIndex const& Part(QXScene const& scene, std::size_t i) {
  return *scene.m_vecParts.at(i).m_pOperation;
}

/// World position of a vertex of a part, in double.
QXVector3d Position(QXC::QXRenderOperationMultiIndex const& operation, unsigned int nVertex) {
  float const* p = operation.m_pVertexBlock->m_pBuffer + nVertex * operation.m_pVertexBlock->m_nStride;
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]))
      .MultiplyMatrix(*operation.GetMatrix());
}

TEST(QXSceneBuilder, ManyPlacementsBecomeOneDrawable) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  model.AddMesh(QXC::MakeTriangle());
  for (int i = 0; i < 10; ++i) model.AddNode(QXC::MakeNode(i % 2, 10.0 * i, 0.0, 0.0));
  QXScene const scene = BuildScene(model);
  ASSERT_EQ(scene.m_vecParts.size(), 1u);
  EXPECT_EQ(scene.m_nTriangles, 10u);
  EXPECT_EQ(scene.m_nVertices, 30u);
  QXC::QXRenderOperationMultiIndex const& operation = Part(scene, 0);
  ASSERT_EQ(operation.GetSize(), 1);
  QXC::QXVertexIndexPackage const& indices = *operation.GetIndexPackageArray()[0];
  EXPECT_EQ(indices.m_nIndexType, 0);
  EXPECT_EQ(indices.m_nIndexNum, 30u);
  EXPECT_EQ(static_cast<unsigned short const*>(indices.m_pIndices)[29], 29);
  EXPECT_EQ(Position(operation, 28), QXVector3d(92.0, 0.0, 0.0));
}

TEST(QXSceneBuilder, MapCoordinatesStandInTheMatrixAndNotInTheFloats) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  model.AddNode(QXC::MakeNode(0, 604099.125, 5792153.25, 71.5));
  QXScene const scene = BuildScene(model);
  EXPECT_LT((Position(Part(scene, 0), 2) - QXVector3d(604099.125, 5792156.25, 72.5)).Length(), 1e-6);
  for (unsigned int i = 0; i < 3; ++i) EXPECT_LT(std::fabs(Part(scene, 0).m_pVertexBlock->m_pBuffer[7 * i]), 10.0f);
}

TEST(QXSceneBuilder, MirrorTurnsTrianglesAndNormalsTheRightWay) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  QXC::QXModelNode node;
  node.m_matWorld[0][0] = -1.0;
  model.AddNode(node);
  QXScene const scene = BuildScene(model);
  QXC::QXRenderOperationMultiIndex const& operation = Part(scene, 0);
  auto const* pIndices = static_cast<unsigned short const*>(operation.GetIndexPackageArray()[0]->m_pIndices);
  QXVector3d const a = Position(operation, pIndices[0]);
  QXVector3d const vecFace = (Position(operation, pIndices[1]) - a).CrossProduct(Position(operation, pIndices[2]) - a);
  EXPECT_GT(vecFace.z, 0.0);
  EXPECT_GT(operation.m_pVertexBlock->m_pBuffer[5], 0.9f);
}

TEST(QXSceneBuilder, NormalsStayUprightUnderUnevenScaling) {
  QXC::ModelDataInfo model;
  QXC::QXModelMesh* pMesh = QXC::MakeTriangle();
  float const fHalf = static_cast<float>(std::sqrt(0.5));
  pMesh->m_pVertexPackage->m_pNormals[0] = fHalf;
  pMesh->m_pVertexPackage->m_pNormals[2] = fHalf;
  model.AddMesh(pMesh);
  QXC::QXModelNode node;
  node.m_matWorld[0][0] = 2.0;  // the slope gets flatter, so its normal steeper
  model.AddNode(node);
  QXScene const scene = BuildScene(model);
  float const* p = Part(scene, 0).m_pVertexBlock->m_pBuffer + 3;
  EXPECT_NEAR(p[0], 1.0 / std::sqrt(5.0), 1e-6);
  EXPECT_NEAR(p[2], 2.0 / std::sqrt(5.0), 1e-6);
}

TEST(QXSceneBuilder, TransparentPlacementsHaveDrawablesOfTheirOwn) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  QXC::QXModelMesh* pGlass = QXC::MakeTriangle();
  pGlass->m_bBaseColorSet = 1;
  pGlass->m_BaseColor = QXC::QXColorValue3D(1.0, 1.0, 1.0, 0.5);
  model.AddMesh(pGlass);
  for (int i = 0; i < 4; ++i) model.AddNode(QXC::MakeNode(i % 2, 10.0 * i, 0.0, 0.0));
  QXScene const scene = BuildScene(model);
  ASSERT_EQ(scene.m_vecParts.size(), 3u);
  EXPECT_FALSE(scene.m_vecParts[0].m_bTransparent);
  for (std::size_t i = 1; i < 3; ++i) {
    EXPECT_TRUE(scene.m_vecParts[i].m_bTransparent);
    // The renderer sorts by the zero of the coordinates.
    double const dLeft = 20.0 * static_cast<double>(i) - 10.0;
    QXVector3d const vecZero = QXVector3d().MultiplyMatrix(*Part(scene, i).GetMatrix());
    EXPECT_LT((vecZero - QXVector3d(dLeft + 1.0, 1.5, 0.5)).Length(), 1e-6);
    EXPECT_LT((Position(Part(scene, i), 0) - QXVector3d(dLeft, 0.0, 0.0)).Length(), 1e-6);
  }
}

TEST(QXSceneBuilder, ThousandsOfTransparentPlacementsShareADrawable) {
  QXC::ModelDataInfo model;
  QXC::QXModelMesh* pGlass = QXC::MakeTriangle();
  pGlass->m_bBaseColorSet = 1;
  pGlass->m_BaseColor = QXC::QXColorValue3D(1.0, 1.0, 1.0, 0.5);
  model.AddMesh(pGlass);
  for (int i = 0; i < 5000; ++i) model.AddNode(QXC::MakeNode(0, i, 0.0, 0.0));
  QXScene const scene = BuildScene(model);
  EXPECT_EQ(scene.m_vecParts.size(), 1001u);
  EXPECT_EQ(scene.m_nTriangles, 5000u);
}

/// Adds a triangle with a picture; its coordinates are (0, 0), (0.5, 0), (0, 0.25).
QXC::QXModelMesh* AddCovered(QXC::ModelDataInfo& model, int nImage) {
  QXC::QXModelMesh* pMesh = QXC::MakeTriangle();
  pMesh->m_pVertexPackage->SetTexCoordNum(0, 3, 0);
  pMesh->m_pVertexPackage->m_pTexCoords[0][2] = 0.5f;
  pMesh->m_pVertexPackage->m_pTexCoords[0][5] = 0.25f;
  pMesh->m_Texture.m_nImage = nImage;
  pMesh->m_bBaseColorSet = 1;
  pMesh->m_BaseColor = QXC::QXColorValue3D(0.2, 0.4, 0.0, 1.0);
  model.AddNode(QXC::MakeNode(model.AddMesh(pMesh), 0.0, 0.0, 0.0));
  return pMesh;
}

void AddPicture(QXC::ModelDataInfo& model, std::string const& strPath) {
  auto* pImage = new QXC::QXModelImage;
  pImage->m_strFilePath = QXC::QdcUnicodeString::FromUTF8(strPath.c_str());
  model.AddImage(pImage);
}

unsigned int ColorOf(QXC::QXRenderOperationMultiIndex const& operation, unsigned int nVertex) {
  QXC::QXVertexBlock const& block = *operation.m_pVertexBlock;
  return std::bit_cast<unsigned int>(block.m_pBuffer[nVertex * block.m_nStride + 6]);
}

TEST(QXSceneBuilder, PicturesSplitDrawablesAndTransformsGoIntoTheCoordinates) {
  QXC::ModelDataInfo model;
  AddPicture(model, QXAssimp::ModelPath("quarters.png"));
  AddCovered(model, 0);
  AddCovered(model, 0)->m_Texture.m_matTransform[3][0] = 4.0;
  model.AddNode(QXC::MakeNode(model.AddMesh(QXC::MakeTriangle()), 0.0, 0.0, 0.0));
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  QXScene const scene = BuildScene(model, pictures);
  ASSERT_EQ(scene.m_vecParts.size(), 2u);
  EXPECT_EQ(scene.m_vecParts[0].m_Texture.m_nImage, -1);
  EXPECT_EQ(Part(scene, 0).m_pTexCoordBlock, nullptr);
  EXPECT_EQ(Part(scene, 0).GetTexturePackageArray()[0], nullptr);
  // Both transforms of one picture in one drawable.
  EXPECT_EQ(scene.m_vecParts[1].m_Texture.m_nImage, 0);
  QXC::QXTexCoordBlock const& coords = *Part(scene, 1).m_pTexCoordBlock;
  ASSERT_EQ(coords.m_nCounts[0], 6u);
  EXPECT_EQ(coords.m_pBuffers[0][2], 0.5f);
  EXPECT_EQ(coords.m_pBuffers[0][5], 0.25f);
  EXPECT_EQ(coords.m_pBuffers[0][8], 4.5f);
  QXC::QXTexturePackage const& package = *Part(scene, 1).GetTexturePackageArray()[0];
  EXPECT_EQ(std::string(package.m_strTextureName.ToMBString().Cstr()), QXAssimp::ModelPath("quarters.png") + "|repeat");
  EXPECT_EQ(package.m_pTextures[0], nullptr);
}

TEST(QXSceneBuilder, PictureIsMultipliedWithTheColourOrReplacesIt) {
  QXC::ModelDataInfo model;
  AddPicture(model, QXAssimp::ModelPath("quarters.png"));
  QXC::QXModelMesh* pMesh = AddCovered(model, 0);
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  // As the file has it, however dark.
  EXPECT_EQ(ColorOf(Part(BuildScene(model, pictures), 0), 0), QDC::QDCRGBA(51, 102, 0, 255));
  pMesh->m_Texture.m_bReplacesColor = 1;
  EXPECT_EQ(ColorOf(Part(BuildScene(model, pictures), 0), 0), QDC::QDCRGBA(255, 255, 255, 255));
  pMesh->m_BaseColor.a = 0.6;
  QXScene const glass = BuildScene(model, pictures);
  EXPECT_EQ(ColorOf(Part(glass, 0), 0), QDC::QDCRGBA(255, 255, 255, 153));
  EXPECT_TRUE(glass.m_vecParts[0].m_bTransparent);
  // A material that is opaque by its own word.
  pMesh->m_Texture.m_eAlpha = QXC::QX_ALPHA_OPAQUE;
  QXScene const solid = BuildScene(model, pictures);
  EXPECT_EQ(ColorOf(Part(solid, 0), 0), QDC::QDCRGBA(255, 255, 255, 255));
  EXPECT_FALSE(solid.m_vecParts[0].m_bTransparent);
}

TEST(QXSceneBuilder, MeshWhosePictureIsMissingIsShownInItsColour) {
  QXC::ModelDataInfo model;
  AddPicture(model, "/nowhere/gone.png");
  AddCovered(model, 0)->m_BaseColor = QXC::QXColorValue3D(0.0, 1.0, 0.0, 1.0);
  model.GetMesh(0)->m_Texture.m_bReplacesColor = 1;
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  EXPECT_EQ(vecProblems.size(), 1u);
  QXScene const scene = BuildScene(model, pictures);
  EXPECT_EQ(scene.m_vecParts[0].m_Texture.m_nImage, -1);
  EXPECT_EQ(ColorOf(Part(scene, 0), 0), QDC::QDCRGBA(0, 255, 0, 255));
}

QXC::ModelDataInfo MakeCopies(int nCount) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  for (int i = 0; i < nCount; ++i) model.AddNode(QXC::MakeNode(0, 0.0, 0.0, 0.0));
  return model;
}

TEST(QXSceneBuilder, IndicesGetWideAbove65535VerticesAndDrawablesEndAtAMillion) {
  EXPECT_EQ(Part(BuildScene(MakeCopies(21845)), 0).GetIndexPackageArray()[0]->m_nIndexType, 0);
  QXScene const wide = BuildScene(MakeCopies(21846));
  ASSERT_EQ(wide.m_vecParts.size(), 1u);
  QXC::QXVertexIndexPackage const& indices = *Part(wide, 0).GetIndexPackageArray()[0];
  ASSERT_EQ(indices.m_nIndexType, 1);
  EXPECT_EQ(static_cast<unsigned int const*>(indices.m_pIndices)[65537], 65537u);
  EXPECT_EQ(BuildScene(MakeCopies(333333)).m_vecParts.size(), 1u);
  EXPECT_EQ(BuildScene(MakeCopies(333334)).m_vecParts.size(), 2u);
}

TEST(QXSceneBuilder, CoreLeavesThinOutskirtsAway) {
  QXC::ModelDataInfo model = MakeCopies(2000);
  // A thin road of 500 length units from the town.
  model.AddMesh(QXC::MakeMesh({0.0f, 0.0f, 0.0f, 500.0f, 0.0f, 0.0f, 500.0f, 0.05f, 0.0f}, {0, 1, 2}));
  model.AddNode(QXC::MakeNode(1, 0.0, 0.0, 0.0));
  QXScene const scene = BuildScene(model);
  EXPECT_EQ(scene.m_Bounds.GetMax().x, 500.0);
  EXPECT_LE(scene.m_Core.GetMax().x, 2.0);
  EXPECT_TRUE(scene.HasOutskirts());
}

TEST(QXSceneBuilder, SmallModelIsItsOwnCore) {
  QXScene const scene = BuildScene(MakeCopies(3));
  EXPECT_FALSE(scene.HasOutskirts());
  EXPECT_EQ(scene.m_Core.GetMax(), scene.m_Bounds.GetMax());
}

TEST(QXSceneBuilder, GroundLiesJustBelowAndLooksUp) {
  QXScene const scene = BuildScene(MakeCopies(1));
  QXScenePart const ground = BuildGround(scene);
  QXC::QXRenderOperationMultiIndex const& operation = *ground.m_pOperation;
  QXC::QXVertexIndexPackage const& indices = *operation.GetIndexPackageArray()[0];
  auto const* pIndices = static_cast<unsigned short const*>(indices.m_pIndices);
  for (unsigned int i = 0; i < indices.m_nIndexNum; i += 3) {
    QXVector3d const a = Position(operation, pIndices[i]);
    EXPECT_LT(a.z, 0.0);
    EXPECT_GT(a.z, -0.01);
    EXPECT_GT((Position(operation, pIndices[i + 1]) - a).CrossProduct(Position(operation, pIndices[i + 2]) - a).z, 0.0);
  }
  EXPECT_GE(GetGroundRadius(scene), 3.0 * 6.0);
}

}  // namespace
}  // namespace QXApp
