#include <apps/qx3d/QXSceneSections.h>

#include <apps/qx3d/QXSceneValue.h>
#include <apps/qx3d/geo/QXGeoNames.h>

#include <algorithm>

namespace QXApp {

namespace {

std::string Begin(QXSceneDraft& draft, int nLine) {
  return AppendPlaced(draft.m_Scene.m_vecInstances, nLine);
}

std::string SetFile(QXSceneDraft& draft, std::string const& strValue) {
  std::string const strProblem = CheckModelName(strValue);
  if (!strProblem.empty()) return strProblem;
  draft.GetInstances().m_strFile = draft.Complete(strValue);
  draft.GetInstances().m_nLine = draft.m_nLine;
  return std::string();
}

std::string AddPlace(QXSceneDraft& draft, std::string const& strValue) {
  if (draft.m_nPlaces == MaxSceneInstances)
    return "a scene has at most " + std::to_string(MaxSceneInstances) + " instances; leave this one out";
  QXScenePlace place;
  std::string const strProblem = ReadPlace(strValue, place);
  if (!strProblem.empty()) return strProblem;
  ++draft.m_nPlaces;
  draft.GetInstances().m_vecPlaces.push_back(place);
  return std::string();
}

std::string SetPlaces(QXSceneDraft& draft, std::string const& strValue) {
  draft.GetInstances().m_strPlaces = draft.Complete(strValue);
  draft.GetInstances().m_nPlacesLine = draft.m_nLine;
  return std::string();
}

std::string SetPoints(QXSceneDraft& draft, std::string const& strValue) {
  if (!IsGeoName(strValue))
    return "'" + strValue + "' is no map data by its name; known are .gml, .citygml, .geojson and .shp";
  draft.GetInstances().m_strPoints = draft.Complete(strValue);
  draft.GetInstances().m_nPointsLine = draft.m_nLine;
  return std::string();
}

std::string SetWhere(QXSceneDraft& draft, std::string const& strValue) {
  auto const trim = [](std::string const& strText) {
    std::size_t const nFirst = strText.find_first_not_of(" \t");
    if (nFirst == std::string::npos) return std::string();
    return strText.substr(nFirst, strText.find_last_not_of(" \t") + 1 - nFirst);
  };
  std::size_t const nSign = strValue.find('=');
  QXSceneInstances& instances = draft.GetInstances();
  if (nSign != std::string::npos) {
    instances.m_strWhere = trim(strValue.substr(0, nSign));
    instances.m_strWhereValue = trim(strValue.substr(nSign + 1));
  }
  if (!instances.m_strWhere.empty() && !instances.m_strWhereValue.empty()) return std::string();
  return "'" + strValue + "' is no condition; write it as where = kind = oak, with an attribute and its value";
}

std::string SetHeading(QXSceneDraft& draft, std::string const& strValue) {
  QXSceneInstances& instances = draft.GetInstances();
  instances.m_bRandomHeading = strValue == "random";
  if (instances.m_bRandomHeading || SetAngle(strValue, instances.m_dHeading).empty()) return std::string();
  return "'" + strValue + "' is no number from -360 to 360 and not the word random; write one of them";
}

std::string SetScale(QXSceneDraft& draft, std::string const& strValue) {
  QXSceneInstances& instances = draft.GetInstances();
  std::string const strProblem = ReadLengths(strValue, instances.m_dScale[0], instances.m_dScale[1]);
  if (!strProblem.empty())
    return "'" + strValue + "' is no scale; write a factor above 0, or two, as 0.8, 1.2, for any between them";
  if (instances.m_dScale[0] > instances.m_dScale[1]) std::swap(instances.m_dScale[0], instances.m_dScale[1]);
  return std::string();
}

/// Keys that are of no use without map data.
std::string CheckPointKeys(QXSceneInstances const& instances) {
  bool const bPointKeys = !instances.m_strFeature.empty() || !instances.m_strWhere.empty() ||
                          !instances.m_strHeadingFrom.empty() || !instances.m_strScaleFrom.empty() ||
                          instances.m_dSpread > 0.0 || instances.m_bZ;
  if (instances.m_strPoints.empty())
    return bPointKeys ? "feature, where, heading-from, scale-from, spread and z are about points of map data; add "
                        "points = FILE, or take them away"
                      : "";
  bool const bCityGml = FindGeoFormat(instances.m_strPoints) == QXGeoFormat::CityGml;
  if (bCityGml && instances.m_strFeature.empty())
    return "CityGML has points of many kinds; add feature = with the element whose features are meant, as "
           "SolitaryVegetationObject";
  if (!bCityGml && !instances.m_strFeature.empty())
    return "feature is about elements of CityGML; use where = attribute = value, or take it away";
  if (instances.m_dSpread > 0.0 && FindGeoFormat(instances.m_strPoints) == QXGeoFormat::Shapefile)
    return "spread is about areas, and only shapefiles of points are read; take it away";
  return std::string();
}

std::string End(QXSceneDraft& draft) {
  QXSceneInstances const& instances = draft.GetInstances();
  if (instances.m_vecPlaces.empty() && instances.m_strPlaces.empty() && instances.m_strPoints.empty())
    return "[instances] has no places; add place = x, y, z as often as needed, places = FILE or points = FILE";
  return CheckPointKeys(instances);
}

/// Keys of where the instances stand.
std::vector<QXSceneKey> MakePlaceKeys() {
  auto const setFeature = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetInstances().m_strFeature = strValue;
    return std::string();
  };
  auto const setHeadingFrom = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetInstances().m_strHeadingFrom = strValue;
    return std::string();
  };
  auto const setScaleFrom = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetInstances().m_strScaleFrom = strValue;
    return std::string();
  };
  auto const setSpread = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetInstances().m_dSpread);
  };
  auto const setPosition = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetInstances().m_vecPosition);
  };
  auto const setZ = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetInstances().m_bZ = true;
    return ReadNumber(strValue, -MaxSceneCoordinate, MaxSceneCoordinate, draft.GetInstances().m_dZ);
  };
  return {{"file", true, SetFile}, {"place", false, AddPlace, nullptr, true}, {"places", false, SetPlaces},
      {"points", false, SetPoints}, {"feature", false, setFeature}, {"where", false, SetWhere},
      {"heading-from", false, setHeadingFrom}, {"scale-from", false, setScaleFrom}, {"spread", false, setSpread},
      {"z", false, setZ}, {"position", false, setPosition}};
}

}  // namespace

QXSceneSection MakeInstancesSection() {
  auto const setSeed = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadWholeNumber(strValue, 0, 1000000000, draft.GetInstances().m_nSeed);
  };
  auto const setColor = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadColor(strValue, draft.GetInstances().m_nColor);
  };
  auto const setDistance = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetInstances().m_dDistance);
  };
  auto const setUp = [](QXSceneDraft& draft, std::string const& strValue) {
    return SetUp(strValue, draft.GetInstances().m_eUp);
  };
  std::vector<QXSceneKey> vecKeys = MakePlaceKeys();
  vecKeys.insert(
      vecKeys.end(), {{"heading", false, SetHeading}, {"scale", false, SetScale}, {"seed", false, setSeed},
                         {"color", false, setColor}, {"distance", false, setDistance}, {"up", false, setUp}});
  return {"instances", true, Begin, End, vecKeys};
}

}  // namespace QXApp
