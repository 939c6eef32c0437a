// Random sequences of meshes, sound and hostile, merged by the library and by the literal reference.
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QXMergeReference.h"
#include "QXStaticGeometryParts.h"

namespace QXC {
namespace {

using Random = std::mt19937_64;

std::uint64_t Below(Random& random, std::uint64_t nEnd) {
  return random() % nEnd;
}

bool OneIn(Random& random, std::uint64_t nChances) {
  return Below(random, nChances) == 0;
}

double Number(Random& random) {
  return static_cast<double>(static_cast<std::int64_t>(Below(random, 2'000'001)) - 1'000'000) / 1024.0;
}

float Odd(Random& random) {
  static constexpr float kOdd[] = {0.0F, -0.0F, 1e-40F, 3e38F, std::numeric_limits<float>::infinity(),
      -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()};
  return OneIn(random, 50) ? kOdd[Below(random, 7)] : static_cast<float>(Number(random));
}

QXMatrix4d AnyMatrix(Random& random) {
  QXMatrix4d matrix;
  if (OneIn(random, 4)) return matrix;
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 3; ++nColumn) matrix[nRow][nColumn] = Number(random) / 100.0;
  }
  return matrix;
}

void FillFloats(Random& random, float* pItems, std::size_t nNum) {
  for (std::size_t i = 0; i < nNum; ++i) pItems[i] = Odd(random);
}

/// What a sequence of meshes may contain.
struct Profile {
  bool m_bHostile = false;
  bool m_bPolyline = false;
  bool m_bLarge = false;
  int m_nType = -1;
  unsigned char m_bNoTransform = 0;
  int m_nMaxLevel = 0;
};

class RandomMeshes {
public:
  RandomMeshes(std::uint64_t nSeed, Profile const& profile) : m_random(nSeed), m_profile(profile) {
    m_host.AddPass(L"a", {L"a.png"});
    m_host.AddPass(L"b", {L"b.png", L"c.png"});
    if (profile.m_bPolyline) m_host.AddPass(L"PolyLine", {});
  }

  /// The same meshes into both, with each its own sub-object.
  void AddTo(QXStaticGeometry& first, QXStaticGeometry& second, std::size_t nMeshes) {
    for (std::size_t i = 0; i < nMeshes; ++i) {
      QXVertexDataPackage& mesh = MakeMesh();
      std::vector<QXIndexPackage*> const packages = MakePackages(mesh.m_nVertexNum);
      QXMatrix4d const matrix = AnyMatrix(m_random);
      bool const bSubObject = OneIn(m_random, 2);
      for (QXStaticGeometry* pGeometry : {&first, &second}) {
        QXSubObjectInfo* const pSubObject = bSubObject ? MakeSubObject(1.0, 2.0) : nullptr;
        m_host.Add(*pGeometry, mesh, packages, pSubObject, m_profile.m_nType, matrix);
      }
    }
    std::uint64_t const seed = m_random();
    for (QXStaticGeometry* pGeometry : {&first, &second}) ChangeRecords(*pGeometry, Random(seed));
  }

  QXMatrix4d MakeBase() { return AnyMatrix(m_random); }

private:
  std::size_t CountLike(std::size_t nNum) {
    if (!m_profile.m_bHostile) return nNum;
    return OneIn(m_random, 3) ? Below(m_random, 2 * nNum + 2) : nNum;
  }

  QXVertexDataPackage& MakeMesh() {
    QXVertexDataPackage& mesh = m_host.MakeCounted(0);
    unsigned int num = static_cast<unsigned int>(Below(m_random, 70));
    if (m_profile.m_bLarge) num = 65536 + static_cast<unsigned int>(Below(m_random, 5000));
    mesh.m_nVertexDim = OneIn(m_random, 3) ? static_cast<unsigned short>(2 + Below(m_random, 3)) : 3;
    mesh.SetVertexNum(num, 0);
    FillFloats(m_random, mesh.m_pVertices, std::size_t{num} * mesh.m_nVertexDim);
    AddNormals(mesh);
    AddColors(mesh);
    for (unsigned int unit = 0; unit < 8; ++unit) AddCoords(mesh, unit);
    if (m_profile.m_bHostile) Spoil(mesh);
    return mesh;
  }

  void AddNormals(QXVertexDataPackage& mesh) {
    if (OneIn(m_random, 4)) return;
    mesh.m_nNormalDim = OneIn(m_random, 4) ? static_cast<unsigned short>(2 + Below(m_random, 3)) : 3;
    mesh.SetNormalNum(static_cast<unsigned int>(CountLike(mesh.m_nVertexNum)), 0);
    FillFloats(m_random, mesh.m_pNormals, std::size_t{mesh.m_nNormalNum} * mesh.m_nNormalDim);
  }

