/// @file
/// The fog of a scene as the programs take it.
#pragma once

#include <OgreColourValue.h>
#include <OgreVector.h>

namespace QXC {

class QXFog;

/// See QX_OGRE_FOG_SHADER.
struct QXOgreFog {
  /// None.
  QXOgreFog();
  /// What is no number, or no mode, is no fog. Colours lie between 0 and 1.
  explicit QXOgreFog(QXFog const& fog);

  /// x: FogMode; y: density, or the end of linear fog; z: what its distance from there is multiplied with.
  Ogre::Vector4 m_Numbers;
  Ogre::ColourValue m_Color;
};

}  // namespace QXC
