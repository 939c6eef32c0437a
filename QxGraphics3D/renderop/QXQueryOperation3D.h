/// @file
/// A visibility query of the renderer.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Counts the pixels that what is drawn between BeginQuery and EndQuery leaves visible. Made by
/// QXRenderOperationManager::CreateQueryOperation, deleted by the host.
/// Threads: the render thread; begin and end inside one frame of one target.
class QXGRAPHICS3D_API QXQueryOperation3D {
public:
  QXQueryOperation3D();
  QXQueryOperation3D(QXQueryOperation3D const& other);
  QXQueryOperation3D& operator=(QXQueryOperation3D const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXQueryOperation3D();

  virtual QdcUnicodeString const& GetName() const = 0;
  /// Starts counting and drops an older result.
  virtual void BeginQuery() = 0;
  /// Stops counting. The answer takes a frame or two to come back from the device.
  virtual void EndQuery() = 0;
  /// 1 once GetPixelCount answers without waiting.
  virtual unsigned char IsResultReady() const = 0;
  /// Visible pixels of the last finished query; waits for the device if the result is not ready.
  virtual unsigned int GetPixelCount() = 0;
};

}  // namespace QXC
