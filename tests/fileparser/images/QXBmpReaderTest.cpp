#include "QXTestImages.h"

#include <array>

namespace {

using namespace qxtest;

// A channel that was cut to a few bits.
int Cut(int nValue, int nBits) {
  return Rounded(nValue >> (8 - nBits), (1 << nBits) - 1);
}

TEST(QXBmpReader, PalettesBecomeColour) {
  for (int nBits : {1, 2, 4, 8}) {
    std::string const strName = "bits" + std::to_string(nBits);
    SCOPED_TRACE(strName);
    ExpectPattern(ReadFile(strName + ".bmp").get(), 24, PatternOf("palette", nBits));
    if (nBits != 2) ExpectPattern(ReadFile(strName + "-core.bmp").get(), 24, PatternOf("palette", nBits));
  }
}

TEST(QXBmpReader, RowsMayStandTopDown) {
  ExpectPattern(ReadFile("bits8-top-down.bmp").get(), 24, PatternOf("palette", 8));
  ExpectPattern(ReadFile("bits24-top-down.bmp").get(), 24, PatternOf("rgb", 8));
}

TEST(QXBmpReader, AnIndexBeyondThePaletteIsBlack) {
  ExpectPattern(ReadFile("bits8-short-palette.bmp").get(), 24, [](int x, int y) {
    int const nIndex = Index(x, y, 200);
    return nIndex < 16 ? Palette(nIndex) : Bgra{0, 0, 0, 255};
  });
}

TEST(QXBmpReader, WholePixelsAreColour) {
  ExpectPattern(ReadFile("bits24.bmp").get(), 24, PatternOf("rgb", 8));
  ExpectPattern(ReadFile("bits24-core.bmp").get(), 24, PatternOf("rgb", 8));
  ExpectPattern(
      ReadFile("bits16.bmp").get(), 24,
      [](int x, int y) {
        return Bgra{Cut(Blue(x, y), 5), Cut(Green(x, y), 5), Cut(Red(x, y), 5), 255};
      },
      1);
  ExpectPattern(
      ReadFile("bits16-565.bmp").get(), 24,
      [](int x, int y) {
        return Bgra{Cut(Blue(x, y), 5), Cut(Green(x, y), 6), Cut(Red(x, y), 5), 255};
      },
      1);
}

TEST(QXBmpReader, AlphaIsReadWhereThereIsAny) {
  ExpectPattern(ReadFile("bits32-alpha.bmp").get(), 32, PatternOf("rgba", 8));
  // Without any the fourth byte says nothing, and the picture is not invisible.
  ExpectPattern(ReadFile("bits32.bmp").get(), 32, PatternOf("rgb", 8));
}

// A palette of four grey steps in a picture of 5 x 3.
Bytes Packed(unsigned char nBits, Bytes const& arrRuns) {
  Bytes arrBytes(54 + 16, 0);
  auto const Put = [&](std::size_t nPlace, unsigned int nValue) {
    arrBytes[nPlace] = static_cast<unsigned char>(nValue);
  };
  Put(0, 'B');
  Put(1, 'M');
  Put(10, 70);
  Put(14, 40);
  Put(18, 5);
  Put(22, 3);
  Put(26, 1);
  Put(28, nBits);
  Put(30, nBits == 8 ? 1 : 2);
  Put(46, 4);
  for (unsigned int i = 0; i < 4; ++i) {
    for (unsigned int c = 0; c < 3; ++c) Put(54 + i * 4 + c, i * 80 + c);
  }
  arrBytes.insert(arrBytes.end(), arrRuns.begin(), arrRuns.end());
  return arrBytes;
}

// Rows from the top, a digit a pixel.
void ExpectPacked(unsigned char nBits, Bytes const& arrRuns, std::array<char const*, 3> const& arrRows) {
  ExpectPicture(ReadBytes(TypeOf("a.bmp"), Packed(nBits, arrRuns)).get(), 5, 3, 24, [&](int x, int y) {
    int const nGrey = (arrRows[static_cast<std::size_t>(y)][x] - '0') * 80;
    return Bgra{nGrey, nGrey + 1, nGrey + 2, 255};
  });
}

TEST(QXBmpReader, RunsAreUnpackedFromBelow) {
  // A run; literals in pairs of bytes, then a run; an end of row that the last one need not have.
  ExpectPacked(
      8, {5, 1, 0, 0, 0, 3, 1, 2, 3, 0, 2, 0, 0, 0, 0, 5, 3, 2, 1, 0, 1, 0, 0, 1}, {"32101", "12300", "11111"});
  ExpectPacked(
      4, {5, 0x12, 0, 0, 0, 5, 0x12, 0x30, 0x30, 0, 0, 0, 2, 0x33, 3, 0x21, 0, 1}, {"33212", "12303", "12121"});
}

TEST(QXBmpReader, PixelsThatRunsLeaveOutHaveTheFirstColour) {
  ExpectPacked(8, {1, 1, 0, 0, 0, 2, 2, 1, 3, 2, 0, 1}, {"00222", "00000", "10000"});
  ExpectPacked(8, {0, 1}, {"00000", "00000", "00000"});
}

TEST(QXBmpReader, WhatRunsPutBeyondTheirRowIsLeftOut) {
  ExpectPacked(
      8, {8, 1, 0, 0, 3, 2, 0, 5, 3, 3, 3, 3, 3, 0, 0, 0, 0, 2, 9, 0, 2, 1, 0, 1}, {"00000", "22233", "11111"});
}

TEST(QXBmpReader, RunsAboveThePictureOrWithoutAnEndAreRefused) {
  for (Bytes const& arrRuns :
      {Bytes{0, 2, 0, 4, 0, 1}, Bytes{0, 2, 0, 3, 1, 1, 0, 1}, Bytes{0, 2, 0, 3, 0, 3, 1, 1, 1, 0, 0, 1},
          Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, Bytes{5, 1}, Bytes{5, 1, 0}, Bytes{0, 4, 1}, Bytes{0, 2, 1}}) {
    EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), Packed(8, arrRuns)), nullptr) << arrRuns.size();
  }
  // Runs of one depth in the other, and runs that the picture is too large for.
  Bytes arrBytes = Packed(8, {0, 1});
  arrBytes[28] = 4;
  EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), arrBytes), nullptr);
  arrBytes = Packed(8, {0, 1});
  arrBytes[19] = arrBytes[23] = 0x40;
  EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), arrBytes), nullptr);
}

