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

/// Pixels of three bytes.
struct Widen3 {
  static constexpr std::size_t kSourceBytes = 3;
  /// Four bytes more are read than belong to eight pixels: they must be there.
  static constexpr std::size_t kReadAhead = 2;

  QX_AVX2 static __m256i Order() {
    return _mm256_setr_epi8(
        0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  }
  QX_AVX2 static __m256i Load8Pixels(unsigned char const* pSource) {
    __m128i const low = _mm_loadu_si128(reinterpret_cast<__m128i const*>(pSource));
    __m128i const high = _mm_loadu_si128(reinterpret_cast<__m128i const*>(pSource + 12));
    return _mm256_set_m128i(high, low);
  }
  static void WidenPixel(unsigned char const* pSource, unsigned char* pTarget) { std::memcpy(pTarget, pSource, 3); }
};

/// Gray pixels.
struct WidenGray {
  static constexpr std::size_t kSourceBytes = 1;
  static constexpr std::size_t kReadAhead = 0;

  QX_AVX2 static __m256i Order() {
    return _mm256_setr_epi8(
        0, 0, 0, -1, 1, 1, 1, -1, 2, 2, 2, -1, 3, 3, 3, -1, 4, 4, 4, -1, 5, 5, 5, -1, 6, 6, 6, -1, 7, 7, 7, -1);
  }
  QX_AVX2 static __m256i Load8Pixels(unsigned char const* pSource) { return _mm256_set1_epi64x(Load8(pSource)); }
  static void WidenPixel(unsigned char const* pSource, unsigned char* pTarget) { std::memset(pTarget, *pSource, 3); }
};

template <class Form>
inline void WidenPixels(
    unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  for (std::size_t i = 0; i < nCount; ++i) {
    Form::WidenPixel(pSource + Form::kSourceBytes * i, pTarget + 4 * i);
    pTarget[4 * i + 3] = nAlpha;
  }
}

/// Returns how many pixels it widened.
template <class Form, bool bStream>
QX_AVX2 std::size_t WidenBlocks(
    unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  __m256i const order = Form::Order();
  __m256i const alpha = _mm256_set1_epi32(static_cast<int>(static_cast<unsigned int>(nAlpha) << 24));
  std::size_t i = 0;
  for (; i + 64 + Form::kReadAhead <= nCount; i += 64) {
    PrefetchAhead<Form::kSourceBytes>(pSource + Form::kSourceBytes * i);
    for (std::size_t n = i; n < i + 64; n += 8) {
      __m256i const pixels = Form::Load8Pixels(pSource + Form::kSourceBytes * n);
      StoreOrStream<bStream>(pTarget + 4 * n, _mm256_or_si256(_mm256_shuffle_epi8(pixels, order), alpha));
    }
  }
  if constexpr (bStream) _mm_sfence();
  return i;
}

template <class Form>
QX_AVX2 void WidenTo4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  std::size_t nDone = 0;
  if (nCount >= kStreamBytes / 4 && reinterpret_cast<std::uintptr_t>(pTarget) % 4 == 0) {
    nDone = CountToAligned(pTarget, nCount);
    WidenPixels<Form>(pSource, pTarget, nDone, nAlpha);
    nDone += WidenBlocks<Form, true>(pSource + Form::kSourceBytes * nDone, pTarget + 4 * nDone, nCount - nDone, nAlpha);
  } else {
    nDone = WidenBlocks<Form, false>(pSource, pTarget, nCount, nAlpha);
  }
  WidenPixels<Form>(pSource + Form::kSourceBytes * nDone, pTarget + 4 * nDone, nCount - nDone, nAlpha);
}

}  // namespace

QX_AVX2 void FlipRowsAvx2(unsigned char* pPixels, std::size_t nRowBytes, std::size_t nHeight) {
  for (std::size_t i = 0; i < nHeight / 2; ++i) {
    SwapBytes(pPixels + i * nRowBytes, pPixels + (nHeight - 1 - i) * nRowBytes, nRowBytes);
  }
}

void Widen3To4Avx2(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  WidenTo4<Widen3>(pSource, pTarget, nCount, nAlpha);
}

void WidenGrayTo4Avx2(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount, unsigned char nAlpha) {
  WidenTo4<WidenGray>(pSource, pTarget, nCount, nAlpha);
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
