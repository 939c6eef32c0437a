/// @file
/// Textured things to look at.
#pragma once

#include <cstring>
#include <memory>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXTexturePackage.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

/// A block as textures take it over.
inline unsigned char* NewBlock(std::vector<unsigned char> const& arrBytes) {
  auto* const pBlock = new unsigned char[arrBytes.size()];
  std::memcpy(pBlock, arrBytes.data(), arrBytes.size());
  return pBlock;
}

/// A texture as read back from the device.
class QXTexels {
public:
  explicit QXTexels(QXTexture* pTexture) {
    EXPECT_NE(pTexture, nullptr);
    m_pImage.reset(pTexture ? pTexture->BlitToMemory() : nullptr);
    EXPECT_NE(m_pImage, nullptr) << "the texture cannot be read back";
    if (m_pImage) m_pPixels.reset(static_cast<unsigned char*>(m_pImage->m_pPixels));
  }
  unsigned int GetWidth() const { return m_pImage ? m_pImage->m_nWidth : 0; }
  /// Counted from the upper left corner.
  QXPixel At(unsigned int x, unsigned int y) const {
    if (!m_pPixels || x >= m_pImage->m_nWidth || y >= m_pImage->m_nHeight) return {-1, -1, -1, -1};
    unsigned char const* const p = m_pPixels.get() + std::size_t{y} * m_pImage->m_nPitch + std::size_t{x} * 4;
    return {p[2], p[1], p[0], p[3]};
  }

private:
  std::unique_ptr<QXImageData> m_pImage;
  std::unique_ptr<unsigned char[]> m_pPixels;
};

/// The scenery with textures that look like their pixels: filters are the nearest pixel's. Textures that MakeTexture
/// made live as long as the fixture's renderer.
class QXOgreTexturing : public QXOgreScenery {
protected:
  void SetUp() override {
    QXOgreScenery::SetUp();
    if (m_pGraphics3D->IsInitialized()) m_pTextures = m_pGraphics3D->GetTextureManager();
    ASSERT_NE(m_pTextures, nullptr);
  }
  void TearDown() override {
    QXOgreScenery::TearDown();
    for (QXTexture* const pTexture : m_arrTextures) delete pTexture;
  }

  /// A texture of no cache with an image of its own, not loaded.
  QXTexture* MakeTexture() {
    QXTexture* const pTexture = m_pTextures->CreateTexture();
    pTexture->RendererOperation1(1, 1, 0);
    m_arrTextures.push_back(pTexture);
    return pTexture;
  }
  /// The same with an image, loaded.
  QXTexture* MakeTexture(int nWidth, int nHeight, QX3DPixelFormat eFormat, std::vector<unsigned char> const& arrBytes,
      unsigned int nCompression = 0) {
    QXTexture* const pTexture = MakeTexture();
    pTexture->SetTextureData(nWidth, nHeight, NewBlock(arrBytes), nCompression, eFormat);
    pTexture->m_TextureData.SetBlockLength(arrBytes.size());
    pTexture->LoadTexture(0, 0);
    return pTexture;
  }
  /// Deletes a texture before the fixture ends.
  void Delete(QXTexture* pTexture) {
    std::erase(m_arrTextures, pTexture);
    delete pTexture;
  }

  /// A square over the whole picture (or a part of it) with u to the right and v downwards from 0 to dMax.
  static std::unique_ptr<QXRenderOperationMultiIndex> MakeTexturedMesh(
      float fMax = 1.0F, float x0 = -1.0F, float y0 = -1.0F, float x1 = 1.0F, float y1 = 1.0F) {
    auto pMesh = MakeMesh({{x0, y0, 0.0F}, {x1, y0, 0.0F}, {x1, y1, 0.0F}, {x0, y1, 0.0F}});
    AddTexCoords(*pMesh, 0, {0.0F, fMax, fMax, fMax, fMax, 0.0F, 0.0F, 0.0F});
    return pMesh;
  }
  /// Coordinates of a unit, nDim for each vertex.
  static void AddTexCoords(QXRenderOperationMultiIndex& mesh, unsigned int nUnit, std::vector<float> const& arrCoords,
      unsigned short nDim = 2) {
    if (!mesh.m_pTexCoordBlock) mesh.m_pTexCoordBlock = new QXTexCoordBlock;
    QXTexCoordBlock& block = *mesh.m_pTexCoordBlock;
    block.m_pBuffers[nUnit] = new float[arrCoords.size()];
    std::copy(arrCoords.begin(), arrCoords.end(), block.m_pBuffers[nUnit]);
    block.m_nDims[nUnit] = nDim;
    block.m_nCounts[nUnit] = static_cast<unsigned int>(arrCoords.size() / nDim);
  }
  /// Gives the square's last range a package with the texture in unit 0, which is returned for more.
  static QXTexturePackage* AddTexturedRange(
      QXRenderOperationMultiIndex& mesh, QXTexture* pTexture, QXColorValue3D const& color = QXColorValue3D::White) {
    auto* const pPackage = new QXTexturePackage;
    pPackage->m_pTextures[0] = pTexture;
    AddRange<unsigned short>(mesh, {0, 1, 2, 0, 2, 3}, color);
    mesh.m_arrTexturePackages[mesh.m_arrTexturePackages.GetSize() - 1] = pPackage;
    return pPackage;
  }
  QXRenderOperation3D* DrawTextured(QXTexture* pTexture, float fMax = 1.0F) {
    auto const pMesh = MakeTexturedMesh(fMax);
    AddTexturedRange(*pMesh, pTexture);
    return Draw(*pMesh);
  }
  std::string Reason() const { return Text(m_pGraphics3D->GetErrorText()); }

  QXTextureManager* m_pTextures = nullptr;
  std::vector<QXTexture*> m_arrTextures;
};

}  // namespace QXC
