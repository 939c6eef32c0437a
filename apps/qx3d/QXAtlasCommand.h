/// @file
/// `qx3d atlas`.
#pragma once

namespace QXApp {

struct QXAtlasOptions;

/// Writes every atlas page of a scene as a picture into a folder.
/// @return  the exit status; 1 after one line on the standard error output for each problem
int RunAtlas(QXAtlasOptions const& options);

}  // namespace QXApp
