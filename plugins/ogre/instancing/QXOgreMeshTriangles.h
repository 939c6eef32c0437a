/// @file
/// Triangles of a mesh where rays can meet them.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

class QXOgreDrawable;
class QXOgreGeometry;
struct QXOgreRange;

/// A copy of the triangles of a drawable, read back from the device when a ray first asks for them: few meshes are ever
/// asked, and the drawable keeps nothing in memory for those that are not.
class QXOgreMeshTriangles final {
public:
  /// Reads them where the geometry is another one. Cost then: one pass over vertices and indices.
  void Follow(QXOgreDrawable const& mesh);
  /// Nearest hit with the visible ranges at a place of the mesh. Cost: linear in the triangles.
  /// @param dDistance  set on a hit, in lengths of the direction, 0 or more
  bool Intersect(QXOgreDrawable const& mesh, QXMatrix4d const& matWorld, QXVector3d const& vecOrigin,
      QXVector3d const& vecDirection, double& dDistance) const;
  /// Whether a ray comes so near to a box that it may hit what is in it.
  static bool MayHit(QXBoundingBox const& box, QXVector3d const& vecOrigin, QXVector3d const& vecDirection);

private:
  struct Triangle {
    std::array<std::uint32_t, 3> m_nVertices;
    std::uint32_t m_nRange;
  };

  void ReadPositions(QXOgreGeometry const& geometry);
  void ReadRange(QXOgreRange const& range, std::uint32_t nRange);

  unsigned long long m_nVersion = 0;
  std::vector<QXVector3d> m_arrPositions;
  std::vector<Triangle> m_arrTriangles;
};

}  // namespace QXC
