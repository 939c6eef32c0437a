/// @file
/// The geometry that a drawable of the null renderer copied.
#pragma once

#include <vector>

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXRenderOperation;
class QXRenderOperationMultiIndex;
struct QXStaticGeometryBucket;

/// One index range: entries, how they join to triangles, and what a host may change on the range.
struct QXNullIndexRange {
  /// Triangles that the range draws; 0 for points, lines and unknown kinds.
  unsigned int GetTriangleCount() const;
  /// Whether the range draws at all: points and lines do.
  unsigned char IsDrawn() const { return static_cast<unsigned char>(m_bVisible && !m_arrIndices.empty()); }

  std::vector<unsigned int> m_arrIndices;
  int m_eOperationType = 0;
  QXColorValue3D m_Color{1.0, 1.0, 1.0, 1.0};
  unsigned char m_bVisible = 1;
  /// Level of detail; 0 for what has none.
  int m_nLevel = 0;
};

/// Positions, colours and index ranges, copied from the operations that hosts hand in. Broken input (missing buffers,
/// offsets outside the vertex, unknown index types) gives less geometry, indices past the vertices draw nothing.
class QXNullGeometry {
public:
  /// Empties it.
  void Clear();
  /// In place of what it held.
  void Set(QXRenderOperationMultiIndex const& operation);
  /// The merged vertices and packages of static geometry in place of what it held, one range a package, level by level.
  /// Without positions there are no ranges; a package that is null or has an index past the vertices is an empty range.
  /// @param arrLevelDistances  see QXRenderOperationManager::CreateStaticGeometry3D
  void Set(QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances);
  /// Behind what it holds, as one index range.
  void Append(QXRenderOperation const& operation);

  unsigned int GetVertexCount() const { return static_cast<unsigned int>(m_arrPositions.size() / 3); }
  /// Whether a range draws while the eye is so far from the bounds; that matters to levels of static geometry alone.
  unsigned char IsDrawn(QXNullIndexRange const& range, double dDistance) const;
  /// Box of all positions, null without any.
  QXBoundingBox GetBounds() const;
  /// Nearest hit of a ray with the visible triangles under a model matrix, from either side.
  /// @param dDistance  set on a hit, in lengths of vecDirection
  unsigned char Intersect(
      QXMatrix4d const& matModel, QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const;

  /// 3 floats a vertex.
  std::vector<float> m_arrPositions;
  /// One QDCRGBA word a vertex; empty without colours.
  std::vector<unsigned int> m_arrColors;
  std::vector<QXNullIndexRange> m_arrRanges;

  /// Of static geometry.
  std::vector<double> m_arrLevelDistances;

private:
  QXVector3d GetPosition(unsigned int nVertex) const;
};

}  // namespace QXC
