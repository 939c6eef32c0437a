#include <cstdint>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>

namespace QXC {
namespace {

TEST(QXIndexPackage, FreshIsAnEmptyNarrowTriangleList) {
  QXIndexPackage const package;
  EXPECT_EQ(package.m_nIndexNum, 0);
  EXPECT_EQ(package.m_pIndices, nullptr);
  EXPECT_EQ(package.m_nIndexType, 0);
  EXPECT_EQ(package.m_bFlag, 0);
  EXPECT_EQ(package.m_arrPassNames.GetSize(), 0u);
  EXPECT_EQ(package.m_eOperationType, 4);
}

TEST(QXIndexPackage, SetIndexNumMakesZeroedShorts) {
  QXIndexPackage package;
  package.SetIndexNum(70000);
  ASSERT_EQ(package.m_nIndexNum, 70000);
  EXPECT_EQ(package.m_nIndexType, 0);
  ASSERT_NE(package.GetIndices16(), nullptr);
  EXPECT_EQ(package.GetIndices16(), package.m_pIndices);
  EXPECT_EQ(package.GetIndices32(), nullptr);
  for (int i = 0; i < 70000; ++i) ASSERT_EQ(package.GetIndices16()[i], 0);
  package.GetIndices16()[69999] = 65535;
  EXPECT_EQ(package.GetIndices16()[69999], 65535);
}

TEST(QXIndexPackage, SetIndexNum32MakesZeroedWords) {
  QXIndexPackage package;
  package.SetIndexNum32(3);
  EXPECT_EQ(package.m_nIndexNum, 3);
  EXPECT_EQ(package.m_nIndexType, 1);
  EXPECT_EQ(package.GetIndices16(), nullptr);
  ASSERT_NE(package.GetIndices32(), nullptr);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(package.GetIndices32()[i], 0u);
  package.GetIndices32()[2] = 70000;
  EXPECT_EQ(package.GetIndices32()[2], 70000u);
}

// The old array is freed as what it was made: the address sanitizer sees a wrong form of delete.
TEST(QXIndexPackage, WidthMayChangeFromCallToCall) {
  QXIndexPackage package;
  package.SetIndexNum32(3);
  package.SetIndexNum(5);
  EXPECT_EQ(package.m_nIndexType, 0);
  EXPECT_EQ(package.GetIndices16()[4], 0);
  package.SetIndexNum32(7);
  EXPECT_EQ(package.m_nIndexType, 1);
  EXPECT_EQ(package.m_nIndexNum, 7);
}

TEST(QXIndexPackage, ZeroAndNegativeCountsGiveAnEmptyArray) {
  for (int const num : {0, -1, INT32_MIN}) {
    QXIndexPackage package;
    package.SetIndexNum(num);
    EXPECT_EQ(package.m_nIndexNum, 0) << num;
    EXPECT_NE(package.m_pIndices, nullptr) << num;
    package.SetIndexNum32(num);
    EXPECT_EQ(package.m_nIndexNum, 0) << num;
    EXPECT_NE(package.m_pIndices, nullptr) << num;
  }
}

TEST(QXIndexPackage, CopiesAreDeepForBothWidths) {
  for (int const type : {0, 1}) {
    QXIndexPackage source;
    if (type == 0)
      source.SetIndexNum(2);
    else
      source.SetIndexNum32(2);
    if (type == 0)
      source.GetIndices16()[1] = 65535;
    else
      source.GetIndices32()[1] = 70000;
    source.m_bFlag = 1;
    source.m_eOperationType = 2;
    source.m_arrPassNames.Add(QdcUnicodeString(L"roof"));
    QXIndexPackage const copy(source);
    QXIndexPackage assigned;
    assigned.SetIndexNum32(9);
    assigned = source;
    for (QXIndexPackage const* pCopy : {&copy, static_cast<QXIndexPackage const*>(&assigned)}) {
      EXPECT_NE(pCopy->m_pIndices, source.m_pIndices);
      EXPECT_EQ(pCopy->m_nIndexNum, 2);
      EXPECT_EQ(pCopy->m_nIndexType, type);
      EXPECT_EQ(type == 0 ? pCopy->GetIndices16()[1] : pCopy->GetIndices32()[1], type == 0 ? 65535u : 70000u);
      EXPECT_EQ(pCopy->m_bFlag, 1);
      EXPECT_EQ(pCopy->m_eOperationType, 2);
      ASSERT_EQ(pCopy->m_arrPassNames.GetSize(), 1u);
      EXPECT_TRUE(pCopy->m_arrPassNames[0] == L"roof");
    }
  }
}

TEST(QXIndexPackage, CopyOfAnEmptyPackageHasNoArrayAndTheWidthOfItsSource) {
  for (int const type : {0, 1}) {
    QXIndexPackage source;
    source.m_nIndexType = type;
    QXIndexPackage target;
    if (type == 0)
      target.SetIndexNum32(3);
    else
      target.SetIndexNum(3);
    target = source;
    EXPECT_EQ(target.m_pIndices, nullptr);
    EXPECT_EQ(target.m_nIndexNum, 0);
    EXPECT_EQ(target.m_nIndexType, type);
  }
}

TEST(QXIndexPackage, AssignmentToItselfChangesNothing) {
  QXIndexPackage package;
  package.SetIndexNum(2);
  package.GetIndices16()[1] = 7;
  void const* const pIndices = package.m_pIndices;
  QXIndexPackage& same = package;
  package = same;
  EXPECT_EQ(package.m_pIndices, pIndices);
  EXPECT_EQ(package.GetIndices16()[1], 7);
}

}  // namespace
}  // namespace QXC
