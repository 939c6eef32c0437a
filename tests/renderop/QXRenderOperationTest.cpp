#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/QXRenderOperation.h>

#include "../QXBareTexture.h"
#include "QXRenderOperationParts.h"

namespace QXC {
namespace {

template <class T>
std::vector<T> Read(T const* pItems, std::size_t nNum) {
  return std::vector<T>(pItems, pItems + nNum);
}

// Fields that both copy operations carry, other than arrays and their counts.
void FillCopiedByBoth(QXRenderOperation& operation) {
  operation.m_nMode0 = 101;
  operation.m_nMode1 = 102;
  operation.m_nMode2 = 103;
  operation.m_nMode3 = 104;
  operation.m_nMode4 = 105;
  operation.m_bSwitch0 = 1;
  operation.m_nVertexDim = 4;
  operation.m_nVertexStride = 77;
  operation.m_nNormalStride = 78;
  operation.m_bOption = 9;
  operation.m_nDiffuseStride = 79;
  operation.m_nTexUnitNum = 5;
  for (unsigned int unit = 0; unit < 8; ++unit) {
    operation.m_nTexStrides[unit] = static_cast<unsigned short>(200 + unit);
    operation.m_nTexDims[unit] = 300 + unit;
  }
  operation.m_Color0 = QXColorValue3D(0.1, 0.2, 0.3, 0.4);
  operation.m_Color1 = QXColorValue3D(0.5, 0.6, 0.7, 0.8);
  operation.m_bSwitch1 = 1;
  operation.m_nMode5 = 106;
  operation.m_vVector1 = QXVector3d(1.0, 2.0, 3.0);
  operation.m_bSwitch4 = 1;
  operation.m_strName = L"roof";
  operation.m_fFactor = 2.5F;
  operation.m_nMode6 = 107;
  operation.m_bSwitch5 = 0;
  operation.m_dFactor = 3.5;
  operation.m_bSwitch6 = 1;
  operation.m_nMode7 = 108;
  operation.m_nMask = 0x1234;
  operation.m_nMode8 = 109;
  operation.m_nMode9 = 110;
}

void ExpectCopiedByBoth(QXRenderOperation const& copy) {
  EXPECT_EQ(copy.m_nMode0, 101);
  EXPECT_EQ(copy.m_nMode1, 102);
  EXPECT_EQ(copy.m_nMode2, 103);
  EXPECT_EQ(copy.m_nMode3, 104);
  EXPECT_EQ(copy.m_nMode4, 105);
  EXPECT_EQ(copy.m_bSwitch0, 1);
  EXPECT_EQ(copy.m_nVertexDim, 4);
  EXPECT_EQ(copy.m_nVertexStride, 77);
  EXPECT_EQ(copy.m_nNormalStride, 78);
  EXPECT_EQ(copy.m_bOption, 9);
  EXPECT_EQ(copy.m_nTexUnitNum, 5u);
  for (unsigned int unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(copy.m_nTexStrides[unit], 200 + unit);
    EXPECT_EQ(copy.m_nTexDims[unit], 300 + unit);
  }
  EXPECT_EQ(copy.m_Color0, QXColorValue3D(0.1, 0.2, 0.3, 0.4));
  EXPECT_EQ(copy.m_Color1, QXColorValue3D(0.5, 0.6, 0.7, 0.8));
  EXPECT_EQ(copy.m_bSwitch1, 1);
  EXPECT_EQ(copy.m_nMode5, 106);
  EXPECT_EQ(copy.m_vVector1, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(copy.m_bSwitch4, 1);
  EXPECT_TRUE(copy.m_strName == L"roof");
  EXPECT_EQ(copy.m_fFactor, 2.5F);
  EXPECT_EQ(copy.m_nMode6, 107);
  EXPECT_EQ(copy.m_bSwitch5, 0);
  EXPECT_EQ(copy.m_dFactor, 3.5);
  EXPECT_EQ(copy.m_bSwitch6, 1);
  EXPECT_EQ(copy.m_nMode7, 108);
  EXPECT_EQ(copy.m_nMask, 0x1234);
  EXPECT_EQ(copy.m_nMode8, 109);
  EXPECT_EQ(copy.m_nMode9, 110);
}

// Fields that the copy constructor alone carries.
void FillTexParameters(QXRenderOperation& operation) {
  for (int unit = 0; unit < 8; ++unit) {
    operation.m_dTexParams[unit] = unit + 0.5;
    operation.m_vTexVectorsA[unit] = QXVector3d(unit + 10.0, 0.0, 0.0);
    operation.m_vTexVectorsB[unit] = QXVector3d(unit + 20.0, 0.0, 0.0);
    operation.m_vTexVectorsC[unit] = QXVector3d(unit + 30.0, 0.0, 0.0);
  }
}

void ExpectTexParameters(QXRenderOperation const& copy) {
  for (int unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(copy.m_dTexParams[unit], unit + 0.5);
    EXPECT_EQ(copy.m_vTexVectorsA[unit], QXVector3d(unit + 10.0, 0.0, 0.0));
    EXPECT_EQ(copy.m_vTexVectorsB[unit], QXVector3d(unit + 20.0, 0.0, 0.0));
    EXPECT_EQ(copy.m_vTexVectorsC[unit], QXVector3d(unit + 30.0, 0.0, 0.0));
  }
}

void ExpectDefaultTexParameters(QXRenderOperation const& operation) {
  for (int unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(operation.m_dTexParams[unit], 0.0);
    EXPECT_EQ(operation.m_vTexVectorsA[unit], QXVector3d(1.0, 1.0, 1.0));
    EXPECT_EQ(operation.m_vTexVectorsB[unit], QXVector3d(1.0, 1.0, 1.0));
    EXPECT_EQ(operation.m_vTexVectorsC[unit], QXVector3d(0.0, 0.0, 0.0));
  }
}

// Fields that no copy carries.
void FillNotCopied(QXRenderOperation& operation) {
  operation.m_rcArea = QdcRect2D(1.0, 2.0, 3.0, 4.0);
  operation.m_nTriple[0] = 1;
  operation.m_nTriple[1] = 2;
  operation.m_nTriple[2] = 3;
  operation.m_bSwitch2 = 1;
  operation.m_bSwitch3 = 1;
  operation.m_vVector0 = QXVector3d(7.0, 8.0, 9.0);
  operation.m_matLocal = MakeTranslation(1.0, 2.0, 3.0);
  operation.m_bSwitch7 = 0;
}

void ExpectDefaultNotCopied(QXRenderOperation const& operation) {
  EXPECT_EQ(operation.m_rcArea, QdcRect2D());
  for (unsigned int const word : operation.m_nTriple) EXPECT_EQ(word, 0u);
  EXPECT_EQ(operation.m_bSwitch2, 0);
  EXPECT_EQ(operation.m_bSwitch3, 0);
  EXPECT_EQ(operation.m_vVector0, QXVector3d());
  EXPECT_EQ(operation.m_matLocal, QXMatrix4d());
  EXPECT_EQ(operation.m_bSwitch7, 1);
}

// Two vertices with everything, three indices, units 0 and 3.
void FillArrays(QXRenderOperation& operation) {
  operation.SetVertexNormTextureNum(2);
  operation.SetVertexNormTextureValue(0, QXVector3d(1.0, 2.0, 3.0), QXVector3d(0.0, 0.0, 1.0), 0.25, 0.5);
  operation.SetVertexNormTextureValue(1, QXVector3d(4.0, 5.0, 6.0), QXVector3d(0.0, 1.0, 0.0), 0.75, 1.0);
  operation.SetIndexNum(3);
  for (unsigned short i = 0; i < 3; ++i) operation.SetIndexValue(i, static_cast<unsigned short>(i * 10));
  operation.SetDiffuseColorNum(2);
  operation.m_nDiffuseColorNum = 2;
  operation.m_pDiffuseColors[0] = 0xFF0000FFu;
  operation.m_pDiffuseColors[1] = 0x80FFFFFFu;
  operation.m_pTexCoords[3] = new float[2]{0.125F, 0.375F};
  operation.m_nTexVertexNums[3] = 1;
}

void ExpectArrays(QXRenderOperation const& copy) {
  ASSERT_EQ(copy.m_nVertexNum, 2u);
  EXPECT_EQ(Read(copy.m_pVertices, 6), (std::vector<float>{1, 2, 3, 4, 5, 6}));
  ASSERT_EQ(copy.m_nNormalNum, 2u);
  EXPECT_EQ(Read(copy.m_pNormals, 6), (std::vector<float>{0, 0, 1, 0, 1, 0}));
  ASSERT_EQ(copy.m_nIndexNum, 3u);
  EXPECT_EQ(Read(copy.m_pIndices, 3), (std::vector<unsigned short>{0, 10, 20}));
  ASSERT_EQ(copy.m_nDiffuseColorNum, 2u);
  EXPECT_EQ(Read(copy.m_pDiffuseColors, 2), (std::vector<unsigned int>{0xFF0000FFu, 0x80FFFFFFu}));
  ASSERT_EQ(copy.m_nTexVertexNums[0], 2u);
  EXPECT_EQ(Read(copy.m_pTexCoords[0], 4), (std::vector<float>{0.25F, 0.5F, 0.75F, 1.0F}));
  ASSERT_EQ(copy.m_nTexVertexNums[3], 1u);
  EXPECT_EQ(Read(copy.m_pTexCoords[3], 2), (std::vector<float>{0.125F, 0.375F}));
  for (unsigned int const unit : {1u, 2u, 4u, 5u, 6u, 7u}) {
    EXPECT_EQ(copy.m_pTexCoords[unit], nullptr);
    EXPECT_EQ(copy.m_nTexVertexNums[unit], 0u);
  }
}

void ExpectNoSharedArrays(QXRenderOperation const& copy, QXRenderOperation const& source) {
  EXPECT_NE(copy.m_pVertices, source.m_pVertices);
  EXPECT_NE(copy.m_pNormals, source.m_pNormals);
  EXPECT_NE(copy.m_pIndices, source.m_pIndices);
  EXPECT_NE(copy.m_pDiffuseColors, source.m_pDiffuseColors);
  EXPECT_NE(copy.m_pTexCoords[0], source.m_pTexCoords[0]);
  EXPECT_NE(copy.m_pTexCoords[3], source.m_pTexCoords[3]);
}

TEST(QXRenderOperation, FreshHasItsDefaults) {
  QXRenderOperation const operation;
  EXPECT_EQ(operation.m_nMode0, 2);
  EXPECT_EQ(operation.m_nMode1, 0);
  EXPECT_EQ(operation.m_nMode2, 1);
  EXPECT_EQ(operation.m_nMode3, 3);
  EXPECT_EQ(operation.m_nMode4, 3);
  EXPECT_EQ(operation.m_bSwitch0, 0);
  EXPECT_EQ(operation.m_nVertexDim, 3);
  EXPECT_EQ(operation.m_nVertexNum, 0u);
  EXPECT_EQ(operation.m_pVertices, nullptr);
  EXPECT_EQ(operation.m_nVertexStride, 0);
  EXPECT_EQ(operation.m_pNormals, nullptr);
  EXPECT_EQ(operation.m_nNormalNum, 0u);
  EXPECT_EQ(operation.m_nNormalStride, 0);
  EXPECT_EQ(operation.m_bOption, 0);
  EXPECT_EQ(operation.m_nIndexNum, 0u);
  EXPECT_EQ(operation.m_pIndices, nullptr);
  EXPECT_EQ(operation.m_pDiffuseColors, nullptr);
  EXPECT_EQ(operation.m_nDiffuseStride, 0);
  EXPECT_EQ(operation.m_nDiffuseColorNum, 0u);
  EXPECT_EQ(operation.m_pExternalBuffer, nullptr);
  EXPECT_EQ(operation.m_nTexUnitNum, 0u);
  for (unsigned int unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(operation.m_pTexCoords[unit], nullptr);
    EXPECT_EQ(operation.m_pTextures[unit], nullptr);
    EXPECT_EQ(operation.m_nTexStrides[unit], 0);
    EXPECT_EQ(operation.m_nTexVertexNums[unit], 0u);
    EXPECT_EQ(operation.m_nTexDims[unit], 2u);
  }
  EXPECT_EQ(operation.m_bIndexShared, 0);
  EXPECT_EQ(operation.m_Color0, QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(operation.m_Color1, QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(operation.m_bSwitch1, 0);
  EXPECT_EQ(operation.m_nMode5, 0);
  EXPECT_EQ(operation.m_vVector1, QXVector3d(0.0, 0.0, 0.0));
  EXPECT_EQ(operation.m_bSwitch4, 0);
  EXPECT_EQ(operation.m_bDirty, 1);
  EXPECT_EQ(operation.m_pMatrix, nullptr);
  EXPECT_TRUE(operation.m_strName == L"");
  EXPECT_EQ(operation.m_fFactor, 1.0F);
  EXPECT_EQ(operation.m_nMode6, 0);
  EXPECT_EQ(operation.m_bSwitch5, 1);
  EXPECT_EQ(operation.m_dFactor, 1.0);
  EXPECT_EQ(operation.m_bSwitch6, 0);
  EXPECT_EQ(operation.m_nMode7, 1);
  EXPECT_EQ(operation.m_nMask, 65535);
  EXPECT_EQ(operation.m_nMode8, 0);
  EXPECT_EQ(operation.m_nMode9, 0);
  ExpectDefaultTexParameters(operation);
  ExpectDefaultNotCopied(operation);
}

TEST(QXRenderOperation, FiveArgumentsGoToTheirFieldsAndTheThirdIntIsIgnored) {
  QXRenderOperation const operation(7, 11, 12, 13, 14);
  EXPECT_EQ(operation.m_bOption, 7);
  EXPECT_EQ(operation.m_nMode0, 11);
  EXPECT_EQ(operation.m_nMode1, 12);
  EXPECT_EQ(operation.m_nMode2, 14);
  EXPECT_EQ(operation.m_nMode3, 3);
  EXPECT_EQ(operation.m_nMode4, 3);
  EXPECT_EQ(operation.m_nMode5, 0);
  EXPECT_EQ(operation.m_nMode6, 0);
  EXPECT_EQ(operation.m_nMode7, 1);
  EXPECT_EQ(operation.m_nMask, 65535);
  EXPECT_EQ(operation.m_bDirty, 1);
  ExpectDefaultTexParameters(operation);
}

TEST(QXRenderOperation, FieldsStandInOrder) {
  QXRenderOperation const o;
  void const* const fields[] = {&o.m_nMode0, &o.m_rcArea, &o.m_nMode1, &o.m_nMode2, &o.m_nMode3, &o.m_nMode4,
      &o.m_bSwitch0, &o.m_nVertexDim, &o.m_nVertexNum, &o.m_pVertices, &o.m_nVertexStride, &o.m_pNormals,
      &o.m_nNormalNum, &o.m_nNormalStride, &o.m_bOption, &o.m_nIndexNum, &o.m_pIndices, &o.m_pDiffuseColors,
      &o.m_nDiffuseStride, &o.m_nDiffuseColorNum, &o.m_pExternalBuffer, &o.m_pTexCoords, &o.m_pTextures,
      &o.m_nTexStrides, &o.m_nTexUnitNum, &o.m_nTexVertexNums, &o.m_nTexDims, &o.m_bIndexShared, &o.m_Color0,
      &o.m_Color1, &o.m_dTexParams, &o.m_vTexVectorsA, &o.m_vTexVectorsB, &o.m_vTexVectorsC, &o.m_bSwitch1,
      &o.m_nTriple, &o.m_bSwitch2, &o.m_bSwitch3, &o.m_vVector0, &o.m_matLocal, &o.m_nMode5, &o.m_vVector1,
      &o.m_bSwitch4, &o.m_bDirty, &o.m_pMatrix, &o.m_strName, &o.m_fFactor, &o.m_nMode6, &o.m_bSwitch5, &o.m_dFactor,
      &o.m_bSwitch6, &o.m_nMode7, &o.m_nMask, &o.m_nMode8, &o.m_nMode9, &o.m_bSwitch7};
  for (std::size_t i = 1; i < std::size(fields); ++i) EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
}

TEST(QXRenderOperation, IsDeletedThroughItsBase) {
  EXPECT_TRUE(std::has_virtual_destructor_v<QXRenderOperation>);
}

// --- Allocation -------------------------------------------------------------------------------------------------

// Every array of one vertex, so that a test sees which of them an operation replaces.
struct QXArraySnapshot {
  float* pVertices;
  float* pNormals;
  float* pTexCoords;
  unsigned short* pIndices;
  unsigned int* pColors;
};

class QXRenderOperationAllocation : public testing::Test {
protected:
  QXRenderOperationAllocation() {
    FillArrays(m_Operation);
    m_Operation.m_bDirty = 0;
    m_Operation.m_nTexUnitNum = 4;
    m_Before = {m_Operation.m_pVertices, m_Operation.m_pNormals, m_Operation.m_pTexCoords[0], m_Operation.m_pIndices,
        m_Operation.m_pDiffuseColors};
  }

  QXRenderOperation m_Operation;
  QXArraySnapshot m_Before = {};
};

TEST_F(QXRenderOperationAllocation, SetVertexNumReplacesPositionsOnly) {
  m_Operation.SetVertexNum(5);
  EXPECT_EQ(m_Operation.m_nVertexNum, 5u);
  EXPECT_EQ(m_Operation.m_nNormalNum, 2u);
  EXPECT_EQ(m_Operation.m_nIndexNum, 3u);
  EXPECT_EQ(m_Operation.m_nTexVertexNums[0], 2u);
  EXPECT_EQ(m_Operation.m_nTexUnitNum, 4u);
  EXPECT_EQ(m_Operation.m_pNormals, m_Before.pNormals);
  EXPECT_EQ(m_Operation.m_pTexCoords[0], m_Before.pTexCoords);
  EXPECT_EQ(m_Operation.m_pIndices, m_Before.pIndices);
  EXPECT_EQ(m_Operation.m_pDiffuseColors, m_Before.pColors);
  EXPECT_EQ(m_Operation.m_bDirty, 1);
  std::fill_n(m_Operation.m_pVertices, 15, 1.0F);
}

TEST_F(QXRenderOperationAllocation, SetVertexNormalNumReplacesPositionsAndNormals) {
  m_Operation.SetVertexNormalNum(5);
  EXPECT_EQ(m_Operation.m_nVertexNum, 5u);
  EXPECT_EQ(m_Operation.m_nNormalNum, 5u);
  EXPECT_EQ(m_Operation.m_nTexVertexNums[0], 2u);
  EXPECT_EQ(m_Operation.m_nTexUnitNum, 4u);
  EXPECT_EQ(m_Operation.m_pTexCoords[0], m_Before.pTexCoords);
  EXPECT_EQ(m_Operation.m_pIndices, m_Before.pIndices);
  EXPECT_EQ(m_Operation.m_pDiffuseColors, m_Before.pColors);
  EXPECT_EQ(m_Operation.m_bDirty, 1);
  std::fill_n(m_Operation.m_pVertices, 15, 1.0F);
  std::fill_n(m_Operation.m_pNormals, 15, 1.0F);
}

TEST_F(QXRenderOperationAllocation, SetTexVertexNumReplacesPositionsAndUnitZero) {
  m_Operation.SetTexVertexNum(5);
  EXPECT_EQ(m_Operation.m_nVertexNum, 5u);
  EXPECT_EQ(m_Operation.m_nNormalNum, 2u);
  EXPECT_EQ(m_Operation.m_nTexVertexNums[0], 5u);
  EXPECT_EQ(m_Operation.m_nTexVertexNums[3], 1u);
  EXPECT_EQ(m_Operation.m_nTexUnitNum, 1u);
  EXPECT_EQ(m_Operation.m_pNormals, m_Before.pNormals);
  EXPECT_EQ(m_Operation.m_pIndices, m_Before.pIndices);
  EXPECT_EQ(m_Operation.m_bDirty, 1);
  std::fill_n(m_Operation.m_pVertices, 15, 1.0F);
  std::fill_n(m_Operation.m_pTexCoords[0], 10, 1.0F);
}

TEST_F(QXRenderOperationAllocation, SetVertexNormTextureNumReplacesAllThree) {
  m_Operation.SetVertexNormTextureNum(5);
  EXPECT_EQ(m_Operation.m_nVertexNum, 5u);
  EXPECT_EQ(m_Operation.m_nNormalNum, 5u);
  EXPECT_EQ(m_Operation.m_nTexVertexNums[0], 5u);
  EXPECT_EQ(m_Operation.m_nTexVertexNums[3], 1u);
  EXPECT_EQ(m_Operation.m_nTexUnitNum, 1u);
  EXPECT_EQ(m_Operation.m_pIndices, m_Before.pIndices);
  EXPECT_EQ(m_Operation.m_pDiffuseColors, m_Before.pColors);
  EXPECT_EQ(m_Operation.m_bDirty, 1);
  std::fill_n(m_Operation.m_pVertices, 15, 1.0F);
  std::fill_n(m_Operation.m_pNormals, 15, 1.0F);
  std::fill_n(m_Operation.m_pTexCoords[0], 10, 1.0F);
}

TEST_F(QXRenderOperationAllocation, SetIndexNumReplacesIndicesOnly) {
  m_Operation.SetIndexNum(7);
  EXPECT_EQ(m_Operation.m_nIndexNum, 7u);
  EXPECT_EQ(m_Operation.m_nVertexNum, 2u);
  EXPECT_EQ(m_Operation.m_pVertices, m_Before.pVertices);
  EXPECT_EQ(m_Operation.m_pDiffuseColors, m_Before.pColors);
  EXPECT_EQ(m_Operation.m_bDirty, 1);
  std::fill_n(m_Operation.m_pIndices, 7, static_cast<unsigned short>(1));
}

TEST_F(QXRenderOperationAllocation, SetDiffuseColorNumLeavesItsCountAlone) {
  m_Operation.SetDiffuseColorNum(7);
  EXPECT_EQ(m_Operation.m_nDiffuseColorNum, 2u);
  EXPECT_EQ(m_Operation.m_pVertices, m_Before.pVertices);
  EXPECT_EQ(m_Operation.m_pIndices, m_Before.pIndices);
  EXPECT_EQ(m_Operation.m_bDirty, 1);
  std::fill_n(m_Operation.m_pDiffuseColors, 7, 1u);
}

TEST(QXRenderOperation, ZeroCountsGiveEmptyArraysThatAreNotNull) {
  QXRenderOperation operation;
  operation.SetVertexNum(0);
  EXPECT_NE(operation.m_pVertices, nullptr);
  EXPECT_EQ(operation.m_nVertexNum, 0u);
  operation.SetVertexNormTextureNum(0);
  EXPECT_NE(operation.m_pNormals, nullptr);
  EXPECT_NE(operation.m_pTexCoords[0], nullptr);
  operation.SetIndexNum(0);
  EXPECT_NE(operation.m_pIndices, nullptr);
  operation.SetDiffuseColorNum(0);
  EXPECT_NE(operation.m_pDiffuseColors, nullptr);
}

TEST(QXRenderOperation, ColoursAllocatedOnAFreshOperationAreNotCopied) {
  QXRenderOperation operation;
  operation.SetDiffuseColorNum(4);
  std::fill_n(operation.m_pDiffuseColors, 4, 0xFFFFFFFFu);
  EXPECT_EQ(operation.m_nDiffuseColorNum, 0u);
  QXRenderOperation const copy(operation);
  EXPECT_EQ(copy.m_pDiffuseColors, nullptr);
  EXPECT_EQ(copy.m_nDiffuseColorNum, 0u);
}

TEST(QXRenderOperation, FewerColoursThanCountedStillCopyWithinTheArray) {
  QXRenderOperation operation;
  operation.m_nDiffuseColorNum = 100;
  operation.SetDiffuseColorNum(1);
  std::fill_n(operation.m_pDiffuseColors, 100, 5u);
  QXRenderOperation const copy(operation);
  ASSERT_EQ(copy.m_nDiffuseColorNum, 100u);
  EXPECT_EQ(copy.m_pDiffuseColors[99], 5u);
}

TEST(QXRenderOperation, SetIndexNumLetsGoOfASharedArray) {
  QXSharedIndices shared;
  QXRenderOperation& operation = shared.m_Operation;
  operation.SetIndexNum(2);
  EXPECT_EQ(operation.m_bIndexShared, 0);
  EXPECT_NE(operation.m_pIndices, shared.m_arrIndices);
  EXPECT_EQ(shared.m_arrIndices[2], 3);
  operation.SetIndexValue(1, 9);
  EXPECT_EQ(operation.m_pIndices[1], 9);
}

TEST(QXRenderOperation, InitSetsCountsAndAllocatesNothing) {
  QXRenderOperation operation;
  operation.m_bDirty = 0;
  operation.InitIndexNum(6);
  EXPECT_EQ(operation.m_nIndexNum, 6u);
  EXPECT_EQ(operation.m_pIndices, nullptr);
  EXPECT_EQ(operation.m_nVertexNum, 0u);
  operation.InitTexVertexNum(8);
  EXPECT_EQ(operation.m_nVertexNum, 8u);
  EXPECT_EQ(operation.m_nTexVertexNums[0], 8u);
  EXPECT_EQ(operation.m_nTexVertexNums[1], 0u);
  EXPECT_EQ(operation.m_nTexUnitNum, 1u);
  EXPECT_EQ(operation.m_nNormalNum, 0u);
  EXPECT_EQ(operation.m_pVertices, nullptr);
  EXPECT_EQ(operation.m_pTexCoords[0], nullptr);
  EXPECT_EQ(operation.m_bDirty, 0);
}

// --- Setters ----------------------------------------------------------------------------------------------------

TEST(QXRenderOperation, SetVertexValueStoresThreeFloatsWhateverTheDimensionSays) {
  QXRenderOperation operation;
  operation.m_nVertexDim = 2;
  operation.SetVertexNum(2);
  operation.SetVertexValue(0, 1.0, 2.0, 3.0);
  operation.SetVertexValue(1, 4.0, 5.0, 6.0);
  EXPECT_EQ(Read(operation.m_pVertices, 6), (std::vector<float>{1, 2, 3, 4, 5, 6}));
}

TEST(QXRenderOperation, SettersNarrowEachNumberOnStore) {
  QXRenderOperation operation;
  operation.SetVertexNormTextureNum(1);
  // 16777217 is the first whole number that no float holds; 0.1 is rounded to the nearest float.
  operation.SetVertexNormTextureValue(0, QXVector3d(16777217.0, 0.1, -1e300), QXVector3d(0.2, 0.3, 0.4), 0.6, 0.7);
  EXPECT_EQ(operation.m_pVertices[0], 16777216.0F);
  EXPECT_EQ(operation.m_pVertices[1], 0.1F);
  EXPECT_EQ(operation.m_pVertices[2], -std::numeric_limits<float>::infinity());
  EXPECT_EQ(Read(operation.m_pNormals, 3), (std::vector<float>{0.2F, 0.3F, 0.4F}));
  EXPECT_EQ(Read(operation.m_pTexCoords[0], 2), (std::vector<float>{0.6F, 0.7F}));
}

TEST(QXRenderOperation, SettersDoNotMarkTheOperation) {
  QXRenderOperation operation;
  operation.SetVertexNormTextureNum(1);
  operation.SetIndexNum(1);
  operation.m_bDirty = 0;
  operation.SetVertexNormTextureValue(0, QXVector3d(), QXVector3d(), 0.0, 0.0);
  operation.SetIndexValue(0, 1);
  EXPECT_EQ(operation.m_bDirty, 0);
}

TEST(QXRenderOperation, SetTexVertexValueTakesThreeForms) {
  QXRenderOperation operation;
  operation.SetTexVertexNum(3);
  TextureVertex vertex;
  vertex.x = 1.0;
  vertex.y = 2.0;
  vertex.z = 3.0;
  vertex.u = 0.125;
  vertex.v = 0.25;
  operation.SetTexVertexValue(0, vertex);
  operation.SetTexVertexValue(1, QXVector3d(4.0, 5.0, 6.0), 0.375, 0.5);
  operation.SetTexVertexValue(2, 7.0, 8.0, 9.0, 0.625, 0.75);
  EXPECT_EQ(Read(operation.m_pVertices, 9), (std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(Read(operation.m_pTexCoords[0], 6), (std::vector<float>{0.125F, 0.25F, 0.375F, 0.5F, 0.625F, 0.75F}));
}

TEST(QXRenderOperation, SetVertexNormalValueStoresBoth) {
  QXRenderOperation operation;
  operation.SetVertexNormalNum(2);
  operation.SetVertexNormalValue(0, QXVector3d(1.0, 2.0, 3.0), QXVector3d(0.0, 0.0, 1.0));
  operation.SetVertexNormalValue(1, QXVector3d(4.0, 5.0, 6.0), QXVector3d(1.0, 0.0, 0.0));
  EXPECT_EQ(Read(operation.m_pVertices, 6), (std::vector<float>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(Read(operation.m_pNormals, 6), (std::vector<float>{0, 0, 1, 1, 0, 0}));
}

TEST(QXRenderOperation, SetIndexValueHoldsTheWholeRange) {
  QXRenderOperation operation;
  operation.SetIndexNum(2);
  operation.SetIndexValue(0, 0);
  operation.SetIndexValue(1, 65535);
  EXPECT_EQ(Read(operation.m_pIndices, 2), (std::vector<unsigned short>{0, 65535}));
}

TEST(QXRenderOperation, SetMatrixStoresACopyOfItsOwn) {
  QXRenderOperation operation;
  QXMatrix4d matrix = MakeTranslation(1.0, 2.0, 3.0);
  operation.SetMatrix(matrix);
  ASSERT_NE(operation.GetMatrix(), nullptr);
  EXPECT_NE(operation.GetMatrix(), &matrix);
  EXPECT_EQ(*operation.GetMatrix(), matrix);
  matrix = MakeTranslation(4.0, 5.0, 6.0);
  EXPECT_EQ((*operation.GetMatrix())[3][0], 1.0);
  operation.SetMatrix(matrix);
  EXPECT_EQ((*operation.GetMatrix())[3][0], 4.0);
}

TEST(QXRenderOperation, SetMatrixTakesItsOwnMatrix) {
  QXRenderOperation operation;
  QXMatrix4d matrix = MakeTranslation(1.0, 2.0, 3.0);
  operation.SetMatrix(matrix);
  operation.SetMatrix(*operation.GetMatrix());
  EXPECT_EQ(*operation.GetMatrix(), matrix);
}

// --- Copies -----------------------------------------------------------------------------------------------------

// A source of which every field says whether it was carried.
class QXRenderOperationCopy : public testing::Test {
protected:
  QXRenderOperationCopy() {
    FillCopiedByBoth(m_Source);
    FillTexParameters(m_Source);
    FillNotCopied(m_Source);
    FillArrays(m_Source);
    m_Source.m_nTexUnitNum = 5;
    QXMatrix4d matrix = MakeTranslation(1.0, 2.0, 3.0);
    m_Source.SetMatrix(matrix);
    m_Source.m_pExternalBuffer = &m_nExternal;
    m_Source.m_bDirty = 0;
  }
  void ExpectCarried(QXRenderOperation const& copy) const {
    ExpectCopiedByBoth(copy);
    ExpectDefaultNotCopied(copy);
    ExpectArrays(copy);
    ExpectNoSharedArrays(copy, m_Source);
    EXPECT_EQ(copy.m_pExternalBuffer, &m_nExternal);
    EXPECT_EQ(copy.m_nDiffuseStride, 77) << "the source's vertex stride";
  }

  QXRenderOperation m_Source;
  int m_nExternal = 0;
};

TEST_F(QXRenderOperationCopy, ConstructionCarriesEachFieldByItsRule) {
  QXRenderOperation const copy(m_Source);
  ExpectCarried(copy);
  ExpectTexParameters(copy);
  EXPECT_EQ(copy.m_bDirty, 1);
  EXPECT_EQ(copy.m_pMatrix, nullptr);
}

TEST_F(QXRenderOperationCopy, AssignmentCarriesEachFieldByItsRule) {
  m_Source.m_bDirty = 1;
  QXRenderOperation target;
  target.SetVertexNormTextureNum(9);
  target.SetIndexNum(9);
  target.SetDiffuseColorNum(9);
  target.m_nDiffuseColorNum = 9;
  target.m_pTexCoords[7] = new float[2];
  target.m_nTexVertexNums[7] = 1;
  QXMatrix4d targetMatrix = MakeTranslation(9.0, 9.0, 9.0);
  target.SetMatrix(targetMatrix);
  target.m_bDirty = 0;
  target = m_Source;

  ExpectCarried(target);
  ExpectDefaultTexParameters(target);
  EXPECT_EQ(target.m_bDirty, 0);
  ASSERT_NE(target.m_pMatrix, nullptr);
  EXPECT_EQ(*target.m_pMatrix, targetMatrix);
}

TEST(QXRenderOperation, AssignmentKeepsFieldsThatNoCopyCarries) {
  QXRenderOperation const source;
  QXRenderOperation target;
  FillNotCopied(target);
  FillTexParameters(target);
  target = source;
  EXPECT_EQ(target.m_rcArea, QdcRect2D(1.0, 2.0, 3.0, 4.0));
  EXPECT_EQ(target.m_nTriple[2], 3u);
  EXPECT_EQ(target.m_bSwitch2, 1);
  EXPECT_EQ(target.m_bSwitch3, 1);
  EXPECT_EQ(target.m_vVector0, QXVector3d(7.0, 8.0, 9.0));
  EXPECT_EQ(target.m_matLocal, MakeTranslation(1.0, 2.0, 3.0));
  EXPECT_EQ(target.m_bSwitch7, 0);
  ExpectTexParameters(target);
}

TEST(QXRenderOperation, AssignmentToItselfDoesNothingAtAll) {
  QXBareTexture texture;
  QXRenderOperation operation;
  FillArrays(operation);
  operation.m_pTextures[0] = &texture;
  operation.m_nVertexStride = 12;
  operation.m_nDiffuseStride = 34;
  float const* const pVertices = operation.m_pVertices;
  QXRenderOperation& same = operation;
  operation = same;
  EXPECT_EQ(operation.m_pVertices, pVertices);
  EXPECT_EQ(operation.m_nDiffuseStride, 34);
  EXPECT_EQ(texture.GetRef(), 0);
  ExpectArrays(operation);
}

TEST(QXRenderOperation, CountWithoutArrayIsCopiedAsNothing) {
  QXRenderOperation source;
  source.m_nVertexNum = 5;
  source.m_nNormalNum = 5;
  source.m_nDiffuseColorNum = 5;
  source.m_nIndexNum = 5;
  for (unsigned int& nNum : source.m_nTexVertexNums) nNum = 5;
  QXRenderOperation const copy(source);
  QXRenderOperation assigned;
  FillArrays(assigned);
  assigned = source;
  for (QXRenderOperation const* pCopy : {&copy, static_cast<QXRenderOperation const*>(&assigned)}) {
    EXPECT_EQ(pCopy->m_nVertexNum, 0u);
    EXPECT_EQ(pCopy->m_pVertices, nullptr);
    EXPECT_EQ(pCopy->m_nNormalNum, 0u);
    EXPECT_EQ(pCopy->m_pNormals, nullptr);
    EXPECT_EQ(pCopy->m_nDiffuseColorNum, 0u);
    EXPECT_EQ(pCopy->m_pDiffuseColors, nullptr);
    EXPECT_EQ(pCopy->m_nIndexNum, 0u);
    EXPECT_EQ(pCopy->m_pIndices, nullptr);
    for (unsigned int unit = 0; unit < 8; ++unit) {
      EXPECT_EQ(pCopy->m_nTexVertexNums[unit], 0u);
      EXPECT_EQ(pCopy->m_pTexCoords[unit], nullptr);
    }
  }
}

TEST(QXRenderOperation, ArrayWithoutCountIsCopiedAsNothing) {
  QXRenderOperation source;
  source.SetVertexNormTextureNum(0);
  source.SetIndexNum(0);
  QXRenderOperation const copy(source);
  EXPECT_EQ(copy.m_pVertices, nullptr);
  EXPECT_EQ(copy.m_pNormals, nullptr);
  EXPECT_EQ(copy.m_pIndices, nullptr);
  EXPECT_EQ(copy.m_pTexCoords[0], nullptr);
}

TEST(QXRenderOperation, UnitOfThreeDimensionsCopiesTwoThirds) {
  QXRenderOperation source;
  source.m_nTexDims[2] = 3;
  source.m_nTexVertexNums[2] = 2;
  source.m_pTexCoords[2] = new float[6]{1, 2, 3, 4, 5, 6};
  QXRenderOperation const copy(source);
  ASSERT_EQ(copy.m_nTexVertexNums[2], 2u);
  EXPECT_EQ(copy.m_nTexDims[2], 3u);
  // The copy's array ends here: the address sanitizer would see a fifth number.
  EXPECT_EQ(Read(copy.m_pTexCoords[2], 4), (std::vector<float>{1, 2, 3, 4}));
}

TEST(QXRenderOperation, AssignmentTakesReferencesAndCopyConstructionDoesNot) {
  QXBareTexture first;
  QXBareTexture second;
  QXBareTexture old;
  {
    QXRenderOperation source;
    source.m_pTextures[0] = &first;
    source.m_pTextures[5] = &second;
    source.m_pTextures[6] = &second;
    QXRenderOperation const copy(source);
    EXPECT_EQ(copy.m_pTextures[5], &second);
    EXPECT_EQ(first.GetRef(), 0);

    QXRenderOperation target;
    target.m_pTextures[0] = &old;
    target = source;
    EXPECT_EQ(target.m_pTextures[0], &first);
    EXPECT_EQ(target.m_pTextures[5], &second);
    EXPECT_EQ(target.m_pTextures[1], nullptr);
    EXPECT_EQ(first.GetRef(), 1);
    EXPECT_EQ(second.GetRef(), 2);
    EXPECT_EQ(old.GetRef(), 0) << "the texture that was there is not released";
    target.Release();
    EXPECT_EQ(target.m_pTextures[0], nullptr);
    EXPECT_EQ(first.GetRef(), 1);
  }
  EXPECT_EQ(first.GetRef(), 1);
  EXPECT_EQ(second.GetRef(), 2);
}

// --- Shared index arrays ----------------------------------------------------------------------------------------

TEST(QXRenderOperation, CopyOfSharedIndicesIsAnArrayOfItsOwnUnderTheFlag) {
  QXSharedIndices shared;
  QXRenderOperation& source = shared.m_Operation;
  {
    QXRenderOperation const copy(source);
    EXPECT_EQ(copy.m_bIndexShared, 1);
    EXPECT_NE(copy.m_pIndices, shared.m_arrIndices);
    EXPECT_EQ(Read(copy.m_pIndices, 3), (std::vector<unsigned short>{1, 2, 3}));
    QXRenderOperation assigned;
    assigned.SetIndexNum(4);
    assigned = source;
    EXPECT_EQ(assigned.m_bIndexShared, 1);
    EXPECT_EQ(Read(assigned.m_pIndices, 3), (std::vector<unsigned short>{1, 2, 3}));
    assigned = copy;
    EXPECT_EQ(Read(assigned.m_pIndices, 3), (std::vector<unsigned short>{1, 2, 3}));
  }
  EXPECT_EQ(shared.m_arrIndices[0], 1);
}

TEST(QXRenderOperation, ReleaseOfACopyOfSharedIndicesLeavesItsArrayReadable) {
  QXSharedIndices shared;
  QXRenderOperation& source = shared.m_Operation;
  QXRenderOperation copy(source);
  unsigned short const* const pIndices = copy.m_pIndices;
  copy.Release();
  EXPECT_EQ(copy.m_pIndices, pIndices);
  EXPECT_EQ(copy.m_pIndices[2], 3);
}

TEST(QXRenderOperation, FlagClearedByHandOnACopyFreesItsArrayOnce) {
  QXSharedIndices shared;
  QXRenderOperation& source = shared.m_Operation;
  QXRenderOperation released(source);
  released.m_bIndexShared = 0;
  released.Release();
  EXPECT_EQ(released.m_pIndices, nullptr);
  QXRenderOperation replaced(source);
  replaced.m_bIndexShared = 0;
  replaced.SetIndexNum(5);
  QXRenderOperation repointed(source);
  repointed.m_pIndices = shared.m_arrIndices;
  repointed.SetIndexNum(5);
  EXPECT_EQ(shared.m_arrIndices[1], 2);
}

TEST(QXRenderOperation, AssignmentOverSharedIndicesLeavesTheForeignArrayAlone) {
  QXRenderOperation source;
  FillArrays(source);
  QXSharedIndices shared;
  QXRenderOperation& target = shared.m_Operation;
  target = source;
  EXPECT_EQ(target.m_bIndexShared, 0);
  EXPECT_EQ(shared.m_arrIndices[1], 2);
  ExpectArrays(target);
}

TEST(QXRenderOperation, SourceMayShareTheIndicesOfItsTarget) {
  QXRenderOperation target;
  FillArrays(target);
  QXRenderOperation source;
  source.m_pIndices = target.m_pIndices;
  source.m_nIndexNum = 3;
  source.m_bIndexShared = 1;
  target = source;
  EXPECT_EQ(Read(target.m_pIndices, 3), (std::vector<unsigned short>{0, 10, 20}));
  source.SetNull();
}

// --- SetNull and Release ----------------------------------------------------------------------------------------

TEST(QXRenderOperation, SetNullForgetsArraysAndKeepsCounts) {
  QXRenderOperation operation;
  FillArrays(operation);
  int external = 0;
  operation.m_pExternalBuffer = &external;
  QXBareTexture texture;
  operation.m_pTextures[0] = &texture;
  QXMatrix4d matrix;
  operation.SetMatrix(matrix);
  operation.m_bDirty = 0;
  float* const pArrays[] = {
      operation.m_pVertices, operation.m_pNormals, operation.m_pTexCoords[0], operation.m_pTexCoords[3]};
  unsigned short* const pIndices = operation.m_pIndices;
  unsigned int* const pColors = operation.m_pDiffuseColors;
  operation.SetNull();
  EXPECT_EQ(operation.m_pVertices, nullptr);
  EXPECT_EQ(operation.m_pNormals, nullptr);
  EXPECT_EQ(operation.m_pIndices, nullptr);
  EXPECT_EQ(operation.m_pDiffuseColors, nullptr);
  EXPECT_EQ(operation.m_pExternalBuffer, nullptr);
  for (float const* pCoords : operation.m_pTexCoords) EXPECT_EQ(pCoords, nullptr);
  EXPECT_EQ(operation.m_nVertexNum, 2u);
  EXPECT_EQ(operation.m_nNormalNum, 2u);
  EXPECT_EQ(operation.m_nIndexNum, 3u);
  EXPECT_EQ(operation.m_nDiffuseColorNum, 2u);
  EXPECT_EQ(operation.m_nTexVertexNums[0], 2u);
  EXPECT_EQ(operation.m_pTextures[0], &texture);
  EXPECT_NE(operation.m_pMatrix, nullptr);
  EXPECT_EQ(operation.m_bDirty, 0);
  // The arrays are alive and now this test's.
  EXPECT_EQ(pArrays[0][5], 6.0F);
  for (float const* pArray : pArrays) delete[] pArray;
  delete[] pIndices;
  delete[] pColors;
}

TEST(QXRenderOperation, SetNullHandsOnTheCopyOfASharedArrayToo) {
  QXSharedIndices shared;
  QXRenderOperation& source = shared.m_Operation;
  QXRenderOperation copy(source);
  unsigned short* const pIndices = copy.m_pIndices;
  copy.SetNull();
  EXPECT_EQ(pIndices[2], 3);
  delete[] pIndices;
}

TEST(QXRenderOperation, ReleaseFreesArraysAndResetsThreeCounts) {
  QXRenderOperation operation;
  FillArrays(operation);
  int external = 0;
  operation.m_pExternalBuffer = &external;
  QXBareTexture texture;
  for (QXTexture*& pTexture : operation.m_pTextures) pTexture = &texture;
  QXMatrix4d matrix;
  operation.SetMatrix(matrix);
  operation.m_strName = L"kept";
  operation.m_bDirty = 0;
  operation.Release();
  EXPECT_EQ(operation.m_pVertices, nullptr);
  EXPECT_EQ(operation.m_pNormals, nullptr);
  EXPECT_EQ(operation.m_pDiffuseColors, nullptr);
  EXPECT_EQ(operation.m_pIndices, nullptr);
  for (unsigned int unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(operation.m_pTextures[unit], nullptr);
    EXPECT_EQ(operation.m_pTexCoords[unit], nullptr);
  }
  EXPECT_EQ(operation.m_pExternalBuffer, nullptr);
  EXPECT_EQ(operation.m_nVertexNum, 0u);
  EXPECT_EQ(operation.m_nNormalNum, 0u);
  EXPECT_EQ(operation.m_nIndexNum, 0u);
  EXPECT_EQ(operation.m_nDiffuseColorNum, 2u);
  EXPECT_EQ(operation.m_nTexVertexNums[0], 2u);
  EXPECT_EQ(operation.m_nTexVertexNums[3], 1u);
  EXPECT_EQ(operation.m_nTexUnitNum, 1u);
  EXPECT_EQ(operation.m_pMatrix, nullptr);
  EXPECT_EQ(texture.GetRef(), 0);
  EXPECT_EQ(operation.m_bDirty, 0);
  EXPECT_TRUE(operation.m_strName == L"kept");
  operation.Release();  // nothing is left to free twice
}

TEST(QXRenderOperation, ReleaseLeavesASharedIndexArrayInPlace) {
  QXSharedIndices shared;
  QXRenderOperation& operation = shared.m_Operation;
  operation.Release();
  EXPECT_EQ(operation.m_pIndices, shared.m_arrIndices);
  EXPECT_EQ(operation.m_nIndexNum, 0u);
  EXPECT_EQ(operation.m_bIndexShared, 1);
  EXPECT_EQ(shared.m_arrIndices[2], 3);
}

}  // namespace
}  // namespace QXC
