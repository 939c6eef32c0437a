/// @file
/// Loading of plug-in modules.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/QXPluginDefine.h>
#include <QxGraphics3D/frame/QXPluginInterface.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXPluginConfigs;

/// A loaded plug-in module, ready to make objects of one kind.
///
///     QXPluginConfigs configs;
///     QdcUnicodeString strError;
///     QXPluginModule* pModule = QXPluginModule::Load(configs, QX_PLUGIN_KIND_RENDERER, L"ogre", strError);
///     auto* pGraphics3D = pModule ? static_cast<QXGraphics3D*>(pModule->Create(strError)) : nullptr;
///     ...
///     pModule->Destroy(pGraphics3D);
///     delete pModule;
///
/// Nothing is thrown: every failure gives null and one line in strError that says what, where and what to do. What no
/// library can turn into a failure is an exception out of a module's static initialisation: the system's loader ends the
/// process then.
/// Threads: load from one thread at a time; Create and Destroy as the kind's class asks.
class QXGRAPHICS3D_API QXPluginModule {
public:
  /// Loads the module of a configured plug-in with its symbols kept local, and checks it before anything in it is
  /// created: it must exist, have the interface version of this library and export the three functions. An empty name
  /// takes the kind's default plug-in. The result is the caller's; null with the reason in strError on failure.
  static QXPluginModule* Load(QXPluginConfigs const& configs, QdcUnicodeString const& strKind,
      QdcUnicodeString const& strName, QdcUnicodeString& strError);
  /// The same for a module file, without configuration; strName only stands in messages. A bare file name means the
  /// current folder, never the system's libraries.
  static QXPluginModule* LoadFile(QdcUnicodeString const& strPath, QdcUnicodeString const& strKind,
      QdcUnicodeString const& strName, QdcUnicodeString& strError);
  QXPluginModule(QXPluginModule const&) = delete;
  QXPluginModule& operator=(QXPluginModule const&) = delete;
  /// The module stays loaded to the end of the process: objects, threads and registrations that its code left behind
  /// would otherwise run into unmapped memory.
  ~QXPluginModule();

  /// A new object of the kind, to be cast to the kind's class and given back to Destroy of this module. Null with the
  /// reason in strError if the module does not know the kind or throws.
  void* Create(QdcUnicodeString& strError);
  /// Deletes an object of Create. Null is ignored.
  void Destroy(void* pObject);

  QdcUnicodeString const& GetKind() const;
  QdcUnicodeString const& GetName() const;
  QdcUnicodeString const& GetPath() const;

private:
  QXPluginModule(QXPluginDefine const& define, QXPluginDestroyProc pfnDestroy, QdcUnicodeString const& strKind,
      QdcUnicodeString const& strName, QdcUnicodeString const& strPath);

  QXPluginDefine m_Define;
  QXPluginDestroyProc m_pfnDestroy;
  QdcUnicodeString m_strKind;
  QdcUnicodeString m_strName;
  QdcUnicodeString m_strPath;
};

}  // namespace QXC
