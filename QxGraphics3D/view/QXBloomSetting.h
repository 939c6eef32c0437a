/// @file
/// How bright things glow.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// The numbers of the effect "bloom" for QXGraphics3D::SetBloomSetting: what is brighter than a threshold spreads over
/// its surroundings. A renderer takes numbers outside of their range as the nearest one inside, and keeps what it had
/// for a number that is none.
class QXGRAPHICS3D_API QXBloomSetting {
public:
  /// Brightness, that is the largest of red, green and blue, from which on colours glow: 0 to 1. Above it the glow rises
  /// linearly; white glows with the whole of its colour, and at 1 nothing does.
  double m_dThreshold = 0.7;
  /// Factor on the glow before it is added to the picture: 0 to 10.
  double m_dIntensity = 1.0;
  /// How far the glow reaches, as a part of the picture's height, so that pictures of all sizes look alike: 0 to 0.25.
  double m_dRadius = 0.04;
};

}  // namespace QXC
