/// @file
/// A texture of the null renderer.
#pragma once

#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/texture/QXTexture.h>

#include <functional>
#include <memory>
#include <vector>

namespace QXC {

/// Remembers the pixels that a device would hold: LoadTexture copies the block, LoadSubTexture writes into the copy,
/// and the image in memory can be released meanwhile. Bytes stand there as the texture's format has them. What it holds
/// is counted in QXTextureMemory. Identifiers are given once in a process, 1 upwards.
class QXNullTexture final : public QXTexture, public QXNullObject {
public:
  explicit QXNullTexture(std::shared_ptr<QXCallLog> pLog, QdcUnicodeString const& strName = QdcUnicodeString());
  ~QXNullTexture() override;

  /// Renames the texture, in the log too.
  void SetName(QdcUnicodeString const& strName);

  /// Makes it the texture of a render target, on the device from now on. Nothing is loaded into it any more: refresh is
  /// called before its pixels or its size are read, and gives them by SetDevicePicture.
  void SetRefresh(std::function<void()> refresh);
  /// A picture of blue, green, red, alpha, rows top down.
  void SetDevicePicture(unsigned int nWidth, unsigned int nHeight, std::vector<unsigned char> const& arrPixels);

  /// Only written down: nothing is drawn.
  void RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) override;
  void RendererOperation2() override;
  /// Fails without pixels, and where the block's known length is less than size, format and compression ask for; the
  /// bytes of a whole file are kept as they are. A texture that is on the device stays so without an image to make it
  /// anew from.
  void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) override;
  /// Nothing on a texture that is not on the device or holds the bytes of a file. Of a compressed one whole blocks are
  /// replaced: nothing happens if the rectangle begins inside one.
  void LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight, void const* pPixels,
      unsigned int nFlag) override;
  void SetTextureRepeatMode(unsigned char bRepeatMode) override;
  void SetTextureMipMap(unsigned char bMipmapEnabled) override;
  void SetMipmapBaseLevel(int nLevel) override;
  void SetMipmapMaxLevel(int nLevel) override;
  int GetMipmapBaseLevel() const override { return m_nBaseLevel; }
  int GetMipmapMaxLevel() const override { return m_nMaxLevel; }
  /// The device's image as bytes of blue, green, red, alpha, 8 or 24 bits for one and three bytes a pixel. Null while
  /// nothing is on the device or what is there is compressed.
  QXImageData* BlitToMemory() override;
  /// The bind identifier, -1 while the texture is not on the device.
  int GetTextureID() const override;

  /// What the device holds, all levels; empty while the texture is not on it.
  std::vector<unsigned char> const& GetDevicePixels() const;
  unsigned int GetDeviceWidth() const;
  unsigned int GetDeviceHeight() const;
  QX3DPixelFormat GetDeviceFormat() const { return m_eDeviceFormat; }
  unsigned int GetDeviceCompression() const { return m_nDeviceCompression; }

private:
  void Refresh() const;
  void SetBindID();
  void LeaveDevice();

  std::function<void()> m_Refresh;
  std::vector<unsigned char> m_arrDevicePixels;
  unsigned int m_nDeviceWidth = 0;
  unsigned int m_nDeviceHeight = 0;
  QX3DPixelFormat m_eDeviceFormat = PF_UNKNOWN;
  unsigned int m_nDeviceCompression = 0;
  int m_nBaseLevel = 0;
  int m_nMaxLevel = 0;
};

}  // namespace QXC
