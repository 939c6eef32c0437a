/// @file
/// Where the sun stands at a moment, and how its light and that of the sky reach the ground.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXRenderTarget;

/// The sun over one place at one moment: what a sky draws, and what a host lights its targets with so that the scene
/// fits the sky. World coordinates are a plane around the place: x east, y north, z up.
///
/// The direction follows the low-precision formula of the Astronomical Almanac (section C, "Low precision formulas for
/// the Sun's coordinates"): 0.01 degrees from 1950 to 2050. Refraction, which lifts the sun at the horizon by 0.6
/// degrees, and parallax are left out.
/// A value; any thread. Cost: a dozen sines.
class QXGRAPHICS3D_API QXSunPosition {
public:
  /// The place for whoever names none, radians: 52 degrees north, 10 degrees east, in the middle of Germany.
  static constexpr double DEFAULT_LATITUDE = 0.90757121103705142;
  static constexpr double DEFAULT_LONGITUDE = 0.17453292519943295;

  /// @param dLatitude   radians, north positive
  /// @param dLongitude  radians, east positive
  explicit QXSunPosition(QdcTime time, double dLatitude = DEFAULT_LATITUDE, double dLongitude = DEFAULT_LONGITUDE);

  /// Radians above the horizon; below 0 at night.
  double GetAltitude() const { return m_dAltitude; }
  /// Radians clockwise from north, 0 to 2 pi.
  double GetAzimuth() const { return m_dAzimuth; }
  /// Unit vector towards the sun.
  QXVector3d const& GetDirection() const { return m_vecDirection; }
  /// For QXRenderTarget::SetSunPosition: so far away that it does not matter where in the world it is seen from.
  QXVector3d GetPosition() const;
  /// Local sidereal time as an angle, radians, 0 to 2 pi: how far the stars have turned.
  double GetSiderealAngle() const { return m_dSiderealAngle; }

  /// Light of the sun itself, for QXRenderTarget::SetDiffuseLight: nearly white by day, orange while it is low, and
  /// nothing once it has set. What air of 8 km and a light haze let through (Rayleigh's optical depth 0.008735 * L^-4.08
  /// and Angstrom's 0.05 * L^-1.3 for a wavelength of L micrometres, the air's mass by Kasten and Young, 1989), encoded
  /// for a screen with the exponent 1 / 2.2.
  QXColorValue3D GetSunColor() const;
  /// Light of the whole sky, for QXRenderTarget::SetAmbientLight: bluish by day, and by night, from the end of nautical
  /// twilight on, so little that things are just told from the background.
  QXColorValue3D GetAmbientColor() const;
  /// Lights a target: sets its sun, its diffuse and its ambient light.
  void ApplyTo(QXRenderTarget& target) const;

private:
  double m_dAltitude;
  double m_dAzimuth;
  double m_dSiderealAngle;
  QXVector3d m_vecDirection;
};

}  // namespace QXC
