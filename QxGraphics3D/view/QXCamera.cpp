#include <QxGraphics3D/view/QXCamera.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/detail/QXViewportFrame.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix3d.h>

#include <algorithm>
#include <cmath>

namespace QXC {

namespace {

constexpr double kNormalCameraNear = 1.0;
constexpr double kNormalCameraFar = 20000.0;

/// The view from a position to the origin with world z upwards: its axes stand in the columns.
QXMatrix4d MakeViewToOrigin(QXVector3d const& position) {
  QXVector3d backward = position;
  backward.Normalize();
  QXVector3d right = QXVector3d::UNIT_Z.CrossProduct(backward);
  right.Normalize();
  QXMatrix3d axes;
  axes.FromAxes(right, backward.CrossProduct(right), backward);
  axes = axes.Transpose();
  QXMatrix4d view;
  view = axes;
  view.SetTrans(-(axes * position));
  return view;
}

}  // namespace

QXCamera::QXCamera()
    : m_bRefresh(1), m_bCameraFlagA(1), m_bCameraFlagB(1), m_bTargetNotifyPending(1), m_bCameraFlagC(0),
      m_nSceneRenderHandle(0), m_pfnSceneRender(nullptr), m_pViewport(nullptr), m_fCameraValue(0.0F),
      m_vecRelativeOrigin(QXVector3d::ZERO), m_vecRelativePosition(QXVector3d::ZERO),
      m_qOrientation(QXQuaternion4d::IDENTITY), m_bFixedYawAxis(1), m_vecFixedYawAxis(QXVector3d::UNIT_Z),
      m_bCameraStateChanged(1), m_strName(L"Camera") {}

QXCamera::QXCamera(QXCamera const& other) = default;
QXCamera& QXCamera::operator=(QXCamera const& other) = default;
QXCamera::~QXCamera() = default;

QXCamera QXCamera::CreateNormalCamera(SceneType eType, double dWidth, double dHeight, QXVector3d const& position) {
  QXCamera camera;
  camera.SetProjectionType(PROJECTION_ORTHOGRAPHIC);
  camera.SetOrthoWindow(dWidth, dHeight);
  camera.SetOrientation(QXQuaternion4d());
  camera.SetPosition(position);
  camera.UpdateViewImpl();  // clears the mark as well, so that the view set below is not computed over
  if (eType != SCENE_PLANE) camera.SetViewMatrix(MakeViewToOrigin(position));
  camera.SetNearDist(kNormalCameraNear);
  camera.SetFarDist(kNormalCameraFar);
  camera.SetProjectionMatrix(QXMathEngine::ComputeOrthoMatrix(
      -0.5 * dWidth, 0.5 * dWidth, -0.5 * dHeight, 0.5 * dHeight, kNormalCameraNear, kNormalCameraFar));
  return camera;
}

void QXCamera::UpdateViewImpl() {
  m_matView = QXMathEngine::MakeViewMatrix(m_vecPosition, m_qOrientation);
  m_bViewOutOfDate = 0;
}

QXMatrix4d QXCamera::GetViewMatrixInECEF() {
  return QXMathEngine::MakeViewMatrix(m_vecRelativePosition, m_qOrientation);
}

void QXCamera::RenderScene(QXViewport*, unsigned char) {}
void QXCamera::UpdateViewMatrix(QXViewport*) {}
void QXCamera::UpdateProMatrix() {}
void QXCamera::Refresh() {
  m_bRefresh = 1;
}
unsigned char QXCamera::IsCameraStateChanged() const {
  return m_bCameraStateChanged;
}
void QXCamera::SetCameraStateChanged(unsigned char bChanged) {
  m_bCameraStateChanged = bChanged;
}

void QXCamera::NotifyViewport(QXViewport* pViewport) {
  detail::NotifyViewport(*this, pViewport);
}

QXViewport* QXCamera::GetViewport() const {
  return m_pViewport;
}
QdcUnicodeString QXCamera::GetName() const {
  return m_strName;
}
void QXCamera::SetName(QdcUnicodeString const& strName) {
  m_strName = strName;
}

void QXCamera::SetSceneRenderFunc(QXSceneRenderProc pfnRender, QXInt64 nHandle) {
  m_pfnSceneRender = pfnRender;
  m_nSceneRenderHandle = nHandle;
}

QXVector3d const& QXCamera::GetPosition() const {
  return m_vecPosition;
}
QXVector3d const& QXCamera::GetRelativePosition() const {
  return m_vecRelativePosition;
}
QXVector3d const& QXCamera::GetRelativeOrigin() const {
  return m_vecRelativeOrigin;
}
void QXCamera::SetRelativeOrigin(QXVector3d const& origin) {
  m_vecRelativeOrigin = origin;
}

void QXCamera::SetPosition(QXVector3d const& position) {
  // The position handed in may be the relative one of this very camera, which GetRelativePosition gives by reference.
  QXVector3d const relativePosition = position - m_vecRelativeOrigin;
  m_vecPosition = position;
  m_vecRelativePosition = relativePosition;
  InvalidateView();
}

void QXCamera::SetPosition(double dX, double dY, double dZ) {
  SetPosition(QXVector3d(dX, dY, dZ));
}

void QXCamera::Move(QXVector3d const& vector) {
  // Both sums before either is stored: the vector may be one of the two positions, which are given by reference.
  QXVector3d const relativePosition = m_vecRelativePosition + vector;
  m_vecPosition = m_vecPosition + vector;
  m_vecRelativePosition = relativePosition;
  InvalidateView();
}

void QXCamera::MoveRelative(QXVector3d const& vector) {
  Move(m_qOrientation * vector);
}

QXQuaternion4d const& QXCamera::GetOrientation() const {
  return m_qOrientation;
}

void QXCamera::SetOrientation(QXQuaternion4d const& orientation) {
  m_qOrientation = orientation;
  InvalidateView();
}

QXVector3d QXCamera::GetDirection() const {
  return m_qOrientation * -QXVector3d::UNIT_Z;
}
QXVector3d QXCamera::GetRight() const {
  return m_qOrientation * QXVector3d::UNIT_X;
}
QXVector3d QXCamera::GetUp() const {
  return m_qOrientation * QXVector3d::UNIT_Y;
}

void QXCamera::SetDirection(QXVector3d const& direction) {
  if (direction == QXVector3d::ZERO) return;
  QXVector3d backward = -direction;
  backward.Normalize();
  UpdateView();
  QXVector3d axes[3];
  m_qOrientation.ToAxes(axes);
  QXQuaternion4d rotation;
  if ((axes[2] + backward).Length2() < 0.00004999999873689376) {
    // Opposite: every axis across would do for the shortest rotation, and only this one keeps the camera upright.
    rotation.FromAngleAxis(3.141592653589793, axes[1]);
  } else {
    rotation = axes[2].GetRotationTo(backward, QXVector3d::ZERO);
  }
  m_qOrientation = rotation * m_qOrientation;
  InvalidateView();
}

void QXCamera::SetDirection(double dX, double dY, double dZ) {
  SetDirection(QXVector3d(dX, dY, dZ));
}
void QXCamera::LookAt(QXVector3d const& target) {
  SetDirection(target - m_vecPosition);
}
void QXCamera::LookAt(double dX, double dY, double dZ) {
  LookAt(QXVector3d(dX, dY, dZ));
}

void QXCamera::Rotate(QXQuaternion4d const& rotation) {
  QXQuaternion4d unit = rotation;
  unit.Normalize();
  m_qOrientation = unit * m_qOrientation;
  InvalidateView();
}

void QXCamera::Rotate(QXVector3d const& axis, double dAngle) {
  QXQuaternion4d rotation;
  rotation.FromAngleAxis(dAngle, axis);
  Rotate(rotation);
}

void QXCamera::Pitch(double dAngle) {
  Rotate(m_qOrientation * QXVector3d::UNIT_X, dAngle);
  InvalidateView();
}

void QXCamera::Yaw(double dAngle) {
  Rotate(m_bFixedYawAxis ? m_vecFixedYawAxis : m_qOrientation * QXVector3d::UNIT_Y, dAngle);
  InvalidateView();
}

void QXCamera::Roll(double dAngle) {
  Rotate(m_qOrientation * QXVector3d::UNIT_Z, dAngle);
  InvalidateView();
}

double QXCamera::GetDistFromEye(QXVector3d const& point) {
  return point.MultiplyMatrix(GetViewMatrix()).Length();
}

double QXCamera::GetDistFromEye(QXVector3d const& point, QXMatrix4d const& matrix) {
  return GetDistFromEye(point.MultiplyMatrix(matrix));
}

double QXCamera::GetDistFromEyeEx(QXVector3d const& point) const {
  return (point - m_vecPosition).Length();
}

int QXCamera::ComputerLength2Pix(double dLength, double dDistance, double dLimit) const {
  double const dHalfField = m_dFov * 0.5;
  // Through float and int, as the height of a viewport that is odd loses its half pixel here.
  int const nHalfHeight = static_cast<int>(static_cast<float>(m_pViewport->GetActualHeight()) * 0.5F);
  double dPixels = nHalfHeight / std::tan(dHalfField) * dLength / dDistance;
  dLimit = std::max(dLength, dLimit);
  if (dDistance > dLimit) dPixels *= dLimit / dDistance;
  return ToInt(std::ceil(dPixels));
}

QXMatrix4d QXCamera::MakeOwnProjection(double dNear, double dFar) const {
  QXMatrix4d projection;
  if (m_eProjectionType == PROJECTION_ORTHOGRAPHIC) {
    double const dHalfHeight = m_dOrthoHeight > 0.0 ? m_dOrthoHeight / 2.0 : 1.0;
    double const dHalfWidth = dHalfHeight * m_dAspect;
    projection = QXMathEngine::ComputeOrthoMatrix(-dHalfWidth, dHalfWidth, -dHalfHeight, dHalfHeight, dNear, dFar);
  } else {
    double const dFovY =
        m_eFOVMode == FOV_MODE_SECOND ? 2.0 * std::atan(std::tan(m_dFovSecond / 2.0) / m_dAspect) : m_dFov;
    projection = QXMathEngine::ComputePerspectiveMatrix(dFovY, m_dAspect, dNear, dFar);
  }
  double const* const pFirst = &projection[0][0];
  bool const bFinite = std::all_of(pFirst, pFirst + 16, [](double dEntry) { return std::isfinite(dEntry); });
  return bFinite ? projection : QXMatrix4d::ZERO;
}

}  // namespace QXC
