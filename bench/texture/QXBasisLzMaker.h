/// @file
/// Encodes a picture as ETC1S with BasisLZ, simply, but with what makes real files hard to decode: codebooks of many
/// thousand entries, Huffman codes after the frequencies of the picture, predicted endpoints, histories and runs.
#pragma once

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXEtc1s.h>
#include <tests/foundation/toolkit/QXBitWriter.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <queue>
#include <random>
#include <utility>
#include <vector>

class QXBasisLzMaker {
public:
  using Bytes = std::vector<unsigned char>;

  /// Chooses endpoints and selectors for a picture of whole 2 x 2 groups of blocks. A codebook takes the commonest
  /// nMaxEntries of what the picture has; the rest is brought to one of them that is near.
  QXBasisLzMaker(Bytes const& arrRgba, unsigned int nWidth, unsigned int nHeight, std::size_t nMaxEntries)
      : m_nWide(nWidth / 4), m_nHigh(nHeight / 4) {
    std::vector<std::uint32_t> arrEndpoints;
    std::vector<std::uint32_t> arrSelectors;
    for (unsigned int y = 0; y < m_nHigh; ++y) {
      for (unsigned int x = 0; x < m_nWide; ++x) {
        auto const [nEndpoint, nSelector] = Fit(arrRgba, nWidth, x, y);
        arrEndpoints.push_back(nEndpoint);
        arrSelectors.push_back(nSelector);
      }
    }
    m_arrEndpoints = Indexed(arrEndpoints, nMaxEntries, &ColorDistance, m_arrEndpointBook);
    m_arrSelectors = Indexed(arrSelectors, nMaxEntries, &SelectorDistance, m_arrSelectorBook);
    Predict();
    Describe();
  }

  std::size_t GetEndpointCount() const { return m_arrEndpointBook.size(); }
  std::size_t GetSelectorCount() const { return m_arrSelectorBook.size(); }

  /// The slice. A file with alpha has it twice.
  Bytes GetSlice() const {
    std::vector<QXTestCode> const codes = GetCodes();
    QXBitWriter writer;
    for (Said const& said : m_arrSaid) {
      if (said.m_nCode < 4)
        codes[said.m_nCode].Write(writer, said.m_nValue);
      else
        WriteChunks(writer, said.m_nValue, said.m_nCode == g_nChunks4 ? 4 : 7);
    }
    return writer.GetBytes();
  }

  Bytes GetGlobalData(std::size_t nSliceSize, bool bAlpha) const {
    Bytes const endpoints = WriteEndpoints();
    Bytes const selectors = WriteSelectors();
    Bytes const tables = WriteTables();
    Bytes bytes;
    Put(bytes, GetEndpointCount(), 2);
    Put(bytes, GetSelectorCount(), 2);
    for (Bytes const* pPart : {&endpoints, &selectors, &tables}) Put(bytes, pPart->size(), 4);
    Put(bytes, 0, 8);
    Put(bytes, 0, 4);
    Put(bytes, nSliceSize, 4);
    Put(bytes, bAlpha ? nSliceSize : 0, 4);
    Put(bytes, bAlpha ? nSliceSize : 0, 4);
    for (Bytes const* pPart : {&endpoints, &selectors, &tables})
      bytes.insert(bytes.end(), pPart->begin(), pPart->end());
    return bytes;
  }

  /// What a decoder must make of it, painted from the indices.
  Bytes GetPixels(bool bAlpha) const {
    Bytes pixels(std::size_t{m_nWide} * m_nHigh * 64);
    for (unsigned int nBlock = 0; nBlock < m_nWide * m_nHigh; ++nBlock) {
      std::uint32_t const nKey = m_arrEndpointBook[m_arrEndpoints[nBlock]];
      auto const colors = QXC::detail::UnfoldEtc1sEndpoint(Red(nKey), Green(nKey), Blue(nKey), Table(nKey));
      for (unsigned int nPixel = 0; nPixel < 16; ++nPixel) {
        std::size_t const nY = std::size_t{nBlock} / m_nWide * 4 + nPixel / 4;
        std::size_t const nX = std::size_t{nBlock} % m_nWide * 4 + nPixel % 4;
        unsigned char* const pPixel = &pixels[(nY * m_nWide * 4 + nX) * 4];
        std::memcpy(pPixel, colors.m_Colors[m_arrSelectorBook[m_arrSelectors[nBlock]] >> (2 * nPixel) & 3], 4);
        if (bAlpha) pPixel[3] = pPixel[1];
      }
    }
    return pixels;
  }

private:
  static constexpr unsigned int g_nHistory = 64;
  static constexpr unsigned char g_nChunks4 = 4;
  static constexpr unsigned char g_nChunks7 = 5;
  /// One symbol of one of the four codes, or a number in chunks.
  struct Said {
    unsigned char m_nCode;
    std::uint32_t m_nValue;
  };

