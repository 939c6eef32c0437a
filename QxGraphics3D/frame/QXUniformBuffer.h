/// @file
/// A named block of shader parameters.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// A block of shader parameters that several programs share. Obtained from QXGraphics3D::CreateUniformBuffer,
/// which also owns it. The base does nothing, so that a host can hold one where the plug-in has none.
class QXGRAPHICS3D_API QXUniformBuffer {
public:
  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  virtual ~QXUniformBuffer();
  /// Adds a parameter of nElementSize bytes, nCount of them, after those added earlier. Called by the host before
  /// Initialize. Base: nothing.
  virtual void AddUniformDefinition(QdcUnicodeString const& strName, unsigned int nElementSize, unsigned int nCount);
  /// Makes the block on the device from the definitions. Called once by the host. Base: nothing.
  virtual void Initialize();
};

}  // namespace QXC
