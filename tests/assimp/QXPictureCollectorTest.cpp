// Pictures of models, through the whole reader: importer, process, stream.
#include <tests/assimp/QXTestFiles.h>
#include <tests/assimp/QXTexturedModels.h>

#include <plugins/assimp/QXAssimpFileParser.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <utility>

namespace QXAssimp {
namespace {

using QXC::QXFileType;
using QXC::QXVector3d;

std::unique_ptr<QXC::ModelDataInfo> Read(
    int nType, std::vector<unsigned char> vecBytes, std::string const& strFolder = std::string()) {
  QXAssimpFileParser parser;
  std::string const strError = parser.OpenBytes(nType, strFolder, std::move(vecBytes));
  EXPECT_EQ(strError, "");
  std::unique_ptr<QXC::ModelDataInfo> pModel(parser.GetModelDataInfo());
  if (pModel == nullptr) throw std::runtime_error("no model: " + strError);
  return pModel;
}

std::unique_ptr<QXC::ModelDataInfo> ReadGltf(QXGltfSign const& sign) {
  return Read(QXFileType::EM_MODEL_GLTF, ToBytes(MakeSignGltf(sign)));
}

std::unique_ptr<QXC::ModelDataInfo> ReadObj(QXTestFolder const& folder, std::string const& strMtl) {
  folder.Write("sign.mtl", strMtl);
  return Read(QXFileType::EM_MODEL_OBJ, ToBytes(MakeSignObj("sign.mtl")), folder.Path());
}

std::vector<unsigned char> Quarters() {
  return ReadTestFile(ModelPath("quarters.png"));
}

/// The coordinates of the picture's point that lies on a vertex.
QXVector3d PictureAt(QXC::QXModelMesh const& mesh, unsigned int nVertex) {
  float const* p = mesh.m_pVertexPackage->m_pTexCoords[0] + 2 * std::size_t{nVertex};
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), 0.0)
      .MultiplyMatrix(mesh.m_Texture.m_matTransform);
}

/// The vertex that the model's node puts at (x, 0, z).
unsigned int VertexAt(QXC::ModelDataInfo const& model, double x, double z) {
  QXC::QXModelMesh const& mesh = *model.GetMesh(0);
  for (unsigned int i = 0; i < mesh.m_pVertexPackage->m_nVertexNum; ++i) {
    float const* p = mesh.m_pVertexPackage->m_pVertices + 3 * std::size_t{i};
    QXVector3d const vec = QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]))
                               .MultiplyMatrix(model.GetNode(0)->m_matWorld);
    if ((vec - QXVector3d(x, 0.0, z)).Length() < 1e-5) return i;
  }
  throw std::runtime_error("no such vertex");
}

void ExpectPictureAt(QXC::ModelDataInfo const& model, double x, double z, double u, double v) {
  QXVector3d const vec = PictureAt(*model.GetMesh(0), VertexAt(model, x, z));
  EXPECT_NEAR(vec.x, u, 1e-6) << x << ", " << z;
  EXPECT_NEAR(vec.y, v, 1e-6) << x << ", " << z;
}

/// The picture stands upright: its first row on top.
void ExpectUpright(QXC::ModelDataInfo const& model) {
  ExpectPictureAt(model, 0.0, 4.0, 0.0, 0.0);
  ExpectPictureAt(model, 4.0, 4.0, 1.0, 0.0);
  ExpectPictureAt(model, 0.0, 0.0, 0.0, 1.0);
  ExpectPictureAt(model, 4.0, 0.0, 1.0, 1.0);
}

TEST(QXPictureCollector, ObjNamesAFileBesideIt) {
  QXTestFolder const folder;
  std::string const strPicture = folder.Write("quarters.png", Quarters());
  auto const pModel = ReadObj(folder, MakeSignMtl("quarters.png"));
  ASSERT_EQ(pModel->GetImageCount(), 1);
  EXPECT_TRUE(pModel->GetImage(0)->m_strName == L"quarters.png");
  EXPECT_EQ(std::string(pModel->GetImage(0)->m_strFilePath.ToMBString().Cstr()), strPicture);
  EXPECT_EQ(pModel->GetImage(0)->m_arrBytes.GetSize(), 0u);
  QXC::QXModelTexture const& texture = pModel->GetMesh(0)->m_Texture;
  EXPECT_EQ(texture.m_nImage, 0);
  EXPECT_EQ(texture.m_eWrapU, QXC::QX_WRAP_REPEAT);
  EXPECT_EQ(texture.m_eAlpha, QXC::QX_ALPHA_AUTO);
  EXPECT_EQ(texture.m_bReplacesColor, 0);
  ExpectUpright(*pModel);
}

