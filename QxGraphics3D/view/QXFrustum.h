/// @file
/// Projection state of a view, its clipping planes and the visibility tests.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

class QXBoundingBox;
class QXBoundingSphere;
class QXOrientedBoundingBox;

enum ProjectionType : int {
  PROJECTION_ORTHOGRAPHIC = 0,
  PROJECTION_PERSPECTIVE = 1,
};

/// Which of the two fields of view is the given one.
enum QXCameraFOVMode : int {
  FOV_MODE_DERIVED = 0,  ///< the first field follows from the second, which is kept, and the aspect
  FOV_MODE_SECOND = 1,   ///< the second field counts
};

/// Projection type, field of view, distances, the world, view and projection matrices, and the six planes taken from
/// them. The library computes no projection: a plug-in sets the matrix and calls UpdateFrustum.
/// Threads: the render thread only. Failure: none is reported; numbers that are not finite travel through.
class QXGRAPHICS3D_API QXFrustum {
public:
  QXFrustum();
  QXFrustum(QXFrustum const& other);
  QXFrustum& operator=(QXFrustum const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXFrustum();
  /// Takes the six planes from GetModelViewProMatrix and normalises them. Whoever changed a matrix calls it; nothing in
  /// this class does.
  virtual void UpdateFrustum();
  /// Brings the view up to date with UpdateView and returns it.
  virtual QXMatrix4d const& GetViewMatrix();
  virtual QXMatrix4d const& GetWorldMatrix() const;
  virtual QXMatrix4d const& GetProjectionMatrix() const;
  /// World * view * projection from the members as they stand: the view is not brought up to date.
  virtual QXMatrix4d GetModelViewProMatrix() const;
  /// Six planes whose normals point inwards: below, behind the far end, right, left, before the near end, above.
  virtual QXPlane const* GetFrustumPlanes() const;
  /// Called at the start of every visibility test with a tolerance other than 0 (by qdcequal), whatever is tested, and
  /// of no other. A derived class fills in all six planes, shifted by its own rule; they arrive default-constructed and
  /// the base leaves them so.
  virtual void ComputerPlane(QXPlane* pPlanes, double dTolerance) const;
  /// Marks the view matrix as out of date.
  virtual void InvalidateView();
  virtual unsigned char IsViewOutOfDate() const;
  /// Calls UpdateViewImpl if the view is out of date.
  virtual void UpdateView();
  /// Computes the view matrix and clears its mark; empty here.
  virtual void UpdateViewImpl();

  ProjectionType GetProjectionType() const;
  void SetProjectionType(ProjectionType eType);

  double GetNearDist() const;
  /// Stores the distance and marks it as set; computes nothing.
  void SetNearDist(double dDistance);
  /// Clears the mark; the distance stays.
  void ClearNearDist();
  double GetFarDist() const;
  /// Stores the distance and marks it as set; computes nothing.
  void SetFarDist(double dDistance);
  /// Clears the mark; the distance stays.
  void ClearFarDist();

  /// Width over height.
  double GetAspect() const;
  /// Stores the aspect. As long as no SetFOVMode has run, an aspect that differs also derives the first field of view.
  void SetAspect(double dAspect);

  /// First field of view in radians.
  double GetFov() const;
  void SetFov(double dFov);
  QXCameraFOVMode GetFOVMode() const;
  /// Chooses the mode for good: SetAspect leaves the fields of view alone from now on. Going back to
  /// FOV_MODE_DERIVED derives the first field from the second and the aspect once.
  void SetFOVMode(QXCameraFOVMode eMode);
  /// The second field in FOV_MODE_SECOND, the first in any other mode.
  double GetCurrentModeFOV() const;

  double GetOrthoWindowHeight() const;
  void SetOrthoWindowHeight(double dHeight);
  /// Height times aspect.
  double GetOrthoWindowWidth() const;
  /// Changes the height so that the width comes out at the present aspect.
  void SetOrthoWindowWidth(double dWidth);
  /// Sets the height, and the aspect to width over height.
  void SetOrthoWindow(double dWidth, double dHeight);

  void SetViewMatrix(QXMatrix4d const& matrix);
  void SetProjectionMatrix(QXMatrix4d const& matrix);

  /// 1 if the point lies on the inner side of all six planes or on one of them.
  unsigned char ContainsPoint(QXVector3d const& point) const;

  /// 0 if all eight corners of the box have a distance below 0 from one plane, else 1: a box outside that no single
  /// plane separates is accepted. Corners whose distance is not a number do not reject, inverted boxes are tested by
  /// their corners like all others, and a null box by its corners of zeros.
  /// @param dTolerance  0 (by qdcequal): the frustum's planes; else those that ComputerPlane gives
  /// Cost: independent of the answer; the widest vector instructions of the processor are chosen when the library is
  /// loaded, with the same answers on all.
  unsigned char IsVisible(QXBoundingBox const& box, double dTolerance) const;
  /// 0 if the sphere is not valid, or if its centre's distance from one plane is at or below minus its radius: one that
  /// touches a plane from outside is not visible.
  /// @param dTolerance  as for boxes
  /// Cost: as for boxes.
  unsigned char IsVisible(QXBoundingSphere const& sphere, double dTolerance) const;
  /// 0 if IntersectPlane of one plane is 0, else 1.
  /// @param dTolerance  as for boxes
  unsigned char IsVisible(QXOrientedBoundingBox& box, double dTolerance) const;

protected:
  ProjectionType m_eProjectionType;
  double m_dOrthoHeight;
  double m_dFov;
  double m_dFovSecond;
  double m_dNearDist;
  unsigned char m_bNearDistSet;
  double m_dFarDist;
  unsigned char m_bFarDistSet;
  double m_dAspect;
  QXMatrix4d m_matWorld;
  QXMatrix4d m_matView;
  QXMatrix4d m_matProjection;
  QXPlane m_Planes[6];
  unsigned char m_bViewOutOfDate;
  QXCameraFOVMode m_eFOVMode;
  unsigned char m_bFOVModeSet;
};

}  // namespace QXC
