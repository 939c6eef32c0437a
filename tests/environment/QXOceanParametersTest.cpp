#include <QxGraphics3D/environment/QXOceanParameters.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <tuple>
#include <type_traits>

namespace QXC {
namespace {

// Plug-ins compiled against the library read these records by place: each field right behind the one before it, of its
// own type and with its own default.

using Flag = unsigned char;

/// The compiler refuses a default of another type than the field's.
template <class Record, class Type>
struct Field {
  Type Record::*m_pField;
  Type m_Default;
};
// clang 14 deduces nothing from the fields of an aggregate.
template <class Record, class Type>
Field(Type Record::*, Type) -> Field<Record, Type>;

/// The fields of a record, in their order.
template <class Record>
struct Fields;

template <>
struct Fields<QXRotorWashParameters> {
  using R = QXRotorWashParameters;
  static auto Get() {
    return std::tuple(Field{&R::m_dValue0, 10.0}, Field{&R::m_bFlag0, Flag{1}}, Field{&R::m_bFlag1, Flag{1}},
        Field{&R::m_vVector0, QXVector3d()}, Field{&R::m_vVector1, QXVector3d()}, Field{&R::m_dValue1, 0.0});
  }
};

template <>
struct Fields<QXTidalStreamWakeParameters> {
  using R = QXTidalStreamWakeParameters;
  static auto Get() {
    return std::tuple(Field{&R::m_dValue0, 10.0}, Field{&R::m_dValue1, 10.0}, Field{&R::m_dValue2, 1.0},
        Field{&R::m_dValue3, 0.0}, Field{&R::m_bFlag0, Flag{1}}, Field{&R::m_bFlag1, Flag{1}});
  }
};

template <>
struct Fields<QXWaterImpactParameters> {
  using R = QXWaterImpactParameters;
  static auto Get() {
    return std::tuple(Field{&R::m_dValue0, 10.0}, Field{&R::m_dValue1, 10000.0}, Field{&R::m_dValue2, 0.0},
        Field{&R::m_dValue3, 2.0});
  }
};

template <>
struct Fields<QXWakeGeneratorParameters> {
  using R = QXWakeGeneratorParameters;
  static auto Get() {
    return std::tuple(Field{&R::m_bFlag0, Flag{1}}, Field{&R::m_dValue0, 50.0}, Field{&R::m_dValue1, 1.0},
        Field{&R::m_dValue2, 1.0}, Field{&R::m_bFlag1, Flag{1}}, Field{&R::m_dValue3, 50.0}, Field{&R::m_dValue4, 1.0},
        Field{&R::m_dValue5, -1.0}, Field{&R::m_dValue6, 0.0}, Field{&R::m_bFlag2, Flag{1}},
        Field{&R::m_dValue7, -50.0}, Field{&R::m_dValue8, 500.0}, Field{&R::m_dValue9, 20.0},
        Field{&R::m_dValue10, 5.0}, Field{&R::m_bFlag3, Flag{1}}, Field{&R::m_dValue11, 0.0},
        Field{&R::m_dValue12, 1.5}, Field{&R::m_dValue13, 1000.0}, Field{&R::m_nCount0, 0}, Field{&R::m_dValue14, 40.0},
        Field{&R::m_dValue15, -50.0}, Field{&R::m_dValue16, 0.5}, Field{&R::m_dValue17, 1.0},
        Field{&R::m_dValue18, 0.0}, Field{&R::m_dValue19, 1.0}, Field{&R::m_dValue20, 1.0},
        Field{&R::m_vVector0, QXVector3d()}, Field{&R::m_vVector1, QXVector3d()}, Field{&R::m_dValue21, 0.0});
  }
};

/// Calls check with each field and its number.
template <class Record, class Check>
void ForEachField(Check check) {
  std::size_t nField = 0;
  std::apply([&](auto const&... field) { (check(field, nField++), ...); }, Fields<Record>::Get());
}

/// A value that no other field and no default has.
template <class Type>
Type MakeValue(std::size_t nField) {
  if constexpr (std::is_same_v<Type, QXVector3d>) {
    auto const dFirst = static_cast<double>(nField) + 0.5;
    return QXVector3d(dFirst, dFirst + 100.0, dFirst + 200.0);
  } else {
    return static_cast<Type>(nField + 100);
  }
}

std::size_t RoundUp(std::size_t nPlace, std::size_t nAlignment) {
  return (nPlace + nAlignment - 1) / nAlignment * nAlignment;
}

template <class Record>
class QXOceanParameters : public testing::Test {};

using Records = testing::Types<QXRotorWashParameters, QXTidalStreamWakeParameters, QXWaterImpactParameters,
    QXWakeGeneratorParameters>;
TYPED_TEST_SUITE(QXOceanParameters, Records);

TYPED_TEST(QXOceanParameters, ANewOneHasTheDefaults) {
  TypeParam const record;
  ForEachField<TypeParam>([&](auto const& field, std::size_t nField) {
    EXPECT_EQ(record.*field.m_pField, field.m_Default) << "field " << nField;
  });
}

TYPED_TEST(QXOceanParameters, FieldsStandInTheirOrderWithNothingBetween) {
  TypeParam const record;
  auto const* const pRecord = reinterpret_cast<unsigned char const*>(&record);
  std::size_t nEnd = 0;
  ForEachField<TypeParam>([&]<class Type>(Field<TypeParam, Type> const& field, std::size_t nField) {
    auto const* const pField = reinterpret_cast<unsigned char const*>(&(record.*field.m_pField));
    auto const nPlace = static_cast<std::size_t>(pField - pRecord);
    EXPECT_EQ(nPlace, RoundUp(nEnd, alignof(Type))) << "field " << nField;
    nEnd = nPlace + sizeof(Type);
  });
  EXPECT_EQ(sizeof(TypeParam), RoundUp(nEnd, alignof(TypeParam)));
  EXPECT_FALSE(std::is_polymorphic_v<TypeParam>);
}

TYPED_TEST(QXOceanParameters, CopyAndAssignmentTakeEveryField) {
  TypeParam record;
  ForEachField<TypeParam>([&]<class Type>(Field<TypeParam, Type> const& field, std::size_t nField) {
    record.*field.m_pField = MakeValue<Type>(nField);
  });
  TypeParam const copy(record);
  TypeParam assigned;
  assigned = record;
  ForEachField<TypeParam>([&]<class Type>(Field<TypeParam, Type> const& field, std::size_t nField) {
    EXPECT_EQ(copy.*field.m_pField, MakeValue<Type>(nField)) << "field " << nField;
    EXPECT_EQ(assigned.*field.m_pField, MakeValue<Type>(nField)) << "field " << nField;
  });
}

}  // namespace
}  // namespace QXC
