#include <plugins/ogre/environment/QXOgreWaves.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include <plugins/ogre/environment/QXOgreNumbers.h>

namespace QXC {

namespace {

constexpr double PI = std::numbers::pi;
// Pierson's and Moskowitz's numbers.
constexpr double ALPHA = 0.0081;
constexpr double BETA = 0.74;
/// Significant height of the waves of a wind of 1, times gravity.
double const HEIGHT_OF_WIND = 2.0 * std::sqrt(ALPHA / BETA);
/// Metres, by Beaufort's number.
constexpr std::array<double, 13> BEAUFORT_HEIGHTS = {0.0, 0.1, 0.2, 0.6, 1.0, 2.0, 3.0, 4.0, 5.5, 7.0, 9.0, 11.5, 14.0};
/// Where the sum of steepness reaches 1, the surface folds over itself.
constexpr double STEEPEST = 0.9;
/// What a weaker wind makes is lower than a hundredth of a millimetre, and soon too short for numbers.
constexpr double LEAST_WIND = 0.01;
constexpr int MOST_STEPS = 64;
constexpr double CLOSE_ENOUGH = 1.0e-4;
// Parts of the golden section and of the plastic number: multiples of them fall evenly between 0 and 1.
constexpr double EVEN_STEP = 0.6180339887498949;
constexpr double OTHER_EVEN_STEP = 0.7548776662466927;

double SpeedOfBeaufort(double dBeaufort) {
  double const d = std::min(dBeaufort, 12.0);
  auto const nLower = std::min(static_cast<std::size_t>(d), BEAUFORT_HEIGHTS.size() - 2);
  double const dHeight =
      std::lerp(BEAUFORT_HEIGHTS[nLower], BEAUFORT_HEIGHTS[nLower + 1], d - static_cast<double>(nLower));
  return std::sqrt(dHeight * QXOgreWaves::GRAVITY / HEIGHT_OF_WIND);
}

/// The angle to the wind below which a part of the energy lies, where it goes with the square of the cosine.
double SpreadAngle(double dPart) {
  double dLower = -0.5 * PI;
  double dUpper = 0.5 * PI;
  for (int i = 0; i < 40; ++i) {
    double const dMiddle = 0.5 * (dLower + dUpper);
    double const dBelow = 0.5 + (dMiddle + std::sin(dMiddle) * std::cos(dMiddle)) / PI;
    (dBelow < dPart ? dLower : dUpper) = dMiddle;
  }
  return 0.5 * (dLower + dUpper);
}

}  // namespace

struct QXOgreWaves::Point {
  double m_dX = 0.0;
  double m_dY = 0.0;
  double m_dHeight = 0.0;
  // Sums for the normal: slopes, and how much the surface is squeezed along x, along y and askew.
  double m_dSlopeX = 0.0;
  double m_dSlopeY = 0.0;
  double m_dSqueezeXX = 0.0;
  double m_dSqueezeYY = 0.0;
  double m_dSqueezeXY = 0.0;
};

void QXOgreWaves::Add(double dDirection, double dK, double dAmplitude, double dPhase) {
  // It comes from its direction.
  m_arrWaves[m_nCount++] = {
      -std::sin(dDirection) * dK, -std::cos(dDirection) * dK, dAmplitude, std::sqrt(GRAVITY * dK), dPhase};
}

void QXOgreWaves::Make(double dWindDirection, double dWindSpeed, double dBeaufort, double dChoppiness,
    std::vector<QXOgreSwell> const& arrSwells) {
  m_nCount = 0;
  m_dWindSpeed = dBeaufort >= 0.0 ? SpeedOfBeaufort(dBeaufort) : dWindSpeed;
  if (!(m_dWindSpeed >= LEAST_WIND && m_dWindSpeed < 1000.0) || !std::isfinite(dWindDirection)) m_dWindSpeed = 0.0;
  // A sixteenth of the variance, which is the square of a quarter of the height.
  double const dQuarter = 0.25 * HEIGHT_OF_WIND * m_dWindSpeed * m_dWindSpeed / GRAVITY;
  double const dAmplitude = dQuarter * std::sqrt(2.0 / WIND_WAVES);
  for (std::size_t i = 0; i < WIND_WAVES && m_dWindSpeed > 0.0; ++i) {
    double const dPart = (static_cast<double>(i) + 0.5) / WIND_WAVES;
    double const dOmega = GRAVITY / m_dWindSpeed * std::pow(BETA / -std::log(dPart), 0.25);
    double const dAngle = SpreadAngle(FractionOf(0.5 + static_cast<double>(i) * EVEN_STEP));
    Add(dWindDirection + dAngle, dOmega * dOmega / GRAVITY, dAmplitude,
        2.0 * PI * FractionOf(static_cast<double>(i) * OTHER_EVEN_STEP));
  }
  for (std::size_t i = 0; i < std::min(arrSwells.size(), MAX_SWELLS); ++i)
    Add(arrSwells[i].m_dDirection, 2.0 * PI / arrSwells[i].m_dLength, 0.5 * arrSwells[i].m_dHeight,
        arrSwells[i].m_dPhase);
  double dSteepness = 0.0;
  for (std::size_t i = 0; i < m_nCount; ++i)
    dSteepness += std::abs(m_arrWaves[i].m_dAmplitude) * std::hypot(m_arrWaves[i].m_dKX, m_arrWaves[i].m_dKY);
  m_dChop = dChoppiness > 0.0 && dSteepness > 0.0 ? std::min(dChoppiness, STEEPEST / dSteepness) : 0.0;
}

double QXOgreWaves::GetAngle(std::size_t n, double dX, double dY, double dSeconds) const {
  QXOgreWave const& wave = m_arrWaves[n];
  double const dAngle = wave.m_dKX * dX + wave.m_dKY * dY - wave.m_dOmega * dSeconds + wave.m_dPhase;
  return 2.0 * PI * FractionOf(dAngle / (2.0 * PI));
}

QXOgreWaves::Point QXOgreWaves::Move(double dX, double dY, double dSeconds) const {
  Point point;
  point.m_dX = dX;
  point.m_dY = dY;
  for (std::size_t i = 0; i < m_nCount; ++i) {
    QXOgreWave const& wave = m_arrWaves[i];
    double const dAngle = GetAngle(i, dX, dY, dSeconds);
    double const dRise = wave.m_dAmplitude * std::cos(dAngle);
    double const dPush = wave.m_dAmplitude * std::sin(dAngle);
    double const dK = std::hypot(wave.m_dKX, wave.m_dKY);
    point.m_dX -= m_dChop * dPush * wave.m_dKX / dK;
    point.m_dY -= m_dChop * dPush * wave.m_dKY / dK;
    point.m_dHeight += dRise;
    point.m_dSlopeX -= dPush * wave.m_dKX;
    point.m_dSlopeY -= dPush * wave.m_dKY;
    point.m_dSqueezeXX += m_dChop * dRise * wave.m_dKX * wave.m_dKX / dK;
    point.m_dSqueezeYY += m_dChop * dRise * wave.m_dKY * wave.m_dKY / dK;
    point.m_dSqueezeXY += m_dChop * dRise * wave.m_dKX * wave.m_dKY / dK;
  }
  return point;
}

void QXOgreWaves::GetSurface(double dX, double dY, double dSeconds, double& dHeight, QXVector3d& vecNormal) const {
  // What stands at the place was at rest somewhere else; steps towards it shrink, since no wave breaks.
  double dRestX = dX;
  double dRestY = dY;
  Point point = Move(dRestX, dRestY, dSeconds);
  for (int i = 1; i < MOST_STEPS && std::hypot(dX - point.m_dX, dY - point.m_dY) > CLOSE_ENOUGH; ++i) {
    dRestX += dX - point.m_dX;
    dRestY += dY - point.m_dY;
    point = Move(dRestX, dRestY, dSeconds);
  }
  dHeight = point.m_dHeight;
  QXVector3d const vecEast(1.0 - point.m_dSqueezeXX, -point.m_dSqueezeXY, point.m_dSlopeX);
  QXVector3d const vecNorth(-point.m_dSqueezeXY, 1.0 - point.m_dSqueezeYY, point.m_dSlopeY);
  vecNormal = vecEast.CrossProduct(vecNorth);
  vecNormal.Normalize();
}

}  // namespace QXC
