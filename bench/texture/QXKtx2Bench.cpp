// KTX2 files in memory to pixels, all of DecodeKTX2 but the reading of the file: container, unpacking, blocks.
//
// UASTC files of 4096 x 4096 are made of the blocks of the sample files in no order: "photo" from a satellite map,
// "mixed" from noise, gradients, solid blocks and soft alpha, where all modes occur. ETC1S files of 2048 x 2048 are
// encoded here, with codebooks as large as files have: "photo" is a landscape of several octaves of noise, in "noise"
// each block has a colour of its own. "mpix_s" are megapixels a second of the thread's own time in the quickest pass;
// "copies" is the time over that of copying the pixels into a new block; "bits_pix" is the size of the file. The pixels
// are checked before anything is timed.

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2Decoder.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUnpack.h>

#include "QXBasisLzMaker.h"

#include <bench/QXBenchClock.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace QXC::detail;

namespace {

using QXBench::ThreadSeconds;

using Bytes = std::vector<unsigned char>;

constexpr unsigned int kSeed = 20261121;

void Store(Bytes& bytes, std::size_t nPlace, std::uint64_t nValue) {
  for (std::size_t i = 0; i < 8; ++i) bytes[nPlace + i] = static_cast<unsigned char>(nValue >> (8 * i));
}

/// What a file of one level says of itself.
struct Head {
  std::uint32_t m_nFormat;
  std::uint32_t m_nScheme;
  unsigned char m_nModel;
  std::vector<unsigned char> m_arrChannels;
};

Bytes MakeFile(
    Head const& head, unsigned int nWidth, unsigned int nHeight, Bytes const& level, Bytes const& global = {}) {
  static constexpr unsigned char identifier[12] = {0xAB, 'K', 'T', 'X', ' ', '2', '0', 0xBB, '\r', '\n', 26, '\n'};
  std::size_t const nBlock = 24 + 16 * head.m_arrChannels.size();
  std::size_t const nGlobalAt = 104 + 4 + nBlock;
  Bytes file(nGlobalAt + 8);
  Store(file, 12, head.m_nFormat | std::uint64_t{1} << 32);
  Store(file, 20, nWidth | std::uint64_t{nHeight} << 32);
  Store(file, 36, 1 | std::uint64_t{1} << 32);
  Store(file, 44, head.m_nScheme | std::uint64_t{104} << 32);
  Store(file, 52, 4 + nBlock);
  Store(file, 104, 4 + nBlock);
  Store(file, 112, 2 | nBlock << 16);
  file[104 + 12] = head.m_nModel;
  for (std::size_t i = 0; i < head.m_arrChannels.size(); ++i) file[104 + 28 + 16 * i + 3] = head.m_arrChannels[i];
  std::copy(std::begin(identifier), std::end(identifier), file.begin());
  file.resize(nGlobalAt);
  file.insert(file.end(), global.begin(), global.end());
  if (!global.empty()) Store(file, 64, nGlobalAt);
  Store(file, 72, global.size());
  Store(file, 80, file.size());
  Store(file, 88, level.size());
  Store(file, 96, global.empty() ? level.size() : 0);
  file.insert(file.end(), level.begin(), level.end());
  return file;
}

std::unique_ptr<unsigned char[]> Decode(Bytes const& bytes, std::size_t& nSize) {
  QXKtx2File file;
  nSize = 0;
  if (!file.Open(bytes.data(), bytes.size(), {})) return nullptr;
  nSize = file.GetDecodedSize(1);
  return DecodeKtx2Levels(file, 1, {});
}

/// Checks the pixels and times the decoding beside a copy of them.
void Time(benchmark::State& state, Bytes const& file, Bytes const& expected) {
  std::size_t nSize = 0;
  auto const pPixels = Decode(file, nSize);
  if (pPixels == nullptr || nSize != expected.size() || std::memcmp(pPixels.get(), expected.data(), nSize) != 0)
    return state.SkipWithError("the pixels are not those of the file");
  double dDecode = std::numeric_limits<double>::infinity();
  double dCopy = dDecode;
  for (auto _ : state) {
    double const dStart = ThreadSeconds();
    benchmark::DoNotOptimize(Decode(file, nSize));
    double const dDecoded = ThreadSeconds();
    {
      std::unique_ptr<unsigned char[]> const pCopy(new unsigned char[nSize]);
      std::memcpy(pCopy.get(), expected.data(), nSize);
      benchmark::DoNotOptimize(pCopy.get());
      benchmark::ClobberMemory();
    }
    double const dCopied = ThreadSeconds();
    dDecode = std::min(dDecode, dDecoded - dStart);
    dCopy = std::min(dCopy, dCopied - dDecoded);
    state.SetIterationTime(dDecoded - dStart);
  }
  state.counters["mpix_s"] = static_cast<double>(nSize) / 4e6 / dDecode;
  state.counters["copies"] = dDecode / dCopy;
  state.counters["bits_pix"] = static_cast<double>(file.size()) * 32.0 / static_cast<double>(nSize);
}

/// The blocks of a sample file of one or more levels, its first level only, and what it decodes to.
struct Sample {
  explicit Sample(std::string const& strName) {
    std::ifstream stream(QX_KTX2_FOLDER + ("/" + strName + ".ktx2"), std::ios::binary);
    m_arrFile.assign(std::istreambuf_iterator<char>(stream), {});
    if (!m_File.Open(m_arrFile.data(), m_arrFile.size(), {})) return;
    m_arrBlocks.resize(m_File.GetStoredSize(0));
    QXKtx2Range const level = m_File.GetLevel(0);
    if (!Unpack(m_File.GetScheme(), level, m_arrBlocks.data(), m_arrBlocks.size(), true)) m_arrBlocks.clear();
    m_pPixels = DecodeKtx2Levels(m_File, 1, {});
  }
  Bytes m_arrFile;
  QXKtx2File m_File;
  Bytes m_arrBlocks;
  std::unique_ptr<unsigned char[]> m_pPixels;
};

/// A picture of nEdge x nEdge pixels from the blocks of a sample in no order, so that no branch can learn them.
void Uastc(benchmark::State& state, std::string const& strName, unsigned char nChannel) {
  constexpr std::size_t nEdge = 4096;
  Sample const sample(strName);
  if (sample.m_arrBlocks.empty() || sample.m_pPixels == nullptr) return state.SkipWithError("no sample file");
  std::size_t const nFrom = std::max(sample.m_File.GetWidth(), 4u);
  std::size_t const nBlocks = sample.m_arrBlocks.size() / 16;
  std::mt19937 random(kSeed);
  Bytes level;
  Bytes expected(nEdge * nEdge * 4);
  for (std::size_t nBlock = 0; nBlock < nEdge * nEdge / 16; ++nBlock) {
    std::size_t const nChosen = random() % nBlocks;
    auto const itBlock = sample.m_arrBlocks.begin() + static_cast<std::ptrdiff_t>(nChosen * 16);
    level.insert(level.end(), itBlock, itBlock + 16);
    std::size_t const nSource = (nChosen / (nFrom / 4) * nFrom + nChosen % (nFrom / 4)) * 16;
    std::size_t const nTarget = (nBlock / (nEdge / 4) * nEdge + nBlock % (nEdge / 4)) * 16;
    for (std::size_t nRow = 0; nRow < 4; ++nRow)
      std::memcpy(&expected[nTarget + nRow * nEdge * 4], &sample.m_pPixels[nSource + nRow * nFrom * 4], 16);
  }
  Time(state, MakeFile({0, 0, 166, {nChannel}}, nEdge, nEdge, level), expected);
}

/// A landscape: height, plants and grain are noise of several octaves each; the light goes with the slope.
Bytes Landscape(std::size_t nEdge) {
  std::mt19937 random(kSeed);
  std::vector<float> lattice(256 * 256);
  for (float& fValue : lattice) fValue = static_cast<float>(random() % 1000) / 1000.0f;
  auto const noise = [&](float fX, float fY) {
    auto const nX = static_cast<std::size_t>(fX);
    auto const nY = static_cast<std::size_t>(fY);
    float const fU = fX - static_cast<float>(nX);
    float const fV = fY - static_cast<float>(nY);
    auto const at = [&](std::size_t i, std::size_t k) { return lattice[(k % 256) * 256 + i % 256]; };
    return (at(nX, nY) * (1 - fU) + at(nX + 1, nY) * fU) * (1 - fV) +
           (at(nX, nY + 1) * (1 - fU) + at(nX + 1, nY + 1) * fU) * fV;
  };
  auto const octaves = [&](std::size_t x, std::size_t y, float fStep, int nOctaves) {
    float fSum = 0;
    float fAll = 0;
    float fWeight = 1;
    for (int i = 0; i < nOctaves; ++i) {
      fSum += fWeight * noise(static_cast<float>(x) * fStep, static_cast<float>(y) * fStep);
      fStep *= 2;
      fWeight *= 0.7f;
      fAll += fWeight;
    }
    return fSum / fAll;
  };
  Bytes pixels(nEdge * nEdge * 4);
  for (std::size_t y = 0; y < nEdge; ++y) {
    for (std::size_t x = 0; x < nEdge; ++x) {
      float const fHeight = octaves(x, y, 1.0f / 512, 9);
      float const fPlants = octaves(x + 9999, y + 7777, 1.0f / 200, 6);
      float const fSlope = fHeight - octaves(x + 1, y + 1, 1.0f / 512, 9);
      float const fLight = std::clamp(0.6f + 6 * fSlope + 0.1f * octaves(x, y, 0.4f, 1), 0.1f, 1.2f);
      float const colors[3] = {fHeight * 1.2f, 0.2f + fPlants * 0.9f, 0.9f - fHeight * fPlants * 1.5f};
      for (std::size_t k = 0; k < 3; ++k)
        pixels[(y * nEdge + x) * 4 + k] =
            static_cast<unsigned char>(std::clamp(colors[k] * fLight * 255, 0.0f, 255.0f));
    }
  }
  return pixels;
}

Bytes Noise(std::size_t nEdge) {
  std::mt19937 random(kSeed);
  Bytes pixels(nEdge * nEdge * 4);
  for (unsigned char& nByte : pixels) nByte = static_cast<unsigned char>(random() % 256);
  // A colour of its own for each block.
  for (std::size_t y = 0; y < nEdge; ++y)
    for (std::size_t x = 0; x < nEdge; ++x)
      for (std::size_t k = 0; k < 3; ++k) {
        unsigned char& nByte = pixels[(y * nEdge + x) * 4 + k];
        nByte = static_cast<unsigned char>((nByte >> 3) + (x / 4 * 37 + y / 4 * 61 * (k + 1)) % 224);
      }
  return pixels;
}

void Etc1s(benchmark::State& state, Bytes (*pfnPicture)(std::size_t), bool bAlpha) {
  constexpr unsigned int nEdge = 2048;
  constexpr std::size_t nEntries = 16000;
  QXBasisLzMaker const maker(pfnPicture(nEdge), nEdge, nEdge, nEntries);
  Bytes level = maker.GetSlice();
  Bytes const global = maker.GetGlobalData(level.size(), bAlpha);
  if (bAlpha) {
    Bytes const slice = level;
    level.insert(level.end(), slice.begin(), slice.end());
  }
  Head const head = {0, 1, 163, bAlpha ? Bytes{0, 15} : Bytes{0}};
  Time(state, MakeFile(head, nEdge, nEdge, level, global), maker.GetPixels(bAlpha));
  state.counters["endpoints"] = static_cast<double>(maker.GetEndpointCount());
  state.counters["selectors"] = static_cast<double>(maker.GetSelectorCount());
}

BENCHMARK_CAPTURE(Uastc, photo, "uastc_rgb_256_linear_mip_zstd", 0)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Uastc, mixed, "uastc_rgba_128_mixed_srgb_zstd", 3)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Etc1s, photo, &Landscape, false)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Etc1s, photo_alpha, &Landscape, true)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Etc1s, noise, &Noise, false)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Etc1s, noise_alpha, &Noise, true)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
