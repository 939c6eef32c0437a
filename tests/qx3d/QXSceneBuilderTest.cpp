#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXReadyMesh.h>
#include <apps/qx3d/QXSceneBuilder.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/fileparser/QXModelMaker.h>
#include <tests/qx3d/QXGifMaker.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <stdexcept>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using Folder = QXAssimp::QXTestFolder;

QXC::QXRenderOperationMultiIndex const& Part(QXScene const& scene, std::size_t i) {
  return *scene.m_vecParts.at(i).m_pOperation;
}

/// World position of a vertex of a part, in double.
QXVector3d Position(QXC::QXRenderOperationMultiIndex const& operation, unsigned int nVertex) {
  float const* p = operation.m_pVertexBlock->m_pBuffer + nVertex * operation.m_pVertexBlock->m_nStride;
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]))
      .MultiplyMatrix(*operation.GetMatrix());
}

/// Bucket i of all geometries.
QXC::QXStaticGeometryBucket const& Bucket(QXScene const& scene, std::size_t i) {
  for (auto const& pGeometry : scene.m_vecGeometries) {
    std::vector<QXC::QXStaticGeometryBucket*> const vecBuckets = GetBuckets(*pGeometry);
    if (i < vecBuckets.size()) return *vecBuckets[i];
    i -= vecBuckets.size();
  }
  throw std::out_of_range("bucket");
}

std::size_t CountBuckets(QXScene const& scene) {
  std::size_t nCount = 0;
  for (auto const& pGeometry : scene.m_vecGeometries) nCount += GetBuckets(*pGeometry).size();
  return nCount;
}

/// World position of a vertex of a geometry's only bucket, in double.
QXVector3d Position(QXC::QXStaticGeometry const& geometry, unsigned int nVertex) {
  float const* p = GetBuckets(geometry).at(0)->m_pVertexPackage->m_pVertices + std::size_t{3} * nVertex;
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]))
      .MultiplyMatrix(geometry.GetLocalViewMatrix());
}

std::string Text(QXC::QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

TEST(QXSceneBuilder, ManyPlacementsBecomeOneRange) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  model.AddMesh(QXC::MakeTriangle());
  for (int i = 0; i < 10; ++i) model.AddNode(QXC::MakeNode(i % 2, 10.0 * i, 0.0, 0.0));
  QXScene const scene = BuildScene(model);
  EXPECT_TRUE(scene.m_vecParts.empty());
  ASSERT_EQ(CountBuckets(scene), 1u);
  EXPECT_EQ(scene.m_nTriangles, 10u);
  EXPECT_EQ(scene.m_nVertices, 30u);
  EXPECT_EQ(scene.m_nMeshes, 10u);
  std::vector<QXC::QXIndexPackage*> const vecRanges = GetTriangleRanges(Bucket(scene, 0));
  ASSERT_EQ(vecRanges.size(), 1u);
  EXPECT_EQ(vecRanges[0]->m_nIndexType, 0);
  ASSERT_EQ(vecRanges[0]->m_nIndexNum, 30);
  EXPECT_EQ(Text(vecRanges[0]->m_arrPassNames[0]), "") << "plain colours need no pass";
  EXPECT_EQ(CountTriangles(*scene.m_vecGeometries[0]), 10u);
  EXPECT_EQ(CountVertices(*scene.m_vecGeometries[0]), 30u);
  // Of both meshes the second corners: one mesh goes behind the other.
  bool bFound = false;
  for (unsigned int i = 0; i < 30; ++i)
    bFound = bFound || Position(*scene.m_vecGeometries[0], i) == QXVector3d(92.0, 0.0, 0.0);
  EXPECT_TRUE(bFound);
}

TEST(QXSceneBuilder, MapCoordinatesStandInTheMatrixAndNotInTheFloats) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  model.AddNode(QXC::MakeNode(0, 604099.125, 5792153.25, 71.5));
  QXScene const scene = BuildScene(model);
  QXC::QXStaticGeometry const& geometry = *scene.m_vecGeometries.at(0);
  EXPECT_LT((Position(geometry, 2) - QXVector3d(604099.125, 5792156.25, 72.5)).Length(), 1e-6);
  for (unsigned int i = 0; i < 9; ++i) EXPECT_LT(std::fabs(Bucket(scene, 0).m_pVertexPackage->m_pVertices[i]), 10.0F);
}

