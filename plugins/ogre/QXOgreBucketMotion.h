/// @file
/// Textures that slide and turn with time.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXMaterialExtension.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

/// What a pass's extension makes of the textures of units 0 and 1. One that was made of no extension moves nothing.
class QXOgreBucketMotion final {
public:
  static constexpr unsigned int UNITS = 2;

  QXOgreBucketMotion() : m_Extension(MATERIAL_EXTENSION_NONE) {}
  explicit QXOgreBucketMotion(QXMaterialExtension const& extension) : m_Extension(extension) {}

  bool Moves(unsigned int nUnit) const;
  /// Of the coordinates of a unit that moves: turned about the centre, larger by the size, then moved. What the way has
  /// gone is counted in whole images, which repeat: after a day it would be too long for float.
  /// @param nTime  milliseconds
  QXMatrix4d GetTransform(unsigned int nUnit, unsigned int nTime) const;

private:
  QXMaterialExtension m_Extension;
};

}  // namespace QXC
