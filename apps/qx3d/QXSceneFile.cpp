#include <apps/qx3d/QXSceneFile.h>

#include <apps/qx3d/QXSceneValue.h>
#include <apps/qx3d/QXWholeFile.h>
#include <apps/qx3d/geo/QXGeoNames.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

namespace QXApp {

namespace {

/// A hundred thousand icons with comments have a tenth of it.
constexpr std::uintmax_t MaxFileMiB = 128;

/// The scene while its file is read.
struct Draft {
  QXSceneFile m_Scene;
  QXSceneProblems& m_Problems;
  /// Of the value that is taken over.
  int m_nLine = 0;

  std::string Complete(std::string const& strName) const {
    return (std::filesystem::path(m_Scene.m_strPath).parent_path() / strName).string();
  }
  QXSceneModel& GetModel() { return m_Scene.m_vecModels.back(); }
  QXSceneIcon& GetIcon() { return m_Scene.m_vecIcons.back(); }
  QXSceneSymbol& GetSymbol() { return m_Scene.m_vecSymbols.back(); }
  QXSceneStatic& GetStatic() { return m_Scene.m_vecStatics.back(); }
  QXSceneData& GetData() { return m_Scene.m_vecData.back(); }
  /// The label of the section, or the style of its many labels.
  QXSceneLabel& GetLabel() { return m_bData ? GetData().m_Style : m_Scene.m_vecLabels.back(); }
  bool m_bData = false;
};

/// Takes a value over. @return  empty, or what was expected
using SetFunction = std::string (*)(Draft& draft, std::string const& strValue);

struct Key {
  char const* m_szName;
  bool m_bRequired;
  SetFunction m_pSet;
  /// Another key that may stand in its place.
  char const* m_szInstead = nullptr;
};

/// A kind of section. Adding one to the format is an entry in the table below.
struct Section {
  char const* m_szName;
  /// Whether the file may hold many of it.
  bool m_bMany;
  /// Makes what the keys are set on. @return  empty, or why there can be none
  std::string (*m_pBegin)(Draft& draft, int nLine);
  /// Looks at the keys together. @return  empty, or what is wrong with them
  std::string (*m_pEnd)(Draft& draft);
  std::vector<Key> m_vecKeys;
};

template <class T>
std::string AppendPlaced(std::vector<T>& vecPlaced, int nLine) {
  if (vecPlaced.size() == MaxScenePlacements)
    return "a scene has at most " + std::to_string(MaxScenePlacements) +
           " of these; this one and all further ones are left out, so make two scenes of it";
  vecPlaced.emplace_back();
  vecPlaced.back().m_nLine = nLine;
  return std::string();
}

std::string SetAngle(std::string const& strValue, double& dAngle) {
  return ReadNumber(strValue, -360.0, 360.0, dAngle);
}

std::string NothingToDo(Draft&) {
  return std::string();
}

Section MakeSceneSection() {
  auto const setBackground = [](Draft& draft, std::string const& strValue) {
    draft.m_Scene.m_bBackground = true;
    return ReadColor(strValue, draft.m_Scene.m_nBackground);
  };
  auto const setGround = [](Draft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.m_Scene.m_bGround);
  };
  return {"scene", false, [](Draft&, int) { return std::string(); }, NothingToDo,
      {{"background", false, setBackground}, {"ground", false, setGround}}};
}

std::string BeginCamera(Draft& draft, int nLine) {
  draft.m_Scene.m_Camera.m_nLine = nLine;
  return std::string();
}

std::string EndCamera(Draft& draft) {
  QXSceneCamera const& camera = draft.m_Scene.m_Camera;
  if (camera.m_bEye && camera.m_bLook && camera.m_vecEye == camera.m_vecLook)
    return "eye and look are the same point; move one of them";
  return std::string();
}

Section MakeCameraSection() {
  auto const setEye = [](Draft& draft, std::string const& strValue) {
    draft.m_Scene.m_Camera.m_bEye = true;
    return ReadPosition(strValue, draft.m_Scene.m_Camera.m_vecEye);
  };
  auto const setLook = [](Draft& draft, std::string const& strValue) {
    draft.m_Scene.m_Camera.m_bLook = true;
    return ReadPosition(strValue, draft.m_Scene.m_Camera.m_vecLook);
  };
  auto const setFov = [](Draft& draft, std::string const& strValue) {
    return ReadNumber(strValue, 1.0, 150.0, draft.m_Scene.m_Camera.m_dFieldOfView);
  };
  return {"camera", false, BeginCamera, EndCamera,
      {{"eye", false, setEye}, {"look", false, setLook}, {"field-of-view", false, setFov}}};
}

std::string BeginModel(Draft& draft, int nLine) {
  return AppendPlaced(draft.m_Scene.m_vecModels, nLine);
}

std::string SetModelFile(Draft& draft, std::string const& strValue) {
  if (IsSceneName(strValue)) return "'" + strValue + "' is a scene, and a scene holds no scenes; name a model";
  if (IsGeoName(strValue)) return "'" + strValue + "' is map data; name it in a section [data]";
  if (IsStaticName(strValue)) return "'" + strValue + "' is static geometry; name it in a section [static]";
  draft.GetModel().m_strFile = draft.Complete(strValue);
  draft.GetModel().m_nLine = draft.m_nLine;
  return std::string();
}

std::string SetUp(std::string const& strValue, UpAxis& eUp) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"auto", "y", "z"}, nWord);
  eUp = nWord == 0 ? UpAxis::Auto : (nWord == 1 ? UpAxis::Y : UpAxis::Z);
  return strProblem;
}

