#include <plugins/ogre/picking/QXOgreSelection.h>

#include <algorithm>
#include <cmath>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/view/QXFrustum.h>

#include <plugins/ogre/QXOgreCamera.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/QXOgreRenderTarget.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/picking/QXOgrePickSurface.h>

namespace QXC {

namespace {

/// Edge of the surface for single clicks.
constexpr int SMALL_EDGE = 80;
/// Around the rectangle that is asked for, as many pixels are drawn: points reach into it from beside, and the device
/// drops those whose middle is out of sight.
constexpr int MARGIN = 32;
/// Farther from the picture than any pixel.
constexpr double FAR_OUT = 1.0e6;

QXOgrePixelRect RectOf(QXViewport const& viewport) {
  return {viewport.GetActualLeft(), viewport.GetActualBottom(), viewport.GetActualWidth(), viewport.GetActualHeight()};
}

QXOgrePixelRect WithMargin(QXOgrePixelRect const& rect) {
  return {rect.m_nLeft - MARGIN, rect.m_nBottom - MARGIN, rect.m_nWidth + 2 * MARGIN, rect.m_nHeight + 2 * MARGIN};
}

/// What follows a projection so that a part of its picture fills the whole.
QXMatrix4d Narrow(QXOgrePixelRect const& whole, QXOgrePixelRect const& part) {
  QXMatrix4d mat;
  double const dScaleX = static_cast<double>(whole.m_nWidth) / part.m_nWidth;
  double const dScaleY = static_cast<double>(whole.m_nHeight) / part.m_nHeight;
  double const dCenterX = 2.0 * (part.m_nLeft - whole.m_nLeft + 0.5 * part.m_nWidth) / whole.m_nWidth - 1.0;
  double const dCenterY = 2.0 * (part.m_nBottom - whole.m_nBottom + 0.5 * part.m_nHeight) / whole.m_nHeight - 1.0;
  mat[0][0] = dScaleX;
  mat[1][1] = dScaleY;
  mat[3][0] = -dCenterX * dScaleX;
  mat[3][1] = -dCenterY * dScaleY;
  return mat;
}

/// The axes of an eye that looks along a direction of length 1, from its own place as the zero.
QXMatrix4d LookAlong(QXVector3d const& vecDirection) {
  bool const bSteep = std::abs(vecDirection.z) > 0.9;
  QXVector3d const vecRight = vecDirection.CrossProduct(bSteep ? QXVector3d::UNIT_X : QXVector3d::UNIT_Z).Normalize();
  QXVector3d const vecUp = vecRight.CrossProduct(vecDirection);
  QXMatrix4d mat;
  double const dColumns[3][3] = {{vecRight.x, vecRight.y, vecRight.z}, {vecUp.x, vecUp.y, vecUp.z},
      {-vecDirection.x, -vecDirection.y, -vecDirection.z}};
  for (int nColumn = 0; nColumn < 3; ++nColumn)
    for (int nRow = 0; nRow < 3; ++nRow) mat[nRow][nColumn] = dColumns[nColumn][nRow];
  return mat;
}

}  // namespace

QXOgreSelection::QXOgreSelection(QXOgreGraphics3D& graphics3D)
    : m_pOpenTarget(nullptr), m_Graphics3D(graphics3D), m_dTolerance(0.0) {}

QXOgreSelection::~QXOgreSelection() = default;

void QXOgreSelection::SetTolerance(double dPixels) {
  m_dTolerance = dPixels > 0.0 ? std::min(dPixels, static_cast<double>(MAX_TOLERANCE)) : 0.0;
}

void QXOgreSelection::SetEnabled(QdcUnicodeString const& strSceneName, bool bEnable) {
  if (bEnable) {
    m_setDisabled.erase(strSceneName);
  } else {
    m_setDisabled.insert(strSceneName);
  }
}

QXOgrePickSurface& QXOgreSelection::DemandSurface(int nWidth, int nHeight) {
  bool const bSmall = nWidth <= SMALL_EDGE && nHeight <= SMALL_EDGE;
  std::unique_ptr<QXOgrePickSurface>& pSurface = bSmall ? m_pSmall : m_pLarge;
  auto const nWantedWidth = static_cast<unsigned int>(bSmall ? SMALL_EDGE : nWidth);
  auto const nWantedHeight = static_cast<unsigned int>(bSmall ? SMALL_EDGE : nHeight);
  if (!pSurface || pSurface->GetWidth() != nWantedWidth || pSurface->GetHeight() != nWantedHeight) {
    pSurface.reset();
    pSurface = std::make_unique<QXOgrePickSurface>(nWantedWidth, nWantedHeight);
  }
  return *pSurface;
}

unsigned char QXOgreSelection::Draw(QXOgreRenderTarget& target, QXOgrePixelRect const& rect, QXOgrePickFilter filter,
    bool bAll, QXOgrePickResult& result) {
  QXOgrePixelRect const whole{0, 0, static_cast<int>(target.GetWidth()), static_cast<int>(target.GetHeight())};
  QXOgrePixelRect const part = rect.Intersect(whole);
  result.Reset(part);
  QXOgreDevice* const pDevice = m_Graphics3D.GetDevice();
  if (part.IsEmpty() || !pDevice) return 0;
  filter.m_pNumbering = &m_Graphics3D.m_SceneOperation;
  unsigned char const bDone = m_Graphics3D.Try([&] {
    QXOgrePixelRect const drawn = WithMargin(part).Intersect(whole);
    QXOgrePickSurface& surface = DemandSurface(drawn.m_nWidth, drawn.m_nHeight);
    pDevice->BeginFrame();
    surface.Clear();
    DrawViewports(target, drawn, filter, bAll, surface, result);
    surface.Read(m_arrIdentifiers, m_arrPlaces);
    result.Take(m_arrIdentifiers, m_arrPlaces, drawn, surface.GetWidth());
  });
  if (!bDone) result.Reset(part);
  return bDone;
}

void QXOgreSelection::DrawViewports(QXOgreRenderTarget& target, QXOgrePixelRect const& rect,
    QXOgrePickFilter const& filter, bool bAll, QXOgrePickSurface& surface, QXOgrePickResult& result) {
  for (QXViewport* const pViewport : target.GetViewports()) {
    QXOgrePixelRect const whole = RectOf(*pViewport);
    QXOgrePixelRect const part = whole.Intersect(rect);
    auto* const pCamera = dynamic_cast<QXOgreCamera*>(pViewport->GetCamera());
    QXOgreScene* const pScene = pCamera && !part.IsEmpty() ? pCamera->FindScene(pViewport) : nullptr;
    if (!pScene || whole.m_nWidth <= 0 || whole.m_nHeight <= 0) continue;
    bool const bEnabled = std::none_of(m_setDisabled.begin(), m_setDisabled.end(),
        [&](QdcUnicodeString const& strName) { return m_Graphics3D.FindScene(strName) == pScene; });
    if (!bAll && !bEnabled) continue;
    QXOgreView view = pCamera->MakeView(*pViewport, target);
    QXFrustum frustum;
    frustum.SetViewMatrix(pCamera->GetViewMatrix());
    view.m_matProjection = view.m_matProjection * Narrow(whole, part);
    frustum.SetProjectionMatrix(view.m_matProjection);
    frustum.UpdateFrustum();
    view.m_pFrustum = &frustum;
    view.m_nWidth = part.m_nWidth;
    view.m_nHeight = part.m_nHeight;
    view.m_pPick = &filter;
    m_Graphics3D.GetDevice()->GetMaterials().SetViewNumber(result.AddView(part, view));
    surface.Draw(*pScene, view, part.m_nLeft - rect.m_nLeft, part.m_nBottom - rect.m_nBottom, part.m_nWidth,
        part.m_nHeight, pViewport->m_bClearEveryFrame ? pViewport->m_nClearBuffers : 0);
  }
}

unsigned int QXOgreSelection::Find(QXOgreRenderTarget& target, double dX, double dY, QXOgrePickFilter const& filter,
    std::map<int, QdcRect2D> const* pMapBounds, QXOgrePickResult& result, QXVector3d& vecPosition) {
  // Written so that what is no number is outside.
  if (!(std::abs(dX) < FAR_OUT && std::abs(dY) < FAR_OUT)) return 0;
  int const nX = static_cast<int>(std::floor(dX));
  int const nY = static_cast<int>(std::floor(dY));
  int const nReach = static_cast<int>(m_dTolerance);
  QXOgrePixelRect const rect{nX - nReach, nY - nReach, 2 * nReach + 1, 2 * nReach + 1};
  if (!Draw(target, rect, filter, false, result)) return 0;
  auto const counts = [&](unsigned int nIdentifier, QXVector3d const& vecPlace) {
    if (!pMapBounds) return true;
    int nLayer = 0;
    int nObject = 0;
    m_Graphics3D.m_SceneOperation.GetID(nIdentifier, nLayer, nObject);
    auto const position = pMapBounds->find(nLayer);
    if (position == pMapBounds->end()) return true;
    QdcRect2D const& rc = position->second;
    return vecPlace.x >= std::min(rc.left, rc.right) && vecPlace.x <= std::max(rc.left, rc.right) &&
           vecPlace.y >= std::min(rc.top, rc.bottom) && vecPlace.y <= std::max(rc.top, rc.bottom);
  };
  unsigned int nFound = 0;
  int nNearest = 0;
  double dNearest = 0.0;
  // What is under the point itself has a place even if it has no identifier.
  result.GetPosition(nX, nY, vecPosition);
  for (int y = nY - nReach; y <= nY + nReach; ++y) {
    for (int x = nX - nReach; x <= nX + nReach; ++x) {
      unsigned int const nIdentifier = result.GetIdentifier(x, y);
      int const nSquare = (x - nX) * (x - nX) + (y - nY) * (y - nY);
      if (nIdentifier == 0 || nSquare > m_dTolerance * m_dTolerance) continue;
      double const dDepth = result.GetDepth(x, y);
      if (nFound != 0 && (nSquare > nNearest || (nSquare == nNearest && dDepth >= dNearest))) continue;
      QXVector3d vecPlace;
      if (!result.GetPosition(x, y, vecPlace) || !counts(nIdentifier, vecPlace)) continue;
      nFound = nIdentifier;
      nNearest = nSquare;
      dNearest = dDepth;
      vecPosition = vecPlace;
    }
  }
  return nFound;
}

unsigned char QXOgreSelection::CopyDepths(QXOgreRenderTarget& target, float* pDepths) {
  QXOgrePickResult result;
  auto const nWidth = static_cast<int>(target.GetWidth());
  auto const nHeight = static_cast<int>(target.GetHeight());
  if (!Draw(target, {0, 0, nWidth, nHeight}, {}, true, result)) return 0;
  for (int y = nHeight; y-- > 0;)
    for (int x = 0; x < nWidth; ++x) *pDepths++ = static_cast<float>(result.GetDepth(x, y));
  return 1;
}

unsigned int QXOgreSelection::FindAlong(
    QXOgreScene& scene, QXVector3d const& vecOrigin, QXVector3d const& vecDirection, QXVector3d& vecPosition) {
  double const dLength = vecDirection.Length();
  QXOgreDevice* const pDevice = m_Graphics3D.GetDevice();
  QXBoundingBox const box = scene.GetBounds();
  bool const bEnabled = std::none_of(m_setDisabled.begin(), m_setDisabled.end(),
      [&](QdcUnicodeString const& strName) { return m_Graphics3D.FindScene(strName) == &scene; });
  if (!pDevice || !bEnabled || !(dLength > 0.0 && std::isfinite(dLength)) || box.IsNULL()) return 0;
  QXVector3d const vecUnit(vecDirection.x / dLength, vecDirection.y / dLength, vecDirection.z / dLength);
  double dFar = 0.0;
  for (QXVector3d const& vecCorner : box.GetCorners())
    dFar = std::max(dFar, (vecCorner - vecOrigin).DotProduct(vecUnit));
  if (!(dFar > 0.0 && std::isfinite(dFar))) return 0;
  dFar *= 1.0 + 1.0e-6;
  // The middle of the one pixel is the ray. What its edge measures says how wide lines and points are, no more.
  double const dHalf = 5.0e-6 * dFar;
  QXOgrePickFilter const filter{&m_Graphics3D.m_SceneOperation, nullptr};
  QXOgreView view{};
  view.m_vecOrigin = vecOrigin;
  view.m_vecEye = vecOrigin;
  view.m_matView = LookAlong(vecUnit);
  view.m_matProjection = QXMathEngine::ComputeOrthoMatrix(-dHalf, dHalf, -dHalf, dHalf, 0.0, dFar);
  view.m_dVerticalExaggeration = 1.0;
  view.m_ePolygonMode = Ogre::PM_SOLID;
  view.m_nWidth = 1;
  view.m_nHeight = 1;
  view.m_pPick = &filter;
  QXMatrix4d matToOrigin;
  matToOrigin.SetTrans(-vecOrigin);
  QXFrustum frustum;
  frustum.SetViewMatrix(matToOrigin * view.m_matView);
  frustum.SetProjectionMatrix(view.m_matProjection);
  frustum.UpdateFrustum();
  view.m_pFrustum = &frustum;
  QXOgrePickResult result;
  result.Reset({0, 0, 1, 1});
  m_Graphics3D.Try([&] {
    QXOgrePickSurface& surface = DemandSurface(1, 1);
    pDevice->BeginFrame();
    surface.Clear();
    pDevice->GetMaterials().SetViewNumber(result.AddView({0, 0, 1, 1}, view));
    surface.Draw(scene, view, 0, 0, 1, 1, 0);
    surface.Read(m_arrIdentifiers, m_arrPlaces);
    result.Take(m_arrIdentifiers, m_arrPlaces, {0, 0, 1, 1}, surface.GetWidth());
  });
  result.GetPosition(0, 0, vecPosition);
  return result.GetIdentifier(0, 0);
}

}  // namespace QXC
