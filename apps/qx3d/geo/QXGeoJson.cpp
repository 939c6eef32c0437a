#include <apps/qx3d/geo/QXGeoJson.h>

#include <apps/qx3d/geo/QXGeoText.h>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace QXApp {

namespace {

using Json = nlohmann::json;
using QXC::QXVector3d;

/// A MultiPolygon in a collection stands 8 deep; properties may bring some more.
constexpr int MaxDepth = 64;

/// Depth of the geometry and the properties of a feature in a collection.
constexpr int MostObjects = 3;

/// Where the parser is.
struct Place {
  std::size_t const m_nMaxToken;
  int m_nLine = 1;
  /// Bytes since the last value or name.
  std::size_t m_nToken = 0;
  /// Nothing further is of use.
  bool m_bStop = false;

  bool IsTooLong() const { return m_nToken > m_nMaxToken; }
  bool IsEnd() const { return m_bStop || IsTooLong(); }
};

/// Goes through the bytes and counts lines in a place that all its copies share: the parser tells of none. They end
/// where a token is too long, too.
class LineIterator {
public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = char const*;
  using reference = char const&;

  LineIterator(char const* p, Place* pPlace) : m_p(p), m_pPlace(pPlace) {}
  reference operator*() const { return *m_p; }
  LineIterator& operator++() {
    if (*m_p++ == '\n') ++m_pPlace->m_nLine;
    ++m_pPlace->m_nToken;
    return *this;
  }
  LineIterator operator++(int) {
    LineIterator const before = *this;
    ++*this;
    return before;
  }
  bool operator==(LineIterator const& other) const { return m_p == other.m_p || m_pPlace->IsEnd(); }
  bool operator!=(LineIterator const& other) const { return !(*this == other); }

private:
  char const* m_p;
  Place* m_pPlace;
};

/// A member of an object, or null.
Json const* Find(Json const& json, char const* szKey) {
  if (!json.is_object()) return nullptr;
  auto const it = json.find(szKey);
  return it == json.end() ? nullptr : &*it;
}

bool IsText(Json const* pJson, char const* szText) {
  return pJson != nullptr && pJson->is_string() && pJson->get_ref<std::string const&>() == szText;
}

/// @return  whether it is a position of two or more coordinates
bool ReadPosition(Json const& json, QXVector3d& vec) {
  if (!json.is_array() || json.size() < 2) return false;
  double dNumbers[3] = {0.0, 0.0, 0.0};
  for (std::size_t i = 0; i < json.size() && i < 3; ++i) {
    if (!json[i].is_number()) return false;
    dNumbers[i] = json[i].get<double>();
    if (!IsGeoCoordinate(dNumbers[i])) return false;
  }
  vec = QXVector3d(dNumbers[0], dNumbers[1], dNumbers[2]);
  return true;
}

bool ReadRing(Json const& json, std::vector<QXVector3d>& vecRing) {
  if (!json.is_array()) return false;
  for (Json const& position : json) {
    vecRing.emplace_back();
    if (!ReadPosition(position, vecRing.back())) return false;
  }
  return true;
}

/// @return  whether there is an outer ring of three corners and all others are rings at least
bool ReadFootprint(Json const& json, QXGeoFootprint& footprint) {
  if (!json.is_array() || json.empty()) return false;
  for (Json const& ring : json) {
    std::vector<QXVector3d> vecRing;
    if (!ReadRing(ring, vecRing)) return false;
    if (TidyGeoRing(vecRing))
      footprint.m_vecRings.push_back(std::move(vecRing));
    else if (footprint.m_vecRings.empty())
      return false;
  }
  return true;
}

std::string MakeText(Json const* pJson) {
  if (pJson == nullptr) return std::string();
  if (pJson->is_string()) return MakeGeoLabel(pJson->get_ref<std::string const&>());
  return pJson->is_number() ? pJson->dump() : std::string();
}

/// Numbers stand as numbers or, from programs with weaker habits, as texts.
bool ReadNumber(Json const* pJson, double& dNumber) {
  if (pJson == nullptr) return false;
  if (pJson->is_string()) return ScanGeoNumber(pJson->get_ref<std::string const&>(), dNumber);
  if (!pJson->is_number()) return false;
  dNumber = pJson->get<double>();
  return true;
}

/// Takes one feature after the other while the parser goes through the file.
class Collector {
public:
  Collector(QXGeoNames const& names, QXSceneProblems& warnings, QXGeoJsonLimits const& limits)
      : m_Names(names), m_Warnings(warnings), m_Limits(limits), m_Place{limits.m_nValueBytes} {}

