// Tiles for glyphs, one after the other, as an atlas gets them while a map is being labelled.
//
// "fill" places 100,000 tiles, which takes about 100 pages, and lets stb_rect_pack place the same boxes on its newest
// page in turn; pages are made inside the time on both sides. "churn" releases any tile and places another 100,000
// times on the full pages. "plain" asks the recursion over the marks, as in the tests, for the places of a few tiles on
// those pages. Every case checks that the recursion gives the same places: "fill" for the first 10,000 tiles, "churn" for
// 300 pairs on the full pages, "plain" for what it asks.
//
// The memory of a page is fresh from the system, as in a program that labels its first map. Times are those of the
// thread, in nanoseconds a tile, the quickest of several passes, since other programs only ever add to one.
// Allocator and rival take turns.

#include <QxGraphics3D/atlas/detail/QXQuadtreeAtlas.h>
#include <bench/QXBenchClock.h>
#include <tests/atlas/QXPlainQuadtree.h>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wunused-function"
#define STB_RECT_PACK_IMPLEMENTATION
#define STBRP_STATIC
#include <stb/stb_rect_pack.h>
#pragma GCC diagnostic pop

using namespace QXC;
using namespace QXC::detail;
using QXBench::ThreadSeconds;

namespace {

constexpr unsigned int kSeed = 20261121;
constexpr std::size_t kTiles = 100000;
constexpr int kPasses = 9;

struct Box {
  int m_nWidth;
  int m_nHeight;
};

/// The characters from ! to ~ in DejaVu Sans at 32 pixels, as FreeType renders them.
constexpr Box g_arrBoxes[] = {{4, 23}, {9, 9}, {23, 23}, {16, 30}, {28, 23}, {22, 23}, {3, 9}, {8, 29}, {8, 29},
    {16, 14}, {21, 21}, {6, 8}, {9, 3}, {4, 4}, {11, 26}, {17, 23}, {15, 23}, {16, 23}, {16, 23}, {18, 23}, {16, 23},
    {17, 23}, {16, 23}, {17, 23}, {17, 23}, {5, 17}, {6, 21}, {21, 17}, {21, 10}, {21, 17}, {13, 23}, {28, 28},
    {22, 23}, {17, 23}, {20, 23}, {20, 23}, {16, 23}, {14, 23}, {22, 23}, {18, 23}, {4, 23}, {9, 29}, {19, 23},
    {15, 23}, {22, 23}, {18, 23}, {23, 23}, {16, 23}, {23, 27}, {19, 23}, {17, 23}, {21, 23}, {19, 23}, {22, 23},
    {30, 23}, {21, 23}, {21, 23}, {20, 23}, {8, 29}, {11, 26}, {7, 29}, {21, 9}, {18, 3}, {9, 6}, {16, 18}, {17, 24},
    {15, 18}, {17, 24}, {17, 18}, {12, 24}, {17, 25}, {16, 24}, {3, 24}, {7, 31}, {17, 24}, {3, 24}, {27, 18}, {16, 18},
    {17, 18}, {17, 25}, {17, 25}, {12, 18}, {15, 18}, {12, 23}, {16, 18}, {18, 18}, {24, 18}, {18, 18}, {18, 25},
    {15, 18}, {13, 30}, {3, 32}, {13, 30}, {21, 7}};

/// Those characters at 12 to 40 pixels, boxes of 8 to 40 only.
std::vector<Box> MakeBoxes(std::size_t nCount) {
  std::mt19937 random(kSeed);
  std::vector<Box> arrBoxes;
  while (arrBoxes.size() < nCount) {
    Box const& box = g_arrBoxes[random() % std::size(g_arrBoxes)];
    int const nPixels = 12 + 4 * static_cast<int>(random() % 8);
    Box const scaled{(box.m_nWidth * nPixels + 31) / 32, (box.m_nHeight * nPixels + 31) / 32};
    int const nEdge = std::max(scaled.m_nWidth, scaled.m_nHeight);
    if (nEdge >= 8 && nEdge <= 40) arrBoxes.push_back(scaled);
  }
  return arrBoxes;
}

unsigned int SizeOf(Box const& box) {
  // One pixel more than the box, so that neighbours do not bleed into each other.
  return static_cast<unsigned int>(std::max(box.m_nWidth, box.m_nHeight)) + 1;
}

/// An atlas as its manager drives it.
class Atlas {
public:
  explicit Atlas(QXQuadtreeRules const& rules) : m_Rules(rules), m_Atlas(rules) {}

