/// @file
/// Where the eye of a view stands, and what follows from it.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXApp {

/// A view around a target: the eye stands m_dDistance away, looking along a heading (radians clockwise from north,
/// which is +y) and an elevation (radians above the horizon; negative looks down). World z is upwards in the picture;
/// straight down, the heading is.
struct QXPose {
  QXC::QXVector3d m_vecTarget;
  double m_dHeading = 0.0;
  double m_dElevation = 0.0;
  double m_dDistance = 1.0;

  /// Orientation of a camera that looks along -z of its own axes.
  QXC::QXQuaternion4d GetOrientation() const;
  QXC::QXVector3d GetDirection() const;
  QXC::QXVector3d GetEye() const;

  /// The pose of an eye that looks at a point. @return  false if the two are the same
  bool SetEyeAndTarget(QXC::QXVector3d const& vecEye, QXC::QXVector3d const& vecTarget);

  /// Drags of the mouse. Angles in radians; the elevation stops at straight up and down.
  void Orbit(double dHeading, double dElevation);
  /// Moves eye and target along the picture's axes, in units of the target's distance.
  void Pan(double dRight, double dUp);
  /// Above 1 goes away, below 1 comes nearer.
  void Zoom(double dFactor);
};

/// Smallest pose of a heading and an elevation from which a box fills the picture without being cut.
/// @param dFovY    vertical field of view, radians
/// @param dAspect  width over height
/// @param dMargin  1: the box touches two edges of the picture; 1.1: with a margin of a tenth
QXPose FrameBox(
    QXC::QXBoundingBox const& box, double dHeading, double dElevation, double dFovY, double dAspect, double dMargin);

/// Distances of the clipping planes for an eye in or outside of a model that stands on wide ground.
/// @param box           of the model
/// @param dGroundReach  how far behind the target the ground may still be seen; 0 without ground
/// The near plane stays away from zero, since depth is spread over the ratio of the two.
void ComputeNearFar(
    QXPose const& pose, QXC::QXBoundingBox const& box, double dGroundReach, double& dNear, double& dFar);

/// Perspective projection for row vectors into clip space -w..w on all three axes, looking along -z.
/// Source: similar triangles; x and y scale by the cotangent of the half angle, z maps near to -w and far to w.
QXC::QXMatrix4d MakePerspective(double dFovY, double dAspect, double dNear, double dFar);

/// Heading and elevation of a viewport by its place: obliquely from the south, straight down, then along the ground
/// from south, east, north and west, then obliquely from further sides.
void GetViewAngles(int nView, double& dHeading, double& dElevation);

/// Place of a viewport, as fractions of the target from its lower left corner.
struct QXCell {
  double m_dLeft;
  double m_dBottom;
  double m_dWidth;
  double m_dHeight;
};

/// Place of a viewport in a grid over a target of a size in pixels: rows as even as they get, filled from the upper
/// left, the upper ones one viewport longer where the number does not divide, each row over the whole width. The
/// fractions are such that neighbours touch in whole pixels.
QXCell GetViewCell(int nView, int nViews, int nWidth, int nHeight);

}  // namespace QXApp
