#include <QxGraphics3D/frame/foundation/base3d/detail/QXResample.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXResampleAxis.h>

#include "QXGuardedBlock.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

using namespace QXC::detail;
using QXTest::GuardedBlock;
using Bytes = std::vector<unsigned char>;

namespace {

constexpr unsigned int kSeed = 20261121;

struct Size {
  std::uint32_t m_nWidth;
  std::uint32_t m_nHeight;
};

struct Tap {
  std::uint32_t m_nPixel;
  double m_dShare;
};

/// What makes up target pixel i of nTo from nFrom, said as it is meant.
std::vector<Tap> GetTaps(std::uint32_t nFrom, std::uint32_t nTo, std::uint32_t i) {
  double const dRatio = static_cast<double>(nFrom) / nTo;
  std::vector<Tap> arrTaps;
  if (nTo >= nFrom) {
    double const dPlace = std::clamp((i + 0.5) * dRatio - 0.5, 0.0, nFrom - 1.0);
    auto const nFirst = static_cast<std::uint32_t>(dPlace);
    arrTaps.push_back({nFirst, 1.0 - (dPlace - nFirst)});
    arrTaps.push_back({std::min(nFirst + 1, nFrom - 1), dPlace - nFirst});
    return arrTaps;
  }
  for (std::uint32_t n = 0; n < nFrom; ++n) {
    double const dCovered = std::min((i + 1) * dRatio, n + 1.0) - std::max(i * dRatio, static_cast<double>(n));
    if (dCovered > 0) arrTaps.push_back({n, dCovered / dRatio});
  }
  return arrTaps;
}

struct Image {
  Bytes m_arrBytes;
  unsigned int m_nBytesPerPixel;
  Size m_Size;

  double Get(std::uint32_t x, std::uint32_t y, unsigned int nByte) const {
    return m_arrBytes[(std::size_t{y} * m_Size.m_nWidth + x) * m_nBytesPerPixel + nByte];
  }
};

double GetExact(
    Image const& source, unsigned int nByte, std::vector<Tap> const& columns, std::vector<Tap> const& rows) {
  double dSum = 0;
  for (Tap const& row : rows) {
    for (Tap const& column : columns) {
      dSum += source.Get(column.m_nPixel, row.m_nPixel, nByte) * row.m_dShare * column.m_dShare;
    }
  }
  return dSum;
}

Bytes MakeNoise(std::mt19937& engine, std::size_t nBytes) {
  Bytes arrBytes(nBytes);
  // Black and white in part: the differences between neighbours reach both ends.
  for (unsigned char& nByte : arrBytes) {
    unsigned int const nValue = static_cast<unsigned int>(engine());
    nByte = nValue % 4 == 0 ? 0 : nValue % 4 == 1 ? 255 : static_cast<unsigned char>(nValue >> 24);
  }
  return arrBytes;
}

Image MakeImage(std::mt19937& engine, unsigned int nBytesPerPixel, Size size) {
  return {MakeNoise(engine, std::size_t{size.m_nWidth} * size.m_nHeight * nBytesPerPixel), nBytesPerPixel, size};
}

/// Both blocks end at a page that cannot be touched, so that no wide instruction may reach past them.
Image Resample(QXResampleKernels const& kernels, Image const& source, Size to) {
  Bytes const& bytes = source.m_arrBytes;
  GuardedBlock const input(bytes.size(), GuardedBlock::Side::Behind);
  std::copy(bytes.begin(), bytes.end(), input.Get());
  std::size_t const nLength = std::size_t{to.m_nWidth} * to.m_nHeight * source.m_nBytesPerPixel;
  GuardedBlock const output(nLength, GuardedBlock::Side::Behind);
  QXPixelView const view{input.Get(), source.m_Size.m_nWidth, source.m_Size.m_nHeight};
  EXPECT_EQ(ResampleImageWith(kernels, source.m_nBytesPerPixel, view, output.Get(), to.m_nWidth, to.m_nHeight), 1);
  EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), input.Get())) << "the source was written";
  return {Bytes(output.Get(), output.Get() + nLength), source.m_nBytesPerPixel, to};
}

Image Resample(Image const& source, Size to) {
  return Resample(GetResampleKernels().back(), source, to);
}

