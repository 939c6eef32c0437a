// Every instruction set that this machine has, against the operations of the vectors and matrices.
#include <QxGraphics3D/staticgeometry/detail/QXMergeKernels.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC::detail {
namespace {

constexpr std::size_t kLengths[] = {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 32, 33, 100, 257};

using Random = std::mt19937;

QXMatrix4d AnyMatrix(Random& random) {
  std::uniform_real_distribution<double> number(-2.0, 2.0);
  QXMatrix4d matrix;
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) matrix[nRow][nColumn] = number(random);
  }
  return matrix;
}

std::vector<float> AnyFloats(Random& random, std::size_t nNum) {
  static constexpr float kOdd[] = {
      -0.0F, 1e-45F, 3e38F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()};
  std::uniform_real_distribution<float> number(-1000.0F, 1000.0F);
  std::vector<float> floats(nNum);
  for (float& fValue : floats) fValue = random() % 40 == 0 ? kOdd[random() % 5] : number(random);
  // A zero vector among the first ones.
  for (std::size_t i = 3; i < 6 && i < nNum; ++i) floats[i] = 0.0F;
  return floats;
}

void ExpectSameBits(std::vector<float> const& found, std::vector<float> const& expected, char const* szWhat) {
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (std::isnan(found[i]) && std::isnan(expected[i])) continue;
    ASSERT_EQ(std::memcmp(&found[i], &expected[i], sizeof(float)), 0)
        << szWhat << ", number " << i << " of " << found.size() << ": " << found[i] << " for " << expected[i];
  }
}

template <class Check>
void ForEachSet(Check check) {
  for (QXMergeKernels const& kernels : GetMergeKernels()) {
    if (!kernels.m_pfnIsSupported()) continue;
    Random random(7);
    for (std::size_t const num : kLengths) {
      SCOPED_TRACE(kernels.m_szName);
      ASSERT_NO_FATAL_FAILURE(check(kernels, random, num));
    }
  }
}

TEST(QXMergeKernels, FirstSetRunsEverywhereAndTheBestIsOneOfThem) {
  EXPECT_STREQ(GetMergeKernels().front().m_szName, "plain");
  EXPECT_EQ(GetMergeKernels().front().m_pfnIsSupported(), 1);
  EXPECT_EQ(GetBestMergeKernels().m_pfnIsSupported(), 1);
}

TEST(QXMergeKernels, PointsAndNormalsAreThoseOfTheVectors) {
  ForEachSet([](QXMergeKernels const& kernels, Random& random, std::size_t nNum) {
    QXMatrix4d const matrix = AnyMatrix(random);
    std::vector<float> const source = AnyFloats(random, 3 * nNum);
    std::vector<float> points(3 * nNum);
    std::vector<float> normals(3 * nNum);
    std::vector<float> found(3 * nNum);
    for (std::size_t i = 0; i < nNum; ++i) {
      QXVector3d point = QXVector3d(source[3 * i], source[3 * i + 1], source[3 * i + 2]).MultiplyMatrix(matrix);
      for (auto* pTarget : {&points, &normals}) {
        (*pTarget)[3 * i] = static_cast<float>(point.x);
        (*pTarget)[3 * i + 1] = static_cast<float>(point.y);
        (*pTarget)[3 * i + 2] = static_cast<float>(point.z);
        point.Normalize();
      }
    }
    kernels.m_pfnTransformPoints(
        QXPointTransform(matrix), source.data(), found.data(), nNum, {source.data(), source.data()});
    ExpectSameBits(found, points, "points");
    kernels.m_pfnTransformNormals(
        QXPointTransform(matrix), source.data(), found.data(), nNum, {source.data(), source.data()});
    ExpectSameBits(found, normals, "normals");
  });
}

TEST(QXMergeKernels, ZeroVectorsStayZeroAsNormals) {
  ForEachSet([](QXMergeKernels const& kernels, Random&, std::size_t nNum) {
    QXMatrix4d matrix;
    std::vector<float> const source(3 * nNum, 0.0F);
    std::vector<float> found(3 * nNum, 5.0F);
    kernels.m_pfnTransformNormals(
        QXPointTransform(matrix), source.data(), found.data(), nNum, {source.data(), source.data()});
    ExpectSameBits(found, source, "normals");
  });
}

TEST(QXMergeKernels, OnlyTouchedPairsAreTransformed) {
  ForEachSet([](QXMergeKernels const& kernels, Random& random, std::size_t nNum) {
    QXMatrix4d const matrix = AnyMatrix(random);
    std::vector<float> found = AnyFloats(random, 2 * nNum);
    std::vector<float> expected = found;
    std::vector<unsigned char> touched(nNum);
    bool const bMostly = random() % 2 == 0;
    for (std::size_t i = 0; i < nNum; ++i) {
      touched[i] = (random() % 8 == 0) != bMostly ? 1 : 0;
      if (!touched[i]) continue;
      QXVector3d const pair = QXVector3d(found[2 * i], found[2 * i + 1], 1.0).MultiplyMatrix(matrix);
      expected[2 * i] = static_cast<float>(pair.x);
      expected[2 * i + 1] = static_cast<float>(pair.y);
    }
    kernels.m_pfnTransformPairs(QXCoordTransform(matrix), found.data(), touched.data(), nNum);
    ExpectSameBits(found, expected, "pairs");
  });
}

template <class T>
void CheckShift(QXIndexRange (*pfnShift)(T, T const*, T*, std::size_t), Random& random, std::size_t nNum) {
  T const nStart = static_cast<T>(random());
  std::vector<T> source(nNum);
  for (T& nIndex : source) nIndex = static_cast<T>(random() % 3 == 0 ? random() : random() % 100);
  std::vector<T> found(nNum);
  QXIndexRange const range = pfnShift(nStart, source.data(), found.data(), nNum);
  QXIndexRange expected;
  for (std::size_t i = 0; i < nNum; ++i) {
    ASSERT_EQ(found[i], static_cast<T>(source[i] + nStart)) << i;
    expected.Add(found[i]);
  }
  EXPECT_EQ(range.m_nFirst, expected.m_nFirst);
  EXPECT_EQ(range.m_nLast, expected.m_nLast);
}

TEST(QXMergeKernels, IndicesAreShiftedAndTheirRangeTold) {
  ForEachSet([](QXMergeKernels const& kernels, Random& random, std::size_t nNum) {
    for (int nRound = 0; nRound < 20; ++nRound) {
      CheckShift<std::uint16_t>(kernels.m_pfnShift16, random, nNum);
      CheckShift<std::uint32_t>(kernels.m_pfnShift32, random, nNum);
    }
  });
}

TEST(QXMergeKernels, StreamsCopyToAnyAddress) {
  ForEachSet([](QXMergeKernels const& kernels, Random& random, std::size_t nNum) {
    for (std::size_t offset = 0; offset < 70; offset += 3) {
      std::vector<unsigned char> source(4 * nNum);
      for (unsigned char& nByte : source) nByte = static_cast<unsigned char>(random());
      std::vector<unsigned char> target(4 * nNum + 200, 9);
      kernels.m_pfnStream(target.data() + offset, source.data(), source.size(), source.data());
      kernels.m_pfnFinishStreams();
      std::vector<unsigned char> expected(4 * nNum + 200, 9);
      std::copy(source.begin(), source.end(), expected.begin() + static_cast<std::ptrdiff_t>(offset));
      ASSERT_EQ(target, expected) << "offset " << offset;
    }
  });
}

}  // namespace
}  // namespace QXC::detail
