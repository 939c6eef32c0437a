/// @file
/// Buckets of static geometry to look at.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

/// Puts as many positions into a package as the numbers give.
inline void SetPositions(QXVertexDataPackage& package, std::vector<float> const& arrNumbers, unsigned short nDim = 3) {
  package.m_nVertexDim = nDim;
  package.SetVertexNum(static_cast<unsigned int>(arrNumbers.size() / nDim), 0);
  std::copy(arrNumbers.begin(), arrNumbers.end(), package.m_pVertices);
}

inline void SetNormals(QXVertexDataPackage& package, std::vector<float> const& arrNumbers) {
  package.m_nNormalDim = 3;
  package.SetNormalNum(static_cast<unsigned int>(arrNumbers.size() / 3), 0);
  std::copy(arrNumbers.begin(), arrNumbers.end(), package.m_pNormals);
}

inline void SetColors(QXVertexDataPackage& package, std::vector<unsigned int> const& arrColors) {
  package.SetColorNum(static_cast<unsigned int>(arrColors.size()), 0);
  std::copy(arrColors.begin(), arrColors.end(), package.m_pColors);
}

inline void SetTexCoords(
    QXVertexDataPackage& package, unsigned int nUnit, std::vector<float> const& arrNumbers, unsigned short nDim = 2) {
  package.m_nTexDims[nUnit] = nDim;
  package.SetTexCoordNum(nUnit, static_cast<unsigned int>(arrNumbers.size() / nDim), 0);
  std::copy(arrNumbers.begin(), arrNumbers.end(), package.m_pTexCoords[nUnit]);
}

/// Numbers of the corners of a rectangle in the plane z, counterclockwise from the lower left one.
inline std::vector<float> Corners(float x0, float y0, float x1, float y1, float z = 0.0F) {
  return {x0, y0, z, x1, y0, z, x1, y1, z, x0, y1, z};
}

/// The same of several rectangles, one after another.
inline std::vector<float> Join(std::vector<std::vector<float>> const& arrParts) {
  std::vector<float> arrAll;
  for (auto const& arrPart : arrParts) arrAll.insert(arrAll.end(), arrPart.begin(), arrPart.end());
  return arrAll;
}

/// A package of 16-bit (T unsigned short) or 32-bit (T unsigned int) indices for one pass; the caller owns it.
template <class T>
QXIndexPackage* NewIndices(std::vector<T> const& arrIndices, wchar_t const* szPass = L"") {
  auto* const pPackage = new QXIndexPackage;
  auto const nCount = static_cast<int>(arrIndices.size());
  if constexpr (sizeof(T) == 4) {
    pPackage->SetIndexNum32(nCount);
  } else {
    pPackage->SetIndexNum(nCount);
  }
  std::copy(arrIndices.begin(), arrIndices.end(), static_cast<T*>(pPackage->m_pIndices));
  pPackage->m_arrPassNames.Add(szPass);
  return pPackage;
}

/// Indices of the rectangles nFirst to nLast in a package of rectangles.
inline std::vector<unsigned short> Rectangles(unsigned int nFirst, unsigned int nLast) {
  std::vector<unsigned short> arrIndices;
  for (unsigned int i = nFirst; i <= nLast; ++i)
    for (unsigned int const nCorner : {0U, 1U, 2U, 0U, 2U, 3U})
      arrIndices.push_back(static_cast<unsigned short>(4 * i + nCorner));
  return arrIndices;
}

/// A mesh that lives until a geometry has merged it.
struct QXStaticMesh {
  QXVertexDataPackage m_Vertices;
  QdcArray<QXIndexPackage*> m_arrIndices;
  QXMatrix4d m_matModel;
  ~QXStaticMesh() {
    for (QXIndexPackage* const pPackage : m_arrIndices) delete pPackage;
  }
};

/// The textured scenery with buckets. Textures have names here, and stay as long as the renderer.
class QXOgreBucketing : public QXOgreTexturing {
protected:
  /// A drawable of the bucket in the scene.
  QXRenderOperation3D* Show(QXStaticGeometryBucket const& bucket, std::vector<double> const& arrDistances = {}) {
    QdcArray<double> arrLevelDistances;
    for (double const d : arrDistances) arrLevelDistances.Add(d);
    QXRenderOperation3D* const pOperation =
        m_pGraphics3D->GetRenderOperationManager()->CreateStaticGeometry3D(L"3D", bucket, arrLevelDistances);
    EXPECT_NE(pOperation, nullptr);
    m_arrOperations.push_back(pOperation);
    return pOperation;
  }
  /// A texture of one row of pixels (blue, green, red, alpha each) under a name, looked up at the nearest pixel.
  QXTexture* NameTexture(wchar_t const* szName, std::vector<unsigned char> const& arrPixels) {
    QXTexture* const pTexture = m_pTextures->GetTexture(szName, 1);
    pTexture->RendererOperation1(1, 1, 0);
    pTexture->SetTextureData(static_cast<int>(arrPixels.size() / 4), 1, NewBlock(arrPixels), 0, PF_A8R8G8B8);
    pTexture->m_TextureData.SetBlockLength(arrPixels.size());
    pTexture->LoadTexture(0, 0);
    return pTexture;
  }
  /// Adds a pass with textures of these names, one a unit.
  static QXPass* AddPass(std::map<QdcUnicodeString, QXPass*>& mapPasses, wchar_t const* szName,
      std::vector<wchar_t const*> const& arrTextures = {}) {
    auto* const pPass = new QXPass;
    pPass->SetName(szName);
    for (wchar_t const* const szTexture : arrTextures) pPass->CreateTextureUnitState()->SetTextureName(szTexture);
    mapPasses[szName] = pPass;
    return pPass;
  }
  QXPixel PixelAt(unsigned int x, unsigned int y) { return Frame().At(x, y); }
  /// Draw operations of the frame that was drawn last.
  unsigned int Operations() { return m_pGraphics3D->GetDrawOperationCount(); }

  static constexpr QXPixel BLUE_PIXEL{0, 0, 255, 255};
  static constexpr QXPixel WHITE_PIXEL{255, 255, 255, 255};
  static constexpr unsigned int RED_WORD = 0xFF0000FF;
  static constexpr unsigned int GREEN_WORD = 0xFF00FF00;
};

}  // namespace QXC