  QXQuadtreePlace Place(unsigned int nSize) {
    QXQuadtreePlace place;
    if (!m_Atlas.Place({.m_nSize = nSize, .m_nCurrent = m_nCurrent}, place)) {
      m_Atlas.PlaceIn(m_Atlas.AddPage(), nSize, place);
    }
    m_nCurrent = place.m_nIndex;
    return place;
  }
  void Release(QXQuadtreePlace const& place) { m_Atlas.Release(place); }

  QXQuadtreeRules const& m_Rules;
  QXQuadtreeAtlas m_Atlas;
  int m_nCurrent = 0;
};

/// The same by the recursion.
class Plain {
public:
  explicit Plain(Atlas const& atlas)
      : m_Plain(atlas.m_Rules.m_bTopLeftOnly ? QXPlainKind::Glyph : QXPlainKind::Image, atlas.m_Rules.m_nPageSize),
        m_nCurrent(atlas.m_nCurrent) {
    for (int nIndex = -1; (nIndex = atlas.m_Atlas.GetPageFrom(nIndex + 1)) != -1;) {
      QXQuadtreePage const& page = *atlas.m_Atlas.GetPage(nIndex);
      std::vector<unsigned char>& arrGrid = m_Plain.m_mapPages[m_Plain.AddPage(0, 0)].m_arrGrid;
      std::copy_n(page.GetGrid(), arrGrid.size(), arrGrid.begin());
    }
  }

  QXQuadtreePlace Place(unsigned int nSize) {
    QXPlainTile tile;
    if (!m_Plain.Place(nSize, 0, 0, m_nCurrent, tile)) m_Plain.PlaceIn(m_Plain.AddPage(0, 0), nSize, tile);
    m_nCurrent = tile.m_nIndex;
    return {tile.m_nRow, tile.m_nCol, tile.m_nLod, tile.m_nIndex};
  }
  void Release(QXQuadtreePlace const& place) {
    m_Plain.Release({place.m_nRow, place.m_nCol, place.m_nLod, place.m_nIndex});
  }

  QXPlainQuadtree m_Plain;
  int m_nCurrent;
};

/// stb_rect_pack, a page at a time; boxes go to the newest.
class Rival {
public:
  Rival() { AddPage(); }

  void Place(Box const& box) {
    stbrp_rect rect{};
    rect.w = box.m_nWidth + 1;
    rect.h = box.m_nHeight + 1;
    if (stbrp_pack_rects(&m_arrPages.back()->m_Context, &rect, 1) == 0) {
      AddPage();
      stbrp_pack_rects(&m_arrPages.back()->m_Context, &rect, 1);
    }
    benchmark::DoNotOptimize(rect);
  }
  std::size_t GetPageCount() const { return m_arrPages.size(); }

private:
  struct Page {
    stbrp_context m_Context;
    std::array<stbrp_node, 1024> m_arrNodes;
  };

  void AddPage() {
    m_arrPages.push_back(std::make_unique<Page>());
    stbrp_init_target(&m_arrPages.back()->m_Context, 1024, 1024, m_arrPages.back()->m_arrNodes.data(), 1024);
  }

