/// @file
/// The glyph atlas.
#pragma once

#include <memory>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>
#include <QxGraphics3D/text/QXFontKey.h>
#include <QxGraphics3D/text/QXTextureFont.h>

namespace QXC {

class QXTexture;
class QXTextureFontManager;
class QXTextureManager;
struct QXCharBitmapData;
extern template class QXGRAPHICS3D_API QXSingleton<QXTextureFontManager>;

namespace detail {
class QXGlyphAtlas;
}

/// Glyphs in shared textures of 1024 by 1024 pixels, two bytes each (PF_BYTE_LA: luminance, coverage), called
/// "Font_BigTexture_" and a number from 0 on. Who asks for a glyph gets its texture coordinates at once; the pixels
/// follow with the next AddCharBitmapToTexture.
///
/// Threads: any, but for AddCharBitmapToTexture, which uploads and belongs to the rendering thread. One recursive mutex
///          is held by every operation but GetTexture, and the lock of the texture manager is taken under it, never
///          before it. QXTrueType is shared and has no lock of its own: no other user of it may run at the same time,
///          QXMemoryTextureFontManager among them. A thread that gives the last glyph of a texture back deletes that
///          texture: release on the rendering thread where textures may not die elsewhere.
/// Failure: null, silence. A glyph that finds no place has opened a texture in vain, which stays and takes later ones.
class QXGRAPHICS3D_API QXTextureFontManager : public QXSingleton<QXTextureFontManager> {
public:
  QXTextureFontManager();
  QXTextureFontManager(QXTextureFontManager const&) = delete;
  QXTextureFontManager& operator=(QXTextureFontManager const&) = delete;
  /// Clear.
  virtual ~QXTextureFontManager();

  /// Both make the manager at first use, without a lock; it lives to the end of the process.
  static QXTextureFontManager& GetSingleton();
  static QXTextureFontManager* GetSingletonPtr();

  /// Where textures come from; not owned. Set it before the first glyph is asked for, and null before it dies.
  void SetTextureManager(QXTextureManager* pTextureManager);
  /// The texture of that name, made if there is none; null without a texture manager, whose lock the caller holds.
  QXTexture* GetTexture(QdcUnicodeString const& strName);

  /// The picture of a glyph with its metrics, drawn at the first request; for layout, blanks included.
  /// @param style  read at the first request only: the key stands for it from then on
  /// @return  the manager's, until AddCharBitmapToTexture or Clear: do not keep it. Null if no font has the character;
  ///          that is not remembered, and each further request searches the fonts again.
  QXCharBitmapData* GetCharBitmapData(QXFontKey const& key, QXTextStyle const& style);
  /// A glyph, with one user more. Each call that does not give null wants its DelTextureFont.
  ///
  /// Ask for glyphs with pixels only: a picture whose greater edge is 0, as of a blank, 1, or above 1023 pixels gets no
  /// place, and each such request opens one more texture of 2 MiB.
  /// @param style  as in GetCharBitmapData
  /// @return  the manager's, valid until its last user is gone. Null if no font has the character, if it gets no place,
  ///          if there is no texture for it, and when 256 textures are full.
  /// Cost:    a look-up under the lock for a glyph that is there. Else it is drawn, and placed in a bounded number of
  ///          steps.
  QXTextureFont* GetTextureFont(QXFontKey const& key, QXTextStyle const& style);
  /// One user less; an unknown key is ignored. Without users the glyph's tile is free, and a texture without glyphs
  /// goes back to the texture manager. The pixels stay where they are until others come; the picture is kept.
  void DelTextureFont(QXFontKey const& key);
  /// Sends the pixels of new glyphs into their textures, in the order of the keys; then, if the kept pictures passed
  /// 10 MiB (10,485,760 bytes), deletes all of them: glyphs in textures need theirs no more. Called once a frame, on the
  /// rendering thread. Nothing without a texture manager: new glyphs keep waiting.
  ///
  /// Textures must not call back into this manager while they are loaded.
  /// Cost: the new glyphs; nothing is allocated when there are none.
  void AddCharBitmapToTexture();
  /// Deletes every glyph, whatever its users, and every picture. The textures stay in the texture manager, each with the
  /// user that it had. Called by QXGraphics3D::ClearResource.
  void Clear();

private:
  /// Asks for the texture of a page; false if there is none.
  bool CreateFontTexture(int nIndex);
  void RemoveFontTexture(int nIndex);
  /// Sends one glyph and gives its texture; null if there is none.
  QXTexture* Upload(QXTextureFont const& font, QXCharBitmapData const& bitmap);

  QXTextureManager* m_pTextureManager = nullptr;
  std::unique_ptr<detail::QXGlyphAtlas> m_pAtlas;
  QXMutex m_Mutex{1};
};

}  // namespace QXC