// Puts a header of another length over the same picture; what it has more is 0.
Bytes WithHeader(std::string const& strName, unsigned int nHeaderBytes) {
  Bytes arrBytes = FileBytes(strName);
  std::size_t const nOld = arrBytes[14];
  if (nHeaderBytes > nOld)
    arrBytes.insert(arrBytes.begin() + 14 + static_cast<std::ptrdiff_t>(nOld), nHeaderBytes - nOld, 0);
  if (nHeaderBytes < nOld) {
    arrBytes.erase(arrBytes.begin() + 14 + static_cast<std::ptrdiff_t>(nHeaderBytes),
        arrBytes.begin() + 14 + static_cast<std::ptrdiff_t>(nOld));
  }
  unsigned int const nStart = arrBytes[10] + arrBytes[11] * 256u + nHeaderBytes - static_cast<unsigned int>(nOld);
  arrBytes[10] = static_cast<unsigned char>(nStart);
  arrBytes[11] = static_cast<unsigned char>(nStart >> 8);
  arrBytes[14] = static_cast<unsigned char>(nHeaderBytes);
  return arrBytes;
}

TEST(QXBmpReader, HeadersOfEveryAgeAreKnown) {
  for (unsigned int nHeaderBytes : {16u, 40u, 52u, 56u, 64u, 108u, 124u}) {
    SCOPED_TRACE(nHeaderBytes);
    int const nType = TypeOf("a.bmp");
    ExpectPattern(ReadBytes(nType, WithHeader("bits24.bmp", nHeaderBytes)).get(), 24, PatternOf("rgb", 8));
    ExpectPattern(ReadBytes(nType, WithHeader("bits4.bmp", nHeaderBytes)).get(), 24, PatternOf("palette", 4));
  }
}

