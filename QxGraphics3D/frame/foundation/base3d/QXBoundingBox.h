/// @file
/// Axis-aligned box.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

class QXMatrix4d;

/// Minimum and maximum corner, or null: no box at all. A null box has corners of zeros and a flag.
/// The corners are taken as given: a minimum above its maximum stays so, and every operation says what it makes of it.
/// Cost: 48 bytes, bare doubles instead of vectors, no store of corners and no byte for the null box, because culling
/// streams boxes through memory and its speed is that of reading them. The mark of the null box is a minimum of zeros
/// with a maximum of minus zeros: these compare and compute as zeros do, and a box made of corners never has them.
class QXGRAPHICS3D_API QXBoundingBox {
public:
  double m_dMin[3];
  double m_dMax[3];

  /// The null box.
  constexpr QXBoundingBox() : m_dMin{0.0, 0.0, 0.0}, m_dMax{-0.0, -0.0, -0.0} {}
  constexpr QXBoundingBox(QXVector3d const& minimum, QXVector3d const& maximum)
      : m_dMin{minimum.x, minimum.y, minimum.z}, m_dMax{maximum.x, maximum.y, maximum.z} {
    if (IsNULL()) m_dMax[0] = m_dMax[1] = m_dMax[2] = 0.0;  // a point at the origin, however its zeros are signed
  }

  /// Makes this the null box.
  void SetNULL();
  /// 1 for the null box; a point at the origin is none.
  constexpr unsigned char IsNULL() const {
    bool bNull = true;
    for (int nAxis = 0; nAxis < 3; ++nAxis) {
      bNull = bNull && std::bit_cast<std::uint64_t>(m_dMin[nAxis]) == 0 &&
              std::bit_cast<std::uint64_t>(m_dMax[nAxis]) == ms_nMinusZero;
    }
    return bNull ? 1 : 0;
  }
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
  /// The box around the eight corners after a transformation; the null box stays null.
  QXBoundingBox GetTransformed(QXMatrix4d const& mat) const;
  /// From a point to the nearest one of the box; 0 inside it. The null box is nowhere: infinitely far.
  double GetDistance(QXVector3d const& vecPoint) const;

private:
  static constexpr std::uint64_t ms_nMinusZero = 0x8000000000000000U;
};

}  // namespace QXC
