/// @file
/// Matrices of views and projections, and integer helpers.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

class QXPlane;
class QXQuaternion4d;
class QXVector3d;

/// Static operations of 3D arithmetic, for row vectors as everywhere.
class QXGRAPHICS3D_API QXMathEngine {
public:
  /// What kind of renderer runs in this process. Written by the plug-in at start, read by the image atlases.
  static _Graphics3DType m_msGraphics3DType;

  /// The view matrix of an eye: maps world coordinates to x right, y up, -z ahead.
  /// @param position     the eye, which the matrix maps to the origin
  /// @param orientation  unit quaternion that turns the axes of the eye into those of the world
  static QXMatrix4d MakeViewMatrix(QXVector3d const& position, QXQuaternion4d const& orientation);

  /// The orthographic projection onto -1..1 in all three axes; z = -dNear becomes -1 and z = -dFar becomes 1.
  /// Equal opposite planes give values that are not finite.
  static QXMatrix4d ComputeOrthoMatrix(
      double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar);

  /// The perspective projection of a window on the near plane onto -1..1 in all three axes, the depth before the division
  /// being w; z = -dNear becomes -1 and z = -dFar becomes 1. The window may lie off the axis.
  /// Source: glFrustum of the OpenGL reference pages, transposed for row vectors.
  /// Equal opposite planes give values that are not finite.
  static QXMatrix4d ComputeFrustumMatrix(
      double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar);

  /// The same for a window around the axis.
  /// @param dFovY    whole vertical angle, radians
  /// @param dAspect  width by height
  static QXMatrix4d ComputePerspectiveMatrix(double dFovY, double dAspect, double dNear, double dFar);

  /// Makes a plane of view space the near plane of a perspective projection, for plug-ins; the far plane then passes the
  /// corner of the frustum opposite to it. A plane that no scale brings there, such as one without a normal, changes
  /// nothing.
  /// Source: E. Lengyel, Oblique View Frustum Depth Projection and Clipping, Journal of Game Development 1 (2005),
  /// transposed for row vectors.
  /// @param plane  its normal points to what is kept
  static void ApplyObliqueDepth(QXMatrix4d& matProjection, QXPlane const& plane);

  /// The smallest power of two not below the argument: 1 for 0, and 0 above 2^31, where 32 bits hold none.
  static unsigned int NextP2(unsigned int nValue);
  /// The exponent of the smallest power of two not below the argument: 0 for 0 and 1, 32 above 2^31.
  static unsigned int NextLog2(unsigned int nValue);

  /// Brings an image to another size. A growing axis is interpolated between the two nearest pixels, a shrinking one
  /// averages what each new pixel covers; each byte of a pixel is filtered by itself. The same size is a copy.
  /// @param nBytesPerPixel  1 to 4
  /// @param pSource         nWidth * nHeight pixels, rows without gaps
  /// @param pTarget         nNewWidth * nNewHeight pixels of the caller's, outside the source
  /// @param nSourceLength   bytes of the source, or -1 where the caller vouches for them
  /// @return 1, or 0 with the target untouched for a null pointer, an edge below 1, another number of bytes a pixel, a
  ///         source that is shorter than its pixels, or when memory is short
  static unsigned char ScaleImageInternal(int nBytesPerPixel, int nWidth, int nHeight, unsigned char const* pSource,
      int nNewWidth, int nNewHeight, unsigned char* pTarget, int nSourceLength);
};

}  // namespace QXC
