#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBasisLz.h>

#include "QXBitWriter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <optional>
#include <random>
#include <stdexcept>
#include <vector>

namespace {

using QXC::detail::QXBasisLz;
using QXBytes = std::vector<unsigned char>;

void Put(QXBytes& bytes, std::uint64_t nValue, unsigned int nBytes) {
  for (unsigned int i = 0; i < nBytes; ++i) bytes.push_back(static_cast<unsigned char>(nValue >> (8 * i)));
}

QXBytes Part(QXBytes const& bytes, std::size_t nFirst, std::size_t nSize) {
  auto const first = bytes.begin() + static_cast<std::ptrdiff_t>(nFirst);
  return QXBytes(first, first + static_cast<std::ptrdiff_t>(nSize));
}

/// A file in the making: sections and slices are public, so that tests can spoil them.
struct QXTestFile {
  unsigned int m_nEndpoints = 0;
  unsigned int m_nSelectors = 0;
  std::uint32_t m_nExtended = 0;
  std::uint32_t m_nFlags = 0;
  QXBytes m_arrEndpointData;
  QXBytes m_arrSelectorData;
  QXBytes m_arrTableData;
  QXBytes m_arrRgb;
  QXBytes m_arrAlpha;  ///< empty: no second slice
  unsigned int m_nWidth = 0;
  unsigned int m_nHeight = 0;

