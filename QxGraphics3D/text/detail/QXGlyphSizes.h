/// @file
/// Loading glyphs at changing sizes.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <array>
#include <cstdint>

namespace QXC::detail {

/// Loads glyphs of any face at any size without preparing the size anew each time.
///
/// A TrueType face runs a program of the font whenever its size was set, and for a Latin glyph that takes longer than
/// all else. So the glyphs are loaded with size objects that are kept. The size object that the face came with is set
/// all the same: it is what everybody else sees of the face, and nobody else ever sees the kept ones, so nobody can
/// change them.
///
/// Bounds:  64 size objects in all; the one that was not used for longest makes room.
/// Threads: no lock.
class QXGlyphSizes {
public:
  QXGlyphSizes() = default;
  QXGlyphSizes(QXGlyphSizes const&) = delete;
  QXGlyphSizes& operator=(QXGlyphSizes const&) = delete;
  ~QXGlyphSizes();

  /// Sets the size of a face, in 26.6 points at 96 dpi. Gives FreeType's error code.
  static FT_Error SetSize(FT_Face pFace, FT_F26Dot6 nSize);

  /// Loads a glyph into the face's slot: FT_Load_Glyph without embedded bitmaps. The face has been set to that size
  /// with success.
  FT_Error Load(FT_Face pFace, FT_F26Dot6 nSize, FT_UInt nGlyph);

private:
  struct Record {
    FT_Face m_pFace = nullptr;
    FT_F26Dot6 m_nSize = 0;
    FT_Size m_pSize = nullptr;
    std::uint64_t m_nLastUse = 0;
  };

  /// Null if the face is better off with its own.
  FT_Size Find(FT_Face pFace, FT_F26Dot6 nSize);
  FT_Size Make(FT_Face pFace, FT_F26Dot6 nSize);
  static void Free(Record& record);
  static bool Renew(Record& record, FT_Face pFace, FT_F26Dot6 nSize);

  std::array<Record, 64> m_arrRecords;
  std::uint64_t m_nUses = 0;
};

}  // namespace QXC::detail
