// One line of text: where its glyphs stand, and which of them the atlas has while it lives.
#include "QXFontAtlasFixture.h"

#include <QxGraphics3D/text/QXTextLayout.h>

#include <ft2build.h>
#include FT_GLYPH_H
#include FT_OUTLINE_H
#include FT_STROKER_H

#include <limits>
#include <utility>
#include <vector>

namespace QXC {
namespace {

/// The characters of boxes: the box of the number g is 2 g pixels wide and 14 high at 15 points, begins one pixel
/// behind the pen, stands on the baseline and moves the pen by 2 g + 2.
QdcUnicodeString Boxes(std::vector<int> const& arrNumbers) {
  QdcUnicodeString strText;
  for (int const n : arrNumbers) strText += QdcUnicodeString(std::wstring(1, static_cast<wchar_t>(0x4DFF + n)).c_str());
  return strText;
}

class QXTextLayouts : public QXFontAtlas<QXTextureFontManager> {
protected:
  QXTextLayouts() { OpenBoxes(); }

  static QXTextStyle BoxStyle(unsigned char bBold = 0) {
    QXTextStyle style = Style(L"boxes", 15);
    style.SetBold(bBold);
    return style;
  }
  static std::string Quad(QXTextGlyph const& glyph) {
    return std::to_string(glyph.m_nLeft) + " " + std::to_string(glyph.m_nBottom) + " " +
           std::to_string(glyph.m_nRight) + " " + std::to_string(glyph.m_nTop);
  }
  /// Users of a glyph.
  int GetUsers(QXFontKey const& key, QXTextStyle const& style) {
    QXTextureFont const* const pFont = m_Manager.GetTextureFont(key, style);
    int const nUsers = pFont ? pFont->m_nRefCount - 1 : -1;
    if (pFont) m_Manager.DelTextureFont(key);
    return nUsers;
  }
};

TEST_F(QXTextLayouts, ALineBeginsEmpty) {
  QXTextLayout const layout(m_Manager);
  EXPECT_TRUE(layout.GetGlyphs().empty());
  EXPECT_EQ(layout.GetWidth(), 0);
  EXPECT_EQ(layout.GetAscent(), 0);
  EXPECT_EQ(layout.GetDescent(), 0);
  EXPECT_EQ(layout.GetSkippedCount(), 0);
  EXPECT_EQ(layout.GetWideCount(), 0);
}

TEST_F(QXTextLayouts, ThePenMovesByTheAdvance) {
  QXTextLayout layout(m_Manager);
  EXPECT_EQ(layout.SetText(Boxes({3, 1, 5}), BoxStyle(), 0), 1);
  ASSERT_EQ(layout.GetGlyphs().size(), 3U);
  // Each picture has a margin of one pixel round its box.
  EXPECT_EQ(Quad(layout.GetGlyphs()[0]), "0 -1 8 15");
  EXPECT_EQ(Quad(layout.GetGlyphs()[1]), "8 -1 12 15");
  EXPECT_EQ(Quad(layout.GetGlyphs()[2]), "12 -1 24 15");
  EXPECT_EQ(layout.GetWidth(), 24);
  EXPECT_EQ(layout.GetAscent(), 14);
  EXPECT_EQ(layout.GetDescent(), 0);
}

TEST_F(QXTextLayouts, TheGlyphsPlaceIsThatOfTheAtlas) {
  QXTextLayout layout(m_Manager);
  layout.SetText(Boxes({3}), BoxStyle(), 0);
  QXTextGlyph const& glyph = layout.GetGlyphs().at(0);
  QXFontKey const key = QXTextLayout::MakeKey(0x4E02, BoxStyle(), 0);
  QXTextureFont const* const pFont = m_Manager.GetTextureFont(key, BoxStyle());
  ASSERT_NE(pFont, nullptr);
  EXPECT_EQ(pFont->m_nRefCount, 2) << "the key is the one that was asked for";
  EXPECT_EQ(glyph.m_nPage, pFont->m_Key.GetTexture());
  EXPECT_EQ(glyph.m_TexCoords.m_fLeft, pFont->m_TexCoords.m_fLeft);
  EXPECT_EQ(glyph.m_TexCoords.m_fTop, pFont->m_TexCoords.m_fTop);
  EXPECT_EQ(glyph.m_TexCoords.m_fRight, pFont->m_TexCoords.m_fRight);
  EXPECT_EQ(glyph.m_TexCoords.m_fBottom, pFont->m_TexCoords.m_fBottom);
  EXPECT_NE(m_Textures.Find(QXTextLayout::GetPageName(glyph.m_nPage)), nullptr);
  m_Manager.DelTextureFont(key);
}

TEST_F(QXTextLayouts, HalosComeFirstAndStandWhereTheirGlyphsDo) {
  QXTextLayout layout(m_Manager);
  EXPECT_EQ(layout.SetText(Boxes({3, 1}), BoxStyle(), 1), 1);
  ASSERT_EQ(layout.GetGlyphs().size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(layout.GetGlyphs()[i].m_bHalo, i < 2 ? 1 : 0);
    EXPECT_EQ(Quad(layout.GetGlyphs()[i]), i % 2 == 0 ? "0 -1 8 15" : "8 -1 12 15");
  }
  EXPECT_EQ(GetUsers(QXTextLayout::MakeKey(0x4E02, BoxStyle(), 1), BoxStyle()), 1);
  EXPECT_EQ(GetUsers(QXTextLayout::MakeKey(0x4E02, BoxStyle(), 0), BoxStyle()), 1);
  EXPECT_EQ(layout.GetAscent(), 14) << "without the halo";
}

TEST_F(QXTextLayouts, BlanksMoveThePenAndAreNeverAskedOfTheAtlas) {
  QXTextLayout layout(m_Manager);
  EXPECT_EQ(layout.SetText(L" \t\n\r ", Style(L"sample", 15), 1), 1);
  EXPECT_TRUE(layout.GetGlyphs().empty());
  EXPECT_EQ(m_Textures.GetCount(), 0U) << "each request for a blank opens a texture";
  int const nFive = layout.GetWidth();
  layout.SetText(L" ", Style(L"sample", 15), 0);
  EXPECT_GT(layout.GetWidth(), 0);
  EXPECT_EQ(nFive, 5 * layout.GetWidth()) << "control characters are blanks";
  layout.SetText(L"\x7F\x85\x9F\x2028\x2029", Style(L"sample", 15), 0);
  EXPECT_EQ(nFive, layout.GetWidth());
  EXPECT_EQ(layout.GetSkippedCount(), 0);
}

TEST_F(QXTextLayouts, CharactersWithoutAGlyphAreCountedAndTakeNoRoom) {
  QXTextLayout layout(m_Manager);
  EXPECT_EQ(layout.SetText(Boxes({3}) + L"\xFFFE\xE123" + Boxes({1}), BoxStyle(), 1), 0);
  EXPECT_EQ(layout.GetSkippedCount(), 2);
  EXPECT_EQ(layout.GetGlyphs().size(), 4U);
  EXPECT_EQ(Quad(layout.GetGlyphs()[1]), "8 -1 12 15");
  EXPECT_EQ(layout.GetWidth(), 12);
}

TEST_F(QXTextLayouts, CharactersAboveThePlaneAreCountedAndNotMangled) {
  QXTextLayout layout(m_Manager);
  // Cut to 16 bits, the first would be a box.
  EXPECT_EQ(layout.SetText(QdcUnicodeString(L"\x14E02\x10FFFF") + Boxes({1}), BoxStyle(), 0), 0);
  EXPECT_EQ(layout.GetWideCount(), 2);
  EXPECT_EQ(layout.GetSkippedCount(), 0);
  EXPECT_EQ(layout.GetGlyphs().size(), 1U);
  EXPECT_EQ(layout.GetWidth(), 4);
  wchar_t const szNegative[] = {static_cast<wchar_t>(-1), static_cast<wchar_t>(0x80000001U), L'\0'};
  EXPECT_EQ(layout.SetText(szNegative, BoxStyle(), 0), 0);
  EXPECT_EQ(layout.GetWideCount(), 2);
}

TEST_F(QXTextLayouts, GlyphsThatFitNoPageAreSkippedBeforeTheAtlasOpensOne) {
  QXTextLayout layout(m_Manager);
  // At 600 points a box of the number 20 is 1600 pixels wide.
  EXPECT_EQ(layout.SetText(Boxes({20}), Style(L"boxes", 600), 0), 0);
  EXPECT_EQ(layout.GetSkippedCount(), 1);
  EXPECT_EQ(layout.GetWidth(), 0);
  EXPECT_EQ(m_Textures.GetCount(), 0U);
}

TEST_F(QXTextLayouts, AGlyphAsLargeAsAPageIsSkippedAndAnySmallerOneIsNot) {
  QXTextLayout layout(m_Manager);
  struct {
    int nWidth;
    int nHeight;
    unsigned char bFits;
  } const cases[] = {{1023, 1023, 1}, {1024, 20, 0}, {20, 1024, 0}};
  double dSize = 10.0;
  for (auto const& [nWidth, nHeight, bFits] : cases) {
    QXTextStyle const style = Style(L"sample", dSize++);
    Shape(m_Manager, QXTextLayout::MakeKey(L' ', style, 0), nWidth, nHeight);
    EXPECT_EQ(layout.SetText(L" ", style, 0), bFits) << nWidth << ' ' << nHeight;
    EXPECT_EQ(layout.GetSkippedCount(), bFits ? 0 : 1) << nWidth << ' ' << nHeight;
  }
  // The atlas would open another one for what it cannot place.
  EXPECT_FALSE(HasPage(1));
}

TEST_F(QXTextLayouts, WithoutTexturesEverythingIsSkipped) {
  m_Manager.SetTextureManager(nullptr);
  QXTextLayout layout(m_Manager);
  EXPECT_EQ(layout.SetText(Boxes({3, 3}), BoxStyle(), 1), 0);
  EXPECT_EQ(layout.GetSkippedCount(), 2);
  EXPECT_TRUE(layout.GetGlyphs().empty());
}

TEST_F(QXTextLayouts, SizesThatNobodyCanSeeOrKeyAreRefused) {
  QXTextLayout layout(m_Manager);
  for (double const dSize : {0.0, 0.99, -15.0, 4096.0, 1e300, std::numeric_limits<double>::quiet_NaN(),
           std::numeric_limits<double>::infinity()}) {
    layout.SetText(Boxes({3}), BoxStyle(), 0);
    EXPECT_EQ(layout.SetText(Boxes({3}), Style(L"boxes", dSize), 0), 0) << dSize;
    EXPECT_TRUE(layout.GetGlyphs().empty()) << dSize;
    EXPECT_EQ(layout.GetWidth(), 0) << dSize;
    EXPECT_EQ(layout.GetSkippedCount(), 0) << dSize;
  }
  EXPECT_EQ(layout.SetText(Boxes({3}), Style(L"boxes", 1.0), 0), 1);
  // The largest of all is asked for, and has no place on a page.
  EXPECT_EQ(layout.SetText(Boxes({3}), Style(L"boxes", 4095.9), 0), 0);
  EXPECT_EQ(layout.GetSkippedCount(), 1);
  QXTextStyle scaled = Style(L"boxes", 30000);
  scaled.SetText3DScale(0.0005);
  EXPECT_EQ(layout.SetText(Boxes({3}), scaled, 0), 1);
  EXPECT_EQ(Quad(layout.GetGlyphs().at(0)), "0 -1 8 15");
}

TEST_F(QXTextLayouts, TheTextEndsAtItsFirstZero) {
  QXTextLayout layout(m_Manager);
  QdcUnicodeString strText = Boxes({3});
  strText.SetLength(20);
  EXPECT_EQ(layout.SetText(strText, BoxStyle(), 0), 1);
  EXPECT_EQ(layout.GetGlyphs().size(), 1U);
  EXPECT_EQ(layout.SetText(L"", BoxStyle(), 0), 1);
  EXPECT_TRUE(layout.GetGlyphs().empty());
}

TEST_F(QXTextLayouts, BoldGlyphsTakeOnePixelMore) {
  QXTextLayout layout(m_Manager);
  EXPECT_EQ(layout.SetText(Boxes({3, 1}), BoxStyle(1), 0), 1);
  ASSERT_EQ(layout.GetGlyphs().size(), 2U);
  EXPECT_EQ(Quad(layout.GetGlyphs()[0]), "0 -1 9 16");
  EXPECT_EQ(Quad(layout.GetGlyphs()[1]), "9 -1 14 16");
  EXPECT_EQ(layout.GetWidth(), 14);
  EXPECT_EQ(layout.GetAscent(), 15);
  EXPECT_EQ(layout.GetDescent(), 0) << "they stand on the same line";
  // A blank has nothing that could become thicker.
  QXTextStyle style = Style(L"sample", 15);
  layout.SetText(L" ", style, 0);
  int const nBlank = layout.GetWidth();
  style.SetBold(1);
  layout.SetText(L" ", style, 0);
  EXPECT_EQ(layout.GetWidth(), nBlank);
}

TEST_F(QXTextLayouts, AscentAndDescentAreThoseOfTheInk) {
  QXTextLayout layout(m_Manager);
  layout.SetText(L"x", Style(L"sample", 48), 0);
  int const nLow = layout.GetAscent();
  layout.SetText(L"xlg", Style(L"sample", 48), 0);
  EXPECT_GT(layout.GetAscent(), nLow);
  EXPECT_GT(layout.GetDescent(), 8);
  layout.SetText(L"-", Style(L"sample", 48), 0);
  EXPECT_EQ(layout.GetDescent(), 0) << "ink above the line does not make it negative";
}

TEST_F(QXTextLayouts, EachCharacterHoldsItsGlyphUntilTheLineChanges) {
  QXFontKey const key = QXTextLayout::MakeKey(0x4E02, BoxStyle(), 0);
  {
    QXTextLayout layout(m_Manager);
    layout.SetText(Boxes({3, 3, 1}), BoxStyle(), 0);
    EXPECT_EQ(GetUsers(key, BoxStyle()), 2);
    QXTextLayout other(m_Manager);
    other.SetText(Boxes({3}), BoxStyle(), 0);
    EXPECT_EQ(GetUsers(key, BoxStyle()), 3);
    layout.SetText(Boxes({1}), BoxStyle(), 0);
    EXPECT_EQ(GetUsers(key, BoxStyle()), 1);
    other.Clear();
    EXPECT_EQ(other.GetWidth(), 0);
    EXPECT_EQ(GetUsers(key, BoxStyle()), 0);
  }
  EXPECT_FALSE(HasPage(0)) << "nothing is left in the atlas";
}

TEST_F(QXTextLayouts, GlyphsOfBothTextsStayInTheirPlace) {
  QXTextLayout layout(m_Manager);
  layout.SetText(Boxes({3}), BoxStyle(), 0);
  GetTold().clear();
  layout.SetText(Boxes({3, 3}), BoxStyle(), 0);
  EXPECT_TRUE(GetTold().empty()) << "given back too early, the page would have died and come again";
  EXPECT_EQ(GetUsers(QXTextLayout::MakeKey(0x4E02, BoxStyle(), 0), BoxStyle()), 2);
}

TEST_F(QXTextLayouts, AMovedLineTakesItsGlyphsAlong) {
  QXFontKey const key = QXTextLayout::MakeKey(0x4E02, BoxStyle(), 0);
  QXTextLayout first(m_Manager);
  first.SetText(Boxes({3}), BoxStyle(), 0);
  QXTextLayout second(std::move(first));
  EXPECT_EQ(second.GetWidth(), 8);
  EXPECT_EQ(GetUsers(key, BoxStyle()), 1);
  QXTextLayout third(m_Manager);
  third.SetText(Boxes({3, 3}), BoxStyle(), 0);
  third = std::move(second);
  EXPECT_EQ(third.GetWidth(), 8);
  second.Clear();  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(GetUsers(key, BoxStyle()), 1);
  EXPECT_EQ(second.SetText(Boxes({1}), BoxStyle(), 0), 1) << "what was moved from can be used again";
}

TEST_F(QXTextLayouts, AMovedLineTakesItsMeasuresAlong) {
  QXTextLayout first(m_Manager);
  first.SetText(L"lg\xE123\xE124\x10FFFF", Style(L"sample", 48), 0);
  int const nAscent = first.GetAscent();
  int const nDescent = first.GetDescent();
  EXPECT_GT(nAscent, nDescent);
  EXPECT_GT(nDescent, 0);
  QXTextLayout const second(std::move(first));
  EXPECT_EQ(second.GetAscent(), nAscent);
  EXPECT_EQ(second.GetDescent(), nDescent);
  EXPECT_EQ(second.GetSkippedCount(), 2);
  EXPECT_EQ(second.GetWideCount(), 1);
}

TEST_F(QXTextLayouts, AKeyTellsSizesStylesHalosAndFacesApart) {
  QXTextStyle style = Style(L"face", 15.9);
  EXPECT_EQ(QXTextLayout::MakeKey(0x41, style, 0).m_nCode, 0x0041000FU);
  EXPECT_EQ(QXTextLayout::MakeKey(0x41, style, 0).m_strFaceName, L"face");
  EXPECT_EQ(QXTextLayout::MakeKey(0xFFFF, style, 1).m_nCode, 0xFFFF400FU);
  style.SetBold(1);
  EXPECT_EQ(QXTextLayout::MakeKey(0x41, style, 0).m_nCode, 0x0041100FU);
  style.SetItalic(1);
  EXPECT_EQ(QXTextLayout::MakeKey(0x41, style, 1).m_nCode, 0x0041700FU);
  style.SetText3DScale(10);
  EXPECT_EQ(QXTextLayout::MakeKey(0x41, style, 0).m_nCode, 0x0041309FU) << "159, the whole part of the product";
  EXPECT_TRUE(QXTextLayout::MakeKey(0x41, style, 1).IsHalo());
  EXPECT_EQ(QXTextLayout::MakeKey(0x41, style, 1).GetCharacter(), 0x41);
  for (double const dSize : {-1.0, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_EQ(QXTextLayout::MakeKey(0x41, Style(L"", dSize), 0).m_nCode, 0x00410000U);
  EXPECT_EQ(QXTextLayout::MakeKey(0x41, Style(L"", 1e9), 0).m_nCode, 0x00410FFFU);
}

/// Where the outline of a glyph with its border begins and ends, in whole pixels from the pen: left and top.
std::pair<int, int> BorderEdges(FT_Face face, wchar_t nCharacter, int nSize, bool bBold) {
  FT_Set_Char_Size(face, nSize * 64, nSize * 64, 96, 96);
  FT_Load_Glyph(face, FT_Get_Char_Index(face, static_cast<FT_ULong>(nCharacter)), FT_LOAD_NO_BITMAP);
  if (bBold) FT_Outline_Embolden(&face->glyph->outline, 64);
  FT_Glyph glyph = nullptr;
  FT_Get_Glyph(face->glyph, &glyph);
  FT_Stroker stroker = nullptr;
  FT_Stroker_New(face->glyph->library, &stroker);
  FT_Stroker_Set(stroker, 64, FT_STROKER_LINECAP_ROUND, FT_STROKER_LINEJOIN_ROUND, 0);
  FT_Glyph_StrokeBorder(&glyph, stroker, 0, 1);
  FT_BBox box;
  FT_Glyph_Get_CBox(glyph, FT_GLYPH_BBOX_GRIDFIT, &box);
  FT_Done_Glyph(glyph);
  FT_Stroker_Done(stroker);
  return {static_cast<int>(box.xMin >> 6), static_cast<int>(box.yMax >> 6)};
}

TEST_F(QXTextLayouts, LettersOfAllFontsStandOnOneLine) {
  // Keeps the page alive from letter to letter.
  QXTextLayout first(m_Manager);
  first.SetText(Boxes({3}), BoxStyle(), 0);
  int arrOff[2] = {0, 0};
  int nGlyphs = 0;
  for (QXSampleFont const& sample : SAMPLE_FONTS) {
    QdcUnicodeString const strFamily = QdcUnicodeString::FromUTF8(sample.m_szFile);
    FT_Face const face = OpenAs(strFamily, sample.m_szFile, sample.m_nFace);
    ASSERT_NE(face, nullptr);
    for (int const nSize : {9, 30}) {
      for (bool const bBold : {false, true}) {
        QXTextStyle style = Style(strFamily, nSize);
        style.SetBold(bBold);
        for (wchar_t c = L'!'; c <= L'~'; ++c) {
          wchar_t const szText[] = {c, L'\0'};
          QXTextLayout layout(m_Manager);
          ASSERT_EQ(layout.SetText(szText, style, 0), 1);
          auto const [nLeft, nTop] = BorderEdges(face, c, nSize, bBold);
          QXTextGlyph const& glyph = layout.GetGlyphs().at(0);
          EXPECT_LE(std::abs(glyph.m_nLeft - nLeft), 1) << sample.m_szFile << ' ' << char(c) << ' ' << nSize;
          EXPECT_LE(std::abs(glyph.m_nTop - nTop), 2) << sample.m_szFile << ' ' << char(c) << ' ' << nSize;
          nGlyphs += bBold ? 0 : 1;
          arrOff[bBold ? 1 : 0] += glyph.m_nLeft != nLeft || glyph.m_nTop != nTop;
        }
      }
    }
  }
  // An edge may lie in a pixel that it covers less than the 255th part of. Thickening moves edges by hairs as well.
  EXPECT_LT(arrOff[0] * 50, nGlyphs) << arrOff[0] << " of " << nGlyphs;
  EXPECT_LT(arrOff[1] * 14, nGlyphs) << arrOff[1] << " of " << nGlyphs << " bold ones";
}

}  // namespace
}  // namespace QXC
