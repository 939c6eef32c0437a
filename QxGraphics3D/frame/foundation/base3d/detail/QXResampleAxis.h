/// @file
/// What the pixels of one axis of a resampled image are made of, and the work on single rows for each instruction set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace QXC::detail {

struct QXPixelView;

/// Which source pixels make up each target pixel of one axis, and how much of each.
class QXResampleAxis {
public:
  /// @param nFrom  source pixels, 1 to 2^31
  /// @param nTo    target pixels, 1 to 2^31
  /// @return 0 when there is no memory for the tables
  unsigned char Init(std::uint32_t nFrom, std::uint32_t nTo);

  /// 1 if target pixels are means of several source pixels, 0 if they lie between two.
  unsigned char m_bShrinks = 0;
  std::uint32_t m_nTo = 0;
  /// First source pixel of each target pixel, never falling.
  std::unique_ptr<std::uint32_t[]> m_arrFirst;

  /// Growing: minus the share of the second pixel in units of 2^-15. The sign makes room for a share of 1.
  std::unique_ptr<std::int16_t[]> m_arrShares;
  /// Growing: distance of the second pixel from the first, 1, or 0 where there is only one.
  std::uint32_t m_nStep = 0;

  /// Shrinking: the shares, in double since thousands of them may make one pixel, which add up to 1; those of target pixel i start at i * m_nTaps.
  std::unique_ptr<double[]> m_arrWeights;
  /// Shrinking: number of shares of each target pixel, m_nTaps at most.
  std::unique_ptr<std::uint32_t[]> m_arrCounts;
  std::uint32_t m_nTaps = 0;

private:
  void FillGrowing(std::uint32_t nFrom);
  void FillShrinking(std::uint32_t nFrom);
};

/// Numbers of a row whose columns are done are bytes in units of 2^-7: as fine as sixteen bits allow with a sign, which
/// their differences need.
inline constexpr int ROW_FRACTION_BITS = 7;

/// Between two numbers of at most 2^15 apart: first + (second - first) * share, rounded to the nearest, halves up.
/// @param nShare  minus the share in units of 2^-15
inline std::int16_t Blend(int nFirst, int nSecond, int nShare) {
  return static_cast<std::int16_t>(nFirst - (((nSecond - nFirst) * nShare + (1 << 14)) >> 15));
}

/// A number of a row as a byte, rounded to the nearest, halves up.
inline unsigned char ToByte(int nNumber) {
  return static_cast<unsigned char>((nNumber + (1 << (ROW_FRACTION_BITS - 1))) >> ROW_FRACTION_BITS);
}

/// The plain form of growing a row, for target pixels from nStart on.
/// @param pTarget  where target pixel 0 goes
void GrowPixels(unsigned int nBytesPerPixel, unsigned char const* pSource, QXResampleAxis const& axis,
    std::uint32_t nStart, std::int16_t* pTarget);

/// The two loops that an enlarged image spends its time in.
struct QXResampleKernels {
  char const* m_szName;
  unsigned char (*m_pfnIsSupported)();
  /// A source row of nFrom pixels to axis.m_nTo pixels, as GrowPixels.
  void (*m_pfnGrowRow)(unsigned int nBytesPerPixel, unsigned char const* pSource, std::uint32_t nFrom,
      QXResampleAxis const& axis, std::int16_t* pTarget);
  /// ToByte(Blend()) of nCount numbers of two rows.
  void (*m_pfnBlendRows)(std::int16_t const* pUpper, std::int16_t const* pLower, std::int16_t nShare,
      unsigned char* pTarget, std::size_t nCount);
};

/// All instruction sets of this build, the plain one first, then in order of preference.
std::span<QXResampleKernels const> GetResampleKernels();

/// ResampleImage with the given kernels.
unsigned char ResampleImageWith(QXResampleKernels const& kernels, unsigned int nBytesPerPixel,
    QXPixelView const& source, unsigned char* pTarget, std::uint32_t nWidth, std::uint32_t nHeight);

}  // namespace QXC::detail
