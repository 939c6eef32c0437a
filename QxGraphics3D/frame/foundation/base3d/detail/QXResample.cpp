#include <QxGraphics3D/frame/foundation/base3d/detail/QXResample.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXInstructionSets.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXResampleAxis.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXResampleX86.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace QXC::detail {

namespace {

void GrowRowPlain(unsigned int nBytesPerPixel, unsigned char const* pSource, std::uint32_t, QXResampleAxis const& axis,
    std::int16_t* pTarget) {
  GrowPixels(nBytesPerPixel, pSource, axis, 0, pTarget);
}

void BlendRowsPlain(std::int16_t const* pUpper, std::int16_t const* pLower, std::int16_t nShare, unsigned char* pTarget,
    std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i) pTarget[i] = ToByte(Blend(pUpper[i], pLower[i], nShare));
}

void ShrinkRow(
    unsigned int nBytesPerPixel, unsigned char const* pSource, QXResampleAxis const& axis, std::int16_t* pTarget) {
  double const* pWeights = axis.m_arrWeights.get();
  for (std::uint32_t i = 0; i < axis.m_nTo; ++i, pWeights += axis.m_nTaps, pTarget += nBytesPerPixel) {
    unsigned char const* pPixel = pSource + std::size_t{axis.m_arrFirst[i]} * nBytesPerPixel;
    // Halves of what a number of the row counts in, so that cutting off the fraction rounds to the nearest.
    double arrSums[4] = {0.5 / 128, 0.5 / 128, 0.5 / 128, 0.5 / 128};
    for (std::uint32_t nTap = 0; nTap < axis.m_arrCounts[i]; ++nTap, pPixel += nBytesPerPixel) {
      for (unsigned int n = 0; n < nBytesPerPixel; ++n) arrSums[n] += pPixel[n] * pWeights[nTap];
    }
    for (unsigned int n = 0; n < nBytesPerPixel; ++n) pTarget[n] = static_cast<std::int16_t>(arrSums[n] * 128.0);
  }
}

constexpr QXResampleKernels kKernels[] = {
    {"plain", &HasPlain, &GrowRowPlain, &BlendRowsPlain},
#if defined(QX_RESAMPLE_X86)
    {"avx2", &HasAvx2, &GrowRowAvx2, &BlendRowsAvx2},
#endif
};

// Constant-initialised, so that another file's constructor gets its answer from the plain kernels.
constinit QXResampleKernels const* g_pKernels = kKernels;

struct Chooser {
  Chooser() { g_pKernels = ChooseForm<QXResampleKernels>(kKernels); }
};

Chooser const g_chooser;

/// One resampling on its way: columns first, a source row at a time, then rows.
class Resampler {
public:
  unsigned char Init(QXResampleKernels const& kernels, unsigned int nBytesPerPixel, QXPixelView const& source,
      std::uint32_t nWidth, std::uint32_t nHeight) {
    m_pKernels = &kernels;
    m_nBytesPerPixel = nBytesPerPixel;
    m_Source = source;
    m_nRowLength = std::size_t{nWidth} * nBytesPerPixel;
    if (!m_Columns.Init(source.m_nWidth, nWidth) || !m_Rows.Init(source.m_nHeight, nHeight)) return 0;
    m_arrRows.reset(new (std::nothrow) std::int16_t[2 * m_nRowLength]);
    if (m_Rows.m_bShrinks) m_arrSums.reset(new (std::nothrow) double[m_nRowLength]);
    return m_arrRows && (m_arrSums || !m_Rows.m_bShrinks) ? 1 : 0;
  }

  void Run(unsigned char* pTarget) {
    for (std::uint32_t i = 0; i < m_Rows.m_nTo; ++i, pTarget += m_nRowLength) {
      if (m_Rows.m_bShrinks) {
        WriteMean(i, pTarget);
      } else {
        WriteBetween(i, pTarget);
      }
    }
  }

private:
  /// A source row with its columns resampled. Two are kept, since the next target row mostly wants them again.
  std::int16_t const* GetRow(std::uint32_t nRow) {
    std::uint32_t const nPlace = nRow % 2;
    std::int16_t* const pRow = m_arrRows.get() + nPlace * m_nRowLength;
    if (m_nKept[nPlace] == nRow) return pRow;
    m_nKept[nPlace] = nRow;
    unsigned char const* const pSource = m_Source.m_pPixels + std::size_t{nRow} * m_Source.m_nWidth * m_nBytesPerPixel;
    if (m_Columns.m_bShrinks) {
      ShrinkRow(m_nBytesPerPixel, pSource, m_Columns, pRow);
    } else {
      m_pKernels->m_pfnGrowRow(m_nBytesPerPixel, pSource, m_Source.m_nWidth, m_Columns, pRow);
    }
    return pRow;
  }

