#include <cmath>
#include <filesystem>
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include "QXGoldenCity.h"

namespace {

using namespace QXC;
using namespace QXTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

/// The bytes of what a new bucket is, in the form of a version.
QXByteWriter& EmptyBucket(QXByteWriter& writer, double dVersion) {
  writer.Int(0);
  if (dVersion > 1.1) writer.Int(-1);
  writer.Int(7).Short(3).Int(0).Int(0).Int(0).Int(0).Int(0).Int(0);
  return dVersion > 1.0 ? writer.Int(0) : writer;
}

void ExpectEmptyBucket(QXStaticGeometryBucket const& bucket) {
  ASSERT_NE(bucket.m_pVertexPackage, nullptr);
  EXPECT_EQ(bucket.m_pVertexPackage->m_nVertexNum, 0U);
  EXPECT_THAT(bucket.m_mapLevelIndices, IsEmpty());
  EXPECT_THAT(bucket.m_mapPasses, IsEmpty());
  EXPECT_THAT(bucket.m_mapSubObjects, IsEmpty());
}

void ExpectBrickPass(QXPass const& pass) {
  std::unique_ptr<QXPass> const expected(MakeBrickPass());
  auto const bytes = [](QXPass const& any) { return Written([&](QXStream& stream) { any.Save(stream, 1.0); }); };
  EXPECT_EQ(bytes(pass), bytes(*expected));
  EXPECT_TRUE(pass.GetName() == L"wall of brick");
  EXPECT_EQ(pass.GetTextureUnitStatesSize(), 2U);
}

/// Compares the first bucket of a golden city.
void ExpectWideBucket(QXStaticGeometryBucket const& bucket, double dVersion) {
  EXPECT_EQ(bucket.m_nIndexType, 1);
  EXPECT_EQ(bucket.m_nType, dVersion > 1.1 ? 0 : -1);
  std::unique_ptr<QXStaticGeometryBucket> const expected(MakeWideBucket());
  ASSERT_NE(bucket.m_pVertexPackage, nullptr);
  EXPECT_EQ(SavedPackage(*bucket.m_pVertexPackage, 0), SavedPackage(*expected->m_pVertexPackage, 0));
  ASSERT_THAT(bucket.m_mapLevelIndices, SizeIs(2));
  ASSERT_THAT(bucket.m_mapLevelIndices.at(0), SizeIs(2));
  ASSERT_THAT(bucket.m_mapLevelIndices.at(2), SizeIs(1));
  QXIndexPackage const& second = *bucket.m_mapLevelIndices.at(0)[1];
  EXPECT_EQ(second.m_eOperationType, 4);
  EXPECT_EQ(second.m_bFlag, 0);
  ASSERT_EQ(second.m_arrPassNames.GetSize(), 2U);
  EXPECT_TRUE(second.m_arrPassNames[0] == L"d\u00e4cher");
  EXPECT_THAT(Values(second.GetIndices32(), 6), ElementsAre(1, 2, 3, 0, 70000, 2));
  EXPECT_THAT(Values(bucket.m_mapLevelIndices.at(2)[0]->GetIndices16(), 2), ElementsAre(0, 3));
  ASSERT_THAT(bucket.m_mapPasses, SizeIs(2));
  ExpectBrickPass(*bucket.m_mapPasses.at(L"brick"));
  EXPECT_TRUE(bucket.m_mapPasses.at(L"d\u00e4cher")->GetName() == L"roof");
  ASSERT_THAT(bucket.m_mapSubObjects, SizeIs(dVersion > 1.0 ? 2 : 0));
  if (!(dVersion > 1.0)) return;
  QXSubObjectInfo const& house = *bucket.m_mapSubObjects.at(0);
  EXPECT_EQ(house.m_BoundingSphere.GetRadius(), 4.25);
  EXPECT_THAT(house.m_mapPassSlots, ElementsAre(Pair(0, 0), Pair(1, 1)));
  EXPECT_THAT(Values(house.m_arrOffsets.GetData(), 2), ElementsAre(0, 3));
  EXPECT_THAT(Values(house.m_arrCounts.GetData(), 2), ElementsAre(3, 6));
  EXPECT_EQ(bucket.m_mapSubObjects.at(3)->m_BoundingSphere.valid(), 0);
}

struct VersionCase {
  char const* m_szName;
  double m_dVersion;
};

class GoldenCity : public testing::TestWithParam<VersionCase> {};

TEST_P(GoldenCity, LoadsWithTheSectionsOfItsVersion) {
  double const dVersion = GetParam().m_dVersion;
  QXBytes const bytes = GoldenBytes(GetParam().m_szName);
  ASSERT_FALSE(bytes.empty());
  QXExactStream stream(bytes);
  QXStaticGeometry city;
  ASSERT_EQ(city.LoadVecData(stream, 0.0F), 1);
  EXPECT_EQ(stream->Remaining(), 0U);
  EXPECT_EQ(city.m_dVersion, dVersion);
  std::vector<int> const arrIDs = {7, -1, 2147483647};
  EXPECT_EQ(Values(city.m_arrID.GetData(), city.m_arrID.GetSize()), dVersion > 1.0 ? arrIDs : std::vector<int>());
  ASSERT_THAT(city.m_vecBuckets32, SizeIs(1));
  ExpectWideBucket(*city.m_vecBuckets32[0], dVersion);
  ASSERT_THAT(city.m_vecBuckets16, SizeIs(2));
  EXPECT_EQ(city.m_vecBuckets16[0]->m_nType, dVersion > 1.1 ? -7 : -1);
  EXPECT_EQ(city.m_vecBuckets16[0]->m_nIndexType, 0);
  EXPECT_EQ(city.m_vecBuckets16[0]->m_pVertexPackage->m_nNormalDim, 2);
  ExpectEmptyBucket(*city.m_vecBuckets16[1]);
  EXPECT_THAT(city.m_vecTypedBuckets32, IsEmpty());
  ASSERT_THAT(city.m_vecTypedBuckets16, SizeIs(dVersion > 1.1 ? 1 : 0));
  if (dVersion > 1.1) {
    EXPECT_EQ(city.m_vecTypedBuckets16[0]->m_nType, 1);
  }
  ASSERT_THAT(city.m_mapTextureSpheres, SizeIs(dVersion > 1.2 ? 2 : 0));
}

TEST_P(GoldenCity, CutOffAnywhereKeepsTheBucketsBeforeTheCut) {
  double const dVersion = GetParam().m_dVersion;
  QXBytes const bytes = GoldenBytes(GetParam().m_szName);
  ASSERT_FALSE(bytes.empty());
  std::size_t nMost = 0;
  for (std::size_t nSize = 0; nSize < bytes.size(); ++nSize) {
    QXExactStream stream(bytes, nSize);
    QXStaticGeometry city;
    ASSERT_EQ(city.LoadVecData(stream, 0.0F), 0) << nSize;
    std::size_t const nBuckets =
        city.m_vecBuckets32.size() + city.m_vecBuckets16.size() + city.m_vecTypedBuckets16.size();
    ASSERT_GE(nBuckets, nMost) << nSize;
    nMost = nBuckets;
    if (dVersion > 1.0) {
      ASSERT_EQ(city.m_arrID.GetSize(), nSize < 16 ? 0 : std::min<std::size_t>(3, (nSize - 12) / 4)) << nSize;
    }
    // What is there can be used, measured and saved.
    for (QXStaticGeometryBucket* pBucket : city.m_vecBuckets32) ExpectWideBucket(*pBucket, dVersion);
    SavedGeometry(city);
    city.GetDataSize();
  }
  // Only the last one lacks a byte here where no section follows the buckets.
  EXPECT_EQ(nMost, dVersion > 1.2 ? 4U : dVersion > 1.1 ? 3U : 2U);
}

INSTANTIATE_TEST_SUITE_P(QXStaticGeometryStream, GoldenCity,
    testing::Values(VersionCase{"1.0", 1.0}, VersionCase{"1.1", 1.1}, VersionCase{"1.2", 1.2}, VersionCase{"1.3", 1.3}),
    [](auto const& test) { return "V1" + std::to_string(test.index); });

TEST(QXStaticGeometryStream, TextureSpheresOfTheGoldenCityComeBack) {
  QXExactStream stream(GoldenBytes("1.3"));
  QXStaticGeometry city;
  ASSERT_TRUE(city.LoadVecData(stream, 0.0F));
  QdcArray<QXBoundingSphere> const& spheres = city.m_mapTextureSpheres.at(L"brick.png");
  ASSERT_EQ(spheres.GetSize(), 2U);
  EXPECT_EQ(spheres[1].GetCenter().x, -5.5);
  EXPECT_EQ(spheres[1].GetCenter().y, 6.0);
  EXPECT_EQ(spheres[1].GetCenter().z, 7.0);
  EXPECT_EQ(spheres[1].GetRadius(), 0.0);
  EXPECT_EQ(city.m_mapTextureSpheres.at(L"d\u00e4cher.png").GetSize(), 0U);
}

TEST(QXStaticGeometryStream, CityMadeByHandIsWrittenAsTheGoldenBytes) {
  QXStaticGeometry city;
  FillCity(city);
  EXPECT_EQ(Difference(SavedGeometry(city), GoldenBytes("1.3")), "");
}

TEST(QXStaticGeometryStream, LoadedCityIsWrittenAsItWas) {
  QXExactStream stream(GoldenBytes("1.3"));
  QXStaticGeometry city;
  ASSERT_TRUE(city.LoadVecData(stream, 0.0F));
  EXPECT_EQ(Difference(SavedGeometry(city), GoldenBytes("1.3")), "");
}

TEST(QXStaticGeometryStream, TheFloatArgumentIsNotLookedAt) {
  for (float const fVersion : {0.0F, 1.0F, 99.0F, std::numeric_limits<float>::quiet_NaN()}) {
    QXExactStream stream(GoldenBytes("1.3"));
    QXStaticGeometry city;
    ASSERT_TRUE(city.LoadVecData(stream, fVersion));
    EXPECT_EQ(city.m_dVersion, 1.3);
    EXPECT_EQ(Written([&](QXStream& target) { city.SaveVecData(target, fVersion); }), GoldenBytes("1.3"));
  }
}

TEST(QXStaticGeometryStream, NewGeometryHasVersion13) {
  EXPECT_EQ(QXStaticGeometry().m_dVersion, 1.3);
}

TEST(QXStaticGeometryStream, WithoutBucketsNothingIsWrittenAndSavingFails) {
  QXStaticGeometry city;
  city.m_arrID.Add(1);
  city.m_mapTextureSpheres[L"a"].Add(QXBoundingSphere());
  QXMemoryStream stream;
  EXPECT_EQ(city.SaveVecData(stream, 0.0F), 0);
  EXPECT_EQ(stream.GetSize(), 0U);
}

TEST(QXStaticGeometryStream, OneBucketInAnyListIsEnoughToSave) {
  for (auto const pList : {&QXStaticGeometry::m_vecBuckets32, &QXStaticGeometry::m_vecBuckets16,
           &QXStaticGeometry::m_vecTypedBuckets32, &QXStaticGeometry::m_vecTypedBuckets16}) {
    QXStaticGeometry city;
    (city.*pList).push_back(new QXStaticGeometryBucket);
    QXMemoryStream stream;
    EXPECT_EQ(city.SaveVecData(stream, 0.0F), 1);
    QXStaticGeometry read;
    EXPECT_EQ(read.LoadVecData(stream, 0.0F), 1);
    EXPECT_THAT(read.*pList, SizeIs(1));
  }
}

TEST(QXStaticGeometryStream, SavingIntoAFullRoomFails) {
  QXStaticGeometry city;
  FillCity(city);
  std::vector<unsigned char> arrRoom(GoldenBytes("1.3").size());
  QXMemoryStream enough(QXMemoryStream::Room{arrRoom.data(), arrRoom.size()});
  EXPECT_EQ(city.SaveVecData(enough, 0.0F), 1);
  QXMemoryStream small(QXMemoryStream::Room{arrRoom.data(), arrRoom.size() - 1});
  EXPECT_EQ(city.SaveVecData(small, 0.0F), 0);
}

TEST(QXStaticGeometryStream, EverySectionIsWrittenWhateverTheVersion) {
  QXStaticGeometry city;
  FillCity(city);
  for (double const dVersion : {0.5, 1.0, 1.1, 1.2, 2.0}) {
    city.SetVersion(dVersion);
    QXBytes expected = QXByteWriter().Double(dVersion).Get();
    QXBytes const golden = GoldenBytes("1.3");
    expected.insert(expected.end(), golden.begin() + 8, golden.end());
    EXPECT_EQ(Difference(SavedGeometry(city), expected), "");
  }
}

// A host that keeps an old file up to date calls SetVersion(1.3) before it saves.
TEST(QXStaticGeometryStream, OldFileSavedAgainIsReadOnlyAfterItsVersionIsRaised) {
  QXExactStream stream(GoldenBytes("1.0"));
  QXStaticGeometry city;
  ASSERT_TRUE(city.LoadVecData(stream, 0.0F));
  QXBytes const unreadable = SavedGeometry(city);
  QXExactStream again(unreadable);
  QXStaticGeometry read;
  EXPECT_EQ(read.LoadVecData(again, 0.0F), 0);
  city.SetVersion(1.3);
  QXExactStream raised(SavedGeometry(city));
  QXStaticGeometry whole;
  EXPECT_EQ(whole.LoadVecData(raised, 0.0F), 1);
  EXPECT_THAT(whole.m_vecBuckets16, SizeIs(2));
}

TEST(QXStaticGeometryStream, LoadLeavesWhatIsNotInTheFileAtItsDefaults) {
  QXExactStream stream(GoldenBytes("1.3"));
  QXStaticGeometry city;
  ASSERT_TRUE(city.LoadVecData(stream, 0.0F));
  QXStaticGeometryBucket const& bucket = *city.m_vecBuckets32[0];
  EXPECT_EQ(bucket.m_nMaxLevel, 0);
  EXPECT_THAT(bucket.m_vecPackages, IsEmpty());
  EXPECT_THAT(bucket.m_vecMatrices, IsEmpty());
  EXPECT_THAT(bucket.m_mapPassIndices, IsEmpty());
  EXPECT_EQ(bucket.m_fReserved, 0.0F);
  EXPECT_EQ(city.GetBoundingSphere(0).valid(), 0);
  // Around (-10, -10, -10.5) to (10, 10, 10) of nothing but the three buckets with vertices.
  EXPECT_EQ(city.GetBoundingSphere(1).valid(), 1);
  EXPECT_EQ(city.GetBoundingSphere(1).GetCenter().x, 4.0);
}

TEST(QXStaticGeometryStream, LoadAddsToWhatTheGeometryHolds) {
  QXStaticGeometry city;
  QXBoundingSphere sphere;
  sphere.SetRadius(99.0);
  for (int i = 0; i < 3; ++i) city.m_mapTextureSpheres[L"brick.png"].Add(sphere);
  city.m_mapTextureSpheres[L"other"].Add(sphere);
  city.m_arrID.Add(5);
  city.m_vecBuckets16.push_back(MakeNarrowBucket(77));
  QXExactStream stream(GoldenBytes("1.3"));
  ASSERT_EQ(city.LoadVecData(stream, 0.0F), 1);
  EXPECT_THAT(Values(city.m_arrID.GetData(), city.m_arrID.GetSize()), ElementsAre(5, 7, -1, 2147483647));
  ASSERT_THAT(city.m_vecBuckets16, SizeIs(3));
  EXPECT_EQ(city.m_vecBuckets16[0]->m_nType, 77);
  EXPECT_EQ(city.m_vecBuckets16[1]->m_nType, -7);
  EXPECT_EQ(city.m_mapTextureSpheres.at(L"brick.png").GetSize(), 2U);
  EXPECT_EQ(city.m_mapTextureSpheres.at(L"brick.png")[0].GetRadius(), 4.0);
  EXPECT_EQ(city.m_mapTextureSpheres.at(L"other").GetSize(), 1U);
}

TEST(QXStaticGeometryStream, VersionsAreComparedStrictly) {
  auto const below = [](double dValue) { return std::nextafter(dValue, 0.0); };
  auto const above = [](double dValue) { return std::nextafter(dValue, 2.0); };
  struct {
    double m_dVersion;
    bool m_bIDs, m_bTyped, m_bSpheres;
  } const arrCases[] = {{-1.0, false, false, false}, {0.0, false, false, false}, {1.0, false, false, false},
      {below(1.0), false, false, false}, {above(1.0), true, false, false}, {1.1, true, false, false},
      {above(1.1), true, true, false}, {1.2, true, true, false}, {above(1.2), true, true, true},
      {1e300, true, true, true}, {std::numeric_limits<double>::infinity(), true, true, true},
      {-std::numeric_limits<double>::infinity(), false, false, false}};
  for (auto const& one : arrCases) {
    QXByteWriter writer;
    writer.Double(one.m_dVersion);
    if (one.m_bIDs) writer.Int(1).Int(5);
    EmptyBucket(writer.Int(1), one.m_dVersion);
    writer.Int(0);
    if (one.m_bTyped) {
      EmptyBucket(writer.Int(1), one.m_dVersion);
      writer.Int(0);
    }
    if (one.m_bSpheres) writer.Int(1).Text("a").Int(0);
    QXExactStream stream(writer.Get());
    QXStaticGeometry city;
    ASSERT_EQ(city.LoadVecData(stream, 0.0F), 1) << one.m_dVersion;
    EXPECT_EQ(stream->Remaining(), 0U) << one.m_dVersion;
    EXPECT_EQ(city.m_dVersion, one.m_dVersion);
    EXPECT_EQ(city.m_arrID.GetSize(), one.m_bIDs ? 1U : 0U);
    EXPECT_THAT(city.m_vecBuckets32, SizeIs(1));
    EXPECT_THAT(city.m_vecTypedBuckets32, SizeIs(one.m_bTyped ? 1 : 0));
    EXPECT_THAT(city.m_mapTextureSpheres, SizeIs(one.m_bSpheres ? 1 : 0));
  }
}

TEST(QXStaticGeometryStream, VersionThatIsNoNumberReadsAsTheOldest) {
  QXByteWriter writer;
  writer.Double(std::numeric_limits<double>::quiet_NaN());
  EmptyBucket(writer.Int(1), 1.0).Int(0);
  QXExactStream stream(writer.Get());
  QXStaticGeometry city;
  EXPECT_EQ(city.LoadVecData(stream, 0.0F), 1);
  EXPECT_EQ(stream->Remaining(), 0U);
  EXPECT_NE(city.m_dVersion, city.m_dVersion);
  EXPECT_THAT(SavedGeometry(city), SizeIs(8 + 4 + 4 + 42 + 4 + 4 + 4 + 4));
}

TEST(QXStaticGeometryStream, NegativeCountsFail) {
  auto const load = [](QXByteWriter const& writer) {
    QXExactStream stream(writer.Get());
    QXStaticGeometry city;
    unsigned char const bLoaded = city.LoadVecData(stream, 0.0F);
    SavedGeometry(city);
    return bLoaded;
  };
  QXByteWriter const version = QXByteWriter().Double(1.3);
  EXPECT_EQ(load(QXByteWriter(version).Int(-1).Int(0).Int(0).Int(0).Int(0).Int(0)), 0);
  EXPECT_EQ(load(QXByteWriter(version).Int(0).Int(-1).Int(0).Int(0).Int(0).Int(0)), 0);
  EXPECT_EQ(load(QXByteWriter(version).Int(0).Int(0).Int(-5).Int(0).Int(0).Int(0)), 0);
  EXPECT_EQ(load(QXByteWriter(version).Int(0).Int(0).Int(0).Int(-2147483647 - 1).Int(0).Int(0)), 0);
  EXPECT_EQ(load(QXByteWriter(version).Int(0).Int(0).Int(0).Int(0).Int(-1).Int(0)), 0);
  EXPECT_EQ(load(QXByteWriter(version).Int(0).Int(0).Int(0).Int(0).Int(0).Int(-1)), 0);
  EXPECT_EQ(load(QXByteWriter(version).Int(0).Int(0).Int(0).Int(0).Int(0).Int(1).Text("a").Int(-1)), 0);
  EXPECT_EQ(load(QXByteWriter(version).Int(0).Int(0).Int(0).Int(0).Int(0).Int(0)), 1);
}

TEST(QXStaticGeometryStream, FailureIsToldAtTheByteOfTheCountThatCannotBe) {
  QXExactStream stream(QXByteWriter().Double(1.3).Int(0).Int(0).Int(-7).Get());
  QXStaticGeometry city;
  EXPECT_EQ(city.LoadVecData(stream, 0.0F), 0);
  EXPECT_EQ(stream->GetPosition(), 16U);
  EXPECT_EQ(stream->GetProblem(), STREAM_NONSENSE);
}

TEST(QXStaticGeometryStream, HugeCountsFailAtOnceAndKeepWhatCame) {
  QXByteWriter ids = QXByteWriter().Double(1.3).Int(2147483647).Int(11).Int(12);
  QXExactStream stream(ids.Byte(1).Get());
  QXStaticGeometry city;
  EXPECT_EQ(city.LoadVecData(stream, 0.0F), 0);
  EXPECT_THAT(Values(city.m_arrID.GetData(), city.m_arrID.GetSize()), ElementsAre(11, 12));

  QXByteWriter buckets = QXByteWriter().Double(1.3).Int(0).Int(2147483647);
  EmptyBucket(EmptyBucket(buckets, 1.3), 1.3);
  QXExactStream second(buckets.Get());
  QXStaticGeometry other;
  EXPECT_EQ(other.LoadVecData(second, 0.0F), 0);
  EXPECT_THAT(other.m_vecBuckets32, SizeIs(2));

  QXExactStream third(QXByteWriter()
                          .Double(1.3)
                          .Int(0)
                          .Int(0)
                          .Int(0)
                          .Int(0)
                          .Int(0)
                          .Int(2)
                          .Text("a")
                          .Int(1)
                          .Double(1)
                          .Double(2)
                          .Double(3)
                          .Double(4)
                          .Text("b")
                          .Int(2147483647)
                          .Double(1)
                          .Double(2)
                          .Double(3)
                          .Double(4)
                          .Get());
  QXStaticGeometry spheres;
  EXPECT_EQ(spheres.LoadVecData(third, 0.0F), 0);
  ASSERT_THAT(spheres.m_mapTextureSpheres, SizeIs(1));
  EXPECT_EQ(spheres.m_mapTextureSpheres.at(L"a")[0].GetRadius(), 4.0);
}

TEST(QXStaticGeometryStream, FailedStreamLoadsNothingAndKeepsTheVersion) {
  QXExactStream stream(GoldenBytes("1.0"));
  stream->Fail(0);
  QXStaticGeometry city;
  EXPECT_EQ(city.LoadVecData(stream, 0.0F), 0);
  EXPECT_EQ(city.m_dVersion, 1.3);
}

TEST(QXStaticGeometryStream, NullBucketsAreLeftOut) {
  QXStaticGeometry city;
  FillCity(city);
  city.m_vecBuckets32.insert(city.m_vecBuckets32.begin(), nullptr);
  city.m_vecTypedBuckets32.push_back(nullptr);
  EXPECT_EQ(Difference(SavedGeometry(city), GoldenBytes("1.3")), "");
  EXPECT_GT(city.GetDataSize(), 0);
}

TEST(QXStaticGeometryStream, SizeIsThatOfTheFileButForWhatItCountsInAddition) {
  QXStaticGeometry city;
  EXPECT_EQ(city.GetDataSize(), 16 + 4 + 4 + 4 + 4);
  FillCity(city);
  int nBuckets = 0;
  for (auto const* pList : {&city.m_vecBuckets32, &city.m_vecBuckets16, &city.m_vecTypedBuckets16})
    for (QXStaticGeometryBucket* pBucket : *pList) nBuckets += pBucket->GetDataSize();
  EXPECT_EQ(city.GetDataSize(), 16 + 3 * 4 + nBuckets + 4 * 4 + (9 + 8 + 2 * 32) + (10 + 8));
  // Four buckets with 4 bytes each for secondary colours; in the names of a pass and a texture an umlaut of two bytes
  // counts as one.
  EXPECT_EQ(static_cast<std::size_t>(city.GetDataSize()), GoldenBytes("1.3").size() + 4 * 4 - 2);
  city.SetVersion(1.0);
  EXPECT_EQ(static_cast<std::size_t>(city.GetDataSize()), GoldenBytes("1.3").size() + 4 * 4 - 2);
}

TEST(QXStaticGeometryStream, FilesComeBackLikeMemory) {
  std::string const strPath = testing::TempDir() + "qx_static_geometry_stream.qsg";
  QXStaticGeometry city;
  FillCity(city);
  QXFileStream file;
  ASSERT_TRUE(file.OpenForWriting(QdcUnicodeString::FromUTF8(strPath.c_str())));
  EXPECT_EQ(city.SaveVecData(file, 0.0F), 1);
  ASSERT_TRUE(file.Close());
  QXStaticGeometry read;
  ASSERT_TRUE(file.OpenForReading(QdcUnicodeString::FromUTF8(strPath.c_str())));
  EXPECT_EQ(read.LoadVecData(file, 0.0F), 1);
  EXPECT_EQ(Difference(SavedGeometry(read), GoldenBytes("1.3")), "");
  file.Close();
  std::filesystem::remove(strPath);
}

}  // namespace
