#include <QxGraphics3D/view/detail/QXVisibilityX86.h>

#if defined(QX_VISIBILITY_X86)

#  include <immintrin.h>

// One lane a plane: 0, 2, 1, 3, 4, 5, then 4 and 5 again. See the AVX2 tests for why the planes are turned at every call.
#  define QX_AVX512 __attribute__((target("avx512f,avx512dq")))

namespace QXC::detail {

namespace {

struct Lanes {
  __m512d m_nX;
  __m512d m_nY;
  __m512d m_nZ;
  __m512d m_nConstant;
};

/// Masked forms that mask nothing: g++ 12 warns of the undefined values inside its own plain ones.
constexpr __mmask8 kAllLanes = 0xFF;

// The unpacked values of the first four planes stand in 0 to 7, those of the last two, as they lie in memory, in 8 to
// 15. The last two are taken again to fill the lanes.
alignas(64) constexpr long long kTakeX[8] = {0, 1, 4, 5, 8, 12, 8, 12};
alignas(64) constexpr long long kTakeY[8] = {0, 1, 4, 5, 9, 13, 9, 13};
alignas(64) constexpr long long kTakeZ[8] = {2, 3, 6, 7, 10, 14, 10, 14};
alignas(64) constexpr long long kTakeConstant[8] = {2, 3, 6, 7, 11, 15, 11, 15};

QX_AVX512 inline __m512d Take(__m512d firstFour, long long const* pIndices, __m512d lastTwo) {
  return _mm512_permutex2var_pd(firstFour, _mm512_load_si512(pIndices), lastTwo);
}

QX_AVX512 inline Lanes Turn(QXPlane const* p) {
  __m512d const first = _mm512_loadu_pd(GetNumbers(p[0]));
  __m512d const second = _mm512_loadu_pd(GetNumbers(p[2]));
  __m512d const third = _mm512_loadu_pd(GetNumbers(p[4]));
  __m512d const low = _mm512_maskz_unpacklo_pd(kAllLanes, first, second);   // x0 x2 z0 z2 x1 x3 z1 z3
  __m512d const high = _mm512_maskz_unpackhi_pd(kAllLanes, first, second);  // y0 y2 c0 c2 y1 y3 c1 c3
  return {
      Take(low, kTakeX, third), Take(high, kTakeY, third), Take(low, kTakeZ, third), Take(high, kTakeConstant, third)};
}

}  // namespace

QX_AVX512 unsigned char IsBoxVisibleAvx512(QXPlane const* pPlanes, QXBoundingBox const& box) {
  PrefetchBehind(&box);
  Lanes const planes = Turn(pPlanes);
  __m512d const x = _mm512_mul_pd(planes.m_nX, _mm512_set1_pd(box.m_dMin[0]));
  __m512d const y = _mm512_mul_pd(planes.m_nY, _mm512_set1_pd(box.m_dMin[1]));
  __m512d const z = _mm512_mul_pd(planes.m_nZ, _mm512_set1_pd(box.m_dMin[2]));
  // The maximum is its second operand if either is not a number, so only the first products are asked for it.
  __m512d const xLargest = _mm512_maskz_max_pd(kAllLanes, x, _mm512_mul_pd(planes.m_nX, _mm512_set1_pd(box.m_dMax[0])));
  __m512d const yLargest = _mm512_maskz_max_pd(kAllLanes, y, _mm512_mul_pd(planes.m_nY, _mm512_set1_pd(box.m_dMax[1])));
  __m512d const zLargest = _mm512_maskz_max_pd(kAllLanes, z, _mm512_mul_pd(planes.m_nZ, _mm512_set1_pd(box.m_dMax[2])));
  __m512d const largest = _mm512_add_pd(_mm512_add_pd(_mm512_add_pd(xLargest, yLargest), zLargest), planes.m_nConstant);
  __mmask8 rejecting = _mm512_cmp_pd_mask(x, y, _CMP_ORD_Q);
  rejecting = _mm512_mask_cmp_pd_mask(rejecting, z, z, _CMP_ORD_Q);
  rejecting = _mm512_mask_cmp_pd_mask(rejecting, largest, _mm512_setzero_pd(), _CMP_LT_OQ);
  return rejecting == 0 ? 1 : 0;
}

QX_AVX512 unsigned char IsSphereVisibleAvx512(QXPlane const* pPlanes, QXBoundingSphere const& sphere) {
  PrefetchBehind(&sphere);
  Lanes const planes = Turn(pPlanes);
  __m512d const x = _mm512_mul_pd(planes.m_nX, _mm512_set1_pd(sphere.m_vecCenter.x));
  __m512d const y = _mm512_mul_pd(planes.m_nY, _mm512_set1_pd(sphere.m_vecCenter.y));
  __m512d const z = _mm512_mul_pd(planes.m_nZ, _mm512_set1_pd(sphere.m_vecCenter.z));
  __m512d const distance = _mm512_add_pd(_mm512_add_pd(_mm512_add_pd(x, y), z), planes.m_nConstant);
  __mmask8 const rejecting = _mm512_cmp_pd_mask(distance, _mm512_set1_pd(-sphere.m_dRadius), _CMP_LE_OQ);
  return rejecting == 0 ? 1 : 0;
}

}  // namespace QXC::detail
#endif
