#include <QxGraphics3D/view/detail/QXVisibilityX86.h>

#if defined(QX_VISIBILITY_X86)

#  include <immintrin.h>

// One lane a plane: 0 to 3 in the first group; 4, 5 and both again in the second, since no load is cheaper than filling
// the lanes. Six planes are turned from records into lanes at every call: as quick as proving that a turned copy is
// still true to planes that a derived class may write at any time.
#  define QX_AVX2 __attribute__((target("avx2")))

namespace QXC::detail {

namespace {

struct Lanes {
  __m256d m_nX;
  __m256d m_nY;
  __m256d m_nZ;
  __m256d m_nConstant;
};

QX_AVX2 inline __m256d LoadPairs(double const* pLow, double const* pHigh) {
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(pLow)), _mm_loadu_pd(pHigh), 1);
}

QX_AVX2 inline __m256d LoadTwice(double const* pPair) {
  return _mm256_broadcast_pd(reinterpret_cast<__m128d const*>(pPair));
}

QX_AVX2 inline Lanes Turn(__m256d evenXY, __m256d oddXY, __m256d evenZC, __m256d oddZC) {
  return {_mm256_unpacklo_pd(evenXY, oddXY), _mm256_unpackhi_pd(evenXY, oddXY), _mm256_unpacklo_pd(evenZC, oddZC),
      _mm256_unpackhi_pd(evenZC, oddZC)};
}

QX_AVX2 inline Lanes TurnFirstFour(QXPlane const* p) {
  double const* const n[4] = {GetNumbers(p[0]), GetNumbers(p[1]), GetNumbers(p[2]), GetNumbers(p[3])};
  return Turn(
      LoadPairs(n[0], n[2]), LoadPairs(n[1], n[3]), LoadPairs(n[0] + 2, n[2] + 2), LoadPairs(n[1] + 2, n[3] + 2));
}

QX_AVX2 inline Lanes TurnLastTwo(QXPlane const* p) {
  double const* const n[2] = {GetNumbers(p[4]), GetNumbers(p[5])};
  return Turn(LoadTwice(n[0]), LoadTwice(n[1]), LoadTwice(n[0] + 2), LoadTwice(n[1] + 2));
}

QX_AVX2 inline __m256d RejectBox(Lanes const& planes, QXBoundingBox const& box) {
  __m256d const x = _mm256_mul_pd(planes.m_nX, _mm256_broadcast_sd(&box.m_dMin[0]));
  __m256d const y = _mm256_mul_pd(planes.m_nY, _mm256_broadcast_sd(&box.m_dMin[1]));
  __m256d const z = _mm256_mul_pd(planes.m_nZ, _mm256_broadcast_sd(&box.m_dMin[2]));
  // The maximum is its second operand if either is not a number, so only the first products are asked for it.
  __m256d const xLargest = _mm256_max_pd(x, _mm256_mul_pd(planes.m_nX, _mm256_broadcast_sd(&box.m_dMax[0])));
  __m256d const yLargest = _mm256_max_pd(y, _mm256_mul_pd(planes.m_nY, _mm256_broadcast_sd(&box.m_dMax[1])));
  __m256d const zLargest = _mm256_max_pd(z, _mm256_mul_pd(planes.m_nZ, _mm256_broadcast_sd(&box.m_dMax[2])));
  __m256d const largest = _mm256_add_pd(_mm256_add_pd(_mm256_add_pd(xLargest, yLargest), zLargest), planes.m_nConstant);
  __m256d const below = _mm256_cmp_pd(largest, _mm256_setzero_pd(), _CMP_LT_OQ);
  __m256d const noNumber = _mm256_or_pd(_mm256_cmp_pd(x, y, _CMP_UNORD_Q), _mm256_cmp_pd(z, z, _CMP_UNORD_Q));
  return _mm256_andnot_pd(noNumber, below);
}

QX_AVX2 inline __m256d RejectSphere(Lanes const& planes, QXBoundingSphere const& sphere, __m256d minusRadius) {
  __m256d const x = _mm256_mul_pd(planes.m_nX, _mm256_broadcast_sd(&sphere.m_vecCenter.x));
  __m256d const y = _mm256_mul_pd(planes.m_nY, _mm256_broadcast_sd(&sphere.m_vecCenter.y));
  __m256d const z = _mm256_mul_pd(planes.m_nZ, _mm256_broadcast_sd(&sphere.m_vecCenter.z));
  __m256d const distance = _mm256_add_pd(_mm256_add_pd(_mm256_add_pd(x, y), z), planes.m_nConstant);
  return _mm256_cmp_pd(distance, minusRadius, _CMP_LE_OQ);
}

QX_AVX2 inline unsigned char IsNoneSet(__m256d first, __m256d second) {
  return _mm256_movemask_pd(_mm256_or_pd(first, second)) == 0 ? 1 : 0;
}

}  // namespace

QX_AVX2 unsigned char IsBoxVisibleAvx2(QXPlane const* pPlanes, QXBoundingBox const& box) {
  PrefetchBehind(&box);
  return IsNoneSet(RejectBox(TurnFirstFour(pPlanes), box), RejectBox(TurnLastTwo(pPlanes), box));
}

QX_AVX2 unsigned char IsSphereVisibleAvx2(QXPlane const* pPlanes, QXBoundingSphere const& sphere) {
  PrefetchBehind(&sphere);
  __m256d const minusRadius = _mm256_set1_pd(-sphere.m_dRadius);
  return IsNoneSet(RejectSphere(TurnFirstFour(pPlanes), sphere, minusRadius),
      RejectSphere(TurnLastTwo(pPlanes), sphere, minusRadius));
}

}  // namespace QXC::detail
#endif
