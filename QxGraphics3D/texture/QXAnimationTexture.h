/// @file
/// A texture whose image changes with time.
#pragma once

#include <map>
#include <vector>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {

/// An animated picture: the frames are composed once, when they are read, and the plug-in makes one plain texture for
/// each; from then on nearly every operation goes to the texture of the frame that is shown. Playing back is a clock
/// and a search in a table of times, without work on pixels. Takes no lock: the rendering thread alone advances it.
///
/// Without frame textures, or with a null one in the current place, what would go there gives 0, null or nothing.
class QXGRAPHICS3D_API QXAnimationTexture : public QXTexture {
public:
  std::vector<QXTextureData> m_arrFrames;                   ///< pixels for the plug-in to make the frame textures from
  QdcArray<QXTexture*> m_arrFrameTextures;                  ///< one for each frame, by the plug-in; owned
  unsigned char m_bAnimationEnabled = 1;                    ///< 0: the picture stands still
  unsigned int m_nCurrentFrame = 0;                         ///< index into m_arrFrameTextures
  unsigned int m_nPlayTime = 0;                             ///< milliseconds into the loop
  unsigned int m_nTotalTime = 0;                            ///< milliseconds of all frames
  std::map<unsigned int, unsigned int> m_mapFrameEndTimes;  ///< index of a frame to its end in the loop, milliseconds
  std::map<unsigned int, unsigned int> m_mapFrameIDs;       ///< for the renderer, nothing here reads or writes it
  unsigned int m_nLastUpdate = 0;                           ///< QdcTime::GetMillisecond of the last update
  QdcTime m_Time;                                           ///< for the renderer, nothing here reads or writes it

  QXAnimationTexture();
  /// The path names the texture and the file; nothing is read.
  explicit QXAnimationTexture(QdcUnicodeString const& strPath);
  /// Deletes the frame textures.
  ~QXAnimationTexture() override;

  // The operations of one frame hide those of QXTexture that share their names.
  using QXTexture::AddTexLodLevel;
  using QXTexture::BuildMipmapOffset;
  using QXTexture::GetTextureData;
  using QXTexture::LoadImageData;
  using QXTexture::SetTextureData;

  /// Advances the animation, if it has more than one frame texture, and loads the frame that is shown then: whoever
  /// binds the texture in every frame sees it play.
  void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) override;
  /// Into the current frame; nFlag goes there as 0.
  void LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight, void const* pPixels,
      unsigned int nFlag) override;
  unsigned char IsLoaded() const override;
  /// Releases the frames too; unlike in the base, m_bLoadedImage becomes 0. The frame textures stay.
  void ReleaseImgData() override;
  /// Appends copies of the frames of a QXTextureDataAnimation and their times, counting on from what was there. Nothing
  /// for null and for any other record. No lock. m_bNeedLoadTexture becomes 1: the frame textures are the plug-in's to
  /// make.
  void SetTextureData(QXTextureData const* pData) override;
  /// Every frame texture.
  void FlipTexture() override;
  unsigned int GetBindID() const override;
  /// Every frame texture.
  void BuildMipmapOffset() override;
  /// This texture and every frame texture.
  void SetTextureRepeatMode(unsigned char bRepeatMode) override;
  QXTextureData* GetTextureData() override;
  /// Every frame texture.
  void SetEdgeTransparency() override;
  /// Every frame texture; m_bLoadedImage of this texture becomes 0 whatever becomes of them.
  void ScaleImage(int nNewWidth, int nNewHeight) override;
  /// This texture and every frame texture.
  void SetTextureMipMap(unsigned char bMipmapEnabled) override;
  /// Every frame texture.
  void SetMipmapBaseLevel(int nLevel) override;
  /// Every frame texture.
  void SetMipmapMaxLevel(int nLevel) override;
  /// Every frame texture.
  void SetMipmapOffset(QdcArray<unsigned int> const& arrOffsets) override;
  /// Of the current frame; this texture's own without one, so that it is never empty.
  QdcArray<unsigned int> GetMipmapOffset() const override;
  unsigned char DelTexLodLevel(unsigned int nLod) override;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version. Behind
  // the operations of QXTexture:

  /// Reads an animated file, unless an image is there already.
  /// @param bUnused  not read
  /// @return  1 if an image was there, else as of LoadAnimationImageData
  virtual unsigned char LoadImageData(QdcUnicodeString const& strPath, unsigned char bUnused, unsigned char bFlip);
  /// The current frame takes the block as PF_A8R8G8B8; m_bLoadedImage and m_bNeedLoadTexture become 1. Without a
  /// current frame the block stays the caller's.
  virtual void SetTextureData(int nWidth, int nHeight, unsigned char* pPixels);
  /// The current frame takes the image, without a look at its alpha.
  /// @return  0 for a null image and without a current frame; the image then stays the caller's
  virtual unsigned char SetTextureData(QXImageData*& pImage, int nFirst, int nSecond, int nThird);
  /// The current frame adds the levels, which go to the device when it is loaded.
  virtual unsigned char AddTexLodLevel(QdcArray<QXTextureData*>& arrLevels, unsigned int nLod);

  /// Composes the pictures of an animated file to frames of 4-byte pixels, their edges padded to powers of two, and
  /// builds the table of times; a picture without a delay is shown for 100 milliseconds. Deletes the frame textures
  /// first. m_vecScale tells which part of a frame is picture. Frames are appended to those that were read before:
  /// ReleaseImgData first replaces them, their times and a current frame that there is no more.
  /// @param bUnused  not read
  /// @param bFlip    1: the frames upside down
  /// @return  0 for an empty path, a file of another type and when memory is short. Otherwise 1, also where the file
  ///          has no frames or cannot be read: IsLoadedImage tells.
  unsigned char LoadAnimationImageData(QdcUnicodeString const& strPath, unsigned char bUnused, unsigned char bFlip);
  /// Moves on by the time since the last update, the length of the loop taken off. The very end of a frame still shows
  /// it. Nothing without times and while the animation is disabled; the time meanwhile counts in the next update. The
  /// first update comes wherever in the loop the clock happens to stand. Cost: a walk over the table from its end.
  void UpdateAnimation();
  void SetAnimation(unsigned char bEnabled);
  /// As of QXTexture.
  void SetTexFilePath(QdcUnicodeString strPath);

protected:
  /// The texture of the frame that is shown, null if there is none.
  QXTexture* GetCurrentTexture() const;

private:
  unsigned char ReadFrames(QdcUnicodeString const& strPath, unsigned char bFlip);
  void AppendFrames(std::vector<QXTextureData>&& vecFrames, std::vector<unsigned int> const& vecDelays);
};

}  // namespace QXC
