/// @file
/// Numbers of the file types that parsers are chosen by.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Table of the known file types. A name is known by its extension alone; what the file holds is the parser's
/// business.
struct QXGRAPHICS3D_API QXFileType {
  /// Numbers of the types; hosts store them, so that they never change. Model types begin at 200. A host numbers
  /// types of its own from EM_FIRST_CUSTOM on.
  enum EmType : int {
    EM_UNKNOWN = -1,
    EM_MODEL_3DS = 200,
    EM_MODEL_GLTF = 201,
    EM_MODEL_GLB = 202,
    EM_MODEL_OBJ = 203,
    EM_MODEL_PLY = 204,
    EM_MODEL_STL = 205,
    EM_MODEL_COLLADA = 206,
    EM_MODEL_FBX = 207,
    EM_FIRST_CUSTOM = 1000
  };

  /// @param strExt  extension with its dot, in any case: ".3ds"
  /// @return  a number of EmType, -1 for an unknown extension
  static int ExtNameToFileType(QdcUnicodeString const& strExt);

  /// Whether a model reader may be asked for the type.
  static unsigned char IsModelType(int nType);

  /// Extension of a type with its dot and in lower case, empty for an unknown number.
  static QdcUnicodeString FileTypeToExtName(int nType);

  /// Appends the extensions of all model types, in the order of their numbers: what a message offers a person.
  static void GetModelExtNames(QdcArray<QdcUnicodeString>& arrExtNames);
};

}  // namespace QXC