TEST(QXSceneBuilder, EachPlacedMeshIsASubObjectWithItsSphere) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  for (int i = 0; i < 3; ++i) model.AddNode(QXC::MakeNode(0, 1000.0 * i, 0.0, 0.0));
  QXScene const scene = BuildScene(model);
  auto const& mapObjects = Bucket(scene, 0).m_mapSubObjects;
  ASSERT_EQ(mapObjects.size(), 3u);
  EXPECT_EQ(CountObjects(*scene.m_vecGeometries[0]), 3u);
  QXC::QXSubObjectInfo const& object = *mapObjects.at(3);
  // The middle of a box of 2 x 3 x 1, relative to the base frame at the scene's rounded middle (1001, 2, 1).
  EXPECT_EQ(object.m_BoundingSphere.GetCenter(), QXVector3d(1001.0, 1.5, 0.5) - scene.m_vecOrigin);
  EXPECT_DOUBLE_EQ(object.m_BoundingSphere.GetRadius(), 0.5 * std::sqrt(14.0));
  EXPECT_EQ(object.m_arrOffsets[0], 3);
  EXPECT_EQ(object.m_arrCounts[0], 3);
}

TEST(QXSceneBuilder, MirrorTurnsTrianglesAndNormalsTheRightWay) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  QXC::QXModelNode node;
  node.m_matWorld[0][0] = -1.0;
  model.AddNode(node);
  for (QXMerging const eMerging : {QXMerging::Cells, QXMerging::None}) {
    QXMergeOptions options;
    options.m_eMerging = eMerging;
    QXScene const scene = BuildScene(model, QXModelPictures(), options);
    bool const bMerged = eMerging == QXMerging::Cells;
    unsigned short const* pIndices =
        bMerged ? GetTriangleRanges(Bucket(scene, 0))[0]->GetIndices16()
                : static_cast<unsigned short const*>(Part(scene, 0).GetIndexPackageArray()[0]->m_pIndices);
    auto const getPosition = [&](int i) {
      return bMerged ? Position(*scene.m_vecGeometries[0], pIndices[i]) : Position(Part(scene, 0), pIndices[i]);
    };
    QXVector3d const a = getPosition(0);
    EXPECT_GT((getPosition(1) - a).CrossProduct(getPosition(2) - a).z, 0.0);
    EXPECT_EQ(getPosition(0).x, 0.0);
    float const fUp =
        bMerged ? Bucket(scene, 0).m_pVertexPackage->m_pNormals[2] : Part(scene, 0).m_pVertexBlock->m_pBuffer[5];
    EXPECT_GT(fUp, 0.9F);
  }
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
  float const* p = Bucket(scene, 0).m_pVertexPackage->m_pNormals;
  EXPECT_NEAR(p[0], 1.0 / std::sqrt(5.0), 1e-6);
  EXPECT_NEAR(p[2], 2.0 / std::sqrt(5.0), 1e-6);
}

TEST(QXSceneBuilder, NormalsOfTurnedAndScaledMeshesAreTurnedAndOfLengthOne) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  QXC::QXModelNode node;
  // y becomes z and z becomes -y, three times as large.
  node.m_matWorld[0][0] = 3.0;
  node.m_matWorld[1][1] = 0.0;
  node.m_matWorld[1][2] = 3.0;
  node.m_matWorld[2][1] = -3.0;
  node.m_matWorld[2][2] = 0.0;
  model.AddNode(node);
  QXScene const scene = BuildScene(model);
  float const* p = Bucket(scene, 0).m_pVertexPackage->m_pNormals;
  EXPECT_NEAR(p[0], 0.0, 1e-6);
  EXPECT_NEAR(p[1], -1.0, 1e-6);
  EXPECT_NEAR(p[2], 0.0, 1e-6);
}

