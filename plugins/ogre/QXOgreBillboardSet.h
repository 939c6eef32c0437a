/// @file
/// The billboards of a scene, drawn in few batches.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include <OgreHardwareVertexBuffer.h>
#include <OgrePrerequisites.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include <plugins/ogre/QXOgreRenderable.h>
#include <plugins/ogre/QXOgreView.h>

namespace QXC {

class QXOgreBillboard;
class QXOgreDevice;
class QXOgreTextureSource;

/// All billboards of one scene. For each view their corners are computed in double, in the coordinates of the eye, and
/// those that are seen go into one vertex buffer, ordered by depth. Neighbours in that order that show the same texture
/// are one draw operation, unless a transparent drawable stands between them: then it is blended between them.
class QXOgreBillboardSet final {
public:
  explicit QXOgreBillboardSet(QXOgreDevice& device);
  /// The billboards stay, in no scene.
  ~QXOgreBillboardSet();
  QXOgreBillboardSet(QXOgreBillboardSet const&) = delete;
  QXOgreBillboardSet& operator=(QXOgreBillboardSet const&) = delete;

  /// Called by the billboards themselves. Cost: constant.
  void Add(QXOgreBillboard* pBillboard);
  void Remove(QXOgreBillboard* pBillboard);
  bool IsEmpty() const { return m_arrBillboards.empty(); }
  /// Around the visible ones, of any camera's; those with a size in pixels count as points. Null if there are none.
  QXBoundingBox GetBounds() const;

  /// Shows those whose identifiers are among them in the colour of selected things, and no others.
  void SelectObjects(std::set<unsigned int> const& setIDs);
  void SetSelectionColor(QXColorValue3D const& color) { m_SelectionColor = color; }
  /// The first with a selection identifier; null if there is none. Cost: linear.
  QXOgreBillboard* Find(unsigned int nSelectionID) const;

  /// Puts what the view sees into the queue and counts it. Allocates only while there are more than ever before.
  /// @param arrDepths  of the transparent drawables in the queue; sorted here
  void Queue(
      QXOgreView const& view, std::vector<Ogre::Real>& arrDepths, Ogre::RenderQueue& queue, QXOgreCounts& counts);

private:
  /// A billboard that is seen, in the coordinates of the eye.
  struct Item {
    QXOgreBillboard const* m_pBillboard;
    QXOgreTextureSource const* m_pSource;
    double m_dDepth;
    /// Lower left, lower right, upper right, upper left: x and y; z is the depth.
    std::array<double, 8> m_arrCorners;
    bool m_bTransparent;
  };
  struct Vertex {
    float m_fPosition[3];
    float m_fColor[4];
    float m_fTexCoord[2];
    /// The identifier's bytes from the top one down.
    std::uint8_t m_nIdentifier[4];
  };
  /// One draw operation.
  struct Batch;

  void CollectItems(QXOgreView const& view);
  /// False if the view does not see it.
  static bool Place(QXOgreBillboard const& billboard, QXOgreView const& view, Item& item);
  void SortItems();
  void UploadVertices();
  void MakeRoom(std::size_t nQuads);
  /// Whether the second of two neighbours belongs into the batch that the first one began.
  static bool IsOneBatch(Item const& first, Item const& next, std::vector<Ogre::Real> const& arrDepths);
  void QueueBatch(
      std::size_t nBatch, std::size_t nFirst, std::size_t nEnd, bool bIdentifiers, Ogre::RenderQueue& queue);

  QXOgreDevice& m_Device;
  std::vector<QXOgreBillboard*> m_arrBillboards;
  std::vector<Item> m_arrItems;
  std::vector<Vertex> m_arrVertices;
  std::unique_ptr<Ogre::VertexData> m_pVertexData;
  Ogre::HardwareVertexBufferSharedPtr m_pVertexBuffer;
  Ogre::HardwareIndexBufferSharedPtr m_pIndexBuffer;
  std::vector<std::unique_ptr<Batch>> m_arrBatches;
  std::vector<QXOgreBinding> m_arrBindings;
  QXColorValue3D m_SelectionColor;
  std::size_t m_nRoom;
  unsigned long long m_nMade;
};

}  // namespace QXC
