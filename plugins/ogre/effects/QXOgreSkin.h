/// @file
/// Vertices that bones move.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

struct QXOgreVertices;

/// Vertices at rest with the bones that move them, and where those have moved them. On the CPU: every program draws
/// moved vertices without a variant of its own, bounds and hits follow what is seen, the number of bones has no limit,
/// and a software rasteriser would do the same work in the same place.
class QXOgreSkin final {
public:
  /// Copies what it needs.
  explicit QXOgreSkin(QXOgreVertices const& vertices);
  /// Whether vertices say which bones move them (QXSkeletonAnimation).
  static bool IsFor(QXOgreVertices const& vertices);

  /// Overwrites places at rest and lets the bounds grow by them; they must be there.
  void SetPositions(unsigned int nFirst, unsigned int nCount, float const* pPositions);
  /// Moves all vertices: each by the matrices of its bones, weighted; normals by what keeps them square to faces.
  /// Cost: linear in the vertices, up to four matrices each; does not allocate.
  /// @param arrMoves  one a bone
  /// @param vecZero   subtracted from the places, before they become floats
  void Move(std::vector<QXMatrix4d> const& arrMoves, QXVector3d const& vecZero);
  /// A box around the vertices wherever the matrices take them, without moving them: that of what each bone moves,
  /// moved. Never too small, since a weighted mean stays inside. Cost: linear in the bones.
  QXBoundingBox GetBounds(std::vector<QXMatrix4d> const& arrMoves) const;

  /// After Move, three floats a vertex; normals are empty where the source has none.
  std::vector<float> const& GetPositions() const { return m_arrMovedPositions; }
  std::vector<float> const& GetNormals() const { return m_arrMovedNormals; }

private:
  struct Vertex {
    std::array<float, 3> m_arrPosition;
    std::array<float, 3> m_arrNormal;
    std::array<std::uint16_t, 4> m_arrBones;
    std::array<float, 4> m_arrWeights;  ///< 0 for what does not count
  };
  /// What one bone moves.
  struct Share {
    std::size_t m_nBone;
    QXBoundingBox m_Box;
  };

  void MakeShares();
  /// Lets what their bones move grow by some vertices.
  void GrowShares(std::size_t nFirst, std::size_t nCount);

  std::vector<Vertex> m_arrVertices;
  /// By rising bones.
  std::vector<Share> m_arrShares;
  /// Around the vertices that no bone moves.
  QXBoundingBox m_RestBox;
  std::vector<float> m_arrMovedPositions;
  std::vector<float> m_arrMovedNormals;
};

}  // namespace QXC
