/// @file
/// Where the instances of a scene stand.
#pragma once

#include <apps/qx3d/QXSceneFile.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace QXApp {

/// Reads a list of places: one a line, as `place` has it, with comments behind # and ;.
/// @param problems  gets the lines that are none, or too long to be one
/// Cost: linear in the bytes.
void ReadPlaces(std::string_view bytes, std::vector<QXScenePlace>& vecPlaces, QXSceneProblems& problems);

/// Makes the places of all instances ready: those of the scene file, then of their files, then of their points. Each
/// has a heading and a scale afterwards, and stands where it is drawn.
/// @param progress     is told what is read
/// @param vecProblems  gets the lines why the scene cannot be shown, of all its files; once there are twenty, further
///                     files are not read
/// @param vecWarnings  gets the lines about what was left out; the rest is good all the same
/// Cost: linear in the files. A scene has the same places on every system.
void LoadScenePlaces(QXSceneFile& scene, std::function<void(std::string const&)> const& progress,
    std::vector<std::string>& vecProblems, std::vector<std::string>& vecWarnings);

}  // namespace QXApp
