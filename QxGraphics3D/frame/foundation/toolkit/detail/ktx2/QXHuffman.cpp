#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXHuffman.h>

#include <algorithm>

namespace QXC::detail {

namespace {

constexpr unsigned int g_nLengthSymbols = 21;

/// Lengths that are seldom used stand last, so that their own lengths need not be stored.
constexpr unsigned char g_LengthOrder[g_nLengthSymbols] = {
    17, 18, 19, 20, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15, 16};

/// What the length symbols 17 to 20 stand for.
struct QXRun {
  unsigned int m_nBits;
  unsigned int m_nMinimum;
  bool m_bRepeat;  ///< of the length before, else of 0
};
constexpr QXRun g_Runs[4] = {{3, 3, false}, {7, 11, false}, {2, 3, true}, {7, 7, true}};

unsigned int Reverse(unsigned int nCode, unsigned int nLength) {
  unsigned int nReversed = 0;
  for (unsigned int i = 0; i < nLength; ++i) nReversed |= ((nCode >> i) & 1) << (nLength - 1 - i);
  return nReversed;
}

bool ReadLengths(QXBitReader& reader, QXHuffman const& lengthCode, std::vector<unsigned char>& lengths) {
  std::size_t nDone = 0;
  while (nDone < lengths.size()) {
    unsigned int const nSymbol = lengthCode.Decode(reader);
    if (nSymbol >= g_nLengthSymbols) return false;
    if (nSymbol <= QXHuffman::ms_nMaxCodeLength) {
      lengths[nDone++] = static_cast<unsigned char>(nSymbol);
      continue;
    }
    QXRun const& run = g_Runs[nSymbol - 17];
    std::size_t const nCount = run.m_nMinimum + reader.Read(run.m_nBits);
    if (nCount > lengths.size() - nDone) return false;
    if (run.m_bRepeat && (nDone == 0 || lengths[nDone - 1] == 0)) return false;
    std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(nDone), nCount,
        run.m_bRepeat ? lengths[nDone - 1] : static_cast<unsigned char>(0));
    nDone += nCount;
  }
  return !reader.IsPastEnd();
}

}  // namespace

void QXHuffman::Clear() {
  m_arrEntries.assign(1, QXEntry());
  m_nMask = 0;
}

bool QXHuffman::Read(QXBitReader& reader) {
  Clear();
  unsigned int const nSymbols = reader.Read(14);
  if (nSymbols == 0) return !reader.IsPastEnd();
  unsigned int const nStored = reader.Read(5);
  if (nStored < 1 || nStored > g_nLengthSymbols) return false;
  unsigned char lengthLengths[g_nLengthSymbols] = {};
  for (unsigned int i = 0; i < nStored; ++i) {
    lengthLengths[g_LengthOrder[i]] = static_cast<unsigned char>(reader.Read(3));
  }
  QXHuffman lengthCode;
  std::vector<unsigned char> lengths(nSymbols);
  return lengthCode.Build(lengthLengths, g_nLengthSymbols) && ReadLengths(reader, lengthCode, lengths) &&
         Build(lengths.data(), nSymbols);
}

bool QXHuffman::Build(unsigned char const* pLengths, unsigned int nSymbols) {
  Clear();
  unsigned int counts[ms_nMaxCodeLength + 1] = {};
  unsigned int nUsed = 0;
  for (unsigned int i = 0; i < nSymbols; ++i) {
    if (pLengths[i] > ms_nMaxCodeLength) return false;
    if (pLengths[i] != 0) ++nUsed;
    ++counts[pLengths[i]];
  }
  if (nUsed == 0) return true;
  unsigned int next[ms_nMaxCodeLength + 1] = {};
  unsigned int nCode = 0;
  for (unsigned int nLength = 1; nLength <= ms_nMaxCodeLength; ++nLength) {
    nCode = (nCode + (nLength > 1 ? counts[nLength - 1] : 0)) << 1;
    next[nLength] = nCode;
    if (nCode + counts[nLength] > (1u << nLength)) return false;
  }
  bool const bFull = next[ms_nMaxCodeLength] + counts[ms_nMaxCodeLength] == (1u << ms_nMaxCodeLength);
  if (!bFull && nUsed != 1) return false;

  std::vector<std::uint16_t> codes(nSymbols);
  for (unsigned int i = 0; i < nSymbols; ++i) {
    if (pLengths[i] != 0) codes[i] = static_cast<std::uint16_t>(Reverse(next[pLengths[i]]++, pLengths[i]));
  }
  m_arrEntries.assign(1u << ms_nFastBits, QXEntry());
  m_nMask = (1u << ms_nFastBits) - 1;
  AddSecondTables(pLengths, codes.data(), nSymbols);
  for (unsigned int i = 0; i < nSymbols; ++i) {
    if (pLengths[i] != 0) AddCode(i, codes[i], pLengths[i]);
  }
  return true;
}

void QXHuffman::AddSecondTables(unsigned char const* pLengths, std::uint16_t const* pCodes, unsigned int nSymbols) {
  for (unsigned int i = 0; i < nSymbols; ++i) {
    if (pLengths[i] <= ms_nFastBits) continue;
    QXEntry& first = m_arrEntries[pCodes[i] & m_nMask];
    first.m_nSubBits = std::max(first.m_nSubBits, static_cast<std::uint16_t>(pLengths[i] - ms_nFastBits));
  }
  for (std::uint32_t i = 0; i <= m_nMask; ++i) {
    if (m_arrEntries[i].m_nSubBits == 0) continue;
    m_arrEntries[i].m_nValue = static_cast<std::uint32_t>(m_arrEntries.size());
    m_arrEntries.resize(m_arrEntries.size() + (std::size_t(1) << m_arrEntries[i].m_nSubBits));
  }
}

void QXHuffman::AddCode(unsigned int nSymbol, unsigned int nCode, unsigned int nLength) {
  QXEntry entry;
  entry.m_nValue = nSymbol;
  entry.m_nLength = static_cast<std::uint16_t>(nLength);
  if (nLength <= ms_nFastBits) {
    for (unsigned int i = nCode; i <= m_nMask; i += 1u << nLength) m_arrEntries[i] = entry;
    return;
  }
  QXEntry const first = m_arrEntries[nCode & m_nMask];
  for (unsigned int i = nCode >> ms_nFastBits; i < (1u << first.m_nSubBits); i += 1u << (nLength - ms_nFastBits)) {
    m_arrEntries[first.m_nValue + i] = entry;
  }
}

}  // namespace QXC::detail