TEST(QXPictureCollector, ObjClampsWhereItSaysSo) {
  QXTestFolder const folder;
  auto const pModel = ReadObj(folder, MakeSignMtl("-clamp on quarters.png"));
  EXPECT_EQ(pModel->GetMesh(0)->m_Texture.m_eWrapU, QXC::QX_WRAP_CLAMP);
  EXPECT_EQ(pModel->GetMesh(0)->m_Texture.m_eWrapV, QXC::QX_WRAP_CLAMP);
}

TEST(QXPictureCollector, ObjScalesAndMovesWithRowsFromTheBottom) {
  QXTestFolder const folder;
  auto const pModel = ReadObj(folder, MakeSignMtl("-s 2 4 -o 0.25 0.125 quarters.png"));
  EXPECT_TRUE(pModel->GetImage(0)->m_strName == L"quarters.png");
  ExpectPictureAt(*pModel, 0.0, 0.0, 0.25, 1.0 - 0.125);
  ExpectPictureAt(*pModel, 4.0, 4.0, 2.25, 1.0 - 4.125);
}

TEST(QXPictureCollector, BlackUnderAPictureIsNoColor) {
  QXTestFolder const folder;
  EXPECT_EQ(ReadObj(folder, MakeSignMtl("quarters.png", "0 0 0"))->GetMesh(0)->m_Texture.m_bReplacesColor, 1);
  EXPECT_EQ(ReadObj(folder, MakeSignMtl("quarters.png", "0 0 1"))->GetMesh(0)->m_Texture.m_bReplacesColor, 0);
}

TEST(QXPictureCollector, NoColorUnderAPictureDoesNotDarkenIt) {
  QXTestFolder const folder;
  QXC::QXModelTexture const bare = ReadObj(folder, "newmtl sign\nmap_Kd quarters.png\n")->GetMesh(0)->m_Texture;
  EXPECT_EQ(bare.m_nImage, 0);
  EXPECT_EQ(bare.m_bReplacesColor, 1);
}

TEST(QXPictureCollector, OptionsAreReadInFilesNamedInCapitals) {
  QXTestFolder const folder;
  folder.Write("SIGN.MTL", "newmtl sign\nKd 1 1 1\nmap_Kd -s 2 4 quarters.png\n");
  auto const pModel = Read(QXFileType::EM_MODEL_OBJ, ToBytes(MakeSignObj("SIGN.MTL")), folder.Path());
  ExpectPictureAt(*pModel, 4.0, 4.0, 2.0, -3.0);
}

TEST(QXPictureCollector, MissingFileIsToldByItsName) {
  QXTestFolder const folder;
  auto const pModel = ReadObj(folder, MakeSignMtl("tex\\gone.png"));
  EXPECT_EQ(std::string(pModel->GetImage(0)->m_strName.ToMBString().Cstr()), "tex\\gone.png");
  EXPECT_EQ(std::string(pModel->GetImage(0)->m_strFilePath.ToMBString().Cstr()), folder.Path("tex/gone.png"));
}

TEST(QXPictureCollector, OnePictureOfTwoMaterialsIsOne) {
  QXTestFolder const folder;
  folder.Write(
      "sign.mtl", MakeSignMtl("a.png") +
                      "newmtl other\nKd 1 0 0\nmap_Kd a.png\nnewmtl third\nmap_Kd b.png\nnewmtl bare\nKd 1 1 1\n");
  auto const pModel = Read(QXFileType::EM_MODEL_OBJ,
      ToBytes(MakeSignObj("sign.mtl") + "usemtl other\nf 1/1/1 2/2/1 3/3/1\nusemtl third\nf 1/1/1 2/2/1 4/4/1\n"
                                        "usemtl bare\nf 2/2/1 3/3/1 4/4/1\n"),
      folder.Path());
  ASSERT_EQ(pModel->GetMeshCount(), 4);
  EXPECT_EQ(pModel->GetImageCount(), 2);
  EXPECT_EQ(pModel->GetMesh(0)->m_Texture.m_nImage, pModel->GetMesh(1)->m_Texture.m_nImage);
  EXPECT_NE(pModel->GetMesh(0)->m_Texture.m_nImage, pModel->GetMesh(2)->m_Texture.m_nImage);
  EXPECT_EQ(pModel->GetMesh(3)->m_Texture.m_nImage, -1);
}