  static unsigned int Red(std::uint32_t nKey) { return nKey >> 10 & 31; }
  static unsigned int Green(std::uint32_t nKey) { return nKey >> 5 & 31; }
  static unsigned int Blue(std::uint32_t nKey) { return nKey & 31; }
  static unsigned int Table(std::uint32_t nKey) { return nKey >> 15; }

  static int ColorDistance(std::uint32_t nA, std::uint32_t nB) {
    auto const apart = [](unsigned int n, unsigned int m) {
      return std::abs(static_cast<int>(n) - static_cast<int>(m));
    };
    return apart(Red(nA), Red(nB)) + apart(Green(nA), Green(nB)) + apart(Blue(nA), Blue(nB)) +
           apart(Table(nA), Table(nB));
  }
  static int SelectorDistance(std::uint32_t nA, std::uint32_t nB) { return __builtin_popcount(nA ^ nB); }

  static void Put(Bytes& bytes, std::uint64_t nValue, unsigned int nBytes) {
    for (unsigned int i = 0; i < nBytes; ++i) bytes.push_back(static_cast<unsigned char>(nValue >> (8 * i)));
  }

  /// The mean as base colour, the table by the widest difference, each pixel the nearest of the four shades.
  static std::pair<std::uint32_t, std::uint32_t> Fit(
      Bytes const& arrRgba, unsigned int nWidth, unsigned int x, unsigned int y) {
    static constexpr int modifiers[8][2] = {
        {2, 8}, {5, 17}, {9, 29}, {13, 42}, {18, 60}, {24, 80}, {33, 106}, {47, 183}};
    int sums[3] = {};
    int shades[16];
    int nMean = 0;
    for (unsigned int i = 0; i < 16; ++i) {
      unsigned char const* const pPixel = &arrRgba[((y * 4 + i / 4) * std::size_t{nWidth} + x * 4 + i % 4) * 4];
      for (int k = 0; k < 3; ++k) sums[k] += pPixel[k];
      shades[i] = (pPixel[0] + 2 * pPixel[1] + pPixel[2]) / 4;
      nMean += shades[i];
    }
    nMean /= 16;
    int nWidest = 0;
    for (int const nShade : shades) nWidest = std::max(nWidest, std::abs(nShade - nMean));
    std::uint32_t nTable = 0;
    while (nTable < 7 && modifiers[nTable][1] < nWidest) ++nTable;
    std::uint32_t nKey = nTable << 15;
    for (unsigned int k = 0; k < 3; ++k) nKey |= static_cast<std::uint32_t>(sums[k] / 16 >> 3) << (10 - 5 * k);
    std::uint32_t nSelectors = 0;
    int const nHalf = (modifiers[nTable][0] + modifiers[nTable][1]) / 2;
    for (unsigned int i = 0; i < 16; ++i) {
      int const nDifference = shades[i] - nMean;
      unsigned int const nShade = nDifference < -nHalf ? 0 : nDifference < 0 ? 1 : nDifference <= nHalf ? 2 : 3;
      nSelectors |= nShade << (2 * i);
    }
    return {nKey, nSelectors};
  }

  /// The commonest values, sorted, as a book, and each value as a place in it.
  static std::vector<unsigned int> Indexed(std::vector<std::uint32_t> const& values, std::size_t nMax,
      int (*pfnDistance)(std::uint32_t, std::uint32_t), std::vector<std::uint32_t>& book) {
    std::map<std::uint32_t, int> counts;
    for (std::uint32_t const nValue : values) ++counts[nValue];
    std::vector<std::pair<int, std::uint32_t>> common;
    common.reserve(counts.size());
    for (auto const& [nValue, nCount] : counts) common.emplace_back(-nCount, nValue);
    std::sort(common.begin(), common.end());
    common.resize(std::min(common.size(), nMax));
    for (auto const& entry : common) book.push_back(entry.second);
    std::sort(book.begin(), book.end());
    std::map<std::uint32_t, unsigned int> places;
    for (unsigned int i = 0; i < book.size(); ++i) places[book[i]] = i;
    std::mt19937 random(7);
    std::vector<unsigned int> indices;
    for (std::uint32_t const nValue : values) {
      auto [itPlace, bNew] = places.try_emplace(nValue, 0);
      if (bNew) {
        for (int nTry = 0; nTry < 200; ++nTry) {
          auto const nOther = static_cast<unsigned int>(random() % book.size());
          if (pfnDistance(nValue, book[nOther]) < pfnDistance(nValue, book[itPlace->second])) itPlace->second = nOther;
        }
      }
      indices.push_back(itPlace->second);
    }
    return indices;
  }

