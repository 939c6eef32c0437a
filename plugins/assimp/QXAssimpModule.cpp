// The module's three functions.
#include <plugins/assimp/QXAssimpFileParser.h>

#include <QxGraphics3D/frame/QXPluginInterface.h>

#include <cstring>

extern "C" {

QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION;
}

QX_PLUGIN_EXPORT void* QXPluginCreate(char const* szKind) {
  if (szKind == nullptr || std::strcmp(szKind, "model-reader") != 0) return nullptr;
  QXC::QXFileParseModel* pParser = new QXAssimp::QXAssimpFileParser;
  return pParser;
}

QX_PLUGIN_EXPORT void QXPluginDestroy(void* pObject) {
  delete static_cast<QXC::QXFileParseModel*>(pObject);
}

}  // extern "C"
