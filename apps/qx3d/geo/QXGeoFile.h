/// @file
/// Files of map data.
#pragma once

#include <apps/qx3d/geo/QXGeoData.h>

#include <string>
#include <vector>

namespace QXApp {

/// Reads a file of map data.
/// @param vecProblems  gets one line for each reason why it cannot be read, with path and line; good if there is none
/// @param vecWarnings  gets one line for each thing that was left out
QXGeoData ReadGeoFile(std::string const& strPath, QXGeoNames const& names, std::vector<std::string>& vecProblems,
    std::vector<std::string>& vecWarnings);

}  // namespace QXApp
