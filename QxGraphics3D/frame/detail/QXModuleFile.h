/// @file
/// Checks of a module file before the system's loader sees it.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC::detail {

/// Null if the file can be handed to the loader, else why not. The loader maps a file's segments without looking at its
/// size: a module cut short, by a full disk or while it is being copied, would end the process with a bus error.
wchar_t const* FaultOfModuleFile(QdcUnicodeString const& strPath);

}  // namespace QXC::detail
