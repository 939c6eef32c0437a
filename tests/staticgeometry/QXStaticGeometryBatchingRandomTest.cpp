#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "QXBatchingReference.h"
#include "QXStaticGeometryParts.h"

// Random sequences of adding and folding, beside a reference that does both by the letter.
namespace QXC {
namespace {

class RandomBatching {
public:
  explicit RandomBatching(unsigned int nSeed) : m_Random(nSeed) {
    unsigned int const nPasses = 1 + Draw(24);
    for (unsigned int pass = 0; pass < nPasses; ++pass) AddPass(std::wstring(1, static_cast<wchar_t>(L'A' + pass)));
    m_vecNames.push_back(L"no such pass");
  }

  void Add() {
    QXVertexDataPackage* pMesh = Draw(50) == 0 ? nullptr : MakeMesh();
    std::vector<QXIndexPackage*> packages;
    for (unsigned int package = Draw(5); package > 0; --package) packages.push_back(MakePackage());
    QXMatrix4d matModel = Moved(Draw(100));
    int const nType = static_cast<int>(Draw(4)) - 1;
    bool const bSubObject = pMesh && Draw(2) == 0;
    double const dRadius = Draw(1000);
    QdcArray<QXIndexPackage*> arrPackages;
    for (QXIndexPackage* pPackage : packages) arrPackages.Add(pPackage);
    m_Geometry.AddVertexDataAndIndexPackage(
        pMesh, arrPackages, m_Host.m_mapPasses, matModel, bSubObject ? MakeSubObject(1.0, dRadius) : nullptr, nType);
    AddByReference(m_Reference, pMesh, packages, m_Host.m_mapPasses, matModel,
        bSubObject ? MakeSubObject(1.0, dRadius) : nullptr, nType);
  }

  void Fold() {
    int const nA = static_cast<int>(Draw(10));
    m_Geometry.AssginMutiTexture(nA, -nA);
    FoldByReference(m_Reference, nA, -nA);
  }

  // A pass of the host gets other textures under its old name.
  void ReplacePass() { AddPass(m_vecNames[Draw(static_cast<unsigned int>(m_vecNames.size()))]); }

  unsigned int Draw(unsigned int nBound) { return static_cast<unsigned int>(m_Random() % nBound); }

  QXStaticGeometry m_Geometry;
  QXStaticGeometry m_Reference;

private:
  void AddPass(std::wstring const& strKey) {
    wchar_t const* const szTextures[] = {L"a.png", L"b.jpg", L"c.gif", L"", L"d.tif", L"e.png"};
    TextList textures;
    unsigned int const nUnits = Draw(10) == 0 ? Draw(12) : Draw(4);
    for (unsigned int unit = 0; unit < nUnits; ++unit) textures.emplace_back(szTextures[Draw(6)]);
    // Some names differ from their key, some collide, one is empty.
    std::wstring const strName = Draw(4) > 0 ? strKey : std::wstring(Draw(2), L'B');
    QXPass& pass = m_Host.AddPassAs(strKey, MakePass(strName, textures));
    m_vecNames.push_back(strKey);
    pass.m_matPass = Moved(Draw(10));
    pass.m_nPassWord = static_cast<int>(Draw(10));
    pass.SetPFFMode(Draw(6) == 0 ? 1 : 0);
    for (unsigned int unit = 0; unit < 8; ++unit) pass.m_nUnitWords[unit] = Draw(4);
    for (unsigned int unit = 0; unit < nUnits; ++unit) pass.GetTextureUnitState(unit)->m_matUnit = Moved(Draw(10));
    if (Draw(4) > 0) return;
    pass.m_pExtension = new QXMaterialExtension(static_cast<int>(Draw(3)));
    pass.m_pExtension->m_fSlides[Draw(2)][4] = static_cast<float>(Draw(3)) - 1.0F;
    pass.m_pExtension->m_fTurns[Draw(2)][4] = static_cast<float>(Draw(3)) - 1.0F;
  }

  // Few vertices, so that some meshes share their first one, and now and then enough to fill a bucket or a large one.
  QXVertexDataPackage* MakeMesh() {
    unsigned int const nKind = Draw(20);
    QXVertexDataPackage& mesh = m_Host.MakeCounted(nKind == 0  ? 65530 + Draw(12)
                                                   : nKind < 3 ? 20000 + Draw(20000)
                                                               : Draw(4));
    mesh.m_nOptions = Draw(0x1000);
    mesh.m_nVertexDim = static_cast<unsigned short>(1 + Draw(5));
    mesh.m_nNormalDim = static_cast<unsigned short>(1 + Draw(5));
    mesh.m_nNormalNum = Draw(3);
    mesh.m_nColorNum = Draw(3);
    mesh.m_nSecondColorNum = Draw(3);
    for (unsigned int unit = 0; unit < 8; ++unit) {
      mesh.m_nTexDims[unit] = static_cast<unsigned short>(Draw(5));
      mesh.m_nTexCoordNums[unit] = Draw(3);
    }
    return &mesh;
  }

  QXIndexPackage* MakePackage() {
    if (Draw(10) == 0) return nullptr;
    TextList names;
    for (unsigned int name = Draw(4); name > 0; --name)
      names.push_back(m_vecNames[Draw(static_cast<unsigned int>(m_vecNames.size()))]);
    return &m_Host.MakeIndices(names, 1 + static_cast<int>(Draw(6)));
  }

  std::mt19937 m_Random;
  QXBatchingHost m_Host;
  TextList m_vecNames;
};

TEST(QXStaticGeometryBatchingRandom, AddingAndFoldingAreThoseOfTheReference) {
  for (unsigned int seed = 1; seed <= 200; ++seed) {
    RandomBatching batching(seed);
    unsigned int const nSteps = 1 + batching.Draw(60);
    for (unsigned int step = 0; step < nSteps; ++step) {
      unsigned int const nKind = batching.Draw(40);
      if (nKind == 0) {
        batching.Fold();
      } else if (nKind == 1) {
        batching.ReplacePass();
      } else {
        batching.Add();
      }
      ASSERT_EQ(CompareGathered(batching.m_Geometry, batching.m_Reference), "") << "seed " << seed << " step " << step;
    }
    batching.Fold();
    ASSERT_EQ(CompareGathered(batching.m_Geometry, batching.m_Reference), "") << "seed " << seed << ", folded";
  }
}

// A host may move records about, and then the first record of a mesh is not where it was added.
TEST(QXStaticGeometryBatchingRandom, FoldingShuffledRecordsIsThatOfTheReference) {
  for (unsigned int seed = 1; seed <= 200; ++seed) {
    RandomBatching batching(seed);
    for (int step = 0; step < 40; ++step) batching.Add();
    for (QXStaticGeometry* pGeometry : {&batching.m_Geometry, &batching.m_Reference}) {
      std::mt19937 random(seed);
      for (QXStaticGeometryBucket* pBucket : pGeometry->m_vecBuckets16) {
        for (auto& [strKey, records] : pBucket->m_mapPassIndices) std::shuffle(records.begin(), records.end(), random);
      }
    }
    batching.Fold();
    ASSERT_EQ(CompareGathered(batching.m_Geometry, batching.m_Reference), "") << "seed " << seed;
  }
}

}  // namespace
}  // namespace QXC
