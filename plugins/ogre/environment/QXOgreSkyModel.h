/// @file
/// The light of the air by single scattering.
#pragma once

#include <array>
#include <vector>

namespace QXC {

/// Red, green, blue.
using QXOgreLinear = std::array<double, 3>;

/// What the air sends to an eye near the ground, of all directions above the horizon, for one altitude of the sun; and
/// what of the sun reaches the ground. Numbers are linear and count for the eye's adaptation already: a program shows
/// 1 - exp(-light), encoded for a screen.
///
/// The model is single scattering in a round atmosphere, summed along each ray (Nishita, Sirai, Tadamura and Nakamae:
/// Display of the Earth taking into account atmospheric scattering, 1993), with the air, haze and their heights as
/// Bruneton and Neyret have them (Precomputed atmospheric scattering, 2008) and the ozone that makes twilight blue as
/// Hillaire has it (A scalable and production ready sky and atmosphere rendering technique, 2020). A quarter of it from
/// everywhere stands for the light that is scattered more than once.
class QXOgreSkyModel final {
public:
  /// Columns go from the sun's azimuth around to the opposite one, angle = pi * (column / (COLUMNS - 1))^2, rows from
  /// the horizon to the zenith, altitude = pi / 2 * (row / (ROWS - 1))^2.
  static constexpr unsigned int COLUMNS = 32;
  static constexpr unsigned int ROWS = 48;

  /// Cost: about 300,000 exponentials. Allocates with the first call alone.
  void Compute(double dSunAltitude);

  /// Four floats a direction, row after row: red, green, blue, 1.
  std::vector<float> const& GetTable() const { return m_arrTable; }
  /// Of the sun where it stands, as its disc is shown.
  QXOgreLinear const& GetSun() const { return m_Sun; }
  /// Of the sky, averaged over the upper half: what a cloud or the sea is lit with beside the sun.
  QXOgreLinear const& GetAverage() const { return m_Average; }
  /// 0 by day to 1 when the stars are out.
  double GetNight() const { return m_dNight; }

private:
  std::vector<float> m_arrTable;
  QXOgreLinear m_Sun{};
  QXOgreLinear m_Average{};
  double m_dNight = 0.0;
};

}  // namespace QXC
