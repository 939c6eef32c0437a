/// @file
/// `qx3d inspect`.
#pragma once

#include <string>

namespace QXApp {

/// Prints what the library makes of an image file: type, size, depth, the form in which a texture holds it, levels,
/// transparency, frames.
/// @return  the exit status; 1 after one line on the standard error output
int RunInspect(std::string const& strImage);

}  // namespace QXApp
