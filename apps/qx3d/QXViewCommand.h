/// @file
/// `qx3d view` and `qx3d pick`.
#pragma once

namespace QXApp {

struct QXViewOptions;

/// Shows a model or a scene: writes a picture of it, or opens a window until the person closes it.
/// @return  the exit status; 1 after one line on the standard error output, for a scene one for each problem in it
int RunView(QXViewOptions const& options);

/// Prints what is at a pixel of the picture, and writes the picture if it has a name.
/// @return  as above, and 3 where nothing is
int RunPick(QXViewOptions const& options);

}  // namespace QXApp
