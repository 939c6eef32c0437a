#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include "QXTestMath.h"

#include <algorithm>
#include <array>

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

TEST(QXBoundingBox, StaysSmallEnoughToStream) {
  EXPECT_EQ(sizeof(QXBoundingBox), 48U);
}

}  // namespace
