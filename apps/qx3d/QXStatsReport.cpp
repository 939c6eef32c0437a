#include <apps/qx3d/QXStatsReport.h>

#include <apps/qx3d/QXRendererSession.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>

#include <cstdio>

namespace QXApp {

void PrintStats(QXRendererSession const& session) {
  QXC::QXRenderTarget const& target = *session.GetTarget();
  QXC::QXRenderTarget::FrameStats const& stats = target.GetStatistics();
  QXFrameFigures const& figures = session.GetFigures();
  std::printf("renderer           %s\n", session.GetRendererName().c_str());
  std::printf("size               %u x %u, %u viewports\n", target.GetWidth(), target.GetHeight(),
      static_cast<unsigned int>(target.GetNumViewports()));
  // Rates are computed once a measuring period of a second is over.
  if (stats.lastFPS > 0.0) {
    std::printf("frames a second    last %.1f, average %.1f, best %.1f, worst %.1f\n", stats.lastFPS, stats.avgFPS,
        stats.bestFPS, stats.worstFPS);
  } else {
    std::printf("frames a second    not measured: less than a second of frames; raise --frames\n");
  }
  std::printf("frame time         best %llu ms, worst %llu ms\n", static_cast<unsigned long long>(stats.bestFrameTime),
      static_cast<unsigned long long>(stats.worstFrameTime));
  std::printf("triangles          %u\n", figures.m_nTriangles);
  std::printf("vertices           %u\n", figures.m_nVertices);
  std::printf("draw operations    %u\n", figures.m_nDrawOperations);
}

}  // namespace QXApp