  void AddColors(QXVertexDataPackage& mesh) {
    if (OneIn(m_random, 2)) {
      mesh.SetColorNum(static_cast<unsigned int>(CountLike(mesh.m_nVertexNum)), 0);
      for (unsigned int i = 0; i < mesh.m_nColorNum; ++i) mesh.m_pColors[i] = static_cast<unsigned int>(m_random());
    }
    if (OneIn(m_random, 3)) {
      mesh.SetSecondColorNum(static_cast<unsigned int>(CountLike(mesh.m_nVertexNum)), 0);
      for (unsigned int i = 0; i < mesh.m_nSecondColorNum; ++i) mesh.m_pSecondColors[i] = i;
    }
  }

  void AddCoords(QXVertexDataPackage& mesh, unsigned int nUnit) {
    if (OneIn(m_random, nUnit < 3 ? 3 : 2)) return;
    static constexpr unsigned short kDims[] = {2, 2, 2, 3, 4, 1, 5};
    mesh.m_nTexDims[nUnit] = kDims[Below(m_random, 7)];
    if (m_profile.m_bHostile && OneIn(m_random, 8)) mesh.m_nTexDims[nUnit] = 0;
    mesh.SetTexCoordNum(nUnit, static_cast<unsigned int>(CountLike(mesh.m_nVertexNum)), 0);
    FillFloats(m_random, mesh.m_pTexCoords[nUnit], std::size_t{mesh.m_nTexCoordNums[nUnit]} * mesh.m_nTexDims[nUnit]);
  }

  /// Counts without arrays.
  void Spoil(QXVertexDataPackage& mesh) {
    auto const drop = [&](auto*& pItems) {
      if (!OneIn(m_random, 12)) return;
      delete[] pItems;
      pItems = nullptr;
    };
    drop(mesh.m_pVertices);
    drop(mesh.m_pNormals);
    drop(mesh.m_pColors);
    drop(mesh.m_pSecondColors);
    for (auto*& pCoords : mesh.m_pTexCoords) drop(pCoords);
  }

  std::vector<QXIndexPackage*> MakePackages(unsigned int nVertexNum) {
    std::vector<QXIndexPackage*> packages(1 + Below(m_random, 3));
    for (QXIndexPackage*& pPackage : packages) pPackage = &MakePackage(nVertexNum);
    return packages;
  }

  QXIndexPackage& MakePackage(unsigned int nVertexNum) {
    static std::vector<TextList> const kNames = {{L"a"}, {L"b"}, {L"unknown"}, {L"a", L"b"}, {L"PolyLine"}};
    QXIndexPackage& package = m_host.MakeIndices(kNames[Below(m_random, kNames.size())]);
    package.m_bFlag = static_cast<unsigned char>(Below(m_random, 3));
    package.m_eOperationType = static_cast<int>(Below(m_random, 6));
    bool const b32 = m_profile.m_bHostile ? OneIn(m_random, 3) : m_profile.m_bLarge;
    std::uint64_t num = Below(m_random, OneIn(m_random, 20) ? 9000 : 200);
    if (nVertexNum == 0 && !m_profile.m_bHostile) num = 0;
    std::uint64_t const end = m_profile.m_bHostile && OneIn(m_random, 4) ? 0x1'0000'0000U : nVertexNum;
    if (b32)
      package.SetIndexNum32(static_cast<int>(num));
    else
      package.SetIndexNum(static_cast<int>(num));
    for (std::uint64_t i = 0; i < num; ++i) {
      auto const nIndex = static_cast<unsigned int>(end == 0 ? m_random() : Below(m_random, end));
      if (b32) package.GetIndices32()[i] = nIndex;
      if (!b32) package.GetIndices16()[i] = static_cast<unsigned short>(nIndex);
    }
    if (m_profile.m_bHostile && OneIn(m_random, 15)) {
      package.SetIndexNum(0);
      delete[] static_cast<unsigned short*>(package.m_pIndices);
      package.m_pIndices = nullptr;
      package.m_nIndexNum = OneIn(m_random, 2) ? 100 : -100;
    }
    return package;
  }

  void ChangeRecords(QXStaticGeometry& geometry, Random random) {
    for (auto* pBuckets : {&geometry.m_vecBuckets32, &geometry.m_vecBuckets16, &geometry.m_vecTypedBuckets32,
             &geometry.m_vecTypedBuckets16}) {
      for (QXStaticGeometryBucket* pBucket : *pBuckets) {
        pBucket->m_nMaxLevel = m_profile.m_nMaxLevel;
        if (m_profile.m_bHostile && OneIn(random, 10)) pBucket->m_nIndexType ^= 1;
        for (auto& [key, records] : pBucket->m_mapPassIndices) {
          for (QXBucketIndexPackage& record : records) ChangeRecord(random, record);
        }
      }
    }
  }

