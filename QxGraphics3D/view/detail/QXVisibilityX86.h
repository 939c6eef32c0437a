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

// The tests load planes as four numbers in a row: x, y, z of the normal and the constant.
static_assert(sizeof(QXPlane) == 4 * sizeof(double));

inline double const* GetNumbers(QXPlane const& plane) {
  return reinterpret_cast<double const*>(&plane);
}

/// Asks for the box or sphere that stands this far behind the one under test. Scenes keep them in arrays, and the
/// processor's own prefetch stops at every page: one call each over a million boxes otherwise waits a third of its time.
/// Where they do not stand in arrays it fetches a line for nothing.
inline void PrefetchBehind(void const* pObject) {
  __builtin_prefetch(static_cast<char const*>(pObject) + 4096);
}

}  // namespace QXC::detail
#endif
