/// @file
/// The texture that hosts hold.
#pragma once

#include <functional>
#include <memory>

#include <QxGraphics3D/texture/QXTexture.h>

#include <plugins/ogre/QXOgreFrames.h>
#include <plugins/ogre/QXOgreImage.h>
#include <plugins/ogre/QXOgreTextureSource.h>

namespace QXC {

/// The library's texture with its image on the device. The bytes of an animated file (TEXTURE_COMPRESSION_RAW) become
/// frames that play. What cannot be loaded leaves the device as it was, with the reason as the renderer's error text.
class QXOgreTexture final : public QXTexture, public QXOgreTextureSource {
public:
  explicit QXOgreTexture(QXOgreTextureManager& manager);
  ~QXOgreTexture() override;

  void RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) override;
  void RendererOperation2() override { LeaveDevice(); }
  void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) override;
  /// Layers nFirst to nFirst + nCount - 1 of pLayers, drawn by the third texture coordinate, counted from 0.
  void LoadTextureArray(QXTextureData* pLayers, unsigned int nFirst, unsigned int nCount) override;
  void LoadTextureArray(unsigned char bReleaseImage) override;
  /// Of blocks, whole ones: a part begins where a block does, and the last one of a row or column goes along. An image
  /// that waits in memory is loaded first. Levels follow; blocks, which nobody can make here, are drawn without them from
  /// then on. What is refused has its reason as the renderer's error text.
  void LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight, void const* pPixels,
      unsigned int nFlag) override;
  unsigned char IsLoaded() const override { return GetImage() != nullptr; }
  unsigned char IsInitialGPU() const override;
  void SetMipmapBaseLevel(int nLevel) override;
  void SetMipmapMaxLevel(int nLevel) override;
  int GetMipmapBaseLevel() const override { return m_nBaseLevel; }
  int GetMipmapMaxLevel() const override { return m_nMaxLevel; }
  void SetReverse(unsigned char bReverse) override { m_bReverse = bReverse != 0; }
  int GetNumTextureFrame() const override { return m_pFrames ? m_pFrames->GetCount() : 0; }
  void GetTimeTextureFrame(std::map<unsigned int, unsigned int>& mapTimes) const override;
  QXImageData* BlitToMemory() override;
  /// OpenGL's number of the texture, -1 while there is none.
  int GetTextureID() const override;

  QXOgreImage* GetImage() const override { return m_pFrames ? m_pFrames->GetImage() : m_pImage.get(); }
  QXVector3d GetScale() const override { return m_vecScale; }
  bool IsReversed() const override { return m_bReverse; }
  QXOgreFilters GetFilters() const override { return m_Filters; }
  void LeaveDevice() override;
  /// Shows a picture that somebody else keeps on the device.
  void ShowForeign(QXOgreDevice& device, Ogre::TexturePtr const& pForeign);

protected:
  void Prepare() override;

private:
  unsigned char Upload();
  /// Puts a stack of layers in place of what is on the device.
  void LoadLayers(std::function<QXOgrePixels(unsigned int)> const& describe, unsigned int nCount);
  void ApplyLevels();
  void TakeImage(std::unique_ptr<QXOgreImage> pImage, std::unique_ptr<QXOgreFrames> pFrames);
  /// Changes the copy in memory as well, where it has the part.
  void CopyIntoBlock(QXOgrePart const& part, unsigned char const* pCells);

  std::unique_ptr<QXOgreImage> m_pImage;
  std::unique_ptr<QXOgreFrames> m_pFrames;
  QXOgreFilters m_Filters;
  int m_nBaseLevel;
  int m_nMaxLevel;
  bool m_bReverse;
};

}  // namespace QXC
