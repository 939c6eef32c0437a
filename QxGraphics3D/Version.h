/// @file
/// The version of the library that is loaded, which can be newer than the headers a host was compiled with.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// "major.minor.patch" of the loaded library, zero-terminated, valid for ever. Any thread.
QXGRAPHICS3D_API char const* GetLibraryVersion();

}  // namespace QXC