double GetLargestError(Image const& result, Image const& source) {
  double dLargest = 0;
  std::vector<std::vector<Tap>> arrColumns;
  for (std::uint32_t x = 0; x < result.m_Size.m_nWidth; ++x) {
    arrColumns.push_back(GetTaps(source.m_Size.m_nWidth, result.m_Size.m_nWidth, x));
  }
  for (std::uint32_t y = 0; y < result.m_Size.m_nHeight; ++y) {
    std::vector<Tap> const rows = GetTaps(source.m_Size.m_nHeight, result.m_Size.m_nHeight, y);
    for (std::uint32_t x = 0; x < result.m_Size.m_nWidth; ++x) {
      for (unsigned int n = 0; n < source.m_nBytesPerPixel; ++n) {
        double const dExact = GetExact(source, n, arrColumns[x], rows);
        dLargest = std::max(dLargest, std::abs(dExact - result.Get(x, y, n)));
      }
    }
  }
  return dLargest;
}

template <class Visit>
void ForEachSet(Visit const& visit) {
  for (QXResampleKernels const& kernels : GetResampleKernels()) {
    if (!kernels.m_pfnIsSupported()) continue;
    SCOPED_TRACE(kernels.m_szName);
    visit(kernels);
  }
}

std::uint32_t Pick(std::mt19937& engine, std::uint32_t nLow, std::uint32_t nHigh) {
  return nLow + static_cast<std::uint32_t>(engine()) % (nHigh - nLow + 1);
}

std::uint32_t NextPowerOfTwo(std::uint32_t nValue) {
  std::uint32_t nPower = 1;
  while (nPower < nValue) nPower *= 2;
  return nPower;
}

TEST(QXResample, GrowsToPowersOfTwoWithin51HundredthsOfTheExactValue) {
  ForEachSet([](QXResampleKernels const& kernels) {
    std::mt19937 engine(kSeed);
    for (unsigned int nRound = 0; nRound < 150; ++nRound) {
      Size const from{Pick(engine, 1, 70), Pick(engine, 1, 40)};
      Image const source = MakeImage(engine, 1 + nRound % 4, from);
      std::uint32_t const nTimes = 1U << Pick(engine, 0, 2);
      Size const to{NextPowerOfTwo(from.m_nWidth) * nTimes, NextPowerOfTwo(from.m_nHeight)};
      EXPECT_LE(GetLargestError(Resample(kernels, source, to), source), 0.51)
          << from.m_nWidth << " x " << from.m_nHeight << ", seed " << kSeed;
    }
  });
}

TEST(QXResample, BringsAnySizeToAnyWithin52HundredthsOfTheExactValue) {
  ForEachSet([](QXResampleKernels const& kernels) {
    std::mt19937 engine(kSeed + 1);
    for (unsigned int nRound = 0; nRound < 400; ++nRound) {
      // Either axis may grow, shrink or stay.
      Size const from{Pick(engine, 1, 60), Pick(engine, 1, 30)};
      Size const to{Pick(engine, 1, 90), Pick(engine, 1, 45)};
      Image const source = MakeImage(engine, 1 + nRound % 4, from);
      EXPECT_LE(GetLargestError(Resample(kernels, source, to), source), 0.52)
          << from.m_nWidth << " x " << from.m_nHeight << " to " << to.m_nWidth << " x " << to.m_nHeight << ", seed "
          << kSeed + 1;
    }
  });
}

TEST(QXResample, GivesTheSameBytesInEveryInstructionSet) {
  std::mt19937 engine(kSeed + 2);
  for (unsigned int nRound = 0; nRound < 300; ++nRound) {
    Size const from{Pick(engine, 1, 300), Pick(engine, 1, 5)};
    Size const to{Pick(engine, 1, 700), Pick(engine, 1, 9)};
    Image const source = MakeImage(engine, 1 + nRound % 4, from);
    Bytes const plain = Resample(GetResampleKernels()[0], source, to).m_arrBytes;
    ForEachSet([&](QXResampleKernels const& kernels) {
      EXPECT_EQ(Resample(kernels, source, to).m_arrBytes, plain) << from.m_nWidth << " to " << to.m_nWidth;
    });
  }
}

TEST(QXResample, GivesTheSameBytesOnEveryCompiler) {
  std::mt19937 engine(kSeed + 3);
  std::uint32_t nHash = 2166136261U;
  for (unsigned int nRound = 0; nRound < 60; ++nRound) {
    Image const source = MakeImage(engine, 1 + nRound % 4, {Pick(engine, 1, 99), Pick(engine, 1, 50)});
    Image const result = Resample(source, {Pick(engine, 1, 200), Pick(engine, 1, 90)});
    for (unsigned char const nByte : result.m_arrBytes) nHash = (nHash ^ nByte) * 16777619U;
  }
  EXPECT_EQ(nHash, 2313100676U);
}