  QXBytes GetGlobal() const {
    QXBytes bytes;
    Put(bytes, m_nEndpoints, 2);
    Put(bytes, m_nSelectors, 2);
    for (QXBytes const* pData : {&m_arrEndpointData, &m_arrSelectorData, &m_arrTableData}) Put(bytes, pData->size(), 4);
    Put(bytes, m_nExtended, 4);
    Put(bytes, m_nFlags, 4);
    Put(bytes, 0, 4);
    Put(bytes, m_arrRgb.size(), 4);
    Put(bytes, m_arrAlpha.empty() ? 0 : m_arrRgb.size(), 4);
    Put(bytes, m_arrAlpha.size(), 4);
    for (QXBytes const* pData : {&m_arrEndpointData, &m_arrSelectorData, &m_arrTableData}) {
      bytes.insert(bytes.end(), pData->begin(), pData->end());
    }
    return bytes;
  }
  QXBytes GetLevel() const {
    QXBytes bytes(m_arrRgb);
    bytes.insert(bytes.end(), m_arrAlpha.begin(), m_arrAlpha.end());
    return bytes;
  }
};

// ---- The slow reference: one bit at a time, whole picture arrays, an exception for whatever must not be.

void Require(bool bGood) {
  if (!bGood) throw std::runtime_error("no proper file");
}

QXTestCode RefReadCode(QXSlowReader& reader) {
  static constexpr unsigned char order[21] = {17, 18, 19, 20, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15, 16};
  auto const check = [](std::vector<unsigned char> const& lengths) {
    std::uint64_t nSpace = 0;
    unsigned int nUsed = 0;
    for (unsigned char const nLength : lengths) {
      if (nLength == 0) continue;
      nSpace += 65536u >> nLength;
      ++nUsed;
    }
    Require(nUsed < 2 || nSpace == 65536);
    return QXTestCode(lengths);
  };
  std::vector<unsigned char> lengths(reader.Read(14));
  if (lengths.empty()) return QXTestCode(lengths);
  std::vector<unsigned char> lengthLengths(21, 0);
  unsigned int const nStored = reader.Read(5);
  Require(nStored >= 1 && nStored <= 21);
  for (unsigned int i = 0; i < nStored; ++i) lengthLengths[order[i]] = static_cast<unsigned char>(reader.Read(3));
  QXTestCode const lengthCode = check(lengthLengths);
  for (std::size_t i = 0; i < lengths.size();) {
    unsigned int const nSymbol = reader.Decode(lengthCode);
    unsigned int nCount = 1;
    unsigned char nLength = static_cast<unsigned char>(nSymbol);
    if (nSymbol == 17) {
      nCount = 3 + reader.Read(3);
      nLength = 0;
    }
    if (nSymbol == 18) {
      nCount = 11 + reader.Read(7);
      nLength = 0;
    }
    if (nSymbol >= 19) {
      nCount = nSymbol == 19 ? 3 + reader.Read(2) : 7 + reader.Read(7);
      Require(i > 0 && lengths[i - 1] != 0);
      nLength = lengths[i - 1];
    }
    Require(i + nCount <= lengths.size());
    for (; nCount > 0; --nCount) lengths[i++] = nLength;
  }
  return check(lengths);
}

std::uint32_t RefVlc(QXSlowReader& reader, unsigned int nBits) {
  std::uint64_t nValue = 0;
  for (unsigned int nShift = 0;; nShift += nBits) {
    Require(nShift < 32);
    std::uint32_t const nChunk = reader.Read(nBits + 1);
    nValue |= std::uint64_t(nChunk & ((1u << nBits) - 1)) << nShift;
    if ((nChunk & (1u << nBits)) == 0) break;
  }
  Require(nValue <= 0xFFFFFFFFu);
  return static_cast<std::uint32_t>(nValue);
}

struct QXRefEndpoint {
  unsigned int m_Color[3];
  unsigned int m_nTable;
};
struct QXRefTables {
  std::vector<QXRefEndpoint> m_arrEndpoints;
  std::vector<std::array<unsigned int, 16>> m_arrSelectors;
  std::vector<QXTestCode> m_arrCodes;
  unsigned int m_nHistory = 0;
};

QXRefTables RefTables(QXTestFile const& file) {
  Require((file.m_nFlags & 2) == 0 && file.m_nExtended == 0 && file.m_nEndpoints > 0 && file.m_nSelectors > 0);
  QXRefTables tables;
  QXSlowReader endpoints(file.m_arrEndpointData.data(), file.m_arrEndpointData.size());
  std::vector<QXTestCode> codes;
  for (unsigned int i = 0; i < 4; ++i) codes.push_back(RefReadCode(endpoints));
  bool const bGrey = endpoints.Read(1) != 0;
  QXRefEndpoint last = {{16, 16, 16}, 0};
  for (unsigned int i = 0; i < file.m_nEndpoints; ++i) {
    last.m_nTable = (last.m_nTable + endpoints.Decode(codes[3])) & 7;
    for (unsigned int k = 0; k < (bGrey ? 1u : 3u); ++k) {
      unsigned int const nRange = last.m_Color[k] <= 9 ? 0 : last.m_Color[k] <= 21 ? 1 : 2;
      last.m_Color[k] = (last.m_Color[k] + endpoints.Decode(codes[nRange])) & 31;
    }
    if (bGrey) last.m_Color[1] = last.m_Color[2] = last.m_Color[0];
    tables.m_arrEndpoints.push_back(last);
  }
  QXSlowReader selectors(file.m_arrSelectorData.data(), file.m_arrSelectorData.size());
  Require(selectors.Read(2) == 0);
  bool const bRaw = selectors.Read(1) != 0;
  QXTestCode const delta = bRaw ? QXTestCode({}) : RefReadCode(selectors);
  unsigned int rows[4] = {};
  for (unsigned int i = 0; i < file.m_nSelectors; ++i) {
    std::array<unsigned int, 16> entry = {};
    for (unsigned int y = 0; y < 4; ++y) {
      if (bRaw || i == 0)
        rows[y] = selectors.Read(8);
      else
        rows[y] ^= selectors.Decode(delta);
      Require(rows[y] < 256);
      for (unsigned int x = 0; x < 4; ++x) entry[y * 4 + x] = rows[y] >> (2 * x) & 3;
    }
    tables.m_arrSelectors.push_back(entry);
  }
  QXSlowReader slice(file.m_arrTableData.data(), file.m_arrTableData.size());
  for (unsigned int i = 0; i < 4; ++i) tables.m_arrCodes.push_back(RefReadCode(slice));
  tables.m_nHistory = slice.Read(13);
  return tables;
}

void RefPaint(QXRefTables const& tables, unsigned int nEndpoint, unsigned int nSelector, unsigned int nLeft,
    unsigned int nTop, QXTestFile const& file, bool bAlpha, QXBytes& pixels) {
  static constexpr int modifiers[8][2] = {{2, 8}, {5, 17}, {9, 29}, {13, 42}, {18, 60}, {24, 80}, {33, 106}, {47, 183}};
  QXRefEndpoint const& endpoint = tables.m_arrEndpoints.at(nEndpoint);
  for (unsigned int i = 0; i < 16; ++i) {
    unsigned int const x = nLeft + i % 4;
    unsigned int const y = nTop + i / 4;
    if (x >= file.m_nWidth || y >= file.m_nHeight) continue;
    unsigned char* const pPixel = &pixels[(std::size_t(y) * file.m_nWidth + x) * 4];
    unsigned int const nValue = tables.m_arrSelectors.at(nSelector)[i];
    int const nModifier =
        nValue < 2 ? -modifiers[endpoint.m_nTable][1 - nValue] : modifiers[endpoint.m_nTable][nValue - 2];
    unsigned char color[4] = {0, 0, 0, 255};
    for (unsigned int k = 0; k < 3; ++k) {
      int const nBase = static_cast<int>(endpoint.m_Color[k] << 3 | endpoint.m_Color[k] >> 2);
      color[k] = static_cast<unsigned char>(std::clamp(nBase + nModifier, 0, 255));
    }
    if (bAlpha)
      pPixel[3] = color[1];
    else
      std::memcpy(pPixel, color, 4);
  }
}

void RefSlice(QXRefTables const& tables, QXTestFile const& file, QXBytes const& bytes, bool bAlpha, QXBytes& pixels) {
  QXSlowReader reader(bytes.data(), bytes.size());
  unsigned int const nWide = (file.m_nWidth + 3) / 4;
  unsigned int const nHigh = (file.m_nHeight + 3) / 4;
  std::vector<unsigned int> endpoints(nWide * nHigh);
  std::vector<unsigned int> groups((nWide + 1) / 2 * ((nHigh + 1) / 2));
  std::vector<unsigned int> history(tables.m_nHistory, 0);
  std::size_t nRover = history.size() / 2;
  std::uint64_t nGroupRun = 0;
  std::uint64_t nSelectorRun = 0;
  unsigned int nLastGroup = 0;
  unsigned int nLast = 0;
  unsigned int const nEndpoints = static_cast<unsigned int>(tables.m_arrEndpoints.size());
  unsigned int const nSelectors = static_cast<unsigned int>(tables.m_arrSelectors.size());
  for (unsigned int y = 0; y < nHigh; ++y) {
    for (unsigned int x = 0; x < nWide; ++x) {
      unsigned int& nGroup = groups[y / 2 * ((nWide + 1) / 2) + x / 2];
      if (x % 2 == 0 && y % 2 == 0) {
        if (nGroupRun > 0) {
          --nGroupRun;
        } else {
          unsigned int const nSymbol = reader.Decode(tables.m_arrCodes[0]);
          Require(nSymbol <= 256);
          if (nSymbol == 256)
            nGroupRun = std::uint64_t(RefVlc(reader, 4)) + 2;
          else
            nLastGroup = nSymbol;
        }
        nGroup = nLastGroup;
      }
      unsigned int const nFrom = nGroup >> (y % 2 * 4 + x % 2 * 2) & 3;
      Require(nFrom == 3 || ((nFrom == 1 || x > 0) && (nFrom == 0 || y > 0)));
      if (nFrom == 1) nLast = endpoints[(y - 1) * nWide + x];
      if (nFrom == 2) nLast = endpoints[(y - 1) * nWide + x - 1];
      if (nFrom == 3) {
        nLast += reader.Decode(tables.m_arrCodes[1]);
        if (nLast >= nEndpoints) nLast -= nEndpoints;
        Require(nLast < nEndpoints);
      }
      endpoints[y * nWide + x] = nLast;

      unsigned int nSymbol = nSelectors;
      if (nSelectorRun > 0) {
        --nSelectorRun;
      } else {
        nSymbol = reader.Decode(tables.m_arrCodes[2]);
        if (nSymbol == nSelectors + tables.m_nHistory) {
          std::uint32_t nRun = reader.Decode(tables.m_arrCodes[3]);
          if (nRun == 63) nRun = RefVlc(reader, 7);
          nSelectorRun = std::uint64_t(nRun) + 2;
          nSymbol = nSelectors;
        }
      }
      unsigned int nSelector = nSymbol;
      if (nSymbol >= nSelectors) {
        unsigned int const nPlace = nSymbol - nSelectors;
        Require(nPlace < history.size());
        nSelector = history[nPlace];
        unsigned int const nBefore = history[nPlace / 2];
        history[nPlace / 2] = nSelector;
        history[nPlace] = nBefore;
      } else if (!history.empty()) {
        history[nRover++] = nSymbol;
        if (nRover == history.size()) nRover = history.size() / 2;
      }
      RefPaint(tables, nLast, nSelector, x * 4, y * 4, file, bAlpha, pixels);
    }
  }
}

/// The pixels, or nothing of a file that must be refused.
std::optional<QXBytes> RefDecode(QXTestFile const& file) {
  try {
    QXRefTables const tables = RefTables(file);
    Require(!file.m_arrRgb.empty());
    QXBytes pixels(std::size_t(file.m_nWidth) * file.m_nHeight * 4);
    RefSlice(tables, file, file.m_arrRgb, false, pixels);
    if (!file.m_arrAlpha.empty()) RefSlice(tables, file, file.m_arrAlpha, true, pixels);
    return pixels;
  } catch (std::runtime_error const&) {
    return std::nullopt;
  }
}

std::optional<QXBytes> Decode(QXTestFile const& file) {
  QXBasisLz decoder;
  QXBytes const global = file.GetGlobal();
  QXBytes const level = file.GetLevel();
  if (!decoder.Init(global.data(), global.size(), 1)) return std::nullopt;
  QXBytes pixels(std::size_t(file.m_nWidth) * file.m_nHeight * 4);
  if (!decoder.DecodeImage(0, level.data(), level.size(), file.m_nWidth, file.m_nHeight, pixels.data()))
    return std::nullopt;
  return pixels;
}

// ---- Making files

/// The codes of a file with all that a slice can say, so that any choice can be written.
struct QXTestCodes {
  QXTestCode m_Prediction;
  QXTestCode m_Delta;
  QXTestCode m_Selector;
  QXTestCode m_Run;
  unsigned int m_nHistory;
};

void WriteVlc(QXBitWriter& writer, std::uint32_t nValue, unsigned int nBits) {
  do {
    std::uint32_t const nChunk = nValue & ((1u << nBits) - 1);
    nValue >>= nBits;
    writer.Write(nChunk | (nValue != 0 ? 1u << nBits : 0u), nBits + 1);
  } while (nValue != 0);
}

/// A random slice that is proper: places are chosen so that nothing is referred to that does not exist.
QXBytes MakeSlice(QXRandom& random, QXTestFile const& file, QXTestCodes const& codes) {
  QXBitWriter writer;
  unsigned int const nWide = (file.m_nWidth + 3) / 4;
  unsigned int const nHigh = (file.m_nHeight + 3) / 4;
  std::vector<unsigned int> below((nWide + 1) / 2);
  unsigned int nGroup = 0;
  unsigned int nLastGroup = 0;
  unsigned int nGroupRun = 0;
  unsigned int nSelectorRun = 0;
  bool bRepeatable = false;  // what needs no neighbour may be repeated anywhere
  for (unsigned int y = 0; y < nHigh; ++y) {
    for (unsigned int x = 0; x < nWide; ++x) {
      if (x % 2 == 0 && y % 2 == 1) nGroup = below[x / 2];
      if (x % 2 == 0 && y % 2 == 0) {
        if (nGroupRun > 0) {
          --nGroupRun;
        } else if (bRepeatable && random() % 3 == 0) {
          nGroupRun = 2 + random() % 40;
          codes.m_Prediction.Write(writer, 256);
          WriteVlc(writer, nGroupRun - 2, 4);
        } else {
          nLastGroup = 0;
          for (unsigned int i = 0; i < 4; ++i) {
            unsigned int nFrom = random() % 4;
            bool const bLeft = x + i % 2 > 0;
            bool const bAbove = y + i / 2 > 0;
            if ((nFrom != 3 && nFrom != 1 && !bLeft) || (nFrom != 3 && nFrom != 0 && !bAbove)) nFrom = 3;
            if (random() % 4 == 0) nFrom = 3;
            nLastGroup |= nFrom << (2 * i);
          }
          if (random() % 3 == 0) nLastGroup = 0xFF;
          bRepeatable = nLastGroup == 0xFF;
          codes.m_Prediction.Write(writer, nLastGroup);
        }
        nGroup = nLastGroup;
        below[x / 2] = nGroup >> 4;
      }
      if ((nGroup >> (x % 2 * 2) & 3) == 3) codes.m_Delta.Write(writer, random() % file.m_nEndpoints);
      if (nSelectorRun > 0) {
        --nSelectorRun;
        continue;
      }
      unsigned int const nChoice = random() % 8;
      if (codes.m_nHistory > 0 && nChoice == 0) {
        codes.m_Selector.Write(writer, file.m_nSelectors + codes.m_nHistory);
        bool const bLong = random() % 4 == 0;
        unsigned int const nRun = bLong ? random() % 300 : random() % 63;
        codes.m_Run.Write(writer, bLong ? 63 : nRun);
        if (bLong) WriteVlc(writer, nRun, 7);
        nSelectorRun = nRun + 2;
      } else if (codes.m_nHistory > 0 && nChoice < 4) {
        codes.m_Selector.Write(writer, file.m_nSelectors + random() % codes.m_nHistory);
      } else {
        codes.m_Selector.Write(writer, random() % file.m_nSelectors);
      }
    }
  }
  return writer.GetBytes();
}

QXTestCodes MakeCodes(QXRandom& random, QXTestFile const& file, unsigned int nHistory) {
  unsigned int const nSymbols = file.m_nSelectors + nHistory + 1;
  bool const bSkewed = random() % 2 == 0;
  return {MakeRandomCode(random, 257, 257, bSkewed),
      MakeRandomCode(random, file.m_nEndpoints, file.m_nEndpoints, bSkewed),
      MakeRandomCode(random, nSymbols, nSymbols, bSkewed), MakeRandomCode(random, 64, 64, bSkewed), nHistory};
}

QXBytes MakeTables(QXTestCodes const& codes) {
  QXBitWriter writer;
  for (QXTestCode const* pCode : {&codes.m_Prediction, &codes.m_Delta, &codes.m_Selector, &codes.m_Run}) {
    pCode->WriteTable(writer, true);
  }
  writer.Write(codes.m_nHistory, 13);
  return writer.GetBytes();
}

QXBytes MakeEndpoints(QXRandom& random, unsigned int nCount, bool bGrey) {
  QXBitWriter writer;
  std::vector<QXTestCode> codes;
  for (unsigned int i = 0; i < 4; ++i) {
    codes.push_back(MakeRandomCode(random, i < 3 ? 32 : 8, i < 3 ? 32 : 8, true));
    codes.back().WriteTable(writer, true);
  }
  writer.Write(bGrey ? 1 : 0, 1);
  unsigned int channels[3] = {16, 16, 16};
  for (unsigned int i = 0; i < nCount; ++i) {
    codes[3].Write(writer, random() % 8);
    for (unsigned int k = 0; k < (bGrey ? 1u : 3u); ++k) {
      unsigned int const nDelta = random() % 32;
      codes[channels[k] < 10 ? 0 : channels[k] < 22 ? 1 : 2].Write(writer, nDelta);
      channels[k] = (channels[k] + nDelta) % 32;
    }
  }
  return writer.GetBytes();
}

QXBytes MakeSelectors(QXRandom& random, unsigned int nCount, bool bRaw) {
  QXBitWriter writer;
  writer.Write(0, 2);
  writer.Write(bRaw ? 1 : 0, 1);
  QXTestCode const code = MakeRandomCode(random, 256, 256, true);
  if (!bRaw) code.WriteTable(writer, true);
  for (unsigned int i = 0; i < nCount * 4; ++i) {
    if (bRaw || i < 4)
      writer.Write(random() % 256, 8);
    else
      code.Write(writer, random() % 256);
  }
  return writer.GetBytes();
}

QXTestFile MakeFile(QXRandom& random, unsigned int nWidth, unsigned int nHeight, bool bAlpha, unsigned int nHistory) {
  QXTestFile file;
  file.m_nWidth = nWidth;
  file.m_nHeight = nHeight;
  file.m_nEndpoints = 2 + random() % 60;
  file.m_nSelectors = 2 + random() % 90;
  file.m_arrEndpointData = MakeEndpoints(random, file.m_nEndpoints, random() % 3 == 0);
  file.m_arrSelectorData = MakeSelectors(random, file.m_nSelectors, random() % 2 == 0);
  QXTestCodes const codes = MakeCodes(random, file, nHistory);
  file.m_arrTableData = MakeTables(codes);
  file.m_arrRgb = MakeSlice(random, file, codes);
  if (bAlpha) file.m_arrAlpha = MakeSlice(random, file, codes);
  return file;
}

/// A file of one block row whose slice a test writes itself: 4 endpoints, 4 selectors, codes of equal lengths.
struct QXPlainFile : QXTestFile {
  QXTestCodes m_Codes;
  QXBitWriter m_Slice;

