#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include <tests/QXFieldOrder.h>

#include "QXStaticGeometryParts.h"

namespace QXC {
namespace {

// A bucket of vertices of the given dimension, as the merge leaves it.
QXStaticGeometryBucket* MakeBucket(std::initializer_list<float> numbers, unsigned short nDim = 3) {
  auto* pBucket = new QXStaticGeometryBucket;
  pBucket->m_pVertexPackage->m_nVertexDim = nDim;
  pBucket->m_pVertexPackage->SetVertexNum(static_cast<unsigned int>(numbers.size()) / nDim, 0);
  std::copy(numbers.begin(), numbers.end(), pBucket->m_pVertexPackage->m_pVertices);
  return pBucket;
}

void ExpectSphere(QXBoundingSphere const& sphere, QXVector3d const& center, double dRadius) {
  EXPECT_EQ(sphere.GetCenter().x, center.x);
  EXPECT_EQ(sphere.GetCenter().y, center.y);
  EXPECT_EQ(sphere.GetCenter().z, center.z);
  EXPECT_EQ(sphere.GetRadius(), dRadius);
}

TEST(QXStaticGeometry, FreshHasItsDefaults) {
  QXStaticGeometry geometry;
  EXPECT_TRUE(geometry.m_vecBuckets32.empty());
  EXPECT_TRUE(geometry.m_vecBuckets16.empty());
  EXPECT_TRUE(geometry.m_vecTypedBuckets32.empty());
  EXPECT_TRUE(geometry.m_vecTypedBuckets16.empty());
  EXPECT_TRUE(geometry.m_mapTextureSpheres.empty());
  EXPECT_EQ(geometry.m_dVersion, 1.3);
  EXPECT_FALSE(geometry.m_BoundingSphere.valid());
  EXPECT_TRUE(geometry.m_matLocalView == QXMatrix4d::IDENTITY);
  EXPECT_EQ(geometry.m_arrID.GetSize(), 0u);
}

TEST(QXStaticGeometry, FieldsStandInOrder) {
  QXStaticGeometry const geometry;
  ExpectInOrder({&geometry.m_vecBuckets32, &geometry.m_vecBuckets16, &geometry.m_vecTypedBuckets32,
      &geometry.m_vecTypedBuckets16, &geometry.m_mapTextureSpheres, &geometry.m_dVersion, &geometry.m_BoundingSphere,
      &geometry.m_matLocalView, &geometry.m_arrID});
  EXPECT_FALSE(std::is_polymorphic_v<QXStaticGeometry>);
}

TEST(QXStaticGeometry, AccessorsReadAndWriteTheirMembers) {
  QXStaticGeometry geometry;
  geometry.SetVersion(1.1);
  EXPECT_EQ(geometry.m_dVersion, 1.1);
  EXPECT_EQ(geometry.GetVersion(), 1.1);
  geometry.GetArrayID().Add(7);
  ASSERT_EQ(geometry.m_arrID.GetSize(), 1u);
  EXPECT_EQ(geometry.m_arrID[0], 7);
  EXPECT_EQ(&geometry.GetArrayID(), &geometry.m_arrID);
  QXMatrix4d matrix = Moved(1.0, 2.0, 3.0);
  geometry.SetLocalViewMatrix(matrix);
  EXPECT_TRUE(geometry.m_matLocalView == matrix);
  EXPECT_EQ(&geometry.GetLocalViewMatrix(), &geometry.m_matLocalView);
  QXBoundingSphere sphere;
  sphere.SetCenter(QXVector3d(1.0, 2.0, 3.0));
  sphere.SetRadius(4.0);
  geometry.SetBoundingSphere(sphere);
  ExpectSphere(geometry.m_BoundingSphere, QXVector3d(1.0, 2.0, 3.0), 4.0);
}

TEST(QXStaticGeometry, SphereIsNotComputedWithoutBeingAskedFor) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({0.0F, 0.0F, 0.0F, 2.0F, 2.0F, 1.0F}));
  EXPECT_FALSE(geometry.GetBoundingSphere(0).valid());
  EXPECT_EQ(&geometry.GetBoundingSphere(0), &geometry.m_BoundingSphere);
  EXPECT_EQ(geometry.m_BoundingSphere.GetCenter().x, 0.0);
}

