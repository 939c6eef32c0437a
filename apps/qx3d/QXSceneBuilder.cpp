#include <apps/qx3d/QXSceneBuilder.h>

#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXMeshGatherer.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <numbers>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXVector3d;

QXVector3d Transform(float const* p, QXC::QXMatrix4d const& mat) {
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]))
      .MultiplyMatrix(mat);
}

/// A place on one axis with the area of the triangle that lies there.
struct WeightedPlace {
  double m_dPlace;
  double m_dArea;
  bool operator<(WeightedPlace const& other) const { return m_dPlace < other.m_dPlace; }
};

/// Places of all triangles on the two level axes.
struct TrianglePlaces {
  std::vector<WeightedPlace> m_vecX;
  std::vector<WeightedPlace> m_vecY;
};

void CollectPlaces(QXC::QXVertexDataPackage const& vertices, QXC::QXIndexPackage const& indices,
    QXC::QXMatrix4d const& matWorld, TrianglePlaces& places) {
  auto const getCorner = [&](int i) {
    return Transform(vertices.m_pVertices + std::size_t{vertices.m_nVertexDim} * GetIndex(indices, i), matWorld);
  };
  for (int i = 0; i + 2 < indices.m_nIndexNum; i += 3) {
    QXVector3d const a = getCorner(i);
    QXVector3d const b = getCorner(i + 1);
    QXVector3d const c = getCorner(i + 2);
    double const dArea = (b - a).CrossProduct(c - a).Length();
    // Each corner with a share: the middle alone would cut half of a large triangle away.
    for (QXVector3d const* p : {&a, &b, &c}) {
      places.m_vecX.push_back({p->x, dArea});
      places.m_vecY.push_back({p->y, dArea});
    }
  }
}

/// Where on an axis a part of the surface lies on either side.
void FindMiddlePart(std::vector<WeightedPlace>& vecPlaces, double dOutside, double& dMin, double& dMax) {
  std::sort(vecPlaces.begin(), vecPlaces.end());
  double dTotal = 0.0;
  for (WeightedPlace const& place : vecPlaces) dTotal += place.m_dArea;
  if (!(dTotal > 0.0)) return;
  double dBefore = 0.0;
  auto it = vecPlaces.begin();
  while (dBefore + it->m_dArea < dOutside * dTotal) dBefore += (it++)->m_dArea;
  dMin = it->m_dPlace;
  auto itBack = vecPlaces.end() - 1;
  dBefore = 0.0;
  while (dBefore + itBack->m_dArea < dOutside * dTotal) dBefore += (itBack--)->m_dArea;
  dMax = itBack->m_dPlace;
}

/// Calls a function with the vertices and the indices of every mesh as placed, and its matrix.
template <class Function>
void ForEachMesh(std::vector<QXPlacedModel> const& vecModels, Function& function) {
  for (QXPlacedModel const& placed : vecModels) {
    for (QXC::QXMatrix4d const& matPlace : placed.m_vecPlaces) {
      for (int i = 0; i < placed.m_pModel->GetNodeCount(); ++i) {
        QXC::QXModelNode const& node = *placed.m_pModel->GetNode(i);
        QXC::QXModelMesh const& mesh = *placed.m_pModel->GetMesh(node.m_nMesh);
        std::vector<QXC::QXIndexPackage*> const vecIndices(
            mesh.m_arrIndexPackages.begin(), mesh.m_arrIndexPackages.end());
        function(*mesh.m_pVertexPackage, vecIndices, node.m_matWorld * matPlace);
      }
    }
  }
}

/// The same with every bucket of what is merged already.
template <class Function>
void ForEachBucket(std::vector<std::unique_ptr<QXC::QXStaticGeometry>> const& vecMerged, Function& function) {
  for (auto const& pGeometry : vecMerged)
    for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(*pGeometry))
      function(*pBucket->m_pVertexPackage, GetTriangleRanges(*pBucket), pGeometry->GetLocalViewMatrix());
}

