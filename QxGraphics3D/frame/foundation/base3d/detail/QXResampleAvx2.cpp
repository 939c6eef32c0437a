#include <QxGraphics3D/frame/foundation/base3d/detail/QXResampleX86.h>

#if defined(QX_RESAMPLE_X86)

#  include <immintrin.h>

#  include <algorithm>
#  include <cstring>

// Processors that lack the prefetch for writing take it for no operation.
#  define QX_AVX2 __attribute__((target("avx2,prfchw")))

namespace QXC::detail {

namespace {

/// Target pixels whose source pixels may be read with nReach pixels from the first on, without leaving the row.
std::uint32_t CountInside(QXResampleAxis const& axis, std::uint32_t nFrom, std::uint32_t nReach) {
  if (nFrom < nReach) return 0;
  std::uint32_t const* const pFirst = axis.m_arrFirst.get();
  return static_cast<std::uint32_t>(std::upper_bound(pFirst, pFirst + axis.m_nTo, nFrom - nReach) - pFirst);
}

inline long long Load8(void const* p) {
  long long nValue = 0;
  std::memcpy(&nValue, p, sizeof(nValue));
  return nValue;
}

/// The instruction multiplies, adds 2^14 and shifts by 15 as the plain form does.
QX_AVX2 inline __m256i BlendWords(__m256i first, __m256i second, __m256i shares) {
  return _mm256_sub_epi16(first, _mm256_mulhrs_epi16(_mm256_sub_epi16(second, first), shares));
}

/// Where the bytes of pixels go. An index puts a byte into the upper half of a word, which makes it 256 times itself;
/// one shift to the right then leaves 128 times, the unit of the rows.
struct Orders {
  __m256i m_nFirst;
  __m256i m_nSecond;
  __m256i m_nShares;
};

QX_AVX2 inline Orders GetOrders4() {
  return {_mm256_setr_epi8(-1, 0, -1, 1, -1, 2, -1, 3, -1, 8, -1, 9, -1, 10, -1, 11, -1, 0, -1, 1, -1, 2, -1, 3, -1, 8,
              -1, 9, -1, 10, -1, 11),
      _mm256_setr_epi8(-1, 4, -1, 5, -1, 6, -1, 7, -1, 12, -1, 13, -1, 14, -1, 15, -1, 4, -1, 5, -1, 6, -1, 7, -1, 12,
          -1, 13, -1, 14, -1, 15),
      _mm256_setr_epi8(0, 1, 0, 1, 0, 1, 0, 1, 2, 3, 2, 3, 2, 3, 2, 3, 4, 5, 4, 5, 4, 5, 4, 5, 6, 7, 6, 7, 6, 7, 6, 7)};
}

/// Six words of each half are used.
QX_AVX2 inline Orders GetOrders3() {
  return {_mm256_setr_epi8(-1, 0, -1, 1, -1, 2, -1, 8, -1, 9, -1, 10, -1, -1, -1, -1, -1, 0, -1, 1, -1, 2, -1, 8, -1, 9,
              -1, 10, -1, -1, -1, -1),
      _mm256_setr_epi8(-1, 3, -1, 4, -1, 5, -1, 11, -1, 12, -1, 13, -1, -1, -1, -1, -1, 3, -1, 4, -1, 5, -1, 11, -1, 12,
          -1, 13, -1, -1, -1, -1),
      _mm256_setr_epi8(0, 1, 0, 1, 0, 1, 2, 3, 2, 3, 2, 3, 0, 1, 0, 1, 4, 5, 4, 5, 4, 5, 6, 7, 6, 7, 6, 7, 4, 5, 4, 5)};
}

/// Four target pixels: two neighbours of nBytes bytes each are read, as eight bytes, at four places.
template <std::size_t nBytes>
QX_AVX2 inline __m256i GrowFour(
    unsigned char const* pSource, std::uint32_t const* pFirst, std::int16_t const* pShares, Orders const& orders) {
  __m256i const pairs = _mm256_setr_epi64x(Load8(pSource + nBytes * pFirst[0]), Load8(pSource + nBytes * pFirst[1]),
      Load8(pSource + nBytes * pFirst[2]), Load8(pSource + nBytes * pFirst[3]));
  __m256i const first = _mm256_srli_epi16(_mm256_shuffle_epi8(pairs, orders.m_nFirst), 1);
  __m256i const second = _mm256_srli_epi16(_mm256_shuffle_epi8(pairs, orders.m_nSecond), 1);
  __m256i const shares = _mm256_shuffle_epi8(_mm256_set1_epi64x(Load8(pShares)), orders.m_nShares);
  return BlendWords(first, second, shares);
}

QX_AVX2 std::uint32_t GrowPixels4(
    unsigned char const* pSource, std::uint32_t nFrom, QXResampleAxis const& axis, std::int16_t* pTarget) {
  std::uint32_t const nEnd = CountInside(axis, nFrom, 2);
  Orders const orders = GetOrders4();
  std::uint32_t i = 0;
  for (; i + 4 <= nEnd; i += 4) {
    __m256i const words = GrowFour<4>(pSource, &axis.m_arrFirst[i], &axis.m_arrShares[i], orders);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pTarget + std::size_t{4} * i), words);
  }
  return i;
}

