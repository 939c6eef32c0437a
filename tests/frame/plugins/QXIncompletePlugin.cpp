// A module that lacks one of its entry points, chosen when it is compiled.
#include <QxGraphics3D/frame/QXPluginInterface.h>

#ifndef QX_WITHOUT_VERSION
extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION;
}
#endif

#ifndef QX_WITHOUT_CREATE
extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const*) {
  return nullptr;
}
#endif

#ifndef QX_WITHOUT_DESTROY
extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void*) {}
#endif
