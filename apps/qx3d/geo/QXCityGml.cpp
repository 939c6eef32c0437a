#include <apps/qx3d/geo/QXCityGml.h>

#include <apps/qx3d/geo/QXGeoText.h>

#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXVector3d;

/// Real files nest some 20 deep; the parser keeps something for each level.
constexpr int MaxDepth = 256;

/// Bytes of the text of an element; as numbers they take four times as much memory.
constexpr std::size_t MaxText = std::size_t{16} << 20;

enum class Element {
  Other,
  Member,
  Building,
  Ground,
  GroundSurface,
  RoofEdge,
  Polygon,
  Ring,
  Point,
  Position,
  Positions,
  Corner,
  Height,
  Storeys
};

Element FindElement(std::string_view name) {
  static std::unordered_map<std::string_view, Element> const mapElements = {{"cityObjectMember", Element::Member},
      {"featureMember", Element::Member}, {"featureMembers", Element::Member}, {"member", Element::Member},
      {"Building", Element::Building}, {"BuildingPart", Element::Building}, {"lod0FootPrint", Element::Ground},
      {"geometrie2dGrondvlak", Element::Ground}, {"GroundSurface", Element::GroundSurface},
      {"lod0RoofEdge", Element::RoofEdge}, {"Polygon", Element::Polygon}, {"exterior", Element::Ring},
      {"interior", Element::Ring}, {"Point", Element::Point}, {"pos", Element::Position},
      {"posList", Element::Positions}, {"lowerCorner", Element::Corner}, {"measuredHeight", Element::Height},
      {"storeysAboveGround", Element::Storeys}};
  auto const it = mapElements.find(name);
  return it == mapElements.end() ? Element::Other : it->second;
}

/// A building whose element is open.
struct Building {
  int m_nDepth;
  double m_dHeight;
  double m_dStoreys;
  /// Of the footprints: what they were taken from, the best first.
  Element m_eSource = Element::Other;
  std::vector<QXGeoFootprint> m_vecFootprints = {};
};

class Reader {
public:
  Reader(QXGeoNames const& names, QXSceneProblems& problems, QXSceneProblems& warnings)
      : m_Names(names), m_Problems(problems), m_Warnings(warnings), m_pParser(XML_ParserCreate(nullptr)) {
    if (m_pParser == nullptr) throw std::bad_alloc();
    XML_SetUserData(m_pParser.get(), this);
    XML_SetElementHandler(m_pParser.get(), &Reader::OnBegin, &Reader::OnEnd);
    XML_SetEntityDeclHandler(m_pParser.get(), &Reader::OnEntity);
  }

  QXGeoData Read(std::string_view bytes) {
    if (bytes.size() > INT_MAX) {
      m_Problems.Add(0, "the file is larger than 2 GiB; cut it into parts");
      return QXGeoData();
    }
    // In one piece: a token that goes on through many pieces would be looked at again with each of them.
    if (XML_Parse(m_pParser.get(), bytes.data(), static_cast<int>(bytes.size()), 1) == XML_STATUS_OK)
      return std::move(m_Data);
    XML_Error const eError = XML_GetErrorCode(m_pParser.get());
    if (eError != XML_ERROR_ABORTED)
      m_Problems.Add(GetLine(), std::string("the XML is not well-formed here, ") + XML_ErrorString(eError) +
                                    "; get another copy of the file");
    return QXGeoData();
  }

private:
  struct ParserDeleter {
    void operator()(XML_Parser pParser) const { XML_ParserFree(pParser); }
  };

