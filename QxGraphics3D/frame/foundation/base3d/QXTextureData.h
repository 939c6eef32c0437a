/// @file
/// The pixel block of a texture.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>

namespace QXC {

struct QXTextureInfo;

/// One image of a texture in memory, ready for the renderer: rows top down without gaps, the bytes of a pixel as its
/// format says. Owns its block. Copies are deep. One thread at a time.
class QXGRAPHICS3D_API QXTextureData {
public:
  unsigned char* m_pPixels = nullptr;  ///< owned, new unsigned char[]
  unsigned int m_nHeight = 0;          ///< rows
  unsigned int m_nWidth = 0;           ///< columns
  unsigned int m_nDepth = 0;           ///< third dimension; for the renderer, nothing here reads or writes it
  QX3DPixelFormat m_eFormat = PF_UNKNOWN;
  unsigned int m_nCompression = 0;  ///< one of QXTextureCompression
  unsigned int m_nDataSize = 0;     ///< bytes of the block where its maker knows them, else 0

  QXTextureData();
  /// Copies the pixels and everything else that the description has in common with this record.
  explicit QXTextureData(QXTextureInfo const& info);
  QXTextureData(QXTextureData const& other);
  /// The old block is freed after the copy stands: a failed allocation (std::bad_alloc) changes nothing.
  QXTextureData& operator=(QXTextureData const& other);
  /// The block changes owner; other is left without one and keeps its fields.
  QXTextureData(QXTextureData&& other) noexcept;
  QXTextureData& operator=(QXTextureData&& other) noexcept;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// A copy of the object's own class, the caller's.
  virtual QXTextureData* Clone() const;
  virtual ~QXTextureData();

  /// Frees the block and sets m_pPixels to null; the other fields stay.
  void Release();

  /// Widens a block of 3-byte pixels to 4 bytes with alpha 255: PF_R8G8B8 becomes PF_A8R8G8B8, PF_B8G8R8 becomes
  /// PF_R8G8B8A8, so that the colours keep their order. Any other format, compressed pixels, and a block known to be
  /// too short stay as they are. Failure: std::bad_alloc, nothing changed. Cost: one new block and one pass.
  void RGBToRGBA();

  /// Tells how many bytes m_pPixels has, 0 for unknown. Believed as long as m_pPixels is the same pointer.
  void SetBlockLength(QXUInt64 nLength);
  /// What SetBlockLength told of the present block, else m_nDataSize; 0 if neither is known or there is no block.
  /// Operations on pixels use it to stay inside a block that is shorter than their pixel size asks for.
  QXUInt64 GetBlockLength() const;

private:
  void CopyFields(QXTextureData const& other);
  void TakeBlock(QXTextureData& other);

  unsigned char const* m_pMeasuredPixels = nullptr;
  QXUInt64 m_nBlockLength = 0;
};

}  // namespace QXC