  explicit QXPlainFile(unsigned int nHistory, unsigned int nWidth = 8, unsigned int nHeight = 4)
      : m_Codes{QXTestCode(Equal(512)), QXTestCode(Equal(8)), QXTestCode(Equal(16)), QXTestCode(Equal(64)), nHistory} {
    QXRandom random(5);
    m_nWidth = nWidth;
    m_nHeight = nHeight;
    m_nEndpoints = m_nSelectors = 4;
    m_arrEndpointData = MakeEndpoints(random, 4, false);
    m_arrSelectorData = MakeSelectors(random, 4, true);
    m_arrTableData = MakeTables(m_Codes);
  }
  static std::vector<unsigned char> Equal(unsigned int nSymbols) {
    unsigned char nLength = 0;
    while ((1u << nLength) < nSymbols) ++nLength;
    return std::vector<unsigned char>(nSymbols, nLength);
  }
  QXPlainFile& Predict(unsigned int nSymbol) {
    m_Codes.m_Prediction.Write(m_Slice, nSymbol);
    return *this;
  }
  QXPlainFile& Delta(unsigned int nSymbol) {
    m_Codes.m_Delta.Write(m_Slice, nSymbol);
    return *this;
  }
  QXPlainFile& Select(unsigned int nSymbol) {
    m_Codes.m_Selector.Write(m_Slice, nSymbol);
    return *this;
  }
  QXPlainFile& Run(unsigned int nSymbol) {
    m_Codes.m_Run.Write(m_Slice, nSymbol);
    return *this;
  }
  bool IsDecoded() {
    m_Slice.Write(0, 40);  // room, so that nothing fails for want of bytes
    m_arrRgb = m_Slice.GetBytes();
    auto const want = RefDecode(*this);
    auto const have = ::Decode(*this);
    EXPECT_EQ(have, want);
    return have.has_value();
  }
  static std::optional<QXBytes> Decode(QXTestFile const& file) { return ::Decode(file); }
};

// ---- Tests

TEST(QXBasisLz, RandomFilesDecodeAsTheSlowReferenceDoes) {
  unsigned int const nSeed = 1205;
  QXRandom random(nSeed);
  for (unsigned int nRound = 0; nRound < 150; ++nRound) {
    unsigned int const histories[] = {0, 1, 2, 7, 64, 200};
    QXTestFile const file =
        MakeFile(random, 1 + random() % 90, 1 + random() % 90, nRound % 2 == 0, histories[nRound % 6]);
    std::optional<QXBytes> const want = RefDecode(file);
    ASSERT_TRUE(want.has_value()) << "seed " << nSeed << " round " << nRound;
    ASSERT_EQ(Decode(file), want) << "seed " << nSeed << " round " << nRound;
  }
}

TEST(QXBasisLz, BrokenBitsDecodeOrFailAsTheSlowReferenceDoes) {
  unsigned int const nSeed = 77;
  QXRandom random(nSeed);
  unsigned int nRefused = 0;
  unsigned int nDecoded = 0;
  for (unsigned int nRound = 0; nRound < 3000; ++nRound) {
    static QXTestFile const good = [] {
      QXRandom own(9);
      return MakeFile(own, 30, 22, true, 16);
    }();
    QXTestFile file = good;
    QXBytes* const parts[] = {
        &file.m_arrEndpointData, &file.m_arrSelectorData, &file.m_arrTableData, &file.m_arrRgb, &file.m_arrAlpha};
    QXBytes& part = *parts[nRound % 5];
    part[random() % part.size()] ^= static_cast<unsigned char>(1u << random() % 8);
    std::optional<QXBytes> const want = RefDecode(file);
    ASSERT_EQ(Decode(file), want) << "seed " << nSeed << " round " << nRound;
    ++(want ? nDecoded : nRefused);
  }
  EXPECT_GT(nRefused, 100u);
  EXPECT_GT(nDecoded, 100u);
}

TEST(QXBasisLz, GlobalDataCutAnywhereOrWithMoreBehindItIsRefused) {
  QXRandom random(3);
  QXTestFile const file = MakeFile(random, 12, 12, true, 8);
  QXBytes global = file.GetGlobal();
  for (std::size_t nSize = 0; nSize < global.size(); ++nSize) {
    QXBytes const part = Part(global, 0, nSize);
    ASSERT_FALSE(QXBasisLz().Init(part.data(), part.size(), 1)) << nSize;
  }
  EXPECT_TRUE(QXBasisLz().Init(global.data(), global.size(), 1));
  EXPECT_FALSE(QXBasisLz().Init(global.data(), global.size(), 2));
  EXPECT_FALSE(QXBasisLz().Init(global.data(), global.size(), 0));
  global.push_back(0);
  EXPECT_FALSE(QXBasisLz().Init(global.data(), global.size(), 1));
}

TEST(QXBasisLz, SectionCutAnywhereIsRefused) {
  QXRandom random(4);
  QXTestFile const good = MakeFile(random, 20, 20, true, 8);
  QXBytes QXTestFile::*const parts[] = {&QXTestFile::m_arrEndpointData, &QXTestFile::m_arrSelectorData,
      &QXTestFile::m_arrTableData, &QXTestFile::m_arrRgb, &QXTestFile::m_arrAlpha};
  ASSERT_TRUE(Decode(good).has_value());
  for (auto const part : parts) {
    for (std::size_t nSize = part == &QXTestFile::m_arrAlpha ? 1 : 0; nSize < (good.*part).size(); ++nSize) {
      QXTestFile file = good;
      file.*part = Part(good.*part, 0, nSize);
      ASSERT_FALSE(Decode(file).has_value()) << nSize << " of " << (good.*part).size();
    }
  }
}

TEST(QXBasisLz, HeaderThatContradictsItselfIsRefused) {
  QXRandom random(6);
  QXTestFile const good = MakeFile(random, 8, 8, false, 4);
  struct QXCase {
    char const* m_szName;
    void (*m_pSpoil)(QXTestFile&);
  };
  QXCase const cases[] = {
      {"extended data", [](QXTestFile& file) { file.m_nExtended = 1; }},
      {"no endpoints", [](QXTestFile& file) { file.m_nEndpoints = 0; }},
      {"no selectors", [](QXTestFile& file) { file.m_nSelectors = 0; }},
      {"more endpoints than bits", [](QXTestFile& file) { file.m_nEndpoints = 65535; }},
      {"more selectors than bits", [](QXTestFile& file) { file.m_nSelectors = 65535; }},
      {"no slice", [](QXTestFile& file) { file.m_arrRgb.clear(); }},
      {"reserved bit 0", [](QXTestFile& file) { file.m_arrSelectorData[0] |= 1; }},
      {"reserved bit 1", [](QXTestFile& file) { file.m_arrSelectorData[0] |= 2; }},
  };
  ASSERT_TRUE(Decode(good).has_value());
  for (QXCase const& row : cases) {
    QXTestFile file = good;
    row.m_pSpoil(file);
    QXBytes const global = file.GetGlobal();
    EXPECT_FALSE(QXBasisLz().Init(global.data(), global.size(), 1)) << row.m_szName;
  }
  QXTestFile other = good;
  other.m_nFlags = 4;
  EXPECT_TRUE(Decode(other).has_value());
}

TEST(QXBasisLz, PFrameIsNotDecodedButThoseBesideItAre) {
  QXRandom random(12);
  QXTestFile file = MakeFile(random, 8, 8, true, 4);
  std::optional<QXBytes> const want = Decode(file);
  ASSERT_TRUE(want.has_value());
  file.m_nFlags = 2;
  EXPECT_FALSE(Decode(file).has_value());

  // The description once more, in front of itself and without the flag.
  QXBytes global = file.GetGlobal();
  QXBytes still = Part(global, 20, 20);
  still[0] = 0;
  global.insert(global.begin() + 20, still.begin(), still.end());
  QXBytes const level = file.GetLevel();
  QXBytes pixels(8 * 8 * 4);
  QXBasisLz decoder;
  ASSERT_TRUE(decoder.Init(global.data(), global.size(), 2));
  EXPECT_FALSE(decoder.DecodeImage(1, level.data(), level.size(), 8, 8, pixels.data()));
  EXPECT_TRUE(decoder.DecodeImage(0, level.data(), level.size(), 8, 8, pixels.data()));
  EXPECT_EQ(pixels, *want);
}

TEST(QXBasisLz, RefusedDataLeavesNothingToDecode) {
  QXRandom random(8);
  QXTestFile file = MakeFile(random, 8, 8, true, 4);
  QXBytes const level = file.GetLevel();
  QXBytes global = file.GetGlobal();
  QXBytes pixels(8 * 8 * 4);
  QXBasisLz decoder;
  EXPECT_FALSE(decoder.DecodeImage(0, level.data(), level.size(), 8, 8, pixels.data()));
  ASSERT_TRUE(decoder.Init(global.data(), global.size(), 1));
  EXPECT_TRUE(decoder.DecodeImage(0, level.data(), level.size(), 8, 8, pixels.data()));
  EXPECT_TRUE(decoder.HasAlphaSlice(0));
  EXPECT_FALSE(decoder.HasAlphaSlice(1));
  EXPECT_FALSE(decoder.DecodeImage(1, level.data(), level.size(), 8, 8, pixels.data()));
  EXPECT_FALSE(decoder.DecodeImage(0, level.data(), level.size(), 0, 8, pixels.data()));
  EXPECT_FALSE(decoder.DecodeImage(0, level.data(), level.size(), 8, 0, pixels.data()));
  global.pop_back();
  EXPECT_FALSE(decoder.Init(global.data(), global.size(), 1));
  EXPECT_FALSE(decoder.DecodeImage(0, level.data(), level.size(), 8, 8, pixels.data()));
  EXPECT_FALSE(decoder.HasAlphaSlice(0));
}

TEST(QXBasisLz, SliceOutsideItsLevelIsRefused) {
  QXRandom random(10);
  QXTestFile const file = MakeFile(random, 8, 8, true, 4);
  QXBytes const level = file.GetLevel();
  // Offset and length of both slices: 24 to 39 of the global data.
  for (std::size_t const nField : {24u, 28u, 32u, 36u}) {
    for (std::uint32_t const nValue : {std::uint32_t(level.size()) + 1, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
      QXBytes global = file.GetGlobal();
      for (unsigned int i = 0; i < 4; ++i) global[nField + i] = static_cast<unsigned char>(nValue >> (8 * i));
      QXBasisLz decoder;
      QXBytes pixels(8 * 8 * 4);
      ASSERT_TRUE(decoder.Init(global.data(), global.size(), 1));
      EXPECT_FALSE(decoder.DecodeImage(0, level.data(), level.size(), 8, 8, pixels.data())) << nField << ' ' << nValue;
    }
  }
}

TEST(QXBasisLz, BlockRefersOnlyToBlocksThatExist) {
  // Two blocks: the lowest four bits of the symbol, 3 being a difference.
  EXPECT_TRUE(QXPlainFile(0).Predict(3 | 3 << 2).Delta(0).Select(0).Delta(1).Select(1).IsDecoded());
  EXPECT_TRUE(QXPlainFile(0).Predict(3 | 0 << 2).Delta(0).Select(0).Select(1).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0).Predict(0 | 3 << 2).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0).Predict(1 | 3 << 2).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0).Predict(2 | 3 << 2).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0).Predict(3 | 1 << 2).Delta(0).Select(0).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0).Predict(3 | 2 << 2).Delta(0).Select(0).IsDecoded());
  // The row below: what stands above exists, what stands left of the first block does not.
  EXPECT_TRUE(QXPlainFile(0, 4, 8).Predict(3 | 1 << 4).Delta(0).Select(0).Select(0).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0, 4, 8).Predict(3 | 0 << 4).Delta(0).Select(0).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0, 4, 8).Predict(3 | 2 << 4).Delta(0).Select(0).IsDecoded());
}

