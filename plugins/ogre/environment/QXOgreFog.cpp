#include <plugins/ogre/environment/QXOgreFog.h>

#include <algorithm>
#include <cmath>

#include <QxGraphics3D/view/QXFog.h>

namespace QXC {

namespace {

/// Products of it with distances may be infinite, but never of 0 and infinity.
constexpr double LARGEST = 1.0e30;
/// Farther than anything that is drawn: where linear fog ends beyond it, all that is seen is at its beginning.
constexpr double FARTHEST = 1.0e15;

float Narrowed(double dValue) {
  return static_cast<float>(std::clamp(dValue, -LARGEST, LARGEST));
}

float ChannelOf(double dValue) {
  return std::isfinite(dValue) ? static_cast<float>(std::clamp(dValue, 0.0, 1.0)) : 0.0F;
}

}  // namespace

QXOgreFog::QXOgreFog() : m_Numbers(0.0F, 0.0F, 0.0F, 0.0F), m_Color(Ogre::ColourValue::Black) {}

QXOgreFog::QXOgreFog(QXFog const& fog) : QXOgreFog() {
  QXColorValue3D const& color = fog.GetFogColor();
  m_Color = Ogre::ColourValue(ChannelOf(color.r), ChannelOf(color.g), ChannelOf(color.b));
  FogMode const eMode = fog.GetFogMode();
  auto const fMode = static_cast<float>(eMode);
  if (eMode == FOG_EXPONENTIAL || eMode == FOG_EXPONENTIAL_SQUARED) {
    if (std::isfinite(fog.GetFogDensity())) m_Numbers = {fMode, Narrowed(fog.GetFogDensity()), 0.0F, 0.0F};
    return;
  }
  if (eMode != FOG_LINEAR || !std::isfinite(fog.GetFogStart()) || !std::isfinite(fog.GetFogEnd())) return;
  double const dStart = std::clamp(fog.GetFogStart(), -FARTHEST, FARTHEST);
  double const dEnd = std::clamp(fog.GetFogEnd(), -FARTHEST, FARTHEST);
  // Where it begins and ends at one distance, it is a wall there.
  m_Numbers = {fMode, Narrowed(dEnd), Narrowed(dEnd == dStart ? LARGEST : 1.0 / (dEnd - dStart)), 0.0F};
}

}  // namespace QXC
