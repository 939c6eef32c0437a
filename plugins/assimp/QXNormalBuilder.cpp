#include <plugins/assimp/QXNormalBuilder.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <unordered_map>

namespace QXAssimp {

namespace {

/// Cosine of 30 degrees.
constexpr float Crease = 0.8660254f;
/// Triangles asked at one position. A fan of thousands around a point would otherwise cost their square.
constexpr std::size_t MaxNeighbours = 64;

struct Vector {
  float x, y, z;
};

Vector operator-(Vector a, Vector b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vector operator+(Vector a, Vector b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
float Dot(Vector a, Vector b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
Vector Cross(Vector a, Vector b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
/// The zero vector if there is no direction.
Vector Normalized(Vector v) {
  float const fLength = std::sqrt(Dot(v, v));
  if (!(fLength > 0.0f) || !std::isfinite(fLength)) return {0.0f, 0.0f, 0.0f};
  return {v.x / fLength, v.y / fLength, v.z / fLength};
}

Vector At(float const* p, unsigned int nVertex) {
  std::size_t const i = 3 * std::size_t{nVertex};
  return {p[i], p[i + 1], p[i + 2]};
}

/// Bits of three floats as a key; both zeros give the same.
using Key = std::array<std::uint32_t, 3>;

Key MakeKey(Vector v) {
  return {std::bit_cast<std::uint32_t>(v.x + 0.0f), std::bit_cast<std::uint32_t>(v.y + 0.0f),
      std::bit_cast<std::uint32_t>(v.z + 0.0f)};
}

struct KeyHash {
  std::size_t operator()(Key const& key) const {
    std::uint64_t nHash = 0;
    for (std::uint32_t nWord : key) nHash = (nHash ^ nWord) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(nHash ^ (nHash >> 32));
  }
};

/// For each vertex the number of its position: equal positions have equal numbers.
std::vector<unsigned int> NumberPositions(float const* pPositions, unsigned int nVertexNum, unsigned int& nPositions) {
  std::unordered_map<Key, unsigned int, KeyHash> mapNumbers;
  mapNumbers.reserve(nVertexNum);
  std::vector<unsigned int> vecNumbers(nVertexNum);
  for (unsigned int i = 0; i < nVertexNum; ++i)
    vecNumbers[i] =
        mapNumbers.try_emplace(MakeKey(At(pPositions, i)), static_cast<unsigned int>(mapNumbers.size())).first->second;
  nPositions = static_cast<unsigned int>(mapNumbers.size());
  return vecNumbers;
}

/// The triangles at each position: those of position i stand from m_vecStarts[i] to m_vecStarts[i + 1].
struct Neighbours {
  Neighbours(
      std::vector<unsigned int> const& vecCorners, std::vector<unsigned int> const& vecNumbers, unsigned int nPositions)
      : m_vecStarts(std::size_t{nPositions} + 1), m_vecTriangles(vecCorners.size()) {
    for (unsigned int nCorner : vecCorners) ++m_vecStarts[vecNumbers[nCorner] + std::size_t{1}];
    for (std::size_t i = 1; i < m_vecStarts.size(); ++i) m_vecStarts[i] += m_vecStarts[i - 1];
    std::vector<std::size_t> vecNext(m_vecStarts.begin(), m_vecStarts.end() - 1);
    for (std::size_t i = 0; i < vecCorners.size(); ++i) m_vecTriangles[vecNext[vecNumbers[vecCorners[i]]]++] = i / 3;
  }
  std::vector<std::size_t> m_vecStarts;
  std::vector<std::size_t> m_vecTriangles;
};

}  // namespace

QXCornerNormals BuildNormals(
    float const* pPositions, unsigned int nVertexNum, std::vector<unsigned int> const& vecCorners) {
  unsigned int nPositions = 0;
  std::vector<unsigned int> const vecNumbers = NumberPositions(pPositions, nVertexNum, nPositions);
  Neighbours const neighbours(vecCorners, vecNumbers, nPositions);
  std::vector<Vector> vecAreas(vecCorners.size() / 3);
  std::vector<Vector> vecUnits(vecAreas.size());
  for (std::size_t i = 0; i < vecAreas.size(); ++i) {
    Vector const a = At(pPositions, vecCorners[3 * i]);
    vecAreas[i] = Cross(At(pPositions, vecCorners[3 * i + 1]) - a, At(pPositions, vecCorners[3 * i + 2]) - a);
    vecUnits[i] = Normalized(vecAreas[i]);
  }
  QXCornerNormals result;
  result.m_vecNormals.resize(3 * vecCorners.size());
  for (std::size_t i = 0; i < vecCorners.size(); ++i) {
    unsigned int const nPosition = vecNumbers[vecCorners[i]];
    std::size_t const nBegin = neighbours.m_vecStarts[nPosition];
    std::size_t const nEnd = std::min(neighbours.m_vecStarts[nPosition + std::size_t{1}], nBegin + MaxNeighbours);
    Vector sum = vecAreas[i / 3];
    for (std::size_t j = nBegin; j < nEnd; ++j) {
      std::size_t const nOther = neighbours.m_vecTriangles[j];
      if (nOther != i / 3 && Dot(vecUnits[nOther], vecUnits[i / 3]) > Crease) sum = sum + vecAreas[nOther];
    }
    Vector normal = Normalized(sum);
    if (Dot(normal, normal) < 0.5f) normal = {0.0f, 0.0f, 1.0f};
    float* pTarget = result.m_vecNormals.data() + 3 * i;
    pTarget[0] = normal.x;
    pTarget[1] = normal.y;
    pTarget[2] = normal.z;
  }
  return result;
}

void SplitByNormal(QXCornerNormals const& normals, unsigned int nVertexNum, std::vector<unsigned int>& vecCorners,
    std::vector<unsigned int>& vecSources, std::vector<float>& vecNormals) {
  constexpr unsigned int None = std::numeric_limits<unsigned int>::max();
  // The new vertices of an old one hang in a chain; there are few.
  std::vector<unsigned int> vecFirst(nVertexNum, None);
  std::vector<unsigned int> vecNext;
  for (std::size_t i = 0; i < vecCorners.size(); ++i) {
    float const* pNormal = normals.m_vecNormals.data() + 3 * i;
    unsigned int const nOld = vecCorners[i];
    unsigned int nNew = vecFirst[nOld];
    while (nNew != None && !std::equal(pNormal, pNormal + 3, vecNormals.data() + 3 * std::size_t{nNew}))
      nNew = vecNext[nNew];
    if (nNew == None) {
      nNew = static_cast<unsigned int>(vecSources.size());
      vecSources.push_back(nOld);
      vecNormals.insert(vecNormals.end(), pNormal, pNormal + 3);
      vecNext.push_back(vecFirst[nOld]);
      vecFirst[nOld] = nNew;
    }
    vecCorners[i] = nNew;
  }
}

}  // namespace QXAssimp
