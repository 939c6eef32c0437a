#include <apps/qx3d/QXReadyMesh.h>

#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXModelColors.h>
#include <apps/qx3d/QXTextureChoice.h>
#include <apps/qx3d/QXVertexCollector.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXVector3d;

QXVector3d Widen(float const* p) {
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]));
}

void Narrow(QXVector3d const& vec, float* p) {
  p[0] = static_cast<float>(vec.x);
  p[1] = static_cast<float>(vec.y);
  p[2] = static_cast<float>(vec.z);
}

QXVector3d GetRow(QXC::QXMatrix4d const& mat, int nRow) {
  return QXVector3d(mat[nRow][0], mat[nRow][1], mat[nRow][2]);
}

/// Turns normals by a placement: the cross products of its axes, which stay right under uneven scaling.
class NormalTransform {
public:
  explicit NormalTransform(QXC::QXMatrix4d const& mat) {
    for (int i = 0; i < 3; ++i) m_vecRows[i] = GetRow(mat, (i + 1) % 3).CrossProduct(GetRow(mat, (i + 2) % 3));
    m_bMirrored = GetRow(mat, 0).DotProduct(m_vecRows[0]) < 0.0;
  }
  QXVector3d Apply(float const* p) const {
    QXVector3d const n = m_bMirrored ? -Widen(p) : Widen(p);
    QXVector3d vec(n.x * m_vecRows[0].x + n.y * m_vecRows[1].x + n.z * m_vecRows[2].x,
        n.x * m_vecRows[0].y + n.y * m_vecRows[1].y + n.z * m_vecRows[2].y,
        n.x * m_vecRows[0].z + n.y * m_vecRows[1].z + n.z * m_vecRows[2].z);
    return vec.Normalize();
  }
  /// A mirror turns the corners of every triangle around.
  bool IsMirrored() const { return m_bMirrored; }

private:
  QXVector3d m_vecRows[3];
  bool m_bMirrored = false;
};

void SetIndex(QXC::QXIndexPackage& package, int i, unsigned int nVertex) {
  if (package.m_nIndexType == 1)
    package.GetIndices32()[i] = nVertex;
  else
    package.GetIndices16()[i] = static_cast<unsigned short>(nVertex);
}

/// All ranges of a mesh in one.
std::unique_ptr<QXC::QXIndexPackage> JoinIndices(QXC::QXModelMesh const& mesh) {
  auto pIndices = std::make_unique<QXC::QXIndexPackage>();
  auto const nCount = static_cast<int>(3 * mesh.GetTriangleCount());
  if (mesh.m_pVertexPackage->m_nVertexNum > 65535)
    pIndices->SetIndexNum32(nCount);
  else
    pIndices->SetIndexNum(nCount);
  int nNext = 0;
  for (QXC::QXIndexPackage const* pRange : mesh.m_arrIndexPackages)
    for (int i = 0; i < pRange->m_nIndexNum / 3 * 3; ++i) SetIndex(*pIndices, nNext++, GetIndex(*pRange, i));
  return pIndices;
}

}  // namespace

QXReadyMesh MakeReadyMesh(QXC::QXModelMesh const& mesh, QXC::QXMatrix4d const& matNode, QXModelColors const& colors,
    QXTextureChoice const& texture) {
  QXC::QXVertexDataPackage const& source = *mesh.m_pVertexPackage;
  QXReadyMesh ready;
  ready.m_pVertices = std::make_unique<QXC::QXVertexDataPackage>();
  QXC::QXVertexDataPackage& target = *ready.m_pVertices;
  std::size_t const nVertices = source.m_nVertexNum;
  target.SetVertexNum(source.m_nVertexNum, 0);
  target.SetNormalNum(source.m_nVertexNum, 0);
  target.SetColorNum(source.m_nVertexNum, 0);
  std::copy_n(source.m_pVertices, 3 * nVertices, target.m_pVertices);
  if (nVertices > 0) std::copy_n(source.m_pNormals, 3 * nVertices, target.m_pNormals);
  NormalTransform const normals(matNode);
  bool const bUsesPlace = colors.UsesPlace(mesh);
  for (unsigned int i = 0; i < source.m_nVertexNum; ++i) {
    std::size_t const n = 3 * std::size_t{i};
    target.m_pColors[i] = bUsesPlace ? colors.GetColor(mesh, i, Widen(source.m_pVertices + n).MultiplyMatrix(matNode),
                                           normals.Apply(source.m_pNormals + n))
                                     : colors.GetColor(mesh, i, QXVector3d(), QXVector3d());
  }
  if (texture.GetKey().m_nImage >= 0) {
    target.m_nTexDims[0] = 4;
    target.SetTexCoordNum(0, source.m_nVertexNum, 0);
    for (unsigned int i = 0; i < source.m_nVertexNum; ++i) {
      QXVector3d const vecPlace = texture.GetTexCoord(i);
      target.m_pTexCoords[0][4 * std::size_t{i}] = static_cast<float>(vecPlace.x);
      target.m_pTexCoords[0][4 * std::size_t{i} + 1] = static_cast<float>(vecPlace.y);
    }
  }
  ready.m_pIndices = JoinIndices(mesh);
  return ready;
}

