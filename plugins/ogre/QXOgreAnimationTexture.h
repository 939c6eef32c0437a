/// @file
/// The animated texture that hosts hold.
#pragma once

#include <memory>

#include <QxGraphics3D/texture/QXAnimationTexture.h>

#include <plugins/ogre/QXOgreTexture.h>
#include <plugins/ogre/QXOgreTextureSource.h>

namespace QXC {

/// The library's animated texture with one texture on the device for each frame, made when it is loaded and uploaded
/// when it is first shown. As long as it has no frames it is a plain texture, since whoever asks the manager for a name
/// need not know that an animation may stand under it: a still image, or the bytes of the file, are shown all the same.
class QXOgreAnimationTexture final : public QXAnimationTexture, public QXOgreTextureSource {
public:
  explicit QXOgreAnimationTexture(QXOgreTextureManager& manager);
  ~QXOgreAnimationTexture() override;

  using QXAnimationTexture::SetTextureData;

  /// Every frame, and those to come.
  void RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) override;
  void RendererOperation2() override { LeaveDevice(); }
  void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) override;
  void LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight, void const* pPixels,
      unsigned int nFlag) override;
  unsigned char IsLoaded() const override { return GetImage() != nullptr; }
  unsigned char IsInitialGPU() const override { return m_Still.IsInitialGPU(); }
  void ReleaseImgData() override;
  void SetTextureData(QXTextureData const* pData) override;
  void FlipTexture() override;
  unsigned int GetBindID() const override;
  void BuildMipmapOffset() override;
  QXTextureData* GetTextureData() override;
  void SetEdgeTransparency() override;
  void ScaleImage(int nNewWidth, int nNewHeight) override;
  void SetMipmapBaseLevel(int nLevel) override;
  void SetMipmapMaxLevel(int nLevel) override;
  int GetMipmapBaseLevel() const override { return m_Still.GetMipmapBaseLevel(); }
  int GetMipmapMaxLevel() const override { return m_Still.GetMipmapMaxLevel(); }
  void SetMipmapOffset(QdcArray<unsigned int> const& arrOffsets) override;
  void SetReverse(unsigned char bReverse) override { m_Still.SetReverse(bReverse); }
  int GetNumTextureFrame() const override;
  void GetTimeTextureFrame(std::map<unsigned int, unsigned int>& mapTimes) const override;
  QXImageData* BlitToMemory() override;
  int GetTextureID() const override;

  QXOgreImage* GetImage() const override;
  QXVector3d GetScale() const override;
  bool IsReversed() const override { return m_Still.IsReversed(); }
  QXOgreFilters GetFilters() const override { return m_Still.GetFilters(); }
  void LeaveDevice() override;

protected:
  void Prepare() override;

private:
  bool IsAnimated() const { return !m_arrFrames.empty() || m_arrFrameTextures.GetSize() > 0; }
  /// The texture that is shown: the current frame's, null if there is none, or the still one.
  QXTexture* GetShown() const;
  void MakeFrameTextures();
  void LoadStill(unsigned char bOnlyIfNeeded);

  /// What is shown without frames; it also keeps the settings that frames to come take over.
  mutable QXOgreTexture m_Still;
  /// The share of the frames' edges that is picture: the rest was left out on the way to the device.
  QXVector3d m_vecCut;
};

}  // namespace QXC
