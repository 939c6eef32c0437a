/// @file
/// Maker of exchange parameters.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXImportParams;

class QXGRAPHICS3D_API QXExchangeParamsManager {
public:
  /// Parameters for reading a file of a type.
  /// @param nType    a number of QXFileType::EmType or of the host's own
  /// @param strText  handed on to the parser of that type; empty where it takes none
  /// @return  a new object that the caller deletes; null for a number below 0, such as that of an extension that nobody
  ///          knows: there is no way to read such a file, and a load ends there, before anything is given up for it
  static QXImportParams* MakeImportParams(int nType, QdcUnicodeString strText);
};

}  // namespace QXC
