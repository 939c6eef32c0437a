#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXStaticFile.h>
#include <apps/qx3d/QXStaticWalk.h>

#include <apps/qx3d/QXBuckets.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/fileparser/QXModelMaker.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace QXApp {
namespace {

using Bytes = std::vector<unsigned char>;
using Folder = QXAssimp::QXTestFolder;
using testing::HasSubstr;

Bytes Save(QXC::QXStaticGeometry& geometry) {
  QXC::QXMemoryStream stream;
  EXPECT_EQ(geometry.SaveVecData(stream, 0.0F), 1);
  return Bytes(stream.GetData(), stream.GetData() + stream.GetSize());
}

QXStaticContents Walk(Bytes const& vecBytes) {
  QXC::QXMemoryStream stream(vecBytes.data(), vecBytes.size());
  return WalkStatic(stream);
}

/// One plain triangle with a sub-object, baked. Its bytes: 8 of the version, four counts before the bucket of which the
/// last is that of the 16-bit list (8, 12, 16), the bucket at 20, positions at 40, normals at 82, colours at 124, the
/// count of units at 136, of levels at 140, of packages at 148, of indices at 169, indices at 173, counts of passes at
/// 179 and of sub-objects at 183.
Bytes MakeTriangleFile() {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeTriangle());
  model.AddNode(QXC::MakeNode(0, 0.0, 0.0, 0.0));
  return Save(*BuildScene(model).m_vecGeometries.at(0));
}

/// Three triangles, two of them with a picture each, one of glass.
std::unique_ptr<QXC::QXStaticGeometry> MakeRichGeometry() {
  QXC::ModelDataInfo model;
  for (int i = 0; i < 3; ++i) {
    QXC::QXModelMesh* pMesh = QXC::MakeTriangle();
    pMesh->m_pVertexPackage->SetTexCoordNum(0, 3, 0);
    pMesh->m_bBaseColorSet = 1;
    if (i < 2) pMesh->m_Texture.m_nImage = 0;
    if (i == 1) pMesh->m_Texture.m_eWrapU = pMesh->m_Texture.m_eWrapV = QXC::QX_WRAP_CLAMP;
    if (i == 2) pMesh->m_BaseColor.a = 0.5;
    model.AddNode(QXC::MakeNode(model.AddMesh(pMesh), 5.0 * i, 0.0, 0.0));
  }
  auto* pImage = new QXC::QXModelImage;
  pImage->m_strFilePath = QXC::QdcUnicodeString::FromUTF8(QXAssimp::ModelPath("quarters.png").c_str());
  model.AddImage(pImage);
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  QXMergeOptions options;
  options.m_eMerging = QXMerging::OneGeometry;
  options.m_nameTexture = [](QXSceneTexture const& texture) {
    return std::string(texture.m_Key.m_bRepeat ? "r" : "c") + ".png";
  };
  QXScene scene = BuildScene(model, pictures, options);
  scene.m_vecGeometries.at(0)->GetArrayID().Add(77);
  return std::move(scene.m_vecGeometries[0]);
}

template <class T>
Bytes With(Bytes vecBytes, std::size_t nOffset, T value) {
  EXPECT_LE(nOffset + sizeof value, vecBytes.size());
  std::memcpy(vecBytes.data() + nOffset, &value, sizeof value);
  return vecBytes;
}

