// Which indices a merge makes, level by level, and what sub-objects learn of them.
#include "QXMergeFixture.h"

namespace QXC {
namespace {

// Indices.

TEST_F(QXStaticGeometryBuild, IndicesAreMovedToTheFirstVertexOfTheirMesh) {
  m_host.AddPass(L"a", {});
  Add(MakeMesh({0, 0, 0, 0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {0, 1, 0})});
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {0, 0, 0})});
  Merge();
  EXPECT_THAT(Indices(), ElementsAre(0, 1, 0, 2, 2, 2));
}

TEST_F(QXStaticGeometryBuild, EachKeyHasAPackageThatNamesIt) {
  m_host.AddPass(L"b", {});
  m_host.AddPass(L"a", {});
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(),
      {&MakeTriangles(L"b", {0}), &MakeTriangles(L"a", {0, 0}), &MakeTriangles(L"none", {0, 0, 0})});
  Merge();
  auto const& packages = Bucket().m_mapLevelIndices.at(0);
  ASSERT_EQ(packages.size(), 3u);
  wchar_t const* const arrNames[] = {L"", L"a", L"b"};
  for (std::size_t i = 0; i < 3; ++i) {
    ASSERT_EQ(packages[i]->m_arrPassNames.GetSize(), 1u);
    EXPECT_TRUE(packages[i]->m_arrPassNames[0] == arrNames[i]);
    EXPECT_EQ(packages[i]->m_nIndexNum, 3 - static_cast<int>(i));
  }
}

TEST_F(QXStaticGeometryBuild, FlagAndOperationTypeAreThoseOfTheLastRecord) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& first = MakeTriangles(L"a", {0});
  first.m_eOperationType = QX_OPERATION_LINE_LIST;
  first.m_bFlag = 3;
  QXIndexPackage& last = MakeTriangles(L"a", {0});
  last.m_eOperationType = 77;
  last.m_bFlag = 9;
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&first, &last});
  Merge();
  EXPECT_EQ(Bucket().m_mapLevelIndices.at(0).at(0)->m_eOperationType, 77);
  EXPECT_EQ(Bucket().m_mapLevelIndices.at(0).at(0)->m_bFlag, 9);
}

TEST_F(QXStaticGeometryBuild, BucketOf32BitsHasIndicesOf32Bits) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& indices = m_host.MakeIndices({L"a"});
  indices.SetIndexNum32(3);
  for (unsigned int i = 0; i < 3; ++i) indices.GetIndices32()[i] = 70000 + i;
  Add(m_host.MakeCounted(70010), QXMatrix4d(), {&indices});
  Add(m_host.MakeCounted(70010), QXMatrix4d(), {&indices});
  Merge();
  QXIndexPackage const& merged = *m_geometry.m_vecBuckets32[0]->m_mapLevelIndices.at(0).at(0);
  ASSERT_EQ(merged.m_nIndexType, 1);
  ASSERT_EQ(merged.m_nIndexNum, 6);
  EXPECT_THAT(Words(merged.GetIndices32(), merged.GetIndices32() + 6),
      ElementsAre(70000u, 70001u, 70002u, 140010u, 140011u, 140012u));
}

TEST_F(QXStaticGeometryBuild, FullBucketOf16BitsReachesItsLastVertex) {
  m_host.AddPass(L"a", {});
  Add(m_host.MakeCounted(65534));
  Add(m_host.MakeCounted(1), QXMatrix4d(), {&MakeTriangles(L"a", {0})});
  Merge();
  EXPECT_EQ(Bucket().m_mapLevelIndices.at(0).at(0)->m_nIndexType, 0);
  EXPECT_THAT(Indices(), ElementsAre(65534));
}

TEST_F(QXStaticGeometryBuild, OneVertexBeyond16BitsWidensTheIndices) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& indices = m_host.MakeIndices({L"a"});
  indices.SetIndexNum32(1);
  indices.GetIndices32()[0] = 65535;
  Add(m_host.MakeCounted(65536), QXMatrix4d(), {&indices});
  Merge();
  QXIndexPackage const& merged = *m_geometry.m_vecBuckets32[0]->m_mapLevelIndices.at(0).at(0);
  ASSERT_EQ(merged.m_nIndexType, 1);
  EXPECT_EQ(merged.GetIndices32()[0], 65535u);
}

