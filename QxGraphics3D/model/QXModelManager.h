/// @file
/// The model cache of a renderer.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>

namespace QXC {

class QXModelManager;
extern template class QXGRAPHICS3D_API QXSingleton<QXModelManager>;

/// The models of one renderer, which makes the object in its constructor and deletes it in ClearResource. The first
/// one made is registered as the process's own.
///
/// Unlike the other managers this one can go: every destructor clears the registration, whichever object is
/// registered. With two renderers the end of the second therefore unregisters the first one's manager, too.
class QXGRAPHICS3D_API QXModelManager : public QXSingleton<QXModelManager> {
public:
  /// Registers itself if none is registered.
  QXModelManager();
  QXModelManager(QXModelManager const&) = delete;
  QXModelManager& operator=(QXModelManager const&) = delete;
  virtual ~QXModelManager();

  /// The registered manager; makes one if none is registered. No lock.
  static QXModelManager& GetSingleton();
  /// The registered manager, null if none is.
  static QXModelManager* GetSingletonPtr();
};

}  // namespace QXC
