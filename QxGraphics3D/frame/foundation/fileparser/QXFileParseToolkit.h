/// @file
/// Small questions about files that callers of the parsers ask.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXGRAPHICS3D_API QXFileParseToolkit {
public:
  /// File type of a path by its extension, -1 for an unknown or missing one. The file is not looked at; a dot in
  /// a folder's name or at the start of a file's name begins no extension.
  static int GetFileTypeByExtName(QdcUnicodeString const& strPath);
};

}  // namespace QXC
