/// @file
/// Whatever the program can show, as a scene.
#pragma once

#include <apps/qx3d/QXSceneFile.h>

#include <string>
#include <vector>

namespace QXApp {

/// Reads a scene file; of a model, a file of map data or of static geometry makes a scene of one, whose messages are
/// about that file and none of its lines.
QXSceneFile ReadAsScene(std::string const& strPath, std::vector<std::string>& vecProblems);

}  // namespace QXApp
