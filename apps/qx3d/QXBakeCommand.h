/// @file
/// `qx3d bake`.
#pragma once

namespace QXApp {

struct QXBakeOptions;

/// Merges models, map data and scenes into a file of static geometry.
/// @return  the exit status
int RunBake(QXBakeOptions const& options);

}  // namespace QXApp
