// The frame loop beside a bare loop over arrays that makes the same virtual calls and reads the same clock: what is
// left is the price of the registry by name, the viewports by key, the ordering and the statistics.
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>
#include <QxGraphics3D/view/QXCamera.h>

#include <tests/testing/QXAllocationCounter.h>

#include "QXFrameBenchRenderer.h"

namespace QXC {
namespace {

/// nTargets targets of nViewports viewports, a camera each, in one mode.
class QXBenchFrame {
public:
  QXBenchFrame(int nTargets, int nViewports, int nMode) {
    m_Graphics.Initialize(QdcUnicodeString());
    for (int i = 0; i < nTargets; ++i) {
      QXRenderTarget* const pTarget = MakeBenchTarget(m_Counts).release();
      pTarget->m_strName.Format(L"target %04d", i);
      pTarget->m_nWidth = 640;
      pTarget->m_nHeight = 480;
      pTarget->SetActive(1);
      pTarget->SetMultiViewportMode(static_cast<MultiViewportMode>(nMode));
      std::vector<QXViewport*> arrViewports;
      for (int j = 0; j < nViewports; ++j) {
        m_arrCameras.push_back(MakeBenchCamera(m_Counts));
        arrViewports.push_back(pTarget->AddViewport(m_arrCameras.back().get(), j, 0.0, 0.0, 1.0, 1.0));
      }
      m_Graphics.AttachRenderTarget(pTarget);
      m_arrTargets.push_back(pTarget);
      m_arrBare.push_back(MakeBareTarget(pTarget, std::move(arrViewports), nMode == MVM_ORDERED));
    }
    m_Counts = QXBenchCounts();
  }
  ~QXBenchFrame() { m_Graphics.ShutDown(); }

  void RunFrame() { m_Graphics.UpdateAllRenderTargets(); }

  /// The questions that the rules of a frame ask of an active target, then its update.
  void RunBareFrame() {
    for (std::size_t i = 0; i < m_arrTargets.size(); ++i) {
      QXRenderTarget* const pTarget = m_arrTargets[i];
      if (pTarget->IsActive()) {
        m_pActive = pTarget;
      }
      if (!pTarget->IsCurTargetRefresh() && pTarget->IsActive() && pTarget->IsAutoUpdated()) {
        m_arrBare[i]->Update();
      }
    }
    benchmark::DoNotOptimize(m_pActive);
  }

  QXBenchCounts m_Counts;

private:
  QXNullGraphics3D m_Graphics;
  std::vector<std::unique_ptr<QXCamera>> m_arrCameras;
  std::vector<QXRenderTarget*> m_arrTargets;
  std::vector<std::unique_ptr<QXBareTarget>> m_arrBare;
  QXRenderTarget* m_pActive = nullptr;
};

void Run(benchmark::State& state, void (QXBenchFrame::*pfnFrame)()) {
  int const nTargets = static_cast<int>(state.range(0));
  int const nViewports = static_cast<int>(state.range(1));
  int const nMode = static_cast<int>(state.range(2));
  QXBenchFrame frame(nTargets, nViewports, nMode);
  (frame.*pfnFrame)();
  frame.m_Counts = QXBenchCounts();
  long const nBefore = GetAllocationCount();
  for (auto _ : state) {
    (frame.*pfnFrame)();
  }
  long const nAllocations = GetAllocationCount() - nBefore;
  long const nExpected = static_cast<long>(state.iterations()) * nTargets * nViewports;
  long const nOrdered = nMode == MVM_ORDERED ? nExpected : 0;
  QXBenchCounts const& counts = frame.m_Counts;
  if (counts.m_nRender != nExpected || counts.m_nView != nOrdered || counts.m_nProjection != nOrdered ||
      counts.m_nApply != nOrdered || counts.m_nBegin != static_cast<long>(state.iterations()) * nTargets) {
    state.SkipWithError("the loop left calls out");
  }
  if (nAllocations != 0) {
    state.SkipWithError("the loop allocates");
  }
  state.SetItemsProcessed(nExpected);
  state.counters["viewport"] = benchmark::Counter(static_cast<double>(nTargets) * nViewports,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Sizes(benchmark::internal::Benchmark* pBenchmark) {
  pBenchmark->ArgNames({"targets", "viewports", "mode"});
  for (int const nMode : {0, 1, 4}) {
    for (int const nViewports : {1, 4, 16}) {
      pBenchmark->Args({1, nViewports, nMode});
    }
    for (int const nTargets : {4, 16, 64}) {
      pBenchmark->Args({nTargets, 4, nMode});
    }
  }
}

void Frame(benchmark::State& state) {
  Run(state, &QXBenchFrame::RunFrame);
}
void BareLoop(benchmark::State& state) {
  Run(state, &QXBenchFrame::RunBareFrame);
}
BENCHMARK(Frame)->Name("QXGraphics3D/frame")->Apply(Sizes);
BENCHMARK(BareLoop)->Name("bare-loop/frame")->Apply(Sizes);

void ReadClock(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(QDC::QdcTime::GetMillisecond());
  }
}
BENCHMARK(ReadClock)->Name("QdcTime/GetMillisecond");

/// The null renderer whole: clearing, matrices, culling of an empty scene.
void NullFrame(benchmark::State& state) {
  QXNullGraphics3D graphics;
  graphics.Initialize(QdcUnicodeString());
  QXCamera* const pCamera = graphics.CreateCamera(L"eye", graphics.GetSceneName(0));
  for (int i = 0; i < state.range(0); ++i) {
    QdcUnicodeString strName;
    strName.Format(L"target %04d", i);
    QXRenderTarget* const pTarget = graphics.CreateRenderWindow(strName, nullptr, 640, 480, 0);
    for (int j = 0; j < state.range(1); ++j) {
      pTarget->AddViewport(pCamera, j, 0.0, 0.0, 1.0, 1.0);
    }
    graphics.AttachRenderTarget(pTarget);
  }
  graphics.UpdateAllRenderTargets();
  long const nBefore = GetAllocationCount();
  for (auto _ : state) {
    graphics.UpdateAllRenderTargets();
  }
  if (GetAllocationCount() != nBefore) {
    state.SkipWithError("the loop allocates");
  }
  state.counters["viewport"] = benchmark::Counter(static_cast<double>(state.range(0) * state.range(1)),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  graphics.ShutDown();
}
BENCHMARK(NullFrame)
    ->Name("QXNullGraphics3D/frame")
    ->ArgNames({"targets", "viewports"})
    ->Args({1, 1})
    ->Args({1, 4})
    ->Args({1, 16})
    ->Args({4, 4})
    ->Args({16, 4})
    ->Args({64, 4});

}  // namespace
}  // namespace QXC
