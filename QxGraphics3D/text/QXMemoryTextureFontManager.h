/// @file
/// The glyph atlas in memory.
#pragma once

#include <map>
#include <memory>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>
#include <QxGraphics3D/text/QXFontKey.h>
#include <QxGraphics3D/text/QXTextureFont.h>

namespace QXC {

class QXMemoryTextureFontManager;
struct QXCharBitmapData;
extern template class QXGRAPHICS3D_API QXSingleton<QXMemoryTextureFontManager>;

namespace detail {
class QXGlyphAtlas;
}

/// Glyphs in big images that are kept in memory, for hosts without a renderer's textures: as QXTextureFontManager with
/// an image of 1024 by 1024 pixels, two bytes each, in the place of each texture.
///
/// Threads: one recursive mutex, held by every operation but GetTextureDataFromMemory. QXTrueType is shared and has no
///          lock of its own: no other user of it may run at the same time, QXTextureFontManager among them.
/// Failure: null, silence. A glyph that finds no place has opened an image in vain, which stays and takes later ones.
class QXGRAPHICS3D_API QXMemoryTextureFontManager : public QXSingleton<QXMemoryTextureFontManager> {
public:
  QXMemoryTextureFontManager();
  QXMemoryTextureFontManager(QXMemoryTextureFontManager const&) = delete;
  QXMemoryTextureFontManager& operator=(QXMemoryTextureFontManager const&) = delete;
  /// Clear.
  virtual ~QXMemoryTextureFontManager();

  /// Both make the manager at first use, without a lock; it lives to the end of the process.
  static QXMemoryTextureFontManager& GetSingleton();
  static QXMemoryTextureFontManager* GetSingletonPtr();

  /// The image called "Font_BigTexture_" and a number, or null. No lock: no other thread may ask for glyphs or release
  /// them meanwhile.
  /// @return  the manager's, until its last glyph or everything is deleted
  QXTextureData* GetTextureDataFromMemory(QdcUnicodeString const& strName);

  /// As in QXTextureFontManager.
  QXCharBitmapData* GetCharBitmapData(QXFontKey const& key, QXTextStyle const& style);
  /// As in QXTextureFontManager.
  QXTextureFont* GetTextureFont(QXFontKey const& key, QXTextStyle const& style);
  /// One user less; an unknown key is ignored. Without users the glyph's tile is free, and an image without glyphs is
  /// deleted. The pixels stay where they are until others come; the picture is kept.
  void DelTextureFont(QXFontKey const& key);
  /// Copies the pixels of new glyphs into their images; then, if the kept pictures passed 10 MiB (10,485,760 bytes),
  /// deletes all of them.
  /// Cost: the new glyphs; nothing is allocated.
  void AddCharBitmapToTexture();
  /// Deletes every glyph, whatever its users, every picture and every image.
  void Clear();

private:
  bool CreateFontTexture(int nIndex);
  /// Copies the pixels of one glyph to its image, row by row.
  void Upload(QXTextureFont const& font, QXCharBitmapData const& bitmap);

  std::unique_ptr<detail::QXGlyphAtlas> m_pAtlas;
  std::map<QdcUnicodeString, std::unique_ptr<QXTextureData>> m_mapTextureDatas;
  QXMutex m_Mutex{1};
};

}  // namespace QXC
