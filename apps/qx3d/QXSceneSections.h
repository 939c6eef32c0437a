/// @file
/// What a scene file may say: its kinds of sections and their keys.
#pragma once

#include <apps/qx3d/QXSceneFile.h>

#include <filesystem>
#include <string>
#include <vector>

namespace QXApp {

/// The scene while its file is read.
struct QXSceneDraft {
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
using QXSceneSetFunction = std::string (*)(QXSceneDraft& draft, std::string const& strValue);

struct QXSceneKey {
  char const* m_szName;
  bool m_bRequired;
  QXSceneSetFunction m_pSet;
  /// Another key that may stand in its place.
  char const* m_szInstead = nullptr;
};

/// A kind of section. Adding one to the format is an entry in the table below.
struct QXSceneSection {
  char const* m_szName;
  /// Whether the file may hold many of it.
  bool m_bMany;
  /// Makes what the keys are set on. @return  empty, or why there can be none
  std::string (*m_pBegin)(QXSceneDraft& draft, int nLine);
  /// Looks at the keys together. @return  empty, or what is wrong with them
  std::string (*m_pEnd)(QXSceneDraft& draft);
  std::vector<QXSceneKey> m_vecKeys;
};

/// The format's table, in the order in which messages list it.
std::vector<QXSceneSection> MakeSceneSections();

}  // namespace QXApp
