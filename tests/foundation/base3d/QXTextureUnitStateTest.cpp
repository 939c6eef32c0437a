#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>

#include <gtest/gtest.h>

using namespace QXC;

namespace {

TEST(QXTextureUnitState, IsBlankUntilItNamesATexture) {
  QXTextureUnitState unit;
  EXPECT_EQ(unit.IsBlank(), 1);
  unit.SetTextureName(L"roof.png");
  EXPECT_EQ(unit.IsBlank(), 0);
  EXPECT_TRUE(unit.GetTextureName() == L"roof.png");
  unit.SetTextureName(L"");
  EXPECT_EQ(unit.IsBlank(), 1);
}

TEST(QXTextureUnitState, FiltersLinearlyWithNearestMipmapAtFirst) {
  QXTextureUnitState const unit;
  EXPECT_EQ(unit.GetTextureFiltering(TEXTURE_FILTER_MINIFICATION), TEXTURE_FILTER_LINEAR);
  EXPECT_EQ(unit.GetTextureFiltering(TEXTURE_FILTER_MAGNIFICATION), TEXTURE_FILTER_LINEAR);
  EXPECT_EQ(unit.GetTextureFiltering(TEXTURE_FILTER_MIPMAP), TEXTURE_FILTER_POINT);
}

TEST(QXTextureUnitState, KeepsThreeFiltersApart) {
  QXTextureUnitState unit;
  for (int nType = 0; nType < 3; ++nType) unit.SetTextureFiltering(nType, 10 + nType);
  for (int nType = 0; nType < 3; ++nType) EXPECT_EQ(unit.GetTextureFiltering(nType), 10 + nType);
}

TEST(QXTextureUnitState, IgnoresFilterTypesItDoesNotHave) {
  QXTextureUnitState unit;
  unit.SetTextureFiltering(-1, 9);
  unit.SetTextureFiltering(3, 9);
  EXPECT_EQ(unit.GetTextureFiltering(-1), TEXTURE_FILTER_NONE);
  EXPECT_EQ(unit.GetTextureFiltering(3), TEXTURE_FILTER_NONE);
  EXPECT_EQ(unit.GetTextureFiltering(0), TEXTURE_FILTER_LINEAR);
}

TEST(QXTextureUnitState, HandsOutItsMatrixAsTransform) {
  QXTextureUnitState unit;
  EXPECT_EQ(unit.GetTextureTransform(), QXMatrix4d::IDENTITY);
  unit.m_matUnit[3][0] = 0.5;
  EXPECT_EQ(&unit.GetTextureTransform(), &unit.m_matUnit);
}

TEST(QXTextureUnitState, KeepsOneEffectOfAType) {
  QXTextureUnitState unit;
  EXPECT_EQ(unit.GetEffects().GetCount(), 0U);
  unit.SetEffect({TEXTURE_EFFECT_ENVIRONMENT_MAP, 1});
  unit.SetEffect({TEXTURE_EFFECT_ENVIRONMENT_MAP, 3});
  unit.SetEffect({TEXTURE_EFFECT_PROJECTIVE, 0});
  EXPECT_EQ(unit.GetEffects().GetCount(), 2U);
  QXTextureEffect* pEffect = nullptr;
  ASSERT_EQ(unit.GetEffects().Lookup(TEXTURE_EFFECT_ENVIRONMENT_MAP, pEffect), 1);
  EXPECT_EQ(pEffect->m_nType, TEXTURE_EFFECT_ENVIRONMENT_MAP);
  EXPECT_EQ(pEffect->m_nSubType, 3);
  unit.RemoveAllEffects();
  EXPECT_EQ(unit.GetEffects().GetCount(), 0U);
}

TEST(QXTextureUnitState, CopiesItsEffectsDeeply) {
  QXTextureUnitState source;
  source.SetTextureName(L"a");
  for (int nType = 0; nType < 3; ++nType) source.SetTextureFiltering(nType, 10 + nType);
  source.m_matUnit[0][0] = 2.0;
  source.SetEffect({TEXTURE_EFFECT_PROJECTIVE, 5});
  QXTextureUnitState const constructed(source);
  QXTextureUnitState assigned;
  assigned.SetEffect({TEXTURE_EFFECT_ENVIRONMENT_MAP, 1});
  assigned = source;
  QXTextureEffect* pOriginal = nullptr;
  ASSERT_EQ(source.GetEffects().Lookup(TEXTURE_EFFECT_PROJECTIVE, pOriginal), 1);
  for (QXTextureUnitState const* pCopy : {&constructed, static_cast<QXTextureUnitState const*>(&assigned)}) {
    EXPECT_TRUE(pCopy->GetTextureName() == L"a");
    for (int nType = 0; nType < 3; ++nType) EXPECT_EQ(pCopy->GetTextureFiltering(nType), 10 + nType);
    EXPECT_EQ(pCopy->m_matUnit[0][0], 2.0);
    EXPECT_EQ(pCopy->GetEffects().GetCount(), 1U);
    QXTextureEffect* pEffect = nullptr;
    ASSERT_EQ(pCopy->GetEffects().Lookup(TEXTURE_EFFECT_PROJECTIVE, pEffect), 1);
    EXPECT_NE(pEffect, pOriginal);
    EXPECT_EQ(pEffect->m_nSubType, 5);
  }
}

TEST(QXTextureUnitState, SurvivesAssignmentToItself) {
  QXTextureUnitState unit;
  unit.SetEffect({TEXTURE_EFFECT_PROJECTIVE, 5});
  QXTextureUnitState& same = unit;
  unit = same;
  QXTextureEffect* pEffect = nullptr;
  ASSERT_EQ(unit.GetEffects().Lookup(TEXTURE_EFFECT_PROJECTIVE, pEffect), 1);
  EXPECT_EQ(pEffect->m_nSubType, 5);
}

}  // namespace
