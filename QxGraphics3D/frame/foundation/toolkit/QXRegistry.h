/// @file
/// Configuration of the platform: keys, values and sections of text.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXHash.h>

#include <map>
#include <memory>

namespace QXC {

/// One section: its keys and values through QXHash, its own sections through SubFile.
/// Threads: no lock. Load and fill it before other threads read it.
class QXGRAPHICS3D_API QXRegistry : public QXHash<QdcUnicodeString> {
public:
  QXRegistry();
  QXRegistry(QXRegistry const&) = delete;
  QXRegistry& operator=(QXRegistry const&) = delete;
  ~QXRegistry();

  /// The root of the process. Its first use reads registry.ini from the library's data folder; a missing or broken
  /// file leaves it empty. It is never destroyed.
  static QXRegistry& Root();

  /// The section of that name, made empty if there is none. Valid as long as this registry, whatever is loaded.
  QXRegistry& SubFile(QdcUnicodeString const& strName);

  /// Merges an ini file (UTF-8) into this registry: keys before the first section become keys of its own, each
  /// `[section]` one of SubFile. Keys keep their case; a key that exists takes the new value, all others stay; of a
  /// key given twice the last counts. This is how a host puts its own configuration over the installed one.
  /// @return  0 if the file cannot be read or is broken anywhere; nothing has changed then.
  unsigned char Load(QdcUnicodeString const& strPath);

private:
  std::map<QdcUnicodeString, std::unique_ptr<QXRegistry>> m_mapSections;
};

}  // namespace QXC
