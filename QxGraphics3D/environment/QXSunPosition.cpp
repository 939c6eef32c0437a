#include <QxGraphics3D/environment/QXSunPosition.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include <QxGraphics3D/frame/QXRenderTarget.h>

namespace QXC {

namespace {

constexpr double PI = std::numbers::pi;
constexpr double DEGREE = PI / 180.0;
constexpr double MILLISECONDS_PER_DAY = 86400000.0;
/// From 1970-01-01 00:00 to 2000-01-01 12:00, where the almanac counts its days from.
constexpr double DAYS_TO_J2000 = 10957.5;
constexpr double SUN_DISTANCE = 1.496e11;

/// Of red, green and blue light, micrometres.
constexpr std::array<double, 3> WAVELENGTHS = {0.68, 0.55, 0.44};
constexpr double RAYLEIGH_DEPTH = 0.008735;
constexpr double RAYLEIGH_EXPONENT = -4.08;
constexpr double HAZE_DEPTH = 0.05;
constexpr double HAZE_EXPONENT = -1.3;
/// Of a screen's encoding.
constexpr double GAMMA = 2.2;

/// Brightest values of both lights; a face that meets the sun squarely is just white with them.
constexpr double SUN_LIGHT = 0.7;
constexpr std::array<double, 3> DAY_LIGHT = {0.34, 0.37, 0.42};
constexpr std::array<double, 3> NIGHT_LIGHT = {0.05, 0.06, 0.10};
/// Half of the sun's disc, over which it rises and sets.
constexpr double DISC_RADIUS = 0.267 * DEGREE;
/// The sky has its full light with the sun so high, and none of it with the sun so low.
constexpr double FULL_DAY = 12.0 * DEGREE;
constexpr double FULL_NIGHT = -12.0 * DEGREE;

double ToTurn(double dAngle) {
  double const dTurn = std::fmod(dAngle, 2.0 * PI);
  return dTurn < 0.0 ? dTurn + 2.0 * PI : dTurn;
}

/// 0 below the first, 1 above the second, without corners between them.
double Smooth(double dFrom, double dTo, double d) {
  double const dPart = std::clamp((d - dFrom) / (dTo - dFrom), 0.0, 1.0);
  return dPart * dPart * (3.0 - 2.0 * dPart);
}

/// How many times as much air as at the zenith light passes; altitudes below the horizon count as on it.
double AirMass(double dAltitude) {
  double const dDegrees = std::max(dAltitude, 0.0) / DEGREE;
  return 1.0 / (std::sin(dDegrees * DEGREE) + 0.50572 * std::pow(dDegrees + 6.07995, -1.6364));
}

}  // namespace

QXSunPosition::QXSunPosition(QdcTime time, double dLatitude, double dLongitude) {
  double const dDays = static_cast<double>(time.GetMillisecondsUTC()) / MILLISECONDS_PER_DAY - DAYS_TO_J2000;
  double const dMeanLongitude = ToTurn((280.460 + 0.9856474 * dDays) * DEGREE);
  double const dAnomaly = ToTurn((357.528 + 0.9856003 * dDays) * DEGREE);
  double const dEcliptic = dMeanLongitude + (1.915 * std::sin(dAnomaly) + 0.020 * std::sin(2.0 * dAnomaly)) * DEGREE;
  double const dObliquity = (23.439 - 0.0000004 * dDays) * DEGREE;
  double const dAscension = std::atan2(std::cos(dObliquity) * std::sin(dEcliptic), std::cos(dEcliptic));
  double const dDeclination = std::asin(std::sin(dObliquity) * std::sin(dEcliptic));
  m_dSiderealAngle = ToTurn((280.46061837 + 360.98564736629 * dDays) * DEGREE + dLongitude);
  double const dHourAngle = m_dSiderealAngle - dAscension;
  m_vecDirection = QXVector3d(-std::cos(dDeclination) * std::sin(dHourAngle),
      std::sin(dDeclination) * std::cos(dLatitude) -
          std::cos(dDeclination) * std::cos(dHourAngle) * std::sin(dLatitude),
      std::sin(dDeclination) * std::sin(dLatitude) +
          std::cos(dDeclination) * std::cos(dHourAngle) * std::cos(dLatitude));
  m_dAltitude = std::asin(std::clamp(m_vecDirection.z, -1.0, 1.0));
  m_dAzimuth = ToTurn(std::atan2(m_vecDirection.x, m_vecDirection.y));
}

QXVector3d QXSunPosition::GetPosition() const {
  return {m_vecDirection.x * SUN_DISTANCE, m_vecDirection.y * SUN_DISTANCE, m_vecDirection.z * SUN_DISTANCE};
}

QXColorValue3D QXSunPosition::GetSunColor() const {
  double const dAir = AirMass(m_dAltitude) - 1.0;
  double const dShown = SUN_LIGHT * Smooth(-DISC_RADIUS, DISC_RADIUS, m_dAltitude);
  std::array<double, 3> arrLight{};
  for (std::size_t i = 0; i < arrLight.size(); ++i) {
    double const dDepth = RAYLEIGH_DEPTH * std::pow(WAVELENGTHS[i], RAYLEIGH_EXPONENT) +
                          HAZE_DEPTH * std::pow(WAVELENGTHS[i], HAZE_EXPONENT);
    arrLight[i] = dShown * std::pow(std::exp(-dDepth * dAir), 1.0 / GAMMA);
  }
  return {arrLight[0], arrLight[1], arrLight[2], 1.0};
}

QXColorValue3D QXSunPosition::GetAmbientColor() const {
  double const dDay = Smooth(FULL_NIGHT, FULL_DAY, m_dAltitude);
  auto const mix = [dDay](std::size_t i) { return std::lerp(NIGHT_LIGHT[i], DAY_LIGHT[i], dDay); };
  return {mix(0), mix(1), mix(2), 1.0};
}

void QXSunPosition::ApplyTo(QXRenderTarget& target) const {
  target.SetSunPosition(GetPosition());
  target.SetDiffuseLight(GetSunColor());
  target.SetAmbientLight(GetAmbientColor());
}

}  // namespace QXC
