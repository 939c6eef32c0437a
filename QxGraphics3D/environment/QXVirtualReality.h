/// @file
/// A head-mounted display.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

class QXMatrix4d;
class QXRenderTarget;

/// Base of a plug-in's classes for devices. The renderer holds one object for the display of QXGraphics3D::m_eHMDMode
/// and drives it from its own operations of the same sense (InitializeVR, UpdateHMDPose, GetHMDPose, SubmitHMDFrame,
/// ReleaseVR); neither the library nor a host calls it.
/// Threads: the render thread. Failure: 0; a device that went away answers as one that is not connected.
class QXGRAPHICS3D_API QXVirtualReality {
public:
  QXVirtualReality() = default;
  QXVirtualReality(QXVirtualReality const&) = default;
  QXVirtualReality& operator=(QXVirtualReality const&) = default;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Derived classes call their Release.
  virtual ~QXVirtualReality();

  /// Takes hold of the device, once before the first frame. 0 if there is none, or another program has it.
  virtual unsigned char Initialize() = 0;
  /// Reads head and controllers, once a frame before the targets are drawn.
  virtual void UpdatePose() = 0;
  /// View and projection of an eye (0 left, 1 right) as UpdatePose read them, row vectors. 0 with both unchanged
  /// without a device.
  virtual unsigned char GetEyeMatrices(int nEye, QXMatrix4d& matView, QXMatrix4d& matProjection) const = 0;
  /// Hands the pictures of both eyes to the device, once a frame after the targets were drawn. They stay the caller's.
  virtual void Submit(QXRenderTarget* pLeft, QXRenderTarget* pRight) = 0;
  /// Gives the device back; Initialize takes hold of it again.
  virtual void Release() = 0;

protected:
  // Left to the class of the device, which gives them their meaning.
  double m_dValue = 1.0;
  unsigned char m_bFlag0 = 1;
  unsigned char m_bFlag1 = 0;
};

}  // namespace QXC
