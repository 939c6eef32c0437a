#include <apps/qx3d/QXLabelGlyphs.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXSceneText.h>

#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;
using QXC::QXTextLayout;
using QXC::QXTrueType;

/// Edge of a page of the glyph atlas.
constexpr int PageEdge = 1024;

/// Characters whose pictures are drawn before those that found no place are given up.
constexpr std::size_t AskedAtOnce = 64;

/// Last character that the atlas has keys for.
constexpr wchar_t LastCharacter = 0xFFFF;

QdcUnicodeString Widen(std::string const& strText) {
  return QdcUnicodeString::FromUTF8(strText.c_str());
}

std::string GetCode(wchar_t character) {
  char szCode[16];
  std::snprintf(szCode, sizeof szCode, "U+%04lX", static_cast<unsigned long>(character));
  return szCode;
}

/// Tells characters in one line, at the first label with one of them.
void Tell(
    QXSceneProblems& problems, std::map<wchar_t, int> const& mapCharacters, char const* szWhat, char const* szAdvice) {
  if (mapCharacters.empty()) return;
  constexpr std::size_t MaxListed = 5;
  std::string strList;
  std::size_t nListed = 0;
  int nLine = std::numeric_limits<int>::max();
  for (auto const& [character, nFirstLine] : mapCharacters) {
    nLine = std::min(nLine, nFirstLine);
    if (nListed++ < MaxListed) strList += (strList.empty() ? "" : ", ") + GetCode(character);
  }
  if (nListed > MaxListed) strList += " and " + std::to_string(nListed - MaxListed) + " more";
  problems.Add(nLine, std::string(szWhat) + " " + strList + "; " + szAdvice);
}

/// What is wrong with a font name; empty for one that is found.
std::string CheckFont(std::string const& strFont) {
  QdcUnicodeString strFamily = Widen(strFont);
  if (strFamily.GetAt(0) == L'@') strFamily.Delete(0, 1);
  QdcUnicodeString strPath;
  int nFaceIndex = 0;
  QXTrueType::FontSource const eSource =
      QXTrueType::GetSingleton().FindFontFile(strFamily, QXTrueType::FACE_REGULAR, strPath, nFaceIndex);
  if (eSource != QXTrueType::FONT_UNKNOWN && eSource != QXTrueType::FONT_LOST) return std::string();
  return "there is no font '" + strFont + "', so the default font, " +
         Narrow(QXC::QXStringEx::LoadResString(L"IMl001")) +
         ", stands in; install it, or name one that 'qx3d fonts' lists";
}

void Merge(std::map<wchar_t, int>& mapAll, wchar_t character, int nLine) {
  int& nFirstLine = mapAll.try_emplace(character, nLine).first->second;
  nFirstLine = std::min(nFirstLine, nLine);
}

}  // namespace

QXLabelGlyphs::StyleKey::StyleKey(QXSceneLabel const& label)
    : m_strFont(label.m_strFont), m_bItalic(label.m_bItalic), m_bBold(label.m_bBold), m_nSize(label.GetSize()),
      m_bHalo(label.m_bHalo) {}

QXC::QXTextStyle QXLabelGlyphs::StyleKey::MakeStyle() const {
  QXC::QXTextStyle style;
  style.SetFaceName(Widen(m_strFont));
  style.SetSize(m_nSize);
  style.SetBold(m_bBold ? 1 : 0);
  style.SetItalic(m_bItalic ? 1 : 0);
  return style;
}

void QXLabelGlyphs::Collect(std::vector<QXSceneLabel> const& vecLabels, QXSceneProblems& problems) {
  std::set<std::string> setFonts;
  for (QXSceneLabel const& label : vecLabels) {
    if (!label.m_strFont.empty() && setFonts.insert(label.m_strFont).second) {
      std::string const strProblem = CheckFont(label.m_strFont);
      if (!strProblem.empty()) problems.Add(label.m_nLine, strProblem);
    }
    Style& style = m_mapStyles[StyleKey(label)];
    QdcUnicodeString const strText = Widen(label.m_strText);
    for (wchar_t const* p = strText.Cstr(); *p != L'\0'; ++p) Merge(style.m_mapCharacters, *p, label.m_nLine);
  }
}

void QXLabelGlyphs::NoteTiles(QXC::QXTextureFontManager& manager, StyleKey const& key, wchar_t character) {
  QXC::QXTextStyle const style = key.MakeStyle();
  std::string const strCharacter = Narrow(std::wstring(1, character).c_str());
  for (bool const bHalo : {false, true}) {
    if (bHalo && !key.m_bHalo) continue;
    QXC::QXFontKey const glyph = QXTextLayout::MakeKey(static_cast<unsigned int>(character), style, bHalo ? 1 : 0);
    QXC::QXTextureFont const* pFont = manager.GetTextureFont(glyph, style);
    if (pFont == nullptr) continue;
    m_mapTiles[pFont->m_Key.m_nKey] = strCharacter + " " + GetCode(character) + ", " +
                                      (key.m_strFont.empty() ? "default font" : key.m_strFont) + " " +
                                      std::to_string(key.m_nSize) + (key.m_bBold ? " bold" : "") +
                                      (key.m_bItalic ? " italic" : "") + (bHalo ? " halo" : "");
    manager.DelTextureFont(glyph);
  }
}

