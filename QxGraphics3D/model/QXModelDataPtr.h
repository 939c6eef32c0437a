/// @file
/// Shared pointer to a model.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QXSharedPtr.h>
#include <QxGraphics3D/model/QXModelData.h>

namespace QXC {

/// Holds a model of the cache together with whoever else holds it; null where a model could not be had.
/// Threads: all pointers to the models of one cache belong to one thread, as the cache does.
class QXGRAPHICS3D_API QXModelDataPtr : public QXSharedPtr<QXModelData> {
public:
  QXModelDataPtr();
  /// Takes the model over. One that a pointer of this class holds already is shared with it.
  explicit QXModelDataPtr(QXModelData* pModelData);
  QXModelDataPtr(QXModelDataPtr const& other);
  QXModelDataPtr(QXModelDataPtr&& other) noexcept;
  ~QXModelDataPtr() override;
  QXModelDataPtr& operator=(QXModelDataPtr const& other);
  QXModelDataPtr& operator=(QXModelDataPtr&& other) noexcept;

  /// As the constructor, in place of what is held.
  void Bind(QXModelData* pModelData);
};

}  // namespace QXC
