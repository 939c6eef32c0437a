#include <apps/qx3d/QXSceneBuilder.h>

#include <apps/qx3d/QXModelColors.h>
#include <apps/qx3d/QXTextureChoice.h>
#include <apps/qx3d/QXVertexCollector.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <numbers>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXVector3d;

/// A drawable is closed beyond this many vertices: large enough for few draw operations, small enough for buffers of
/// any device.
constexpr unsigned int MaxVertices = 1000000;

/// Turns normals by a placement: the cross products of its axes, which stay right under uneven scaling.
class NormalTransform {
public:
  explicit NormalTransform(QXC::QXMatrix4d const& mat) {
    QXVector3d const rows[3] = {QXVector3d(mat[0][0], mat[0][1], mat[0][2]),
        QXVector3d(mat[1][0], mat[1][1], mat[1][2]), QXVector3d(mat[2][0], mat[2][1], mat[2][2])};
    for (int i = 0; i < 3; ++i) m_vecRows[i] = rows[(i + 1) % 3].CrossProduct(rows[(i + 2) % 3]);
    m_bMirrored = rows[0].DotProduct(m_vecRows[0]) < 0.0;
  }
  QXVector3d Apply(float const* p) const {
    double const dSign = m_bMirrored ? -1.0 : 1.0;
    double const x = dSign * static_cast<double>(p[0]);
    double const y = dSign * static_cast<double>(p[1]);
    double const z = dSign * static_cast<double>(p[2]);
    QXVector3d vec(x * m_vecRows[0].x + y * m_vecRows[1].x + z * m_vecRows[2].x,
        x * m_vecRows[0].y + y * m_vecRows[1].y + z * m_vecRows[2].y,
        x * m_vecRows[0].z + y * m_vecRows[1].z + z * m_vecRows[2].z);
    return vec.Normalize();
  }
  /// A mirror turns the corners of every triangle around.
  bool IsMirrored() const { return m_bMirrored; }

private:
  QXVector3d m_vecRows[3];
  bool m_bMirrored = false;
};

QXVector3d Transform(float const* p, QXC::QXMatrix4d const& mat) {
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]))
      .MultiplyMatrix(mat);
}

unsigned int GetIndex(QXC::QXIndexPackage const& package, unsigned int i) {
  return package.m_nIndexType == 1 ? package.GetIndices32()[i] : package.GetIndices16()[i];
}

/// So many transparent placements have a drawable of their own, by which the renderer sorts them; a forest of more is
/// not worth as many draw operations.
constexpr int MaxSortedParts = 1000;

/// What the triangles of one drawable have in common; opaque ones come first.
struct PartKey {
  bool m_bTransparent = false;
  /// Number of a transparent placement, MaxSortedParts for all further ones and for what is opaque.
  int m_nPlacement = MaxSortedParts;
  /// Whose pictures the texture is about; those of all models share drawables without one.
  int m_nModel = 0;
  QXTextureKey m_Texture;
  /// Cell of the world, level axes, counted from the scene's origin.
  int m_nCellX = 0;
  int m_nCellY = 0;

