/// @file
/// One element of each merging loop: the plain form, and the ends of the wide forms.
#pragma once

#include <QxGraphics3D/staticgeometry/detail/QXMergeKernels.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace QXC::detail {

/// One column of the product of (x, y, z, 1) and the matrix. The order of the sums is the contract.
inline double MultiplyColumn(QXPointTransform const& transform, double dX, double dY, double dZ, int nColumn) {
  double const* const p = transform.m_arrValues + nColumn;
  return dX * p[0] + dY * p[3] + dZ * p[6] + p[9];
}

inline void TransformPoint(QXPointTransform const& transform, float const* pSource, float* pTarget) {
  double const dX = pSource[0];
  double const dY = pSource[1];
  double const dZ = pSource[2];
  for (int nColumn = 0; nColumn < 3; ++nColumn)
    pTarget[nColumn] = static_cast<float>(MultiplyColumn(transform, dX, dY, dZ, nColumn));
}

inline void TransformNormal(QXPointTransform const& transform, float const* pSource, float* pTarget) {
  double const dX = MultiplyColumn(transform, pSource[0], pSource[1], pSource[2], 0);
  double const dY = MultiplyColumn(transform, pSource[0], pSource[1], pSource[2], 1);
  double const dZ = MultiplyColumn(transform, pSource[0], pSource[1], pSource[2], 2);
  double const dLength = std::sqrt(dX * dX + dY * dY + dZ * dZ);
  // The zero vector stays what it is, as does one that is not a number.
  double const dDivisor = dLength > 0.0 ? dLength : 1.0;
  pTarget[0] = static_cast<float>(dX / dDivisor);
  pTarget[1] = static_cast<float>(dY / dDivisor);
  pTarget[2] = static_cast<float>(dZ / dDivisor);
}

/// In place.
inline void TransformPair(QXCoordTransform const& transform, float* pPair) {
  double const* const p = transform.m_arrValues;
  double const dU = pPair[0];
  double const dV = pPair[1];
  // A third coordinate of 1 times the third row is the third row, to the bit.
  pPair[0] = static_cast<float>(dU * p[0] + dV * p[2] + p[4] + p[6]);
  pPair[1] = static_cast<float>(dU * p[1] + dV * p[3] + p[5] + p[7]);
}

template <class T>
inline QXIndexRange ShiftIndices(T nStart, T const* pSource, T* pTarget, std::size_t nNum) {
  QXIndexRange range;
  for (std::size_t i = 0; i < nNum; ++i) {
    pTarget[i] = static_cast<T>(pSource[i] + nStart);
    range.Add(pTarget[i]);
  }
  return range;
}

/// What stands before the first whole line of the target, or less if there is less; returns the number of bytes. A line
/// that is not written whole stays in the cache for the neighbour that writes the rest of it.
inline std::size_t CopyToLine(unsigned char* pTarget, unsigned char const* pSource, std::size_t nBytes) {
  std::size_t const nHead = std::min((64 - reinterpret_cast<std::uintptr_t>(pTarget) % 64) % 64, nBytes);
  std::memcpy(pTarget, pSource, nHead);
  return nHead;
}

}  // namespace QXC::detail