TEST(QXBasisLz, IndicesWrapOnceAndNoFurther) {
  EXPECT_TRUE(QXPlainFile(0, 4).Predict(3).Delta(3).Select(0).IsDecoded());
  EXPECT_TRUE(QXPlainFile(0, 4).Predict(3).Delta(7).Select(0).IsDecoded());
  // From 3, a difference of 5 would be 8: twice the codebook.
  EXPECT_FALSE(QXPlainFile(0).Predict(3 | 3 << 2).Delta(3).Select(0).Delta(5).IsDecoded());
  EXPECT_TRUE(QXPlainFile(0).Predict(3 | 3 << 2).Delta(3).Select(0).Delta(4).Select(0).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0, 4).Predict(257).IsDecoded());
}

TEST(QXBasisLz, SelectorsComeFromCodebookHistoryOrRunOnly) {
  EXPECT_TRUE(QXPlainFile(2, 4).Predict(3).Delta(0).Select(3).IsDecoded());
  EXPECT_TRUE(QXPlainFile(2, 4).Predict(3).Delta(0).Select(5).IsDecoded());
  EXPECT_TRUE(QXPlainFile(2, 4).Predict(3).Delta(0).Select(6).Run(0).IsDecoded());
  EXPECT_FALSE(QXPlainFile(2, 4).Predict(3).Delta(0).Select(7).IsDecoded());
  EXPECT_FALSE(QXPlainFile(0, 4).Predict(3).Delta(0).Select(4).Run(0).IsDecoded());
}

