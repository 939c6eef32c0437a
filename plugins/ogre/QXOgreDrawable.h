/// @file
/// What a scene draws: geometry at a place.
#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <vector>

#include <OgrePrerequisites.h>

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

#include <plugins/ogre/QXOgreGeometry.h>
#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/QXOgreRenderable.h>
#include <plugins/ogre/QXOgreTextureSet.h>
#include <plugins/ogre/QXOgreView.h>

namespace QXC {

class QXOgreBucket;
class QXOgreDevice;
class QXOgreScene;
class QXOgreSceneNode;
class QXOgreSkeletonAnimation;
class QXTextureManager;
class QXRenderOperationMultiIndex;
struct QXBatchSelAndVertexColor;
struct QXStaticGeometryBucket;

/// How a drawable looks, apart from its geometry.
struct QXOgreLook {
  QXColorValue3D m_Color = QXColorValue3D::White;
  /// Multiplied with m_Color, by whoever marks objects for a while.
  QXColorValue3D m_MarkColor = QXColorValue3D::White;
  double m_dOpacity = 1.0;
  /// Alpha: how much of the own colour it covers.
  QXColorValue3D m_SelectionColor = {1.0, 0.8, 0.0, 0.6};
  bool m_bSelected = false;
  bool m_bLight = true;
  int m_nPriority = 0;
  /// Distances of the bounds' centre from the eye; far 0 is without limit.
  double m_dNear = 0.0;
  double m_dFar = 0.0;
  /// m_bTransparent is not read: it follows from the colours.
  QXOgreSurface m_Surface;
};

/// Geometry on the GPU with model matrix, look and visibility, standing in a scene or in none. It belongs to the host,
/// so it lives on, drawing nothing, when its scene or the device goes first.
class QXOgreDrawable final {
public:
  /// @param pDevice  null: one that draws nothing
  explicit QXOgreDrawable(QXOgreDevice* pDevice);
  ~QXOgreDrawable();
  QXOgreDrawable(QXOgreDrawable const&) = delete;
  QXOgreDrawable& operator=(QXOgreDrawable const&) = delete;

  /// Moves into a scene of the same device, off its node; null takes it out of the one where it stands.
  void SetScene(QXOgreScene* pScene);
  QXOgreScene* GetScene() const { return m_pScene; }
  /// Hangs it under a node of its scene; null: under the root.
  void SetNode(QXOgreSceneNode* pNode);
  /// Null for the root.
  QXOgreSceneNode const* GetNode() const { return m_pNode; }
  /// Called by the device at its end: everything on the GPU goes.
  void LeaveDevice();

  /// Replaces the geometry by a copy of the source's, and model matrix and colour where the source has such. The
  /// textures of its packages are used from then on.
  /// @param pManager  knows textures by name; may be null
  void SetGeometry(QXRenderOperationMultiIndex const& source, QXTextureManager* pManager);
  /// Replaces the geometry by a copy of a bucket of static geometry; its passes stand beside the look.
  /// @param arrLevelDistances  see QXRenderOperationManager::CreateStaticGeometry3D
  void SetBucket(
      QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances, QXTextureManager* pManager);
  /// Selects and colours objects of a bucket; nothing for other geometry.
  void SetBatchState(QXBatchSelAndVertexColor const& state);
  void ClearGeometry();
  QXOgreGeometry const& GetGeometry() const { return m_Geometry; }
  unsigned char UpdatePositions(unsigned int nFirst, unsigned int nCount, float const* pPositions);
  unsigned char UpdateColors(unsigned int nFirst, unsigned int nCount, unsigned int const* pColors);
  /// Ranges in the order of the source; a number past the last is ignored.
  void SetRangeVisible(unsigned int nRange, unsigned char bVisible);
  void SetRangeColor(unsigned int nRange, QXColorValue3D const& color);
  unsigned int GetTriangleCount() const;

  /// Of a unit, for the ranges that bring no texture.
  void SetTexture(unsigned int nUnit, QXTexture* pTexture);
  /// Applied to a unit's coordinates after the transform that a range brings.
  void SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture);
  /// Gives every range the material that its look and its textures ask for.
  void UpdateMaterials();

  /// Lets bones move the vertices that say which do; null: they stand at rest.
  void SetSkeleton(QXOgreSkeletonAnimation* pSkeleton);
  QXOgreSkeletonAnimation* GetSkeleton() const { return m_pSkeleton; }
  /// Called by the skeleton when its bones have moved. The bounds follow at once, the vertices when they are drawn.
  void UpdateSkeleton();

