#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>

#include "QXTestMath.h"

using namespace QXC;

namespace {

TEST(QXPlane, HasZeroNormalAndConstantWhenDefaultConstructed) {
  QXPlane const plane;
  EXPECT_EQ(plane.GetNormal(), QXVector3d::ZERO);
  EXPECT_EQ(plane.GetPlaneDistance(), 0.0);
  EXPECT_EQ(plane.GetDistance({5, 6, 7}), 0.0);
}

TEST(QXPlane, AddsItsConstantToTheDotProduct) {
  QXPlane const plane({0, 0, 2}, 10);
  EXPECT_EQ(plane.GetNormal(), QXVector3d(0, 0, 2));
  EXPECT_EQ(plane.GetPlaneDistance(), 10.0);
  EXPECT_EQ(plane.GetDistance({100, 100, -4}), 2.0);
  EXPECT_EQ(plane.GetDistance({100, 100, -5}), 0.0);
  EXPECT_EQ(plane.GetDistance({100, 100, -6}), -2.0);
}

TEST(QXPlane, AddsUpInTheOrderXYZConstant) {
  // Any other order loses the small term: (1e17 - 1e17) + 1 + 0.5.
  EXPECT_EQ(QXPlane({1e17, -1e17, 1}, 0.5).GetDistance({1, 1, 1}), 1.5);
  EXPECT_EQ(QXPlane({1, 1e17, -1e17}, 0.5).GetDistance({1, 1, 1}), 0.5);
}

TEST(QXPlane, NormalizesNormalAndConstant) {
  QXPlane plane({0, 3, 4}, 10);
  EXPECT_EQ(plane.Normalize(), 5.0);
  QXTest::ExpectNear(plane.GetNormal(), {0, 0.6, 0.8}, 1e-15);
  EXPECT_EQ(plane.GetPlaneDistance(), 2.0);
}

TEST(QXPlane, StaysAsItIsWithoutANormal) {
  QXPlane plane(QXVector3d::ZERO, 3);
  EXPECT_EQ(plane.Normalize(), 0.0);
  EXPECT_EQ(plane.GetNormal(), QXVector3d::ZERO);
  EXPECT_EQ(plane.GetPlaneDistance(), 3.0);
}

}  // namespace
