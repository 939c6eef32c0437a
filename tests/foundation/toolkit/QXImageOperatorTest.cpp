#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>

#include <gtest/gtest.h>

#include <vector>

using QXC::QXImageOperator;
using Bytes = std::vector<unsigned char>;

namespace {

TEST(QXImageOperator, ScalesBetweenTheTwoNearestPixels) {
  Bytes source = {0, 255, 100, 55};
  Bytes target(9, 7);
  EXPECT_EQ(QXImageOperator::Scale(2, 2, 1, source.data(), 4, 1, target.data()), 1);
  EXPECT_EQ(target, (Bytes{0, 255, 25, 205, 75, 105, 100, 55, 7}));
}

TEST(QXImageOperator, AveragesWhereAnImageShrinks) {
  Bytes source = {0, 100, 50, 250};
  Bytes target(1);
  EXPECT_EQ(QXImageOperator::Scale(1, 2, 2, source.data(), 1, 1, target.data()), 1);
  EXPECT_EQ(target[0], 100);
}

TEST(QXImageOperator, CopiesTheSameSize) {
  Bytes source = {1, 2, 3, 4, 5, 6, 7, 8};
  Bytes target(8);
  EXPECT_EQ(QXImageOperator::Scale(4, 1, 2, source.data(), 1, 2, target.data()), 1);
  EXPECT_EQ(target, source);
}

TEST(QXImageOperator, RefusesWhatIsNoImage) {
  Bytes source(16, 1);
  Bytes target(16, 2);
  EXPECT_EQ(QXImageOperator::Scale(0, 2, 2, source.data(), 1, 1, target.data()), 0);
  EXPECT_EQ(QXImageOperator::Scale(5, 1, 1, source.data(), 2, 1, target.data()), 0);
  EXPECT_EQ(QXImageOperator::Scale(1, 0, 2, source.data(), 1, 1, target.data()), 0);
  EXPECT_EQ(QXImageOperator::Scale(1, 2, 0, source.data(), 1, 1, target.data()), 0);
  EXPECT_EQ(QXImageOperator::Scale(1, 2, 2, source.data(), 0, 1, target.data()), 0);
  EXPECT_EQ(QXImageOperator::Scale(1, 2, 2, source.data(), 1, 0, target.data()), 0);
  EXPECT_EQ(QXImageOperator::Scale(1, 2, 2, nullptr, 1, 1, target.data()), 0);
  EXPECT_EQ(QXImageOperator::Scale(1, 2, 2, source.data(), 1, 1, nullptr), 0);
  EXPECT_EQ(QXImageOperator::Scale(4, 2, 2, source.data(), 0xFFFFFFFFU, 0xFFFFFFFFU, target.data()), 0);
  EXPECT_EQ(target, Bytes(16, 2));
}

}  // namespace
