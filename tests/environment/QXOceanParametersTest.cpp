#include <QxGraphics3D/environment/QXOceanParameters.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>
#include <vector>

namespace QXC {
namespace {

// Plug-ins compiled against the library read these records by place: each field behind the one before it, with its own
// default.

void ExpectRising(std::vector<void const*> const& arrFields, void const* pRecord) {
  EXPECT_EQ(arrFields.front(), pRecord) << "there is no virtual table";
  for (std::size_t i = 1; i < arrFields.size(); ++i) EXPECT_LT(arrFields[i - 1], arrFields[i]) << i;
}

TEST(QXRotorWashParameters, ANewOneHasTheDefaults) {
  QXRotorWashParameters const record;
  EXPECT_EQ(record.m_dValue0, 10.0);
  EXPECT_EQ(record.m_bFlag0, 1);
  EXPECT_EQ(record.m_bFlag1, 1);
  EXPECT_EQ(record.m_vVector0, QXVector3d());
  EXPECT_EQ(record.m_vVector1, QXVector3d());
  EXPECT_EQ(record.m_dValue1, 0.0);
}

TEST(QXRotorWashParameters, FieldsStandInTheirOrder) {
  QXRotorWashParameters const record;
  ExpectRising({&record.m_dValue0, &record.m_bFlag0, &record.m_bFlag1, &record.m_vVector0, &record.m_vVector1,
                   &record.m_dValue1},
      &record);
  EXPECT_FALSE(std::is_polymorphic_v<QXRotorWashParameters>);
}

TEST(QXRotorWashParameters, CopyAndAssignmentTakeEveryField) {
  QXRotorWashParameters record;
  record.m_dValue0 = 1000.5;
  record.m_bFlag0 = 101;
  record.m_bFlag1 = 102;
  record.m_vVector0 = QXVector3d(3.5, 4.5, 5.5);
  record.m_vVector1 = QXVector3d(4.5, 5.5, 6.5);
  record.m_dValue1 = 1005.5;
  QXRotorWashParameters const copy(record);
  QXRotorWashParameters assigned;
  assigned = record;
  for (QXRotorWashParameters const* const pTaken : {&copy, static_cast<QXRotorWashParameters const*>(&assigned)}) {
    EXPECT_EQ(pTaken->m_dValue0, record.m_dValue0);
    EXPECT_EQ(pTaken->m_bFlag0, record.m_bFlag0);
    EXPECT_EQ(pTaken->m_bFlag1, record.m_bFlag1);
    EXPECT_EQ(pTaken->m_vVector0, record.m_vVector0);
    EXPECT_EQ(pTaken->m_vVector1, record.m_vVector1);
    EXPECT_EQ(pTaken->m_dValue1, record.m_dValue1);
  }
}

TEST(QXTidalStreamWakeParameters, ANewOneHasTheDefaults) {
  QXTidalStreamWakeParameters const record;
  EXPECT_EQ(record.m_dValue0, 10.0);
  EXPECT_EQ(record.m_dValue1, 10.0);
  EXPECT_EQ(record.m_dValue2, 1.0);
  EXPECT_EQ(record.m_dValue3, 0.0);
  EXPECT_EQ(record.m_bFlag0, 1);
  EXPECT_EQ(record.m_bFlag1, 1);
}

TEST(QXTidalStreamWakeParameters, FieldsStandInTheirOrder) {
  QXTidalStreamWakeParameters const record;
  ExpectRising(
      {&record.m_dValue0, &record.m_dValue1, &record.m_dValue2, &record.m_dValue3, &record.m_bFlag0, &record.m_bFlag1},
      &record);
  EXPECT_FALSE(std::is_polymorphic_v<QXTidalStreamWakeParameters>);
}

TEST(QXTidalStreamWakeParameters, CopyAndAssignmentTakeEveryField) {
  QXTidalStreamWakeParameters record;
  record.m_dValue0 = 1000.5;
  record.m_dValue1 = 1001.5;
  record.m_dValue2 = 1002.5;
  record.m_dValue3 = 1003.5;
  record.m_bFlag0 = 104;
  record.m_bFlag1 = 105;
  QXTidalStreamWakeParameters const copy(record);
  QXTidalStreamWakeParameters assigned;
  assigned = record;
  for (QXTidalStreamWakeParameters const* const pTaken :
      {&copy, static_cast<QXTidalStreamWakeParameters const*>(&assigned)}) {
    EXPECT_EQ(pTaken->m_dValue0, record.m_dValue0);
    EXPECT_EQ(pTaken->m_dValue1, record.m_dValue1);
    EXPECT_EQ(pTaken->m_dValue2, record.m_dValue2);
    EXPECT_EQ(pTaken->m_dValue3, record.m_dValue3);
    EXPECT_EQ(pTaken->m_bFlag0, record.m_bFlag0);
    EXPECT_EQ(pTaken->m_bFlag1, record.m_bFlag1);
  }
}

TEST(QXWaterImpactParameters, ANewOneHasTheDefaults) {
  QXWaterImpactParameters const record;
  EXPECT_EQ(record.m_dValue0, 10.0);
  EXPECT_EQ(record.m_dValue1, 10000.0);
  EXPECT_EQ(record.m_dValue2, 0.0);
  EXPECT_EQ(record.m_dValue3, 2.0);
}

TEST(QXWaterImpactParameters, FieldsStandInTheirOrder) {
  QXWaterImpactParameters const record;
  ExpectRising({&record.m_dValue0, &record.m_dValue1, &record.m_dValue2, &record.m_dValue3}, &record);
  EXPECT_FALSE(std::is_polymorphic_v<QXWaterImpactParameters>);
}

TEST(QXWaterImpactParameters, CopyAndAssignmentTakeEveryField) {
  QXWaterImpactParameters record;
  record.m_dValue0 = 1000.5;
  record.m_dValue1 = 1001.5;
  record.m_dValue2 = 1002.5;
  record.m_dValue3 = 1003.5;
  QXWaterImpactParameters const copy(record);
  QXWaterImpactParameters assigned;
  assigned = record;
  for (QXWaterImpactParameters const* const pTaken : {&copy, static_cast<QXWaterImpactParameters const*>(&assigned)}) {
    EXPECT_EQ(pTaken->m_dValue0, record.m_dValue0);
    EXPECT_EQ(pTaken->m_dValue1, record.m_dValue1);
    EXPECT_EQ(pTaken->m_dValue2, record.m_dValue2);
    EXPECT_EQ(pTaken->m_dValue3, record.m_dValue3);
  }
}

TEST(QXWakeGeneratorParameters, ANewOneHasTheDefaults) {
  QXWakeGeneratorParameters const record;
  EXPECT_EQ(record.m_bFlag0, 1);
  EXPECT_EQ(record.m_dValue0, 50.0);
  EXPECT_EQ(record.m_dValue1, 1.0);
  EXPECT_EQ(record.m_dValue2, 1.0);
  EXPECT_EQ(record.m_bFlag1, 1);
  EXPECT_EQ(record.m_dValue3, 50.0);
  EXPECT_EQ(record.m_dValue4, 1.0);
  EXPECT_EQ(record.m_dValue5, -1.0);
  EXPECT_EQ(record.m_dValue6, 0.0);
  EXPECT_EQ(record.m_bFlag2, 1);
  EXPECT_EQ(record.m_dValue7, -50.0);
  EXPECT_EQ(record.m_dValue8, 500.0);
  EXPECT_EQ(record.m_dValue9, 20.0);
  EXPECT_EQ(record.m_dValue10, 5.0);
  EXPECT_EQ(record.m_bFlag3, 1);
  EXPECT_EQ(record.m_dValue11, 0.0);
  EXPECT_EQ(record.m_dValue12, 1.5);
  EXPECT_EQ(record.m_dValue13, 1000.0);
  EXPECT_EQ(record.m_nCount0, 0);
  EXPECT_EQ(record.m_dValue14, 40.0);
  EXPECT_EQ(record.m_dValue15, -50.0);
  EXPECT_EQ(record.m_dValue16, 0.5);
  EXPECT_EQ(record.m_dValue17, 1.0);
  EXPECT_EQ(record.m_dValue18, 0.0);
  EXPECT_EQ(record.m_dValue19, 1.0);
  EXPECT_EQ(record.m_dValue20, 1.0);
  EXPECT_EQ(record.m_vVector0, QXVector3d());
  EXPECT_EQ(record.m_vVector1, QXVector3d());
  EXPECT_EQ(record.m_dValue21, 0.0);
}

TEST(QXWakeGeneratorParameters, FieldsStandInTheirOrder) {
  QXWakeGeneratorParameters const record;
  ExpectRising({&record.m_bFlag0, &record.m_dValue0, &record.m_dValue1, &record.m_dValue2, &record.m_bFlag1,
                   &record.m_dValue3, &record.m_dValue4, &record.m_dValue5, &record.m_dValue6, &record.m_bFlag2,
                   &record.m_dValue7, &record.m_dValue8, &record.m_dValue9, &record.m_dValue10, &record.m_bFlag3,
                   &record.m_dValue11, &record.m_dValue12, &record.m_dValue13, &record.m_nCount0, &record.m_dValue14,
                   &record.m_dValue15, &record.m_dValue16, &record.m_dValue17, &record.m_dValue18, &record.m_dValue19,
                   &record.m_dValue20, &record.m_vVector0, &record.m_vVector1, &record.m_dValue21},
      &record);
  EXPECT_FALSE(std::is_polymorphic_v<QXWakeGeneratorParameters>);
}

TEST(QXWakeGeneratorParameters, CopyAndAssignmentTakeEveryField) {
  QXWakeGeneratorParameters record;
  record.m_bFlag0 = 100;
  record.m_dValue0 = 1001.5;
  record.m_dValue1 = 1002.5;
  record.m_dValue2 = 1003.5;
  record.m_bFlag1 = 104;
  record.m_dValue3 = 1005.5;
  record.m_dValue4 = 1006.5;
  record.m_dValue5 = 1007.5;
  record.m_dValue6 = 1008.5;
  record.m_bFlag2 = 109;
  record.m_dValue7 = 1010.5;
  record.m_dValue8 = 1011.5;
  record.m_dValue9 = 1012.5;
  record.m_dValue10 = 1013.5;
  record.m_bFlag3 = 114;
  record.m_dValue11 = 1015.5;
  record.m_dValue12 = 1016.5;
  record.m_dValue13 = 1017.5;
  record.m_nCount0 = 118;
  record.m_dValue14 = 1019.5;
  record.m_dValue15 = 1020.5;
  record.m_dValue16 = 1021.5;
  record.m_dValue17 = 1022.5;
  record.m_dValue18 = 1023.5;
  record.m_dValue19 = 1024.5;
  record.m_dValue20 = 1025.5;
  record.m_vVector0 = QXVector3d(26.5, 27.5, 28.5);
  record.m_vVector1 = QXVector3d(27.5, 28.5, 29.5);
  record.m_dValue21 = 1028.5;
  QXWakeGeneratorParameters const copy(record);
  QXWakeGeneratorParameters assigned;
  assigned = record;
  for (QXWakeGeneratorParameters const* const pTaken :
      {&copy, static_cast<QXWakeGeneratorParameters const*>(&assigned)}) {
    EXPECT_EQ(pTaken->m_bFlag0, record.m_bFlag0);
    EXPECT_EQ(pTaken->m_dValue0, record.m_dValue0);
    EXPECT_EQ(pTaken->m_dValue1, record.m_dValue1);
    EXPECT_EQ(pTaken->m_dValue2, record.m_dValue2);
    EXPECT_EQ(pTaken->m_bFlag1, record.m_bFlag1);
    EXPECT_EQ(pTaken->m_dValue3, record.m_dValue3);
    EXPECT_EQ(pTaken->m_dValue4, record.m_dValue4);
    EXPECT_EQ(pTaken->m_dValue5, record.m_dValue5);
    EXPECT_EQ(pTaken->m_dValue6, record.m_dValue6);
    EXPECT_EQ(pTaken->m_bFlag2, record.m_bFlag2);
    EXPECT_EQ(pTaken->m_dValue7, record.m_dValue7);
    EXPECT_EQ(pTaken->m_dValue8, record.m_dValue8);
    EXPECT_EQ(pTaken->m_dValue9, record.m_dValue9);
    EXPECT_EQ(pTaken->m_dValue10, record.m_dValue10);
    EXPECT_EQ(pTaken->m_bFlag3, record.m_bFlag3);
    EXPECT_EQ(pTaken->m_dValue11, record.m_dValue11);
    EXPECT_EQ(pTaken->m_dValue12, record.m_dValue12);
    EXPECT_EQ(pTaken->m_dValue13, record.m_dValue13);
    EXPECT_EQ(pTaken->m_nCount0, record.m_nCount0);
    EXPECT_EQ(pTaken->m_dValue14, record.m_dValue14);
    EXPECT_EQ(pTaken->m_dValue15, record.m_dValue15);
    EXPECT_EQ(pTaken->m_dValue16, record.m_dValue16);
    EXPECT_EQ(pTaken->m_dValue17, record.m_dValue17);
    EXPECT_EQ(pTaken->m_dValue18, record.m_dValue18);
    EXPECT_EQ(pTaken->m_dValue19, record.m_dValue19);
    EXPECT_EQ(pTaken->m_dValue20, record.m_dValue20);
    EXPECT_EQ(pTaken->m_vVector0, record.m_vVector0);
    EXPECT_EQ(pTaken->m_vVector1, record.m_vVector1);
    EXPECT_EQ(pTaken->m_dValue21, record.m_dValue21);
  }
}

}  // namespace
}  // namespace QXC
