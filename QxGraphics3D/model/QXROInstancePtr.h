/// @file
/// Shared pointer to a mesh that many objects draw.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QXSharedPtr.h>
#include <QxGraphics3D/model/QXRenderObjectInstance.h>

namespace QXC {

/// Holds a mesh together with everybody else who draws it.
/// Threads: all pointers to the meshes of one renderer belong to its thread.
class QXGRAPHICS3D_API QXROInstancePtr : public QXSharedPtr<QXRenderObjectInstance> {
public:
  QXROInstancePtr();
  /// Takes the mesh over. One that a pointer of this class holds already is shared with it.
  explicit QXROInstancePtr(QXRenderObjectInstance* pInstance);
  QXROInstancePtr(QXROInstancePtr const& other);
  QXROInstancePtr(QXROInstancePtr&& other) noexcept;
  ~QXROInstancePtr() override;
  QXROInstancePtr& operator=(QXROInstancePtr const& other);
  QXROInstancePtr& operator=(QXROInstancePtr&& other) noexcept;

  /// As the constructor, in place of what is held.
  void Bind(QXRenderObjectInstance* pInstance);
};

}  // namespace QXC