  void SetModelMatrix(QXMatrix4d const& matModel);
  QXMatrix4d const& GetModelMatrix() const { return m_matModel; }
  /// Culling goes by this box, in model coordinates; null (as at first): by the vertices' own. Where bones move those
  /// out of it, it grows.
  void SetBounds(QXBoundingBox const& box);
  QXBoundingBox const& GetBounds() const;
  /// In world coordinates; null if there is nothing to draw.
  QXBoundingBox const& GetWorldBounds() const { return m_WorldBounds; }
  /// Called when a node above moves.
  void UpdateWorld();
  void SetVisible(unsigned char bVisible) { m_bVisible = bVisible; }
  unsigned char IsVisible() const { return m_bVisible; }
  /// Whether both it and its node are visible.
  bool IsShown() const;
  /// Identifier for picking, 0 for none. Objects of a bucket add their keys to it.
  void SetSelectionID(unsigned int nID);
  unsigned int GetSelectionID() const { return m_nSelectionID; }
  /// The key of the object of a bucket that a selection identifier means; false if it means none.
  bool FindObject(unsigned int nID, unsigned int& nKey) const;
  /// Whether parts of it have identifiers of their own.
  bool HasObjects() const;
  /// Shows what is among the identifiers as selected, itself or objects of its bucket, and nothing else of it.
  void SelectObjects(std::set<unsigned int> const& setIDs);
  /// Of an object of the bucket, in world coordinates; null without the object. Reads its vertices from the device.
  QXBoundingBox GetObjectBounds(unsigned int nKey) const;
  /// Whether rays meet triangles of a range.
  bool IsRangeMet(std::size_t nRange) const;
  /// Nearest triangle that a ray meets, from either side, in world coordinates: those of the visible ranges, of a bucket
  /// those of level 0. Reads vertices and indices from the device. Cost: linear in both.
  /// @param dDistance  set on a hit, in lengths of vecDirection
  bool Intersect(QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const;

  QXOgreLook const& GetLook() const { return m_Look; }
  void SetLook(QXOgreLook const& look);

  // What is drawn at other places too (instancings) asks these.

  /// One a range.
  std::vector<std::unique_ptr<QXOgreRenderable>> const& GetRenderables() const { return m_arrRenderables; }
  /// Whether it holds static geometry.
  bool IsBucket() const { return m_pBucket != nullptr; }
  /// Different for each geometry, and each state of it, that any drawable ever had.
  unsigned long long GetGeometryVersion() const { return m_nGeometryVersion; }
  /// Rises with each change of ranges and what they look like.
  unsigned long long GetLookVersion() const { return m_nLookVersion; }
  /// Puts the vertices on the device to where the skeleton has them.
  void MoveVertices() const;
  /// OGRE's number of the render priority.
  unsigned short GetQueuePriority() const;
  /// Gives a range the material that fits its textures as they are now.
  void UpdateMaterial(std::size_t nRange);

  /// Puts the ranges into the queue if the view may see any of them, and counts them.
  /// @param arrDepths  receives the depth if a range is blended
  void Queue(
      QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts);

  /// OGRE's number of the priority 0: it counts priorities in 16 bits without sign.
  static constexpr unsigned short PLAIN_PRIORITY = 0x8000;

private:
  bool IsSeen(QXOgreView const& view) const;
  void UpdateMovedBounds();
  void TakeTextures(QXRenderOperationMultiIndex const& source, QXTextureManager* pManager);
  std::vector<QXOgreBinding> FindBindings(std::size_t nRange) const;
  QXOgreBinding Bind(QXOgreTextureSet const& set, QXOgreTextureSet::Unit const& unit, int nSet) const;
  /// The colour that everything is multiplied with.
  QXColorValue3D GetTint() const;

  // Of buckets alone.
  void UpdateBucketMaterial(std::size_t nRange);
  /// @param eProgram  that of the pass; becomes the one that fits the textures and coordinates that are there
  std::vector<QXOgreBinding> FindBucketBindings(std::size_t nRange, int& eProgram) const;
  std::vector<QXOgreBinding> FindFoldedBindings(std::size_t nRange, int eProgram) const;
  /// Where the range stands in the view, as m_Place was put there.
  void PutPlace(std::size_t nRange, QXMatrix4d const& matToEye);
  /// Moves the textures that move.
  void MoveTextures(std::size_t nRange);
  bool IsLevelDrawn(std::size_t nRange, double dDistance) const;
  /// Gives the vertices of a bucket the numbers of their objects.
  void NumberObjects();
  void SetIdentities();
  void SelectObject(unsigned int nKey, bool bSelected);
  void NoteTransparent(unsigned int nFirst, unsigned int nCount, unsigned int const* pColors);

  QXOgreDevice* m_pDevice;
  QXOgreScene* m_pScene;
  QXOgreSceneNode* m_pNode;
  /// Vertices are moved when they are asked for.
  mutable QXOgreGeometry m_Geometry;
  /// Null for other geometry.
  std::unique_ptr<QXOgreBucket> m_pBucket;
  QXOgreTextureSet m_Textures;
  /// One a range, or none at all.
  std::vector<QXOgreTextureSet> m_arrRangeTextures;
  /// One a range.
  std::vector<std::unique_ptr<QXOgreRenderable>> m_arrRenderables;
  QXMatrix4d m_matModel;
  /// The model matrix and those of the nodes above.
  QXMatrix4d m_matWorld;
  QXBoundingBox m_Bounds;
  /// Of the vertices as the skeleton moves them, with m_Bounds; null where none does.
  QXBoundingBox m_MovedBounds;
  QXBoundingBox m_WorldBounds;
  QXOgreSkeletonAnimation* m_pSkeleton;
  /// The vertices on the device are not where the skeleton has them.
  mutable bool m_bMoved;
  QXOgreLook m_Look;
  /// Of the buffers' zero; the renderables point here.
  QXOgrePlace m_Place;
  unsigned int m_nSelectionID;
  unsigned char m_bVisible;
  unsigned long long m_nGeometryVersion;
  unsigned long long m_nLookVersion;
};

}  // namespace QXC
