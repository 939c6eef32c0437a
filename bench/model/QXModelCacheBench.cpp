// Look-ups of a model by an 81-character path: what each placement of a scene with many models costs at least.
//
// Every case times three passes over the same names in turn: the manager's look-up with its shared pointer, one full
// comparison of each name with the equal key in the dictionary (what any look-up must do at least), and the
// dictionary's own look-up. The quickest pass of each counts, since other programs only ever add to one; time is that
// of the thread. Names and keys are different strings in memory, as a host's are. The answers are checked before
// anything is timed.
//
// "asked" is the number of different names: 500 as of one scene, again and again and in no order; 0 all names in the
// order of the dictionary; all 20,000 in no order, where names, keys and nodes come from far memory. "comparisons" is
// the look-up over the comparison.

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/model/QXModelData.h>
#include <QxGraphics3D/model/QXModelManager.h>

#include <bench/QXBenchLookUps.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <vector>

using namespace QXC;

namespace {

using Timing = QXBench::LookUpTiming;

constexpr unsigned int Seed = 20261121;

class Manager : public QXModelManager {
public:
  using QXModelManager::m_dictModels;
};

QdcUnicodeString PathOf(std::size_t nNumber) {
  QdcUnicodeString strPath;
  strPath.Format(L"/srv/gis/stores/somewhere/city/models/greenery/level17/row%05u/tree_%07u.gltf",
      static_cast<unsigned int>(nNumber / 100), static_cast<unsigned int>(nNumber));
  return strPath;
}

/// A manager with nCount models, the names that are asked for and, in the same order, the dictionary's keys.
struct Store {
  Store(std::size_t nCount, std::size_t nAsked) {
    ModelDataInfo info;
    for (std::size_t i = 0; i < nCount; ++i) {
      m_arrNames.push_back(PathOf(i));
      m_Manager.CreateManual(PathOf(i), &info);
    }
    if (nAsked != 0) {
      std::shuffle(m_arrNames.begin(), m_arrNames.end(), std::mt19937(Seed));
      m_arrNames.resize(nAsked);
    }
    for (QdcUnicodeString const& strName : m_arrNames)
      m_arrKeys.push_back(&m_Manager.m_dictModels.Find(strName)->first);
  }

  /// Every name finds its own model, a name beside it none.
  bool IsRight() const {
    return std::all_of(m_arrNames.begin(), m_arrNames.end(), [this](QdcUnicodeString const& strName) {
      QdcUnicodeString strOther = strName;
      strOther[40] = L'#';
      QXModelDataPtr const pModel = m_Manager.GetByFileName(strName);
      return strName.GetLength() == 81 && !pModel.IsNull() && pModel->GetModelDataInfo()->GetName() == strName &&
             m_Manager.GetByFileName(strOther).IsNull();
    });
  }

  Manager m_Manager;
  std::vector<QdcUnicodeString> m_arrNames;
  std::vector<QdcUnicodeString const*> m_arrKeys;
};

void Hit(benchmark::State& state) {
  Store const store(static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
  if (!store.IsRight()) {
    state.SkipWithError("the cache finds the wrong model");
    return;
  }
  std::size_t const nCount = store.m_arrNames.size();
  for ([[maybe_unused]] auto _ : state) {
    Timing lookUp;
    Timing exists;
    Timing comparison;
    Timing dict;
    for (int nRound = 0; nRound < Timing::ms_nRounds; ++nRound) {
      lookUp.Pass(
          nCount, [&](std::size_t i) { return store.m_Manager.GetByFileName(store.m_arrNames[i]).GetPointer(); });
      exists.Pass(nCount, [&](std::size_t i) { return store.m_Manager.IsExists(store.m_arrNames[i]); });
      comparison.Pass(nCount, [&](std::size_t i) { return store.m_arrNames[i] == *store.m_arrKeys[i]; });
      dict.Pass(nCount, [&](std::size_t i) { return store.m_Manager.m_dictModels.Find(store.m_arrNames[i]); });
    }
    state.SetIterationTime(lookUp.m_dBest * 1e-9);
    state.counters["ns"] = lookUp.m_dBest;
    state.counters["exists_ns"] = exists.m_dBest;
    state.counters["comparison_ns"] = comparison.m_dBest;
    state.counters["dict_ns"] = dict.m_dBest;
    state.counters["comparisons"] = lookUp.m_dBest / comparison.m_dBest;
    state.counters["dict_over"] = dict.m_dBest / lookUp.m_dBest;
  }
}

BENCHMARK(Hit)
    ->ArgNames({"models", "asked"})
    ->Args({500, 500})
    ->Args({20000, 500})
    ->Args({20000, 0})
    ->Args({20000, 20000})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kNanosecond);

}  // namespace
