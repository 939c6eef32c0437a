// Saving and loading a merged city beside merely moving the same bytes: memcpy for memory that the system has given
// already, write and read for files.
//
// Every case times the two sides in turn and reports the quickest pass of each. What was loaded is saved again and
// compared with what it came from.
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include "../QXBenchClock.h"

namespace {

using QXC::QXMemoryStream;
using QXC::QXStaticGeometry;
using QXC::QXStaticGeometryBucket;

constexpr unsigned int BucketVertices = 65000;
constexpr int BucketIndices = 195000;
constexpr unsigned int BucketCount = 48;
/// Bytes of the arrays of a bucket, each a call of the stream.
constexpr std::size_t BucketArrays[] = {std::size_t{BucketVertices} * 12, std::size_t{BucketVertices} * 12,
    std::size_t{BucketVertices} * 8, std::size_t{BucketIndices} * 2};

/// Whether large blocks come from memory that was freed before, which the system has given already, or are asked of the
/// system anew each time, as in a program that loads one city.
void UseMappedMemory(bool bMapped) {
  mallopt(M_MMAP_MAX, bMapped ? 0 : 65536);
  mallopt(M_MMAP_THRESHOLD, 128 << 10);
  mallopt(M_TRIM_THRESHOLD, bMapped ? INT_MAX : 128 << 10);
}

void FillBucket(QXStaticGeometryBucket& bucket, unsigned int nSeed) {
  QXC::QXVertexDataPackage& package = *bucket.m_pVertexPackage;
  package.SetVertexNum(BucketVertices, 0);
  package.SetNormalNum(BucketVertices, 0);
  package.SetTexCoordNum(0, BucketVertices, 0);
  for (unsigned int i = 0; i < BucketVertices * 3; ++i) {
    package.m_pVertices[i] = static_cast<float>(i * nSeed % 1000003);
    package.m_pNormals[i] = static_cast<float>(i % 7) * 0.125F;
  }
  for (unsigned int i = 0; i < BucketVertices * 2; ++i) package.m_pTexCoords[0][i] = static_cast<float>(i % 4096);
  auto indices = std::make_unique<QXC::QXIndexPackage>();
  indices->m_arrPassNames.Add(L"facade");
  indices->SetIndexNum(BucketIndices);
  for (int i = 0; i < BucketIndices; ++i) indices->GetIndices16()[i] = static_cast<unsigned short>(i % 65000);
  bucket.m_mapLevelIndices[0].push_back(indices.release());
  bucket.m_mapPasses[L"facade"] = new QXC::QXPass;
}

/// The city and its bytes.
struct City {
  City() {
    for (unsigned int i = 0; i < BucketCount; ++i) {
      m_geometry.m_vecBuckets16.push_back(new QXStaticGeometryBucket);
      FillBucket(*m_geometry.m_vecBuckets16.back(), i + 1);
    }
    m_arrBytes.resize(static_cast<std::size_t>(m_geometry.GetDataSize()));
    QXMemoryStream stream(QXMemoryStream::Room{m_arrBytes.data(), m_arrBytes.size()});
    m_geometry.SaveVecData(stream, 0.0F);
    m_arrBytes.resize(stream.GetSize());
  }
  QXStaticGeometry m_geometry;
  std::vector<char> m_arrBytes;
};

City& GetCity() {
  static City city;
  return city;
}

bool IsSame(QXStaticGeometry& geometry, std::vector<char> const& arrBytes) {
  std::vector<char> arrSaved(arrBytes.size());
  QXMemoryStream stream(QXMemoryStream::Room{arrSaved.data(), arrSaved.size()});
  return geometry.SaveVecData(stream, 0.0F) && stream.GetSize() == arrBytes.size() && arrSaved == arrBytes;
}

void Report(benchmark::State& state, QXBench::Quickest const& timed, QXBench::Quickest const& bare) {
  double const dGigabytes = static_cast<double>(GetCity().m_arrBytes.size()) * 1e-9;
  state.counters["gb_per_s"] = dGigabytes / timed.m_dSeconds;
  state.counters["bare_gb_per_s"] = dGigabytes / bare.m_dSeconds;
  state.counters["ratio"] = timed.m_dSeconds / bare.m_dSeconds;
}

void SaveToMemory(benchmark::State& state) {
  UseMappedMemory(true);
  City& city = GetCity();
  std::vector<char> arrRoom(city.m_arrBytes.size(), 1);
  QXBench::Quickest saving;
  QXBench::Quickest copying;
  for (auto _ : state) {
    copying.Time([&] { std::memcpy(arrRoom.data(), city.m_arrBytes.data(), arrRoom.size()); });
    benchmark::DoNotOptimize(arrRoom.data());
    std::memset(arrRoom.data(), 1, arrRoom.size());
    saving.Time([&] {
      QXMemoryStream stream(QXMemoryStream::Room{arrRoom.data(), arrRoom.size()});
      city.m_geometry.SaveVecData(stream, 0.0F);
    });
  }
  if (arrRoom != city.m_arrBytes) state.SkipWithError("other bytes");
  Report(state, saving, copying);
}

void LoadFromMemory(benchmark::State& state) {
  City& city = GetCity();
  UseMappedMemory(true);
  std::vector<char> arrRoom(city.m_arrBytes.size(), 1);
  QXBench::Quickest loading;
  QXBench::Quickest copying;
  bool isSame = true;
  // Once before, so that the blocks of the arrays are memory that the system has given.
  for (int nPass = 0; nPass < 2; ++nPass) {
    QXMemoryStream stream(city.m_arrBytes.data(), city.m_arrBytes.size());
    QXStaticGeometry geometry;
    geometry.LoadVecData(stream, 0.0F);
    isSame = isSame && IsSame(geometry, city.m_arrBytes);
  }
  for (auto _ : state) {
    copying.Time([&] { std::memcpy(arrRoom.data(), city.m_arrBytes.data(), arrRoom.size()); });
    benchmark::DoNotOptimize(arrRoom.data());
    QXStaticGeometry geometry;
    loading.Time([&] {
      QXMemoryStream stream(city.m_arrBytes.data(), city.m_arrBytes.size());
      isSame = geometry.LoadVecData(stream, 0.0F) && isSame;
    });
  }
  if (!isSame) state.SkipWithError("another city");
  Report(state, loading, copying);
}

std::string FilePath() {
  char const* const szFolder = std::getenv("TMPDIR");
  return std::string(szFolder ? szFolder : "/tmp") + "/qx_bench_city.qsg";
}

/// Hands all bytes to the system, or takes them from it; false if it does not do that at once or by parts.
template <class Call, class Byte>
bool MoveAll(Call call, int nHandle, Byte* pBytes, std::size_t nSize) {
  for (std::size_t done = 0; done < nSize;) {
    ssize_t const nMoved = call(nHandle, pBytes + done, nSize - done);
    if (nMoved <= 0) return false;
    done += static_cast<std::size_t>(nMoved);
  }
  return true;
}

bool WriteFile(std::string const& strPath, std::vector<char> const& arrBytes) {
  int const nHandle = ::open(strPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  bool const isWritten = nHandle >= 0 && MoveAll(::write, nHandle, arrBytes.data(), arrBytes.size());
  return ::close(nHandle) == 0 && isWritten;
}

/// Writes the arrays from where they are, with a call each, and as many other bytes as the city has.
bool WriteArrays(std::string const& strPath, City const& city) {
  int const nHandle = ::open(strPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  bool isWritten = nHandle >= 0;
  std::size_t nRest = city.m_arrBytes.size();
  for (QXStaticGeometryBucket const* pBucket : city.m_geometry.m_vecBuckets16) {
    QXC::QXVertexDataPackage const& package = *pBucket->m_pVertexPackage;
    void const* const arrItems[] = {package.m_pVertices, package.m_pNormals, package.m_pTexCoords[0],
        pBucket->m_mapLevelIndices.at(0)[0]->m_pIndices};
    for (std::size_t i = 0; i < std::size(arrItems); ++i) {
      isWritten = isWritten && MoveAll(::write, nHandle, static_cast<char const*>(arrItems[i]), BucketArrays[i]);
      nRest -= BucketArrays[i];
    }
  }
  isWritten = isWritten && MoveAll(::write, nHandle, city.m_arrBytes.data(), nRest);
  return ::close(nHandle) == 0 && isWritten;
}

/// Reads the arrays into fresh blocks, and what stands between them into the first.
bool ReadFile(std::string const& strPath, std::size_t nSize, std::vector<std::unique_ptr<char[]>>& arrBlocks) {
  int const nHandle = ::open(strPath.c_str(), O_RDONLY | O_CLOEXEC);
  bool isRead = nHandle >= 0;
  std::size_t nDone = 0;
  for (unsigned int bucket = 0; bucket < BucketCount; ++bucket) {
    for (std::size_t const nBytes : BucketArrays) {
      arrBlocks.emplace_back(new char[nBytes]);
      isRead = isRead && MoveAll(::read, nHandle, arrBlocks.back().get(), nBytes);
      nDone += nBytes;
    }
  }
  isRead = isRead && MoveAll(::read, nHandle, arrBlocks.front().get(), nSize - nDone);
  return ::close(nHandle) == 0 && isRead;
}

bool SaveFile(QXStaticGeometry& geometry, std::string const& strPath) {
  QXC::QXFileStream stream;
  return stream.OpenForWriting(QXC::QdcUnicodeString::FromUTF8(strPath.c_str())) &&
         geometry.SaveVecData(stream, 0.0F) && stream.Close();
}

void SaveToFile(benchmark::State& state) {
  City& city = GetCity();
  std::string const strPath = FilePath();
  QXBench::Quickest saving;
  QXBench::Quickest writing;
  QXBench::Quickest whole;
  bool isSame = true;
  for (auto _ : state) {
    std::remove(strPath.c_str());
    writing.Time([&] { isSame = WriteArrays(strPath, city) && isSame; });
    std::remove(strPath.c_str());
    whole.Time([&] { isSame = WriteFile(strPath, city.m_arrBytes) && isSame; });
    std::remove(strPath.c_str());
    saving.Time([&] { isSame = SaveFile(city.m_geometry, strPath) && isSame; });
  }
  QXC::QXFileStream stream;
  QXStaticGeometry geometry;
  isSame = isSame && stream.OpenForReading(QXC::QdcUnicodeString::FromUTF8(strPath.c_str())) &&
           geometry.LoadVecData(stream, 0.0F) && IsSame(geometry, city.m_arrBytes);
  std::remove(strPath.c_str());
  if (!isSame) state.SkipWithError("other bytes");
  Report(state, saving, writing);
  state.counters["ratio_to_one_call"] = saving.m_dSeconds / whole.m_dSeconds;
}

void LoadFromFile(benchmark::State& state) {
  City& city = GetCity();
  UseMappedMemory(false);
  std::string const strPath = FilePath();
  bool isSame = WriteFile(strPath, city.m_arrBytes);
  QXBench::Quickest loading;
  QXBench::Quickest reading;
  for (auto _ : state) {
    {
      std::vector<std::unique_ptr<char[]>> arrBlocks;
      reading.Time([&] { isSame = ReadFile(strPath, city.m_arrBytes.size(), arrBlocks) && isSame; });
    }
    QXStaticGeometry geometry;
    loading.Time([&] {
      QXC::QXFileStream stream;
      isSame = stream.OpenForReading(QXC::QdcUnicodeString::FromUTF8(strPath.c_str())) &&
               geometry.LoadVecData(stream, 0.0F) && isSame;
    });
    isSame = isSame && geometry.m_vecBuckets16.size() == BucketCount;
  }
  std::remove(strPath.c_str());
  if (!isSame) state.SkipWithError("another city");
  Report(state, loading, reading);
}

BENCHMARK(SaveToMemory)->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(LoadFromMemory)->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(SaveToFile)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(LoadFromFile)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace
