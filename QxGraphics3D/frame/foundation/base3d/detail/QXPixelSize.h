/// @file
/// How many bytes a pixel counts for. Several answers, because operations were built on different ones
/// and their users rely on what comes out: taking one for another changes row lengths, level offsets or tile sizes.
#pragma once

#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>

namespace QXC::detail {

/// For operations on the rows of a texture (flip, scale). PF_B8G8R8 counts as 4: those rows were always meant for
/// blocks that are widened before they get there.
constexpr unsigned int RowPixelSize(QX3DPixelFormat eFormat) {
  return eFormat == PF_L8 ? 1 : eFormat == PF_R8G8B8 ? 3 : 4;
}

/// For the offsets of uncompressed mip levels. PF_R8G8B8 and PF_L8 count as 4: renderers keep such levels widened.
constexpr unsigned int MipmapPixelSize(QX3DPixelFormat eFormat) {
  return eFormat == PF_B8G8R8 ? 3 : 4;
}

/// For the blocks of mip levels in compressed textures: 4 by 4 pixels with 4 or 8 bits each.
constexpr unsigned int MipmapBlockSize(QX3DPixelFormat eFormat) {
  return eFormat == PF_B8G8R8 ? 8 : 16;
}

/// For image atlases, whose big textures hold either 3-byte or 4-byte pixels. PF_L8 counts as 4.
constexpr unsigned int AtlasPixelSize(QX3DPixelFormat eFormat) {
  return eFormat == PF_R8G8B8 || eFormat == PF_B8G8R8 ? 3 : 4;
}

/// What a pixel of that format really takes in memory: for copies, which must not read past the block.
constexpr unsigned int StoredPixelSize(QX3DPixelFormat eFormat) {
  switch (eFormat) {
  case PF_L8: return 1;
  case PF_BYTE_LA: return 2;
  case PF_R8G8B8:
  case PF_B8G8R8: return 3;
  default: return 4;
  }
}

/// What a block of 4 by 4 pixels of that format really takes in memory: for copies.
constexpr unsigned int StoredBlockSize(QX3DPixelFormat eFormat) {
  return StoredPixelSize(eFormat) == 3 ? 8 : 16;
}

/// Bytes of an image in blocks of 4 by 4 pixels.
constexpr QXUInt64 BlockImageSize(unsigned int nWidth, unsigned int nHeight, unsigned int nBlockSize) {
  return ((QXUInt64{nWidth} + 3) / 4) * ((QXUInt64{nHeight} + 3) / 4) * nBlockSize;
}

}  // namespace QXC::detail
