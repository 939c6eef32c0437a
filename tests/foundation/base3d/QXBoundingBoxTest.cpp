#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include "QXTestMath.h"

#include <algorithm>
#include <array>
#include <limits>
#include <random>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

using namespace QXC;

namespace {

TEST(QXBoundingBox, IsNullWithZeroCornersWhenDefaultConstructed) {
  QXBoundingBox const box;
  EXPECT_EQ(box.IsNULL(), 1);
  EXPECT_EQ(box.GetMin(), QXVector3d::ZERO);
  EXPECT_EQ(box.GetMax(), QXVector3d::ZERO);
  EXPECT_EQ(box.GetCenter(), QXVector3d::ZERO);
  for (QXVector3d const& corner : box.GetCorners()) EXPECT_EQ(corner, QXVector3d::ZERO);
}

TEST(QXBoundingBox, KeepsItsCornersAndIsNotNull) {
  QXBoundingBox const box({1, 2, 3}, {5, 8, 13});
  EXPECT_EQ(box.IsNULL(), 0);
  EXPECT_EQ(box.GetMin(), QXVector3d(1, 2, 3));
  EXPECT_EQ(box.GetMax(), QXVector3d(5, 8, 13));
  EXPECT_EQ(box.GetCenter(), QXVector3d(3, 5, 8));
}

TEST(QXBoundingBox, BecomesNullBySetNULLAndABoxBySetExtents) {
  QXBoundingBox box({1, 2, 3}, {5, 8, 13});
  box.SetNULL();
  EXPECT_EQ(box.IsNULL(), 1);
  EXPECT_EQ(box.GetMin(), QXVector3d::ZERO);
  EXPECT_EQ(box.GetMax(), QXVector3d::ZERO);
  box.SetExtents({-1, -2, -3}, {1, 2, 3});
  EXPECT_EQ(box.IsNULL(), 0);
  EXPECT_EQ(box.GetMin(), QXVector3d(-1, -2, -3));
  EXPECT_EQ(box.GetMax(), QXVector3d(1, 2, 3));
}

TEST(QXBoundingBox, KeepsAnInvertedMinimumAndMaximum) {
  QXBoundingBox const box({5, 0, 0}, {-5, 1, 1});
  EXPECT_EQ(box.GetMin().x, 5.0);
  EXPECT_EQ(box.GetMax().x, -5.0);
}

TEST(QXBoundingBox, HasEightCornersWithXInTheLowestBit) {
  std::array<QXVector3d, 8> const expected = {QXVector3d(1, 2, 3), QXVector3d(5, 2, 3), QXVector3d(1, 8, 3),
      QXVector3d(5, 8, 3), QXVector3d(1, 2, 13), QXVector3d(5, 2, 13), QXVector3d(1, 8, 13), QXVector3d(5, 8, 13)};
  EXPECT_EQ(QXBoundingBox({1, 2, 3}, {5, 8, 13}).GetCorners(), expected);
}

TEST(QXBoundingBox, MergesToTheOuterBounds) {
  QXBoundingBox box({0, 0, 0}, {10, 10, 10});
  box.Merge(QXBoundingBox({-1, 5, 5}, {5, 20, 6}));
  EXPECT_EQ(box.GetMin(), QXVector3d(-1, 0, 0));
  EXPECT_EQ(box.GetMax(), QXVector3d(10, 20, 10));
}

TEST(QXBoundingBox, MergesNothingFromANullBox) {
  QXBoundingBox box({5, 5, 5}, {6, 6, 6});
  box.Merge(QXBoundingBox());
  EXPECT_EQ(box.GetMin(), QXVector3d(5, 5, 5));
  EXPECT_EQ(box.GetMax(), QXVector3d(6, 6, 6));
}

TEST(QXBoundingBox, CopiesTheOtherWhenMergedIntoANullBox) {
  QXBoundingBox box;
  box.Merge(QXBoundingBox({5, 5, 5}, {6, 6, 6}));
  EXPECT_EQ(box.IsNULL(), 0);
  EXPECT_EQ(box.GetMin(), QXVector3d(5, 5, 5));
  EXPECT_EQ(box.GetMax(), QXVector3d(6, 6, 6));
}

TEST(QXBoundingBox, StaysNullWhenTwoNullBoxesMerge) {
  QXBoundingBox box;
  box.Merge(QXBoundingBox());
  EXPECT_EQ(box.IsNULL(), 1);
}

TEST(QXBoundingBox, PointAtTheOriginIsNoNullBoxHoweverItsZerosAreSigned) {
  for (unsigned int nSigns = 0; nSigns < 64; ++nSigns) {
    auto const zero = [nSigns](unsigned int nBit) { return (nSigns >> nBit & 1U) != 0 ? -0.0 : 0.0; };
    QXVector3d const minimum(zero(0), zero(1), zero(2));
    QXVector3d const maximum(zero(3), zero(4), zero(5));
    EXPECT_EQ(QXBoundingBox(minimum, maximum).IsNULL(), 0) << nSigns;
    QXBoundingBox box;
    box.SetExtents(minimum, maximum);
    EXPECT_EQ(box.IsNULL(), 0) << nSigns;
    box.Merge(QXBoundingBox(maximum, minimum));
    EXPECT_EQ(box.IsNULL(), 0) << nSigns;
    box.Merge(QXBoundingBox());
    EXPECT_EQ(box.IsNULL(), 0) << nSigns;
  }
}

TEST(QXBoundingBox, IsMeasuredFromItsNearestPoint) {
  QXBoundingBox const box({1, 2, 3}, {5, 8, 13});
  EXPECT_EQ(box.GetDistance({3, 3, 3}), 0.0);
  EXPECT_EQ(box.GetDistance({5, 8, 13}), 0.0);
  EXPECT_EQ(box.GetDistance({-1, 4, 4}), 2.0);
  EXPECT_EQ(box.GetDistance({3, 10, 4}), 2.0);
  EXPECT_EQ(box.GetDistance({3, 4, -4}), 7.0);
  EXPECT_EQ(box.GetDistance({-2, 12, 4}), 5.0);
  EXPECT_EQ(box.GetDistance({3, 14, 21}), 10.0);
}

TEST(QXBoundingBox, IsNowhereNearerThanItsMeasuredDistance) {
  std::mt19937 random(20260702);
  auto const number = [&] { return static_cast<double>(random()) / 4294967295.0; };
  for (int i = 0; i < 200; ++i) {
    QXVector3d const minimum(number(), number(), number());
    QXVector3d const size(number(), number(), number());
    QXVector3d const point(4.0 * number() - 1.5, 4.0 * number() - 1.5, 4.0 * number() - 1.5);
    double const dDistance = QXBoundingBox(minimum, minimum + size).GetDistance(point);
    double dNearest = std::numeric_limits<double>::infinity();
    for (int n = 0; n < 21 * 21 * 21; ++n) {
      QXVector3d const part(size.x * (n % 21) / 20.0, size.y * (n / 21 % 21) / 20.0, size.z * (n / 441) / 20.0);
      dNearest = std::min(dNearest, (minimum + part - point).Length());
    }
    EXPECT_LE(dDistance, dNearest + 1e-12) << i;
    EXPECT_GE(dDistance, dNearest - 0.05) << i;
  }
}

TEST(QXBoundingBox, IsInfinitelyFarWhenNull) {
  EXPECT_EQ(QXBoundingBox().GetDistance(QXVector3d::ZERO), std::numeric_limits<double>::infinity());
}

TEST(QXBoundingBox, SpansItsTransformedCorners) {
  QXMatrix4d mat;
  // x to 2y, y to -x, then moved.
  mat[0][0] = 0.0;
  mat[0][1] = 2.0;
  mat[1][0] = -1.0;
  mat[1][1] = 0.0;
  mat.SetTrans({100, 200, 300});
  QXBoundingBox const box = QXBoundingBox({1, 2, 3}, {5, 8, 13}).GetTransformed(mat);
  EXPECT_EQ(box.GetMin(), QXVector3d(92, 202, 303));
  EXPECT_EQ(box.GetMax(), QXVector3d(98, 210, 313));
  EXPECT_EQ(QXBoundingBox().GetTransformed(mat).IsNULL(), 1);
}

TEST(QXBoundingBox, StaysSmallEnoughToStream) {
  EXPECT_EQ(sizeof(QXBoundingBox), 48U);
}

}  // namespace
