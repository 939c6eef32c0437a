#include <plugins/assimp/QXPolygonCutter.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numeric>
#include <random>

namespace QXAssimp {
namespace {

std::vector<unsigned int> Cut(std::vector<float> const& vecPositions) {
  std::vector<unsigned int> vecIndices(vecPositions.size() / 3);
  std::iota(vecIndices.begin(), vecIndices.end(), 0u);
  std::vector<unsigned int> vecCorners;
  CutPolygon(vecPositions.data(), vecIndices.data(), static_cast<unsigned int>(vecIndices.size()), vecCorners);
  return vecCorners;
}

double AreaOf(std::vector<float> const& p, unsigned int a, unsigned int b, unsigned int c) {
  auto const at = [&](unsigned int i, unsigned int n) { return static_cast<double>(p[3 * i + n]); };
  return 0.5 * ((at(b, 0) - at(a, 0)) * (at(c, 1) - at(a, 1)) - (at(b, 1) - at(a, 1)) * (at(c, 0) - at(a, 0)));
}

/// Sum of the signed areas, and whether all run the same way: then the pieces neither overlap nor stick out.
double CheckPieces(std::vector<float> const& vecPositions, std::vector<unsigned int> const& vecCorners) {
  double dSum = 0.0;
  for (std::size_t i = 0; i < vecCorners.size(); i += 3) {
    double const dArea = AreaOf(vecPositions, vecCorners[i], vecCorners[i + 1], vecCorners[i + 2]);
    EXPECT_GE(dArea, -1e-6);
    dSum += dArea;
  }
  return dSum;
}

TEST(QXPolygonCutter, LessThanATriangleGivesNothing) {
  EXPECT_TRUE(Cut({0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f}).empty());
}

TEST(QXPolygonCutter, TriangleStaysAsItIs) {
  EXPECT_EQ(Cut({0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f}), (std::vector<unsigned int>{0, 1, 2}));
}

TEST(QXPolygonCutter, ConvexPolygonBecomesAFan) {
  EXPECT_EQ(Cut({0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 1.0f, 1.0f, 0.0f, 0.0f, 1.0f, 0.0f}),
      (std::vector<unsigned int>{0, 1, 2, 0, 2, 3}));
}

TEST(QXPolygonCutter, NotchIsNotFilled) {
  // 3-----------2
  //  \    4    /     the notch at 4 reaches down below the middle
  //   \  / \  /
  //    0     1       (0 and 1 are the lower corners of an M)
  std::vector<float> const vecPositions = {
      0.0f, 0.0f, 0.0f, 2.0f, 1.5f, 0.0f, 4.0f, 0.0f, 0.0f, 4.0f, 4.0f, 0.0f, 0.0f, 4.0f, 0.0f};
  std::vector<unsigned int> const vecCorners = Cut(vecPositions);
  ASSERT_EQ(vecCorners.size(), 9u);
  EXPECT_NEAR(CheckPieces(vecPositions, vecCorners), 16.0 - 3.0, 1e-6);
}

TEST(QXPolygonCutter, UprightPolygonIsCutOnItsOwnPlane) {
  // The M above, standing in the plane of x and z.
  std::vector<float> const vecPositions = {
      0.0f, 7.0f, 0.0f, 2.0f, 7.0f, 1.5f, 4.0f, 7.0f, 0.0f, 4.0f, 7.0f, 4.0f, 0.0f, 7.0f, 4.0f};
  std::vector<unsigned int> const vecCorners = Cut(vecPositions);
  std::vector<float> vecFlat;
  for (std::size_t i = 0; i < vecPositions.size(); i += 3)
    vecFlat.insert(vecFlat.end(), {vecPositions[i], vecPositions[i + 2], 0.0f});
  ASSERT_EQ(vecCorners.size(), 9u);
  EXPECT_NEAR(CheckPieces(vecFlat, vecCorners), 13.0, 1e-6);
}

TEST(QXPolygonCutter, RandomStarsKeepTheirArea) {
  unsigned int const nSeed = 20261121;
  std::printf("seed %u\n", nSeed);
  std::mt19937 random(nSeed);
  for (int nRound = 0; nRound < 200; ++nRound) {
    unsigned int const nCount = 4 + static_cast<unsigned int>(random() % 30);
    std::vector<float> vecPositions;
    for (unsigned int i = 0; i < nCount; ++i) {
      double const dRadius = 0.2 + static_cast<double>(random() % 1000) / 1000.0;
      double const dAngle = 6.283185307179586 * i / nCount;
      vecPositions.insert(vecPositions.end(),
          {static_cast<float>(dRadius * std::cos(dAngle)), static_cast<float>(dRadius * std::sin(dAngle)), 0.0f});
    }
    double dArea = 0.0;  // the shoelace sum, the slow obvious reference
    for (unsigned int i = 0; i < nCount; ++i) {
      std::size_t const a = 3 * std::size_t{i};
      std::size_t const b = 3 * std::size_t{(i + 1) % nCount};
      dArea += 0.5 * (static_cast<double>(vecPositions[a]) * static_cast<double>(vecPositions[b + 1]) -
                         static_cast<double>(vecPositions[b]) * static_cast<double>(vecPositions[a + 1]));
    }
    std::vector<unsigned int> const vecCorners = Cut(vecPositions);
    ASSERT_EQ(vecCorners.size(), 3u * (nCount - 2));
    ASSERT_NEAR(CheckPieces(vecPositions, vecCorners), dArea, 1e-5) << nRound;
  }
}

TEST(QXPolygonCutter, CrossedAndFlatPolygonsGiveTheirNumberOfTriangles) {
  EXPECT_EQ(Cut({0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.5f, 3.0f, 0.0f}).size(), 9u);
  EXPECT_EQ(Cut(std::vector<float>(15, 1.0f)).size(), 9u);
}

TEST(QXPolygonCutter, PolygonOfManyCornersIsDoneAtOnce) {
  std::vector<float> vecPositions;
  for (int i = 0; i < 100000; ++i)
    vecPositions.insert(vecPositions.end(), {static_cast<float>(i % 7), static_cast<float>(i), 0.0f});
  EXPECT_EQ(Cut(vecPositions).size(), 3u * 99998u);
}

}  // namespace
}  // namespace QXAssimp
