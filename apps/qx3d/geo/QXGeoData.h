/// @file
/// What a file of map data gives to a scene.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <cstddef>
#include <string>
#include <vector>

namespace QXApp {

/// A place with a text. Coordinates are those of the file; z is 0 where it has none.
struct QXGeoPoint {
  /// UTF-8, one line, never empty; empty where places are asked for.
  std::string m_strText;
  QXC::QXVector3d m_vecPosition;
  /// Degrees in which the text runs, counter-clockwise from +x; of use if the file has one. Of places the number of the
  /// attribute, whatever it counts.
  bool m_bAngle = false;
  double m_dAngle = 0.0;
  /// 0: the file does not say.
  double m_dScale = 0.0;
};

/// The area on which a building stands.
struct QXGeoFootprint {
  /// The outer ring and then those of its courtyards, at least 3 corners each, the first not repeated at the end. In
  /// any direction.
  std::vector<std::vector<QXC::QXVector3d>> m_vecRings;
  /// Metres; 0: the file does not say.
  double m_dHeight = 0.0;
  /// 0: the file does not say.
  double m_dStoreys = 0.0;
  /// As of a point.
  bool m_bAngle = false;
  double m_dAngle = 0.0;
  double m_dScale = 0.0;
};

struct QXGeoData {
  std::vector<QXGeoPoint> m_vecPoints;
  /// Of their texts, together.
  std::size_t m_nTextBytes = 0;
  std::vector<QXGeoFootprint> m_vecFootprints;
};

/// Names in the file of what the program looks for.
struct QXGeoNames {
  /// Attribute with the text of a point.
  std::string m_strLabel;
  /// Attribute with its angle; empty: there is none.
  std::string m_strAngle;
  /// Places are asked for: points with or without a text, and areas of any kind as footprints.
  bool m_bPlaces = false;
  /// Of places: attribute with a factor; empty: there is none.
  std::string m_strScale = {};
  /// Of places in CityGML: the element whose features count. One with points gives these, any other its areas.
  std::string m_strFeature = {};
  /// Of places: only features whose attribute has this value count; empty: all.
  std::string m_strWhere = {};
  std::string m_strWhereValue = {};
};

/// Farthest coordinate that is read, as in scene files.
constexpr double MaxGeoCoordinate = 1e15;
/// Most points, most footprints and most corners of footprints that a file may give.
constexpr std::size_t MaxGeoPlaces = 1000000;
constexpr std::size_t MaxGeoCorners = 10000000;
/// Longest text of a point in bytes; a longer one is a description and no name.
constexpr std::size_t MaxGeoText = 1000;
/// Most bytes of all texts of a file: one feature gives its text to any number of points.
constexpr std::size_t MaxGeoTextBytes = 100000000;

}  // namespace QXApp