void QXLabelGlyphs::Hold(QXC::QXTextureFontManager& manager, StyleKey const& key, Style& style, Losses& losses) {
  std::size_t nAsked = 0;
  std::wstring strSome;
  for (auto const& [character, nLine] : style.m_mapCharacters) {
    strSome += character;
    if (++nAsked < style.m_mapCharacters.size() && strSome.size() < AskedAtOnce) continue;
    HoldSome(manager, key, strSome, style, losses);
    strSome.clear();
  }
}

void QXLabelGlyphs::HoldSome(QXC::QXTextureFontManager& manager, StyleKey const& key, std::wstring const& strSome,
    Style& style, Losses& losses) {
  QXC::QXTextStyle const textStyle = key.MakeStyle();
  QXTextLayout& held = m_vecHeld.emplace_back(manager);
  held.SetText(strSome.c_str(), textStyle, key.m_bHalo ? 1 : 0);
  QXTextLayout probe(manager);
  bool bFull = false;
  for (wchar_t const character : strSome) {
    int const nLine = style.m_mapCharacters.at(character);
    probe.SetText(std::wstring(1, character).c_str(), textStyle, 0);
    if (!probe.GetGlyphs().empty()) NoteTiles(manager, key, character);
    if (probe.GetSkippedCount() + probe.GetWideCount() == 0) continue;
    style.m_setLost.insert(character);
    bool const bWide = character > LastCharacter;
    QXC::QXFontKey const glyph = QXTextLayout::MakeKey(static_cast<unsigned int>(character), textStyle, 0);
    bool const bDrawn = !bWide && manager.GetCharBitmapData(glyph, textStyle) != nullptr;
    Merge(bWide ? losses.m_mapWide : (bDrawn ? losses.m_mapWithoutPlace : losses.m_mapUnknown), character, nLine);
    bFull = bFull || bDrawn;
  }
  // The manager keeps the pictures even of what has no place, until an upload: tens of thousands of large ones would
  // take gigabytes.
  if (bFull) manager.AddCharBitmapToTexture();
}

void QXLabelGlyphs::Take(
    QXC::QXTextureFontManager& manager, std::vector<QXSceneLabel> const& vecLabels, QXSceneProblems& problems) {
  GiveBack();
  Collect(vecLabels, problems);
  Losses losses;
  for (auto& [key, style] : m_mapStyles) Hold(manager, key, style, losses);
  Tell(problems, losses.m_mapWide, "characters above U+FFFF cannot be drawn and are left out:", "write others");
  Tell(problems, losses.m_mapUnknown,
      "no font has these characters, which are left out:", "install a font that has them, or write others");
  Tell(problems, losses.m_mapWithoutPlace, "the glyph atlas has no place for these characters, which are left out:",
      "use fewer fonts and sizes, or smaller ones, or another renderer");
}

void QXLabelGlyphs::LayOut(QXSceneLabel const& label, QXTextLayout& layout) const {
  StyleKey const key(label);
  std::set<wchar_t> const& setLost = m_mapStyles.at(key).m_setLost;
  QdcUnicodeString strText = Widen(label.m_strText);
  if (!setLost.empty()) {
    // Each further request for an unknown character would search all fonts again.
    std::wstring strKept;
    for (wchar_t const* p = strText.Cstr(); *p != L'\0'; ++p)
      if (!setLost.contains(*p)) strKept += *p;
    strText = strKept.c_str();
  }
  layout.SetText(strText, key.MakeStyle(), label.m_bHalo ? 1 : 0);
}

void QXLabelGlyphs::GiveBack() {
  m_vecHeld.clear();
  m_mapStyles.clear();
  m_mapTiles.clear();
}

std::vector<QXAtlasPage> QXLabelGlyphs::GetPages() const {
  std::vector<QXAtlasPage> vecPages;
  int nLast = -1;
  // The texture is in the upper bits of the key, so that its places follow each other.
  for (auto const& [nKey, strName] : m_mapTiles) {
    QXC::QXFontTextureKey const key{nKey};
    if (key.GetTexture() != nLast) {
      nLast = key.GetTexture();
      QXAtlasPage& page = vecPages.emplace_back();
      page.m_strName = Narrow(QXTextLayout::GetPageName(nLast));
      page.m_nSize = PageEdge;
      page.m_strFormat = "PF_BYTE_LA (5)";
    }
    vecPages.back().m_vecTiles.push_back({key.GetLeft(), key.GetTop(), key.GetSize(), strName});
  }
  for (QXAtlasPage& page : vecPages)
    std::ranges::sort(page.m_vecTiles, {}, [](QXAtlasTile const& t) { return std::pair(t.m_nY, t.m_nX); });
  return vecPages;
}

}  // namespace QXApp
