/// @file
/// One loaded plug-in module.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// A loaded module: its kind by number, the function that makes its objects and the handle that the system gave. A
/// plain record: nothing is released when it goes, the module stays loaded, because objects made by it may live on.
class QXGRAPHICS3D_API QXPluginDefine {
public:
  QXPluginDefine(int nType, void* pfnCreate, void* hModule);
  int GetType() const;
  void* GetHandle() const;
  void* GetCreateFunc() const;

private:
  int m_nType;
  void* m_hModule;
  void* m_pfnCreate;
};

}  // namespace QXC