  /// Takes a neighbour's endpoint where it is nearly the block's own, as encoders do for the sake of size.
  void Predict() {
    m_arrPredictions.assign(m_arrEndpoints.size(), 3);
    for (unsigned int nBlock = 0; nBlock < m_arrEndpoints.size(); ++nBlock) {
      unsigned int const x = nBlock % m_nWide;
      bool const bAbove = nBlock >= m_nWide;
      unsigned int const neighbours[3] = {x > 0 ? nBlock - 1 : nBlock, bAbove ? nBlock - m_nWide : nBlock,
          x > 0 && bAbove ? nBlock - m_nWide - 1 : nBlock};
      for (unsigned int i = 0; i < 3; ++i) {
        if (neighbours[i] == nBlock) continue;
        unsigned int const nOther = m_arrEndpoints[neighbours[i]];
        if (ColorDistance(m_arrEndpointBook[nOther], m_arrEndpointBook[m_arrEndpoints[nBlock]]) > 1) continue;
        m_arrEndpoints[nBlock] = nOther;
        m_arrPredictions[nBlock] = static_cast<unsigned char>(i);
        break;
      }
    }
  }

  /// The symbols of the slice, in the order of decoding.
  void Describe() {
    std::array<unsigned int, g_nHistory> history = {};
    unsigned int nNext = g_nHistory / 2;
    std::size_t nRunEnd = 0;
    unsigned int nLast = 0;
    std::vector<unsigned int> const groups = Groups();
    std::size_t nGroup = 0;
    std::size_t nGroupRunEnd = 0;
    for (std::size_t nBlock = 0; nBlock < m_arrEndpoints.size(); ++nBlock) {
      if (nBlock % m_nWide % 2 == 0 && nBlock / m_nWide % 2 == 0) DescribeGroup(groups, nGroup++, nGroupRunEnd);
      unsigned int const nEndpoint = m_arrEndpoints[nBlock];
      auto const nCount = static_cast<unsigned int>(GetEndpointCount());
      if (m_arrPredictions[nBlock] == 3) m_arrSaid.push_back({1, (nEndpoint + nCount - nLast) % nCount});
      nLast = nEndpoint;
      if (nBlock < nRunEnd) continue;
      DescribeSelector(nBlock, history, nNext, nRunEnd);
    }
  }

  std::vector<unsigned int> Groups() const {
    std::vector<unsigned int> groups;
    for (unsigned int y = 0; y < m_nHigh; y += 2) {
      for (unsigned int x = 0; x < m_nWide; x += 2) {
        unsigned int nGroup = 0;
        for (unsigned int i = 0; i < 4; ++i)
          nGroup |= unsigned{m_arrPredictions[(y + i / 2) * m_nWide + x + i % 2]} << (2 * i);
        groups.push_back(nGroup);
      }
    }
    return groups;
  }

  void DescribeGroup(std::vector<unsigned int> const& groups, std::size_t nGroup, std::size_t& nRunEnd) {
    if (nGroup < nRunEnd) return;
    std::size_t nEnd = nGroup;
    while (nGroup > 0 && nEnd < groups.size() && groups[nEnd] == groups[nGroup - 1]) ++nEnd;
    if (nEnd - nGroup >= 3) {
      m_arrSaid.push_back({0, 256});
      m_arrSaid.push_back({g_nChunks4, static_cast<std::uint32_t>(nEnd - nGroup - 3)});
      nRunEnd = nEnd;
    } else {
      m_arrSaid.push_back({0, groups[nGroup]});
    }
  }

  void DescribeSelector(
      std::size_t nBlock, std::array<unsigned int, g_nHistory>& history, unsigned int& nNext, std::size_t& nRunEnd) {
    auto const nCount = static_cast<std::uint32_t>(GetSelectorCount());
    std::size_t nEnd = nBlock;
    while (nEnd < m_arrSelectors.size() && m_arrSelectors[nEnd] == history[0]) ++nEnd;
    if (nEnd - nBlock >= 3) {
      auto const nMore = static_cast<std::uint32_t>(nEnd - nBlock - 3);
      m_arrSaid.push_back({2, nCount + g_nHistory});
      m_arrSaid.push_back({3, std::min(nMore, 63u)});
      if (nMore >= 63) m_arrSaid.push_back({g_nChunks7, nMore});
      nRunEnd = nEnd;
      return;
    }
    unsigned int const nSelector = m_arrSelectors[nBlock];
    auto const nPlace =
        static_cast<unsigned int>(std::find(history.begin(), history.end(), nSelector) - history.begin());
    if (nPlace < g_nHistory) {
      m_arrSaid.push_back({2, nCount + nPlace});
      std::swap(history[nPlace / 2], history[nPlace]);
      return;
    }
    m_arrSaid.push_back({2, nSelector});
    history[nNext] = nSelector;
    if (++nNext == g_nHistory) nNext = g_nHistory / 2;
  }

