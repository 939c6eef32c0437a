#include <QxGraphics3D/environment/QXVirtualReality.h>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <type_traits>

#include "../renderop/QXSlotOf.h"

namespace QXC {
namespace {

class BareDisplay : public QXVirtualReality {
public:
  using QXVirtualReality::m_bFlag0;
  using QXVirtualReality::m_bFlag1;
  using QXVirtualReality::m_dValue;

  unsigned char Initialize() override { return 0; }
  void UpdatePose() override {}
  unsigned char GetEyeMatrices(int, QXMatrix4d&, QXMatrix4d&) const override { return 0; }
  void Submit(QXRenderTarget*, QXRenderTarget*) override {}
  void Release() override { ++ms_nReleased; }
  virtual void Append() {}

  static int ms_nReleased;
};

int BareDisplay::ms_nReleased = 0;

TEST(QXVirtualReality, ANewOneHasTheDefaults) {
  BareDisplay const display;
  EXPECT_EQ(display.m_dValue, 1.0);
  EXPECT_EQ(display.m_bFlag0, 1);
  EXPECT_EQ(display.m_bFlag1, 0);
}

TEST(QXVirtualReality, FieldsStandInTheirOrderBehindTheTable) {
  BareDisplay const display;
  ExpectInOrder({&display, &display.m_dValue, &display.m_bFlag0, &display.m_bFlag1});
}

TEST(QXVirtualReality, CopyAndAssignmentTakeAllThreeFields) {
  BareDisplay display;
  display.m_dValue = 2.5;
  display.m_bFlag0 = 3;
  display.m_bFlag1 = 4;
  BareDisplay const copy(display);
  BareDisplay assigned;
  assigned = display;
  for (BareDisplay const* const pTaken : {&copy, static_cast<BareDisplay const*>(&assigned)}) {
    EXPECT_EQ(pTaken->m_dValue, 2.5);
    EXPECT_EQ(pTaken->m_bFlag0, 3);
    EXPECT_EQ(pTaken->m_bFlag1, 4);
  }
}

TEST(QXVirtualReality, TheDestructorDoesNoWorkOfItsOwn) {
  BareDisplay::ms_nReleased = 0;
  { BareDisplay const display; }
  EXPECT_EQ(BareDisplay::ms_nReleased, 0);
  EXPECT_TRUE(std::has_virtual_destructor_v<QXVirtualReality>);
}

TEST(QXVirtualReality, HasFiveOperationsBehindTheDestructor) {
  EXPECT_TRUE(std::is_abstract_v<QXVirtualReality>);
  EXPECT_EQ(SlotOf(&QXVirtualReality::Initialize), 1);
  EXPECT_EQ(SlotOf(&QXVirtualReality::Release), 5);
  EXPECT_EQ(SlotOf(&BareDisplay::Append), 6);
}

}  // namespace
}  // namespace QXC
