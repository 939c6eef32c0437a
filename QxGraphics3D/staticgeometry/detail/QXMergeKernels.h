/// @file
/// The inner loops of merging meshes, for each instruction set.
///
/// Arrays need no alignment and no length is too small. All instruction sets give the same bits, except for the bits of
/// results that are not numbers: products and sums are those of QXVector3d::MultiplyMatrix, in its order, in double
/// precision, and are narrowed to float once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace QXC {
class QXMatrix4d;
}

namespace QXC::detail {

/// What a matrix does to points, without what stands in its fourth column.
struct QXPointTransform {
  explicit QXPointTransform(QXMatrix4d const& matrix);

  /// Element (r, c) at 3 * r + c; row 3 is the translation.
  double m_arrValues[12];
};

/// What a matrix does to texture coordinates (u, v, 1).
struct QXCoordTransform {
  explicit QXCoordTransform(QXMatrix4d const& matrix);

  /// Element (r, c) at 2 * r + c, of the first two columns.
  double m_arrValues[8];
};

/// Smallest and largest of some indices.
struct QXIndexRange {
  std::uint32_t m_nFirst = 0xFFFFFFFFU;
  std::uint32_t m_nLast = 0;

  void Add(std::uint32_t nIndex) {
    if (nIndex < m_nFirst) m_nFirst = nIndex;
    if (nIndex > m_nLast) m_nLast = nIndex;
  }
  void Add(QXIndexRange const& other) {
    if (other.m_nFirst < m_nFirst) m_nFirst = other.m_nFirst;
    if (other.m_nLast > m_nLast) m_nLast = other.m_nLast;
  }
};

/// Asks for the line at an address, which need not be readable.
inline void Prefetch(void const* p) {
#if defined(__GNUC__)
  __builtin_prefetch(p);
#else
  static_cast<void>(p);
#endif
}

/// What is read after a loop, fetched while the loop computes: memory does not rest meanwhile, and the arrays of meshes
/// are too short for the processor to foresee where the next one begins. As far behind each address as the loop has
/// come in its own source.
struct QXAhead {
  void const* m_pFirst;
  void const* m_pSecond;
};

/// The loops in one instruction set. Sources and targets do not overlap.
struct QXMergeKernels {
  char const* m_szName;
  unsigned char (*m_pfnIsSupported)();

  /// nNum points of three numbers each.
  void (*m_pfnTransformPoints)(
      QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead);
  /// The same, then QXVector3d::Normalize.
  void (*m_pfnTransformNormals)(
      QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead);
  /// In place: pairs of numbers, those whose byte in pTouched is not 0 (it is 0 or 1).
  void (*m_pfnTransformPairs)(
      QXCoordTransform const& transform, float* pPairs, unsigned char const* pTouched, std::size_t nNum);
  /// Adds nStart to each index; sums wrap as their type does. Returns their range.
  QXIndexRange (*m_pfnShift16)(
      std::uint16_t nStart, std::uint16_t const* pSource, std::uint16_t* pTarget, std::size_t nNum);
  QXIndexRange (*m_pfnShift32)(
      std::uint32_t nStart, std::uint32_t const* pSource, std::uint32_t* pTarget, std::size_t nNum);
  /// Copies past the caches: for targets that together leave the caches before anybody reads them. Their lines need
  /// not be fetched only to be overwritten.
  void (*m_pfnStream)(void* pTarget, void const* pSource, std::size_t nBytes, void const* pAhead);
  /// After the last of them, before anybody else reads.
  void (*m_pfnFinishStreams)();
};

/// All instruction sets of this build, the plain one first, then in order of preference.
std::span<QXMergeKernels const> GetMergeKernels();

/// The last supported ones.
QXMergeKernels const& GetBestMergeKernels();

}  // namespace QXC::detail
