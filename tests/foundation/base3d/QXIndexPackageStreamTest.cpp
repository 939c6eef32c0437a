#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>

#include <tests/foundation/base3d/QXRecordProbe.h>
#include <tests/foundation/stream/QXByteWriter.h>

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace QXC {
namespace {

QXIndexPackage MakeNarrow() {
  QXIndexPackage package;
  package.m_eOperationType = QX_OPERATION_LINE_STRIP;
  package.m_bFlag = 0xA5;
  package.m_arrPassNames.Add(L"r\x00F6"
                             L"d");
  package.m_arrPassNames.Add(L"");
  package.SetIndexNum(3);
  for (int i = 0; i < 3; ++i) package.GetIndices16()[i] = static_cast<unsigned short>(65535 - i);
  return package;
}

QXIndexPackage MakeWide() {
  QXIndexPackage package;
  package.m_arrPassNames.Add(L"wall");
  package.SetIndexNum32(2);
  package.GetIndices32()[0] = 70000;
  package.GetIndices32()[1] = 0xFFFFFFFFu;
  return package;
}

std::string NarrowBytes() {
  return QXByteWriter()
      .Int(3)
      .Int(0)
      .Byte(0xA5)
      .Int(2)
      .Text("r\xC3\xB6"
            "d")
      .Text("")
      .Int(3)
      .Short(65535)
      .Short(65534)
      .Short(65533)
      .GetBytes();
}

std::string WideBytes() {
  return QXByteWriter().Int(4).Int(1).Byte(0).Int(1).Text("wall").Int(2).Int(70000).Int(0xFFFFFFFF).GetBytes();
}

TEST(QXIndexPackageStream, HoldsOperationWidthFlagNamesAndEntries) {
  EXPECT_EQ(BytesOf(MakeNarrow()), NarrowBytes());
  EXPECT_EQ(BytesOf(MakeWide()), WideBytes());
  EXPECT_EQ(BytesOf(QXIndexPackage()), QXByteWriter().Int(4).Int(0).Byte(0).Int(0).Int(0).GetBytes());
}

TEST(QXIndexPackageStream, LoadsBothWidthsOverEachOther) {
  QXIndexPackage package = MakeWide();
  ASSERT_EQ(LoadBytes(package, NarrowBytes()), 1);
  EXPECT_EQ(package.m_nIndexType, 0);
  EXPECT_EQ(package.m_nIndexNum, 3);
  ASSERT_NE(package.GetIndices16(), nullptr);
  EXPECT_EQ(package.GetIndices16()[2], 65533);
  EXPECT_EQ(package.m_bFlag, 0xA5);
  EXPECT_EQ(package.m_eOperationType, QX_OPERATION_LINE_STRIP);
  ASSERT_EQ(package.m_arrPassNames.GetSize(), 2u);
  EXPECT_TRUE(package.m_arrPassNames[0] == L"r\x00F6"
                                           L"d");
  EXPECT_EQ(package.m_arrPassNames[1].IsEmpty(), 1);
  ASSERT_EQ(LoadBytes(package, WideBytes()), 1);
  EXPECT_EQ(package.m_nIndexType, 1);
  EXPECT_EQ(package.m_nIndexNum, 2);
  ASSERT_NE(package.GetIndices32(), nullptr);
  EXPECT_EQ(package.GetIndices32()[0], 70000u);
  EXPECT_EQ(package.GetIndices32()[1], 0xFFFFFFFFu);
  ASSERT_EQ(package.m_arrPassNames.GetSize(), 1u);
}

TEST(QXIndexPackageStream, ComesBackAsItWas) {
  ExpectRoundTrip(MakeNarrow(), MakeWide());
  ExpectRoundTrip(MakeWide(), MakeNarrow());
  ExpectRoundTrip(QXIndexPackage(), MakeWide());
}

TEST(QXIndexPackageStream, GivesAPackageOfNoEntriesNoArray) {
  QXIndexPackage empty;
  empty.SetIndexNum32(0);
  QXIndexPackage loaded = MakeNarrow();
  ASSERT_EQ(LoadBytes(loaded, BytesOf(empty)), 1);
  EXPECT_EQ(loaded.m_pIndices, nullptr);
  EXPECT_EQ(loaded.m_nIndexNum, 0);
  EXPECT_EQ(loaded.m_nIndexType, 1);
}

TEST(QXIndexPackageStream, WritesNoEntriesWhereThereIsNoArray) {
  QXIndexPackage package;
  package.m_nIndexNum = 5;
  EXPECT_EQ(BytesOf(package), BytesOf(QXIndexPackage()));
  QXIndexPackage negative = MakeNarrow();
  negative.m_nIndexNum = -5;
  EXPECT_EQ(negative.GetDataSize(), MakeNarrow().GetDataSize() - 6);
  EXPECT_EQ(BytesOf(negative).size(), NarrowBytes().size() - 6);
}

TEST(QXIndexPackageStream, TakesTheOptionForNothing) {
  QXMemoryStream stream;
  MakeWide().Save(stream, 17);
  QXIndexPackage loaded;
  EXPECT_EQ(loaded.Load(stream, -3), 1);
  EXPECT_EQ(BytesOf(loaded), WideBytes());
}

TEST(QXIndexPackageStream, KeepsNumbersThatHaveNoName) {
  for (int const nType : {7, -1, INT_MIN}) {
    std::string const bytes = QXByteWriter().Int(nType).Int(nType).Byte(255).Int(0).Int(1).Short(0x0201).GetBytes();
    QXIndexPackage package = MakeWide();
    ASSERT_EQ(LoadBytes(package, bytes), 1);
    EXPECT_EQ(package.m_eOperationType, nType);
    EXPECT_EQ(package.m_nIndexType, nType) << "every width but 1 is the narrow one";
    EXPECT_EQ(package.m_nIndexNum, 1);
    ASSERT_NE(package.GetIndices16(), nullptr);
    EXPECT_EQ(package.GetIndices16()[0], 0x0201);
    EXPECT_EQ(BytesOf(package), bytes);
  }
}

TEST(QXIndexPackageStream, CutAnywhereIsNone) {
  ExpectTruncationFails(NarrowBytes(), MakeWide());
  ExpectTruncationFails(WideBytes(), MakeNarrow());
}

TEST(QXIndexPackageStream, WithAnyBitTurnedIsWholeOrNone) {
  ExpectTurnedBitsGiveWholeRecords(NarrowBytes(), MakeWide());
  ExpectTurnedBitsGiveWholeRecords(WideBytes(), MakeNarrow());
}

TEST(QXIndexPackageStream, RefusesCountsThatTheBytesCannotFill) {
  std::size_t const nNames = 9;
  ExpectHostileCountFails(WideBytes(), nNames, MakeNarrow());
  ExpectHostileCountFails(WideBytes(), WideBytes().size() - 12, MakeNarrow());
  ExpectHostileCountFails(NarrowBytes(), NarrowBytes().size() - 10, MakeWide());
}

TEST(QXIndexPackageStream, FailsAtTheCountThatIsWrong) {
  std::string const bytes = QXByteWriter().Int(4).Int(1).Byte(0).Int(1).Text("wall").Int(3).Int(1).Int(2).GetBytes();
  QXMemoryStream stream(bytes.data(), bytes.size());
  QXIndexPackage package;
  EXPECT_EQ(package.Load(stream, 0), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NONSENSE);
  EXPECT_EQ(stream.GetPosition(), 21u);
}

// Never written to: only its length counts.
TEST(QXIndexPackageStream, TellsTheLargestIntForMoreThanAnIntHolds) {
  unsigned int nEntry = 0;
  QXIndexPackage package;
  package.m_nIndexType = 1;
  package.m_pIndices = &nEntry;
  package.m_nIndexNum = INT_MAX;
  EXPECT_EQ(package.GetDataSize(), INT_MAX);
  package.m_pIndices = nullptr;
}

}  // namespace
}  // namespace QXC
