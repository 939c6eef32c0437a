// Filling and copying the buffers of one drawable, beside a plain copy of the same bytes: what the memory allows.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include <benchmark/benchmark.h>

#include <QxGraphics3D/renderop/QXRenderOperation.h>

namespace {

using QXC::QXRenderOperation;
using QXC::QXVector3d;

// Positions, normals and one pair of texture coordinates, and one index: 34 bytes a vertex.
constexpr std::size_t BytesPerVertex = (3 + 3 + 2) * sizeof(float) + sizeof(unsigned short);

void FillVertices(QXRenderOperation& operation, unsigned int nNum) {
  QXVector3d const normal(0.0, 0.0, 1.0);
  for (unsigned int i = 0; i < nNum; ++i) {
    double const value = i;
    operation.SetVertexNormTextureValue(i, QXVector3d(value, value + 1.0, value + 2.0), normal, value, -value);
    operation.SetIndexValue(i, static_cast<unsigned short>(i));
  }
}

std::unique_ptr<QXRenderOperation> MakeFilled(unsigned int nNum) {
  auto operation = std::make_unique<QXRenderOperation>();
  operation->SetVertexNormTextureNum(nNum);
  operation->SetIndexNum(nNum);
  FillVertices(*operation, nNum);
  return operation;
}

bool HoldsTheRamp(QXRenderOperation const& operation, unsigned int nNum) {
  if (operation.m_nVertexNum != nNum || operation.m_nIndexNum != nNum) return false;
  for (unsigned int i = 0; i < nNum; ++i) {
    auto const value = static_cast<float>(i);
    if (operation.m_pVertices[std::size_t{3} * i + 2] != value + 2.0F) return false;
    if (operation.m_pNormals[std::size_t{3} * i + 2] != 1.0F) return false;
    if (operation.m_pTexCoords[0][std::size_t{2} * i + 1] != -value) return false;
    if (operation.m_pIndices[i] != static_cast<unsigned short>(i)) return false;
  }
  return true;
}

void CountBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(BytesPerVertex) * state.range(0) * state.iterations());
  state.SetItemsProcessed(state.range(0) * state.iterations());
}

// The same conversions written straight into arrays, as a host would without the class.
void BenchFillReference(benchmark::State& state) {
  auto const num = static_cast<unsigned int>(state.range(0));
  auto const operation = MakeFilled(num);
  for (auto _ : state) {
    float* const pVertices = operation->m_pVertices;
    float* const pNormals = operation->m_pNormals;
    float* const pCoords = operation->m_pTexCoords[0];
    for (std::size_t i = 0; i < num; ++i) {
      double const value = static_cast<double>(i);
      pVertices[3 * i] = static_cast<float>(value);
      pVertices[3 * i + 1] = static_cast<float>(value + 1.0);
      pVertices[3 * i + 2] = static_cast<float>(value + 2.0);
      pNormals[3 * i] = 0.0F;
      pNormals[3 * i + 1] = 0.0F;
      pNormals[3 * i + 2] = 1.0F;
      pCoords[2 * i] = static_cast<float>(value);
      pCoords[2 * i + 1] = static_cast<float>(-value);
      operation->m_pIndices[i] = static_cast<unsigned short>(i);
    }
    benchmark::ClobberMemory();
  }
  if (!HoldsTheRamp(*operation, num)) state.SkipWithError("wrong contents");
  CountBytes(state);
}

void BenchFill(benchmark::State& state) {
  auto const num = static_cast<unsigned int>(state.range(0));
  auto const operation = MakeFilled(num);
  for (auto _ : state) {
    FillVertices(*operation, num);
    benchmark::ClobberMemory();
  }
  if (!HoldsTheRamp(*operation, num)) state.SkipWithError("wrong contents");
  CountBytes(state);
}

// The same arrays allocated, copied and freed with nothing around them: the floor for a deep copy.
void BenchCopyReference(benchmark::State& state) {
  auto const num = static_cast<std::size_t>(state.range(0));
  auto const source = MakeFilled(static_cast<unsigned int>(num));
  bool bRight = true;
  for (auto _ : state) {
    std::unique_ptr<float[]> const vertices(new float[3 * num]);
    std::unique_ptr<float[]> const normals(new float[3 * num]);
    std::unique_ptr<float[]> const coords(new float[2 * num]);
    std::unique_ptr<unsigned short[]> const indices(new unsigned short[num]);
    std::memcpy(vertices.get(), source->m_pVertices, 3 * num * sizeof(float));
    std::memcpy(normals.get(), source->m_pNormals, 3 * num * sizeof(float));
    std::memcpy(coords.get(), source->m_pTexCoords[0], 2 * num * sizeof(float));
    std::memcpy(indices.get(), source->m_pIndices, num * sizeof(unsigned short));
    benchmark::ClobberMemory();
    bRight = bRight && vertices[3 * num - 1] == source->m_pVertices[3 * num - 1];
  }
  if (!bRight) state.SkipWithError("wrong contents");
  CountBytes(state);
}

void BenchCopyConstruct(benchmark::State& state) {
  auto const num = static_cast<unsigned int>(state.range(0));
  auto const source = MakeFilled(num);
  bool bRight = true;
  for (auto _ : state) {
    QXRenderOperation const copy(*source);
    benchmark::ClobberMemory();
    bRight = bRight && copy.m_pVertices[std::size_t{3} * num - 1] == source->m_pVertices[std::size_t{3} * num - 1];
  }
  if (!bRight || !HoldsTheRamp(QXRenderOperation(*source), num)) state.SkipWithError("wrong contents");
  CountBytes(state);
}

void BenchAssign(benchmark::State& state) {
  auto const num = static_cast<unsigned int>(state.range(0));
  auto const source = MakeFilled(num);
  QXRenderOperation target;
  for (auto _ : state) {
    target = *source;
    benchmark::ClobberMemory();
  }
  if (!HoldsTheRamp(target, num)) state.SkipWithError("wrong contents");
  CountBytes(state);
}

// A small drawable, a full 16-bit one, and one that leaves every cache.
void Sizes(benchmark::internal::Benchmark* pBenchmark) {
  pBenchmark->Arg(1000)->Arg(65535)->Arg(2000000);
}

BENCHMARK(BenchFillReference)->Name("QXRenderOperation/fill/reference")->Apply(Sizes);
BENCHMARK(BenchFill)->Name("QXRenderOperation/fill/setters")->Apply(Sizes);
BENCHMARK(BenchCopyReference)->Name("QXRenderOperation/copy/reference-memcpy")->Apply(Sizes);
BENCHMARK(BenchCopyConstruct)->Name("QXRenderOperation/copy/construct")->Apply(Sizes);
BENCHMARK(BenchAssign)->Name("QXRenderOperation/copy/assign")->Apply(Sizes);

}  // namespace
