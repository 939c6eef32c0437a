// From files of all formats through the model cache to what is drawn: packages, passes, textures.
#include <tests/assimp/QXTestFiles.h>
#include <tests/assimp/QXTexturedModels.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParser.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>
#include <QxGraphics3D/model/QXModelData.h>
#include <QxGraphics3D/model/QXModelManager.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/texture/QXTexture.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <utility>

namespace QXAssimp {
namespace {

using QXC::QdcUnicodeString;
using QXC::QXPass;

QdcUnicodeString Wide(std::string const& strText) {
  return QdcUnicodeString::FromUTF8(strText.c_str());
}

std::string ReadText(std::string const& strPath) {
  std::vector<unsigned char> const vecBytes = ReadTestFile(strPath);
  return std::string(vecBytes.begin(), vecBytes.end());
}

class QXModelRoad : public testing::Test {
protected:
  /// The model of a file that must be readable.
  QXC::ModelDataInfo& Load(std::string const& strPath) {
    QXC::QXModelDataPtr const pModel = m_Manager.Load(Wide(strPath));
    if (pModel.IsNull() || pModel->GetModelDataInfo() == nullptr) throw std::runtime_error("no model: " + strPath);
    EXPECT_EQ(m_Manager.IsExists(Wide(strPath)), 1);
    EXPECT_TRUE(pModel->GetModelDataInfo()->GetName() == Wide(strPath));
    return *pModel->GetModelDataInfo();
  }
  /// The one pass of the model's one mesh.
  static QXPass const& PassOf(QXC::ModelDataInfo const& model) {
    EXPECT_EQ(model.GetPasses().size(), 1U);
    QXC::QXIndexPackage const& package = *model.GetMesh(0)->m_arrIndexPackages[0];
    EXPECT_EQ(package.m_arrPassNames.GetSize(), 1U);
    return *model.GetPasses().at(package.m_arrPassNames[0]);
  }
  std::string WriteSign(std::string const& strName, std::vector<unsigned char> const& vecModel) {
    m_Folder.Write("quarters.png", ReadTestFile(ModelPath("quarters.png")));
    return m_Folder.Write(strName, vecModel);
  }

