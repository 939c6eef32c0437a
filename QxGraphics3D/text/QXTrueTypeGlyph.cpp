// Characters drawn by QXTrueType.
#include <QxGraphics3D/text/QXTrueType.h>

#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>
#include <QxGraphics3D/text/detail/QXGlyphRasteriser.h>

#include <algorithm>
#include <cstddef>

namespace QXC {

namespace {

/// From here on FreeType refuses a size, and would draw at the one that the face was left with.
constexpr int FirstSizeRefused = 49152;

QXTrueType::FaceStyle StyleOf(QXTextStyle const& style) {
  int const bold = style.IsBold() ? QXTrueType::FACE_BOLD : 0;
  int const italic = style.IsItalic() ? QXTrueType::FACE_ITALIC : 0;
  return static_cast<QXTrueType::FaceStyle>(bold | italic);
}

FT_UInt FindGlyph(FT_Face pFace, int nCharacter) {
  return pFace == nullptr ? 0 : FT_Get_Char_Index(pFace, static_cast<unsigned int>(nCharacter));
}

/// A font of symbols has charmaps of its own and none that FreeType would choose. The one with the character stays
/// selected, else the last.
FT_UInt FindInCharmaps(FT_Face pFace, int nCharacter) {
  FT_UInt glyph = 0;
  for (int i = 0; i < pFace->num_charmaps && glyph == 0; ++i) {
    FT_Set_Charmap(pFace, pFace->charmaps[i]);
    glyph = FindGlyph(pFace, nCharacter);
  }
  return glyph;
}

}  // namespace

QXCharBitmapData* QXTrueType::GetBitmapData(int nCharacter, unsigned char bHalo) {
  FT_Face face = nullptr;
  FT_UInt const glyph = FindFaceOf(nCharacter, StyleOf(m_TextStyle), face);
  if (glyph == 0) return nullptr;
  int const size = ToInt(m_TextStyle.GetSize() * m_TextStyle.GetText3DScale());
  if (size >= FirstSizeRefused) return nullptr;
  if (!m_pRasteriser) m_pRasteriser = new detail::QXGlyphRasteriser(m_pLibrary);
  return m_pRasteriser->Draw(face, glyph, size, m_TextStyle.IsBold() != 0, bHalo != 0);
}

unsigned int QXTrueType::FindFaceOf(int nCharacter, FaceStyle eStyle, FT_Face& pFace) {
  pFace = GetFace(m_TextStyle.GetFaceName(), eStyle);
  FT_UInt glyph = FindGlyph(pFace, nCharacter);
  if (glyph == 0 && pFace != nullptr && pFace->charmap == nullptr) glyph = FindInCharmaps(pFace, nCharacter);
  if (glyph == 0 && pFace != nullptr && pFace->charmap != nullptr) {
    pFace = GetFace(QXStringEx::LoadResString(L"IMl001"), eStyle);
    glyph = FindGlyph(pFace, nCharacter);
  }
  if (glyph != 0) return glyph;
  FillFontsInfo();
  for (std::uint64_t i = 0; i < m_arrFontsInfo.GetSize() && glyph == 0; ++i) {
    pFace = GetFace(m_arrFontsInfo[i].m_strFontNameEn, eStyle);
    glyph = FindGlyph(pFace, nCharacter);
  }
  return glyph;
}

void QXTrueType::SetBold(unsigned char* pData, int nWidth, int nHeight) {
  if (pData == nullptr) return;
  for (std::ptrdiff_t row = 1; row < nHeight; ++row) {
    for (std::ptrdiff_t column = 1; column < nWidth; ++column) {
      unsigned char* const byte = pData + row * nWidth + column;
      // Both neighbours have been passed already, so what is raised here does not spread further.
      byte[-nWidth] = std::max(byte[-nWidth], *byte);
      byte[-1] = std::max(byte[-1], *byte);
    }
  }
}

}  // namespace QXC
