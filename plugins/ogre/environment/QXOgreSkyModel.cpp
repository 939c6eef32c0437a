#include <plugins/ogre/environment/QXOgreSkyModel.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace QXC {

namespace {

constexpr double PI = std::numbers::pi;
constexpr double DEGREE = PI / 180.0;

// Metres, and parts scattered or absorbed in one metre at sea level.
constexpr double GROUND_RADIUS = 6.360e6;
constexpr double AIR_RADIUS = 6.420e6;
constexpr double EYE_RADIUS = GROUND_RADIUS + 100.0;
constexpr double AIR_HEIGHT = 8000.0;
constexpr double HAZE_HEIGHT = 1200.0;
constexpr QXOgreLinear AIR_SCATTERING = {5.8e-6, 13.5e-6, 33.1e-6};
constexpr double HAZE_SCATTERING = 3.0e-6;
constexpr double HAZE_EXTINCTION = HAZE_SCATTERING / 0.9;
/// The red of screens lies nearer to orange, where ozone absorbs most.
constexpr QXOgreLinear OZONE_ABSORPTION = {2.0e-6, 1.881e-6, 0.085e-6};
constexpr double OZONE_MIDDLE = 25000.0;
constexpr double OZONE_REACH = 15000.0;
/// How much haze prefers the way that light came, 0 to 1.
constexpr double HAZE_FORWARD = 0.76;
constexpr double MORE_THAN_ONCE = 0.25;

constexpr int VIEW_STEPS = 18;
constexpr int SUN_STEPS = 12;

// The eye's adaptation: by full day, and the most of it, at night.
constexpr double DAY_EXPOSURE = 18.0;
constexpr double NIGHT_EXPOSURE = 4000.0;
/// What is left when the sun has long gone: stars too faint to be seen, and the air's own glow.
constexpr QXOgreLinear NIGHT_GLOW = {0.0020, 0.0032, 0.0075};

/// How much of each matter a ray passes, as metres of its density at sea level.
struct Depths {
  double m_dAir = 0.0;
  double m_dHaze = 0.0;
  double m_dOzone = 0.0;

