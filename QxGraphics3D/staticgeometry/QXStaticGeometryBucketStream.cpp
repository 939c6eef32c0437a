// What of a bucket is persisted, and how it comes back.
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>
#include <QxGraphics3D/frame/foundation/stream/QXStream.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/QXVertexPackageStream.h>
#include <QxGraphics3D/staticgeometry/detail/QXBucketReader.h>
#include <QxGraphics3D/staticgeometry/detail/QXGeometryBytes.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace QXC {

namespace {

/// Version of the passes in a bucket, whatever the version of the file.
constexpr double PassVersion = 1.0;

// Counts of records are not compared with the length of the stream: lists grow by whole records only, and of a stream
// that was cut off those before the cut are kept. A record is stored only when it is whole. The level's packages read
// before one that failed are deleted with it: no member refers to them yet.
class Reader {
public:
  Reader(QXStaticGeometryBucket& bucket, QXStream& stream, detail::QXLoadBudget& budget)
      : m_bucket(bucket), m_stream(stream), m_budget(budget) {}

  bool Read(double dVersion) {
    if (!m_bucket.m_pVertexPackage) return false;
    m_stream >> m_bucket.m_nIndexType;
    if (dVersion > 1.1) m_stream >> m_bucket.m_nType;
    if (!ReadVertices() || !ReadLevels() || !ReadPasses()) return false;
    return !(dVersion > 1.0) || ReadSubObjects();
  }

private:
  bool ReadVertices() {
    QXVertexDataPackage*& pPackage = m_bucket.m_pVertexPackage;
    QXUInt64 const nStart = m_stream.GetPosition();
    if (LoadVertexPackage(*pPackage, m_stream, 0) && m_budget.Charge(m_stream.GetPosition() - nStart)) return true;
    delete pPackage;
    pPackage = nullptr;
    return false;
  }

  bool ReadLevels() {
    int nLevels = 0;
    if (!detail::LoadCount(m_stream, nLevels, 0)) return false;
    for (int i = 0; i < nLevels; ++i) {
      int nLevel = 0;
      m_stream >> nLevel;
      if (!ReadLevel(nLevel)) return false;
    }
    return true;
  }

  bool ReadLevel(int nLevel) {
    int nPackages = 0;
    if (!detail::LoadCount(m_stream, nPackages, 0)) return false;
    std::vector<std::unique_ptr<QXIndexPackage>> arrRead;
    for (int i = 0; i < nPackages; ++i) {
      std::unique_ptr<QXIndexPackage> pPackage(new (std::nothrow) QXIndexPackage);
      if (!pPackage || !pPackage->Load(m_stream, 0) || !m_budget.Charge(CountBytes(*pPackage))) return false;
      arrRead.push_back(std::move(pPackage));
    }
    if (!m_budget.Charge(detail::QXLoadBudget::NodeBytes + sizeof(std::pair<int, std::vector<QXIndexPackage*>>)))
      return false;
    std::vector<QXIndexPackage*>& level = m_bucket.m_mapLevelIndices[nLevel];
    for (QXIndexPackage* pReplaced : std::exchange(level, std::vector<QXIndexPackage*>(arrRead.size())))
      delete pReplaced;
    std::ranges::transform(arrRead, level.begin(), [](auto& pPackage) { return pPackage.release(); });
    return true;
  }

  static std::uint64_t CountBytes(QXIndexPackage const& package) {
    std::uint64_t nBytes = sizeof package + 2 * detail::QXLoadBudget::BlockBytes + 2 * sizeof(void*);
    nBytes += package.m_arrPassNames.GetSize() * sizeof(QdcUnicodeString);
    return nBytes + static_cast<std::uint64_t>(std::max(0, package.m_nIndexNum)) * (package.m_nIndexType == 0 ? 2 : 4);
  }

  bool ReadPasses() {
    int nPasses = 0;
    if (!detail::LoadCount(m_stream, nPasses, 0)) return false;
    for (int i = 0; i < nPasses; ++i) {
      QXUInt64 const nStart = m_stream.GetPosition();
      std::unique_ptr<QXPass> pPass(new (std::nothrow) QXPass);
      QdcUnicodeString strName;
      m_stream >> strName;
      if (!pPass || !m_stream.IsGood() || !pPass->Load(m_stream, PassVersion)) return false;
      if (!m_budget.Charge(CountBytes(*pPass, m_stream.GetPosition() - nStart))) return false;
      Store(m_bucket.m_mapPasses[strName], pPass);
    }
    return true;
  }

  // Texts take four times their bytes; the rest of a pass and its units is about as large as in the stream, but for the
  // objects themselves.
  static std::uint64_t CountBytes(QXPass& pass, QXUInt64 nRead) {
    std::uint64_t const nUnits = pass.GetTextureUnitStatesSize();
    return detail::QXLoadBudget::NodeBytes + sizeof(QdcUnicodeString) + sizeof pass +
           nUnits * (sizeof(QXTextureUnitState) + detail::QXLoadBudget::BlockBytes) + nRead * 4;
  }

