#include <QxGraphics3D/staticgeometry/detail/QXMergeKernelsX86.h>

#if defined(QX_MERGE_X86)

#  include <QxGraphics3D/staticgeometry/detail/QXMergeLoops.h>

#  include <immintrin.h>

#  include <algorithm>
#  include <cstring>

#  define QX_AVX2 __attribute__((target("avx2")))

namespace QXC::detail {

namespace {

// Four lanes a point: three numbers and one that nobody stores.
struct Rows {
  __m256d m_arrRows[4];
};

QX_AVX2 inline Rows LoadRows(QXPointTransform const& transform) {
  double const* const p = transform.m_arrValues;
  return {{_mm256_setr_pd(p[0], p[1], p[2], 0.0), _mm256_setr_pd(p[3], p[4], p[5], 0.0),
      _mm256_setr_pd(p[6], p[7], p[8], 0.0), _mm256_setr_pd(p[9], p[10], p[11], 0.0)}};
}

QX_AVX2 inline __m256d Multiply(Rows const& rows, __m256d point) {
  __m256d const x = _mm256_mul_pd(_mm256_permute4x64_pd(point, 0x00), rows.m_arrRows[0]);
  __m256d const y = _mm256_mul_pd(_mm256_permute4x64_pd(point, 0x55), rows.m_arrRows[1]);
  __m256d const z = _mm256_mul_pd(_mm256_permute4x64_pd(point, 0xAA), rows.m_arrRows[2]);
  return _mm256_add_pd(_mm256_add_pd(_mm256_add_pd(x, y), z), rows.m_arrRows[3]);
}

QX_AVX2 inline __m256d Normalize(__m256d vector) {
  __m256d const squares = _mm256_mul_pd(vector, vector);
  __m256d const sum =
      _mm256_add_pd(_mm256_add_pd(_mm256_permute4x64_pd(squares, 0x00), _mm256_permute4x64_pd(squares, 0x55)),
          _mm256_permute4x64_pd(squares, 0xAA));
  __m256d const length = _mm256_sqrt_pd(sum);
  __m256d const positive = _mm256_cmp_pd(length, _mm256_setzero_pd(), _CMP_GT_OQ);
  return _mm256_div_pd(vector, _mm256_blendv_pd(_mm256_set1_pd(1.0), length, positive));
}

/// Reads and writes four numbers a point, the fourth being the next point's first: the last point of an array is left
/// to the caller. Stores run forwards, so the next point puts its first number right.
template <bool bNormalize>
QX_AVX2 inline void TransformThrees(
    Rows const& rows, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead) {
  for (std::size_t i = 0; i < nNum; ++i) {
    Prefetch(static_cast<char const*>(ahead.m_pFirst) + 12 * i);
    Prefetch(static_cast<char const*>(ahead.m_pSecond) + 8 * i);
    __m256d result = Multiply(rows, _mm256_cvtps_pd(_mm_loadu_ps(pSource + 3 * i)));
    if constexpr (bNormalize) result = Normalize(result);
    _mm_storeu_ps(pTarget + 3 * i, _mm256_cvtpd_ps(result));
  }
}

/// Registers of 16-bit indices.
struct Words16 {
  using Word = std::uint16_t;
  QX_AVX2 static __m256i Spread(Word nWord) { return _mm256_set1_epi16(static_cast<short>(nWord)); }
  QX_AVX2 static __m256i Add(__m256i a, __m256i b) { return _mm256_add_epi16(a, b); }
  QX_AVX2 static __m256i Smaller(__m256i a, __m256i b) { return _mm256_min_epu16(a, b); }
  QX_AVX2 static __m256i Larger(__m256i a, __m256i b) { return _mm256_max_epu16(a, b); }
};

/// Registers of 32-bit indices.
struct Words32 {
  using Word = std::uint32_t;
  QX_AVX2 static __m256i Spread(Word nWord) { return _mm256_set1_epi32(static_cast<int>(nWord)); }
  QX_AVX2 static __m256i Add(__m256i a, __m256i b) { return _mm256_add_epi32(a, b); }
  QX_AVX2 static __m256i Smaller(__m256i a, __m256i b) { return _mm256_min_epu32(a, b); }
  QX_AVX2 static __m256i Larger(__m256i a, __m256i b) { return _mm256_max_epu32(a, b); }
};

template <class Words, class Word = typename Words::Word>
QX_AVX2 inline QXIndexRange ShiftWords(Word nStart, Word const* pSource, Word* pTarget, std::size_t nNum) {
  constexpr std::size_t Lanes = sizeof(__m256i) / sizeof(Word);
  __m256i const start = Words::Spread(nStart);
  __m256i smallest = _mm256_set1_epi32(-1);
  __m256i largest = _mm256_setzero_si256();
  std::size_t i = 0;
  for (; i + Lanes <= nNum; i += Lanes) {
    _mm_prefetch(reinterpret_cast<char const*>(pSource + i) + 1024, _MM_HINT_T0);
    __m256i const sum = Words::Add(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(pSource + i)), start);
    smallest = Words::Smaller(smallest, sum);
    largest = Words::Larger(largest, sum);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pTarget + i), sum);
  }
  alignas(32) Word arrSmallest[Lanes];
  alignas(32) Word arrLargest[Lanes];
  _mm256_store_si256(reinterpret_cast<__m256i*>(arrSmallest), smallest);
  _mm256_store_si256(reinterpret_cast<__m256i*>(arrLargest), largest);
  QXIndexRange range = ShiftIndices(nStart, pSource + i, pTarget + i, nNum - i);
  if (i > 0)
    range.Add({*std::min_element(arrSmallest, arrSmallest + Lanes), *std::max_element(arrLargest, arrLargest + Lanes)});
  return range;
}

}  // namespace

