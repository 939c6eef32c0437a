#include <plugins/ogre/QXOgreCamera.h>

#include <algorithm>

#include <QxGraphics3D/frame/QXViewport.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreRenderTarget.h>
#include <plugins/ogre/QXOgreScene.h>

namespace QXC {

namespace {

/// Beyond this ratio of the distances a depth buffer of 24 bits tells neighbouring faces apart too badly.
constexpr double MAX_DEPTH_RATIO = 1.0e4;
constexpr double EMPTY_SCENE_NEAR = 1.0;
constexpr double EMPTY_SCENE_FAR = 20000.0;

/// Tells where a box begins and ends along the view.
void DepthRange(QXBoundingBox const& box, QXMatrix4d const& matView, double& dNearest, double& dFarthest) {
  dNearest = HUGE_VAL;
  dFarthest = -HUGE_VAL;
  for (QXVector3d const& vecCorner : box.GetCorners()) {
    double const dDepth = -vecCorner.MultiplyMatrix(matView).z;
    dNearest = std::min(dNearest, dDepth);
    dFarthest = std::max(dFarthest, dDepth);
  }
}

QXMatrix4d Translation(QXVector3d const& vecOffset) {
  QXMatrix4d mat;
  mat.SetTrans(vecOffset);
  return mat;
}

}  // namespace

QXOgreCamera::QXOgreCamera(
    QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName)
    : m_Graphics3D(graphics3D), m_strSceneName(strSceneName), m_pScene(nullptr), m_pNode(nullptr),
      m_matOwnProjection(QXMatrix4d::ZERO) {
  SetName(strName);
  SetRelativeOrigin(graphics3D.GetRelativeOrigin());
  // The view of a camera that was never moved is the one from its default place, and not a matrix of zeros.
  InvalidateView();
}

void QXOgreCamera::SetScene(QXOgreScene& scene, QXOgreSceneNode const* pNode) {
  m_pScene = &scene;
  m_pNode = pNode;
}

void QXOgreCamera::RenderScene(QXViewport* pViewport, unsigned char bRenderScene) {
  auto* const pTarget = pViewport ? dynamic_cast<QXOgreRenderTarget*>(pViewport->GetTarget()) : nullptr;
  if (!pTarget) return;
  QXOgreView const view = MakeView(*pViewport, *pTarget);
  m_Graphics3D.SetViewport(pViewport);
  m_Graphics3D.SetViewMatrix(m_matView);
  m_Graphics3D.SetProjectionMatrix(m_matProjection);
  pTarget->DrawViewport(*pViewport, FindScene(pViewport), view, bRenderScene);
  m_bRefresh = 0;
  if (m_pfnSceneRender) m_pfnSceneRender(m_nSceneRenderHandle, this, pViewport, bRenderScene);
}

QXOgreView QXOgreCamera::MakeView(QXViewport const& viewport, QXOgreRenderTarget const& target) {
  UpdateView();
  if (IsProjectionOwn()) ComputeProjection(viewport);
  UpdateFrustum();
  QXOgreView view;
  view.m_pFrustum = this;
  view.m_vecOrigin = m_Graphics3D.GetRelativeOrigin();
  view.m_matView = Translation(view.m_vecOrigin) * m_matView;
  view.m_matProjection = m_matProjection;
  view.m_vecEye = QXVector3d::ZERO.MultiplyMatrix(view.m_matView.Invert()) + view.m_vecOrigin;
  view.m_dVerticalExaggeration = target.GetVerticalExaggeration();
  view.m_ePolygonMode = target.GetPolygonMode();
  view.m_pNode = m_pNode;
  view.m_nWidth = viewport.GetActualWidth();
  view.m_nHeight = viewport.GetActualHeight();
  return view;
}

void QXOgreCamera::UpdateViewMatrix(QXViewport*) {
  m_Graphics3D.SetViewMatrix(GetViewMatrix());
}

void QXOgreCamera::UpdateProMatrix() {
  if (m_pViewport && IsProjectionOwn()) ComputeProjection(*m_pViewport);
  m_Graphics3D.SetProjectionMatrix(m_matProjection);
}

QXOgreScene* QXOgreCamera::FindScene(QXViewport const* pViewport) const {
  if (m_pScene) return m_pScene;
  if (!m_strSceneName.IsEmpty()) return m_Graphics3D.FindScene(m_strSceneName);
  QXRenderTarget const* const pTarget = pViewport ? pViewport->GetTarget() : nullptr;
  bool const bNamed = pTarget && !pTarget->GetSceneName().IsEmpty();
  return m_Graphics3D.FindScene(bNamed ? pTarget->GetSceneName() : m_Graphics3D.GetSceneName(0));
}

bool QXOgreCamera::IsProjectionOwn() const {
  return m_matProjection == QXMatrix4d::ZERO || m_matProjection == m_matOwnProjection;
}

void QXOgreCamera::ComputeProjection(QXViewport const& viewport) {
  SetAspect(static_cast<double>(viewport.GetActualWidth()) / viewport.GetActualHeight());
  double dNear = 0.0;
  double dFar = 0.0;
  FindDistances(viewport, dNear, dFar);
  m_matOwnProjection = MakeOwnProjection(dNear, dFar);
  // OGRE takes float, where finite numbers may end as infinite ones.
  if (!IsFinite(ToOgre(m_matOwnProjection))) m_matOwnProjection = QXMatrix4d::ZERO;
  m_matProjection = m_matOwnProjection;
}

void QXOgreCamera::FindDistances(QXViewport const& viewport, double& dNear, double& dFar) {
  double dNearest = EMPTY_SCENE_NEAR;
  double dFarthest = EMPTY_SCENE_FAR;
  QXOgreScene const* const pScene = m_bNearDistSet && m_bFarDistSet ? nullptr : FindScene(&viewport);
  QXBoundingBox const box = pScene ? pScene->GetBounds() : QXBoundingBox();
  if (!box.IsNULL()) {
    QXMatrix4d matExaggerated;
    if (viewport.GetTarget()) matExaggerated[2][2] = viewport.GetTarget()->GetVerticalExaggeration();
    DepthRange(box, matExaggerated * GetViewMatrix(), dNearest, dFarthest);
    // A hair more, so that what lies flat on the bounds is not cut.
    double const dMargin = 1.0e-3 * (dFarthest - dNearest) + 1.0e-3;
    dNearest -= dMargin;
    dFarthest += dMargin;
  }
  if (pScene && pScene->IsEndless()) dNearest = std::min(dNearest, 0.0);
  if (m_eProjectionType == PROJECTION_ORTHOGRAPHIC) {
    dFar = m_bFarDistSet ? m_dFarDist : dFarthest;
    dNear = m_bNearDistSet ? m_dNearDist : dNearest;
    return;
  }
  dFar = m_bFarDistSet ? m_dFarDist : std::max(dFarthest, EMPTY_SCENE_NEAR);
  dNear = m_bNearDistSet ? m_dNearDist : std::clamp(dNearest, dFar / MAX_DEPTH_RATIO, dFar / 2.0);
}

}  // namespace QXC
