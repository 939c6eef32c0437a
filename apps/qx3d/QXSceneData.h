/// @file
/// The map data of a scene, from its files to labels and buildings.
#pragma once

#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/geo/QXGeoData.h>

#include <functional>
#include <string>
#include <vector>

namespace QXApp {

class QXSceneModels;

/// Height of the letters of flat labels in metres where the scene says none: that of names on city maps.
constexpr double DataLabelHeight = 10.0;

/// Labels for the points of a file. One with an angle is flat and runs along it from its point, as maps place turned
/// names; where it would read from right to left, seen with north above, it is turned by half a circle on the place that it
/// covers. One without is flat at 0, or faces the eye, as the data says.
/// @return  empty, or why some were left out
std::string AppendDataLabels(
    QXSceneData const& data, std::vector<QXGeoPoint> const& vecPoints, std::vector<QXSceneLabel>& vecLabels);

/// Reads each file of map data and appends its labels to those of the scene.
/// @param pModels      takes the buildings; null: no one looks at them
/// @param progress     is told what is read
/// @param vecProblems  gets the lines why a file cannot be shown; the first such file ends it
/// @param vecWarnings  gets the lines about what was left out; the rest is good all the same
void LoadSceneData(QXSceneFile& scene, QXSceneModels* pModels, std::function<void(std::string const&)> const& progress,
    std::vector<std::string>& vecProblems, std::vector<std::string>& vecWarnings);

}  // namespace QXApp