  void ChangeRecord(Random& random, QXBucketIndexPackage& record) {
    for (QXMatrix4d& matrix : record.m_matTextures) matrix = AnyMatrix(random);
    record.m_fTextureLayer = static_cast<float>(Below(random, 8));
    while (static_cast<int>(record.m_vecIndexPackages.size()) <= m_profile.m_nMaxLevel) {
      if (m_profile.m_bHostile && OneIn(random, 4)) break;
      bool const bNull = m_profile.m_bHostile && OneIn(random, 4);
      record.m_vecIndexPackages.push_back(bNull ? nullptr : record.m_vecIndexPackages[0]);
    }
    if (m_profile.m_bHostile && OneIn(random, 10)) record.m_nVertexStart = static_cast<int>(random());
    if (m_profile.m_bHostile && OneIn(random, 20)) record.m_vecIndexPackages.clear();
  }

  QXBatchingHost m_host;
  Random m_random;
  Profile m_profile;
};

void ExpectEqualMerges(std::uint64_t nSeed, Profile const& profile, std::size_t nMeshes, int nRounds = 1) {
  RandomMeshes meshes(nSeed, profile);
  QXStaticGeometry fast;
  QXStaticGeometry slow;
  QXMatrix4d const base = meshes.MakeBase();
  for (int nRound = 0; nRound < nRounds; ++nRound) {
    meshes.AddTo(fast, slow, nMeshes);
    fast.AssignStaticGeometry(base, profile.m_bNoTransform);
    MergeByReference(slow, base, profile.m_bNoTransform);
    ASSERT_EQ(CompareMerged(fast, slow), "") << "seed " << nSeed << ", merge " << nRound;
  }
}

TEST(QXStaticGeometryBuildRandom, SoundMeshesMergeAsTheReferenceDoes) {
  for (std::uint64_t seed = 1; seed <= 150; ++seed) {
    Profile profile;
    profile.m_nType = seed % 3 == 0 ? 1 : -1;
    profile.m_bNoTransform = seed % 5 == 0 ? 1 : 0;
    profile.m_nMaxLevel = static_cast<int>(seed % 3);
    ASSERT_NO_FATAL_FAILURE(ExpectEqualMerges(seed, profile, 20));
  }
}

TEST(QXStaticGeometryBuildRandom, PolylinesMergeAsTheReferenceDoes) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    Profile profile;
    profile.m_bPolyline = true;
    profile.m_bNoTransform = seed % 3 == 0 ? 1 : 0;
    ASSERT_NO_FATAL_FAILURE(ExpectEqualMerges(1000 + seed, profile, 20));
  }
}

TEST(QXStaticGeometryBuildRandom, HostileMeshesMergeAsTheReferenceDoes) {
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    Profile profile;
    profile.m_bHostile = true;
    profile.m_bPolyline = seed % 6 == 0;
    profile.m_nType = seed % 2 == 0 ? 1 : -1;
    profile.m_nMaxLevel = static_cast<int>(seed % 4) - 1;
    ASSERT_NO_FATAL_FAILURE(ExpectEqualMerges(2000 + seed, profile, 12));
  }
}

TEST(QXStaticGeometryBuildRandom, SecondMergesAfterMoreMeshesAreAsTheReferenceDoes) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    Profile profile;
    profile.m_bHostile = seed % 2 == 0;
    profile.m_nMaxLevel = static_cast<int>(seed % 2);
    ASSERT_NO_FATAL_FAILURE(ExpectEqualMerges(3000 + seed, profile, 8, 3));
  }
}

TEST(QXStaticGeometryBuildRandom, MeshesOf32BitIndicesMergeAsTheReferenceDoes) {
  for (std::uint64_t seed = 1; seed <= 4; ++seed) {
    Profile profile;
    profile.m_bLarge = true;
    profile.m_bHostile = seed % 2 == 0;
    ASSERT_NO_FATAL_FAILURE(ExpectEqualMerges(4000 + seed, profile, 2));
  }
}

// Enough vertices for the arrays to be written past the caches.
TEST(QXStaticGeometryBuildRandom, MergesTooLargeForTheCachesAreAsTheReferenceDoes) {
  Profile profile;
  profile.m_bHostile = true;
  ASSERT_NO_FATAL_FAILURE(ExpectEqualMerges(5000, profile, 2000));
}

}  // namespace
}  // namespace QXC
