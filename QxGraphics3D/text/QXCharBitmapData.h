/// @file
/// The picture of one character.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// One drawn character, as QXTrueType::GetBitmapData makes it. All fields are zero at first.
///
/// The metrics are those of the glyph as the font gives it: neither thickening for bold nor the margin of one pixel that
/// every picture has for its halo counts in them.
/// Ownership: the object owns its pixels.
struct QXGRAPHICS3D_API QXCharBitmapData {
  QXCharBitmapData() = default;
  QXCharBitmapData(QXCharBitmapData const&) = delete;
  QXCharBitmapData& operator=(QXCharBitmapData const&) = delete;
  ~QXCharBitmapData() { delete[] m_pData; }

  /// m_nHeight rows of m_nWidth pixels of two bytes, luminance 255 and coverage; top row first, no gaps. An array made
  /// with new.
  unsigned char* m_pData = nullptr;
  int m_nWidth = 0;     ///< in pixels, 0 for a blank
  int m_nHeight = 0;    ///< in pixels, 0 for a blank
  int m_nBearingX = 0;  ///< from the pen to the glyph's left edge, in whole pixels, rounded down
  int m_nAdvance = 0;   ///< from the pen to the next one, in whole pixels, rounded down
  int m_nBearingY = 0;  ///< from the baseline up to the glyph's upper edge, in whole pixels, rounded down
  int m_nReserved = 0;  ///< always 0
};

}  // namespace QXC
