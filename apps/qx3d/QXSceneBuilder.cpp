#include <apps/qx3d/QXSceneBuilder.h>

#include <apps/qx3d/QXModelColors.h>
#include <apps/qx3d/QXVertexCollector.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace QXApp {

namespace {

using QXC::QXVector3d;

/// A drawable is closed beyond this many vertices: large enough for few draw operations, small enough for buffers of any
/// device.
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

/// Middles of triangles on the two level axes; where most of them lie is the core.
struct TriangleMiddles {
  std::vector<float> m_vecX;
  std::vector<float> m_vecY;
};

class Merger {
public:
  Merger(QXC::ModelDataInfo const& model, QXScene& scene) : m_Scene(scene), m_Colors(model, scene.m_Bounds) {}

  void AddNode(QXC::QXModelMesh const& mesh, QXC::QXMatrix4d const& matWorld) {
    bool const bTransparent = QXModelColors::IsTransparent(mesh);
    QXVertexCollector& collector = bTransparent ? m_Transparent : m_Opaque;
    QXC::QXVertexDataPackage const& package = *mesh.m_pVertexPackage;
    if (!collector.IsEmpty() && collector.GetVertexCount() + package.m_nVertexNum > MaxVertices) Close(bTransparent);
    NormalTransform const normals(matWorld);
    unsigned int const nBase = collector.GetVertexCount();
    for (unsigned int i = 0; i < package.m_nVertexNum; ++i) {
      QXVector3d const vecPosition = Transform(package.m_pVertices + 3 * std::size_t{i}, matWorld);
      QXVector3d const vecNormal = normals.Apply(package.m_pNormals + 3 * std::size_t{i});
      collector.AddVertex(
          vecPosition - m_Scene.m_vecOrigin, vecNormal, m_Colors.GetColor(mesh, i, vecPosition, vecNormal));
    }
    for (QXC::QXIndexPackage const* pPackage : mesh.m_arrIndexPackages)
      AddTriangles(*pPackage, nBase, normals.IsMirrored(), collector);
    m_Scene.m_nVertices += package.m_nVertexNum;
  }

  void Finish() {
    Close(false);
    Close(true);
  }

private:
  static unsigned int GetIndex(QXC::QXIndexPackage const& package, unsigned int i) {
    return package.m_nIndexType == 1 ? package.GetIndices32()[i] : package.GetIndices16()[i];
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

  void Close(bool bTransparent) {
    QXVertexCollector& collector = bTransparent ? m_Transparent : m_Opaque;
    if (collector.IsEmpty()) return;
    m_Scene.m_vecParts.push_back({collector.Finish(m_Scene.m_vecOrigin), bTransparent});
  }

  QXScene& m_Scene;
  QXModelColors m_Colors;
  QXVertexCollector m_Opaque;
  QXVertexCollector m_Transparent;
};

/// Collects the middle of every triangle's first corner: one corner tells as well where triangles crowd.
TriangleMiddles CollectMiddles(QXC::ModelDataInfo const& model, QXVector3d const& vecOrigin) {
  TriangleMiddles middles;
  for (int i = 0; i < model.GetNodeCount(); ++i) {
    QXC::QXModelNode const& node = *model.GetNode(i);
    QXC::QXModelMesh const& mesh = *model.GetMesh(node.m_nMesh);
    for (QXC::QXIndexPackage const* pPackage : mesh.m_arrIndexPackages) {
      for (int nIndex = 0; nIndex < pPackage->m_nIndexNum; nIndex += 3) {
        std::size_t const nVertex =
            pPackage->m_nIndexType == 1 ? pPackage->GetIndices32()[nIndex] : pPackage->GetIndices16()[nIndex];
        QXVector3d const vec = Transform(mesh.m_pVertexPackage->m_pVertices + 3 * nVertex, node.m_matWorld) - vecOrigin;
        middles.m_vecX.push_back(static_cast<float>(vec.x));
        middles.m_vecY.push_back(static_cast<float>(vec.y));
      }
    }
  }
  return middles;
}

/// Value below which a part of all values lies.
double Quantile(std::vector<float>& vecValues, double dPart) {
  std::size_t const nPlace = static_cast<std::size_t>(dPart * static_cast<double>(vecValues.size() - 1) + 0.5);
  std::nth_element(vecValues.begin(), vecValues.begin() + static_cast<std::ptrdiff_t>(nPlace), vecValues.end());
  return static_cast<double>(vecValues[nPlace]);
}

QXC::QXBoundingBox FindCore(QXC::ModelDataInfo const& model, QXScene const& scene) {
  TriangleMiddles middles = CollectMiddles(model, scene.m_vecOrigin);
  constexpr double Outside = 0.025;
  // Of a handful of triangles every one counts.
  if (middles.m_vecX.size() < 1000) return scene.m_Bounds;
  QXVector3d const& origin = scene.m_vecOrigin;
  return QXC::QXBoundingBox(QXVector3d(origin.x + Quantile(middles.m_vecX, Outside),
                                origin.y + Quantile(middles.m_vecY, Outside), scene.m_Bounds.m_dMin[2]),
      QXVector3d(origin.x + Quantile(middles.m_vecX, 1.0 - Outside), origin.y + Quantile(middles.m_vecY, 1.0 - Outside),
          scene.m_Bounds.m_dMax[2]));
}

}  // namespace

QXScene BuildScene(QXC::ModelDataInfo const& model) {
  QXScene scene;
  scene.m_Bounds = model.GetBoundingBox();
  QXVector3d const vecCenter = scene.m_Bounds.GetCenter();
  scene.m_vecOrigin = QXVector3d(std::round(vecCenter.x), std::round(vecCenter.y), std::round(vecCenter.z));
  Merger merger(model, scene);
  for (int i = 0; i < model.GetNodeCount(); ++i) {
    QXC::QXModelNode const& node = *model.GetNode(i);
    merger.AddNode(*model.GetMesh(node.m_nMesh), node.m_matWorld);
  }
  merger.Finish();
  scene.m_Core = FindCore(model, scene);
  return scene;
}

double GetGroundRadius(QXScene const& scene) {
  QXVector3d const vecSize = scene.m_Bounds.GetMax() - scene.m_Bounds.GetMin();
  return 6.0 * std::max({vecSize.x, vecSize.y, vecSize.z, 1e-3});
}

QXScenePart BuildGround(QXScene const& scene) {
  constexpr int Sectors = 48;
  unsigned int const nColor = QDC::QDCRGBA(206, 204, 192, 255);
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
  return {collector.Finish(scene.m_vecOrigin), false};
}

}  // namespace QXApp