  bool ReadSubObjects() {
    int nSubObjects = 0;
    if (!detail::LoadCount(m_stream, nSubObjects, 0)) return false;
    for (int i = 0; i < nSubObjects; ++i) {
      int nFirstVertex = 0;
      m_stream >> nFirstVertex;
      std::unique_ptr<QXSubObjectInfo> pSubObject(new (std::nothrow) QXSubObjectInfo);
      if (!pSubObject || !pSubObject->Load(m_stream) || !m_budget.Charge(CountBytes(*pSubObject))) return false;
      Store(m_bucket.m_mapSubObjects[nFirstVertex], pSubObject);
    }
    return true;
  }

  static std::uint64_t CountBytes(QXSubObjectInfo const& info) {
    std::uint64_t const nSlots = info.m_mapPassSlots.size();
    return sizeof info + (nSlots + 1) * (detail::QXLoadBudget::NodeBytes + sizeof(std::pair<int, void*>)) +
           (info.m_arrOffsets.GetSize() + info.m_arrCounts.GetSize()) * sizeof(int) +
           3 * detail::QXLoadBudget::BlockBytes;
  }

  /// Gives the map its record; one that a file names twice replaces the first, which nobody else knows.
  template <class T>
  static void Store(T*& pStored, std::unique_ptr<T>& pRead) {
    delete pStored;
    pStored = pRead.release();
  }

  QXStaticGeometryBucket& m_bucket;
  QXStream& m_stream;
  detail::QXLoadBudget& m_budget;
};

// Nulls among the index packages and passes are left out, from the counts too: nothing could be written for them.

void WriteLevels(QXStaticGeometryBucket const& bucket, QXStream& stream) {
  stream << static_cast<int>(bucket.m_mapLevelIndices.size());
  for (auto const& [nLevel, arrPackages] : bucket.m_mapLevelIndices) {
    auto const nNulls = std::ranges::count(arrPackages, nullptr);
    stream << nLevel << static_cast<int>(arrPackages.size() - static_cast<std::size_t>(nNulls));
    for (QXIndexPackage const* pPackage : arrPackages) {
      if (pPackage) pPackage->Save(stream, 0);
    }
  }
}

void WritePasses(QXStaticGeometryBucket const& bucket, QXStream& stream) {
  auto const isPass = [](auto const& entry) { return entry.second != nullptr; };
  stream << static_cast<int>(std::ranges::count_if(bucket.m_mapPasses, isPass));
  for (auto const& [strName, pPass] : bucket.m_mapPasses) {
    if (!pPass) continue;
    stream << strName;
    pPass->Save(stream, PassVersion);
  }
}

// The count is that of the map, null records included, though those are not written: files with such a count exist, and
// hosts that keep nulls in the map know that they cannot be read back.
void WriteSubObjects(QXStaticGeometryBucket const& bucket, QXStream& stream) {
  stream << static_cast<int>(bucket.m_mapSubObjects.size());
  for (auto const& [nFirstVertex, pSubObject] : bucket.m_mapSubObjects) {
    if (!pSubObject) continue;
    stream << nFirstVertex;
    pSubObject->Save(stream);
  }
}

}  // namespace

bool detail::ReadBucket(QXStaticGeometryBucket& bucket, QXStream& stream, double dVersion, QXLoadBudget& budget) {
  return Reader(bucket, stream, budget).Read(dVersion);
}

unsigned char QXStaticGeometryBucket::Load(QXStream& stream, double dVersion) {
  detail::QXLoadBudget budget(stream);
  try {
    return detail::ReadBucket(*this, stream, dVersion, budget) ? 1 : 0;
  } catch (std::bad_alloc const&) {
    return 0;
  }
}

void QXStaticGeometryBucket::Save(QXStream& stream, double /*dVersion*/) {
  if (!m_pVertexPackage) return;
  stream << m_nIndexType << m_nType;
  SaveVertexPackage(*m_pVertexPackage, stream, 0);
  WriteLevels(*this, stream);
  WritePasses(*this, stream);
  WriteSubObjects(*this, stream);
}

int QXStaticGeometryBucket::GetDataSize() {
  return detail::ToDataSize(detail::GetBucketBytes(*this));
}

QXInt64 detail::GetBucketBytes(QXStaticGeometryBucket const& bucket) {
  if (!bucket.m_pVertexPackage) return 0;
  QXInt64 nBytes = 8 + GetVertexPackageBytes(*bucket.m_pVertexPackage) + 4;
  for (auto const& [nLevel, arrPackages] : bucket.m_mapLevelIndices) {
    nBytes += 8;
    for (QXIndexPackage const* pPackage : arrPackages) nBytes += pPackage ? pPackage->GetDataSize() : 0;
  }
  nBytes += 4;
  for (auto const& [strName, pPass] : bucket.m_mapPasses)
    nBytes += pPass ? QXInt64{strName.GetLength()} + 4 + pPass->GetDataSize() : 0;
  nBytes += 4;
  for (auto const& [nFirstVertex, pSubObject] : bucket.m_mapSubObjects)
    nBytes += pSubObject ? QXInt64{4} + pSubObject->GetDataSize() : 0;
  return nBytes;
}

}  // namespace QXC
