/// @file
/// A texture to draw into.
#pragma once

#include <memory>

#include <OgreTexture.h>

#include <plugins/ogre/QXOgreRenderTarget.h>

namespace QXC {

class QXOgreTexture;

/// An off-screen picture of 8 bits a channel, with as many samples a pixel as the host asks for.
class QXOgreRenderTexture final : public QXOgreRenderTarget {
public:
  /// Throws what OGRE throws.
  QXOgreRenderTexture(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName, unsigned int nWidth,
      unsigned int nHeight, int nMipmaps, QdcUnicodeString const& strSceneName);
  ~QXOgreRenderTexture() override;

  unsigned char IsTextureTarget() const override { return 1; }
  /// The picture as a texture: v = 0 is its first row. It follows the target's sizes and ends with the target. The
  /// texture manager knows it by the target's name.
  QXTexture* GetTexture() const override;
  void CopyFromMemory(unsigned char const* pPixels, unsigned int nByteCount) override;

protected:
  void ReleaseDevice() override;
  void ResizeDevice(unsigned int nWidth, unsigned int nHeight) override;
  void MakeDevice(unsigned int nWidth, unsigned int nHeight, int nSamples) override;
  void FinishPicture() override;
  void ShowPicture(unsigned char) override {}
  void ReadPicture(unsigned int nLeft, unsigned int nTop, unsigned int nWidth, unsigned int nHeight,
      unsigned char* pPixels) override;

private:
  Ogre::TexturePtr m_pOgreTexture;
  std::unique_ptr<QXOgreTexture> m_pTexture;
  int m_nMipmaps;
};

}  // namespace QXC
