#include <apps/qx3d/QXSceneSections.h>
#include <apps/qx3d/QXSceneValue.h>

#include <algorithm>

namespace QXApp {

namespace {

std::string SetLightType(QXSceneDraft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"point", "directional", "spot"}, nWord);
  draft.GetLight().m_eKind = static_cast<QXLightKind>(nWord);
  return strProblem;
}

std::string SetAttenuation(QXSceneDraft& draft, std::string const& strValue) {
  std::vector<double> vecNumbers;
  std::string const strProblem = ReadNumbers(strValue, 3, 3, 0.0, MaxSceneCoordinate, vecNumbers);
  std::copy(vecNumbers.begin(), vecNumbers.end(), draft.GetLight().m_dAttenuation);
  return strProblem;
}

/// Keys of where a light is and which way it goes.
std::vector<QXSceneKey> MakeLightPlaceKeys() {
  auto const setPosition = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetLight().m_bPosition = true;
    return ReadPosition(strValue, draft.GetLight().m_vecPosition);
  };
  auto const setDirection = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetLight().m_bDirection = true;
    return ReadPosition(strValue, draft.GetLight().m_vecDirection);
  };
  auto const setTarget = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetLight().m_bTarget = true;
    return ReadPosition(strValue, draft.GetLight().m_vecTarget);
  };
  auto const setInner = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetLight().m_bCone = true;
    return ReadNumber(strValue, 0.0, 180.0, draft.GetLight().m_dInner);
  };
  auto const setOuter = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetLight().m_bCone = true;
    return ReadNumber(strValue, 0.0, 180.0, draft.GetLight().m_dOuter);
  };
  auto const setFalloff = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetLight().m_bCone = true;
    return ReadNumber(strValue, 0.0, 1000.0, draft.GetLight().m_dFalloff);
  };
  return {{"type", false, SetLightType}, {"position", false, setPosition}, {"direction", false, setDirection},
      {"target", false, setTarget}, {"inner", false, setInner}, {"outer", false, setOuter},
      {"falloff", false, setFalloff}};
}

/// What a light of each type needs and has no use for.
std::string EndLight(QXSceneDraft& draft) {
  QXSceneLight const& light = draft.GetLight();
  bool const bTurned = light.m_bDirection || light.m_bTarget;
  if (light.m_eKind == QXLightKind::Directional) {
    if (!light.m_bDirection || light.m_bTarget)
      return "a directional light is the same everywhere; give it direction = x, y, z, the way that it goes, and no "
             "target";
    if (light.m_bPosition || light.m_dRange > 0.0)
      return "a directional light comes from far away; take position and range away";
  } else if (!light.m_bPosition) {
    return "a light that is not directional stands somewhere; add position = x, y, z";
  }
  if (light.m_eKind == QXLightKind::Point && bTurned)
    return "a point light shines to all sides; take direction and target away, or add type = spot";
  if (light.m_eKind == QXLightKind::Spot && light.m_bDirection == light.m_bTarget)
    return "a spotlight has a direction or a target; give one of the two";
  if (light.m_eKind != QXLightKind::Spot && light.m_bCone)
    return "inner, outer and falloff are about spotlights; add type = spot, or take them away";
  if (light.m_dInner > light.m_dOuter)
    return "the inner angle of a spotlight is not above the outer one; they are 30 and 45 unless given";
  if (light.m_bDirection && light.m_vecDirection == QXC::QXVector3d())
    return "the direction is no direction; give one number other than 0";
  if (light.m_bTarget && light.m_vecTarget == light.m_vecPosition)
    return "position and target are the same point; move one of them";
  return std::string();
}

std::string SetFogMode(QXSceneDraft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"linear", "exp", "exp2"}, nWord);
  constexpr QXFogKind Kinds[] = {QXFogKind::Linear, QXFogKind::Exponential, QXFogKind::ExponentialSquared};
  draft.m_Scene.m_Fog.m_eKind = Kinds[nWord];
  return strProblem;
}

std::string EndFog(QXSceneDraft& draft) {
  QXSceneFog const& fog = draft.m_Scene.m_Fog;
  bool const bLinear = fog.m_eKind == QXFogKind::Linear;
  if (bLinear && fog.m_dDensity > 0.0) return "density is about exp and exp2; take it away, or change the mode";
  if (!bLinear && (fog.m_dStart > 0.0 || fog.m_dEnd > 0.0))
    return "start and end are about linear fog; take them away, or change the mode";
  if (!bLinear && fog.m_dDensity == 0.0) return "mode exp and exp2 ask for a density; add density = 0.001";
  if (bLinear && !(fog.m_dEnd > fog.m_dStart))
    return "linear fog ends behind its start; add end = with a distance above that of start, which is 0 unless given";
  return std::string();
}

