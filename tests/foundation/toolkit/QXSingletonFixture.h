/// @file
/// A manager as the library declares them: base exported before the class, statics in one source.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>

namespace QXC {

class QXTestManager;
extern template class QXGRAPHICS3D_API QXSingleton<QXTestManager>;

class QXGRAPHICS3D_API QXTestManager : public QXSingleton<QXTestManager> {
public:
  virtual ~QXTestManager();
  static QXTestManager& GetSingleton();
  static QXTestManager* GetSingletonPtr();

  int m_nNumber = 0;
};

}  // namespace QXC
