#include <plugins/assimp/QXNormalBuilder.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace QXAssimp {
namespace {

/// Two squares that share an edge along y, the second one folded up by an angle.
struct Fold {
  explicit Fold(double dAngle) {
    float const c = static_cast<float>(std::cos(dAngle));
    float const s = static_cast<float>(std::sin(dAngle));
    m_vecPositions = {-1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, -1.0f, 1.0f, 0.0f, c, 0.0f, s, c, 1.0f, s};
    m_vecCorners = {0, 1, 2, 0, 2, 3, 1, 4, 5, 1, 5, 2};
  }
  std::vector<float> m_vecPositions;
  std::vector<unsigned int> m_vecCorners;
};

constexpr double Degree = std::numbers::pi / 180.0;

TEST(QXNormalBuilder, SharpFoldKeepsBothSidesFlat) {
  Fold fold(40.0 * Degree);
  QXCornerNormals const normals = BuildNormals(fold.m_vecPositions.data(), 6, fold.m_vecCorners);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_FLOAT_EQ(normals.m_vecNormals[3 * i + 2], 1.0f) << i;
  for (std::size_t i = 6; i < 12; ++i) EXPECT_NEAR(normals.m_vecNormals[3 * i + 2], std::cos(40.0 * Degree), 1e-6) << i;
  std::vector<unsigned int> vecSources;
  std::vector<float> vecNormals;
  SplitByNormal(normals, 6, fold.m_vecCorners, vecSources, vecNormals);
  EXPECT_EQ(vecSources.size(), 8u) << "the two vertices of the edge are doubled, no others";
}

TEST(QXNormalBuilder, SoftFoldIsSmoothAcrossItsEdgeAlone) {
  Fold fold(20.0 * Degree);
  QXCornerNormals const normals = BuildNormals(fold.m_vecPositions.data(), 6, fold.m_vecCorners);
  EXPECT_FLOAT_EQ(normals.m_vecNormals[2], 1.0f) << "a corner away from the edge";
  // Vertex 1 lies on the edge: one triangle of the flat side, two of the other.
  EXPECT_LT(normals.m_vecNormals[3 * 1 + 0], -0.1f);
}

TEST(QXNormalBuilder, VerticesDoubledInTheFileAreMetByPosition) {
  Fold fold(20.0 * Degree);
  std::vector<float> vecPositions;
  std::vector<unsigned int> vecCorners;
  for (unsigned int nCorner : fold.m_vecCorners) {
    for (int i = 0; i < 3; ++i) vecPositions.push_back(fold.m_vecPositions[3 * nCorner + static_cast<unsigned int>(i)]);
    vecCorners.push_back(static_cast<unsigned int>(vecCorners.size()));
  }
  EXPECT_EQ(BuildNormals(vecPositions.data(), 12, vecCorners).m_vecNormals,
      BuildNormals(fold.m_vecPositions.data(), 6, fold.m_vecCorners).m_vecNormals);
}

TEST(QXNormalBuilder, TriangleWithoutAnAreaLooksUp) {
  std::vector<float> const vecPositions = {0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 2.0f, 0.0f, 0.0f};
  QXCornerNormals const normals = BuildNormals(vecPositions.data(), 3, {0, 1, 2});
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(normals.m_vecNormals[3 * i + 2], 1.0f);
}

TEST(QXNormalBuilder, HugePositionsGiveNormalsOfLengthOneOrUp) {
  std::vector<float> const vecPositions = {0.0f, 0.0f, 0.0f, 3e38f, 0.0f, 0.0f, 0.0f, 3e38f, 0.0f};
  QXCornerNormals const normals = BuildNormals(vecPositions.data(), 3, {0, 1, 2});
  for (float f : normals.m_vecNormals) EXPECT_TRUE(std::isfinite(f));
}

TEST(QXNormalBuilder, CrowdedPointCostsNotItsSquare) {
  // A fan of 20,000 triangles around one point would be 400 million tests.
  constexpr unsigned int Count = 20000;
  std::vector<float> vecPositions = {0.0f, 0.0f, 0.0f};
  std::vector<unsigned int> vecCorners;
  for (unsigned int i = 0; i < Count; ++i) {
    double const dAngle = 2.0 * std::numbers::pi * i / Count;
    vecPositions.insert(
        vecPositions.end(), {static_cast<float>(std::cos(dAngle)), static_cast<float>(std::sin(dAngle)), 0.0f});
    vecCorners.insert(vecCorners.end(), {0u, 1 + i, 1 + (i + 1) % Count});
  }
  QXCornerNormals const normals = BuildNormals(vecPositions.data(), Count + 1, vecCorners);
  for (std::size_t i = 2; i < normals.m_vecNormals.size(); i += 3) ASSERT_NEAR(normals.m_vecNormals[i], 1.0f, 1e-3f);
}

}  // namespace
}  // namespace QXAssimp
