#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include "QXTestMath.h"

#include <limits>

using namespace QXC;

namespace {

TEST(QXBoundingSphere, IsInvalidWhenDefaultConstructed) {
  QXBoundingSphere sphere;
  EXPECT_EQ(sphere.valid(), 0);
  EXPECT_EQ(sphere.GetCenter(), QXVector3d::ZERO);
}

TEST(QXBoundingSphere, RunsThroughTheCornersOfABox) {
  QXBoundingSphere sphere(QXBoundingBox({1, 1, 1}, {3, 4, 7}));
  EXPECT_EQ(sphere.valid(), 1);
  EXPECT_EQ(sphere.GetCenter(), QXVector3d(2, 2.5, 4));
  EXPECT_EQ(sphere.GetRadius(), 3.5);
}

TEST(QXBoundingSphere, IsInvalidForANullBox) {
  EXPECT_EQ(QXBoundingSphere(QXBoundingBox()).valid(), 0);
}

TEST(QXBoundingSphere, IsAValidPointForABoxOfOnePoint) {
  QXBoundingSphere const sphere(QXBoundingBox({1, 2, 3}, {1, 2, 3}));
  EXPECT_EQ(sphere.valid(), 1);
  EXPECT_EQ(sphere.GetRadius(), 0.0);
}

TEST(QXBoundingSphere, IsValidFromRadiusZeroUpwards) {
  QXBoundingSphere sphere;
  sphere.SetRadius(0.0);
  EXPECT_EQ(sphere.valid(), 1);
  sphere.SetRadius(-0.001);
  EXPECT_EQ(sphere.valid(), 0);
  sphere.SetRadius(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(sphere.valid(), 0);
}

TEST(QXBoundingSphere, StoresCentreAndRadius) {
  QXBoundingSphere sphere;
  sphere.SetCenter({1, 2, 3});
  sphere.SetRadius(4.0);
  sphere.GetCenter().x = 9.0;  // the centre is handed out for writing
  EXPECT_EQ(sphere.GetCenter(), QXVector3d(9, 2, 3));
  EXPECT_EQ(sphere.GetRadius(), 4.0);
}

}  // namespace
