/// @file
/// Meshes at thousands of places.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

namespace QXC {

class QXInstancing;
class QXMatrix4d;
class QXROInstancePtr;
class QXRenderOperationMultiIndex;
class QXVector3d;
struct QXColorValue3D;

/// Draws a mesh at thousands of places in one operation of the device. The plug-in stores its object in
/// QXGraphics3D::m_pHwInstancingManager and nulls the member before it deletes the object; hosts get it by
/// GetHwInstancingManager, null where the renderer has none. The library calls none of it.
///
/// A host makes an instancing, gives it a mesh and adds placements: world matrices in double precision, row vectors,
/// numbered from 0 in the order of their coming. The renderer makes them relative to the scene's origin before it
/// narrows them, and culls them one by one or in groups. A matrix may be changed in every frame: nothing is sent before
/// Update.
///
/// Ownership: instancings belong to the manager, and go with QXGraphics3D::ClearResource too, which frees the textures
///            of their meshes. Meshes and matrices are copied before an operation returns.
/// Failure:   an instancing that is not this manager's, null included, and numbers of placements that do not exist
///            change nothing and give 0.
/// Threads:   the render thread, outside a frame.
class QXGRAPHICS3D_API QXHwInstancingManager {
public:
  QXHwInstancingManager();
  QXHwInstancingManager(QXHwInstancingManager const& other);
  QXHwInstancingManager& operator=(QXHwInstancingManager const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Destroys all instancings.
  virtual ~QXHwInstancingManager();

  /// 0: the device draws one place after the other; everything works all the same.
  virtual unsigned char IsSupported() const = 0;
  /// Most places that the device draws in one operation, at least 1.
  virtual unsigned int GetMaxPlacementCount() const = 0;
  /// A new instancing without mesh and placements. Null if the name is empty or taken, or the scene unknown.
  virtual QXInstancing* CreateInstancing(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) = 0;
  virtual void DestroyInstancing(QXInstancing* pInstancing) = 0;
  virtual void DestroyAllInstancings() = 0;
  /// Null if there is none of that name.
  virtual QXInstancing* GetInstancing(QdcUnicodeString const& strName) const = 0;
  virtual unsigned int GetInstancingCount() const = 0;
  /// Gives an instancing its mesh in place of a former one; null takes it away. Textures are referenced until then.
  /// @return  0 without an effect for geometry that cannot be drawn
  virtual unsigned char SetMesh(QXInstancing* pInstancing, QXRenderOperationMultiIndex* pMesh) = 0;
  /// The same with a shared mesh, whose drawable is made if need be; it stays visible at its own place until the host
  /// hides it. The manager holds the pointer as long as it draws the mesh.
  virtual unsigned char SetSharedMesh(QXInstancing* pInstancing, QXROInstancePtr const& pMesh) = 0;
  /// Adds placements at the end.
  /// @return  the number of the first one
  virtual unsigned int AddPlacements(QXInstancing* pInstancing, QXMatrix4d const* pMatrices, unsigned int nCount) = 0;
  /// Moves placements. Cheap: what one frame of moving vehicles costs.
  /// @return  0 without an effect if they are not all there
  virtual unsigned char SetPlacements(
      QXInstancing* pInstancing, unsigned int nFirst, QXMatrix4d const* pMatrices, unsigned int nCount) = 0;
  /// @return  0 with the matrix unchanged if there is no such placement
  virtual unsigned char GetPlacement(
      QXInstancing* pInstancing, unsigned int nPlacement, QXMatrix4d& matPlacement) const = 0;
  /// Removes placements with their colours and identifiers; those behind move up and get lower numbers. As many as
  /// there are, if nCount reaches past the last. Cost: linear in those behind, so many go in one call or from the end.
  virtual void RemovePlacements(QXInstancing* pInstancing, unsigned int nFirst, unsigned int nCount) = 0;
  virtual unsigned int GetPlacementCount(QXInstancing* pInstancing) const = 0;
  /// 0: this place is left out; 1 is the default. The whole instancing is shown and hidden by QXInstancing::SetVisible.
  virtual void SetPlacementVisible(QXInstancing* pInstancing, unsigned int nPlacement, unsigned char bVisible) = 0;
  /// Colour multiplied with the mesh's own; white at first.
  virtual void SetPlacementColor(QXInstancing* pInstancing, unsigned int nPlacement, QXColorValue3D const& color) = 0;
  /// Identifier drawn into a selection target, 0: cannot be picked (the default).
  virtual void SetPlacementSelectionID(QXInstancing* pInstancing, unsigned int nPlacement, unsigned int nID) = 0;
  /// Places are drawn only while the camera is this far from them, in world units. A far distance of 0 means without
  /// limit.
  virtual void SetVisibleDistance(QXInstancing* pInstancing, double dNear, double dFar) = 0;
  /// 1: drawn into shadow maps.
  virtual void SetCastShadow(QXInstancing* pInstancing, unsigned char bCast) = 0;
  /// Matrix behind that of each placement, to move all of them at once; the identity at first.
  virtual void SetModelMatrix(QXInstancing* pInstancing, QXMatrix4d const& matModel) = 0;
  /// World bounds of all placements, hidden ones included; a null box without any or without a mesh.
  virtual QXBoundingBox GetBoundingBox(QXInstancing* pInstancing) const = 0;
  /// Nearest hit of a ray with the triangles of the visible placements, in world coordinates.
  /// @param dDistance   set on a hit, in lengths of vecDirection
  /// @param nPlacement  set on a hit
  /// @return  1 on a hit
  virtual unsigned char Intersect(QXInstancing* pInstancing, QXVector3d const& vecOrigin,
      QXVector3d const& vecDirection, double& dDistance, unsigned int& nPlacement) const = 0;
  /// Placements that the last drawn view showed, after culling, for statistics.
  virtual unsigned int GetDrawnPlacementCount(QXInstancing* pInstancing) const = 0;
  /// Sends what has changed to the device. Called by the renderer before the first target of a frame is drawn, and by
  /// hosts that draw a target by themselves.
  virtual void Update() = 0;
};

}  // namespace QXC
