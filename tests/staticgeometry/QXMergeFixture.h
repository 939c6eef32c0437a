/// @file
/// Meshes of a few vertices, merged: what the tests of the merge stand on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QXStaticGeometryParts.h"

namespace QXC {

using testing::ElementsAre;
using Floats = std::vector<float>;
using Words = std::vector<unsigned int>;

inline std::vector<int> Ints(QdcArray<int> const& arrItems) {
  return {arrItems.begin(), arrItems.end()};
}

/// Adds meshes of a few vertices and merges them.
class QXStaticGeometryBuild : public testing::Test {
protected:
  static QXMatrix4d QuarterTurn(double dX = 0.0, double dY = 0.0, double dZ = 0.0) {
    QXMatrix4d matrix;  // x becomes y, y becomes -x
    matrix[0][0] = 0.0;
    matrix[0][1] = 1.0;
    matrix[1][0] = -1.0;
    matrix[1][1] = 0.0;
    matrix.SetTrans(QXVector3d(dX, dY, dZ));
    return matrix;
  }

  QXVertexDataPackage& MakeMesh(Floats const& positions, unsigned short nDim = 3) {
    QXVertexDataPackage& mesh = m_host.MakeCounted(0);
    mesh.m_nVertexDim = nDim;
    mesh.SetVertexNum(static_cast<unsigned int>(positions.size() / nDim), 0);
    std::copy(positions.begin(), positions.end(), mesh.m_pVertices);
    return mesh;
  }

  static void SetNormals(QXVertexDataPackage& mesh, Floats const& normals, unsigned short nDim = 3) {
    mesh.m_nNormalDim = nDim;
    mesh.SetNormalNum(static_cast<unsigned int>(normals.size() / nDim), 0);
    std::copy(normals.begin(), normals.end(), mesh.m_pNormals);
  }

  static void SetCoords(QXVertexDataPackage& mesh, unsigned int nUnit, Floats const& coords, unsigned short nDim = 2) {
    mesh.m_nTexDims[nUnit] = nDim;
    mesh.SetTexCoordNum(nUnit, static_cast<unsigned int>(coords.size() / nDim), 0);
    std::copy(coords.begin(), coords.end(), mesh.m_pTexCoords[nUnit]);
  }

  static void SetColors(QXVertexDataPackage& mesh, Words const& colors) {
    mesh.SetColorNum(static_cast<unsigned int>(colors.size()), 0);
    std::copy(colors.begin(), colors.end(), mesh.m_pColors);
  }

  QXIndexPackage& MakeTriangles(std::wstring const& strPass, std::vector<unsigned short> const& indices) {
    QXIndexPackage& package = m_host.MakeIndices({strPass});
    package.SetIndexNum(static_cast<int>(indices.size()));
    std::copy(indices.begin(), indices.end(), package.GetIndices16());
    return package;
  }

  void Add(QXVertexDataPackage& mesh, QXMatrix4d const& matrix = QXMatrix4d(),
      std::vector<QXIndexPackage*> const& packages = {}, QXSubObjectInfo* pSubObject = nullptr) {
    m_host.Add(m_geometry, mesh, packages, pSubObject, m_nType, matrix);
  }

  void Merge(QXMatrix4d const& base = QXMatrix4d(), unsigned char bNoTransform = 0) {
    m_geometry.AssignStaticGeometry(base, bNoTransform);
  }

  QXStaticGeometryBucket& Bucket() { return *m_geometry.m_vecBuckets16.at(0); }
  QXVertexDataPackage& Merged() { return *Bucket().m_pVertexPackage; }
  std::vector<QXBucketIndexPackage>& Records(wchar_t const* szKey) { return Bucket().m_mapPassIndices.at(szKey); }

  Floats Positions() {
    QXVertexDataPackage const& p = Merged();
    return {p.m_pVertices, p.m_pVertices + std::size_t{p.m_nVertexNum} * p.m_nVertexDim};
  }
  Floats Normals() {
    QXVertexDataPackage const& p = Merged();
    return {p.m_pNormals, p.m_pNormals + std::size_t{p.m_nNormalNum} * p.m_nNormalDim};
  }
  Floats Coords(unsigned int nUnit = 0) {
    QXVertexDataPackage const& p = Merged();
    return {p.m_pTexCoords[nUnit], p.m_pTexCoords[nUnit] + std::size_t{p.m_nTexCoordNums[nUnit]} * p.m_nTexDims[nUnit]};
  }
  Words Colors() {
    QXVertexDataPackage const& p = Merged();
    return {p.m_pColors, p.m_pColors + p.m_nColorNum};
  }
  static std::vector<unsigned short> Indices(QXIndexPackage const& package) {
    return {package.GetIndices16(), package.GetIndices16() + package.m_nIndexNum};
  }
  std::vector<unsigned short> Indices(int nLevel = 0, std::size_t nKey = 0) {
    return Indices(*Bucket().m_mapLevelIndices.at(nLevel).at(nKey));
  }

  /// A pass whose only unit has the transformation.
  void AddTransformedPass(std::wstring const& strName, double dScale, double dMove) {
    QXTextureUnitState& unit = *m_host.AddPass(strName, {strName + L".png"}).GetTextureUnitState(0);
    unit.m_matUnit[0][0] = unit.m_matUnit[1][1] = dScale;
    unit.m_matUnit[3][0] = dMove;
  }

  QXBatchingHost m_host;
  QXStaticGeometry m_geometry;
  int m_nType = -1;
};

}  // namespace QXC