  std::vector<std::unique_ptr<Page>> m_arrPages;
};

bool AgreesWithPlain(QXQuadtreeRules const& rules, std::vector<Box> const& arrBoxes, std::size_t nCount) {
  Atlas atlas(rules);
  Plain plain(atlas);
  return std::all_of(arrBoxes.begin(), arrBoxes.begin() + static_cast<std::ptrdiff_t>(nCount),
      [&](Box const& box) { return atlas.Place(SizeOf(box)) == plain.Place(SizeOf(box)); });
}

struct Quickest {
  double m_dSeconds = std::numeric_limits<double>::infinity();
  void Take(double dSeconds) { m_dSeconds = std::min(m_dSeconds, dSeconds); }
  double NanosecondsEach(std::size_t nCount) const { return 1e9 * m_dSeconds / static_cast<double>(nCount); }
};

void Fill(benchmark::State& state, QXQuadtreeRules const& rules) {
  std::vector<Box> const arrBoxes = MakeBoxes(kTiles);
  if (!AgreesWithPlain(rules, arrBoxes, 10000)) return state.SkipWithError("the places are not those of the recursion");
  Quickest all;
  Quickest rivalAll;
  std::array<Quickest, 10> arrTenths;
  std::size_t nPages = 0;
  std::size_t nRivalPages = 0;
  for (auto _ : state) {
    for (int nPass = 0; nPass < kPasses; ++nPass) {
      Atlas atlas(rules);
      double const dStart = ThreadSeconds();
      double dBefore = dStart;
      for (std::size_t nTenth = 0; nTenth < 10; ++nTenth) {
        for (std::size_t i = nTenth * kTiles / 10; i < (nTenth + 1) * kTiles / 10; ++i) {
          benchmark::DoNotOptimize(atlas.Place(SizeOf(arrBoxes[i])));
        }
        double const dNow = ThreadSeconds();
        arrTenths[nTenth].Take(dNow - dBefore);
        dBefore = dNow;
      }
      all.Take(ThreadSeconds() - dStart);
      nPages = static_cast<std::size_t>(atlas.m_Atlas.GetNextIndex());

      double const dRivalStart = ThreadSeconds();
      Rival rival;
      for (Box const& box : arrBoxes) rival.Place(box);
      rivalAll.Take(ThreadSeconds() - dRivalStart);
      nRivalPages = rival.GetPageCount();
    }
  }
  state.counters["ns"] = all.NanosecondsEach(kTiles);
  state.counters["stb_ns"] = rivalAll.NanosecondsEach(kTiles);
  state.counters["times_stb"] = all.m_dSeconds / rivalAll.m_dSeconds;
  state.counters["last_by_first_tenth"] = arrTenths[9].m_dSeconds / arrTenths[0].m_dSeconds;
  state.counters["pages"] = static_cast<double>(nPages);
  state.counters["stb_pages"] = static_cast<double>(nRivalPages);
  double dArea = 0.0;
  for (Box const& box : arrBoxes) dArea += (box.m_nWidth + 1.0) * (box.m_nHeight + 1.0);
  state.counters["covered"] = dArea / (1024.0 * 1024.0 * static_cast<double>(nPages));
}

std::vector<QXQuadtreePlace> FillWith(Atlas& atlas, std::vector<Box> const& arrBoxes) {
  std::vector<QXQuadtreePlace> arrPlaces;
  for (Box const& box : arrBoxes) arrPlaces.push_back(atlas.Place(SizeOf(box)));
  return arrPlaces;
}

bool ChurnAgreesWithPlain(QXQuadtreeRules const& rules, std::vector<Box> const& arrBoxes, std::size_t nCount) {
  Atlas atlas(rules);
  std::vector<QXQuadtreePlace> arrPlaces = FillWith(atlas, {arrBoxes.begin(), arrBoxes.begin() + kTiles});
  Plain plain(atlas);
  std::mt19937 random(kSeed + 1);
  for (std::size_t i = kTiles; i < kTiles + nCount; ++i) {
    QXQuadtreePlace& place = arrPlaces[random() % kTiles];
    atlas.Release(place);
    plain.Release(place);
    place = atlas.Place(SizeOf(arrBoxes[i]));
    if (place != plain.Place(SizeOf(arrBoxes[i]))) return false;
  }
  return true;
}

void Churn(benchmark::State& state, QXQuadtreeRules const& rules) {
  std::vector<Box> const arrBoxes = MakeBoxes(2 * kTiles);
  if (!ChurnAgreesWithPlain(rules, arrBoxes, 300)) {
    return state.SkipWithError("the places are not those of the recursion");
  }
  std::vector<Box> const arrFirst(arrBoxes.begin(), arrBoxes.begin() + kTiles);
  Quickest fill;
  Quickest churn;
  for (auto _ : state) {
    for (int nPass = 0; nPass < kPasses; ++nPass) {
      Atlas atlas(rules);
      std::vector<QXQuadtreePlace> arrPlaces;
      arrPlaces.reserve(kTiles);
      double const dStart = ThreadSeconds();
      for (Box const& box : arrFirst) arrPlaces.push_back(atlas.Place(SizeOf(box)));
      double const dMiddle = ThreadSeconds();
      std::mt19937 random(kSeed + 1);
      for (std::size_t i = kTiles; i < arrBoxes.size(); ++i) {
        QXQuadtreePlace& place = arrPlaces[random() % kTiles];
        atlas.Release(place);
        place = atlas.Place(SizeOf(arrBoxes[i]));
      }
      churn.Take(ThreadSeconds() - dMiddle);
      fill.Take(dMiddle - dStart);
    }
  }
  state.counters["pair_ns"] = churn.NanosecondsEach(kTiles);
  state.counters["fill_ns"] = fill.NanosecondsEach(kTiles);
  // A pair is two operations, a tile of "fill" one.
  state.counters["operation_by_fill"] = 0.5 * churn.m_dSeconds / fill.m_dSeconds;
}

void AgainstPlain(benchmark::State& state, QXQuadtreeRules const& rules) {
  constexpr std::size_t nAsked = 400;
  std::vector<Box> const arrBoxes = MakeBoxes(kTiles + nAsked);
  Atlas atlas(rules);
  FillWith(atlas, {arrBoxes.begin(), arrBoxes.begin() + kTiles});
  Plain plain(atlas);
  double dPlain = 0.0;
  double dOurs = 0.0;
  for (auto _ : state) {
    std::vector<QXQuadtreePlace> arrOurs;
    std::vector<QXQuadtreePlace> arrPlain;
    arrOurs.reserve(nAsked);
    arrPlain.reserve(nAsked);
    double const dStart = ThreadSeconds();
    for (std::size_t i = kTiles; i < arrBoxes.size(); ++i) arrOurs.push_back(atlas.Place(SizeOf(arrBoxes[i])));
    double const dMiddle = ThreadSeconds();
    for (std::size_t i = kTiles; i < arrBoxes.size(); ++i) arrPlain.push_back(plain.Place(SizeOf(arrBoxes[i])));
    dPlain = ThreadSeconds() - dMiddle;
    dOurs = dMiddle - dStart;
    if (arrOurs != arrPlain) return state.SkipWithError("the places are not those of the recursion");
  }
  state.counters["ns"] = 1e9 * dOurs / static_cast<double>(nAsked);
  state.counters["plain_ns"] = 1e9 * dPlain / static_cast<double>(nAsked);
  state.counters["times_faster"] = dPlain / dOurs;
  state.counters["pages"] = static_cast<double>(atlas.m_Atlas.GetNextIndex());
}

/// The C library keeps large blocks that were freed, and from then on a page costs either the system's zeroed memory or
/// the zeroing of an old block, whatever lies there. One of the two, always.
[[maybe_unused]] int const g_nFreshMemory = mallopt(M_MMAP_THRESHOLD, 1 << 20);

BENCHMARK_CAPTURE(Fill, images, g_ImageAtlasRules)->Name("QXQuadtreeAtlas/fill/images")->Iterations(1);
BENCHMARK_CAPTURE(Fill, glyphs, g_GlyphAtlasRules)->Name("QXQuadtreeAtlas/fill/glyphs")->Iterations(1);
BENCHMARK_CAPTURE(Churn, images, g_ImageAtlasRules)->Name("QXQuadtreeAtlas/churn/images")->Iterations(1);
BENCHMARK_CAPTURE(Churn, glyphs, g_GlyphAtlasRules)->Name("QXQuadtreeAtlas/churn/glyphs")->Iterations(1);
BENCHMARK_CAPTURE(AgainstPlain, images, g_ImageAtlasRules)->Name("QXQuadtreeAtlas/plain/images")->Iterations(1);
BENCHMARK_CAPTURE(AgainstPlain, glyphs, g_GlyphAtlasRules)->Name("QXQuadtreeAtlas/plain/glyphs")->Iterations(1);

}  // namespace
