/// @file
/// Small models for tests.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace QXC {

/// A mesh of positions and 16-bit triangles, with normals that look up.
inline QXModelMesh* MakeMesh(std::vector<float> const& vecPositions, std::vector<unsigned short> const& vecIndices) {
  auto* pMesh = new QXModelMesh;
  pMesh->m_pVertexPackage = new QXVertexDataPackage;
  QXVertexDataPackage& package = *pMesh->m_pVertexPackage;
  unsigned int const nCount = static_cast<unsigned int>(vecPositions.size() / 3);
  package.SetVertexNum(nCount, 0);
  package.SetNormalNum(nCount, 0);
  std::copy(vecPositions.begin(), vecPositions.end(), package.m_pVertices);
  for (unsigned int i = 0; i < nCount; ++i) package.m_pNormals[3 * i + 2] = 1.0f;
  auto* pIndices = new QXIndexPackage;
  pIndices->SetIndexNum(static_cast<int>(vecIndices.size()));
  std::copy(vecIndices.begin(), vecIndices.end(), pIndices->GetIndices16());
  pMesh->m_arrIndexPackages.Add(pIndices);
  pMesh->UpdateBounds();
  return pMesh;
}

/// One triangle (0, 0, 0), (2, 0, 0), (0, 3, 1).
inline QXModelMesh* MakeTriangle() {
  return MakeMesh({0.0f, 0.0f, 0.0f, 2.0f, 0.0f, 0.0f, 0.0f, 3.0f, 1.0f}, {0, 1, 2});
}

inline QXModelNode MakeNode(int nMesh, double dX, double dY, double dZ) {
  QXModelNode node;
  node.m_nMesh = nMesh;
  node.m_matWorld.SetTrans(QXVector3d(dX, dY, dZ));
  return node;
}

}  // namespace QXC
