/// @file
/// How the atlases differ, and where a tile stands.
#pragma once

#include <bit>
#include <limits>

namespace QXC::detail {

/// What the atlases do each in their own way. The level of a tile is no rule: the image and render atlases take the
/// integer part of a logarithm and the glyph atlases the next higher one, which is the same for powers of two, and
/// only the first two ever ask for another number.
struct QXQuadtreeRules {
  /// Edge of a page in pixels, a power of two from 4 to 2048. Render pages are 2048, so that a patch may be as large as
  /// a screen; the others are 1024, because their packed places have ten bits for each coordinate.
  int m_nPageSize;
  /// Whether a node is free if it and the chain of its upper left descendants carry no mark. Glyph atlases: a label
  /// asks for one size many times over, and the chain is all that a search by recursion can afford. Their tiles would
  /// stand elsewhere if all four children were asked, and a tile may come to lie over one in another child. Image and
  /// render atlases ask the whole subtree: their tiles never overlap.
  bool m_bTopLeftOnly;
  /// Whether a page only takes tiles of its own format and compression. Image atlases, whose pages are textures with
  /// one format each; a tile of another one would be uploaded as noise.
  bool m_bByFormat;
  /// Whether the search begins at the page of the last tile and comes round to it, instead of at the lowest index.
  /// Glyph atlases: what is drawn together then stands in few textures.
  bool m_bFromCurrent;
  /// Whether a new page is made when nothing fits. Not in glyph atlases, whose manager makes texture and page together.
  bool m_bAddsPages;
  /// Whether marking a tile counts it as one of its page. Glyph atlases count their records themselves and reset the
  /// count of a fresh page.
  bool m_bCountsTiles;
  /// The last index on which tiles may stand. Packed places have eight bits for the index; one more tile would be
  /// released on page 0.
  int m_nLastIndex;
};

inline constexpr QXQuadtreeRules g_RenderAtlasRules{
    .m_nPageSize = 2048,
    .m_bTopLeftOnly = false,
    .m_bByFormat = false,
    .m_bFromCurrent = false,
    .m_bAddsPages = true,
    .m_bCountsTiles = true,
    .m_nLastIndex = std::numeric_limits<int>::max(),
};

inline constexpr QXQuadtreeRules g_ImageAtlasRules{
    .m_nPageSize = 1024,
    .m_bTopLeftOnly = false,
    .m_bByFormat = true,
    .m_bFromCurrent = false,
    .m_bAddsPages = true,
    .m_bCountsTiles = true,
    .m_nLastIndex = 255,
};

inline constexpr QXQuadtreeRules g_GlyphAtlasRules{
    .m_nPageSize = 1024,
    .m_bTopLeftOnly = true,
    .m_bByFormat = false,
    .m_bFromCurrent = true,
    .m_bAddsPages = false,
    .m_bCountsTiles = false,
    .m_nLastIndex = 255,
};

/// Where a tile stands: the cell in the middle of its node, the level (0: the whole page, each further one half the
/// edge), and the page.
struct QXQuadtreePlace {
  int m_nRow = 0;
  int m_nCol = 0;
  int m_nLod = 0;
  int m_nIndex = 0;

  bool operator==(QXQuadtreePlace const&) const = default;
};

/// Level of a tile of nSize pixels, 1 to nPageSize: the integer part of the binary logarithm of the whole quotient.
constexpr int GetQuadtreeLod(int nPageSize, unsigned int nSize) {
  return static_cast<int>(std::bit_width(static_cast<unsigned int>(nPageSize) / nSize)) - 1;
}

/// A place on a page of 1024 pixels in one number: from the lowest bit on ten bits of column, ten of row, four of level
/// and eight of index.
constexpr unsigned int PackQuadtreePlace(QXQuadtreePlace const& place) {
  return (static_cast<unsigned int>(place.m_nCol) & 1023U) | (static_cast<unsigned int>(place.m_nRow) & 1023U) << 10 |
         (static_cast<unsigned int>(place.m_nLod) & 15U) << 20 | static_cast<unsigned int>(place.m_nIndex) << 24;
}

constexpr QXQuadtreePlace UnpackQuadtreePlace(unsigned int nLocation) {
  return {.m_nRow = static_cast<int>(nLocation >> 10 & 1023U),
      .m_nCol = static_cast<int>(nLocation & 1023U),
      .m_nLod = static_cast<int>(nLocation >> 20 & 15U),
      .m_nIndex = static_cast<int>(nLocation >> 24)};
}

}  // namespace QXC::detail