TEST(QXStaticWalk, WholeFileIsToldInFull) {
  std::unique_ptr<QXC::QXStaticGeometry> const pGeometry = MakeRichGeometry();
  Bytes const vecBytes = Save(*pGeometry);
  QXStaticContents const contents = Walk(vecBytes);
  EXPECT_EQ(contents.m_strFault, "");
  EXPECT_EQ(contents.m_dVersion, 1.3);
  EXPECT_EQ(contents.m_nIDs, 1);
  EXPECT_EQ(contents.m_nSize, vecBytes.size());
  EXPECT_TRUE(contents.m_vecBuckets[0].empty());
  EXPECT_TRUE(contents.m_vecBuckets[2].empty());
  ASSERT_EQ(contents.m_vecBuckets[1].size(), 1u);
  ASSERT_EQ(contents.m_vecBuckets[3].size(), 1u);
  QXStaticBucket const& bucket = contents.m_vecBuckets[1][0];
  EXPECT_EQ(bucket.m_nOffset, 24u);
  EXPECT_EQ(bucket.m_nVertices, 6u);
  EXPECT_EQ(bucket.m_nVertexDim, 3u);
  EXPECT_EQ(bucket.m_nNormals, 6u);
  EXPECT_EQ(bucket.m_nColors, 6u);
  EXPECT_THAT(bucket.m_vecUnitDims, testing::ElementsAre(4u));
  EXPECT_EQ(bucket.m_nType, -1);
  EXPECT_EQ(bucket.m_nSubObjects, 2);
  EXPECT_EQ(bucket.m_Bounds.GetMax() - bucket.m_Bounds.GetMin(), QXC::QXVector3d(7.0, 3.0, 1.0));
  ASSERT_EQ(bucket.m_vecRanges.size(), 1u);
  EXPECT_EQ(bucket.m_vecRanges[0].m_nIndices, 6);
  EXPECT_EQ(bucket.m_vecRanges[0].m_nWidth, 2);
  ASSERT_EQ(bucket.m_vecPasses.size(), 1u);
  EXPECT_EQ(bucket.m_vecPasses[0].m_strKey, bucket.m_vecRanges[0].m_strPass);
  EXPECT_EQ(bucket.m_vecPasses[0].m_strVertexProgram, "RenderModelSecVP.glsl");
  EXPECT_THAT(bucket.m_vecPasses[0].m_vecTextures, testing::ElementsAre("c.png", "r.png"));
  EXPECT_EQ(contents.m_vecBuckets[3][0].m_nType, 1);
  EXPECT_EQ(contents.m_vecBuckets[3][0].m_nEnd + 4 + 2 * (4 + 5 + 4 + 32), vecBytes.size());
  ASSERT_EQ(contents.m_vecTextures.size(), 2u);
  EXPECT_EQ(contents.m_vecTextures[1].m_strName, "r.png");
  EXPECT_EQ(contents.m_vecTextures[1].m_nSpheres, 1);
}

TEST(QXStaticWalk, EachFaultIsToldAtItsByte) {
  Bytes const vecWhole = MakeTriangleFile();
  ASSERT_EQ(DescribeFault(Walk(vecWhole)), "");
  float const fInfinite = std::numeric_limits<float>::infinity();
  double const dNaN = std::nan("");
  auto const expect = [](Bytes const& vecBytes, std::string const& strFault) {
    EXPECT_THAT(DescribeFault(Walk(vecBytes)), testing::StartsWith(strFault));
  };
  expect(With(vecWhole, 0, dNaN), "byte 0: this is no version");
  expect(With(vecWhole, 0, 1.4), "byte 0: this is no version");
  expect(With(vecWhole, 0, 1e-9), "byte 0: this is no version");
  expect(With(vecWhole, 8, -1), "byte 8: -1 identifiers are announced");
  expect(With(vecWhole, 16, 1000000), "byte 16: 1000000 buckets are announced");
  expect(With(vecWhole, 20, 2), "byte 20: the index type is 2");
  expect(With(vecWhole, 32, static_cast<unsigned short>(0x301)), "byte 32: positions of 1 numbers");
  expect(With(vecWhole, 34, 0xFFFFFFFFU), "byte 34: 4294967295 positions are announced");
  expect(With(vecWhole, 40 + 16, fInfinite), "byte 56: among the positions is one that is no number");
  expect(With(vecWhole, 82 + 4, static_cast<float>(dNaN)), "byte 86: among the normals is one that is no number");
  // Positions of 3 numbers and normals of none: 3 + 16, which is above 4 and so two numbers.
  expect(With(vecWhole, 32, static_cast<unsigned short>(19)), "byte 76: 3 normals of no numbers are announced");
  expect(With(vecWhole, 118, 2U), "byte 118: there are 2 colours for 3 vertices");
  expect(With(vecWhole, 136, 9), "byte 136: there are 9 units of texture coordinates");
  expect(With(vecWhole, 136, 1000000), "byte 136: 1000000 units of texture coordinates are announced");
  expect(With(vecWhole, 140, -7), "byte 140: -7 levels");
  expect(With(vecWhole, 175, static_cast<unsigned short>(3)), "byte 175: index 1 of its package names vertex 3 of 3");
  expect(With(vecWhole, 187, 3), "byte 187: a sub-object begins at vertex 3 of 3");
  // Its range: behind the sphere of 32 bytes a slot, then one offset and one count.
  expect(With(vecWhole, 187 + 4 + 32 + 4 + 8 + 4, 1), "byte 187: a sub-object lies outside");
  Bytes vecLonger = vecWhole;
  vecLonger.push_back(0);
  expect(vecLonger, "byte " + std::to_string(vecWhole.size()) + ": the geometry ends here, and 1 further");
}

