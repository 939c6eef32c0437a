#include <apps/qx3d/QXSceneSections.h>

#include <apps/qx3d/QXSceneValue.h>
#include <apps/qx3d/geo/QXGeoNames.h>

namespace QXApp {

namespace {

std::string NothingToDo(QXSceneDraft&) {
  return std::string();
}

QXSceneSection MakeSceneSection() {
  auto const setBackground = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.m_Scene.m_bBackground = true;
    return ReadColor(strValue, draft.m_Scene.m_nBackground);
  };
  auto const setGround = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.m_Scene.m_bGround);
  };
  auto const setSun = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.m_Scene.m_bSun);
  };
  auto const setAmbient = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.m_Scene.m_bAmbient = true;
    return ReadColor(strValue, draft.m_Scene.m_nAmbient);
  };
  return {"scene", false, [](QXSceneDraft&, int) { return std::string(); }, NothingToDo,
      {{"background", false, setBackground}, {"ground", false, setGround}, {"sun", false, setSun},
          {"ambient", false, setAmbient}}};
}

std::string BeginCamera(QXSceneDraft& draft, int nLine) {
  draft.m_Scene.m_Camera.m_nLine = nLine;
  return std::string();
}

std::string EndCamera(QXSceneDraft& draft) {
  QXSceneCamera const& camera = draft.m_Scene.m_Camera;
  if (camera.m_bEye && camera.m_bLook && camera.m_vecEye == camera.m_vecLook)
    return "eye and look are the same point; move one of them";
  return std::string();
}

QXSceneSection MakeCameraSection() {
  auto const setEye = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.m_Scene.m_Camera.m_bEye = true;
    return ReadPosition(strValue, draft.m_Scene.m_Camera.m_vecEye);
  };
  auto const setLook = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.m_Scene.m_Camera.m_bLook = true;
    return ReadPosition(strValue, draft.m_Scene.m_Camera.m_vecLook);
  };
  auto const setFov = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadNumber(strValue, 1.0, 150.0, draft.m_Scene.m_Camera.m_dFieldOfView);
  };
  return {"camera", false, BeginCamera, EndCamera,
      {{"eye", false, setEye}, {"look", false, setLook}, {"field-of-view", false, setFov}}};
}

std::string BeginModel(QXSceneDraft& draft, int nLine) {
  return AppendPlaced(draft.m_Scene.m_vecModels, nLine);
}

std::string SetModelFile(QXSceneDraft& draft, std::string const& strValue) {
  std::string const strProblem = CheckModelName(strValue);
  if (!strProblem.empty()) return strProblem;
  draft.GetModel().m_strFile = draft.Complete(strValue);
  draft.GetModel().m_nLine = draft.m_nLine;
  return std::string();
}

std::string SetModelUp(QXSceneDraft& draft, std::string const& strValue) {
  return SetUp(strValue, draft.GetModel().m_eUp);
}

QXSceneSection MakeModelSection() {
  auto const setPosition = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetModel().m_vecPosition);
  };
  auto const setHeading = [](QXSceneDraft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetModel().m_dHeading);
  };
  auto const setPitch = [](QXSceneDraft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetModel().m_dPitch);
  };
  auto const setRoll = [](QXSceneDraft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetModel().m_dRoll);
  };
  auto const setScale = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetModel().m_dScale);
  };
  return {"model", true, BeginModel, NothingToDo,
      {{"file", true, SetModelFile}, {"position", false, setPosition}, {"heading", false, setHeading},
          {"pitch", false, setPitch}, {"roll", false, setRoll}, {"scale", false, setScale}, {"up", false, SetModelUp}}};
}

std::string BeginIcon(QXSceneDraft& draft, int nLine) {
  return AppendPlaced(draft.m_Scene.m_vecIcons, nLine);
}

std::string SetIconUnit(QXSceneDraft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"pixels", "world"}, nWord);
  draft.GetIcon().m_eUnit = nWord == 0 ? QXIconUnit::Pixels : QXIconUnit::World;
  return strProblem;
}

