#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

// Runs before main and perhaps before the library's own files: only a constant is there by then.
QXColorValue3D const earlyWhite = QXColorValue3D::White;

TEST(QXColorValue3D, DefaultIsAllZero) {
  QXColorValue3D const color;
  EXPECT_EQ(color.r, 0.0);
  EXPECT_EQ(color.g, 0.0);
  EXPECT_EQ(color.b, 0.0);
  EXPECT_EQ(color.a, 0.0);
}

TEST(QXColorValue3D, ConstantsAreOpaqueWhiteAndBlack) {
  EXPECT_TRUE(QXColorValue3D::White == QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_TRUE(QXColorValue3D::Black == QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  EXPECT_TRUE(earlyWhite == QXColorValue3D::White);
}

TEST(QXColorValue3D, KeepsItsComponentsInOrderAndUnclamped) {
  QXColorValue3D color(0.25, -1.0, 2.0, 0.5);
  EXPECT_EQ(color.r, 0.25);
  EXPECT_EQ(color.g, -1.0);
  EXPECT_EQ(color.b, 2.0);
  EXPECT_EQ(color.a, 0.5);
  color.SetValue(1.5, 2.5, 3.5, 4.5);
  EXPECT_TRUE(color == QXColorValue3D(1.5, 2.5, 3.5, 4.5));
  EXPECT_FALSE(color == QXColorValue3D(1.5, 2.5, 3.5, 4.0));
}

}  // namespace
}  // namespace QXC