  /// What the parser calls. @return  whether the value is kept
  bool Take(int nDepth, Json::parse_event_t eEvent, Json& json) {
    m_Place.m_nToken = 0;
    if (nDepth > MaxDepth) return Stop(m_bDeep);
    Count(nDepth, eEvent, json);
    if (m_nValues > m_Limits.m_nValues) return Stop(m_bHuge);
    if (m_nVisits > m_Limits.m_nVisits) return Stop(m_bSlow);
    // Feature, geometry and properties are objects; what stands deeper is none of what is read.
    if (eEvent == Json::parse_event_t::object_start && nDepth > MostObjects) return false;
    if (eEvent == Json::parse_event_t::key && nDepth == 1)
      m_bFeatures = json.get_ref<std::string const&>() == "features";
    if (eEvent != Json::parse_event_t::object_end) return true;
    bool const bFeature = nDepth == 0 || (nDepth == 2 && m_bFeatures);
    if (!bFeature) return true;
    if (IsText(Find(json, "type"), "Feature")) TakeFeature(json);
    if (nDepth == 0 && IsText(Find(json, "type"), "FeatureCollection")) m_bCollection = true;
    // A taken feature is dropped: the file never stands in memory as a whole tree.
    m_nValues = m_nOutside;
    --m_nSiblings[nDepth];
    return false;
  }

  Place* GetPlace() { return &m_Place; }
  /// Why it ended early; empty if it did not.
  std::string GetReason() const {
    if (m_bDeep) return "values stand more than 64 deep in each other; this is no map";
    if (m_bSlow) return "objects stand among too many other values; this is no map";
    if (!m_bHuge && !m_Place.IsTooLong()) return std::string();
    return "a feature has more than " + std::to_string(m_Limits.m_nValues) + " values, or one of them more than " +
           std::to_string(m_Limits.m_nValueBytes) + " bytes; cut it into parts";
  }
  bool IsGeoJson() const { return m_bCollection || m_nFeatures > 0; }
  QXGeoData& GetData() { return m_Data; }

private:
  bool Stop(bool& bReason) {
    bReason = true;
    m_Place.m_bStop = true;
    return false;
  }

  void Count(int nDepth, Json::parse_event_t eEvent, Json const& json) {
    bool const bObject = eEvent == Json::parse_event_t::object_start;
    // At the end of one that is dropped the parser tells nothing and goes over the others all the same.
    bool const bDropped = bObject && nDepth > MostObjects;
    if (eEvent == Json::parse_event_t::object_end || bDropped) m_nVisits += m_nSiblings[nDepth];
    if (eEvent == Json::parse_event_t::object_end || eEvent == Json::parse_event_t::array_end) return;
    if (bObject && nDepth == 2) m_nOutside = m_nValues;
    m_nValues += GetWeight(json);
    if (eEvent == Json::parse_event_t::key) return;
    if (!bDropped) ++m_nSiblings[nDepth];
    m_nSiblings[nDepth + 1] = 0;
  }

  /// How many values one of them counts as: long texts as many.
  static std::size_t GetWeight(Json const& json) {
    return json.is_string() ? 1 + json.get_ref<std::string const&>().size() / 16 : 1;
  }

  void TakeFeature(Json const& feature) {
    ++m_nFeatures;
    Json const* pGeometry = Find(feature, "geometry");
    if (pGeometry == nullptr || pGeometry->is_null()) return;
    Json const* pType = Find(*pGeometry, "type");
    Json const* pCoordinates = Find(*pGeometry, "coordinates");
    Json const* pProperties = Find(feature, "properties");
    Json const nothing;
    Json const& coordinates = pCoordinates == nullptr ? nothing : *pCoordinates;
    Json const& properties = pProperties == nullptr ? nothing : *pProperties;
    if (!m_Names.m_strWhere.empty() &&
        MakeText(Find(properties, m_Names.m_strWhere.c_str())) != m_Names.m_strWhereValue)
      return;
    bool bGood = true;
    if (IsText(pType, "Point"))
      bGood = TakePoint(coordinates, MakePoint(properties));
    else if (IsText(pType, "MultiPoint"))
      bGood = TakeAll(coordinates, &Collector::TakePoint, MakePoint(properties));
    else if (IsText(pType, "Polygon"))
      bGood = TakePolygon(coordinates, properties);
    else if (IsText(pType, "MultiPolygon"))
      bGood = TakeAll(coordinates, &Collector::TakePolygon, properties);
    if (!bGood)
      m_Warnings.Add(m_Place.m_nLine,
          "the coordinates of the feature that ends here are none of its type, or beyond 1e15, and "
          "are left out; correct them");
  }

  template <class What>
  bool TakeAll(Json const& coordinates, bool (Collector::*pTake)(Json const&, What const&), What const& what) {
    bool bGood = coordinates.is_array();
    if (!bGood) return false;
    for (Json const& part : coordinates) bGood = (this->*pTake)(part, what) && bGood;
    return bGood;
  }

