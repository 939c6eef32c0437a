#include <QxGraphics3D/view/detail/QXVisibilityX86.h>

#if defined(QX_VISIBILITY_X86)

#  include <immintrin.h>

// One lane a plane: 0 to 5, then 4 and 5 again. See the AVX2 tests for why the planes are turned at every call.
#  define QX_AVX512 __attribute__((target("avx512f,avx512dq")))

namespace QXC::detail {

namespace {

struct Lanes {
  __m512d m_nX;
  __m512d m_nY;
  __m512d m_nZ;
  __m512d m_nConstant;
};

QX_AVX512 inline __m512d LoadPairs(double const* pFirst, double const* pSecond, double const* pThird) {
  __m256d const low = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(pFirst)), _mm_loadu_pd(pSecond), 1);
  return _mm512_mask_broadcast_f64x2(_mm512_castpd256_pd512(low), 0xF0, _mm_loadu_pd(pThird));
}

/// Masked forms that mask nothing: g++ 12 warns of the undefined values inside its own plain ones.
constexpr __mmask8 kAllLanes = 0xFF;

QX_AVX512 inline Lanes Turn(QXPlane const* p) {
  __m512d const evenXY = LoadPairs(GetNormalXY(p[0]), GetNormalXY(p[2]), GetNormalXY(p[4]));
  __m512d const oddXY = LoadPairs(GetNormalXY(p[1]), GetNormalXY(p[3]), GetNormalXY(p[5]));
  __m512d const evenZC =
      LoadPairs(GetNormalZAndConstant(p[0]), GetNormalZAndConstant(p[2]), GetNormalZAndConstant(p[4]));
  __m512d const oddZC =
      LoadPairs(GetNormalZAndConstant(p[1]), GetNormalZAndConstant(p[3]), GetNormalZAndConstant(p[5]));
  return {_mm512_maskz_unpacklo_pd(kAllLanes, evenXY, oddXY), _mm512_maskz_unpackhi_pd(kAllLanes, evenXY, oddXY),
      _mm512_maskz_unpacklo_pd(kAllLanes, evenZC, oddZC), _mm512_maskz_unpackhi_pd(kAllLanes, evenZC, oddZC)};
}

}  // namespace

QX_AVX512 unsigned char IsBoxVisibleAvx512(QXPlane const* pPlanes, QXBoundingBox const& box) {
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
