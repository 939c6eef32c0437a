// Look-ups of a texture by an 81-character path, the only thing of the cache that runs every frame.
//
// Every case times three passes over the same names in turn: the manager's look-up, one full comparison of each name
// with the equal key in the map (what any look-up must do at least), and std::map::find over the same entries. The
// quickest pass of each counts, since other programs only ever add to one; time is that of the thread. Names and keys
// are different strings in memory, as a host's are. The answers are checked before anything is timed.
//
// "asked" is the number of different names: 500 as in a frame, again and again and in no order; all 20,000 in no order,
// where names, keys and nodes come from far memory and the comparison alone costs four times as much; 0 all names in
// the order of the map. "comparisons" is the look-up over the comparison, "times_of_500" over that among 500 entries.

#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <bench/QXBenchLookUps.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <random>
#include <utility>
#include <vector>

using namespace QXC;

namespace {

using Timing = QXBench::LookUpTiming;

constexpr unsigned int Seed = 20261121;

class Manager : public QXTextureManager {
public:
  using QXTextureManager::FindCacheEntry;
  using QXTextureManager::m_mapCache;

  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char) override {
    QXTextureCacheEntry* const pEntry = FindCacheEntry(strName);
    return pEntry ? pEntry->GetTexture() : nullptr;
  }
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override {
    return FindCacheEntry(strName) ? 1 : 0;
  }
};

QdcUnicodeString PathOf(std::size_t nNumber) {
  QdcUnicodeString strPath;
  strPath.Format(L"/srv/gis/stores/somewhere/city/textures/facades/level17/row%05u/tile_%07u.png",
      static_cast<unsigned int>(nNumber / 100), static_cast<unsigned int>(nNumber));
  return strPath;
}

/// A manager with nCount entries, the names that are asked for and, in the same order, where the map has them.
struct Store {
  Store(std::size_t nCount, std::size_t nAsked) {
    for (std::size_t i = 0; i < nCount; ++i) {
      QdcUnicodeString const strPath = PathOf(i);
      m_Manager.AddToCache(strPath, new QXTextureCacheEntry());
      m_arrNames.push_back(strPath);
    }
    if (nAsked != 0) {
      std::shuffle(m_arrNames.begin(), m_arrNames.end(), std::mt19937(Seed));
      m_arrNames.resize(nAsked);
    }
    m_mapPlain = std::as_const(m_Manager.m_mapCache);
    for (QdcUnicodeString const& strName : m_arrNames) m_arrKeys.push_back(&m_Manager.m_mapCache.find(strName)->first);
  }

  /// Every name finds its own entry, a name beside it none.
  bool IsRight() const {
    return std::all_of(m_arrNames.begin(), m_arrNames.end(), [this](QdcUnicodeString const& strName) {
      QdcUnicodeString strOther = strName;
      strOther[40] = L'#';
      return strName.GetLength() == 81 && m_Manager.FindCacheEntry(strName) == m_mapPlain.at(strName) &&
             !m_Manager.FindCacheEntry(strOther);
    });
  }

  Manager m_Manager;
  std::map<QdcUnicodeString, QXTextureCacheEntry*> m_mapPlain;
  std::vector<QdcUnicodeString> m_arrNames;
  std::vector<QdcUnicodeString const*> m_arrKeys;
};

struct Result {
  Timing m_LookUp;
  Timing m_Comparison;
  Timing m_Map;
};

Result Measure(Store const& store) {
  Result result;
  std::size_t const nCount = store.m_arrNames.size();
  for (int nRound = 0; nRound < Timing::ms_nRounds; ++nRound) {
    result.m_LookUp.Pass(nCount, [&](std::size_t i) { return store.m_Manager.FindCacheEntry(store.m_arrNames[i]); });
    result.m_Comparison.Pass(nCount, [&](std::size_t i) { return store.m_arrNames[i] == *store.m_arrKeys[i]; });
    result.m_Map.Pass(nCount, [&](std::size_t i) { return store.m_mapPlain.find(store.m_arrNames[i])->second; });
  }
  return result;
}

void Hit(benchmark::State& state) {
  auto const nAsked = static_cast<std::size_t>(state.range(1));
  Store const store(static_cast<std::size_t>(state.range(0)), nAsked);
  Store const small(500, std::min<std::size_t>(nAsked, 500));
  if (!store.IsRight()) {
    state.SkipWithError("the cache finds the wrong entry");
    return;
  }
  for ([[maybe_unused]] auto _ : state) {
    Result const result = Measure(store);
    Result const smallResult = Measure(small);
    state.SetIterationTime(result.m_LookUp.m_dBest * 1e-9);
    state.counters["ns"] = result.m_LookUp.m_dBest;
    state.counters["comparison_ns"] = result.m_Comparison.m_dBest;
    state.counters["map_ns"] = result.m_Map.m_dBest;
    state.counters["comparisons"] = result.m_LookUp.m_dBest / result.m_Comparison.m_dBest;
    state.counters["times_of_500"] = result.m_LookUp.m_dBest / smallResult.m_LookUp.m_dBest;
    state.counters["map_over"] = result.m_Map.m_dBest / result.m_LookUp.m_dBest;
  }
}

BENCHMARK(Hit)
    ->ArgNames({"entries", "asked"})
    ->Args({500, 500})
    ->Args({20000, 500})
    ->Args({20000, 0})
    ->Args({20000, 20000})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kNanosecond);

}  // namespace
