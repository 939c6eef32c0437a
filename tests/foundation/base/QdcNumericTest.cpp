#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace QXC {
namespace {

constexpr double dInfinity = std::numeric_limits<double>::infinity();
constexpr double dNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int nMost = std::numeric_limits<int>::max();
constexpr int nLeast = std::numeric_limits<int>::min();

TEST(QdcNumeric, EqualHoldsWithinOneTenBillionth) {
  EXPECT_EQ(qdcequal(1.0, 1.0), 1);
  EXPECT_EQ(qdcequal(0.0, 1e-10), 1);
  EXPECT_EQ(qdcequal(1e-10, 0.0), 1);
  EXPECT_EQ(qdcequal(0.0, 1.1e-10), 0);
  EXPECT_EQ(qdcequal(1.1e-10, 0.0), 0);
  EXPECT_EQ(qdcequal(0.0, -0.0), 1);
}

TEST(QdcNumeric, EqualTakesInfinitiesAndNaN) {
  EXPECT_EQ(qdcequal(dInfinity, dInfinity), 1);
  EXPECT_EQ(qdcequal(dInfinity, -dInfinity), 0);
  EXPECT_EQ(qdcequal(dInfinity, 1.0), 0);
  EXPECT_EQ(qdcequal(dNaN, dNaN), 0);
}

TEST(QdcNumeric, BigEndianTellsTheByteOrderOfThisMachine) {
  std::uint32_t const word = 1;
  unsigned char bytes[4];
  std::memcpy(bytes, &word, sizeof word);
  EXPECT_EQ(qdcbigendian(), bytes[3]);
}

struct ToIntCase {
  double m_dValue;
  int m_nExpected;
};

TEST(QdcNumeric, ToIntTruncatesInRangeAndSaturatesOutside) {
  ToIntCase const arrCases[] = {
      {0.0, 0},
      {0.999, 0},
      {-0.999, 0},
      {2.5, 2},
      {-2.5, -2},
      {2147483646.9, 2147483646},
      {2147483647.0, nMost},
      {2147483647.9, nMost},
      {2147483648.0, nMost},
      {-2147483647.9, -2147483647},
      {-2147483648.0, nLeast},
      {-2147483648.9, nLeast},
      {-2147483649.0, nLeast},
      {1e300, nMost},
      {-1e300, nLeast},
      {dInfinity, nMost},
      {-dInfinity, nLeast},
      {dNaN, 0},
  };
  for (ToIntCase const& entry : arrCases) EXPECT_EQ(ToInt(entry.m_dValue), entry.m_nExpected) << entry.m_dValue;
}

}  // namespace
}  // namespace QXC