TEST(QXResample, KeepsEdgesWhereTheyAre) {
  // Centres at halves: twice the size puts quarters and three quarters between, and the ends go on to the edge.
  Image const source{{0, 100, 200}, 1, {3, 1}};
  EXPECT_EQ(Resample(source, {6, 1}).m_arrBytes, (Bytes{0, 25, 75, 125, 175, 200}));
}

TEST(QXResample, RoundsToTheNearest) {
  Image const source{{0, 1}, 1, {2, 1}};
  EXPECT_EQ(Resample(source, {8, 1}).m_arrBytes, (Bytes{0, 0, 0, 0, 1, 1, 1, 1}));
}

TEST(QXResample, AveragesWhatAShrunkPixelCovers) {
  Image const half{{0, 255, 10, 21, 255, 0, 20, 31}, 1, {4, 2}};
  EXPECT_EQ(Resample(half, {2, 1}).m_arrBytes, (Bytes{128, 21}));
  // 2 of 3: the middle pixel counts half on each side.
  Image const thirds{{0, 90, 240}, 1, {3, 1}};
  EXPECT_EQ(Resample(thirds, {2, 1}).m_arrBytes, (Bytes{30, 190}));
}

TEST(QXResample, LosesNoPixelOfAStronglyShrunkImage) {
  // One white pixel of 64: every skipping filter would miss it.
  Image source{Bytes(64, 0), 1, {8, 8}};
  source.m_arrBytes[27] = 255;
  EXPECT_EQ(Resample(source, {1, 1}).m_arrBytes, Bytes{4});
}

TEST(QXResample, KeepsAConstantImageConstant) {
  for (std::uint32_t const nTo : {1U, 2U, 3U, 999U, 65536U, 70001U}) {
    for (unsigned char const nValue : Bytes{0, 1, 127, 254, 255}) {
      Image const result = Resample(Image{Bytes(65537, nValue), 1, {65537, 1}}, {nTo, 2});
      EXPECT_EQ(result.m_arrBytes, Bytes(2 * std::size_t{nTo}, nValue)) << nTo;
    }
  }
}

TEST(QXResample, SpreadsASinglePixel) {
  for (unsigned int nBytes = 1; nBytes <= 4; ++nBytes) {
    Bytes const pixel = {9, 80, 255, 7};
    Image const source{Bytes(pixel.begin(), pixel.begin() + static_cast<std::ptrdiff_t>(nBytes)), nBytes, {1, 1}};
    Image const result = Resample(source, {37, 5});
    for (std::size_t i = 0; i < result.m_arrBytes.size(); ++i) ASSERT_EQ(result.m_arrBytes[i], pixel[i % nBytes]);
  }
}

TEST(QXResample, FiltersEachByteOfAPixelByItself) {
  Image const source{{255, 0, 0, 0, 0, 0, 0, 255}, 4, {2, 1}};
  EXPECT_EQ(Resample(source, {4, 1}).m_arrBytes, (Bytes{255, 0, 0, 0, 191, 0, 0, 64, 64, 0, 0, 191, 0, 0, 0, 255}));
}

TEST(QXResample, OfTheSameSizeIsACopy) {
  std::mt19937 engine(kSeed);
  Image const source = MakeImage(engine, 3, {77, 13});
  EXPECT_EQ(Resample(source, {77, 13}).m_arrBytes, source.m_arrBytes);
}

TEST(QXResample, RefusesWhatIsNoImage) {
  Bytes source(64, 1);
  Bytes target(64, 2);
  QXPixelView const view{source.data(), 2, 2};
  EXPECT_EQ(ResampleImage(0, view, target.data(), 4, 4), 0);
  EXPECT_EQ(ResampleImage(5, view, target.data(), 1, 1), 0);
  EXPECT_EQ(ResampleImage(1, {nullptr, 2, 2}, target.data(), 4, 4), 0);
  EXPECT_EQ(ResampleImage(1, view, nullptr, 4, 4), 0);
  EXPECT_EQ(ResampleImage(1, {source.data(), 0, 2}, target.data(), 4, 4), 0);
  EXPECT_EQ(ResampleImage(1, {source.data(), 2, 0}, target.data(), 4, 4), 0);
  EXPECT_EQ(ResampleImage(1, view, target.data(), 0, 4), 0);
  EXPECT_EQ(ResampleImage(1, view, target.data(), 4, 0), 0);
  // More bytes than there are addresses, and edges whose products would pass 64 bits.
  EXPECT_EQ(ResampleImage(4, view, target.data(), 0x80000000U, 0x80000000U), 0);
  EXPECT_EQ(ResampleImage(1, view, target.data(), 0x80000001U, 1), 0);
  EXPECT_EQ(target, Bytes(64, 2)) << "a refusal leaves the target alone";
}

}  // namespace
