#include <type_traits>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/QXRenderOperationBase.h>

#include "QXRenderOperationParts.h"

namespace QXC {
namespace {

// Copies share what they point to: a test that destroys both takes the pointers out of one of them first.
void FillCopied(QXRenderOperationBase& operation) {
  operation.m_eType = static_cast<QXRenderOperationType>(7);
  operation.m_pMatrix = new QXMatrix4d(MakeTranslation(1.0, 2.0, 3.0));
  operation.m_Bounds.SetExtents(QXVector3d(-1.0, -2.0, -3.0), QXVector3d(1.0, 2.0, 3.0));
  operation.m_pVertexIndexPackage = new QXVertexIndexPackage;
  operation.m_pVertexBlock = new QXVertexBlock;
  operation.m_pIndexBlock = new QXIndexBlock;
  operation.m_Color = QXColorValue3D(0.1, 0.2, 0.3, 0.4);
}

void FillState(QXRenderOperationBase& operation) {
  operation.m_nMode0 = 10;
  operation.m_nMode1 = 11;
  operation.m_nMode2 = 12;
  operation.m_bSwitch0 = 1;
  operation.m_bSwitch1 = 1;
  operation.m_nMode3 = 13;
  operation.m_fParam = 0.5F;
  operation.m_bSwitch2 = 1;
  operation.m_nMode4 = 14;
  operation.m_dFactor0 = 2.0;
  operation.m_dFactor1 = 3.0;
  operation.m_nCount1 = 15;
  operation.m_dFactor2 = 4.0;
  operation.m_nCount2 = 16;
  operation.m_bDirty = 0;
}

void ExpectDefaultState(QXRenderOperationBase const& operation) {
  EXPECT_EQ(operation.m_nMode0, 0);
  EXPECT_EQ(operation.m_nMode1, 3);
  EXPECT_EQ(operation.m_nMode2, 3);
  EXPECT_EQ(operation.m_bSwitch0, 0);
  EXPECT_EQ(operation.m_bSwitch1, 0);
  EXPECT_EQ(operation.m_nMode3, 4);
  EXPECT_EQ(operation.m_fParam, 0.0F);
  EXPECT_EQ(operation.m_bSwitch2, 0);
  EXPECT_EQ(operation.m_nMode4, 0);
  EXPECT_EQ(operation.m_dFactor0, 1.0);
  EXPECT_EQ(operation.m_dFactor1, 0.0);
  EXPECT_EQ(operation.m_nCount1, 0);
  EXPECT_EQ(operation.m_dFactor2, 0.0);
  EXPECT_EQ(operation.m_nCount2, 0);
  EXPECT_EQ(operation.m_bDirty, 1);
}

void ExpectSharesPointersOf(QXRenderOperationBase const& copy, QXRenderOperationBase const& source) {
  EXPECT_EQ(copy.m_eType, 7);
  EXPECT_EQ(copy.m_pMatrix, source.m_pMatrix);
  EXPECT_EQ(copy.m_Bounds.GetMin(), QXVector3d(-1.0, -2.0, -3.0));
  EXPECT_EQ(copy.m_Bounds.GetMax(), QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(copy.m_pVertexIndexPackage, source.m_pVertexIndexPackage);
  EXPECT_EQ(copy.m_pVertexBlock, source.m_pVertexBlock);
  EXPECT_EQ(copy.m_pIndexBlock, source.m_pIndexBlock);
  EXPECT_EQ(copy.m_Color, QXColorValue3D(0.1, 0.2, 0.3, 0.4));
}

TEST(QXRenderOperationBase, FreshHasItsDefaults) {
  QXRenderOperationBase const operation;
  EXPECT_EQ(operation.m_eType, 1);
  EXPECT_EQ(operation.m_pMatrix, nullptr);
  EXPECT_EQ(operation.m_Bounds.IsNULL(), 1);
  EXPECT_EQ(operation.m_pVertexIndexPackage, nullptr);
  EXPECT_EQ(operation.m_pVertexBlock, nullptr);
  EXPECT_EQ(operation.m_pIndexBlock, nullptr);
  EXPECT_EQ(operation.m_Color, QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  ExpectDefaultState(operation);
}

TEST(QXRenderOperationBase, FieldsStandInOrder) {
  QXRenderOperationBase const operation;
  void const* const fields[] = {&operation.m_eType, &operation.m_pMatrix, &operation.m_Bounds,
      &operation.m_pVertexIndexPackage, &operation.m_pVertexBlock, &operation.m_pIndexBlock, &operation.m_Color,
      &operation.m_nMode0, &operation.m_nMode1, &operation.m_nMode2, &operation.m_bSwitch0, &operation.m_bSwitch1,
      &operation.m_nMode3, &operation.m_fParam, &operation.m_bSwitch2, &operation.m_nMode4, &operation.m_dFactor0,
      &operation.m_dFactor1, &operation.m_nCount1, &operation.m_dFactor2, &operation.m_nCount2, &operation.m_bDirty};
  EXPECT_EQ(fields[0], static_cast<void const*>(&operation));
  for (std::size_t i = 1; i < std::size(fields); ++i) EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
}

TEST(QXRenderOperationBase, HasNoVirtualOperations) {
  EXPECT_FALSE(std::is_polymorphic_v<QXRenderOperationBase>);
}

TEST(QXRenderOperationBase, CopyConstructionSharesPointersAndResetsState) {
  QXRenderOperationBase source;
  FillCopied(source);
  FillState(source);
  QXRenderOperationBase copy(source);
  ExpectSharesPointersOf(copy, source);
  ExpectDefaultState(copy);
  Detach(copy);
}

TEST(QXRenderOperationBase, AssignmentSharesPointersAndKeepsItsOwnState) {
  QXRenderOperationBase source;
  FillCopied(source);
  FillState(source);
  QXRenderOperationBase target;
  target = source;
  ExpectSharesPointersOf(target, source);
  ExpectDefaultState(target);
  Detach(target);
}

TEST(QXRenderOperationBase, AssignmentDropsOldPointersWithoutFreeingThem) {
  QXRenderOperationBase source;
  QXRenderOperationBase target;
  QXMatrix4d first = MakeTranslation(1.0, 0.0, 0.0);
  target.SetMatrix(first);
  QXMatrix4d* const pOld = target.GetMatrix();
  target = source;
  EXPECT_EQ(target.m_pMatrix, nullptr);
  EXPECT_EQ((*pOld)[3][0], 1.0);
  delete pOld;
}

TEST(QXRenderOperationBase, DestructionFreesMatrixAndPackages) {
  // The address sanitizer's leak check is what looks here.
  auto* pOperation = new QXRenderOperationBase;
  FillCopied(*pOperation);
  pOperation->m_pVertexBlock->m_pBuffer = new float[6];
  pOperation->m_pIndexBlock->m_pBuffer = new unsigned short[3];
  pOperation->m_pVertexIndexPackage->m_pIndices = new unsigned short[3];
  delete pOperation;
}

TEST(QXRenderOperationBase, SetMatrixStoresACopyOfItsOwn) {
  QXRenderOperationBase operation;
  QXMatrix4d matrix = MakeTranslation(5.0, 6.0, 7.0);
  operation.SetMatrix(matrix);
  ASSERT_NE(operation.GetMatrix(), nullptr);
  EXPECT_NE(operation.GetMatrix(), &matrix);
  EXPECT_EQ(*operation.GetMatrix(), matrix);
  matrix.SetTrans(QXVector3d(8.0, 9.0, 10.0));
  EXPECT_EQ((*operation.GetMatrix())[3][0], 5.0);
  operation.SetMatrix(matrix);
  EXPECT_EQ((*operation.GetMatrix())[3][0], 8.0);
}

TEST(QXRenderOperationBase, SetMatrixTakesItsOwnMatrix) {
  QXRenderOperationBase operation;
  QXMatrix4d matrix = MakeTranslation(5.0, 6.0, 7.0);
  operation.SetMatrix(matrix);
  operation.SetMatrix(*operation.GetMatrix());
  EXPECT_EQ(*operation.GetMatrix(), matrix);
}

TEST(QXRenderOperationBase, BoundsAreStoredByValueAndGivenByReference) {
  QXRenderOperationBase operation;
  QXBoundingBox box(QXVector3d(0.0, 0.0, 0.0), QXVector3d(4.0, 5.0, 6.0));
  operation.SetBoundingBox(box);
  box.SetNULL();
  EXPECT_EQ(operation.GetBoundingBox().GetMax(), QXVector3d(4.0, 5.0, 6.0));
  EXPECT_EQ(&operation.GetBoundingBox(), &operation.m_Bounds);
}

TEST(QXRenderOperationBase, TypeSurvivesAnyValue) {
  QXRenderOperationBase operation;
  EXPECT_EQ(operation.GetRenderOperationType(), QX_RENDER_OPERATION_SINGLE);
  operation.SetRenderOperationType(static_cast<QXRenderOperationType>(-12345));
  EXPECT_EQ(operation.GetRenderOperationType(), -12345);
  EXPECT_EQ(sizeof(QXRenderOperationType), 4u);
}

}  // namespace
}  // namespace QXC
