/// @file
/// The places of one mesh, and which of them a view sees.
#pragma once

#include <array>
#include <cstddef>
#include <set>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

struct QXOgrePickFilter;
struct QXOgreView;

/// One instance as the vertex program takes it.
struct QXOgreInstance {
  /// For each axis of the world what the mesh's coordinates are multiplied with, and where the zero of the mesh's
  /// buffers stands in the coordinates of the eye.
  float m_fRows[3][4];
  float m_fColor[4];
  /// The identifier's bytes in the order of a pixel's: top bits in alpha, the rest from red to blue. For a picture all
  /// ones if it is shown as selected, else zeros.
  unsigned char m_nIdentifier[4];
};

/// Placements by number, with colour, identifier and visibility. What follows from mesh and matrices is kept beside
/// them, each kind in an array of its own: culling streams the boxes and nothing else. Matrices that are no placements,
/// with entries that are no numbers or with a last column other than (0, 0, 0, 1), draw nothing and have no bounds.
///
/// Cost: culling is one pass over the boxes, 48 bytes each; what is seen takes 100 bytes more to read and 68 to write.
class QXOgrePlacements final {
public:
  unsigned int GetCount() const { return static_cast<unsigned int>(m_arrMatrices.size()); }
  void Add(QXMatrix4d const* pMatrices, unsigned int nCount);
  /// The placements must be there, as in all that follow.
  void Set(unsigned int nFirst, QXMatrix4d const* pMatrices, unsigned int nCount);
  QXMatrix4d const& Get(unsigned int nPlacement) const { return m_arrMatrices[nPlacement]; }
  void Remove(unsigned int nFirst, unsigned int nCount);
  void SetVisible(unsigned int nPlacement, unsigned char bVisible);
  unsigned char IsVisible(unsigned int nPlacement) const { return (m_arrStates[nPlacement] & SHOWN) != 0; }
  void SetColor(unsigned int nPlacement, QXColorValue3D const& color);
  void SetIdentifier(unsigned int nPlacement, unsigned int nID);
  unsigned int GetIdentifier(unsigned int nPlacement) const { return m_arrIdentifiers[nPlacement]; }
  /// Shows those with these identifiers as selected, and no others.
  void SelectObjects(std::set<unsigned int> const& setIDs);
  /// Whether a placement's colour lets something through.
  bool HasTransparentColors() const { return m_nTransparent > 0; }

  /// Behind that of each placement.
  void SetModelMatrix(QXMatrix4d const& matModel);
  /// Nothing is computed anew where all is as it was.
  /// @param matMesh   in front of that of each placement
  /// @param boxMesh   null: there is nothing to draw
  /// @param vecZero   where the zero of the buffers stands in the mesh
  void SetMesh(QXMatrix4d const& matMesh, QXBoundingBox const& boxMesh, QXVector3d const& vecZero);
  /// From the mesh to the world.
  QXMatrix4d GetWorldMatrix(unsigned int nPlacement) const;

  // What follows is right after Update.

  /// Computes what has changed. Cost: linear in the placements from the first that moved to the last, and in all where
  /// mesh or model matrix are others.
  void Update();
  /// Around all of them, and around those that are not hidden; null without any. Cost: linear once after a change.
  QXBoundingBox const& GetBounds() const;
  QXBoundingBox const& GetVisibleBounds() const;
  QXBoundingBox const& GetBounds(unsigned int nPlacement) const { return m_arrBoxes[nPlacement]; }
  /// Whether it has a place in the world.
  bool HasPlace(unsigned int nPlacement) const { return (m_arrStates[nPlacement] & PLACED) != 0; }

  /// Finds those that the view sees, and keeps them until the next call.
  /// @param dNear, dFar  of the bounds' centre from the eye; a far one of 0 is without limit
  /// @param bSort        from back to front instead of in their order
  /// @return  how many they are
  std::size_t Collect(QXOgreView const& view, double dNear, double dFar, bool bSort);
  /// Writes some of those that were collected.
  /// @param bIdentifiers  for identifiers in place of colours
  void Write(std::size_t nFirst, std::size_t nCount, QXOgreInstance* pInstances, bool bIdentifiers = false) const;
  /// The directions of the world in the coordinates of the eye, as the view had them: for the vertex program.
  QXMatrix4d const& GetToEye() const { return m_matToEye; }

private:
  static constexpr unsigned char SHOWN = 1;
  static constexpr unsigned char PLACED = 2;
  static constexpr unsigned char DRAWN = SHOWN | PLACED;
  static constexpr unsigned char SELECTED = 4;

  void Touch(std::size_t nFirst, std::size_t nEnd);
  void Compute(std::size_t nPlacement);
  void MeasureBounds() const;
  template <class See>
  std::size_t Select(See see);
  void SelectSeen(QXOgreView const& view);
  void DropDistant(double dNear, double dFar);
  void DropOthers(QXOgrePickFilter const& filter);
  void SortByDepth();

  std::vector<QXMatrix4d> m_arrMatrices;
  std::vector<unsigned int> m_arrIdentifiers;
  std::vector<unsigned char> m_arrStates;
  std::vector<QXBoundingBox> m_arrBoxes;
  /// Of the mesh's zero, in the world.
  std::vector<std::array<double, 3>> m_arrPlaces;
  /// Apart from the places.
  std::vector<QXOgreInstance> m_arrInstances;
  /// Those that are seen; there is always room for all.
  std::vector<unsigned int> m_arrSeen;
  std::vector<float> m_arrDepths;
  std::size_t m_nSeen = 0;
  std::size_t m_nTransparent = 0;
  /// Placements that moved since the last Update.
  std::size_t m_nFirstMoved = 0;
  std::size_t m_nMovedEnd = 0;
  QXMatrix4d m_matModel;
  QXMatrix4d m_matMesh;
  QXBoundingBox m_MeshBounds;
  QXVector3d m_vecZero;
  QXMatrix4d m_matToEye;
  /// Whether they are others than the identity.
  bool m_bModelMatrix = false;
  bool m_bMeshMatrix = false;
  mutable QXBoundingBox m_Bounds;
  mutable QXBoundingBox m_VisibleBounds;
  mutable bool m_bBoundsKnown = true;
};

}  // namespace QXC
