/// @file
/// Points in areas.
#pragma once

#include <apps/qx3d/geo/QXGeoData.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace QXApp {

/// Numbers that are the same on every system for the same seed.
class QXRandom {
public:
  explicit QXRandom(std::uint64_t nSeed) : m_nState(nSeed) {}
  /// From 0 inclusive to 1 exclusive, in steps of 2^-53. The generator is splitmix64 (Steele, Lea and Flood, 2014).
  double Take();

private:
  std::uint64_t m_nState;
};

/// Square units of the outer ring less the courtyards, without its heights.
double GetArea(QXGeoFootprint const& area);

/// Centre of gravity of the outer ring, at the height of its first corner; the middle of its box where the ring has no
/// area.
QXC::QXVector3d GetMiddle(QXGeoFootprint const& area);

/// Whether a point lies inside: within an odd number of rings, seen from above.
bool IsInside(QXGeoFootprint const& area, double dX, double dY);

/// Random points inside an area, at the height of its first corner. Where an area fills less than a hundredth of its
/// box they are even along y rather than everywhere.
/// @param nCorners  how many corners may be looked at yet, which is counted down: at 0 there are no further points
void AppendPoints(QXGeoFootprint const& area, std::size_t nCount, QXRandom& random, std::size_t& nCorners,
    std::vector<QXC::QXVector3d>& vecPoints);

}  // namespace QXApp
