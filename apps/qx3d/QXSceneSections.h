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
  QXSceneInstances& GetInstances() { return m_Scene.m_vecInstances.back(); }
  QXSceneLight& GetLight() { return m_Scene.m_vecLights.back(); }
  QXSceneStatic& GetStatic() { return m_Scene.m_vecStatics.back(); }
  QXSceneData& GetData() { return m_Scene.m_vecData.back(); }
  /// The label of the section, or the style of its many labels.
  QXSceneLabel& GetLabel() { return m_bData ? GetData().m_Style : m_Scene.m_vecLabels.back(); }
  bool m_bData = false;
  /// Places that stand in the file itself, of all sections.
  std::size_t m_nPlaces = 0;
};

/// Takes a value over. @return  empty, or what was expected
using QXSceneSetFunction = std::string (*)(QXSceneDraft& draft, std::string const& strValue);

struct QXSceneKey {
  char const* m_szName;
  bool m_bRequired;
  QXSceneSetFunction m_pSet;
  /// Another key that may stand in its place.
  char const* m_szInstead = nullptr;
  /// Whether it may stand many times.
  bool m_bMany = false;
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

/// Appends what a section describes. @return  empty, or why there can be no more
template <class T>
std::string AppendPlaced(std::vector<T>& vecPlaced, int nLine, std::size_t nMost = MaxScenePlacements) {
  if (vecPlaced.size() == nMost)
    return "a scene has at most " + std::to_string(nMost) +
           " of these; this one and all further ones are left out, so make two scenes of it";
  vecPlaced.emplace_back();
  vecPlaced.back().m_nLine = nLine;
  return std::string();
}

/// Why a file cannot stand where one model is wanted; empty if it can.
std::string CheckModelName(std::string const& strName);
/// An axis that is up: auto, y or z.
std::string SetUp(std::string const& strValue, UpAxis& eUp);
/// Degrees from -360 to 360.
std::string SetAngle(std::string const& strValue, double& dAngle);

/// Sections of their own files.
QXSceneSection MakeInstancesSection();
QXSceneSection MakeLightSection();
QXSceneSection MakeFogSection();
QXSceneSection MakeSkySection();
QXSceneSection MakeOceanSection();

/// The format's table, in the order in which messages list it.
std::vector<QXSceneSection> MakeSceneSections();

}  // namespace QXApp
