/// @file
/// Bit streams and Huffman codes for tests of the readers.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

/// 32 random bits a call, the same on every platform.
class QXRandom {
public:
  using result_type = unsigned int;
  explicit QXRandom(unsigned int nSeed) : m_Engine(nSeed) {}
  static constexpr result_type min() { return 0; }
  static constexpr result_type max() { return 0xFFFFFFFFu; }
  result_type operator()() { return static_cast<result_type>(m_Engine()); }

private:
  std::mt19937 m_Engine;
};

/// Appends bits, the lowest first.
class QXBitWriter {
public:
  void Write(std::uint64_t nValue, unsigned int nCount) {
    for (unsigned int i = 0; i < nCount; ++i) {
      if (m_nBits % 8 == 0) m_arrBytes.push_back(0);
      unsigned int const nBit = static_cast<unsigned int>(nValue >> i & 1);
      m_arrBytes.back() = static_cast<unsigned char>(m_arrBytes.back() | nBit << (m_nBits % 8));
      ++m_nBits;
    }
  }
  std::vector<unsigned char> const& GetBytes() const { return m_arrBytes; }

private:
  std::vector<unsigned char> m_arrBytes;
  std::size_t m_nBits = 0;
};

/// A canonical code by its lengths, after RFC 1951, 3.2.2, in the plainest form: codes counted up symbol by symbol.
class QXTestCode {
public:
  explicit QXTestCode(std::vector<unsigned char> lengths)
      : m_arrLengths(std::move(lengths)), m_arrCodes(m_arrLengths.size()) {
    unsigned int nCode = 0;
    for (unsigned int nLength = 1; nLength <= 16; ++nLength, nCode <<= 1) {
      for (std::size_t i = 0; i < m_arrLengths.size(); ++i) {
        if (m_arrLengths[i] != nLength) continue;
        m_SymbolOf[{nLength, nCode}] = static_cast<unsigned int>(i);
        m_arrCodes[i] = nCode++;
      }
    }
  }

  std::vector<unsigned char> const& GetLengths() const { return m_arrLengths; }
  std::map<std::pair<unsigned int, unsigned int>, unsigned int> const& GetSymbols() const { return m_SymbolOf; }

  void Write(QXBitWriter& writer, unsigned int nSymbol) const {
    unsigned int const nLength = m_arrLengths.at(nSymbol);
    if (nLength == 0) throw std::logic_error("a symbol without code");
    for (unsigned int i = nLength; i-- > 0;) writer.Write(m_arrCodes[nSymbol] >> i & 1, 1);
  }

  /// Writes the table itself, its runs with the symbols 17 to 20 where bRuns.
  void WriteTable(QXBitWriter& writer, bool bRuns) const {
    static constexpr unsigned char order[21] = {
        17, 18, 19, 20, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15, 16};
    writer.Write(m_arrLengths.size(), 14);
    if (m_arrLengths.empty()) return;
    std::vector<unsigned char> lengthLengths(21, 5);
    for (std::size_t i = 0; i < 11; ++i) lengthLengths[i] = 4;  // 11 / 16 + 10 / 32 fill the code space
    QXTestCode const lengthCode(lengthLengths);
    writer.Write(21, 5);
    for (unsigned char const nPlace : order) writer.Write(lengthLengths[nPlace], 3);
    for (std::size_t i = 0; i < m_arrLengths.size();) {
      std::size_t nRun = 1;
      while (i + nRun < m_arrLengths.size() && m_arrLengths[i + nRun] == m_arrLengths[i]) ++nRun;
      i += bRuns ? WriteRun(writer, lengthCode, m_arrLengths[i], nRun) : WriteOne(writer, lengthCode, m_arrLengths[i]);
    }
  }

private:
  static std::size_t WriteOne(QXBitWriter& writer, QXTestCode const& lengthCode, unsigned char nLength) {
    lengthCode.Write(writer, nLength);
    return 1;
  }
  static std::size_t WriteRun(
      QXBitWriter& writer, QXTestCode const& lengthCode, unsigned char nLength, std::size_t nRun) {
    bool const bZero = nLength == 0;
    std::size_t const nSaid = bZero ? 0 : WriteOne(writer, lengthCode, nLength);
    std::size_t nLeft = nRun - nSaid;
    if (nLeft < 3) return bZero ? WriteOne(writer, lengthCode, 0) : nSaid;
    bool const bLong = nLeft >= (bZero ? 11u : 7u);
    std::size_t const nMinimum = !bLong ? 3 : bZero ? 11 : 7;
    unsigned int const nBits = bLong ? 7 : bZero ? 3 : 2;
    std::size_t const nMost = nMinimum + (std::size_t(1) << nBits) - 1;
    if (nLeft > nMost) nLeft = nMost;
    lengthCode.Write(writer, (bZero ? 17u : 19u) + (bLong ? 1u : 0u));
    writer.Write(nLeft - nMinimum, nBits);
    return nSaid + nLeft;
  }

  std::vector<unsigned char> m_arrLengths;
  std::vector<unsigned int> m_arrCodes;
  std::map<std::pair<unsigned int, unsigned int>, unsigned int> m_SymbolOf;  ///< by length and code
};

/// A full code in which nUsed of nSymbols symbols have a code, of at most 16 bits; the skew makes long ones likely.
inline QXTestCode MakeRandomCode(QXRandom& random, unsigned int nSymbols, unsigned int nUsed, bool bSkewed) {
  std::vector<unsigned char> leaves(1, 0);
  while (leaves.size() < nUsed) {
    std::size_t const nLeaf = bSkewed && random() % 4 != 0 ? leaves.size() - 1 : random() % leaves.size();
    if (leaves[nLeaf] >= 16) {
      std::swap(leaves[nLeaf], leaves[random() % leaves.size()]);
      continue;
    }
    leaves.push_back(++leaves[nLeaf]);
  }
  if (nUsed == 1) leaves[0] = 1;
  std::vector<unsigned char> lengths(nSymbols, 0);
  for (std::size_t i = 0; i < leaves.size(); ++i) lengths[i] = leaves[i];
  std::shuffle(lengths.begin(), lengths.end(), random);
  return QXTestCode(lengths);
}

/// A reader as plain as can be: a bit at a time, and an exception behind the end.
class QXSlowReader {
public:
  QXSlowReader(unsigned char const* pBytes, std::size_t nSize) : m_pBytes(pBytes), m_nBits(nSize * 8) {}

  std::uint32_t Read(unsigned int nCount) {
    std::uint32_t nValue = 0;
    for (unsigned int i = 0; i < nCount; ++i, ++m_nNext) {
      if (m_nNext >= m_nBits) throw std::runtime_error("behind the end");
      nValue |= std::uint32_t(m_pBytes[m_nNext / 8] >> (m_nNext % 8) & 1) << i;
    }
    return nValue;
  }
  unsigned int Decode(QXTestCode const& code) {
    unsigned int nCode = 0;
    for (unsigned int nLength = 1; nLength <= 16; ++nLength) {
      nCode = nCode << 1 | Read(1);
      auto const found = code.GetSymbols().find({nLength, nCode});
      if (found != code.GetSymbols().end()) return found->second;
    }
    throw std::runtime_error("no code");
  }

private:
  unsigned char const* m_pBytes;
  std::size_t m_nBits;
  std::size_t m_nNext = 0;
};
