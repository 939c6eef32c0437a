/// @file
/// The renderer-independent texture.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// A texture with its reference count. The count is plain: whoever shares textures between threads holds the lock of
/// the texture manager while counting.
class QXGRAPHICS3D_API QXTexture {
public:
  QXTexture();
  QXTexture(QXTexture const&) = delete;
  QXTexture& operator=(QXTexture const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  virtual ~QXTexture();

  /// One user more; nothing is checked.
  void AddRef();
  /// One user less. The texture is not deleted: its manager does that.
  void DecRef();
  int GetRef() const;

private:
  int m_nRefCount = 0;
};

}  // namespace QXC
