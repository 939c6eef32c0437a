#include <cstddef>
#include <iterator>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperationSet.h>

namespace QXC {
namespace {

TEST(QXRenderOperationSet, FreshIsEmptyWithItsDefaults) {
  QXRenderOperationSet const set;
  EXPECT_EQ(set.m_nMode0, 0);
  EXPECT_EQ(set.m_nMode1, 3);
  EXPECT_EQ(set.m_nMode2, 3);
  EXPECT_EQ(set.m_arrRenderOperations.GetSize(), 0u);
  EXPECT_EQ(set.m_arrRenderOperations.GetCapacity(), 0u);
}

TEST(QXRenderOperationSet, FieldsStandInOrder) {
  QXRenderOperationSet const set;
  void const* const fields[] = {&set.m_nMode0, &set.m_nMode1, &set.m_nMode2, &set.m_arrRenderOperations};
  EXPECT_EQ(fields[0], static_cast<void const*>(&set));
  for (std::size_t i = 1; i < std::size(fields); ++i) EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
}

TEST(QXRenderOperationSet, DestructionLeavesTheOperationsAlive) {
  QXRenderOperation operation;
  operation.SetVertexNum(1);
  {
    QXRenderOperationSet set;
    set.m_arrRenderOperations.Add(&operation);
  }
  operation.SetVertexValue(0, 1.0, 2.0, 3.0);
  EXPECT_EQ(operation.m_pVertices[2], 3.0F);
}

TEST(QXRenderOperationSet, CopiesCarryNumbersAndPointers) {
  QXRenderOperation first;
  QXRenderOperation second;
  QXRenderOperationSet source;
  source.m_nMode0 = 10;
  source.m_nMode1 = 11;
  source.m_nMode2 = 12;
  source.m_arrRenderOperations.Add(&first);
  source.m_arrRenderOperations.Add(&second);
  QXRenderOperationSet const copy(source);
  QXRenderOperationSet assigned;
  assigned.m_arrRenderOperations.Add(&second);
  assigned = source;
  for (QXRenderOperationSet const* pSet : {&copy, static_cast<QXRenderOperationSet const*>(&assigned)}) {
    EXPECT_EQ(pSet->m_nMode0, 10);
    EXPECT_EQ(pSet->m_nMode1, 11);
    EXPECT_EQ(pSet->m_nMode2, 12);
    ASSERT_EQ(pSet->m_arrRenderOperations.GetSize(), 2u);
    EXPECT_EQ(pSet->m_arrRenderOperations[0], &first);
    EXPECT_EQ(pSet->m_arrRenderOperations[1], &second);
  }
}

}  // namespace
}  // namespace QXC
