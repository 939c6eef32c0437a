/// @file
/// Named points and footprints from GeoJSON.
#pragma once

#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/geo/QXGeoData.h>

#include <string_view>

namespace QXApp {

/// Reads a FeatureCollection or a Feature. A Point or MultiPoint gives the text of its feature's property at each
/// position; a Polygon or MultiPolygon gives footprints, with the numbers of the properties `height` and `storeys`.
/// Coordinates are taken as they stand, as x, y and perhaps z. Properties that are numbers are good as texts.
///
/// @param problems  gets why the file cannot be read, with its line
/// @param warnings  gets which features were left out, each with the line where it ends
/// Cost: linear in the bytes; one feature at a time is held.
QXGeoData ParseGeoJson(
    std::string_view bytes, QXGeoNames const& names, QXSceneProblems& problems, QXSceneProblems& warnings);

}  // namespace QXApp
