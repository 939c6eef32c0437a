#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernelsX86.h>

#if defined(QX_PIXELS_X86)

#  include <immintrin.h>

#  include <algorithm>
#  include <cstdint>
#  include <cstring>

#  define QX_AVX2 __attribute__((target("avx2")))

namespace QXC::detail {

namespace {

// Targets from this size on are written past the caches: nobody reads them before they have left anyway, and the lines
// need not be fetched only to be overwritten. Smaller ones are read again while they are still near.
constexpr std::size_t kStreamBytes = std::size_t{2} << 20;

QX_AVX2 inline __m256i Load(unsigned char const* p) {
  return _mm256_loadu_si256(reinterpret_cast<__m256i const*>(p));
}

QX_AVX2 inline void Store(unsigned char* p, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), value);
}

inline long long Load8(unsigned char const* p) {
  long long nValue = 0;
  std::memcpy(&nValue, p, sizeof(nValue));
  return nValue;
}

/// bStream: past the caches, to an aligned address.
template <bool bStream>
QX_AVX2 inline void StoreOrStream(unsigned char* p, __m256i value) {
  if constexpr (bStream) {
    _mm256_stream_si256(reinterpret_cast<__m256i*>(p), value);
  } else {
    Store(p, value);
  }
}

/// Asks for the lines two pages ahead. The processor's own prefetch stops at the end of each page, and starting it anew
/// costs a block that is read once a third of its time.
template <std::size_t nLines>
QX_AVX2 inline void PrefetchAhead(unsigned char const* p) {
  for (std::size_t i = 0; i < nLines; ++i) _mm_prefetch(reinterpret_cast<char const*>(p + 8192 + 64 * i), _MM_HINT_T0);
}

QX_AVX2 void SwapBytes(unsigned char* pUpper, unsigned char* pLower, std::size_t nBytes) {
  std::size_t i = 0;
  for (; i + 64 <= nBytes; i += 64) {
    __m256i const upper0 = Load(pUpper + i);
    __m256i const upper1 = Load(pUpper + i + 32);
    __m256i const lower0 = Load(pLower + i);
    __m256i const lower1 = Load(pLower + i + 32);
    Store(pUpper + i, lower0);
    Store(pUpper + i + 32, lower1);
    Store(pLower + i, upper0);
    Store(pLower + i + 32, upper1);
  }
  std::swap_ranges(pUpper + i, pUpper + nBytes, pLower + i);
}

/// Whole pixels up to the first target address that a wide store wants; all of them where none is.
std::size_t CountToAligned(unsigned char const* pTarget, std::size_t nCount) {
  std::size_t const nBytes = (32 - reinterpret_cast<std::uintptr_t>(pTarget) % 32) % 32;
  return nBytes % 4 == 0 ? std::min(nBytes / 4, nCount) : nCount;
}

inline void Widen3Pixels(
    unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  for (std::size_t i = 0; i < nCount; ++i) {
    std::memcpy(pTarget + 4 * i, pSource + 3 * i, 3);
    pTarget[4 * i + 3] = nAlpha;
  }
}

/// Eight pixels of 24 bytes, 28 of which are read.
QX_AVX2 inline __m256i Widen8(unsigned char const* pSource, __m256i order, __m256i alpha) {
  __m128i const low = _mm_loadu_si128(reinterpret_cast<__m128i const*>(pSource));
  __m128i const high = _mm_loadu_si128(reinterpret_cast<__m128i const*>(pSource + 12));
  return _mm256_or_si256(_mm256_shuffle_epi8(_mm256_set_m128i(high, low), order), alpha);
}

