/// @file
/// The light of the air on the device.
#pragma once

#include <OgreColourValue.h>
#include <OgreVector.h>

#include <QxGraphics3D/environment/QXSunPosition.h>

#include <plugins/ogre/environment/QXOgreEffect.h>
#include <plugins/ogre/environment/QXOgreSkyModel.h>

namespace QXC {

/// The table of QXOgreSkyModel as a texture, for the programs that take QX_OGRE_SKY_LIGHT.
class QXOgreAir final {
public:
  explicit QXOgreAir(QXOgreDevice& device);

  /// Computes the table anew if the sun has moved by a twentieth of a degree since it was last.
  void Update(QXSunPosition const& sun);
  QXOgreSkyModel const& GetModel() const { return m_Model; }
  /// Unit vector towards the sun.
  Ogre::Vector3 const& GetToSun() const { return m_vecToSun; }
  Ogre::TexturePtr const& GetTexture() const { return m_Table.GetTexture(); }

  static Ogre::Vector3 ToOgre(QXOgreLinear const& light);

private:
  QXOgreSkyModel m_Model;
  QXOgreData m_Table;
  Ogre::Vector3 m_vecToSun;
  /// That the table stands for.
  double m_dAltitude;
};

}  // namespace QXC