/// A file of one vertex with so many numbers in unit 0.
Bytes MakeWideUnitFile(unsigned short nDim) {
  QXC::QXStaticGeometry geometry;
  auto* pBucket = new QXC::QXStaticGeometryBucket;
  geometry.m_vecBuckets16.push_back(pBucket);
  QXC::QXVertexDataPackage& vertices = *pBucket->m_pVertexPackage;
  vertices.SetVertexNum(1, 0);
  vertices.m_nTexDims[0] = nDim;
  vertices.SetTexCoordNum(0, 1, 0);
  return Save(geometry);
}

TEST(QXStaticWalk, CoordinatesOfAnyWidthAreReadAndThoseOfNoneAreAFault) {
  // The number of the unit's dimension stands behind the counts of normals, colours and units.
  Bytes const vecWide = MakeWideUnitFile(20000);
  QXStaticContents const contents = Walk(vecWide);
  EXPECT_EQ(contents.m_strFault, "");
  EXPECT_THAT(contents.m_vecBuckets[1].at(0).m_vecUnitDims, testing::ElementsAre(20000u));
  constexpr std::size_t DimOffset = 20 + 8 + 10 + 2 + 12 + 12;
  EXPECT_EQ(vecWide[DimOffset] + 256 * vecWide[DimOffset + 1], 20000);
  EXPECT_EQ(DescribeFault(Walk(With(MakeWideUnitFile(3), DimOffset, static_cast<unsigned short>(0)))),
      "byte " + std::to_string(DimOffset + 2) + ": 1 texture coordinates of no numbers are announced");
}

/// Writes values one behind the other.
template <class... Values>
void Append(Bytes& vecBytes, Values... values) {
  auto const append = [&vecBytes](auto value) {
    auto const* p = reinterpret_cast<unsigned char const*>(&value);
    vecBytes.insert(vecBytes.end(), p, p + sizeof value);
  };
  (append(values), ...);
}

TEST(QXStaticWalk, ManyObjectsOfABucketOfManyRangesTakeNoSquare) {
  constexpr int Count = 100000;
  Bytes vecBytes = MakeWideUnitFile(3);
  // Instead of the counts of levels, passes and objects, of the typed lists and of the textures: a level of empty
  // ranges, and objects without any.
  vecBytes.resize(vecBytes.size() - 24);
  Append(vecBytes, 1, 0, Count);
  for (int i = 0; i < Count; ++i) Append(vecBytes, 4, 0, char{0}, 0, 0);
  Append(vecBytes, 0, Count);
  for (int i = 0; i < Count; ++i) Append(vecBytes, 0, 0.0, 0.0, 0.0, 1.0, 0, 0, 0);
  Append(vecBytes, 0, 0, 0);
  QXStaticContents const contents = Walk(vecBytes);
  EXPECT_EQ(contents.m_strFault, "");
  EXPECT_EQ(contents.m_vecBuckets[1].at(0).m_nSubObjects, Count);
}

