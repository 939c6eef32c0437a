/// @file
/// The waves of an ocean.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

/// One long-crested wave: at the place p and the time t its angle is k * p - omega * t + phase, and its crests are where
/// the angle is 0.
struct QXOgreWave {
  double m_dKX = 0.0;  ///< East, radians a metre
  double m_dKY = 0.0;  ///< North
  double m_dAmplitude = 0.0;
  double m_dOmega = 0.0;  ///< Radians a second
  double m_dPhase = 0.0;
};

/// A long wave from afar.
struct QXOgreSwell {
  double m_dDirection = 0.0;  ///< Where it comes from, radians clockwise from north
  double m_dLength = 0.0;
  double m_dHeight = 0.0;  ///< From trough to crest
  double m_dPhase = 0.0;
};

/// The moving surface as a sum of Gerstner's trochoidal waves in deep water (omega squared = g * k): what is at rest at
/// p stands at p - chop * sum(k / |k| * amplitude * sin(angle)), at the height sum(amplitude * cos(angle)). Lengths are
/// metres.
///
/// The wind's part is sixteen waves that share the energy of Pierson and Moskowitz's spectrum of a fully developed sea
/// (A proposed spectral form, 1964; the wind's speed at 19.5 m): each stands in the middle of its sixteenth. They spread
/// over both sides of the wind with the square of the cosine. Their significant height is 0.209 * U^2 / g. Where
/// Beaufort's number is given instead of a speed, it is the probable height of the World Meteorological Organization's
/// table, and the speed the one that belongs to it.
class QXOgreWaves final {
public:
  static constexpr std::size_t WIND_WAVES = 16;
  static constexpr std::size_t MAX_SWELLS = 8;
  static constexpr std::size_t MAX_WAVES = WIND_WAVES + MAX_SWELLS;
  static constexpr double GRAVITY = 9.81;

  /// @param dWindSpeed    metres a second; below 0.01, or 1000 and more, there are no waves
  /// @param dBeaufort     below 0: the speed counts; above 12: 12
  /// @param dChoppiness   factor on the sideways movement; less of it is used where waves would break over themselves
  /// @param arrSwells     those beyond MAX_SWELLS are left out
  void Make(double dWindDirection, double dWindSpeed, double dBeaufort, double dChoppiness,
      std::vector<QXOgreSwell> const& arrSwells);

  std::size_t GetCount() const { return m_nCount; }
  QXOgreWave const& GetWave(std::size_t n) const { return m_arrWaves[n]; }
  /// The factor on the sideways movement that is used.
  double GetChop() const { return m_dChop; }
  /// Of the wind that makes these waves, metres a second.
  double GetWindSpeed() const { return m_dWindSpeed; }
  /// The wave's angle at a place, 0 to 2 pi: in double, so that it does not matter how far away that is.
  double GetAngle(std::size_t n, double dX, double dY, double dSeconds) const;
  /// Height above the water at rest over a place (not that which is at rest there), and the upright unit normal.
  /// Cost: up to 64 times as many sines and cosines as there are waves, usually 8 times.
  void GetSurface(double dX, double dY, double dSeconds, double& dHeight, QXVector3d& vecNormal) const;

private:
  struct Point;

  void Add(double dDirection, double dK, double dAmplitude, double dPhase);
  /// Of what is at rest at a place.
  Point Move(double dX, double dY, double dSeconds) const;

  std::array<QXOgreWave, MAX_WAVES> m_arrWaves{};
  std::size_t m_nCount = 0;
  double m_dChop = 0.0;
  double m_dWindSpeed = 0.0;
};

}  // namespace QXC
