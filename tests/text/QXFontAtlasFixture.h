/// @file
/// Glyphs of any size for the glyph atlases, and what both managers are asked in the same words.
#pragma once

#include "../atlas/QXToldTextures.h"
#include "QXGlyphFixture.h"

#include <QxGraphics3D/text/QXMemoryTextureFontManager.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

namespace QXC {

inline QdcUnicodeString PageName(int nIndex) {
  QdcUnicodeString strName;
  strName.Format(L"Font_BigTexture_%d", nIndex);
  return strName;
}

inline std::uint32_t Location(unsigned int nX, unsigned int nY, unsigned int nLevel, unsigned int nTexture) {
  return nX | nY << 10 | nLevel << 20 | nTexture << 24;
}

/// A key of the blank; the number stands in its lower bits.
inline QXFontKey Blank(int nNumber, wchar_t const* szFace = L"face") {
  return {static_cast<std::uint32_t>(L' ') << 16 | static_cast<std::uint32_t>(nNumber), szFace};
}

/// Makes the kept picture of a key w by h pixels, all of one coverage. Drawn for a blank, it adds nothing to the bytes
/// that count for the purge.
template <class Manager>
void Shape(Manager& manager, QXFontKey const& key, int nWidth, int nHeight, unsigned char nCoverage = 9) {
  QXTextStyle style;
  style.SetFaceName(L"sample");
  QXCharBitmapData* const pBitmap = manager.GetCharBitmapData(key, style);
  ASSERT_NE(pBitmap, nullptr);
  delete[] pBitmap->m_pData;
  std::size_t const nBytes = static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight) * 2;
  pBitmap->m_pData = new unsigned char[nBytes];
  std::fill_n(pBitmap->m_pData, nBytes, nCoverage);
  pBitmap->m_nWidth = nWidth;
  pBitmap->m_nHeight = nHeight;
}

template <class Manager>
QXTextureFont* GetShaped(Manager& manager, QXFontKey const& key, int nWidth, int nHeight, unsigned char nCoverage = 9) {
  Shape(manager, key, nWidth, nHeight, nCoverage);
  return manager.GetTextureFont(key, QXTextStyle());
}

class QXFontAtlasFixture : public QXGlyphFixture {
protected:
  QXFontAtlasFixture() {
    OpenAs(L"sample", SAMPLE_FONTS[0].m_szFile);
    GetTold().clear();
  }

  static QXTextStyle Style(QdcUnicodeString const& strFace, double dSize) {
    QXTextStyle style;
    style.SetFaceName(strFace);
    style.SetSize(dSize);
    return style;
  }

  /// Boxes on a font of its own: at 15 points the character 0x4E00 + g - 1 is a picture of 2 g + 2 by 16 pixels.
  void OpenBoxes() {
    QXFontMaker font = SimpleFont(u"boxes");
    font.m_nGlyphs = 101;
    font.m_arrCharmaps = {{3, 1, {}}};
    for (std::uint32_t g = 1; g <= 100; ++g) font.m_arrCharmaps[0].m_arrCharacters.push_back(0x4DFF + g);
    QdcUnicodeString const strPath = WriteFont("boxes.fon", font);
    OpenAs(L"boxes", Narrow(strPath));
  }
  static QXFontKey Box(int nGlyph, int nNumber = 0) {
    return {static_cast<std::uint32_t>(0x4DFF + nGlyph) << 16 | static_cast<std::uint32_t>(nNumber), L"boxes"};
  }

  QXAsSingleton<QXTrueType> m_FontsSingleton{Fonts()};
  QXToldTextureManager m_Textures;
};

/// A manager with its pages, however it keeps them.
template <class Manager>
class QXFontAtlas;

template <>
class QXFontAtlas<QXTextureFontManager> : public QXFontAtlasFixture {
protected:
  QXFontAtlas() { m_Manager.SetTextureManager(&m_Textures); }

  bool HasPage(int nIndex) { return m_Textures.Find(PageName(nIndex)) != nullptr; }

  QXTextureFontManager m_Manager;
};

template <>
class QXFontAtlas<QXMemoryTextureFontManager> : public QXFontAtlasFixture {
protected:
  bool HasPage(int nIndex) { return m_Manager.GetTextureDataFromMemory(PageName(nIndex)) != nullptr; }

  QXMemoryTextureFontManager m_Manager;
};

}  // namespace QXC
