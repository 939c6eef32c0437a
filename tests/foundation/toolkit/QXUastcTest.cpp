#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUastc.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUastcTables.h>

#include "QXBitWriter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace QXC::detail;

// ---- The slow reference: bit by bit, by the tables and procedures of the texts as they stand there. It shares no
// ---- table and no function with the decoder.

using QXBlock = std::array<unsigned char, 16>;
using QXPixels = std::array<unsigned char, 64>;

struct QXRefMode {
  char const* m_szCode;  ///< in the order of the bits in the block
  unsigned int m_nHints;
  unsigned int m_nSubsets;
  bool m_bTwoPlanes;
  unsigned int m_nComponents;
  unsigned int m_nLevels;  ///< of an endpoint value
  unsigned int m_nWeightBits;
};

QXRefMode const g_RefModes[19] = {{"1000", 15, 1, false, 3, 192, 4}, {"101011", 15, 1, false, 3, 256, 2},
    {"10111", 15, 2, false, 3, 16, 3}, {"11000", 15, 3, false, 3, 12, 2}, {"11001", 15, 2, false, 3, 40, 2},
    {"11010", 15, 1, false, 3, 256, 3}, {"11011", 15, 1, true, 3, 160, 2}, {"11100", 15, 2, false, 3, 40, 2},
    {"11101", 0, 1, false, 4, 256, 0}, {"11110", 23, 2, false, 4, 16, 2}, {"010", 17, 1, false, 4, 48, 4},
    {"00", 17, 1, true, 4, 48, 2}, {"011", 17, 1, false, 4, 192, 3}, {"11111", 23, 1, true, 4, 256, 1},
    {"10110", 23, 1, false, 4, 256, 2}, {"1010000", 23, 1, false, 2, 256, 4}, {"101010", 23, 2, false, 2, 256, 2},
    {"101001", 23, 1, true, 2, 256, 2}, {"1001", 15, 1, false, 3, 32, 5}};

unsigned int RefSubset(unsigned int nSeed, unsigned int x, unsigned int y, unsigned int nSubsets) {
  x <<= 1;
  y <<= 1;
  nSeed += (nSubsets - 1) * 1024;
  std::uint32_t r = nSeed;
  r ^= r >> 15;
  r -= r << 17;
  r += r << 7;
  r += r << 4;
  r ^= r >> 5;
  r += r << 16;
  r ^= r >> 7;
  r ^= r >> 3;
  r ^= r << 6;
  r ^= r >> 17;
  unsigned int s[6];
  for (unsigned int i = 0; i < 6; ++i) s[i] = (r >> (4 * i) & 15) * (r >> (4 * i) & 15);
  unsigned int sh1;
  unsigned int sh2;
  if (nSeed & 1) {
    sh1 = nSeed & 2 ? 4 : 5;
    sh2 = nSubsets == 3 ? 6 : 5;
  } else {
    sh1 = nSubsets == 3 ? 6 : 5;
    sh2 = nSeed & 2 ? 4 : 5;
  }
  unsigned int const a = ((s[0] >> sh1) * x + (s[1] >> sh2) * y + (r >> 14)) & 0x3F;
  unsigned int const b = ((s[2] >> sh1) * x + (s[3] >> sh2) * y + (r >> 10)) & 0x3F;
  unsigned int const c = nSubsets < 3 ? 0 : ((s[4] >> sh1) * x + (s[5] >> sh2) * y + (r >> 6)) & 0x3F;
  if (a >= b && a >= c) return 0;
  return b >= c ? 1 : 2;
}

/// A value of a bit pattern like "b000b0bb0": letters are the bits of the value, a the lowest.
unsigned int RefPattern(std::string const& pattern, unsigned int nBits) {
  unsigned int nValue = 0;
  for (char const c : pattern) nValue = nValue << 1 | (c == '0' ? 0 : nBits >> (c - 'a') & 1);
  return nValue;
}