TEST(QXStaticWalk, FilesOfAllVersionsAreFollowed) {
  // The city of these files has an index past the vertices and, from 1.1 on, a sub-object past the indices.
  for (char const* szVersion : {"1.0", "1.1", "1.2", "1.3"}) {
    std::string const strName = std::string("staticgeometry/city-") + szVersion + ".qsg";
    Bytes vecBytes = QXAssimp::ReadTestFile(QXAssimp::DataPath(strName));
    QXStaticContents const faulty = Walk(vecBytes);
    EXPECT_THAT(DescribeFault(faulty), HasSubstr("index 4 of its package names vertex 70000 of 4")) << szVersion;
    QXStaticContents const mended = Walk(With(vecBytes, faulty.m_nFaultOffset, 0U));
    bool const bObjects = std::string(szVersion) != "1.0";
    EXPECT_EQ(mended.m_strFault, bObjects ? "a sub-object lies outside of the indices that it is about" : "");
    EXPECT_EQ(mended.m_dVersion, std::strtod(szVersion, nullptr));
  }
}

TEST(QXStaticWalk, FileCutAnywhereHasAFault) {
  Bytes const vecWhole = Save(*MakeRichGeometry());
  for (std::size_t n = 0; n < vecWhole.size(); ++n) {
    QXStaticContents const contents = Walk(Bytes(vecWhole.begin(), vecWhole.begin() + static_cast<std::ptrdiff_t>(n)));
    EXPECT_NE(contents.m_strFault, "") << n;
    EXPECT_LE(contents.m_nFaultOffset, n);
  }
}

/// Whether a geometry can be drawn without a look at its counts.
bool IsWhole(QXC::QXStaticGeometry const& geometry) {
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry)) {
    QXC::QXVertexDataPackage const* pVertices = pBucket->m_pVertexPackage;
    if (pVertices == nullptr || (pVertices->m_nVertexNum > 0 && pVertices->m_pVertices == nullptr)) return false;
    for (auto const& [nLevel, vecPackages] : pBucket->m_mapLevelIndices)
      for (QXC::QXIndexPackage const* pPackage : vecPackages)
        for (int i = 0; i < pPackage->m_nIndexNum; ++i)
          if (GetIndex(*pPackage, i) >= pVertices->m_nVertexNum) return false;
  }
  return true;
}

TEST(QXStaticWalk, WhatHasNoFaultIsLoadedWholeWhateverBitIsTurned) {
  Bytes const vecWhole = Save(*MakeRichGeometry());
  int nAccepted = 0;
  for (std::size_t nBit = 0; nBit < 8 * vecWhole.size(); ++nBit) {
    Bytes vecBytes = vecWhole;
    vecBytes[nBit / 8] ^= static_cast<unsigned char>(1U << (nBit % 8));
    QXStaticContents const contents = Walk(vecBytes);
    if (!contents.m_strFault.empty()) {
      EXPECT_LE(contents.m_nFaultOffset, vecBytes.size());
      continue;
    }
    ++nAccepted;
    QXC::QXMemoryStream stream(vecBytes.data(), vecBytes.size());
    QXC::QXStaticGeometry geometry;
    EXPECT_EQ(geometry.LoadVecData(stream, 0.0F), 1) << "bit " << nBit;
    EXPECT_TRUE(IsWhole(geometry)) << "bit " << nBit;
  }
  // Most bits are mantissas, colours and names.
  EXPECT_GT(nAccepted, 1000);
}

TEST(QXStaticFile, FileComesBackAsItWas) {
  Folder const folder;
  std::unique_ptr<QXC::QXStaticGeometry> const pSaved = MakeRichGeometry();
  std::string strError;
  std::unique_ptr<QXC::QXStaticGeometry> const pLoaded = LoadStaticFile(folder.Write("a.qsg", Save(*pSaved)), strError);
  ASSERT_NE(pLoaded, nullptr) << strError;
  EXPECT_EQ(CountTriangles(*pLoaded), 3u);
  EXPECT_EQ(CountVertices(*pLoaded), 9u);
  EXPECT_EQ(CountObjects(*pLoaded), 3u);
  EXPECT_EQ(Save(*pLoaded), Save(*pSaved));
}

