/// @file
/// Crash reporting.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

/// Loading the library installs Dump as handler of the signals 2, 4, 8, 11, 15, 21, 22 and of abort, and that is all
/// the library reports about crashes. How a host keeps handlers of its own: doc/signals.md.
class QXGRAPHICS3D_API QXLogFile {
public:
  /// Signal handler. For an illegal instruction, a floating-point error, a segmentation fault and abort it writes the
  /// stack of the calling thread to standard error; for the others nothing. Then it restores the default action and
  /// raises the signal again, so that the process ends, stops and reports its status as if there were no handler. A
  /// signal of the others that was ignored when the library was loaded is ignored again instead.
  /// Uses only what is allowed in a signal handler.
  static void Dump(int nSignal);
};

}  // namespace QXC
