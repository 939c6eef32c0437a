/// @file
/// From models to what a renderer draws.
#pragma once

#include <apps/qx3d/QXModelPictures.h>
#include <apps/qx3d/QXSceneNames.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace QXC {
class ModelDataInfo;
class QXSubObjectInfo;
}

namespace QXApp {

/// A model, z up, with its pictures and its places.
struct QXPlacedModel {
  QXC::ModelDataInfo const* m_pModel = nullptr;
  /// Meshes whose picture is not usable are shown in their colours.
  QXModelPictures const* m_pPictures = nullptr;
  /// From the model's coordinates into the world.
  std::vector<QXC::QXMatrix4d> m_vecPlaces;
};

/// One placed mesh that is drawn for itself: what to hand to QXRenderOperation3D::SetRenderOperationMultiIndex. Its
/// vertices stand relative to its own middle, by which the renderer sorts what is transparent.
struct QXScenePart {
  std::unique_ptr<QXC::QXRenderOperationMultiIndex> m_pOperation;
  bool m_bTransparent = false;
  /// Index of the model that the texture's key is about.
  int m_nModel = 0;
  /// The texture for the operation's one package, which holds its name; without a picture there is no package.
  QXTextureKey m_Texture;
  /// Its own, or the first of those that it was joined from.
  QXSceneObject m_Object;
};

/// A texture that merged meshes name.
struct QXSceneTexture {
  /// Index of the model that the key is about.
  int m_nModel = 0;
  QXTextureKey m_Key;
  /// In the units of the passes.
  std::string m_strName;

  bool operator<(QXSceneTexture const& other) const {
    return std::tie(m_nModel, m_Key) < std::tie(other.m_nModel, other.m_Key);
  }
};

/// What becomes of the placed meshes.
enum class QXMerging {
  /// For a renderer: one geometry for what stands near each other. The first thousand of the transparent ones are drawn
  /// for themselves, so that the renderer blends them from back to front.
  Cells,
  /// All in one geometry, as a file holds it.
  OneGeometry,
  /// All of one texture, and of one kind of transparency, in one drawable without sub-objects: what stands at many
  /// places is drawn in as many operations.
  Textures,
  /// Each is drawn for itself: what merging is measured by.
  None
};

struct QXMergeOptions {
  QXMerging m_eMerging = QXMerging::Cells;
  /// Name of a texture in the passes; empty: the one under which QXModelPictures shares it.
  std::function<std::string(QXSceneTexture const&)> m_nameTexture;
  /// Whether the scene tells which object is which mesh, for whoever points at them: some 50 bytes each.
  bool m_bObjects = false;
};

/// Models merged into few drawables.
struct QXScene {
  /// Merged meshes, each with the local view matrix that places it.
  std::vector<std::unique_ptr<QXC::QXStaticGeometry>> m_vecGeometries;
  /// Those that the geometries name.
  std::vector<QXSceneTexture> m_vecTextures;
  std::vector<QXScenePart> m_vecParts;
  /// Of the merged meshes, by their records in the geometries; empty unless they were asked for.
  std::unordered_map<QXC::QXSubObjectInfo const*, QXSceneObject> m_mapObjects;
  /// Null unless the objects were asked for.
  std::shared_ptr<QXSceneNames> m_pNames;
  /// Middle of the scene, world coordinates: the origin for floats.
  QXC::QXVector3d m_vecOrigin;
  /// Everything that is drawn, world coordinates.
  QXC::QXBoundingBox m_Bounds;
  /// Where most of the models is: nineteen twentieths of their surface on each level axis, heights whole. A road that
  /// leaves the city does not make the city small.
  QXC::QXBoundingBox m_Core;
  unsigned int m_nTriangles = 0;
  unsigned int m_nVertices = 0;
  /// Placed meshes that have triangles: as many drawables as there would be without merging.
  unsigned int m_nMeshes = 0;

  /// Whether parts of the models lie around the core.
  bool HasOutskirts() const;
};

/// Merges all placed meshes: the number of draw operations follows the size of a scene and not the number of its meshes
/// and materials. Each mesh keeps a sub-object with its sphere, relative to the geometry's base frame. Colours stand in
/// the vertices, opaque meshes without a texture have no pass, and those with one have a pass of one unit, eight of
/// which the geometry folds into one. Transparent ones stand in the typed lists.
///
/// Pictures: their transforms and mirrored repetitions go into the texture coordinates. A texture repeats or keeps to
/// its edge on both axes alike; where a mesh asks for one of each, the axis decides on which it leaves the picture.
///
/// Colours: material times vertex colour times picture. A mesh with neither is coloured by its faces: ground where it
/// is level and low, roof where it looks up, wall elsewhere. If every colour that the file states is dark, each is
/// mixed with a light paper tone. All of this is decided by the model alone, so that it looks alike wherever it is
/// placed.
///
/// @param vecMerged  geometries that are merged already, which the scene takes over with their places
/// @param others     bounds of what stands in the scene besides, part of its core; a null box for nothing
/// Cost: linear in the placed vertices.
QXScene BuildScene(std::vector<QXPlacedModel> const& vecModels,
    std::vector<std::unique_ptr<QXC::QXStaticGeometry>> vecMerged, QXC::QXBoundingBox const& others,
    QXMergeOptions const& options = QXMergeOptions());

/// The scene of one model where its coordinates put it.
QXScene BuildScene(QXC::ModelDataInfo const& model, QXModelPictures const& pictures = QXModelPictures(),
    QXMergeOptions const& options = QXMergeOptions());

/// How wide a cell of a scene is, whose meshes share a base frame: 64 km, in which floats still have steps of 4 mm, and
/// that scenes of a city or a county do not leave; more where a scene is so wide that this gave thousands of
/// geometries.
double GetCellSize(QXC::QXBoundingBox const& bounds);

/// Radius of the ground of a scene: far behind the edges of every first view.
double GetGroundRadius(QXScene const& scene);

/// A level ground plane around and a little below a scene, merged for itself.
std::unique_ptr<QXC::QXStaticGeometry> BuildGround(QXScene const& scene);

/// Of a merged geometry: the box of all vertices, in its own coordinates; a null box without any.
QXC::QXBoundingBox FindStaticBounds(QXC::QXStaticGeometry const& geometry);
/// Triangles of level 0 and vertices of a merged geometry.
unsigned int CountTriangles(QXC::QXStaticGeometry const& geometry);
unsigned int CountVertices(QXC::QXStaticGeometry const& geometry);
/// Its sub-objects.
unsigned int CountObjects(QXC::QXStaticGeometry const& geometry);

}  // namespace QXApp
