#include <QxGraphics3D/text/QXTextLayout.h>

#include <algorithm>
#include <utility>

#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/text/detail/QXGlyphAtlas.h>

namespace QXC {

namespace {

/// Every picture is this much larger than its glyph on each side, for its halo.
constexpr int MARGIN = 1;
/// As much as round borders of thin strokes stick out at most.
constexpr int MOST_MARGIN = 3;
/// Coverage of the hairs by which thickening moves edges into the next pixel; of the fonts measured, a third fewer bold
/// glyphs are then placed one pixel off. Edges of plain glyphs are where the font has them.
constexpr int BOLD_HAIR = 16;
constexpr unsigned int LAST_CHARACTER = 0xFFFF;

double GetDrawnSize(QXTextStyle const& style) {
  return style.GetSize() * style.GetText3DScale();
}

/// Fonts have no glyphs for these, and each request for one would search all of them.
bool IsControl(unsigned int nCharacter) {
  return nCharacter < L' ' || (nCharacter >= 0x7F && nCharacter < 0xA0) || nCharacter == 0x2028 || nCharacter == 0x2029;
}

/// Whether the atlas has tiles of that size: it opens one more texture for each request that it cannot fulfil.
bool HasTile(QXCharBitmapData const& bitmap) {
  int const nEdge = std::max(bitmap.m_nWidth, bitmap.m_nHeight);
  return nEdge > 1 && nEdge < detail::QXGlyphPage::kEdge;
}

/// Whether one of nCount pixels covers more than a hair: the one at nFirst, and each nStep behind it.
bool HasInk(QXCharBitmapData const& bitmap, int nHair, int nFirst, int nStep, int nCount) {
  unsigned char const* p = bitmap.m_pData + 2 * nFirst + 1;
  for (int i = 0; i < nCount; ++i, p += 2 * nStep)
    if (*p > nHair) return true;
  return false;
}

/// How far the ink begins behind the picture's left edge, and below its upper one. It is mostly the margin, and more
/// where the border is measured by the control points of its curves, which lie outside of it.
int GetLeftMargin(QXCharBitmapData const& bitmap, int nHair) {
  int const nMost = std::min(bitmap.m_nWidth - 1, MOST_MARGIN);
  int n = MARGIN;
  while (n < nMost && !HasInk(bitmap, nHair, n, bitmap.m_nWidth, bitmap.m_nHeight)) ++n;
  return n;
}
int GetTopMargin(QXCharBitmapData const& bitmap, int nHair) {
  int const nMost = std::min(bitmap.m_nHeight - 1, MOST_MARGIN);
  int n = MARGIN;
  while (n < nMost && !HasInk(bitmap, nHair, n * bitmap.m_nWidth, 1, bitmap.m_nWidth)) ++n;
  return n;
}

}  // namespace

QXTextLayout::QXTextLayout(QXTextureFontManager& manager) : m_pManager(&manager) {}

QXTextLayout::QXTextLayout(QXTextLayout&& other) noexcept : m_pManager(other.m_pManager) {
  *this = std::move(other);
}

QXTextLayout& QXTextLayout::operator=(QXTextLayout&& other) noexcept {
  // What this one held goes back with the other.
  std::swap(m_pManager, other.m_pManager);
  std::swap(m_arrKeys, other.m_arrKeys);
  std::swap(m_arrGlyphs, other.m_arrGlyphs);
  std::swap(m_nWidth, other.m_nWidth);
  std::swap(m_nAscent, other.m_nAscent);
  std::swap(m_nDescent, other.m_nDescent);
  std::swap(m_nSkipped, other.m_nSkipped);
  std::swap(m_nWide, other.m_nWide);
  return *this;
}

QXTextLayout::~QXTextLayout() {
  Clear();
}

void QXTextLayout::Clear() {
  GiveBack(m_arrKeys);
  m_arrKeys.clear();
  m_arrGlyphs.clear();
  m_nWidth = m_nAscent = m_nDescent = m_nSkipped = m_nWide = 0;
}

void QXTextLayout::GiveBack(std::vector<QXFontKey> const& arrKeys) {
  for (QXFontKey const& key : arrKeys) m_pManager->DelTextureFont(key);
}

unsigned char QXTextLayout::SetText(QdcUnicodeString const& strText, QXTextStyle const& style, unsigned char bHalo) {
  // They go back last: a glyph without users would lose its place and be drawn anew.
  std::vector<QXFontKey> const arrFormer = std::exchange(m_arrKeys, {});
  Clear();
  double const dSize = GetDrawnSize(style);
  // Written so that what is no number is refused too.
  bool const bSize = dSize >= 1.0 && dSize < KEY_SIZE + 1.0;
  if (bSize)
    for (wchar_t const* p = strText.Cstr(); *p != L'\0'; ++p) AddCharacter(static_cast<unsigned int>(*p), style, bHalo);
  m_arrGlyphs.insert(m_arrGlyphs.end(), m_arrTexts.begin(), m_arrTexts.end());
  m_arrTexts.clear();
  GiveBack(arrFormer);
  return bSize && m_nSkipped == 0 && m_nWide == 0;
}

void QXTextLayout::AddCharacter(unsigned int nCharacter, QXTextStyle const& style, unsigned char bHalo) {
  if (nCharacter > LAST_CHARACTER) {
    ++m_nWide;
    return;
  }
  if (IsControl(nCharacter)) nCharacter = L' ';
  QXFontKey const key = MakeKey(nCharacter, style, 0);
  QXCharBitmapData const* const pBitmap = m_pManager->GetCharBitmapData(key, style);
  bool const bBlank = pBitmap && (pBitmap->m_nWidth == 0 || pBitmap->m_nHeight == 0);
  if (!pBitmap || (!bBlank && !HasTile(*pBitmap))) {
    ++m_nSkipped;
    return;
  }
  int const nBold = !bBlank && style.IsBold() ? 1 : 0;
  if (!bBlank) {
    int const nHair = style.IsBold() ? BOLD_HAIR : 0;
    QXTextGlyph glyph;
    glyph.m_nLeft = m_nWidth + pBitmap->m_nBearingX - GetLeftMargin(*pBitmap, nHair);
    glyph.m_nRight = glyph.m_nLeft + pBitmap->m_nWidth;
    glyph.m_nTop = pBitmap->m_nBearingY + nBold + GetTopMargin(*pBitmap, nHair);
    glyph.m_nBottom = glyph.m_nTop - pBitmap->m_nHeight;
    if (!AddGlyph(key, style, glyph, m_arrTexts)) {
      ++m_nSkipped;
      return;
    }
    glyph.m_bHalo = 1;
    if (bHalo) AddGlyph(MakeKey(nCharacter, style, 1), style, glyph, m_arrGlyphs);
    m_nAscent = std::max(m_nAscent, glyph.m_nTop - MARGIN);
    m_nDescent = std::max(m_nDescent, -glyph.m_nBottom - MARGIN);
  }
  m_nWidth += pBitmap->m_nAdvance + nBold;
}

bool QXTextLayout::AddGlyph(
    QXFontKey const& key, QXTextStyle const& style, QXTextGlyph glyph, std::vector<QXTextGlyph>& arrGlyphs) {
  QXTextureFont const* const pFont = m_pManager->GetTextureFont(key, style);
  if (!pFont) return false;
  m_arrKeys.push_back(key);
  glyph.m_nPage = pFont->m_Key.GetTexture();
  glyph.m_TexCoords = pFont->m_TexCoords;
  arrGlyphs.push_back(glyph);
  return true;
}

QXFontKey QXTextLayout::MakeKey(unsigned int nCharacter, QXTextStyle const& style, unsigned char bHalo) {
  double const dSize = GetDrawnSize(style);
  unsigned int nCode = nCharacter << 16;
  if (dSize > 0.0) nCode |= static_cast<unsigned int>(std::min(dSize, static_cast<double>(KEY_SIZE)));
  if (style.IsBold()) nCode |= KEY_BOLD;
  if (style.IsItalic()) nCode |= KEY_ITALIC;
  if (bHalo) nCode |= QXFontKey::HALO;
  return {nCode, style.GetFaceName()};
}

QdcUnicodeString QXTextLayout::GetPageName(int nPage) {
  return detail::GetFontTextureName(nPage);
}

}  // namespace QXC
