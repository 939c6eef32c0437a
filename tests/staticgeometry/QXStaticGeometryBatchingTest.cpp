#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <utility>

#include <gtest/gtest.h>

#include "QXStaticGeometryParts.h"

namespace QXC {
namespace {

std::vector<unsigned int> VertexNums(std::vector<QXStaticGeometryBucket*> const& buckets) {
  std::vector<unsigned int> nums;
  for (QXStaticGeometryBucket const* pBucket : buckets) nums.push_back(pBucket->m_pVertexPackage->m_nVertexNum);
  return nums;
}

using Nums = std::vector<unsigned int>;

// The names under which the bucket has records, in order.
TextList Keys(QXStaticGeometryBucket const& bucket) {
  TextList keys;
  for (auto const& [strKey, records] : bucket.m_mapPassIndices) keys.emplace_back(strKey.Cstr());
  return keys;
}

TextList PassKeys(QXStaticGeometryBucket const& bucket) {
  TextList keys;
  for (auto const& [strKey, pPass] : bucket.m_mapPasses) keys.emplace_back(strKey.Cstr());
  return keys;
}

std::vector<QXBucketIndexPackage> const& RecordsOf(QXStaticGeometryBucket const& bucket, std::wstring const& strKey) {
  return bucket.m_mapPassIndices.at(Text(strKey));
}

QXStaticGeometryBucket& FirstSmall(QXStaticGeometry& geometry) {
  return *geometry.m_vecBuckets16.at(0);
}

TEST(QXStaticGeometryBatching, NullMeshChangesNothing) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"wall", {L"wall.png"});
  QdcArray<QXIndexPackage*> packages;
  QXIndexPackage& lines = host.MakeIndices({}, QX_OPERATION_LINE_LIST);
  packages.Add(&lines);
  QXMatrix4d matrix;
  geometry.AddVertexDataAndIndexPackage(nullptr, packages, host.m_mapPasses, matrix, nullptr, 0);
  EXPECT_TRUE(geometry.m_vecBuckets32.empty());
  EXPECT_TRUE(geometry.m_vecBuckets16.empty());
  EXPECT_EQ(lines.m_arrPassNames.GetSize(), 0u);
}

TEST(QXStaticGeometryBatching, MeshesShareABucketWhileItHoldsTheirVertices) {
  struct Case {
    Nums m_Added;
    Nums m_Buckets;
  };
  for (Case const& each : {Case{{40000, 40000}, {40000, 40000}}, Case{{30000, 30000}, {60000}},
           Case{{65535, 1}, {65535, 1}}, Case{{65534, 1}, {65535}}, Case{{65535, 0}, {65535}}, Case{{0}, {0}}}) {
    QXStaticGeometry geometry;
    QXBatchingHost host;
    for (unsigned int nNum : each.m_Added) host.AddNamed(geometry, nNum, {});
    EXPECT_EQ(VertexNums(geometry.m_vecBuckets16), each.m_Buckets);
    EXPECT_TRUE(geometry.m_vecBuckets32.empty());
  }
}

TEST(QXStaticGeometryBatching, EarlierBucketWithRoomIsNotLookedFor) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  for (unsigned int nNum : {10u, 65530u, 20u}) host.AddNamed(geometry, nNum, {});
  EXPECT_EQ(VertexNums(geometry.m_vecBuckets16), (Nums{10, 65530, 20}));
}

TEST(QXStaticGeometryBatching, LargeMeshesShareOneBucketOfAnySize) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  for (unsigned int nNum : {100u, 70000u, 65536u, 65535u, 100000u}) host.AddNamed(geometry, nNum, {});
  EXPECT_EQ(VertexNums(geometry.m_vecBuckets32), (Nums{235536}));
  EXPECT_EQ(VertexNums(geometry.m_vecBuckets16), (Nums{100, 65535}));
  EXPECT_EQ(geometry.m_vecBuckets32[0]->m_nIndexType, 1);
  EXPECT_EQ(geometry.m_vecBuckets16[0]->m_nIndexType, 0);
  EXPECT_TRUE(geometry.m_vecTypedBuckets32.empty());
  EXPECT_TRUE(geometry.m_vecTypedBuckets16.empty());
}