/// Grows a box by all vertices as placed.
class BoundsFinder {
public:
  BoundsFinder() { m_Bounds.SetNULL(); }
  void operator()(QXC::QXVertexDataPackage const& vertices, std::vector<QXC::QXIndexPackage*> const&,
      QXC::QXMatrix4d const& matWorld) {
    if (vertices.m_nVertexNum == 0) return;
    QXVector3d vecMin(1e300, 1e300, 1e300);
    QXVector3d vecMax(-1e300, -1e300, -1e300);
    for (std::size_t i = 0; i < vertices.m_nVertexNum; ++i) {
      QXVector3d const vec = Transform(vertices.m_pVertices + vertices.m_nVertexDim * i, matWorld);
      vecMin = QXVector3d(std::min(vecMin.x, vec.x), std::min(vecMin.y, vec.y), std::min(vecMin.z, vec.z));
      vecMax = QXVector3d(std::max(vecMax.x, vec.x), std::max(vecMax.y, vec.y), std::max(vecMax.z, vec.z));
    }
    m_Bounds.Merge(QXC::QXBoundingBox(vecMin, vecMax));
  }
  QXC::QXBoundingBox m_Bounds;
};

/// @param all  box of the meshes and of what is merged already
QXC::QXBoundingBox FindCore(std::vector<QXPlacedModel> const& vecModels,
    std::vector<std::unique_ptr<QXC::QXStaticGeometry>> const& vecMerged, QXC::QXBoundingBox const& all,
    unsigned int nTriangles) {
  // Of a handful of triangles every one counts.
  if (nTriangles < 1000) return all;
  TrianglePlaces places;
  auto const collect = [&places](QXC::QXVertexDataPackage const& vertices,
                           std::vector<QXC::QXIndexPackage*> const& vecIndices, QXC::QXMatrix4d const& matWorld) {
    for (QXC::QXIndexPackage const* pIndices : vecIndices) CollectPlaces(vertices, *pIndices, matWorld, places);
  };
  ForEachMesh(vecModels, collect);
  ForEachBucket(vecMerged, collect);
  QXC::QXBoundingBox core = all;
  constexpr double Outside = 0.025;
  FindMiddlePart(places.m_vecX, Outside, core.m_dMin[0], core.m_dMax[0]);
  FindMiddlePart(places.m_vecY, Outside, core.m_dMin[1], core.m_dMax[1]);
  return core;
}

}  // namespace

bool QXScene::HasOutskirts() const {
  for (int nAxis = 0; nAxis < 2; ++nAxis)
    if (m_Core.m_dMin[nAxis] > m_Bounds.m_dMin[nAxis] || m_Core.m_dMax[nAxis] < m_Bounds.m_dMax[nAxis]) return true;
  return false;
}

QXScene BuildScene(std::vector<QXPlacedModel> const& vecModels,
    std::vector<std::unique_ptr<QXC::QXStaticGeometry>> vecMerged, QXC::QXBoundingBox const& others,
    QXMergeOptions const& options) {
  QXScene scene;
  BoundsFinder finder;
  ForEachMesh(vecModels, finder);
  ForEachBucket(vecMerged, finder);
  QXC::QXBoundingBox const all = finder.m_Bounds;
  scene.m_Bounds = all;
  scene.m_Bounds.Merge(others);
  QXVector3d const vecCenter = scene.m_Bounds.GetCenter();
  scene.m_vecOrigin = QXVector3d(std::round(vecCenter.x), std::round(vecCenter.y), std::round(vecCenter.z));
  if (options.m_bObjects) scene.m_pNames = std::make_shared<QXSceneNames>();
  QXMeshGatherer gatherer(scene, options);
  for (std::size_t i = 0; i < vecModels.size(); ++i) gatherer.AddModel(vecModels[i], static_cast<int>(i));
  gatherer.Merge();
  for (auto const& pGeometry : vecMerged) {
    scene.m_nTriangles += CountTriangles(*pGeometry);
    scene.m_nVertices += CountVertices(*pGeometry);
    scene.m_nMeshes += CountObjects(*pGeometry);
  }
  scene.m_Core = FindCore(vecModels, vecMerged, all, scene.m_nTriangles);
  scene.m_Core.Merge(others);
  for (auto& pGeometry : vecMerged) scene.m_vecGeometries.push_back(std::move(pGeometry));
  return scene;
}

QXScene BuildScene(QXC::ModelDataInfo const& model, QXModelPictures const& pictures, QXMergeOptions const& options) {
  QXC::QXBoundingBox nothing;
  nothing.SetNULL();
  return BuildScene({{&model, &pictures, {QXC::QXMatrix4d()}}}, {}, nothing, options);
}