std::string SetModelUp(Draft& draft, std::string const& strValue) {
  return SetUp(strValue, draft.GetModel().m_eUp);
}

Section MakeModelSection() {
  auto const setPosition = [](Draft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetModel().m_vecPosition);
  };
  auto const setHeading = [](Draft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetModel().m_dHeading);
  };
  auto const setPitch = [](Draft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetModel().m_dPitch);
  };
  auto const setRoll = [](Draft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetModel().m_dRoll);
  };
  auto const setScale = [](Draft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetModel().m_dScale);
  };
  return {"model", true, BeginModel, NothingToDo,
      {{"file", true, SetModelFile}, {"position", false, setPosition}, {"heading", false, setHeading},
          {"pitch", false, setPitch}, {"roll", false, setRoll}, {"scale", false, setScale}, {"up", false, SetModelUp}}};
}

std::string BeginIcon(Draft& draft, int nLine) {
  return AppendPlaced(draft.m_Scene.m_vecIcons, nLine);
}

std::string SetIconUnit(Draft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"pixels", "world"}, nWord);
  draft.GetIcon().m_eUnit = nWord == 0 ? QXIconUnit::Pixels : QXIconUnit::World;
  return strProblem;
}

std::string SetIconTolerance(Draft& draft, std::string const& strValue) {
  return ReadWholeNumber(strValue, 0, 255, draft.GetIcon().m_nTolerance);
}

std::string EndIcon(Draft& draft) {
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

Section MakeIconSection() {
  auto const setImage = [](Draft& draft, std::string const& strValue) {
    draft.GetIcon().m_strImage = draft.Complete(strValue);
    draft.GetIcon().m_nLine = draft.m_nLine;
    return std::string();
  };
  auto const setSymbol = [](Draft& draft, std::string const& strValue) {
    draft.GetIcon().m_strSymbol = strValue;
    draft.GetIcon().m_nLine = draft.m_nLine;
    return std::string();
  };
  auto const setPosition = [](Draft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetIcon().m_vecPosition);
  };
  auto const setSize = [](Draft& draft, std::string const& strValue) {
    return ReadLengths(strValue, draft.GetIcon().m_dWidth, draft.GetIcon().m_dHeight);
  };
  auto const setColorKey = [](Draft& draft, std::string const& strValue) {
    draft.GetIcon().m_bColorKey = true;
    return ReadColor(strValue, draft.GetIcon().m_nColorKey);
  };
  return {"icon", true, BeginIcon, EndIcon,
      {{"image", true, setImage, "symbol"}, {"symbol", false, setSymbol}, {"position", true, setPosition},
          {"size", false, setSize}, {"unit", false, SetIconUnit}, {"color-key", false, setColorKey},
          {"tolerance", false, SetIconTolerance}}};
}

