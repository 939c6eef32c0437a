#include <plugins/assimp/QXVertexJoiner.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <random>
#include <string>

namespace QXAssimp {
namespace {

using QXC::QXVertexDataPackage;

/// Position, normal, coordinates, colour of a vertex.
using Vertex = std::array<float, 9>;

Vertex At(QXVertexDataPackage const& package, std::size_t i) {
  Vertex vertex = {};
  std::copy_n(package.m_pVertices + 3 * i, 3, vertex.begin());
  if (package.m_pNormals != nullptr) std::copy_n(package.m_pNormals + 3 * i, 3, vertex.begin() + 3);
  if (package.m_pTexCoords[0] != nullptr) std::copy_n(package.m_pTexCoords[0] + 2 * i, 2, vertex.begin() + 6);
  if (package.m_pColors != nullptr) vertex[8] = static_cast<float>(package.m_pColors[i]);
  return vertex;
}

/// So many vertices at the origin.
void Fill(QXVertexDataPackage& package, unsigned int nCount) {
  package.SetVertexNum(nCount, 0);
  package.SetNormalNum(nCount, 0);
  package.SetTexCoordNum(0, nCount, 0);
  package.SetColorNum(nCount, 0);
}

TEST(QXVertexJoiner, EqualVerticesBecomeTheFirstOfThem) {
  QXVertexDataPackage package;
  Fill(package, 4);
  package.m_pVertices[3 * 1] = 5.0F;
  package.m_pVertices[3 * 3] = 5.0F;
  std::vector<unsigned int> vecCorners = {3, 2, 1, 0, 1, 2};
  JoinVertices(package, vecCorners);
  EXPECT_EQ(package.m_nVertexNum, 2U);
  EXPECT_EQ(package.m_nNormalNum, 2U);
  EXPECT_EQ(package.m_nTexCoordNums[0], 2U);
  EXPECT_EQ(package.m_nColorNum, 2U);
  EXPECT_EQ(package.m_pVertices[3], 5.0F);
  EXPECT_EQ(vecCorners, (std::vector<unsigned int>{1, 0, 1, 0, 1, 0}));
}

TEST(QXVertexJoiner, AnyDifferenceKeepsVerticesApart) {
  QXVertexDataPackage package;
  Fill(package, 10);
  for (std::size_t i = 0; i < 3; ++i) package.m_pVertices[3 * (1 + i) + i] = 1.0F;
  for (std::size_t i = 0; i < 3; ++i) package.m_pNormals[3 * (4 + i) + i] = 1.0F;
  for (std::size_t i = 0; i < 2; ++i) package.m_pTexCoords[0][2 * (7 + i) + i] = 1.0F;
  package.m_pColors[9] = 1;
  std::vector<unsigned int> vecCorners;
  JoinVertices(package, vecCorners);
  EXPECT_EQ(package.m_nVertexNum, 10U);
}

TEST(QXVertexJoiner, ZerosAreEqualWhateverTheirSign) {
  QXVertexDataPackage package;
  Fill(package, 2);
  for (std::size_t i = 3; i < 6; ++i) package.m_pVertices[i] = package.m_pNormals[i] = -0.0F;
  package.m_pTexCoords[0][2] = -0.0F;
  std::vector<unsigned int> vecCorners = {0, 1};
  JoinVertices(package, vecCorners);
  EXPECT_EQ(package.m_nVertexNum, 1U);
  EXPECT_EQ(vecCorners, (std::vector<unsigned int>{0, 0}));
}

TEST(QXVertexJoiner, ColoursAreComparedByTheirBits) {
  QXVertexDataPackage package;
  Fill(package, 2);
  // As a float this would be a zero.
  package.m_pColors[1] = 0x80000000U;
  std::vector<unsigned int> vecCorners;
  JoinVertices(package, vecCorners);
  EXPECT_EQ(package.m_nVertexNum, 2U);
}

TEST(QXVertexJoiner, NothingIsNothing) {
  QXVertexDataPackage package;
  std::vector<unsigned int> vecCorners;
  JoinVertices(package, vecCorners);
  EXPECT_EQ(package.m_nVertexNum, 0U);
}

/// Beside a dictionary of whole vertices, for all kinds of meshes.
TEST(QXVertexJoiner, AgreesWithADictionary) {
  constexpr unsigned int Seed = 20261122;
  SCOPED_TRACE("seed " + std::to_string(Seed));
  std::mt19937 random(Seed);
  for (int nRun = 0; nRun < 200; ++nRun) {
    auto const nCount = static_cast<unsigned int>(random() % 300);
    QXVertexDataPackage package;
    package.SetVertexNum(nCount, 0);
    if (nRun % 2 == 0 && nCount > 0) package.SetNormalNum(nCount, 0);
    if (nRun % 3 == 0) package.SetTexCoordNum(0, nCount, 0);
    if (nRun % 5 == 0) package.SetColorNum(nCount, 0);
    auto const small = [&random] { return static_cast<float>(random() % 3); };
    for (unsigned int i = 0; i < nCount; ++i) {
      std::generate_n(package.m_pVertices + 3 * i, 3, small);
      if (package.m_pNormals != nullptr) package.m_pNormals[3 * i] = small();
      if (package.m_pTexCoords[0] != nullptr) package.m_pTexCoords[0][2 * i + 1] = small();
      if (package.m_pColors != nullptr) package.m_pColors[i] = static_cast<unsigned int>(random() % 2);
    }
    std::map<Vertex, unsigned int> mapFirst;
    std::vector<Vertex> vecExpected;
    std::vector<unsigned int> vecNumbers;
    std::vector<unsigned int> vecCorners;
    for (unsigned int i = 0; i < nCount; ++i) {
      auto const [itFound, bNew] = mapFirst.try_emplace(At(package, i), static_cast<unsigned int>(vecExpected.size()));
      if (bNew) vecExpected.push_back(itFound->first);
      vecNumbers.push_back(itFound->second);
      vecCorners.push_back(i);
    }
    JoinVertices(package, vecCorners);
    EXPECT_EQ(vecCorners, vecNumbers) << nRun;
    ASSERT_EQ(package.m_nVertexNum, vecExpected.size()) << nRun;
    for (std::size_t i = 0; i < vecExpected.size(); ++i) ASSERT_EQ(At(package, i), vecExpected[i]) << nRun << ", " << i;
  }
}

}  // namespace
}  // namespace QXAssimp
