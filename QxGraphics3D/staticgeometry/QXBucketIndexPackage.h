/// @file
/// What one mesh contributes to one pass of a bucket of static geometry.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <vector>

namespace QXC {

class QXIndexPackage;

/// A mesh's share of a pass while a bucket gathers: its index packages, and what the merge does to its indices and
/// texture coordinates. A mesh with several passes, or several index packages of one pass, has as many records.
///
/// Ownership: none; the index packages are the host's and live until the merge is done.
/// Copying:   all members, the pointers as pointers. Moving leaves the other without index packages.
/// Cost:      about 1.1 KiB, nearly all of it the eight matrices.
struct QXGRAPHICS3D_API QXBucketIndexPackage {
  QXBucketIndexPackage() = default;
  QXBucketIndexPackage(QXBucketIndexPackage const& other) = default;
  QXBucketIndexPackage(QXBucketIndexPackage&& other) noexcept = default;
  QXBucketIndexPackage& operator=(QXBucketIndexPackage const& other) = default;
  QXBucketIndexPackage& operator=(QXBucketIndexPackage&& other) noexcept = default;
  ~QXBucketIndexPackage() = default;

  /// The mesh's first vertex in the bucket. The merge adds it to each index.
  int m_nVertexStart = 0;
  /// Which texture of a folded pass the mesh uses; the merge writes it as the fourth texture coordinate. While nothing
  /// is folded it is 1, the last number of a homogeneous coordinate.
  float m_fTextureLayer = 1.0F;
  /// The mesh's indices by level of detail: entry n is for level n. Adding a mesh stores the one for level 0; a host
  /// with more levels appends theirs before the merge.
  std::vector<QXIndexPackage*> m_vecIndexPackages;
  /// Transformation of the texture coordinates of each unit, applied by the merge.
  QXMatrix4d m_matTextures[8];
};

}  // namespace QXC
