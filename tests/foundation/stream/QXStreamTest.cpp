#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

#include <tests/foundation/stream/QXByteWriter.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

namespace QXC {
namespace {

std::string BytesOf(QXMemoryStream const& stream) {
  return std::string(reinterpret_cast<char const*>(stream.GetData()), static_cast<std::size_t>(stream.GetSize()));
}

TEST(QXStream, IsNeitherCopiedNorMadeAlone) {
  static_assert(std::is_abstract_v<QXStream> && std::has_virtual_destructor_v<QXStream>);
  static_assert(!std::is_copy_constructible_v<QXMemoryStream> && !std::is_copy_assignable_v<QXMemoryStream>);
}

TEST(QXStream, WritesEveryNumberWithTheLowestByteFirst) {
  QXMemoryStream stream;
  stream << int{-2} << 0xFEDCBA98u << static_cast<short>(-3) << static_cast<unsigned short>(0xABCD)
         << static_cast<unsigned char>(0x7F) << 1.5f << -0.1 << QXInt64{0x0123456789ABCDEF};
  EXPECT_EQ(BytesOf(stream), QXByteWriter()
                                 .Int(-2)
                                 .Int(0xFEDCBA98)
                                 .Short(0xFFFD)
                                 .Short(0xABCD)
                                 .Byte(0x7F)
                                 .Float(1.5f)
                                 .Double(-0.1)
                                 .Long(0x0123456789ABCDEF)
                                 .GetBytes());
  EXPECT_EQ(stream.GetWritten(), 4u + 4 + 2 + 2 + 1 + 4 + 8 + 8);
}

TEST(QXStream, ReadsEveryNumberBack) {
  std::string const bytes = QXByteWriter()
                                .Int(-2)
                                .Int(0xFEDCBA98)
                                .Short(0xFFFD)
                                .Short(0xABCD)
                                .Byte(0x7F)
                                .Float(1.5f)
                                .Double(-0.1)
                                .Long(0x8123456789ABCDEF)
                                .GetBytes();
  QXMemoryStream stream(bytes.data(), bytes.size());
  int nInt = 0;
  unsigned int nWord = 0;
  short nShort = 0;
  unsigned short nHalf = 0;
  unsigned char nByte = 0;
  float fValue = 0;
  double dValue = 0;
  QXInt64 nLong = 0;
  stream >> nInt >> nWord >> nShort >> nHalf >> nByte >> fValue >> dValue >> nLong;
  EXPECT_EQ(nInt, -2);
  EXPECT_EQ(nWord, 0xFEDCBA98u);
  EXPECT_EQ(nShort, -3);
  EXPECT_EQ(nHalf, 0xABCD);
  EXPECT_EQ(nByte, 0x7F);
  EXPECT_EQ(fValue, 1.5f);
  EXPECT_EQ(dValue, -0.1);
  EXPECT_EQ(nLong, static_cast<QXInt64>(0x8123456789ABCDEFull));
  EXPECT_EQ(stream.IsGood(), 1);
  EXPECT_EQ(stream.Remaining(), 0u);
}

TEST(QXStream, KeepsEveryBitOfWhatIsNoNumber) {
  auto const fSignalling = std::bit_cast<float>(0x7F812345u);
  auto const dSignalling = std::bit_cast<double>(std::uint64_t{0xFFF4000000012345u});
  QXMemoryStream stream;
  stream << fSignalling << dSignalling << -std::numeric_limits<double>::infinity() << -0.0f;
  float fValue = 0;
  float fZero = 1;
  double dValue = 0;
  double dInfinite = 0;
  stream >> fValue >> dValue >> dInfinite >> fZero;
  EXPECT_EQ(std::bit_cast<std::uint32_t>(fValue), 0x7F812345u);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(dValue), 0xFFF4000000012345u);
  EXPECT_EQ(dInfinite, -std::numeric_limits<double>::infinity());
  EXPECT_EQ(std::bit_cast<std::uint32_t>(fZero), 0x80000000u);
}

TEST(QXStream, WritesTextAsItsBytesAndTheirCount) {
  QXMemoryStream stream;
  QdcUnicodeString strBuffer(L"ab");
  strBuffer.SetLength(9);
  stream << QdcUnicodeString(L"a\x00E4\x4E2D\x1F600") << QdcUnicodeString() << strBuffer;
  std::string const strWide = "a\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80";
  EXPECT_EQ(BytesOf(stream), QXByteWriter().Text(strWide).Text("").Text("ab").GetBytes());
  EXPECT_EQ(QXStream::GetStringSize(L"a\x00E4\x4E2D\x1F600"), 4 + 10);
  EXPECT_EQ(QXStream::GetStringSize(L""), 4);
  EXPECT_EQ(QXStream::GetStringSize(strBuffer), 6);
}

TEST(QXStream, ReadsTextBack) {
  QXMemoryStream stream;
  stream << QdcUnicodeString(L"a\x00E4\x4E2D\x1F600") << QdcUnicodeString() << 7;
  QdcUnicodeString strText;
  QdcUnicodeString strEmpty(L"old");
  int nBehind = 0;
  stream >> strText >> strEmpty >> nBehind;
  EXPECT_TRUE(strText == L"a\x00E4\x4E2D\x1F600");
  EXPECT_EQ(strEmpty.IsEmpty(), 1);
  EXPECT_EQ(nBehind, 7);
}

TEST(QXStream, ReadsTextToTheLastByte) {
  std::string const bytes = QXByteWriter().Text("end").GetBytes();
  QXMemoryStream stream(bytes.data(), bytes.size());
  QdcUnicodeString strText;
  stream >> strText;
  EXPECT_TRUE(strText == L"end");
  EXPECT_EQ(stream.IsGood(), 1);
  EXPECT_EQ(stream.Remaining(), 0u);
}

TEST(QXStream, ReadsStrangeTextWithoutLosingItsPlace) {
  std::string const bytes = QXByteWriter().Text("a\xFF\xC3").Text(std::string_view("b\0c", 3)).Int(7).GetBytes();
  QXMemoryStream stream(bytes.data(), bytes.size());
  QdcUnicodeString strBroken;
  QdcUnicodeString strCut;
  int nBehind = 0;
  stream >> strBroken >> strCut >> nBehind;
  EXPECT_TRUE(strBroken == L"a\xFFFD\xFFFD");
  EXPECT_TRUE(strCut == L"b");
  EXPECT_EQ(nBehind, 7);
}

TEST(QXStream, RefusesTextLongerThanTheData) {
  for (std::int64_t const nCount : {4LL, 0x7FFFFFFFLL, 0xFFFFFFFFLL}) {
    std::string const bytes = QXByteWriter().Byte(1).Int(nCount).Byte(65).Short(65).GetBytes();
    QXMemoryStream stream(bytes.data(), bytes.size());
    unsigned char nByte = 0;
    QdcUnicodeString strText(L"old");
    stream >> nByte >> strText;
    EXPECT_EQ(stream.IsGood(), 0) << nCount;
    EXPECT_EQ(stream.GetProblem(), STREAM_ENDED);
    EXPECT_EQ(stream.GetPosition(), 1u) << "where the text begins";
    EXPECT_EQ(strText.IsEmpty(), 1);
  }
}

TEST(QXStream, MovesArraysWithoutAPrefix) {
  float const fValues[3] = {1.0f, -2.5f, 3.0f};
  int const nInts[2] = {-1, 2};
  unsigned int const nWords[2] = {0x80000001u, 7};
  unsigned short const nShorts[3] = {1, 2, 65535};
  unsigned char const nBytes[2] = {9, 255};
  QXMemoryStream stream;
  stream.Save(fValues, 3);
  stream.Save(nInts, 2);
  stream.Save(nWords, 2);
  stream.Save(nShorts, 3);
  stream.Save(nBytes, 2);
  EXPECT_EQ(BytesOf(stream), QXByteWriter()
                                 .Float(1.0f)
                                 .Float(-2.5f)
                                 .Float(3.0f)
                                 .Int(-1)
                                 .Int(2)
                                 .Int(0x80000001)
                                 .Int(7)
                                 .Short(1)
                                 .Short(2)
                                 .Short(65535)
                                 .Byte(9)
                                 .Byte(255)
                                 .GetBytes());
  float fRead[3] = {};
  int nReadInts[2] = {};
  unsigned int nReadWords[2] = {};
  unsigned short nReadShorts[3] = {};
  unsigned char nReadBytes[2] = {};
  stream.Load(fRead, 3);
  stream.Load(nReadInts, 2);
  stream.Load(nReadWords, 2);
  stream.Load(nReadShorts, 3);
  stream.Load(nReadBytes, 2);
  EXPECT_TRUE(std::equal(fValues, fValues + 3, fRead));
  EXPECT_TRUE(std::equal(nInts, nInts + 2, nReadInts));
  EXPECT_TRUE(std::equal(nWords, nWords + 2, nReadWords));
  EXPECT_TRUE(std::equal(nShorts, nShorts + 3, nReadShorts));
  EXPECT_TRUE(std::equal(nBytes, nBytes + 2, nReadBytes));
  EXPECT_EQ(stream.Remaining(), 0u);
}

TEST(QXStream, TakesNoArrayForAnEmptyOne) {
  QXMemoryStream stream;
  stream.Save(static_cast<float const*>(nullptr), 0);
  stream.Load(static_cast<unsigned int*>(nullptr), 0);
  EXPECT_EQ(stream.IsGood(), 1);
  EXPECT_EQ(stream.GetSize(), 0u);
}

TEST(QXStream, GivesZerosFromTheFirstFailureOn) {
  std::string const bytes = QXByteWriter().Int(5).Short(0x0606).GetBytes();
  QXMemoryStream stream(bytes.data(), bytes.size());
  int nFirst = 0;
  stream >> nFirst;
  EXPECT_EQ(stream.Remaining(), 2u);
  EXPECT_EQ(stream.GetPosition(), 4u);
  EXPECT_TRUE(stream.GetErrorText() == L"");
  int nCut = -1;
  stream >> nCut;
  EXPECT_EQ(nCut, 0);
  EXPECT_EQ(stream.IsGood(), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_ENDED);
  EXPECT_TRUE(stream.GetErrorText() == L"the data ends too early");
  // Two bytes are left, but nobody knows any more what they are.
  EXPECT_EQ(stream.Remaining(), 0u);
  EXPECT_EQ(stream.GetPosition(), 4u);
  unsigned char nByte = 9;
  double dValue = 9;
  float fValues[2] = {9, 9};
  QdcUnicodeString strText(L"old");
  stream >> nByte >> dValue >> strText;
  stream.Load(fValues, 2);
  EXPECT_EQ(nByte, 0);
  EXPECT_EQ(dValue, 0.0);
  EXPECT_EQ(strText.IsEmpty(), 1);
  EXPECT_EQ(fValues[0], 0.0f);
  EXPECT_EQ(fValues[1], 0.0f);
  EXPECT_EQ(stream.GetPosition(), 4u);
}

TEST(QXStream, ZeroesAnArrayThatIsNotWholeInTheData) {
  std::string const bytes = QXByteWriter().Int(1).Int(2).GetBytes();
  QXMemoryStream stream(bytes.data(), bytes.size());
  unsigned int nValues[3] = {9, 9, 9};
  stream.Load(nValues, 3);
  EXPECT_EQ(nValues[0] | nValues[1] | nValues[2], 0u);
  EXPECT_EQ(stream.IsGood(), 0);
  EXPECT_EQ(stream.GetPosition(), 0u);
}

TEST(QXStream, WritesNothingAfterAFailure) {
  QXMemoryStream stream;
  stream << 1 << 2;
  stream.Fail(3);
  stream << 3 << QdcUnicodeString(L"x");
  unsigned short const nValue = 4;
  stream.Save(&nValue, 1);
  EXPECT_EQ(stream.GetSize(), 8u);
}

TEST(QXStream, EndsWhereAReaderFindsNonsense) {
  std::string const bytes = QXByteWriter().Int(5).Int(6).Int(7).GetBytes();
  QXMemoryStream stream(bytes.data(), bytes.size());
  int nValue = 0;
  stream >> nValue >> nValue;
  stream.Fail(4);
  EXPECT_EQ(stream.GetProblem(), STREAM_NONSENSE);
  EXPECT_EQ(stream.GetPosition(), 4u);
  EXPECT_TRUE(stream.GetErrorText() == L"the data makes no sense");
  stream >> nValue;
  EXPECT_EQ(nValue, 0);
  stream.Fail(9);
  EXPECT_EQ(stream.GetPosition(), 4u) << "the first failure is the one that is told";
}

TEST(QXStream, BelievesCountsThatTheRestCanFill) {
  std::string const bytes(20, 'x');
  QXMemoryStream stream(bytes.data(), bytes.size());
  EXPECT_EQ(stream.CanHold(5, 4), 1);
  EXPECT_EQ(stream.CanHold(6, 4), 0);
  EXPECT_EQ(stream.CanHold(20, 1), 1);
  EXPECT_EQ(stream.CanHold(2, 11), 0);
  EXPECT_EQ(stream.CanHold(0, 4), 1);
  EXPECT_EQ(stream.CanHold(-1, 4), 0);
  EXPECT_EQ(stream.CanHold(-1, 0), 0);
  EXPECT_EQ(stream.CanHold(std::numeric_limits<QXInt64>::min(), 1), 0);
  EXPECT_EQ(stream.CanHold(std::numeric_limits<QXInt64>::max(), 0xFFFFFFFFu), 0);
  EXPECT_EQ(stream.CanHold(std::numeric_limits<QXInt64>::max(), 0), 1);
  int nValue = 0;
  stream >> nValue;
  EXPECT_EQ(stream.CanHold(5, 4), 0);
  EXPECT_EQ(stream.CanHold(4, 4), 1);
  stream.Fail(0);
  EXPECT_EQ(stream.CanHold(1, 4), 0);
  EXPECT_EQ(stream.CanHold(0, 4), 1);
}

}  // namespace
}  // namespace QXC
