#include <cstddef>
#include <iterator>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>

namespace QXC {
namespace {

void ExpectDefaults(QXVertexDataPackage const& package) {
  EXPECT_EQ(package.m_nOptions, 7u);
  EXPECT_EQ(package.m_nState, 0u);
  EXPECT_EQ(package.m_nVertexDim, 3);
  EXPECT_EQ(package.m_nNormalDim, 3);
  EXPECT_EQ(package.m_nTangentDim, 3);
  EXPECT_EQ(package.m_nBinormalDim, 3);
  float const* const numbers[] = {package.m_pVertices, package.m_pNormals, package.m_pTangents, package.m_pBinormals};
  for (float const* pArray : numbers) EXPECT_EQ(pArray, nullptr);
  unsigned int const* const words[] = {
      package.m_pColors, package.m_pSecondColors, package.m_pSelectionIDs, package.m_pBlendWeights};
  for (unsigned int const* pArray : words) EXPECT_EQ(pArray, nullptr);
  unsigned int const nums[] = {package.m_nVertexNum, package.m_nVertexStart, package.m_nNormalNum,
      package.m_nTangentNum, package.m_nBinormalNum, package.m_nColorNum, package.m_nSecondColorNum,
      package.m_nSelectionIDNum, package.m_nBlendWeightNum, package.m_nDeclarationVersion};
  for (unsigned int const num : nums) EXPECT_EQ(num, 0u);
  unsigned short const strides[] = {package.m_nVertexStride, package.m_nNormalStride, package.m_nTangentStride,
      package.m_nBinormalStride, package.m_nColorStride, package.m_nSecondColorStride, package.m_nSelectionIDStride,
      package.m_nBlendWeightStride};
  for (unsigned short const stride : strides) EXPECT_EQ(stride, 0);
  for (unsigned int unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(package.m_nTexDims[unit], 2);
    EXPECT_EQ(package.m_pTexCoords[unit], nullptr);
    EXPECT_EQ(package.m_nTexCoordNums[unit], 0u);
    EXPECT_EQ(package.m_nTexCoordStrides[unit], 0);
    EXPECT_EQ(package.m_fTexLayers[unit], -1.0F);
    EXPECT_EQ(package.m_Declarations[unit].m_nSource, 0u);
    EXPECT_EQ(package.m_Declarations[unit].m_nOffset, 0u);
    EXPECT_EQ(package.m_Declarations[unit].m_nType, 0u);
    EXPECT_EQ(package.m_Declarations[unit].m_nSemantic, 0u);
  }
  EXPECT_TRUE(package.m_mapAttributeIndices.empty());
  EXPECT_TRUE(package.m_vecObjectIDs.empty());
  EXPECT_TRUE(package.m_vecObjectStarts.empty());
  EXPECT_TRUE(package.m_vecObjectNums.empty());
  EXPECT_EQ(package.m_arrAttributes.GetSize(), 0u);
  EXPECT_EQ(package.m_bTransparent, 0);
}

QXVertexAttribute* NewAttribute(wchar_t const* szName) {
  auto* pAttribute = new QXVertexAttribute;
  pAttribute->m_strName = szName;
  pAttribute->m_nDim = 2;
  pAttribute->m_vecValues = {1.0F, 2.0F, 3.0F, 4.0F};
  return pAttribute;
}

// Every field away from its default, every array of two vertices with a value in its last place.
void Fill(QXVertexDataPackage& package) {
  package.m_nOptions = 0x407;
  package.m_nState = 1;
  package.m_nVertexDim = 4;
  package.m_nNormalDim = 2;
  package.m_nTangentDim = 1;
  package.m_nBinormalDim = 2;
  package.m_nVertexStart = 10;
  package.SetVertexNum(2, 16);
  package.m_pVertices[7] = 1.5F;
  package.SetNormalNum(2, 8);
  package.m_pNormals[3] = 2.5F;
  package.m_pTangents = new float[2]{3.5F, 4.5F};
  package.m_nTangentNum = 2;
  package.m_nTangentStride = 4;
  package.m_pBinormals = new float[4]{5.5F, 6.5F, 7.5F, 8.5F};
  package.m_nBinormalNum = 2;
  package.m_nBinormalStride = 8;
  package.SetColorNum(2, 4);
  package.m_pColors[1] = 0xFF0000FFu;
  package.SetSecondColorNum(2, 5);
  package.m_pSecondColors[1] = 0xFF00FF00u;
  package.m_pSelectionIDs = new unsigned int[2]{21, 22};
  package.m_nSelectionIDNum = 2;
  package.m_nSelectionIDStride = 6;
  package.m_pBlendWeights = new unsigned int[2]{31, 32};
  package.m_nBlendWeightNum = 2;
  package.m_nBlendWeightStride = 7;
  for (unsigned int unit = 0; unit < 8; ++unit) {
    package.m_nTexDims[unit] = static_cast<unsigned short>(unit + 1);
    package.SetTexCoordNum(unit, 2, static_cast<unsigned short>(unit + 40));
    package.m_pTexCoords[unit][2 * (unit + 1) - 1] = static_cast<float>(unit) + 0.5F;
    package.m_Declarations[unit] = {unit, unit + 1, unit + 2, unit + 3};
    package.m_fTexLayers[unit] = static_cast<float>(unit);
  }
  package.m_nDeclarationVersion = 3;
  package.m_mapAttributeIndices[QdcUnicodeString(L"height")] = 0;
  package.m_vecObjectIDs = {1, 2};
  package.m_vecObjectStarts = {0, 1};
  package.m_vecObjectNums = {1, 1};
  package.m_arrAttributes.Add(NewAttribute(L"height"));
  package.m_arrAttributes.Add(nullptr);
  package.m_bTransparent = 1;
}

void ExpectFilled(QXVertexDataPackage const& package) {
  EXPECT_EQ(package.m_nOptions, 0x407u);
  EXPECT_EQ(package.m_nState, 1u);
  EXPECT_EQ(package.m_nVertexDim, 4);
  EXPECT_EQ(package.m_nNormalDim, 2);
  EXPECT_EQ(package.m_nTangentDim, 1);
  EXPECT_EQ(package.m_nBinormalDim, 2);
  EXPECT_EQ(package.m_nVertexStart, 10u);
  EXPECT_EQ(package.m_nVertexNum, 2u);
  EXPECT_EQ(package.m_nVertexStride, 16);
  EXPECT_EQ(package.m_pVertices[7], 1.5F);
  EXPECT_EQ(package.m_nNormalNum, 2u);
  EXPECT_EQ(package.m_nNormalStride, 8);
  EXPECT_EQ(package.m_pNormals[3], 2.5F);
  EXPECT_EQ(package.m_nTangentNum, 2u);
  EXPECT_EQ(package.m_nTangentStride, 4);
  EXPECT_EQ(package.m_pTangents[1], 4.5F);
  EXPECT_EQ(package.m_nBinormalNum, 2u);
  EXPECT_EQ(package.m_nBinormalStride, 8);
  EXPECT_EQ(package.m_pBinormals[3], 8.5F);
  EXPECT_EQ(package.m_nColorNum, 2u);
  EXPECT_EQ(package.m_nColorStride, 4);
  EXPECT_EQ(package.m_pColors[1], 0xFF0000FFu);
  EXPECT_EQ(package.m_nSecondColorNum, 2u);
  EXPECT_EQ(package.m_nSecondColorStride, 5);
  EXPECT_EQ(package.m_pSecondColors[1], 0xFF00FF00u);
  EXPECT_EQ(package.m_nSelectionIDNum, 2u);
  EXPECT_EQ(package.m_nSelectionIDStride, 6);
  EXPECT_EQ(package.m_pSelectionIDs[1], 22u);
  EXPECT_EQ(package.m_nBlendWeightNum, 2u);
  EXPECT_EQ(package.m_nBlendWeightStride, 7);
  EXPECT_EQ(package.m_pBlendWeights[1], 32u);
  for (unsigned int unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(package.m_nTexDims[unit], unit + 1);
    EXPECT_EQ(package.m_nTexCoordNums[unit], 2u);
    EXPECT_EQ(package.m_nTexCoordStrides[unit], unit + 40);
    EXPECT_EQ(package.m_pTexCoords[unit][2 * (unit + 1) - 1], static_cast<float>(unit) + 0.5F);
    EXPECT_EQ(package.m_Declarations[unit].m_nSemantic, unit + 3);
    EXPECT_EQ(package.m_fTexLayers[unit], static_cast<float>(unit));
  }
  EXPECT_EQ(package.m_nDeclarationVersion, 3u);
  EXPECT_EQ(package.m_mapAttributeIndices.at(QdcUnicodeString(L"height")), 0);
  EXPECT_EQ(package.m_vecObjectIDs, (std::vector<unsigned int>{1, 2}));
  EXPECT_EQ(package.m_vecObjectStarts, (std::vector<unsigned int>{0, 1}));
  EXPECT_EQ(package.m_vecObjectNums, (std::vector<unsigned int>{1, 1}));
  ASSERT_EQ(package.m_arrAttributes.GetSize(), 2u);
  EXPECT_TRUE(package.m_arrAttributes[0]->m_strName == L"height");
  EXPECT_EQ(package.m_arrAttributes[0]->m_vecValues, (std::vector<float>{1, 2, 3, 4}));
  EXPECT_EQ(package.m_arrAttributes[1], nullptr);
  EXPECT_EQ(package.m_bTransparent, 1);
}

TEST(QXVertexDataPackage, FreshHasItsDefaults) {
  QXVertexDataPackage const package;
  ExpectDefaults(package);
}

TEST(QXVertexDataPackage, ResetFreesEverythingAndRestoresDefaults) {
  QXVertexDataPackage package;
  Fill(package);
  package.Reset();
  ExpectDefaults(package);
  package.Reset();
  ExpectDefaults(package);
}

TEST(QXVertexDataPackage, FieldsStandInOrder) {
  QXVertexDataPackage const p;
  void const* const fields[] = {&p.m_nOptions, &p.m_nState, &p.m_nVertexDim, &p.m_nNormalDim, &p.m_nTangentDim,
      &p.m_nBinormalDim, &p.m_nTexDims, &p.m_pVertices, &p.m_nVertexNum, &p.m_nVertexStride, &p.m_nVertexStart,
      &p.m_pNormals, &p.m_nNormalNum, &p.m_nNormalStride, &p.m_pTangents, &p.m_nTangentNum, &p.m_nTangentStride,
      &p.m_pBinormals, &p.m_nBinormalNum, &p.m_nBinormalStride, &p.m_pColors, &p.m_nColorNum, &p.m_nColorStride,
      &p.m_pSecondColors, &p.m_nSecondColorNum, &p.m_nSecondColorStride, &p.m_pSelectionIDs, &p.m_nSelectionIDNum,
      &p.m_nSelectionIDStride, &p.m_pBlendWeights, &p.m_nBlendWeightNum, &p.m_nBlendWeightStride, &p.m_pTexCoords,
      &p.m_nTexCoordNums, &p.m_nTexCoordStrides, &p.m_Declarations, &p.m_fTexLayers, &p.m_nDeclarationVersion,
      &p.m_mapAttributeIndices, &p.m_vecObjectIDs, &p.m_vecObjectStarts, &p.m_vecObjectNums, &p.m_arrAttributes,
      &p.m_bTransparent};
  EXPECT_EQ(fields[0], static_cast<void const*>(&p));
  for (std::size_t i = 1; i < std::size(fields); ++i) EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
  EXPECT_FALSE(std::is_polymorphic_v<QXVertexDataPackage>);
  EXPECT_EQ(sizeof(p.m_Declarations), 8u * 4u * 4u);
}

TEST(QXVertexDataPackage, AllocationsZeroFillCountTimesDimension) {
  QXVertexDataPackage package;
  package.m_nVertexDim = 5;
  package.m_nNormalDim = 2;
  package.m_nTexDims[6] = 29;
  package.SetVertexNum(3, 11);
  package.SetNormalNum(3, 12);
  package.SetColorNum(3, 13);
  package.SetSecondColorNum(3, 14);
  EXPECT_EQ(package.SetTexCoordNum(6, 3, 15), 1);
  EXPECT_EQ(package.m_nVertexNum, 3u);
  EXPECT_EQ(package.m_nVertexStride, 11);
  EXPECT_EQ(package.m_nNormalNum, 3u);
  EXPECT_EQ(package.m_nNormalStride, 12);
  EXPECT_EQ(package.m_nColorNum, 3u);
  EXPECT_EQ(package.m_nColorStride, 13);
  EXPECT_EQ(package.m_nSecondColorNum, 3u);
  EXPECT_EQ(package.m_nSecondColorStride, 14);
  EXPECT_EQ(package.m_nTexCoordNums[6], 3u);
  EXPECT_EQ(package.m_nTexCoordStrides[6], 15);
  // Four numbers of slack behind the positions, and there alone: the address sanitizer sees the true ends.
  for (int i = 0; i < 3 * 5 + 4; ++i) EXPECT_EQ(package.m_pVertices[i], 0.0F) << i;
  for (int i = 0; i < 3 * 2; ++i) EXPECT_EQ(package.m_pNormals[i], 0.0F) << i;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(package.m_pColors[i], 0u) << i;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(package.m_pSecondColors[i], 0u) << i;
  for (int i = 0; i < 3 * 29; ++i) EXPECT_EQ(package.m_pTexCoords[6][i], 0.0F) << i;
}

TEST(QXVertexDataPackage, ReallocationDropsOldContents) {
  QXVertexDataPackage package;
  package.SetVertexNum(1, 0);
  package.m_pVertices[0] = 5.0F;
  package.SetVertexNum(2, 0);
  EXPECT_EQ(package.m_pVertices[0], 0.0F);
  package.SetTexCoordNum(0, 1, 0);
  package.m_pTexCoords[0][0] = 5.0F;
  package.SetTexCoordNum(0, 1, 0);
  EXPECT_EQ(package.m_pTexCoords[0][0], 0.0F);
}

TEST(QXVertexDataPackage, ZeroNormalsAllocateNothingWhileOtherArraysAreEmpty) {
  QXVertexDataPackage package;
  package.SetNormalNum(2, 1);
  package.SetNormalNum(0, 9);
  EXPECT_EQ(package.m_pNormals, nullptr);
  EXPECT_EQ(package.m_nNormalNum, 0u);
  EXPECT_EQ(package.m_nNormalStride, 9);
  package.SetVertexNum(0, 0);
  EXPECT_NE(package.m_pVertices, nullptr);
  EXPECT_EQ(package.m_pVertices[3], 0.0F) << "the slack stands behind no vertices too";
  package.SetColorNum(0, 0);
  EXPECT_NE(package.m_pColors, nullptr);
  package.SetSecondColorNum(0, 0);
  EXPECT_NE(package.m_pSecondColors, nullptr);
  package.SetTexCoordNum(0, 0, 0);
  EXPECT_NE(package.m_pTexCoords[0], nullptr);
}

TEST(QXVertexDataPackage, UnitOfEightOrMoreIsRefused) {
  QXVertexDataPackage package;
  EXPECT_EQ(package.SetTexCoordNum(7, 1, 1), 1);
  EXPECT_EQ(package.SetTexCoordNum(8, 1, 1), 0);
  EXPECT_EQ(package.SetTexCoordNum(0xFFFFFFFFu, 1, 1), 0);
  for (unsigned int unit = 0; unit < 7; ++unit) {
    EXPECT_EQ(package.m_pTexCoords[unit], nullptr);
    EXPECT_EQ(package.m_nTexCoordNums[unit], 0u);
  }
}

TEST(QXVertexDataPackage, CopiesAreDeepAndComplete) {
  QXVertexDataPackage source;
  Fill(source);
  QXVertexDataPackage const copy(source);
  QXVertexDataPackage assigned;
  Fill(assigned);
  assigned.m_pVertices[7] = 0.0F;
  assigned = source;
  for (QXVertexDataPackage const* pCopy : {&copy, static_cast<QXVertexDataPackage const*>(&assigned)}) {
    ExpectFilled(*pCopy);
    EXPECT_NE(pCopy->m_pVertices, source.m_pVertices);
    EXPECT_NE(pCopy->m_pNormals, source.m_pNormals);
    EXPECT_NE(pCopy->m_pTangents, source.m_pTangents);
    EXPECT_NE(pCopy->m_pBinormals, source.m_pBinormals);
    EXPECT_NE(pCopy->m_pColors, source.m_pColors);
    EXPECT_NE(pCopy->m_pSecondColors, source.m_pSecondColors);
    EXPECT_NE(pCopy->m_pSelectionIDs, source.m_pSelectionIDs);
    EXPECT_NE(pCopy->m_pBlendWeights, source.m_pBlendWeights);
    for (unsigned int unit = 0; unit < 8; ++unit) EXPECT_NE(pCopy->m_pTexCoords[unit], source.m_pTexCoords[unit]);
    EXPECT_NE(pCopy->m_arrAttributes[0], source.m_arrAttributes[0]);
    for (int i = 8; i < 12; ++i) EXPECT_EQ(pCopy->m_pVertices[i], 0.0F) << "slack of a copy";
  }
  source.Reset();
  ExpectFilled(copy);
}

// While meshes are gathered a package holds sums of counts and no arrays.
TEST(QXVertexDataPackage, CountsWithoutArraysAreCopiedAsCounts) {
  QXVertexDataPackage source;
  source.m_nVertexNum = 1000;
  source.m_nNormalNum = 2000;
  source.m_nTexCoordNums[3] = 3000;
  QXVertexDataPackage const copy(source);
  EXPECT_EQ(copy.m_nVertexNum, 1000u);
  EXPECT_EQ(copy.m_pVertices, nullptr);
  EXPECT_EQ(copy.m_nNormalNum, 2000u);
  EXPECT_EQ(copy.m_pNormals, nullptr);
  EXPECT_EQ(copy.m_nTexCoordNums[3], 3000u);
  EXPECT_EQ(copy.m_pTexCoords[3], nullptr);
}

TEST(QXVertexDataPackage, AssignmentToItselfChangesNothing) {
  QXVertexDataPackage package;
  Fill(package);
  float const* const pVertices = package.m_pVertices;
  QXVertexDataPackage& same = package;
  package = same;
  EXPECT_EQ(package.m_pVertices, pVertices);
  ExpectFilled(package);
}

}  // namespace
}  // namespace QXC