TEST(QXReadyMesh, OnlyTurnsShiftsAndEvenScalesAreSimilarities) {
  QXC::QXMatrix4d mat;
  mat.SetTrans(QXVector3d(6e6, -5e6, 4e6));
  EXPECT_TRUE(IsSimilarity(mat));
  double const dSin = std::sin(0.3);
  double const dCos = std::cos(0.3);
  for (int i = 0; i < 2; ++i) mat[i][i] = 1e-4 * dCos;
  mat[0][1] = 1e-4 * dSin;
  mat[1][0] = -1e-4 * dSin;
  mat[2][2] = 1e-4;
  EXPECT_TRUE(IsSimilarity(mat));
  mat[2][2] = -1e-4;
  EXPECT_FALSE(IsSimilarity(mat)) << "a mirror";
  mat[2][2] = 1.001e-4;
  EXPECT_FALSE(IsSimilarity(mat)) << "a stretch";
  mat[2][2] = 1e-4;
  mat[2][0] = 1e-7;
  EXPECT_FALSE(IsSimilarity(mat)) << "a slant";
  EXPECT_FALSE(IsSimilarity(QXC::QXMatrix4d::ZERO));
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
  EXPECT_EQ(CountBuckets(scene), 1u);
  ASSERT_EQ(scene.m_vecParts.size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_TRUE(scene.m_vecParts[i].m_bTransparent);
    // The renderer sorts by the zero of the coordinates.
    double const dLeft = 20.0 * static_cast<double>(i) + 10.0;
    QXVector3d const vecZero = QXVector3d().MultiplyMatrix(*Part(scene, i).GetMatrix());
    EXPECT_LT((vecZero - QXVector3d(dLeft + 1.0, 1.5, 0.5)).Length(), 1e-6);
    EXPECT_LT((Position(Part(scene, i), 0) - QXVector3d(dLeft, 0.0, 0.0)).Length(), 1e-6);
  }
}

TEST(QXSceneBuilder, ThousandsOfTransparentPlacementsAreMergedAndBlended) {
  QXC::ModelDataInfo model;
  QXC::QXModelMesh* pGlass = QXC::MakeTriangle();
  pGlass->m_bBaseColorSet = 1;
  pGlass->m_BaseColor = QXC::QXColorValue3D(1.0, 1.0, 1.0, 0.5);
  model.AddMesh(pGlass);
  QXC::QXModelNode turned = QXC::MakeNode(0, 0.0, 0.0, 0.0);
  turned.m_matWorld[1][1] = 0.0;
  turned.m_matWorld[1][2] = 1.0;
  turned.m_matWorld[2][1] = -1.0;
  turned.m_matWorld[2][2] = 0.0;
  for (int i = 0; i < 5000; ++i) model.AddNode(turned);
  QXScene const scene = BuildScene(model);
  EXPECT_EQ(scene.m_vecParts.size(), 1000u);
  EXPECT_EQ(scene.m_nTriangles, 5000u);
  QXC::QXStaticGeometry const& geometry = *scene.m_vecGeometries.at(0);
  ASSERT_EQ(geometry.m_vecTypedBuckets16.size(), 1u);
  QXC::QXStaticGeometryBucket const& bucket = *geometry.m_vecTypedBuckets16[0];
  EXPECT_EQ(bucket.m_pVertexPackage->m_nVertexNum, 12000u);
  // What is typed keeps its normals as they are, so they must be turned before.
  EXPECT_NEAR(bucket.m_pVertexPackage->m_pNormals[1], -1.0F, 1e-6F);
  QXC::QXPass const& pass = *bucket.m_mapPasses.begin()->second;
  EXPECT_EQ(pass.m_eSourceFactor, QXC::BLEND_SOURCE_ALPHA);
  EXPECT_EQ(pass.m_eDestFactor, QXC::BLEND_ONE_MINUS_SOURCE_ALPHA);
  EXPECT_EQ(pass.m_bDepthWrite, 0);
  EXPECT_EQ(GetTriangleRanges(bucket)[0]->m_arrPassNames[0], bucket.m_mapPasses.begin()->first);
}

TEST(QXSceneBuilder, WithoutMergingEachPlacementIsADrawable) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  for (int i = 0; i < 7; ++i) model.AddNode(QXC::MakeNode(0, 10.0 * i, 0.0, 0.0));
  QXMergeOptions options;
  options.m_eMerging = QXMerging::None;
  QXScene const scene = BuildScene(model, QXModelPictures(), options);
  EXPECT_TRUE(scene.m_vecGeometries.empty());
  ASSERT_EQ(scene.m_vecParts.size(), 7u);
  EXPECT_EQ(scene.m_nMeshes, 7u);
  for (unsigned int i = 0; i < 7; ++i)
    EXPECT_LT((Position(Part(scene, i), 1) - QXVector3d(10.0 * i + 2.0, 0.0, 0.0)).Length(), 1e-6);
}

