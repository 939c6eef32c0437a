#include <QxGraphics3D/testing/QXNullCamera.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullHwInstancingManager.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullScene.h>

namespace QXC {
namespace {

constexpr double OwnNearDist = 1.0e-3;
constexpr double OwnFarDist = 1.0e9;

/// Heights grow from z = 0, as the target shows them.
QXBoundingBox Exaggerate(QXBoundingBox const& box, double dFactor) {
  if (dFactor == 1.0 || box.IsNULL()) {
    return box;
  }
  QXVector3d minimum = box.GetMin();
  QXVector3d maximum = box.GetMax();
  minimum.z *= dFactor;
  maximum.z *= dFactor;
  // A negative factor turns the box inside out, which culling takes as it is.
  return QXBoundingBox(minimum, maximum);
}

}  // namespace

QXNullCamera::QXNullCamera(QXNullGraphics3D& graphics, QdcUnicodeString const& strName,
    QdcUnicodeString const& strSceneName, std::shared_ptr<QXCallLog> pLog)
    : QXNullObject(std::move(pLog), "camera " + QXCallLog::Quote(strName)), m_Graphics(graphics),
      m_strSceneName(strSceneName), m_matOwnProjection(QXMatrix4d::ZERO) {
  SetName(strName);
  SetRelativeOrigin(graphics.GetRelativeOrigin());
}

QXNullCamera::~QXNullCamera() {
  Record("destroyed");
}

void QXNullCamera::RenderScene(QXViewport* pViewport, unsigned char bRenderScene) {
  Record("RenderScene", pViewport, bRenderScene);
  m_nDrawn = 0;
  if (pViewport == nullptr) {
    return;
  }
  m_Graphics.SetViewport(pViewport);
  m_Graphics.BeginFrame();
  m_Graphics.SetViewMatrix(GetViewMatrix());
  ComputeProjection(*pViewport);
  m_Graphics.SetProjectionMatrix(m_matProjection);
  if (bRenderScene) {
    DrawScene(*pViewport);
  }
  if (m_pfnSceneRender != nullptr) {
    m_pfnSceneRender(m_nSceneRenderHandle, this, pViewport, bRenderScene);
  }
  m_Graphics.EndFrame();
  m_bRefresh = 0;
}

void QXNullCamera::DrawScene(QXViewport const& viewport) {
  QXNullScene const* const pScene = FindScene(viewport);
  if (pScene == nullptr) {
    return;
  }
  UpdateFrustum();
  QXRenderTarget* const pTarget = viewport.GetTarget();
  double const dExaggeration = pTarget == nullptr ? 1.0 : pTarget->GetVerticalExaggeration();
  for (QXNullRenderOperation3D const* const pDrawable : pScene->GetDrawables()) {
    QXBoundingBox const box = Exaggerate(pDrawable->GetWorldBoundingBox(), dExaggeration);
    if (box.IsNULL() || !pDrawable->IsDrawnFrom(m_vecPosition, box) || !IsVisible(box, 0.0)) {
      continue;
    }
    ++m_nDrawn;
    Record("draw", pDrawable->GetLabel());
    double const dDistance = box.GetDistance(m_vecPosition);
    m_Graphics.CountDraw(pDrawable->GetDrawnRangeCount(dDistance), pDrawable->GetDrawnTriangleCount(dDistance),
        pDrawable->GetVertexCount());
  }
  for (QXNullInstancing* const pInstancing : pScene->GetInstancings()) {
    DrawInstancing(*pInstancing, dExaggeration);
  }
}

void QXNullCamera::DrawInstancing(QXNullInstancing& instancing, double dExaggeration) {
  unsigned int nDrawn = 0;
  for (QXNullPlacement const& placement : instancing.m_arrPlacements) {
    QXBoundingBox const box = Exaggerate(instancing.GetPlacementBounds(placement), dExaggeration);
    nDrawn += !box.IsNULL() && instancing.IsDrawnFrom(placement, m_vecPosition, box) && IsVisible(box, 0.0);
  }
  instancing.m_nDrawnPlacements = nDrawn;
  if (nDrawn == 0) {
    return;
  }
  ++m_nDrawn;
  Record("draw", instancing.GetLabel(), nDrawn);
  QXNullRenderOperation3D const& mesh = *instancing.GetMesh();
  m_Graphics.CountDraw(instancing.GetDrawOperationCount(nDrawn, QXNullHwInstancingManager::MaxPlacementCount),
      nDrawn * mesh.GetDrawnTriangleCount(), nDrawn * mesh.GetVertexCount());
}

QXNullScene* QXNullCamera::FindScene(QXViewport const& viewport) const {
  if (!m_strSceneName.IsEmpty()) {
    return m_Graphics.FindScene(m_strSceneName);
  }
  QXRenderTarget const* const pTarget = viewport.GetTarget();
  bool const bNamed = pTarget != nullptr && !pTarget->GetSceneName().IsEmpty();
  return m_Graphics.FindScene(bNamed ? pTarget->GetSceneName() : m_Graphics.GetSceneName(0));
}

void QXNullCamera::ComputeProjection(QXViewport const& viewport) {
  if (!(m_matProjection == QXMatrix4d::ZERO) && !(m_matProjection == m_matOwnProjection)) {
    return;
  }
  SetAspect(static_cast<double>(viewport.GetActualWidth()) / viewport.GetActualHeight());
  double const dNear = m_bNearDistSet ? m_dNearDist : OwnNearDist;
  double const dFar = m_bFarDistSet ? m_dFarDist : OwnFarDist;
  m_matOwnProjection = MakeOwnProjection(dNear, dFar);
  m_matProjection = m_matOwnProjection;
}

void QXNullCamera::UpdateViewMatrix(QXViewport* pViewport) {
  Record("UpdateViewMatrix", pViewport);
  m_Graphics.SetViewMatrix(GetViewMatrix());
}

void QXNullCamera::UpdateProMatrix() {
  Record("UpdateProMatrix");
  if (m_pViewport != nullptr) {
    ComputeProjection(*m_pViewport);
  }
  m_Graphics.SetProjectionMatrix(m_matProjection);
}

void QXNullCamera::Refresh() {
  Record("Refresh");
  QXCamera::Refresh();
}

}  // namespace QXC
