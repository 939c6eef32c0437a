/// @file
/// Models at many places, as a scene file describes them.
#pragma once

#include <apps/qx3d/QXViewOptions.h>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <cstddef>
#include <string>
#include <vector>

namespace QXApp {

/// Where an instance stands.
struct QXScenePlace {
  QXC::QXVector3d m_vecPosition;
  /// Degrees clockwise seen from above, if this place has its own.
  bool m_bHeading = false;
  double m_dHeading = 0.0;
  /// 0: this place has none of its own.
  double m_dScale = 0.0;
};

/// One model at many places, which are drawn together.
struct QXSceneInstances {
  /// The model, and the files with places and points, as the scene file's folder completes them; empty for none.
  std::string m_strFile;
  std::string m_strPlaces;
  std::string m_strPoints;
  /// Those of the scene file; LoadScenePlaces appends those of the files.
  std::vector<QXScenePlace> m_vecPlaces;
  /// Auto: as the command line says.
  UpAxis m_eUp = UpAxis::Auto;
  /// Of points in CityGML: the element whose features count.
  std::string m_strFeature;
  /// Only features whose attribute has this value count; empty: all.
  std::string m_strWhere;
  std::string m_strWhereValue;
  /// Attributes of the points; empty for none.
  std::string m_strHeadingFrom;
  std::string m_strScaleFrom;
  /// Areas of the points' file get one instance for so many square units; 0: one in the middle.
  double m_dSpread = 0.0;
  /// Added to all positions.
  QXC::QXVector3d m_vecPosition;
  /// Height in place of that of the points.
  bool m_bZ = false;
  double m_dZ = 0.0;
  /// Of places without their own.
  bool m_bRandomHeading = false;
  double m_dHeading = 0.0;
  /// From and to; one factor where both are the same.
  double m_dScale[2] = {1.0, 1.0};
  /// Of everything that is random.
  int m_nSeed = 1;
  /// With which the model's own colours are multiplied.
  unsigned char m_nColor[3] = {255, 255, 255};
  /// How far from the eye instances are drawn; 0 without limit.
  double m_dDistance = 0.0;
  int m_nLine = 0;
  int m_nPlacesLine = 0;
  int m_nPointsLine = 0;
};

/// Most instances of a scene, of all its sections together.
constexpr std::size_t MaxSceneInstances = 1000000;

}  // namespace QXApp
