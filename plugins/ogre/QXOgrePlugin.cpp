// The three functions by which the library finds the renderer in this module.

#include <cstring>

#include <QxGraphics3D/frame/QXPluginInterface.h>

#include <plugins/ogre/QXOgreGraphics3D.h>

extern "C" {

QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION;
}

QX_PLUGIN_EXPORT void* QXPluginCreate(char const* szKind) {
  if (!szKind || std::strcmp(szKind, "renderer") != 0) return nullptr;
  return static_cast<QXC::QXGraphics3D*>(new QXC::QXOgreGraphics3D);
}

QX_PLUGIN_EXPORT void QXPluginDestroy(void* pObject) {
  delete static_cast<QXC::QXGraphics3D*>(pObject);
}
}