std::string SetIconTolerance(QXSceneDraft& draft, std::string const& strValue) {
  return ReadWholeNumber(strValue, 0, 255, draft.GetIcon().m_nTolerance);
}

std::string EndIcon(QXSceneDraft& draft) {
  QXSceneIcon const& icon = draft.GetIcon();
  if (!icon.m_strImage.empty() && !icon.m_strSymbol.empty())
    return "an icon shows an image or a symbol; leave one of the two out";
  if (icon.m_bColorKey && !icon.m_strSymbol.empty())
    return "color-key is about an image; take it away, a symbol is clear around its model";
  if (icon.m_eUnit == QXIconUnit::World && icon.m_dWidth == 0.0)
    return "unit = world asks for a size in the world's units; add size = 20, or take unit away";
  if (icon.m_nTolerance > 0 && !icon.m_bColorKey)
    return "tolerance is about a colour key; add color-key = #FF00FF, or take tolerance away";
  return std::string();
}

QXSceneSection MakeIconSection() {
  auto const setImage = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetIcon().m_strImage = draft.Complete(strValue);
    draft.GetIcon().m_nLine = draft.m_nLine;
    return std::string();
  };
  auto const setSymbol = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetIcon().m_strSymbol = strValue;
    draft.GetIcon().m_nLine = draft.m_nLine;
    return std::string();
  };
  auto const setPosition = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetIcon().m_vecPosition);
  };
  auto const setSize = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLengths(strValue, draft.GetIcon().m_dWidth, draft.GetIcon().m_dHeight);
  };
  auto const setColorKey = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetIcon().m_bColorKey = true;
    return ReadColor(strValue, draft.GetIcon().m_nColorKey);
  };
  return {"icon", true, BeginIcon, EndIcon,
      {{"image", true, setImage, "symbol"}, {"symbol", false, setSymbol}, {"position", true, setPosition},
          {"size", false, setSize}, {"unit", false, SetIconUnit}, {"color-key", false, setColorKey},
          {"tolerance", false, SetIconTolerance}}};
}

std::string BeginSymbol(QXSceneDraft& draft, int nLine) {
  return AppendPlaced(draft.m_Scene.m_vecSymbols, nLine);
}

std::string SetSymbolFile(QXSceneDraft& draft, std::string const& strValue) {
  if (IsSceneName(strValue)) return "'" + strValue + "' is a scene, and a symbol shows one model; name a model";
  if (IsGeoName(strValue)) return "'" + strValue + "' is map data, and a symbol shows one model; name a model";
  if (IsStaticName(strValue))
    return "'" + strValue + "' is static geometry, and a symbol shows one model; name a model";
  draft.GetSymbol().m_strFile = draft.Complete(strValue);
  draft.GetSymbol().m_nLine = draft.m_nLine;
  return std::string();
}

QXSceneSection MakeSymbolSection() {
  auto const setName = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetSymbol().m_strName = strValue;
    return std::string();
  };
  auto const setPixels = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadWholeNumber(strValue, 8, 512, draft.GetSymbol().m_nPixels);
  };
  auto const setHeading = [](QXSceneDraft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetSymbol().m_dHeading);
  };
  auto const setElevation = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadNumber(strValue, 0.0, 90.0, draft.GetSymbol().m_dElevation);
  };
  auto const setUp = [](QXSceneDraft& draft, std::string const& strValue) {
    return SetUp(strValue, draft.GetSymbol().m_eUp);
  };
  return {"symbol", true, BeginSymbol, NothingToDo,
      {{"name", true, setName}, {"file", true, SetSymbolFile}, {"pixels", false, setPixels},
          {"heading", false, setHeading}, {"elevation", false, setElevation}, {"up", false, setUp}}};
}

std::string BeginLabel(QXSceneDraft& draft, int nLine) {
  draft.m_bData = false;
  return AppendPlaced(draft.m_Scene.m_vecLabels, nLine);
}

std::string SetLabelAlign(QXSceneDraft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue,
      {"top-left", "top", "top-right", "left", "center", "right", "bottom-left", "bottom", "bottom-right"}, nWord);
  draft.GetLabel().m_nAlignX = static_cast<int>(nWord % 3) - 1;
  draft.GetLabel().m_nAlignY = 1 - static_cast<int>(nWord / 3);
  return strProblem;
}

