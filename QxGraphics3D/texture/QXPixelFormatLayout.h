/// @file
/// Where the channels of a pixel lie in memory.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>

namespace QXC {

/// The bytes of one pixel in the blocks of this library. The names of QX3DPixelFormat do not tell it: they are the
/// numbering's, while images from files lie as blue, green, red, alpha under several of them. Whoever uploads a block or
/// reads one asks here.
struct QXGRAPHICS3D_API QXPixelFormatLayout {
  /// Bytes of a pixel; 0 for a format that no block of the library has.
  unsigned char m_nPixelBytes = 0;
  /// Place of each channel in the pixel. A luminance is red, green and blue at once; alpha is -1 where there is none and
  /// the pixel is opaque.
  signed char m_nRed = -1;
  signed char m_nGreen = -1;
  signed char m_nBlue = -1;
  signed char m_nAlpha = -1;

  /// The layout of a format, for blocks without block compression (m_nCompression 0). Constant time.
  static QXPixelFormatLayout Of(QX3DPixelFormat eFormat);

  /// The colour of a pixel as a word of QDCRGBA.
  /// @param pPixel  its m_nPixelBytes bytes; not read where that is 0, which gives 0
  unsigned int ReadColor(unsigned char const* pPixel) const;
};

}  // namespace QXC
