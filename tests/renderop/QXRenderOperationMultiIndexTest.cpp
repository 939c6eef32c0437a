#include <cstddef>
#include <iterator>
#include <type_traits>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

#include "QXRenderOperationParts.h"

namespace QXC {
namespace {

// Takes out of a copy what the other copy will free.
void DetachAll(QXRenderOperationMultiIndex& operation) {
  Detach(operation);
  operation.m_pTexCoordBlock = nullptr;
  operation.m_arrIndexPackages.RemoveAll();
  operation.m_arrTexturePackages.RemoveAll();
  operation.m_nSize = 0;
}

TEST(QXRenderOperationMultiIndex, FreshHasItsDefaults) {
  QXRenderOperationMultiIndex const operation;
  EXPECT_EQ(operation.m_eType, 2);
  EXPECT_EQ(operation.m_dFactor1, 1.0);
  EXPECT_EQ(operation.m_nCount1, 1);
  EXPECT_EQ(operation.m_dFactor2, 1.0);
  EXPECT_EQ(operation.m_nCount2, 1);
  EXPECT_EQ(operation.m_pTexCoordBlock, nullptr);
  EXPECT_EQ(operation.m_nSize, 0);
  EXPECT_EQ(operation.GetSize(), 0);
  EXPECT_EQ(operation.m_arrIndexPackages.GetSize(), 0u);
  EXPECT_EQ(operation.m_arrTexturePackages.GetSize(), 0u);
  EXPECT_EQ(operation.m_bDirty, 1);
  EXPECT_EQ(operation.m_nMode3, 4);
}

TEST(QXRenderOperationMultiIndex, FieldsStandInOrderBehindTheBase) {
  QXRenderOperationMultiIndex const operation;
  void const* const fields[] = {&operation.m_bDirty, &operation.m_pTexCoordBlock, &operation.m_nSize,
      &operation.m_arrIndexPackages, &operation.m_arrTexturePackages};
  for (std::size_t i = 1; i < std::size(fields); ++i) EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
  EXPECT_FALSE(std::is_polymorphic_v<QXRenderOperationMultiIndex>);
}

TEST(QXRenderOperationMultiIndex, SetAtPairsPackagesAndMarksTheOperation) {
  QXRenderOperationMultiIndex operation;
  auto* pIndex0 = new QXVertexIndexPackage;
  auto* pIndex1 = new QXVertexIndexPackage;
  auto* pTexture0 = new QXTexturePackage;
  auto* pTexture1 = new QXTexturePackage;
  operation.m_bDirty = 0;
  operation.SetAt(pIndex0, pTexture0);
  EXPECT_EQ(operation.m_bDirty, 1);
  operation.SetAt(pIndex1, pTexture1);
  EXPECT_EQ(operation.GetSize(), 2);
  ASSERT_EQ(operation.GetIndexPackageArray().GetSize(), 2u);
  ASSERT_EQ(operation.GetTexturePackageArray().GetSize(), 2u);
  EXPECT_EQ(operation.GetIndexPackageArray()[0], pIndex0);
  EXPECT_EQ(operation.GetIndexPackageArray()[1], pIndex1);
  EXPECT_EQ(operation.GetTexturePackageArray()[0], pTexture0);
  EXPECT_EQ(operation.GetTexturePackageArray()[1], pTexture1);
  EXPECT_EQ(&operation.GetIndexPackageArray(), &operation.m_arrIndexPackages);
  EXPECT_EQ(&operation.GetTexturePackageArray(), &operation.m_arrTexturePackages);
}

TEST(QXRenderOperationMultiIndex, SetAtWithoutIndexPackageChangesNothing) {
  QXRenderOperationMultiIndex operation;
  operation.m_bDirty = 0;
  QXTexturePackage texture;
  operation.SetAt(nullptr, &texture);
  EXPECT_EQ(operation.m_bDirty, 0);
  EXPECT_EQ(operation.GetSize(), 0);
  EXPECT_EQ(operation.GetIndexPackageArray().GetSize(), 0u);
  EXPECT_EQ(operation.GetTexturePackageArray().GetSize(), 0u);
}

TEST(QXRenderOperationMultiIndex, RangeWithoutTexturePackageIsKeptAndRemoved) {
  QXRenderOperationMultiIndex operation;
  operation.SetAt(new QXVertexIndexPackage, nullptr);
  EXPECT_EQ(operation.GetSize(), 1);
  EXPECT_EQ(operation.GetTexturePackageArray()[0], nullptr);
  operation.RemoveAll();
  EXPECT_EQ(operation.GetSize(), 0);
  operation.SetAt(new QXVertexIndexPackage, nullptr);  // for the destructor
}

TEST(QXRenderOperationMultiIndex, RemoveAllDeletesWhatTheOperationOwns) {
  // The address sanitizer's leak check is what looks here.
  QXRenderOperationMultiIndex operation;
  for (int i = 0; i < 3; ++i) {
    auto* pIndex = new QXVertexIndexPackage;
    pIndex->m_pIndices = new unsigned short[3];
    operation.SetAt(pIndex, new QXTexturePackage);
  }
  operation.m_bDirty = 0;
  operation.RemoveAll();
  EXPECT_EQ(operation.GetSize(), 0);
  EXPECT_EQ(operation.m_arrIndexPackages.GetCapacity(), 0u);
  EXPECT_EQ(operation.m_arrTexturePackages.GetCapacity(), 0u);
  EXPECT_EQ(operation.m_bDirty, 0);
}

TEST(QXRenderOperationMultiIndex, RemoveAllLeavesForeignPackagesAlive) {
  QXVertexIndexPackage index;
  index.m_bPackageOwned = 0;
  index.m_nIndexNum = 42;
  QXTexturePackage texture;
  texture.m_bOwned = 0;
  texture.m_nTextureIDs[0] = 7;
  {
    QXRenderOperationMultiIndex operation;
    operation.SetAt(&index, &texture);
    operation.RemoveAll();
    EXPECT_EQ(operation.GetIndexPackageArray().GetSize(), 0u);
    operation.SetAt(&index, &texture);  // for the destructor
  }
  EXPECT_EQ(index.m_nIndexNum, 42u);
  EXPECT_EQ(texture.m_nTextureIDs[0], 7);
}

TEST(QXRenderOperationMultiIndex, OwnershipByteMustBeExactlyOne) {
  QXVertexIndexPackage index;
  index.m_bPackageOwned = 2;
  QXTexturePackage texture;
  texture.m_bOwned = 2;
  QXRenderOperationMultiIndex operation;
  operation.SetAt(&index, &texture);
  operation.RemoveAll();
  EXPECT_EQ(operation.GetSize(), 0);
}

TEST(QXRenderOperationMultiIndex, RemoveAllOnEmptyLeavesItEmpty) {
  QXRenderOperationMultiIndex operation;
  operation.RemoveAll();
  operation.RemoveAll();
  EXPECT_EQ(operation.GetSize(), 0);
}

TEST(QXRenderOperationMultiIndex, CopiesShareEverythingAndOneIsDestroyed) {
  QXRenderOperationMultiIndex source;
  source.m_pTexCoordBlock = new QXTexCoordBlock;
  source.m_pTexCoordBlock->m_pBuffers[0] = new float[8];
  source.m_pVertexBlock = new QXVertexBlock;
  source.m_pVertexBlock->m_pBuffer = new float[12];
  source.m_pIndexBlock = new QXIndexBlock;
  QXMatrix4d matrix;
  source.SetMatrix(matrix);
  source.SetAt(new QXVertexIndexPackage, new QXTexturePackage);
  source.SetAt(new QXVertexIndexPackage, new QXTexturePackage);
  source.m_dFactor1 = 9.0;
  source.m_nMode0 = 9;

  QXRenderOperationMultiIndex copy(source);
  QXRenderOperationMultiIndex assigned;
  assigned = source;
  for (QXRenderOperationMultiIndex* pCopy : {&copy, &assigned}) {
    EXPECT_EQ(pCopy->m_eType, 2);
    EXPECT_EQ(pCopy->m_pTexCoordBlock, source.m_pTexCoordBlock);
    EXPECT_EQ(pCopy->m_pVertexBlock, source.m_pVertexBlock);
    EXPECT_EQ(pCopy->m_pIndexBlock, source.m_pIndexBlock);
    EXPECT_EQ(pCopy->m_pMatrix, source.m_pMatrix);
    EXPECT_EQ(pCopy->GetSize(), 2);
    ASSERT_EQ(pCopy->GetIndexPackageArray().GetSize(), 2u);
    for (std::uint64_t i = 0; i < 2; ++i) {
      EXPECT_EQ(pCopy->GetIndexPackageArray()[i], source.GetIndexPackageArray()[i]);
      EXPECT_EQ(pCopy->GetTexturePackageArray()[i], source.GetTexturePackageArray()[i]);
    }
    EXPECT_EQ(pCopy->m_dFactor1, 1.0);
    EXPECT_EQ(pCopy->m_nCount2, 1);
    EXPECT_EQ(pCopy->m_nMode0, 0);
    DetachAll(*pCopy);
  }
}

// The address sanitizer sees a package freed twice or never.
TEST(QXRenderOperationMultiIndex, CopyOfSizeZeroLeavesThePackagesToTheOther) {
  QXRenderOperationMultiIndex source;
  source.SetAt(new QXVertexIndexPackage, new QXTexturePackage);
  source.GetIndexPackageArray()[0]->m_nIndexNum = 42;
  {
    QXRenderOperationMultiIndex copy(source);
    copy.m_nSize = 0;
  }
  EXPECT_EQ(source.GetIndexPackageArray()[0]->m_nIndexNum, 42u);
  EXPECT_EQ(source.GetTexturePackageArray()[0]->m_bOwned, 1);
}

TEST(QXRenderOperationMultiIndex, RemoveAllDeletesNoMorePairsThanItsSize) {
  QXRenderOperationMultiIndex operation;
  auto* const pIndex = new QXVertexIndexPackage;
  auto* const pTexture = new QXTexturePackage;
  operation.SetAt(new QXVertexIndexPackage, new QXTexturePackage);
  operation.SetAt(pIndex, pTexture);
  operation.m_nSize = 1;
  operation.RemoveAll();
  EXPECT_EQ(operation.GetSize(), 0);
  EXPECT_EQ(operation.GetIndexPackageArray().GetSize(), 0u);
  EXPECT_EQ(operation.GetTexturePackageArray().GetSize(), 0u);
  EXPECT_EQ(pIndex->m_bPackageOwned, 1);
  EXPECT_EQ(pTexture->m_bOwned, 1);
  delete pIndex;
  delete pTexture;
}

TEST(QXRenderOperationMultiIndex, RemoveAllStaysInsideItsArraysWhateverItsSizeSays) {
  QXRenderOperationMultiIndex operation;
  operation.SetAt(new QXVertexIndexPackage, nullptr);
  operation.m_nSize = 7;
  operation.RemoveAll();
  EXPECT_EQ(operation.GetSize(), 0);
  EXPECT_EQ(operation.GetIndexPackageArray().GetSize(), 0u);

  auto* const pIndex = new QXVertexIndexPackage;
  operation.SetAt(pIndex, nullptr);
  operation.m_nSize = -1;
  operation.RemoveAll();
  EXPECT_EQ(operation.GetSize(), 0);
  EXPECT_EQ(operation.GetIndexPackageArray().GetSize(), 0u);
  EXPECT_EQ(pIndex->m_bPackageOwned, 1);
  delete pIndex;
}

TEST(QXRenderOperationMultiIndex, AssignmentToItselfChangesNothing) {
  QXRenderOperationMultiIndex operation;
  operation.SetAt(new QXVertexIndexPackage, new QXTexturePackage);
  QXRenderOperationMultiIndex& same = operation;
  operation = same;
  EXPECT_EQ(operation.GetSize(), 1);
  EXPECT_EQ(operation.GetIndexPackageArray().GetSize(), 1u);
}

}  // namespace
}  // namespace QXC
