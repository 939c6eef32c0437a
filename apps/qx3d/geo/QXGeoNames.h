/// @file
/// What the name of a file of map data tells.
#pragma once

#include <apps/qx3d/geo/QXGeoData.h>

#include <string>

namespace QXApp {

enum class QXGeoFormat { None, CityGml, GeoJson, Shapefile };

/// The extension of a name with its dot, in small letters; empty if it has none.
std::string GetLowerExtension(std::string const& strPath);

/// By the extension, in any case.
QXGeoFormat FindGeoFormat(std::string const& strPath);

/// Whether a name has the extension of map data, in any case: .gml, .citygml, .geojson or .shp.
bool IsGeoName(std::string const& strPath);

/// The names of attributes that a file of this extension has by habit: `tekst` and `hoek` in CityGML, else `name` and
/// no angle.
QXGeoNames GetGeoNames(std::string const& strPath);

}  // namespace QXApp
