/// @file
/// The renderer-independent texture.
#pragma once

#include <map>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>

namespace QDC {
class QdcColorDictTable;
}

namespace QXC {

class QXMaterial;
class QXTextureDataAnimation;
struct QXImageData;

/// One image in CPU memory and what prepares it for upload; the plug-in's class derived from it adds the texture of
/// the graphics device. Owns its pixel block and its LOD levels. Failure shows in results and flags; nothing is logged,
/// and only std::bad_alloc passes. One thread at a time, but for the two setters that take m_Mutex; where a texture is
/// shared, its reference count and flags change under the lock of the texture manager. Pixel operations cost one pass
/// over the image and are not meant for every frame.
///
/// A pixel operation that would reach past a block whose length is known leaves the block as it is. Blocks of unknown
/// length are believed to hold what the operation's pixel size asks for.
class QXGRAPHICS3D_API QXTexture {
public:
  QdcUnicodeString m_strTexFilePath;  ///< name of the texture, the key of the texture manager's cache
  QXTextureData m_TextureData;
  QdcArray<QXTextureData*> m_arrLodLevels;  ///< owned
  unsigned char m_bMipmapEnabled = 0;
  QdcRect2D m_rcRegion;                   ///< for the renderer
  int m_nRegionValues[3] = {};            ///< the integers given to SetTextureData with an image
  double m_dScaleValue = 0.0;             ///< for the renderer
  QXVector3d m_vecScale{1.0, 1.0, 1.0};   ///< the renderer multiplies texture coordinates by it
  QXVector3d m_vecOffset{0.0, 0.0, 0.0};  ///< for the renderer
  unsigned char m_bSRGB = 1;
  unsigned int m_nBindID = 0;  ///< the renderer's identifier; above 0: the texture is on the device
  unsigned char m_bLoadedImage = 0;
  int m_nRefCount = 0;
  unsigned char m_bRepeatMode = 0;  ///< 1: coordinates outside 0..1 repeat the image; 0: they keep to its edge
  unsigned char m_bHasTransparentData = 1;
  QdcArray<unsigned int> m_arrMipmapOffset;  ///< byte offset of each level in the block; never empty
  unsigned char m_bNeedLoadTexture = 0;
  unsigned char m_bNeedLoadImg = 0;
  QXMutex m_Mutex{0};  ///< guards SetTextureData(QXTextureData const*) and SetMipmapOffset
  unsigned char m_bIsFinished = 1;
  QdcUnicodeString m_strImgRealFilePath;  ///< the file that the pixels came from
  unsigned char m_bKtx2Flag = 0;          ///< set by LoadKTX2 for blocks that stay compressed; for the renderer

