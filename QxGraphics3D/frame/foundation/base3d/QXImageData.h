/// @file
/// What an image file holds, as its reader hands it out.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

/// The value of QXImageData::m_nBitDepth that says that the block is not pixels but the bytes of a whole file.
inline constexpr unsigned char IMAGE_BIT_DEPTH_RAW = 16;

/// One image: rows top down, colour channels of one byte in the order blue, green, red, alpha. Made with new.
/// The block changes owner by pointer: the destructor never frees it, nor does assignment, which copies the pointer.
/// Whoever holds a record frees a block that it does not hand on; who takes the block sets m_pPixels to null.
struct QXGRAPHICS3D_API QXImageData {
  unsigned int m_nWidth = 0;   ///< columns
  unsigned int m_nHeight = 0;  ///< rows
  /// Bytes a row; of a raw file (IMAGE_BIT_DEPTH_RAW) the length of the whole file.
  unsigned int m_nPitch = 0;
  /// Bits a pixel: 8, 24 or 32; 80 counts as one channel of one byte; IMAGE_BIT_DEPTH_RAW marks a raw file.
  unsigned char m_nBitDepth = 0;
  unsigned char m_nCompression = 0;  ///< one of QXTextureCompression
  void* m_pPixels = nullptr;         ///< new unsigned char[]

  QXImageData() = default;
  QXImageData(QXImageData const&) = default;
  QXImageData& operator=(QXImageData const&) = default;
  /// Leaves the block alone.
  ~QXImageData();

  /// A copy with a block of its own, both the caller's: m_nPitch * m_nHeight bytes, of a raw file m_nPitch. An image
  /// without pixels gives one without pixels.
  QXImageData* Clone() const;
};

}  // namespace QXC
