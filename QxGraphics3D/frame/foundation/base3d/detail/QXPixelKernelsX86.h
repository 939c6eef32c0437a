/// @file
/// The pixel kernels for wide instructions of x86-64. Call them on a processor that has these only.
#pragma once

#include <cstddef>

#if defined(__x86_64__) && defined(__GNUC__)
#  define QX_PIXELS_X86 1

namespace QXC::detail {

void FlipRowsAvx2(unsigned char* pPixels, std::size_t nRowBytes, std::size_t nHeight);
void Widen3To4Avx2(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha);
void WidenGrayTo4Avx2(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha);
unsigned char HasAlphaBelow255Avx2(unsigned char const* pPixels, std::size_t nCount);

}  // namespace QXC::detail
#endif
