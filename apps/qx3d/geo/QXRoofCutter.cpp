#include <apps/qx3d/geo/QXRoofCutter.h>

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>

namespace QXApp {

namespace {

using Corner = QXRoofCutter::Corner;

struct Edge {
  Corner m_First;
  Corner m_Second;

  double GetMinX() const { return std::min(m_First.x, m_Second.x); }
  double GetMaxX() const { return std::max(m_First.x, m_Second.x); }
  /// Whether both corners lie strictly on one side of the line through another edge.
  bool IsBeside(Edge const& other) const {
    double const dFirst = GetSide(other, m_First);
    double const dSecond = GetSide(other, m_Second);
    return (dFirst > 0.0 && dSecond > 0.0) || (dFirst < 0.0 && dSecond < 0.0);
  }
  /// Whether they share a corner, as neighbours in a ring do, and part there.
  bool PartsFrom(Edge const& other) const {
    if (IsSame(m_First, other.m_First)) return Part(m_First, m_Second, other.m_Second);
    if (IsSame(m_First, other.m_Second)) return Part(m_First, m_Second, other.m_First);
    if (IsSame(m_Second, other.m_First)) return Part(m_Second, m_First, other.m_Second);
    return IsSame(m_Second, other.m_Second) && Part(m_Second, m_First, other.m_First);
  }
  bool IsApartInY(Edge const& other) const {
    return std::max(m_First.y, m_Second.y) < std::min(other.m_First.y, other.m_Second.y) ||
           std::min(m_First.y, m_Second.y) > std::max(other.m_First.y, other.m_Second.y);
  }

private:
  static bool IsSame(Corner const& a, Corner const& b) { return a.x == b.x && a.y == b.y; }
  /// Whether the ways from a corner to two others do not lie on each other.
  static bool Part(Corner const& from, Corner const& a, Corner const& b) {
    double const dAlong = (a.x - from.x) * (b.x - from.x) + (a.y - from.y) * (b.y - from.y);
    double const dAcross = (a.x - from.x) * (b.y - from.y) - (a.y - from.y) * (b.x - from.x);
    return !(dAlong > 0.0 && std::abs(dAcross) <= 1e-9 * dAlong);
  }
  static double GetSide(Edge const& line, Corner const& c) {
    return (line.m_Second.x - line.m_First.x) * (c.y - line.m_First.y) -
           (line.m_Second.y - line.m_First.y) * (c.x - line.m_First.x);
  }
};

/// Whether more than so many pairs of edges cross or touch. Looks only at pairs that overlap in x.
bool CrossesMoreThan(std::size_t nMax, std::vector<std::vector<Corner>> const& vecRings) {
  std::vector<Edge> vecEdges;
  for (std::vector<Corner> const& vecRing : vecRings)
    for (std::size_t i = 0; i < vecRing.size(); ++i)
      vecEdges.push_back({vecRing[i], vecRing[(i + 1) % vecRing.size()]});
  std::ranges::sort(vecEdges, {}, &Edge::GetMinX);
  std::size_t nCrossings = 0;
  for (auto it = vecEdges.begin(); it != vecEdges.end(); ++it) {
    double const dMaxX = it->GetMaxX();
    for (auto other = it + 1; other != vecEdges.end() && other->GetMinX() <= dMaxX; ++other) {
      if (it->IsApartInY(*other) || it->PartsFrom(*other) || it->IsBeside(*other) || other->IsBeside(*it)) continue;
      if (++nCrossings > nMax) return true;
    }
  }
  return false;
}

}  // namespace

/// Data of the tessellator, whose calls all come with a pointer to it.
struct QXRoofCutter::Core {
  Core() : m_pTessellator(gluNewTess()) {
    if (m_pTessellator == nullptr) throw std::bad_alloc();
    using Callback = void (*)();
    gluTessCallback(m_pTessellator, GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(&Core::TakeVertex));
    gluTessCallback(m_pTessellator, GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(&Core::TakeCrossing));
    gluTessCallback(m_pTessellator, GLU_TESS_ERROR_DATA, reinterpret_cast<Callback>(&Core::TakeError));
    // Asked about edges, the tessellator gives single triangles and no fans or strips.
    gluTessCallback(m_pTessellator, GLU_TESS_EDGE_FLAG_DATA, reinterpret_cast<Callback>(&Core::TakeEdge));
    gluTessProperty(m_pTessellator, GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
    gluTessNormal(m_pTessellator, 0.0, 0.0, 1.0);
  }
  Core(Core const&) = delete;
  Core& operator=(Core const&) = delete;
  ~Core() { gluDeleteTess(m_pTessellator); }

  // Vertices are handed through as their number.
  static void* ToPointer(std::size_t nVertex) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(nVertex)); }

  static void TakeVertex(void* pVertex, void* pCore) {
    static_cast<Core*>(pCore)->m_vecTriangles.push_back(
        static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(pVertex)));
  }
  static void TakeCrossing(double const* pCoords, void* const*, float const*, void** pVertex, void* pCore) {
    Core& core = *static_cast<Core*>(pCore);
    *pVertex = ToPointer(core.m_vecCorners.size());
    core.m_vecCorners.push_back({pCoords[0], pCoords[1]});
    ++core.m_nCrossings;
  }
  static void TakeError(GLenum, void* pCore) { static_cast<Core*>(pCore)->m_bFailed = true; }
  static void TakeEdge(GLboolean, void*) {}

  GLUtesselator* m_pTessellator;
  std::vector<Corner> m_vecCorners;
  std::vector<unsigned int> m_vecTriangles;
  std::size_t m_nCrossings = 0;
  bool m_bFailed = false;
};

QXRoofCutter::QXRoofCutter() : m_pCore(std::make_unique<Core>()) {}
QXRoofCutter::~QXRoofCutter() = default;

bool QXRoofCutter::Cut(std::vector<std::vector<Corner>> const& vecRings) {
  Core& core = *m_pCore;
  core.m_vecCorners.clear();
  core.m_vecTriangles.clear();
  core.m_bFailed = false;
  if (CrossesMoreThan(MaxCrossings, vecRings)) return false;
  gluTessBeginPolygon(core.m_pTessellator, &core);
  for (std::vector<Corner> const& vecRing : vecRings) {
    gluTessBeginContour(core.m_pTessellator);
    for (Corner const& corner : vecRing) {
      double dCoords[3] = {corner.x, corner.y, 0.0};
      gluTessVertex(core.m_pTessellator, dCoords, Core::ToPointer(core.m_vecCorners.size()));
      core.m_vecCorners.push_back(corner);
    }
    gluTessEndContour(core.m_pTessellator);
  }
  gluTessEndPolygon(core.m_pTessellator);
  return !core.m_bFailed && core.m_vecTriangles.size() % 3 == 0;
}

std::vector<QXRoofCutter::Corner> const& QXRoofCutter::GetCorners() const {
  return m_pCore->m_vecCorners;
}

std::vector<unsigned int> const& QXRoofCutter::GetTriangles() const {
  return m_pCore->m_vecTriangles;
}

std::size_t QXRoofCutter::GetCrossingCount() const {
  return m_pCore->m_nCrossings;
}

}  // namespace QXApp
