/// @file
/// The models of a scene, from their files to their places.
#pragma once

#include <apps/qx3d/QXSceneBuilder.h>
#include <apps/qx3d/QXSceneFile.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace QXApp {

/// From a model's coordinates, z up, into the world. Quarter turns are exact.
QXC::QXMatrix4d MakePlacement(QXSceneModel const& model);

/// The same of an instance, whose heading and scale are known.
QXC::QXMatrix4d MakePlacement(QXScenePlace const& place);

/// Whether a box stays within the coordinates that can be shown once it is placed.
bool IsShowable(QXC::QXBoundingBox const& box, QXC::QXMatrix4d const& matPlace);

/// Appends lines that are not there yet.
void AppendNew(std::vector<std::string> const& vecLines, std::vector<std::string>& vecAll);

/// Where the icons of a scene are, with those that have a size in the world in full. A null box without any.
QXC::QXBoundingBox GetIconBounds(QXSceneFile const& scene);

/// Where the labels of a scene are, with about as much of the world as the flat ones cover. A null box without any.
QXC::QXBoundingBox GetLabelBounds(QXSceneFile const& scene);

/// Reads each file of a scene once, however often it is placed.
class QXSceneModels {
public:
  /// Most triangles, and most vertices, that the models of a scene may have together, each counted as often as placed.
  static constexpr unsigned long long ms_nMaxPlaced = 100000000;

  QXSceneModels();
  QXSceneModels(QXSceneModels const&) = delete;
  QXSceneModels& operator=(QXSceneModels const&) = delete;
  ~QXSceneModels();

  /// @param eUp       for models that have no up axis of their own in the scene
  /// @param progress  is told what is read
  /// @param problems  gets each model that cannot be read or shown, at its line
  /// @param vecPictureProblems  gets one line for each picture that cannot be read; the models are good all the same
  void Load(QXSceneFile const& scene, UpAxis eUp, std::function<void(std::string const&)> const& progress,
      QXSceneProblems& problems, std::vector<std::string>& vecPictureProblems);

  /// The same for the instances of a scene, whose places are ready, as if each were a model placed for itself.
  void LoadInstances(QXSceneFile const& scene, UpAxis eUp, std::function<void(std::string const&)> const& progress,
      QXSceneProblems& problems, std::vector<std::string>& vecPictureProblems);

  /// Reads the static geometry of a scene.
  /// @param problems  gets each file that cannot be read or shown, at its line
  /// @param vecPictureProblems  gets one line for each picture that cannot be read; the geometry is good all the same
  void LoadStatics(QXSceneFile const& scene, std::function<void(std::string const&)> const& progress,
      QXSceneProblems& problems, std::vector<std::string>& vecPictureProblems);

  /// Takes a model over that no file holds, z up and where its coordinates put it.
  /// @param strFile  what it was made of
  /// @return  empty, or why it cannot be shown
  std::string Add(std::unique_ptr<QXC::ModelDataInfo> pModel, std::string const& strFile);

  /// Merges what was read; the models, not their pictures, are freed.
  /// @param others  bounds of what stands in the scene besides
  QXScene Build(QXC::QXBoundingBox const& others, QXMergeOptions const& options = QXMergeOptions());

  /// Triangles as placed.
  unsigned long long GetTriangleCount() const { return m_nTriangles; }
  /// By the index of a part's model.
  std::vector<QXModelPictures> const& GetPictures() const { return m_vecPictures; }
  bool HasAnimated() const;
  /// Once the renderer has its own.
  void FreePictures() { m_vecPictures.clear(); }

private:
  struct Model {
    std::unique_ptr<QXC::ModelDataInfo> m_pModel;
    QXC::QXBoundingBox m_Box;
    std::vector<QXC::QXMatrix4d> m_vecPlaces;
    std::string m_strFile;
  };

  /// A file, and the axis that is up in it: what makes two placements share what is read.
  using FileKey = std::pair<std::string, UpAxis>;

  /// @return  the number of the model, or -1 where it cannot be read; the reason is given at the first call
  int FindOrLoad(std::string const& strFile, UpAxis eUp, std::function<void(std::string const&)> const& progress,
      std::vector<std::string>& vecPictureProblems, std::string& strReason);
  bool IsFull() const { return m_nTriangles > ms_nMaxPlaced || m_nVertices > ms_nMaxPlaced; }
  void LoadOne(
      std::string const& strPath, UpAxis eUp, std::vector<std::string>& vecPictureProblems, std::string& strError);
  std::string Place(Model& model, QXC::QXMatrix4d const& matPlace);
  std::string LoadStatic(QXSceneStatic const& placed, std::vector<std::string>& vecPictureProblems);
  /// @return  empty, or why no more can be shown
  std::string Count(unsigned long long nTriangles, unsigned long long nVertices);

  /// Of each file the number of its model, or -1 where it cannot be read.
  std::map<FileKey, int> m_mapFiles;
  std::vector<Model> m_vecModels;
  /// Of the models, then of the static geometries.
  std::vector<QXModelPictures> m_vecPictures;
  std::vector<std::unique_ptr<QXC::QXStaticGeometry>> m_vecMerged;
  std::vector<std::string> m_vecMergedFiles;
  std::vector<QXModelPictures> m_vecMergedPictures;
  /// Of the static geometries, by their index among these.
  std::vector<QXSceneTexture> m_vecMergedTextures;
  unsigned long long m_nTriangles = 0;
  unsigned long long m_nVertices = 0;
};

}  // namespace QXApp
