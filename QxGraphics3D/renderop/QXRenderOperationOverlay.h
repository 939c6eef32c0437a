/// @file
/// A rectangle drawn over the picture of a target.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXTexture;

/// A textured or plain rectangle in pixels that lies over everything in the scene: logos, scale bars, frames.
/// Made by QXGraphics3D::CreateOverlay and deleted by its DestroyOverlay; drawn while its target shows overlays.
/// Threads: the render thread.
class QXGRAPHICS3D_API QXRenderOperationOverlay {
public:
  QXRenderOperationOverlay();
  QXRenderOperationOverlay(QXRenderOperationOverlay const& other);
  QXRenderOperationOverlay& operator=(QXRenderOperationOverlay const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXRenderOperationOverlay();

  virtual QdcUnicodeString const& GetName() const = 0;
  /// 1: drawn (the default).
  virtual void SetVisible(unsigned char bVisible) = 0;
  virtual unsigned char IsVisible() const = 0;
  /// Place in pixels of the target, origin at the upper left corner.
  virtual void SetRect(QdcRect2D const& rcArea) = 0;
  /// Higher numbers lie on top.
  virtual void SetZOrder(int nZOrder) = 0;
  /// Picture and the part of it that is shown, in texture coordinates. The overlay takes a reference; null: plain.
  virtual void SetTexture(QXTexture* pTexture, QdcRect2D const& rcPart) = 0;
  /// Colour of a plain overlay, factor on the picture of a textured one; an alpha below 1 blends.
  virtual void SetColor(QXColorValue3D const& color) = 0;
};

}  // namespace QXC
