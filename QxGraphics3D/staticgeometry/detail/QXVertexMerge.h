/// @file
/// Copies the vertices of the meshes of a bucket into its merged arrays.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/staticgeometry/detail/QXArrayWriter.h>
#include <QxGraphics3D/staticgeometry/detail/QXMergeKernels.h>

#include <cstddef>

namespace QXC {
struct QXStaticGeometryBucket;
}

namespace QXC::detail {

/// Polylines keep, beside each of their points, other points in their normals and the coordinates of unit 0.
bool IsPolyline(QXStaticGeometryBucket const& bucket);

/// How a bucket is merged.
struct QXMergeOptions {
  /// Of the base frame.
  QXMatrix4d m_matInverse;
  unsigned char m_bNoTransform = 0;
  /// The merged arrays together are too large for the caches.
  bool m_bStream = false;
  QXMergeKernels const* m_pKernels = nullptr;

  /// How to write an array; see QXArrayWriter.
  decltype(QXMergeKernels::m_pfnStream) ChooseStream(void const* pArray, std::size_t nBytes) const;
};

/// One cursor an array of the bucket's package, over all meshes. The arrays are there and have no contents yet; all of
/// them is written.
class QXVertexMerge {
public:
  QXVertexMerge(QXStaticGeometryBucket& bucket, QXMergeOptions const& options);

  void Run();

private:
  using Numbers = QXArrayWriter<float>;
  using Words = QXArrayWriter<unsigned int>;

  void CopyMesh(QXVertexDataPackage const& mesh, QXMatrix4d const& matModel);
  void CopyPositions(QXVertexDataPackage const& mesh, QXMatrix4d const& transform);
  void CopyNormals(QXVertexDataPackage const& mesh, QXMatrix4d const& transform);
  void CopyColors(unsigned int const* pColors, std::size_t nColors, std::size_t nVertices, Words& writer);
  void CopyCoords(QXVertexDataPackage const& mesh, unsigned int nUnit, QXMatrix4d const& transform);

  QXStaticGeometryBucket& m_bucket;
  QXMergeOptions const& m_options;
  bool m_bPolyline;
  /// The mesh after the one being copied, or null.
  QXVertexDataPackage const* m_pNext = nullptr;
  Numbers m_positions;
  Numbers m_normals;
  Words m_colors;
  Words m_secondColors;
  Numbers m_arrCoords[QXVertexDataPackage::UnitNum];
};

}  // namespace QXC::detail