TEST_F(QXStaticGeometryBuild, SumsOf16BitsAreTruncated) {
  AddTransformedPass(L"a", 1.0, 1.0);
  QXVertexDataPackage& first = MakeMesh({0, 0, 0, 0, 0, 0});
  SetCoords(first, 0, {0, 0, 0, 0});
  Add(first);
  QXVertexDataPackage& second = MakeMesh({0, 0, 0});
  SetCoords(second, 0, {0, 0});
  Add(second, QXMatrix4d(), {&MakeTriangles(L"a", {65535})});
  Merge();
  // 65,535 + 2 is written as 1, and it is vertex 1 that gets transformed.
  EXPECT_THAT(Indices(), ElementsAre(1));
  EXPECT_THAT(Coords(), ElementsAre(0, 0, 1, 0, 0, 0));
}

TEST_F(QXStaticGeometryBuild, WidthOfTheBucketDecidesHowIndicesAreRead) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& wide = m_host.MakeIndices({L"a"});
  wide.SetIndexNum32(2);
  wide.GetIndices32()[0] = 0x00020001;
  wide.GetIndices32()[1] = 0x00040003;
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&wide});
  Merge();
  EXPECT_THAT(Indices(), ElementsAre(1, 2));
}

TEST_F(QXStaticGeometryBuild, NarrowIndicesOfAWideBucketEndWhereTheirBytesEnd) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& narrow = MakeTriangles(L"a", {1, 0, 2, 0, 3});
  Add(m_host.MakeCounted(70000), QXMatrix4d(), {&narrow});
  Merge();
  QXIndexPackage const& merged = *m_geometry.m_vecBuckets32[0]->m_mapLevelIndices.at(0).at(0);
  EXPECT_THAT(Words(merged.GetIndices32(), merged.GetIndices32() + 5), ElementsAre(1u, 2u, 0u, 0u, 0u));
}

TEST_F(QXStaticGeometryBuild, IndicesPastTheVerticesAreWrittenButTransformNothing) {
  AddTransformedPass(L"a", 1.0, 1.0);
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0, 0, 0, 0});
  SetCoords(mesh, 0, {5, 6, 7, 8});
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {1, 2, 60000})});
  Merge();
  EXPECT_THAT(Indices(), ElementsAre(1, 2, 60000));
  EXPECT_THAT(Coords(), ElementsAre(5, 6, 8, 8));
}

// Few enough indices for marks of a byte a vertex: one mark too many would be the sanitizer's to see.
TEST_F(QXStaticGeometryBuild, IndexOfTheNumberOfVerticesTransformsNothing) {
  AddTransformedPass(L"a", 1.0, 1.0);
  QXVertexDataPackage& mesh = MakeMesh(Floats(3 * 64, 0.0F));
  SetCoords(mesh, 0, Floats(2 * 64, 5.0F));
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {63, 64, 0})});
  Merge();
  EXPECT_THAT(Indices(), ElementsAre(63, 64, 0));
  Floats expected(2 * 64, 5.0F);
  expected[0] = expected[2 * 63] = 6.0F;
  EXPECT_EQ(Coords(), expected);
}

// Indices are taken in blocks of 4,096.
TEST_F(QXStaticGeometryBuild, RecordsAroundTheLengthOfABlockTransformEveryVertexOnce) {
  AddTransformedPass(L"a", 1.0, 1.0);
  for (unsigned short const nVertices : std::vector<unsigned short>{4095, 4096, 4097, 8192, 8193}) {
    QXVertexDataPackage& mesh = MakeMesh(Floats(std::size_t{3} * nVertices, 0.0F));
    SetCoords(mesh, 0, Floats(std::size_t{2} * nVertices, 5.0F));
    std::vector<unsigned short> indices(nVertices);
    for (unsigned short i = 0; i < nVertices; ++i) indices[i] = i;
    Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", indices)});
  }
  Merge();
  Floats const coords = Coords();
  std::vector<unsigned short> const indices = Indices();
  ASSERT_EQ(coords.size(), 2 * indices.size());
  for (std::size_t i = 0; i < indices.size(); ++i) {
    ASSERT_EQ(indices[i], i);
    ASSERT_EQ(coords[2 * i], 6.0F) << i;
    ASSERT_EQ(coords[2 * i + 1], 5.0F) << i;
  }
}

