/// @file
/// Placed meshes on their way into static geometry.
#pragma once

#include <apps/qx3d/QXReadyMesh.h>
#include <apps/qx3d/QXSceneBuilder.h>

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <map>
#include <memory>
#include <set>
#include <vector>

namespace QXC {
class QXPass;
}

namespace QXApp {

/// Takes the placed meshes of a scene, and merges them or makes drawables of them.
class QXMeshGatherer {
public:
  /// @param scene  with bounds and origin; gets everything else. It and the options outlive this object.
  QXMeshGatherer(QXScene& scene, QXMergeOptions const& options);
  QXMeshGatherer(QXMeshGatherer const&) = delete;
  QXMeshGatherer& operator=(QXMeshGatherer const&) = delete;
  ~QXMeshGatherer();

  /// @param placed  its pictures outlive this object, the model need not
  void AddModel(QXPlacedModel const& placed, int nModel);
  /// Once, behind the last model.
  void Merge();

private:
  /// A mesh in the form in which it is placed.
  struct Form {
    QXReadyMesh m_Mesh;
    QXSceneTexture m_Texture;
    bool m_bTransparent = false;
    /// Such a texture changes under its name and is not folded with others.
    bool m_bAnimated = false;
    /// In the mesh's own frame.
    QXC::QXBoundingBox m_Bounds;
  };
  /// What is merged with one base frame.
  struct Frame {
    int m_nCellX = 0;
    int m_nCellY = 0;
    // The check takes the zero inside the comparison that the compiler writes for a pointer.
    auto operator<=>(Frame const&) const = default;  // NOLINT(modernize-use-nullptr)
  };
  struct Entry {
    Frame m_Frame;
    Form const* m_pForm;
    QXC::QXMatrix4d m_matWorld;
    QXSceneObject m_Object;
  };

  void AddNode(
      Form const& form, QXC::QXMatrix4d const& matWorld, QXModelPictures const& pictures, QXSceneObject const& object);
  void AddDrawable(
      Form const& form, QXC::QXMatrix4d const& matWorld, QXModelPictures const& pictures, QXSceneObject const& object);
  Frame FindFrame(QXC::QXVector3d const& vecCenter) const;
  QXC::QXVector3d GetBase(Frame const& frame) const;
  void JoinParts();
  void JoinPart(std::vector<Entry>::iterator itBegin, std::vector<Entry>::iterator itEnd);
  void MergeFrame(std::vector<Entry>::iterator itBegin, std::vector<Entry>::iterator itEnd);
  void AddToGeometry(Entry const& entry, QXC::QXVector3d const& vecBase, QXC::QXStaticGeometry& geometry);
  QXC::QdcUnicodeString MakePass(Form const& form);

  QXScene& m_Scene;
  QXMergeOptions const& m_Options;
  double m_dCellSize;
  int m_nSortedParts = 0;
  std::vector<std::unique_ptr<Form>> m_vecForms;
  std::vector<Entry> m_vecEntries;
  /// Copies of meshes that cannot be merged in their own frame, until the frame is merged.
  std::vector<QXReadyMesh> m_vecCopies;
  std::set<QXSceneTexture> m_setTextures;
  /// By the names in the index packages; owned.
  std::map<QXC::QdcUnicodeString, QXC::QXPass*> m_mapPasses;
};

}  // namespace QXApp
