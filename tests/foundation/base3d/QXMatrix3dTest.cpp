#include <QxGraphics3D/frame/foundation/base3d/QXMatrix3d.h>

#include "QXTestMath.h"

using namespace QXC;

namespace {

TEST(QXMatrix3d, IsTheIdentityWhenDefaultConstructed) {
  EXPECT_EQ(QXMatrix3d() * QXVector3d(1, 2, 3), QXVector3d(1, 2, 3));
}

TEST(QXMatrix3d, PutsAxesIntoRows) {
  QXMatrix3d matrix;
  matrix.FromAxes({1, 2, 3}, {4, 5, 6}, {7, 8, 9});
  for (int nRow = 0; nRow < 3; ++nRow) {
    for (int nColumn = 0; nColumn < 3; ++nColumn) EXPECT_EQ(matrix[nRow][nColumn], 3 * nRow + nColumn + 1);
  }
}

TEST(QXMatrix3d, SwapsRowsAndColumnsWhenTransposed) {
  QXMatrix3d matrix;
  matrix.FromAxes({1, 2, 3}, {4, 5, 6}, {7, 8, 9});
  QXMatrix3d const transposed = matrix.Transpose();
  for (int nRow = 0; nRow < 3; ++nRow) {
    for (int nColumn = 0; nColumn < 3; ++nColumn) EXPECT_EQ(transposed[nRow][nColumn], matrix[nColumn][nRow]);
  }
}

TEST(QXMatrix3d, MultipliesARowVectorFromTheLeft) {
  QXMatrix3d matrix;
  matrix.FromAxes({1, 2, 3}, {4, 5, 6}, {7, 8, 9});
  EXPECT_EQ(matrix * QXVector3d(1, 10, 100), QXVector3d(741, 852, 963));
}

}  // namespace
