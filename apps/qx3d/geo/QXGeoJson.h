/// @file
/// Named points and footprints from GeoJSON.
#pragma once

#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/geo/QXGeoData.h>

#include <cstddef>
#include <string_view>

namespace QXApp {

/// What a feature may have, together with what stands outside of all features: a tree of values takes many times the
/// memory that their bytes take in the file.
struct QXGeoJsonLimits {
  /// Values and names, up to a hundred bytes each; every 16 bytes of texts count for one more.
  std::size_t m_nValues = 8000000;
  /// From one of them to the next.
  std::size_t m_nValueBytes = std::size_t{16} << 20;
  /// Values beside objects, for each object once more: so often they are looked at in the whole file.
  std::size_t m_nVisits = 2000000000;
};

/// Reads a FeatureCollection or a Feature. A Point or MultiPoint gives the text of its feature's property at each
/// position; a Polygon or MultiPolygon gives footprints, with the numbers of the properties `height` and `storeys`.
/// Where places are asked for, all points and polygons count, named or not, with the numbers of their properties.
/// Coordinates are taken as they stand, as x, y and perhaps z. Properties that are numbers are good as texts.
///
/// @param problems  gets why the file cannot be read, with its line
/// @param warnings  gets which features were left out, each with the line where it ends
/// Cost: linear in the bytes. One feature at a time is held, which takes 800 MB at the worst; a file with a larger one
///       than the limits is refused.
QXGeoData ParseGeoJson(std::string_view bytes, QXGeoNames const& names, QXSceneProblems& problems,
    QXSceneProblems& warnings, QXGeoJsonLimits const& limits = {});

}  // namespace QXApp