TEST(QXStaticGeometryBatching, TypeOneHasListsOfItsOwn) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  for (int nType : {0, 1, 2, -3}) {
    host.AddNamed(geometry, 5, {}, nullptr, nType);
    host.AddNamed(geometry, 70000, {}, nullptr, nType);
  }
  EXPECT_EQ(VertexNums(geometry.m_vecBuckets16), (Nums{15}));
  EXPECT_EQ(VertexNums(geometry.m_vecBuckets32), (Nums{210000}));
  EXPECT_EQ(VertexNums(geometry.m_vecTypedBuckets16), (Nums{5}));
  EXPECT_EQ(VertexNums(geometry.m_vecTypedBuckets32), (Nums{70000}));
  EXPECT_EQ(geometry.m_vecTypedBuckets32[0]->m_nIndexType, 1);
  EXPECT_EQ(geometry.m_vecTypedBuckets16[0]->m_nIndexType, 0);
}

TEST(QXStaticGeometryBatching, BucketKeepsTheTypeOfTheMeshAddedLast) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  for (int nType : {2, 7, -5}) {
    host.AddNamed(geometry, 5, {}, nullptr, nType);
    EXPECT_EQ(FirstSmall(geometry).m_nType, nType);
  }
}

TEST(QXStaticGeometryBatching, IndexTypeIsSetAtEachAdd) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddNamed(geometry, 5, {});
  host.AddNamed(geometry, 70000, {});
  FirstSmall(geometry).m_nIndexType = 1;
  geometry.m_vecBuckets32[0]->m_nIndexType = 0;
  host.AddNamed(geometry, 5, {});
  host.AddNamed(geometry, 70000, {});
  EXPECT_EQ(FirstSmall(geometry).m_nIndexType, 0);
  EXPECT_EQ(geometry.m_vecBuckets32[0]->m_nIndexType, 1);
}

TEST(QXStaticGeometryBatching, MeshesAndMatricesAreKeptInOrder) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXVertexDataPackage& first = host.MakeCounted(3);
  QXVertexDataPackage& second = host.MakeCounted(4);
  host.Add(geometry, first, {}, nullptr, 0, Moved(1.0));
  host.Add(geometry, second, {}, nullptr, 0, Moved(2.0));
  QXStaticGeometryBucket const& bucket = FirstSmall(geometry);
  EXPECT_EQ(bucket.m_vecPackages, (std::vector<QXVertexDataPackage*>{&first, &second}));
  ASSERT_EQ(bucket.m_vecMatrices.size(), 2u);
  EXPECT_TRUE(bucket.m_vecMatrices[0] == Moved(1.0));
  EXPECT_TRUE(bucket.m_vecMatrices[1] == Moved(2.0));
  EXPECT_EQ(bucket.m_nMaxLevel, 0);
}

TEST(QXStaticGeometryBatching, CountsAddUpAndDimensionsGrow) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXVertexDataPackage& first = host.MakeCounted(10);
  first.m_nVertexDim = 2;
  first.m_nNormalDim = 4;
  first.m_nNormalNum = 1;
  first.m_nColorNum = 2;
  first.m_nSecondColorNum = 3;
  QXVertexDataPackage& second = host.MakeCounted(20);
  second.m_nVertexDim = 4;
  second.m_nNormalDim = 2;
  second.m_nNormalNum = 100;
  second.m_nColorNum = 200;
  second.m_nSecondColorNum = 300;
  for (unsigned int unit = 0; unit < 8; ++unit) {
    first.m_nTexDims[unit] = static_cast<unsigned short>(1 + unit);
    first.m_nTexCoordNums[unit] = unit;
    second.m_nTexDims[unit] = 4;
    second.m_nTexCoordNums[unit] = 1000;
  }
  host.Add(geometry, first, {});
  host.Add(geometry, second, {});
  QXVertexDataPackage const& merged = *FirstSmall(geometry).m_pVertexPackage;
  EXPECT_EQ(merged.m_nVertexNum, 30u);
  EXPECT_EQ(merged.m_nVertexDim, 4);
  EXPECT_EQ(merged.m_nNormalDim, 4);
  EXPECT_EQ(merged.m_nNormalNum, 101u);
  EXPECT_EQ(merged.m_nColorNum, 202u);
  EXPECT_EQ(merged.m_nSecondColorNum, 303u);
  for (unsigned int unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(merged.m_nTexDims[unit], unit < 3 ? 4 : 1 + unit) << unit;
    EXPECT_EQ(merged.m_nTexCoordNums[unit], 1000 + unit) << unit;
  }
  EXPECT_EQ(merged.m_pVertices, nullptr);
}

