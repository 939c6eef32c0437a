#include <QxGraphics3D/frame/foundation/base3d/QXOrientedBoundingBox.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>

#include "QXTestMath.h"

#include <algorithm>
#include <limits>

using namespace QXC;

namespace {

TEST(QXOrientedBoundingBox, IsThePointAtTheOriginWhenDefaultConstructed) {
  QXOrientedBoundingBox const box;
  EXPECT_EQ(box.IntersectPlane(QXPlane({1, 0, 0}, 0)), 1);
  EXPECT_EQ(box.IntersectPlane(QXPlane({1, 0, 0}, -0.001)), 0);
}

TEST(QXOrientedBoundingBox, IsRejectedOnlyOnTheNegativeSide) {
  QXOrientedBoundingBox const box(QXBoundingBox({-1, -1, -1}, {1, 1, 1}), QXMatrix4d::IDENTITY);
  EXPECT_EQ(box.IntersectPlane(QXPlane({1, 0, 0}, -1.001)), 0);  // wholly behind
  EXPECT_EQ(box.IntersectPlane(QXPlane({1, 0, 0}, -1.0)), 1);    // touching from behind
  EXPECT_EQ(box.IntersectPlane(QXPlane({1, 0, 0}, 0.0)), 1);     // cut
  EXPECT_EQ(box.IntersectPlane(QXPlane({1, 0, 0}, 5.0)), 1);     // wholly in front
}

TEST(QXOrientedBoundingBox, FollowsTheRotationOfItsTransformation) {
  QXMatrix4d turn;  // an eighth of a turn about z: the corner of the unit cube reaches sqrt(2) along x
  turn[0][0] = turn[1][1] = 0.7071067811865476;
  turn[0][1] = 0.7071067811865476;
  turn[1][0] = -0.7071067811865476;
  QXOrientedBoundingBox const box(QXBoundingBox({-1, -1, -1}, {1, 1, 1}), turn);
  EXPECT_EQ(box.IntersectPlane(QXPlane({1, 0, 0}, -1.41)), 1);
  EXPECT_EQ(box.IntersectPlane(QXPlane({1, 0, 0}, -1.42)), 0);
  EXPECT_EQ(box.IntersectPlane(QXPlane({0, 0, 1}, -1.01)), 0);
}

TEST(QXOrientedBoundingBox, AgreesWithItsEightCorners) {
  SCOPED_TRACE(QXTest::Random::kSeed);
  QXTest::Random random;
  int nRejected = 0;
  for (int nRound = 0; nRound < 2000; ++nRound) {
    QXBoundingBox const box(random.Vector(5), random.Vector(5));
    QXMatrix4d transform = random.Matrix(2);
    for (int nRow = 0; nRow < 4; ++nRow) transform[nRow][3] = nRow == 3 ? 1.0 : 0.0;
    QXPlane const plane(random.Vector(1), random.Next(-10, 10));
    double dLargest = -std::numeric_limits<double>::infinity();
    for (QXVector3d const& corner : box.GetCorners()) {
      dLargest = std::max(dLargest, plane.GetDistance(corner.MultiplyMatrix(transform)));
    }
    if (std::fabs(dLargest) < 1e-9) continue;
    EXPECT_EQ(QXOrientedBoundingBox(box, transform).IntersectPlane(plane), dLargest < 0.0 ? 0 : 1);
    nRejected += dLargest < 0.0 ? 1 : 0;
  }
  EXPECT_GT(nRejected, 100);
}

}  // namespace
