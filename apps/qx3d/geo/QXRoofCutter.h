/// @file
/// Triangles from polygons with holes.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace QXApp {

/// Cuts level polygons into triangles.
class QXRoofCutter {
public:
  struct Corner {
    double x = 0.0;
    double y = 0.0;
  };

  /// Each crossing makes a corner, and their number can grow with the square of that of the edges: a polygon of 2000
  /// corners at random takes a minute to cut.
  static constexpr std::size_t MaxCrossings = 1000;

  QXRoofCutter();
  QXRoofCutter(QXRoofCutter const&) = delete;
  QXRoofCutter& operator=(QXRoofCutter const&) = delete;
  ~QXRoofCutter();

  /// What lies inside an odd number of the rings is covered, whatever their direction and where they cross.
  /// @return  whether it went well, which it does not where more than MaxCrossings edges cross or touch others; the
  ///          triangles are good until the next call
  bool Cut(std::vector<std::vector<Corner>> const& vecRings);

  std::vector<Corner> const& GetCorners() const;
  /// Three corners a triangle, counter-clockwise seen from above.
  std::vector<unsigned int> const& GetTriangles() const;
  /// Of all polygons so far: corners that were made where edges cross.
  std::size_t GetCrossingCount() const;

private:
  struct Core;
  std::unique_ptr<Core> m_pCore;
};

}  // namespace QXApp