TEST(QXStaticGeometry, ValidSphereIsNotComputedAnew) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({0.0F, 0.0F, 0.0F, 2.0F, 2.0F, 1.0F}));
  geometry.m_BoundingSphere.SetRadius(0.0);
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(), 0.0);
}

TEST(QXStaticGeometry, SphereSpansTheBoxOfTheVertices) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({-1.0F, 5.0F, -7.0F, 1.0F, 9.0F, -6.0F, 0.0F, 7.0F, -8.0F}));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(0.0, 7.0, -7.0), std::sqrt(4.0 + 16.0 + 4.0) / 2.0);
  EXPECT_EQ(&geometry.GetBoundingSphere(1), &geometry.m_BoundingSphere);
}

TEST(QXStaticGeometry, SphereSpansAllFourLists) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets32.push_back(MakeBucket({-8.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F}));
  geometry.m_vecBuckets16.push_back(MakeBucket({8.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F}));
  geometry.m_vecTypedBuckets32.push_back(MakeBucket({0.0F, -4.0F, 0.0F, 0.0F, 2.0F, 0.0F}));
  geometry.m_vecTypedBuckets16.push_back(MakeBucket({0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 3.0F}));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(0.0, -1.0, 1.5), QXVector3d(16.0, 6.0, 3.0).Length() / 2.0);
}

TEST(QXStaticGeometry, SphereIsComputedFromEachListAlone) {
  std::vector<QXStaticGeometryBucket*> QXStaticGeometry::*const lists[] = {&QXStaticGeometry::m_vecBuckets32,
      &QXStaticGeometry::m_vecBuckets16, &QXStaticGeometry::m_vecTypedBuckets32,
      &QXStaticGeometry::m_vecTypedBuckets16};
  for (auto list : lists) {
    QXStaticGeometry geometry;
    (geometry.*list).push_back(MakeBucket({2.0F, 2.0F, 2.0F, 4.0F, 2.0F, 2.0F}));
    ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(3.0, 2.0, 2.0), 1.0);
  }
}

TEST(QXStaticGeometry, SphereIsMovedButNotScaledByTheLocalView) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({0.0F, 0.0F, 0.0F, 2.0F, 0.0F, 0.0F}));
  geometry.m_matLocalView = Moved(100.0, 200.0, 300.0);
  geometry.m_matLocalView[0][0] = 10.0;
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(110.0, 200.0, 300.0), 1.0);
}

TEST(QXStaticGeometry, SphereWithoutVerticesIsThatOfANullBox) {
  QXStaticGeometry geometry;
  geometry.m_matLocalView = Moved(3.0, 4.0, 5.0);
  QXBoundingBox const none;
  ExpectSphere(geometry.GetBoundingSphere(1), none.GetCenter() + QXVector3d(3.0, 4.0, 5.0),
      (none.GetMax() - none.GetMin()).Length() / 2.0);
  EXPECT_TRUE(geometry.m_BoundingSphere.valid()) << "so it is not computed again";
}

TEST(QXStaticGeometry, SingleVertexIsACubeOfTwentyUnits) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({1.0F, 2.0F, 3.0F}));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(1.0, 2.0, 3.0), QXVector3d(20.0, 20.0, 20.0).Length() / 2.0);
}

TEST(QXStaticGeometry, SingleVertexOfOneBucketWidensTheBoxOfAnother) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({0.0F, 0.0F, 0.0F}));
  geometry.m_vecBuckets16.push_back(MakeBucket({0.0F, 0.0F, 0.0F, 30.0F, 0.0F, 0.0F}));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(10.0, 0.0, 0.0), QXVector3d(40.0, 20.0, 20.0).Length() / 2.0);
}