  /// What the points of a feature have in common.
  QXGeoPoint MakePoint(Json const& properties) const {
    QXGeoPoint point;
    point.m_strText = MakeText(Find(properties, m_Names.m_strLabel.c_str()));
    point.m_bAngle = ReadAttribute(properties, m_Names.m_strAngle, point.m_dAngle);
    ReadScale(properties, point.m_dScale);
    return point;
  }

  static bool ReadAttribute(Json const& properties, std::string const& strName, double& dNumber) {
    return !strName.empty() && ReadNumber(Find(properties, strName.c_str()), dNumber) && IsGeoCoordinate(dNumber);
  }

  void ReadScale(Json const& properties, double& dScale) const {
    double dRead = 0.0;
    if (ReadAttribute(properties, m_Names.m_strScale, dRead) && dRead > 0.0) dScale = dRead;
  }

  bool TakePoint(Json const& coordinates, QXGeoPoint const& pattern) {
    QXGeoPoint point = pattern;
    if (!ReadPosition(coordinates, point.m_vecPosition)) return false;
    Warn(AddGeoPoint(std::move(point), m_Names, m_Data));
    return true;
  }

  bool TakePolygon(Json const& coordinates, Json const& properties) {
    QXGeoFootprint footprint;
    if (!ReadFootprint(coordinates, footprint)) return false;
    double dNumber = 0.0;
    if (ReadNumber(Find(properties, "height"), dNumber) && dNumber > 0.0 && dNumber <= 10000.0)
      footprint.m_dHeight = dNumber;
    if (ReadNumber(Find(properties, "storeys"), dNumber) && dNumber > 0.0 && dNumber <= 1000.0)
      footprint.m_dStoreys = dNumber;
    footprint.m_bAngle = ReadAttribute(properties, m_Names.m_strAngle, footprint.m_dAngle);
    ReadScale(properties, footprint.m_dScale);
    for (auto const& vecRing : footprint.m_vecRings) m_nCorners += vecRing.size();
    if (m_nCorners > MaxGeoCorners || m_Data.m_vecFootprints.size() >= MaxGeoPlaces)
      Warn(
          "the file has more than 1000000 polygons or 10000000 corners, and the further ones are left out; cut it into "
          "parts");
    else
      m_Data.m_vecFootprints.push_back(std::move(footprint));
    return true;
  }

  void Warn(std::string const& strText) {
    if (!strText.empty()) m_Warnings.Add(m_Place.m_nLine, strText);
  }

  QXGeoNames const& m_Names;
  QXSceneProblems& m_Warnings;
  QXGeoData m_Data;
  QXGeoJsonLimits const m_Limits;
  Place m_Place;
  bool m_bFeatures = false;
  bool m_bCollection = false;
  bool m_bDeep = false;
  bool m_bHuge = false;
  bool m_bSlow = false;
  /// Held by the tree, and of these those that no feature brought.
  std::size_t m_nValues = 0;
  std::size_t m_nOutside = 0;
  /// Of each depth the values in what is open there, and how many of them the parser looked at: at the end of an object
  /// it looks for a dropped one among all values beside it.
  std::size_t m_nSiblings[MaxDepth + 2] = {};
  std::size_t m_nVisits = 0;
  std::size_t m_nFeatures = 0;
  std::size_t m_nCorners = 0;
};

/// What the parser says without its own name and its count of lines, which stands before the message already.
std::string MakeReason(std::string const& strWhat) {
  std::size_t const nColumn = strWhat.find("column ");
  if (nColumn != std::string::npos) return strWhat.substr(nColumn);
  std::size_t const nName = strWhat.find("] ");
  return nName == std::string::npos ? strWhat : strWhat.substr(nName + 2);
}

}  // namespace

QXGeoData ParseGeoJson(std::string_view bytes, QXGeoNames const& names, QXSceneProblems& problems,
    QXSceneProblems& warnings, QXGeoJsonLimits const& limits) {
  Collector collector(names, warnings, limits);
  LineIterator const begin(bytes.data(), collector.GetPlace());
  LineIterator const end(bytes.data() + bytes.size(), collector.GetPlace());
  try {
    // The root is dropped as well.
    Json const nothing = Json::parse(begin, end, [&collector](int nDepth, Json::parse_event_t eEvent, Json& json) {
      return collector.Take(nDepth, eEvent, json);
    });
    static_cast<void>(nothing);
  } catch (Json::exception const& exception) {
    if (collector.GetReason().empty())
      problems.Add(
          collector.GetPlace()->m_nLine, MakeGeoLabel(MakeReason(exception.what())) + "; get another copy of the file");
  }
  if (!collector.GetReason().empty())
    problems.Add(0, collector.GetReason());
  else if (problems.IsEmpty() && !collector.IsGeoJson())
    problems.Add(0, "the file holds no FeatureCollection and no Feature; export it as GeoJSON");
  if (!problems.IsEmpty()) return QXGeoData();
  return std::move(collector.GetData());
}

}  // namespace QXApp
