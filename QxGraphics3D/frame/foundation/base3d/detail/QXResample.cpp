#include <QxGraphics3D/frame/foundation/base3d/detail/QXResample.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXResampleAxis.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

namespace QXC::detail {

namespace {

// Adding 2^23 pushes the fraction out of a float, rounded to nearest as the processor rounds everything; the integer
// stays in the low bits. The wide instructions convert with the same rounding.
inline unsigned char ToByte(float fValue) {
  return static_cast<unsigned char>(std::bit_cast<std::uint32_t>(fValue + 8388608.0F));
}

void GrowRowPlain(unsigned int nBytesPerPixel, unsigned char const* pSource, std::uint32_t, QXResampleAxis const& axis,
    float* pTarget) {
  std::size_t const nStep = std::size_t{axis.m_nStep} * nBytesPerPixel;
  for (std::uint32_t i = 0; i < axis.m_nTo; ++i) {
    unsigned char const* const pFirst = pSource + std::size_t{axis.m_arrFirst[i]} * nBytesPerPixel;
    float const fWeight = axis.m_arrWeights[i];
    for (unsigned int n = 0; n < nBytesPerPixel; ++n) {
      auto const fFirst = static_cast<float>(pFirst[n]);
      *pTarget++ = fFirst + (static_cast<float>(pFirst[n + nStep]) - fFirst) * fWeight;
    }
  }
}

void BlendRowsPlain(
    float const* pUpper, float const* pLower, float fWeight, unsigned char* pTarget, std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i) pTarget[i] = ToByte(pUpper[i] + (pLower[i] - pUpper[i]) * fWeight);
}

void ShrinkRow(unsigned int nBytesPerPixel, unsigned char const* pSource, QXResampleAxis const& axis, float* pTarget) {
  float const* pWeights = axis.m_arrWeights.get();
  for (std::uint32_t i = 0; i < axis.m_nTo; ++i, pWeights += axis.m_nTaps, pTarget += nBytesPerPixel) {
    unsigned char const* pPixel = pSource + std::size_t{axis.m_arrFirst[i]} * nBytesPerPixel;
    float arrSums[4] = {};
    for (std::uint32_t nTap = 0; nTap < axis.m_arrCounts[i]; ++nTap, pPixel += nBytesPerPixel) {
      for (unsigned int n = 0; n < nBytesPerPixel; ++n) arrSums[n] += static_cast<float>(pPixel[n]) * pWeights[nTap];
    }
    std::copy_n(arrSums, nBytesPerPixel, pTarget);
  }
}

unsigned char HasPlain() {
  return 1;
}

constexpr QXResampleKernels kKernels[] = {
    {"plain", &HasPlain, &GrowRowPlain, &BlendRowsPlain},
};

constinit QXResampleKernels const* g_pKernels = kKernels;

struct Chooser {
  Chooser() {
    for (QXResampleKernels const& kernels : kKernels) {
      if (kernels.m_pfnIsSupported()) g_pKernels = &kernels;
    }
  }
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
    m_arrWork.reset(new (std::nothrow) float[3 * m_nRowLength]);
    return m_arrWork ? 1 : 0;
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
  float const* GetRow(std::uint32_t nRow) {
    std::uint32_t const nPlace = nRow % 2;
    float* const pRow = m_arrWork.get() + nPlace * m_nRowLength;
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
    float const* const pUpper = GetRow(m_Rows.m_arrFirst[nRow]);
    float const* const pLower = GetRow(m_Rows.m_arrFirst[nRow] + m_Rows.m_nStep);
    m_pKernels->m_pfnBlendRows(pUpper, pLower, m_Rows.m_arrWeights[nRow], pTarget, m_nRowLength);
  }

  void WriteMean(std::uint32_t nRow, unsigned char* pTarget) {
    float* const pSums = m_arrWork.get() + 2 * m_nRowLength;
    std::fill_n(pSums, m_nRowLength, 0.0F);
    float const* const pWeights = m_Rows.m_arrWeights.get() + std::size_t{nRow} * m_Rows.m_nTaps;
    for (std::uint32_t nTap = 0; nTap < m_Rows.m_arrCounts[nRow]; ++nTap) {
      float const* const pRow = GetRow(m_Rows.m_arrFirst[nRow] + nTap);
      for (std::size_t i = 0; i < m_nRowLength; ++i) pSums[i] += pRow[i] * pWeights[nTap];
    }
    for (std::size_t i = 0; i < m_nRowLength; ++i) pTarget[i] = ToByte(pSums[i]);
  }

  static constexpr std::uint32_t NoRow = ~std::uint32_t{0};

  QXResampleKernels const* m_pKernels = nullptr;
  unsigned int m_nBytesPerPixel = 0;
  QXPixelView m_Source{};
  std::size_t m_nRowLength = 0;
  QXResampleAxis m_Columns;
  QXResampleAxis m_Rows;
  std::uint32_t m_nKept[2] = {NoRow, NoRow};
  std::unique_ptr<float[]> m_arrWork;
};

unsigned char IsEdge(std::uint32_t nPixels) {
  return nPixels >= 1 && nPixels <= std::uint32_t{1} << 31 ? 1 : 0;
}

/// Rows of this length are made of bytes that a pointer can count.
unsigned char CanCount(unsigned int nBytesPerPixel, std::uint32_t nWidth, std::uint32_t nHeight) {
  return std::uint64_t{nWidth} * nHeight <= static_cast<std::uint64_t>(PTRDIFF_MAX) / nBytesPerPixel ? 1 : 0;
}

}  // namespace

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