TEST(QXStaticGeometry, TwoDimensionsAreReadThreeNumbersAtATime) {
  QXStaticGeometry geometry;
  // Vertices (1, 2), (3, 50) and (5, 6): third values 3, 5 and the slack's 0.
  geometry.m_vecBuckets16.push_back(MakeBucket({1.0F, 2.0F, 3.0F, 50.0F, 5.0F, 6.0F}, 2));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(3.0, 26.0, 2.5), QXVector3d(4.0, 48.0, 5.0).Length() / 2.0);
}

TEST(QXStaticGeometry, FourthNumberOfAVertexIsSkipped) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({1.0F, 2.0F, 3.0F, 900.0F, 3.0F, 4.0F, 5.0F, -900.0F}, 4));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(2.0, 3.0, 4.0), std::sqrt(12.0) / 2.0);
}

TEST(QXStaticGeometry, NumbersThatAreNoneDoNotCount) {
  float const fNaN = std::numeric_limits<float>::quiet_NaN();
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({fNaN, 1.0F, 1.0F, 1.0F, fNaN, 1.0F, 3.0F, 1.0F, 1.0F}));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(2.0, 1.0, 1.0), 1.0);
}

TEST(QXStaticGeometry, BucketsWithoutVerticesAreSkipped) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets32.push_back(nullptr);
  geometry.m_vecBuckets16.push_back(new QXStaticGeometryBucket);  // no array, count 0
  auto* pCounted = new QXStaticGeometryBucket;
  pCounted->m_pVertexPackage->m_nVertexNum = 5;  // gathering: a count without an array
  geometry.m_vecBuckets16.push_back(pCounted);
  auto* pEmpty = MakeBucket({});  // an array of no vertices
  geometry.m_vecBuckets16.push_back(pEmpty);
  auto* pNoPackage = new QXStaticGeometryBucket;
  delete std::exchange(pNoPackage->m_pVertexPackage, nullptr);
  geometry.m_vecTypedBuckets32.push_back(pNoPackage);
  geometry.m_vecTypedBuckets16.push_back(MakeBucket({5.0F, 5.0F, 5.0F, 7.0F, 5.0F, 5.0F}));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(6.0, 5.0, 5.0), 1.0);
}

TEST(QXStaticGeometry, BucketOfNoVerticesIsNoBoxEitherWhereItIsTheOnlyOne) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets16.push_back(MakeBucket({}));
  ExpectSphere(geometry.GetBoundingSphere(1), QXVector3d(), 0.0);
}

TEST(QXStaticGeometry, CopiesShareTheBuckets) {
  QXStaticGeometry geometry;
  geometry.m_vecBuckets32.push_back(new QXStaticGeometryBucket);
  geometry.m_vecBuckets16.push_back(new QXStaticGeometryBucket);
  geometry.m_vecTypedBuckets32.push_back(new QXStaticGeometryBucket);
  geometry.m_vecTypedBuckets16.push_back(new QXStaticGeometryBucket);
  geometry.m_mapTextureSpheres[L"a.png"].Add(QXBoundingSphere());
  geometry.m_dVersion = 1.1;
  geometry.m_BoundingSphere.SetRadius(2.0);
  geometry.m_matLocalView = Moved(1.0);
  geometry.m_arrID.Add(5);
  QXStaticGeometry const copy(geometry);
  QXStaticGeometry assigned;
  assigned = copy;
  for (QXStaticGeometry const* pCopy : {&copy, const_cast<QXStaticGeometry const*>(&assigned)}) {
    EXPECT_EQ(pCopy->m_vecBuckets32, geometry.m_vecBuckets32);
    EXPECT_EQ(pCopy->m_vecBuckets16, geometry.m_vecBuckets16);
    EXPECT_EQ(pCopy->m_vecTypedBuckets32, geometry.m_vecTypedBuckets32);
    EXPECT_EQ(pCopy->m_vecTypedBuckets16, geometry.m_vecTypedBuckets16);
    EXPECT_EQ(pCopy->m_mapTextureSpheres.size(), 1u);
    EXPECT_EQ(pCopy->m_dVersion, 1.1);
    EXPECT_EQ(pCopy->m_BoundingSphere.GetRadius(), 2.0);
    EXPECT_TRUE(pCopy->m_matLocalView == Moved(1.0));
    EXPECT_EQ(pCopy->m_arrID.GetSize(), 1u);
  }
  for (QXStaticGeometry* pDetached : {&geometry, &assigned}) {
    pDetached->m_vecBuckets32.clear();
    pDetached->m_vecBuckets16.clear();
    pDetached->m_vecTypedBuckets32.clear();
    pDetached->m_vecTypedBuckets16.clear();
  }
}

