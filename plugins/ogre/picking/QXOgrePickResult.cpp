#include <plugins/ogre/picking/QXOgrePickResult.h>

#include <algorithm>
#include <cmath>

namespace QXC {

namespace {

struct HomogeneousPoint {
  double d[4];
};

HomogeneousPoint Multiply(HomogeneousPoint const& point, QXMatrix4d const& mat) {
  HomogeneousPoint result{};
  for (int k = 0; k < 4; ++k)
    for (int j = 0; j < 4; ++j) result.d[k] += point.d[j] * mat[j][k];
  return result;
}

/// A point of the eye's coordinates that stands at a place of the picture.
QXVector3d ToEye(double dX, double dY, double dZ, QXMatrix4d const& matInverse) {
  HomogeneousPoint const point = Multiply({{dX, dY, dZ, 1.0}}, matInverse);
  return {point.d[0] / point.d[3], point.d[1] / point.d[3], point.d[2] / point.d[3]};
}

}  // namespace

QXOgrePixelRect QXOgrePixelRect::Intersect(QXOgrePixelRect const& other) const {
  long long const nLeft = std::max(m_nLeft, other.m_nLeft);
  long long const nBottom = std::max(m_nBottom, other.m_nBottom);
  long long const nRight = std::min(static_cast<long long>(m_nLeft) + m_nWidth, other.m_nLeft + 0LL + other.m_nWidth);
  long long const nTop =
      std::min(static_cast<long long>(m_nBottom) + m_nHeight, other.m_nBottom + 0LL + other.m_nHeight);
  if (nRight <= nLeft || nTop <= nBottom) return {};
  return {static_cast<int>(nLeft), static_cast<int>(nBottom), static_cast<int>(nRight - nLeft),
      static_cast<int>(nTop - nBottom)};
}

void QXOgrePickResult::Reset(QXOgrePixelRect const& rect) {
  m_Rect = rect;
  m_arrParts.clear();
  std::size_t const nPixels =
      rect.IsEmpty() ? 0 : static_cast<std::size_t>(rect.m_nWidth) * static_cast<std::size_t>(rect.m_nHeight);
  m_arrIdentifiers.assign(nPixels, 0);
  m_arrPlaces.assign(3 * nPixels, 0.0F);
}

int QXOgrePickResult::AddView(QXOgrePixelRect const& rect, QXOgreView const& view) {
  m_arrParts.push_back({rect, view.m_matView, view.m_matProjection, view.m_vecOrigin, view.m_dVerticalExaggeration});
  return static_cast<int>(m_arrParts.size()) - 1;
}

void QXOgrePickResult::Take(std::vector<unsigned char> const& arrIdentifiers, std::vector<float> const& arrPlaces,
    QXOgrePixelRect const& drawn, std::size_t nStride) {
  auto const nLeft = static_cast<std::size_t>(m_Rect.m_nLeft - drawn.m_nLeft);
  auto const nBottom = static_cast<std::size_t>(m_Rect.m_nBottom - drawn.m_nBottom);
  for (std::size_t y = 0, i = 0; y < static_cast<std::size_t>(m_Rect.m_nHeight); ++y) {
    for (std::size_t x = 0; x < static_cast<std::size_t>(m_Rect.m_nWidth); ++x, ++i) {
      std::size_t const nFrom = (nBottom + y) * nStride + nLeft + x;
      unsigned char const* const p = arrIdentifiers.data() + 4 * nFrom;
      m_arrIdentifiers[i] = static_cast<unsigned int>(p[3]) << 24U | static_cast<unsigned int>(p[0]) << 16U |
                            static_cast<unsigned int>(p[1]) << 8U | p[2];
      for (std::size_t k = 0; k < 3; ++k) m_arrPlaces[3 * i + k] = arrPlaces[4 * nFrom + k];
    }
  }
}

std::size_t QXOgrePickResult::PlaceOf(int nX, int nY) const {
  return static_cast<std::size_t>(nY - m_Rect.m_nBottom) * static_cast<std::size_t>(m_Rect.m_nWidth) +
         static_cast<std::size_t>(nX - m_Rect.m_nLeft);
}

unsigned int QXOgrePickResult::GetIdentifier(int nX, int nY) const {
  return m_Rect.Contains(nX, nY) ? m_arrIdentifiers[PlaceOf(nX, nY)] : 0;
}

bool QXOgrePickResult::IsDrawn(int nX, int nY) const {
  return m_Rect.Contains(nX, nY) && m_arrPlaces[3 * PlaceOf(nX, nY) + 1] != 0.0F;
}

double QXOgrePickResult::GetDepth(int nX, int nY) const {
  return IsDrawn(nX, nY) ? static_cast<double>(m_arrPlaces[3 * PlaceOf(nX, nY)]) : 1.0;
}

unsigned char QXOgrePickResult::GetPosition(int nX, int nY, QXVector3d& vecPosition) const {
  if (!IsDrawn(nX, nY)) return 0;
  std::size_t const nPlace = 3 * PlaceOf(nX, nY);
  auto const nPart = static_cast<std::size_t>(std::lround(m_arrPlaces[nPlace + 2]));
  if (nPart >= m_arrParts.size()) return 0;
  Part const& part = m_arrParts[nPart];
  QXMatrix4d const& matProjection = part.m_matProjection;
  QXMatrix4d const matInverse = matProjection.Invert();
  double const dX = 2.0 * (nX + 0.5 - part.m_Rect.m_nLeft) / part.m_Rect.m_nWidth - 1.0;
  double const dY = 2.0 * (nY + 0.5 - part.m_Rect.m_nBottom) / part.m_Rect.m_nHeight - 1.0;
  // Two points of the ray. The second is not on the far plane: that may be infinitely far.
  QXVector3d const vecNear = ToEye(dX, dY, -1.0, matInverse);
  QXVector3d const vecWay = ToEye(dX, dY, 0.0, matInverse) - vecNear;
  double const dNearW = vecNear.x * matProjection[0][3] + vecNear.y * matProjection[1][3] +
                        vecNear.z * matProjection[2][3] + matProjection[3][3];
  double const dWayW = vecWay.x * matProjection[0][3] + vecWay.y * matProjection[1][3] + vecWay.z * matProjection[2][3];
  // w grows along the ray, and as floats it stays exact where the depth is crowded; of parallel views it does not.
  double const dAlong = std::abs(dWayW) > 1.0e-12 * std::abs(dNearW)
                            ? (static_cast<double>(m_arrPlaces[nPlace + 1]) - dNearW) / dWayW
                            : 2.0 * static_cast<double>(m_arrPlaces[nPlace]);
  QXVector3d const vecEye(vecNear.x + dAlong * vecWay.x, vecNear.y + dAlong * vecWay.y, vecNear.z + dAlong * vecWay.z);
  QXVector3d vecWorld = vecEye.MultiplyMatrix(part.m_matView.Invert()) + part.m_vecOrigin;
  vecWorld.z = part.m_dVerticalExaggeration == 0.0 ? 0.0 : vecWorld.z / part.m_dVerticalExaggeration;
  if (!std::isfinite(vecWorld.x) || !std::isfinite(vecWorld.y) || !std::isfinite(vecWorld.z)) return 0;
  vecPosition = vecWorld;
  return 1;
}

}  // namespace QXC
