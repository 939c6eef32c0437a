/// @file
/// Images brought to another size.
#pragma once

#include <cstddef>
#include <cstdint>

namespace QXC::detail {

/// Rows top down and tight, one to four bytes a pixel; each byte of a pixel is filtered by itself.
struct QXPixelView {
  unsigned char const* m_pPixels;
  std::uint32_t m_nWidth;
  std::uint32_t m_nHeight;
};

/// Brings an image to nWidth x nHeight pixels; 1 on success.
///
/// Pixel centres lie at halves, so that the image's edges stay where they are. An axis that grows or keeps its size is
/// interpolated between the two nearest pixels, the outermost pixels going on to the edge; an axis that shrinks takes
/// the mean of what each new pixel covers, parts counted as parts, so that no source pixel is lost. The result is within
/// 0.52 of the exact value, 0.51 where growing edges are powers of two up to 16,384. The same size is a copy. All
/// instruction sets and compilers give the same bytes.
///
/// @param pTarget  nWidth * nHeight * nBytesPerPixel bytes, outside the source
/// @return 0, with the target untouched, when a pointer is null, an edge is 0, nBytesPerPixel is not 1 to 4, a byte
///         count passes 63 bits or there is no memory for the work rows
unsigned char ResampleImage(unsigned int nBytesPerPixel, QXPixelView const& source, unsigned char* pTarget,
    std::uint32_t nWidth, std::uint32_t nHeight);

}  // namespace QXC::detail
