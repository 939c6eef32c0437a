/// @file
/// A texture to draw into.
#pragma once

#include <OgreTexture.h>

#include <plugins/ogre/QXOgreRenderTarget.h>

namespace QXC {

/// An off-screen picture of 8 bits a channel, with as many samples a pixel as the host asks for.
class QXOgreRenderTexture final : public QXOgreRenderTarget {
public:
  /// Throws what OGRE throws.
  QXOgreRenderTexture(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName, unsigned int nWidth,
      unsigned int nHeight, int nMipmaps, QdcUnicodeString const& strSceneName);
  ~QXOgreRenderTexture() override;

  /// 4 samples, if SetSceneAntialiasValue has not asked for another number.
  void SetSceneAntialias(unsigned char bEnable) override;
  unsigned char GetSceneAntialias() const override { return m_nSamples > 1; }
  /// 1 to 16; the device may give fewer. The picture is lost and drawn anew with the next frame.
  void SetSceneAntialiasValue(int nSamples) override;
  int GetSceneAntialiasValue() const override { return m_nSamples; }
  unsigned char IsTextureTarget() const override { return 1; }
  void CopyFromMemory(unsigned char const* pPixels, unsigned int nByteCount) override;

protected:
  void ReleaseDevice() override;
  void ResizeDevice(unsigned int nWidth, unsigned int nHeight) override;
  void FinishPicture() override;
  void ShowPicture(unsigned char) override {}
  void ReadPicture(unsigned char* pPixels) override;

private:
  void Make(unsigned int nWidth, unsigned int nHeight, int nSamples);

  Ogre::TexturePtr m_pOgreTexture;
  int m_nMipmaps;
  int m_nSamples;
};

}  // namespace QXC
