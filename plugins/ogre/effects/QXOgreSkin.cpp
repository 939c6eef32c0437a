#include <plugins/ogre/effects/QXOgreSkin.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>

#include <plugins/ogre/QXOgreGeometry.h>

namespace QXC {

namespace {

constexpr std::size_t MOST_BONES = 4;

std::array<float, 3> Three(QXOgreElement const& element, std::size_t nVertex) {
  std::array<float, 3> arrNumbers = {};
  if (!element.m_pFirst) return arrNumbers;
  for (std::size_t k = 0; k < std::min<std::size_t>(element.m_nDim, 3); ++k) arrNumbers[k] = element.At(nVertex)[k];
  return arrNumbers;
}

QXBoundingBox PointBox(std::array<float, 3> const& arrPoint) {
  QXVector3d const vecPoint(arrPoint[0], arrPoint[1], arrPoint[2]);
  return {vecPoint, vecPoint};
}

/// A point and a direction as the upper three columns of a matrix take them.
using Affine = std::array<std::array<double, 3>, 4>;

void AddWeighted(Affine& sum, QXMatrix4d const& mat, double dWeight) {
  for (std::size_t i = 0; i < 4; ++i)
    for (std::size_t k = 0; k < 3; ++k) sum[i][k] += dWeight * mat.m[i][k];
}

/// The direction that is square to everything that the matrix makes of what was square to the former one: that times
/// the matrix of cofactors, which is the inverse transposed but for a factor, and exists where that does not.
std::array<float, 3> MoveNormal(std::array<float, 3> const& arrNormal, Affine const& m) {
  double arrResult[3];
  for (std::size_t k = 0; k < 3; ++k) {
    std::size_t const nNext = (k + 1) % 3;
    std::size_t const nLast = (k + 2) % 3;
    arrResult[k] = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      auto const& below = m[(i + 1) % 3];
      auto const& last = m[(i + 2) % 3];
      arrResult[k] += arrNormal[i] * (below[nNext] * last[nLast] - below[nLast] * last[nNext]);
    }
  }
  double const dLength = std::hypot(arrResult[0], arrResult[1], arrResult[2]);
  // Of what has become a line nothing is known; without a normal the face's own counts.
  if (!(dLength > 0.0) || !std::isfinite(dLength)) return {};
  return {static_cast<float>(arrResult[0] / dLength), static_cast<float>(arrResult[1] / dLength),
      static_cast<float>(arrResult[2] / dLength)};
}

}  // namespace

bool QXOgreSkin::IsFor(QXOgreVertices const& vertices) {
  for (unsigned int const nSet : {QXSkeletonAnimation::BONE_SET, QXSkeletonAnimation::WEIGHT_SET})
    if (!vertices.m_TexCoords[nSet].m_pFirst || vertices.m_TexCoords[nSet].m_nDim != MOST_BONES) return false;
  return true;
}

QXOgreSkin::QXOgreSkin(QXOgreVertices const& vertices) : m_arrVertices(vertices.m_nCount) {
  for (std::size_t i = 0; i < m_arrVertices.size(); ++i) {
    Vertex& vertex = m_arrVertices[i];
    vertex.m_arrPosition = Three(vertices.m_Position, i);
    vertex.m_arrNormal = Three(vertices.m_Normal, i);
    float const* const pBones = vertices.m_TexCoords[QXSkeletonAnimation::BONE_SET].At(i);
    float const* const pWeights = vertices.m_TexCoords[QXSkeletonAnimation::WEIGHT_SET].At(i);
    for (std::size_t k = 0; k < MOST_BONES; ++k) {
      constexpr float LIMIT = 65535.0F;
      float const fBone = std::round(pBones[k]);
      // Written so that what is no number does not count.
      bool const bCounts =
          fBone >= 0.0F && fBone <= LIMIT && pWeights[k] > 0.0F && pWeights[k] < std::numeric_limits<float>::infinity();
      vertex.m_arrBones[k] = static_cast<std::uint16_t>(bCounts ? fBone : 0.0F);
      vertex.m_arrWeights[k] = bCounts ? pWeights[k] : 0.0F;
    }
  }
  m_arrMovedPositions.resize(m_arrVertices.size() * 3);
  if (vertices.m_Normal.m_pFirst) m_arrMovedNormals.resize(m_arrVertices.size() * 3);
  MakeShares();
}

