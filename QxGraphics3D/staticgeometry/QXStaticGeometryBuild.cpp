#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/detail/QXBucketArrays.h>
#include <QxGraphics3D/staticgeometry/detail/QXIndexMerge.h>
#include <QxGraphics3D/staticgeometry/detail/QXVertexMerge.h>

namespace QXC {

namespace {

/// Merged arrays of this size have left the caches before a renderer or a file gets them.
constexpr std::size_t StreamBytes = std::size_t{4} << 20;

bool IsMergeable(QXStaticGeometryBucket const* pBucket) {
  return pBucket && pBucket->m_pVertexPackage;
}

std::size_t GetVertexBytes(std::vector<QXStaticGeometryBucket*> const& vecBuckets) {
  std::size_t bytes = 0;
  for (QXStaticGeometryBucket const* pBucket : vecBuckets) {
    if (IsMergeable(pBucket)) bytes += detail::QXBucketArrays::GetVertexBytes(*pBucket);
  }
  return bytes;
}

void MergeBucket(QXStaticGeometryBucket& bucket, detail::QXMergeOptions const& options) {
  detail::QXBucketArrays arrays(bucket);
  try {
    arrays.MakeVertices();
    arrays.MakeIndices();
    detail::QXVertexMerge(bucket, options).Run();
    detail::QXIndexMerge(bucket, options).Run();
  } catch (...) {
    arrays.ZeroAll();
    throw;
  }
}

}  // namespace

void QXStaticGeometry::AssignStaticGeometry(QXMatrix4d matBase, unsigned char bNoTransform) {
  AssignStaticGeometry(m_vecBuckets32, matBase, bNoTransform);
  AssignStaticGeometry(m_vecBuckets16, matBase, bNoTransform);
  AssignStaticGeometry(m_vecTypedBuckets32, matBase, bNoTransform);
  AssignStaticGeometry(m_vecTypedBuckets16, matBase, bNoTransform);
}

void QXStaticGeometry::AssignStaticGeometry(
    std::vector<QXStaticGeometryBucket*> vecBuckets, QXMatrix4d matBase, unsigned char bNoTransform) {
  detail::QXMergeOptions options;
  options.m_matInverse = matBase.Invert();
  options.m_bNoTransform = bNoTransform;
  options.m_bStream = GetVertexBytes(vecBuckets) >= StreamBytes;
  options.m_pKernels = &detail::GetBestMergeKernels();
  for (QXStaticGeometryBucket* pBucket : vecBuckets) {
    if (IsMergeable(pBucket)) MergeBucket(*pBucket, options);
  }
  options.m_pKernels->m_pfnFinishStreams();
}

}  // namespace QXC
