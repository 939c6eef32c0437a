/// @file
/// Operations on blocks of pixels and on image files that become such blocks.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Static operations on images that need no texture. They may run on any thread.
class QXGRAPHICS3D_API QXImageOperator {
public:
  /// Brings an image to another size. A growing axis is interpolated between the two nearest pixels, a shrinking one
  /// averages what each new pixel covers; each byte of a pixel is filtered by itself, so colours of transparent pixels
  /// count. The same size is a copy.
  /// @param nBytesPerPixel  1 to 4
  /// @param pSource         nWidth * nHeight pixels, rows without gaps
  /// @param pTarget         nNewWidth * nNewHeight pixels of the caller's, outside the source
  /// @return 1, or 0 with the target untouched for a null pointer, a zero edge, another number of bytes a pixel, or
  ///         when memory is short
  static unsigned char Scale(unsigned int nBytesPerPixel, unsigned int nWidth, unsigned int nHeight,
      unsigned char* pSource, unsigned int nNewWidth, unsigned int nNewHeight, unsigned char* pTarget);

  /// Reads a KTX2 file: layer 0 and face 0 with all levels, largest first, one after the other. The bytes are those of
  /// the file whatever its transfer function: sRGB stays sRGB. A channel that the file lacks is 0, and 255 in alpha.
  /// Limits are those of QXFileParseToolkit::SetImageLimits, all levels counted, and INT_MAX bytes.
  /// @param path       path of the file
  /// @param nOption    bytes a pixel wanted for data that is decoded; 4 is the one that is known
  /// @param pData      receives the block, made with `new unsigned char[]`; the caller's
  /// @param nWidth     receives the columns of the first level
  /// @param nHeight    receives the rows of the first level
  /// @param nIgnored   receives 0
  /// @param nMipCount  receives the number of levels, 1 to 32
  /// @param nKind      receives what the block holds: 6 for BC7 blocks kept compressed, 13 for bytes R,G,B,A
  /// @param nFormat    receives the code of the pixel format: 12 with kind 6, 13 with kind 13
  /// @return the length of the block in bytes, or 0 on any failure: the block is then null, the numbers are as they were
  static int DecodeKTX2(QdcUnicodeString const& path, int nOption, unsigned char** pData, int& nWidth, int& nHeight,
      int& nIgnored, int& nMipCount, int& nKind, int& nFormat);
};

}  // namespace QXC