std::string SetClouds(QXSceneDraft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"none", "cumulus", "stratus", "cirrus", "cumulonimbus"}, nWord);
  draft.m_Scene.m_Sky.m_nClouds = static_cast<int>(nWord);
  return strProblem;
}

std::string SetCondition(QXSceneDraft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"clear", "fair", "overcast", "storm"}, nWord);
  draft.m_Scene.m_Sky.m_nCondition = static_cast<int>(nWord) + 1;
  return strProblem;
}

std::string SetWind(QXSceneDraft& draft, std::string const& strValue) {
  std::vector<double> vecNumbers;
  if (!ReadNumbers(strValue, 2, 2, 0.0, 360.0, vecNumbers).empty() || vecNumbers[1] > 100.0)
    return "'" + strValue +
           "' is no wind; write the degrees from which it comes, clockwise from north, and its speed "
           "in units a second, 100 at most, as 270, 8";
  draft.m_Scene.m_Sky.m_dWindFrom = vecNumbers[0];
  draft.m_Scene.m_Sky.m_dWindSpeed = vecNumbers[1];
  return std::string();
}

std::string NothingWrong(QXSceneDraft&) {
  return std::string();
}

}  // namespace

QXSceneSection MakeLightSection() {
  auto const begin = [](QXSceneDraft& draft, int nLine) {
    return AppendPlaced(draft.m_Scene.m_vecLights, nLine, MaxSceneLights);
  };
  auto const setColor = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadColor(strValue, draft.GetLight().m_nColor);
  };
  auto const setRange = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetLight().m_dRange);
  };
  auto const setPower = [](QXSceneDraft& draft, std::string const& strValue) {
    std::string const strProblem = ReadLength(strValue, draft.GetLight().m_dPower);
    return strProblem.empty() ? strProblem : "'" + strValue + "' is no power; write a factor above 0, as 2.5";
  };
  std::vector<QXSceneKey> vecKeys = MakeLightPlaceKeys();
  vecKeys.insert(vecKeys.end(), {{"color", false, setColor}, {"range", false, setRange},
                                    {"attenuation", false, SetAttenuation}, {"power", false, setPower}});
  return {"light", true, begin, EndLight, vecKeys};
}

QXSceneSection MakeFogSection() {
  auto const begin = [](QXSceneDraft& draft, int nLine) {
    draft.m_Scene.m_Fog.m_nLine = nLine;
    return std::string();
  };
  auto const setColor = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.m_Scene.m_Fog.m_bColor = true;
    return ReadColor(strValue, draft.m_Scene.m_Fog.m_nColor);
  };
  auto const setDensity = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.m_Scene.m_Fog.m_dDensity);
  };
  auto const setStart = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadNumber(strValue, 0.0, MaxSceneCoordinate, draft.m_Scene.m_Fog.m_dStart);
  };
  auto const setEnd = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.m_Scene.m_Fog.m_dEnd);
  };
  return {"fog", false, begin, EndFog,
      {{"mode", true, SetFogMode}, {"color", false, setColor}, {"density", false, setDensity},
          {"start", false, setStart}, {"end", false, setEnd}}};
}

QXSceneSection MakeSkySection() {
  auto const begin = [](QXSceneDraft& draft, int nLine) {
    draft.m_Scene.m_Sky.m_bSky = true;
    draft.m_Scene.m_Sky.m_nLine = nLine;
    return std::string();
  };
  auto const setTime = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadTime(strValue, draft.m_Scene.m_Sky.m_Time);
  };
  auto const setHeight = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.m_Scene.m_Sky.m_dCloudHeight);
  };
  return {"sky", false, begin, NothingWrong,
      {{"time", true, setTime}, {"condition", false, SetCondition}, {"clouds", false, SetClouds},
          {"cloud-height", false, setHeight}, {"wind", false, SetWind}}};
}

QXSceneSection MakeOceanSection() {
  auto const begin = [](QXSceneDraft& draft, int nLine) {
    draft.m_Scene.m_Ocean.m_bOcean = true;
    draft.m_Scene.m_Ocean.m_nLine = nLine;
    return std::string();
  };
  auto const setLevel = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadNumber(strValue, -MaxSceneCoordinate, MaxSceneCoordinate, draft.m_Scene.m_Ocean.m_dLevel);
  };
  auto const setBeaufort = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadNumber(strValue, 0.0, 12.0, draft.m_Scene.m_Ocean.m_dBeaufort);
  };
  auto const setWindFrom = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadNumber(strValue, 0.0, 360.0, draft.m_Scene.m_Ocean.m_dWindFrom);
  };
  return {"ocean", false, begin, NothingWrong,
      {{"level", false, setLevel}, {"beaufort", false, setBeaufort}, {"wind-from", false, setWindFrom}}};
}

}  // namespace QXApp
