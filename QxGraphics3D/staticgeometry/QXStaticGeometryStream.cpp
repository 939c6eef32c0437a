// The persisted form of a whole geometry.
#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>
#include <QxGraphics3D/frame/foundation/stream/QXStream.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/detail/QXBucketReader.h>
#include <QxGraphics3D/staticgeometry/detail/QXGeometryBytes.h>

#include <algorithm>
#include <memory>
#include <new>

namespace QXC {

namespace {

using Buckets = std::vector<QXStaticGeometryBucket*>;
/// Centre and radius of a sphere in a stream.
constexpr unsigned int SphereBytes = 32;

// Lists grow by whole entries: of a stream that was cut off the entries before the cut are kept.
class Reader {
public:
  Reader(QXStaticGeometry& geometry, QXStream& stream) : m_geometry(geometry), m_stream(stream), m_budget(stream) {}

  // A version that is no number is above nothing, so it reads as the oldest.
  bool Read() {
    double& dVersion = m_geometry.m_dVersion;
    double dRead = 0.0;
    m_stream >> dRead;
    if (!m_stream.IsGood()) return false;
    dVersion = dRead;
    if (dVersion > 1.0 && !ReadIDs()) return false;
    if (!ReadBuckets(m_geometry.m_vecBuckets32) || !ReadBuckets(m_geometry.m_vecBuckets16)) return false;
    if (dVersion > 1.1 && !(ReadBuckets(m_geometry.m_vecTypedBuckets32) && ReadBuckets(m_geometry.m_vecTypedBuckets16)))
      return false;
    return !(dVersion > 1.2) || ReadTextureSpheres();
  }

private:
  // Of a list that the stream cuts off, the whole ones before the cut are kept.
  bool ReadIDs() {
    QXUInt64 const nCountPosition = m_stream.GetPosition();
    int nCount = 0;
    m_stream >> nCount;
    QXUInt64 const nWhole = std::min<QXUInt64>(static_cast<QXUInt64>(std::max(0, nCount)), m_stream.Remaining() / 4);
    QdcArray<int>& arrID = m_geometry.m_arrID;
    QXUInt64 const nBefore = arrID.GetSize();
    arrID.SetSize(nBefore + nWhole);
    m_stream.Load(arrID.GetData() + nBefore, static_cast<unsigned int>(nWhole));
    if (!m_stream.IsGood()) {
      arrID.SetSize(nBefore);
      return false;
    }
    if (nWhole != static_cast<QXUInt64>(nCount)) m_stream.Fail(nCountPosition);
    return m_stream.IsGood() && m_budget.Charge(nWhole * sizeof(int));
  }

  bool ReadBuckets(Buckets& arrBuckets) {
    int nBuckets = 0;
    if (!detail::LoadCount(m_stream, nBuckets, 0)) return false;
    for (int i = 0; i < nBuckets; ++i) {
      std::unique_ptr<QXStaticGeometryBucket> pBucket(new (std::nothrow) QXStaticGeometryBucket);
      if (!pBucket || !detail::ReadBucket(*pBucket, m_stream, m_geometry.m_dVersion, m_budget)) return false;
      if (!m_budget.Charge(BucketBytes)) return false;
      arrBuckets.push_back(pBucket.get());
      pBucket.release();
    }
    return true;
  }

  bool ReadTextureSpheres() {
    int nTextures = 0;
    if (!detail::LoadCount(m_stream, nTextures, 0)) return false;
    for (int i = 0; i < nTextures; ++i) {
      QdcUnicodeString strName;
      m_stream >> strName;
      int nSpheres = 0;
      if (!detail::LoadCount(m_stream, nSpheres, SphereBytes)) return false;
      QdcArray<QXBoundingSphere> arrSpheres;
      arrSpheres.SetSize(static_cast<QXUInt64>(nSpheres));
      for (QXBoundingSphere& sphere : arrSpheres) ReadSphere(sphere);
      if (!m_stream.IsGood() || !m_budget.Charge(CountBytes(strName, arrSpheres))) return false;
      m_geometry.m_mapTextureSpheres[strName] = std::move(arrSpheres);
    }
    return true;
  }

  void ReadSphere(QXBoundingSphere& sphere) {
    QXVector3d vecCenter;
    double dRadius = 0.0;
    m_stream >> vecCenter.x >> vecCenter.y >> vecCenter.z >> dRadius;
    sphere.SetCenter(vecCenter);
    sphere.SetRadius(dRadius);
  }