unsigned int RefEndpoint(unsigned int nLevels, unsigned int nBits, unsigned int nDigit) {
  struct QXRow {
    unsigned int m_nLevels;
    char const* m_szOffset;
    unsigned int m_nFactor;
  };
  QXRow const rows[] = {{12, "b000b0bb0", 93}, {40, "cb0000cbc", 26}, {48, "dcb000dcb", 22}, {160, "edcb0000e", 6},
      {192, "fedcb000f", 5}};
  for (QXRow const& row : rows) {
    if (row.m_nLevels != nLevels) continue;
    unsigned int const a = RefPattern("aaaaaaaaa", nBits);
    unsigned int n = nDigit * row.m_nFactor + RefPattern(row.m_szOffset, nBits);
    n ^= a;
    return (a & 0x80) | n >> 2;
  }
  if (nLevels == 16) return nBits * 17;
  if (nLevels == 32) return nBits << 3 | nBits >> 2;
  return nBits;
}

unsigned int RefWeight(unsigned int nBits, unsigned int nValue) {
  unsigned int const one[] = {0, 64};
  unsigned int const two[] = {0, 21, 43, 64};
  unsigned int const three[] = {0, 9, 18, 27, 37, 46, 55, 64};
  unsigned int const four[] = {0, 4, 8, 12, 17, 21, 25, 29, 35, 39, 43, 47, 52, 56, 60, 64};
  switch (nBits) {
  case 1: return one[nValue];
  case 2: return two[nValue];
  case 3: return three[nValue];
  case 4: return four[nValue];
  default: return nValue < 16 ? nValue * 2 : nValue * 2 + 2;
  }
}

/// All endpoint values: first the digits, in groups, then the lower bits.
std::vector<unsigned int> RefEndpoints(QXSlowReader& reader, QXRefMode const& mode) {
  unsigned int const nCount = 2 * mode.m_nComponents * mode.m_nSubsets;
  unsigned int const nBase = mode.m_nLevels % 3 == 0 ? 3 : mode.m_nLevels % 5 == 0 ? 5 : 1;
  unsigned int nBits = 0;
  while ((nBase << nBits) < mode.m_nLevels) ++nBits;
  std::vector<unsigned int> digits(nCount, 0);
  unsigned int const nGroup = nBase == 3 ? 5 : 3;
  for (unsigned int i = 0; nBase != 1 && i < nCount; i += nGroup) {
    unsigned int const nDigits = std::min(nGroup, nCount - i);
    unsigned int nCombinations = 1;
    for (unsigned int k = 0; k < nDigits; ++k) nCombinations *= nBase;
    unsigned int nGroupBits = 0;
    while ((1u << nGroupBits) < nCombinations) ++nGroupBits;
    unsigned int nPacked = reader.Read(nGroupBits);
    for (unsigned int k = 0; k < nDigits; ++k, nPacked /= nBase) digits[i + k] = nPacked % nBase;
  }
  std::vector<unsigned int> values;
  for (unsigned int i = 0; i < nCount; ++i)
    values.push_back(RefEndpoint(mode.m_nLevels, reader.Read(nBits), digits[i]));
  return values;
}

bool RefError(QXPixels& pixels) {
  for (unsigned int i = 0; i < 64; ++i) pixels[i] = i % 4 == 1 ? 0 : 255;
  return false;
}

/// The seed of a pattern, or -1.
int RefSeed(unsigned int nMode, unsigned int nPattern) {
  int const two[] = {28, 20, 16, 29, 91, 9, 107, 72, 149, 204, 50, 114, 496, 17, 78, 39, 252, 828, 43, 156, 116, 210,
      476, 273, 684, 359, 246, 195, 694, 524};
  int const three[] = {260, 74, 32, 156, 183, 15, 745, 0, 335, 902, 254};
  int const merged[] = {36, 48, 61, 137, 161, 183, 226, 281, 302, 307, 479, 495, 593, 594, 605, 799, 812, 988, 993};
  if (nMode == 3) return nPattern < std::size(three) ? three[nPattern] : -1;
  if (nMode == 7) return nPattern < std::size(merged) ? merged[nPattern] : -1;
  return nPattern < std::size(two) ? two[nPattern] : -1;
}

