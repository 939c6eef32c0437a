#include <plugins/assimp/QXVertexJoiner.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace QXAssimp {

namespace {

/// Words of a vertex: position, normal, two coordinates, colour; zeros for what a mesh has not.
constexpr std::size_t WordNum = 9;
using Words = std::array<std::uint32_t, WordNum>;

void GatherFloats(float const* pFloats, std::size_t nCount, std::uint32_t* pWords) {
  std::memcpy(pWords, pFloats, nCount * sizeof(float));
  constexpr std::uint32_t MinusZero = 0x80000000U;
  for (std::size_t i = 0; i < nCount; ++i)
    if (pWords[i] == MinusZero) pWords[i] = 0;
}

Words Gather(QXC::QXVertexDataPackage const& package, std::size_t nVertex) {
  Words words = {};
  GatherFloats(package.m_pVertices + 3 * nVertex, 3, words.data());
  if (package.m_pNormals != nullptr) GatherFloats(package.m_pNormals + 3 * nVertex, 3, words.data() + 3);
  if (package.m_pTexCoords[0] != nullptr) GatherFloats(package.m_pTexCoords[0] + 2 * nVertex, 2, words.data() + 6);
  if (package.m_pColors != nullptr) words[8] = package.m_pColors[nVertex];
  return words;
}

std::uint32_t Hash(Words const& words) {
  std::uint64_t nHash = 0;
  for (std::uint32_t nWord : words) {
    nHash = (nHash ^ nWord) * 0x9E3779B97F4A7C15U;
    nHash ^= nHash >> 29;
  }
  return static_cast<std::uint32_t>(nHash >> 32);
}

/// Moves a vertex to the front of a gap.
void Move(QXC::QXVertexDataPackage& package, std::size_t nFrom, std::size_t nTo) {
  std::copy_n(package.m_pVertices + 3 * nFrom, 3, package.m_pVertices + 3 * nTo);
  if (package.m_pNormals != nullptr) std::copy_n(package.m_pNormals + 3 * nFrom, 3, package.m_pNormals + 3 * nTo);
  if (package.m_pTexCoords[0] != nullptr)
    std::copy_n(package.m_pTexCoords[0] + 2 * nFrom, 2, package.m_pTexCoords[0] + 2 * nTo);
  if (package.m_pColors != nullptr) package.m_pColors[nTo] = package.m_pColors[nFrom];
}

/// Numbers of vertices by what they hold; a place is free at 0 and else has the upper half of a hash and the number
/// plus 1, so that most other vertices are told apart without being looked at.
class Table {
public:
  explicit Table(std::size_t nVertices) : m_vecPlaces(std::bit_ceil(2 * nVertices + 1)) {}

  /// The vertex of the package that is equal, or nNew, which then is entered.
  unsigned int FindOrAdd(QXC::QXVertexDataPackage const& package, Words const& words, unsigned int nNew) {
    std::uint64_t const nHash = Hash(words);
    std::size_t const nMask = m_vecPlaces.size() - 1;
    for (std::size_t i = static_cast<std::size_t>(nHash) & nMask;; i = (i + 1) & nMask) {
      std::uint64_t const nPlace = m_vecPlaces[i];
      if (nPlace == 0) {
        m_vecPlaces[i] = nHash << 32 | (nNew + std::uint64_t{1});
        return nNew;
      }
      auto const nVertex = static_cast<unsigned int>(nPlace - 1);
      if (nPlace >> 32 == nHash && Gather(package, nVertex) == words) return nVertex;
    }
  }

private:
  std::vector<std::uint64_t> m_vecPlaces;
};

}  // namespace

void JoinVertices(QXC::QXVertexDataPackage& package, std::vector<unsigned int>& vecCorners) {
  unsigned int const nVertices = package.m_nVertexNum;
  Table table(nVertices);
  std::vector<unsigned int> vecNumbers(nVertices);
  unsigned int nKept = 0;
  for (unsigned int i = 0; i < nVertices; ++i) {
    vecNumbers[i] = table.FindOrAdd(package, Gather(package, i), nKept);
    if (vecNumbers[i] != nKept) continue;
    if (i != nKept) Move(package, i, nKept);
    ++nKept;
  }
  package.m_nVertexNum = nKept;
  if (package.m_pNormals != nullptr) package.m_nNormalNum = nKept;
  if (package.m_pTexCoords[0] != nullptr) package.m_nTexCoordNums[0] = nKept;
  if (package.m_pColors != nullptr) package.m_nColorNum = nKept;
  for (unsigned int& nCorner : vecCorners) nCorner = vecNumbers[nCorner];
}

}  // namespace QXAssimp
