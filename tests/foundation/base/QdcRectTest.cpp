#include <QxGraphics3D/frame/foundation/base/QdcRect.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QdcRect, DefaultsToZerosAndKeepsItsSides) {
  EXPECT_TRUE(QdcRect() == QdcRect(0, 0, 0, 0));
  QdcRect const pixels(1, 2, 3, 4);
  EXPECT_EQ(pixels.left, 1);
  EXPECT_EQ(pixels.top, 2);
  EXPECT_EQ(pixels.right, 3);
  EXPECT_EQ(pixels.bottom, 4);
  EXPECT_TRUE(QdcRect2D() == QdcRect2D(0.0, 0.0, 0.0, 0.0));
  QdcRect2D const plane(1.5, 2.5, 3.5, 4.5);
  EXPECT_EQ(plane.left, 1.5);
  EXPECT_EQ(plane.top, 2.5);
  EXPECT_EQ(plane.right, 3.5);
  EXPECT_EQ(plane.bottom, 4.5);
}

struct PointCase {
  QdcPoint m_Point;
  unsigned char m_bInside;
};

TEST(QdcRect, HoldsItsLeftAndTopEdgeAndNotItsRightAndBottom) {
  QdcRect const rect(10, 20, 30, 40);
  PointCase const arrCases[] = {
      {{10, 20}, 1},
      {{29, 39}, 1},
      {{15, 25}, 1},
      {{30, 25}, 0},
      {{15, 40}, 0},
      {{9, 25}, 0},
      {{15, 19}, 0},
      {{30, 40}, 0},
  };
  for (PointCase const& entry : arrCases) {
    EXPECT_EQ(rect.PtInRect(entry.m_Point), entry.m_bInside) << entry.m_Point.x << " " << entry.m_Point.y;
  }
}

TEST(QdcRect, NeighboursNeverBothHoldThePointOfTheirSharedEdge) {
  QdcRect const first(0, 0, 10, 10);
  QdcRect const second(10, 0, 20, 10);
  for (int x = 0; x < 20; ++x) EXPECT_EQ(first.PtInRect({x, 5}) + second.PtInRect({x, 5}), 1) << x;
}

TEST(QdcRect, EmptyAndTurnedRectanglesHoldNothing) {
  EXPECT_EQ(QdcRect(5, 5, 5, 5).PtInRect({5, 5}), 0);
  EXPECT_EQ(QdcRect(9, 9, 0, 0).PtInRect({5, 5}), 0);
}

}  // namespace
}  // namespace QXC
