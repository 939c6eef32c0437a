#include <apps/qx3d/QXSceneFile.h>

#include <apps/qx3d/QXSceneSections.h>
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

/// Follows a file through its sections by their table.
class SceneReader final : public QXSceneTextHandler {
public:
  explicit SceneReader(QXSceneDraft& draft)
      : m_Draft(draft), m_vecSections(MakeSceneSections()), m_vecFirstLines(m_vecSections.size(), 0) {}

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
    std::vector<QXSceneKey> const& vecKeys = m_pSection->m_vecKeys;
    for (std::size_t i = 0; i < vecKeys.size(); ++i) {
      if (vecKeys[i].m_szName != strKey) continue;
      bool const bTake = m_vecKeyLines[i] == 0 || vecKeys[i].m_bMany;
      std::string const strProblem = bTake ? vecKeys[i].m_pSet(m_Draft, strValue)
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
      QXSceneKey const& key = m_pSection->m_vecKeys[i];
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

  void Enter(QXSceneSection const& section, int& nFirstLine, int nLine) {
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
    for (QXSceneSection const& section : m_vecSections)
      strList += (strList.empty() ? "[" : ", [") + std::string(section.m_szName) + "]";
    return strList;
  }

  std::string ListKeys() const {
    std::string strList;
    for (QXSceneKey const& key : m_pSection->m_vecKeys)
      strList += (strList.empty() ? "" : ", ") + std::string(key.m_szName);
    return strList;
  }

  QXSceneDraft& m_Draft;
  std::vector<QXSceneSection> const m_vecSections;
  /// Of each kind the line of the first section, 0 for none yet, -1 where no more are taken.
  std::vector<int> m_vecFirstLines;
  QXSceneSection const* m_pSection = nullptr;
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
  for (QXSceneInstances const& instances : scene.m_vecInstances) {
    check(instances.m_strFile, instances.m_nLine);
    check(instances.m_strPlaces, instances.m_nPlacesLine);
    check(instances.m_strPoints, instances.m_nPointsLine);
  }
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
  QXSceneDraft draft{QXSceneFile(), problems, 0};
  draft.m_Scene.m_strPath = strPath;
  SceneReader reader(draft);
  ReadSceneText(bytes, reader, problems);
  reader.Finish();
  CheckSymbols(draft.m_Scene, problems);
  QXSceneFile const& scene = draft.m_Scene;
  if (problems.IsEmpty() && scene.m_vecModels.empty() && scene.m_vecIcons.empty() && scene.m_vecLabels.empty() &&
      scene.m_vecData.empty() && scene.m_vecStatics.empty() && scene.m_vecInstances.empty())
    problems.Add(0,
        "there is nothing to show; add a [model] with its file, [instances], [data], [static], an [icon] or a [label]");
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
