/// @file
/// Light and weather, as a scene file describes them.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <cstddef>

namespace QXApp {

/// In the order of the library's numbers.
enum class QXLightKind { Point, Directional, Spot };

struct QXSceneLight {
  QXLightKind m_eKind = QXLightKind::Point;
  bool m_bPosition = false;
  QXC::QXVector3d m_vecPosition;
  /// The way the light goes, or the point that it is turned to; at most one of the two.
  bool m_bDirection = false;
  QXC::QXVector3d m_vecDirection;
  bool m_bTarget = false;
  QXC::QXVector3d m_vecTarget;
  unsigned char m_nColor[3] = {255, 255, 255};
  /// Of a spotlight, degrees: whole angles of full light and of any light, and the exponent between them.
  bool m_bCone = false;
  double m_dInner = 30.0;
  double m_dOuter = 45.0;
  double m_dFalloff = 1.0;
  /// Distance beyond which there is no light; 0 without limit.
  double m_dRange = 0.0;
  /// Constant, linear and quadratic; all 0: the light does not get weaker on its way.
  double m_dAttenuation[3] = {0.0, 0.0, 0.0};
  double m_dPower = 1.0;
  int m_nLine = 0;
};

/// Most lights of a scene. A renderer has room for a few at a time and chooses.
constexpr std::size_t MaxSceneLights = 1000;

/// In the order of the library's numbers from 1 on.
enum class QXFogKind { None, Exponential, ExponentialSquared, Linear };

struct QXSceneFog {
  QXFogKind m_eKind = QXFogKind::None;
  /// Else that of the horizon.
  bool m_bColor = false;
  unsigned char m_nColor[3] = {0, 0, 0};
  double m_dDensity = 0.0;
  double m_dStart = 0.0;
  double m_dEnd = 0.0;
  int m_nLine = 0;
};

struct QXSceneSky {
  /// Whether the scene has one.
  bool m_bSky = false;
  QDC::QdcTime m_Time;
  /// Numbers of QXCloudTypes and QXConditionPresets; -1: not chosen.
  int m_nClouds = -1;
  int m_nCondition = -1;
  /// World units above the ground; 0: the renderer's own.
  double m_dCloudHeight = 0.0;
  /// Degrees clockwise from north where it comes from, and world units a second; below 0: not chosen.
  double m_dWindFrom = -1.0;
  double m_dWindSpeed = 0.0;
  int m_nLine = 0;
};

struct QXSceneOcean {
  bool m_bOcean = false;
  /// Height of the surface.
  double m_dLevel = 0.0;
  /// Wind by the Beaufort scale, from which the waves follow.
  double m_dBeaufort = 3.0;
  /// Degrees clockwise from north where the wind comes from.
  double m_dWindFrom = 270.0;
  int m_nLine = 0;
};

}  // namespace QXApp
