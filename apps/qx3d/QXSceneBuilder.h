/// @file
/// From a model to the operations that a renderer draws.
#pragma once

#include <apps/qx3d/QXModelPictures.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

#include <memory>
#include <vector>

namespace QXC {
class ModelDataInfo;
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

/// One drawable: what to hand to QXRenderOperation3D::SetRenderOperationMultiIndex. Its vertices stand relative to its
/// model matrix: a shift to the scene's middle, to a place near them where a scene is very wide, or to their own middle
/// where they are transparent.
struct QXScenePart {
  std::unique_ptr<QXC::QXRenderOperationMultiIndex> m_pOperation;
  bool m_bTransparent = false;
  /// Index of the model that the texture's key is about.
  int m_nModel = 0;
  /// The texture for the operation's one package, which holds its name; without a picture there is no package.
  QXTextureKey m_Texture;
};

/// Models merged into few drawables.
struct QXScene {
  std::vector<QXScenePart> m_vecParts;
  /// Middle of the scene, world coordinates: the origin for floats.
  QXC::QXVector3d m_vecOrigin;
  /// Everything that is drawn, world coordinates.
  QXC::QXBoundingBox m_Bounds;
  /// Where most of the models is: nineteen twentieths of their surface on each level axis, heights whole. A road that
  /// leaves the city does not make the city small.
  QXC::QXBoundingBox m_Core;
  unsigned int m_nTriangles = 0;
  unsigned int m_nVertices = 0;

  /// Whether parts of the models lie around the core.
  bool HasOutskirts() const;
};

/// Merges all placed meshes into drawables with one index range each, colours in the vertices: the number of draw
/// operations follows the size of a model and not the number of its meshes and materials. Opaque and transparent
/// triangles never share a drawable, nor do triangles with different textures. Of transparent meshes each placement has
/// a drawable, up to a thousand of them, so that the renderer blends them from back to front.
///
/// Pictures: their transforms and mirrored repetitions go into the texture coordinates. A texture repeats or keeps to
/// its edge on both axes alike; where a mesh asks for one of each, the axis decides on which it leaves the picture.
///
/// Colours: material times vertex colour times picture. A mesh with neither is coloured by its faces: ground where it is level and
/// low, roof where it looks up, wall elsewhere. If every colour that the file states is dark, each is mixed with a
/// light paper tone. All of this is decided by the model alone, so that it looks alike wherever it is placed.
///
/// @param others  bounds of what stands in the scene besides, part of its core; a null box for nothing
/// Cost: linear in the placed vertices.
QXScene BuildScene(std::vector<QXPlacedModel> const& vecModels, QXC::QXBoundingBox const& others);

/// The scene of one model where its coordinates put it.
QXScene BuildScene(QXC::ModelDataInfo const& model, QXModelPictures const& pictures = QXModelPictures());

/// How wide a cell of a scene is, whose drawables share an origin: 64 km, in which floats still have steps of 4 mm, and
/// that scenes of a city or a county do not leave; more where a scene is so wide that this gave thousands of drawables.
double GetCellSize(QXC::QXBoundingBox const& bounds);

/// Radius of the ground of a scene: far behind the edges of every first view.
double GetGroundRadius(QXScene const& scene);

/// A level ground plane around and a little below a scene.
QXScenePart BuildGround(QXScene const& scene);

}  // namespace QXApp
