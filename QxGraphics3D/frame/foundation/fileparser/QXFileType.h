/// @file
/// Numbers of the file types that parsers are chosen by.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Questions to the table of the known file types, in which hosts register types of their own
/// (QXFileParseManager::RegisterFileType). A name is known by its extension alone; what the file holds is the parser's
/// business.
/// Threads: any number at once.
struct QXGRAPHICS3D_API QXFileType {
  /// Numbers of the types; hosts store them, so that they never change. Image types begin at 121, model types at 200.
  /// A host numbers types of its own from EM_FIRST_CUSTOM on.
  enum EmType : int {
    EM_UNKNOWN = -1,
    EM_IMAGE_BMP = 121,
    EM_IMAGE_JPG = 122,
    EM_IMAGE_PNG = 123,
    /// The one type whose files textures carry undecoded, whole as they are, because they may hold an animation.
    EM_IMAGE_GIF = 124,
    EM_IMAGE_TIFF = 125,
    EM_IMAGE_WEBP = 126,
    EM_IMAGE_TGA = 127,
    EM_IMAGE_HDR = 128,
    EM_IMAGE_PSD = 129,
    EM_IMAGE_KTX2 = 130,
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

  /// Whether an image reader may be asked for the type.
  static unsigned char IsImageType(int nType);

  /// Extension of a type with its dot and as it was registered (in lower case for the types above), the first one where
  /// there are several; empty for an unknown number.
  static QdcUnicodeString FileTypeToExtName(int nType);

  /// Appends the extensions of all model types, in the order of their numbers: what a message offers a person.
  static void GetModelExtNames(QdcArray<QdcUnicodeString>& arrExtNames);
  /// The same for the image types.
  static void GetImageExtNames(QdcArray<QdcUnicodeString>& arrExtNames);
};

}  // namespace QXC
