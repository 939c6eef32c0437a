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
  /// What Decode returns for bits that are no code.
  static constexpr unsigned int ms_nNoSymbol = 0xFFFF;

  /// Reads a table: the code lengths, themselves Huffman and run-length coded, then the codes by RFC 1951, 3.2.2.
  /// @return  false if the stream ends early, a run leaves the table or the lengths are no prefix code. A table without
  ///          any code is kept: it only fails when something is decoded with it. So is one of a single code of length 1.
  bool Read(QXBitReader& reader);

  /// Builds the table of nSymbols code lengths, each 0 (no code) to 16.
  bool Build(unsigned char const* pLengths, unsigned int nSymbols);

  /// Takes one code. At least 16 bits must be ready.
  unsigned int DecodeReady(QXBitReader& reader) const;

  /// Takes one code.
  unsigned int Decode(QXBitReader& reader) const {
    if (reader.GetReady() < ms_nMaxCodeLength) reader.Refill();
    return DecodeReady(reader);
  }

private:
  static constexpr unsigned int ms_nFastBits = 10;

  struct QXFastEntry {
    std::uint16_t m_nSymbol = ms_nNoSymbol;
    std::uint16_t m_nLength = 0;  ///< 0: the code is longer than the table's index, or there is none
  };

  unsigned int DecodeLong(QXBitReader& reader) const;

  std::vector<QXFastEntry> m_arrFast;       ///< by the next bits
  std::vector<std::uint16_t> m_arrSymbols;  ///< in the order of their codes
  std::uint32_t m_FirstCode[ms_nMaxCodeLength + 1] = {};
  std::uint32_t m_FirstIndex[ms_nMaxCodeLength + 1] = {};
  std::uint32_t m_CountOf[ms_nMaxCodeLength + 1] = {};
};

inline unsigned int QXHuffman::DecodeReady(QXBitReader& reader) const {
  QXFastEntry const entry = m_arrFast[reader.Peek() & ((1u << ms_nFastBits) - 1)];
  if (entry.m_nLength == 0) return DecodeLong(reader);
  reader.Skip(entry.m_nLength);
  return entry.m_nSymbol;
}

}  // namespace QXC::detail
