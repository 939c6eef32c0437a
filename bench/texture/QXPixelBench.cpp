// Pixel blocks turned, widened and searched, beside memcpy of the image (of the wide one for widening), in one run.
//
// memcpy and the kernel take turns. "cold": nothing of the blocks is in a cache when a pass starts, as with an image
// that is larger than them. "again": each pass right after another of the same, so that caches hold what they can.
// Times are those of the thread, the quickest pass counts, and what a kernel wrote is checked before it is timed.

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>

#include "QXBenchBlocks.h"

#include <algorithm>
#include <string>

using namespace QXC::detail;
using QXBench::Block;
using QXBench::Pass;

namespace {

struct Size {
  std::size_t m_nWidth;
  std::size_t m_nHeight;
};

enum class Job { Flip3, Flip4, Widen3, WidenGray, Alpha };

/// Source, target and a block for memcpy's other end.
struct Blocks {
  Block m_source;
  Block m_target;
  Block m_wide;
};

void Run(QXPixelKernels const& kernels, Job eJob, Size size, Blocks const& blocks) {
  std::size_t const nCount = size.m_nWidth * size.m_nHeight;
  switch (eJob) {
  case Job::Flip3: kernels.m_pfnFlipRows(blocks.m_target.Get(), size.m_nWidth * 3, size.m_nHeight); return;
  case Job::Flip4: kernels.m_pfnFlipRows(blocks.m_target.Get(), size.m_nWidth * 4, size.m_nHeight); return;
  case Job::Widen3: kernels.m_pfnWiden3To4(blocks.m_source.Get(), blocks.m_target.Get(), nCount, 255); return;
  case Job::WidenGray: kernels.m_pfnWidenGrayTo4(blocks.m_source.Get(), blocks.m_target.Get(), nCount, 255); return;
  case Job::Alpha: benchmark::DoNotOptimize(kernels.m_pfnHasAlphaBelow255(blocks.m_wide.Get(), nCount)); return;
  }
}

bool CheckFlip(QXPixelKernels const& kernels, Size size, std::size_t nBytes, Blocks const& blocks) {
  std::size_t const nRow = size.m_nWidth * nBytes;
  blocks.m_target.FillWithNoise();
  std::vector<unsigned char> const before(blocks.m_target.Get(), blocks.m_target.Get() + nRow * size.m_nHeight);
  kernels.m_pfnFlipRows(blocks.m_target.Get(), nRow, size.m_nHeight);
  for (std::size_t y = 0; y < size.m_nHeight; ++y) {
    if (std::memcmp(&before[y * nRow], blocks.m_target.Get() + (size.m_nHeight - 1 - y) * nRow, nRow) != 0)
      return false;
  }
  return true;
}

bool CheckWiden(QXPixelKernels const& kernels, Job eJob, Size size, Blocks const& blocks) {
  blocks.m_source.FillWithNoise();
  Run(kernels, eJob, size, blocks);
  unsigned char const* p = blocks.m_source.Get();
  unsigned char const* q = blocks.m_target.Get();
  std::size_t const nStep = eJob == Job::Widen3 ? 1 : 0;
  for (std::size_t i = 0; i < size.m_nWidth * size.m_nHeight; ++i, p += 2 * nStep + 1, q += 4) {
    if (q[0] != p[0] || q[1] != p[nStep] || q[2] != p[2 * nStep] || q[3] != 255) return false;
  }
  return true;
}

bool CheckAlpha(QXPixelKernels const& kernels, Size size, Blocks const& blocks) {
  std::size_t const nCount = size.m_nWidth * size.m_nHeight;
  unsigned char* const pPixels = blocks.m_wide.Get();
  std::fill_n(pPixels, 4 * nCount, static_cast<unsigned char>(255));
  if (kernels.m_pfnHasAlphaBelow255(pPixels, nCount) != 0) return false;
  pPixels[4 * nCount - 1] = 254;
  bool const bFound = kernels.m_pfnHasAlphaBelow255(pPixels, nCount) == 1;
  pPixels[4 * nCount - 1] = 255;
  return bFound;
}

bool Check(QXPixelKernels const& kernels, Job eJob, Size size, Blocks const& blocks) {
  if (eJob == Job::Alpha) return CheckAlpha(kernels, size, blocks);
  if (eJob == Job::Flip3 || eJob == Job::Flip4) return CheckFlip(kernels, size, eJob == Job::Flip3 ? 3 : 4, blocks);
  return CheckWiden(kernels, eJob, size, blocks);
}

void Bench(benchmark::State& state, QXPixelKernels const& kernels, Job eJob, Size size, bool bCold) {
  std::size_t const nCount = size.m_nWidth * size.m_nHeight;
  std::size_t const nSourceBytes = eJob == Job::WidenGray ? 1 : 3;
  Blocks const blocks{Block(nSourceBytes * nCount), Block(4 * nCount), Block(4 * nCount)};
  if (!Check(kernels, eJob, size, blocks)) {
    state.SkipWithError("the kernel's result is wrong");
    return;
  }
  std::size_t const nCopied = (eJob == Job::Flip3 ? 3 : 4) * nCount;
  Pass copy{"memcpy", [&] { std::memcpy(blocks.m_target.Get(), blocks.m_wide.Get(), nCopied); }};
  Pass kernel{"kernel", [&] { Run(kernels, eJob, size, blocks); }};
  auto const time = [&](Pass& pass) {
    pass.m_run();
    if (bCold) {
      for (Block const* pBlock : {&blocks.m_source, &blocks.m_target, &blocks.m_wide}) pBlock->ForgetCaches();
    }
    return pass.Time();
  };
  for (auto _ : state) {
    time(copy);
    state.SetIterationTime(time(kernel));
  }
  state.counters["memcpy_ms"] = copy.m_dBest * 1e3;
  state.counters["kernel_ms"] = kernel.m_dBest * 1e3;
  state.counters["x_memcpy"] = kernel.m_dBest / copy.m_dBest;
}

void RegisterAll() {
  struct Named {
    char const* m_szName;
    Job m_eJob;
  };
  static constexpr Named kJobs[] = {{"flip-24", Job::Flip3}, {"flip-32", Job::Flip4}, {"widen-24-to-32", Job::Widen3},
      {"widen-8-to-32", Job::WidenGray}, {"alpha-scan", Job::Alpha}};
  for (Named const& job : kJobs) {
    for (Size const size : {Size{3077, 2055}, Size{4096, 4096}}) {
      for (QXPixelKernels const& kernels : GetPixelKernels()) {
        if (!kernels.m_pfnIsSupported()) continue;
        for (bool const bCold : {true, false}) {
          std::string const strName = std::string("QXPixelKernels/") + job.m_szName + "/" +
                                      std::to_string(size.m_nWidth) + "x" + std::to_string(size.m_nHeight) + "/" +
                                      kernels.m_szName + (bCold ? "/cold" : "/again");
          Job const eJob = job.m_eJob;
          benchmark::RegisterBenchmark(strName.c_str(),
              [&kernels, eJob, size, bCold](benchmark::State& state) { Bench(state, kernels, eJob, size, bCold); })
              ->UseManualTime()
              ->Iterations(7)
              ->Unit(benchmark::kMillisecond);
        }
      }
    }
  }
}

[[maybe_unused]] bool const g_bRegistered = [] {
  RegisterAll();
  return true;
}();

}  // namespace
