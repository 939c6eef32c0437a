#include <cstddef>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>

#include "QXRenderOperationParts.h"

// This program replaces the allocator, so that it sees what is asked for and can refuse it.
namespace {

std::size_t g_nLimit = std::size_t{1} << 30;
std::size_t g_nLastRefused = 0;
std::size_t g_nFailAt = 0;
std::size_t g_nAllocations = 0;
std::ptrdiff_t g_nLive = 0;

// Single objects are refused by their number among the large ones alone: the tests' own small objects do not count.
constexpr std::size_t LargeObject = 10000;
std::size_t g_nFailAtObject = 0;
std::size_t g_nLargeObjects = 0;

}  // namespace

void* operator new(std::size_t nSize) {
  if (nSize >= LargeObject && ++g_nLargeObjects == g_nFailAtObject) throw std::bad_alloc();
  void* const pBlock = std::malloc(nSize == 0 ? 1 : nSize);
  if (!pBlock) throw std::bad_alloc();
  return pBlock;
}

void operator delete(void* pBlock) noexcept {
  std::free(pBlock);
}

void operator delete(void* pBlock, std::size_t) noexcept {
  std::free(pBlock);
}

void* operator new[](std::size_t nSize) {
  ++g_nAllocations;
  if (nSize > g_nLimit || (g_nFailAt != 0 && g_nAllocations == g_nFailAt)) {
    g_nLastRefused = nSize;
    throw std::bad_alloc();
  }
  void* const pBlock = std::malloc(nSize == 0 ? 1 : nSize);
  if (!pBlock) throw std::bad_alloc();
  ++g_nLive;
  return pBlock;
}

void operator delete[](void* pBlock) noexcept {
  if (pBlock) --g_nLive;
  std::free(pBlock);
}

void operator delete[](void* pBlock, std::size_t) noexcept {
  operator delete[](pBlock);
}

namespace QXC {
namespace {

class QXRenderOperationMemory : public testing::Test {
protected:
  QXRenderOperationMemory() : m_nLiveBefore(g_nLive) {}
  ~QXRenderOperationMemory() override {
    g_nFailAt = 0;
    EXPECT_EQ(g_nLive, m_nLiveBefore) << "arrays left behind or freed twice";
  }