TEST(QXBasisLz, RunsOfPredictionsAndSelectorsMayBeLong) {
  EXPECT_TRUE(QXPlainFile(2, 4).Predict(3).Delta(0).Select(6).Run(63).IsDecoded());
  QXPlainFile endless(2, 4);
  endless.Predict(3).Delta(0).Select(6).Run(63).m_Slice.Write(~std::uint64_t(0), 64);
  EXPECT_FALSE(endless.IsDecoded());
  // 4 bits above the 28 that seven-bit chunks have filled are too many by three.
  QXPlainFile wide(2, 4);
  wide.Predict(3).Delta(0).Select(6).Run(63);
  for (unsigned int i = 0; i < 4; ++i) wide.m_Slice.Write(0x80, 8);
  wide.m_Slice.Write(0x10, 8);
  EXPECT_FALSE(wide.IsDecoded());
  QXPlainFile full(2, 4);
  full.Predict(3).Delta(0).Select(6).Run(63);
  for (unsigned int i = 0; i < 4; ++i) full.m_Slice.Write(0xFF, 8);
  full.m_Slice.Write(0x0F, 8);
  EXPECT_TRUE(full.IsDecoded());
}

TEST(QXBasisLz, RunsCarryAWideRowOnAFewBytes) {
  QXPlainFile file(2, 4096, 4);
  file.Predict(3 | 0 << 2).Delta(1).Select(6).Run(63);
  WriteVlc(file.m_Slice, 2000, 7);
  file.Predict(0).Predict(256);
  WriteVlc(file.m_Slice, 1000, 4);
  EXPECT_LT(file.m_Slice.GetBytes().size(), 16u);
  EXPECT_TRUE(file.IsDecoded());
}

}  // namespace
