#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>
#include <QxGraphics3D/model/QXRenderOperationInstance.h>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <type_traits>

#include "../renderop/QXSlotOf.h"

namespace QXC {
namespace {

class BareInstancing : public QXInstancing {
public:
  void UpdateInstances() override {}
  virtual void Append() {}
};

/// The least that a plug-in must bring.
class BareManager : public QXHwInstancingManager {
public:
  unsigned char IsSupported() const override { return 0; }
  unsigned int GetMaxPlacementCount() const override { return 1; }
  QXInstancing* CreateInstancing(QdcUnicodeString const&, QdcUnicodeString const&) override { return nullptr; }
  void DestroyInstancing(QXInstancing*) override {}
  void DestroyAllInstancings() override {}
  QXInstancing* GetInstancing(QdcUnicodeString const&) const override { return nullptr; }
  unsigned int GetInstancingCount() const override { return 0; }
  unsigned char SetMesh(QXInstancing*, QXRenderOperationMultiIndex*) override { return 0; }
  unsigned char SetSharedMesh(QXInstancing*, QXROInstancePtr const&) override { return 0; }
  unsigned int AddPlacements(QXInstancing*, QXMatrix4d const*, unsigned int) override { return 0; }
  unsigned char SetPlacements(QXInstancing*, unsigned int, QXMatrix4d const*, unsigned int) override { return 0; }
  unsigned char GetPlacement(QXInstancing*, unsigned int, QXMatrix4d&) const override { return 0; }
  void RemovePlacements(QXInstancing*, unsigned int, unsigned int) override {}
  unsigned int GetPlacementCount(QXInstancing*) const override { return 0; }
  void SetPlacementVisible(QXInstancing*, unsigned int, unsigned char) override {}
  void SetPlacementColor(QXInstancing*, unsigned int, QXColorValue3D const&) override {}
  void SetPlacementSelectionID(QXInstancing*, unsigned int, unsigned int) override {}
  void SetVisibleDistance(QXInstancing*, double, double) override {}
  void SetCastShadow(QXInstancing*, unsigned char) override {}
  void SetModelMatrix(QXInstancing*, QXMatrix4d const&) override {}
  QXBoundingBox GetBoundingBox(QXInstancing*) const override { return {}; }
  unsigned char Intersect(QXInstancing*, QXVector3d const&, QXVector3d const&, double&, unsigned int&) const override {
    return 0;
  }
  unsigned int GetDrawnPlacementCount(QXInstancing*) const override { return 0; }
  void Update() override {}
  virtual void Append() {}
};

TEST(QXInstancing, ANewOneHasNoUses) {
  BareInstancing const instancing;
  EXPECT_EQ(instancing.m_arrInstances.GetSize(), 0u);
  EXPECT_EQ(instancing.m_nMaxPlacements, 0);
}

TEST(QXInstancing, FieldsStandInTheirOrderBehindTheTable) {
  BareInstancing const instancing;
  ExpectInOrder({&instancing, &instancing.m_arrInstances, &instancing.m_nMaxPlacements});
}

TEST(QXInstancing, CopiesTakeListAndNumber) {
  QXRenderOperationInstance use;
  BareInstancing instancing;
  instancing.m_arrInstances.Add(&use);
  instancing.m_nMaxPlacements = 17;
  BareInstancing const copy(instancing);
  BareInstancing assigned;
  assigned = instancing;
  for (BareInstancing const* const pTaken : {&copy, static_cast<BareInstancing const*>(&assigned)}) {
    ASSERT_EQ(pTaken->m_arrInstances.GetSize(), 1u);
    EXPECT_EQ(pTaken->m_arrInstances[0], &use);
    EXPECT_EQ(pTaken->m_nMaxPlacements, 17);
  }
}

TEST(QXInstancing, SetVisibleOfTheBaseDoesNothing) {
  BareInstancing instancing;
  instancing.m_nMaxPlacements = 3;
  instancing.SetVisible(1);
  EXPECT_EQ(instancing.m_nMaxPlacements, 3);
  EXPECT_EQ(instancing.m_arrInstances.GetSize(), 0u);
}

TEST(QXInstancing, HasThreeOperations) {
  EXPECT_TRUE(std::is_abstract_v<QXInstancing>);
  EXPECT_EQ(SlotOf(&QXInstancing::SetVisible), 1);
  EXPECT_EQ(SlotOf(&QXInstancing::UpdateInstances), 2);
  EXPECT_EQ(SlotOf(&BareInstancing::Append), 3);
}

TEST(QXHwInstancingManager, IsAnInterfaceWithoutData) {
  EXPECT_TRUE(std::is_abstract_v<QXHwInstancingManager>);
  EXPECT_EQ(sizeof(QXHwInstancingManager), sizeof(void*));
  EXPECT_TRUE(std::has_virtual_destructor_v<QXHwInstancingManager>);
}

TEST(QXHwInstancingManager, HasTwentyFourOperationsBehindTheDestructor) {
  EXPECT_EQ(SlotOf(&QXHwInstancingManager::IsSupported), 1);
  EXPECT_EQ(SlotOf(&QXHwInstancingManager::Update), 24);
  EXPECT_EQ(SlotOf(&BareManager::Append), 25);
}

}  // namespace
}  // namespace QXC
