/// @file
/// What a plug-in hangs into the renderer to have its own resources freed with the renderer's.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// Resources of a plug-in whose lifetime equals the renderer's. The object belongs to the plug-in, which stores
/// its address in QXGraphics3D::m_pResourceHolder and sets that member to null before it deletes the object.
class QXGRAPHICS3D_API QXResourceHolder {
public:
  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  virtual ~QXResourceHolder() {}
  /// Number of resources held, for statistics of the plug-in and the host.
  virtual unsigned int GetResourceCount() const = 0;
  /// Frees all resources held; the holder itself stays usable. Called by QXGraphics3D::ClearResource after the
  /// models and before the textures, on the rendering thread, and once more for each further ClearResource.
  virtual void ReleaseResources() = 0;
};

}  // namespace QXC