  std::vector<QXTestCode> GetCodes() const {
    std::vector<std::vector<std::uint64_t>> counts = {std::vector<std::uint64_t>(257),
        std::vector<std::uint64_t>(GetEndpointCount()), std::vector<std::uint64_t>(GetSelectorCount() + g_nHistory + 1),
        std::vector<std::uint64_t>(64)};
    for (Said const& said : m_arrSaid)
      if (said.m_nCode < 4) ++counts[said.m_nCode][said.m_nValue];
    std::vector<QXTestCode> codes;
    codes.reserve(counts.size());
    for (auto const& count : counts) codes.emplace_back(Lengths(count));
    return codes;
  }

  /// Lengths of a Huffman code; counts are halved until none has more than 16 bits.
  static std::vector<unsigned char> Lengths(std::vector<std::uint64_t> counts) {
    for (;;) {
      std::vector<unsigned char> lengths = AnyLengths(counts);
      if (*std::max_element(lengths.begin(), lengths.end()) <= 16) return lengths;
      for (std::uint64_t& nCount : counts) nCount = (nCount + 1) / 2;
    }
  }
  static std::vector<unsigned char> AnyLengths(std::vector<std::uint64_t> const& counts) {
    using Entry = std::pair<std::uint64_t, std::size_t>;
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> queue;
    std::vector<std::size_t> parents(counts.size(), 0);
    for (std::size_t i = 0; i < counts.size(); ++i)
      if (counts[i] != 0) queue.emplace(counts[i], i);
    std::size_t const nUsed = queue.size();
    while (queue.size() > 1) {
      Entry const first = queue.top();
      queue.pop();
      Entry const second = queue.top();
      queue.pop();
      parents[first.second] = parents[second.second] = parents.size();
      queue.emplace(first.first + second.first, parents.size());
      parents.push_back(0);
    }
    std::vector<unsigned char> lengths(counts.size(), 0);
    for (std::size_t i = 0; i < counts.size(); ++i)
      for (std::size_t n = i; counts[i] != 0 && parents[n] != 0; n = parents[n]) ++lengths[i];
    if (nUsed == 1) lengths[queue.top().second] = 1;
    return lengths;
  }

  static void WriteChunks(QXBitWriter& writer, std::uint32_t nValue, unsigned int nBits) {
    do {
      std::uint32_t const nChunk = nValue & ((1u << nBits) - 1);
      nValue >>= nBits;
      writer.Write(nChunk | (nValue != 0 ? 1u << nBits : 0u), nBits + 1);
    } while (nValue != 0);
  }

  Bytes WriteEndpoints() const {
    QXBitWriter writer;
    QXTestCode const color(std::vector<unsigned char>(32, 5));
    QXTestCode const table(std::vector<unsigned char>(8, 3));
    for (int i = 0; i < 3; ++i) color.WriteTable(writer, true);
    table.WriteTable(writer, true);
    writer.Write(0, 1);
    unsigned int channels[3] = {16, 16, 16};
    unsigned int nTable = 0;
    for (std::uint32_t const nKey : m_arrEndpointBook) {
      table.Write(writer, (Table(nKey) - nTable) & 7);
      nTable = Table(nKey);
      unsigned int const next[3] = {Red(nKey), Green(nKey), Blue(nKey)};
      for (unsigned int k = 0; k < 3; ++k) {
        color.Write(writer, (next[k] - channels[k]) & 31);
        channels[k] = next[k];
      }
    }
    return writer.GetBytes();
  }

  Bytes WriteSelectors() const {
    QXBitWriter writer;
    writer.Write(4, 3);  // raw
    for (std::uint32_t const nSelectors : m_arrSelectorBook) writer.Write(nSelectors, 32);
    return writer.GetBytes();
  }

  Bytes WriteTables() const {
    QXBitWriter writer;
    for (QXTestCode const& code : GetCodes()) code.WriteTable(writer, true);
    writer.Write(g_nHistory, 13);
    return writer.GetBytes();
  }

  unsigned int m_nWide;
  unsigned int m_nHigh;
  std::vector<std::uint32_t> m_arrEndpointBook;
  std::vector<std::uint32_t> m_arrSelectorBook;
  std::vector<unsigned int> m_arrEndpoints;
  std::vector<unsigned int> m_arrSelectors;
  std::vector<unsigned char> m_arrPredictions;
  std::vector<Said> m_arrSaid;
};