  static void OnBegin(void* pReader, char const* szName, char const** pszAttributes) {
    static_cast<Reader*>(pReader)->Begin(szName, pszAttributes);
  }
  static void OnEnd(void* pReader, char const* szName) { static_cast<Reader*>(pReader)->End(szName); }
  static void OnText(void* pReader, char const* pText, int nLength) {
    static_cast<Reader*>(pReader)->AddText({pText, static_cast<std::size_t>(nLength)});
  }
  static void OnEntity(
      void* pReader, char const*, int, char const*, int, char const*, char const*, char const*, char const*) {
    // A few lines of them can stand for gigabytes, and map data has no use for them.
    static_cast<Reader*>(pReader)->Stop("the file declares entities, which are not read; remove its DOCTYPE");
  }

  static std::string_view LocalName(char const* szName) {
    char const* const pColon = std::strrchr(szName, ':');
    return pColon == nullptr ? szName : pColon + 1;
  }

  void Begin(char const* szName, char const** pszAttributes) {
    // Handlers may be called once more after a stop.
    if (m_bStopped) return;
    if (++m_nDepth > MaxDepth) {
      Stop("elements stand more than 256 deep in each other; this is no city");
      return;
    }
    std::string_view const name = LocalName(szName);
    Element const eElement = FindElement(name);
    for (; *pszAttributes != nullptr; pszAttributes += 2) {
      if (LocalName(pszAttributes[0]) != "srsDimension") continue;
      if (std::string_view const value = pszAttributes[1]; value == "2" || value == "3")
        m_vecDimensions.push_back({m_nDepth, static_cast<std::size_t>(value[0] - '0')});
    }
    if (m_nFeatureDepth == 0) {
      if (m_nMemberDepth != 0 && m_nDepth == m_nMemberDepth + 1)
        m_nFeatureDepth = m_nDepth;
      else if (eElement == Element::Member)
        m_nMemberDepth = m_nDepth;
    }
    BeginElement(eElement, name);
  }

  void BeginElement(Element eElement, std::string_view name) {
    if (m_Names.m_bPlaces && m_nWantedDepth == 0) {
      if (name == m_Names.m_strFeature)
        BeginWanted();
      else if (eElement == Element::Corner && m_nEnvelope == 0)
        BeginText();
      return;
    }
    if (IsPlaceAttribute(name)) {
      BeginText();
      return;
    }
    switch (eElement) {
    case Element::Building:
      if (!m_Names.m_bPlaces) BeginBuilding();
      break;
    case Element::Ground:
    case Element::GroundSurface:
    case Element::RoofEdge:
      if (m_nGroundDepth == 0 && !m_vecBuildings.empty()) {
        m_nGroundDepth = m_nDepth;
        m_eGround = eElement;
      }
      break;
    case Element::Polygon:
      if ((m_nGroundDepth != 0 || m_nWantedDepth != 0) && m_nPolygonDepth == 0) {
        m_nPolygonDepth = m_nDepth;
        m_Footprint = QXGeoFootprint();
        m_bFaulty = false;
      }
      break;
    case Element::Ring:
      if (m_nPolygonDepth != 0) m_Footprint.m_vecRings.emplace_back();
      break;
    case Element::Point: m_bPoint = true; break;
    case Element::Position:
    case Element::Positions:
      if (m_bPoint || m_nPolygonDepth != 0) BeginText();
      break;
    case Element::Corner:
      if (m_nEnvelope == 0) BeginText();
      break;
    case Element::Height:
    case Element::Storeys:
      if (!m_vecBuildings.empty()) BeginText();
      break;
    default:
      if (!m_Names.m_bPlaces && m_nFeatureDepth != 0 && (name == m_Names.m_strLabel || name == m_Names.m_strAngle))
        BeginText();
    }
  }

  bool IsPlaceAttribute(std::string_view name) const {
    return m_Names.m_bPlaces &&
           (name == m_Names.m_strAngle || name == m_Names.m_strScale || name == m_Names.m_strWhere);
  }

  /// A feature of the kind whose places are asked for.
  void BeginWanted() {
    m_nWantedDepth = m_nDepth;
    m_Wanted = QXGeoPoint();
    m_bWanted = m_Names.m_strWhere.empty();
  }

