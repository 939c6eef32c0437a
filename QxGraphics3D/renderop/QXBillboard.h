/// @file
/// A picture that faces the camera.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXTexture;

/// A textured rectangle at a place of the scene that always faces the camera: trees, symbols, markers. Made by
/// QXRenderOperationManager::CreateBillboard, deleted by the host.
/// Threads: the render thread, outside a frame.
class QXGRAPHICS3D_API QXBillboard {
public:
  QXBillboard();
  QXBillboard(QXBillboard const& other);
  QXBillboard& operator=(QXBillboard const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXBillboard();

  /// 1: drawn (the default).
  virtual void SetVisible(unsigned char bVisible) = 0;
  virtual unsigned char IsVisible() const = 0;
  /// Place of the middle of the lower edge, in world coordinates.
  virtual void SetPosition(QXVector3d const& vecPosition) = 0;
  virtual QXVector3d const& GetPosition() const = 0;
  /// @param bPixels  0: width and height are world units and shrink with distance, 1: they are pixels
  virtual void SetSize(double dWidth, double dHeight, unsigned char bPixels) = 0;
  /// Picture and the part of it that is shown, in texture coordinates. The billboard takes a reference.
  virtual void SetTexture(QXTexture* pTexture, QdcRect2D const& rcPart) = 0;
  /// Factor on the picture; an alpha below 1 blends.
  virtual void SetColor(QXColorValue3D const& color) = 0;
  /// Turns the picture about its position, counter-clockwise on the screen, in radians.
  virtual void SetRotation(double dRadians) = 0;
  /// Drawn only this far from the camera, in world units; a far distance of 0 means without limit.
  virtual void SetVisibleDistance(double dNear, double dFar) = 0;
  /// Identifier drawn into a selection target, 0: cannot be picked.
  virtual void SetSelectionID(unsigned int nID) = 0;
};

}  // namespace QXC