bool RefDecode(QXBlock const& block, QXPixels& pixels) {
  QXSlowReader codeReader(block.data(), 16);
  std::string code;
  unsigned int nMode = 0;
  for (; nMode < 19; ++nMode) {
    std::string const want = g_RefModes[nMode].m_szCode;
    while (code.size() < want.size()) code += codeReader.Read(1) != 0 ? '1' : '0';
    if (code.compare(0, want.size(), want) == 0) break;
  }
  if (nMode == 19) return RefError(pixels);
  QXRefMode const& mode = g_RefModes[nMode];
  QXSlowReader reader(block.data(), 16);
  reader.Read(static_cast<unsigned int>(std::string(mode.m_szCode).size()));
  if (nMode == 8) {
    unsigned char color[4];
    for (unsigned char& nChannel : color) nChannel = static_cast<unsigned char>(reader.Read(8));
    for (unsigned int i = 0; i < 64; ++i) pixels[i] = color[i % 4];
    return true;
  }
  reader.Read(mode.m_nHints);
  int nSeed = 0;
  if (mode.m_nSubsets > 1) nSeed = RefSeed(nMode, reader.Read(nMode == 3 ? 4 : 5));
  if (nSeed < 0) return RefError(pixels);
  unsigned int nSecondPlane = 4;
  if (mode.m_bTwoPlanes) nSecondPlane = nMode == 17 ? 3 : reader.Read(2);
  std::vector<unsigned int> const values = RefEndpoints(reader, mode);
  bool seen[3] = {};
  for (unsigned int i = 0; i < 16; ++i) {
    unsigned int const nSubset =
        mode.m_nSubsets == 1 ? 0 : RefSubset(static_cast<unsigned int>(nSeed), i % 4, i / 4, mode.m_nSubsets);
    unsigned int const nShort = seen[nSubset] ? 0 : 1;
    seen[nSubset] = true;
    unsigned int weights[2];
    weights[0] = weights[1] = RefWeight(mode.m_nWeightBits, reader.Read(mode.m_nWeightBits - nShort));
    if (mode.m_bTwoPlanes) weights[1] = RefWeight(mode.m_nWeightBits, reader.Read(mode.m_nWeightBits - nShort));
    for (unsigned int nChannel = 0; nChannel < 4; ++nChannel) {
      unsigned int ends[2] = {255, 255};
      for (unsigned int nEnd = 0; nEnd < 2; ++nEnd) {
        unsigned int nValue = nChannel * 2;
        if (mode.m_nComponents == 2) nValue = nChannel == 3 ? 2 : 0;
        if (mode.m_nComponents == 3 && nChannel == 3) continue;
        ends[nEnd] = values[nSubset * 2 * mode.m_nComponents + nValue + nEnd];
      }
      unsigned int const w = weights[nChannel == nSecondPlane ? 1 : 0];
      pixels[i * 4 + nChannel] =
          static_cast<unsigned char>((ends[0] * 257 * (64 - w) + ends[1] * 257 * w + 32) / 64 / 256);
    }
  }
  return true;
}

// ---- Tests

void SetCode(QXBlock& block, char const* szCode) {
  for (unsigned int i = 0; szCode[i] != 0; ++i) {
    block[0] = static_cast<unsigned char>((block[0] & ~(1u << i)) | (szCode[i] == '1' ? 1u << i : 0u));
  }
}

QXBlock RandomBlock(QXRandom& random) {
  QXBlock block;
  for (unsigned char& nByte : block) nByte = static_cast<unsigned char>(random());
  return block;
}

TEST(QXUastc, RandomBlocksOfEveryModeDecodeAsTheSlowReferenceDoes) {
  unsigned int const nSeed = 1909;
  QXRandom random(nSeed);
  for (unsigned int nMode = 0; nMode < 19; ++nMode) {
    unsigned int nGood = 0;
    for (unsigned int i = 0; i < 4000; ++i) {
      QXBlock block = RandomBlock(random);
      SetCode(block, g_RefModes[nMode].m_szCode);
      QXPixels want;
      QXPixels have;
      bool const bWant = RefDecode(block, want);
      ASSERT_EQ(DecodeUastcBlock(block.data(), have.data()), bWant)
          << "seed " << nSeed << " mode " << nMode << " block " << i;
      ASSERT_EQ(have, want) << "seed " << nSeed << " mode " << nMode << " block " << i;
      if (bWant) ++nGood;
    }
    EXPECT_GT(nGood, 2000u) << nMode;
  }
}

