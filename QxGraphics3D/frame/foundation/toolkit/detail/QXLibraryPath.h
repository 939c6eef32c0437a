/// @file
/// Where the library and its installed files stand.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC::detail {

/// Folder of the module that holds this code, ending in a separator; empty if the system does not tell.
QdcUnicodeString LibraryFolder();

/// Folder of the installed data files (registry.ini, strings.ini, fonts), ending in a separator; found from the
/// library's own place, so that a moved or not yet installed tree works. Empty if there is none.
QdcUnicodeString DataFolder();

}  // namespace QXC::detail
