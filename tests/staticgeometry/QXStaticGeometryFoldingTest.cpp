#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "QXStaticGeometryParts.h"

namespace QXC {
namespace {

using Records = std::vector<QXBucketIndexPackage>;

// What tells records apart: first vertex, layer and index package.
using RecordList = std::vector<std::tuple<int, float, QXIndexPackage*>>;

RecordList ListOf(Records const& records) {
  RecordList list;
  for (QXBucketIndexPackage const& record : records)
    list.emplace_back(record.m_nVertexStart, record.m_fTextureLayer, record.m_vecIndexPackages.at(0));
  return list;
}

TextList TexturesOf(QXPass& pass) {
  TextList names;
  for (unsigned int unit = 0; unit < pass.GetTextureUnitStatesSize(); ++unit)
    names.emplace_back(pass.GetTextureUnitState(unit)->GetTextureName().Cstr());
  return names;
}

TextList PassKeys(QXStaticGeometryBucket const& bucket) {
  TextList keys;
  for (auto const& [strKey, pPass] : bucket.m_mapPasses) keys.emplace_back(strKey.Cstr());
  return keys;
}

TextList RecordKeys(QXStaticGeometryBucket const& bucket) {
  TextList keys;
  for (auto const& [strKey, records] : bucket.m_mapPassIndices) keys.emplace_back(strKey.Cstr());
  return keys;
}

std::wstring FoldedName(
    wchar_t const* szFormat, int nA, int nB, QXStaticGeometryBucket& bucket, std::wstring const& strName) {
  QdcUnicodeString strFolded;
  strFolded.Format(szFormat, nA, nB, static_cast<void*>(&bucket));
  return strFolded.Cstr() + strName;
}

class QXStaticGeometryFolding : public testing::Test {
protected:
  // Passes "p0", "p1", ... with nTextures textures each, "t0_0.png" and so on, all used by one mesh of four vertices.
  void AddPasses(int nPasses, int nTextures) {
    TextList names;
    for (int pass = 0; pass < nPasses; ++pass) {
      TextList textures;
      for (int unit = 0; unit < nTextures; ++unit)
        textures.push_back(L"t" + std::to_wstring(pass) + L"_" + std::to_wstring(unit) + L".png");
      names.push_back(L"p" + std::to_wstring(pass));
      QXPass& made = m_Host.AddPass(names.back(), textures);
      for (unsigned int unit = 0; unit < 8; ++unit)
        made.m_nUnitWords[unit] = 100U * static_cast<unsigned int>(pass + 1) + unit;
    }
    m_Host.AddNamed(m_Geometry, 4, names);
  }
  QXStaticGeometryBucket& FirstSmall() { return *m_Geometry.m_vecBuckets16.at(0); }
  // Adds such passes and folds them; gives their bucket.
  QXStaticGeometryBucket& Fold(int nPasses, int nTextures, int nA = 0, int nB = 0) {
    AddPasses(nPasses, nTextures);
    m_Geometry.AssginMutiTexture(nA, nB);
    return FirstSmall();
  }

