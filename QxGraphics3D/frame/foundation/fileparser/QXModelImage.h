/// @file
/// One picture of a model.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// A picture that meshes of a model are covered with: a file beside the model, or the bytes of such a file that the
/// model carries. Nothing of it is decoded yet, and a file may be missing or be no picture at all.
struct QXModelImage {
  /// What the model calls it: the path as written in it, or the name of a carried picture. For people; not unique.
  QdcUnicodeString m_strName;
  /// Path to read it from, empty for a carried picture.
  QdcUnicodeString m_strFilePath;
  /// Contents of the image file, PNG or JPEG as a rule; empty for a picture with a path.
  QdcArray<unsigned char> m_arrBytes;
  /// Name of its texture in the passes of the model, see ModelDataInfo::MakePasses; empty before.
  QdcUnicodeString m_strTextureName;
};

}  // namespace QXC
