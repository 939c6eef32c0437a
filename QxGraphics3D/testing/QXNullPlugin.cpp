// The null renderer as a module that hosts load at run time.
#include <cstring>

#include <QxGraphics3D/frame/QXPluginInterface.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>

extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION;
}

extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const* szKind) {
  if (std::strcmp(szKind, "renderer") != 0) {
    return nullptr;
  }
  return static_cast<QXC::QXGraphics3D*>(new QXC::QXNullGraphics3D);
}

extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void* pObject) {
  delete static_cast<QXC::QXGraphics3D*>(pObject);
}