  void BeginBuilding() {
    Building building{m_nDepth, 0.0, 0.0};
    if (!m_vecBuildings.empty()) {
      building.m_dHeight = m_vecBuildings.back().m_dHeight;
      building.m_dStoreys = m_vecBuildings.back().m_dStoreys;
    }
    m_vecBuildings.push_back(std::move(building));
  }

  /// Only text that is wanted is handed over: most of a file is of no use here.
  void BeginText() {
    m_strText.clear();
    m_nTextDepth = m_nDepth;
    XML_SetCharacterDataHandler(m_pParser.get(), &Reader::OnText);
  }

  void AddText(std::string_view text) {
    if (m_bStopped) return;
    if (text.size() > MaxText - m_strText.size())
      Stop("the text of an element has more than 16 MiB; cut the file into parts");
    else
      m_strText.append(text);
  }

  void End(char const* szName) {
    if (m_bStopped) return;
    if (m_nTextDepth == m_nDepth) {
      m_nTextDepth = 0;
      XML_SetCharacterDataHandler(m_pParser.get(), nullptr);
      std::string_view const name = LocalName(szName);
      TakeText(FindElement(name), name);
    }
    if (m_nPolygonDepth == m_nDepth) EndPolygon();
    if (m_nGroundDepth == m_nDepth) m_nGroundDepth = 0;
    if (!m_vecBuildings.empty() && m_vecBuildings.back().m_nDepth == m_nDepth) EndBuilding();
    if (m_bPoint && FindElement(LocalName(szName)) == Element::Point) m_bPoint = false;
    if (m_nWantedDepth == m_nDepth) EndWanted();
    if (m_nFeatureDepth == m_nDepth) EndFeature();
    if (!m_vecDimensions.empty() && m_vecDimensions.back().m_nDepth == m_nDepth) m_vecDimensions.pop_back();
    if (m_nMemberDepth == m_nDepth) m_nMemberDepth = 0;
    --m_nDepth;
  }

  void TakeText(Element eElement, std::string_view name) {
    if (IsPlaceAttribute(name)) {
      TakePlaceAttribute(name);
      return;
    }
    switch (eElement) {
    case Element::Position:
    case Element::Positions: TakePositions(eElement); return;
    case Element::Corner: TakeCorner(); return;
    case Element::Height: TakeNumber(m_vecBuildings.back().m_dHeight, 10000.0); return;
    case Element::Storeys: TakeNumber(m_vecBuildings.back().m_dStoreys, 1000.0); return;
    default: break;
    }
    if (m_Names.m_bPlaces) return;
    if (name == m_Names.m_strLabel && m_strLabel.empty()) m_strLabel = MakeGeoLabel(m_strText);
    if (name != m_Names.m_strAngle) return;
    double dAngle = 0.0;
    if (!ScanGeoNumber(m_strText, dAngle) || !IsGeoCoordinate(dAngle)) {
      Warn("the angle of a text is no number and is taken for 0; correct it");
      dAngle = 0.0;
    }
    if (m_vecPoints.empty() || m_vecPoints.back().m_bAngle) return;
    m_vecPoints.back().m_bAngle = true;
    m_vecPoints.back().m_dAngle = dAngle;
  }

  void TakePlaceAttribute(std::string_view name) {
    if (name == m_Names.m_strWhere) m_bWanted = m_bWanted || MakeGeoLabel(m_strText) == m_Names.m_strWhereValue;
    double dRead = 0.0;
    if (!ScanGeoNumber(m_strText, dRead) || !IsGeoCoordinate(dRead)) return;
    if (name == m_Names.m_strAngle) {
      m_Wanted.m_bAngle = true;
      m_Wanted.m_dAngle = dRead;
    }
    if (name == m_Names.m_strScale && dRead > 0.0) m_Wanted.m_dScale = dRead;
  }

