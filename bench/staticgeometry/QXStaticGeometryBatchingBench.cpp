// Adding meshes to static geometry beside making the same records without it, and folding passes beside inserting their
// records one by one.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include "../QXBenchClock.h"

namespace {

using QXC::QdcArray;
using QXC::QdcUnicodeString;
using QXC::QXBucketIndexPackage;
using QXC::QXIndexPackage;
using QXC::QXMatrix4d;
using QXC::QXPass;
using QXC::QXStaticGeometry;
using QXC::QXStaticGeometryBucket;
using QXC::QXSubObjectInfo;
using QXC::QXVertexDataPackage;

using Records = std::vector<QXBucketIndexPackage>;

constexpr unsigned int VerticesPerMesh = 500;

// Meshes of a city, each with one of a few materials.
class City {
public:
  City(std::size_t nMeshes, unsigned int nPasses)
      : m_vecMeshes(nMeshes), m_vecIndices(nMeshes), m_vecIndexArrays(nMeshes) {
    for (unsigned int pass = 0; pass < nPasses; ++pass) {
      m_vecPasses.push_back(std::make_unique<QXPass>());
      QdcUnicodeString strName;
      strName.Format(L"Facade_%02u", pass);
      m_vecPasses.back()->SetName(strName);
      strName.Format(L"facade_%02u.jpg", pass);
      m_vecPasses.back()->CreateTextureUnitState()->SetTextureName(strName);
      m_mapPasses[m_vecPasses.back()->GetName()] = m_vecPasses.back().get();
    }
    for (std::size_t mesh = 0; mesh < nMeshes; ++mesh) {
      m_vecMeshes[mesh].m_nVertexNum = VerticesPerMesh;
      m_vecIndices[mesh].m_arrPassNames.Add(PassOf(mesh).GetName());
      m_vecIndexArrays[mesh].Add(&m_vecIndices[mesh]);
    }
  }

  QXPass& PassOf(std::size_t nMesh) { return *m_vecPasses[nMesh % m_vecPasses.size()]; }

  void AddTo(QXStaticGeometry& geometry, bool bSubObjects) {
    for (std::size_t mesh = 0; mesh < m_vecMeshes.size(); ++mesh) {
      geometry.AddVertexDataAndIndexPackage(&m_vecMeshes[mesh], m_vecIndexArrays[mesh], m_mapPasses, m_matModel,
          bSubObjects ? new QXSubObjectInfo : nullptr, 0);
    }
  }

