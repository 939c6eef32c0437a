// 3077 x 2055 brought to 4096 x 4096, beside stb_image_resize with the same filter and OGRE's Image::scale, in one run.
//
// The passes take turns; times are those of the thread, the quickest pass counts. The error is that against exact
// bilinear interpolation, computed in double for every byte of the result, and a case fails if ours is above a rival's.

#include <QxGraphics3D/frame/foundation/base3d/detail/QXResample.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXResampleAxis.h>

#include "QXBenchBlocks.h"

#define STB_IMAGE_RESIZE_IMPLEMENTATION
#define STB_IMAGE_RESIZE_STATIC
#include <stb/stb_image_resize.h>
#if defined(QX_BENCH_OGRE)
#  include <OgreImage.h>
#  include <OgreLogManager.h>
#endif

#include <cmath>
#include <cstdint>
#include <string>

using namespace QXC::detail;
using QXBench::Block;
using QXBench::Pass;

namespace {

constexpr std::uint32_t kWidth = 3077;
constexpr std::uint32_t kHeight = 2055;
constexpr std::uint32_t kTarget = 4096;

struct Error {
  double m_dLargest = 0;
  double m_dMean = 0;
};

struct Neighbours {
  std::size_t m_nFirst;
  std::size_t m_nSecond;
  double m_dShare;
};

Neighbours GetNeighbours(std::size_t i, std::size_t nFrom) {
  double const dPlace = std::clamp(
      (static_cast<double>(i) + 0.5) * static_cast<double>(nFrom) / kTarget - 0.5, 0.0, static_cast<double>(nFrom - 1));
  auto const nFirst = static_cast<std::size_t>(dPlace);
  return {nFirst, std::min(nFirst + 1, nFrom - 1), dPlace - static_cast<double>(nFirst)};
}

Error GetError(unsigned char const* pSource, unsigned char const* pResult, std::size_t nBytes) {
  Error error;
  for (std::size_t y = 0; y < kTarget; ++y) {
    Neighbours const rows = GetNeighbours(y, kHeight);
    for (std::size_t x = 0; x < kTarget; ++x) {
      Neighbours const columns = GetNeighbours(x, kWidth);
      for (std::size_t n = 0; n < nBytes; ++n) {
        auto const across = [&](std::size_t nRow) {
          unsigned char const* const p = pSource + nRow * kWidth * nBytes + n;
          return p[columns.m_nFirst * nBytes] * (1 - columns.m_dShare) +
                 p[columns.m_nSecond * nBytes] * columns.m_dShare;
        };
        double const dExact = across(rows.m_nFirst) * (1 - rows.m_dShare) + across(rows.m_nSecond) * rows.m_dShare;
        double const dError = std::abs(dExact - pResult[(y * kTarget + x) * nBytes + n]);
        error.m_dLargest = std::max(error.m_dLargest, dError);
        error.m_dMean += dError;
      }
    }
  }
  error.m_dMean /= static_cast<double>(kTarget) * kTarget * static_cast<double>(nBytes);
  return error;
}

void ScaleWithStb(unsigned char const* pSource, unsigned char* pTarget, int nBytes) {
  stbir_resize_uint8_generic(pSource, kWidth, kHeight, 0, pTarget, kTarget, kTarget, 0, nBytes,
      STBIR_ALPHA_CHANNEL_NONE, 0, STBIR_EDGE_CLAMP, STBIR_FILTER_TRIANGLE, STBIR_COLORSPACE_LINEAR, nullptr);
}

#if defined(QX_BENCH_OGRE)
void ScaleWithOgre(unsigned char* pSource, unsigned char* pTarget, std::size_t nBytes) {
  Ogre::PixelFormat const eFormat = nBytes == 1 ? Ogre::PF_L8 : nBytes == 3 ? Ogre::PF_BYTE_BGR : Ogre::PF_BYTE_BGRA;
  Ogre::Image::scale(Ogre::PixelBox(kWidth, kHeight, 1, eFormat, pSource),
      Ogre::PixelBox(kTarget, kTarget, 1, eFormat, pTarget), Ogre::Image::FILTER_BILINEAR);
}
#endif

void Bench(benchmark::State& state, QXResampleKernels const& kernels, unsigned int nBytes) {
  Block const source(std::size_t{kWidth} * kHeight * nBytes);
  Block const target(std::size_t{kTarget} * kTarget * nBytes);
  source.FillWithNoise();
  std::vector<Pass> arrPasses;
  arrPasses.push_back(
      {"ours", [&] {
         ResampleImageWith(kernels, nBytes, {source.Get(), kWidth, kHeight}, target.Get(), kTarget, kTarget);
       }});
  arrPasses.push_back({"stb", [&] { ScaleWithStb(source.Get(), target.Get(), static_cast<int>(nBytes)); }});
#if defined(QX_BENCH_OGRE)
  arrPasses.push_back({"ogre", [&] { ScaleWithOgre(source.Get(), target.Get(), nBytes); }});
#endif
  std::vector<Error> arrErrors;
  for (Pass& pass : arrPasses) {
    std::memset(target.Get(), 0, target.GetSize());
    pass.m_run();
    arrErrors.push_back(GetError(source.Get(), target.Get(), nBytes));
    if (arrErrors[0].m_dLargest > arrErrors.back().m_dLargest || arrErrors[0].m_dMean > arrErrors.back().m_dMean) {
      state.SkipWithError((std::string("less exact than ") + pass.m_szName).c_str());
      return;
    }
  }
  for (auto _ : state) {
    state.SetIterationTime(arrPasses[0].Time());
    for (std::size_t i = 1; i < arrPasses.size(); ++i) arrPasses[i].Time();
  }
  for (std::size_t i = 0; i < arrPasses.size(); ++i) {
    std::string const strName = arrPasses[i].m_szName;
    state.counters[strName + "_ms"] = arrPasses[i].m_dBest * 1e3;
    state.counters[strName + "_err_max"] = arrErrors[i].m_dLargest;
    state.counters[strName + "_err_mean"] = arrErrors[i].m_dMean;
    if (i != 0) state.counters["x_" + strName] = arrPasses[i].m_dBest / arrPasses[0].m_dBest;
  }
}

void RegisterAll() {
  for (QXResampleKernels const& kernels : GetResampleKernels()) {
    if (!kernels.m_pfnIsSupported()) continue;
    for (unsigned int const nBytes : {1U, 3U, 4U}) {
      std::string const strName = "ResampleImage/" + std::to_string(8 * nBytes) + "-bit/" + kernels.m_szName;
      benchmark::RegisterBenchmark(
          strName.c_str(), [&kernels, nBytes](benchmark::State& state) { Bench(state, kernels, nBytes); })
          ->UseManualTime()
          ->Iterations(5)
          ->Unit(benchmark::kMillisecond);
    }
  }
}

[[maybe_unused]] bool const g_bRegistered = [] {
  RegisterAll();
  return true;
}();

}  // namespace