std::string BeginSymbol(Draft& draft, int nLine) {
  return AppendPlaced(draft.m_Scene.m_vecSymbols, nLine);
}

std::string SetSymbolFile(Draft& draft, std::string const& strValue) {
  if (IsSceneName(strValue)) return "'" + strValue + "' is a scene, and a symbol shows one model; name a model";
  if (IsGeoName(strValue)) return "'" + strValue + "' is map data, and a symbol shows one model; name a model";
  if (IsStaticName(strValue))
    return "'" + strValue + "' is static geometry, and a symbol shows one model; name a model";
  draft.GetSymbol().m_strFile = draft.Complete(strValue);
  draft.GetSymbol().m_nLine = draft.m_nLine;
  return std::string();
}

Section MakeSymbolSection() {
  auto const setName = [](Draft& draft, std::string const& strValue) {
    draft.GetSymbol().m_strName = strValue;
    return std::string();
  };
  auto const setPixels = [](Draft& draft, std::string const& strValue) {
    return ReadWholeNumber(strValue, 8, 512, draft.GetSymbol().m_nPixels);
  };
  auto const setHeading = [](Draft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetSymbol().m_dHeading);
  };
  auto const setElevation = [](Draft& draft, std::string const& strValue) {
    return ReadNumber(strValue, 0.0, 90.0, draft.GetSymbol().m_dElevation);
  };
  auto const setUp = [](Draft& draft, std::string const& strValue) { return SetUp(strValue, draft.GetSymbol().m_eUp); };
  return {"symbol", true, BeginSymbol, NothingToDo,
      {{"name", true, setName}, {"file", true, SetSymbolFile}, {"pixels", false, setPixels},
          {"heading", false, setHeading}, {"elevation", false, setElevation}, {"up", false, setUp}}};
}

std::string BeginLabel(Draft& draft, int nLine) {
  draft.m_bData = false;
  return AppendPlaced(draft.m_Scene.m_vecLabels, nLine);
}

std::string SetLabelAlign(Draft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue,
      {"top-left", "top", "top-right", "left", "center", "right", "bottom-left", "bottom", "bottom-right"}, nWord);
  draft.GetLabel().m_nAlignX = static_cast<int>(nWord % 3) - 1;
  draft.GetLabel().m_nAlignY = 1 - static_cast<int>(nWord / 3);
  return strProblem;
}

std::string SetLabelDepth(Draft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"on", "off"}, nWord);
  draft.GetLabel().m_bDepth = nWord == 0;
  return strProblem;
}

std::string SetLabelFacing(Draft& draft, std::string const& strValue) {
  std::size_t nWord = 0;
  std::string const strProblem = ReadWord(strValue, {"camera", "flat"}, nWord);
  draft.GetLabel().m_eFacing = nWord == 0 ? QXLabelFacing::Camera : QXLabelFacing::Flat;
  return strProblem;
}

std::string SetLabelHalo(Draft& draft, std::string const& strValue) {
  draft.GetLabel().m_bHalo = true;
  return ReadColor(strValue, draft.GetLabel().m_nHalo);
}

std::string EndLabel(Draft& draft) {
  QXSceneLabel const& label = draft.GetLabel();
  bool const bFlat = label.m_eFacing == QXLabelFacing::Flat;
  if (bFlat && label.m_dHeight == 0.0)
    return "facing = flat asks for a height in the world's units; add height = 5, or take facing away";
  if (!bFlat && label.m_dHeight > 0.0)
    return "height is about a label that lies in the world; add facing = flat, or take height away";
  return std::string();
}

