/// @file
/// Canonical Huffman codes as BasisLZ stores them.
#pragma once

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBitReader.h>

#include <cstdint>
#include <vector>

namespace QXC::detail {

/// A decoding table, read from a stream or built of code lengths.
class QXHuffman {
public:
  static constexpr unsigned int ms_nMaxCodeLength = 16;
  static constexpr unsigned int ms_nMaxSymbols = 16383;
  /// What Decode returns for bits that are no code; above every symbol.
  static constexpr unsigned int ms_nNoSymbol = 0xFFFF;

  /// Reads a table: its code lengths, themselves Huffman and run-length coded; the codes follow from the lengths by
  /// RFC 1951, 3.2.2.
  /// @return  false if the stream ends early, a run leaves the table or the lengths are no prefix code; nothing then
  ///          decodes. A table of no symbols is kept, since files have them for values that never occur: it fails when
  ///          something is decoded with it.
  bool Read(QXBitReader& reader);

  /// Builds the table of nSymbols code lengths, each 0 (no code) to 16. The codes must fill the code space, but for a
  /// single one, which leaves the rest of the space without meaning.
  bool Build(unsigned char const* pLengths, unsigned int nSymbols);

  /// Takes one code; at least 16 bits must be ready. Bits that are no code are not taken.
  unsigned int DecodeReady(QXBitReader& reader) const {
    QXEntry entry = m_arrEntries[reader.Peek() & m_nMask];
    if (entry.m_nSubBits != 0) {
      entry = m_arrEntries[entry.m_nValue + ((reader.Peek() >> ms_nFastBits) & ((1u << entry.m_nSubBits) - 1))];
    }
    reader.Skip(entry.m_nLength);
    return entry.m_nValue;
  }

  /// Takes one code.
  unsigned int Decode(QXBitReader& reader) const {
    if (reader.GetReady() < ms_nMaxCodeLength) reader.Refill();
    return DecodeReady(reader);
  }

private:
  /// Longer codes go on in a second table, which keeps both small enough for the first-level cache.
  static constexpr unsigned int ms_nFastBits = 11;

  struct QXEntry {
    std::uint32_t m_nValue = ms_nNoSymbol;  ///< symbol, or where the second table begins
    std::uint16_t m_nLength = 0;            ///< of the whole code
    std::uint16_t m_nSubBits = 0;           ///< index bits of the second table; 0: this is a symbol
  };

  void Clear();
  void AddSecondTables(unsigned char const* pLengths, std::uint16_t const* pCodes, unsigned int nSymbols);
  void AddCode(unsigned int nSymbol, unsigned int nCode, unsigned int nLength);

  std::vector<QXEntry> m_arrEntries = std::vector<QXEntry>(1);
  std::uint32_t m_nMask = 0;
};

}  // namespace QXC::detail
