// A module that throws when it is asked for its version.
#include <stdexcept>

#include <QxGraphics3D/frame/QXPluginInterface.h>

extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  throw std::runtime_error("no version today");
}

extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const*) {
  return nullptr;
}

extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void*) {}