  static void FailAtAllocation(std::size_t nNumber) {
    g_nAllocations = 0;
    g_nFailAt = nNumber;
  }
  static void AllowAll() { g_nFailAt = 0; }

private:
  std::ptrdiff_t m_nLiveBefore;
};

// 3 x 4 x 0x60000000 is 0x480000000: in 32 bits that would be an array of 0x80000000 bytes, far too short.
TEST_F(QXRenderOperationMemory, SizesAreComputedInSixtyFourBits) {
  QXRenderOperation operation;
  EXPECT_THROW(operation.SetVertexNum(0x60000000u), std::bad_alloc);
  EXPECT_EQ(g_nLastRefused, std::size_t{0x480000000});
  EXPECT_THROW(operation.SetVertexNum(0xFFFFFFFFu), std::bad_alloc);
  EXPECT_EQ(g_nLastRefused, std::size_t{0xFFFFFFFF} * 12);
  EXPECT_THROW(operation.SetIndexNum(0xFFFFFFFFu), std::bad_alloc);
  EXPECT_EQ(g_nLastRefused, std::size_t{0xFFFFFFFF} * 2);
  EXPECT_THROW(operation.SetDiffuseColorNum(0xFFFFFFFFu), std::bad_alloc);
  EXPECT_EQ(g_nLastRefused, std::size_t{0xFFFFFFFF} * 4);
}

TEST_F(QXRenderOperationMemory, PackageSizesAreComputedInSixtyFourBits) {
  QXVertexDataPackage package;
  EXPECT_THROW(package.SetVertexNum(0xFFFFFFFFu, 0), std::bad_alloc);
  EXPECT_EQ(g_nLastRefused, (std::size_t{0xFFFFFFFF} * 3 + 4) * 4);
  package.m_nTexDims[2] = 65535;
  EXPECT_THROW(package.SetTexCoordNum(2, 0xFFFFFFFFu, 0), std::bad_alloc);
  EXPECT_EQ(g_nLastRefused, std::size_t{0xFFFFFFFF} * 65535 * 4);
  EXPECT_EQ(package.m_nTexCoordNums[2], 0u);
  QXIndexPackage indices;
  EXPECT_THROW(indices.SetIndexNum32(0x7FFFFFFF), std::bad_alloc);
  EXPECT_EQ(g_nLastRefused, std::size_t{0x7FFFFFFF} * 4);
  EXPECT_EQ(indices.m_nIndexNum, 0);
  EXPECT_EQ(indices.m_pIndices, nullptr);
}

TEST_F(QXRenderOperationMemory, FailedAllocationLeavesNoArrayAndNoCount) {
  QXRenderOperation operation;
  operation.SetVertexNum(3);
  EXPECT_THROW(operation.SetVertexNum(0xFFFFFFFFu), std::bad_alloc);
  EXPECT_EQ(operation.m_pVertices, nullptr);
  EXPECT_EQ(operation.m_nVertexNum, 0u);
  operation.SetVertexNum(1);
  operation.SetVertexValue(0, 1.0, 2.0, 3.0);
  EXPECT_EQ(operation.m_pVertices[2], 3.0F);
}

void FillFiveArrays(QXRenderOperation& operation) {
  operation.SetVertexNormTextureNum(2);
  for (unsigned int i = 0; i < 2; ++i) operation.SetVertexNormTextureValue(i, QXVector3d(), QXVector3d(), 0.0, 0.0);
  operation.SetIndexNum(2);
  operation.SetIndexValue(0, 1);
  operation.SetIndexValue(1, 2);
  operation.SetDiffuseColorNum(2);
  operation.m_pDiffuseColors[0] = operation.m_pDiffuseColors[1] = 5;
  operation.m_nDiffuseColorNum = 2;
}

TEST_F(QXRenderOperationMemory, CopyThatFailsHalfWayFreesWhatItMade) {
  QXRenderOperation source;
  FillFiveArrays(source);
  for (std::size_t number = 1; number <= 5; ++number) {
    FailAtAllocation(number);
    EXPECT_THROW(QXRenderOperation{source}, std::bad_alloc) << "allocation " << number;
    AllowAll();
  }
}

TEST_F(QXRenderOperationMemory, AssignmentThatFailsLeavesTheTargetAsItWas) {
  QXRenderOperation source;
  FillFiveArrays(source);
  source.m_nMode0 = 99;
  QXRenderOperation target;
  target.SetVertexNum(1);
  target.SetVertexValue(0, 1.0, 2.0, 3.0);
  for (std::size_t number = 1; number <= 5; ++number) {
    FailAtAllocation(number);
    EXPECT_THROW(target = source, std::bad_alloc) << "allocation " << number;
    AllowAll();
    EXPECT_EQ(target.m_nVertexNum, 1u);
    EXPECT_EQ(target.m_pVertices[2], 3.0F);
    EXPECT_EQ(target.m_nMode0, 2);
  }
}

TEST_F(QXRenderOperationMemory, AssignmentThatFailsOverTheNameLeavesTheTargetAsItWas) {
  QXRenderOperation source;
  FillFiveArrays(source);
  source.m_nMode0 = 99;
  source.m_nMode9 = 99;
  source.m_strName.SetLength(LargeObject);
  source.m_strName[0] = L's';
  QXRenderOperation target;
  target.m_strName = L"target";
  std::size_t failures = 0;
  for (bool bDone = false; !bDone;) {
    g_nLargeObjects = 0;
    g_nFailAtObject = failures + 1;
    try {
      target = source;
      bDone = true;
    } catch (std::bad_alloc const&) {
      ++failures;
      EXPECT_TRUE(target.m_strName == L"target") << "failure " << failures;
      EXPECT_EQ(target.m_nVertexNum, 0u) << "failure " << failures;
      EXPECT_EQ(target.m_nMode0, 2) << "failure " << failures;
      EXPECT_EQ(target.m_nMode9, 0) << "failure " << failures;
    }
    g_nFailAtObject = 0;
  }
  EXPECT_GT(failures, 0u);
  EXPECT_TRUE(target.m_strName == source.m_strName);
  EXPECT_EQ(target.m_nMode0, 99);
}

TEST_F(QXRenderOperationMemory, NewIndicesReplaceTheCopyOfASharedArrayAtOnce) {
  QXSharedIndices shared;
  QXRenderOperation& source = shared.m_Operation;
  QXRenderOperation copy(source);
  std::ptrdiff_t const live = g_nLive;
  copy.SetIndexNum(7);
  EXPECT_EQ(g_nLive, live);
}

TEST_F(QXRenderOperationMemory, CopiesOfSharedIndicesFreeTheirArrays) {
  QXSharedIndices shared;
  QXRenderOperation& source = shared.m_Operation;
  QXRenderOperation const copy(source);
  QXRenderOperation assigned(copy);
  assigned = source;
  assigned = copy;
  assigned.Release();
}

void FillPackage(QXVertexDataPackage& package) {
  package.SetVertexNum(2, 0);
  package.SetNormalNum(2, 0);
  package.SetColorNum(2, 0);
  package.SetSecondColorNum(2, 0);
  package.SetTexCoordNum(7, 2, 0);
}

TEST_F(QXRenderOperationMemory, PackageCopyThatFailsHalfWayFreesWhatItMadeAndNothingElse) {
  QXVertexDataPackage source;
  FillPackage(source);
  for (std::size_t number = 1; number <= 5; ++number) {
    FailAtAllocation(number);
    EXPECT_THROW(QXVertexDataPackage{source}, std::bad_alloc) << "allocation " << number;
    QXVertexDataPackage target;
    FailAtAllocation(number);
    EXPECT_THROW(target = source, std::bad_alloc) << "allocation " << number;
    AllowAll();
  }
  source.m_pTexCoords[7][3] = 1.0F;
}

TEST_F(QXRenderOperationMemory, PackageAllocationThatFailsLeavesNoArrayAndNoCount) {
  QXVertexDataPackage package;
  FillPackage(package);
  FailAtAllocation(1);
  EXPECT_THROW(package.SetVertexNum(5, 0), std::bad_alloc);
  FailAtAllocation(1);
  EXPECT_THROW(package.SetColorNum(5, 0), std::bad_alloc);
  AllowAll();
  EXPECT_EQ(package.m_pVertices, nullptr);
  EXPECT_EQ(package.m_nVertexNum, 0u);
  EXPECT_EQ(package.m_pColors, nullptr);
  EXPECT_EQ(package.m_nColorNum, 0u);
  package.SetVertexNum(1, 0);
  EXPECT_EQ(package.m_nVertexNum, 1u);
}

TEST_F(QXRenderOperationMemory, IndexPackageCopyThatFailsIsEmpty) {
  QXIndexPackage source;
  source.SetIndexNum(3);
  QXIndexPackage target;
  target.SetIndexNum32(5);
  FailAtAllocation(1);
  EXPECT_THROW(target = source, std::bad_alloc);
  AllowAll();
  EXPECT_EQ(target.m_pIndices, nullptr);
  EXPECT_EQ(target.m_nIndexNum, 0);
}

}  // namespace
}  // namespace QXC
