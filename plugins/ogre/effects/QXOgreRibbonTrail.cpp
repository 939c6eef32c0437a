#include <plugins/ogre/effects/QXOgreRibbonTrail.h>

#include <algorithm>
#include <cmath>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/view/QXFrustum.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreScene.h>

namespace QXC {

namespace {

constexpr unsigned int DEFAULT_MAX_POINTS = 20;
/// The edge that two parts share grows with the sharpness of the turn, up to this many times the width.
constexpr double LONGEST_EDGE = 2.0;

QXVector3d Scaled(QXVector3d const& vec, double dFactor) {
  return {vec.x * dFactor, vec.y * dFactor, vec.z * dFactor};
}

/// Unit vector, or zero for one that is no longer than given.
QXVector3d Direction(QXVector3d const& vec, double dLeast) {
  double const dLength = vec.Length();
  return dLength > dLeast ? Scaled(vec, 1.0 / dLength) : QXVector3d::ZERO;
}

bool IsNarrowable(QXVector3d const& vec) {
  return IsFinite(ToOgre(vec));
}

void MergePoint(QXBoundingBox& box, QXVector3d const& vecPoint, double dRadius) {
  QXVector3d const vecRadius(dRadius, dRadius, dRadius);
  box.Merge(QXBoundingBox(vecPoint - vecRadius, vecPoint + vecRadius));
}

}  // namespace

QXOgreRibbonTrail::QXOgreRibbonTrail(QXOgreDevice& device, QXOgreScene& scene, QdcUnicodeString const& strName)
    : m_strName(strName), m_pScene(&scene), m_Device(device), m_pQuads(std::make_unique<QXOgreQuads>(device)),
      m_arrRibbons(1), m_dLength(0.0), m_nMaxPoints(DEFAULT_MAX_POINTS), m_bVisible(1), m_bFaceCamera(1) {
  scene.AddItem(this);
}

QXOgreRibbonTrail::~QXOgreRibbonTrail() {
  if (m_pScene) m_pScene->RemoveItem(this);
}

void QXOgreRibbonTrail::LeaveScene() {
  m_pScene = nullptr;
  m_pQuads.reset();
}

QXOgreRibbon const& QXOgreRibbonTrail::Find(unsigned int nTrail) const {
  static QXOgreRibbon const s_New;
  return nTrail < m_arrRibbons.size() ? m_arrRibbons[nTrail] : s_New;
}

void QXOgreRibbonTrail::SetTexture(QXTexture* pTexture) {
  QXOgreTextureSource* const pSource = QXOgreTextureSource::Of(pTexture);
  // Made before the former one is given back, which may be the same.
  auto pUse = pSource ? std::make_unique<QXOgreTextureUse>(pSource) : nullptr;
  m_pUse.swap(pUse);
}

void QXOgreRibbonTrail::SetMaxPointCount(unsigned int nCount) {
  m_nMaxPoints = nCount;
  for (QXOgreRibbon& ribbon : m_arrRibbons) ribbon.Limit(nCount);
}

void QXOgreRibbonTrail::AddPoint(unsigned int nTrail, QXVector3d const& vecPoint) {
  if (nTrail < m_arrRibbons.size() && IsNarrowable(vecPoint)) m_arrRibbons[nTrail].Add(vecPoint, m_nMaxPoints);
}

void QXOgreRibbonTrail::ClearTrail(unsigned int nTrail) {
  if (nTrail < m_arrRibbons.size()) m_arrRibbons[nTrail].Clear();
}

void QXOgreRibbonTrail::ClearAllTrails() {
  for (QXOgreRibbon& ribbon : m_arrRibbons) ribbon.Clear();
}

void QXOgreRibbonTrail::SetInitialColor(unsigned int nTrail, QXColorValue3D const& color) {
  if (nTrail < m_arrRibbons.size()) m_arrRibbons[nTrail].m_Color = color;
}

void QXOgreRibbonTrail::SetColorChange(unsigned int nTrail, QXColorValue3D const& colorPerSecond) {
  if (nTrail < m_arrRibbons.size()) m_arrRibbons[nTrail].m_ColorChange = colorPerSecond;
}

void QXOgreRibbonTrail::SetInitialWidth(unsigned int nTrail, double dWidth) {
  if (nTrail < m_arrRibbons.size()) m_arrRibbons[nTrail].m_dWidth = dWidth;
}

void QXOgreRibbonTrail::SetWidthChange(unsigned int nTrail, double dWidthPerSecond) {
  if (nTrail < m_arrRibbons.size()) m_arrRibbons[nTrail].m_dWidthChange = dWidthPerSecond;
}

void QXOgreRibbonTrail::SetFaceCamera(unsigned char bFaceCamera, QXVector3d const& vecNormal) {
  m_bFaceCamera = bFaceCamera;
  m_vecNormal = vecNormal;
}

void QXOgreRibbonTrail::Advance(double dSeconds) {
  if (!(dSeconds > 0.0) || !std::isfinite(dSeconds)) return;
  for (QXOgreRibbon& ribbon : m_arrRibbons) ribbon.Advance(dSeconds);
}

QXBoundingBox QXOgreRibbonTrail::GetVisibleBounds() const {
  QXBoundingBox box;
  if (!m_bVisible) return box;
  for (QXOgreRibbon const& ribbon : m_arrRibbons)
    for (std::size_t i = 0; i < ribbon.GetCount(); ++i)
      MergePoint(box, ribbon.GetPoint(i).m_vecPosition, 0.5 * LONGEST_EDGE * ribbon.GetPoint(i).m_dWidth);
  return box;
}

bool QXOgreRibbonTrail::FindStations(QXOgreRibbon const& ribbon, QXOgreView const& view) {
  m_arrPoints.clear();
  m_arrStations.clear();
  ribbon.CollectHead(m_dLength, m_arrPoints);
  QXBoundingBox box;
  double dDistance = 0.0;
  for (QXOgreRibbonPoint const& point : m_arrPoints) {
    if (!m_arrStations.empty())
      dDistance += (point.m_vecPosition - m_arrPoints[m_arrStations.size() - 1].m_vecPosition).Length();
    QXVector3d vecHigh = point.m_vecPosition;
    vecHigh.z *= view.m_dVerticalExaggeration;
    MergePoint(box, vecHigh, 0.5 * LONGEST_EDGE * point.m_dWidth);
    QXVector3d const vecEye = (vecHigh - view.m_vecOrigin).MultiplyMatrix(view.m_matView);
    // As long as nobody has turned it the edge is as long as half the width.
    m_arrStations.push_back({vecEye, {0.5 * point.m_dWidth, 0.0, 0.0}, point.m_Color, dDistance});
    if (!IsNarrowable(vecEye) || !IsNarrowable(m_arrStations.back().m_vecRight)) return false;
  }
  return m_arrStations.size() > 1 && (!view.m_pFrustum || view.m_pFrustum->IsVisible(box, 0.0) != 0);
}

void QXOgreRibbonTrail::TurnStations(QXOgreView const& view) {
  QXMatrix4d matTurn = view.m_matView;
  matTurn.SetTrans(QXVector3d::ZERO);
  // A parallel projection leaves w alone.
  bool const bParallel = view.m_matProjection[2][3] == 0.0;
  QXVector3d const vecNormal = m_vecNormal.MultiplyMatrix(matTurn);
  QXVector3d vecLast = QXVector3d::UNIT_X;
  for (std::size_t i = 0; i < m_arrStations.size(); ++i) {
    Station& station = m_arrStations[i];
    QXVector3d const vecOut = !m_bFaceCamera ? vecNormal : bParallel ? QXVector3d::UNIT_Z : -station.m_vecPosition;
    // To the right of the part towards the head and of the one behind it; at an end there is one part alone, and what
    // runs along the line of sight has no side of its own.
    auto const side = [&](QXVector3d const& vecOld, QXVector3d const& vecNew) {
      QXVector3d const vecAhead = vecNew - vecOld;
      return Direction(vecAhead.CrossProduct(vecOut), 1.0e-12 * vecAhead.Length() * vecOut.Length());
    };
    QXVector3d vecAhead = i > 0 ? side(station.m_vecPosition, m_arrStations[i - 1].m_vecPosition) : QXVector3d::ZERO;
    QXVector3d vecBehind = i + 1 < m_arrStations.size()
                               ? side(m_arrStations[i + 1].m_vecPosition, station.m_vecPosition)
                               : QXVector3d::ZERO;
    if (vecAhead == QXVector3d::ZERO) vecAhead = vecBehind;
    if (vecAhead == QXVector3d::ZERO) vecAhead = vecLast;
    if (vecBehind == QXVector3d::ZERO) vecBehind = vecAhead;
    QXVector3d vecRight = Direction(vecAhead + vecBehind, 1.0e-6);
    if (vecRight == QXVector3d::ZERO) vecRight = vecAhead;
    double const dEdge = 1.0 / std::max(vecRight.DotProduct(vecAhead), 1.0 / LONGEST_EDGE);
    station.m_vecRight = Scaled(vecRight, dEdge * station.m_vecRight.x);
    vecLast = vecAhead;
  }
}

void QXOgreRibbonTrail::AddQuads() {
  double const dLength = m_arrStations.back().m_dDistance;
  auto const corner = [&](Station const& station, double dSide) {
    QXVector3d const vec = station.m_vecPosition + Scaled(station.m_vecRight, dSide);
    QXColorValue3D const& color = station.m_Color;
    return QXOgreQuads::Vertex{{static_cast<float>(vec.x), static_cast<float>(vec.y), static_cast<float>(vec.z)},
        {static_cast<float>(color.r), static_cast<float>(color.g), static_cast<float>(color.b),
            static_cast<float>(color.a)},
        {static_cast<float>(station.m_dDistance / dLength), static_cast<float>(0.5 + 0.5 * dSide)}};
  };
  for (std::size_t i = 0; i + 1 < m_arrStations.size(); ++i) {
    Station const& near = m_arrStations[i];
    Station const& far = m_arrStations[i + 1];
    m_pQuads->Add({corner(far, -1.0), corner(far, 1.0), corner(near, 1.0), corner(near, -1.0)});
  }
}

void QXOgreRibbonTrail::NoteRun(std::size_t nFirst, QXOgreTextureSource const* pSource) {
  QXOgreQuads::Run run;
  run.m_nFirst = nFirst;
  run.m_nEnd = m_pQuads->GetCount();
  run.m_pUse = pSource ? m_pUse.get() : nullptr;
  run.m_Surface.m_bTransparent =
      (pSource && pSource->IsTransparent()) || std::any_of(m_arrStations.begin(), m_arrStations.end(),
                                                   [](Station const& station) { return station.m_Color.a < 1.0; });
  double dDepth = 0.0;
  for (Station const& station : m_arrStations) dDepth -= station.m_vecPosition.z;
  run.m_fDepth = static_cast<Ogre::Real>(dDepth / static_cast<double>(m_arrStations.size()));
  m_arrRuns.push_back(run);
}

void QXOgreRibbonTrail::Queue(
    QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts) {
  if (!m_bVisible) return;
  QXOgreTextureSource* const pSource = m_pUse ? m_pUse->GetSource() : nullptr;
  if (pSource) pSource->PrepareFor(m_Device.GetFrame());
  m_pQuads->Clear();
  m_arrRuns.clear();
  for (QXOgreRibbon const& ribbon : m_arrRibbons) {
    if (!FindStations(ribbon, view)) continue;
    std::size_t const nFirst = m_pQuads->GetCount();
    TurnStations(view);
    AddQuads();
    NoteRun(nFirst, pSource);
  }
  m_pQuads->Upload();
  for (QXOgreQuads::Run const& run : m_arrRuns) {
    m_pQuads->Queue(run, queue);
    if (run.m_Surface.m_bTransparent) arrDepths.push_back(run.m_fDepth);
  }
  auto const nQuads = static_cast<unsigned int>(m_pQuads->GetCount());
  counts.m_nDrawOperations += static_cast<unsigned int>(m_arrRuns.size());
  counts.m_nTriangles += 2 * nQuads;
  counts.m_nVertices += 4 * nQuads;
}

}  // namespace QXC
