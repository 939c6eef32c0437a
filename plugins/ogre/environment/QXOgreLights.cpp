#include <plugins/ogre/environment/QXOgreLights.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>
#include <QxGraphics3D/view/QXFrustum.h>

#include <plugins/ogre/QXOgreView.h>
#include <plugins/ogre/environment/QXOgreNumbers.h>

namespace QXC {

namespace {

/// Squares of it are still numbers of the device.
constexpr double FARTHEST = 1.0e18;
/// Where a light may stand, as the eye sees it: differences of such places have squares, too.
constexpr double FARTHEST_PLACE = 1.0e15;
constexpr double BRIGHTEST = 1.0e6;
constexpr double STEEPEST = 1.0e30;
/// Steps that a channel of the picture has.
constexpr double STEPS = 256.0;

double Sound(double dValue) {
  return std::isfinite(dValue) ? dValue : 0.0;
}

std::array<double, 3> ColorOf(QXColorValue3D const& color, double dPower) {
  auto const channel = [&](double dValue) { return std::clamp(Sound(dValue) * dPower, 0.0, BRIGHTEST); };
  return {channel(color.r), channel(color.g), channel(color.b)};
}

double BrightestOf(std::array<double, 3> const& arrColor) {
  return *std::max_element(arrColor.begin(), arrColor.end());
}

/// Where constant + linear * d + quadric * d * d has become dLimit.
double DistanceOf(std::array<double, 3> const& arrAttenuation, double dLimit) {
  auto const [dConstant, dLinear, dQuadric] = arrAttenuation;
  if (dLimit <= dConstant) return 0.0;
  if (dQuadric > 0.0)
    return 2.0 * (dLimit - dConstant) /
           (dLinear + std::sqrt(dLinear * dLinear + 4.0 * dQuadric * (dLimit - dConstant)));
  return dLinear > 0.0 ? (dLimit - dConstant) / dLinear : std::numeric_limits<double>::infinity();
}

QXMatrix4d TurnOf(QXMatrix4d const& matView) {
  QXMatrix4d mat = matView;
  mat.SetTrans(QXVector3d::ZERO);
  return mat;
}

/// @param dWeight  of its light
void Write(QXOgreLamp const& lamp, QXVector3d const& vecPlace, double dWeight, QXOgreView const& view, float* p) {
  QXVector3d vecAxis = lamp.m_vecDirection;
  // What it shines at has moved up and down with the heights.
  if (lamp.m_bPlaced) vecAxis = UnitOf({vecAxis.x, vecAxis.y, vecAxis.z * view.m_dVerticalExaggeration});
  vecAxis = vecAxis.MultiplyMatrix(TurnOf(view.m_matView));
  QXVector3d const vecFirst = lamp.m_bPlaced ? vecPlace : -vecAxis;
  auto const group = [&p](double d0, double d1, double d2, double d3) {
    for (double const d : {d0, d1, d2, d3}) *p++ = static_cast<float>(d);
  };
  auto const color = [&](std::array<double, 3> const& arrColor, double dLast) {
    group(arrColor[0] * dWeight, arrColor[1] * dWeight, arrColor[2] * dWeight, dLast);
  };
  group(vecFirst.x, vecFirst.y, vecFirst.z, lamp.m_bPlaced ? 1.0 : 0.0);
  group(vecAxis.x, vecAxis.y, vecAxis.z, lamp.m_dCosOuter);
  group(lamp.m_arrAttenuation[0], lamp.m_arrAttenuation[1], lamp.m_arrAttenuation[2], lamp.m_dRange);
  color(lamp.m_arrDiffuse, lamp.m_dFalloff);
  color(lamp.m_arrSpecular, 1.0 / std::max(lamp.m_dCosInner - lamp.m_dCosOuter, 1.0e-6));
  color(lamp.m_arrAmbient, 0.0);
}

}  // namespace

QXOgreLamp::QXOgreLamp(QXLight const& light)
    : m_bPlaced(light.GetType() != LIGHT_DIRECTIONAL), m_vecPosition(light.GetPosition()),
      m_vecDirection(UnitOf(light.GetDirection())) {
  double const dPower = Sound(light.GetPowerScale());
  double const dFactor = dPower == 0.0 ? 1.0 : dPower;
  m_arrDiffuse = ColorOf(light.GetDiffuseColour(), dFactor);
  m_arrSpecular = ColorOf(light.GetSpecularColour(), dFactor);
  m_arrAmbient = ColorOf(light.GetAmbientColour(), dFactor);
  m_dBrightness = std::max(BrightestOf(m_arrDiffuse), BrightestOf(m_arrAmbient));
  double const dRange = Sound(light.GetAttenuationRange());
  m_dRange = dRange > 0.0 ? std::min(dRange, FARTHEST) : FARTHEST;
  auto const coefficient = [](double dValue) { return std::clamp(Sound(dValue), 0.0, STEEPEST); };
  m_arrAttenuation = {coefficient(light.GetAttenuationConstant()), coefficient(light.GetAttenuationLinear()),
      coefficient(light.GetAttenuationQuadric())};
  if (BrightestOf(m_arrAttenuation) == 0.0) m_arrAttenuation[0] = 1.0;
  m_dReach = m_bPlaced ? std::min(DistanceOf(m_arrAttenuation, STEPS * m_dBrightness),
                             m_dRange < FARTHEST ? m_dRange : std::numeric_limits<double>::infinity())
                       : std::numeric_limits<double>::infinity();
  m_bShines = m_dBrightness > 0.0 || BrightestOf(m_arrSpecular) > 0.0;
  if (light.GetType() != LIGHT_DIRECTIONAL && light.GetType() != LIGHT_SPOTLIGHT) return;
  m_bShines = m_bShines && m_vecDirection != QXVector3d::ZERO;
  double const dOuter = std::min(Sound(light.GetSpotlightOuterAngle()), 2.0 * std::numbers::pi);
  if (!m_bPlaced || !(dOuter > 0.0)) return;
  m_dCosOuter = std::cos(0.5 * dOuter);
  m_dCosInner = std::cos(0.5 * std::clamp(Sound(light.GetSpotlightInnerAngle()), 0.0, dOuter));
  m_dFalloff = std::clamp(Sound(light.GetSpotlightFalloff()), 0.0, BRIGHTEST);
}

void QXOgreLights::Create(QdcUnicodeString const& strName) {
  // Ahead of the light, so that choosing among all of them allocates nothing.
  std::size_t const nNeeded = m_mapEntries.size() + 1;
  if (m_arrCandidates.capacity() < nNeeded) m_arrCandidates.reserve(2 * nNeeded);
  QXLight const light;
  m_mapEntries.emplace(strName, Entry{light, QXOgreLamp(light), true, m_nMade});
  ++m_nMade;
}

bool QXOgreLights::Destroy(QdcUnicodeString const& strName) {
  return m_mapEntries.erase(strName) > 0;
}

QXOgreLights::Entry* QXOgreLights::Find(QdcUnicodeString const& strName) {
  auto const it = m_mapEntries.find(strName);
  return it == m_mapEntries.end() ? nullptr : &it->second;
}

void QXOgreLights::Set(Entry& entry, QXLight const& light) {
  entry.m_Light = light;
  entry.m_Lamp = QXOgreLamp(light);
}

bool QXOgreLights::IsAnyEnabled() const {
  return std::any_of(m_mapEntries.begin(), m_mapEntries.end(), [](auto const& item) { return item.second.m_bEnable; });
}

bool QXOgreLights::Place(QXOgreLamp const& lamp, QXOgreView const& view, Candidate& candidate) {
  candidate.m_pLamp = &lamp;
  candidate.m_dImportance = lamp.m_dBrightness;
  if (!lamp.m_bPlaced) return true;
  QXVector3d vecPosition = lamp.m_vecPosition;
  vecPosition.z *= view.m_dVerticalExaggeration;
  candidate.m_vecPlace = (vecPosition - view.m_vecOrigin).MultiplyMatrix(view.m_matView);
  // Written so that what is no number is left out as well.
  if (!(candidate.m_vecPlace.Length() < FARTHEST_PLACE)) return false;
  if (lamp.m_dRange < FARTHEST) {
    QXBoundingSphere sphere;
    sphere.SetCenter(vecPosition);
    sphere.SetRadius(lamp.m_dRange);
    if (!view.m_pFrustum->IsVisible(sphere, 0.0)) return false;
  }
  QXVector3d vecWay = candidate.m_vecPlace;
  if (view.IsParallel()) vecWay.z = 0.0;
  double const dDistance = vecWay.Length();
  if (std::isfinite(lamp.m_dReach) && lamp.m_dReach + dDistance > 0.0)
    candidate.m_dImportance *= lamp.m_dReach / (lamp.m_dReach + dDistance);
  return true;
}

double QXOgreLights::WeightOf(std::size_t nCandidate) const {
  if (m_arrCandidates.size() <= QXOgreLamps::MOST || nCandidate + FADING < QXOgreLamps::MOST) return 1.0;
  double const dNothing = m_arrCandidates[QXOgreLamps::MOST].m_dImportance;
  double const dAll = m_arrCandidates[QXOgreLamps::MOST - FADING - 1].m_dImportance;
  // Among equals the order of their making decides, which does not change from picture to picture.
  return dAll > dNothing ? (m_arrCandidates[nCandidate].m_dImportance - dNothing) / (dAll - dNothing) : 1.0;
}

void QXOgreLights::Choose(QXOgreView const& view, QXOgreLamps& lamps) {
  m_arrCandidates.clear();
  for (auto const& [strName, entry] : m_mapEntries) {
    Candidate candidate{nullptr, {}, 0.0, entry.m_nNumber};
    if (entry.m_bEnable && entry.m_Lamp.m_bShines && Place(entry.m_Lamp, view, candidate))
      m_arrCandidates.push_back(candidate);
  }
  if (m_arrCandidates.size() > QXOgreLamps::MOST) {
    // Those that shine, and the first that does not, which dims the last of them.
    auto const itRest = m_arrCandidates.begin() + QXOgreLamps::MOST + 1;
    std::partial_sort(
        m_arrCandidates.begin(), itRest, m_arrCandidates.end(), [](Candidate const& a, Candidate const& b) {
          return a.m_dImportance != b.m_dImportance ? a.m_dImportance > b.m_dImportance : a.m_nNumber < b.m_nNumber;
        });
  }
  std::size_t const nCount = std::min(m_arrCandidates.size(), QXOgreLamps::MOST);
  for (std::size_t i = 0; i < nCount; ++i)
    Write(*m_arrCandidates[i].m_pLamp, m_arrCandidates[i].m_vecPlace, WeightOf(i), view,
        lamps.m_arrNumbers.data() + i * QXOgreLamps::NUMBERS);
  lamps.m_nCount = static_cast<int>(nCount);
}

}  // namespace QXC