  QXTexture();
  /// The path names the texture and the file; nothing is read.
  explicit QXTexture(QdcUnicodeString const& strPath);
  QXTexture(QXTexture const&) = delete;
  QXTexture& operator=(QXTexture const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Releases the images of the base; a derived class releases what it added.
  virtual ~QXTexture();
  /// Chooses how the device filters the texture, each of QXTextureFilterOption, from the next draw on. Called by hosts
  /// at any time, on the rendering thread; kept for a texture that is not on the device yet. What the device lacks
  /// is replaced by the nearest that it has.
  /// @param nMipFilter  TEXTURE_FILTER_NONE: only the first level is used, as without m_bMipmapEnabled
  virtual void RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) = 0;
  /// Takes the texture off the device: m_nBindID becomes 0. The image in memory stays, so that LoadTexture can bring it
  /// back. Called by hosts that need device memory, on the rendering thread between frames; nothing on a texture that
  /// is not on the device.
  virtual void RendererOperation2() = 0;
  /// Makes the device's texture from m_TextureData and sets m_nBindID. Called by the atlases, by drawables and by hosts,
  /// on the rendering thread. Failure: m_nBindID stays 0.
  /// @param bOnlyIfNeeded  1: a texture that is on the device already is made anew only if m_bNeedLoadTexture is set,
  ///                       which is 0 afterwards; 0: it is made anew in any case
  /// @param bReleaseImage  1: the image in memory is released afterwards
  virtual void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) = 0;
  /// Makes the device's texture an array of nCount layers, beginning at nFirst. Base: nothing.
  /// @param pLayers  nCount records, the caller's
  virtual void LoadTextureArray(QXTextureData* pLayers, unsigned int nFirst, unsigned int nCount);
  /// Makes the device's texture an array of one layer for each LOD level. Base: nothing.
  virtual void LoadTextureArray(unsigned char bReleaseImage);
  /// Replaces a rectangle of the device's texture, x to the right and y down from the first row. Called by the atlases
  /// for each new tile, on the rendering thread. What lies outside the texture is left out.
  /// @param nSourceWidth,nSourceHeight  size of the image at pPixels, whose top left part is taken
  /// @param pPixels  tight rows in the texture's pixel format, the caller's
  /// @param nFlag    0: the copy in m_TextureData stays as it is
  virtual void LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight,
      void const* pPixels, unsigned int nFlag) = 0;
  /// 1 if the texture is on the device.
  virtual unsigned char IsLoaded() const;
  /// 1 if the device is ready for textures. Base: 1.
  virtual unsigned char IsInitialGPU() const;
  /// Reads a file into this texture: pixels with power-of-two edges, or a KTX2 image as it is.
  /// @param bUnused  not read
  /// @param bFlag    handed to the file's parser
  /// @param bWiden   1: images of 3-byte pixels get 4
  /// @return  0, with the texture as it was, for an empty path, a file type that nobody reads, and a KTX2 file that cannot
  ///          be read; 0, without the former image, for a parser that raised an exception and for lack of memory.
  ///          Otherwise 1, also if the parser brought nothing: IsLoadedImage tells.
  virtual unsigned char LoadImageData(
      QdcUnicodeString const& strPath, unsigned char bUnused, unsigned char bFlag, unsigned char bWiden);
  /// Reads the file that m_strTexFilePath names. 1 at once if the image or the device's texture is there already.
  virtual unsigned char LoadImageData(unsigned char bUnused, unsigned char bFlag, unsigned char bWiden);
  /// Frees the block and deletes the LOD levels. The flags stay: m_bLoadedImage still says 1 for an image that was
  /// there, and who needs the pixels again has to look at the block.
  virtual void ReleaseImgData();
  /// Copies the image; m_bLoadedImage becomes 1. No lock.
  virtual void SetTextureData(QXTextureData const& data);
  /// Takes the block, never copying it; m_bLoadedImage becomes 1. The former block is freed unless it is the same.
  /// @param pPixels       new unsigned char[]; the texture's from now on
  /// @param nCompression  one of QXTextureCompression
  virtual void SetTextureData(
      int nWidth, int nHeight, unsigned char* pPixels, unsigned int nCompression, QX3DPixelFormat eFormat);
  /// As with a reference, under m_Mutex. Nothing for null.
  virtual void SetTextureData(QXTextureData const* pData);
  /// Takes the image's block, never copying it, deletes the record and sets the caller's pointer to null. The format
  /// becomes PF_B8G8R8 for 24 bits and PF_R8G8B8A8 for any other depth; m_bLoadedImage becomes 1.
  /// @param nFirst,nSecond,nThird  stored in m_nRegionValues
  /// @param bScanAlpha  1: m_bHasTransparentData is set from the compression, or by looking at each fourth byte
  /// @return  0 if the image is null
  virtual unsigned char SetTextureData(
      QXImageData*& pImage, int nFirst, int nSecond, int nThird, unsigned char bScanAlpha);
  /// Turns the image upside down. A pixel has 1 byte in PF_L8, 3 in PF_R8G8B8, 4 in any other format. Cost: one row of
  /// scratch memory.
  virtual void FlipTexture();
  virtual unsigned int GetBindID() const;
  /// Fills m_arrMipmapOffset for the image's size as if its levels were made of 4 by 4 blocks: 8 bytes a block in
  /// PF_B8G8R8, 16 in any other format. No lock.
  virtual void BuildMipmapOffset();
  virtual void SetTextureRepeatMode(unsigned char bRepeatMode);
  virtual QXTextureData* GetTextureData();
  virtual unsigned char GetTextureRepeatMode() const;
  /// Sets alpha, the fourth byte of a pixel, to 0 along the image's border. PF_L8 and PF_R8G8B8 are widened to
  /// PF_A8R8G8B8 with alpha 255 first; any other format is taken for 4 bytes a pixel.
  virtual void SetEdgeTransparency();
  /// Resamples the image to that size; pixel sizes as in FlipTexture. Failure: m_bLoadedImage becomes 0, and the image
  /// stays as it was.
  virtual void ScaleImage(int nNewWidth, int nNewHeight);
  virtual void SetTextureMipMap(unsigned char bMipmapEnabled);
  /// First level that the device uses. Base: nothing.
  virtual void SetMipmapBaseLevel(int nLevel);
  /// Last level that the device uses. Base: nothing.
  virtual void SetMipmapMaxLevel(int nLevel);
  /// Base: 0.
  virtual int GetMipmapBaseLevel() const;
  /// Base: 0.
  virtual int GetMipmapMaxLevel() const;
  /// Copies the offsets, or a single 0 if there are none; under m_Mutex.
  virtual void SetMipmapOffset(QdcArray<unsigned int> const& arrOffsets);
  /// A copy; no lock.
  virtual QdcArray<unsigned int> GetMipmapOffset() const;
  /// Adds the levels of one LOD to the device's texture. Base: 0, and nothing is taken.
  /// @param arrLevels  the texture's if 1 is returned
  virtual unsigned char AddTexLodLevel(QdcArray<QXTextureData*>& arrLevels, unsigned int nLod, unsigned char bUpload);
  /// Takes a LOD off the device's texture. Base: 0.
  virtual unsigned char DelTexLodLevel(unsigned int nLod);
  /// 1: the device shows the image upside down. Base: nothing.
  virtual void SetReverse(unsigned char bReverse);
  /// Frames of an image that the renderer animates. Base: 0.
  virtual int GetNumTextureFrame() const;
  /// Fills in the milliseconds of each frame by its index. Base: nothing.
  virtual void GetTimeTextureFrame(std::map<unsigned int, unsigned int>& mapTimes) const;
  virtual unsigned char GetIsFinished() const;
  virtual void SetIsFinished(unsigned char bIsFinished);
  /// Gives each pixel of alpha 0 the colour of the last pixel before it, in row order, that has alpha and is not black;
  /// black if there is none. Without it, filtering would pull the border of a cut-out image towards whatever colour its
  /// transparent part has. PF_A8R8G8B8 only.
  virtual void SetTranseparentPixelColor();
  /// Reads the device's texture back: the record and its block are the caller's. Slow, waits for the device.
  /// Base: null.
  virtual QXImageData* BlitToMemory();
  /// Identifier of the texture in the graphics interface itself. Base: -1.
  virtual int GetTextureID() const;
  /// Creation flags for a device of the second generation. Base: nothing.
  virtual void SetTextureFlagOgreV2(unsigned int nFlag);
  /// Base: 0.
  virtual unsigned int GetTextureFlagOgreV2() const;

  /// One user more; nothing is checked.
  void AddRef();
  /// One user less. The texture is not deleted: its manager does that.
  void DecRef();
  int GetRef() const;

  /// 1 if an image was set or loaded, also after ReleaseImgData.
  unsigned char IsLoadedImage() const;
  /// 0 if the image was looked at and every pixel is opaque; 1 in a new texture.
  unsigned char IsHasTransparentData() const;
  /// 1 if colours are stored with the sRGB curve.
  unsigned char GetSRGB() const;
  void SetSRGB(unsigned char bSRGB);
  unsigned char IsTextureRepeatMode() const;
  /// 1 if the device's texture is older than the image.
  unsigned char IsNeedLoadTexture() const;
  void SetIsNeedLoadTexture(unsigned char bNeedLoadTexture);
  /// 1 if somebody still has to load the image.
  unsigned char GetIsNeedLoadImg() const;
  void SetIsNeedLoadImg(unsigned char bNeedLoadImg);
  QdcUnicodeString GetImgRealFilePath() const;
  void SetImgRealFilePath(QdcUnicodeString const& strPath);
  /// Renames the texture. A cached texture is found under its old name until the manager's cache is told.
  void SetTexFilePath(QdcUnicodeString strPath);

  /// Byte offset of each mip level of an image, level 0 first and down to 1 by 1, halving with truncation; the total
  /// size is not among them. Compressed: 4 by 4 blocks of 8 bytes in PF_B8G8R8 and 16 in any other format. Not
  /// compressed: 3 bytes a pixel in PF_B8G8R8 and 4 in any other format.
  /// @param nCompressed  0 or not
  /// @param arrOffsets   what it held is dropped
  static void BuildMipmapOffset(
      int nWidth, int nHeight, QX3DPixelFormat eFormat, int nCompressed, QdcArray<unsigned int>& arrOffsets);

  /// Reads one image as 4-byte pixels, without a texture and in its own size.
  /// @param bUnused  not read
  /// @param pImage   the record and its block are the caller's; null on failure
  /// @param bFlag    handed to the file's parser
  /// @return  0 for an empty path, a file type that nobody reads, or an image that cannot be read
  static unsigned char LoadImageData(
      QdcUnicodeString const& strPath, unsigned char bUnused, QXImageData*& pImage, unsigned char bFlag);
  /// Reads one image as its file has it; a raw type gives the bytes of the file, with bit depth IMAGE_BIT_DEPTH_RAW.
  /// A path that ends in ".|temp" is read without that ending.
  /// @param pMaterial  not read
  /// @return  the record and its block are the caller's; null on failure
  static QXImageData* LoadImageDataEx(QdcUnicodeString const& strPath, QXMaterial* pMaterial);
  /// Reads a KTX2 file into this texture: pixels or compressed blocks, in the file's own size and with its levels.
  /// @return  0 if the path is empty or the file cannot be read; the texture then is as it was
  unsigned char LoadKTX2(QdcUnicodeString const& strPath);
  /// Reads a still image as 4-byte pixels with power-of-two edges, or the bytes of a raw type.
  /// @return  the caller's; null on failure, without pixels if the parser brought no image
  static QXTextureData* GetTextureData(QdcUnicodeString const& strPath);
  /// The same for a file in memory, such as a picture that a model carries; its beginning tells the type.
  /// @param pBytes  borrowed for the call; null counts as nothing
  /// @return  the caller's; null for what is no picture or cannot be decoded
  static QXTextureData* GetTextureDataFromMemory(unsigned char const* pBytes, QXUInt64 nSize);
  /// Reads the frames of an animated image, each as large as the first. A picture covers the one before it where its
  /// first byte, blue, is not 0, and clears it where that is 0 and alpha is 128; elsewhere the one before shows. For
  /// every colour as it stands in the file use QXAnimationTexture.
  /// @return  the caller's; null on failure
  static QXTextureDataAnimation* GetTextureDataAnimation(QdcUnicodeString const& strPath);
  /// Makes the image a ramp of 1 by 1024 pixels over the table's range of values, lowest first, bytes blue, green,
  /// red, alpha; switches mip levels off.
  /// @return  0 for an empty table, nothing changed
  unsigned char SetTextureDataByColorDictTable(QdcColorDictTable const* pTable);
};

}  // namespace QXC