std::string SetLabelDepth(QXSceneDraft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"on", "off"}, nWord);
  draft.GetLabel().m_bDepth = nWord == 0;
  return strProblem;
}

std::string SetLabelFacing(QXSceneDraft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"camera", "flat"}, nWord);
  draft.GetLabel().m_eFacing = nWord == 0 ? QXLabelFacing::Camera : QXLabelFacing::Flat;
  return strProblem;
}

std::string SetLabelHalo(QXSceneDraft& draft, std::string const& strValue) {
  draft.GetLabel().m_bHalo = true;
  return ReadColor(strValue, draft.GetLabel().m_nHalo);
}

std::string EndLabel(QXSceneDraft& draft) {
  QXSceneLabel const& label = draft.GetLabel();
  bool const bFlat = label.m_eFacing == QXLabelFacing::Flat;
  if (bFlat && label.m_dHeight == 0.0)
    return "facing = flat asks for a height in the world's units; add height = 5, or take facing away";
  if (!bFlat && label.m_dHeight > 0.0)
    return "height is about a label that lies in the world; add facing = flat, or take height away";
  return std::string();
}

/// Keys of the letters themselves.
void AddLetterKeys(std::vector<QXSceneKey>& vecKeys) {
  auto const setFont = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetLabel().m_strFont = strValue;
    return std::string();
  };
  auto const setSize = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadWholeNumber(strValue, 1, MaxLabelSize, draft.GetLabel().m_nSize);
  };
  auto const setBold = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.GetLabel().m_bBold);
  };
  auto const setItalic = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.GetLabel().m_bItalic);
  };
  auto const setColor = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadColor(strValue, draft.GetLabel().m_nColor);
  };
  vecKeys.insert(
      vecKeys.end(), {{"font", false, setFont}, {"size", false, setSize}, {"bold", false, setBold},
                         {"italic", false, setItalic}, {"color", false, setColor}, {"halo", false, SetLabelHalo}});
}

QXSceneSection MakeLabelSection() {
  auto const setText = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetLabel().m_strText = strValue;
    draft.GetLabel().m_nLine = draft.m_nLine;
    return std::string();
  };
  auto const setPosition = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetLabel().m_vecPosition);
  };
  auto const setRotation = [](QXSceneDraft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetLabel().m_dRotation);
  };
  auto const setOffset = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadOffset(strValue, draft.GetLabel().m_dOffset);
  };
  auto const setHeight = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetLabel().m_dHeight);
  };
  std::vector<QXSceneKey> vecKeys{{"text", true, setText}, {"position", true, setPosition}};
  AddLetterKeys(vecKeys);
  vecKeys.insert(vecKeys.end(),
      {{"rotation", false, setRotation}, {"offset", false, setOffset}, {"align", false, SetLabelAlign},
          {"depth", false, SetLabelDepth}, {"facing", false, SetLabelFacing}, {"height", false, setHeight}});
  return {"label", true, BeginLabel, EndLabel, vecKeys};
}

std::string BeginData(QXSceneDraft& draft, int nLine) {
  draft.m_bData = true;
  return AppendPlaced(draft.m_Scene.m_vecData, nLine);
}

std::string SetDataFile(QXSceneDraft& draft, std::string const& strValue) {
  if (!IsGeoName(strValue))
    return "'" + strValue + "' is no map data by its name; known are .gml, .citygml, .geojson and .shp";
  draft.GetData().m_strFile = draft.Complete(strValue);
  draft.GetData().m_nLine = draft.m_nLine;
  return std::string();
}

std::string SetDataFacing(QXSceneDraft& draft, std::string const& strValue) {
  draft.GetData().m_bFacing = true;
  return SetLabelFacing(draft, strValue);
}

std::string SetDataAlign(QXSceneDraft& draft, std::string const& strValue) {
  draft.GetData().m_bAlign = true;
  return SetLabelAlign(draft, strValue);
}