TEST(QXStaticGeometryBucket, FreshHasItsDefaults) {
  QXStaticGeometryBucket const bucket;
  ASSERT_NE(bucket.m_pVertexPackage, nullptr);
  EXPECT_EQ(bucket.m_pVertexPackage->m_nVertexNum, 0u);
  EXPECT_EQ(bucket.m_pVertexPackage->m_pVertices, nullptr);
  EXPECT_TRUE(bucket.m_mapLevelIndices.empty());
  EXPECT_TRUE(bucket.m_mapPasses.empty());
  EXPECT_TRUE(bucket.m_vecMatrices.empty());
  EXPECT_TRUE(bucket.m_vecPackages.empty());
  EXPECT_TRUE(bucket.m_mapPassIndices.empty());
  EXPECT_EQ(bucket.m_nMaxLevel, 0);
  EXPECT_EQ(bucket.m_nIndexType, 0);
  EXPECT_TRUE(bucket.m_mapSubObjects.empty());
  EXPECT_EQ(bucket.m_nType, -1);
  EXPECT_EQ(bucket.m_fReserved, 0.0F);
}

TEST(QXStaticGeometryBucket, FieldsStandInOrder) {
  QXStaticGeometryBucket const bucket;
  ExpectInOrder({&bucket.m_pVertexPackage, &bucket.m_mapLevelIndices, &bucket.m_mapPasses, &bucket.m_vecMatrices,
      &bucket.m_vecPackages, &bucket.m_mapPassIndices, &bucket.m_nMaxLevel, &bucket.m_nIndexType,
      &bucket.m_mapSubObjects, &bucket.m_nType, &bucket.m_fReserved});
}

// Under the address sanitizer: what is owned leaks if it stays, what is the host's is freed twice if it goes.
TEST(QXStaticGeometryBucket, DestructorDeletesWhatIsOwnedAndNothingElse) {
  QXVertexDataPackage mesh;
  QXIndexPackage indices;
  {
    QXStaticGeometryBucket bucket;
    bucket.m_vecPackages.push_back(&mesh);
    bucket.m_mapPassIndices[L"a"].emplace_back().m_vecIndexPackages.push_back(&indices);
    bucket.m_mapLevelIndices[0] = {new QXIndexPackage, nullptr, new QXIndexPackage};
    bucket.m_mapLevelIndices[3] = {new QXIndexPackage};
    bucket.m_mapPasses[L"a"] = MakePass(L"a", {L"a.png"}).release();
    bucket.m_mapPasses[L"b"] = nullptr;
    bucket.m_mapSubObjects[0] = MakeSubObject(1.0, 1.0);
    bucket.m_mapSubObjects[9] = nullptr;
  }
  EXPECT_EQ(mesh.m_nVertexNum, 0u);
  EXPECT_EQ(indices.m_nIndexNum, 0);
}

