/// @file
/// Pictures made ready for their places in an atlas.
#pragma once

#include <apps/qx3d/QXPixels.h>

#include <compare>

namespace QXApp {

/// Longest edge of a picture in an atlas: a page of 1024 less the rim.
inline constexpr unsigned int MaxIconEdge = 1022;

/// A colour that stands for "nothing here" in pictures without alpha.
struct QXColorKey {
  unsigned char m_nRed = 0;
  unsigned char m_nGreen = 0;
  unsigned char m_nBlue = 0;
  /// How far each channel may be off, 0 to 255.
  int m_nTolerance = 0;

  auto operator<=>(QXColorKey const&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// Makes the pixels of a colour clear: alpha 0. Others stay.
void ApplyColorKey(QXColorKey const& key, QXPixels& pixels);

/// The picture in a smaller size: each pixel is the mean of the area that it covers, weighted by alpha, so that what is
/// clear brings no colour in. An edge that is not smaller stays.
QXPixels Shrink(QXPixels const& pixels, unsigned int nWidth, unsigned int nHeight);

/// Gives clear pixels the colour of the visible ones around them. A filter between the two would otherwise draw a rim
/// of whatever colour the clear ones have, often black.
void SpreadColors(QXPixels& pixels);

/// A picture in the middle of a square whose edge is a power of two.
struct QXIconTile {
  QXPixels m_Pixels;
  /// Where the picture's upper left pixel is in the square.
  unsigned int m_nLeft = 0;
  unsigned int m_nTop = 0;
};

/// Edge of the square that a picture of a size is put into.
unsigned int GetIconTileEdge(unsigned int nWidth, unsigned int nHeight);

/// Puts a picture of at most MaxIconEdge into the smallest square that leaves it a rim of a pixel on each side. The rim
/// goes on with the picture's outermost pixels, so that filtering at its edge meets no neighbour and no empty place;
/// what is left of the square has their colours and is clear.
QXIconTile MakeIconTile(QXPixels const& pixels);

}  // namespace QXApp