  // The check takes the zero inside the comparison that the compiler writes for a pointer.
  auto operator<=>(PartKey const&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// One mesh as one node of a model places it, in one place of the model.
struct PlacedMesh {
  QXC::QXModelMesh const& m_Mesh;
  QXC::QXMatrix4d const& m_matNode;
  QXC::QXMatrix4d const& m_matPlace;

  QXC::QXMatrix4d GetWorldMatrix() const { return m_matNode * m_matPlace; }
  QXVector3d GetCenter() const {
    return m_Mesh.m_Bounds.GetCenter().MultiplyMatrix(m_matNode).MultiplyMatrix(m_matPlace);
  }
};

class Merger {
public:
  explicit Merger(QXScene& scene) : m_Scene(scene), m_dCellSize(GetCellSize(scene.m_Bounds)) {}

  void AddModel(QXPlacedModel const& placed, int nModel) {
    QXC::ModelDataInfo const& model = *placed.m_pModel;
    QXModelColors const colors(model, model.GetBoundingBox(), *placed.m_pPictures);
    for (QXC::QXMatrix4d const& matPlace : placed.m_vecPlaces) {
      for (int i = 0; i < model.GetNodeCount(); ++i) {
        QXC::QXModelNode const& node = *model.GetNode(i);
        AddNode({*model.GetMesh(node.m_nMesh), node.m_matWorld, matPlace}, *placed.m_pPictures, nModel, colors);
      }
    }
  }

  void Finish(std::vector<QXPlacedModel> const& vecModels) {
    for (auto& [key, part] : m_mapParts)
      Close(key, part, *vecModels[static_cast<std::size_t>(key.m_nModel)].m_pPictures);
  }

private:
  struct Part {
    QXVertexCollector m_Collector;
    QXVector3d m_vecOrigin;
  };

  void AddNode(PlacedMesh const& placed, QXModelPictures const& pictures, int nModel, QXModelColors const& colors) {
    QXC::QXModelMesh const& mesh = placed.m_Mesh;
    QXTextureChoice const texture(mesh, pictures);
    QXC::QXVertexDataPackage const& package = *mesh.m_pVertexPackage;
    PartKey const key = MakeKey(placed, texture, nModel, colors);
    Part& part = m_mapParts[key];
    QXVertexCollector& collector = part.m_Collector;
    part.m_vecOrigin = GetOrigin(key, placed);
    if (!collector.IsEmpty() && collector.GetVertexCount() + package.m_nVertexNum > MaxVertices)
      Close(key, part, pictures);
    QXC::QXMatrix4d const matWorld = placed.GetWorldMatrix();
    NormalTransform const normals(matWorld);
    NormalTransform const modelNormals(placed.m_matNode);
    bool const bUsesPlace = colors.UsesPlace(mesh);
    unsigned int const nBase = collector.GetVertexCount();
    for (unsigned int i = 0; i < package.m_nVertexNum; ++i) {
      float const* pPosition = package.m_pVertices + 3 * std::size_t{i};
      float const* pNormal = package.m_pNormals + 3 * std::size_t{i};
      unsigned int const nColor =
          bUsesPlace ? colors.GetColor(mesh, i, Transform(pPosition, placed.m_matNode), modelNormals.Apply(pNormal))
                     : colors.GetColor(mesh, i, QXVector3d(), QXVector3d());
      collector.AddVertex(Transform(pPosition, matWorld) - part.m_vecOrigin, normals.Apply(pNormal), nColor);
      if (key.m_Texture.m_nImage < 0) continue;
      QXVector3d const vecPicture = texture.GetTexCoord(i);
      collector.AddTexCoord(vecPicture.x, vecPicture.y);
    }
    for (QXC::QXIndexPackage const* pPackage : mesh.m_arrIndexPackages)
      AddTriangles(*pPackage, nBase, normals.IsMirrored(), collector);
    m_Scene.m_nVertices += package.m_nVertexNum;
  }

  PartKey MakeKey(PlacedMesh const& placed, QXTextureChoice const& texture, int nModel, QXModelColors const& colors) {
    PartKey key;
    key.m_bTransparent = colors.IsTransparent(placed.m_Mesh) || texture.IsTransparent();
    key.m_Texture = texture.GetKey();
    if (key.m_Texture.m_nImage >= 0) key.m_nModel = nModel;
    if (key.m_bTransparent && m_nSortedParts < MaxSortedParts) {
      key.m_nPlacement = m_nSortedParts++;
    } else {
      QXVector3d const vec = placed.GetCenter() - m_Scene.m_vecOrigin;
      key.m_nCellX = static_cast<int>(std::lround(vec.x / m_dCellSize));
      key.m_nCellY = static_cast<int>(std::lround(vec.y / m_dCellSize));
    }
    return key;
  }

  /// Where the zero of a part's coordinates stands: where floats are fine, and of a transparent one by which the renderer
  /// sorts it.
  QXVector3d GetOrigin(PartKey const& key, PlacedMesh const& placed) const {
    if (key.m_nPlacement != MaxSortedParts) return placed.GetCenter();
    return m_Scene.m_vecOrigin +
           QXVector3d(std::round(key.m_nCellX * m_dCellSize), std::round(key.m_nCellY * m_dCellSize), 0.0);
  }

  void AddTriangles(
      QXC::QXIndexPackage const& package, unsigned int nBase, bool bMirrored, QXVertexCollector& collector) {
    unsigned int const nCount = static_cast<unsigned int>(package.m_nIndexNum) / 3;
    for (unsigned int i = 0; i < nCount; ++i) {
      collector.AddIndex(nBase + GetIndex(package, 3 * i));
      collector.AddIndex(nBase + GetIndex(package, 3 * i + (bMirrored ? 2 : 1)));
      collector.AddIndex(nBase + GetIndex(package, 3 * i + (bMirrored ? 1 : 2)));
    }
    m_Scene.m_nTriangles += nCount;
  }

  void Close(PartKey const& key, Part& part, QXModelPictures const& pictures) {
    if (part.m_Collector.IsEmpty()) return;
    std::unique_ptr<QXC::QXTexturePackage> pTexture;
    if (key.m_Texture.m_nImage >= 0) {
      pTexture = std::make_unique<QXC::QXTexturePackage>();
      pTexture->m_strTextureName = QXC::QdcUnicodeString::FromUTF8(pictures.GetTextureName(key.m_Texture).c_str());
    }
    m_Scene.m_vecParts.push_back({part.m_Collector.Finish(part.m_vecOrigin, std::move(pTexture)), key.m_bTransparent,
        key.m_nModel, key.m_Texture});
  }

  QXScene& m_Scene;
  double m_dCellSize;
  std::map<PartKey, Part> m_mapParts;
  int m_nSortedParts = 0;
};

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

void CollectPlaces(PlacedMesh const& placed, TrianglePlaces& places) {
  QXC::QXModelMesh const& mesh = placed.m_Mesh;
  QXC::QXMatrix4d const matWorld = placed.GetWorldMatrix();
  float const* pVertices = mesh.m_pVertexPackage->m_pVertices;
  for (QXC::QXIndexPackage const* pPackage : mesh.m_arrIndexPackages) {
    for (unsigned int i = 0; i + 2 < static_cast<unsigned int>(pPackage->m_nIndexNum); i += 3) {
      QXVector3d const a = Transform(pVertices + 3 * std::size_t{GetIndex(*pPackage, i)}, matWorld);
      QXVector3d const b = Transform(pVertices + 3 * std::size_t{GetIndex(*pPackage, i + 1)}, matWorld);
      QXVector3d const c = Transform(pVertices + 3 * std::size_t{GetIndex(*pPackage, i + 2)}, matWorld);
      double const dArea = (b - a).CrossProduct(c - a).Length();
      // Each corner with a share: the middle alone would cut half of a large triangle away.
      for (QXVector3d const* p : {&a, &b, &c}) {
        places.m_vecX.push_back({p->x, dArea});
        places.m_vecY.push_back({p->y, dArea});
      }
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

/// Calls a function with every mesh as placed.
template <class Function>
void ForEachPlacedMesh(std::vector<QXPlacedModel> const& vecModels, Function const& function) {
  for (QXPlacedModel const& placed : vecModels) {
    for (QXC::QXMatrix4d const& matPlace : placed.m_vecPlaces) {
      for (int i = 0; i < placed.m_pModel->GetNodeCount(); ++i) {
        QXC::QXModelNode const& node = *placed.m_pModel->GetNode(i);
        function(PlacedMesh{*placed.m_pModel->GetMesh(node.m_nMesh), node.m_matWorld, matPlace});
      }
    }
  }
}

/// Box of all vertices as placed; a null box without any.
QXC::QXBoundingBox FindBounds(std::vector<QXPlacedModel> const& vecModels) {
  QXC::QXBoundingBox bounds;
  bounds.SetNULL();
  ForEachPlacedMesh(vecModels, [&bounds](PlacedMesh const& placed) {
    QXC::QXVertexDataPackage const& package = *placed.m_Mesh.m_pVertexPackage;
    QXC::QXMatrix4d const matWorld = placed.GetWorldMatrix();
    QXVector3d vecMin(1e300, 1e300, 1e300);
    QXVector3d vecMax(-1e300, -1e300, -1e300);
    for (unsigned int i = 0; i < package.m_nVertexNum; ++i) {
      QXVector3d const vec = Transform(package.m_pVertices + 3 * std::size_t{i}, matWorld);
      vecMin = QXVector3d(std::min(vecMin.x, vec.x), std::min(vecMin.y, vec.y), std::min(vecMin.z, vec.z));
      vecMax = QXVector3d(std::max(vecMax.x, vec.x), std::max(vecMax.y, vec.y), std::max(vecMax.z, vec.z));
    }
    if (package.m_nVertexNum > 0) bounds.Merge(QXC::QXBoundingBox(vecMin, vecMax));
  });
  return bounds;
}

/// @param models  box of the models alone
QXC::QXBoundingBox FindCore(
    std::vector<QXPlacedModel> const& vecModels, QXC::QXBoundingBox const& models, unsigned int nTriangles) {
  // Of a handful of triangles every one counts.
  if (nTriangles < 1000) return models;
  TrianglePlaces places;
  ForEachPlacedMesh(vecModels, [&places](PlacedMesh const& placed) { CollectPlaces(placed, places); });
  QXC::QXBoundingBox core = models;
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

QXScene BuildScene(std::vector<QXPlacedModel> const& vecModels, QXC::QXBoundingBox const& others) {
  QXScene scene;
  QXC::QXBoundingBox const models = FindBounds(vecModels);
  scene.m_Bounds = models;
  scene.m_Bounds.Merge(others);
  QXVector3d const vecCenter = scene.m_Bounds.GetCenter();
  scene.m_vecOrigin = QXVector3d(std::round(vecCenter.x), std::round(vecCenter.y), std::round(vecCenter.z));
  Merger merger(scene);
  for (std::size_t i = 0; i < vecModels.size(); ++i) merger.AddModel(vecModels[i], static_cast<int>(i));
  merger.Finish(vecModels);
  scene.m_Core = FindCore(vecModels, models, scene.m_nTriangles);
  scene.m_Core.Merge(others);
  return scene;
}

QXScene BuildScene(QXC::ModelDataInfo const& model, QXModelPictures const& pictures) {
  QXC::QXBoundingBox nothing;
  nothing.SetNULL();
  return BuildScene({{&model, &pictures, {QXC::QXMatrix4d()}}}, nothing);
}

double GetCellSize(QXC::QXBoundingBox const& bounds) {
  QXVector3d const vecSize = bounds.GetMax() - bounds.GetMin();
  return std::max({65536.0, vecSize.x / 32.0, vecSize.y / 32.0});
}

double GetGroundRadius(QXScene const& scene) {
  QXVector3d const vecSize = scene.m_Bounds.GetMax() - scene.m_Bounds.GetMin();
  return 6.0 * std::max({vecSize.x, vecSize.y, vecSize.z, 1e-3});
}

QXScenePart BuildGround(QXScene const& scene) {
  constexpr int Sectors = 48;
  unsigned int const nColor = QDC::QDCRGBA(228, 226, 214, 255);
  QXVector3d const vecSize = scene.m_Bounds.GetMax() - scene.m_Bounds.GetMin();
  double const dRadius = GetGroundRadius(scene);
  // Below the model by more than the depth buffer's step at the far side, and too little to be seen.
  double const z = scene.m_Bounds.m_dMin[2] - 0.0005 * vecSize.Length() - scene.m_vecOrigin.z;
  QXVertexCollector collector;
  unsigned int const nMiddle = collector.AddVertex(QXVector3d(0.0, 0.0, z), QXVector3d::UNIT_Z, nColor);
  for (int i = 0; i < Sectors; ++i) {
    double const dAngle = 2.0 * std::numbers::pi * i / Sectors;
    QXVector3d const vec(dRadius * std::cos(dAngle), dRadius * std::sin(dAngle), z);
    collector.AddVertex(vec, QXVector3d::UNIT_Z, nColor);
  }
  for (unsigned int i = 0; i < Sectors; ++i) {
    collector.AddIndex(nMiddle);
    collector.AddIndex(nMiddle + 1 + i);
    collector.AddIndex(nMiddle + 1 + (i + 1) % Sectors);
  }
  return {collector.Finish(scene.m_vecOrigin, nullptr), false, 0, QXTextureKey()};
}

}  // namespace QXApp
