/// @file
/// Buildings from their footprints.
#pragma once

#include <apps/qx3d/geo/QXGeoData.h>

#include <memory>
#include <string>
#include <vector>

namespace QXC {
class ModelDataInfo;
}

namespace QXApp {

/// How high a building is, in metres. What the file says goes first: the height, then 3 m for each storey. Without
/// either the area decides: below 40 square metres a shed of 3 m, below 400 a house of 9 m, else a block of 12 m.
double GetBuildingHeight(QXGeoFootprint const& footprint);

/// Square metres between the outer ring and the courtyards, not below 0.
double GetFootprintArea(QXGeoFootprint const& footprint);

/// Walls and flat roofs, z up. A building stands on its lowest corner, which a building without height in its
/// coordinates has at 0. Rings may run in either direction, and may cross: what lies inside an odd number of times has
/// a roof. Each building is a mesh, relative to a whole place at its first corner, so that floats keep a millimetre.
///
/// @param vecShift   added to every corner
/// @param strWarning gets one line if some were left out: those of more than 2000 corners, and those that cross so
///                   often that their parts would never end
/// @return  null without any roof
/// Cost: corners times their logarithm.
std::unique_ptr<QXC::ModelDataInfo> MakeFootprintModel(
    std::vector<QXGeoFootprint> const& vecFootprints, QXC::QXVector3d const& vecShift, std::string& strWarning);

}  // namespace QXApp