bool IsSimilarity(QXC::QXMatrix4d const& mat) {
  QXVector3d const x = GetRow(mat, 0);
  QXVector3d const y = GetRow(mat, 1);
  QXVector3d const z = GetRow(mat, 2);
  double const dSize = x.Length2();
  // Far below what a colour channel shows of a normal.
  double const dTolerance = 1e-6 * dSize;
  for (double const dOff :
      {x.DotProduct(y), y.DotProduct(z), z.DotProduct(x), y.Length2() - dSize, z.Length2() - dSize})
    if (!(std::abs(dOff) <= dTolerance)) return false;
  return dSize > 0.0 && x.CrossProduct(y).DotProduct(z) > 0.0;
}

QXReadyMesh PlaceReadyMesh(QXReadyMesh const& mesh, QXC::QXMatrix4d const& matWorld, QXVector3d const& vecOrigin) {
  QXReadyMesh placed{std::make_unique<QXC::QXVertexDataPackage>(*mesh.m_pVertices),
      std::make_unique<QXC::QXIndexPackage>(*mesh.m_pIndices)};
  NormalTransform const normals(matWorld);
  QXC::QXVertexDataPackage& vertices = *placed.m_pVertices;
  for (std::size_t i = 0; i < vertices.m_nVertexNum; ++i) {
    float* const pPosition = vertices.m_pVertices + 3 * i;
    Narrow(Widen(pPosition).MultiplyMatrix(matWorld) - vecOrigin, pPosition);
    Narrow(normals.Apply(vertices.m_pNormals + 3 * i), vertices.m_pNormals + 3 * i);
  }
  QXC::QXIndexPackage& indices = *placed.m_pIndices;
  for (int i = 0; normals.IsMirrored() && i < indices.m_nIndexNum; i += 3) {
    unsigned int const nSecond = GetIndex(indices, i + 1);
    SetIndex(indices, i + 1, GetIndex(indices, i + 2));
    SetIndex(indices, i + 2, nSecond);
  }
  return placed;
}

void AppendReadyMesh(QXReadyMesh const& placed, QXVertexCollector& collector) {
  QXC::QXVertexDataPackage const& vertices = *placed.m_pVertices;
  unsigned int const nFirst = collector.GetVertexCount();
  for (std::size_t i = 0; i < vertices.m_nVertexNum; ++i) {
    collector.AddVertex(Widen(vertices.m_pVertices + 3 * i), Widen(vertices.m_pNormals + 3 * i), vertices.m_pColors[i]);
    if (vertices.m_nTexCoordNums[0] == 0) continue;
    float const* p = vertices.m_pTexCoords[0] + 4 * i;
    collector.AddTexCoord(static_cast<double>(p[0]), static_cast<double>(p[1]));
  }
  for (int i = 0; i < placed.m_pIndices->m_nIndexNum; ++i) collector.AddIndex(nFirst + GetIndex(*placed.m_pIndices, i));
}

std::unique_ptr<QXC::QXRenderOperationMultiIndex> MakeOperation(QXReadyMesh const& mesh,
    QXC::QXMatrix4d const& matWorld, QXVector3d const& vecOrigin, std::unique_ptr<QXC::QXTexturePackage> pTexture) {
  QXVertexCollector collector;
  AppendReadyMesh(PlaceReadyMesh(mesh, matWorld, vecOrigin), collector);
  return collector.Finish(vecOrigin, std::move(pTexture));
}

}  // namespace QXApp