  static constexpr std::uint64_t BucketBytes = sizeof(QXStaticGeometryBucket) + sizeof(QXVertexDataPackage) +
                                               2 * detail::QXLoadBudget::BlockBytes + 2 * sizeof(void*);

  static std::uint64_t CountBytes(QdcUnicodeString const& strName, QdcArray<QXBoundingSphere> const& arrSpheres) {
    return detail::QXLoadBudget::NodeBytes + sizeof strName + sizeof arrSpheres + 2 * detail::QXLoadBudget::BlockBytes +
           static_cast<std::uint64_t>(strName.GetLength()) * sizeof(wchar_t) +
           arrSpheres.GetSize() * sizeof(QXBoundingSphere);
  }

  QXStaticGeometry& m_geometry;
  QXStream& m_stream;
  detail::QXLoadBudget m_budget;
};

void WriteBuckets(Buckets const& arrBuckets, QXStream& stream, double dVersion) {
  auto const nNulls = std::ranges::count(arrBuckets, nullptr);
  stream << static_cast<int>(arrBuckets.size() - static_cast<std::size_t>(nNulls));
  for (QXStaticGeometryBucket* pBucket : arrBuckets) {
    if (pBucket) pBucket->Save(stream, dVersion);
  }
}

QXInt64 CountBytes(Buckets const& arrBuckets) {
  QXInt64 nBytes = 0;
  for (QXStaticGeometryBucket const* pBucket : arrBuckets) nBytes += pBucket ? detail::GetBucketBytes(*pBucket) : 0;
  return nBytes;
}

// As many bytes as SaveVecData of version 1.3 writes, but for the surplus of each bucket and the bytes of texture names
// beyond one a character.
QXInt64 CountBytes(QXStaticGeometry const& geometry) {
  QXInt64 nBytes = 16 + 4 * static_cast<QXInt64>(geometry.m_arrID.GetSize()) + CountBytes(geometry.m_vecBuckets32);
  nBytes += 4 + CountBytes(geometry.m_vecBuckets16);
  nBytes += 4 + CountBytes(geometry.m_vecTypedBuckets32);
  nBytes += 4 + CountBytes(geometry.m_vecTypedBuckets16);
  nBytes += 4;
  for (auto const& [strName, arrSpheres] : geometry.m_mapTextureSpheres)
    nBytes += strName.GetLength() + 8 + SphereBytes * static_cast<QXInt64>(arrSpheres.GetSize());
  return nBytes;
}

}  // namespace

unsigned char QXStaticGeometry::LoadVecData(QXStream& stream, float /*fVersion*/) {
  try {
    return Reader(*this, stream).Read() ? 1 : 0;
  } catch (std::bad_alloc const&) {
    return 0;
  }
}

unsigned char QXStaticGeometry::SaveVecData(QXStream& stream, float /*fVersion*/) {
  Buckets const* const arrLists[] = {&m_vecBuckets32, &m_vecBuckets16, &m_vecTypedBuckets32, &m_vecTypedBuckets16};
  if (std::ranges::all_of(arrLists, [](Buckets const* pList) { return pList->empty(); })) return 0;
  stream.Reserve(stream.GetWritten() + static_cast<QXUInt64>(CountBytes(*this)));
  stream << m_dVersion << static_cast<int>(m_arrID.GetSize());
  stream.Save(m_arrID.GetData(), static_cast<unsigned int>(m_arrID.GetSize()));
  for (Buckets const* pList : arrLists) WriteBuckets(*pList, stream, m_dVersion);
  stream << static_cast<int>(m_mapTextureSpheres.size());
  for (auto const& [strName, arrSpheres] : m_mapTextureSpheres) {
    stream << strName << static_cast<int>(arrSpheres.GetSize());
    for (QXBoundingSphere const& sphere : arrSpheres) {
      QXVector3d const& vecCenter = sphere.GetCenter();
      stream << vecCenter.x << vecCenter.y << vecCenter.z << sphere.GetRadius();
    }
  }
  return stream.IsGood();
}

int QXStaticGeometry::GetDataSize() {
  return detail::ToDataSize(CountBytes(*this));
}

}  // namespace QXC