  void TakeCorner() {
    std::vector<double> vecNumbers;
    bool const bGood = ScanGeoNumbers(m_strText, vecNumbers);
    if (bGood && (vecNumbers.size() == 2 || vecNumbers.size() == 3)) m_nEnvelope = vecNumbers.size();
  }

  void TakeNumber(double& dNumber, double dMax) {
    double dRead = 0.0;
    // A height of 0, or one that no building has, is as good as none.
    if (ScanGeoNumber(m_strText, dRead) && dRead > 0.0 && dRead <= dMax) dNumber = dRead;
  }

  void TakePositions(Element eElement) {
    std::vector<double> vecNumbers;
    bool bGood = ScanGeoNumbers(m_strText, vecNumbers) && !vecNumbers.empty();
    std::size_t const nCount = vecNumbers.size();
    std::size_t const nDimension = eElement == Element::Position ? nCount : FindDimension(vecNumbers);
    bGood = bGood && (nDimension == 2 || nDimension == 3) && nCount % nDimension == 0;
    if (!bGood) {
      m_bFaulty = true;
      Warn("these are no positions of two or three numbers up to 1e15 each, and what they belong to is left out; "
           "correct them");
      return;
    }
    m_nCorners += nCount / nDimension;
    if (m_nCorners > MaxGeoCorners) {
      Stop("the file has more than 10000000 positions; cut it into parts");
      return;
    }
    for (std::size_t i = 0; i < nCount; i += nDimension) {
      QXVector3d const vec(vecNumbers[i], vecNumbers[i + 1], nDimension == 3 ? vecNumbers[i + 2] : 0.0);
      if (m_nPolygonDepth != 0) {
        if (!m_Footprint.m_vecRings.empty()) m_Footprint.m_vecRings.back().push_back(vec);
      } else if (m_vecPoints.size() < MaxGeoPlaces && (m_nFeatureDepth != 0 || m_nWantedDepth != 0)) {
        m_vecPoints.push_back({std::string(), vec});
      }
    }
  }

  std::size_t FindDimension(std::vector<double> const& vecNumbers) const {
    if (!m_vecDimensions.empty()) return m_vecDimensions.back().m_nDimension;
    if (m_nEnvelope != 0) return m_nEnvelope;
    std::size_t const nCount = vecNumbers.size();
    auto const closes = [&](std::size_t n) {
      return nCount % n == 0 && nCount > n &&
             std::equal(
                 vecNumbers.begin(), vecNumbers.begin() + static_cast<int>(n), vecNumbers.end() - static_cast<int>(n));
    };
    return closes(3) && !closes(2) ? 3 : 2;
  }

  void EndPolygon() {
    m_nPolygonDepth = 0;
    std::vector<std::vector<QXVector3d>>& vecRings = m_Footprint.m_vecRings;
    bool const bOuter = !vecRings.empty() && TidyGeoRing(vecRings[0]);
    if (m_bFaulty || !bOuter) {
      if (!m_bFaulty) Warn("the polygon has fewer than three corners and is left out; correct it");
      return;
    }
    vecRings.erase(
        std::remove_if(vecRings.begin() + 1, vecRings.end(), [](auto& vecRing) { return !TidyGeoRing(vecRing); }),
        vecRings.end());
    if (m_Names.m_bPlaces && m_vecAreas.size() <= MaxGeoPlaces) m_vecAreas.push_back(std::move(m_Footprint));
    if (m_vecBuildings.empty()) return;
    Building& building = m_vecBuildings.back();
    if (building.m_eSource != Element::Other && building.m_eSource < m_eGround) return;
    if (building.m_eSource != m_eGround) building.m_vecFootprints.clear();
    building.m_eSource = m_eGround;
    building.m_vecFootprints.push_back(std::move(m_Footprint));
  }

