#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXHuffman.h>

#include "QXBitWriter.h"

#include <gtest/gtest.h>

namespace {

using QXC::detail::QXBitReader;
using QXC::detail::QXHuffman;

/// The head of a table, whose length symbols all have a code: 0 to 10 of four bits, the rest of five.
QXTestCode BeginTable(QXBitWriter& writer, unsigned int nSymbols) {
  std::vector<unsigned char> lengths(21, 5);
  for (std::size_t i = 0; i < 11; ++i) lengths[i] = 4;
  static constexpr unsigned char order[21] = {17, 18, 19, 20, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15, 16};
  writer.Write(nSymbols, 14);
  writer.Write(21, 5);
  for (unsigned char const nPlace : order) writer.Write(lengths[nPlace], 3);
  return QXTestCode(lengths);
}

bool ReadTable(QXBitWriter const& writer) {
  // A block of its own at its true length, so that the address sanitizer sees the end.
  std::vector<unsigned char> const bytes(writer.GetBytes());
  QXBitReader reader(bytes.data(), bytes.size());
  return QXHuffman().Read(reader);
}

TEST(QXBitReader, LowestBitComesFirst) {
  unsigned char const bytes[] = {0xB1, 0x02};
  QXBitReader reader(bytes, 2);
  EXPECT_EQ(reader.Read(1), 1u);
  EXPECT_EQ(reader.Read(3), 0u);
  EXPECT_EQ(reader.Read(8), 0x2Bu);
  EXPECT_FALSE(reader.IsPastEnd());
}

TEST(QXBitReader, EndIsPassedByTheFirstBitBehindIt) {
  for (unsigned int nSize = 0; nSize < 40; ++nSize) {
    std::vector<unsigned char> const bytes(nSize, 0xFF);
    QXBitReader reader(bytes.data(), bytes.size());
    for (unsigned int i = 0; i < nSize * 8; ++i) ASSERT_EQ(reader.Read(1), 1u) << nSize << " bytes, bit " << i;
    ASSERT_FALSE(reader.IsPastEnd()) << nSize;
    ASSERT_EQ(reader.Read(1), 0u);
    ASSERT_TRUE(reader.IsPastEnd()) << nSize;
  }
}

TEST(QXBitReader, EndStaysPassedHoweverMuchIsRead) {
  QXBitReader reader(nullptr, 0);
  for (unsigned int i = 0; i < 300000; ++i) reader.Read(32);
  EXPECT_TRUE(reader.IsPastEnd());
}

TEST(QXBitReader, RandomWidthsGiveWhatTheSlowReaderGives) {
  unsigned int const nSeed = 20240611;
  QXRandom random(nSeed);
  std::vector<unsigned char> bytes(4000);
  for (unsigned char& nByte : bytes) nByte = static_cast<unsigned char>(random());
  QXBitReader reader(bytes.data(), bytes.size());
  QXSlowReader slow(bytes.data(), bytes.size());
  for (std::size_t nTaken = 0; nTaken + 32 < bytes.size() * 8;) {
    unsigned int const nCount = random() % 33;
    ASSERT_EQ(reader.Read(nCount), slow.Read(nCount)) << "seed " << nSeed << " at bit " << nTaken;
    nTaken += nCount;
  }
}

TEST(QXHuffman, RandomTablesDecodeAsTheSlowOnesDo) {
  unsigned int const nSeed = 4711;
  QXRandom random(nSeed);
  unsigned int nLongest = 0;
  for (unsigned int nRound = 0; nRound < 200; ++nRound) {
    unsigned int const nSymbols = nRound == 0 ? 16383 : 2 + random() % 3000;
    unsigned int const nUsed = 2 + random() % (nSymbols - 1);
    QXTestCode const code = MakeRandomCode(random, nSymbols, nUsed, nRound % 2 == 1);
    QXBitWriter writer;
    code.WriteTable(writer, nRound % 3 != 0);
    std::vector<unsigned int> symbols;
    while (symbols.size() < 500) {
      unsigned int const nSymbol = random() % nSymbols;
      if (code.GetLengths()[nSymbol] == 0) continue;
      nLongest = std::max<unsigned int>(nLongest, code.GetLengths()[nSymbol]);
      symbols.push_back(nSymbol);
      code.Write(writer, nSymbol);
    }
    QXBitReader reader(writer.GetBytes().data(), writer.GetBytes().size());
    QXHuffman table;
    ASSERT_TRUE(table.Read(reader)) << "seed " << nSeed << " round " << nRound;
    for (unsigned int const nSymbol : symbols) ASSERT_EQ(table.Decode(reader), nSymbol) << "round " << nRound;
    EXPECT_FALSE(reader.IsPastEnd());
  }
  EXPECT_EQ(nLongest, 16u);
}

TEST(QXHuffman, TableOfNoSymbolsIsKeptAndDecodesNothing) {
  QXBitWriter writer;
  writer.Write(0, 14);
  writer.Write(5, 3);
  QXBitReader reader(writer.GetBytes().data(), writer.GetBytes().size());
  QXHuffman table;
  ASSERT_TRUE(table.Read(reader));
  EXPECT_EQ(table.Decode(reader), QXHuffman::ms_nNoSymbol);
  EXPECT_EQ(reader.Read(3), 5u);
}

TEST(QXHuffman, TableNeverReadDecodesNothing) {
  QXBitReader reader(nullptr, 0);
  EXPECT_EQ(QXHuffman().Decode(reader), QXHuffman::ms_nNoSymbol);
}

TEST(QXHuffman, SingleCodeLeavesTheOtherBitWithoutMeaning) {
  unsigned char const lengths[] = {0, 0, 1, 0};
  QXHuffman table;
  ASSERT_TRUE(table.Build(lengths, 4));
  unsigned char const bytes[] = {0x02};
  QXBitReader reader(bytes, 1);
  EXPECT_EQ(table.Decode(reader), 2u);
  EXPECT_EQ(table.Decode(reader), QXHuffman::ms_nNoSymbol);
}

TEST(QXHuffman, LengthsThatAreNoPrefixCodeAreRefused) {
  struct QXCase {
    char const* m_szName;
    std::vector<unsigned char> m_arrLengths;
    bool m_bGood;
  };
  QXCase const cases[] = {
      {"full", {1, 2, 2}, true},
      {"too many codes", {1, 1, 1}, false},
      {"too many long codes", {1, 2, 2, 16}, false},
      {"room left", {2, 2, 2}, false},
      {"room of the longest code left", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}, false},
      {"full to the longest code", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 16}, true},
      {"length above 16", {1, 17}, false},
      {"no codes", {0, 0}, true},
  };
  for (QXCase const& row : cases) {
    QXHuffman table;
    EXPECT_EQ(table.Build(row.m_arrLengths.data(), static_cast<unsigned int>(row.m_arrLengths.size())), row.m_bGood)
        << row.m_szName;
  }
}

