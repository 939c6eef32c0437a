#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include "QXGoldenCity.h"

namespace {

using namespace QXC;
using namespace QXTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using BucketPtr = std::unique_ptr<QXStaticGeometryBucket>;

/// Index type, type and an empty package: what stands before the levels of version 1.3.
QXByteWriter Head() {
  QXByteWriter writer;
  writer.Int(0).Int(-1).Int(7).Short(3).Int(0).Int(0).Int(0).Int(0);
  return writer;
}

QXBytes PackageBytes(QXIndexPackage const& package) {
  return Written([&](QXStream& stream) { package.Save(stream, 0); });
}
QXBytes PassBytes(QXPass const& pass) {
  return Written([&](QXStream& stream) { pass.Save(stream, 1.0); });
}
QXBytes SubObjectBytes(QXSubObjectInfo const& subObject) {
  return Written([&](QXStream& stream) { subObject.Save(stream); });
}

/// Index package of one 16-bit index.
QXBytes Package(unsigned int nIndex) {
  std::unique_ptr<QXIndexPackage> const pPackage(MakeIndices(4, 16, 0, {}, {nIndex}));
  return PackageBytes(*pPackage);
}
QXBytes Pass(wchar_t const* szName) {
  QXPass pass;
  pass.SetName(szName);
  return PassBytes(pass);
}
QXBytes SubObject(double dRadius) {
  QXSubObjectInfo subObject;
  subObject.m_BoundingSphere.SetRadius(dRadius);
  return SubObjectBytes(subObject);
}

unsigned char LoadAll(QXStaticGeometryBucket& bucket, QXBytes const& bytes, double dVersion = 1.3) {
  QXExactStream stream(bytes);
  return bucket.Load(stream, dVersion) && stream->Remaining() == 0 ? 1 : 0;
}

TEST(QXStaticGeometryBucketStream, SaveWritesTheFieldsOfTheTable) {
  BucketPtr const pBucket(MakeWideBucket());
  std::unique_ptr<QXPass> const pBrick(MakeBrickPass());
  std::unique_ptr<QXPass> const pRoof(MakeRoofPass());
  std::unique_ptr<QXSubObjectInfo> const pHouse(MakeHouse());
  auto const& levels = pBucket->m_mapLevelIndices;
  QXByteWriter expected;
  expected.Int(1).Int(0).Bytes(SavedPackage(*pBucket->m_pVertexPackage, 0));
  expected.Int(2).Int(0).Int(2).Bytes(PackageBytes(*levels.at(0)[0])).Bytes(PackageBytes(*levels.at(0)[1]));
  expected.Int(2).Int(1).Bytes(PackageBytes(*levels.at(2)[0]));
  expected.Int(2)
      .Text("brick")
      .Bytes(PassBytes(*pBrick))
      .Text("d\xc3\xa4"
            "cher")
      .Bytes(PassBytes(*pRoof));
  expected.Int(2).Int(0).Bytes(SubObjectBytes(*pHouse)).Int(3).Bytes(SubObjectBytes(QXSubObjectInfo()));
  EXPECT_EQ(SavedBucket(*pBucket), expected.Get());
}

TEST(QXStaticGeometryBucketStream, SaveWritesTheNewestFormWhateverTheVersion) {
  BucketPtr const pBucket(MakeWideBucket());
  for (double const dVersion : {0.0, 1.0, 1.1, 1.2, 9.0})
    EXPECT_EQ(Written([&](QXStream& stream) { pBucket->Save(stream, dVersion); }), SavedBucket(*pBucket));
}

TEST(QXStaticGeometryBucketStream, BucketComesBackWhole) {
  BucketPtr const pBucket(MakeWideBucket());
  QXStaticGeometryBucket read;
  ASSERT_TRUE(LoadAll(read, SavedBucket(*pBucket)));
  EXPECT_EQ(SavedBucket(read), SavedBucket(*pBucket));
}

TEST(QXStaticGeometryBucketStream, TypeIsReadOnlyAbove11AndSubObjectsOnlyAbove10) {
  for (double const dVersion : {1.0, 1.05, 1.1, 1.15, 1.2}) {
    QXByteWriter writer;
    writer.Int(1);
    if (dVersion > 1.1) writer.Int(12);
    writer.Int(7).Short(3).Int(0).Int(0).Int(0).Int(0).Int(0).Int(0);
    if (dVersion > 1.0) writer.Int(1).Int(4).Bytes(SubObject(2.0));
    QXStaticGeometryBucket bucket;
    bucket.m_nType = 3;
    ASSERT_TRUE(LoadAll(bucket, writer.Get(), dVersion)) << dVersion;
    EXPECT_EQ(bucket.m_nIndexType, 1);
    EXPECT_EQ(bucket.m_nType, dVersion > 1.1 ? 12 : 3);
    EXPECT_THAT(bucket.m_mapSubObjects, SizeIs(dVersion > 1.0 ? 1 : 0));
  }
}

TEST(QXStaticGeometryBucketStream, UnknownIndexTypeIsKept) {
  QXStaticGeometryBucket bucket;
  bucket.m_nIndexType = -77;
  QXStaticGeometryBucket read;
  ASSERT_TRUE(LoadAll(read, SavedBucket(bucket)));
  EXPECT_EQ(read.m_nIndexType, -77);
}

TEST(QXStaticGeometryBucketStream, WithoutAPackageNothingIsReadWrittenOrMeasured) {
  QXStaticGeometryBucket bucket;
  delete bucket.m_pVertexPackage;
  bucket.m_pVertexPackage = nullptr;
  bucket.m_mapPasses[L"a"] = new QXPass;
  EXPECT_THAT(SavedBucket(bucket), IsEmpty());
  EXPECT_EQ(bucket.GetDataSize(), 0);
  QXExactStream stream(Head().Int(0).Int(0).Int(0).Get());
  EXPECT_EQ(bucket.Load(stream, 1.3), 0);
  EXPECT_EQ(stream->GetPosition(), 0U);
}

// The count still has the bucket, so the reader takes what follows for it.
TEST(QXStaticGeometryBucketStream, BucketWithoutAPackageMakesAReaderLoseItsPlace) {
  QXStaticGeometry city;
  FillCity(city);
  delete city.m_vecBuckets32[0]->m_pVertexPackage;
  city.m_vecBuckets32[0]->m_pVertexPackage = nullptr;
  QXExactStream stream(SavedGeometry(city));
  QXStaticGeometry read;
  EXPECT_EQ(read.LoadVecData(stream, 0.0F), 0);
}

TEST(QXStaticGeometryBucketStream, PackageThatFailsIsDeletedAndNulled) {
  QXStaticGeometryBucket bucket;
  QXExactStream stream(QXByteWriter().Int(1).Int(5).Int(7).Short(3).Int(1000).Get());
  EXPECT_EQ(bucket.Load(stream, 1.3), 0);
  EXPECT_EQ(bucket.m_pVertexPackage, nullptr);
  EXPECT_EQ(bucket.m_nIndexType, 1);
  EXPECT_EQ(bucket.m_nType, 5);
  EXPECT_EQ(bucket.GetDataSize(), 0);
}

TEST(QXStaticGeometryBucketStream, IndexPackageThatFailsDropsItsLevelAndKeepsTheLevelsBefore) {
  QXByteWriter writer = Head();
  writer.Int(2).Int(5).Int(1).Bytes(Package(7)).Int(6).Int(3).Bytes(Package(8)).Bytes(Package(9)).Byte(1);
  QXStaticGeometryBucket bucket;
  QXExactStream stream(writer.Get());
  EXPECT_EQ(bucket.Load(stream, 1.3), 0);
  ASSERT_THAT(bucket.m_mapLevelIndices, SizeIs(1));
  EXPECT_EQ(bucket.m_mapLevelIndices.at(5)[0]->GetIndices16()[0], 7);
  EXPECT_NE(bucket.m_pVertexPackage, nullptr);
}

TEST(QXStaticGeometryBucketStream, PassThatFailsKeepsThePassesBefore) {
  QXByteWriter writer = Head();
  writer.Int(0).Int(2).Text("a").Bytes(Pass(L"first")).Text("b").Int(3);
  QXStaticGeometryBucket bucket;
  QXExactStream stream(writer.Get());
  EXPECT_EQ(bucket.Load(stream, 1.3), 0);
  ASSERT_THAT(bucket.m_mapPasses, SizeIs(1));
  EXPECT_TRUE(bucket.m_mapPasses.at(L"a")->GetName() == L"first");
}

TEST(QXStaticGeometryBucketStream, SubObjectThatFailsKeepsTheOnesBefore) {
  QXByteWriter writer = Head();
  writer.Int(0).Int(0).Int(2).Int(1).Bytes(SubObject(3.0)).Int(2).Double(1);
  QXStaticGeometryBucket bucket;
  QXExactStream stream(writer.Get());
  EXPECT_EQ(bucket.Load(stream, 1.3), 0);
  ASSERT_THAT(bucket.m_mapSubObjects, SizeIs(1));
  EXPECT_EQ(bucket.m_mapSubObjects.at(1)->m_BoundingSphere.GetRadius(), 3.0);
}

TEST(QXStaticGeometryBucketStream, OfTwoRecordsWithOneKeyTheLaterStays) {
  QXByteWriter writer = Head();
  writer.Int(2).Int(5).Int(2).Bytes(Package(1)).Bytes(Package(2)).Int(5).Int(1).Bytes(Package(3));
  writer.Int(2).Text("a").Bytes(Pass(L"first")).Text("a").Bytes(Pass(L"second"));
  writer.Int(2).Int(4).Bytes(SubObject(1.0)).Int(4).Bytes(SubObject(2.0));
  QXStaticGeometryBucket bucket;
  ASSERT_TRUE(LoadAll(bucket, writer.Get()));
  ASSERT_THAT(bucket.m_mapLevelIndices.at(5), SizeIs(1));
  EXPECT_EQ(bucket.m_mapLevelIndices.at(5)[0]->GetIndices16()[0], 3);
  EXPECT_TRUE(bucket.m_mapPasses.at(L"a")->GetName() == L"second");
  EXPECT_EQ(bucket.m_mapSubObjects.at(4)->m_BoundingSphere.GetRadius(), 2.0);
}

TEST(QXStaticGeometryBucketStream, LoadIntoAFilledBucketReplacesWhatHasTheSameKey) {
  BucketPtr const pBucket(MakeWideBucket());
  pBucket->m_mapPasses[L"other"] = MakeRoofPass();
  BucketPtr const pSource(MakeWideBucket());
  ASSERT_TRUE(LoadAll(*pBucket, SavedBucket(*pSource)));
  EXPECT_THAT(pBucket->m_mapPasses, SizeIs(3));
  delete pBucket->m_mapPasses.at(L"other");
  pBucket->m_mapPasses.erase(L"other");
  EXPECT_EQ(SavedBucket(*pBucket), SavedBucket(*pSource));
}

TEST(QXStaticGeometryBucketStream, NegativeCountsFailAndZeroLevelsAreALevel) {
  QXStaticGeometryBucket bucket;
  EXPECT_FALSE(LoadAll(bucket, Head().Int(-1).Int(0).Int(0).Get()));
  EXPECT_FALSE(LoadAll(bucket, Head().Int(1).Int(0).Int(-1).Int(0).Int(0).Get()));
  EXPECT_FALSE(LoadAll(bucket, Head().Int(0).Int(-1).Int(0).Get()));
  EXPECT_FALSE(LoadAll(bucket, Head().Int(0).Int(0).Int(-1).Get()));
  EXPECT_TRUE(LoadAll(bucket, Head().Int(1).Int(-9).Int(0).Int(0).Int(0).Get()));
  EXPECT_THAT(bucket.m_mapLevelIndices.at(-9), IsEmpty());
}

TEST(QXStaticGeometryBucketStream, NullSubObjectCountsButIsNotWritten) {
  QXStaticGeometryBucket bucket;
  bucket.m_mapSubObjects[3] = nullptr;
  bucket.m_mapSubObjects[9] = new QXSubObjectInfo;
  bucket.m_mapSubObjects[9]->m_BoundingSphere.SetRadius(6.0);
  EXPECT_EQ(SavedBucket(bucket), Head().Int(0).Int(0).Int(2).Int(9).Bytes(SubObject(6.0)).Get());
  EXPECT_EQ(static_cast<std::size_t>(bucket.GetDataSize()), SavedBucket(bucket).size() + 4);
  QXStaticGeometryBucket read;
  EXPECT_FALSE(LoadAll(read, SavedBucket(bucket)));
  EXPECT_THAT(read.m_mapSubObjects, SizeIs(1));
}

TEST(QXStaticGeometryBucketStream, NullPassesAndIndexPackagesAreLeftOut) {
  BucketPtr const pBucket(MakeWideBucket());
  QXBytes const bytes = SavedBucket(*pBucket);
  int const nSize = pBucket->GetDataSize();
  pBucket->m_mapPasses[L"c"] = nullptr;
  pBucket->m_mapLevelIndices[0].insert(pBucket->m_mapLevelIndices[0].begin() + 1, nullptr);
  EXPECT_EQ(SavedBucket(*pBucket), bytes);
  EXPECT_EQ(pBucket->GetDataSize(), nSize);
}

// A gathering bucket has counts without arrays: its file cannot be read back, and saving it harms nobody.
TEST(QXStaticGeometryBucketStream, BucketThatWasNotMergedIsNotReadBack) {
  QXStaticGeometryBucket bucket;
  bucket.m_pVertexPackage->m_nVertexNum = 100;
  bucket.m_pVertexPackage->m_nTexCoordNums[0] = 100;
  QXStaticGeometryBucket read;
  EXPECT_FALSE(LoadAll(read, SavedBucket(bucket)));
}

TEST(QXStaticGeometryBucketStream, SizeAddsUpTheRecords) {
  QXStaticGeometryBucket empty;
  EXPECT_EQ(empty.GetDataSize(), 8 + 26 + 4 + 4 + 4);
  EXPECT_THAT(SavedBucket(empty), SizeIs(42));
  BucketPtr const pBucket(MakeWideBucket());
  int nExpected = 8 + GetVertexPackageSize(*pBucket->m_pVertexPackage) + 4;
  for (auto const& [nLevel, arrPackages] : pBucket->m_mapLevelIndices) {
    nExpected += 8;
    for (QXIndexPackage const* pPackage : arrPackages) nExpected += pPackage->GetDataSize();
  }
  nExpected += 4 + (5 + 4) + pBucket->m_mapPasses.at(L"brick")->GetDataSize();
  nExpected += (6 + 4) + pBucket->m_mapPasses.at(L"d\u00e4cher")->GetDataSize();
  nExpected +=
      4 + 4 + pBucket->m_mapSubObjects.at(0)->GetDataSize() + 4 + pBucket->m_mapSubObjects.at(3)->GetDataSize();
  EXPECT_EQ(pBucket->GetDataSize(), nExpected);
  // The secondary colours are counted though not written, the key "dächer" as one byte a character.
  EXPECT_EQ(static_cast<std::size_t>(nExpected), SavedBucket(*pBucket).size() + 4 - 1);
}

TEST(QXStaticGeometryBucketStream, EveryTruncationFailsAndLeavesAUsableBucket) {
  BucketPtr const pSource(MakeWideBucket());
  QXBytes const bytes = SavedBucket(*pSource);
  std::size_t nRecords = 0;
  for (std::size_t nSize = 0; nSize < bytes.size(); ++nSize) {
    QXStaticGeometryBucket bucket;
    QXExactStream stream(bytes, nSize);
    ASSERT_EQ(bucket.Load(stream, 1.3), 0) << nSize;
    std::size_t const nNow =
        bucket.m_mapLevelIndices.size() + bucket.m_mapPasses.size() + bucket.m_mapSubObjects.size();
    ASSERT_GE(nNow, nRecords) << nSize;
    nRecords = nNow;
    SavedBucket(bucket);
    bucket.GetDataSize();
  }
  EXPECT_EQ(nRecords, 5U);
}

}  // namespace
