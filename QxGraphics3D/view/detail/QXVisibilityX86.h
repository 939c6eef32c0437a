/// @file
/// The visibility tests for wide instructions of x86-64. Call them on a processor that has these only.
#pragma once

#include <QxGraphics3D/view/detail/QXVisibility.h>

#if defined(__x86_64__) && defined(__GNUC__)
#  define QX_VISIBILITY_X86 1

namespace QXC::detail {

unsigned char IsBoxVisibleAvx2(QXPlane const* pPlanes, QXBoundingBox const& box);
unsigned char IsSphereVisibleAvx2(QXPlane const* pPlanes, QXBoundingSphere const& sphere);
/// AVX-512 F and DQ.
unsigned char IsBoxVisibleAvx512(QXPlane const* pPlanes, QXBoundingBox const& box);
unsigned char IsSphereVisibleAvx512(QXPlane const* pPlanes, QXBoundingSphere const& sphere);

// The tests load x with y, and z with the constant, as pairs.
static_assert(sizeof(QXVector3d) == sizeof(void*) + 3 * sizeof(double));
static_assert(sizeof(QXPlane) == sizeof(QXVector3d) + sizeof(double));

/// Address of the pair x, y of a plane's normal.
inline double const* GetNormalXY(QXPlane const& plane) {
  return &plane.m_vecNormal.x;
}
/// Address of the pair of the normal's z and the constant behind it.
inline double const* GetNormalZAndConstant(QXPlane const& plane) {
  return &plane.m_vecNormal.z;
}

}  // namespace QXC::detail
#endif
