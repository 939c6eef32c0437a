/// @file
/// Characters to pixels.
#pragma once

#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/detail/QXBorderStroker.h>
#include <QxGraphics3D/text/detail/QXGlyphOutline.h>
#include <QxGraphics3D/text/detail/QXGlyphSizes.h>

namespace QXC::detail {

/// Draws glyphs as the plain sequence of FreeType calls would (set the size, load, embolden, copy, stroke, render), byte
/// for byte, and keeps what the next glyph can use: a stroker, size objects, the outlines drawn last.
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
  bool StrokeFast(FT_Outline& outline, QXOutlineBlock& stroked);
  bool StrokePlain(FT_Outline& outline, QXOutlineBlock& stroked);
  bool HasStroker();

  FT_Library m_pLibrary;
  FT_Stroker m_pStroker = nullptr;
  QXBorderStroker m_Border;
  QXOutlineBlock m_Check;
  bool m_bOwnStroker = true;  ///< until a border differs from FreeType's, as one of another version may
  unsigned int m_nStrokes = 0;
  QXGlyphSizes m_Sizes;
  QXGlyphOutlineCache m_Outlines;
};

}  // namespace QXC::detail
