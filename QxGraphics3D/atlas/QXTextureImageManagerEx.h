/// @file
/// The second image atlas.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>

namespace QXC {

class QXTextureImageManagerEx;
extern template class QXGRAPHICS3D_API QXSingleton<QXTextureImageManagerEx>;

/// Images of one process in shared textures. First use on one thread.
class QXGRAPHICS3D_API QXTextureImageManagerEx : public QXSingleton<QXTextureImageManagerEx> {
public:
  QXTextureImageManagerEx();
  QXTextureImageManagerEx(QXTextureImageManagerEx const&) = delete;
  QXTextureImageManagerEx& operator=(QXTextureImageManagerEx const&) = delete;
  ~QXTextureImageManagerEx();

  /// Both make the manager at first use; it lives to the end of the process.
  static QXTextureImageManagerEx& GetSingleton();
  static QXTextureImageManagerEx* GetSingletonPtr();

  /// Empties everything held. Called by QXGraphics3D::ClearResource.
  void Clear();
};

}  // namespace QXC
