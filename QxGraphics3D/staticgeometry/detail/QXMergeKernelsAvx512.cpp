#include <QxGraphics3D/staticgeometry/detail/QXMergeKernelsX86.h>

#if defined(QX_MERGE_X86)

#  include <QxGraphics3D/staticgeometry/detail/QXMergeLoops.h>

// The operations of g++ 12 pass registers without contents to themselves and then warn of it.
#  if !defined(__clang__)
#    pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#    pragma GCC diagnostic ignored "-Wuninitialized"
#  endif

#  include <immintrin.h>

#  include <algorithm>
#  include <cstring>

#  define QX_AVX512 __attribute__((target("avx512f,avx512dq")))

namespace QXC::detail {

namespace {

constexpr int PointsAtOnce = 16;

struct LaneTable {
  alignas(64) std::int32_t m_arrLanes[16];
};

/// Sixteen points are three registers of mixed numbers. One kind of number is taken out of the first two registers by
/// the first step, and out of that and the third register by the second step.
constexpr LaneTable TakeApart(int nKind, bool bSecondStep) {
  LaneTable table{};
  for (int nPoint = 0; nPoint < PointsAtOnce; ++nPoint) {
    int const nPlace = 3 * nPoint + nKind;
    if (!bSecondStep) table.m_arrLanes[nPoint] = nPlace < 32 ? nPlace : 0;
    if (bSecondStep) table.m_arrLanes[nPoint] = nPlace < 32 ? nPoint : 16 + nPlace - 32;
  }
  return table;
}

/// The way back: register nRegister of mixed numbers from x and y, then from that and z.
constexpr LaneTable PutTogether(int nRegister, bool bSecondStep) {
  LaneTable table{};
  for (int nLane = 0; nLane < 16; ++nLane) {
    int const nPlace = 16 * nRegister + nLane;
    int const nPoint = nPlace / 3;
    int const nKind = nPlace % 3;
    if (!bSecondStep) table.m_arrLanes[nLane] = nKind == 1 ? 16 + nPoint : nPoint;
    if (bSecondStep) table.m_arrLanes[nLane] = nKind == 2 ? 16 + nPoint : nLane;
  }
  return table;
}

constexpr LaneTable ApartTables[3][2] = {{TakeApart(0, false), TakeApart(0, true)},
    {TakeApart(1, false), TakeApart(1, true)}, {TakeApart(2, false), TakeApart(2, true)}};
constexpr LaneTable TogetherTables[3][2] = {{PutTogether(0, false), PutTogether(0, true)},
    {PutTogether(1, false), PutTogether(1, true)}, {PutTogether(2, false), PutTogether(2, true)}};

QX_AVX512 inline __m512 Pick(__m512 a, __m512 b, __m512 c, LaneTable const (&tables)[2]) {
  __m512 const first = _mm512_permutex2var_ps(a, _mm512_load_si512(tables[0].m_arrLanes), b);
  return _mm512_permutex2var_ps(first, _mm512_load_si512(tables[1].m_arrLanes), c);
}

QX_AVX512 inline __m512d WidenLow(__m512 values) {
  return _mm512_cvtps_pd(_mm512_castps512_ps256(values));
}

QX_AVX512 inline __m512d WidenHigh(__m512 values) {
  return _mm512_cvtps_pd(_mm512_extractf32x8_ps(values, 1));
}

QX_AVX512 inline __m512 Narrow(__m512d low, __m512d high) {
  return _mm512_insertf32x8(_mm512_castps256_ps512(_mm512_cvtpd_ps(low)), _mm512_cvtpd_ps(high), 1);
}

struct Vectors {
  __m512d x;
  __m512d y;
  __m512d z;
};

QX_AVX512 inline __m512d MultiplyColumns(double const* p, Vectors const& points) {
  __m512d const x = _mm512_mul_pd(points.x, _mm512_set1_pd(p[0]));
  __m512d const y = _mm512_mul_pd(points.y, _mm512_set1_pd(p[3]));
  __m512d const z = _mm512_mul_pd(points.z, _mm512_set1_pd(p[6]));
  return _mm512_add_pd(_mm512_add_pd(_mm512_add_pd(x, y), z), _mm512_set1_pd(p[9]));
}

QX_AVX512 inline Vectors Normalize(Vectors const& v) {
  __m512d const squares =
      _mm512_add_pd(_mm512_add_pd(_mm512_mul_pd(v.x, v.x), _mm512_mul_pd(v.y, v.y)), _mm512_mul_pd(v.z, v.z));
  __m512d const length = _mm512_sqrt_pd(squares);
  __mmask8 const positive = _mm512_cmp_pd_mask(length, _mm512_setzero_pd(), _CMP_GT_OQ);
  __m512d const divisor = _mm512_mask_blend_pd(positive, _mm512_set1_pd(1.0), length);
  return {_mm512_div_pd(v.x, divisor), _mm512_div_pd(v.y, divisor), _mm512_div_pd(v.z, divisor)};
}

template <bool bNormalize>
QX_AVX512 inline Vectors Multiply(QXPointTransform const& transform, Vectors const& points) {
  double const* const p = transform.m_arrValues;
  Vectors const result = {MultiplyColumns(p, points), MultiplyColumns(p + 1, points), MultiplyColumns(p + 2, points)};
  if constexpr (bNormalize) return Normalize(result);
  return result;
}

template <bool bNormalize>
QX_AVX512 inline void TransformSixteen(QXPointTransform const& transform, float const* pSource, float* pTarget) {
  __m512 const a = _mm512_loadu_ps(pSource);
  __m512 const b = _mm512_loadu_ps(pSource + 16);
  __m512 const c = _mm512_loadu_ps(pSource + 32);
  __m512 const x = Pick(a, b, c, ApartTables[0]);
  __m512 const y = Pick(a, b, c, ApartTables[1]);
  __m512 const z = Pick(a, b, c, ApartTables[2]);
  Vectors const low = Multiply<bNormalize>(transform, {WidenLow(x), WidenLow(y), WidenLow(z)});
  Vectors const high = Multiply<bNormalize>(transform, {WidenHigh(x), WidenHigh(y), WidenHigh(z)});
  __m512 const toX = Narrow(low.x, high.x);
  __m512 const toY = Narrow(low.y, high.y);
  __m512 const toZ = Narrow(low.z, high.z);
  _mm512_storeu_ps(pTarget, Pick(toX, toY, toZ, TogetherTables[0]));
  _mm512_storeu_ps(pTarget + 16, Pick(toX, toY, toZ, TogetherTables[1]));
  _mm512_storeu_ps(pTarget + 32, Pick(toX, toY, toZ, TogetherTables[2]));
}

template <bool bNormalize>
QX_AVX512 inline void TransformThrees(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead) {
  std::size_t i = 0;
  for (; i + PointsAtOnce <= nNum; i += PointsAtOnce) {
    for (std::size_t nLine = 0; nLine < 3; ++nLine) {
      Prefetch(static_cast<char const*>(ahead.m_pFirst) + 12 * i + 64 * nLine);
      if (nLine < 2) Prefetch(static_cast<char const*>(ahead.m_pSecond) + 8 * i + 64 * nLine);
    }
    TransformSixteen<bNormalize>(transform, pSource + 3 * i, pTarget + 3 * i);
  }
  if (i == nNum) return;
  float arrFrom[3 * PointsAtOnce] = {};
  float arrTo[3 * PointsAtOnce];
  std::copy_n(pSource + 3 * i, 3 * (nNum - i), arrFrom);
  TransformSixteen<bNormalize>(transform, arrFrom, arrTo);
  std::copy_n(arrTo, 3 * (nNum - i), pTarget + 3 * i);
}

}  // namespace

QX_AVX512 void TransformPointsAvx512(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead) {
  TransformThrees<false>(transform, pSource, pTarget, nNum, ahead);
}

QX_AVX512 void TransformNormalsAvx512(
    QXPointTransform const& transform, float const* pSource, float* pTarget, std::size_t nNum, QXAhead ahead) {
  TransformThrees<true>(transform, pSource, pTarget, nNum, ahead);
}

QX_AVX512 void TransformPairsAvx512(
    QXCoordTransform const& transform, float* pPairs, unsigned char const* pTouched, std::size_t nNum) {
  double const* const p = transform.m_arrValues;
  __m512d const row0 = _mm512_broadcast_f64x2(_mm_loadu_pd(p));
  __m512d const row1 = _mm512_broadcast_f64x2(_mm_loadu_pd(p + 2));
  __m512d const row2 = _mm512_broadcast_f64x2(_mm_loadu_pd(p + 4));
  __m512d const row3 = _mm512_broadcast_f64x2(_mm_loadu_pd(p + 6));
  std::size_t i = 0;
  for (; i + 8 <= nNum; i += 8) {
    __m512i const touched = _mm512_cvtepu8_epi64(_mm_loadl_epi64(reinterpret_cast<__m128i const*>(pTouched + i)));
    __mmask8 const mask = _mm512_test_epi64_mask(touched, touched);
    __m512 const pairs = _mm512_loadu_ps(pPairs + 2 * i);
    __m512d arrResults[2] = {WidenLow(pairs), WidenHigh(pairs)};
    for (__m512d& result : arrResults) {
      __m512d const u = _mm512_mul_pd(_mm512_movedup_pd(result), row0);
      __m512d const v = _mm512_mul_pd(_mm512_permute_pd(result, 0xFF), row1);
      result = _mm512_add_pd(_mm512_add_pd(_mm512_add_pd(u, v), row2), row3);
    }
    _mm512_mask_storeu_pd(pPairs + 2 * i, mask, _mm512_castps_pd(Narrow(arrResults[0], arrResults[1])));
  }
  for (; i < nNum; ++i) {
    if (pTouched[i]) TransformPair(transform, pPairs + 2 * i);
  }
}

QX_AVX512 void StreamAvx512(void* pTarget, void const* pSource, std::size_t nBytes, void const* pAhead) {
  if (nBytes == 0) return;
  auto* pTo = static_cast<unsigned char*>(pTarget);
  auto const* pFrom = static_cast<unsigned char const*>(pSource);
  std::size_t i = CopyToLine(pTo, pFrom, nBytes);
  for (; i + 64 <= nBytes; i += 64) {
    Prefetch(static_cast<char const*>(pAhead) + i);
    _mm512_stream_si512(reinterpret_cast<__m512i*>(pTo + i), _mm512_loadu_si512(pFrom + i));
  }
  std::memcpy(pTo + i, pFrom + i, nBytes - i);
}

}  // namespace QXC::detail

#endif