// The bytes of 32 bits as other fields: ten bits of each colour, and red and blue in each other's place.
TEST(QXBmpReader, FieldsMayStandAnywhereAndHaveAnyWidth) {
  Bytes arrBytes = WithHeader("bits32-alpha.bmp", 124);
  auto const SetMask = [&](std::size_t nField, unsigned int nMask) {
    for (std::size_t i = 0; i < 4; ++i) arrBytes[54 + nField * 4 + i] = static_cast<unsigned char>(nMask >> 8 * i);
  };
  SetMask(0, 0xFF);
  SetMask(2, 0xFF0000);
  ExpectPattern(ReadBytes(TypeOf("a.bmp"), arrBytes).get(), 32, [](int x, int y) {
    return Bgra{Red(x, y), Green(x, y), Blue(x, y), Alpha(x, y)};
  });
  SetMask(0, 0x3FF00000);
  SetMask(1, 0xFFC00);
  SetMask(2, 0x3FF);
  SetMask(3, 0);
  ExpectPattern(ReadBytes(TypeOf("a.bmp"), arrBytes).get(), 24, [](int x, int y) {
    unsigned int const nPixel = static_cast<unsigned int>(Blue(x, y)) | static_cast<unsigned int>(Green(x, y)) << 8 |
                                static_cast<unsigned int>(Red(x, y)) << 16 |
                                static_cast<unsigned int>(Alpha(x, y)) << 24;
    auto const Part = [&](unsigned int nShift) { return Rounded(static_cast<int>(nPixel >> nShift & 1023), 1023); };
    return Bgra{Part(0), Part(10), Part(20), 255};
  });
  // A field with a hole is none.
  SetMask(2, 0x2FF);
  EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), arrBytes), nullptr);
}

TEST(QXBmpReader, FieldsMayFollowTheHeader) {
  Bytes arrBytes = WithHeader("bits32-alpha.bmp", 56);
  arrBytes[14] = 40;
  ExpectPattern(ReadBytes(TypeOf("a.bmp"), arrBytes).get(), 24, PatternOf("rgb", 8));
  arrBytes[30] = 6;  // the kind that has alpha among them
  ExpectPattern(ReadBytes(TypeOf("a.bmp"), arrBytes).get(), 32, PatternOf("rgba", 8));
}

TEST(QXBmpReader, FieldsBesideAPaletteSayNothing) {
  Bytes arrBytes = Packed(8, {5, 1, 0, 0, 5, 2, 0, 0, 5, 3, 0, 1});
  arrBytes.insert(arrBytes.begin() + 54, 84, static_cast<unsigned char>(0xFF));
  arrBytes[10] = 154;
  arrBytes[14] = 124;
  ExpectPicture(ReadBytes(TypeOf("a.bmp"), arrBytes).get(), 5, 3, 24, [](int, int y) {
    int const nGrey = (3 - y) * 80;
    return Bgra{nGrey, nGrey + 1, nGrey + 2, 255};
  });
}

TEST(QXBmpReader, CodingsThatAreNotKnownAreRefused) {
  for (int const nCompression : {1, 2, 4, 5, 7, 11}) {
    Bytes arrBytes = FileBytes("bits24.bmp");
    arrBytes[30] = static_cast<unsigned char>(nCompression);
    EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), arrBytes), nullptr) << nCompression;
  }
  // In the header of OS/2 this number is no kind of fields.
  Bytes arrBytes = WithHeader("bits32-alpha.bmp", 64);
  EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), arrBytes), nullptr);
}

TEST(QXBmpReader, TheHeightThatHasNoOppositeIsRefused) {
  Bytes arrBytes = FileBytes("bits24.bmp");
  std::fill_n(arrBytes.begin() + 22, 3, static_cast<unsigned char>(0));
  arrBytes[25] = 0x80;
  EXPECT_EQ(ReadBytes(TypeOf("a.bmp"), arrBytes), nullptr);
}

}  // namespace