/// Keys of the letters themselves.
void AddLetterKeys(std::vector<Key>& vecKeys) {
  auto const setFont = [](Draft& draft, std::string const& strValue) {
    draft.GetLabel().m_strFont = strValue;
    return std::string();
  };
  auto const setSize = [](Draft& draft, std::string const& strValue) {
    return ReadWholeNumber(strValue, 1, MaxLabelSize, draft.GetLabel().m_nSize);
  };
  auto const setBold = [](Draft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.GetLabel().m_bBold);
  };
  auto const setItalic = [](Draft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.GetLabel().m_bItalic);
  };
  auto const setColor = [](Draft& draft, std::string const& strValue) {
    return ReadColor(strValue, draft.GetLabel().m_nColor);
  };
  vecKeys.insert(
      vecKeys.end(), {{"font", false, setFont}, {"size", false, setSize}, {"bold", false, setBold},
                         {"italic", false, setItalic}, {"color", false, setColor}, {"halo", false, SetLabelHalo}});
}

Section MakeLabelSection() {
  auto const setText = [](Draft& draft, std::string const& strValue) {
    draft.GetLabel().m_strText = strValue;
    draft.GetLabel().m_nLine = draft.m_nLine;
    return std::string();
  };
  auto const setPosition = [](Draft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetLabel().m_vecPosition);
  };
  auto const setRotation = [](Draft& draft, std::string const& strValue) {
    return SetAngle(strValue, draft.GetLabel().m_dRotation);
  };
  auto const setOffset = [](Draft& draft, std::string const& strValue) {
    return ReadOffset(strValue, draft.GetLabel().m_dOffset);
  };
  auto const setHeight = [](Draft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetLabel().m_dHeight);
  };
  std::vector<Key> vecKeys{{"text", true, setText}, {"position", true, setPosition}};
  AddLetterKeys(vecKeys);
  vecKeys.insert(vecKeys.end(),
      {{"rotation", false, setRotation}, {"offset", false, setOffset}, {"align", false, SetLabelAlign},
          {"depth", false, SetLabelDepth}, {"facing", false, SetLabelFacing}, {"height", false, setHeight}});
  return {"label", true, BeginLabel, EndLabel, vecKeys};
}

std::string BeginData(Draft& draft, int nLine) {
  draft.m_bData = true;
  return AppendPlaced(draft.m_Scene.m_vecData, nLine);
}

std::string SetDataFile(Draft& draft, std::string const& strValue) {
  if (!IsGeoName(strValue))
    return "'" + strValue + "' is no map data by its name; known are .gml, .citygml, .geojson and .shp";
  draft.GetData().m_strFile = draft.Complete(strValue);
  draft.GetData().m_nLine = draft.m_nLine;
  return std::string();
}

std::string SetDataFacing(Draft& draft, std::string const& strValue) {
  draft.GetData().m_bFacing = true;
  return SetLabelFacing(draft, strValue);
}

std::string SetDataAlign(Draft& draft, std::string const& strValue) {
  draft.GetData().m_bAlign = true;
  return SetLabelAlign(draft, strValue);
}

std::string EndData(Draft& draft) {
  QXSceneData const& data = draft.GetData();
  if (data.m_bFacing && data.m_Style.m_eFacing == QXLabelFacing::Camera && data.m_Style.m_dHeight > 0.0)
    return "height is about labels that lie in the world; take it or facing = camera away";
  if (!data.m_bLabels && !data.m_bBuildings)
    return "labels = no and buildings = no leave nothing; take one of them away";
  return std::string();
}

/// Keys of what is taken from the file and where it goes.
std::vector<Key> MakeDataKeys() {
  auto const setLabel = [](Draft& draft, std::string const& strValue) {
    draft.GetData().m_strLabel = strValue;
    return std::string();
  };
  auto const setAngle = [](Draft& draft, std::string const& strValue) {
    draft.GetData().m_strAngle = strValue;
    return std::string();
  };
  auto const setLabels = [](Draft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.GetData().m_bLabels);
  };
  auto const setBuildings = [](Draft& draft, std::string const& strValue) {
    return ReadYesNo(strValue, draft.GetData().m_bBuildings);
  };
  auto const setPosition = [](Draft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetData().m_vecPosition);
  };
  auto const setLift = [](Draft& draft, std::string const& strValue) {
    return ReadNumber(strValue, -MaxSceneCoordinate, MaxSceneCoordinate, draft.GetData().m_dLift);
  };
  return {{"file", true, SetDataFile}, {"label", false, setLabel}, {"angle", false, setAngle},
      {"labels", false, setLabels}, {"buildings", false, setBuildings}, {"position", false, setPosition},
      {"lift", false, setLift}};
}

