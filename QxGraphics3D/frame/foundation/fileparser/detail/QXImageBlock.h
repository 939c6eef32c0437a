/// @file
/// A picture in the making.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

#include <cstddef>
#include <memory>

namespace QXC::detail {

/// The block that a codec decodes into, rows top down and tight; freed unless it is handed over.
class QXImageBlock {
public:
  /// Makes the block, its bytes not initialised. False, with nothing made, beyond the limits or without memory.
  /// @param nBytesPerPixel  1 grey, 3 B,G,R, 4 B,G,R,A
  bool Make(QXUInt64 nWidth, QXUInt64 nHeight, unsigned int nBytesPerPixel, QXImageLimits const& limits);

  unsigned int GetWidth() const { return m_nWidth; }
  unsigned int GetHeight() const { return m_nHeight; }
  unsigned int GetBytesPerPixel() const { return m_nBytesPerPixel; }
  std::size_t GetRowBytes() const { return std::size_t{m_nWidth} * m_nBytesPerPixel; }
  std::size_t GetPixelCount() const { return std::size_t{m_nWidth} * m_nHeight; }
  unsigned char* GetRow(std::size_t nRow) const { return m_pPixels.get() + nRow * GetRowBytes(); }

  /// The picture, the caller's from now on. Null if there is none, or no memory for the record.
  QXImageData* HandOver();

private:
  std::unique_ptr<unsigned char[]> m_pPixels;
  unsigned int m_nWidth = 0;
  unsigned int m_nHeight = 0;
  unsigned int m_nBytesPerPixel = 0;
};

/// 16 bits a channel to 8, rounded: 0 stays 0 and 65535 becomes 255.
inline unsigned char NarrowChannel(unsigned int nValue) {
  return static_cast<unsigned char>((nValue * 255u + 32767u) / 65535u);
}

}  // namespace QXC::detail
