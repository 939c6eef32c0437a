/// @file
/// The slow obvious way to draw a glyph: the plain sequence of FreeType calls, everything made anew for each character.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_GLYPH_H
#include FT_OUTLINE_H
#include FT_STROKER_H

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace QXPlain {

/// What the plain sequence gives for one character; equal byte for byte or not at all.
struct Picture {
  int m_nWidth = 0;
  int m_nHeight = 0;
  int m_nBearingX = 0;
  int m_nBearingY = 0;
  int m_nAdvance = 0;
  std::vector<unsigned char> m_arrPixels;

  bool operator==(Picture const&) const = default;
};

/// Fills a picture with the coverage of an outline, both moved by the box of the stroked one.
inline void Render(FT_Library library, FT_Outline* pOutline, FT_BBox const& box, Picture& picture) {
  auto const width = static_cast<std::size_t>(picture.m_nWidth);
  auto const height = static_cast<std::size_t>(picture.m_nHeight);
  auto* const gray = new unsigned char[width * height]();
  FT_Bitmap bitmap;
  std::memset(&bitmap, 0, sizeof bitmap);
  bitmap.rows = static_cast<unsigned int>(height);
  bitmap.width = static_cast<unsigned int>(width);
  bitmap.pitch = picture.m_nWidth;
  bitmap.buffer = gray;
  bitmap.num_grays = 256;
  bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
  FT_Outline_Translate(pOutline, -box.xMin, -box.yMin);
  FT_Raster_Params params;
  std::memset(&params, 0, sizeof params);
  params.target = &bitmap;
  params.source = pOutline;
  params.flags = FT_RASTER_FLAG_AA;
  FT_Outline_Render(library, pOutline, &params);
  picture.m_arrPixels.assign(width * height * 2, 0);
  for (std::size_t i = 0; i < width * height; ++i) {
    picture.m_arrPixels[2 * i] = 255;
    picture.m_arrPixels[2 * i + 1] = gray[i];
  }
  delete[] gray;
}

/// Null where a step fails. nSize in points, bold and halo as asked for; the glyph is one of the face.
inline std::unique_ptr<Picture> Draw(
    FT_Library library, FT_Face face, FT_UInt nGlyph, int nSize, bool bBold, bool bHalo) {
  FT_Set_Char_Size(face, FT_F26Dot6{nSize} * 64, FT_F26Dot6{nSize} * 64, 96, 96);
  if (FT_Load_Glyph(face, nGlyph, FT_LOAD_NO_BITMAP) != 0) return nullptr;
  FT_GlyphSlot const slot = face->glyph;
  if (bBold) FT_Outline_Embolden(&slot->outline, 64);
  FT_Glyph glyph = nullptr;
  if (FT_Get_Glyph(slot, &glyph) != 0) return nullptr;
  FT_Stroker stroker = nullptr;
  if (FT_Stroker_New(library, &stroker) != 0) {
    FT_Done_Glyph(glyph);
    return nullptr;
  }
  FT_Stroker_Set(stroker, 64, FT_STROKER_LINECAP_ROUND, FT_STROKER_LINEJOIN_ROUND, 0);
  std::unique_ptr<Picture> picture;
  if (FT_Glyph_StrokeBorder(&glyph, stroker, 0, 1) == 0) {
    FT_BBox box;
    FT_Glyph_Get_CBox(glyph, FT_GLYPH_BBOX_GRIDFIT, &box);
    picture = std::make_unique<Picture>();
    picture->m_nWidth = static_cast<int>((box.xMax - box.xMin) >> 6);
    picture->m_nHeight = static_cast<int>((box.yMax - box.yMin) >> 6);
    picture->m_nBearingX = static_cast<int>(slot->metrics.horiBearingX >> 6);
    picture->m_nBearingY = static_cast<int>(slot->metrics.horiBearingY >> 6);
    picture->m_nAdvance = static_cast<int>(slot->advance.x >> 6);
    auto* const stroked = reinterpret_cast<FT_OutlineGlyph>(glyph);
    Render(library, bHalo ? &stroked->outline : &slot->outline, box, *picture);
  }
  FT_Done_Glyph(glyph);
  FT_Stroker_Done(stroker);
  return picture;
}

/// A font file opened in a FreeType of its own, so that nothing else has touched it.
class Font {
public:
  Font(std::string const& strFile, int nFace) {
    FT_Init_FreeType(&m_pLibrary);
    if (FT_New_Face(m_pLibrary, strFile.c_str(), nFace, &m_pFace) != 0) m_pFace = nullptr;
  }
  Font(Font const&) = delete;
  Font& operator=(Font const&) = delete;
  ~Font() { FT_Done_FreeType(m_pLibrary); }

  std::unique_ptr<Picture> Draw(unsigned int nCharacter, int nSize, bool bBold, bool bHalo) {
    FT_UInt const glyph = FT_Get_Char_Index(m_pFace, nCharacter);
    return glyph == 0 ? nullptr : QXPlain::Draw(m_pLibrary, m_pFace, glyph, nSize, bBold, bHalo);
  }

  FT_Library m_pLibrary = nullptr;
  FT_Face m_pFace = nullptr;
};

}  // namespace QXPlain
