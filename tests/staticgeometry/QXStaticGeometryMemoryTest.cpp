// This program replaces the allocator, so that it sees what a load takes and can refuse it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <new>
#include <string>
#include <vector>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include "QXGoldenCity.h"
#include "QXMemoryMeter.h"
#include "QXStaticGeometryParts.h"

namespace {

using namespace QXC;
using namespace QXTest;

/// What a load may take at most.
std::size_t Allowed(std::size_t nBytes) {
  return (std::size_t{64} << 20) + 8 * nBytes;
}

/// Loads a file and gives the most memory that it took.
std::size_t LoadPeak(QXBytes const& bytes, QXStaticGeometry& geometry, unsigned char& bLoaded) {
  QXMemoryStream stream(bytes.data(), bytes.size());
  std::size_t const nBefore = GetLiveBytes();
  ResetPeak();
  bLoaded = geometry.LoadVecData(stream, 0.0F);
  return GetPeakBytes() - nBefore;
}

/// Repeats a piece until the file has nBytes.
QXByteWriter& Repeat(QXByteWriter& writer, QXBytes const& piece, std::size_t nBytes) {
  while (writer.Get().size() < nBytes) writer.Bytes(piece);
  return writer;
}

constexpr std::size_t FileBytes = std::size_t{24} << 20;
constexpr int Many = 2147483647;

/// Up to the levels of the first bucket.
QXByteWriter FirstBucket() {
  QXByteWriter writer;
  writer.Double(1.3).Int(0).Int(1).Int(0).Int(-1).Int(7).Short(3).Int(0).Int(0).Int(0).Int(0);
  return writer;
}

void ExpectBounded(QXByteWriter const& writer) {
  QXStaticGeometry geometry;
  unsigned char bLoaded = 1;
  std::size_t const nPeak = LoadPeak(writer.Get(), geometry, bLoaded);
  EXPECT_LE(nPeak, Allowed(writer.Get().size())) << (nPeak >> 20) << " MiB of " << (writer.Get().size() >> 20);
  EXPECT_EQ(bLoaded, 0);
}

TEST(QXStaticGeometryMemory, EmptyBucketsEndWhenTheyTakeTooMuch) {
  QXByteWriter writer;
  writer.Double(1.3).Int(0).Int(Many);
  QXBytes const bucket =
      QXByteWriter().Int(0).Int(-1).Int(7).Short(3).Int(0).Int(0).Int(0).Int(0).Int(0).Int(0).Int(0).Get();
  ExpectBounded(Repeat(writer, bucket, FileBytes));
}

TEST(QXStaticGeometryMemory, TensOfThousandsOfEmptyBucketsAreLoaded) {
  QXByteWriter writer;
  writer.Double(1.3).Int(0).Int(20000);
  for (int i = 0; i < 20000; ++i)
    writer.Int(0).Int(-1).Int(7).Short(3).Int(0).Int(0).Int(0).Int(0).Int(0).Int(0).Int(0);
  writer.Int(0).Int(0).Int(0).Int(0);
  QXStaticGeometry geometry;
  unsigned char bLoaded = 0;
  EXPECT_LE(LoadPeak(writer.Get(), geometry, bLoaded), Allowed(writer.Get().size()));
  EXPECT_EQ(bLoaded, 1);
}

TEST(QXStaticGeometryMemory, EmptyIndexPackagesAreBounded) {
  QXByteWriter writer = FirstBucket();
  writer.Int(1).Int(0).Int(Many);
  ExpectBounded(Repeat(writer, QXByteWriter().Int(4).Int(0).Byte(0).Int(0).Int(0).Get(), FileBytes));
}

TEST(QXStaticGeometryMemory, EmptyLevelsAreBounded) {
  QXByteWriter writer = FirstBucket();
  writer.Int(Many);
  for (int nLevel = 0; writer.Get().size() < FileBytes; ++nLevel) writer.Int(nLevel).Int(0);
  ExpectBounded(writer);
}

TEST(QXStaticGeometryMemory, EmptyPassNamesAreBounded) {
  QXByteWriter writer = FirstBucket();
  writer.Int(1).Int(0).Int(1).Int(4).Int(0).Byte(0).Int(static_cast<int>(FileBytes / 4));
  ExpectBounded(Repeat(writer, QXByteWriter().Int(0).Get(), FileBytes));
}

TEST(QXStaticGeometryMemory, PackagesOfPassNamesAreBounded) {
  QXByteWriter writer = FirstBucket();
  writer.Int(1).Int(0).Int(Many);
  QXByteWriter package;
  package.Int(4).Int(0).Byte(0).Int(1000);
  for (int i = 0; i < 1000; ++i) package.Int(0);
  ExpectBounded(Repeat(writer, package.Int(0).Get(), FileBytes));
}

TEST(QXStaticGeometryMemory, EmptyPassesAreBounded) {
  QXByteWriter writer = FirstBucket();
  QXBytes const pass = Written([](QXStream& stream) { QXPass().Save(stream, 1.0); });
  writer.Int(0).Int(Many);
  for (int nPass = 0; writer.Get().size() < FileBytes; ++nPass) writer.Text(std::to_string(nPass)).Bytes(pass);
  ExpectBounded(writer);
}

TEST(QXStaticGeometryMemory, UnitsAreBounded) {
  QXByteWriter writer = FirstBucket();
  QXBytes pass = Written([](QXStream& stream) { QXPass().Save(stream, 1.0); });
  pass.resize(pass.size() - 5);
  QXByteWriter unit;
  unit.Int(0);
  for (int i = 0; i < 16; ++i) unit.Double(0);
  unit.Int(0).Int(0).Int(0).Int(0);
  int const nUnits = static_cast<int>(FileBytes / unit.Get().size());
  writer.Int(0).Int(1).Text("").Bytes(pass).Int(nUnits);
  ExpectBounded(Repeat(writer, unit.Get(), FileBytes));
}

TEST(QXStaticGeometryMemory, EffectsAreBounded) {
  QXByteWriter writer = FirstBucket();
  QXBytes pass = Written([](QXStream& stream) { QXPass().Save(stream, 1.0); });
  pass.resize(pass.size() - 5);
  writer.Int(0).Int(1).Text("").Bytes(pass).Int(1).Int(0);
  for (int i = 0; i < 16; ++i) writer.Double(0);
  writer.Int(0).Int(0).Int(0).Int(static_cast<int>(FileBytes / 8));
  for (int nType = 0; writer.Get().size() < FileBytes + (1 << 20); ++nType) writer.Int(nType).Int(0);
  ExpectBounded(writer);
}

TEST(QXStaticGeometryMemory, SubObjectsAreBounded) {
  QXByteWriter writer = FirstBucket();
  QXBytes const subObject = Written([](QXStream& stream) { QXSubObjectInfo().Save(stream); });
  writer.Int(0).Int(0).Int(Many);
  for (int nFirst = 0; writer.Get().size() < FileBytes; ++nFirst) writer.Int(nFirst).Bytes(subObject);
  ExpectBounded(writer);
}

TEST(QXStaticGeometryMemory, SlotsOfASubObjectAreBounded) {
  QXByteWriter writer = FirstBucket();
  writer.Int(0).Int(0).Int(1).Int(0).Double(0).Double(0).Double(0).Double(0).Int(static_cast<int>(FileBytes / 8));
  for (int nSlot = 0; writer.Get().size() < FileBytes + (1 << 20); ++nSlot) writer.Int(nSlot).Int(0);
  ExpectBounded(writer);
}

TEST(QXStaticGeometryMemory, TextureNamesAreBounded) {
  QXByteWriter writer;
  writer.Double(1.3).Int(0).Int(0).Int(0).Int(0).Int(0).Int(Many);
  for (int nTexture = 0; writer.Get().size() < FileBytes; ++nTexture) writer.Text(std::to_string(nTexture)).Int(0);
  ExpectBounded(writer);
}

TEST(QXStaticGeometryMemory, OneLongNameIsBounded) {
  QXByteWriter writer;
  writer.Double(1.3).Int(0).Int(0).Int(0).Int(0).Int(0).Int(1).Text(std::string(FileBytes, 'a'));
  ExpectBounded(writer.Int(-1));
}

TEST(QXStaticGeometryMemory, LyingCountsTakeNoMemory) {
  for (std::uint32_t const nCount : {0x10000000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    QXByteWriter writer;
    writer.Double(1.3).Int(0).Int(1).Int(0).Int(-1).Int(7).Short(3).Int(nCount).Short(0).Float(1);
    QXStaticGeometry geometry;
    unsigned char bLoaded = 1;
    EXPECT_LE(LoadPeak(writer.Get(), geometry, bLoaded), 16384U);
    EXPECT_EQ(bLoaded, 0);
  }
}

TEST(QXStaticGeometryMemory, MergedArraysTakeTheirOwnSizeAndLittleMore) {
  QXStaticGeometry city;
  city.m_vecBuckets32.push_back(new QXStaticGeometryBucket);
  SetPositions(*city.m_vecBuckets32[0]->m_pVertexPackage, 3, std::vector<float>(3000000, 1.0F));
  SetUnit(*city.m_vecBuckets32[0]->m_pVertexPackage, 0, 2, std::vector<float>(2000000, 1.0F));
  QXBytes const bytes = SavedGeometry(city);
  QXStaticGeometry geometry;
  unsigned char bLoaded = 0;
  EXPECT_LE(LoadPeak(bytes, geometry, bLoaded), bytes.size() + bytes.size() / 50);
  EXPECT_EQ(bLoaded, 1);
}

TEST(QXStaticGeometryMemory, SavingAllocatesNothingForArrays) {
  QXStaticGeometry city;
  FillCity(city);
  SetPositions(*city.m_vecBuckets32[0]->m_pVertexPackage, 3, std::vector<float>(300000, 1.0F));
  std::vector<unsigned char> arrRoom(4 << 20);
  QXMemoryStream stream(QXMemoryStream::Room{arrRoom.data(), arrRoom.size()});
  std::size_t const nBefore = GetLiveBytes();
  ResetPeak();
  EXPECT_EQ(city.SaveVecData(stream, 0.0F), 1);
  EXPECT_LE(GetPeakBytes() - nBefore, 4096U);
}

// Whichever allocation is refused, and all behind it: a load ends with 0 or does without, and nothing leaks.
/// Adds meshes of two buckets, folds and merges them, until an allocation is refused; gives the number of meshes begun.
unsigned int GatherAndMerge(QXStaticGeometry& geometry, QXVertexDataPackage& mesh, QdcArray<QXIndexPackage*>& packages,
    std::map<QdcUnicodeString, QXPass*>& passes, std::vector<QXSubObjectInfo*> const& subObjects) {
  unsigned int nBegun = 0;
  QXMatrix4d matrix;
  try {
    for (QXSubObjectInfo* pSubObject : subObjects)
      geometry.AddVertexDataAndIndexPackage(&mesh, packages, passes, matrix, pSubObject, nBegun++ == 2);
    geometry.AssginMutiTexture(1, 2);
    geometry.AssignStaticGeometry(matrix, 0);
  } catch (std::bad_alloc const&) {
    // WasRefused tells.
  }
  return nBegun;
}

TEST(QXStaticGeometryMemory, EveryRefusedAllocationLeavesAGeometryThatCanBeDestroyed) {
  QXBatchingHost host;
  TextList names;
  for (unsigned int pass = 0; pass < 12; ++pass) {
    names.push_back(L"a pass whose name is too long to stand in a string " + std::to_wstring(pass));
    host.AddPass(names.back(), TextList(1 + pass % 3, names.back() + L".png")).m_pExtension =
        pass % 4 == 0 ? new QXMaterialExtension : nullptr;
  }
  QXIndexPackage& indices = host.MakeIndices(names);
  indices.SetIndexNum(6);
  QdcArray<QXIndexPackage*> packages;
  packages.Add(&indices);
  QXVertexDataPackage mesh;
  mesh.SetVertexNum(30, 0);
  mesh.SetNormalNum(30, 0);
  mesh.SetTexCoordNum(0, 30, 0);
  QXFileType::ExtNameToFileType(L".png");  // the table of types is made once and stays
  bool bRefused = true;
  for (std::size_t n = 1; bRefused; ++n) {
    ASSERT_LT(n, 10000u);
    std::size_t const nBefore = GetLiveBytes();
    {
      std::vector<QXSubObjectInfo*> const subObjects{new QXSubObjectInfo, new QXSubObjectInfo, new QXSubObjectInfo};
      QXStaticGeometry geometry;
      RefuseFrom(n);
      unsigned int const nBegun = GatherAndMerge(geometry, mesh, packages, host.m_mapPasses, subObjects);
      bRefused = WasRefused();
      RefuseFrom(0);
      // Those that adding never saw are still the host's.
      for (std::size_t i = nBegun; i < subObjects.size(); ++i) delete subObjects[i];
    }
    ASSERT_EQ(GetLiveBytes(), nBefore) << "allocation " << n;
  }
}

TEST(QXStaticGeometryMemory, EveryRefusedAllocationEndsTheLoadAndKeepsWhatCame) {
  QXBytes const bytes = GoldenBytes("1.3");
  ASSERT_FALSE(bytes.empty());
  std::size_t const nBefore = GetLiveBytes();
  std::size_t nMost = 0;
  for (std::size_t nNumber = 1;; ++nNumber) {
    unsigned char bLoaded = 0;
    bool bRefused = false;
    {
      QXMemoryStream stream(bytes.data(), bytes.size());
      QXStaticGeometry city;
      RefuseFrom(nNumber);
      bLoaded = city.LoadVecData(stream, 0.0F);
      bRefused = WasRefused();
      RefuseFrom(0);
      std::size_t const nBuckets = city.m_vecBuckets32.size() + city.m_vecBuckets16.size();
      ASSERT_GE(nBuckets, nMost) << nNumber;
      nMost = nBuckets;
      if (!bRefused) {
        ASSERT_EQ(SavedGeometry(city), bytes);
      }
    }
    ASSERT_EQ(bLoaded, bRefused ? 0 : 1) << nNumber;
    ASSERT_EQ(GetLiveBytes(), nBefore) << nNumber;
    if (!bRefused) break;
    ASSERT_LT(nNumber, 10000U);
  }
  EXPECT_EQ(nMost, 3U);
}

TEST(QXStaticGeometryMemory, EveryRefusedAllocationEndsTheLoadOfAPackage) {
  std::unique_ptr<QXStaticGeometryBucket> const pBucket(MakeWideBucket());
  pBucket->m_pVertexPackage->SetSecondColorNum(4, 0);
  SetUnit(*pBucket->m_pVertexPackage, 2, 17, std::vector<float>(34, 0.5F));
  for (unsigned char const bWide : {static_cast<unsigned char>(0), static_cast<unsigned char>(1)}) {
    QXBytes const bytes = SavedPackage(*pBucket->m_pVertexPackage, bWide);
    std::size_t const nArrays = bWide ? 7 : 6;
    for (std::size_t nNumber = 1; nNumber <= nArrays + 1; ++nNumber) {
      QXVertexDataPackage package;
      QXMemoryStream stream(bytes.data(), bytes.size());
      RefuseFrom(nNumber);
      unsigned char const bLoaded = LoadVertexPackage(package, stream, bWide);
      RefuseFrom(0);
      ASSERT_EQ(bLoaded, nNumber > nArrays ? 1 : 0) << nNumber;
      // Those before stay for the destructor.
      ASSERT_EQ(package.m_pVertices != nullptr, nNumber > 1);
      ASSERT_EQ(package.m_nVertexNum, nNumber > 1 ? 4U : 0U);
      ASSERT_EQ(package.m_pNormals != nullptr, nNumber > 2);
      ASSERT_EQ(package.m_nNormalNum, nNumber > 2 ? 4U : 0U);
    }
  }
}

}  // namespace