QX_AVX2 void TransformPointsAvx2(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead) {
  if (nNum == 0) return;
  TransformThrees<false>(LoadRows(transform), pSource, pTarget, nNum - 1, ahead);
  TransformPoint(transform, pSource + 3 * (nNum - 1), pTarget + 3 * (nNum - 1));
}

QX_AVX2 void TransformNormalsAvx2(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead) {
  if (nNum == 0) return;
  TransformThrees<true>(LoadRows(transform), pSource, pTarget, nNum - 1, ahead);
  TransformNormal(transform, pSource + 3 * (nNum - 1), pTarget + 3 * (nNum - 1));
}

QX_AVX2 void TransformPairsAvx2(
    QXCoordTransform const& transform, float* pPairs, unsigned char const* pTouched, std::size_t nNum) {
  double const* const p = transform.m_arrValues;
  __m256d const row0 = _mm256_setr_pd(p[0], p[1], p[0], p[1]);
  __m256d const row1 = _mm256_setr_pd(p[2], p[3], p[2], p[3]);
  __m256d const row2 = _mm256_setr_pd(p[4], p[5], p[4], p[5]);
  __m256d const row3 = _mm256_setr_pd(p[6], p[7], p[6], p[7]);
  std::size_t i = 0;
  for (; i + 2 <= nNum; i += 2) {
    std::uint16_t nTouched = 0;
    std::memcpy(&nTouched, pTouched + i, sizeof nTouched);
    if (nTouched != 0x0101) {
      if (pTouched[i]) TransformPair(transform, pPairs + 2 * i);
      if (pTouched[i + 1]) TransformPair(transform, pPairs + 2 * i + 2);
      continue;
    }
    __m256d const pairs = _mm256_cvtps_pd(_mm_loadu_ps(pPairs + 2 * i));
    __m256d const u = _mm256_mul_pd(_mm256_movedup_pd(pairs), row0);
    __m256d const v = _mm256_mul_pd(_mm256_permute_pd(pairs, 0xF), row1);
    __m256d const result = _mm256_add_pd(_mm256_add_pd(_mm256_add_pd(u, v), row2), row3);
    _mm_storeu_ps(pPairs + 2 * i, _mm256_cvtpd_ps(result));
  }
  if (i < nNum && pTouched[i]) TransformPair(transform, pPairs + 2 * i);
}

QX_AVX2 QXIndexRange Shift16Avx2(
    std::uint16_t nStart, std::uint16_t const* pSource, std::uint16_t* pTarget, std::size_t nNum) {
  return ShiftWords<Words16>(nStart, pSource, pTarget, nNum);
}

QX_AVX2 QXIndexRange Shift32Avx2(
    std::uint32_t nStart, std::uint32_t const* pSource, std::uint32_t* pTarget, std::size_t nNum) {
  return ShiftWords<Words32>(nStart, pSource, pTarget, nNum);
}

QX_AVX2 void StreamAvx2(void* pTarget, void const* pSource, std::size_t nBytes, void const* pAhead) {
  if (nBytes == 0) return;
  auto* pTo = static_cast<unsigned char*>(pTarget);
  auto const* pFrom = static_cast<unsigned char const*>(pSource);
  std::size_t i = CopyToLine(pTo, pFrom, nBytes);
  for (; i + 64 <= nBytes; i += 64) {
    Prefetch(static_cast<char const*>(pAhead) + i);
    __m256i const low = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(pFrom + i));
    __m256i const high = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(pFrom + i + 32));
    _mm256_stream_si256(reinterpret_cast<__m256i*>(pTo + i), low);
    _mm256_stream_si256(reinterpret_cast<__m256i*>(pTo + i + 32), high);
  }
  std::memcpy(pTo + i, pFrom + i, nBytes - i);
}

void FinishStreamsAvx2() {
  _mm_sfence();
}

}  // namespace QXC::detail

#endif
