#include <QxGraphics3D/frame/foundation/base3d/detail/QXResampleAxis.h>

#include <algorithm>
#include <new>

namespace QXC::detail {

unsigned char QXResampleAxis::Init(std::uint32_t nFrom, std::uint32_t nTo) {
  m_nTo = nTo;
  m_bShrinks = nTo < nFrom ? 1 : 0;
  m_arrFirst.reset(new (std::nothrow) std::uint32_t[nTo]);
  if (!m_arrFirst) return 0;
  if (!m_bShrinks) {
    m_nStep = nFrom > 1 ? 1 : 0;
    m_arrShares.reset(new (std::nothrow) std::int16_t[nTo]);
    if (!m_arrShares) return 0;
    FillGrowing(nFrom);
    return 1;
  }
  // A target pixel that starts and ends inside source pixels touches two parts beside the whole ones.
  m_nTaps = nFrom / nTo + 2;
  m_arrWeights.reset(new (std::nothrow) double[std::size_t{nTo} * m_nTaps]);
  m_arrCounts.reset(new (std::nothrow) std::uint32_t[nTo]);
  if (!m_arrWeights || !m_arrCounts) return 0;
  FillShrinking(nFrom);
  return 1;
}

void QXResampleAxis::FillGrowing(std::uint32_t nFrom) {
  // The centre of target pixel i lies at ((2 i + 1) from - to) / (2 to) in source pixels counted from centre to centre.
  std::uint64_t const nUnit = std::uint64_t{2} * m_nTo;
  for (std::uint32_t i = 0; i < m_nTo; ++i) {
    std::uint64_t const nPlace = (std::uint64_t{2} * i + 1) * nFrom;
    if (nPlace <= m_nTo || nFrom == 1) {
      m_arrFirst[i] = 0;
      m_arrShares[i] = 0;
    } else if ((nPlace - m_nTo) / nUnit >= nFrom - 1) {
      // Beyond the last centre. All of the second pixel, so that the pair of pixels never leaves the row.
      m_arrFirst[i] = nFrom - 2;
      m_arrShares[i] = INT16_MIN;
    } else {
      std::uint64_t const nDistance = nPlace - m_nTo;
      m_arrFirst[i] = static_cast<std::uint32_t>(nDistance / nUnit);
      // Edges of 2^31 give units of 2^32, so the product below has 47 bits.
      std::uint64_t const nShare = ((nDistance % nUnit) * 32768 + nUnit / 2) / nUnit;
      m_arrShares[i] = static_cast<std::int16_t>(-static_cast<int>(nShare));
    }
  }
}

void QXResampleAxis::FillShrinking(std::uint32_t nFrom) {
  // In units of 1 / to of a source pixel: target pixel i covers from i * from to (i + 1) * from.
  std::uint64_t const nUnit = m_nTo;
  for (std::uint32_t i = 0; i < m_nTo; ++i) {
    std::uint64_t const nStart = std::uint64_t{i} * nFrom;
    std::uint64_t const nEnd = nStart + nFrom;
    std::uint64_t const nFirst = nStart / nUnit;
    std::uint64_t const nLast = (nEnd - 1) / nUnit;
    double* const pWeights = m_arrWeights.get() + std::size_t{i} * m_nTaps;
    for (std::uint64_t n = nFirst; n <= nLast; ++n) {
      std::uint64_t const nCovered = std::min(nEnd, (n + 1) * nUnit) - std::max(nStart, n * nUnit);
      pWeights[n - nFirst] = static_cast<double>(nCovered) / static_cast<double>(nFrom);
    }
    m_arrFirst[i] = static_cast<std::uint32_t>(nFirst);
    m_arrCounts[i] = static_cast<std::uint32_t>(nLast - nFirst + 1);
  }
}

}  // namespace QXC::detail
