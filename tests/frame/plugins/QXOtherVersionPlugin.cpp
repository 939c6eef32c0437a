// A module of another interface version: nothing of it but the version may run.
#include <cstdlib>

#include <QxGraphics3D/frame/QXPluginInterface.h>

extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION + 6;
}

extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const*) {
  std::abort();
}

extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void*) {
  std::abort();
}