TEST(QXStaticGeometryBatching, NewPackageCountsWithItsDimensions) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXVertexDataPackage& mesh = host.MakeCounted(10);
  mesh.m_nVertexDim = 2;
  mesh.m_nNormalDim = 1;
  host.Add(geometry, mesh, {});
  EXPECT_EQ(FirstSmall(geometry).m_pVertexPackage->m_nVertexDim, 3);
  EXPECT_EQ(FirstSmall(geometry).m_pVertexPackage->m_nNormalDim, 3);
}

TEST(QXStaticGeometryBatching, OneOptionSurvives) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXVertexDataPackage& plain = host.MakeCounted(1);
  plain.m_nOptions = ~0x400u;
  host.Add(geometry, plain, {});
  unsigned int const nBefore = QXVertexDataPackage().m_nOptions;
  EXPECT_EQ(FirstSmall(geometry).m_pVertexPackage->m_nOptions, nBefore);
  QXVertexDataPackage& marked = host.MakeCounted(1);
  marked.m_nOptions = 0x400;
  host.Add(geometry, marked, {});
  EXPECT_EQ(FirstSmall(geometry).m_pVertexPackage->m_nOptions, nBefore | 0x400u);
  host.Add(geometry, plain, {});
  EXPECT_EQ(FirstSmall(geometry).m_pVertexPackage->m_nOptions, nBefore | 0x400u);
}

TEST(QXStaticGeometryBatching, RecordHoldsStartAndPackage) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"wall", {L"wall.png"});
  host.AddNamed(geometry, 7, {});
  QXIndexPackage& indices = host.MakeIndices({L"wall"});
  host.Add(geometry, host.MakeCounted(5), {&indices});
  auto const& records = RecordsOf(FirstSmall(geometry), L"wall");
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].m_nVertexStart, 7);
  EXPECT_EQ(records[0].m_fTextureLayer, 1.0F);
  EXPECT_EQ(records[0].m_vecIndexPackages, (std::vector<QXIndexPackage*>{&indices}));
}

TEST(QXStaticGeometryBatching, RecordsStandInTheOrderOfPackagesAndNames) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"a", {});
  host.AddPass(L"b", {});
  QXIndexPackage& first = host.MakeIndices({L"b", L"a", L"b"});
  QXIndexPackage& second = host.MakeIndices({L"a"});
  host.Add(geometry, host.MakeCounted(5), {nullptr, &first, nullptr, &second});
  QXIndexPackage& third = host.MakeIndices({L"a"});
  host.Add(geometry, host.MakeCounted(5), {&third});
  EXPECT_EQ(Keys(FirstSmall(geometry)), (TextList{L"a", L"b"}));
  auto const& records = RecordsOf(FirstSmall(geometry), L"a");
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].m_vecIndexPackages[0], &first);
  EXPECT_EQ(records[1].m_vecIndexPackages[0], &second);
  EXPECT_EQ(records[2].m_vecIndexPackages[0], &third);
  EXPECT_EQ(records[1].m_nVertexStart, 0);
  EXPECT_EQ(records[2].m_nVertexStart, 5);
  EXPECT_EQ(RecordsOf(FirstSmall(geometry), L"b").size(), 2u);
}

TEST(QXStaticGeometryBatching, LinesWithoutNamesGetOne) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"TempLine", {});
  QXIndexPackage& nameless = host.MakeIndices({}, 2);
  host.Add(geometry, host.MakeCounted(5), {&nameless});
  ASSERT_EQ(nameless.m_arrPassNames.GetSize(), 1u);
  EXPECT_TRUE(nameless.m_arrPassNames[0] == L"TempLine");
  EXPECT_EQ(Keys(FirstSmall(geometry)), (TextList{L"TempLine"}));
  EXPECT_EQ(PassKeys(FirstSmall(geometry)), (TextList{L"TempLine"}));
}

