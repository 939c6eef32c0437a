/// @file
/// Whether a pixel block can be sent to a part of a texture.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelSize.h>

namespace QXC::detail {

/// True if the block may be read as nWidth columns and nHeight rows of a format: there is one, and it is not known to be
/// shorter. The renderer measures by the numbers that it is given, so that a shorter block would be read past its
/// end. The bytes of a whole file have no rows to measure by; renderers send none of them to parts.
inline bool HasUploadBlock(QXTextureData const& data, QX3DPixelFormat eFormat, unsigned int nCompression,
    unsigned int nWidth, unsigned int nHeight) {
  if (!data.m_pPixels) return false;
  QXUInt64 const nKnown = data.GetBlockLength();
  if (nKnown == 0 || nCompression == TEXTURE_COMPRESSION_RAW) return true;
  if (nCompression != TEXTURE_COMPRESSION_NONE)
    return BlockImageSize(nWidth, nHeight, StoredBlockSize(eFormat)) <= nKnown;
  // By division: the product of three numbers from a host may leave 64 bits.
  return nWidth == 0 || nHeight == 0 || nKnown / StoredPixelSize(eFormat) / nWidth >= nHeight;
}

}  // namespace QXC::detail
