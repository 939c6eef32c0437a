// The records of the objects in a bucket, and the spheres in which their textures are seen.
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <gtest/gtest.h>

#include "QXStaticGeometryParts.h"

namespace QXC {
namespace {

QXStaticGeometryBucket& FirstSmall(QXStaticGeometry& geometry) {
  return *geometry.m_vecBuckets16.at(0);
}

TEST(QXStaticGeometrySubObjects, SubObjectIsKeptUnderItsFirstVertex) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddNamed(geometry, 7, {});
  QXSubObjectInfo* const pSubObject = MakeSubObject(1.0, 2.0);
  host.AddNamed(geometry, 5, {}, pSubObject);
  EXPECT_EQ(FirstSmall(geometry).m_mapSubObjects, (std::map<int, QXSubObjectInfo*>{{7, pSubObject}}));
}

// Under the address sanitizer: the first record leaks if it is only forgotten.
TEST(QXStaticGeometrySubObjects, SubObjectOfAMeshWithoutVerticesIsReplaced) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddNamed(geometry, 0, {}, MakeSubObject(1.0, 2.0));
  QXSubObjectInfo* const pSecond = MakeSubObject(3.0, 4.0);
  host.AddNamed(geometry, 0, {}, pSecond);
  host.AddNamed(geometry, 5, {}, pSecond);  // the same one again is not deleted either
  EXPECT_EQ(FirstSmall(geometry).m_mapSubObjects, (std::map<int, QXSubObjectInfo*>{{0, pSecond}}));
  EXPECT_EQ(pSecond->m_BoundingSphere.GetRadius(), 4.0);
}

TEST(QXStaticGeometrySubObjects, TextureCountsAMeshOnce) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"a", {L"x.png", L"y.png", L"x.png"});
  host.AddPass(L"b", {L"y.png", L"z.png"});
  host.AddNamed(geometry, 5, {L"a", L"b", L"a"}, MakeSubObject(1.0, 10.0));
  host.AddNamed(geometry, 5, {L"b"}, MakeSubObject(2.0, 20.0));
  ASSERT_EQ(geometry.m_mapTextureSpheres.size(), 3u);
  EXPECT_EQ(geometry.m_mapTextureSpheres[L"x.png"].GetSize(), 1u);
  auto const& both = geometry.m_mapTextureSpheres[L"y.png"];
  ASSERT_EQ(both.GetSize(), 2u);
  EXPECT_EQ(both[0].GetRadius(), 10.0);
  EXPECT_EQ(both[0].GetCenter().x, 1.0);
  EXPECT_EQ(both[1].GetRadius(), 20.0);
  EXPECT_EQ(geometry.m_mapTextureSpheres[L"z.png"].GetSize(), 2u);
}

TEST(QXStaticGeometrySubObjects, TextureOfAMovingPassAndABlankUnitCountToo) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  QXPass& pass = host.AddPass(L"water", {L"a.png", L"b.png", L"c.png"});
  pass.m_pExtension = new QXMaterialExtension;
  pass.m_pExtension->m_fTurns[1][4] = 1.0F;
  host.AddPass(L"blank", {L""});
  host.AddNamed(geometry, 5, {L"water", L"blank"}, MakeSubObject(1.0, 10.0));
  EXPECT_EQ(geometry.m_mapTextureSpheres.size(), 4u);
  EXPECT_EQ(geometry.m_mapTextureSpheres.count(L"c.png"), 1u);
  EXPECT_EQ(geometry.m_mapTextureSpheres.count(L""), 1u);
}

TEST(QXStaticGeometrySubObjects, TexturePastTheEighthUnitCounts) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  TextList textures(9, L"same.png");
  textures.back() = L"ninth.png";
  host.AddPass(L"many", textures);
  host.AddNamed(geometry, 5, {L"many"}, MakeSubObject(1.0, 10.0));
  EXPECT_EQ(geometry.m_mapTextureSpheres.count(L"ninth.png"), 1u);
}

TEST(QXStaticGeometrySubObjects, TexturesWithoutSubObjectDoNotCount) {
  QXStaticGeometry geometry;
  QXBatchingHost host;
  host.AddPass(L"a", {L"x.png"});
  host.AddNamed(geometry, 5, {L"a"});
  EXPECT_TRUE(geometry.m_mapTextureSpheres.empty());
  EXPECT_TRUE(FirstSmall(geometry).m_mapSubObjects.empty());
}

}  // namespace
}  // namespace QXC
