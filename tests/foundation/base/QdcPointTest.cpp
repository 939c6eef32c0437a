#include <QxGraphics3D/frame/foundation/base/QdcPoint.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QdcPoint, DefaultsToTheOrigin) {
  EXPECT_TRUE(QdcPoint() == QdcPoint(0, 0));
  EXPECT_TRUE(QdcPoint2D() == QdcPoint2D(0.0, 0.0));
  EXPECT_TRUE(QdcPoint3D() == QdcPoint3D(0.0, 0.0, 0.0));
}

TEST(QdcPoint, KeepsItsCoordinatesInOrder) {
  QdcPoint const pixel(1, 2);
  EXPECT_EQ(pixel.x, 1);
  EXPECT_EQ(pixel.y, 2);
  QdcPoint2D const plane(1.5, 2.5);
  EXPECT_EQ(plane.x, 1.5);
  EXPECT_EQ(plane.y, 2.5);
  QdcPoint3D const space(1.5, 2.5, 3.5);
  EXPECT_EQ(space.x, 1.5);
  EXPECT_EQ(space.y, 2.5);
  EXPECT_EQ(space.z, 3.5);
}

}  // namespace
}  // namespace QXC