TEST(QXStaticGeometryBatching, LinesWithNamesKeepThem) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"road", {});
  QXIndexPackage& named = host.MakeIndices({L"road"}, 2);
  host.Add(geometry, host.MakeCounted(5), {&named});
  ASSERT_EQ(named.m_arrPassNames.GetSize(), 1u);
  EXPECT_TRUE(named.m_arrPassNames[0] == L"road");
}

TEST(QXStaticGeometryBatching, LinesOfNoPassAreFiledUnderNoName) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.Add(geometry, host.MakeCounted(5), {&host.MakeIndices({}, 2)});
  EXPECT_EQ(Keys(FirstSmall(geometry)), (TextList{L""}));
  EXPECT_TRUE(FirstSmall(geometry).m_mapPasses.empty());
}

TEST(QXStaticGeometryBatching, OtherPackagesWithoutNamesAreCountedButNotFiled) {
  for (int eType : {0, 1, 3, 4, 5, 6, 9}) {
    QXStaticGeometry geometry;
    QXBatchingHost host;
    QXIndexPackage& nameless = host.MakeIndices({}, eType);
    host.Add(geometry, host.MakeCounted(5), {&nameless});
    EXPECT_EQ(nameless.m_arrPassNames.GetSize(), 0u);
    EXPECT_TRUE(FirstSmall(geometry).m_mapPassIndices.empty());
    EXPECT_EQ(FirstSmall(geometry).m_pVertexPackage->m_nVertexNum, 5u);
  }
}

TEST(QXStaticGeometryBatching, UnknownPassNameIsFiledUnderNoName) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.m_mapPasses[L"null"] = nullptr;
  host.AddNamed(geometry, 5, {L"missing", L"null"}, MakeSubObject(0.0, 1.0));
  QXStaticGeometryBucket const& bucket = FirstSmall(geometry);
  EXPECT_EQ(Keys(bucket), (TextList{L""}));
  EXPECT_EQ(RecordsOf(bucket, L"").size(), 2u);
  for (QXMatrix4d const& matrix : RecordsOf(bucket, L"")[0].m_matTextures) EXPECT_TRUE(matrix == QXMatrix4d::IDENTITY);
  EXPECT_TRUE(bucket.m_mapPasses.empty());
  EXPECT_TRUE(geometry.m_mapTextureSpheres.empty());
}

TEST(QXStaticGeometryBatching, KeyIsThePassesOwnName) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPassAs(L"alias", MakePass(L"own", {L"a.png"}));
  QXIndexPackage& indices = host.MakeIndices({L"alias"});
  host.Add(geometry, host.MakeCounted(5), {&indices});
  EXPECT_EQ(Keys(FirstSmall(geometry)), (TextList{L"own"}));
  EXPECT_EQ(PassKeys(FirstSmall(geometry)), (TextList{L"own"}));
  EXPECT_TRUE(indices.m_arrPassNames[0] == L"alias");
}

TEST(QXStaticGeometryBatching, BucketHasItsOwnCopyOfThePass) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXPass& pass = host.AddPass(L"wall", {L"a.png", L"b.png"});
  pass.m_matPass = Moved(1.0);
  pass.m_nPassWord = 77;
  pass.m_nUnitWords[1] = 3;
  pass.GetTextureUnitState(0)->m_matUnit = Moved(2.0);
  pass.GetTextureUnitState(1)->m_matUnit = Moved(3.0);
  host.AddNamed(geometry, 5, {L"wall"});
  QXPass* pCopy = FirstSmall(geometry).m_mapPasses.at(L"wall");
  ASSERT_NE(pCopy, &pass);
  EXPECT_TRUE(pCopy->GetName() == L"wall");
  EXPECT_EQ(pCopy->m_nUnitWords[1], 3u);
  EXPECT_EQ(pCopy->m_nPassWord, 0);
  EXPECT_TRUE(pCopy->m_matPass == QXMatrix4d::IDENTITY);
  ASSERT_EQ(pCopy->GetTextureUnitStatesSize(), 2u);
  for (unsigned int unit = 0; unit < 2; ++unit)
    EXPECT_TRUE(pCopy->GetTextureUnitState(unit)->m_matUnit == QXMatrix4d::IDENTITY);
  EXPECT_TRUE(pCopy->GetTextureUnitState(1)->GetTextureName() == L"b.png");
  EXPECT_TRUE(pass.m_matPass == Moved(1.0)) << "the host's pass stays as it was";
  EXPECT_EQ(pass.m_nPassWord, 77);
  EXPECT_TRUE(pass.GetTextureUnitState(1)->m_matUnit == Moved(3.0));
}

