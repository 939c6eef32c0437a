/// @file
/// The hook that a host attaches to a render target to be told when the target draws.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

// A virtual destructor would take the first slot and shift both operations for every plug-in; nobody deletes a
// listener through this class, so the missing destructor costs nothing.
#if defined(__GNUC__)
#  pragma GCC diagnostic push
#  pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// Told by the renderer plug-in around the drawing of one target; the library itself never calls it.
/// Attached with QXRenderTarget::SetListener, which does not take it over: it must outlive its target or be
/// detached first. No data; both operations are empty here, so that a listener fills only the one it needs.
/// Threads: the render thread.
class QXGRAPHICS3D_API QXRenderTargetListener {
public:
  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// The plug-in calls it before the first draw operation of a frame into the target.
  virtual void BeforeRender();
  /// The plug-in calls it after the last draw operation of that frame, before the buffers are swapped.
  virtual void PostRender();
};

#if defined(__GNUC__)
#  pragma GCC diagnostic pop
#endif

}  // namespace QXC
