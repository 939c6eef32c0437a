/// @file
/// The glyphs of a scene's labels.
#pragma once

#include <apps/qx3d/QXAtlasPicture.h>

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>
#include <QxGraphics3D/text/QXTextLayout.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace QXC {
class QXTextureFontManager;
}

namespace QXApp {

struct QXSceneLabel;
class QXSceneProblems;

/// Holds each glyph of a scene's labels in the glyph atlas, once for each font, size and cut, whatever number of labels
/// have it. On the rendering thread.
class QXLabelGlyphs {
public:
  QXLabelGlyphs() = default;
  QXLabelGlyphs(QXLabelGlyphs const&) = delete;
  QXLabelGlyphs& operator=(QXLabelGlyphs const&) = delete;

  /// Asks the atlas for all of them. Characters that it cannot give and fonts that are not there are told, each kind
  /// once for all labels, at the line of the first.
  void Take(QXC::QXTextureFontManager& manager, std::vector<QXSceneLabel> const& vecLabels, QXSceneProblems& problems);
  /// Lays one of these labels out, without the characters that were told.
  void LayOut(QXSceneLabel const& label, QXC::QXTextLayout& layout) const;
  /// Gives them back to the atlas.
  void GiveBack();

  std::size_t GetCount() const { return m_mapTiles.size(); }
  /// The pages by their numbers, with their places but without pixels.
  std::vector<QXAtlasPage> GetPages() const;

private:
  /// What makes two labels share glyphs. Regular cuts come first: the first one asked for decides what a family offers.
  struct StyleKey {
    explicit StyleKey(QXSceneLabel const& label);

    std::string m_strFont;
    bool m_bItalic;
    bool m_bBold;
    int m_nSize;
    bool m_bHalo;

    // The check takes the zero inside the comparison that the compiler writes for a pointer.
    auto operator<=>(StyleKey const&) const = default;  // NOLINT(modernize-use-nullptr)

    QXC::QXTextStyle MakeStyle() const;
  };
  /// Characters with the line of their first label.
  using Characters = std::map<wchar_t, int>;
  struct Style {
    Characters m_mapCharacters;
    /// Of these the ones that are not drawn.
    std::set<wchar_t> m_setLost;
  };
  /// What is not drawn, by reason.
  struct Losses {
    Characters m_mapWide;
    Characters m_mapUnknown;
    Characters m_mapWithoutPlace;
  };

  void Collect(std::vector<QXSceneLabel> const& vecLabels, QXSceneProblems& problems);
  void Hold(QXC::QXTextureFontManager& manager, StyleKey const& key, Style& style, Losses& losses);
  void HoldSome(QXC::QXTextureFontManager& manager, StyleKey const& key, std::wstring const& strSome, Style& style,
      Losses& losses);
  void NoteTiles(QXC::QXTextureFontManager& manager, StyleKey const& key, wchar_t character);

  std::map<StyleKey, Style> m_mapStyles;
  /// Some of each style, with each of its characters once.
  std::vector<QXC::QXTextLayout> m_vecHeld;
  /// What stands in each place of the atlas, by QXFontTextureKey::m_nKey.
  std::map<std::uint32_t, std::string> m_mapTiles;
};

}  // namespace QXApp
