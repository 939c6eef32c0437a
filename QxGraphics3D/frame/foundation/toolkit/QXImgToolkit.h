/// @file
/// Images brought into the form that textures want.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

struct QXImageData;

/// Static operations that replace the pixels of an image.
///
/// They know images of 8, 24 and 32 bits a pixel and take a depth of 80 for 8; the block is `new unsigned char[]`,
/// rows of m_nPitch bytes top down. On success the old block is freed if a new one was made, and size, pitch and depth
/// tell the new one, whose rows have no gaps. On failure the image stays as it was: without pixels, with a zero edge,
/// block-compressed or raw file bytes, any other depth, a pitch below the width's bytes, or when memory is short. They
/// may run on any thread, on images that no other thread touches.
class QXGRAPHICS3D_API QXImgToolkit {
public:
  /// Makes 32 bits a pixel. A gray fills the three colour bytes; three colour bytes are copied; nAlpha becomes the
  /// fourth byte of pixels that had none. Pixels of 32 bits keep their alpha, and their block if it has no gaps.
  /// @return 1, or 0 with the image untouched
  static unsigned char ImageDataToRGBA(QXImageData& image, unsigned char nAlpha);

  /// The same for one frame of an animated image.
  static unsigned char ImageGIFToRGBA(QXImageData& image, unsigned char nAlpha);

  /// Makes both edges powers of two. The picture is not scaled: it stays at the top left, and its last column and row
  /// go on into the padding, so that filtering at its edge meets no foreign colour. The depth stays (80 becomes 8).
  /// @param nOutWidth   receives the columns of the picture itself; untouched on failure
  /// @param nOutHeight  receives its rows; untouched on failure
  /// @param nAlpha      not used: the padding goes on with the alpha of the edge, as with its colour
  /// @return 1, also when nothing was to be done, or 0 with the image untouched
  static unsigned char ImageDataToPowerOfTwo(QXImageData& image, int& nOutWidth, int& nOutHeight, unsigned char nAlpha);
};

}  // namespace QXC