TEST(QXStaticGeometryBucket, CopiesShareThePointers) {
  QXVertexDataPackage mesh;
  QXStaticGeometryBucket bucket;
  bucket.m_mapLevelIndices[1] = {new QXIndexPackage};
  bucket.m_mapPasses[L"a"] = MakePass(L"a", {}).release();
  bucket.m_mapSubObjects[4] = MakeSubObject(1.0, 1.0);
  bucket.m_vecMatrices.push_back(Moved(2.0));
  bucket.m_vecPackages.push_back(&mesh);
  bucket.m_mapPassIndices[L"a"].emplace_back().m_nVertexStart = 6;
  bucket.m_nMaxLevel = 1;
  bucket.m_nIndexType = 1;
  bucket.m_nType = 3;
  bucket.m_fReserved = 0.5F;
  QXStaticGeometryBucket copy(bucket);
  QXStaticGeometryBucket assigned;
  delete assigned.m_pVertexPackage;  // an assignment forgets what it overwrites
  assigned = bucket;
  for (QXStaticGeometryBucket* pCopy : {&copy, &assigned}) {
    EXPECT_EQ(pCopy->m_pVertexPackage, bucket.m_pVertexPackage);
    EXPECT_EQ(pCopy->m_mapLevelIndices, bucket.m_mapLevelIndices);
    EXPECT_EQ(pCopy->m_mapPasses, bucket.m_mapPasses);
    EXPECT_EQ(pCopy->m_mapSubObjects, bucket.m_mapSubObjects);
    EXPECT_EQ(pCopy->m_vecPackages, bucket.m_vecPackages);
    ASSERT_EQ(pCopy->m_vecMatrices.size(), 1u);
    EXPECT_TRUE(pCopy->m_vecMatrices[0] == Moved(2.0));
    ASSERT_EQ(pCopy->m_mapPassIndices[L"a"].size(), 1u);
    EXPECT_EQ(pCopy->m_mapPassIndices[L"a"][0].m_nVertexStart, 6);
    EXPECT_EQ(pCopy->m_nMaxLevel, 1);
    EXPECT_EQ(pCopy->m_nIndexType, 1);
    EXPECT_EQ(pCopy->m_nType, 3);
    EXPECT_EQ(pCopy->m_fReserved, 0.5F);
    pCopy->m_pVertexPackage = nullptr;
    pCopy->m_mapLevelIndices.clear();
    pCopy->m_mapPasses.clear();
    pCopy->m_mapSubObjects.clear();
  }
}

TEST(QXBucketIndexPackage, FreshHasItsDefaults) {
  QXBucketIndexPackage const record;
  EXPECT_EQ(record.m_nVertexStart, 0);
  EXPECT_EQ(record.m_fTextureLayer, 1.0F);
  EXPECT_TRUE(record.m_vecIndexPackages.empty());
  EXPECT_EQ(std::size(record.m_matTextures), 8u);
  for (QXMatrix4d const& matrix : record.m_matTextures) EXPECT_TRUE(matrix == QXMatrix4d::IDENTITY);
}

TEST(QXBucketIndexPackage, FieldsStandInOrder) {
  QXBucketIndexPackage const record;
  ExpectInOrder({&record.m_nVertexStart, &record.m_fTextureLayer, &record.m_vecIndexPackages, &record.m_matTextures});
}

QXBucketIndexPackage MakeRecord(QXIndexPackage& indices) {
  QXBucketIndexPackage record;
  record.m_nVertexStart = 12;
  record.m_fTextureLayer = 3.0F;
  record.m_vecIndexPackages = {&indices, nullptr};
  for (int unit = 0; unit < 8; ++unit) record.m_matTextures[unit] = Moved(unit + 1.0);
  return record;
}

void ExpectRecord(QXBucketIndexPackage const& record, QXIndexPackage& indices) {
  EXPECT_EQ(record.m_nVertexStart, 12);
  EXPECT_EQ(record.m_fTextureLayer, 3.0F);
  EXPECT_EQ(record.m_vecIndexPackages, (std::vector<QXIndexPackage*>{&indices, nullptr}));
  for (int unit = 0; unit < 8; ++unit) EXPECT_TRUE(record.m_matTextures[unit] == Moved(unit + 1.0)) << unit;
}

TEST(QXBucketIndexPackage, CopiesAndMovesCarryEverything) {
  QXIndexPackage indices;
  QXBucketIndexPackage const record = MakeRecord(indices);
  QXBucketIndexPackage copy(record);
  ExpectRecord(copy, indices);
  QXBucketIndexPackage assigned;
  assigned = record;
  ExpectRecord(assigned, indices);
  QXBucketIndexPackage const moved(std::move(copy));
  ExpectRecord(moved, indices);
  QXBucketIndexPackage moveAssigned;
  moveAssigned = std::move(assigned);
  ExpectRecord(moveAssigned, indices);
  ExpectRecord(record, indices);
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<QXBucketIndexPackage>) << "or growing sequences copy";
}

}  // namespace
}  // namespace QXC
