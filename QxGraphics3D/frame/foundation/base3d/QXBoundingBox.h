/// @file
/// Axis-aligned box.
#pragma once

#include <array>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

/// Minimum and maximum corner, or null: no box at all. A null box has corners of zeros and a flag.
/// The corners are taken as given: a minimum above its maximum stays so, and every operation says what it makes of it.
/// Cost: 56 bytes, bare doubles instead of vectors and no store of corners, because culling streams boxes through
/// memory and its speed is that of reading them.
class QXGRAPHICS3D_API QXBoundingBox {
public:
  double m_dMin[3];
  double m_dMax[3];
  unsigned char m_bNull;

  /// The null box.
  constexpr QXBoundingBox() : m_dMin{0.0, 0.0, 0.0}, m_dMax{0.0, 0.0, 0.0}, m_bNull(1) {}
  constexpr QXBoundingBox(QXVector3d const& minimum, QXVector3d const& maximum)
      : m_dMin{minimum.x, minimum.y, minimum.z}, m_dMax{maximum.x, maximum.y, maximum.z}, m_bNull(0) {}

  /// Makes this the null box.
  void SetNULL();
  constexpr unsigned char IsNULL() const { return m_bNull; }
  /// Stores both corners, unsorted; the box is no longer null.
  void SetExtents(QXVector3d const& minimum, QXVector3d const& maximum);

  constexpr QXVector3d GetMin() const { return {m_dMin[0], m_dMin[1], m_dMin[2]}; }
  constexpr QXVector3d GetMax() const { return {m_dMax[0], m_dMax[1], m_dMax[2]}; }
  /// Half the sum of both corners.
  QXVector3d GetCenter() const;
  /// The eight corners; bit 0, 1 and 2 of the index choose the maximum in x, y and z.
  /// They are made anew at each call, so that a box stays small and may be read by several threads at once.
  std::array<QXVector3d, 8> GetCorners() const;
  /// Grows to the smallest minima and largest maxima of both boxes. A null box adds nothing; merging into a null box
  /// copies the other.
  void Merge(QXBoundingBox const& other);
};

}  // namespace QXC
