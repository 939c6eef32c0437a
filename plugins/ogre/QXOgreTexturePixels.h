/// @file
/// A texture's block as the device takes it.
#pragma once

#include <cstddef>

#include <plugins/ogre/QXOgreImage.h>

namespace QXC {

class QXTexture;
class QXTextureData;

/// The texture's image with the levels of its mip table that lie inside its block. Points into the block.
/// Throws std::runtime_error with the reason if there is no image, its format or compression is unknown, or the block
/// is known to be too short. Cost: one pass over the first level where it may let something through.
QXOgrePixels DescribePixels(QXTexture const& texture);
/// The same for one image without levels.
QXOgrePixels DescribePixels(QXTextureData const& data);

/// A rectangle of pixels, where an image asks for it.
struct QXOgreRect {
  int m_nX;
  int m_nY;
  int m_nWidth;
  int m_nHeight;
};

/// Cuts a rectangle to what lies inside the image, in its cells. Throws std::runtime_error if the rectangle begins
/// inside a block. Nothing inside: no columns or no rows.
/// @param nSourceWidth  pixels in a row of the memory that the rectangle is taken from
QXOgrePart CutPart(QXOgreImage const& image, QXOgreRect const& rect, int nSourceWidth);

/// Whether some pixel of a BC7 image may be less than opaque: by its blocks' end points, not by each pixel.
bool HasTransparentBc7Blocks(unsigned char const* pBlocks, std::size_t nCount);
/// The same for BC3.
bool HasTransparentBc3Blocks(unsigned char const* pBlocks, std::size_t nCount);

}  // namespace QXC
