/// @file
/// Maker of the renderer's drawables.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXBillboard;
class QXParticleSystem3D;
class QXQueryOperation3D;
class QXRenderOperation3D;
class QXRibbonTrail3D;
class QXSkeletonAnimation;
struct QXStaticGeometryBucket;

/// Makes the drawables of a renderer; QXGraphics3D::GetRenderOperationManager hands it out. Scenes are named as
/// QXGraphics3D::GetSceneName and CreateScene name them.
/// Ownership: every result belongs to the caller, who deletes it before the renderer shuts down. An operation
///            for something that a renderer does not have returns null, drawables excepted.
/// Threads:   the render thread, outside a frame.
class QXGRAPHICS3D_API QXRenderOperationManager {
public:
  QXRenderOperationManager();
  QXRenderOperationManager(QXRenderOperationManager const& other);
  QXRenderOperationManager& operator=(QXRenderOperationManager const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXRenderOperationManager();

  /// Drawables that exist now, for leak checks and statistics.
  virtual unsigned int GetRenderOperationCount() const = 0;

  /// A new, empty drawable. Never null: the callers use the result unseen, so a plug-in that fails must give an
  /// object that draws nothing. A scene that does not exist makes a drawable that stands in none.
  /// @param bAttach  1: stands in the scene at once, 0: the caller attaches it later
  virtual QXRenderOperation3D* CreateRenderOperation3D(QdcUnicodeString const& strSceneName, unsigned char bAttach) = 0;

  /// Deletes a drawable of this manager; null does nothing. The same as deleting it.
  virtual void DestroyRenderOperation3D(QXRenderOperation3D* pOperation) = 0;
  /// Puts a drawable into a scene, out of the one where it stood.
  /// @return  0 with no effect if the scene does not exist
  virtual unsigned char AttachRenderOperation3D(
      QXRenderOperation3D* pOperation, QdcUnicodeString const& strSceneName) = 0;
  /// Takes a drawable out of its scene; it keeps its geometry.
  virtual void DetachRenderOperation3D(QXRenderOperation3D* pOperation) = 0;
  /// A picture that faces the camera. Null if the scene does not exist: it could not be put into another one later.
  virtual QXBillboard* CreateBillboard(QdcUnicodeString const& strSceneName) = 0;
  /// A drawable of one merged bucket of a static geometry, standing in the scene. Never null, as above; a scene that
  /// does not exist makes a drawable that stands in none. Everything is copied: bucket and geometry may die afterwards.
  /// Ranges: level by level, in each level one a package in their order. A range is drawn with the pass that
  ///         m_mapPasses has under the package's first pass name, with plain vertex colours where there is none; its
  ///         textures are those that the renderer's texture manager has under the names in the pass's units.
  /// Place:  the host sets the model matrix (QXStaticGeometry::GetLocalViewMatrix).
  /// SetBatchState: objects are the keys of m_mapSubObjects.
  /// Bad input: what is not whole is left out: an array shorter than the vertices, an index past them, a missing pass.
  /// @param arrLevelDistances  level n is drawn while the eye is at least arrLevelDistances[n] and less than
  ///                           arrLevelDistances[n + 1] world units away from the bounds, the last one without an
  ///                           end. A level without an entry is not drawn. An empty array draws level 0 from anywhere
  virtual QXRenderOperation3D* CreateStaticGeometry3D(QdcUnicodeString const& strSceneName,
      QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances) = 0;
  /// @param strTemplate  the renderer's name of the kind of particles, empty for plain ones
  virtual QXParticleSystem3D* CreateParticleSystem(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strTemplate) = 0;
  /// @param strMaterial  the renderer's name of the material, empty for plain colours
  virtual QXRibbonTrail3D* CreateRibbonTrail(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strName, QdcUnicodeString const& strMaterial) = 0;
  /// A count of visible pixels.
  virtual QXQueryOperation3D* CreateQueryOperation(QdcUnicodeString const& strName) = 0;
  /// Bones and key frames; takes effect when a drawable is told to use it.
  virtual QXSkeletonAnimation* CreateSkeletonAnimation(QdcUnicodeString const& strName) = 0;
};

}  // namespace QXC