TEST(QXSceneBuilder, AFileHasOneGeometryHoweverWideTheScene) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  QXC::QXModelMesh* pGlass = QXC::MakeTriangle();
  pGlass->m_bBaseColorSet = 1;
  pGlass->m_BaseColor.a = 0.5;
  model.AddMesh(pGlass);
  model.AddNode(QXC::MakeNode(0, 0.0, 0.0, 0.0));
  model.AddNode(QXC::MakeNode(0, 500000.0, 0.0, 0.0));
  model.AddNode(QXC::MakeNode(1, 500000.0, 0.0, 0.0));
  EXPECT_EQ(BuildScene(model).m_vecGeometries.size(), 2u);
  QXMergeOptions options;
  options.m_eMerging = QXMerging::OneGeometry;
  QXScene const scene = BuildScene(model, QXModelPictures(), options);
  ASSERT_EQ(scene.m_vecGeometries.size(), 1u);
  EXPECT_TRUE(scene.m_vecParts.empty()) << "the transparent one stands in the file as well";
  EXPECT_EQ(scene.m_vecGeometries[0]->m_vecBuckets16.size(), 1u);
  EXPECT_EQ(scene.m_vecGeometries[0]->m_vecTypedBuckets16.size(), 1u);
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

unsigned int FirstColor(QXScene const& scene) {
  return Bucket(scene, 0).m_pVertexPackage->m_pColors[0];
}

TEST(QXSceneBuilder, PicturesHavePassesAndTransformsGoIntoTheCoordinates) {
  QXC::ModelDataInfo model;
  AddPicture(model, QXAssimp::ModelPath("quarters.png"));
  AddCovered(model, 0);
  AddCovered(model, 0)->m_Texture.m_matTransform[3][0] = 4.0;
  model.AddNode(QXC::MakeNode(model.AddMesh(QXC::MakeTriangle()), 0.0, 0.0, 0.0));
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  QXScene const scene = BuildScene(model, pictures);
  ASSERT_EQ(CountBuckets(scene), 1u);
  QXC::QXStaticGeometryBucket const& bucket = Bucket(scene, 0);
  std::vector<QXC::QXIndexPackage*> const vecRanges = GetTriangleRanges(bucket);
  ASSERT_EQ(vecRanges.size(), 2u);
  std::string const strName = QXAssimp::ModelPath("quarters.png") + "|repeat";
  EXPECT_EQ(Text(vecRanges[0]->m_arrPassNames[0]), "");
  EXPECT_EQ(Text(vecRanges[1]->m_arrPassNames[0]), strName);
  EXPECT_EQ(vecRanges[1]->m_nIndexNum, 6) << "both transforms of one picture in one range";
  // The plain one stands first, since the meshes of a texture follow each other.
  QXC::QXVertexDataPackage const& vertices = *bucket.m_pVertexPackage;
  ASSERT_EQ(vertices.m_nTexDims[0], 4);
  EXPECT_EQ(vertices.m_pTexCoords[0][4 * 4], 0.5F);
  EXPECT_EQ(vertices.m_pTexCoords[0][4 * 5 + 1], 0.25F);
  EXPECT_EQ(vertices.m_pTexCoords[0][4 * 7], 4.5F);
  ASSERT_EQ(bucket.m_mapPasses.size(), 1u);
  QXC::QXPass& pass = *bucket.m_mapPasses.begin()->second;
  ASSERT_EQ(pass.GetTextureUnitStatesSize(), 1u);
  EXPECT_EQ(Text(pass.GetTextureUnitState(0)->GetTextureName()), strName);
  EXPECT_EQ(pass.m_nUnitWords[0], 0u);
  ASSERT_EQ(scene.m_vecTextures.size(), 1u);
  EXPECT_EQ(scene.m_vecTextures[0].m_strName, strName);
  EXPECT_EQ(scene.m_vecTextures[0].m_Key.m_nImage, 0);
  EXPECT_EQ(scene.m_vecGeometries[0]->m_mapTextureSpheres.begin()->second.GetSize(), 2u);
}

