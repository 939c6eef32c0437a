// A module that needs a function which nobody has: it must be refused when it is loaded, not when it first calls it.
#include <QxGraphics3D/frame/QXPluginInterface.h>

extern "C" int QXFunctionOfNobody();

extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION;
}

extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const*) {
  static int nObject = QXFunctionOfNobody();
  return &nObject;
}

extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void*) {}
