/// @file
/// Places of the platform's files.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Any thread.
class QXGRAPHICS3D_API QXToolkit {
public:
  /// The folder of font files, ending in a separator: file names are appended to it as they are. Unless the host set
  /// another, the folder "fonts" of the library's data folder if it is there, else the system's folder,
  /// /usr/share/fonts: some collections stand beside its TrueType folder and not in it.
  static QdcUnicodeString GetFontsPath();
  /// Sets the folder; a missing separator is added. Empty text means no folder at all.
  static void SetFontsPath(QdcUnicodeString const& strPath);
};

}  // namespace QXC
