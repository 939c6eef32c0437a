/// @file
/// Boxes and spheres against the six planes of a frustum, for each instruction set.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>

#include <span>

namespace QXC::detail {

/// 0 if one of six planes has all eight corners of the box at a distance below 0, else 1.
///
/// The corners are not visited. Rounding keeps order, so the corner made of the larger of normal * minimum and
/// normal * maximum on each axis, added up in the order of QXPlane::GetDistance, has the largest distance of the eight
/// as that operation computes it: the answers agree to the last bit, for inverted boxes too, provided that nothing is
/// fused. A product that is not a number belongs to four corners, none of which is below 0 then, so such a plane does
/// not reject.
///
/// All planes are tested, whatever the first ones say: the branch that would stop early is guessed wrong often enough
/// to cost more than the rest of the work.
using QXBoxTest = unsigned char (*)(QXPlane const* pPlanes, QXBoundingBox const& box);

/// 0 if one of six planes has the centre at or below minus the radius, else 1. Whether the sphere is valid is not
/// asked.
using QXSphereTest = unsigned char (*)(QXPlane const* pPlanes, QXBoundingSphere const& sphere);

/// The tests in one instruction set.
struct QXVisibilityTests {
  char const* m_szName;
  unsigned char (*m_pfnIsSupported)();
  QXBoxTest m_pfnBox;
  QXSphereTest m_pfnSphere;
};

/// All instruction sets of this build, the plain one first, then in order of preference.
std::span<QXVisibilityTests const> GetVisibilityTests();

/// The last supported ones, chosen when the library is loaded; the plain ones until then.
extern constinit QXBoxTest g_pfnBoxTest;
extern constinit QXSphereTest g_pfnSphereTest;

}  // namespace QXC::detail
