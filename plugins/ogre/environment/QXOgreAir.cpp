#include <plugins/ogre/environment/QXOgreAir.h>

#include <cmath>
#include <limits>

#include <plugins/ogre/QXOgreConvert.h>

namespace QXC {

namespace {

constexpr double ALTITUDE_STEP = 8.7e-4;

}  // namespace

QXOgreAir::QXOgreAir(QXOgreDevice& device)
    : m_Table(device, QXOgreSkyModel::COLUMNS, QXOgreSkyModel::ROWS, Ogre::PF_FLOAT32_RGBA, false),
      m_vecToSun(Ogre::Vector3::UNIT_Z), m_dAltitude(std::numeric_limits<double>::infinity()) {}

void QXOgreAir::Update(QXSunPosition const& sun) {
  m_vecToSun = QXC::ToOgre(sun.GetDirection());
  if (std::abs(sun.GetAltitude() - m_dAltitude) <= ALTITUDE_STEP) return;
  m_dAltitude = sun.GetAltitude();
  m_Model.Compute(m_dAltitude);
  m_Table.Fill(m_Model.GetTable().data());
}

Ogre::Vector3 QXOgreAir::ToOgre(QXOgreLinear const& light) {
  return {static_cast<float>(light[0]), static_cast<float>(light[1]), static_cast<float>(light[2])};
}

}  // namespace QXC
