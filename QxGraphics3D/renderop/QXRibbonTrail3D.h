/// @file
/// Ribbons that moving things leave behind.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXTexture;
class QXTextureManager;

/// Tracks of vehicles and aircraft: each trail is a ribbon through the last points given to it, fading with time.
/// Made by QXRenderOperationManager::CreateRibbonTrail, deleted by the host. Trails are numbered from 0; a number
/// past the last changes nothing, and asking for it gives the value for new trails.
/// Threads: the render thread, outside a frame.
class QXGRAPHICS3D_API QXRibbonTrail3D {
public:
  QXRibbonTrail3D();
  /// Nothing is stored here: a plug-in keeps what it needs of its names and manager.
  QXRibbonTrail3D(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strName,
      QdcUnicodeString const& strMaterial, QXTextureManager* pTextureManager);
  QXRibbonTrail3D(QXRibbonTrail3D const& other);
  QXRibbonTrail3D& operator=(QXRibbonTrail3D const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXRibbonTrail3D();

  virtual QdcUnicodeString const& GetName() const = 0;
  /// 1: drawn (the default).
  virtual void SetVisible(unsigned char bVisible) = 0;
  virtual unsigned char IsVisible() const = 0;
  /// Picture along the ribbons, v across; the trail takes a reference, null: plain colours.
  virtual void SetTexture(QXTexture* pTexture) = 0;
  /// Number of ribbons; those that vanish lose their points.
  virtual void SetTrailCount(unsigned int nCount) = 0;
  virtual unsigned int GetTrailCount() const = 0;
  /// Points that one ribbon keeps; older ones drop off its end.
  virtual void SetMaxPointCount(unsigned int nCount) = 0;
  virtual unsigned int GetMaxPointCount() const = 0;
  /// Length of a ribbon in world units; 0: as long as its points reach.
  virtual void SetTrailLength(double dLength) = 0;
  virtual double GetTrailLength() const = 0;
  /// Appends a point to the head of a ribbon, in world coordinates.
  virtual void AddPoint(unsigned int nTrail, QXVector3d const& vecPoint) = 0;
  /// Takes the points of one ribbon away.
  virtual void ClearTrail(unsigned int nTrail) = 0;
  /// Takes the points of all ribbons away.
  virtual void ClearAllTrails() = 0;
  /// Colour of a point when it is added.
  virtual void SetInitialColor(unsigned int nTrail, QXColorValue3D const& color) = 0;
  virtual QXColorValue3D GetInitialColor(unsigned int nTrail) const = 0;
  /// What a point's colour loses a second, each channel down to 0.
  virtual void SetColorChange(unsigned int nTrail, QXColorValue3D const& colorPerSecond) = 0;
  virtual QXColorValue3D GetColorChange(unsigned int nTrail) const = 0;
  /// Width of the ribbon at a new point, in world units.
  virtual void SetInitialWidth(unsigned int nTrail, double dWidth) = 0;
  virtual double GetInitialWidth(unsigned int nTrail) const = 0;
  /// What the width loses a second, down to 0.
  virtual void SetWidthChange(unsigned int nTrail, double dWidthPerSecond) = 0;
  virtual double GetWidthChange(unsigned int nTrail) const = 0;
  /// 1: the ribbons turn to the camera (the default), 0: they lie across the given normal.
  virtual void SetFaceCamera(unsigned char bFaceCamera, QXVector3d const& vecNormal) = 0;
  /// Lets the time pass for colours and widths, in seconds. Once a frame, before the targets are updated.
  virtual void Advance(double dSeconds) = 0;
};

}  // namespace QXC