TEST(QXSceneBuilder, UpToEightPicturesAreDrawnInOneRange) {
  QXC::ModelDataInfo model;
  Folder const folder;
  std::vector<unsigned char> const vecPicture = QXAssimp::ReadTestFile(QXAssimp::ModelPath("quarters.png"));
  for (int i = 0; i < 9; ++i) {
    AddPicture(model, folder.Write("p" + std::to_string(i) + ".png", vecPicture));
    AddCovered(model, i)->m_Texture.m_eWrapU = QXC::QX_WRAP_CLAMP;
    model.GetMesh(i)->m_Texture.m_eWrapV = i % 2 == 0 ? QXC::QX_WRAP_CLAMP : QXC::QX_WRAP_REPEAT;
    // Above the picture, so that the odd ones need their repetition.
    model.GetMesh(i)->m_pVertexPackage->m_pTexCoords[0][1] = 2.0F;
  }
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  ASSERT_TRUE(vecProblems.empty());
  QXMergeOptions options;
  options.m_nameTexture = [](QXSceneTexture const& texture) {
    return "textures/" + std::to_string(texture.m_Key.m_nImage) + ".png";
  };
  QXScene const scene = BuildScene(model, pictures, options);
  QXC::QXStaticGeometryBucket const& bucket = Bucket(scene, 0);
  EXPECT_EQ(GetTriangleRanges(bucket).size(), 2u) << "eight and one";
  QXC::QXPass& pass = *bucket.m_mapPasses.begin()->second;
  ASSERT_EQ(pass.GetTextureUnitStatesSize(), 8u);
  EXPECT_EQ(pass.m_bMultiTexture, 1);
  EXPECT_EQ(Text(pass.m_strFragmentProgram), "RenderModelSecFP.glsl");
  EXPECT_EQ(Text(pass.GetTextureUnitState(3)->GetTextureName()), "textures/3.png");
  EXPECT_EQ(pass.m_nUnitWords[2], QXC::UNIT_WORD_CLAMP_U | QXC::UNIT_WORD_CLAMP_V);
  EXPECT_EQ(pass.m_nUnitWords[3], 0u);
  EXPECT_EQ(Text(pass.GetName()), "textures/0.png") << "no address, which would differ from run to run";
  for (unsigned int i = 0; i < 8; ++i)
    EXPECT_EQ(bucket.m_pVertexPackage->m_pTexCoords[0][12 * i + 3], static_cast<float>(i)) << "which of the textures";
}

TEST(QXSceneBuilder, PicturesThatMoveAreNotFolded) {
  QXC::ModelDataInfo model;
  Folder const folder;
  AddPicture(model, folder.Write("a.gif", MakeGif({0, 1}, 10)));
  AddPicture(model, folder.Write("b.gif", MakeGif({0, 2}, 10)));
  AddCovered(model, 0);
  AddCovered(model, 1);
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  QXScene const scene = BuildScene(model, pictures);
  EXPECT_EQ(GetTriangleRanges(Bucket(scene, 0)).size(), 2u);
}

TEST(QXSceneBuilder, PictureIsMultipliedWithTheColourOrReplacesIt) {
  QXC::ModelDataInfo model;
  AddPicture(model, QXAssimp::ModelPath("quarters.png"));
  QXC::QXModelMesh* pMesh = AddCovered(model, 0);
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  // As the file has it, however dark.
  EXPECT_EQ(FirstColor(BuildScene(model, pictures)), QDC::QDCRGBA(51, 102, 0, 255));
  pMesh->m_Texture.m_bReplacesColor = 1;
  EXPECT_EQ(FirstColor(BuildScene(model, pictures)), QDC::QDCRGBA(255, 255, 255, 255));
  pMesh->m_BaseColor.a = 0.6;
  QXScene const glass = BuildScene(model, pictures);
  EXPECT_EQ(ColorOf(Part(glass, 0), 0), QDC::QDCRGBA(255, 255, 255, 153));
  EXPECT_TRUE(glass.m_vecParts[0].m_bTransparent);
  EXPECT_EQ(Text(Part(glass, 0).GetTexturePackageArray()[0]->m_strTextureName),
      QXAssimp::ModelPath("quarters.png") + "|repeat");
  EXPECT_EQ(Part(glass, 0).m_pTexCoordBlock->m_pBuffers[0][2], 0.5F);
  // A material that is opaque by its own word.
  pMesh->m_Texture.m_eAlpha = QXC::QX_ALPHA_OPAQUE;
  QXScene const solid = BuildScene(model, pictures);
  EXPECT_EQ(FirstColor(solid), QDC::QDCRGBA(255, 255, 255, 255));
  EXPECT_TRUE(solid.m_vecParts.empty());
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
  EXPECT_TRUE(scene.m_vecTextures.empty());
  EXPECT_EQ(FirstColor(scene), QDC::QDCRGBA(0, 255, 0, 255));
}

