// Projections, patches, overlays and read-back.

#include <algorithm>
#include <cstring>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include <plugins/ogre/QXOgreCamera.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreRenderTarget.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/QXOgreSceneNode.h>
#include <plugins/ogre/effects/QXOgreOverlays.h>

namespace QXC {

void QXOgreGraphics3D::MakeProjectionMatrix(
    double dFovY, double dAspect, double dNear, double dFar, QXMatrix4d& matOut) {
  matOut = QXMathEngine::ComputePerspectiveMatrix(dFovY, dAspect, dNear, dFar);
}

void QXOgreGraphics3D::MakeFrustumMatrix(
    double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) {
  matOut = QXMathEngine::ComputeFrustumMatrix(dLeft, dRight, dBottom, dTop, dNear, dFar);
}

void QXOgreGraphics3D::MakeOrthoMatrix(
    double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) {
  matOut = QXMathEngine::ComputeOrthoMatrix(dLeft, dRight, dBottom, dTop, dNear, dFar);
}

void QXOgreGraphics3D::ApplyObliqueDepthProjection(QXMatrix4d& matProjection, QXPlane const& plane) const {
  QXMathEngine::ApplyObliqueDepth(matProjection, plane);
}

void QXOgreGraphics3D::RenderPatchToTexture(double dHalfWidth, double dHalfHeight, double dWidth, double dHeight,
    QXRenderTarget* pTarget, QdcRect2D const& rcPatch) {
  auto* const pOwn = dynamic_cast<QXOgreRenderTarget*>(pTarget);
  if (!pOwn || !m_pDevice) return;
  // A node of the target's name has what belongs into it, and nothing else of its scene does.
  QXOgreSceneNode const* const pNode = FindNode(pOwn->GetSceneName(), pOwn->GetName());
  bool const bNamed = pNode || !pOwn->GetSceneName().IsEmpty();
  QXOgreScene* const pScene = bNamed ? FindNodeScene(pOwn->GetSceneName()) : FindScene(GetSceneName(0));
  if (!pScene) return;
  QXBoundingBox const box = pNode ? pNode->GetBounds(true) : pScene->GetBounds();
  double const dExaggeration = pOwn->GetVerticalExaggeration();
  double const dTop = std::max(box.GetMin().z * dExaggeration, box.GetMax().z * dExaggeration);
  double const dLow = std::min(box.GetMin().z * dExaggeration, box.GetMax().z * dExaggeration);
  QXOgreCamera camera(*this, L"patch", L"");
  camera.SetScene(*pScene, pNode);
  camera.SetPosition(dHalfWidth, dHalfHeight, dTop + 1.0);
  camera.SetProjectionType(PROJECTION_ORTHOGRAPHIC);
  camera.SetProjectionMatrix(QXMathEngine::ComputeOrthoMatrix(
      -0.5 * dWidth, 0.5 * dWidth, -0.5 * dHeight, 0.5 * dHeight, 0.5, dTop - dLow + 1.5));
  pOwn->DrawPatch(camera, rcPatch);
}

QXRenderOperationOverlay* QXOgreGraphics3D::CreateOverlay(QdcUnicodeString const& strName) {
  QXOgreOverlay* const pOverlay = m_pOverlays ? m_pOverlays->Create(strName) : nullptr;
  if (!pOverlay)
    SetErrorText("an overlay needs an initialised renderer and a name of its own: '" + ToUtf8(strName) + "'");
  return pOverlay;
}

void QXOgreGraphics3D::DestroyOverlay(QdcUnicodeString const& strName) {
  if (m_pOverlays) m_pOverlays->Destroy(strName);
}

void QXOgreGraphics3D::SetOverlayVisible(QdcUnicodeString const& strName, unsigned char bVisible) {
  if (QXOgreOverlay* const pOverlay = m_pOverlays ? m_pOverlays->Find(strName) : nullptr)
    pOverlay->SetVisible(bVisible);
}

void QXOgreGraphics3D::SetOverlayPosition(QdcUnicodeString const& strName, double dLeft, double dBottom) {
  if (QXOgreOverlay* const pOverlay = m_pOverlays ? m_pOverlays->Find(strName) : nullptr)
    pOverlay->SetPosition(dLeft, dBottom);
}

void QXOgreGraphics3D::SetOverlayZOrder(QdcUnicodeString const& strName, int nZOrder) {
  if (QXOgreOverlay* const pOverlay = m_pOverlays ? m_pOverlays->Find(strName) : nullptr) pOverlay->SetZOrder(nZOrder);
}

QXTexture* QXOgreGraphics3D::GetRenderTargetTexture(QXRenderTarget* pTarget) const {
  return pTarget ? pTarget->GetTexture() : nullptr;
}

unsigned char QXOgreGraphics3D::ReadPixels(
    QXRenderTarget* pTarget, QdcRect const& rcPixels, unsigned char* pPixels, unsigned int nByteCount) {
  auto const refuse = [this](char const* szReason) {
    SetErrorText(szReason);
    return static_cast<unsigned char>(0);
  };
  if (!pTarget || !pPixels) return refuse("pixels to read need a target and memory");
  auto const nWidth = static_cast<int>(pTarget->GetWidth());
  auto const nHeight = static_cast<int>(pTarget->GetHeight());
  bool const bInside = rcPixels.left >= 0 && rcPixels.top >= 0 && rcPixels.right <= nWidth &&
                       rcPixels.bottom <= nHeight && rcPixels.left <= rcPixels.right && rcPixels.top <= rcPixels.bottom;
  if (!bInside) return refuse("the rectangle to read leaves the target");
  std::size_t const nRow = static_cast<std::size_t>(rcPixels.right - rcPixels.left) * 4;
  std::size_t const nRows = static_cast<std::size_t>(rcPixels.bottom - rcPixels.top);
  if (nByteCount < nRow * nRows) return refuse("the memory for the pixels to read is too small");
  std::vector<unsigned char> arrPicture(static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight) * 4);
  if (!pTarget->CopyToMemory(arrPicture.data(), static_cast<unsigned int>(arrPicture.size()))) return 0;
  // The rectangle counts from the bottom, the picture's rows from the top.
  std::size_t const nFirst = static_cast<std::size_t>(nHeight - rcPixels.bottom);
  for (std::size_t i = 0; i < nRows; ++i) {
    std::size_t const nAt =
        ((nFirst + i) * static_cast<std::size_t>(nWidth) + static_cast<std::size_t>(rcPixels.left)) * 4;
    std::memcpy(pPixels + i * nRow, arrPicture.data() + nAt, nRow);
  }
  return 1;
}

unsigned char QXOgreGraphics3D::GetScreenPosition(QXVector3d const& vecWorld, QXVector3d& vecWindow) const {
  if (!m_pViewport) return 0;
  double arrMatrix[16];
  double arrPoint[4] = {vecWorld.x, vecWorld.y, vecWorld.z, 1.0};
  MakeRowGLMatrix(arrMatrix, m_matView * m_matProjection);
  QXMatrix4d::MultMatrixVecd(arrMatrix, arrPoint, arrPoint);
  if (arrPoint[3] < 1.0e-10) return 0;
  Project(vecWorld, vecWindow);
  return 1;
}

}  // namespace QXC
