// A module that fails in various ways while it creates, chosen by the kind.
#include <pthread.h>

#include <cstring>
#include <stdexcept>

#include <QxGraphics3D/frame/QXPluginInterface.h>

extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION;
}

extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const* szKind) {
  if (std::strcmp(szKind, "throws-number") == 0) throw 7;
  if (std::strcmp(szKind, "ends-thread") == 0) pthread_exit(nullptr);
  throw std::runtime_error("no device\nsecond line");
}

extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void*) {}
