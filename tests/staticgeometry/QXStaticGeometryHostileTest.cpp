// Bytes of strangers. Whatever they are, a load ends, and what it leaves can be used, saved and destroyed.
#include <random>

#include <gtest/gtest.h>

#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include "QXGoldenCity.h"

namespace {

using namespace QXC;
using namespace QXTest;

char const* const Versions[] = {"1.0", "1.1", "1.2", "1.3"};

/// Reads everything that a renderer would, so that the sanitizers see what is not there.
void Use(QXStaticGeometry& geometry) {
  geometry.GetBoundingSphere(1);
  geometry.GetDataSize();
  double dSum = 0.0;
  for (auto const* pList : {&geometry.m_vecBuckets32, &geometry.m_vecBuckets16, &geometry.m_vecTypedBuckets32,
           &geometry.m_vecTypedBuckets16}) {
    for (QXStaticGeometryBucket const* pBucket : *pList) {
      ASSERT_NE(pBucket, nullptr);
      ASSERT_NE(pBucket->m_pVertexPackage, nullptr);
      for (auto const& [nLevel, arrPackages] : pBucket->m_mapLevelIndices) {
        for (QXIndexPackage const* pPackage : arrPackages) ASSERT_NE(pPackage, nullptr);
      }
      for (auto const& [strName, pPass] : pBucket->m_mapPasses) ASSERT_NE(pPass, nullptr);
      for (auto const& [nFirst, pSubObject] : pBucket->m_mapSubObjects) ASSERT_NE(pSubObject, nullptr);
      QXVertexDataPackage const copy(*pBucket->m_pVertexPackage);
      for (std::size_t i = 0; i < std::size_t{copy.m_nVertexNum} * copy.m_nVertexDim; ++i) dSum += copy.m_pVertices[i];
    }
  }
  ASSERT_TRUE(dSum == dSum || dSum != dSum);
}

/// Loads the bytes; a whole geometry must come back from its own bytes.
void LoadAndUse(QXBytes const& bytes, std::size_t nSize) {
  QXExactStream stream(bytes, nSize);
  QXStaticGeometry geometry;
  unsigned char const bLoaded = geometry.LoadVecData(stream, 0.0F);
  ASSERT_LE(bLoaded, 1);
  Use(geometry);
  if (bLoaded) {
    ASSERT_TRUE(stream->IsGood());
  }
  geometry.SetVersion(1.3);
  QXBytes const saved = SavedGeometry(geometry);
  if (saved.empty()) return;
  QXExactStream again(saved);
  QXStaticGeometry read;
  ASSERT_EQ(read.LoadVecData(again, 0.0F), 1);
  ASSERT_EQ(SavedGeometry(read), saved);
}

TEST(QXStaticGeometryHostile, EveryTruncationOfEveryVersionLeavesAWholeGeometry) {
  for (char const* const szVersion : Versions) {
    QXBytes const bytes = GoldenBytes(szVersion);
    ASSERT_FALSE(bytes.empty());
    for (std::size_t nSize = 0; nSize <= bytes.size(); ++nSize) {
      SCOPED_TRACE(std::string(szVersion) + " cut at " + std::to_string(nSize));
      ASSERT_NO_FATAL_FAILURE(LoadAndUse(bytes, nSize));
    }
  }
}

class BitFlips : public testing::TestWithParam<char const*> {};

TEST_P(BitFlips, EveryBitOfAFileMayBeWrong) {
  QXBytes bytes = GoldenBytes(GetParam());
  ASSERT_FALSE(bytes.empty());
  for (std::size_t nByte = 0; nByte < bytes.size(); ++nByte) {
    for (int nBit = 0; nBit < 8; ++nBit) {
      SCOPED_TRACE(std::to_string(nByte) + "." + std::to_string(nBit));
      bytes[nByte] = static_cast<unsigned char>(bytes[nByte] ^ (1 << nBit));
      ASSERT_NO_FATAL_FAILURE(LoadAndUse(bytes, bytes.size()));
      bytes[nByte] = static_cast<unsigned char>(bytes[nByte] ^ (1 << nBit));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(QXStaticGeometryHostile, BitFlips, testing::ValuesIn(Versions),
    [](auto const& test) { return "V1" + std::to_string(test.index); });

TEST(QXStaticGeometryHostile, CountsOfEveryKindOfNonsenseAnywhere) {
  QXBytes const bytes = GoldenBytes("1.3");
  for (std::uint32_t const nValue : {0xFFFFFFFFU, 0x80000000U, 0x7FFFFFFFU, 0x10000U, 9U, 0U}) {
    for (std::size_t nByte = 0; nByte + 4 <= bytes.size(); ++nByte) {
      SCOPED_TRACE(std::to_string(nByte) + ": " + std::to_string(nValue));
      QXBytes changed = bytes;
      for (int i = 0; i < 4; ++i)
        changed[nByte + static_cast<std::size_t>(i)] = static_cast<unsigned char>(nValue >> 8 * i);
      ASSERT_NO_FATAL_FAILURE(LoadAndUse(changed, changed.size()));
    }
  }
}

TEST(QXStaticGeometryHostile, BytesExchangedAtRandomLeaveAWholeGeometry) {
  constexpr unsigned int Seed = 20261121;
  SCOPED_TRACE(Seed);
  std::mt19937 random(Seed);
  QXBytes const bytes = GoldenBytes("1.3");
  for (int nRound = 0; nRound < 4000; ++nRound) {
    QXBytes changed = bytes;
    for (int i = 0; i < 4; ++i) changed[random() % changed.size()] = static_cast<unsigned char>(random());
    SCOPED_TRACE(nRound);
    ASSERT_NO_FATAL_FAILURE(LoadAndUse(changed, changed.size()));
  }
}

TEST(QXStaticGeometryHostile, EveryBitOfAPackageInBothLayoutsMayBeWrong) {
  std::unique_ptr<QXStaticGeometryBucket> const pBucket(MakeWideBucket());
  SetUnit(*pBucket->m_pVertexPackage, 2, 17, std::vector<float>(34, 0.5F));
  SetUnit(*pBucket->m_pVertexPackage, 3, 29, std::vector<float>(29, 0.25F));
  for (unsigned char const bWide : {static_cast<unsigned char>(0), static_cast<unsigned char>(1)}) {
    QXBytes bytes = SavedPackage(*pBucket->m_pVertexPackage, bWide);
    for (std::size_t nByte = 0; nByte < bytes.size(); ++nByte) {
      for (int nBit = 0; nBit < 8; ++nBit) {
        bytes[nByte] = static_cast<unsigned char>(bytes[nByte] ^ (1 << nBit));
        QXExactStream stream(bytes);
        QXVertexDataPackage package;
        unsigned char const bLoaded = LoadVertexPackage(package, stream, bWide);
        ASSERT_LE(bLoaded, 1) << nByte;
        QXVertexDataPackage const copy(package);
        ASSERT_EQ(SavedPackage(copy, bWide), SavedPackage(package, bWide)) << nByte;
        bytes[nByte] = static_cast<unsigned char>(bytes[nByte] ^ (1 << nBit));
      }
    }
  }
}

}  // namespace