TEST(QXHuffman, RefusedTableDecodesNothingThatItHadBefore) {
  unsigned char const good[] = {1, 1};
  unsigned char const bad[] = {1, 1, 1};
  QXHuffman table;
  ASSERT_TRUE(table.Build(good, 2));
  ASSERT_FALSE(table.Build(bad, 3));
  QXBitReader reader(nullptr, 0);
  EXPECT_EQ(table.Decode(reader), QXHuffman::ms_nNoSymbol);
}

TEST(QXHuffman, CountOfLengthCodesIsOneToTwentyOne) {
  for (unsigned int const nStored : {0u, 22u, 31u}) {
    QXBitWriter writer;
    writer.Write(4, 14);
    writer.Write(nStored, 5);
    for (unsigned int i = 0; i < 40; ++i) writer.Write(i < 2 ? 1 : 0, 3);
    EXPECT_FALSE(ReadTable(writer)) << nStored;
  }
}

TEST(QXHuffman, RunsStayInsideTheTableAndRepeatWhatCanBeRepeated) {
  struct QXCase {
    char const* m_szName;
    unsigned int m_nSymbols;
    std::vector<std::pair<unsigned int, unsigned int>> m_arrSymbols;  ///< with the bits behind a run
    bool m_bGood;
  };
  QXCase const cases[] = {
      {"zeros to the end", 5, {{1, 0}, {1, 0}, {17, 0}}, true},
      {"zeros beyond the end", 5, {{1, 0}, {1, 0}, {17, 1}}, false},
      {"many zeros to the end", 13, {{1, 0}, {1, 0}, {18, 0}}, true},
      {"many zeros beyond the end", 13, {{1, 0}, {1, 0}, {18, 1}}, false},
      {"a length repeated", 4, {{2, 0}, {19, 0}}, true},
      {"a length repeated too often", 4, {{2, 0}, {19, 1}}, false},
      {"a length repeated long", 8, {{3, 0}, {20, 0}}, true},
      {"a length repeated long beyond the end", 8, {{3, 0}, {20, 1}}, false},
      {"nothing to repeat", 3, {{19, 0}}, false},
      {"nothing to repeat long", 7, {{20, 0}}, false},
      {"zero repeated", 6, {{1, 0}, {1, 0}, {0, 0}, {19, 0}}, false},
  };
  static constexpr unsigned int bitsOf[] = {3, 7, 2, 7};
  for (QXCase const& row : cases) {
    QXBitWriter writer;
    QXTestCode const code = BeginTable(writer, row.m_nSymbols);
    for (auto const& [nSymbol, nRun] : row.m_arrSymbols) {
      code.Write(writer, nSymbol);
      if (nSymbol >= 17) writer.Write(nRun, bitsOf[nSymbol - 17]);
    }
    EXPECT_EQ(ReadTable(writer), row.m_bGood) << row.m_szName;
  }
}

TEST(QXHuffman, TableCutAnywhereIsRefused) {
  QXRandom random(7);
  QXBitWriter writer;
  MakeRandomCode(random, 300, 200, true).WriteTable(writer, true);
  for (std::size_t nSize = 0; nSize < writer.GetBytes().size(); ++nSize) {
    std::vector<unsigned char> const bytes(
        writer.GetBytes().begin(), writer.GetBytes().begin() + static_cast<std::ptrdiff_t>(nSize));
    QXBitReader reader(bytes.data(), bytes.size());
    QXHuffman table;
    ASSERT_FALSE(table.Read(reader)) << nSize << " of " << writer.GetBytes().size();
  }
}

}  // namespace