  QXStaticGeometry m_Geometry;
  QXBatchingHost m_Host;
};

TEST_F(QXStaticGeometryFolding, SingleTextureAloneGetsNameAndPrograms) {
  QXStaticGeometryBucket& bucket = Fold(1, 1, 12, -3);
  EXPECT_EQ(PassKeys(bucket), (TextList{L"p0"}));
  QXPass& pass = *bucket.m_mapPasses.at(L"p0");
  EXPECT_EQ(pass.GetName().Cstr(), FoldedName(L"FirTex_%d_%d_%p_", 12, -3, bucket, L"p0"));
  EXPECT_TRUE(pass.m_strVertexProgram == L"RenderModelSecVP.glsl");
  EXPECT_TRUE(pass.m_strFragmentProgram == L"RenderModelSecFP.glsl");
  EXPECT_EQ(TexturesOf(pass), (TextList{L"t0_0.png"}));
  EXPECT_EQ(pass.m_bMultiTexture, 0);
  EXPECT_EQ(pass.m_nUnitWords[0], 100u);
  EXPECT_EQ(bucket.m_mapPassIndices.at(L"p0").at(0).m_fTextureLayer, 0.0F);
}

TEST_F(QXStaticGeometryFolding, FoldedNameSaysTheBucketsAddress) {
  QXStaticGeometryBucket& bucket = Fold(1, 1);
  char szAddress[64];
  std::snprintf(szAddress, sizeof szAddress, "FirTex_0_0_%p_p0", static_cast<void*>(&bucket));
  EXPECT_STREQ(bucket.m_mapPasses.at(L"p0")->GetName().ToMBString().Cstr(), szAddress);
}

TEST_F(QXStaticGeometryFolding, EightSingleTexturesBecomeOnePass) {
  QXStaticGeometryBucket& bucket = Fold(8, 1);
  EXPECT_EQ(PassKeys(bucket), (TextList{L"p0"}));
  EXPECT_EQ(RecordKeys(bucket), (TextList{L"p0"}));
  QXPass& pass = *bucket.m_mapPasses.at(L"p0");
  EXPECT_EQ(TexturesOf(pass), (TextList{L"t0_0.png", L"t1_0.png", L"t2_0.png", L"t3_0.png", L"t4_0.png", L"t5_0.png",
                                  L"t6_0.png", L"t7_0.png"}));
  EXPECT_EQ(pass.m_bMultiTexture, 1);
  for (unsigned int unit = 0; unit < 8; ++unit) EXPECT_EQ(pass.m_nUnitWords[unit], 100 * (unit + 1)) << unit;
}

TEST_F(QXStaticGeometryFolding, NineSingleTexturesGiveGroupsOfEightAndOne) {
  QXStaticGeometryBucket& bucket = Fold(9, 1);
  EXPECT_EQ(PassKeys(bucket), (TextList{L"p0", L"p8"}));
  EXPECT_EQ(RecordKeys(bucket), (TextList{L"p0", L"p8"}));
  EXPECT_EQ(bucket.m_mapPassIndices.at(L"p0").size(), 8u);
  QXPass& last = *bucket.m_mapPasses.at(L"p8");
  EXPECT_EQ(last.GetTextureUnitStatesSize(), 1u);
  EXPECT_EQ(last.m_bMultiTexture, 0);
  EXPECT_EQ(last.GetName().Cstr(), FoldedName(L"FirTex_%d_%d_%p_", 0, 0, bucket, L"p8"));
  EXPECT_EQ(bucket.m_mapPassIndices.at(L"p8").at(0).m_fTextureLayer, 0.0F);
}

TEST_F(QXStaticGeometryFolding, FivePairsGiveGroupsOfFourAndOne) {
  QXStaticGeometryBucket& bucket = Fold(5, 2, 1, 2);
  EXPECT_EQ(PassKeys(bucket), (TextList{L"p0", L"p4"}));
  QXPass& pass = *bucket.m_mapPasses.at(L"p0");
  EXPECT_EQ(pass.GetName().Cstr(), FoldedName(L"SecTex_%d_%d_%p_", 1, 2, bucket, L"p0"));
  EXPECT_TRUE(pass.m_strVertexProgram == L"MutiRenderModelSecVP.glsl");
  EXPECT_TRUE(pass.m_strFragmentProgram == L"MutiRenderModelSecFP.glsl");
  EXPECT_EQ(TexturesOf(pass), (TextList{L"t0_0.png", L"t0_1.png", L"t1_0.png", L"t1_1.png", L"t2_0.png", L"t2_1.png",
                                  L"t3_0.png", L"t3_1.png"}));
  EXPECT_EQ(pass.m_bMultiTexture, 1);
  unsigned int const expected[] = {100, 101, 200, 201, 300, 301, 400, 401};
  EXPECT_TRUE(std::equal(std::begin(expected), std::end(expected), pass.m_nUnitWords));
  std::vector<float> layers;
  for (auto const& record : bucket.m_mapPassIndices.at(L"p0")) layers.push_back(record.m_fTextureLayer);
  EXPECT_EQ(layers, (std::vector<float>{6.0F, 4.0F, 2.0F, 0.0F})) << "each before the first of the same mesh";
  EXPECT_EQ(bucket.m_mapPasses.at(L"p4")->m_bMultiTexture, 0);
  EXPECT_EQ(bucket.m_mapPassIndices.at(L"p4").at(0).m_fTextureLayer, 0.0F);
}

TEST_F(QXStaticGeometryFolding, UnitsPastTheSecondOfAJoiningPassAreLost) {
  QXPass& pass = *Fold(2, 3).m_mapPasses.at(L"p0");
  EXPECT_EQ(TexturesOf(pass), (TextList{L"t0_0.png", L"t0_1.png", L"t0_2.png", L"t1_0.png", L"t1_1.png"}));
  EXPECT_EQ(pass.m_nUnitWords[2], 200u) << "by the layer, though the unit is the fourth";
  EXPECT_EQ(pass.m_nUnitWords[3], 201u);
  EXPECT_EQ(pass.m_nUnitWords[4], 104u);
}

TEST_F(QXStaticGeometryFolding, MasterOfManyUnitsGetsMoreThanEight) {
  EXPECT_EQ(Fold(4, 9).m_mapPasses.at(L"p0")->GetTextureUnitStatesSize(), 15u);
}

TEST_F(QXStaticGeometryFolding, SinglesAndPairsAreFoldedApartAndCountedAnew) {
  m_Host.AddPass(L"a", {L"a.png"});
  m_Host.AddPass(L"b", {L"b.png", L"b2.png"});
  m_Host.AddPass(L"c", {L"c.png"});
  m_Host.AddPass(L"d", {L"d.png", L"d2.png"});
  m_Host.AddPass(L"e", {});
  m_Host.AddNamed(m_Geometry, 4, {L"a", L"b", L"c", L"d", L"e"});
  m_Geometry.AssginMutiTexture(0, 0);
  QXStaticGeometryBucket& bucket = FirstSmall();
  EXPECT_EQ(PassKeys(bucket), (TextList{L"a", L"b", L"e"}));
  EXPECT_EQ(RecordKeys(bucket), (TextList{L"a", L"b", L"e"}));
  EXPECT_EQ(TexturesOf(*bucket.m_mapPasses.at(L"a")), (TextList{L"a.png", L"c.png"}));
  EXPECT_EQ(TexturesOf(*bucket.m_mapPasses.at(L"b")), (TextList{L"b.png", L"b2.png", L"d.png", L"d2.png"}));
  EXPECT_EQ(bucket.m_mapPassIndices.at(L"a").at(0).m_fTextureLayer, 1.0F);
  EXPECT_EQ(bucket.m_mapPassIndices.at(L"b").at(0).m_fTextureLayer, 2.0F);
  EXPECT_TRUE(bucket.m_mapPasses.at(L"e")->GetName() == L"e") << "no units: left alone";
  EXPECT_EQ(bucket.m_mapPassIndices.at(L"e").at(0).m_fTextureLayer, 1.0F);
}

TEST_F(QXStaticGeometryFolding, PassesThatAreLeftAlone) {
  m_Host.AddPass(L"a", {L"a.png"});
  m_Host.AddPass(L"b", {L"moving.gif"});
  m_Host.AddPass(L"c", {L"folder.png/MOVING.GIF"});
  m_Host.AddPass(L"d", {L"d.png"}).SetPFFMode(1);
  m_Host.AddPass(L"e", {L"e.png", L"e.gif"});  // only the first unit decides
  m_Host.AddPass(L"f", {L"f.gif", L"f.png"});
  m_Host.AddPass(L"g", {L"g.png"}).SetPFFMode(2);
  m_Host.AddPass(L"h", {L""});
  TextList const names{L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"};
  m_Host.AddNamed(m_Geometry, 4, names);
  QXStaticGeometryBucket& bucket = FirstSmall();
  bucket.m_mapPasses[L"0"] = nullptr;
  m_Geometry.AssginMutiTexture(0, 0);
  EXPECT_EQ(PassKeys(bucket), (TextList{L"0", L"a", L"b", L"c", L"d", L"e", L"f"}));
  for (wchar_t const* szAlone : {L"b", L"c", L"d", L"f"}) {
    QXPass const& pass = *bucket.m_mapPasses.at(szAlone);
    EXPECT_TRUE(pass.GetName() == szAlone);
    EXPECT_TRUE(pass.m_strVertexProgram.IsEmpty());
    EXPECT_TRUE(pass.m_strFragmentProgram.IsEmpty());
    ASSERT_EQ(bucket.m_mapPassIndices.at(szAlone).size(), 1u);
    EXPECT_EQ(bucket.m_mapPassIndices.at(szAlone)[0].m_fTextureLayer, 1.0F);
  }
  EXPECT_EQ(TexturesOf(*bucket.m_mapPasses.at(L"a")), (TextList{L"a.png", L"g.png", L""}));
  EXPECT_EQ(bucket.m_mapPasses.at(L"e")->GetName().Cstr(), FoldedName(L"SecTex_%d_%d_%p_", 0, 0, bucket, L"e"));
}

TEST_F(QXStaticGeometryFolding, OnlyTheUntypedListsAreFolded) {
  m_Host.AddPass(L"a", {L"a.png"});
  m_Host.AddPass(L"b", {L"b.png"});
  for (int nType : {0, 1}) {
    for (unsigned int nVertices : {4u, 70000u}) m_Host.AddNamed(m_Geometry, nVertices, {L"a", L"b"}, nullptr, nType);
  }
  m_Geometry.AssginMutiTexture(0, 0);
  EXPECT_EQ(m_Geometry.m_vecBuckets32.at(0)->m_mapPasses.size(), 1u);
  EXPECT_EQ(m_Geometry.m_vecBuckets16.at(0)->m_mapPasses.size(), 1u);
  EXPECT_EQ(m_Geometry.m_vecTypedBuckets32.at(0)->m_mapPasses.size(), 2u);
  EXPECT_EQ(m_Geometry.m_vecTypedBuckets16.at(0)->m_mapPasses.size(), 2u);
  EXPECT_TRUE(m_Geometry.m_vecTypedBuckets16.at(0)->m_mapPasses.at(L"a")->GetName() == L"a");
}

TEST_F(QXStaticGeometryFolding, BucketsWithoutPackageAreSkipped) {
  AddPasses(2, 1);
  QXStaticGeometryBucket& bucket = FirstSmall();
  delete bucket.m_pVertexPackage;
  bucket.m_pVertexPackage = nullptr;
  m_Geometry.m_vecBuckets16.push_back(nullptr);
  m_Geometry.AssginMutiTexture(0, 0);
  EXPECT_EQ(bucket.m_mapPasses.size(), 2u);
  EXPECT_TRUE(bucket.m_mapPasses.at(L"p0")->GetName() == L"p0");
}

TEST_F(QXStaticGeometryFolding, RecordsOfAMeshComeTogetherLatestFirst) {
  for (wchar_t const* szName : {L"a", L"b", L"c"}) m_Host.AddPass(szName, {szName});
  QXIndexPackage& a1 = m_Host.MakeIndices({L"a"});
  QXIndexPackage& a2 = m_Host.MakeIndices({L"a"});
  QXIndexPackage& b1 = m_Host.MakeIndices({L"b"});
  QXIndexPackage& c1 = m_Host.MakeIndices({L"c"});
  m_Host.Add(m_Geometry, m_Host.MakeCounted(10), {&a1, &b1, &c1});
  m_Host.Add(m_Geometry, m_Host.MakeCounted(10), {&a2, &b1, &b1});
  m_Host.Add(m_Geometry, m_Host.MakeCounted(10), {&c1, &b1});
  m_Geometry.AssginMutiTexture(0, 0);
  EXPECT_EQ(ListOf(FirstSmall().m_mapPassIndices.at(L"a")),
      (RecordList{{0, 2.0F, &c1}, {0, 1.0F, &b1}, {0, 0.0F, &a1}, {10, 1.0F, &b1}, {10, 1.0F, &b1}, {10, 0.0F, &a2},
          {20, 2.0F, &c1}, {20, 1.0F, &b1}}));
}

TEST_F(QXStaticGeometryFolding, RecordGoesBeforeTheFirstOfItsMeshAndNotBetween) {
  for (wchar_t const* szName : {L"a", L"b"}) m_Host.AddPass(szName, {szName});
  QXIndexPackage& a1 = m_Host.MakeIndices({L"a"});
  QXIndexPackage& a2 = m_Host.MakeIndices({L"a"});
  QXIndexPackage& b1 = m_Host.MakeIndices({L"b"});
  m_Host.Add(m_Geometry, m_Host.MakeCounted(10), {&a1});
  m_Host.Add(m_Geometry, m_Host.MakeCounted(10), {&a1, &a2, &b1});
  m_Geometry.AssginMutiTexture(0, 0);
  EXPECT_EQ(ListOf(FirstSmall().m_mapPassIndices.at(L"a")),
      (RecordList{{0, 0.0F, &a1}, {10, 1.0F, &b1}, {10, 0.0F, &a1}, {10, 0.0F, &a2}}));
}

TEST_F(QXStaticGeometryFolding, RecordsMoveWithTheirMatrices) {
  m_Host.AddPass(L"a", {L"a.png"}).GetTextureUnitState(0)->m_matUnit = Moved(1.0);
  m_Host.AddPass(L"b", {L"b.png"}).GetTextureUnitState(0)->m_matUnit = Moved(2.0);
  m_Host.AddNamed(m_Geometry, 10, {L"a", L"b"});
  m_Geometry.AssginMutiTexture(0, 0);
  Records const& records = FirstSmall().m_mapPassIndices.at(L"a");
  ASSERT_EQ(records.size(), 2u);
  EXPECT_TRUE(records[0].m_matTextures[0] == Moved(2.0));
  EXPECT_TRUE(records[1].m_matTextures[0] == Moved(1.0));
}

TEST_F(QXStaticGeometryFolding, PassesWithoutRecordsFoldWithoutMakingAny) {
  AddPasses(4, 1);
  QXStaticGeometryBucket& bucket = FirstSmall();
  bucket.m_mapPassIndices.clear();
  m_Geometry.AssginMutiTexture(0, 0);
  EXPECT_TRUE(bucket.m_mapPassIndices.empty()) << "a key without records could not be merged";
  EXPECT_EQ(bucket.m_mapPasses.at(L"p0")->GetTextureUnitStatesSize(), 4u);
}

TEST_F(QXStaticGeometryFolding, RecordsOfAJoiningPassGoToAMasterWithoutAny) {
  AddPasses(2, 1);
  QXStaticGeometryBucket& bucket = FirstSmall();
  bucket.m_mapPassIndices.erase(L"p0");
  m_Geometry.AssginMutiTexture(0, 0);
  EXPECT_EQ(RecordKeys(bucket), (TextList{L"p0"}));
  EXPECT_EQ(bucket.m_mapPassIndices.at(L"p0").at(0).m_fTextureLayer, 1.0F);
}

}  // namespace
}  // namespace QXC
