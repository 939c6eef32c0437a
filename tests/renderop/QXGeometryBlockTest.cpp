#include <cstddef>
#include <iterator>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/renderop/QXIndexBlock.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

#include <bit>

// Who frees what is looked at by the address sanitizer: a buffer freed twice or never fails there.
namespace QXC {
namespace {

TEST(QXVertexBlock, FreshIsEmptyWithPositionsOnly) {
  QXVertexBlock const block;
  EXPECT_EQ(block.m_pBuffer, nullptr);
  EXPECT_EQ(block.m_nVertexCount, 0u);
  EXPECT_EQ(block.m_nStride, 0);
  EXPECT_EQ(block.m_nPositionOffset, 0);
  EXPECT_EQ(block.m_nNormalOffset, -1);
  EXPECT_EQ(block.m_nColorOffset, -1);
}

TEST(QXVertexBlock, BufferStandsFirstAndIsFreedWithTheBlock) {
  auto* pBlock = new QXVertexBlock;
  EXPECT_EQ(static_cast<void*>(&pBlock->m_pBuffer), static_cast<void*>(pBlock));
  pBlock->m_pBuffer = new float[12];
  delete pBlock;
}

TEST(QXVertexBlock, ColourWordsSurviveInFloatSlots) {
  // 0xFFFFFFFF and 0x7F80AAAA are not-a-numbers as floats: they come back whole only as bits.
  for (unsigned int const color : {0u, 0xFFFFFFFFu, 0x7F80AAAAu, QDCRGBA(1, 2, 3, 4)}) {
    QXVertexBlock block;
    block.m_pBuffer = new float[1];
    block.m_pBuffer[0] = std::bit_cast<float>(color);
    EXPECT_EQ(std::bit_cast<unsigned int>(block.m_pBuffer[0]), color);
  }
}

TEST(QXIndexBlock, FreshOwnsNothingYetAndWillOwnItsBuffer) {
  QXIndexBlock const block;
  EXPECT_EQ(block.m_pBuffer, nullptr);
  EXPECT_EQ(block.m_nIndexNum, 0u);
  EXPECT_EQ(block.m_nIndexType, 0);
  EXPECT_EQ(block.m_bBufferOwned, 1);
  EXPECT_EQ(static_cast<void const*>(&block.m_pBuffer), static_cast<void const*>(&block));
}

TEST(QXIndexBlock, FreesAnOwnedBufferOfEitherWidth) {
  QXIndexBlock narrow;
  narrow.m_pBuffer = new unsigned short[5];
  QXIndexBlock wide;
  wide.m_nIndexType = 1;
  wide.m_pBuffer = new unsigned int[5];
}

TEST(QXIndexBlock, LeavesABufferThatItDoesNotOwn) {
  unsigned short indices[3] = {1, 2, 3};
  {
    QXIndexBlock block;
    block.m_pBuffer = indices;
    block.m_bBufferOwned = 0;
  }
  EXPECT_EQ(indices[2], 3);
}

TEST(QXTexCoordBlock, FreshHasPairsInEightEmptyUnits) {
  QXTexCoordBlock const block;
  EXPECT_EQ(std::size(block.m_pBuffers), 8u);
  EXPECT_EQ(static_cast<void const*>(&block.m_pBuffers), static_cast<void const*>(&block));
  for (std::size_t unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(block.m_pBuffers[unit], nullptr);
    EXPECT_EQ(block.m_nDims[unit], 2);
    EXPECT_EQ(block.m_nStrides[unit], 0);
    EXPECT_EQ(block.m_nCounts[unit], 0u);
    EXPECT_EQ(block.m_bBuffersOwned[unit], 1);
  }
}

TEST(QXTexCoordBlock, FreesEachUnitOnlyWhereItsByteIsSet) {
  float shared[4] = {0.0F, 0.25F, 0.5F, 0.75F};
  {
    QXTexCoordBlock block;
    for (std::size_t unit = 0; unit < 8; ++unit) {
      bool const bOwned = unit % 2 == 0;
      block.m_bBuffersOwned[unit] = bOwned ? 1 : 0;
      block.m_pBuffers[unit] = bOwned ? new float[4] : shared;
    }
  }
  EXPECT_EQ(shared[3], 0.75F);
}

TEST(QXVertexIndexPackage, FreshIsAnOwnedWhiteTriangleList) {
  QXVertexIndexPackage const package;
  EXPECT_EQ(package.m_nIndexType, 0);
  EXPECT_EQ(package.m_pIndices, nullptr);
  EXPECT_EQ(package.m_nIndexNum, 0u);
  EXPECT_EQ(package.m_nStart, 0u);
  EXPECT_EQ(package.m_eOperationType, 4);
  EXPECT_EQ(package.m_Color, QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(package.m_bBufferOwned, 1);
  EXPECT_EQ(package.m_bPackageOwned, 1);
}

TEST(QXVertexIndexPackage, BufferIsTheSecondMemberAndTheOwnershipBytesFollowInOrder) {
  QXVertexIndexPackage const package;
  EXPECT_EQ(reinterpret_cast<char const*>(&package.m_pIndices) - reinterpret_cast<char const*>(&package),
      static_cast<std::ptrdiff_t>(sizeof(void*)));
  EXPECT_EQ(&package.m_bPackageOwned - &package.m_bBufferOwned, 1);
  EXPECT_GT(static_cast<void const*>(&package.m_bBufferOwned), static_cast<void const*>(&package.m_pIndices));
}

TEST(QXVertexIndexPackage, FreesItsBufferOnlyIfItOwnsIt) {
  unsigned int indices[3] = {1, 2, 3};
  auto* pForeign = new QXVertexIndexPackage;
  pForeign->m_nIndexType = 1;
  pForeign->m_pIndices = indices;
  pForeign->m_bBufferOwned = 0;
  delete pForeign;
  EXPECT_EQ(indices[2], 3u);

  auto* pNarrow = new QXVertexIndexPackage;
  pNarrow->m_pIndices = new unsigned short[3];
  delete pNarrow;
  auto* pWide = new QXVertexIndexPackage;
  pWide->m_nIndexType = 1;
  pWide->m_pIndices = new unsigned int[3];
  delete pWide;
}

}  // namespace
}  // namespace QXC
