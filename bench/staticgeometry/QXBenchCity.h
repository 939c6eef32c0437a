/// @file
/// Meshes of a city for the benchmarks of merging.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <cmath>
#include <cstddef>
#include <map>
#include <memory>
#include <vector>

namespace QXBench {

/// Grids of 25 vertices in the row, curved, with position, normal and one pair of coordinates, each under a matrix of
/// its own; eight materials with a transformed texture.
class City {
public:
  static constexpr unsigned int kColumns = 25;

  City(std::size_t nMeshes, unsigned int nVertices) : m_vecMeshes(nMeshes), m_vecIndices(nMeshes) {
    for (unsigned int i = 0; i < 8; ++i) AddPass(i);
    for (std::size_t i = 0; i < nMeshes; ++i) {
      FillMesh(m_vecMeshes[i], nVertices, i);
      FillIndices(m_vecIndices[i], nVertices / kColumns);
      m_vecIndices[i].m_arrPassNames.Add(m_vecPasses[i % 8]->GetName());
      m_vecMatrices.push_back(MakeMatrix(i));
    }
  }

  /// @param nType  a negative one has the normals turned
  void AddTo(QXC::QXStaticGeometry& geometry, int nType) {
    for (std::size_t i = 0; i < m_vecMeshes.size(); ++i) {
      QXC::QdcArray<QXC::QXIndexPackage*> arrIndices;
      arrIndices.Add(&m_vecIndices[i]);
      geometry.AddVertexDataAndIndexPackage(&m_vecMeshes[i], arrIndices, m_mapPasses, m_vecMatrices[i], nullptr, nType);
    }
  }

  QXC::QXMatrix4d GetBase() const { return MakeMatrix(0); }

  std::vector<QXC::QXVertexDataPackage> m_vecMeshes;
  std::vector<QXC::QXIndexPackage> m_vecIndices;
  std::vector<QXC::QXMatrix4d> m_vecMatrices;
  std::map<QXC::QdcUnicodeString, QXC::QXPass*> m_mapPasses;

private:
  void AddPass(unsigned int nPass) {
    auto pass = std::make_unique<QXC::QXPass>();
    QXC::QdcUnicodeString strName;
    strName.Format(L"facade_%u", nPass);
    pass->SetName(strName);
    QXC::QXTextureUnitState* const pUnit = pass->CreateTextureUnitState();
    pUnit->SetTextureName(strName);
    pUnit->m_matUnit[0][0] = 0.25;
    pUnit->m_matUnit[1][1] = 0.5;
    pUnit->m_matUnit[3][0] = 0.125 * nPass;
    m_mapPasses[strName] = pass.get();
    m_vecPasses.push_back(std::move(pass));
  }

  static void FillMesh(QXC::QXVertexDataPackage& mesh, unsigned int nVertices, std::size_t nMesh) {
    mesh.SetVertexNum(nVertices, 0);
    mesh.SetNormalNum(nVertices, 0);
    mesh.SetTexCoordNum(0, nVertices, 0);
    for (unsigned int i = 0; i < nVertices; ++i) {
      float const fX = static_cast<float>(i % kColumns);
      float const fY = static_cast<float>(i / kColumns);
      float const fBend = 0.01F * static_cast<float>(nMesh % 16) * fX;
      float const arrPosition[3] = {fX, fY, fBend * fX};
      float const fLength = std::sqrt(1.0F + 4.0F * fBend * fBend);
      float const arrNormal[3] = {-2.0F * fBend / fLength, 0.0F, 1.0F / fLength};
      for (int n = 0; n < 3; ++n) mesh.m_pVertices[3 * i + static_cast<unsigned int>(n)] = arrPosition[n];
      for (int n = 0; n < 3; ++n) mesh.m_pNormals[3 * i + static_cast<unsigned int>(n)] = arrNormal[n];
      mesh.m_pTexCoords[0][2 * i] = fX / 24.0F;
      mesh.m_pTexCoords[0][2 * i + 1] = fY / 24.0F;
    }
  }

  static void FillIndices(QXC::QXIndexPackage& package, unsigned int nRows) {
    package.SetIndexNum(static_cast<int>(6 * (kColumns - 1) * (nRows - 1)));
    unsigned short* pIndex = package.GetIndices16();
    for (unsigned int row = 0; row + 1 < nRows; ++row) {
      for (unsigned int column = 0; column + 1 < kColumns; ++column) {
        unsigned int const corner = row * kColumns + column;
        unsigned int const arrCorners[6] = {
            corner, corner + 1, corner + kColumns, corner + kColumns, corner + 1, corner + kColumns + 1};
        for (unsigned int const nCorner : arrCorners) *pIndex++ = static_cast<unsigned short>(nCorner);
      }
    }
  }

  /// A place on a globe, turned about the vertical.
  static QXC::QXMatrix4d MakeMatrix(std::size_t nMesh) {
    double const dAngle = 0.1 * static_cast<double>(nMesh);
    QXC::QXMatrix4d matrix;
    matrix[0][0] = matrix[1][1] = std::cos(dAngle);
    matrix[0][1] = std::sin(dAngle);
    matrix[1][0] = -matrix[0][1];
    matrix[3][0] = 6378137.0 + 40.0 * static_cast<double>(nMesh % 100);
    matrix[3][1] = 40.0 * static_cast<double>(nMesh / 100 % 100);
    return matrix;
  }

  std::vector<std::unique_ptr<QXC::QXPass>> m_vecPasses;
};

}  // namespace QXBench