TEST(QXPictureCollector, MeshWithoutCoordinatesHasNoPicture) {
  QXTestFolder const folder;
  folder.Write("sign.mtl", MakeSignMtl("quarters.png"));
  auto const pModel = Read(QXFileType::EM_MODEL_OBJ,
      ToBytes("mtllib sign.mtl\nv 0 0 0\nv 1 0 0\nv 0 0 1\nusemtl sign\nf 1 2 3\n"), folder.Path());
  EXPECT_EQ(pModel->GetMesh(0)->m_Texture.m_nImage, -1);
}

TEST(QXPictureCollector, GltfPictureInAFile) {
  auto const pModel = ReadGltf(QXGltfSign());
  ASSERT_EQ(pModel->GetImageCount(), 1);
  EXPECT_TRUE(pModel->GetImage(0)->m_strName == L"quarters.png");
  EXPECT_EQ(pModel->GetImage(0)->m_arrBytes.GetSize(), 0u);
  // Without a folder nothing is looked up.
  EXPECT_EQ(pModel->GetImage(0)->m_strFilePath.IsEmpty(), 1);
  EXPECT_EQ(pModel->GetMesh(0)->m_Texture.m_bReplacesColor, 0);
  ExpectUpright(*pModel);
}

void ExpectCarried(QXC::ModelDataInfo const& model) {
  ASSERT_EQ(model.GetImageCount(), 1);
  QXC::QXModelImage const& image = *model.GetImage(0);
  EXPECT_EQ(image.m_strFilePath.IsEmpty(), 1);
  std::vector<unsigned char> const vecPicture = Quarters();
  ASSERT_EQ(image.m_arrBytes.GetSize(), vecPicture.size());
  EXPECT_EQ(std::vector<unsigned char>(image.m_arrBytes.begin(), image.m_arrBytes.end()), vecPicture);
  ExpectUpright(model);
}

TEST(QXPictureCollector, GltfCarriesPicturesInTextAndInItsBinaryPart) {
  QXGltfSign sign;
  sign.m_strImage = R"("uri":"data:image/png;base64,)" + EncodeBase64(Quarters()) + R"(")";
  ExpectCarried(*ReadGltf(sign));
  ExpectCarried(*Read(QXFileType::EM_MODEL_GLB, MakeSignGlb(QXGltfSign(), Quarters())));
}

TEST(QXPictureCollector, GltfWrapModes) {
  QXGltfSign sign;
  sign.m_strSampler = R"("wrapS":33071,"wrapT":33648)";
  QXC::QXModelTexture const texture = ReadGltf(sign)->GetMesh(0)->m_Texture;
  EXPECT_EQ(texture.m_eWrapU, QXC::QX_WRAP_CLAMP);
  EXPECT_EQ(texture.m_eWrapV, QXC::QX_WRAP_MIRROR);
  EXPECT_EQ(ReadGltf(QXGltfSign())->GetMesh(0)->m_Texture.m_eWrapU, QXC::QX_WRAP_REPEAT);
}

TEST(QXPictureCollector, GltfColorOfAMaterialWithoutANameIsMultiplied) {
  auto const read = [](std::string const& strFactor) {
    QXGltfSign sign;
    sign.m_strTextureInfo = R"(},"baseColorFactor":)" + strFactor + R"(,"extras":{)";
    std::string strText = MakeSignGltf(sign);
    std::string const strName = R"("name":"sign",)";
    strText.erase(strText.find(strName), strName.size());
    return Read(QXFileType::EM_MODEL_GLTF, ToBytes(strText));
  };
  auto const pRed = read("[1,0,0,0.5]");
  EXPECT_EQ(pRed->GetMesh(0)->m_bBaseColorSet, 1);
  EXPECT_EQ(pRed->GetMesh(0)->m_BaseColor.g, 0.0);
  EXPECT_EQ(pRed->GetMesh(0)->m_BaseColor.a, 0.5);
  EXPECT_EQ(read("[1,1,1,1]")->GetMesh(0)->m_bBaseColorSet, 0) << "the same as no material";
}

