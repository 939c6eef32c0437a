#include <QxGraphics3D/view/QXFrustum.h>

#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>
#include <QxGraphics3D/frame/foundation/base3d/QXOrientedBoundingBox.h>
#include <QxGraphics3D/view/detail/QXVisibility.h>

#include <algorithm>
#include <cmath>

namespace QXC {

namespace {

/// The field of view across the other axis: tan(result / 2) = tan(dField / 2) / dAspect.
double DeriveField(double dField, double dAspect) {
  return 2.0 * std::atan(std::tan(dField / 2.0) / dAspect);
}

/// A test with a tolerance. Never inlined: the room for its planes would otherwise be made at every call, and the usual
/// ones, without a tolerance, are to be a mere jump to the test.
template <typename Object>
[[gnu::noinline]] unsigned char TestWithTolerance(QXFrustum const& frustum, double dTolerance, Object const& object,
    unsigned char (*pfnTest)(QXPlane const*, Object const&)) {
  QXPlane planes[6];
  frustum.ComputerPlane(planes, dTolerance);
  return pfnTest(planes, object);
}

unsigned char IsSphereVisible(QXPlane const* pPlanes, QXBoundingSphere const& sphere) {
  if (!sphere.valid()) return 0;
  return detail::g_pfnSphereTest(pPlanes, sphere);
}

unsigned char IsOrientedBoxVisible(QXPlane const* pPlanes, QXOrientedBoundingBox const& box) {
  return std::all_of(pPlanes, pPlanes + 6, [&](QXPlane const& plane) { return box.IntersectPlane(plane) != 0; }) ? 1
                                                                                                                 : 0;
}

}  // namespace

QXFrustum::QXFrustum()
    : m_eProjectionType(PROJECTION_PERSPECTIVE), m_dOrthoHeight(0.0), m_dFov(0.7853981633974483),
      m_dFovSecond(1.0471975511965976), m_dNearDist(0.0), m_bNearDistSet(0), m_dFarDist(0.0), m_bFarDistSet(0),
      m_dAspect(0.0), m_matWorld(QXMatrix4d::IDENTITY), m_matView(QXMatrix4d::ZERO), m_matProjection(QXMatrix4d::ZERO),
      m_bViewOutOfDate(0), m_eFOVMode(FOV_MODE_DERIVED), m_bFOVModeSet(0) {}

QXFrustum::QXFrustum(QXFrustum const& other) = default;
QXFrustum& QXFrustum::operator=(QXFrustum const& other) = default;
QXFrustum::~QXFrustum() = default;

void QXFrustum::UpdateFrustum() {
  struct Source {
    int m_nColumn;
    double m_dSign;
  };
  // A point is inside a plane when its clip coordinate of that column, taken with the sign, is above -w: the plane is
  // column 3 plus or minus that column (Gribb and Hartmann, row vectors). The order is what plug-ins index by.
  static constexpr Source kSources[6] = {{1, 1.0}, {2, -1.0}, {0, -1.0}, {0, 1.0}, {2, 1.0}, {1, -1.0}};
  QXMatrix4d const matrix = GetModelViewProMatrix();
  for (int nPlane = 0; nPlane < 6; ++nPlane) {
    auto const row = [&](int nRow) {
      return matrix[nRow][3] + kSources[nPlane].m_dSign * matrix[nRow][kSources[nPlane].m_nColumn];
    };
    m_Planes[nPlane] = QXPlane(QXVector3d(row(0), row(1), row(2)), row(3));
    m_Planes[nPlane].Normalize();
  }
}

QXMatrix4d const& QXFrustum::GetViewMatrix() {
  UpdateView();
  return m_matView;
}

QXMatrix4d const& QXFrustum::GetWorldMatrix() const {
  return m_matWorld;
}
QXMatrix4d const& QXFrustum::GetProjectionMatrix() const {
  return m_matProjection;
}
QXMatrix4d QXFrustum::GetModelViewProMatrix() const {
  return m_matWorld * m_matView * m_matProjection;
}
QXPlane const* QXFrustum::GetFrustumPlanes() const {
  return m_Planes;
}
void QXFrustum::ComputerPlane(QXPlane*, double) const {}
void QXFrustum::InvalidateView() {
  m_bViewOutOfDate = 1;
}
unsigned char QXFrustum::IsViewOutOfDate() const {
  return m_bViewOutOfDate;
}

void QXFrustum::UpdateView() {
  if (IsViewOutOfDate()) UpdateViewImpl();
}

void QXFrustum::UpdateViewImpl() {}

ProjectionType QXFrustum::GetProjectionType() const {
  return m_eProjectionType;
}
void QXFrustum::SetProjectionType(ProjectionType eType) {
  m_eProjectionType = eType;
}

double QXFrustum::GetNearDist() const {
  return m_dNearDist;
}

void QXFrustum::SetNearDist(double dDistance) {
  m_dNearDist = dDistance;
  m_bNearDistSet = 1;
}

void QXFrustum::ClearNearDist() {
  m_bNearDistSet = 0;
}

double QXFrustum::GetFarDist() const {
  return m_dFarDist;
}

void QXFrustum::SetFarDist(double dDistance) {
  m_dFarDist = dDistance;
  m_bFarDistSet = 1;
}

void QXFrustum::ClearFarDist() {
  m_bFarDistSet = 0;
}

double QXFrustum::GetAspect() const {
  return m_dAspect;
}

void QXFrustum::SetAspect(double dAspect) {
  // Mode 0 chosen by SetFOVMode does not count: that choice derives once, and hosts set the first field themselves
  // afterwards.
  if (!m_bFOVModeSet && m_eFOVMode == FOV_MODE_DERIVED && !qdcequal(dAspect, m_dAspect)) {
    m_dFov = DeriveField(m_dFovSecond, dAspect);
  }
  m_dAspect = dAspect;
}

double QXFrustum::GetFov() const {
  return m_dFov;
}
void QXFrustum::SetFov(double dFov) {
  m_dFov = dFov;
}
QXCameraFOVMode QXFrustum::GetFOVMode() const {
  return m_eFOVMode;
}

void QXFrustum::SetFOVMode(QXCameraFOVMode eMode) {
  if (eMode != m_eFOVMode && eMode == FOV_MODE_DERIVED) m_dFov = DeriveField(m_dFovSecond, m_dAspect);
  m_eFOVMode = eMode;
  m_bFOVModeSet = 1;
}

double QXFrustum::GetCurrentModeFOV() const {
  return m_eFOVMode == FOV_MODE_SECOND ? m_dFovSecond : m_dFov;
}

double QXFrustum::GetOrthoWindowHeight() const {
  return m_dOrthoHeight;
}
void QXFrustum::SetOrthoWindowHeight(double dHeight) {
  m_dOrthoHeight = dHeight;
}
double QXFrustum::GetOrthoWindowWidth() const {
  return m_dOrthoHeight * m_dAspect;
}
void QXFrustum::SetOrthoWindowWidth(double dWidth) {
  m_dOrthoHeight = dWidth / m_dAspect;
}

void QXFrustum::SetOrthoWindow(double dWidth, double dHeight) {
  // The aspect is stored as it is: going through SetAspect would change the field of view.
  m_dOrthoHeight = dHeight;
  m_dAspect = dWidth / dHeight;
}

void QXFrustum::SetViewMatrix(QXMatrix4d const& matrix) {
  m_matView = matrix;
}
void QXFrustum::SetProjectionMatrix(QXMatrix4d const& matrix) {
  m_matProjection = matrix;
}

unsigned char QXFrustum::ContainsPoint(QXVector3d const& point) const {
  // Asks for "below", so that a point on a plane is inside, and so is one whose distance is not a number.
  return std::none_of(m_Planes, m_Planes + 6, [&](QXPlane const& plane) { return plane.GetDistance(point) < 0.0; }) ? 1
                                                                                                                    : 0;
}

unsigned char QXFrustum::IsVisible(QXBoundingBox const& box, double dTolerance) const {
  if (qdcequal(dTolerance, 0.0)) return detail::g_pfnBoxTest(m_Planes, box);
  return TestWithTolerance(*this, dTolerance, box, detail::g_pfnBoxTest);
}

unsigned char QXFrustum::IsVisible(QXBoundingSphere const& sphere, double dTolerance) const {
  if (qdcequal(dTolerance, 0.0)) return IsSphereVisible(m_Planes, sphere);
  return TestWithTolerance(*this, dTolerance, sphere, &IsSphereVisible);
}

unsigned char QXFrustum::IsVisible(QXOrientedBoundingBox& box, double dTolerance) const {
  if (qdcequal(dTolerance, 0.0)) return IsOrientedBoxVisible(m_Planes, box);
  return TestWithTolerance(*this, dTolerance, box, &IsOrientedBoxVisible);
}

}  // namespace QXC
