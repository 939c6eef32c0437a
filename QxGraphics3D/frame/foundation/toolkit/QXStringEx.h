/// @file
/// Resource strings.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Texts by key, such as "IMl001", the name of the default font. Any thread.
class QXGRAPHICS3D_API QXStringEx {
public:
  /// What the host set for the key, else what strings.ini in the library's data folder says, else an empty string.
  /// The file is read once, on first use.
  static QdcUnicodeString LoadResString(QdcUnicodeString const& strKey);
  /// Replaces the text of a key for the rest of the process.
  static void SetResString(QdcUnicodeString const& strKey, QdcUnicodeString const& strText);
};

}  // namespace QXC
