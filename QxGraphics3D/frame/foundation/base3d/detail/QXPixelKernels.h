/// @file
/// Whole blocks of pixels turned, widened and searched, at the speed of the memory.
///
/// Blocks need no alignment and no size is too small. Source and destination do not overlap where both are given.
/// The instruction set is chosen when the library is loaded; every set gives the same bytes.
#pragma once

#include <cstddef>
#include <span>

namespace QXC::detail {

/// Exchanges row i with row nHeight-1-i, in place: the first row becomes the last one.
void FlipRows(unsigned char* pPixels, std::size_t nRowBytes, std::size_t nHeight);

/// Three bytes a pixel to four: the three are copied, the fourth becomes nAlpha.
void Widen3To4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha);

/// One byte a pixel to four: the gray three times, then nAlpha.
void WidenGrayTo4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha);

/// Two bytes a pixel, gray and alpha, to four: the gray three times, then the alpha.
void WidenGrayAlphaTo4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount);

/// 1 if the fourth byte of one of nCount pixels of four bytes is below 255, else 0. Stops at the first.
unsigned char HasAlphaBelow255(unsigned char const* pPixels, std::size_t nCount);

/// Exchanges the first and the third byte of each pixel of three bytes, in place.
void SwapRedBlue3(unsigned char* pPixels, std::size_t nCount);

/// Exchanges the first and the third byte of each pixel of four bytes, in place.
void SwapRedBlue4(unsigned char* pPixels, std::size_t nCount);

/// Writes nAlpha into the fourth byte of each pixel of four bytes.
void FillAlpha(unsigned char* pPixels, std::size_t nCount, unsigned char nAlpha);

/// The kernels in one instruction set.
struct QXPixelKernels {
  char const* m_szName;
  unsigned char (*m_pfnIsSupported)();
  void (*m_pfnFlipRows)(unsigned char*, std::size_t, std::size_t);
  void (*m_pfnWiden3To4)(unsigned char const*, unsigned char*, std::size_t, unsigned char);
  void (*m_pfnWidenGrayTo4)(unsigned char const*, unsigned char*, std::size_t, unsigned char);
  unsigned char (*m_pfnHasAlphaBelow255)(unsigned char const*, std::size_t);
};

/// All instruction sets of this build, the plain one first, then in order of preference.
std::span<QXPixelKernels const> GetPixelKernels();

}  // namespace QXC::detail