void QXOgreSkin::MakeShares() {
  std::vector<bool> arrMoves;
  for (Vertex const& vertex : m_arrVertices) {
    for (std::size_t k = 0; k < MOST_BONES; ++k) {
      if (!(vertex.m_arrWeights[k] > 0.0F)) continue;
      if (vertex.m_arrBones[k] >= arrMoves.size()) arrMoves.resize(vertex.m_arrBones[k] + std::size_t{1});
      arrMoves[vertex.m_arrBones[k]] = true;
    }
  }
  for (std::size_t i = 0; i < arrMoves.size(); ++i)
    if (arrMoves[i]) m_arrShares.push_back({i, QXBoundingBox()});
  GrowShares(0, m_arrVertices.size());
}

void QXOgreSkin::GrowShares(std::size_t nFirst, std::size_t nCount) {
  for (std::size_t i = nFirst; i < nFirst + nCount; ++i) {
    Vertex const& vertex = m_arrVertices[i];
    QXBoundingBox const box = PointBox(vertex.m_arrPosition);
    bool bMoves = false;
    for (std::size_t k = 0; k < MOST_BONES; ++k) {
      if (!(vertex.m_arrWeights[k] > 0.0F)) continue;
      bMoves = true;
      std::lower_bound(m_arrShares.begin(), m_arrShares.end(), std::size_t{vertex.m_arrBones[k]},
          [](Share const& share, std::size_t nBone) { return share.m_nBone < nBone; })
          ->m_Box.Merge(box);
    }
    if (!bMoves) m_RestBox.Merge(box);
  }
}

void QXOgreSkin::SetPositions(unsigned int nFirst, unsigned int nCount, float const* pPositions) {
  for (std::size_t i = 0; i < nCount; ++i)
    std::copy_n(pPositions + 3 * i, 3, m_arrVertices[nFirst + i].m_arrPosition.begin());
  GrowShares(nFirst, nCount);
}

QXBoundingBox QXOgreSkin::GetBounds(std::vector<QXMatrix4d> const& arrMoves) const {
  QXBoundingBox box = m_RestBox;
  // A bone that is not there moves nothing.
  for (Share const& share : m_arrShares)
    box.Merge(share.m_nBone < arrMoves.size() ? share.m_Box.GetTransformed(arrMoves[share.m_nBone]) : share.m_Box);
  return box;
}

void QXOgreSkin::Move(std::vector<QXMatrix4d> const& arrMoves, QXVector3d const& vecZero) {
  float* pPosition = m_arrMovedPositions.data();
  float* pNormal = m_arrMovedNormals.empty() ? nullptr : m_arrMovedNormals.data();
  double const arrZero[3] = {vecZero.x, vecZero.y, vecZero.z};
  for (Vertex const& vertex : m_arrVertices) {
    Affine sum = {};
    double dSum = 0.0;
    for (std::size_t k = 0; k < MOST_BONES; ++k) {
      double const dWeight = vertex.m_arrWeights[k];
      if (!(dWeight > 0.0) || vertex.m_arrBones[k] >= arrMoves.size()) continue;
      AddWeighted(sum, arrMoves[vertex.m_arrBones[k]], dWeight);
      dSum += dWeight;
    }
    if (dSum == 0.0) {
      AddWeighted(sum, QXMatrix4d::IDENTITY, 1.0);
      dSum = 1.0;
    }
    auto const& p = vertex.m_arrPosition;
    for (std::size_t k = 0; k < 3; ++k)
      *pPosition++ =
          static_cast<float>((p[0] * sum[0][k] + p[1] * sum[1][k] + p[2] * sum[2][k] + sum[3][k]) / dSum - arrZero[k]);
    if (pNormal) pNormal = std::copy_n(MoveNormal(vertex.m_arrNormal, sum).begin(), 3, pNormal);
  }
}

}  // namespace QXC