  void WriteBetween(std::uint32_t nRow, unsigned char* pTarget) {
    std::int16_t const* const pUpper = GetRow(m_Rows.m_arrFirst[nRow]);
    std::int16_t const* const pLower = GetRow(m_Rows.m_arrFirst[nRow] + m_Rows.m_nStep);
    m_pKernels->m_pfnBlendRows(pUpper, pLower, m_Rows.m_arrShares[nRow], pTarget, m_nRowLength);
  }

  void WriteMean(std::uint32_t nRow, unsigned char* pTarget) {
    double* const pSums = m_arrSums.get();
    std::fill_n(pSums, m_nRowLength, 64.0);  // half a byte, as above
    double const* const pWeights = m_Rows.m_arrWeights.get() + std::size_t{nRow} * m_Rows.m_nTaps;
    for (std::uint32_t nTap = 0; nTap < m_Rows.m_arrCounts[nRow]; ++nTap) {
      std::int16_t const* const pRow = GetRow(m_Rows.m_arrFirst[nRow] + nTap);
      for (std::size_t i = 0; i < m_nRowLength; ++i) pSums[i] += pRow[i] * pWeights[nTap];
    }
    for (std::size_t i = 0; i < m_nRowLength; ++i) pTarget[i] = static_cast<unsigned char>(pSums[i] / 128.0);
  }

  static constexpr std::uint32_t NoRow = ~std::uint32_t{0};

  QXResampleKernels const* m_pKernels = nullptr;
  unsigned int m_nBytesPerPixel = 0;
  QXPixelView m_Source{};
  std::size_t m_nRowLength = 0;
  QXResampleAxis m_Columns;
  QXResampleAxis m_Rows;
  std::uint32_t m_nKept[2] = {NoRow, NoRow};
  std::unique_ptr<std::int16_t[]> m_arrRows;
  std::unique_ptr<double[]> m_arrSums;
};

unsigned char IsEdge(std::uint32_t nPixels) {
  return nPixels >= 1 && nPixels <= std::uint32_t{1} << 31 ? 1 : 0;
}

/// Rows of this length are made of bytes that a pointer can count.
unsigned char CanCount(unsigned int nBytesPerPixel, std::uint32_t nWidth, std::uint32_t nHeight) {
  return std::uint64_t{nWidth} * nHeight <= static_cast<std::uint64_t>(PTRDIFF_MAX) / nBytesPerPixel ? 1 : 0;
}

}  // namespace

void GrowPixels(unsigned int nBytesPerPixel, unsigned char const* pSource, QXResampleAxis const& axis,
    std::uint32_t nStart, std::int16_t* pTarget) {
  std::size_t const nStep = std::size_t{axis.m_nStep} * nBytesPerPixel;
  pTarget += std::size_t{nStart} * nBytesPerPixel;
  for (std::uint32_t i = nStart; i < axis.m_nTo; ++i) {
    unsigned char const* const pFirst = pSource + std::size_t{axis.m_arrFirst[i]} * nBytesPerPixel;
    for (unsigned int n = 0; n < nBytesPerPixel; ++n) {
      *pTarget++ = Blend(pFirst[n] << ROW_FRACTION_BITS, pFirst[n + nStep] << ROW_FRACTION_BITS, axis.m_arrShares[i]);
    }
  }
}

std::span<QXResampleKernels const> GetResampleKernels() {
  return kKernels;
}

unsigned char ResampleImageWith(QXResampleKernels const& kernels, unsigned int nBytesPerPixel,
    QXPixelView const& source, unsigned char* pTarget, std::uint32_t nWidth, std::uint32_t nHeight) {
  if (!source.m_pPixels || !pTarget || nBytesPerPixel < 1 || nBytesPerPixel > 4) return 0;
  if (!IsEdge(source.m_nWidth) || !IsEdge(source.m_nHeight) || !IsEdge(nWidth) || !IsEdge(nHeight)) return 0;
  if (!CanCount(nBytesPerPixel, source.m_nWidth, source.m_nHeight) || !CanCount(nBytesPerPixel, nWidth, nHeight)) {
    return 0;
  }
  if (nWidth == source.m_nWidth && nHeight == source.m_nHeight) {
    std::memcpy(pTarget, source.m_pPixels, std::size_t{nWidth} * nHeight * nBytesPerPixel);
    return 1;
  }
  Resampler resampler;
  if (!resampler.Init(kernels, nBytesPerPixel, source, nWidth, nHeight)) return 0;
  resampler.Run(pTarget);
  return 1;
}

unsigned char ResampleImage(unsigned int nBytesPerPixel, QXPixelView const& source, unsigned char* pTarget,
    std::uint32_t nWidth, std::uint32_t nHeight) {
  return ResampleImageWith(*g_pKernels, nBytesPerPixel, source, pTarget, nWidth, nHeight);
}

}  // namespace QXC::detail