std::string EndData(QXSceneDraft& draft) {
  QXSceneData const& data = draft.GetData();
  if (data.m_bFacing && data.m_Style.m_eFacing == QXLabelFacing::Camera && data.m_Style.m_dHeight > 0.0)
    return "height is about labels that lie in the world; take it or facing = camera away";
  if (!data.m_bLabels && !data.m_bBuildings)
    return "labels = no and buildings = no leave nothing; take one of them away";
  return std::string();
}

/// Keys of what is taken from the file and where it goes.
std::vector<QXSceneKey> MakeDataKeys() {
  auto const setLabel = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetData().m_strLabel = strValue;
    return std::string();
  };
  auto const setAngle = [](QXSceneDraft& draft, std::string const& strValue) {
    draft.GetData().m_strAngle = strValue;
    return std::string();
  };
  auto const setLabels = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.GetData().m_bLabels);
  };
  auto const setBuildings = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.GetData().m_bBuildings);
  };
  auto const setPosition = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetData().m_vecPosition);
  };
  auto const setLift = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadNumber(strValue, -MaxSceneCoordinate, MaxSceneCoordinate, draft.GetData().m_dLift);
  };
  return {{"file", true, SetDataFile}, {"label", false, setLabel}, {"angle", false, setAngle},
      {"labels", false, setLabels}, {"buildings", false, setBuildings}, {"position", false, setPosition},
      {"lift", false, setLift}};
}

QXSceneSection MakeDataSection() {
  std::vector<QXSceneKey> vecKeys = MakeDataKeys();
  AddLetterKeys(vecKeys);
  auto const setOffset = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadOffset(strValue, draft.GetLabel().m_dOffset);
  };
  auto const setHeight = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetLabel().m_dHeight);
  };
  vecKeys.insert(
      vecKeys.end(), {{"offset", false, setOffset}, {"align", false, SetDataAlign}, {"depth", false, SetLabelDepth},
                         {"facing", false, SetDataFacing}, {"height", false, setHeight}});
  return {"data", true, BeginData, EndData, vecKeys};
}

QXSceneSection MakeStaticSection() {
  auto const begin = [](QXSceneDraft& draft, int nLine) { return AppendPlaced(draft.m_Scene.m_vecStatics, nLine); };
  auto const setFile = [](QXSceneDraft& draft, std::string const& strValue) {
    if (!IsStaticName(strValue)) return "'" + strValue + "' is no static geometry by its name; such files end in .qsg";
    draft.GetStatic().m_strFile = draft.Complete(strValue);
    draft.GetStatic().m_nLine = draft.m_nLine;
    return std::string();
  };
  auto const setPosition = [](QXSceneDraft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetStatic().m_vecPosition);
  };
  return {"static", true, begin, NothingToDo, {{"file", true, setFile}, {"position", false, setPosition}}};
}

}  // namespace

std::string SetAngle(std::string const& strValue, double& dAngle) {
  return ReadNumber(strValue, -360.0, 360.0, dAngle);
}

std::string SetUp(std::string const& strValue, UpAxis& eUp) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"auto", "y", "z"}, nWord);
  eUp = nWord == 0 ? UpAxis::Auto : (nWord == 1 ? UpAxis::Y : UpAxis::Z);
  return strProblem;
}

std::string CheckModelName(std::string const& strName) {
  if (IsSceneName(strName)) return "'" + strName + "' is a scene, and a scene holds no scenes; name a model";
  if (IsGeoName(strName)) return "'" + strName + "' is map data; name it in a section [data]";
  if (IsStaticName(strName)) return "'" + strName + "' is static geometry; name it in a section [static]";
  return std::string();
}

std::vector<QXSceneSection> MakeSceneSections() {
  return {MakeSceneSection(), MakeCameraSection(), MakeModelSection(), MakeInstancesSection(), MakeIconSection(),
      MakeSymbolSection(), MakeLabelSection(), MakeDataSection(), MakeStaticSection(), MakeLightSection(),
      MakeFogSection(), MakeSkySection(), MakeOceanSection()};
}

}  // namespace QXApp