QXC::ModelDataInfo MakeCopies(int nCount) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  for (int i = 0; i < nCount; ++i) model.AddNode(QXC::MakeNode(0, 0.0, 0.0, 0.0));
  return model;
}

TEST(QXSceneBuilder, SmallMeshesFillBucketsOf65535Vertices) {
  EXPECT_EQ(CountBuckets(BuildScene(MakeCopies(21845))), 1u);
  QXScene const scene = BuildScene(MakeCopies(21846));
  ASSERT_EQ(CountBuckets(scene), 2u);
  EXPECT_EQ(GetTriangleRanges(Bucket(scene, 1))[0]->m_nIndexType, 0);
}

TEST(QXSceneBuilder, LargeMeshesHaveLongIndicesAndNoBucketGrowsWithoutEnd) {
  QXC::ModelDataInfo model;
  std::vector<float> vecPositions(3 * 2000001);
  vecPositions[3] = 1.0F;
  vecPositions[7] = 1.0F;
  QXC::QXModelMesh* pMesh = QXC::MakeMesh(vecPositions, {0, 1, 2});
  auto* pLong = new QXC::QXIndexPackage;
  pLong->SetIndexNum32(3);
  pLong->GetIndices32()[2] = 2000000;
  pMesh->m_arrIndexPackages.Add(pLong);
  model.AddMesh(pMesh);
  for (int i = 0; i < 2; ++i) model.AddNode(QXC::MakeNode(0, 0.0, 0.0, 0.0));
  QXScene const scene = BuildScene(model);
  EXPECT_EQ(scene.m_vecGeometries.size(), 2u) << "four million together";
  std::vector<QXC::QXIndexPackage*> const vecRanges =
      GetTriangleRanges(*scene.m_vecGeometries[0]->m_vecBuckets32.at(0));
  ASSERT_EQ(vecRanges.size(), 1u);
  ASSERT_EQ(vecRanges[0]->m_nIndexNum, 6);
  EXPECT_EQ(vecRanges[0]->GetIndices32()[5], 2000000u);
}

TEST(QXSceneBuilder, WhatIsMergedAlreadyIsTakenOverWithItsBounds) {
  QXScene other = BuildScene(MakeCopies(3));
  QXC::QXMatrix4d matPlace;
  matPlace.SetTrans(QXVector3d(1000.0, 0.0, 0.0) + other.m_vecOrigin);
  other.m_vecGeometries[0]->SetLocalViewMatrix(matPlace);
  QXC::QXBoundingBox nothing;
  nothing.SetNULL();
  QXScene const scene = BuildScene({}, std::move(other.m_vecGeometries), nothing);
  ASSERT_EQ(scene.m_vecGeometries.size(), 1u);
  EXPECT_EQ(scene.m_Bounds.GetMin(), QXVector3d(1000.0, 0.0, 0.0));
  EXPECT_EQ(scene.m_Bounds.GetMax(), QXVector3d(1002.0, 3.0, 1.0));
  EXPECT_EQ(scene.m_Core.GetMax(), QXVector3d(1002.0, 3.0, 1.0));
  EXPECT_EQ(scene.m_nTriangles, 3u);
  EXPECT_EQ(scene.m_nVertices, 9u);
  EXPECT_EQ(scene.m_nMeshes, 3u);
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
  std::unique_ptr<QXC::QXStaticGeometry> const pGround = BuildGround(scene);
  QXC::QXIndexPackage const& indices = *GetTriangleRanges(*GetBuckets(*pGround).at(0)).at(0);
  ASSERT_EQ(indices.m_nIndexNum, 144);
  for (int i = 0; i < indices.m_nIndexNum; i += 3) {
    QXVector3d const a = Position(*pGround, indices.GetIndices16()[i]);
    EXPECT_LT(a.z, 0.0);
    EXPECT_GT(a.z, -0.01);
    QXVector3d const b = Position(*pGround, indices.GetIndices16()[i + 1]);
    EXPECT_GT((b - a).CrossProduct(Position(*pGround, indices.GetIndices16()[i + 2]) - a).z, 0.0);
  }
  EXPECT_GE(GetGroundRadius(scene), 3.0 * 6.0);
}

}  // namespace
}  // namespace QXApp