Section MakeDataSection() {
  std::vector<Key> vecKeys = MakeDataKeys();
  AddLetterKeys(vecKeys);
  auto const setOffset = [](Draft& draft, std::string const& strValue) {
    return ReadOffset(strValue, draft.GetLabel().m_dOffset);
  };
  auto const setHeight = [](Draft& draft, std::string const& strValue) {
    return ReadLength(strValue, draft.GetLabel().m_dHeight);
  };
  vecKeys.insert(
      vecKeys.end(), {{"offset", false, setOffset}, {"align", false, SetDataAlign}, {"depth", false, SetLabelDepth},
                         {"facing", false, SetDataFacing}, {"height", false, setHeight}});
  return {"data", true, BeginData, EndData, vecKeys};
}

Section MakeStaticSection() {
  auto const begin = [](Draft& draft, int nLine) { return AppendPlaced(draft.m_Scene.m_vecStatics, nLine); };
  auto const setFile = [](Draft& draft, std::string const& strValue) {
    if (!IsStaticName(strValue)) return "'" + strValue + "' is no static geometry by its name; such files end in .qsg";
    draft.GetStatic().m_strFile = draft.Complete(strValue);
    draft.GetStatic().m_nLine = draft.m_nLine;
    return std::string();
  };
  auto const setPosition = [](Draft& draft, std::string const& strValue) {
    return ReadPosition(strValue, draft.GetStatic().m_vecPosition);
  };
  return {"static", true, begin, NothingToDo, {{"file", true, setFile}, {"position", false, setPosition}}};
}

/// Follows a file through its sections by their table.
class SceneReader final : public QXSceneTextHandler {
public:
  explicit SceneReader(Draft& draft)
      : m_Draft(draft), m_vecSections{MakeSceneSection(), MakeCameraSection(), MakeModelSection(), MakeIconSection(),
                            MakeSymbolSection(), MakeLabelSection(), MakeDataSection(), MakeStaticSection()},
        m_vecFirstLines(m_vecSections.size(), 0) {}

  void BeginSection(std::string const& strName, int nLine) override {
    Finish();
    m_pSection = nullptr;
    m_bBefore = false;
    m_nSectionLine = nLine;
    if (strName.empty()) return;
    for (std::size_t i = 0; i < m_vecSections.size(); ++i) {
      if (m_vecSections[i].m_szName == strName) {
        Enter(m_vecSections[i], m_vecFirstLines[i], nLine);
        return;
      }
    }
    m_Draft.m_Problems.Add(nLine, "there is no section [" + strName + "]; known are " + ListSections());
  }

  void TakeValue(std::string const& strKey, std::string const& strValue, int nLine) override {
    if (m_pSection == nullptr) {
      // Of a section that was refused already, its lines are not as well.
      if (m_bBefore)
        m_Draft.m_Problems.Add(nLine, "'" + strKey + "' stands before the first section; known are " + ListSections());
      return;
    }
    m_Draft.m_nLine = nLine;
    std::vector<Key> const& vecKeys = m_pSection->m_vecKeys;
    for (std::size_t i = 0; i < vecKeys.size(); ++i) {
      if (vecKeys[i].m_szName != strKey) continue;
      std::string const strProblem = m_vecKeyLines[i] == 0
                                         ? vecKeys[i].m_pSet(m_Draft, strValue)
                                         : "'" + strKey + "' stands in line " + std::to_string(m_vecKeyLines[i]) +
                                               " already; leave one of the two out";
      if (m_vecKeyLines[i] == 0) m_vecKeyLines[i] = nLine;
      Report(nLine, strProblem);
      return;
    }
    Report(nLine, "[" + std::string(m_pSection->m_szName) + "] has no key '" + strKey + "'; known are " + ListKeys());
  }

