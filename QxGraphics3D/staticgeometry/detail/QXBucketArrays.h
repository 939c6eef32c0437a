/// @file
/// The arrays that a merge fills, made at their final size.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace QXC {
class QXIndexPackage;
struct QXStaticGeometryBucket;
}  // namespace QXC

namespace QXC::detail {

/// Makes the arrays of one merge without filling them, since zeros would cost a pass over all of the memory and are
/// overwritten anyway. Whoever makes them writes them all, or calls ZeroAll when that failed half-way.
class QXBucketArrays {
public:
  explicit QXBucketArrays(QXStaticGeometryBucket& bucket) : m_bucket(bucket) {}

  /// The vertex arrays, from the sums gathered in the bucket: each for the number of vertices, with stride 0. The slack
  /// behind the positions holds zeros.
  void MakeVertices();

  /// One index package for each pass key and level, behind those that a former merge made. A merge fills only the
  /// first set of a level; later sets come with zeros.
  void MakeIndices();

  /// Of what was made so far.
  void ZeroAll();

  /// Bytes of the vertex arrays.
  static std::size_t GetVertexBytes(QXStaticGeometryBucket const& bucket);

private:
  template <class T>
  T* MakeArray(std::size_t nNum);
  /// Frees the old array.
  template <class T>
  void Remake(T*& pItems, unsigned int& nNum, unsigned short& nStride, unsigned int nCount, std::size_t nSize);
  /// @param bFilled  whether the merge fills the array
  void MakeIndexArray(QXIndexPackage& package, std::size_t nSum, bool bFilled);

  QXStaticGeometryBucket& m_bucket;
  /// Arrays without contents and their bytes.
  std::vector<std::pair<void*, std::size_t>> m_arrUnfilled;
};

}  // namespace QXC::detail
