/// @file
/// Pages of an atlas as a person looks at them.
#pragma once

#include <string>
#include <vector>

namespace QXApp {

/// A square place on a page, in pixels from the page's upper left corner.
struct QXAtlasTile {
  int m_nX = 0;
  int m_nY = 0;
  int m_nSize = 0;
  /// What stands there, for the report.
  std::string m_strName;
};

/// One page with what the device holds of it.
struct QXAtlasPage {
  /// Name of the texture.
  std::string m_strName;
  /// Edge in pixels.
  int m_nSize = 0;
  /// How the device stores a pixel, for the report.
  std::string m_strFormat;
  /// 4 bytes a pixel: blue, green, red, alpha; top row first. Empty until they are read from the device.
  std::vector<unsigned char> m_vecPixels;
  /// Whether the colours are multiplied by their alpha already, as those of pages are that models were drawn into.
  bool m_bPremultiplied = false;
  /// Numbered from 1 in this order.
  std::vector<QXAtlasTile> m_vecTiles;

  /// Part of the page's area that its tiles take, 0 to 1.
  double GetFill() const;
};

/// A picture for QXPngWriter.
struct QXAtlasPicture {
  int m_nWidth = 0;
  int m_nHeight = 0;
  std::vector<unsigned char> m_vecPixels;
};

/// Width of a painted page; smaller pages are enlarged by a whole factor, larger ones are as wide as they are.
inline constexpr int AtlasPictureWidth = 2048;
/// Rows below the page: how much of it is taken, as a bar and a number.
inline constexpr int AtlasFooterHeight = 32;

/// Paints a page. What the page lets through shows a board of two greys, the tiles are outlined, a colour for each
/// size, and numbered in their upper left corners; a tile too small for its number stays without.
/// Cost: one pass over the picture.
QXAtlasPicture PaintAtlasPage(QXAtlasPage const& page);

}  // namespace QXApp
