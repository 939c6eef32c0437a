/// @file
/// Files of map data by their names.
#pragma once

#include <apps/qx3d/geo/QXGeoData.h>

#include <string>
#include <vector>

namespace QXApp {

/// Whether a name has the extension of map data, in any case: .gml, .citygml, .geojson or .shp.
bool IsGeoName(std::string const& strPath);

/// The names of attributes that a file of this extension has by habit: `tekst` and `hoek` in CityGML, else `name` and
/// no angle.
QXGeoNames GetGeoNames(std::string const& strPath);

/// Reads a file of map data.
/// @param vecProblems  gets one line for each reason why it cannot be read, with path and line; good if there is none
/// @param vecWarnings  gets one line for each thing that was left out
QXGeoData ReadGeoFile(std::string const& strPath, QXGeoNames const& names, std::vector<std::string>& vecProblems,
    std::vector<std::string>& vecWarnings);

}  // namespace QXApp
