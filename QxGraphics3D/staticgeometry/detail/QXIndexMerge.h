/// @file
/// Copies the indices of the meshes of a bucket into its merged arrays, and transforms the texture coordinates that
/// they use.
#pragma once

#include <QxGraphics3D/staticgeometry/detail/QXArrayWriter.h>
#include <QxGraphics3D/staticgeometry/detail/QXTouchedVertices.h>
#include <QxGraphics3D/staticgeometry/detail/QXVertexMerge.h>

#include <cstddef>
#include <map>
#include <vector>

namespace QXC {
struct QXBucketIndexPackage;
struct QXStaticGeometryBucket;
class QXIndexPackage;
}  // namespace QXC

namespace QXC::detail {

class QXIndexMerge {
public:
  QXIndexMerge(QXStaticGeometryBucket& bucket, QXMergeOptions const& options);

  void Run();

private:
  template <class Word>
  void CopyRecords(
      std::vector<QXBucketIndexPackage> const& arrRecords, int nKey, long long nLevel, QXIndexPackage& merged);
  template <class Word>
  void CopyRecord(
      QXBucketIndexPackage const& record, QXIndexPackage const& source, bool bTransform, QXArrayWriter<Word>& writer);
  void CountForSubObject(int nVertexStart, int nKey, std::size_t nOffset, std::size_t nNum);
  void TransformTouched(QXBucketIndexPackage const& record);
  void TransformUnit(QXBucketIndexPackage const& record, unsigned int nUnit);
  bool IsUnitTransformed(unsigned int nUnit) const;

  QXStaticGeometryBucket& m_bucket;
  QXMergeOptions const& m_options;
  /// Whether coordinates are transformed at all.
  bool m_bTransforms = false;
  QXTouchedVertices m_touched;
  /// The indices after those that are being copied, to be fetched meanwhile; null if there are none.
  void const* m_pAhead = nullptr;
};

}  // namespace QXC::detail