TEST(QXStaticGeometryBatching, RecordTakesTheUnitsTransformations) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXPass& pass = host.AddPass(L"wall", {L"a.png", L"b.png"});
  pass.m_matPass = Moved(9.0);  // of the whole pass: not of the coordinates
  pass.GetTextureUnitState(0)->m_matUnit = Moved(2.0);
  pass.GetTextureUnitState(1)->m_matUnit = Moved(3.0);
  host.AddNamed(geometry, 5, {L"wall"});
  auto const& record = RecordsOf(FirstSmall(geometry), L"wall")[0];
  EXPECT_TRUE(record.m_matTextures[0] == Moved(2.0));
  EXPECT_TRUE(record.m_matTextures[1] == Moved(3.0));
  for (int unit = 2; unit < 8; ++unit) EXPECT_TRUE(record.m_matTextures[unit] == QXMatrix4d::IDENTITY) << unit;
}

TEST(QXStaticGeometryBatching, FirstPassOfANameWinsButEachRecordHasItsOwnTransformations) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"wall", {L"first.png"}).GetTextureUnitState(0)->m_matUnit = Moved(1.0);
  host.AddNamed(geometry, 5, {L"wall"});
  QXPass const* const pCopy = FirstSmall(geometry).m_mapPasses.at(L"wall");
  host.AddPass(L"wall", {L"second.png", L"third.png"}).GetTextureUnitState(0)->m_matUnit = Moved(2.0);
  host.AddNamed(geometry, 5, {L"wall"});
  ASSERT_EQ(FirstSmall(geometry).m_mapPasses.at(L"wall"), pCopy);
  EXPECT_EQ(pCopy->GetTextureUnitStatesSize(), 1u);
  EXPECT_TRUE(pCopy->GetTextureUnitState(0)->GetTextureName() == L"first.png");
  auto const& records = RecordsOf(FirstSmall(geometry), L"wall");
  EXPECT_TRUE(records[0].m_matTextures[0] == Moved(1.0));
  EXPECT_TRUE(records[1].m_matTextures[0] == Moved(2.0));
}

TEST(QXStaticGeometryBatching, EachBucketHasACopyOfItsOwn) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"wall", {L"a.png"});
  host.AddNamed(geometry, 65535, {L"wall"});
  host.AddNamed(geometry, 65535, {L"wall"});
  EXPECT_NE(
      geometry.m_vecBuckets16.at(0)->m_mapPasses.at(L"wall"), geometry.m_vecBuckets16.at(1)->m_mapPasses.at(L"wall"));
}

TEST(QXStaticGeometryBatching, PassComesAlsoWhereOthersHaveNoRecords) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"wall", {});
  host.AddNamed(geometry, 5, {});
  // As after loading: passes, and no records.
  FirstSmall(geometry).m_mapPasses[L"roof"] = MakePass(L"roof", {}).release();
  host.AddNamed(geometry, 5, {L"wall"});
  EXPECT_EQ(PassKeys(FirstSmall(geometry)), (TextList{L"roof", L"wall"}));
}

TEST(QXStaticGeometryBatching, PassThatHasNoRecordsYetIsKept) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddNamed(geometry, 5, {});
  QXPass* const pLoaded = MakePass(L"wall", {L"loaded.png"}).release();
  FirstSmall(geometry).m_mapPasses[L"wall"] = pLoaded;
  host.AddPass(L"wall", {L"mesh.png"});
  host.AddNamed(geometry, 5, {L"wall"});
  ASSERT_EQ(FirstSmall(geometry).m_mapPasses.at(L"wall"), pLoaded);
  EXPECT_TRUE(pLoaded->GetTextureUnitState(0)->GetTextureName() == L"loaded.png");
}

TEST(QXStaticGeometryBatching, NamelessPassComesAlsoBehindRecordsOfNoPass) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPassAs(L"alias", MakePass(L"", {L"a.png"}));
  host.AddNamed(geometry, 5, {L"missing"});
  // As after loading: passes, and no records.
  FirstSmall(geometry).m_mapPasses[L"roof"] = MakePass(L"roof", {}).release();
  host.AddNamed(geometry, 5, {L"missing", L"alias"});
  EXPECT_EQ(PassKeys(FirstSmall(geometry)), (TextList{L"", L"roof"}));
  EXPECT_EQ(RecordsOf(FirstSmall(geometry), L"").size(), 3u);
}

