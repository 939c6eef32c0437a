#include <QxGraphics3D/staticgeometry/detail/QXMergeKernels.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXInstructionSets.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/staticgeometry/detail/QXMergeKernelsX86.h>
#include <QxGraphics3D/staticgeometry/detail/QXMergeLoops.h>

#include <cstring>

namespace QXC::detail {

QXPointTransform::QXPointTransform(QXMatrix4d const& matrix) {
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 3; ++nColumn) m_arrValues[3 * nRow + nColumn] = matrix[nRow][nColumn];
  }
}

QXCoordTransform::QXCoordTransform(QXMatrix4d const& matrix) {
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 2; ++nColumn) m_arrValues[2 * nRow + nColumn] = matrix[nRow][nColumn];
  }
}

namespace {

void TransformPointsPlain(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead) {
  for (std::size_t i = 0; i < nNum; ++i) TransformPoint(transform, pSource + 3 * i, pTarget + 3 * i);
}

void TransformNormalsPlain(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead) {
  for (std::size_t i = 0; i < nNum; ++i) TransformNormal(transform, pSource + 3 * i, pTarget + 3 * i);
}

void TransformPairsPlain(
    QXCoordTransform const& transform, float* pPairs, unsigned char const* pTouched, std::size_t nNum) {
  for (std::size_t i = 0; i < nNum; ++i) {
    if (pTouched[i]) TransformPair(transform, pPairs + 2 * i);
  }
}

QXIndexRange Shift16Plain(
    std::uint16_t nStart, std::uint16_t const* pSource, std::uint16_t* pTarget, std::size_t nNum) {
  return ShiftIndices(nStart, pSource, pTarget, nNum);
}

QXIndexRange Shift32Plain(
    std::uint32_t nStart, std::uint32_t const* pSource, std::uint32_t* pTarget, std::size_t nNum) {
  return ShiftIndices(nStart, pSource, pTarget, nNum);
}

void StreamPlain(void* pTarget, void const* pSource, std::size_t nBytes, void const*) {
  if (nBytes > 0) std::memcpy(pTarget, pSource, nBytes);
}

void FinishStreamsPlain() {}

constexpr QXMergeKernels Kernels[] = {
    {"plain", &HasPlain, &TransformPointsPlain, &TransformNormalsPlain, &TransformPairsPlain, &Shift16Plain,
        &Shift32Plain, &StreamPlain, &FinishStreamsPlain},
#if defined(QX_MERGE_X86)
    {"avx2", &HasAvx2, &TransformPointsAvx2, &TransformNormalsAvx2, &TransformPairsAvx2, &Shift16Avx2, &Shift32Avx2,
        &StreamAvx2, &FinishStreamsAvx2},
    {"avx512", &HasAvx512, &TransformPointsAvx512, &TransformNormalsAvx512, &TransformPairsAvx512, &Shift16Avx2,
        &Shift32Avx2, &StreamAvx512, &FinishStreamsAvx2},
#endif
};

}  // namespace

std::span<QXMergeKernels const> GetMergeKernels() {
  return Kernels;
}

QXMergeKernels const& GetBestMergeKernels() {
  static QXMergeKernels const* const ms_pKernels = ChooseForm<QXMergeKernels>(Kernels);
  return *ms_pKernels;
}

}  // namespace QXC::detail
