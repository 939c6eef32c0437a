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
  /// @return  a new object that the caller deletes; never null
  static QXImportParams* MakeImportParams(int nType, QdcUnicodeString strText);
};

}  // namespace QXC