double GetCellSize(QXC::QXBoundingBox const& bounds) {
  QXVector3d const vecSize = bounds.GetMax() - bounds.GetMin();
  return std::max({65536.0, vecSize.x / 32.0, vecSize.y / 32.0});
}

double GetGroundRadius(QXScene const& scene) {
  QXVector3d const vecSize = scene.m_Bounds.GetMax() - scene.m_Bounds.GetMin();
  return 6.0 * std::max({vecSize.x, vecSize.y, vecSize.z, 1e-3});
}

std::unique_ptr<QXC::QXStaticGeometry> BuildGround(QXScene const& scene) {
  constexpr int Sectors = 48;
  QXVector3d const vecSize = scene.m_Bounds.GetMax() - scene.m_Bounds.GetMin();
  double const dRadius = GetGroundRadius(scene);
  // Below the model by more than the depth buffer's step at the far side, and too little to be seen.
  double const z = scene.m_Bounds.m_dMin[2] - 0.0005 * vecSize.Length() - scene.m_vecOrigin.z;
  QXC::QXVertexDataPackage vertices;
  vertices.SetVertexNum(Sectors + 1, 0);
  vertices.SetNormalNum(Sectors + 1, 0);
  vertices.SetColorNum(Sectors + 1, 0);
  QXC::QXIndexPackage indices;
  indices.SetIndexNum(3 * Sectors);
  indices.m_arrPassNames.Add(QXC::QdcUnicodeString());
  for (int i = 0; i <= Sectors; ++i) {
    double const dAngle = 2.0 * std::numbers::pi * i / Sectors;
    // The last one is the middle.
    double const dDistance = i == Sectors ? 0.0 : dRadius;
    vertices.m_pVertices[3 * i] = static_cast<float>(dDistance * std::cos(dAngle));
    vertices.m_pVertices[3 * i + 1] = static_cast<float>(dDistance * std::sin(dAngle));
    vertices.m_pVertices[3 * i + 2] = static_cast<float>(z);
    vertices.m_pNormals[3 * i + 2] = 1.0F;
    vertices.m_pColors[i] = QDC::QDCRGBA(228, 226, 214, 255);
    if (i == Sectors) continue;
    indices.GetIndices16()[3 * i] = Sectors;
    indices.GetIndices16()[3 * i + 1] = static_cast<unsigned short>(i);
    indices.GetIndices16()[3 * i + 2] = static_cast<unsigned short>((i + 1) % Sectors);
  }
  QXC::QXMatrix4d matBase;
  matBase.SetTrans(scene.m_vecOrigin);
  QXC::QdcArray<QXC::QXIndexPackage*> arrIndices;
  arrIndices.Add(&indices);
  std::map<QXC::QdcUnicodeString, QXC::QXPass*> mapNoPasses;
  auto pGeometry = std::make_unique<QXC::QXStaticGeometry>();
  pGeometry->AddVertexDataAndIndexPackage(&vertices, arrIndices, mapNoPasses, matBase, nullptr, -1);
  pGeometry->AssignStaticGeometry(matBase, 1);
  pGeometry->SetLocalViewMatrix(matBase);
  return pGeometry;
}

QXC::QXBoundingBox FindStaticBounds(QXC::QXStaticGeometry const& geometry) {
  BoundsFinder finder;
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry))
    finder(*pBucket->m_pVertexPackage, {}, QXC::QXMatrix4d());
  return finder.m_Bounds;
}

unsigned int CountTriangles(QXC::QXStaticGeometry const& geometry) {
  unsigned int nCount = 0;
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry))
    for (QXC::QXIndexPackage const* pIndices : GetTriangleRanges(*pBucket))
      nCount += static_cast<unsigned int>(pIndices->m_nIndexNum) / 3;
  return nCount;
}

unsigned int CountVertices(QXC::QXStaticGeometry const& geometry) {
  unsigned int nCount = 0;
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry))
    nCount += pBucket->m_pVertexPackage->m_nVertexNum;
  return nCount;
}

unsigned int CountObjects(QXC::QXStaticGeometry const& geometry) {
  std::size_t nCount = 0;
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry)) nCount += pBucket->m_mapSubObjects.size();
  return static_cast<unsigned int>(nCount);
}

}  // namespace QXApp