  void EndBuilding() {
    Building building = std::move(m_vecBuildings.back());
    m_vecBuildings.pop_back();
    for (QXGeoFootprint& footprint : building.m_vecFootprints) {
      if (m_Data.m_vecFootprints.size() >= MaxGeoPlaces) {
        Stop("the file has more than 1000000 buildings; cut it into parts");
        return;
      }
      footprint.m_dHeight = building.m_dHeight;
      footprint.m_dStoreys = building.m_dStoreys;
      m_Data.m_vecFootprints.push_back(std::move(footprint));
    }
  }

  void EndWanted() {
    m_nWantedDepth = 0;
    if (m_vecPoints.empty() && m_bWanted) {
      for (QXGeoFootprint& area : m_vecAreas) {
        if (m_Data.m_vecFootprints.size() >= MaxGeoPlaces) {
          Stop("the file has more than 1000000 areas; cut it into parts");
          return;
        }
        area.m_bAngle = m_Wanted.m_bAngle;
        area.m_dAngle = m_Wanted.m_dAngle;
        area.m_dScale = m_Wanted.m_dScale;
        m_Data.m_vecFootprints.push_back(std::move(area));
      }
    }
    for (QXGeoPoint& point : m_vecPoints) {
      if (!m_bWanted) break;
      m_Wanted.m_vecPosition = point.m_vecPosition;
      std::string const strReason = AddGeoPoint(m_Wanted, m_Names, m_Data);
      if (!strReason.empty()) Warn(strReason);
    }
    m_vecPoints.clear();
    m_vecAreas.clear();
  }

  void EndFeature() {
    m_nFeatureDepth = 0;
    for (QXGeoPoint& point : m_vecPoints) {
      point.m_strText = m_strLabel;
      std::string const strReason = AddGeoPoint(std::move(point), m_Names, m_Data);
      if (!strReason.empty()) Warn(strReason);
    }
    m_vecPoints.clear();
    m_strLabel.clear();
  }

  // Asked for lines only where there is something to tell: finding one goes over the bytes again.
  int GetLine() const {
    return static_cast<int>(std::min<XML_Size>(XML_GetCurrentLineNumber(m_pParser.get()), INT_MAX));
  }
  void Warn(std::string const& strText) { m_Warnings.Add(GetLine(), strText); }
  void Stop(std::string const& strText) {
    m_bStopped = true;
    m_Problems.Add(GetLine(), strText);
    XML_StopParser(m_pParser.get(), XML_FALSE);
  }

  QXGeoNames const& m_Names;
  QXSceneProblems& m_Problems;
  QXSceneProblems& m_Warnings;
  std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter> m_pParser;
  QXGeoData m_Data;
  bool m_bStopped = false;
  // Of each open element that matters the depth, 0 for none.
  int m_nDepth = 0;
  int m_nMemberDepth = 0;
  int m_nFeatureDepth = 0;
  int m_nGroundDepth = 0;
  int m_nPolygonDepth = 0;
  int m_nTextDepth = 0;
  int m_nWantedDepth = 0;
  /// What the places of the open feature have in common, and whether the feature is one that counts.
  QXGeoPoint m_Wanted;
  bool m_bWanted = false;
  std::vector<QXGeoFootprint> m_vecAreas;
  bool m_bPoint = false;
  Element m_eGround = Element::Other;
  std::vector<Building> m_vecBuildings;
  QXGeoFootprint m_Footprint;
  bool m_bFaulty = false;
  std::string m_strText;
  std::string m_strLabel;
  std::vector<QXGeoPoint> m_vecPoints;
  std::size_t m_nCorners = 0;
  struct Dimension {
    int m_nDepth;
    std::size_t m_nDimension;
  };
  std::vector<Dimension> m_vecDimensions;
  std::size_t m_nEnvelope = 0;
};

}  // namespace

QXGeoData ParseCityGml(
    std::string_view bytes, QXGeoNames const& names, QXSceneProblems& problems, QXSceneProblems& warnings) {
  return Reader(names, problems, warnings).Read(bytes);
}

}  // namespace QXApp
