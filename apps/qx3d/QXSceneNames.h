/// @file
/// What the meshes of a scene are called.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace QXApp {

/// One placed mesh of a model.
struct QXSceneObject {
  int m_nModel = 0;
  /// Node of the model.
  int m_nNode = 0;
  /// Among the places of the model.
  int m_nPlace = 0;
};

/// Names for people: of the files, and of the meshes that have one.
struct QXSceneNames {
  struct Model {
    std::string m_strFile;
    int m_nNodes = 0;
    int m_nPlaces = 0;
  };
  std::vector<Model> m_vecModels;
  /// By model and node.
  std::map<std::pair<int, int>, std::string> m_mapMeshes;
  /// Files of the geometries that were merged already, which are the last ones of the scene.
  std::vector<std::string> m_vecStatics;

  /// One line: file, mesh where there are several, place where there are several.
  std::string Describe(QXSceneObject const& object) const;
};

}  // namespace QXApp
