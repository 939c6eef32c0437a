#include <QxGraphics3D/view/detail/QXVisibility.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXInstructionSets.h>
#include <QxGraphics3D/view/detail/QXVisibilityX86.h>

namespace QXC::detail {

namespace {

unsigned char IsBoxVisiblePlain(QXPlane const* pPlanes, QXBoundingBox const& box) {
  unsigned int nRejecting = 0;
  for (int nPlane = 0; nPlane < 6; ++nPlane) {
    QXVector3d const normal = pPlanes[nPlane].GetNormal();
    double const dX0 = normal.x * box.m_dMin[0];
    double const dX1 = normal.x * box.m_dMax[0];
    double const dY0 = normal.y * box.m_dMin[1];
    double const dY1 = normal.y * box.m_dMax[1];
    double const dZ0 = normal.z * box.m_dMin[2];
    double const dZ1 = normal.z * box.m_dMax[2];
    // A second product that is not a number wins the comparison, a first one is asked for by itself.
    double const dLargest =
        (dX0 > dX1 ? dX0 : dX1) + (dY0 > dY1 ? dY0 : dY1) + (dZ0 > dZ1 ? dZ0 : dZ1) + pPlanes[nPlane].m_dConstant;
    nRejecting |= static_cast<unsigned int>(dLargest < 0.0) & static_cast<unsigned int>(dX0 == dX0) &
                  static_cast<unsigned int>(dY0 == dY0) & static_cast<unsigned int>(dZ0 == dZ0);
  }
  return nRejecting == 0 ? 1 : 0;
}

unsigned char IsSphereVisiblePlain(QXPlane const* pPlanes, QXBoundingSphere const& sphere) {
  unsigned int nRejecting = 0;
  for (int nPlane = 0; nPlane < 6; ++nPlane) {
    nRejecting |= static_cast<unsigned int>(pPlanes[nPlane].GetDistance(sphere.m_vecCenter) <= -sphere.m_dRadius);
  }
  return nRejecting == 0 ? 1 : 0;
}

constexpr QXVisibilityTests kTests[] = {
    {"plain", &HasPlain, &IsBoxVisiblePlain, &IsSphereVisiblePlain},
#if defined(QX_VISIBILITY_X86)
    {"avx2", &HasAvx2, &IsBoxVisibleAvx2, &IsSphereVisibleAvx2},
    {"avx512", &HasAvx512, &IsBoxVisibleAvx512, &IsSphereVisibleAvx512},
#endif
};

}  // namespace

// Constant-initialised, so that a frustum used by another file's constructor gets its answer from the plain tests.
constinit QXBoxTest g_pfnBoxTest = &IsBoxVisiblePlain;
constinit QXSphereTest g_pfnSphereTest = &IsSphereVisiblePlain;

std::span<QXVisibilityTests const> GetVisibilityTests() {
  return kTests;
}

namespace {

struct Chooser {
  Chooser() {
    QXVisibilityTests const* const pTests = ChooseForm<QXVisibilityTests>(kTests);
    g_pfnBoxTest = pTests->m_pfnBox;
    g_pfnSphereTest = pTests->m_pfnSphere;
  }
};

Chooser const g_chooser;

}  // namespace

}  // namespace QXC::detail