  void MissValue() override { m_bMissed = true; }

  /// Behind the last line.
  void Finish() {
    if (m_pSection == nullptr) return;
    bool bComplete = !m_bFaulty && !m_bMissed;
    // A line that could not be read may have been the key that is missing.
    for (std::size_t i = 0; !m_bMissed && i < m_vecKeyLines.size(); ++i) {
      Key const& key = m_pSection->m_vecKeys[i];
      if (!key.m_bRequired || m_vecKeyLines[i] != 0 || Stands(key.m_szInstead)) continue;
      Report(m_nSectionLine,
          "[" + std::string(m_pSection->m_szName) + "] lacks '" + key.m_szName +
              (key.m_szInstead == nullptr ? "'; add it"
                                          : "' or '" + std::string(key.m_szInstead) + "'; add one of them"));
      bComplete = false;
    }
    // Keys that were refused would be told a second time, as missing.
    if (bComplete) Report(m_nSectionLine, m_pSection->m_pEnd(m_Draft));
  }

private:
  /// Whether the section has a key by now; null is none.
  bool Stands(char const* szKey) const {
    for (std::size_t i = 0; szKey != nullptr && i < m_vecKeyLines.size(); ++i)
      if (std::string_view(m_pSection->m_vecKeys[i].m_szName) == szKey) return m_vecKeyLines[i] != 0;
    return false;
  }

  void Enter(Section const& section, int& nFirstLine, int nLine) {
    if (!section.m_bMany && nFirstLine != 0) {
      m_Draft.m_Problems.Add(nLine, "there is a section [" + std::string(section.m_szName) + "] in line " +
                                        std::to_string(nFirstLine) + " already; make one of the two");
      return;
    }
    bool const bFull = nFirstLine < 0;
    nFirstLine = nFirstLine == 0 ? nLine : nFirstLine;
    if (bFull) return;
    std::string const strProblem = section.m_pBegin(m_Draft, nLine);
    if (!strProblem.empty()) {
      // Told once: a file that goes on for a million icons has no million problems.
      m_Draft.m_Problems.Add(nLine, strProblem);
      nFirstLine = -1;
      return;
    }
    m_pSection = &section;
    m_bFaulty = false;
    m_bMissed = false;
    m_vecKeyLines.assign(section.m_vecKeys.size(), 0);
  }

  void Report(int nLine, std::string const& strProblem) {
    if (strProblem.empty()) return;
    m_Draft.m_Problems.Add(nLine, strProblem);
    m_bFaulty = true;
  }

  std::string ListSections() const {
    std::string strList;
    for (Section const& section : m_vecSections)
      strList += (strList.empty() ? "[" : ", [") + std::string(section.m_szName) + "]";
    return strList;
  }

  std::string ListKeys() const {
    std::string strList;
    for (Key const& key : m_pSection->m_vecKeys) strList += (strList.empty() ? "" : ", ") + std::string(key.m_szName);
    return strList;
  }

  Draft& m_Draft;
  std::vector<Section> const m_vecSections;
  /// Of each kind the line of the first section, 0 for none yet, -1 where no more are taken.
  std::vector<int> m_vecFirstLines;
  Section const* m_pSection = nullptr;
  int m_nSectionLine = 0;
  bool m_bBefore = true;
  bool m_bFaulty = false;
  /// Whether a line of the section was left out before anyone knew its key.
  bool m_bMissed = false;
  /// Where each key of the section stands, 0 for nowhere.
  std::vector<int> m_vecKeyLines;
};

/// What is wrong with a file that a scene names, for a model or an image.
std::string CheckFile(std::string const& strPath) {
  std::error_code error;
  std::filesystem::file_status const status = std::filesystem::status(strPath, error);
  if (!std::filesystem::exists(status))
    return strPath + ": no such file; correct the name, which counts from the scene's folder";
  if (std::filesystem::is_directory(status)) return strPath + ": this is a directory; name a file inside it";
  if (!std::filesystem::is_regular_file(status)) return strPath + ": this is no regular file; name another one";
  return std::string();
}