TEST(QXPictureCollector, GltfSecondCoordinateSet) {
  QXGltfSign sign;
  sign.m_strTextureInfo = R"(,"texCoord":1)";
  auto const pModel = ReadGltf(sign);
  ExpectPictureAt(*pModel, 0.0, 4.0, 1.0, 0.0);
  ExpectPictureAt(*pModel, 4.0, 0.0, 0.0, 1.0);
}

TEST(QXPictureCollector, GltfTransformScalesTurnsAndMovesAboutTheCorner) {
  QXGltfSign sign;
  sign.m_strTextureInfo =
      R"(,"extensions":{"KHR_texture_transform":{"offset":[0.25,-0.5],"rotation":0.4,"scale":[2,3]}})";
  auto const pModel = ReadGltf(sign);
  double const dCos = std::cos(0.4);
  double const dSin = std::sin(0.4);
  for (double u : {0.0, 1.0})
    for (double v : {0.0, 1.0})
      ExpectPictureAt(*pModel, 4.0 * u, 4.0 - 4.0 * v, 2.0 * u * dCos + 3.0 * v * dSin + 0.25,
          -2.0 * u * dSin + 3.0 * v * dCos - 0.5);
}

TEST(QXPictureCollector, GltfAlphaModes) {
  EXPECT_EQ(ReadGltf(QXGltfSign())->GetMesh(0)->m_Texture.m_eAlpha, QXC::QX_ALPHA_OPAQUE);
  QXGltfSign sign;
  sign.m_strMaterial = R"(,"alphaMode":"BLEND")";
  EXPECT_EQ(ReadGltf(sign)->GetMesh(0)->m_Texture.m_eAlpha, QXC::QX_ALPHA_BLEND);
  sign.m_strMaterial = R"(,"alphaMode":"MASK","alphaCutoff":0.25)";
  QXC::QXModelTexture const texture = ReadGltf(sign)->GetMesh(0)->m_Texture;
  EXPECT_EQ(texture.m_eAlpha, QXC::QX_ALPHA_MASK);
  EXPECT_EQ(texture.m_dAlphaCutoff, 0.25);
}

TEST(QXPictureCollector, ColladaNamesAFileThroughItsSampler) {
  auto const pModel = Read(QXFileType::EM_MODEL_COLLADA, ReadTestFile(ModelPath("sign.dae")), DataPath("models"));
  ASSERT_EQ(pModel->GetImageCount(), 1);
  EXPECT_TRUE(
      std::filesystem::equivalent(pModel->GetImage(0)->m_strFilePath.ToMBString().Cstr(), ModelPath("quarters.png")));
  EXPECT_EQ(pModel->GetMesh(0)->m_Texture.m_bReplacesColor, 1);
  ExpectUpright(*pModel);
}

TEST(QXPictureCollector, FbxScalesAndMovesWithRowsFromTheBottom) {
  auto const pModel = Read(QXFileType::EM_MODEL_FBX, ReadTestFile(ModelPath("sign.fbx")), DataPath("models"));
  ASSERT_EQ(pModel->GetImageCount(), 1);
  EXPECT_TRUE(
      std::filesystem::equivalent(pModel->GetImage(0)->m_strFilePath.ToMBString().Cstr(), ModelPath("quarters.png")));
  EXPECT_EQ(pModel->GetMesh(0)->m_Texture.m_bReplacesColor, 1);
  ExpectPictureAt(*pModel, 0.0, 0.0, 0.25, 1.0 - 0.125);
  ExpectPictureAt(*pModel, 4.0, 4.0, 2.25, 1.0 - 4.125);
}

