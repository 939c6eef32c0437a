/// @file
/// The merging loops of x86-64 processors; see QXMergeKernels.
#pragma once

#include <QxGraphics3D/staticgeometry/detail/QXMergeKernels.h>

#if defined(__x86_64__) && defined(__GNUC__)
#  define QX_MERGE_X86

namespace QXC::detail {

void TransformPointsAvx2(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead);
void TransformNormalsAvx2(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead);
void TransformPairsAvx2(
    QXCoordTransform const& transform, float* pPairs, unsigned char const* pTouched, std::size_t nNum);
QXIndexRange Shift16Avx2(std::uint16_t nStart, std::uint16_t const* pSource, std::uint16_t* pTarget, std::size_t nNum);
QXIndexRange Shift32Avx2(std::uint32_t nStart, std::uint32_t const* pSource, std::uint32_t* pTarget, std::size_t nNum);
void StreamAvx2(void* pTarget, void const* pSource, std::size_t nBytes, void const* pAhead);
void FinishStreamsAvx2();

void TransformPointsAvx512(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead);
void TransformNormalsAvx512(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead);
void TransformPairsAvx512(
    QXCoordTransform const& transform, float* pPairs, unsigned char const* pTouched, std::size_t nNum);
void StreamAvx512(void* pTarget, void const* pSource, std::size_t nBytes, void const* pAhead);

}  // namespace QXC::detail

#endif
