/// @file
/// One line of text as quads of the glyph atlas.
#pragma once

#include <vector>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>
#include <QxGraphics3D/text/QXFontKey.h>
#include <QxGraphics3D/text/QXTextureFont.h>

namespace QXC {

class QXTextureFontManager;

/// Names of the programs for labels that face the camera, for QXRenderOperation3D::SetShaderPrograms.
///
/// A label drawable is an ordinary drawable whose texture is a page of the glyph atlas (PF_BYTE_LA): it is drawn in its
/// colours times the luminance, and covers what is behind it by its alpha times the coverage. Texture coordinates of
/// set 0 are the place in the page, u and v as QXTextGlyph has them. There are two kinds:
///
/// - *Facing the camera*: with these programs, which the renderer knows by name. Each vertex has the position of its
///   label's anchor, and in set 1 the offset of this corner from the anchor in pixels, x to the right and y up on the
///   screen. The anchor moves to the nearest corner of pixels first, so that letters with whole offsets stay sharp.
///   Labels reach into the picture from anchors beyond its edges.
/// - *Flat*: without programs. The quads lie in the world as other geometry does.
///
/// One drawable may hold any number of labels, since what it costs to draw follows from the number of drawables. Halos
/// stand under all texts of a page when they have a drawable of their own, with a lower SetRenderPriority, or an index
/// range before that of the texts. Usual with it: SetLightEnable(0), SetDepthWrite(0), and SetDepthTest(0) for labels
/// that nothing may hide.
inline constexpr wchar_t const LABEL_VERTEX_PROGRAM[] = L"QXLabelVP.glsl";
inline constexpr wchar_t const LABEL_FRAGMENT_PROGRAM[] = L"QXLabelFP.glsl";

/// One glyph of a line. A value.
struct QXGRAPHICS3D_API QXTextGlyph {
  int m_nPage = 0;  ///< texture of the glyph, see QXTextLayout::GetPageName
  // Outer edges of the picture in whole pixels from the start of the line on its baseline, x to the right, y up.
  int m_nLeft = 0;
  int m_nBottom = 0;
  int m_nRight = 0;
  int m_nTop = 0;
  /// Texture coordinates of the same edges: v = m_fTop belongs to m_nBottom, and v = m_fBottom to m_nTop.
  QXTextureFont::TexCoords m_TexCoords;
  unsigned char m_bHalo = 0;  ///< the border of a glyph that follows further on
};

/// Lays one line of text out and holds its glyphs in the atlas: each stays where it is as long as this object does.
///
/// The pen moves from glyph to glyph by whole pixels, from left to right in the order of the text; there is no kerning,
/// and letters of scripts that run from right to left are neither put in order nor joined. Bold glyphs, which are
/// thickened to the right and upwards by a pixel, move it by one more. A character without pixels, such as a blank, only
/// moves the pen, and control characters, line breaks among them, are blanks.
///
/// Ownership: the manager is borrowed and must outlive this object. QXTextureFontManager::Clear takes the glyphs away:
///            call it only when no layout is left, or call Clear of each of them before.
/// Threads:   the rendering thread, or any other while that neither uploads glyphs nor clears the manager: the pictures
///            that give the measures may go then.
class QXGRAPHICS3D_API QXTextLayout {
public:
  explicit QXTextLayout(QXTextureFontManager& manager);
  QXTextLayout(QXTextLayout&& other) noexcept;
  QXTextLayout& operator=(QXTextLayout&& other) noexcept;
  QXTextLayout(QXTextLayout const&) = delete;
  QXTextLayout& operator=(QXTextLayout const&) = delete;
  /// Clear.
  ~QXTextLayout();

  /// Lays a text out in place of the former one, up to its first zero character. Glyphs that both have stay in the
  /// atlas.
  /// @param bHalo  1: the border of each glyph as well, if it finds a place. All borders come before the first glyph,
  ///               so that none covers the glyph beside it
  /// @return  1 if every character was laid out. 0 if some were left out, see GetSkippedCount and GetWideCount, or if
  ///          the size, times the 3D scale, is not from 1 to below 4096: then nothing is laid out.
  /// Cost:    a look-up or two for each character whose glyph is known; unknown ones are drawn.
  unsigned char SetText(QdcUnicodeString const& strText, QXTextStyle const& style, unsigned char bHalo);
  /// Gives the glyphs back; the line is empty then.
  void Clear();

  /// Halos, then glyphs, each from left to right. Valid until the next change.
  std::vector<QXTextGlyph> const& GetGlyphs() const { return m_arrGlyphs; }
  /// Where the pen ends, in pixels.
  int GetWidth() const { return m_nWidth; }
  /// How far the ink reaches above the baseline and below it, in pixels, halos left out; 0 without ink. A text like
  /// "aces" has a low ascent: a label that stands alone is centred by its own measures, lines that are to be level by
  /// those of one sample text.
  int GetAscent() const { return m_nAscent; }
  int GetDescent() const { return m_nDescent; }
  /// Characters that were left out because no font has them or because they do not fit a page; they take no room.
  int GetSkippedCount() const { return m_nSkipped; }
  /// Characters above U+FFFF, which the keys of the atlas have no room for. They are never asked for, and take no room.
  int GetWideCount() const { return m_nWide; }

  /// The key of a glyph in the atlas: style and size in the lower bits of the code, as below, and the face name.
  /// @param nCharacter  up to 65535
  static QXFontKey MakeKey(unsigned int nCharacter, QXTextStyle const& style, unsigned char bHalo);
  static constexpr unsigned int KEY_SIZE = 4095;    ///< bits 0 to 11: size times 3D scale, its whole part
  static constexpr unsigned int KEY_BOLD = 4096;    ///< bit 12
  static constexpr unsigned int KEY_ITALIC = 8192;  ///< bit 13
  /// Name of a page in the texture manager.
  static QdcUnicodeString GetPageName(int nPage);

private:
  /// Lays one character out at the pen and moves that.
  void AddCharacter(unsigned int nCharacter, QXTextStyle const& style, unsigned char bHalo);
  /// Asks for a glyph and sets its quad. False if it gets no place.
  bool AddGlyph(QXFontKey const& key, QXTextStyle const& style, QXTextGlyph glyph, std::vector<QXTextGlyph>& arrGlyphs);
  void GiveBack(std::vector<QXFontKey> const& arrKeys);

  QXTextureFontManager* m_pManager;
  std::vector<QXFontKey> m_arrKeys;      ///< one for each glyph held
  std::vector<QXTextGlyph> m_arrGlyphs;  ///< halos first
  std::vector<QXTextGlyph> m_arrTexts;   ///< glyphs of a text that is being laid out
  int m_nWidth = 0;
  int m_nAscent = 0;
  int m_nDescent = 0;
  int m_nSkipped = 0;
  int m_nWide = 0;
};

}  // namespace QXC
