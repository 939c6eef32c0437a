#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/staticgeometry/QXVertexPackageStream.h>

#include "QXStreamHelpers.h"

namespace {

using namespace QXC;
using namespace QXTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Plain and wide.
constexpr unsigned char Layouts[] = {0, 1};
constexpr float Infinity = std::numeric_limits<float>::infinity();

/// A package of 2 vertices with everything that the plain layout holds.
void FillPackage(QXVertexDataPackage& package) {
  package.m_nOptions = 0x407;
  SetPositions(package, 3, {1, 2, 3, -4, 5.5F, 6}, 12);
  SetNormals(package, 2, {0, 1, -1, 0}, 8);
  SetColors(package, {0x11223344, 0xFFEEDDCC}, 4);
  SetUnit(package, 0, 2, {0.25F, 0.5F, 0.75F, 1}, 16);
  SetUnit(package, 1, 4, {1, 2, 3, 4, 5, 6, 7, 8}, 24);
}

QXBytes PlainBytes() {
  QXByteWriter writer;
  writer.Int(0x407).Short(515);
  writer.Int(2).Short(12).Floats({1, 2, 3, -4, 5.5F, 6});
  writer.Int(2).Short(8).Floats({0, 1, -1, 0});
  writer.Int(2).Short(4).Ints({0x11223344, 0xFFEEDDCC});
  writer.Int(2);
  writer.Short(2).Int(2).Short(16).Floats({0.25F, 0.5F, 0.75F, 1});
  writer.Short(4).Int(2).Short(24).Floats({1, 2, 3, 4, 5, 6, 7, 8});
  return writer.Get();
}

float Channel(int nChannel) {
  return static_cast<float>(nChannel / 255.0);
}

QXByteWriter& Color(QXByteWriter& writer, int nRed, int nGreen, int nBlue, int nAlpha) {
  return writer.Float(Channel(nRed)).Float(Channel(nGreen)).Float(Channel(nBlue)).Float(Channel(nAlpha));
}

QXBytes WideBytes() {
  QXByteWriter writer;
  writer.Int(0x407).Short(515).Byte(0).Byte(0);
  writer.Int(2).Short(12).Byte(0).Byte(0).Floats({1, 2, 3, -4, 5.5F, 6});
  writer.Int(2).Short(8).Byte(0).Byte(0).Floats({0, 1, -1, 0});
  writer.Int(2).Short(4).Byte(0).Byte(0);
  Color(writer, 0x44, 0x33, 0x22, 0x11);
  Color(writer, 0xCC, 0xDD, 0xEE, 0xFF);
  writer.Int(1);
  Color(writer, 1, 2, 3, 4);
  writer.Int(2);
  writer.Int(2).Short(2).Short(16).Floats({0.25F, 0.5F, 0.75F, 1});
  writer.Int(2).Short(4).Short(24).Floats({1, 2, 3, 4, 5, 6, 7, 8});
  return writer.Get();
}

/// Loads all of the bytes into a package and says whether that went well and nothing was left over.
unsigned char LoadAll(QXVertexDataPackage& package, QXBytes const& bytes, unsigned char bWide) {
  QXExactStream stream(bytes);
  return LoadVertexPackage(package, stream, bWide) && stream->Remaining() == 0 ? 1 : 0;
}

/// What both layouts bring back of FillPackage's.
void ExpectShape(QXVertexDataPackage const& package) {
  EXPECT_EQ(package.m_nOptions, 0x407U);
  EXPECT_EQ(package.m_nVertexDim, 3);
  EXPECT_EQ(package.m_nNormalDim, 2);
  EXPECT_EQ(package.m_nVertexStride, 12);
  EXPECT_EQ(package.m_nNormalStride, 8);
  EXPECT_EQ(package.m_nColorStride, 4);
  EXPECT_THAT(Values(package.m_pNormals, 4), ElementsAre(0, 1, -1, 0));
  EXPECT_EQ(package.m_nColorNum, 2U);
  EXPECT_EQ(package.m_nTexDims[1], 4);
  EXPECT_EQ(package.m_nTexCoordStrides[0], 16);
  EXPECT_THAT(Values(package.m_pTexCoords[1], 8), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

/// The plain layout up to the count of units of a package without vertices.
QXByteWriter PlainWithoutVertices() {
  QXByteWriter writer;
  writer.Int(7).Short(3).Int(0).Int(0).Int(0);
  return writer;
}

TEST(QXVertexPackageStream, PlainLayoutIsTheBytesOfItsTable) {
  QXVertexDataPackage package;
  FillPackage(package);
  EXPECT_EQ(SavedPackage(package, 0), PlainBytes());
}

TEST(QXVertexPackageStream, PlainLayoutComesBackWhole) {
  QXVertexDataPackage package;
  ASSERT_TRUE(LoadAll(package, PlainBytes(), 0));
  ExpectShape(package);
  EXPECT_THAT(Values(package.m_pVertices, 6), ElementsAre(1, 2, 3, -4, 5.5F, 6));
  EXPECT_EQ(package.m_nVertexNum, 2U);
  EXPECT_EQ(package.m_nNormalNum, 2U);
  EXPECT_THAT(Values(package.m_pColors, 2), ElementsAre(0x11223344, 0xFFEEDDCC));
  EXPECT_EQ(package.m_nTexDims[0], 2);
  EXPECT_EQ(package.m_nTexCoordStrides[1], 24);
  EXPECT_THAT(Values(package.m_pTexCoords[0], 4), ElementsAre(0.25F, 0.5F, 0.75F, 1));
  EXPECT_EQ(package.m_nTexCoordNums[1], 2U);
  EXPECT_EQ(package.m_nTexCoordNums[2], 0U);
  EXPECT_EQ(package.m_pTexCoords[2], nullptr);
}

TEST(QXVertexPackageStream, EmptyPackageIsItsCountsAlone) {
  QXVertexDataPackage package;
  QXBytes const bytes = PlainWithoutVertices().Int(0).Get();
  EXPECT_EQ(SavedPackage(package, 0), bytes);
  ASSERT_TRUE(LoadAll(package, bytes, 0));
  EXPECT_EQ(package.m_pVertices, nullptr);
  EXPECT_EQ(package.m_pNormals, nullptr);
  EXPECT_EQ(package.m_pColors, nullptr);
}

TEST(QXVertexPackageStream, PointersReadAndWriteLikeReferences) {
  QXVertexDataPackage package;
  QXExactStream stream(PlainBytes());
  EXPECT_EQ(LoadVertexPackage(&package, stream, 0), 1);
  EXPECT_EQ(Written([&](QXStream& target) { SaveVertexPackage(&package, target, 0); }), PlainBytes());
  EXPECT_EQ(GetVertexPackageSize(&package), GetVertexPackageSize(package));
}

TEST(QXVertexPackageStream, NullPackageReadsWritesAndMeasuresNothing) {
  QXVertexDataPackage* const pPackage = nullptr;
  QXExactStream stream(PlainBytes());
  EXPECT_EQ(LoadVertexPackage(pPackage, stream, 0), 0);
  EXPECT_EQ(stream->GetPosition(), 0U);
  EXPECT_THAT(Written([&](QXStream& target) { SaveVertexPackage(pPackage, target, 0); }), IsEmpty());
  EXPECT_EQ(GetVertexPackageSize(pPackage), 0);
}

TEST(QXVertexPackageStream, LoadedPositionsHaveZeroedSlackBehindThem) {
  QXVertexDataPackage package;
  ASSERT_TRUE(LoadAll(package, PlainBytes(), 0));
  EXPECT_THAT(Values(package.m_pVertices + 6, 4), ElementsAre(0, 0, 0, 0));
}

TEST(QXVertexPackageStream, LoadReplacesTheArraysOfTheLayoutAndKeepsTheOthers) {
  QXVertexDataPackage package;
  FillPackage(package);
  SetUnit(package, 2, 2, {9, 9});
  package.SetSecondColorNum(1, 0);
  package.m_pTangents = new float[3]();
  package.m_nTangentNum = 1;
  ASSERT_TRUE(LoadAll(package, PlainWithoutVertices().Int(0).Get(), 0));
  EXPECT_EQ(package.m_pVertices, nullptr);
  EXPECT_EQ(package.m_nVertexNum, 0U);
  EXPECT_EQ(package.m_nVertexStride, 0);
  EXPECT_EQ(package.m_pNormals, nullptr);
  EXPECT_EQ(package.m_pColors, nullptr);
  for (unsigned int unit = 0; unit < 3; ++unit) EXPECT_EQ(package.m_pTexCoords[unit], nullptr);
  EXPECT_EQ(package.m_nTexCoordNums[2], 0U);
  EXPECT_NE(package.m_pSecondColors, nullptr);
  EXPECT_NE(package.m_pTangents, nullptr);
}

// Arrays of other dimensions would be read past their ends.
TEST(QXVertexPackageStream, LoadThatFailsBehindTheDimensionsKeepsNoArrayOfOthers) {
  QXVertexDataPackage package;
  FillPackage(package);
  QXExactStream stream(QXByteWriter().Int(7).Short(4).Short(1).Get());
  EXPECT_EQ(LoadVertexPackage(package, stream, 0), 0);
  EXPECT_EQ(package.m_nNormalDim, 4);
  EXPECT_EQ(package.m_pVertices, nullptr);
  EXPECT_EQ(package.m_pNormals, nullptr);
  EXPECT_EQ(package.m_nNormalNum, 0U);
}

struct DimensionCase {
  unsigned short m_nVertexDim;
  unsigned short m_nNormalDim;
  unsigned int m_nWord;
  unsigned short m_nReadVertexDim;
  unsigned short m_nReadNormalDim;
};

class DimensionWord : public testing::TestWithParam<DimensionCase> {};

TEST_P(DimensionWord, PacksAndUnpacksAsTheTableSays) {
  DimensionCase const& dims = GetParam();
  QXVertexDataPackage package;
  package.m_nVertexDim = dims.m_nVertexDim;
  package.m_nNormalDim = dims.m_nNormalDim;
  QXBytes const bytes = SavedPackage(package, 0);
  ASSERT_GE(bytes.size(), 6U);
  EXPECT_EQ(bytes[4] + bytes[5] * 256U, dims.m_nWord);
  QXVertexDataPackage read;
  ASSERT_TRUE(LoadAll(read, bytes, 0));
  EXPECT_EQ(read.m_nVertexDim, dims.m_nReadVertexDim);
  EXPECT_EQ(read.m_nNormalDim, dims.m_nReadNormalDim);
}

// Pairs with a zero, equal ones of 5 and more and positions of 16 and more do not survive.
INSTANTIATE_TEST_SUITE_P(QXVertexPackageStream, DimensionWord,
    testing::Values(DimensionCase{3, 3, 3, 3, 3}, DimensionCase{2, 2, 2, 2, 2}, DimensionCase{4, 4, 4, 4, 4},
        DimensionCase{3, 2, 515, 3, 2}, DimensionCase{4, 3, 772, 4, 3}, DimensionCase{2, 3, 770, 2, 3},
        DimensionCase{0, 3, 768, 0, 3}, DimensionCase{15, 1, 271, 15, 1}, DimensionCase{4, 0, 4, 4, 4},
        DimensionCase{5, 5, 5, 5, 0}, DimensionCase{6, 0, 6, 6, 0}, DimensionCase{20, 20, 20, 4, 0},
        DimensionCase{16, 3, 784, 0, 3}, DimensionCase{300, 300, 300, 12, 1}, DimensionCase{3, 256, 3, 3, 3}));

TEST(QXVertexPackageStream, FloatsComeBackBitForBit) {
  std::vector<float> const arrNumbers = {
      0.0F, -0.0F, Infinity, -Infinity, std::numeric_limits<float>::denorm_min(), std::bit_cast<float>(0x7FC12345U)};
  QXVertexDataPackage package;
  SetPositions(package, 3, arrNumbers);
  QXVertexDataPackage read;
  ASSERT_TRUE(LoadAll(read, SavedPackage(package, 0), 0));
  for (std::size_t i = 0; i < arrNumbers.size(); ++i)
    EXPECT_EQ(std::bit_cast<unsigned int>(read.m_pVertices[i]), std::bit_cast<unsigned int>(arrNumbers[i]));
}

TEST(QXVertexPackageStream, CountWithoutArrayIsWrittenAlone) {
  QXVertexDataPackage package;
  package.m_nVertexNum = 3;
  package.m_nNormalNum = 4;
  package.m_nColorNum = 5;
  EXPECT_EQ(SavedPackage(package, 0), QXByteWriter().Int(7).Short(3).Int(3).Int(4).Int(5).Int(0).Get());
}

TEST(QXVertexPackageStream, CountWithoutArrayMakesAReaderTakeWhatFollowsForTheArray) {
  QXVertexDataPackage package;
  package.m_nVertexNum = 1;
  SetNormals(package, 3, {1, 2, 3}, 9);
  // The reader takes the normals' count for stride and the start of the position.
  QXVertexDataPackage read;
  EXPECT_FALSE(LoadAll(read, SavedPackage(package, 0), 0));
  EXPECT_EQ(read.m_nVertexStride, 1);
}

TEST(QXVertexPackageStream, UnitWithoutCoordinatesEndsTheUnits) {
  QXVertexDataPackage package;
  SetUnit(package, 0, 2, {1, 2});
  SetUnit(package, 2, 2, {3, 4});
  QXVertexDataPackage read;
  ASSERT_TRUE(LoadAll(read, SavedPackage(package, 0), 0));
  EXPECT_EQ(read.m_nTexCoordNums[0], 1U);
  EXPECT_EQ(read.m_nTexCoordNums[1], 0U);
  EXPECT_EQ(read.m_nTexCoordNums[2], 0U);
}

TEST(QXVertexPackageStream, UnitWithACountButNoArrayEndsTheUnitsToo) {
  QXVertexDataPackage package;
  SetUnit(package, 0, 2, {1, 2});
  package.m_nTexCoordNums[1] = 3;
  QXVertexDataPackage read;
  ASSERT_TRUE(LoadAll(read, SavedPackage(package, 0), 0));
  EXPECT_EQ(read.m_nTexCoordNums[0], 1U);
  EXPECT_EQ(read.m_nTexCoordNums[1], 0U);
}

TEST(QXVertexPackageStream, EightUnitsComeBackAndNineAreRefused) {
  QXVertexDataPackage package;
  for (unsigned int unit = 0; unit < 8; ++unit) SetUnit(package, unit, 1, {static_cast<float>(unit)});
  QXBytes bytes = SavedPackage(package, 0);
  QXVertexDataPackage read;
  ASSERT_TRUE(LoadAll(read, bytes, 0));
  for (unsigned int unit = 0; unit < 8; ++unit)
    EXPECT_THAT(Values(read.m_pTexCoords[unit], 1), ElementsAre(static_cast<float>(unit)));
  QXByteWriter nine = PlainWithoutVertices().Int(9);
  for (int i = 0; i < 9; ++i) nine.Short(1).Int(1).Short(0).Float(1);
  EXPECT_FALSE(LoadAll(read, nine.Get(), 0));
}

TEST(QXVertexPackageStream, NegativeCountOfUnitsIsRefused) {
  QXVertexDataPackage package;
  EXPECT_FALSE(LoadAll(package, PlainWithoutVertices().Int(-1).Get(), 0));
}

TEST(QXVertexPackageStream, UnitWithACountOfZeroInTheStreamKeepsDimensionAndStride) {
  QXByteWriter writer = PlainWithoutVertices().Int(2);
  writer.Short(3).Int(0).Short(7).Short(2).Int(1).Short(8).Floats({5, 6});
  QXVertexDataPackage package;
  ASSERT_TRUE(LoadAll(package, writer.Get(), 0));
  EXPECT_EQ(package.m_nTexDims[0], 3);
  EXPECT_EQ(package.m_nTexCoordStrides[0], 7);
  EXPECT_EQ(package.m_nTexCoordNums[0], 0U);
  EXPECT_THAT(Values(package.m_pTexCoords[1], 2), ElementsAre(5, 6));
}

// Renderers would read numbers that are not there.
TEST(QXVertexPackageStream, ItemsWithoutNumbersAreRefused) {
  QXVertexDataPackage package;
  QXBytes const vertices = QXByteWriter().Int(7).Short(0).Int(0xFFFFFFFF).Short(0).Int(0).Int(0).Int(0).Get();
  EXPECT_FALSE(LoadAll(package, vertices, 0));
  EXPECT_EQ(package.m_nVertexNum, 0U);
  EXPECT_FALSE(LoadAll(package, PlainWithoutVertices().Int(1).Short(0).Int(9).Short(0).Get(), 0));
  EXPECT_EQ(package.m_nTexCoordNums[0], 0U);
}

TEST(QXVertexPackageStream, CountsBeyondTheStreamAreRefusedWhateverTheArray) {
  QXByteWriter const head = QXByteWriter().Int(7).Short(3);
  for (std::uint32_t const nCount : {2U, 0x55555556U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    QXVertexDataPackage package;
    // 14 bytes behind each count: one item of three floats and a stride, not two.
    QXBytes const item = QXByteWriter().Short(0).Floats({1, 2, 3}).Get();
    EXPECT_FALSE(LoadAll(package, QXByteWriter(head).Int(nCount).Bytes(item).Get(), 0)) << nCount;
    EXPECT_FALSE(LoadAll(package, QXByteWriter(head).Int(0).Int(nCount).Bytes(item).Get(), 0)) << nCount;
    EXPECT_FALSE(LoadAll(package, QXByteWriter(head).Int(0).Int(0).Int(nCount).Short(0).Int(1).Get(), 0)) << nCount;
    EXPECT_FALSE(LoadAll(package, PlainWithoutVertices().Int(1).Short(3).Int(nCount).Bytes(item).Get(), 0)) << nCount;
    EXPECT_EQ(package.m_nVertexNum, 0U);
    EXPECT_EQ(package.m_nTexCoordNums[0], 0U);
  }
}

TEST(QXVertexPackageStream, EveryTruncationFailsAndKeepsWhatWasWhole) {
  for (unsigned char const bWide : Layouts) {
    QXBytes const bytes = bWide ? WideBytes() : PlainBytes();
    std::size_t const nVerticesEnd = bWide ? 40 : 36;
    for (std::size_t nSize = 0; nSize < bytes.size(); ++nSize) {
      QXVertexDataPackage package;
      QXExactStream stream(bytes, nSize);
      ASSERT_EQ(LoadVertexPackage(package, stream, bWide), 0) << nSize;
      ASSERT_EQ(package.m_nVertexNum, nSize >= nVerticesEnd ? 2U : 0U) << nSize;
      ASSERT_EQ(package.m_pVertices != nullptr, nSize >= nVerticesEnd) << nSize;
    }
  }
}

TEST(QXVertexPackageStream, FailedStreamReadsNothing) {
  QXVertexDataPackage package;
  QXExactStream stream(PlainBytes());
  stream->Fail(0);
  EXPECT_EQ(LoadVertexPackage(package, stream, 0), 0);
}

TEST(QXVertexPackageStream, WideLayoutIsTheBytesOfItsTable) {
  QXVertexDataPackage package;
  FillPackage(package);
  package.SetSecondColorNum(1, 77);
  package.m_pSecondColors[0] = QDC::QDCRGBA(1, 2, 3, 4);
  EXPECT_EQ(SavedPackage(package, 1), WideBytes());
  EXPECT_EQ(SavedPackage(package, 200), WideBytes());
}

TEST(QXVertexPackageStream, WideLayoutComesBackWhole) {
  QXVertexDataPackage package;
  ASSERT_TRUE(LoadAll(package, WideBytes(), 1));
  ExpectShape(package);
  EXPECT_THAT(Values(package.m_pVertices, 10), ElementsAre(1, 2, 3, -4, 5.5F, 6, 0, 0, 0, 0));
  EXPECT_EQ(package.m_nSecondColorNum, 1U);
}

TEST(QXVertexPackageStream, WidePaddingIsSkippedWhateverItHolds) {
  QXBytes bytes = WideBytes();
  for (std::size_t const nAt : {6U, 7U, 14U, 15U}) bytes[nAt] = 0xAB;
  QXVertexDataPackage package;
  EXPECT_TRUE(LoadAll(package, bytes, 1));
}

TEST(QXVertexPackageStream, WideColorsOfEveryChannelComeBack) {
  for (int nChannel = 0; nChannel < 256; ++nChannel) {
    auto const value = static_cast<unsigned char>(nChannel);
    std::vector<unsigned int> const arrColors = {QDC::QDCRGBA(value, 0, 0, 255), QDC::QDCRGBA(0, value, 0, 255),
        QDC::QDCRGBA(0, 0, value, 255), QDC::QDCRGBA(0, 0, 0, value)};
    QXVertexDataPackage package;
    SetColors(package, arrColors);
    QXVertexDataPackage read;
    ASSERT_TRUE(LoadAll(read, SavedPackage(package, 1), 1));
    EXPECT_EQ(Values(read.m_pColors, 4), arrColors) << nChannel;
  }
}

TEST(QXVertexPackageStream, WideColorsOfOthersAreTruncated) {
  QXByteWriter writer;
  writer.Int(7).Short(3).Byte(0).Byte(0).Int(0).Int(0).Int(1).Short(0).Byte(0).Byte(0).Floats(
      {0.5F, 0.999F, 0.0039F, 0.9999999F});
  QXVertexDataPackage package;
  ASSERT_TRUE(LoadAll(package, writer.Int(0).Int(0).Get(), 1));
  EXPECT_EQ(package.m_pColors[0], QDC::QDCRGBA(127, 254, 0, 254));
}

TEST(QXVertexPackageStream, WideColorsOutOfRangeAreCutToAnIntAndThenToAByte) {
  float const fNaN = std::numeric_limits<float>::quiet_NaN();
  QXByteWriter writer;
  writer.Int(7).Short(3).Byte(0).Byte(0).Int(0).Int(0).Int(2).Short(0).Byte(0).Byte(0);
  writer.Floats({Infinity, -Infinity, fNaN, 1.0F}).Floats({2.0F, -1.0F, 1e30F, 0.5F}).Int(0).Int(0);
  QXVertexDataPackage package;
  ASSERT_TRUE(LoadAll(package, writer.Get(), 1));
  EXPECT_EQ(package.m_pColors[0], QDC::QDCRGBA(0xFF, 0x00, 0x00, 0xFF));
  EXPECT_EQ(package.m_pColors[1], QDC::QDCRGBA(510 - 256, 1, 0xFF, 127));
}

TEST(QXVertexPackageStream, WideUnitsOf17And29NumbersHoldColorsBehindTheirNumbers) {
  for (unsigned short nDim : {static_cast<unsigned short>(17), static_cast<unsigned short>(29)}) {
    unsigned int const nColors = nDim == 17 ? 1 : 2;
    unsigned int const nPlain = nDim - nColors;
    QXVertexDataPackage package;
    std::vector<float> arrNumbers(300U * nDim);
    for (std::size_t i = 0; i < arrNumbers.size(); ++i) {
      bool const isColor = i % nDim >= nPlain;
      arrNumbers[i] = isColor ? std::bit_cast<float>(i % 2 ? 0xFF00FF00U : 0x00FF00FFU) : static_cast<float>(i);
    }
    SetUnit(package, 0, nDim, arrNumbers, 5);
    QXByteWriter expected;
    expected.Int(7)
        .Short(3)
        .Byte(0)
        .Byte(0)
        .Int(0)
        .Int(0)
        .Int(0)
        .Int(0)
        .Int(1)
        .Int(300)
        .Short(nDim == 17 ? 20 : 35)
        .Short(5);
    for (std::size_t i = 0; i < arrNumbers.size(); ++i) {
      if (i % nDim < nPlain) {
        expected.Float(static_cast<float>(i));
      } else {
        expected.Floats(i % 2 ? std::vector<float>{0, 1, 0, 1} : std::vector<float>{1, 0, 1, 0});
      }
    }
    EXPECT_EQ(SavedPackage(package, 1), expected.Get());
    QXVertexDataPackage read;
    ASSERT_TRUE(LoadAll(read, expected.Get(), 1));
    EXPECT_EQ(read.m_nTexDims[0], nDim);
    EXPECT_EQ(read.m_nTexCoordNums[0], 300U);
    for (std::size_t i = 0; i < arrNumbers.size(); ++i)
      ASSERT_EQ(std::bit_cast<unsigned int>(read.m_pTexCoords[0][i]), std::bit_cast<unsigned int>(arrNumbers[i])) << i;
  }
}

// Only the wide layout stores 17 and 29 numbers as these.
TEST(QXVertexPackageStream, PlainUnitsOf20And35NumbersStayWhatTheyAre) {
  for (unsigned short const nDim : std::vector<unsigned short>{20, 35}) {
    QXVertexDataPackage package;
    SetUnit(package, 0, nDim, std::vector<float>(nDim, 0.5F));
    QXVertexDataPackage read;
    ASSERT_TRUE(LoadAll(read, SavedPackage(package, 0), 0));
    EXPECT_EQ(read.m_nTexDims[0], nDim);
    EXPECT_EQ(Values(read.m_pTexCoords[0], nDim), std::vector<float>(nDim, 0.5F));
  }
}

TEST(QXVertexPackageStream, PlainUnitsOf17NumbersAreNumbers) {
  QXVertexDataPackage package;
  SetUnit(package, 0, 17, std::vector<float>(17, 0.5F));
  QXVertexDataPackage read;
  ASSERT_TRUE(LoadAll(read, SavedPackage(package, 0), 0));
  EXPECT_EQ(read.m_nTexDims[0], 17);
  EXPECT_THAT(SavedPackage(package, 0), SizeIs(22 + 8 + 17 * 4));
}

TEST(QXVertexPackageStream, TruncatedWideUnitOf35NumbersFails) {
  QXByteWriter writer;
  writer.Int(7).Short(3).Byte(0).Byte(0).Int(0).Int(0).Int(0).Int(0).Int(1).Int(2).Short(35).Short(0).Floats(
      std::vector<float>(69, 1.0F));
  QXVertexDataPackage package;
  EXPECT_FALSE(LoadAll(package, writer.Get(), 1));
  EXPECT_EQ(package.m_pTexCoords[0], nullptr);
  EXPECT_TRUE(LoadAll(package, QXByteWriter(writer).Float(1).Get(), 1));
}

TEST(QXVertexPackageStream, SizeCountsEveryArrayAndTheSecondColors) {
  QXVertexDataPackage package;
  EXPECT_EQ(GetVertexPackageSize(package), 10 + 4 + 4 + 4 + 4);
  FillPackage(package);
  int const nPlain =
      10 + (2 + 4 * 2 * 3) + 4 + (2 + 4 * 2 * 2) + 4 + (2 + 4 * 2) + 4 + 4 + (8 + 4 * 2 * 2) + (8 + 4 * 2 * 4);
  EXPECT_EQ(GetVertexPackageSize(package), nPlain);
  EXPECT_EQ(static_cast<std::size_t>(GetVertexPackageSize(package)), PlainBytes().size() + 4);
  package.SetSecondColorNum(3, 0);
  EXPECT_EQ(GetVertexPackageSize(package), nPlain + 2 + 4 * 3);
  package.m_nTangentDim = 4;
  package.m_pTangents = new float[8]();
  package.m_nTangentNum = 2;
  EXPECT_EQ(GetVertexPackageSize(package), nPlain + 2 + 4 * 3 + 2 + 4 * 2 * 4);
  package.m_pBinormals = new float[3]();
  package.m_nBinormalNum = 1;
  EXPECT_EQ(GetVertexPackageSize(package), nPlain + 2 + 4 * 3 + 2 + 4 * 2 * 4 + 2 + 4 * 3);
  package.m_nColorNum = 0;
  EXPECT_EQ(GetVertexPackageSize(package), nPlain + 2 + 4 * 3 + 2 + 4 * 2 * 4 + 2 + 4 * 3 - 2 - 4 * 2);
}

TEST(QXVertexPackageStream, SizeOfCountsWithoutArraysIsThatOfAnEmptyPackage) {
  QXVertexDataPackage package;
  package.m_nVertexNum = package.m_nNormalNum = package.m_nColorNum = package.m_nSecondColorNum = 1000;
  package.m_nTexCoordNums[0] = 1000;
  EXPECT_EQ(GetVertexPackageSize(package), 26);
}

TEST(QXVertexPackageStream, SizeBeyondAnIntIsTheGreatestInt) {
  QXVertexDataPackage package;
  float number = 0;
  package.m_pTexCoords[0] = &number;
  package.m_nTexCoordNums[0] = 0xFFFFFFFF;
  package.m_nTexDims[0] = 0xFFFF;
  EXPECT_EQ(GetVertexPackageSize(package), std::numeric_limits<int>::max());
  package.m_pTexCoords[0] = nullptr;
}

TEST(QXVertexPackageStream, RandomPackagesComeBackInBothLayouts) {
  constexpr unsigned int Seed = 20261121;
  SCOPED_TRACE(Seed);
  std::mt19937 random(Seed);
  auto const draw = [&](unsigned int nLimit) { return static_cast<unsigned int>(random() % nLimit); };
  auto const numbers = [&](std::size_t nNum) {
    std::vector<float> arrNumbers(nNum);
    for (float& fNumber : arrNumbers) fNumber = static_cast<float>(static_cast<int>(random())) / 65536.0F;
    return arrNumbers;
  };
  for (int nRound = 0; nRound < 300; ++nRound) {
    QXVertexDataPackage package;
    auto const dim = [&](unsigned int nLeast) { return static_cast<unsigned short>(nLeast + draw(5 - nLeast)); };
    package.m_nOptions = static_cast<unsigned int>(random());
    unsigned short const nVertexDim = dim(1);
    unsigned short const nNormalDim = dim(1);
    unsigned short const nStride = dim(0);
    SetPositions(package, nVertexDim, numbers(std::size_t{draw(300)} * nVertexDim), nStride);
    if (draw(2)) SetNormals(package, nNormalDim, numbers(std::size_t{draw(300)} * nNormalDim), nStride);
    if (draw(2)) {
      std::vector<unsigned int> arrColors(draw(300));
      for (unsigned int& nColor : arrColors) nColor = static_cast<unsigned int>(random());
      SetColors(package, arrColors, nStride);
    }
    unsigned int const nUnits = draw(9);
    for (unsigned int unit = 0; unit < nUnits; ++unit) {
      unsigned short const nDim = dim(1);
      SetUnit(package, unit, nDim, numbers((std::size_t{draw(300)} + 1) * nDim), nStride);
    }
    for (unsigned char const bWide : Layouts) {
      QXBytes const bytes = SavedPackage(package, bWide);
      QXVertexDataPackage read;
      ASSERT_TRUE(LoadAll(read, bytes, bWide)) << nRound;
      ASSERT_EQ(SavedPackage(read, bWide), bytes) << nRound;
      ASSERT_EQ(SavedPackage(read, 0), SavedPackage(package, 0)) << nRound;
    }
    EXPECT_EQ(static_cast<std::size_t>(GetVertexPackageSize(package)), SavedPackage(package, 0).size() + 4) << nRound;
  }
}

}  // namespace
