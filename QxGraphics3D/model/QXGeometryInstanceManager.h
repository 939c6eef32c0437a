/// @file
/// Shared meshes by name.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>

namespace QXC {

/// Meshes that many objects draw, by name. As many objects of the class as a host likes; copies share the meshes.
/// Threads: the render thread, where meshes die.
class QXGRAPHICS3D_API QXGeometryInstanceManager {
public:
  QXGeometryInstanceManager();
  QXGeometryInstanceManager(QXGeometryInstanceManager const& other);
  QXGeometryInstanceManager& operator=(QXGeometryInstanceManager const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Removes all; meshes die with their last holder.
  virtual ~QXGeometryInstanceManager();

  /// Stores a mesh, taken over, under a name, in the place of a former one, which its holders keep. Null stores
  /// nothing. A mesh that stands under another name already, or is held elsewhere, is shared.
  /// @return  what the name holds afterwards
  QXROInstancePtr AddROInstance(QdcUnicodeString const& strName, QXRenderObjectInstance* pInstance);
  /// Null if there is none.
  QXROInstancePtr GetROInstance(QdcUnicodeString const& strName) const;
  unsigned char IsExists(QdcUnicodeString const& strName) const;
  /// An unknown name is ignored.
  void Remove(QdcUnicodeString const& strName);
  void RemoveAll();

protected:
  QdcDict<QdcUnicodeString, QXROInstancePtr> m_dictROInstances;
};

}  // namespace QXC