TEST(QXStaticGeometryBatching, PassesThatTheHostTookOutComeAgain) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"roof", {});
  host.AddPass(L"wall", {});
  for (int mesh = 0; mesh < 3; ++mesh) host.AddNamed(geometry, 5, {L"wall", L"roof"});
  auto& passes = FirstSmall(geometry).m_mapPasses;
  for (auto const& [strKey, pPass] : passes) delete pPass;
  passes.clear();
  host.AddNamed(geometry, 5, {L"wall", L"roof"});
  EXPECT_EQ(PassKeys(FirstSmall(geometry)), (TextList{L"roof", L"wall"}));
}

TEST(QXStaticGeometryBatching, UnitsPastTheEighthHaveNoMatrix) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXPass& pass = host.AddPass(L"many", TextList(11, L"a.png"));
  for (unsigned int unit = 0; unit < 11; ++unit) pass.GetTextureUnitState(unit)->m_matUnit = Moved(unit + 1.0);
  host.AddNamed(geometry, 5, {L"many", L"many"});
  for (auto const& record : RecordsOf(FirstSmall(geometry), L"many")) {
    EXPECT_EQ(record.m_vecIndexPackages.size(), 1u);
    for (int unit = 0; unit < 8; ++unit) EXPECT_TRUE(record.m_matTextures[unit] == Moved(unit + 1.0)) << unit;
  }
  QXPass& copy = *FirstSmall(geometry).m_mapPasses.at(L"many");
  ASSERT_EQ(copy.GetTextureUnitStatesSize(), 11u);
  EXPECT_TRUE(copy.GetTextureUnitState(10)->m_matUnit == QXMatrix4d::IDENTITY);
}

// A pass with three units, each moved, and an extension.
QXPass& AddExtended(QXBatchingHost& host, int nExtension) {
  QXPass& pass = host.AddPass(L"water", {L"a.png", L"b.png", L"c.png"});
  pass.m_matPass = Moved(9.0);
  pass.m_nPassWord = 5;
  for (unsigned int unit = 0; unit < 3; ++unit) pass.GetTextureUnitState(unit)->m_matUnit = Moved(unit + 1.0);
  pass.m_pExtension = new QXMaterialExtension(nExtension);
  return pass;
}

TEST(QXStaticGeometryBatching, ExtendedPassAtRestTransformsOnlyItsFirstUnit) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXPass& pass = AddExtended(host, 1);
  for (auto* pGroups : {&pass.m_pExtension->m_fSlides, &pass.m_pExtension->m_fTurns}) {
    for (float(&fGroup)[5] : *pGroups) {
      for (float& fNumber : fGroup) fNumber = 1.0F;
      fGroup[4] = -1.0F;
    }
    (*pGroups)[0][4] = 0.0F;
  }
  host.AddNamed(geometry, 5, {L"water"});
  auto const& record = RecordsOf(FirstSmall(geometry), L"water")[0];
  EXPECT_TRUE(record.m_matTextures[0] == Moved(1.0));
  EXPECT_TRUE(record.m_matTextures[1] == QXMatrix4d::IDENTITY);
  EXPECT_TRUE(record.m_matTextures[2] == QXMatrix4d::IDENTITY);
  QXPass& copy = *FirstSmall(geometry).m_mapPasses.at(L"water");
  EXPECT_TRUE(copy.m_matPass == QXMatrix4d::IDENTITY);
  for (unsigned int unit = 0; unit < 3; ++unit)
    EXPECT_TRUE(copy.GetTextureUnitState(unit)->m_matUnit == QXMatrix4d::IDENTITY);
  EXPECT_NE(copy.m_pExtension, nullptr);
}

