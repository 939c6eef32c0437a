// A module that does everything right, for the kind "test" only.
#include <cstring>

#include <QxGraphics3D/frame/QXPluginInterface.h>

#include "QXTestPluginObject.h"

/// Must not be seen by the program: modules keep their symbols to themselves.
extern "C" QX_PLUGIN_EXPORT int QXTestPluginMarker() {
  return 1;
}

extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION;
}

extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const* szKind) {
  return std::strcmp(szKind, "test") == 0 ? new QXC::QXTestPluginObject : nullptr;
}

extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void* pObject) {
  auto* const pTestObject = static_cast<QXC::QXTestPluginObject*>(pObject);
  if (pTestObject->m_pDeaths) ++*pTestObject->m_pDeaths;
  delete pTestObject;
}
