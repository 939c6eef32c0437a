#include <tests/assimp/QXTestFiles.h>

#include <plugins/assimp/QXAssimpFileParser.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

namespace QXAssimp {
namespace {

using QXC::QXVector3d;

/// A model read as a host reads it: by the manager, from the module of the plug-in configuration.
struct ReadResult {
  std::unique_ptr<QXC::ModelDataInfo> m_pModel;
  std::string m_strError;
};

ReadResult ReadFile(std::string const& strPath) {
  ReadResult result;
  QXC::QdcUnicodeString const strWide = QXC::QdcUnicodeString::FromUTF8(strPath.c_str());
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(strWide);
  QXC::QXFileParser* pParser = QXC::QXFileParseManager::CreateFileParser(nType, 0);
  if (pParser == nullptr) {
    result.m_strError = QXC::QXFileParseManager::GetErrorText().ToMBString().Cstr();
    return result;
  }
  std::unique_ptr<QXC::QXImportParams> const pParams(
      QXC::QXExchangeParamsManager::MakeImportParams(nType, QXC::QdcUnicodeString()));
  pParams->SetFilePathName(strWide);
  unsigned char const bOpened = pParser->Open(pParams.get());
  result.m_pModel.reset(static_cast<QXC::QXFileParseModel*>(pParser)->GetModelDataInfo());
  result.m_strError = pParser->GetErrorText().ToMBString().Cstr();
  QXC::QXFileParseManager::DestroyFileParser(pParser);
  EXPECT_EQ(bOpened != 0, result.m_pModel != nullptr);
  EXPECT_EQ(bOpened != 0, result.m_strError.empty());
  EXPECT_EQ(result.m_strError.find('\n'), std::string::npos);
  return result;
}

struct ModelCase {
  char const* m_szName;
  int m_nNodes;
  QXC::QXModelUpAxis m_eUpAxis;
  bool m_bColor;
};

class QXAssimpModels : public testing::TestWithParam<ModelCase> {};

// Every file holds the block of 2 x 3 x 4 that stands on the origin.
TEST_P(QXAssimpModels, BlockComesOutTheSame) {
  ModelCase const& model = GetParam();
  ReadResult const result = ReadFile(ModelPath(model.m_szName));
  ASSERT_NE(result.m_pModel, nullptr) << result.m_strError;
  EXPECT_EQ(result.m_pModel->GetUpAxis(), model.m_eUpAxis);
  EXPECT_EQ(result.m_pModel->GetMeshCount(), 1);
  EXPECT_EQ(result.m_pModel->GetNodeCount(), model.m_nNodes);
  EXPECT_EQ(result.m_pModel->GetTriangleCount(), 12u * static_cast<unsigned int>(model.m_nNodes));
  EXPECT_EQ(std::string(result.m_pModel->GetName().ToMBString().Cstr()), ModelPath(model.m_szName));
  QXC::QXBoundingBox const box = result.m_pModel->GetBoundingBox();
  EXPECT_LT((box.GetMin() - QXVector3d(0.0, 0.0, 0.0)).Length(), 1e-6);
  EXPECT_LT((box.GetMax() - QXVector3d(model.m_nNodes == 2 ? 12.0 : 2.0, 3.0, 4.0)).Length(), 1e-6);

  QXC::QXModelMesh const& mesh = *result.m_pModel->GetMesh(0);
  EXPECT_EQ(mesh.m_bBaseColorSet != 0, model.m_bColor);
  QXC::QXVertexDataPackage const& package = *mesh.m_pVertexPackage;
  ASSERT_EQ(package.m_nVertexNum, 24u) << "four a side, since every side has a normal of its own";
  ASSERT_EQ(package.m_nNormalNum, 24u);
  ASSERT_EQ(mesh.m_arrIndexPackages.GetSize(), 1u);
  EXPECT_EQ(mesh.m_arrIndexPackages[0]->m_nIndexType, 0);
}

// The triangles run around outward normals, and the normals are those of the triangles.
TEST_P(QXAssimpModels, NormalsLookOutOfTheBlock) {
  ReadResult const result = ReadFile(ModelPath(GetParam().m_szName));
  ASSERT_NE(result.m_pModel, nullptr) << result.m_strError;
  QXC::QXModelMesh const& mesh = *result.m_pModel->GetMesh(0);
  QXC::QXVertexDataPackage const& package = *mesh.m_pVertexPackage;
  QXC::QXIndexPackage const& indices = *mesh.m_arrIndexPackages[0];
  auto const at = [](float const* p, unsigned int i) {
    return QXVector3d(
        static_cast<double>(p[3 * i]), static_cast<double>(p[3 * i + 1]), static_cast<double>(p[3 * i + 2]));
  };
  QXVector3d const vecMiddle = mesh.m_Bounds.GetCenter();
  for (int i = 0; i < indices.m_nIndexNum; i += 3) {
    unsigned short const* p = indices.GetIndices16() + i;
    QXVector3d const a = at(package.m_pVertices, p[0]);
    QXVector3d face = (at(package.m_pVertices, p[1]) - a).CrossProduct(at(package.m_pVertices, p[2]) - a);
    face.Normalize();
    EXPECT_GT(face.DotProduct(a - vecMiddle), 0.0) << "triangle " << i / 3;
    for (int k = 0; k < 3; ++k) EXPECT_LT((at(package.m_pNormals, p[k]) - face).Length(), 1e-5) << "corner " << i + k;
  }
}

INSTANTIATE_TEST_SUITE_P(Models, QXAssimpModels,
    testing::Values(ModelCase{"block.3ds", 1, QXC::QX_UP_UNKNOWN, true},
        ModelCase{"block.obj", 1, QXC::QX_UP_UNKNOWN, true}, ModelCase{"block.stl", 1, QXC::QX_UP_UNKNOWN, false},
        ModelCase{"block-binary.stl", 1, QXC::QX_UP_UNKNOWN, false},
        ModelCase{"block.ply", 1, QXC::QX_UP_UNKNOWN, false},
        ModelCase{"block-little.ply", 1, QXC::QX_UP_UNKNOWN, false},
        ModelCase{"block-big.ply", 1, QXC::QX_UP_UNKNOWN, false}, ModelCase{"block.gltf", 2, QXC::QX_UP_Z, true},
        ModelCase{"block.glb", 2, QXC::QX_UP_Z, true}, ModelCase{"companion.gltf", 2, QXC::QX_UP_Z, true},
        ModelCase{"block.dae", 1, QXC::QX_UP_Z, true}, ModelCase{"y-up.dae", 1, QXC::QX_UP_Z, true},
        ModelCase{"block.fbx", 1, QXC::QX_UP_Z, true}, ModelCase{"z-up.fbx", 1, QXC::QX_UP_Z, true}),
    [](testing::TestParamInfo<ModelCase> const& testCase) {
      std::string strName = testCase.param.m_szName;
      for (char& c : strName)
        if (c == '.' || c == '-') c = '_';
      return strName;
    });

TEST(QXAssimpFileParser, MaterialColourOfEachFormatIsForDisplay) {
  for (char const* szName : {"block.3ds", "block.obj", "block.dae", "block.fbx"}) {
    ReadResult const result = ReadFile(ModelPath(szName));
    ASSERT_NE(result.m_pModel, nullptr) << szName << result.m_strError;
    QXC::QXColorValue3D const color = result.m_pModel->GetMesh(0)->m_BaseColor;
    EXPECT_NEAR(color.r, 0.8, 1e-6) << szName;
    EXPECT_NEAR(color.g, 0.2, 1e-6) << szName;
    EXPECT_NEAR(color.b, 0.1, 1e-6) << szName;
    EXPECT_TRUE(result.m_pModel->GetMesh(0)->m_strMaterialName == L"brick") << szName;
  }
  // Linear 0.5 and 0.25, encoded.
  ReadResult const gltf = ReadFile(ModelPath("block.gltf"));
  EXPECT_NEAR(gltf.m_pModel->GetMesh(0)->m_BaseColor.r, 0.7353569830524495, 1e-6);
  EXPECT_NEAR(gltf.m_pModel->GetMesh(0)->m_BaseColor.g, 0.5370987304831942, 1e-6);
  EXPECT_EQ(gltf.m_pModel->GetMesh(0)->m_BaseColor.b, 0.0);
}

TEST(QXAssimpFileParser, VertexColoursAreKept) {
  ReadResult const result = ReadFile(ModelPath("block.ply"));
  ASSERT_NE(result.m_pModel, nullptr) << result.m_strError;
  QXC::QXVertexDataPackage const& package = *result.m_pModel->GetMesh(0)->m_pVertexPackage;
  ASSERT_EQ(package.m_nColorNum, 24u);
  for (unsigned int i = 0; i < package.m_nVertexNum; ++i) {
    float const* p = package.m_pVertices + 3 * i;
    int const nCorner = (p[0] > 0.0f ? 1 : 0) + (p[1] > 0.0f ? 2 : 0) + (p[2] > 0.0f ? 4 : 0);
    EXPECT_EQ(package.m_pColors[i], QDC::QDCRGBA(255, static_cast<unsigned char>(30 * nCorner), 0, 255));
  }
}

TEST(QXAssimpFileParser, FirstRowOfTheImageIsVZero) {
  ReadResult const result = ReadFile(ModelPath("block.obj"));
  ASSERT_NE(result.m_pModel, nullptr) << result.m_strError;
  QXC::QXVertexDataPackage const& package = *result.m_pModel->GetMesh(0)->m_pVertexPackage;
  ASSERT_EQ(package.m_nTexCoordNums[0], 24u);
  // The corner at the origin has vt 0 0 in the file, which counts from the lowest row.
  bool bFound = false;
  for (unsigned int i = 0; i < 24; ++i) {
    float const* p = package.m_pVertices + 3 * i;
    if (p[0] == 0.0f && p[1] == 0.0f && p[2] == 0.0f && package.m_pTexCoords[0][2 * i] == 0.0f) {
      EXPECT_EQ(package.m_pTexCoords[0][2 * i + 1], 1.0f);
      bFound = true;
    }
  }
  EXPECT_TRUE(bFound);
}

TEST(QXAssimpFileParser, InstancedMeshIsHeldOnceAndNamed) {
  ReadResult const result = ReadFile(ModelPath("block.gltf"));
  ASSERT_NE(result.m_pModel, nullptr) << result.m_strError;
  EXPECT_TRUE(result.m_pModel->GetNode(0)->m_strName == L"here");
  EXPECT_TRUE(result.m_pModel->GetNode(1)->m_strName == L"there");
  EXPECT_EQ(result.m_pModel->GetNode(1)->m_matWorld[3][0], 10.0);
}

TEST(QXAssimpFileParser, MapCoordinatesKeepTheirMillimetres) {
  ReadResult const result = ReadFile(ModelPath("far.obj"));
  ASSERT_NE(result.m_pModel, nullptr) << result.m_strError;
  // A block of 2 x 3 x 4 mm; floats at its place step by half a metre.
  QXC::QXBoundingBox const box = result.m_pModel->GetBoundingBox();
  EXPECT_LT((box.GetMin() - QXVector3d(604099.5, 5792153.25, 71.5)).Length(), 1e-6);
  EXPECT_LT((box.GetMax() - QXVector3d(604099.502, 5792153.253, 71.504)).Length(), 1e-5);
}

TEST(QXAssimpFileParser, FloatsFarOutMoveTheirOffsetIntoTheNode) {
  std::string strObj;
  for (char const* szLine : {"v 9000 0 0\n", "v 9001 0 0\n", "v 9000 1 0.5\n", "f 1 2 3\n"}) strObj += szLine;
  QXTestFolder const folder;
  ReadResult const result = ReadFile(folder.Write("near.obj", strObj));
  ASSERT_NE(result.m_pModel, nullptr) << result.m_strError;
  QXC::QXModelMesh const& mesh = *result.m_pModel->GetMesh(0);
  EXPECT_LE(mesh.m_Bounds.GetMax().x, 2.0);
  EXPECT_EQ(result.m_pModel->GetBoundingBox().GetMin(), QXVector3d(9000.0, 0.0, 0.0));
  EXPECT_EQ(result.m_pModel->GetBoundingBox().GetMax(), QXVector3d(9001.0, 1.0, 0.5));
}

/// A row of separate triangles with three vertices each, as OBJ.
std::string MakeStrip(unsigned int nTriangles) {
  std::string strObj;
  for (unsigned int i = 0; i < nTriangles; ++i) {
    std::string const x = std::to_string(i % 1000);
    std::string const y = std::to_string(i / 1000);
    strObj += "v " + x + " " + y + " 0\nv " + x + ".5 " + y + " 0\nv " + x + " " + y + ".5 0\n";
  }
  for (unsigned int i = 0; i < nTriangles; ++i)
    strObj +=
        "f " + std::to_string(3 * i + 1) + " " + std::to_string(3 * i + 2) + " " + std::to_string(3 * i + 3) + "\n";
  return strObj;
}

TEST(QXAssimpFileParser, IndicesGetWideAbove65535Vertices) {
  QXTestFolder const folder;
  ReadResult const narrow = ReadFile(folder.Write("narrow.obj", MakeStrip(21845)));
  ASSERT_NE(narrow.m_pModel, nullptr) << narrow.m_strError;
  EXPECT_EQ(narrow.m_pModel->GetVertexCount(), 65535u);
  EXPECT_EQ(narrow.m_pModel->GetMesh(0)->m_arrIndexPackages[0]->m_nIndexType, 0);
  ReadResult const wide = ReadFile(folder.Write("wide.obj", MakeStrip(21846)));
  ASSERT_NE(wide.m_pModel, nullptr) << wide.m_strError;
  EXPECT_EQ(wide.m_pModel->GetVertexCount(), 65538u);
  QXC::QXIndexPackage const& indices = *wide.m_pModel->GetMesh(0)->m_arrIndexPackages[0];
  ASSERT_EQ(indices.m_nIndexType, 1);
  EXPECT_EQ(indices.GetIndices32()[65537], 65537u);
}

TEST(QXAssimpFileParser, ConcavePolygonKeepsItsArea) {
  QXTestFolder const folder;
  ReadResult const result =
      ReadFile(folder.Write("m.obj", "v 0 0 0\nv 2 1.5 0\nv 4 0 0\nv 4 4 0\nv 0 4 0\nf 1 2 3 4 5\n"));
  ASSERT_NE(result.m_pModel, nullptr) << result.m_strError;
  EXPECT_EQ(result.m_pModel->GetTriangleCount(), 3u);
}

struct BadFile {
  char const* m_szName;
  char const* m_szText;
  char const* m_szReason;
};

class QXAssimpBadFiles : public testing::TestWithParam<BadFile> {};

TEST_P(QXAssimpBadFiles, GiveOneLineThatSaysWhy) {
  QXTestFolder const folder;
  ReadResult const result = ReadFile(folder.Write(GetParam().m_szName, GetParam().m_szText));
  EXPECT_EQ(result.m_pModel, nullptr);
  EXPECT_FALSE(result.m_strError.empty());
  EXPECT_NE(result.m_strError.find(GetParam().m_szReason), std::string::npos) << result.m_strError;
}

INSTANTIATE_TEST_SUITE_P(Files, QXAssimpBadFiles,
    testing::Values(BadFile{"a.obj", "", "empty"}, BadFile{"b.obj", "v 0 0 0\nv 1 0 0\np 1 2\nl 1 2\n", "no triangles"},
        BadFile{"c.3ds", "hello", "no 3DS file"}, BadFile{"d.glb", "glTF", "no binary glTF"},
        BadFile{"e.ply", "ply\n", "no PLY file"}, BadFile{"f.stl", "solid a\nfacet", "cut off"},
        BadFile{"g.gltf", "{\"asset\":", "another kind than its extension says"}, BadFile{"h.dae", "<COLLADA", ""},
        BadFile{"i.fbx", "; FBX\n{{{", ""},
        BadFile{"j.obj", "v nan nan nan\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "no triangles"}),
    [](testing::TestParamInfo<BadFile> const& testCase) { return std::string(1, testCase.param.m_szName[0]); });

TEST(QXAssimpFileParser, NothingOutsideTheFolderOfAModelIsRead) {
  QXTestFolder const folder;
  std::filesystem::create_directory(folder.Path("model"));
  std::vector<unsigned char> const vecBytes = ReadTestFile(ModelPath("companion.gltf"));
  std::string strText(vecBytes.begin(), vecBytes.end());
  folder.Write("block.bin", ReadTestFile(ModelPath("block.bin")));
  std::string const strInside = folder.Write("inside.gltf", strText);
  EXPECT_NE(ReadFile(strInside).m_pModel, nullptr);
  strText.replace(strText.find("block.bin"), 9, "../block.bin");
  EXPECT_EQ(ReadFile(folder.Write("model/outside.gltf", strText)).m_pModel, nullptr);
}

TEST(QXAssimpFileParser, OpenWithoutParametersOrPathFails) {
  QXAssimpFileParser parser;
  EXPECT_EQ(parser.Open(nullptr), 0);
  EXPECT_TRUE(parser.GetErrorText() == L"no file was named");
  QXC::QXImportParams params;
  EXPECT_EQ(parser.Open(&params), 0);
  params.SetFilePathName(L"a.doc");
  EXPECT_EQ(parser.Open(&params), 0);
  EXPECT_TRUE(parser.GetErrorText() == L"unknown kind of model; readable are .3ds .gltf .glb .obj .ply .stl .dae .fbx");
}

TEST(QXAssimpFileParser, FailureDropsTheModelOfTheOpenBefore) {
  QXAssimpFileParser parser;
  QXC::QXImportParams params;
  params.SetFilePathName(QXC::QdcUnicodeString::FromUTF8(ModelPath("block.obj").c_str()));
  ASSERT_EQ(parser.Open(&params), 1);
  EXPECT_EQ(parser.GetErrorText().IsEmpty(), 1);
  params.SetFilePathName(L"/nowhere/block.obj");
  EXPECT_EQ(parser.Open(&params), 0);
  EXPECT_EQ(parser.GetModelDataInfo(), nullptr);
}

/// Everything that a host would do with a model that came out.
void Use(QXC::ModelDataInfo const& model) {
  EXPECT_GT(model.GetTriangleCount(), 0u);
  model.GetBoundingBox();
  for (int i = 0; i < model.GetMeshCount(); ++i) {
    QXC::QXModelMesh const& mesh = *model.GetMesh(i);
    for (QXC::QXIndexPackage const* pPackage : mesh.m_arrIndexPackages)
      for (int k = 0; k < pPackage->m_nIndexNum; ++k) {
        unsigned int const nIndex =
            pPackage->m_nIndexType == 1 ? pPackage->GetIndices32()[k] : pPackage->GetIndices16()[k];
        ASSERT_LT(nIndex, mesh.m_pVertexPackage->m_nVertexNum);
      }
  }
}

void OpenAndUse(int nType, std::vector<unsigned char> vecBytes) {
  QXAssimpFileParser parser;
  std::string const strError = parser.OpenBytes(nType, "", std::move(vecBytes));
  std::unique_ptr<QXC::ModelDataInfo> const pModel(parser.GetModelDataInfo());
  ASSERT_EQ(strError.empty(), pModel != nullptr);
  if (pModel != nullptr) Use(*pModel);
}

class QXAssimpBrokenModels : public testing::TestWithParam<char const*> {};

TEST_P(QXAssimpBrokenModels, CutAtEveryByteIsAFailureOrAModel) {
  std::vector<unsigned char> const vecWhole = ReadTestFile(ModelPath(GetParam()));
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(QXC::QdcUnicodeString::FromUTF8(GetParam()));
  for (std::size_t nLength = 0; nLength < vecWhole.size(); ++nLength)
    OpenAndUse(nType, {vecWhole.begin(), vecWhole.begin() + static_cast<std::ptrdiff_t>(nLength)});
}

TEST_P(QXAssimpBrokenModels, ChangedBytesAreAFailureOrAModel) {
  std::vector<unsigned char> const vecWhole = ReadTestFile(ModelPath(GetParam()));
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(QXC::QdcUnicodeString::FromUTF8(GetParam()));
  unsigned int const nSeed = 8;
  std::printf("seed %u\n", nSeed);
  std::mt19937 random(nSeed);
  for (int nRound = 0; nRound < 150; ++nRound) {
    std::vector<unsigned char> vecBytes = vecWhole;
    for (unsigned int i = 0; i <= random() % 4; ++i)
      vecBytes[random() % vecBytes.size()] = static_cast<unsigned char>(random());
    OpenAndUse(nType, std::move(vecBytes));
  }
}

INSTANTIATE_TEST_SUITE_P(Models, QXAssimpBrokenModels,
    testing::Values("block.3ds", "block.gltf", "block.glb", "block.obj", "block.ply", "block-little.ply", "block.stl",
        "block-binary.stl", "block.dae", "block.fbx"),
    [](testing::TestParamInfo<char const*> const& testCase) {
      std::string strName = testCase.param;
      for (char& c : strName)
        if (c == '.' || c == '-') c = '_';
      return strName;
    });

TEST(QXAssimpFileParser, RandomBytesAreAFailureOrAModel) {
  unsigned int const nSeed = 4;
  std::printf("seed %u\n", nSeed);
  std::mt19937 random(nSeed);
  for (int nType = QXC::QXFileType::EM_MODEL_3DS; nType <= QXC::QXFileType::EM_MODEL_FBX; ++nType) {
    for (int nRound = 0; nRound < 10; ++nRound) {
      std::vector<unsigned char> vecBytes(random() % 2000);
      for (unsigned char& nByte : vecBytes) nByte = static_cast<unsigned char>(random());
      OpenAndUse(nType, std::move(vecBytes));
    }
  }
}

}  // namespace
}  // namespace QXAssimp
