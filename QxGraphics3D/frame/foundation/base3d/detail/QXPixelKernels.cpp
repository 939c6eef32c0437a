#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXInstructionSets.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernelsX86.h>

#include <algorithm>

namespace QXC::detail {

namespace {

void FlipRowsPlain(unsigned char* pPixels, std::size_t nRowBytes, std::size_t nHeight) {
  if (nHeight < 2) return;
  unsigned char* pUpper = pPixels;
  unsigned char* pLower = pPixels + (nHeight - 1) * nRowBytes;
  for (; pUpper < pLower; pUpper += nRowBytes, pLower -= nRowBytes) {
    std::swap_ranges(pUpper, pUpper + nRowBytes, pLower);
  }
}

void Widen3To4Plain(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  for (std::size_t i = 0; i < nCount; ++i, pSource += 3, pTarget += 4) {
    pTarget[0] = pSource[0];
    pTarget[1] = pSource[1];
    pTarget[2] = pSource[2];
    pTarget[3] = nAlpha;
  }
}

void WidenGrayTo4Plain(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  for (std::size_t i = 0; i < nCount; ++i, pTarget += 4) {
    pTarget[0] = pTarget[1] = pTarget[2] = pSource[i];
    pTarget[3] = nAlpha;
  }
}

unsigned char HasAlphaBelow255Plain(unsigned char const* pPixels, std::size_t nCount) {
  // Blocks that stop rarely keep the loop inside free of branches.
  constexpr std::size_t nBlock = 256;
  for (std::size_t nStart = 0; nStart < nCount; nStart += nBlock) {
    std::size_t const nEnd = std::min(nCount, nStart + nBlock);
    unsigned char nAll = 255;
    for (std::size_t i = nStart; i < nEnd; ++i) nAll &= pPixels[4 * i + 3];
    if (nAll != 255) return 1;
  }
  return 0;
}

constexpr QXPixelKernels kKernels[] = {
    {"plain", &HasPlain, &FlipRowsPlain, &Widen3To4Plain, &WidenGrayTo4Plain, &HasAlphaBelow255Plain},
#if defined(QX_PIXELS_X86)
    {"avx2", &HasAvx2, &FlipRowsAvx2, &Widen3To4Avx2, &WidenGrayTo4Avx2, &HasAlphaBelow255Avx2},
#endif
};

// Constant-initialised, so that another file's constructor gets its answer from the plain kernels.
constinit QXPixelKernels const* g_pKernels = kKernels;

struct Chooser {
  Chooser() { g_pKernels = ChooseForm<QXPixelKernels>(kKernels); }
};

Chooser const g_chooser;

}  // namespace

std::span<QXPixelKernels const> GetPixelKernels() {
  return kKernels;
}

void FlipRows(unsigned char* pPixels, std::size_t nRowBytes, std::size_t nHeight) {
  g_pKernels->m_pfnFlipRows(pPixels, nRowBytes, nHeight);
}

void Widen3To4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  g_pKernels->m_pfnWiden3To4(pSource, pTarget, nCount, nAlpha);
}

void WidenGrayTo4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  g_pKernels->m_pfnWidenGrayTo4(pSource, pTarget, nCount, nAlpha);
}

void WidenGrayAlphaTo4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i, pTarget += 4) {
    pTarget[0] = pTarget[1] = pTarget[2] = pSource[2 * i];
    pTarget[3] = pSource[2 * i + 1];
  }
}

unsigned char HasAlphaBelow255(unsigned char const* pPixels, std::size_t nCount) {
  return g_pKernels->m_pfnHasAlphaBelow255(pPixels, nCount);
}

void SwapRedBlue3(unsigned char* pPixels, std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i) std::swap(pPixels[3 * i], pPixels[3 * i + 2]);
}

void SwapRedBlue4(unsigned char* pPixels, std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i) std::swap(pPixels[4 * i], pPixels[4 * i + 2]);
}

void FillAlpha(unsigned char* pPixels, std::size_t nCount, unsigned char nAlpha) {
  for (std::size_t i = 0; i < nCount; ++i) pPixels[4 * i + 3] = nAlpha;
}

}  // namespace QXC::detail
