/// @file
/// The outlines of one glyph, and a few that were used last.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_STROKER_H

#include <climits>
#include <cstddef>
#include <vector>

namespace QXC::detail {

/// An outline that owns its arrays; they are kept from one use to the next.
class QXOutlineBlock {
public:
  /// More than an outline can count.
  static constexpr std::size_t MostPoints = SHRT_MAX;

  QXOutlineBlock() = default;
  // Moved arrays stay where they are, so the outline still points to them; copied ones would not.
  QXOutlineBlock(QXOutlineBlock&&) noexcept = default;
  QXOutlineBlock& operator=(QXOutlineBlock&&) noexcept = default;

  /// Room for an outline, empty at first. Valid until the next Make or Copy.
  FT_Outline* Make(std::size_t nPoints, std::size_t nContours);
  FT_Outline* Copy(FT_Outline const& outline);
  FT_Outline* Get() { return &m_Outline; }
  /// In points.
  std::size_t GetRoom() const { return m_arrPoints.capacity(); }

private:
  std::vector<FT_Vector> m_arrPoints;
  std::vector<char> m_arrTags;
  std::vector<short> m_arrContours;
  FT_Outline m_Outline{};
};

/// What decides how a glyph looks.
struct QXGlyphKey {
  FT_Face m_pFace = nullptr;
  FT_UInt m_nGlyph = 0;
  int m_nSize = 0;
  bool m_bBold = false;

  bool operator==(QXGlyphKey const&) const = default;
};

/// A glyph ready to be drawn with or without halo: both outlines moved so that the box of the stroked one has its lower
/// left corner at 0, 0.
struct QXGlyphOutline {
  QXGlyphKey m_Key;
  QXOutlineBlock m_Plain;
  QXOutlineBlock m_Stroked;
  FT_Pos m_nWidth = 0;   ///< of the stroked outline's box, in pixels
  FT_Pos m_nHeight = 0;  ///< the same
  FT_Glyph_Metrics m_Metrics{};
  FT_Pos m_nAdvance = 0;  ///< in 26.6

  std::size_t GetRoom() const { return m_Plain.GetRoom() + m_Stroked.GetRoom(); }
};

/// Outlines of the glyphs drawn last, because the same glyph is mostly wanted twice: plain and as halo. Stroking is what
/// costs, and both need it.
/// Bounds: 64 glyphs, and all are forgotten once their arrays have room for more than 65,536 points.
class QXGlyphOutlineCache {
public:
  /// Null if it is not there.
  QXGlyphOutline* Find(QXGlyphKey const& key);
  /// Room for another glyph, with an empty key: it is found only once its key is set. Valid until the next call.
  QXGlyphOutline& Add();

private:
  std::vector<QXGlyphOutline> m_arrOutlines;
  std::size_t m_nNext = 0;
  QXGlyphOutline* m_pLast = nullptr;  ///< given by the last Add
  std::size_t m_nLastRoom = 0;        ///< its room at that time
  std::size_t m_nRoom = 0;            ///< of all, the last one as it was at that time
};

}  // namespace QXC::detail
