/// @file
/// Box along axes of its own.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

class QXMatrix4d;
class QXPlane;

/// Centre and three half edges, each from the centre to the middle of a face; they need not be perpendicular, so that
/// any affine image of a box is one. Default-constructed it is the point at the origin.
class QXGRAPHICS3D_API QXOrientedBoundingBox {
public:
  QXVector3d m_vecCenter;
  QXVector3d m_vecHalfEdges[3];

  constexpr QXOrientedBoundingBox() {}
  /// The image of an axis-aligned box under an affine transformation.
  QXOrientedBoundingBox(QXBoundingBox const& box, QXMatrix4d const& transform);

  /// @return  0 if the whole box lies on the negative side of the plane, which it must not touch then; else 1, for a
  ///          box on the positive side as well as for one that the plane cuts
  unsigned char IntersectPlane(QXPlane const& plane) const;
};

}  // namespace QXC