TEST(QXStaticFile, WhatCannotBeReadIsToldWithAWayOut) {
  Folder const folder;
  auto const expect = [](std::string const& strPath, std::string const& strPart) {
    std::string strError;
    EXPECT_EQ(LoadStaticFile(strPath, strError), nullptr);
    EXPECT_THAT(strError, HasSubstr(strPart));
    EXPECT_THAT(strError, HasSubstr("; "));
  };
  expect(folder.Path("gone.qsg"), "no such file");
  expect(folder.Path(), "directory");
  expect("/dev/null", "no regular file");
  expect(folder.Write("empty.qsg", ""), "empty");
  expect(folder.Write("text.qsg", "this is no geometry at all"), "byte 0: this is no version");
  Bytes vecCut = MakeTriangleFile();
  vecCut.resize(60);
  expect(folder.Write("cut.qsg", vecCut), "byte 34: ");
  // Each is 42 bytes and, when read, a thousand.
  Bytes vecMany;
  constexpr int Count = 100000;
  Append(vecMany, 1.3, 0, 0, Count);
  for (int i = 0; i < Count; ++i) {
    Append(vecMany, 0, -1, 0, static_cast<unsigned short>(3));
    vecMany.insert(vecMany.end(), 28, 0);
  }
  Append(vecMany, 0, 0, 0);
  expect(folder.Write("many.qsg", vecMany), "smaller buckets than memory is spent on");
}

TEST(QXStaticFile, PlaceStandsInTheSceneBesideIt) {
  Folder const folder;
  std::string const strPath = folder.Write("a.qsg", MakeTriangleFile());
  std::vector<std::string> vecProblems;
  EXPECT_EQ(ReadStaticPlace(strPath, vecProblems), QXC::QXVector3d());
  EXPECT_THAT(vecProblems, testing::IsEmpty());
  folder.Write("a.qsg.qxscene", "[static]\nfile = other.qsg\nposition = 9, 9, 9\n[static]\nfile = a.qsg\nposition = "
                                "604099.125, -5, 1e3\n");
  ReadStaticPlace(strPath, vecProblems);
  EXPECT_THAT(vecProblems, testing::ElementsAre(HasSubstr("a.qsg.qxscene:2: "))) << "a place is not lost in silence";
  folder.Write("other.qsg", "x");
  vecProblems.clear();
  EXPECT_EQ(ReadStaticPlace(strPath, vecProblems), QXC::QXVector3d(604099.125, -5.0, 1000.0));
  EXPECT_THAT(vecProblems, testing::IsEmpty());
}

TEST(QXStaticFile, TexturesCountFromItsFolderAndMissingOnesAreTold) {
  Folder const folder;
  folder.Write("r.png", QXAssimp::ReadTestFile(QXAssimp::ModelPath("quarters.png")));
  std::unique_ptr<QXC::QXStaticGeometry> const pGeometry = MakeRichGeometry();
  QXModelPictures pictures;
  std::vector<QXSceneTexture> vecTextures;
  std::vector<std::string> vecProblems;
  LoadStaticTextures(folder.Path("a.qsg"), *pGeometry, pictures, 4, vecTextures, vecProblems);
  EXPECT_THAT(vecProblems, testing::ElementsAre(HasSubstr(folder.Path("c.png") + ": no such file")));
  ASSERT_EQ(vecTextures.size(), 1u);
  EXPECT_EQ(vecTextures[0].m_nModel, 4);
  EXPECT_EQ(vecTextures[0].m_strName, folder.Path("r.png") + "|repeat");
  EXPECT_TRUE(pictures.IsUsable(vecTextures[0].m_Key.m_nImage));
  QXC::QXPass& pass = *pGeometry->m_vecBuckets16[0]->m_mapPasses.begin()->second;
  EXPECT_EQ(pass.GetTextureUnitState(0)->IsBlank(), 1);
  EXPECT_EQ(std::string(pass.GetTextureUnitState(1)->GetTextureName().ToMBString().Cstr()), vecTextures[0].m_strName);
}

TEST(QXStaticFile, NamesEndInQsgInAnyCase) {
  EXPECT_TRUE(IsStaticName("a/b.QSG"));
  EXPECT_FALSE(IsStaticName("a/b.qsg.qxscene"));
  EXPECT_FALSE(IsStaticName("qsg"));
}

}  // namespace
}  // namespace QXApp
