#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXResample.h>

#include <bit>
#include <cmath>
#include <cstdint>

namespace QXC {

namespace {

double Sign(double dValue) {
  return dValue > 0.0 ? 1.0 : dValue < 0.0 ? -1.0 : 0.0;
}

}  // namespace

_Graphics3DType QXMathEngine::m_msGraphics3DType = GRAPHICS3D_UNKNOWN;

QXMatrix4d QXMathEngine::MakeViewMatrix(QXVector3d const& position, QXQuaternion4d const& orientation) {
  // The eye's axes stand in the columns: a row vector times the matrix gives its dot product with each axis.
  QXVector3d axes[3];
  orientation.ToAxes(axes);
  QXMatrix4d view;
  for (int nColumn = 0; nColumn < 3; ++nColumn) {
    view[0][nColumn] = axes[nColumn].x;
    view[1][nColumn] = axes[nColumn].y;
    view[2][nColumn] = axes[nColumn].z;
    view[3][nColumn] = -position.DotProduct(axes[nColumn]);
  }
  return view;
}

QXMatrix4d QXMathEngine::ComputeOrthoMatrix(
    double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar) {
  QXMatrix4d projection;
  projection[0][0] = 2.0 / (dRight - dLeft);
  projection[1][1] = 2.0 / (dTop - dBottom);
  projection[2][2] = -2.0 / (dFar - dNear);
  projection[3][0] = -(dRight + dLeft) / (dRight - dLeft);
  projection[3][1] = -(dTop + dBottom) / (dTop - dBottom);
  projection[3][2] = -(dFar + dNear) / (dFar - dNear);
  return projection;
}

QXMatrix4d QXMathEngine::ComputeFrustumMatrix(
    double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar) {
  QXMatrix4d projection = QXMatrix4d::ZERO;
  projection[0][0] = 2.0 * dNear / (dRight - dLeft);
  projection[1][1] = 2.0 * dNear / (dTop - dBottom);
  projection[2][0] = (dRight + dLeft) / (dRight - dLeft);
  projection[2][1] = (dTop + dBottom) / (dTop - dBottom);
  projection[2][2] = -(dFar + dNear) / (dFar - dNear);
  projection[2][3] = -1.0;
  projection[3][2] = -2.0 * dFar * dNear / (dFar - dNear);
  return projection;
}

QXMatrix4d QXMathEngine::ComputePerspectiveMatrix(double dFovY, double dAspect, double dNear, double dFar) {
  double const dTop = dNear * std::tan(dFovY / 2.0);
  double const dRight = dTop * dAspect;
  return ComputeFrustumMatrix(-dRight, dRight, -dTop, dTop, dNear, dFar);
}

void QXMathEngine::ApplyObliqueDepth(QXMatrix4d& matProjection, QXPlane const& plane) {
  QXVector3d const& normal = plane.GetNormal();
  double const arrPlane[4] = {normal.x, normal.y, normal.z, plane.GetPlaneDistance()};
  // The corner of the frustum opposite to the plane.
  double const arrCorner[4] = {(Sign(normal.x) + matProjection[2][0]) / matProjection[0][0],
      (Sign(normal.y) + matProjection[2][1]) / matProjection[1][1], -1.0,
      (1.0 + matProjection[2][2]) / matProjection[3][2]};
  double dDot = 0.0;
  for (int i = 0; i < 4; ++i) dDot += arrPlane[i] * arrCorner[i];
  if (dDot == 0.0 || !std::isfinite(dDot)) return;
  for (int i = 0; i < 4; ++i) matProjection[i][2] = arrPlane[i] * (2.0 / dDot) - matProjection[i][3];
}

unsigned int QXMathEngine::NextP2(unsigned int nValue) {
  unsigned int const nExponent = NextLog2(nValue);
  return nExponent < 32 ? 1U << nExponent : 0;
}

unsigned int QXMathEngine::NextLog2(unsigned int nValue) {
  return nValue <= 1 ? 0 : static_cast<unsigned int>(std::bit_width(nValue - 1));
}

unsigned char QXMathEngine::ScaleImageInternal(int nBytesPerPixel, int nWidth, int nHeight,
    unsigned char const* pSource, int nNewWidth, int nNewHeight, unsigned char* pTarget, int nSourceLength) {
  if (nBytesPerPixel < 1 || nBytesPerPixel > 4 || nWidth < 1 || nHeight < 1 || nNewWidth < 1 || nNewHeight < 1)
    return 0;
  if (nSourceLength != -1) {
    if (nSourceLength < 0) return 0;
    auto const nPixels = static_cast<std::uint64_t>(nWidth) * static_cast<std::uint64_t>(nHeight);
    // Divided, not multiplied: two edges of 31 bits leave no room for the bytes of a pixel.
    if (static_cast<std::uint64_t>(nSourceLength) / static_cast<std::uint64_t>(nBytesPerPixel) < nPixels) return 0;
  }
  return detail::ResampleImage(static_cast<unsigned int>(nBytesPerPixel),
      {pSource, static_cast<std::uint32_t>(nWidth), static_cast<std::uint32_t>(nHeight)}, pTarget,
      static_cast<std::uint32_t>(nNewWidth), static_cast<std::uint32_t>(nNewHeight));
}

}  // namespace QXC
