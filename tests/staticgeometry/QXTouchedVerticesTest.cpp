#include <QxGraphics3D/staticgeometry/detail/QXTouchedVertices.h>

#include <cstdint>
#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>

namespace QXC::detail {
namespace {

using Vertices = std::set<std::uint32_t>;

template <class T>
Vertices Touch(QXTouchedVertices& touched, std::vector<T> const& indices, std::size_t nVertices) {
  QXIndexRange range;
  for (T const nIndex : indices) range.Add(nIndex);
  touched.Begin(range, nVertices, indices.size());
  touched.Add(indices.data(), indices.size(), indices.data());
  Vertices found;
  std::size_t nNext = 0;
  touched.Visit([&](std::size_t nFirst, unsigned char const* pTouched, std::size_t nNum) {
    EXPECT_GE(nFirst, nNext) << "stretches overlap or run backwards";
    nNext = nFirst + nNum;
    EXPECT_LE(nNext, nVertices);
    for (std::size_t i = 0; i < nNum; ++i) {
      EXPECT_LE(pTouched[i], 1);
      if (pTouched[i]) found.insert(static_cast<std::uint32_t>(nFirst + i));
    }
  });
  return found;
}

template <class T>
Vertices Expected(std::vector<T> const& indices, std::size_t nVertices) {
  Vertices expected;
  for (T const nIndex : indices) {
    if (nIndex < nVertices) expected.insert(nIndex);
  }
  return expected;
}

TEST(QXTouchedVertices, EachFormHoldsWhatTheIndicesUse) {
  std::mt19937 random(11);
  QXTouchedVertices touched;
  // Narrow ranges, ranges too wide for bytes, few indices far apart, indices past the vertices.
  struct Case {
    std::uint32_t m_nStart, m_nWidth;
    std::size_t m_nIndices, m_nVertices;
  };
  Case const kCases[] = {{100, 50, 60, 1000}, {7, 200'000, 9'000, 300'000}, {0, 1'000'000, 10, 2'000'000},
      {900, 200, 300, 1000}, {50, 200'000, 9'000, 100'000}, {0, 1'000'000, 10, 500'000}, {2000, 50, 60, 1000},
      {0, 1, 3, 1}, {4294967000U, 200, 30, 1000}};
  for (Case const& test : kCases) {
    for (int nRound = 0; nRound < 20; ++nRound) {
      std::vector<std::uint32_t> indices(test.m_nIndices);
      for (std::uint32_t& nIndex : indices)
        nIndex = test.m_nStart + static_cast<std::uint32_t>(random()) % test.m_nWidth;
      ASSERT_EQ(Touch(touched, indices, test.m_nVertices), Expected(indices, test.m_nVertices))
          << test.m_nStart << ", " << test.m_nWidth;
    }
  }
}

TEST(QXTouchedVertices, HoldsNothingOfTheIndicesBefore) {
  QXTouchedVertices touched;
  std::vector<std::uint16_t> const many = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
  std::vector<std::uint16_t> const few = {1, 5};
  EXPECT_EQ(Touch(touched, many, 100).size(), many.size());
  EXPECT_EQ(Touch(touched, few, 100), (Vertices{1, 5}));
}

TEST(QXTouchedVertices, WholeRangeOf16BitsFitsIntoBytes) {
  QXTouchedVertices touched;
  std::vector<std::uint16_t> all(65536);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint16_t>(i);
  EXPECT_EQ(Touch(touched, all, 65536).size(), 65536u);
  EXPECT_EQ(Touch(touched, all, 65535).size(), 65535u);
}

}  // namespace
}  // namespace QXC::detail