TEST(QXUastc, EveryCodeOfSevenBitsIsTheModeThatTheReferenceFinds) {
  for (unsigned int nCode = 0; nCode < 128; ++nCode) {
    QXBlock block = {};
    block[0] = static_cast<unsigned char>(nCode);
    block[9] = 0x5A;
    QXPixels want;
    QXPixels have;
    EXPECT_EQ(RefDecode(block, want), DecodeUastcBlock(block.data(), have.data())) << nCode;
    EXPECT_EQ(want, have) << nCode;
    EXPECT_EQ(nCode == 0x45, want[0] == 255 && want[1] == 0 && want[2] == 255) << nCode;
  }
}

TEST(QXUastc, ReservedModeIsMagentaAndFails) {
  QXBlock block;
  block.fill(0xFF);
  SetCode(block, "1010001");
  QXPixels pixels;
  EXPECT_FALSE(DecodeUastcBlock(block.data(), pixels.data()));
  for (unsigned int i = 0; i < 64; ++i) EXPECT_EQ(pixels[i], i % 4 == 1 ? 0 : 255);
}

TEST(QXUastc, PatternBeyondTheListIsMagentaAndFails) {
  struct QXCase {
    unsigned int m_nMode;
    unsigned int m_nBits;
    unsigned int m_nPatterns;
  };
  for (QXCase const& row : {QXCase{2, 5, 30}, {3, 4, 11}, {4, 5, 30}, {7, 5, 19}, {9, 5, 30}, {16, 5, 30}}) {
    for (unsigned int nPattern = 0; nPattern < (1u << row.m_nBits); ++nPattern) {
      QXBitWriter writer;
      for (char const* p = g_RefModes[row.m_nMode].m_szCode; *p != 0; ++p) writer.Write(*p == '1' ? 1 : 0, 1);
      writer.Write(0, g_RefModes[row.m_nMode].m_nHints);
      writer.Write(nPattern, row.m_nBits);
      QXBlock block = {};
      std::copy(writer.GetBytes().begin(), writer.GetBytes().end(), block.begin());
      QXPixels pixels;
      EXPECT_EQ(DecodeUastcBlock(block.data(), pixels.data()), nPattern < row.m_nPatterns)
          << row.m_nMode << ' ' << nPattern;
    }
  }
}

TEST(QXUastc, SolidBlockIsOneColour) {
  QXBitWriter writer;
  writer.Write(0x17, 5);
  for (unsigned int const nChannel : {1u, 2u, 253u, 77u}) writer.Write(nChannel, 8);
  QXBlock block;
  block.fill(0xFF);
  std::copy(writer.GetBytes().begin(), writer.GetBytes().begin() + 4, block.begin());
  block[4] = static_cast<unsigned char>(0xE0 | writer.GetBytes()[4]);
  QXPixels pixels;
  ASSERT_TRUE(DecodeUastcBlock(block.data(), pixels.data()));
  unsigned char const color[4] = {1, 2, 253, 77};
  for (unsigned int i = 0; i < 64; ++i) EXPECT_EQ(pixels[i], color[i % 4]);
}

// The first pixel of each later subset as published lists give it, which are not worked out of the seeds.
TEST(QXUastc, PatternsBeginTheirSubsetsWhereTheListsSay) {
  unsigned int const second2[30] = {
      2, 3, 1, 3, 7, 2, 3, 7, 11, 2, 7, 11, 3, 8, 4, 12, 1, 8, 1, 2, 4, 8, 1, 2, 4, 1, 4, 1, 4, 1};
  unsigned int const second2Of3[19] = {4, 2, 2, 7, 8, 1, 3, 1, 2, 1, 8, 2, 1, 7, 12, 2, 9, 2, 4};
  unsigned int const third[11][2] = {
      {8, 10}, {8, 12}, {4, 12}, {4, 8}, {2, 3}, {1, 3}, {1, 2}, {1, 9}, {1, 2}, {4, 8}, {2, 6}};
  for (unsigned int i = 0; i < 30; ++i) EXPECT_EQ(MakeUastcPattern(g_UastcSeeds2[i], 2).m_Anchors[1], second2[i]) << i;
  for (unsigned int i = 0; i < 19; ++i)
    EXPECT_EQ(MakeUastcPattern(g_UastcSeeds2Of3[i], 2).m_Anchors[1], second2Of3[i]) << i;
  for (unsigned int i = 0; i < 11; ++i) {
    EXPECT_EQ(MakeUastcPattern(g_UastcSeeds3[i], 3).m_Anchors[1], third[i][0]) << i;
    EXPECT_EQ(MakeUastcPattern(g_UastcSeeds3[i], 3).m_Anchors[2], third[i][1]) << i;
  }
}