QX_AVX2 std::uint32_t GrowPixels3(
    unsigned char const* pSource, std::uint32_t nFrom, QXResampleAxis const& axis, std::int16_t* pTarget) {
  // Eight bytes are read at a pixel, two more than its pair has.
  std::uint32_t const nEnd = CountInside(axis, nFrom, 3);
  Orders const orders = GetOrders3();
  std::uint32_t i = 0;
  // Eight words are written for six, twice; later ones cover the rest, which is why a fifth pixel must follow.
  for (; i + 5 <= nEnd; i += 4) {
    __m256i const words = GrowFour<3>(pSource, &axis.m_arrFirst[i], &axis.m_arrShares[i], orders);
    std::int16_t* const p = pTarget + std::size_t{3} * i;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(words));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 6), _mm256_extracti128_si256(words, 1));
  }
  return i;
}

/// Eight places of one byte each, as double words: the byte there and the three that follow.
QX_AVX2 inline __m256i Gather(unsigned char const* pSource, std::uint32_t const* pPlaces) {
  __m256i const places = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(pPlaces));
  return _mm256_i32gather_epi32(reinterpret_cast<int const*>(pSource), places, 1);
}

QX_AVX2 std::uint32_t GrowPixels1(
    unsigned char const* pSource, std::uint32_t nFrom, QXResampleAxis const& axis, std::int16_t* pTarget) {
  // Places are signed in the gathering instruction.
  std::uint32_t const nEnd = nFrom <= INT32_MAX ? CountInside(axis, nFrom, 4) : 0;
  __m256i const low = _mm256_set1_epi16(0xFF);
  std::uint32_t i = 0;
  for (; i + 16 <= nEnd; i += 16) {
    // The lower words hold both bytes of a pair; packed, they come in the order 0 2 1 3 of quarters.
    __m256i const lower = _mm256_set1_epi32(0xFFFF);
    __m256i const pairs =
        _mm256_permute4x64_epi64(_mm256_packus_epi32(_mm256_and_si256(Gather(pSource, &axis.m_arrFirst[i]), lower),
                                     _mm256_and_si256(Gather(pSource, &axis.m_arrFirst[i + 8]), lower)),
            0xD8);
    __m256i const first = _mm256_slli_epi16(_mm256_and_si256(pairs, low), ROW_FRACTION_BITS);
    __m256i const second = _mm256_slli_epi16(_mm256_srli_epi16(pairs, 8), ROW_FRACTION_BITS);
    __m256i const shares = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(&axis.m_arrShares[i]));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pTarget + i), BlendWords(first, second, shares));
  }
  return i;
}

QX_AVX2 inline __m256i BlendSixteen(std::int16_t const* pUpper, std::int16_t const* pLower, __m256i share) {
  __m256i const words = BlendWords(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(pUpper)),
      _mm256_loadu_si256(reinterpret_cast<__m256i const*>(pLower)), share);
  // Times 2^8, plus 2^14, by 2^15: plus 2^6, by 2^7, the rounding to bytes.
  return _mm256_mulhrs_epi16(words, _mm256_set1_epi16(1 << (15 - ROW_FRACTION_BITS)));
}

}  // namespace

QX_AVX2 void GrowRowAvx2(unsigned int nBytesPerPixel, unsigned char const* pSource, std::uint32_t nFrom,
    QXResampleAxis const& axis, std::int16_t* pTarget) {
  std::uint32_t nDone = 0;
  if (nBytesPerPixel == 4) {
    nDone = GrowPixels4(pSource, nFrom, axis, pTarget);
  } else if (nBytesPerPixel == 3) {
    nDone = GrowPixels3(pSource, nFrom, axis, pTarget);
  } else if (nBytesPerPixel == 1) {
    nDone = GrowPixels1(pSource, nFrom, axis, pTarget);
  }
  GrowPixels(nBytesPerPixel, pSource, axis, nDone, pTarget);
}

QX_AVX2 void BlendRowsAvx2(std::int16_t const* pUpper, std::int16_t const* pLower, std::int16_t nShare,
    unsigned char* pTarget, std::size_t nCount) {
  __m256i const share = _mm256_set1_epi16(nShare);
  std::size_t i = 0;
  for (; i + 32 <= nCount; i += 32) {
    // Lines to be overwritten are fetched all the same; asked for in time, nothing waits for them. Writing past the
    // caches is quicker into old blocks but slower into new ones, whose pages the system has just cleared there.
    __builtin_prefetch(pTarget + i + 4096, 1);
    __m256i const first = BlendSixteen(pUpper + i, pLower + i, share);
    __m256i const second = BlendSixteen(pUpper + i + 16, pLower + i + 16, share);
    // Packed in the order 0 2 1 3 of quarters.
    __m256i const bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pTarget + i), bytes);
  }
  for (; i < nCount; ++i) pTarget[i] = ToByte(Blend(pUpper[i], pLower[i], nShare));
}

}  // namespace QXC::detail

#endif
