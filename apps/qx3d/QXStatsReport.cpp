#include <apps/qx3d/QXStatsReport.h>

#include <apps/qx3d/QXRendererSession.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>

#include <cstdio>

namespace QXApp {

namespace {

/// The number drawn alone puzzles whoever knows the file: the ground is no part of it, and each viewport draws again.
void PrintDrawn(
    char const* szWhat, unsigned int nDrawn, char const* szOf, unsigned long long nModel, unsigned int nGround) {
  std::printf("%-18s %u drawn; the %s has %llu", szWhat, nDrawn, szOf, nModel);
  if (nGround > 0) std::printf(", the ground %u", nGround);
  std::printf("\n");
}

void PrintTimes(QXC::QXRenderTarget::FrameStats const& stats) {
  // Rates are computed once a measuring period of a second is over.
  if (stats.lastFPS > 0.0) {
    std::printf("frames a second    last %.1f, average %.1f, best %.1f, worst %.1f\n", stats.lastFPS, stats.avgFPS,
        stats.bestFPS, stats.worstFPS);
  } else {
    std::printf("frames a second    not measured: less than a second of frames; raise --frames\n");
  }
  std::printf("frame time         best %llu ms, worst %llu ms\n", static_cast<unsigned long long>(stats.bestFrameTime),
      static_cast<unsigned long long>(stats.worstFrameTime));
}

char const* Plural(std::size_t nCount, char const* szOne, char const* szMany) {
  return nCount == 1 ? szOne : szMany;
}

/// How many pages of an atlas there are, and what part of their area is taken.
void PrintPages(std::vector<QXAtlasPage> const& vecPages) {
  double dArea = 0.0;
  double dTaken = 0.0;
  for (QXAtlasPage const& page : vecPages) {
    double const dPage = static_cast<double>(page.m_nSize) * page.m_nSize;
    dArea += dPage;
    dTaken += dPage * page.GetFill();
  }
  std::printf(" on %zu %s, %.1f %% full\n", vecPages.size(), Plural(vecPages.size(), "atlas page", "atlas pages"),
      100.0 * dTaken / dArea);
}

void PrintInstances(QXRendererSession const& session, QXSceneFigures const& scene) {
  if (scene.m_nInstances == 0) return;
  std::size_t const nMeshes = session.GetInstanceMeshCount();
  std::printf("instances          %zu, of %zu %s; ", scene.m_nInstances, nMeshes, Plural(nMeshes, "mesh", "meshes"));
  if (session.HasInstancing())
    std::printf("%zu drawn by the last view\n", session.CountDrawnInstances());
  else
    std::printf("as drawables, for the renderer has no instancing\n");
}

void PrintIcons(unsigned int nIcons, std::vector<QXAtlasPage> const& vecPages) {
  if (nIcons == 0) return;
  std::size_t nTiles = 0;
  for (QXAtlasPage const& page : vecPages) nTiles += page.m_vecTiles.size();
  std::printf("icons              %u, of %zu %s", nIcons, nTiles, Plural(nTiles, "tile", "tiles"));
  PrintPages(vecPages);
}

void PrintLabels(unsigned int nLabels, std::size_t nGlyphs, std::vector<QXAtlasPage> const& vecPages) {
  if (nLabels == 0 || vecPages.empty()) return;
  std::printf("labels             %u, of %zu %s", nLabels, nGlyphs, Plural(nGlyphs, "glyph", "glyphs"));
  PrintPages(vecPages);
}

}  // namespace

void PrintStats(QXRendererSession const& session, bool bScene, int nFrameTime) {
  char const* szOf = bScene ? "scene" : "model";
  QXC::QXRenderTarget const& target = *session.GetTarget();
  QXC::QXRenderTarget::FrameStats const& stats = target.GetStatistics();
  QXFrameFigures const& figures = session.GetFigures();
  QXSceneFigures const& scene = session.GetSceneFigures();
  std::printf("renderer           %s\n", session.GetRendererName().c_str());
  unsigned int const nViewports = static_cast<unsigned int>(target.GetNumViewports());
  std::printf("size               %u x %u, %u %s\n", target.GetWidth(), target.GetHeight(), nViewports,
      nViewports == 1 ? "viewport" : "viewports");
  if (nFrameTime > 0) {
    std::printf("frames a second    not measured: an animated picture is shown, with frames %d ms apart\n", nFrameTime);
  } else {
    PrintTimes(stats);
  }
  PrintDrawn("triangles", figures.m_nTriangles, szOf, scene.m_nModelTriangles + scene.m_nInstanceTriangles,
      scene.m_nGroundTriangles);
  PrintDrawn("vertices", figures.m_nVertices, szOf, scene.m_nModelVertices + scene.m_nInstanceVertices,
      scene.m_nGroundVertices);
  std::printf("draw operations    %u\n", figures.m_nDrawOperations);
  std::printf("merged             %u %s into %u %s\n", scene.m_nMeshes, Plural(scene.m_nMeshes, "mesh", "meshes"),
      scene.m_nRanges, Plural(scene.m_nRanges, "range", "ranges"));
  std::printf("textures           %u\n", session.GetTextureCount());
  PrintInstances(session, scene);
  if (session.GetLightCount() > 0) std::printf("lights             %u\n", session.GetLightCount());
  PrintIcons(session.GetIconCount(), session.GetIconPages());
  PrintLabels(session.GetLabelCount(), session.GetGlyphCount(), session.GetLabelPages());
}

}  // namespace QXApp