template <bool bStream>
QX_AVX2 std::size_t Widen3Blocks(
    unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  __m256i const order = _mm256_setr_epi8(
      0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  __m256i const alpha = _mm256_set1_epi32(static_cast<int>(static_cast<unsigned int>(nAlpha) << 24));
  std::size_t i = 0;
  // Two more pixels than are written must be there, since four bytes more are read.
  for (; i + 66 <= nCount; i += 64) {
    PrefetchAhead<3>(pSource + 3 * i);
    for (std::size_t n = i; n < i + 64; n += 8) {
      StoreOrStream<bStream>(pTarget + 4 * n, Widen8(pSource + 3 * n, order, alpha));
    }
  }
  if constexpr (bStream) _mm_sfence();
  return i;
}

/// Eight gray pixels.
QX_AVX2 inline __m256i WidenGray8(unsigned char const* pSource, __m256i order, __m256i alpha) {
  __m256i const gray = _mm256_set1_epi64x(Load8(pSource));
  return _mm256_or_si256(_mm256_shuffle_epi8(gray, order), alpha);
}

template <bool bStream>
QX_AVX2 std::size_t WidenGrayBlocks(
    unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  __m256i const order = _mm256_setr_epi8(
      0, 0, 0, -1, 1, 1, 1, -1, 2, 2, 2, -1, 3, 3, 3, -1, 4, 4, 4, -1, 5, 5, 5, -1, 6, 6, 6, -1, 7, 7, 7, -1);
  __m256i const alpha = _mm256_set1_epi32(static_cast<int>(static_cast<unsigned int>(nAlpha) << 24));
  std::size_t i = 0;
  for (; i + 64 <= nCount; i += 64) {
    PrefetchAhead<1>(pSource + i);
    for (std::size_t n = i; n < i + 64; n += 8) {
      StoreOrStream<bStream>(pTarget + 4 * n, WidenGray8(pSource + n, order, alpha));
    }
  }
  if constexpr (bStream) _mm_sfence();
  return i;
}

inline void WidenGrayPixels(
    unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  for (std::size_t i = 0; i < nCount; ++i) {
    std::memset(pTarget + 4 * i, pSource[i], 3);
    pTarget[4 * i + 3] = nAlpha;
  }
}

}  // namespace

QX_AVX2 void FlipRowsAvx2(unsigned char* pPixels, std::size_t nRowBytes, std::size_t nHeight) {
  for (std::size_t i = 0; i < nHeight / 2; ++i) {
    SwapBytes(pPixels + i * nRowBytes, pPixels + (nHeight - 1 - i) * nRowBytes, nRowBytes);
  }
}

QX_AVX2 void Widen3To4Avx2(
    unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  std::size_t nDone = 0;
  if (nCount >= kStreamBytes / 4 && reinterpret_cast<std::uintptr_t>(pTarget) % 4 == 0) {
    nDone = CountToAligned(pTarget, nCount);
    Widen3Pixels(pSource, pTarget, nDone, nAlpha);
    nDone += Widen3Blocks<true>(pSource + 3 * nDone, pTarget + 4 * nDone, nCount - nDone, nAlpha);
  } else {
    nDone = Widen3Blocks<false>(pSource, pTarget, nCount, nAlpha);
  }
  Widen3Pixels(pSource + 3 * nDone, pTarget + 4 * nDone, nCount - nDone, nAlpha);
}

QX_AVX2 void WidenGrayTo4Avx2(
    unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  std::size_t nDone = 0;
  if (nCount >= kStreamBytes / 4 && reinterpret_cast<std::uintptr_t>(pTarget) % 4 == 0) {
    nDone = CountToAligned(pTarget, nCount);
    WidenGrayPixels(pSource, pTarget, nDone, nAlpha);
    nDone += WidenGrayBlocks<true>(pSource + nDone, pTarget + 4 * nDone, nCount - nDone, nAlpha);
  } else {
    nDone = WidenGrayBlocks<false>(pSource, pTarget, nCount, nAlpha);
  }
  WidenGrayPixels(pSource + nDone, pTarget + 4 * nDone, nCount - nDone, nAlpha);
}

QX_AVX2 unsigned char HasAlphaBelow255Avx2(unsigned char const* pPixels, std::size_t nCount) {
  __m256i const alpha = _mm256_set1_epi32(static_cast<int>(0xFF000000U));
  std::size_t i = 0;
  // Four lines at a time: the branch costs little, and an early transparent pixel ends the walk at once.
  for (; i + 64 <= nCount; i += 64) {
    unsigned char const* const p = pPixels + 4 * i;
    PrefetchAhead<4>(p);
    __m256i const a = _mm256_and_si256(Load(p), Load(p + 32));
    __m256i const b = _mm256_and_si256(Load(p + 64), Load(p + 96));
    __m256i const c = _mm256_and_si256(Load(p + 128), Load(p + 160));
    __m256i const d = _mm256_and_si256(Load(p + 192), Load(p + 224));
    if (!_mm256_testc_si256(_mm256_and_si256(_mm256_and_si256(a, b), _mm256_and_si256(c, d)), alpha)) return 1;
  }
  unsigned char nAll = 255;
  for (; i < nCount; ++i) nAll &= pPixels[4 * i + 3];
  return nAll != 255 ? 1 : 0;
}

}  // namespace QXC::detail

#endif
