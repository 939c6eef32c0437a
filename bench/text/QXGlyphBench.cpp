// QXTrueType::GetBitmapData beside the plain sequence of FreeType calls, in one run, pictures compared byte for byte.
//
// Characters of a script and sizes from 8 to 48 points in no order, no request twice. Engine and plain sequence take
// turns; of each request the quickest pass counts, and the sums are compared: other programs on the machine disturb
// single requests, not all passes of one. A pair is one character plain and as halo, beside two plain sequences.

#include "../../tests/text/QXPlainGlyph.h"

#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <benchmark/benchmark.h>

#include <time.h>

#include <algorithm>
#include <limits>
#include <random>
#include <set>

namespace {

using namespace QXC;

constexpr int REQUESTS = 500;
constexpr int PASSES = 9;
constexpr int SMALLEST = 8;
constexpr int LARGEST = 48;

struct Case {
  char const* m_szName;
  char const* m_szFile;
  int m_nFace;
  unsigned int m_nFirst;
  unsigned int m_nLast;
};

constexpr Case CASES[] = {
    {"ascii-dejavu", "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 0, 0x21, 0x7E},
    {"ascii-liberation", "/usr/share/fonts/truetype/liberation2/LiberationSans-Regular.ttf", 0, 0x21, 0x7E},
    {"cjk-truetype-microhei", "/usr/share/fonts/truetype/wqy/wqy-microhei.ttc", 0, 0x4E00, 0x9FA5},
    {"cjk-truetype-zenhei", "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc", 0, 0x4E00, 0x9FA5},
    {"cjk-truetype-uming", "/usr/share/fonts/truetype/arphic/uming.ttc", 0, 0x4E00, 0x9FA5},
    {"cjk-cff-noto-sans", "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc", 2, 0x4E00, 0x9FA5},
    {"ascii-cff-noto-sans", "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc", 2, 0x21, 0x7E},
};

double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

class Bench {
public:
  explicit Bench(Case const& fonts) : m_Plain(fonts.m_szFile, fonts.m_nFace) {
    FT_Face face = nullptr;
    if (FT_New_Face(m_Fonts.m_pLibrary, fonts.m_szFile, fonts.m_nFace, &face) != 0 || !m_Plain.m_pFace) return;
    QdcArray<FT_Face>& faces = m_Fonts.m_dictFaces[L"f"];
    faces.SetSize(4);
    faces[0] = face;
    std::mt19937 random(20261121);
    std::set<std::pair<unsigned int, int>> known;
    while (m_arrRequests.size() < REQUESTS) {
      unsigned int const character =
          fonts.m_nFirst + static_cast<unsigned int>(random()) % (fonts.m_nLast - fonts.m_nFirst + 1);
      int const size = SMALLEST + static_cast<int>(random() % (LARGEST - SMALLEST + 1));
      if (FT_Get_Char_Index(face, character) == 0 || !known.insert({character, size}).second) continue;
      m_arrRequests.push_back({character, size});
    }
  }

  std::size_t GetCount() const { return m_arrRequests.size(); }

  std::unique_ptr<QXCharBitmapData> Ours(std::size_t i, bool bHalo) {
    QXTextStyle style;
    style.SetFaceName(L"f");
    style.SetSize(m_arrRequests[i].m_nSize);
    m_Fonts.SetTextStyle(style);
    return std::unique_ptr<QXCharBitmapData>(
        m_Fonts.GetBitmapData(static_cast<int>(m_arrRequests[i].m_nCharacter), bHalo));
  }
  std::unique_ptr<QXPlain::Picture> Plain(std::size_t i, bool bHalo) {
    return m_Plain.Draw(m_arrRequests[i].m_nCharacter, m_arrRequests[i].m_nSize, false, bHalo);
  }

  bool IsSame(std::size_t i, bool bHalo) {
    auto const ours = Ours(i, bHalo);
    auto const plain = Plain(i, bHalo);
    return ours && plain && ours->m_nWidth == plain->m_nWidth && ours->m_nHeight == plain->m_nHeight &&
           ours->m_nAdvance == plain->m_nAdvance && ours->m_nBearingX == plain->m_nBearingX &&
           ours->m_nBearingY == plain->m_nBearingY &&
           std::equal(plain->m_arrPixels.begin(), plain->m_arrPixels.end(), ours->m_pData);
  }

private:
  struct Request {
    unsigned int m_nCharacter;
    int m_nSize;
  };

  QXTrueType m_Fonts;
  QXPlain::Font m_Plain;
  std::vector<Request> m_arrRequests;
};

/// The sum over all requests of the quickest pass of each, and what a single pass took.
template <class Draw>
class Sum {
public:
  explicit Sum(std::size_t nCount, Draw draw)
      : m_arrBest(nCount, std::numeric_limits<double>::max()), m_Draw(std::move(draw)) {}
  void Pass() {
    for (std::size_t i = 0; i < m_arrBest.size(); ++i) {
      double const start = ThreadSeconds();
      m_Draw(i);
      m_arrBest[i] = std::min(m_arrBest[i], ThreadSeconds() - start);
    }
  }
  double Mean() const {
    double sum = 0;
    for (double const best : m_arrBest) sum += best;
    return sum / static_cast<double>(m_arrBest.size());
  }

private:
  std::vector<double> m_arrBest;
  Draw m_Draw;
};

enum Form : int { PLAIN = 1, HALO = 2, PAIR = 3 };

void Run(benchmark::State& state, Case const& fonts, Form eForm) {
  Bench bench(fonts);
  if (bench.GetCount() == 0) {
    state.SkipWithError("font is missing");
    return;
  }
  for (std::size_t i = 0; i < bench.GetCount(); ++i) {
    if (bench.IsSame(i, false) && bench.IsSame(i, true)) continue;
    state.SkipWithError("pictures differ");
    return;
  }
  auto const each = [eForm](auto const& draw) {
    if ((eForm & PLAIN) != 0) draw(false);
    if ((eForm & HALO) != 0) draw(true);
  };
  Sum ours(bench.GetCount(),
      [&](std::size_t i) { each([&](bool bHalo) { benchmark::DoNotOptimize(bench.Ours(i, bHalo)); }); });
  Sum plain(bench.GetCount(),
      [&](std::size_t i) { each([&](bool bHalo) { benchmark::DoNotOptimize(bench.Plain(i, bHalo)); }); });
  for (auto _ : state) {
    for (int pass = 0; pass < PASSES; ++pass) {
      plain.Pass();
      ours.Pass();
    }
    state.SetIterationTime(ours.Mean());
  }
  state.counters["plain_us"] = plain.Mean() * 1e6;
  state.counters["ratio"] = ours.Mean() / plain.Mean();
}

[[maybe_unused]] bool const g_bRegistered = [] {
  for (Case const& fonts : CASES) {
    for (auto const& [szName, eForm] : {std::pair{"plain", PLAIN}, {"halo", HALO}, {"pair", PAIR}}) {
      std::string const name = std::string("QXTrueType/GetBitmapData/") + fonts.m_szName + "/" + szName;
      benchmark::RegisterBenchmark(
          name.c_str(), [&fonts, form = eForm](benchmark::State& state) { Run(state, fonts, form); })
          ->UseManualTime()
          ->Iterations(1)
          ->Unit(benchmark::kMicrosecond);
    }
  }
  return true;
}();

}  // namespace
