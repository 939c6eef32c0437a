#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>

#include <tests/foundation/base3d/QXRecordProbe.h>
#include <tests/foundation/stream/QXByteWriter.h>

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cstdint>
#include <string>

namespace QXC {
namespace {

/// Every field another value than at first and than its neighbours of the same width.
QXPass MakePass() {
  QXPass pass;
  pass.SetName(L"W\x00E4nde");
  pass.SetPFFMode(PASS_FUNCTION_FIXED);
  for (int i = 0; i < 16; ++i) pass.m_matPass[i / 4][i % 4] = i + 0.25;
  pass.m_nPassWord = -17;
  pass.m_pExtension = new QXMaterialExtension(MATERIAL_EXTENSION_MOVING_TEXTURES);
  for (int i = 0; i < 5; ++i) {
    pass.m_pExtension->m_fSlides[0][i] = static_cast<float>(i);
    pass.m_pExtension->m_fSlides[1][i] = static_cast<float>(10 + i);
    pass.m_pExtension->m_fTurns[0][i] = static_cast<float>(20 + i);
    pass.m_pExtension->m_fTurns[1][i] = static_cast<float>(30 + i);
  }
  pass.m_strVertexProgram = L"a.vert";
  pass.m_strFragmentProgram = L"b.frag";
  for (unsigned int i = 0; i < 8; ++i) pass.m_nUnitWords[i] = 0xF0000000u + i;
  pass.m_bMultiTexture = 1;
  pass.m_clrAmbient = {0.1, 0.2, 0.3, 0.4};
  pass.m_clrDiffuse = {0.5, 0.6, 0.7, 0.8};
  pass.m_clrSpecular = {1.1, 1.2, 1.3, 1.4};
  pass.m_clrEmissive = {-1.0, -2.0, -3.0, -4.0};
  pass.m_dShininess = 64.0;
  pass.m_bLighting = 0;
  pass.m_eSourceFactor = BLEND_SOURCE_ALPHA;
  pass.m_eDestFactor = BLEND_ONE_MINUS_SOURCE_ALPHA;
  pass.m_eCulling = CULLING_ANTICLOCKWISE;
  pass.m_bDepthCheck = 0;
  pass.m_bDepthWrite = 2;
  pass.m_eDepthFunction = COMPARE_GREATER;
  pass.m_eAlphaFunction = COMPARE_GREATER_EQUAL;
  pass.m_nAlphaReference = 128;
  pass.m_dLineWidth = 2.5;
  pass.m_dPointSize = 3.5;
  pass.CreateTextureUnitState()->SetTextureName(L"brick.png");
  pass.CreateTextureUnitState()->m_matUnit[3][0] = 0.5;
  return pass;
}

QXPass MakeOld() {
  QXPass pass;
  pass.SetName(L"old");
  pass.m_pExtension = new QXMaterialExtension(5);
  pass.CreateTextureUnitState();
  return pass;
}

void WriteIdentity(QXByteWriter& writer) {
  for (int i = 0; i < 16; ++i) writer.Double(i % 5 == 0 ? 1.0 : 0.0);
}

std::string PassBytes() {
  QXByteWriter writer;
  writer.Text("W\xC3\xA4nde").Int(1).Text("a.vert").Text("b.frag");
  for (int i = 0; i < 16; ++i) writer.Double(i + 0.25);
  writer.Int(-17);
  for (int i = 0; i < 8; ++i) writer.Int(0xF0000000LL + i);
  writer.Byte(1);
  for (double const d : {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 1.1, 1.2, 1.3, 1.4, -1.0, -2.0, -3.0, -4.0})
    writer.Double(d);
  writer.Double(64.0).Byte(0).Int(9).Int(7).Int(3).Byte(0).Byte(2).Int(7).Int(6).Byte(128).Double(2.5).Double(3.5);
  writer.Int(2).Text("brick.png");
  WriteIdentity(writer);
  writer.Int(2).Int(2).Int(1).Int(0).Text("");
  for (int i = 0; i < 16; ++i) writer.Double(i == 12 ? 0.5 : i % 5 == 0 ? 1.0 : 0.0);
  writer.Int(2).Int(2).Int(1).Int(0).Byte(1).Int(1);
  for (int i = 0; i < 20; ++i) writer.Float(static_cast<float>(10 * (i / 5) + i % 5));
  return writer.GetBytes();
}

TEST(QXPass, IsPlainWhiteAndOpaqueAtFirst) {
  QXPass pass;
  EXPECT_EQ(pass.GetName().IsEmpty(), 1);
  EXPECT_EQ(pass.GetPFFMode(), 0);
  EXPECT_EQ(pass.GetTextureUnitStatesSize(), 0u);
  EXPECT_EQ(pass.m_matPass, QXMatrix4d::IDENTITY);
  EXPECT_EQ(pass.m_nPassWord, 0);
  EXPECT_EQ(pass.m_pExtension, nullptr);
  EXPECT_EQ(pass.m_strVertexProgram.IsEmpty(), 1);
  EXPECT_EQ(pass.m_strFragmentProgram.IsEmpty(), 1);
  for (unsigned int const nWord : pass.m_nUnitWords) EXPECT_EQ(nWord, 0u);
  EXPECT_EQ(pass.m_bMultiTexture, 0);
  EXPECT_EQ(pass.m_clrAmbient, QXColorValue3D::White);
  EXPECT_EQ(pass.m_clrDiffuse, QXColorValue3D::White);
  EXPECT_EQ(pass.m_clrSpecular, QXColorValue3D::Black);
  EXPECT_EQ(pass.m_clrEmissive, QXColorValue3D::Black);
  EXPECT_EQ(pass.m_dShininess, 0.0);
  EXPECT_EQ(pass.m_bLighting, 1);
  EXPECT_EQ(pass.m_eSourceFactor, BLEND_ONE);
  EXPECT_EQ(pass.m_eDestFactor, BLEND_ZERO);
  EXPECT_EQ(pass.m_eCulling, CULLING_NONE);
  EXPECT_EQ(pass.m_bDepthCheck, 1);
  EXPECT_EQ(pass.m_bDepthWrite, 1);
  EXPECT_EQ(pass.m_eDepthFunction, COMPARE_LESS_EQUAL);
  EXPECT_EQ(pass.m_eAlphaFunction, COMPARE_ALWAYS);
  EXPECT_EQ(pass.m_nAlphaReference, 0);
  EXPECT_EQ(pass.m_dLineWidth, 1.0);
  EXPECT_EQ(pass.m_dPointSize, 1.0);
}

// The renderer is given the fields as they are.
TEST(QXPass, NumbersItsStatesAsTheRendererDoes) {
  EXPECT_EQ(COMPARE_NEVER, 0);
  EXPECT_EQ(COMPARE_ALWAYS, 1);
  EXPECT_EQ(COMPARE_LESS, 2);
  EXPECT_EQ(COMPARE_LESS_EQUAL, 3);
  EXPECT_EQ(COMPARE_EQUAL, 4);
  EXPECT_EQ(COMPARE_NOT_EQUAL, 5);
  EXPECT_EQ(COMPARE_GREATER_EQUAL, 6);
  EXPECT_EQ(COMPARE_GREATER, 7);
  EXPECT_EQ(BLEND_ONE, 0);
  EXPECT_EQ(BLEND_ZERO, 1);
  EXPECT_EQ(BLEND_DEST_COLOUR, 2);
  EXPECT_EQ(BLEND_SOURCE_COLOUR, 3);
  EXPECT_EQ(BLEND_ONE_MINUS_DEST_COLOUR, 4);
  EXPECT_EQ(BLEND_ONE_MINUS_SOURCE_COLOUR, 5);
  EXPECT_EQ(BLEND_ONE_MINUS_DEST_ALPHA, 6);
  EXPECT_EQ(BLEND_ONE_MINUS_SOURCE_ALPHA, 7);
  EXPECT_EQ(BLEND_DEST_ALPHA, 8);
  EXPECT_EQ(BLEND_SOURCE_ALPHA, 9);
  EXPECT_EQ(PASS_FUNCTION_FIXED, 1);
  EXPECT_EQ(UNIT_WORD_CLAMP_U, 1u);
  EXPECT_EQ(UNIT_WORD_CLAMP_V, 2u);
}

TEST(QXPass, AppendsItsUnits) {
  QXPass pass;
  for (unsigned int i = 0; i < 20; ++i) {
    QXTextureUnitState* const pUnit = pass.CreateTextureUnitState();
    ASSERT_NE(pUnit, nullptr);
    EXPECT_EQ(pUnit->IsBlank(), 1);
    EXPECT_EQ(pass.GetTextureUnitState(i), pUnit);
  }
  QXTextureUnitState* const pFirst = pass.GetTextureUnitState(0);
  pass.CreateTextureUnitState();
  EXPECT_EQ(pass.GetTextureUnitState(0), pFirst) << "units stay where they are when others come";
  EXPECT_EQ(pass.GetTextureUnitStatesSize(), 21u);
  EXPECT_EQ(pass.GetTextureUnitState(21), nullptr);
  EXPECT_EQ(pass.GetTextureUnitState(UINT_MAX), nullptr);
  QXPass const& constant = pass;
  EXPECT_EQ(constant.GetTextureUnitState(0), pFirst);
  EXPECT_EQ(constant.GetTextureUnitState(21), nullptr);
}

TEST(QXPass, CopiesItsUnitsAndItsExtensionDeeply) {
  QXPass const source = MakePass();
  QXPass const constructed(source);
  QXPass assigned = MakeOld();
  assigned = source;
  for (QXPass const* pCopy : {&constructed, static_cast<QXPass const*>(&assigned)}) {
    EXPECT_EQ(BytesOf(*pCopy), PassBytes());
    EXPECT_NE(pCopy->m_pExtension, source.m_pExtension);
    ASSERT_EQ(pCopy->GetTextureUnitStatesSize(), 2u);
    EXPECT_NE(pCopy->GetTextureUnitState(0), source.GetTextureUnitState(0));
  }
  assigned = QXPass();
  EXPECT_EQ(assigned.m_pExtension, nullptr);
  EXPECT_EQ(assigned.GetTextureUnitStatesSize(), 0u);
}

TEST(QXPass, SurvivesAssignmentToItself) {
  QXPass pass = MakePass();
  QXMaterialExtension const* const pExtension = pass.m_pExtension;
  QXPass& same = pass;
  pass = same;
  EXPECT_EQ(pass.m_pExtension, pExtension);
  EXPECT_EQ(BytesOf(pass), PassBytes());
}

TEST(QXPass, WritesItsFieldsInTheirOrder) {
  EXPECT_EQ(BytesOf(MakePass()), PassBytes());
  EXPECT_EQ(BytesOf(QXPass()).size(), 4u + 4 + 4 + 4 + 341 + 4 + 1);
}

TEST(QXPass, ReplacesWhatItHeld) {
  QXPass pass = MakeOld();
  ASSERT_EQ(LoadBytes(pass, PassBytes()), 1);
  // Saving stands field by field in its own test, so these are the fields.
  EXPECT_EQ(BytesOf(pass), PassBytes());
  EXPECT_TRUE(pass.GetName() == L"W\x00E4nde");
  ASSERT_EQ(pass.GetTextureUnitStatesSize(), 2u);
  EXPECT_TRUE(pass.GetTextureUnitState(0)->GetTextureName() == L"brick.png");
  EXPECT_EQ(pass.GetTextureUnitState(1)->m_matUnit[3][0], 0.5);
  ASSERT_NE(pass.m_pExtension, nullptr);
  EXPECT_EQ(pass.m_pExtension->GetType(), 1);
  EXPECT_EQ(pass.m_pExtension->m_fSlides[1][4], 14.0f);
  EXPECT_EQ(pass.m_pExtension->m_fTurns[0][0], 20.0f);
}

TEST(QXPass, ComesBackAsItWas) {
  ExpectRoundTrip(MakePass(), MakeOld());
  ExpectRoundTrip(QXPass(), MakePass());
}

TEST(QXPass, HasOneFormForEveryVersion) {
  for (double const dVersion : {0.0, 1.0, 1.3, -1.0, std::bit_cast<double>(std::uint64_t{0x7FF8000000000000u})}) {
    QXMemoryStream stream;
    MakePass().Save(stream, dVersion);
    EXPECT_EQ(stream.GetSize(), PassBytes().size());
    QXPass pass;
    ASSERT_EQ(pass.Load(stream, -dVersion), 1);
    EXPECT_EQ(BytesOf(pass), PassBytes());
  }
}

TEST(QXPass, KeepsValuesThatHaveNoName) {
  QXPass pass;
  pass.SetPFFMode(-3);
  pass.m_eSourceFactor = INT_MIN;
  pass.m_eDestFactor = 1000;
  pass.m_eCulling = static_cast<CullingMode>(77);
  pass.m_eDepthFunction = -1;
  pass.m_eAlphaFunction = INT_MAX;
  pass.m_bMultiTexture = 200;
  pass.m_matPass[1][2] = std::bit_cast<double>(std::uint64_t{0xFFF0000000000001u});
  pass.m_pExtension = new QXMaterialExtension(-8);
  pass.m_pExtension->m_fTurns[1][4] = std::bit_cast<float>(0x7F800001u);
  for (int i = 0; i < 12; ++i) pass.CreateTextureUnitState();
  ExpectRoundTrip(pass, MakeOld());
}

TEST(QXPass, CutAnywhereIsNone) {
  ExpectTruncationFails(PassBytes(), MakeOld());
}

TEST(QXPass, WithAnyBitTurnedIsWholeOrNone) {
  ExpectTurnedBitsGiveWholeRecords(PassBytes(), MakeOld());
}

TEST(QXPass, RefusesCountsThatTheBytesCannotFill) {
  std::size_t const nUnits = 10 + 4 + 10 + 10 + 341;
  ExpectHostileCountFails(PassBytes(), 0, MakeOld());
  ExpectHostileCountFails(PassBytes(), 14, MakeOld());
  ExpectHostileCountFails(PassBytes(), nUnits, MakeOld());
  std::string bytes = PassBytes();
  ASSERT_EQ(bytes[nUnits], 2) << "the number of units";
  bytes[nUnits] = 3;
  QXPass pass = MakeOld();
  EXPECT_EQ(LoadBytes(pass, bytes), 0);
}

TEST(QXPass, RefusesAnExtensionThatIsNeitherThereNorMissing) {
  std::string bytes = PassBytes();
  std::size_t const nExtension = bytes.size() - 85;
  ASSERT_EQ(bytes[nExtension], 1);
  bytes[nExtension] = 2;
  QXPass pass = MakeOld();
  QXMemoryStream stream(bytes.data(), bytes.size());
  EXPECT_EQ(pass.Load(stream, 1.0), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NONSENSE);
  EXPECT_EQ(stream.GetPosition(), nExtension);
  EXPECT_EQ(BytesOf(pass), BytesOf(MakeOld()));
  bytes[nExtension] = 0;
  QXUInt64 nLeft = 0;
  ASSERT_EQ(LoadBytes(pass, bytes, &nLeft), 1);
  EXPECT_EQ(pass.m_pExtension, nullptr);
  EXPECT_EQ(nLeft, 84u);
}

}  // namespace
}  // namespace QXC
