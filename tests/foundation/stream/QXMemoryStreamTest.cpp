#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace QXC {
namespace {

TEST(QXMemoryStream, BeginsWithoutABlock) {
  QXMemoryStream stream;
  EXPECT_EQ(stream.GetData(), nullptr);
  EXPECT_EQ(stream.GetSize(), 0u);
  EXPECT_EQ(stream.Remaining(), 0u);
  EXPECT_EQ(stream.IsGood(), 1);
  int nValue = 5;
  stream >> nValue;
  EXPECT_EQ(nValue, 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_ENDED);
}

TEST(QXMemoryStream, GrowsAndReadsBackWhatItHolds) {
  QXMemoryStream stream;
  for (int i = 0; i < 100000; ++i) stream << i;
  ASSERT_EQ(stream.GetSize(), 400000u);
  EXPECT_EQ(stream.Remaining(), 400000u);
  for (int i = 0; i < 100000; ++i) {
    int nValue = -1;
    stream >> nValue;
    ASSERT_EQ(nValue, i);
  }
  EXPECT_EQ(stream.Remaining(), 0u);
  EXPECT_EQ(stream.IsGood(), 1);
}

TEST(QXMemoryStream, ReadsBetweenTheWrites) {
  QXMemoryStream stream;
  int nValue = 0;
  stream << 1 << 2;
  stream >> nValue;
  EXPECT_EQ(nValue, 1);
  stream << 3;
  EXPECT_EQ(stream.Remaining(), 8u);
  stream >> nValue >> nValue;
  EXPECT_EQ(nValue, 3);
  EXPECT_EQ(stream.Remaining(), 0u);
  EXPECT_EQ(stream.GetPosition(), 12u);
  stream >> nValue;
  EXPECT_EQ(stream.IsGood(), 0);
}

TEST(QXMemoryStream, ReadsTheBlockOfItsCallerInPlace) {
  std::vector<unsigned char> block{1, 2, 3};
  QXMemoryStream stream(block.data(), block.size());
  EXPECT_EQ(stream.GetData(), block.data());
  EXPECT_EQ(stream.GetSize(), 3u);
  block[1] = 9;
  unsigned char nFirst = 0;
  unsigned char nSecond = 0;
  stream >> nFirst >> nSecond;
  EXPECT_EQ(nFirst, 1);
  EXPECT_EQ(nSecond, 9);
  EXPECT_EQ(stream.Remaining(), 1u);
}

TEST(QXMemoryStream, NeverWritesIntoABlockThatItReads) {
  std::vector<unsigned char> const block(8, 7);
  QXMemoryStream stream(block.data(), block.size());
  stream << 1;
  EXPECT_EQ(stream.IsGood(), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NOT_OPEN);
  EXPECT_EQ(block, std::vector<unsigned char>(8, 7));
  EXPECT_EQ(stream.GetSize(), 8u);
  stream.Reserve(1000);
  EXPECT_EQ(stream.GetData(), block.data());
}

TEST(QXMemoryStream, MakesNoBlockLargerThatIsItsCallers) {
  unsigned char bytes[4] = {1, 2, 3, 4};
  QXMemoryStream reader(bytes, 4);
  QXMemoryStream writer(QXMemoryStream::Room{bytes, 4});
  for (QXMemoryStream* pStream : {&reader, &writer}) {
    pStream->Reserve(1000);
    EXPECT_EQ(pStream->IsGood(), 1);
    EXPECT_EQ(pStream->GetData(), bytes);
  }
  writer << 1 << static_cast<unsigned char>(2);
  EXPECT_EQ(writer.GetProblem(), STREAM_FULL);
}

TEST(QXMemoryStream, OverNothingIsEmpty) {
  QXMemoryStream reader(nullptr, 100);
  EXPECT_EQ(reader.Remaining(), 0u);
  EXPECT_EQ(reader.GetSize(), 0u);
  QXMemoryStream writer(QXMemoryStream::Room{nullptr, 100});
  writer << static_cast<unsigned char>(1);
  EXPECT_EQ(writer.GetProblem(), STREAM_FULL);
}

TEST(QXMemoryStream, FillsTheRoomOfItsCallerToTheLastByte) {
  unsigned char bytes[10];
  std::fill_n(bytes, 10, static_cast<unsigned char>(0xEE));
  QXMemoryStream stream(QXMemoryStream::Room{bytes, 9});
  stream << 0x04030201 << 0x08070605 << static_cast<unsigned char>(9);
  EXPECT_EQ(stream.IsGood(), 1);
  EXPECT_EQ(stream.GetSize(), 9u);
  for (unsigned char i = 0; i < 9; ++i) EXPECT_EQ(bytes[i], i + 1);
  EXPECT_EQ(bytes[9], 0xEE);
  int nValue = 0;
  stream >> nValue;
  EXPECT_EQ(nValue, 0x04030201);
}

TEST(QXMemoryStream, WritesNothingOfWhatTheRoomCannotHoldWhole) {
  unsigned char bytes[6];
  std::fill_n(bytes, 6, static_cast<unsigned char>(0xEE));
  QXMemoryStream stream(QXMemoryStream::Room{bytes, 6});
  stream << 1 << 2;
  EXPECT_EQ(stream.IsGood(), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_FULL);
  EXPECT_TRUE(stream.GetErrorText() == L"the room is full");
  EXPECT_EQ(bytes[4], 0xEE);
  stream << static_cast<unsigned char>(3);
  EXPECT_EQ(bytes[4], 0xEE) << "it would fit, but something before it is missing";
  EXPECT_EQ(stream.GetSize(), 4u);
}

TEST(QXMemoryStream, AllocatesOnceWhenItIsToldHowMuchComes) {
  QXMemoryStream stream;
  stream << 1;
  stream.Reserve(4000);
  unsigned char const* const pData = stream.GetData();
  for (int i = 1; i < 1000; ++i) stream << i;
  EXPECT_EQ(stream.GetData(), pData);
  EXPECT_EQ(stream.GetSize(), 4000u);
  stream.Reserve(10);
  EXPECT_EQ(stream.GetData(), pData);
  int nValue = 0;
  stream >> nValue;
  EXPECT_EQ(nValue, 1);
}

/// Writes of any length, without bytes to back them.
class QXOpenMemoryStream : public QXMemoryStream {
public:
  using QXMemoryStream::WritePast;
};

TEST(QXMemoryStream, FailsWhenTheBlockCannotBeHad) {
  QXOpenMemoryStream stream;
  stream << 7;
  EXPECT_EQ(stream.WritePast(nullptr, std::numeric_limits<std::size_t>::max() / 2 + 1), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NO_MEMORY);
  EXPECT_TRUE(stream.GetErrorText() == L"there is not enough memory");
  EXPECT_EQ(stream.GetSize(), 4u);
  EXPECT_EQ(stream.GetData()[0], 7);
}

// Less may follow than was announced, and that may well fit.
TEST(QXMemoryStream, GoesOnWhenTheReservedBlockCannotBeHad) {
  QXMemoryStream stream;
  stream << 7;
  stream.Reserve(std::numeric_limits<QXUInt64>::max());
  EXPECT_EQ(stream.IsGood(), 1);
  for (int i = 0; i < 1000; ++i) stream << i;
  EXPECT_EQ(stream.IsGood(), 1);
  EXPECT_EQ(stream.GetSize(), 4004u);
  int nValue = 0;
  stream >> nValue;
  EXPECT_EQ(nValue, 7);
}

TEST(QXMemoryStream, BeginsAnewAfterRewinding) {
  QXMemoryStream stream;
  stream << 1 << 2;
  int nValue = 0;
  stream >> nValue >> nValue >> nValue;
  EXPECT_EQ(stream.IsGood(), 0);
  stream.Rewind();
  EXPECT_EQ(stream.IsGood(), 1);
  EXPECT_EQ(stream.Remaining(), 8u);
  stream << 3;
  EXPECT_EQ(stream.GetSize(), 12u);
  stream >> nValue;
  EXPECT_EQ(nValue, 1);
  stream >> nValue >> nValue;
  EXPECT_EQ(nValue, 3);

  unsigned char const bytes[2] = {5, 6};
  QXMemoryStream reader(bytes, 2);
  unsigned char nByte = 0;
  reader >> nByte >> nByte;
  reader.Fail(0);
  reader.Rewind();
  reader >> nByte;
  EXPECT_EQ(nByte, 5);
}

// A vector and an index do what the stream does.
TEST(QXMemoryStream, DoesWhatAPlainVectorDoesOnRandomSequences) {
  constexpr unsigned int nSeed = 20260641;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  for (int nRound = 0; nRound < 200; ++nRound) {
    auto const pStream = std::make_unique<QXMemoryStream>();
    std::vector<unsigned char> expected;
    std::size_t nRead = 0;
    for (int nStep = 0; nStep < 100; ++nStep) {
      auto const nCount = static_cast<unsigned int>(random() % 8 == 0 ? random() % 3000 : random() % 20);
      std::vector<unsigned char> bytes(nCount);
      switch (random() % 4) {
      case 0:
        for (unsigned char& nByte : bytes) nByte = static_cast<unsigned char>(random());
        pStream->Save(bytes.data(), nCount);
        expected.insert(expected.end(), bytes.begin(), bytes.end());
        break;
      case 1: {
        auto const nValue = static_cast<unsigned int>(random());
        *pStream << nValue;
        for (int i = 0; i < 4; ++i) expected.push_back(static_cast<unsigned char>(nValue >> 8 * i));
        break;
      }
      case 2:
        if (nCount > expected.size() - nRead) break;
        pStream->Load(bytes.data(), nCount);
        ASSERT_TRUE(std::equal(bytes.begin(), bytes.end(), expected.begin() + static_cast<std::ptrdiff_t>(nRead)));
        nRead += nCount;
        break;
      default:
        if (random() % 10 == 0) {
          pStream->Rewind();
          nRead = 0;
        } else if (random() % 10 == 0) {
          pStream->Reserve(expected.size() + nCount);
        }
      }
      ASSERT_EQ(pStream->IsGood(), 1);
      ASSERT_EQ(pStream->GetSize(), expected.size());
      ASSERT_EQ(pStream->GetPosition(), nRead);
      ASSERT_EQ(pStream->Remaining(), expected.size() - nRead);
    }
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), pStream->GetData()));
  }
}

}  // namespace
}  // namespace QXC