TEST(QXStaticGeometryBatching, MovingTextureKeepsItsTransformations) {
  for (int group = 0; group < 4; ++group) {
    QXStaticGeometry geometry;
    QXBatchingHost host;
    QXPass& pass = AddExtended(host, 1);
    (group < 2 ? pass.m_pExtension->m_fSlides : pass.m_pExtension->m_fTurns)[group % 2][4] = 0.25F;
    host.AddNamed(geometry, 5, {L"water"});
    for (QXMatrix4d const& matrix : RecordsOf(FirstSmall(geometry), L"water")[0].m_matTextures)
      EXPECT_TRUE(matrix == QXMatrix4d::IDENTITY) << "group " << group;
    QXPass& copy = *FirstSmall(geometry).m_mapPasses.at(L"water");
    EXPECT_TRUE(copy.m_matPass == Moved(9.0));
    for (unsigned int unit = 0; unit < 3; ++unit)
      EXPECT_TRUE(copy.GetTextureUnitState(unit)->m_matUnit == Moved(unit + 1.0));
    EXPECT_EQ(copy.m_nPassWord, 0) << "even so";
  }
}

TEST(QXStaticGeometryBatching, ExtensionOfAnotherTypeIsNone) {
  for (int nExtension : {0, 2, -1}) {
    QXStaticGeometry geometry;
    QXBatchingHost host;
    QXPass& pass = AddExtended(host, nExtension);
    pass.m_pExtension->m_fSlides[0][4] = 1.0F;
    host.AddNamed(geometry, 5, {L"water"});
    auto const& record = RecordsOf(FirstSmall(geometry), L"water")[0];
    for (int unit = 0; unit < 3; ++unit) EXPECT_TRUE(record.m_matTextures[unit] == Moved(unit + 1.0)) << unit;
    EXPECT_TRUE(FirstSmall(geometry).m_mapPasses.at(L"water")->m_matPass == QXMatrix4d::IDENTITY);
  }
}

TEST(QXStaticGeometryBatching, ArraysOfAnEarlierMergeGoWhenAMeshIsAdded) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddNamed(geometry, 2, {});
  QXVertexDataPackage& merged = *FirstSmall(geometry).m_pVertexPackage;
  merged.SetVertexNum(2, 0);
  merged.SetNormalNum(2, 0);
  merged.SetColorNum(2, 0);
  merged.SetSecondColorNum(2, 0);
  merged.SetTexCoordNum(7, 2, 0);
  host.AddNamed(geometry, 60000, {});
  EXPECT_EQ(merged.m_nVertexNum, 60002u);
  EXPECT_EQ(merged.m_nNormalNum, 2u);
  EXPECT_EQ(merged.m_nTexCoordNums[7], 2u);
  for (void const* pArray : {static_cast<void*>(merged.m_pVertices), static_cast<void*>(merged.m_pNormals),
           static_cast<void*>(merged.m_pColors), static_cast<void*>(merged.m_pSecondColors),
           static_cast<void*>(merged.m_pTexCoords[7])})
    EXPECT_EQ(pArray, nullptr);
  EXPECT_EQ(geometry.GetBoundingSphere(1).GetRadius(), 0.0) << "no vertices are there to be read";
}

TEST(QXStaticGeometryBatching, BucketsAndPackagesThatTheHostTookAreMadeAnew) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  geometry.m_vecBuckets32.push_back(nullptr);
  geometry.m_vecBuckets16.push_back(nullptr);
  host.AddNamed(geometry, 70000, {});
  host.AddNamed(geometry, 5, {});
  ASSERT_EQ(geometry.m_vecBuckets32.size(), 1u);
  EXPECT_EQ(geometry.m_vecBuckets32[0]->m_pVertexPackage->m_nVertexNum, 70000u);
  ASSERT_EQ(geometry.m_vecBuckets16.size(), 2u);
  delete std::exchange(geometry.m_vecBuckets16[1]->m_pVertexPackage, nullptr);
  host.AddNamed(geometry, 6, {});
  ASSERT_EQ(geometry.m_vecBuckets16.size(), 2u);
  EXPECT_EQ(geometry.m_vecBuckets16[1]->m_pVertexPackage->m_nVertexNum, 6u);
}

TEST(QXStaticGeometryBatching, HugeCountsDoNotOverflowIntoASmallBucket) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddNamed(geometry, 1, {});
  FirstSmall(geometry).m_pVertexPackage->m_nVertexNum = 0xFFFFFFFFu;
  host.AddNamed(geometry, 5, {});
  EXPECT_EQ(VertexNums(geometry.m_vecBuckets16), (Nums{0xFFFFFFFFu, 5}));
}

}  // namespace
}  // namespace QXC
