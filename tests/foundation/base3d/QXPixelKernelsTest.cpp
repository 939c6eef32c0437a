#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>

#include "QXGuardedBlock.h"

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

using namespace QXC::detail;
using QXTest::GuardedBlock;
using Bytes = std::vector<unsigned char>;
using Counts = std::vector<std::size_t>;

namespace {

constexpr unsigned int kSeed = 20261121;

/// Counts around every block size of the wide instructions, and two beyond the size from which targets are streamed.
Counts GetCounts() {
  Counts arrCounts;
  for (std::size_t i = 0; i <= 200; ++i) arrCounts.push_back(i);
  for (std::size_t const n : Counts{511, 1025, 4099, 524287, 524288, 524500, 600003}) arrCounts.push_back(n);
  return arrCounts;
}

Bytes MakeNoise(std::size_t nBytes) {
  std::minstd_rand engine(kSeed);
  Bytes arrBytes(nBytes);
  for (unsigned char& nByte : arrBytes) nByte = static_cast<unsigned char>(engine() >> 16);
  return arrBytes;
}

/// Runs each supported instruction set, and the dispatching function as one more.
void ForEachSet(std::function<void(QXPixelKernels const&)> const& visit) {
  for (QXPixelKernels const& kernels : GetPixelKernels()) {
    if (!kernels.m_pfnIsSupported()) continue;
    SCOPED_TRACE(kernels.m_szName);
    visit(kernels);
  }
  SCOPED_TRACE("chosen");
  visit({"chosen", nullptr, &FlipRows, &Widen3To4, &WidenGrayTo4, &HasAlphaBelow255});
}

using Widen = void (*)(unsigned char const*, unsigned char*, std::size_t, unsigned char);

/// Source and target both between guarded pages, at their end or at their start; nShift moves the target off alignment.
void ExpectWidens(Widen pfnWiden, std::size_t nBytesPerPixel, std::size_t nCount, std::size_t nShift) {
  Bytes const noise = MakeNoise(nCount * nBytesPerPixel);
  for (auto const eSide : {GuardedBlock::Side::Behind, GuardedBlock::Side::Before}) {
    GuardedBlock const source(noise.size(), eSide);
    GuardedBlock const target(4 * nCount + nShift, eSide);
    std::copy(noise.begin(), noise.end(), source.Get());
    unsigned char* const pTarget = target.Get() + (eSide == GuardedBlock::Side::Before ? nShift : 0);
    std::fill_n(target.Get(), 4 * nCount + nShift, static_cast<unsigned char>(0xEE));
    pfnWiden(source.Get(), pTarget, nCount, 201);
    for (std::size_t i = 0; i < nCount; ++i) {
      unsigned char const* const p = &noise[i * nBytesPerPixel];
      bool const bSame = pTarget[4 * i] == p[0] && pTarget[4 * i + 1] == p[nBytesPerPixel == 3 ? 1 : 0] &&
                         pTarget[4 * i + 2] == p[nBytesPerPixel == 3 ? 2 : 0] && pTarget[4 * i + 3] == 201;
      if (!bSame) FAIL() << "pixel " << i << " of " << nCount << ", shift " << nShift;
    }
    unsigned char const* const pOutside = pTarget == target.Get() ? pTarget + 4 * nCount : target.Get();
    EXPECT_TRUE(std::all_of(pOutside, pOutside + nShift, [](unsigned char n) { return n == 0xEE; })) << nCount;
    EXPECT_TRUE(std::equal(noise.begin(), noise.end(), source.Get())) << "the source was written";
  }
}

TEST(QXPixelKernels, OffersThePlainFormEverywhere) {
  ASSERT_FALSE(GetPixelKernels().empty());
  EXPECT_STREQ(GetPixelKernels()[0].m_szName, "plain");
  EXPECT_EQ(GetPixelKernels()[0].m_pfnIsSupported(), 1);
}

TEST(QXPixelKernels, WidensThreeBytesWithTheGivenAlpha) {
  ForEachSet([](QXPixelKernels const& kernels) {
    for (std::size_t const nCount : GetCounts()) {
      for (std::size_t const nShift : Counts{0, 1, 4}) ExpectWidens(kernels.m_pfnWiden3To4, 3, nCount, nShift);
    }
  });
}

TEST(QXPixelKernels, WidensGrayWithTheGivenAlpha) {
  ForEachSet([](QXPixelKernels const& kernels) {
    for (std::size_t const nCount : GetCounts()) {
      for (std::size_t const nShift : Counts{0, 1, 4}) ExpectWidens(kernels.m_pfnWidenGrayTo4, 1, nCount, nShift);
    }
  });
}

void ExpectFlips(QXPixelKernels const& kernels, std::size_t nRowBytes, std::size_t nHeight) {
  Bytes const noise = MakeNoise(nRowBytes * nHeight);
  for (auto const eSide : {GuardedBlock::Side::Behind, GuardedBlock::Side::Before}) {
    GuardedBlock const block(noise.size(), eSide);
    std::copy(noise.begin(), noise.end(), block.Get());
    kernels.m_pfnFlipRows(block.Get(), nRowBytes, nHeight);
    for (std::size_t i = 0; i < nHeight; ++i) {
      auto const expected = noise.begin() + static_cast<std::ptrdiff_t>((nHeight - 1 - i) * nRowBytes);
      ASSERT_TRUE(std::equal(block.Get() + i * nRowBytes, block.Get() + (i + 1) * nRowBytes, expected))
          << "row " << i << " of " << nHeight << " with " << nRowBytes << " bytes";
    }
  }
}

TEST(QXPixelKernels, ExchangesRowsAroundTheMiddleOne) {
  ForEachSet([](QXPixelKernels const& kernels) {
    for (std::size_t nRowBytes = 0; nRowBytes <= 200; ++nRowBytes) {
      for (std::size_t const nHeight : Counts{0, 1, 2, 3, 4, 7}) ExpectFlips(kernels, nRowBytes, nHeight);
    }
    ExpectFlips(kernels, 9231, 55);
  });
}

TEST(QXPixelKernels, FindsASingleAlphaBelow255Anywhere) {
  ForEachSet([](QXPixelKernels const& kernels) {
    for (std::size_t nCount = 0; nCount <= 300; ++nCount) {
      for (auto const eSide : {GuardedBlock::Side::Behind, GuardedBlock::Side::Before}) {
        GuardedBlock const block(4 * nCount, eSide);
        // Colours of 0 must not count: only the fourth byte does.
        for (std::size_t i = 0; i < 4 * nCount; ++i) block.Get()[i] = i % 4 == 3 ? 255 : 0;
        ASSERT_EQ(kernels.m_pfnHasAlphaBelow255(block.Get(), nCount), 0) << nCount;
        for (std::size_t i = 0; i < nCount; ++i) {
          block.Get()[4 * i + 3] = 254;
          ASSERT_EQ(kernels.m_pfnHasAlphaBelow255(block.Get(), nCount), 1) << i << " of " << nCount;
          block.Get()[4 * i + 3] = 255;
        }
      }
    }
  });
}

TEST(QXPixelKernels, LooksAtTheGivenPixelsOnly) {
  ForEachSet([](QXPixelKernels const& kernels) {
    Bytes arrPixels(4 * 300, 255);
    for (std::size_t nCount = 0; nCount < 299; ++nCount) {
      arrPixels[4 * nCount + 3] = 0;
      EXPECT_EQ(kernels.m_pfnHasAlphaBelow255(arrPixels.data(), nCount), 0) << nCount;
      arrPixels[4 * nCount + 3] = 255;
    }
  });
}

TEST(QXPixelKernels, WidensGrayAndAlpha) {
  Bytes const source = {10, 20, 30, 40};
  Bytes target(9, 7);
  WidenGrayAlphaTo4(source.data(), target.data(), 2);
  EXPECT_EQ(target, (Bytes{10, 10, 10, 20, 30, 30, 30, 40, 7}));
}

TEST(QXPixelKernels, ExchangesRedAndBlue) {
  Bytes narrow = {1, 2, 3, 4, 5, 6, 7};
  SwapRedBlue3(narrow.data(), 2);
  EXPECT_EQ(narrow, (Bytes{3, 2, 1, 6, 5, 4, 7}));
  Bytes wide = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  SwapRedBlue4(wide.data(), 2);
  EXPECT_EQ(wide, (Bytes{3, 2, 1, 4, 7, 6, 5, 8, 9}));
}

TEST(QXPixelKernels, FillsAlphaAndNothingElse) {
  Bytes pixels = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  FillAlpha(pixels.data(), 2, 200);
  EXPECT_EQ(pixels, (Bytes{1, 2, 3, 200, 5, 6, 7, 200, 9}));
}

}  // namespace
