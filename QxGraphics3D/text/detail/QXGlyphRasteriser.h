/// @file
/// Characters to pixels.
#pragma once

#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/detail/QXGlyphOutline.h>
#include <QxGraphics3D/text/detail/QXGlyphSizes.h>

#include <vector>

namespace QXC::detail {

/// Draws glyphs as the plain sequence of FreeType calls would (set the size, load, embolden, copy, stroke, render), byte
/// for byte, and keeps what the next glyph can use: a stroker, size objects, the outlines drawn last, a buffer to draw in.
/// Threads: no lock. Faces must outlive the object, and the library too.
class QXGlyphRasteriser {
public:
  explicit QXGlyphRasteriser(FT_Library pLibrary) : m_pLibrary(pLibrary) {}
  QXGlyphRasteriser(QXGlyphRasteriser const&) = delete;
  QXGlyphRasteriser& operator=(QXGlyphRasteriser const&) = delete;
  ~QXGlyphRasteriser() { FT_Stroker_Done(m_pStroker); }

  /// A new picture, or null. The face keeps the size that it was drawn at; what its slot holds then is left open.
  /// @param nSize  in points at 96 dpi. FreeType makes what is below 1 to 1; what it refuses as too large gives null
  QXCharBitmapData* Draw(FT_Face pFace, FT_UInt nGlyph, int nSize, bool bBold, bool bHalo);

private:
  /// Null on failure.
  QXGlyphOutline* GetOutline(QXGlyphKey const& key);
  /// From what the slot holds; changes that.
  bool MakeOutline(QXGlyphOutline& outline, FT_GlyphSlotRec_& slot, bool bBold);
  /// Gives the outer border of an outline.
  bool Stroke(FT_Outline& outline, QXOutlineBlock& stroked);
  bool HasStroker();
  /// Gives the picture, whose size is set, its pixels.
  void Render(FT_Outline* pOutline, QXCharBitmapData& picture);

  FT_Library m_pLibrary;
  FT_Stroker m_pStroker = nullptr;
  QXGlyphSizes m_Sizes;
  QXGlyphOutlineCache m_Outlines;
  std::vector<unsigned char> m_arrCoverage;  ///< what glyphs are drawn in
};

}  // namespace QXC::detail
