// Pixel operations of QXTexture on large images, beside copying the image with memcpy.
//
// Each case times two passes in turn on the same thread's clock and reports the quickest of each: the operation, and
// memcpy of the image that the operation is measured by, into a block that is in memory already. Results are checked
// before anything is timed. Widening makes a new block, which a fair copy would have to make as well: "per_fresh_copy"
// is the ratio to such a copy, "per_copy" the ratio to a copy into a block that is there.

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/texture/QXTexture.h>

#include <bench/QXBenchClock.h>
#include <tests/QXBareTexture.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

using namespace QXC;

namespace {

using QXBench::Quickest;

struct Size {
  explicit Size(benchmark::State const& state)
      : m_nWidth(static_cast<std::size_t>(state.range(0))), m_nHeight(static_cast<std::size_t>(state.range(1))) {}
  std::size_t GetPixels() const { return m_nWidth * m_nHeight; }
  std::size_t m_nWidth;
  std::size_t m_nHeight;
};

using Block = std::unique_ptr<unsigned char[]>;

/// Opaque: each fourth byte is 255.
Block MakeImage(std::size_t nBytes) {
  Block pBlock(new unsigned char[nBytes]);
  for (std::size_t nByte = 0; nByte < nBytes; ++nByte) {
    pBlock[nByte] = nByte % 4 == 3 ? 255 : static_cast<unsigned char>(nByte * 31 >> 3);
  }
  return pBlock;
}

void Give(QXTexture& texture, Size const& size, Block pBlock, QX3DPixelFormat eFormat) {
  texture.SetTextureData(
      static_cast<int>(size.m_nWidth), static_cast<int>(size.m_nHeight), pBlock.release(), 0, eFormat);
}

void CopyBytes(unsigned char* pTarget, unsigned char const* pSource, std::size_t nBytes) {
  std::memcpy(pTarget, pSource, nBytes);
  benchmark::DoNotOptimize(pTarget);
  benchmark::ClobberMemory();
}

/// Times passes in turn with copies of nBytes from block to block. prepare runs before each pass, untimed.
template <class Prepare, class Pass>
void TimeBesideCopies(benchmark::State& state, std::size_t nBytes, Prepare prepare, Pass pass) {
  Block const pSource = MakeImage(nBytes);
  Block const pTarget = MakeImage(nBytes);
  Quickest quickest;
  Quickest copy;
  for (auto _ : state) {
    copy.Time([&] { CopyBytes(pTarget.get(), pSource.get(), nBytes); });
    prepare();
    state.SetIterationTime(quickest.Time(pass));
  }
  state.counters["ms"] = 1e3 * quickest.m_dSeconds;
  state.counters["per_copy"] = quickest.m_dSeconds / copy.m_dSeconds;
}

void Flip(benchmark::State& state) {
  Size const size(state);
  std::size_t const nRow = size.m_nWidth * 4;
  std::size_t const nBytes = nRow * size.m_nHeight;
  Block const pImage = MakeImage(nBytes);
  QXBareTexture texture;
  Give(texture, size, MakeImage(nBytes), PF_A8R8G8B8);
  texture.FlipTexture();
  for (std::size_t nLine = 0; nLine < size.m_nHeight; ++nLine) {
    if (std::memcmp(
            texture.m_TextureData.m_pPixels + nLine * nRow, &pImage[(size.m_nHeight - 1 - nLine) * nRow], nRow)) {
      return state.SkipWithError("a row is not where it belongs");
    }
  }
  TimeBesideCopies(
      state, nBytes, [] {}, [&] { texture.FlipTexture(); });
}

void Widen(benchmark::State& state) {
  Size const size(state);
  std::size_t const nWide = size.GetPixels() * 4;
  Block const pWide = MakeImage(nWide);
  // The library's own copies of blocks stand in huge pages where it reads images, too.
  QXBareTexture narrow;
  Give(narrow, size, MakeImage(size.GetPixels() * 3), PF_R8G8B8);
  unsigned char const* const pNarrow = narrow.m_TextureData.m_pPixels;
  QXBareTexture texture;
  texture.SetTextureData(narrow.m_TextureData);
  texture.m_TextureData.RGBToRGBA();
  for (std::size_t nPixel = 0; nPixel < size.GetPixels(); ++nPixel) {
    unsigned char const* const pPixel = texture.m_TextureData.m_pPixels + nPixel * 4;
    if (std::memcmp(pPixel, pNarrow + nPixel * 3, 3) != 0 || pPixel[3] != 255) {
      return state.SkipWithError("a pixel is not what it was");
    }
  }
  Quickest widen;
  Quickest fresh;
  TimeBesideCopies(
      state, nWide,
      [&] {
        fresh.Time([&] {
          Block pFresh(new unsigned char[nWide]);
          CopyBytes(pFresh.get(), pWide.get(), nWide);
        });
        texture.SetTextureData(narrow.m_TextureData);
      },
      [&] { widen.Time([&] { texture.m_TextureData.RGBToRGBA(); }); });
  state.counters["per_fresh_copy"] = widen.m_dSeconds / fresh.m_dSeconds;
}

QXImageData* MakeRecord(Size const& size, unsigned char* pPixels) {
  auto* const pImage = new QXImageData;
  pImage->m_nWidth = static_cast<unsigned int>(size.m_nWidth);
  pImage->m_nHeight = static_cast<unsigned int>(size.m_nHeight);
  pImage->m_nPitch = pImage->m_nWidth * 4;
  pImage->m_nBitDepth = 32;
  pImage->m_pPixels = pPixels;
  return pImage;
}

/// An opaque image handed over and looked at: all of it has to be read.
void ScanAlpha(benchmark::State& state) {
  Size const size(state);
  std::size_t const nBytes = size.GetPixels() * 4;
  QXBareTexture texture;
  QXImageData* pRecord = MakeRecord(size, MakeImage(nBytes).release());
  texture.SetTextureData(pRecord, 0, 0, 0, 1);
  unsigned char* const pPixels = texture.m_TextureData.m_pPixels;
  bool const bOpaque = texture.IsHasTransparentData() == 0;
  pPixels[nBytes - 1] = 254;
  pRecord = MakeRecord(size, pPixels);
  texture.SetTextureData(pRecord, 0, 0, 0, 1);
  if (!bOpaque || !texture.IsHasTransparentData() || texture.m_TextureData.m_pPixels != pPixels) {
    return state.SkipWithError("the last pixel was not looked at");
  }
  pPixels[nBytes - 1] = 255;
  TimeBesideCopies(
      state, nBytes, [] {},
      [&] {
        pRecord = MakeRecord(size, pPixels);
        texture.SetTextureData(pRecord, 0, 0, 0, 1);
      });
}

/// A block that changes owner: the time must not depend on the image.
void HandOver(benchmark::State& state) {
  Size const size(state);
  std::size_t const nBytes = size.GetPixels() * 4;
  QXBareTexture texture;
  QXImageData* pRecord = MakeRecord(size, MakeImage(nBytes).release());
  auto* const pPixels = static_cast<unsigned char*>(pRecord->m_pPixels);
  texture.SetTextureData(pRecord, 0, 0, 0, 0);
  if (texture.m_TextureData.m_pPixels != pPixels) {
    return state.SkipWithError("the block was copied");
  }
  TimeBesideCopies(
      state, nBytes, [&] { pRecord = MakeRecord(size, pPixels); },
      [&] { texture.SetTextureData(pRecord, 0, 0, 0, 0); });
}

void Sizes(benchmark::internal::Benchmark* pCase) {
  pCase->Args({3077, 2055})->Args({4096, 4096})->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(Flip)->Apply(Sizes);
BENCHMARK(Widen)->Apply(Sizes);
BENCHMARK(ScanAlpha)->Apply(Sizes);
BENCHMARK(HandOver)->Apply(Sizes)->Iterations(50);

}  // namespace
