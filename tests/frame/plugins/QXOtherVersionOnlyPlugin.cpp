// A module of another interface version whose entry points have other names: the version is the reason to be told.
#include <QxGraphics3D/frame/QXPluginInterface.h>

extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION - 1;
}