  std::vector<QXVertexDataPackage> m_vecMeshes;
  std::vector<QXIndexPackage> m_vecIndices;
  std::vector<QdcArray<QXIndexPackage*>> m_vecIndexArrays;
  std::vector<std::unique_ptr<QXPass>> m_vecPasses;
  std::map<QdcUnicodeString, QXPass*> m_mapPasses;
  QXMatrix4d m_matModel;
};

// What is recorded of the meshes of a bucket, a sequence for each pass found by its number.
struct BareBucket {
  explicit BareBucket(std::size_t nPasses) : m_vecRecords(nPasses) {}
  std::vector<Records> m_vecRecords;
  std::map<int, std::unique_ptr<QXSubObjectInfo>> m_mapSubObjects;
};

// The records alone.
std::size_t MakeRecords(City& city, bool bSubObjects) {
  std::size_t const nPerBucket = 65535 / VerticesPerMesh;
  std::size_t const nPasses = city.m_vecPasses.size();
  std::vector<std::unique_ptr<BareBucket>> buckets;
  for (std::size_t mesh = 0; mesh < city.m_vecMeshes.size(); ++mesh) {
    if (mesh % nPerBucket == 0) buckets.push_back(std::make_unique<BareBucket>(nPasses));
    BareBucket& bucket = *buckets.back();
    QXBucketIndexPackage& record = bucket.m_vecRecords[mesh % nPasses].emplace_back();
    record.m_nVertexStart = static_cast<int>(mesh % nPerBucket * VerticesPerMesh);
    record.m_vecIndexPackages.push_back(&city.m_vecIndices[mesh]);
    record.m_matTextures[0] = city.PassOf(mesh).GetTextureUnitState(0)->GetTextureTransform();
    if (bSubObjects) bucket.m_mapSubObjects[record.m_nVertexStart] = std::make_unique<QXSubObjectInfo>();
  }
  benchmark::DoNotOptimize(buckets.data());
  return buckets.size();
}

std::size_t CountRecords(QXStaticGeometry const& geometry) {
  std::size_t nCount = 0;
  for (QXStaticGeometryBucket const* pBucket : geometry.m_vecBuckets16) {
    for (auto const& [strKey, records] : pBucket->m_mapPassIndices) nCount += records.size();
  }
  return nCount;
}

// Both sides include what taking the records down costs.
void BenchAdding(benchmark::State& state, bool bSubObjects) {
  City city(static_cast<std::size_t>(state.range(0)), static_cast<unsigned int>(state.range(1)));
  QXBench::Quickest adding;
  QXBench::Quickest making;
  std::size_t nRecords = 0;
  std::size_t nBuckets = 0;
  for (auto _ : state) {
    making.Time([&] { nBuckets = MakeRecords(city, bSubObjects); });
    adding.Time([&] {
      QXStaticGeometry geometry;
      city.AddTo(geometry, bSubObjects);
      nRecords = CountRecords(geometry);
      if (geometry.m_vecBuckets16.size() != nBuckets) nRecords = 0;
    });
  }
  if (nRecords != city.m_vecMeshes.size()) state.SkipWithError("wrong records");
  double const dMeshes = static_cast<double>(city.m_vecMeshes.size());
  state.counters["ns_per_mesh"] = 1e9 * adding.m_dSeconds / dMeshes;
  state.counters["ns_per_record_alone"] = 1e9 * making.m_dSeconds / dMeshes;
  state.counters["ratio"] = adding.m_dSeconds / making.m_dSeconds;
}

// Each joining record before the first one of the same mesh, or at the end.
void JoinOneByOne(Records& master, Records const& joining, float fLayer) {
  for (QXBucketIndexPackage record : joining) {
    record.m_fTextureLayer = fLayer;
    auto const same = [&](QXBucketIndexPackage const& other) { return other.m_nVertexStart == record.m_nVertexStart; };
    master.insert(std::find_if(master.begin(), master.end(), same), std::move(record));
  }
}

// A large bucket, whose meshes are drawn by eight passes each.
std::unique_ptr<QXStaticGeometryBucket> MakeFoldable(std::size_t nMeshes) {
  auto bucket = std::make_unique<QXStaticGeometryBucket>();
  for (unsigned int pass = 0; pass < 8; ++pass) {
    QdcUnicodeString strName;
    strName.Format(L"Facade_%u", pass);
    auto* pPass = new QXPass;
    pPass->SetName(strName);
    pPass->CreateTextureUnitState()->SetTextureName(L"facade.jpg");
    bucket->m_mapPasses[strName] = pPass;
    Records& records = bucket->m_mapPassIndices[strName];
    records.resize(nMeshes);
    for (std::size_t mesh = 0; mesh < nMeshes; ++mesh) records[mesh].m_nVertexStart = static_cast<int>(mesh * 500);
  }
  return bucket;
}

bool SameOrder(Records const& a, Records const& b) {
  auto const same = [](QXBucketIndexPackage const& x, QXBucketIndexPackage const& y) {
    return x.m_nVertexStart == y.m_nVertexStart && x.m_fTextureLayer == y.m_fTextureLayer;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

Records FoldOneByOne(QXStaticGeometryBucket& bucket) {
  Records folded;
  float fLayer = 0.0F;
  for (auto const& [strKey, records] : bucket.m_mapPassIndices) {
    if (fLayer == 0.0F) {
      folded = records;
      for (QXBucketIndexPackage& record : folded) record.m_fTextureLayer = 0.0F;
    } else {
      JoinOneByOne(folded, records, fLayer);
    }
    fLayer += 1.0F;
  }
  return folded;
}

void BenchFolding(benchmark::State& state) {
  auto const nMeshes = static_cast<std::size_t>(state.range(0));
  // Beyond that nobody waits for the slow one.
  bool const bCompare = nMeshes <= 2000;
  QXBench::Quickest folding;
  QXBench::Quickest inserting;
  bool bRight = true;
  for (auto _ : state) {
    auto bucket = MakeFoldable(nMeshes);
    Records expected;
    if (bCompare) inserting.Time([&] { expected = FoldOneByOne(*bucket); });
    QXStaticGeometry geometry;
    geometry.m_vecBuckets32.push_back(bucket.release());
    folding.Time([&] { geometry.AssginMutiTexture(0, 0); });
    auto const& indices = geometry.m_vecBuckets32[0]->m_mapPassIndices;
    bRight = bRight && indices.size() == 1 && indices.begin()->second.size() == 8 * nMeshes &&
             (!bCompare || SameOrder(indices.begin()->second, expected));
  }
  if (!bRight) state.SkipWithError("wrong records");
  state.counters["ns_per_record"] = 1e9 * folding.m_dSeconds / static_cast<double>(8 * nMeshes);
  if (bCompare) state.counters["times_faster"] = inserting.m_dSeconds / folding.m_dSeconds;
}

void MeshesAndPasses(benchmark::internal::Benchmark* pBenchmark) {
  pBenchmark->ArgNames({"meshes", "passes"})->Unit(benchmark::kMillisecond);
  for (int nMeshes : {10000, 200000}) {
    for (int nPasses : {1, 4, 16}) pBenchmark->Args({nMeshes, nPasses});
  }
}

BENCHMARK_CAPTURE(BenchAdding, plain, false)->Apply(MeshesAndPasses);
BENCHMARK_CAPTURE(BenchAdding, with_sub_objects, true)->Apply(MeshesAndPasses);
BENCHMARK(BenchFolding)->ArgName("meshes")->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

}  // namespace