TEST(QXPictureCollector, PlainMapOf3ds) {
  auto const pModel = Read(QXFileType::EM_MODEL_3DS, MakeSign3ds("QUARTERS.PNG", {}));
  ASSERT_EQ(pModel->GetImageCount(), 1);
  EXPECT_TRUE(pModel->GetImage(0)->m_strName == L"QUARTERS.PNG");
  QXC::QXModelTexture const& texture = pModel->GetMesh(0)->m_Texture;
  EXPECT_EQ(texture.m_nImage, 0);
  EXPECT_EQ(texture.m_eWrapU, QXC::QX_WRAP_REPEAT);
  EXPECT_EQ(texture.m_bReplacesColor, 1);
  EXPECT_NEAR(pModel->GetMesh(0)->m_BaseColor.r, 0.5, 0.01);
  ExpectUpright(*pModel);
}

TEST(QXPictureCollector, MapOf3dsIsScaledAndMovedWithRowsFromTheBottom) {
  QXByteWriter map;
  map.Bytes(MakeChunk(0xA351, QXByteWriter().Short(0x10).Get()));
  map.Bytes(MakeChunk(0xA354, QXByteWriter().Floats({2.0f}).Get()));
  map.Bytes(MakeChunk(0xA356, QXByteWriter().Floats({4.0f}).Get()));
  map.Bytes(MakeChunk(0xA358, QXByteWriter().Floats({0.25f}).Get()));
  map.Bytes(MakeChunk(0xA35A, QXByteWriter().Floats({0.125f}).Get()));
  auto const pModel = Read(QXFileType::EM_MODEL_3DS, MakeSign3ds("a.png", map.Get()));
  EXPECT_EQ(pModel->GetMesh(0)->m_Texture.m_eWrapU, QXC::QX_WRAP_CLAMP);
  // The offset of u moves the picture and not the coordinates. From the bottom v is 4 v + 0.125; rows are counted from
  // the top.
  ExpectPictureAt(*pModel, 0.0, 0.0, -0.25, 1.0 - 0.125);
  ExpectPictureAt(*pModel, 4.0, 4.0, 1.75, 1.0 - 4.125);
}

TEST(QXPictureCollector, BrokenModelsGiveAReasonOrPicturesThatMeshesCanName) {
  constexpr unsigned int Seed = 20240611;
  SCOPED_TRACE("seed " + std::to_string(Seed));
  std::mt19937 random(Seed);
  QXGltfSign sign;
  sign.m_strImage = R"("uri":"data:image/png;base64,)" + EncodeBase64(Quarters()) + R"(")";
  sign.m_strTextureInfo = R"(,"extensions":{"KHR_texture_transform":{"offset":[0.25,-0.5],"rotation":0.4}})";
  std::pair<int, std::vector<unsigned char>> const arrModels[] = {
      {QXFileType::EM_MODEL_GLTF, ToBytes(MakeSignGltf(sign))},
      {QXFileType::EM_MODEL_GLB, MakeSignGlb(QXGltfSign(), Quarters())},
      {QXFileType::EM_MODEL_3DS, MakeSign3ds("a.png", {})}};
  for (auto const& [nType, vecWhole] : arrModels) {
    for (int i = 0; i < 60; ++i) {
      std::vector<unsigned char> vecBytes = vecWhole;
      for (int k = 0; k < 3; ++k) vecBytes[random() % vecBytes.size()] = static_cast<unsigned char>(random());
      QXAssimpFileParser parser;
      std::string const strError = parser.OpenBytes(nType, std::string(), std::move(vecBytes));
      std::unique_ptr<QXC::ModelDataInfo> const pModel(parser.GetModelDataInfo());
      ASSERT_EQ(strError.empty(), pModel != nullptr);
      for (int nMesh = 0; pModel != nullptr && nMesh < pModel->GetMeshCount(); ++nMesh) {
        QXC::QXModelMesh const& mesh = *pModel->GetMesh(nMesh);
        ASSERT_LT(mesh.m_Texture.m_nImage, pModel->GetImageCount());
        ASSERT_TRUE(mesh.m_Texture.m_nImage < 0 || mesh.m_pVertexPackage->m_pTexCoords[0] != nullptr);
      }
    }
  }
}

}  // namespace
}  // namespace QXAssimp
