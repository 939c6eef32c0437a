/// @file
/// How a picture of a model covers a mesh.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

/// What stands outside of a picture's edges.
enum QXModelWrap : int {
  QX_WRAP_REPEAT = 0,
  /// The edge's pixels go on.
  QX_WRAP_CLAMP = 1,
  /// Every second repetition is mirrored.
  QX_WRAP_MIRROR = 2
};

/// What the alpha of a picture means.
enum QXModelAlpha : int {
  /// The file does not say: alpha is opacity where the picture has any.
  QX_ALPHA_AUTO = 0,
  /// Alpha is not looked at.
  QX_ALPHA_OPAQUE = 1,
  /// A pixel is there from m_dAlphaCutoff on and is not below it.
  QX_ALPHA_MASK = 2,
  QX_ALPHA_BLEND = 3
};

/// Reference of a mesh to a picture of its model. A value.
struct QXModelTexture {
  /// Index of the picture in the model, -1 for a mesh without one.
  int m_nImage = -1;
  QXModelWrap m_eWrapU = QX_WRAP_REPEAT;
  QXModelWrap m_eWrapV = QX_WRAP_REPEAT;
  /// From the mesh's texture coordinates to those of the picture, for row vectors (u, v, 0, 1), v = 0 being the first
  /// row on either side.
  QXMatrix4d m_matTransform;
  /// 1: the picture takes the place of the mesh's base colour, whose opacity alone is kept; 0: the two are multiplied.
  unsigned char m_bReplacesColor = 0;
  QXModelAlpha m_eAlpha = QX_ALPHA_AUTO;
  double m_dAlphaCutoff = 0.5;
};

}  // namespace QXC