  QXTestFolder m_Folder;
  QXC::QXModelManager m_Manager;
};

// --- Every format ---

struct Sign {
  char const* m_szFile;
  /// The colour that is drawn; where a picture replaces it, white.
  double m_dRed;
};

TEST_F(QXModelRoad, SignsOfAllFormatsAreDrawnWithTheirPicture) {
  m_Folder.Write("sign.mtl", MakeSignMtl("quarters.png", "0.5 1 1"));
  WriteSign("sign.obj", ToBytes(MakeSignObj("sign.mtl")));
  WriteSign("sign.gltf", ToBytes(MakeSignGltf(QXGltfSign())));
  WriteSign("sign.3ds", MakeSign3ds("quarters.png", {}));
  WriteSign("sign.dae", ReadTestFile(ModelPath("sign.dae")));
  WriteSign("sign.fbx", ReadTestFile(ModelPath("sign.fbx")));
  for (Sign const& sign : {Sign{"sign.obj", 0.5}, Sign{"sign.gltf", 1.0}, Sign{"sign.3ds", 1.0}, Sign{"sign.dae", 1.0},
           Sign{"sign.fbx", 1.0}}) {
    SCOPED_TRACE(sign.m_szFile);
    QXC::ModelDataInfo const& model = Load(m_Folder.Path(sign.m_szFile));
    ASSERT_EQ(model.GetMeshCount(), 1);
    QXC::QXModelMesh const& mesh = *model.GetMesh(0);
    EXPECT_EQ(mesh.m_pVertexPackage->m_nVertexNum, 4U);
    EXPECT_EQ(mesh.m_pVertexPackage->m_nTexCoordNums[0], 4U);
    ASSERT_EQ(mesh.m_arrIndexPackages.GetSize(), 1U);
    EXPECT_EQ(mesh.m_arrIndexPackages[0]->m_nIndexNum, 6);
    QXPass const& pass = PassOf(model);
    EXPECT_TRUE(pass.GetName() == Wide(m_Folder.Path(sign.m_szFile) + "|sign"));
    EXPECT_NEAR(pass.m_clrDiffuse.r, sign.m_dRed, 1e-6);
    ASSERT_EQ(pass.GetTextureUnitStatesSize(), 1U);
    EXPECT_TRUE(std::filesystem::equivalent(
        pass.GetTextureUnitState(0)->GetTextureName().ToMBString().Cstr(), m_Folder.Path("quarters.png")));
    EXPECT_EQ(pass.GetTextureUnitState(0)->m_matUnit, mesh.m_Texture.m_matTransform);
  }
}

TEST_F(QXModelRoad, FormatsWithoutPicturesAreDrawnInTheirColours) {
  for (auto const& [szName, dRed] :
      {std::pair{"block.obj", 0.8}, std::pair{"block.3ds", 0.8}, std::pair{"block.dae", 0.8},
          std::pair{"block.fbx", 0.8}, std::pair{"block.gltf", 0.7353569830524495}, std::pair{"block.ply", 1.0},
          std::pair{"block-little.ply", 1.0}, std::pair{"block.stl", 1.0}, std::pair{"block-binary.stl", 1.0}}) {
    SCOPED_TRACE(szName);
    QXC::ModelDataInfo const& model = Load(ModelPath(szName));
    QXPass const& pass = PassOf(model);
    EXPECT_NEAR(pass.m_clrDiffuse.r, dRed, 1e-6);
    EXPECT_NEAR(pass.m_clrAmbient.r, dRed, 1e-6);
    EXPECT_EQ(pass.GetTextureUnitStatesSize(), 0U);
    EXPECT_EQ(pass.m_eSourceFactor, QXC::BLEND_ONE);
  }
}

TEST_F(QXModelRoad, CarriedPictureIsATextureOfTheModel) {
  std::string const strPath =
      m_Folder.Write("sign.glb", MakeSignGlb(QXGltfSign(), ReadTestFile(ModelPath("quarters.png"))));
  QXC::ModelDataInfo const& model = Load(strPath);
  QXC::QXModelImage const& image = *model.GetImage(0);
  EXPECT_TRUE(image.m_strTextureName == Wide(strPath + "|0"));
  EXPECT_TRUE(PassOf(model).GetTextureUnitState(0)->GetTextureName() == image.m_strTextureName);
  std::unique_ptr<QXC::QXTextureData> const pCarried(
      QXC::QXTexture::GetTextureDataFromMemory(image.m_arrBytes.GetData(), image.m_arrBytes.GetSize()));
  std::unique_ptr<QXC::QXTextureData> const pFile(QXC::QXTexture::GetTextureData(Wide(ModelPath("quarters.png"))));
  ASSERT_NE(pCarried, nullptr);
  ASSERT_NE(pFile, nullptr);
  EXPECT_EQ(pCarried->m_nWidth, pFile->m_nWidth);
  EXPECT_EQ(pCarried->m_nHeight, pFile->m_nHeight);
  EXPECT_EQ(pCarried->m_eFormat, pFile->m_eFormat);
  ASSERT_EQ(pCarried->GetBlockLength(), pFile->GetBlockLength());
  ASSERT_GT(pFile->GetBlockLength(), 0U);
  EXPECT_TRUE(std::equal(pFile->m_pPixels, pFile->m_pPixels + pFile->GetBlockLength(), pCarried->m_pPixels));
}

TEST_F(QXModelRoad, HighlightsAreThoseOfMaterialsThatHaveThem) {
  std::string const strFaces = "v 0 0 0\nv 1 0 0\nv 0 1 0\nmtllib a.mtl\nusemtl shiny\nf 1 2 3\nusemtl dull\nf 3 2 1\n";
  m_Folder.Write("a.mtl", "newmtl shiny\nKd 1 0 0\nKs 0.5 0.25 0.125\nKe 0.1 0.2 0.3\nNs 64\nillum 2\n"
                          "newmtl dull\nKd 1 0 0\nKs 0.5 0.25 0.125\nNs 64\nillum 1\n");
  QXC::ModelDataInfo const& model = Load(m_Folder.Write("a.obj", strFaces));
  ASSERT_EQ(model.GetPasses().size(), 2U);
  std::string const strPrefix = m_Folder.Path("a.obj") + "|";
  QXPass const& shiny = *model.GetPasses().at(Wide(strPrefix + "shiny"));
  EXPECT_EQ(shiny.m_dShininess, 64.0);
  EXPECT_NEAR(shiny.m_clrSpecular.r, 0.5, 1e-6);
  EXPECT_NEAR(shiny.m_clrSpecular.g, 0.25, 1e-6);
  EXPECT_NEAR(shiny.m_clrSpecular.b, 0.125, 1e-6);
  EXPECT_NEAR(shiny.m_clrEmissive.b, 0.3, 1e-6);
  QXPass const& dull = *model.GetPasses().at(Wide(strPrefix + "dull"));
  EXPECT_EQ(dull.m_dShininess, 0.0);
  EXPECT_EQ(dull.m_clrSpecular, QXC::QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  EXPECT_EQ(dull.m_clrEmissive, QXC::QXColorValue3D(0.0, 0.0, 0.0, 1.0));
}

TEST_F(QXModelRoad, GltfMasksAndBlends) {
  QXGltfSign sign;
  sign.m_strMaterial = R"(,"alphaMode":"MASK","alphaCutoff":0.25,"emissiveFactor":[1,0.5,0])";
  WriteSign("mask.gltf", ToBytes(MakeSignGltf(sign)));
  QXPass const& mask = PassOf(Load(m_Folder.Path("mask.gltf")));
  EXPECT_EQ(mask.m_eAlphaFunction, QXC::COMPARE_GREATER_EQUAL);
  EXPECT_EQ(mask.m_nAlphaReference, 64);
  EXPECT_NEAR(mask.m_clrEmissive.r, 1.0, 1e-12);
  EXPECT_NEAR(mask.m_clrEmissive.g, 0.7353569830524495, 1e-6);
  sign.m_strMaterial = R"(,"alphaMode":"BLEND")";
  WriteSign("blend.gltf", ToBytes(MakeSignGltf(sign)));
  EXPECT_EQ(PassOf(Load(m_Folder.Path("blend.gltf"))).m_bDepthWrite, 0);
}

TEST_F(QXModelRoad, GltfColourWithoutAPictureLetsThroughWhatItsAlphaModeSays) {
  std::string strText = ReadText(ModelPath("block.gltf"));
  std::string const strColor = R"("baseColorFactor": [)";
  std::size_t const nBegin = strText.find(strColor);
  ASSERT_NE(nBegin, std::string::npos);
  std::size_t const nEnd = strText.find(']', nBegin) + 1;
  strText.replace(nBegin, nEnd - nBegin, strColor + "0.5,0.25,0,0.5]");
  m_Folder.Write("block.bin", ReadTestFile(ModelPath("block.bin")));
  QXPass const& opaque = PassOf(Load(m_Folder.Write("opaque.gltf", strText)));
  EXPECT_EQ(opaque.m_clrDiffuse.a, 1.0);
  EXPECT_EQ(opaque.m_eSourceFactor, QXC::BLEND_ONE);
  std::size_t const nMaterial = strText.find(R"("pbrMetallicRoughness")");
  ASSERT_NE(nMaterial, std::string::npos);
  strText.insert(nMaterial, R"("alphaMode":"BLEND",)");
  QXPass const& blended = PassOf(Load(m_Folder.Write("blended.gltf", strText)));
  EXPECT_EQ(blended.m_clrDiffuse.a, 0.5);
  EXPECT_EQ(blended.m_eSourceFactor, QXC::BLEND_SOURCE_ALPHA);
}

TEST_F(QXModelRoad, MergesIntoStaticGeometry) {
  WriteSign("sign.gltf", ToBytes(MakeSignGltf(QXGltfSign())));
  QXC::ModelDataInfo& model = Load(m_Folder.Path("sign.gltf"));
  QXC::QXStaticGeometry geometry;
  for (int i = 0; i < model.GetNodeCount(); ++i) {
    QXC::QXModelNode const& node = *model.GetNode(i);
    QXC::QXModelMesh& mesh = *model.GetMesh(node.m_nMesh);
    QXC::QXMatrix4d matPlace;
    matPlace.SetTrans(QXC::QXVector3d(6000000.0, 0.0, 0.0));
    QXC::QXMatrix4d matWorld = node.m_matWorld * matPlace;
    geometry.AddVertexDataAndIndexPackage(
        mesh.m_pVertexPackage, mesh.m_arrIndexPackages, model.GetPasses(), matWorld, nullptr, -1);
  }
  QXC::QXMatrix4d matBase;
  matBase.SetTrans(QXC::QXVector3d(6000000.0, 0.0, 0.0));
  geometry.AssignStaticGeometry(matBase, 0);
  ASSERT_EQ(geometry.m_vecBuckets16.size(), 1U);
  QXC::QXStaticGeometryBucket const& bucket = *geometry.m_vecBuckets16[0];
  ASSERT_EQ(bucket.m_mapPasses.size(), 1U);
  EXPECT_TRUE(bucket.m_mapPasses.begin()->second->GetTextureUnitState(0)->GetTextureName() ==
              PassOf(model).GetTextureUnitState(0)->GetTextureName());
  ASSERT_NE(bucket.m_pVertexPackage, nullptr);
  EXPECT_EQ(bucket.m_pVertexPackage->m_nVertexNum, 4U);
  float fHighest = 0.0F;
  for (std::size_t i = 0; i < 4; ++i) fHighest = std::max(fHighest, bucket.m_pVertexPackage->m_pVertices[3 * i + 2]);
  EXPECT_EQ(fHighest, 4.0F);
}

// --- Text that is not what it should be ---

/// Names of text models of the tree, one for each format.
constexpr char const* TextModels[] = {"block.obj", "block.dae", "block.gltf", "block.ply", "block.stl", "block.fbx"};

std::vector<unsigned char> ToUtf16(std::string const& strText, bool bBigEndian, bool bMark) {
  std::vector<unsigned char> vecBytes;
  auto const add = [&](unsigned int nUnit) {
    vecBytes.push_back(static_cast<unsigned char>(bBigEndian ? nUnit >> 8 : nUnit & 0xFF));
    vecBytes.push_back(static_cast<unsigned char>(bBigEndian ? nUnit & 0xFF : nUnit >> 8));
  };
  if (bMark) add(0xFEFF);
  for (char c : strText) add(static_cast<unsigned char>(c));
  return vecBytes;
}

std::string ReasonOf(std::string const& strPath) {
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(Wide(strPath));
  QXC::QXFileParser* pParser = QXC::QXFileParseManager::CreateFileParser(nType, 0);
  QXC::QXImportParams params;
  params.SetFilePathName(Wide(strPath));
  EXPECT_EQ(pParser->Open(&params), 0);
  std::string const strReason = pParser->GetErrorText().ToMBString().Cstr();
  QXC::QXFileParseManager::DestroyFileParser(pParser);
  return strReason;
}

class QXModelRoadText : public QXModelRoad, public testing::WithParamInterface<char const*> {
protected:
  QXModelRoadText() {
    for (char const* szCompanion : {"block.mtl", "block.bin"})
      m_Folder.Write(szCompanion, ReadTestFile(ModelPath(szCompanion)));
  }
  void ExpectFailure(std::string const& strPath) {
    EXPECT_TRUE(m_Manager.Load(Wide(strPath)).IsNull());
    EXPECT_TRUE(m_Manager.GetModelData(Wide(strPath)).IsNull());
    EXPECT_EQ(m_Manager.IsExists(Wide(strPath)), 0);
  }
};

TEST_P(QXModelRoadText, InUtf16IsAFailureThatSaysSoAndIsTriedAgain) {
  std::string const strText = ReadText(ModelPath(GetParam()));
  for (bool bBigEndian : {false, true}) {
    for (bool bMark : {false, true}) {
      std::string const strPath = m_Folder.Write(GetParam(), ToUtf16(strText, bBigEndian, bMark));
      ExpectFailure(strPath);
      EXPECT_EQ(ReasonOf(strPath), "this is text in UTF-16 or UTF-32; save it as UTF-8");
    }
  }
  std::string const strPath = m_Folder.Write(GetParam(), strText);
  EXPECT_FALSE(m_Manager.GetModelData(Wide(strPath)).IsNull());
}

TEST_P(QXModelRoadText, InUtf8WithAMarkIsReadLikeWithout) {
  std::string const strText = ReadText(ModelPath(GetParam()));
  QXC::ModelDataInfo const& marked = Load(m_Folder.Write(GetParam(), "\xEF\xBB\xBF" + strText));
  QXC::ModelDataInfo const& plain = Load(ModelPath(GetParam()));
  EXPECT_EQ(marked.GetTriangleCount(), plain.GetTriangleCount());
  EXPECT_EQ(marked.GetVertexCount(), plain.GetVertexCount());
  EXPECT_EQ(PassOf(marked).m_clrDiffuse, PassOf(plain).m_clrDiffuse);
  EXPECT_EQ(marked.GetUpAxis(), plain.GetUpAxis());
}

INSTANTIATE_TEST_SUITE_P(
    Formats, QXModelRoadText, testing::ValuesIn(TextModels), [](testing::TestParamInfo<char const*> const& testCase) {
      return std::filesystem::path(testCase.param).extension().string().substr(1);
    });

TEST_F(QXModelRoad, MarkOfAMaterialFileDoesNotHideItsFirstMaterial) {
  m_Folder.Write("sign.mtl", "\xEF\xBB\xBF" + MakeSignMtl("quarters.png", "0.5 1 1"));
  WriteSign("sign.obj", ToBytes(MakeSignObj("sign.mtl")));
  EXPECT_NEAR(PassOf(Load(m_Folder.Path("sign.obj"))).m_clrDiffuse.r, 0.5, 1e-6);
}

struct EmptyModel {
  char const* m_szName;
  std::string m_strText;
};

// Whole files with nothing in them that can be drawn; the importers take some for a success.
TEST_F(QXModelRoad, FilesWithoutATriangleAreFailuresWithAReason) {
  std::string const strCollada =
      R"(<?xml version="1.0"?><COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">)"
      R"(<asset><up_axis>Z_UP</up_axis></asset>)";
  EmptyModel const arrModels[] = {{"blank.obj", "\n"}, {"comment.obj", "# nothing\n"},
      {"points.obj", "v 0 0 0\nv 1 0 0\n"}, {"blank.gltf", "{}"}, {"empty.gltf", R"({"asset":{"version":"2.0"}})"},
      {"scene.gltf", R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[]}]})"},
      {"empty.dae", strCollada + "</COLLADA>"},
      {"scene.dae", strCollada +
                        R"(<library_visual_scenes><visual_scene id="s"><node/></visual_scene></library_visual_scenes>)"
                        R"(<scene><instance_visual_scene url="#s"/></scene></COLLADA>)"},
      {"empty.ply", "ply\nformat ascii 1.0\nelement vertex 0\nproperty float x\nproperty float y\nproperty float z\n"
                    "element face 0\nproperty list uchar int vertex_indices\nend_header\n"},
      {"empty.stl", "solid nothing\nendsolid nothing\n"}, {"blank.fbx", "; FBX 7.3.0 project file\n"},
      {"empty.fbx",
          "; FBX 7.3.0 project file\nFBXHeaderExtension:  {\n\tFBXHeaderVersion: 1003\n\tFBXVersion: 7300\n}\n"
          "Objects:  {\n}\nConnections:  {\n}\n"}};
  for (EmptyModel const& model : arrModels) {
    SCOPED_TRACE(model.m_szName);
    std::string const strPath = m_Folder.Write(model.m_szName, model.m_strText);
    EXPECT_TRUE(m_Manager.Load(Wide(strPath)).IsNull());
    EXPECT_EQ(m_Manager.IsExists(Wide(strPath)), 0);
    EXPECT_FALSE(ReasonOf(strPath).empty());
  }
}

}  // namespace
}  // namespace QXAssimp
