/// @file
/// The rays from the eye through a viewport, in directions of the world.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

struct QXOgreView;

/// What is seen at the place (x, y) of a viewport, -1 to 1 from the left and from the bottom: the ray that starts at
/// Start + x * StartRight + y * StartUp, counted from the eye, and goes along Ray + x * RayRight + y * RayUp, which has
/// any length. In a perspective view all rays start in the eye, in a parallel one all have one direction.
struct QXOgreRays {
  /// Of the eye: world coordinates with exaggerated heights.
  QXVector3d m_vecEye;
  QXVector3d m_vecStart;
  QXVector3d m_vecStartRight;
  QXVector3d m_vecStartUp;
  QXVector3d m_vecRay;
  QXVector3d m_vecRayRight;
  QXVector3d m_vecRayUp;
  bool m_bParallel = false;
};

/// Everything in double and relative to the eye, so that it does not matter where in the world that is.
/// @return  false, with nothing of use in rays, if view or projection have no inverse
bool FindRays(QXOgreView const& view, QXOgreRays& rays);

}  // namespace QXC
