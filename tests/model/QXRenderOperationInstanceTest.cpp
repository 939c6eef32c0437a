#include <QxGraphics3D/model/QXRenderOperationInstance.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/model/QXRenderObjectInstance.h>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace QXC {
namespace {

class OpenInstance : public QXRenderOperationInstance {
public:
  using QXRenderOperationInstance::m_arrMatrices;
  using QXRenderOperationInstance::m_ROInstancePtr;
  using QXRenderOperationInstance::m_strName;
};

TEST(QXRenderOperationInstance, ANewOneIsEmpty) {
  QXRenderOperationInstance const instance;
  EXPECT_EQ(instance.GetName().IsEmpty(), 1);
  EXPECT_EQ(instance.GetROInstancePtr().IsNull(), 1);
  EXPECT_EQ(instance.GetMatrixArray().GetSize(), 0u);
}

TEST(QXRenderOperationInstance, FieldsStandInTheirOrder) {
  OpenInstance const instance;
  ExpectInOrder({&instance.m_strName, &instance.m_ROInstancePtr, &instance.m_arrMatrices});
  EXPECT_EQ(static_cast<void const*>(&instance.m_strName), &instance);
  EXPECT_FALSE(std::is_polymorphic_v<QXRenderOperationInstance>);
}

TEST(QXRenderOperationInstance, GettersGiveReferences) {
  QXRenderOperationInstance instance;
  instance.SetName(L"tree");
  instance.GetName() = L"bush";
  EXPECT_TRUE(instance.GetName() == L"bush");
  instance.GetROInstancePtr().Bind(new QXRenderObjectInstance);
  EXPECT_EQ(instance.GetROInstancePtr().UseCount(), 1u);
  QXMatrix4d matrix;
  instance.GetMatrixArray().Add(&matrix);
  EXPECT_EQ(instance.GetMatrixArray().GetSize(), 1u);
}

TEST(QXRenderOperationInstance, CopiesShareMeshAndMatrices) {
  QXROInstancePtr const pMesh(new QXRenderObjectInstance);
  QXMatrix4d first;
  QXMatrix4d second;
  QXRenderOperationInstance instance;
  instance.SetName(L"tree");
  instance.SetROInstancePtr(pMesh);
  instance.AddMatrix(&first);
  QXRenderOperationInstance const copy(instance);
  QXRenderOperationInstance assigned;
  assigned = instance;
  EXPECT_EQ(pMesh.UseCount(), 4u);
  instance.AddMatrix(&second);
  for (QXRenderOperationInstance const* const pTaken :
      {&copy, static_cast<QXRenderOperationInstance const*>(&assigned)}) {
    EXPECT_TRUE(pTaken->GetName() == L"tree");
    EXPECT_EQ(pTaken->GetROInstancePtr().GetPointer(), pMesh.GetPointer());
    ASSERT_EQ(pTaken->GetMatrixArray().GetSize(), 1u);
    EXPECT_EQ(pTaken->GetMatrixArray()[0], &first);
  }
}

TEST(QXRenderOperationInstance, SetMatrixArrayReplacesAndAddMatrixAppends) {
  QXMatrix4d first;
  QXMatrix4d second;
  QdcArray<QXMatrix4d*> arrMatrices;
  arrMatrices.Add(&first);
  QXRenderOperationInstance instance;
  instance.AddMatrix(&second);
  instance.SetMatrixArray(arrMatrices);
  instance.AddMatrix(&second);
  ASSERT_EQ(instance.GetMatrixArray().GetSize(), 2u);
  EXPECT_EQ(instance.GetMatrixArray()[0], &first);
  EXPECT_EQ(instance.GetMatrixArray()[1], &second);
}

// Matrices that stand on the stack, as here, would break the heap if they were deleted.
TEST(QXRenderOperationInstance, TheDestructorLetsGoOfTheMeshAndDeletesNoMatrix) {
  QXROInstancePtr const pMesh(new QXRenderObjectInstance);
  QXMatrix4d matrix;
  {
    QXRenderOperationInstance instance;
    instance.SetROInstancePtr(pMesh);
    instance.AddMatrix(&matrix);
  }
  EXPECT_EQ(pMesh.UseCount(), 1u);
  EXPECT_EQ(matrix, QXMatrix4d::IDENTITY);
}

}  // namespace
}  // namespace QXC