TEST_F(QXStaticGeometryBuild, BucketWithoutVerticesHasPackagesWithoutArrays) {
  m_host.AddPass(L"a", {});
  Add(m_host.MakeCounted(0), QXMatrix4d(), {&MakeTriangles(L"a", {1, 2, 3})}, MakeSubObject(0.0, 1.0));
  Merge();
  QXIndexPackage const& merged = *Bucket().m_mapLevelIndices.at(0).at(0);
  EXPECT_EQ(merged.m_pIndices, nullptr);
  EXPECT_EQ(merged.m_nIndexNum, 0);
  EXPECT_EQ(merged.m_nIndexType, 0);
  EXPECT_NE(Merged().m_pVertices, nullptr);
  EXPECT_THAT(Ints(Bucket().m_mapSubObjects.at(0)->m_arrCounts), ElementsAre(3));
}

TEST_F(QXStaticGeometryBuild, NullArrayWithACountGivesItsFirstVertex) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& null = m_host.MakeIndices({L"a"});
  null.m_nIndexNum = 2;
  Add(MakeMesh({0, 0, 0}));
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&null, &MakeTriangles(L"a", {0})});
  Merge();
  EXPECT_THAT(Indices(), ElementsAre(1, 1, 1));
}

TEST_F(QXStaticGeometryBuild, NegativeCountIsNone) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& negative = m_host.MakeIndices({L"a"});
  negative.m_nIndexNum = -5;
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&negative, &MakeTriangles(L"a", {0})});
  Merge();
  EXPECT_THAT(Indices(), ElementsAre(0));
}

// Levels.

TEST_F(QXStaticGeometryBuild, LevelsUpToTheHighestAreMerged) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& coarse = MakeTriangles(L"a", {1, 1});
  coarse.m_bFlag = 4;
  Add(MakeMesh({0, 0, 0, 0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {0, 1, 0})});
  Add(MakeMesh({0, 0, 0, 0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {1})});
  for (QXBucketIndexPackage& record : Records(L"a")) record.m_vecIndexPackages.push_back(&coarse);
  Bucket().m_nMaxLevel = 1;
  Merge();
  EXPECT_THAT(Indices(0), ElementsAre(0, 1, 0, 3));
  EXPECT_THAT(Indices(1), ElementsAre(1, 1, 3, 3));
  EXPECT_EQ(Bucket().m_mapLevelIndices.at(0).at(0)->m_bFlag, 0);
  EXPECT_EQ(Bucket().m_mapLevelIndices.at(1).at(0)->m_bFlag, 4);
}

TEST_F(QXStaticGeometryBuild, OnlyLevelZeroTransformsCoordinates) {
  AddTransformedPass(L"a", 1.0, 1.0);
  QXVertexDataPackage& mesh = MakeMesh({0, 0, 0, 0, 0, 0});
  SetCoords(mesh, 0, {0, 0, 0, 0});
  Add(mesh, QXMatrix4d(), {&MakeTriangles(L"a", {0})});
  Records(L"a")[0].m_vecIndexPackages.push_back(&MakeTriangles(L"a", {0, 1}));
  Bucket().m_nMaxLevel = 1;
  Merge();
  EXPECT_THAT(Coords(), ElementsAre(1, 0, 0, 0));
}

TEST_F(QXStaticGeometryBuild, OnlyLevelZeroIsCountedForSubObjects) {
  m_host.AddPass(L"a", {});
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {0})}, MakeSubObject(0.0, 1.0));
  Records(L"a")[0].m_vecIndexPackages.push_back(&MakeTriangles(L"a", {0, 0}));
  Bucket().m_nMaxLevel = 1;
  Merge();
  EXPECT_THAT(Ints(Bucket().m_mapSubObjects.at(0)->m_arrCounts), ElementsAre(1));
}

