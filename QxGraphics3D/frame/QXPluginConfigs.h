/// @file
/// The configured plug-ins.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/QXPluginConfig.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// The plug-ins that are configured, as the files `*.ini` tell in the folder `QxGraphics3D/plugins` beside the library
/// and in the folders that a host adds. One file may hold one plug-in of each kind:
///
///     [renderer]                   ; the kind
///     name = ogre                  ; required
///     module = libqx3d_ogre.so     ; required; relative to the file
///     number = 1                   ; 1 if absent; of equal numbers in a kind the later one moves up to the next free
///     enabled = true               ; true if absent
///
/// Folders are read in order, the library's own first, their files sorted by name. A later plug-in of the same kind and
/// name replaces the earlier one, so that a host can put its own over the installed one. A broken file is left out
/// whole and told by GetProblems; the others count.
class QXGRAPHICS3D_API QXPluginConfigs {
public:
  /// Reads the configuration: a new object is already filled.
  QXPluginConfigs();

  /// Adds a folder to those that every object made, or read again, from now on looks into; a folder known already
  /// moves to the end. May be called from any thread.
  static void AddSearchFolder(QdcUnicodeString const& strFolder);
  /// Takes back AddSearchFolder; an unknown folder is ignored. May be called from any thread.
  static void RemoveSearchFolder(QdcUnicodeString const& strFolder);
  /// The folder beside the library, ending in a separator. It need not exist.
  static QdcUnicodeString GetDefaultFolder();

  /// Reads everything again, in place of what the object holds.
  void ReadAllPluginConfig();

  /// Copies the record of a plug-in and the full path of its module; 1 if it is configured, enabled or not.
  unsigned char Find(QdcUnicodeString const& strKind, QdcUnicodeString const& strName, QXPluginConfig& config,
      QdcUnicodeString& strModulePath) const;
  /// Name of the enabled plug-in of the lowest number of a kind, empty if there is none.
  QdcUnicodeString GetDefaultName(QdcUnicodeString const& strKind) const;
  /// What was wrong while reading, one line each: file, place, reason.
  QdcArray<QdcUnicodeString> const& GetProblems() const;

  /// Kind -> (number -> plug-in).
  QdcDict<QdcUnicodeString, QdcDict<int, QXPluginConfig>> m_dictPlugins;

private:
  void ReadFolder(QdcUnicodeString const& strFolder, unsigned char bRequired);
  void ReadFile(QdcUnicodeString const& strFolder, QdcUnicodeString const& strFileName);
  void Store(QdcUnicodeString const& strKind, QXPluginConfig config, QdcUnicodeString const& strModulePath);
  void RemoveByName(QdcUnicodeString const& strKind, QdcUnicodeString const& strName);

  /// Module paths under the keys of m_dictPlugins.
  QdcDict<QdcUnicodeString, QdcDict<int, QdcUnicodeString>> m_dictModulePaths;
  QdcArray<QdcUnicodeString> m_arrProblems;
};

}  // namespace QXC
