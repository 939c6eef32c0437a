/// @file
/// The models that stand at many places of a scene.
#pragma once

#include <apps/qx3d/QXSceneBuilder.h>
#include <apps/qx3d/QXSceneFile.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/model/QXModelManager.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace QXApp {

/// One section of a scene, ready to be drawn.
struct QXInstanceGroup {
  /// Index of the section.
  std::size_t m_nSection = 0;
  /// Index of the model in QXInstanceModels.
  std::size_t m_nModel = 0;
  /// From the model's coordinates, z up, into the world.
  std::vector<QXC::QXMatrix4d> m_vecMatrices;
};

/// Reads each model of the instances once, through a model cache, and makes few meshes of it.
class QXInstanceModels {
public:
  QXInstanceModels();
  QXInstanceModels(QXInstanceModels const&) = delete;
  QXInstanceModels& operator=(QXInstanceModels const&) = delete;
  ~QXInstanceModels();

  /// @param scene     with places that are ready
  /// @param eUp       for models that have no up axis of their own in the scene
  /// @param progress  is told what is read
  /// @param problems  gets each model that cannot be read or shown, at its line
  /// @param vecPictureProblems  gets one line for each picture that cannot be read; the models are good all the same
  void Load(QXSceneFile const& scene, UpAxis eUp, std::function<void(std::string const&)> const& progress,
      QXSceneProblems& problems, std::vector<std::string>& vecPictureProblems);

  std::vector<QXInstanceGroup> const& GetGroups() const { return m_vecGroups; }
  /// Meshes of a model, one for each texture, around the origin of its coordinates; by QXInstanceGroup::m_nModel.
  QXScene& GetModel(std::size_t nModel) { return m_vecModels[nModel].m_Scene; }
  QXScene const& GetModel(std::size_t nModel) const { return m_vecModels[nModel].m_Scene; }
  /// By the same number.
  std::vector<QXModelPictures> const& GetPictures() const { return m_vecPictures; }

  std::size_t GetInstanceCount() const;
  /// As often as they are placed.
  unsigned long long GetTriangleCount() const { return m_nTriangles; }
  unsigned long long GetVertexCount() const { return m_nVertices; }
  /// Of all instances, world coordinates; a null box without any.
  QXC::QXBoundingBox const& GetBounds() const { return m_Bounds; }
  bool HasAnimated() const;
  /// Once the renderer has its own.
  void Free();

private:
  struct Model {
    QXScene m_Scene;
    QXC::QXBoundingBox m_Box;
  };
  using FileKey = std::pair<std::string, UpAxis>;

  /// @return  the number of the model, or -1 with a reason
  int LoadOne(FileKey const& key, std::vector<std::string>& vecPictureProblems, std::string& strReason);
  std::string AddGroup(QXSceneInstances const& instances, std::size_t nSection, std::size_t nModel);

  QXC::QXModelManager m_Cache;
  std::map<FileKey, int> m_mapFiles;
  std::vector<Model> m_vecModels;
  std::vector<QXModelPictures> m_vecPictures;
  std::vector<QXInstanceGroup> m_vecGroups;
  QXC::QXBoundingBox m_Bounds;
  unsigned long long m_nTriangles = 0;
  unsigned long long m_nVertices = 0;
};

}  // namespace QXApp
