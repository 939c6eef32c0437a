// What hosts and plug-ins write against: names, argument types and which members are theirs to use.
#include <map>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/QXVertexPackageStream.h>

namespace QXC {
namespace {

using MeshPackage = QXVertexDataPackageTemplate<float, QXVertexDeclaration>;
using Buckets = std::vector<QXStaticGeometryBucket*>;

template <class T, class Signature, Signature Operation>
constexpr bool Has = true;

template <class Geometry>
concept ShowsSphere = requires(Geometry geometry, Buckets buckets, QXBoundingBox box) {
  geometry.CalculateBoundingSphere(buckets, box);
};
template <class Geometry>
concept ShowsFolding = requires(Geometry geometry, Buckets buckets) {
  geometry.AssginMutiTextureStaticGeometry(0, 0, buckets);
};
template <class Geometry>
concept ShowsMerging = requires(Geometry geometry, Buckets buckets, QXMatrix4d matBase, unsigned char bNoTransform) {
  geometry.AssignStaticGeometry(buckets, matBase, bNoTransform);
};

using G = QXStaticGeometry;
using AddMesh = void (G::*)(
    MeshPackage*, QdcArray<QXIndexPackage*>&, std::map<QdcUnicodeString, QXPass*>&, QXMatrix4d&, QXSubObjectInfo*, int);
static_assert(Has<G, AddMesh, &G::AddVertexDataAndIndexPackage>);
static_assert(Has<G, void (G::*)(QXMatrix4d, unsigned char), &G::AssignStaticGeometry>);
static_assert(Has<G, void (G::*)(int, int), &G::AssginMutiTexture>);
static_assert(Has<G, unsigned char (G::*)(QXStream&, float), &G::LoadVecData>);
static_assert(Has<G, unsigned char (G::*)(QXStream&, float), &G::SaveVecData>);
static_assert(Has<G, int (G::*)(), &G::GetDataSize>);
static_assert(Has<G, void (G::*)(double), &G::SetVersion>);
static_assert(Has<G, QdcArray<int>& (G::*)(), &G::GetArrayID>);
static_assert(Has<G, void (G::*)(QXMatrix4d&), &G::SetLocalViewMatrix>);
static_assert(Has<G, void (G::*)(QXBoundingSphere), &G::SetBoundingSphere>);
static_assert(Has<G, QXBoundingSphere& (G::*)(unsigned char), &G::GetBoundingSphere>);
static_assert(!ShowsSphere<G> && !ShowsFolding<G> && !ShowsMerging<G>);

using B = QXStaticGeometryBucket;
static_assert(Has<B, unsigned char (B::*)(QXStream&, double), &B::Load>);
static_assert(Has<B, void (B::*)(QXStream&, double), &B::Save>);
static_assert(Has<B, int (B::*)(), &B::GetDataSize>);
static_assert(std::is_same_v<decltype(B::m_pVertexPackage), MeshPackage*>);
static_assert(std::is_same_v<decltype(B::m_mapLevelIndices), std::map<int, std::vector<QXIndexPackage*>>>);
static_assert(std::is_same_v<decltype(B::m_mapPasses), std::map<QdcUnicodeString, QXPass*>>);
static_assert(std::is_same_v<decltype(B::m_vecMatrices), std::vector<QXMatrix4d>>);
static_assert(std::is_same_v<decltype(B::m_vecPackages), std::vector<MeshPackage*>>);
static_assert(
    std::is_same_v<decltype(B::m_mapPassIndices), std::map<QdcUnicodeString, std::vector<QXBucketIndexPackage>>>);
static_assert(std::is_same_v<decltype(B::m_mapSubObjects), std::map<int, QXSubObjectInfo*>>);
static_assert(std::is_same_v<decltype(QXBucketIndexPackage::m_vecIndexPackages), std::vector<QXIndexPackage*>>);
static_assert(std::is_same_v<decltype(QXBucketIndexPackage::m_matTextures), QXMatrix4d[8]>);

// A host that makes a mesh and its materials, batches, folds, merges, saves, loads and reads what a renderer reads.
TEST(QXStaticGeometryContract, CarriesAMeshFromTheHostToTheFileAndBack) {
  MeshPackage mesh;
  mesh.m_nTexDims[0] = 4;
  mesh.SetVertexNum(3, 12);
  mesh.SetNormalNum(3, 12);
  mesh.SetColorNum(3, 4);
  mesh.SetSecondColorNum(3, 4);
  ASSERT_EQ(mesh.SetTexCoordNum(0, 3, 16), 1);
  mesh.m_pVertices[3] = 2.0F;

  QXIndexPackage indices;
  indices.SetIndexNum(3);
  static_cast<unsigned short*>(indices.m_pIndices)[1] = 1;
  indices.m_arrPassNames.Add(L"wall");
  QdcArray<QXIndexPackage*> arrIndices;
  arrIndices.Add(&indices);

  QXPass pass;
  pass.SetName(L"wall");
  pass.CreateTextureUnitState()->SetTextureName(L"wall.png");
  QXPass const copied(pass);
  ASSERT_EQ(copied.GetTextureUnitStatesSize(), 1u);
  EXPECT_EQ(copied.GetPFFMode(), 0);
  std::map<QdcUnicodeString, QXPass*> mapPasses;
  mapPasses[pass.GetName()] = &pass;

  auto* const pSubObject = new QXSubObjectInfo;
  pSubObject->m_BoundingSphere = QXBoundingSphere(QXBoundingBox(QXVector3d(), QXVector3d(2.0, 0.0, 0.0)));
  QXMatrix4d matModel;
  QXStaticGeometry geometry;
  geometry.GetArrayID().Add(4711);
  geometry.AddVertexDataAndIndexPackage(&mesh, arrIndices, mapPasses, matModel, pSubObject, 0);
  geometry.AssginMutiTexture(1, 2);
  geometry.AssignStaticGeometry(QXMatrix4d::IDENTITY, 0);
  QXMatrix4d matBase = QXMatrix4d::IDENTITY;
  geometry.SetLocalViewMatrix(matBase);
  EXPECT_TRUE(geometry.GetLocalViewMatrix() == QXMatrix4d::IDENTITY);
  EXPECT_EQ(geometry.GetBoundingSphere(1).GetRadius(), 1.0);

  QXMemoryStream stream;
  ASSERT_EQ(geometry.SaveVecData(stream, 0.0F), 1);
  EXPECT_LE(stream.GetSize(), static_cast<QXUInt64>(geometry.GetDataSize()));
  QXStaticGeometry loaded;
  ASSERT_EQ(loaded.LoadVecData(stream, 0.0F), 1);
  EXPECT_EQ(stream.Remaining(), 0u);
  EXPECT_EQ(loaded.GetVersion(), 1.3);
  ASSERT_EQ(loaded.m_vecBuckets16.size(), 1u);
  QXStaticGeometryBucket const& bucket = *loaded.m_vecBuckets16.front();
  EXPECT_EQ(bucket.m_nIndexType, 0);
  ASSERT_EQ(bucket.m_mapLevelIndices.at(0).size(), 1u);
  EXPECT_EQ(bucket.m_mapLevelIndices.at(0)[0]->m_nIndexNum, 3);
  EXPECT_EQ(bucket.m_mapPasses.at(L"wall")->m_strVertexProgram, QdcUnicodeString(L"RenderModelSecVP.glsl"));
  EXPECT_EQ(bucket.m_pVertexPackage->m_pVertices[3], 2.0F);
  EXPECT_EQ(bucket.m_mapSubObjects.at(0)->m_BoundingSphere.GetRadius(), 1.0);
  EXPECT_EQ(loaded.m_mapTextureSpheres.at(L"wall.png").GetSize(), 1u);
}

}  // namespace
}  // namespace QXC