TEST_F(QXStaticGeometryBuild, MissingLevelIsAnEmptyPackage) {
  m_host.AddPass(L"a", {});
  QXIndexPackage& fine = MakeTriangles(L"a", {0});
  fine.m_eOperationType = QX_OPERATION_LINE_LIST;
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&fine, &MakeTriangles(L"a", {0})});
  Records(L"a")[1].m_vecIndexPackages.push_back(nullptr);
  Bucket().m_nMaxLevel = 2;
  Merge();
  for (int nLevel : {1, 2}) {
    EXPECT_EQ(Bucket().m_mapLevelIndices.at(nLevel).at(0)->m_nIndexNum, 0);
    EXPECT_EQ(Bucket().m_mapLevelIndices.at(nLevel).at(0)->m_eOperationType, QX_OPERATION_LINE_LIST);
  }
}

TEST_F(QXStaticGeometryBuild, HighestLevelBelowZeroMakesNoPackages) {
  m_host.AddPass(L"a", {});
  Add(MakeMesh({1, 2, 3}), QXMatrix4d(), {&MakeTriangles(L"a", {0})});
  Bucket().m_nMaxLevel = -1;
  Merge();
  EXPECT_TRUE(Bucket().m_mapLevelIndices.empty());
  EXPECT_THAT(Positions(), ElementsAre(1, 2, 3));
}

// Sub-objects.

TEST_F(QXStaticGeometryBuild, SubObjectsLearnTheirRangesByThePositionOfTheKey) {
  m_host.AddPass(L"a", {});
  m_host.AddPass(L"b", {});
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"b", {0, 0, 0}), &MakeTriangles(L"a", {0})},
      MakeSubObject(0.0, 1.0));
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"b", {0, 0}), &MakeTriangles(L"b", {0})},
      MakeSubObject(0.0, 1.0));
  Merge();
  QXSubObjectInfo const& first = *Bucket().m_mapSubObjects.at(0);
  EXPECT_EQ(first.m_mapPassSlots, (std::map<int, int>{{0, 0}, {1, 1}}));
  EXPECT_THAT(Ints(first.m_arrOffsets), ElementsAre(0, 0));
  EXPECT_THAT(Ints(first.m_arrCounts), ElementsAre(1, 3));
  QXSubObjectInfo const& second = *Bucket().m_mapSubObjects.at(1);
  EXPECT_EQ(second.m_mapPassSlots, (std::map<int, int>{{1, 0}}));
  EXPECT_THAT(Ints(second.m_arrOffsets), ElementsAre(3));
  EXPECT_THAT(Ints(second.m_arrCounts), ElementsAre(3));
}

TEST_F(QXStaticGeometryBuild, SlotOutsideTheArraysIsLeftAlone) {
  m_host.AddPass(L"a", {});
  for (int nSlot : {1, -1}) {
    QXSubObjectInfo* const pSubObject = MakeSubObject(0.0, 1.0);
    pSubObject->m_mapPassSlots[0] = nSlot;
    pSubObject->m_arrOffsets.Add(5);
    pSubObject->m_arrCounts.Add(6);
    Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {0})}, pSubObject);
  }
  Merge();
  for (auto const& [start, pSubObject] : Bucket().m_mapSubObjects) {
    EXPECT_THAT(Ints(pSubObject->m_arrOffsets), ElementsAre(5));
    EXPECT_THAT(Ints(pSubObject->m_arrCounts), ElementsAre(6));
  }
}

TEST_F(QXStaticGeometryBuild, SlotWithoutAnOffsetIsLeftAlone) {
  m_host.AddPass(L"a", {});
  QXSubObjectInfo* const pSubObject = MakeSubObject(0.0, 1.0);
  pSubObject->m_mapPassSlots[0] = 0;
  pSubObject->m_arrCounts.Add(6);
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {0})}, pSubObject);
  Merge();
  EXPECT_THAT(Ints(pSubObject->m_arrCounts), ElementsAre(6));
  EXPECT_EQ(pSubObject->m_arrOffsets.GetSize(), 0u);
}

TEST_F(QXStaticGeometryBuild, SlotWithoutACountIsLeftAlone) {
  m_host.AddPass(L"a", {});
  QXSubObjectInfo* const pSubObject = MakeSubObject(0.0, 1.0);
  pSubObject->m_mapPassSlots[0] = 0;
  pSubObject->m_arrOffsets.Add(5);
  Add(MakeMesh({0, 0, 0}), QXMatrix4d(), {&MakeTriangles(L"a", {0})}, pSubObject);
  Merge();
  EXPECT_EQ(pSubObject->m_arrCounts.GetSize(), 0u);
}

}  // namespace
}  // namespace QXC
