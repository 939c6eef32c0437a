/// @file
/// What the pixels of one axis of a resampled image are made of, and the work on single rows for each instruction set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace QXC::detail {

/// Which source pixels make up each target pixel of one axis, and how much of each.
class QXResampleAxis {
public:
  /// @param nFrom  source pixels, 1 to 2^31
  /// @param nTo    target pixels, 1 to 2^31
  /// @return 0 when there is no memory for the tables
  unsigned char Init(std::uint32_t nFrom, std::uint32_t nTo);

  /// 1 if target pixels are means of m_nTaps source pixels or fewer, 0 if they lie between two.
  unsigned char m_bShrinks = 0;
  std::uint32_t m_nTo = 0;
  /// Most source pixels of one target pixel when the axis shrinks: the weights of target pixel i start at i * m_nTaps.
  std::uint32_t m_nTaps = 0;
  /// Distance of the second pixel from the first when the axis grows: 1, or 0 where there is only one.
  std::uint32_t m_nStep = 0;
  /// First source pixel of each target pixel.
  std::unique_ptr<std::uint32_t[]> m_arrFirst;
  /// Growing: the share of the second pixel, 0 to 1. Shrinking: the shares, which add up to 1; unused ones are 0.
  std::unique_ptr<float[]> m_arrWeights;
  /// Shrinking: number of shares that are used.
  std::unique_ptr<std::uint32_t[]> m_arrCounts;

private:
  void FillGrowing(std::uint32_t nFrom);
  void FillShrinking(std::uint32_t nFrom);
};

/// The two loops that an enlarged image spends its time in.
struct QXResampleKernels {
  char const* m_szName;
  unsigned char (*m_pfnIsSupported)();
  /// A source row of nFrom pixels to axis.m_nTo pixels, one number for each byte: a + (b - a) * weight.
  void (*m_pfnGrowRow)(unsigned int nBytesPerPixel, unsigned char const* pSource, std::uint32_t nFrom,
      QXResampleAxis const& axis, float* pTarget);
  /// upper + (lower - upper) * fWeight, to the nearest byte, ties to even.
  void (*m_pfnBlendRows)(
      float const* pUpper, float const* pLower, float fWeight, unsigned char* pTarget, std::size_t nCount);
};

/// All instruction sets of this build, the plain one first, then in order of preference.
std::span<QXResampleKernels const> GetResampleKernels();

struct QXPixelView;

/// ResampleImage with the given kernels.
unsigned char ResampleImageWith(QXResampleKernels const& kernels, unsigned int nBytesPerPixel,
    QXPixelView const& source, unsigned char* pTarget, std::uint32_t nWidth, std::uint32_t nHeight);

}  // namespace QXC::detail