/// Each missing file is told once, where it is named first.
void CheckFiles(QXSceneFile const& scene, QXSceneProblems& problems) {
  std::set<std::string> setSeen;
  auto const check = [&](std::string const& strPath, int nLine) {
    if (strPath.empty() || !setSeen.insert(strPath).second) return;
    std::string const strProblem = CheckFile(strPath);
    if (!strProblem.empty()) problems.Add(nLine, strProblem);
  };
  for (QXSceneModel const& model : scene.m_vecModels) check(model.m_strFile, model.m_nLine);
  for (QXSceneIcon const& icon : scene.m_vecIcons) check(icon.m_strImage, icon.m_nLine);
  for (QXSceneData const& data : scene.m_vecData) check(data.m_strFile, data.m_nLine);
  for (QXSceneSymbol const& symbol : scene.m_vecSymbols) check(symbol.m_strFile, symbol.m_nLine);
  for (QXSceneStatic const& placed : scene.m_vecStatics) check(placed.m_strFile, placed.m_nLine);
}

/// Symbols may stand behind the icons that show them, so their names are looked at in the end.
void CheckSymbols(QXSceneFile const& scene, QXSceneProblems& problems) {
  std::map<std::string, int> mapLines;
  for (QXSceneSymbol const& symbol : scene.m_vecSymbols) {
    auto const [it, bNew] = mapLines.insert({symbol.m_strName, symbol.m_nLine});
    if (!bNew && !symbol.m_strName.empty())
      problems.Add(symbol.m_nLine, "there is a symbol '" + symbol.m_strName + "' in line " +
                                       std::to_string(it->second) + " already; give one of the two another name");
  }
  std::set<std::string> setTold;
  for (QXSceneIcon const& icon : scene.m_vecIcons)
    if (!icon.m_strSymbol.empty() && !mapLines.contains(icon.m_strSymbol) && setTold.insert(icon.m_strSymbol).second)
      problems.Add(icon.m_nLine, "there is no symbol '" + icon.m_strSymbol + "'; add a [symbol] of this name");
}

}  // namespace

bool IsSceneName(std::string const& strPath) {
  return GetLowerExtension(strPath) == ".qxscene";
}

bool IsStaticName(std::string const& strPath) {
  return GetLowerExtension(strPath) == ".qsg";
}

QXSceneFile ParseScene(std::string_view bytes, std::string const& strPath, QXSceneProblems& problems) {
  Draft draft{QXSceneFile(), problems, 0};
  draft.m_Scene.m_strPath = strPath;
  SceneReader reader(draft);
  ReadSceneText(bytes, reader, problems);
  reader.Finish();
  CheckSymbols(draft.m_Scene, problems);
  QXSceneFile const& scene = draft.m_Scene;
  if (problems.IsEmpty() && scene.m_vecModels.empty() && scene.m_vecIcons.empty() && scene.m_vecLabels.empty() &&
      scene.m_vecData.empty() && scene.m_vecStatics.empty())
    problems.Add(0, "there is nothing to show; add a [model] with its file, [data], [static], an [icon] or a [label]");
  return std::move(draft.m_Scene);
}

QXSceneFile ReadSceneFile(std::string const& strPath, std::vector<std::string>& vecProblems) {
  QXSceneProblems problems(strPath);
  QXSceneFile scene;
  std::string strBytes;
  std::string strReason = ReadWholeFile(strPath, MaxFileMiB, "scene file", strBytes);
  if (strReason.empty() && !IsSceneName(strPath))
    strReason = "this is no scene by its name; give a file that ends in .qxscene";
  if (strReason.empty()) {
    scene = ParseScene(strBytes, strPath, problems);
    CheckFiles(scene, problems);
  } else {
    problems.Add(0, strReason);
  }
  vecProblems = problems.GetLines();
  return scene;
}

}  // namespace QXApp
