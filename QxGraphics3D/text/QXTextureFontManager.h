/// @file
/// The glyph atlas.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>

namespace QXC {

class QXTextureFontManager;
extern template class QXGRAPHICS3D_API QXSingleton<QXTextureFontManager>;

/// Glyphs of one process in shared textures. First use on one thread.
class QXGRAPHICS3D_API QXTextureFontManager : public QXSingleton<QXTextureFontManager> {
public:
  QXTextureFontManager();
  QXTextureFontManager(QXTextureFontManager const&) = delete;
  QXTextureFontManager& operator=(QXTextureFontManager const&) = delete;
  ~QXTextureFontManager();

  /// Both make the manager at first use; it lives to the end of the process.
  static QXTextureFontManager& GetSingleton();
  static QXTextureFontManager* GetSingletonPtr();

  /// Empties everything held. Called by QXGraphics3D::ClearResource.
  void Clear();
};

}  // namespace QXC
