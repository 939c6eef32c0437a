/// @file
/// What a material pass has beyond its colours and textures.
#pragma once

namespace QXC {

/// Kind of a QXMaterialExtension. Persisted with passes; an unknown value is kept and passed on.
enum QXMaterialExtensionType : int {
  MATERIAL_EXTENSION_NONE = 0,
  MATERIAL_EXTENSION_MOVING_TEXTURES = 1,  ///< the textures of units 0 and 1 slide and turn with time
};

/// Four groups of five numbers. With moving textures the renderer makes the transform of a unit anew each frame, as
/// long as one of its speeds is above 0; a pass with such a speed keeps its own texture transforms when static geometry
/// merges meshes, because a transform that changes cannot be calculated into the coordinates.
/// Copies are complete; any number of threads may read.
class QXMaterialExtension {
public:
  /// Numbers in a group; the last one is the speed.
  static constexpr int GROUP_SIZE = 5;

  /// All numbers 0: nothing moves.
  explicit QXMaterialExtension(int nType = MATERIAL_EXTENSION_MOVING_TEXTURES) : m_nType(nType) {}

  /// A QXMaterialExtensionType. Only with 1 do the groups mean anything.
  int GetType() const { return m_nType; }

  /// How the texture of unit 0 and that of unit 1 slide: direction along u and v, start along u and v, and the speed in
  /// lengths of the direction a second.
  float m_fSlides[2][GROUP_SIZE] = {};
  /// How they turn: centre along u and v, size (0 is taken as 1), angle at the start in radians, and the speed in
  /// radians a second, from u towards v.
  float m_fTurns[2][GROUP_SIZE] = {};

private:
  int m_nType;
};

}  // namespace QXC
