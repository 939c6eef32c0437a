#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>

#include <tests/foundation/base3d/QXRecordProbe.h>
#include <tests/foundation/stream/QXByteWriter.h>

#include <gtest/gtest.h>

#include <string>

namespace QXC {
namespace {

QXTextureUnitState MakeUnit() {
  QXTextureUnitState unit;
  unit.SetTextureName(L"d\x00E4"
                      L"cher.png");
  for (int i = 0; i < 16; ++i) unit.m_matUnit[i / 4][i % 4] = i * 0.5 - 3.0;
  unit.SetTextureFiltering(TEXTURE_FILTER_MINIFICATION, TEXTURE_FILTER_ANISOTROPIC);
  unit.SetTextureFiltering(TEXTURE_FILTER_MAGNIFICATION, -9);
  unit.SetTextureFiltering(TEXTURE_FILTER_MIPMAP, TEXTURE_FILTER_NONE);
  unit.SetEffect({TEXTURE_EFFECT_PROJECTIVE, 5});
  unit.SetEffect({TEXTURE_EFFECT_ENVIRONMENT_MAP, 3});
  unit.SetEffect({77, -1});
  return unit;
}

QXTextureUnitState MakeOld() {
  QXTextureUnitState unit;
  unit.SetTextureName(L"old");
  unit.SetEffect({12, 13});
  return unit;
}

std::string UnitBytes() {
  QXByteWriter writer;
  writer.Text("d\xC3\xA4"
              "cher.png");
  for (int i = 0; i < 16; ++i) writer.Double(i * 0.5 - 3.0);
  writer.Int(3).Int(-9).Int(0).Int(3).Int(0).Int(3).Int(1).Int(5).Int(77).Int(-1);
  return writer.GetBytes();
}

TEST(QXTextureUnitStateStream, HoldsNameTransformFiltersAndEffects) {
  EXPECT_EQ(BytesOf(MakeUnit()), UnitBytes());
  EXPECT_EQ(QXTextureUnitState().GetDataSize(), 4 + 128 + 12 + 4);
}

TEST(QXTextureUnitStateStream, ReplacesWhatTheUnitHeld) {
  QXTextureUnitState unit = MakeOld();
  ASSERT_EQ(LoadBytes(unit, UnitBytes()), 1);
  EXPECT_TRUE(unit.GetTextureName() == L"d\x00E4"
                                       L"cher.png");
  EXPECT_EQ(unit.GetTextureTransform()[3][3], 4.5);
  EXPECT_EQ(unit.GetTextureTransform()[0][1], -2.5);
  EXPECT_EQ(unit.GetTextureFiltering(0), TEXTURE_FILTER_ANISOTROPIC);
  EXPECT_EQ(unit.GetTextureFiltering(1), -9);
  EXPECT_EQ(unit.GetTextureFiltering(2), TEXTURE_FILTER_NONE);
  EXPECT_EQ(unit.GetEffects().GetCount(), 3u);
  QXTextureEffect* pEffect = nullptr;
  ASSERT_EQ(unit.GetEffects().Lookup(77, pEffect), 1);
  EXPECT_EQ(pEffect->m_nSubType, -1);
}

TEST(QXTextureUnitStateStream, ComesBackAsItWas) {
  ExpectRoundTrip(MakeUnit(), MakeOld());
  ExpectRoundTrip(QXTextureUnitState(), MakeUnit());
}

TEST(QXTextureUnitStateStream, SixteenEffectsComeBackAndSeventeenAreRefused) {
  QXTextureUnitState unit;
  for (int nType = 0; nType < 16; ++nType) unit.SetEffect({nType, 1});
  QXMemoryStream stream;
  unit.Save(stream);
  QXTextureUnitState read;
  EXPECT_EQ(read.Load(stream), 1);
  EXPECT_EQ(read.GetEffects().GetCount(), 16u);
  unit.SetEffect({16, 1});
  unit.Save(stream);
  EXPECT_EQ(read.Load(stream), 0);
  EXPECT_EQ(read.GetEffects().GetCount(), 16u);
}

TEST(QXTextureUnitStateStream, TakesTheLaterOfTwoEffectsOfOneType) {
  QXByteWriter writer;
  writer.Text("");
  for (int i = 0; i < 16; ++i) writer.Double(0);
  writer.Int(2).Int(2).Int(1).Int(2).Int(4).Int(1).Int(4).Int(9);
  QXTextureUnitState unit;
  ASSERT_EQ(LoadBytes(unit, writer.GetBytes()), 1);
  QXTextureEffect* pEffect = nullptr;
  ASSERT_EQ(unit.GetEffects().Lookup(4, pEffect), 1);
  EXPECT_EQ(pEffect->m_nSubType, 9);
  EXPECT_EQ(unit.GetEffects().GetCount(), 1u);
}

TEST(QXTextureUnitStateStream, CutAnywhereIsNone) {
  ExpectTruncationFails(UnitBytes(), MakeOld());
}

TEST(QXTextureUnitStateStream, WithAnyBitTurnedIsWholeOrNone) {
  ExpectTurnedBitsGiveWholeRecords(UnitBytes(), MakeOld());
}

TEST(QXTextureUnitStateStream, RefusesCountsThatTheBytesCannotFill) {
  ExpectHostileCountFails(UnitBytes(), 0, MakeOld());
  ExpectHostileCountFails(UnitBytes(), UnitBytes().size() - 28, MakeOld());
}

}  // namespace
}  // namespace QXC
