#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector4d.h>
#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>

#include "QXBareDrawables.h"
#include "QXSlotOf.h"

namespace QXC {
namespace {

template <class T>
class QXDrawableInterface : public testing::Test {};

using AllInterfaces =
    testing::Types<QXBareBillboard, QXBareParticleSystem3D, QXBareQueryOperation3D, QXBareRenderOperation3D,
        QXBareRenderOperationManager, QXBareRenderOperationOverlay, QXBareRibbonTrail3D, QXBareSkeletonAnimation>;
TYPED_TEST_SUITE(QXDrawableInterface, AllInterfaces);

TYPED_TEST(QXDrawableInterface, IsMadeByTheRendererAndDeletedThroughItsBase) {
  EXPECT_TRUE(std::is_default_constructible_v<TypeParam>);
  EXPECT_TRUE(std::has_virtual_destructor_v<TypeParam>);
}

template <class T>
class QXCopyableInterface : public testing::Test {};

using CopyableInterfaces = testing::Types<QXBareBillboard, QXBareQueryOperation3D, QXBareRenderOperation3D,
    QXBareRenderOperationManager, QXBareRenderOperationOverlay, QXBareRibbonTrail3D, QXBareSkeletonAnimation>;
TYPED_TEST_SUITE(QXCopyableInterface, CopyableInterfaces);

TYPED_TEST(QXCopyableInterface, CopyAndAssignmentAreThere) {
  TypeParam const source;
  TypeParam copy(source);
  copy = source;
  EXPECT_TRUE(std::is_copy_constructible_v<TypeParam>);
  EXPECT_TRUE(std::is_copy_assignable_v<TypeParam>);
}

TEST(QXParticleSystem3D, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<QXBareParticleSystem3D>);
  EXPECT_FALSE(std::is_copy_assignable_v<QXBareParticleSystem3D>);
}

// Nothing but the virtual table's pointer: a plug-in's own members begin right behind it.
TEST(QXDrawableInterfaces, HoldNoDataOfTheirOwn) {
  EXPECT_EQ(sizeof(QXBillboard), sizeof(void*));
  EXPECT_EQ(sizeof(QXParticleSystem3D), sizeof(void*));
  EXPECT_EQ(sizeof(QXQueryOperation3D), sizeof(void*));
  EXPECT_EQ(sizeof(QXRenderOperation3D), sizeof(void*));
  EXPECT_EQ(sizeof(QXRenderOperationManager), sizeof(void*));
  EXPECT_EQ(sizeof(QXRenderOperationOverlay), sizeof(void*));
  EXPECT_EQ(sizeof(QXRibbonTrail3D), sizeof(void*));
  EXPECT_EQ(sizeof(QXSkeletonAnimation), sizeof(void*));
}

TEST(QXRenderOperation3D, NameOfTheConstructorIsIgnored) {
  QdcUnicodeString const strName(L"roof");
  QXBareRenderOperation3D const operation(strName);
  EXPECT_TRUE(operation.GetName() == L"");
}

TEST(QXRibbonTrail3D, ArgumentsOfTheConstructorAreIgnored) {
  QdcUnicodeString const strName(L"tram");
  // The manager's address leads nowhere: reading through it would crash.
  auto* const pManager = reinterpret_cast<QXTextureManager*>(sizeof(void*));
  QXBareRibbonTrail3D const trail(strName, strName, strName, pManager);
  EXPECT_TRUE(trail.GetName() == L"");
}

TEST(QXRenderOperation3D, PassAndMaterialSystemAreIgnoredByTheBase) {
  alignas(16) unsigned char bytes[64] = {};
  QXBareRenderOperation3D operation;
  operation.SetRenderStatePass(static_cast<RenderStateSet>(1), reinterpret_cast<QXPass&>(bytes));
  operation.SetMaterialSystemType(static_cast<QXMaterialSystemType>(-7));
  for (unsigned char const byte : bytes) EXPECT_EQ(byte, 0);
}

TEST(QXRenderOperation3D, NamedOperationsStandInTheirSlots) {
  EXPECT_EQ(SlotOf(&QXRenderOperation3D::GetName), 1);
  EXPECT_EQ(SlotOf(&QXRenderOperation3D::SetBoundingBox), 3);
  EXPECT_EQ(SlotOf(&QXRenderOperation3D::SetRenderOperationMultiIndex), 28);
  EXPECT_EQ(SlotOf(&QXRenderOperation3D::SetRenderStatePass), 47);
  EXPECT_EQ(SlotOf(&QXRenderOperation3D::SetMaterialSystemType), 57);
}

TEST(QXRenderOperationManager, NamedOperationsStandInTheirSlots) {
  EXPECT_EQ(SlotOf(&QXRenderOperationManager::GetRenderOperationCount), 1);
  EXPECT_EQ(SlotOf(&QXRenderOperationManager::CreateRenderOperation3D), 2);
  EXPECT_EQ(SlotOf(&QXRenderOperationManager::CreateStaticGeometry3D), 7);
  EXPECT_EQ(SlotOf(&QXRenderOperationManager::CreateSkeletonAnimation), 11);
}

TEST(QXDrawableInterfaces, LastOperationsGiveTheNumberOfSlots) {
  EXPECT_EQ(SlotOf(&QXQueryOperation3D::GetPixelCount), 6 - 1);
  EXPECT_EQ(SlotOf(&QXRenderOperationOverlay::SetColor), 8 - 1);
  EXPECT_EQ(SlotOf(&QXRenderOperationManager::CreateSkeletonAnimation), 12 - 1);
  EXPECT_EQ(SlotOf(&QXBillboard::SetSelectionID), 11 - 1);
  EXPECT_EQ(SlotOf(&QXParticleSystem3D::GetParticleCount), 8 - 1);
  EXPECT_EQ(SlotOf(&QXRibbonTrail3D::Advance), 24 - 1);
  EXPECT_EQ(SlotOf(&QXSkeletonAnimation::Advance), 11 - 1);
  EXPECT_EQ(SlotOf(&QXRenderOperation3D::SetMaterialSystemType), 58 - 1);
}

// A derived class that appends one operation shows where the base's table ends: an operation slipped in behind the
// last known one would move it.
struct QXAppended : QXBareRenderOperation3D {
  virtual void Append() {}
};
struct QXAppendedManager : QXBareRenderOperationManager {
  virtual void Append() {}
};

TEST(QXDrawableInterfaces, NothingStandsBehindTheLastOperation) {
  EXPECT_EQ(SlotOf(&QXAppended::Append), 58);
  EXPECT_EQ(SlotOf(&QXAppendedManager::Append), 12);
}

}  // namespace
}  // namespace QXC
