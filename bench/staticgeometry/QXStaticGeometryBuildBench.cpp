// Merging gathered meshes beside copying the same bytes, and beside what other scene libraries do for it. Every pass is
// timed in turn with its rivals, and the quickest of each counts.
#include <malloc.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "../../tests/staticgeometry/QXMergeReference.h"
#include "../QXBenchClock.h"
#include "QXBenchCity.h"
#include "QXMergeRivals.h"

namespace {

using namespace QXC;
using QXBench::City;
using QXBench::Quickest;

constexpr std::size_t kMeshes = 10000;
constexpr unsigned int kVertices = 500;

City& GetCity() {
  static City s_city(kMeshes, kVertices);
  return s_city;
}

/// Whether large arrays come from memory that the process has and keeps, or from the system each time.
void KeepMemory(bool bKeep) {
  mallopt(M_MMAP_THRESHOLD, 65536);
  mallopt(M_MMAP_MAX, bKeep ? 0 : 1 << 20);
  mallopt(M_TRIM_THRESHOLD, bKeep ? -1 : 0);
  if (!bKeep) malloc_trim(0);
}

struct Bytes {
  void const* m_pBytes;
  std::size_t m_nNum;
};

void AppendPackage(std::vector<Bytes>& arrays, QXStaticGeometryBucket const& bucket) {
  QXVertexDataPackage const& p = *bucket.m_pVertexPackage;
  arrays.push_back({p.m_pVertices, sizeof(float) * p.m_nVertexDim * p.m_nVertexNum});
  arrays.push_back({p.m_pNormals, sizeof(float) * p.m_nNormalDim * p.m_nNormalNum});
  arrays.push_back({p.m_pTexCoords[0], sizeof(float) * p.m_nTexDims[0] * p.m_nTexCoordNums[0]});
  for (QXIndexPackage const* pPackage : bucket.m_mapLevelIndices.at(0))
    arrays.push_back({pPackage->m_pIndices, sizeof(short) * static_cast<std::size_t>(pPackage->m_nIndexNum)});
}

std::vector<Bytes> GetArrays(QXStaticGeometry const& geometry) {
  std::vector<Bytes> arrays;
  for (QXStaticGeometryBucket const* pBucket : geometry.m_vecBuckets16) AppendPackage(arrays, *pBucket);
  return arrays;
}

/// Blocks for copies of arrays, one each.
class Copies {
public:
  explicit Copies(std::vector<Bytes> const& arrays) : m_arrays(arrays) {
    for (Bytes const& array : arrays) m_blocks.emplace_back(new unsigned char[array.m_nNum]);
    Copy();
  }
  void Copy() {
    for (std::size_t i = 0; i < m_arrays.size(); ++i)
      std::memcpy(m_blocks[i].get(), m_arrays[i].m_pBytes, m_arrays[i].m_nNum);
    benchmark::ClobberMemory();
  }

private:
  std::vector<Bytes> m_arrays;
  std::vector<std::unique_ptr<unsigned char[]>> m_blocks;
};

/// All bytes of the arrays in one block, and another one for a copy.
class Block {
public:
  explicit Block(std::vector<Bytes> const& arrays) {
    for (Bytes const& array : arrays) m_nNum += array.m_nNum;
    m_from.assign(m_nNum, 1);
    m_to.assign(m_nNum, 2);
  }
  void Copy() {
    std::memcpy(m_to.data(), m_from.data(), m_nNum);
    benchmark::ClobberMemory();
  }
  std::size_t m_nNum = 0;

private:
  std::vector<unsigned char> m_from;
  std::vector<unsigned char> m_to;
};

/// A second merge finds the state of the first: the vertex arrays are made anew each time anyway.
void DropIndices(QXStaticGeometry& geometry) {
  for (QXStaticGeometryBucket* pBucket : geometry.m_vecBuckets16) {
    for (auto const& [level, packages] : pBucket->m_mapLevelIndices) {
      for (QXIndexPackage* pPackage : packages) delete pPackage;
    }
    pBucket->m_mapLevelIndices.clear();
  }
}

double PerVertex(double dSeconds) {
  return 1e9 * dSeconds / (static_cast<double>(kMeshes) * kVertices);
}

/// Empty if the merged geometry is what the literal reference makes of the same meshes.
std::string CompareWithReference(QXStaticGeometry const& geometry, int nType) {
  QXStaticGeometry expected;
  GetCity().AddTo(expected, nType);
  MergeByReference(expected, GetCity().GetBase(), 0);
  return CompareMerged(geometry, expected);
}

void MergeIntoFreshMemory(benchmark::State& state, int nType) {
  City& city = GetCity();
  KeepMemory(false);
  Quickest merge;
  Quickest copy;
  std::string strDifference;
  bool bCompared = false;
  for (auto _ : state) {
    QXStaticGeometry geometry;
    city.AddTo(geometry, nType);
    malloc_trim(0);
    state.SetIterationTime(merge.Time([&] { geometry.AssignStaticGeometry(city.GetBase(), 0); }));
    // Fresh memory is written another way than memory that was written before.
    if (!std::exchange(bCompared, true)) strDifference = CompareWithReference(geometry, nType);
    std::vector<Bytes> const arrays = GetArrays(geometry);
    std::vector<std::unique_ptr<unsigned char[]>> blocks(arrays.size());
    malloc_trim(0);
    copy.Time([&] {
      for (std::size_t i = 0; i < arrays.size(); ++i) {
        blocks[i].reset(new unsigned char[arrays[i].m_nNum]);
        std::memcpy(blocks[i].get(), arrays[i].m_pBytes, arrays[i].m_nNum);
      }
    });
  }
  if (!strDifference.empty()) state.SkipWithError(strDifference.c_str());
  state.counters["ns_per_vertex"] = PerVertex(merge.m_dSeconds);
  state.counters["per_copy_of_arrays"] = merge.m_dSeconds / copy.m_dSeconds;
}

void MergeIntoMappedMemory(benchmark::State& state, int nType) {
  City& city = GetCity();
  KeepMemory(true);
  QXStaticGeometry geometry;
  city.AddTo(geometry, nType);
  geometry.AssignStaticGeometry(city.GetBase(), 0);
  std::string const strDifference = CompareWithReference(geometry, nType);
  if (!strDifference.empty()) return state.SkipWithError(strDifference.c_str());
  Block block(GetArrays(geometry));
  Copies copies(GetArrays(geometry));
  Quickest merge;
  Quickest blockCopy;
  Quickest arrayCopy;
  for (auto _ : state) {
    blockCopy.Time([&] { block.Copy(); });
    arrayCopy.Time([&] { copies.Copy(); });
    DropIndices(geometry);
    state.SetIterationTime(merge.Time([&] { geometry.AssignStaticGeometry(city.GetBase(), 0); }));
    copies = Copies(GetArrays(geometry));
  }
  state.counters["ns_per_vertex"] = PerVertex(merge.m_dSeconds);
  state.counters["MB"] = 1e-6 * static_cast<double>(block.m_nNum);
  state.counters["per_copy_of_block"] = merge.m_dSeconds / blockCopy.m_dSeconds;
  state.counters["per_copy_of_arrays"] = merge.m_dSeconds / arrayCopy.m_dSeconds;
}

/// The normals are turned: the rivals do that too.
void MergeBesideRival(benchmark::State& state, std::unique_ptr<QXBench::MergeRival> (*pfnMake)(City&)) {
  City& city = GetCity();
  KeepMemory(true);
  QXStaticGeometry geometry;
  city.AddTo(geometry, -1);
  Quickest merge;
  Quickest rival;
  std::size_t nRivalVertices = 0;
  for (auto _ : state) {
    auto pRival = pfnMake(city);
    rival.Time([&] { pRival->Merge(); });
    nRivalVertices = pRival->CountVertices();
    DropIndices(geometry);
    state.SetIterationTime(merge.Time([&] { geometry.AssignStaticGeometry(city.GetBase(), 0); }));
  }
  if (nRivalVertices != kMeshes * kVertices) state.SkipWithError("the rival merged something else");
  state.counters["rival_ns_per_vertex"] = PerVertex(rival.m_dSeconds);
  state.counters["times_faster"] = rival.m_dSeconds / merge.m_dSeconds;
}

/// The arrays of all meshes together grow tenfold.
void MergeMoreMeshes(benchmark::State& state) {
  constexpr unsigned int kSmall = 100;
  KeepMemory(true);
  double arrPerVertex[2] = {};
  for (auto _ : state) {
    for (int nSize = 0; nSize < 2; ++nSize) {
      std::size_t const meshes = nSize == 0 ? 20000 : 200000;
      City city(meshes, kSmall);
      QXStaticGeometry geometry;
      city.AddTo(geometry, 0);
      Quickest merge;
      for (int nRound = 0; nRound < 4; ++nRound) {
        DropIndices(geometry);
        merge.Time([&] { geometry.AssignStaticGeometry(city.GetBase(), 0); });
      }
      arrPerVertex[nSize] = 1e9 * merge.m_dSeconds / (static_cast<double>(meshes) * kSmall);
    }
    state.SetIterationTime(1e-9 * arrPerVertex[1]);
  }
  state.counters["ns_per_vertex_20000"] = arrPerVertex[0];
  state.counters["ns_per_vertex_200000"] = arrPerVertex[1];
  state.counters["ratio"] = arrPerVertex[1] / arrPerVertex[0];
}

void Options(benchmark::internal::Benchmark* pBenchmark) {
  pBenchmark->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(12);
}

BENCHMARK_CAPTURE(MergeIntoFreshMemory, normals_copied, 0)->Apply(Options);
BENCHMARK_CAPTURE(MergeIntoFreshMemory, normals_turned, -1)->Apply(Options);
BENCHMARK_CAPTURE(MergeIntoMappedMemory, normals_copied, 0)->Apply(Options);
BENCHMARK_CAPTURE(MergeIntoMappedMemory, normals_turned, -1)->Apply(Options);
#if defined(QX_BENCH_OGRE)
BENCHMARK_CAPTURE(MergeBesideRival, ogre_static_geometry, &QXBench::MakeOgreRival)->Apply(Options)->Iterations(3);
#endif
#if defined(QX_BENCH_OSG)
BENCHMARK_CAPTURE(MergeBesideRival, osg_flatten_and_merge, &QXBench::MakeOsgRival)->Apply(Options)->Iterations(3);
#endif
BENCHMARK(MergeMoreMeshes)->Apply(Options)->Iterations(1);

}  // namespace
