/// @file
/// Many places of one mesh, drawn together.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>

namespace QXC {

class QXRenderOperationInstance;

/// One mesh at many places, drawn in as few operations as the device can. A plug-in derives from it; objects are made
/// by QXHwInstancingManager::CreateInstancing and belong to that manager.
/// Threads: the render thread, outside a frame.
class QXGRAPHICS3D_API QXInstancing {
public:
  QXInstancing();
  QXInstancing(QXInstancing const& other);
  QXInstancing& operator=(QXInstancing const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXInstancing();

  /// 1: drawn (the default). Base: nothing.
  virtual void SetVisible(unsigned char bVisible);
  /// Places the mesh where the uses in m_arrInstances say, in their order, in place of what the manager was told
  /// before. Called by hosts that keep their objects as such uses, after the list or a matrix has changed.
  virtual void UpdateInstances() = 0;

  /// Uses of the mesh, not owned; they live as long as they stand here.
  QdcArray<QXRenderOperationInstance*> m_arrInstances;
  /// Most places in one draw operation; 0 or below: as many as the device takes.
  int m_nMaxPlacements = 0;
};

}  // namespace QXC