TEST(QXUastc, PatternsLookAsDrawn) {
  struct QXCase {
    unsigned int m_nPattern;
    char const* m_szPicture;
  };
  for (QXCase const& row : {QXCase{0, "..##..##..##..##"}, {4, "#######.###.##.."}, {8, "...........#..##"},
           {13, "########........"}, {16, "#...###.########"}}) {
    QXUastcPattern const pattern = MakeUastcPattern(g_UastcSeeds2[row.m_nPattern], 2);
    for (unsigned int i = 0; i < 16; ++i) {
      EXPECT_EQ(pattern.m_SubsetOf[i], row.m_szPicture[i] == '#' ? 1 : 0) << row.m_nPattern << " pixel " << i;
    }
  }
}

TEST(QXUastc, ImagesOfEverySizeAreTheirBlocksClipped) {
  unsigned int const nSeed = 33;
  QXRandom random(nSeed);
  for (unsigned int nHeight = 1; nHeight <= 9; ++nHeight) {
    for (unsigned int nWidth = 1; nWidth <= 13; ++nWidth) {
      unsigned int const nWide = (nWidth + 3) / 4;
      std::vector<unsigned char> blocks(16 * nWide * ((nHeight + 3) / 4));
      for (unsigned char& nByte : blocks) nByte = static_cast<unsigned char>(random());
      std::vector<unsigned char> pixels(nWidth * nHeight * 4);
      ASSERT_TRUE(DecodeUastcImage(blocks.data(), blocks.size(), nWidth, nHeight, pixels.data()));
      for (unsigned int y = 0; y < nHeight; ++y) {
        for (unsigned int x = 0; x < nWidth; ++x) {
          QXBlock block;
          QXPixels want;
          std::memcpy(block.data(), &blocks[16 * (y / 4 * nWide + x / 4)], 16);
          RefDecode(block, want);
          ASSERT_EQ(0, std::memcmp(&pixels[(y * nWidth + x) * 4], &want[(y % 4 * 4 + x % 4) * 4], 4))
              << "seed " << nSeed << ", " << nWidth << " x " << nHeight << " at " << x << ',' << y;
        }
      }
    }
  }
}

TEST(QXUastc, BlocksWithoutMeaningLeaveTheRestOfThePicture) {
  std::vector<unsigned char> blocks(32, 0);
  blocks[0] = 0x45;
  blocks[16] = 0x17;
  std::vector<unsigned char> pixels(8 * 4 * 4, 9);
  EXPECT_TRUE(DecodeUastcImage(blocks.data(), blocks.size(), 8, 4, pixels.data()));
  EXPECT_EQ(pixels[0], 255);
  EXPECT_EQ(pixels[16], 0);
}

TEST(QXUastc, ImageThatItsBytesCannotFillIsRefusedUntouched) {
  std::vector<unsigned char> const blocks(16 * 6, 0x17);
  std::vector<unsigned char> pixels(9 * 5 * 4, 9);
  for (std::size_t nSize = 0; nSize < blocks.size(); ++nSize) {
    std::vector<unsigned char> const part(blocks.begin(), blocks.begin() + static_cast<std::ptrdiff_t>(nSize));
    ASSERT_FALSE(DecodeUastcImage(part.data(), part.size(), 9, 5, pixels.data())) << nSize;
  }
  EXPECT_EQ(pixels, std::vector<unsigned char>(9 * 5 * 4, 9));
  EXPECT_TRUE(DecodeUastcImage(blocks.data(), blocks.size(), 9, 5, pixels.data()));
}

TEST(QXUastc, EdgesOfZeroAndOfEveryBitAreRefused) {
  unsigned char block[16] = {};
  unsigned char pixels[64] = {};
  EXPECT_FALSE(DecodeUastcImage(block, 16, 0, 4, pixels));
  EXPECT_FALSE(DecodeUastcImage(block, 16, 4, 0, pixels));
  EXPECT_FALSE(DecodeUastcImage(block, 16, 0xFFFFFFFFu, 0xFFFFFFFFu, pixels));
}

}  // namespace