  void Add(double dHeight, double dStep) {
    m_dAir += std::exp(-dHeight / AIR_HEIGHT) * dStep;
    m_dHaze += std::exp(-dHeight / HAZE_HEIGHT) * dStep;
    m_dOzone += std::max(1.0 - std::abs(dHeight - OZONE_MIDDLE) / OZONE_REACH, 0.0) * dStep;
  }
  double Transmit(std::size_t nColour, Depths const& other) const {
    return std::exp(-AIR_SCATTERING[nColour] * (m_dAir + other.m_dAir) - HAZE_EXTINCTION * (m_dHaze + other.m_dHaze) -
                    OZONE_ABSORPTION[nColour] * (m_dOzone + other.m_dOzone));
  }
};

/// From a place in the air, by the distance from the earth's middle and the cosine of the angle to the zenith, to where
/// the air ends.
double ToSpace(double dRadius, double dCosine) {
  double const dAlong = dRadius * dCosine;
  return -dAlong + std::sqrt(std::max(dAlong * dAlong + AIR_RADIUS * AIR_RADIUS - dRadius * dRadius, 0.0));
}

double RadiusAfter(double dRadius, double dCosine, double dWay) {
  return std::sqrt(dRadius * dRadius + dWay * dWay + 2.0 * dRadius * dWay * dCosine);
}

/// False if the earth is in the way of the sun.
bool TowardsSun(double dRadius, double dCosine, Depths& depths) {
  if (dCosine < 0.0 && dRadius * std::sqrt(1.0 - dCosine * dCosine) < GROUND_RADIUS) return false;
  double const dLength = ToSpace(dRadius, dCosine);
  double dFrom = 0.0;
  for (int i = 1; i <= SUN_STEPS; ++i) {
    double const dPart = static_cast<double>(i) / SUN_STEPS;
    double const dTo = dLength * dPart * dPart;
    double const dHeight = RadiusAfter(dRadius, dCosine, 0.5 * (dFrom + dTo)) - GROUND_RADIUS;
    depths.Add(dHeight, dTo - dFrom);
    dFrom = dTo;
  }
  return true;
}

/// Sums what is scattered along a ray towards the eye.
/// @param dSunCosine   of the sun's angle to the zenith
/// @param dBetween     cosine of the angle between ray and sun
QXOgreLinear SumRay(double dCosine, double dSunCosine, double dBetween) {
  double const dAirPhase = 3.0 / (16.0 * PI) * (1.0 + dBetween * dBetween);
  double const g = HAZE_FORWARD;
  double const dHazePhase = 3.0 / (8.0 * PI) * (1.0 - g * g) * (1.0 + dBetween * dBetween) /
                            ((2.0 + g * g) * std::pow(1.0 + g * g - 2.0 * g * dBetween, 1.5));
  double const dEven = MORE_THAN_ONCE / (4.0 * PI);
  double const dLength = ToSpace(EYE_RADIUS, dCosine);
  QXOgreLinear sum{};
  Depths passed;
  double dFrom = 0.0;
  for (int i = 1; i <= VIEW_STEPS; ++i) {
    double const dPart = static_cast<double>(i) / VIEW_STEPS;
    double const dTo = dLength * dPart * dPart;
    double const dStep = dTo - dFrom;
    double const dMiddle = 0.5 * (dFrom + dTo);
    dFrom = dTo;
    double const dRadius = RadiusAfter(EYE_RADIUS, dCosine, dMiddle);
    double const dHeight = dRadius - GROUND_RADIUS;
    Depths half;
    half.Add(dHeight, 0.5 * dStep);
    passed.m_dAir += half.m_dAir;
    passed.m_dHaze += half.m_dHaze;
    passed.m_dOzone += half.m_dOzone;
    Depths sun;
    if (TowardsSun(dRadius, (EYE_RADIUS * dSunCosine + dMiddle * dBetween) / dRadius, sun)) {
      double const dHaze = HAZE_SCATTERING * std::exp(-dHeight / HAZE_HEIGHT) * (dHazePhase + dEven);
      double const dAir = std::exp(-dHeight / AIR_HEIGHT) * (dAirPhase + dEven);
      for (std::size_t k = 0; k < 3; ++k)
        sum[k] += (AIR_SCATTERING[k] * dAir + dHaze) * passed.Transmit(k, sun) * dStep;
    }
    passed.m_dAir += half.m_dAir;
    passed.m_dHaze += half.m_dHaze;
    passed.m_dOzone += half.m_dOzone;
  }
  return sum;
}

double Square(unsigned int nPlace, unsigned int nCount) {
  double const d = static_cast<double>(nPlace) / (nCount - 1);
  return d * d;
}

double Smooth(double dFrom, double dTo, double d) {
  double const dPart = std::clamp((d - dFrom) / (dTo - dFrom), 0.0, 1.0);
  return dPart * dPart * (3.0 - 2.0 * dPart);
}

/// The eye opens as the light goes, though not as much as that.
double Exposure(double dSunAltitude) {
  double const dDusk = Smooth(5.0 * DEGREE, -15.0 * DEGREE, dSunAltitude);
  return DAY_EXPOSURE * std::pow(NIGHT_EXPOSURE / DAY_EXPOSURE, dDusk);
}

}  // namespace

void QXOgreSkyModel::Compute(double dSunAltitude) {
  double const dExposure = Exposure(dSunAltitude);
  double const dSunCosine = std::sin(dSunAltitude);
  m_dNight = Smooth(-4.0 * DEGREE, -14.0 * DEGREE, dSunAltitude);
  m_arrTable.resize(std::size_t{COLUMNS} * ROWS * 4);
  m_Average = {};
  double dWeights = 0.0;
  for (unsigned int nRow = 0; nRow < ROWS; ++nRow) {
    double const dAltitude = 0.5 * PI * Square(nRow, ROWS);
    double const dWeight = std::cos(dAltitude) * nRow;
    for (unsigned int nColumn = 0; nColumn < COLUMNS; ++nColumn) {
      double const dAngle = PI * Square(nColumn, COLUMNS);
      double const dBetween =
          std::sin(dAltitude) * dSunCosine + std::cos(dAltitude) * std::cos(dSunAltitude) * std::cos(dAngle);
      QXOgreLinear const light = SumRay(std::sin(dAltitude), dSunCosine, dBetween);
      float* const pTexel = m_arrTable.data() + 4 * (std::size_t{nRow} * COLUMNS + nColumn);
      dWeights += dWeight * (nColumn + 1);
      for (std::size_t k = 0; k < 3; ++k) {
        double const dShown = light[k] * dExposure + NIGHT_GLOW[k];
        pTexel[k] = static_cast<float>(dShown);
        m_Average[k] += dShown * dWeight * (nColumn + 1);
      }
      pTexel[3] = 1.0F;
    }
  }
  for (double& d : m_Average) d /= dWeights;
  Depths depths;
  bool const bSun = TowardsSun(EYE_RADIUS, std::max(dSunCosine, 0.0), depths);
  double const dAbove = Smooth(-0.5 * DEGREE, 0.5 * DEGREE, dSunAltitude);
  for (std::size_t k = 0; k < 3; ++k) m_Sun[k] = bSun ? dAbove * dExposure * depths.Transmit(k, {}) : 0.0;
}

}  // namespace QXC
