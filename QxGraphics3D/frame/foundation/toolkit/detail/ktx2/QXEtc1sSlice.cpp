#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXEtc1sSlice.h>

#include <utility>

namespace QXC::detail {

namespace {

/// Where the endpoint of a block comes from: two bits a block, four blocks a symbol.
enum QXPrediction : unsigned int { EM_LEFT = 0, EM_ABOVE = 1, EM_ABOVE_LEFT = 2, EM_DELTA = 3 };

/// The symbol above all sets of predictions: the set before, several times.
constexpr unsigned int g_nRepeatPredictions = 256;
/// Shorter runs are stored one by one.
constexpr unsigned int g_nMinRun = 3;
/// The run symbol that says that the length follows in chunks.
constexpr unsigned int g_nLongSelectorRun = 63;

}  // namespace

QXEtc1sSlice::QXEtc1sSlice(
    QXBasisLzTables const& tables, unsigned char const* pBytes, std::uint64_t nSize, std::size_t nBlocksWide)
    : m_Tables(tables), m_Reader(pBytes, nSize), m_arrRow(nBlocksWide), m_arrPredictions((nBlocksWide + 1) / 2),
      m_arrHistory(tables.m_nHistorySize), m_nNextInHistory(tables.m_nHistorySize / 2) {}

bool QXEtc1sSlice::DecodeRow() {
  unsigned int nPredictions = 0;
  unsigned int nAboveLeft = 0;
  for (std::size_t nColumn = 0; nColumn < m_arrRow.size(); ++nColumn) {
    // 56 bits: enough for the three codes of a block. What is longer refills by itself.
    m_Reader.Refill();
    if ((nColumn & 1) == 0) {
      unsigned char& nBelow = m_arrPredictions[nColumn / 2];
      if (!m_bEvenRow) {
        nPredictions = nBelow;
      } else {
        if (!ReadPredictions(nPredictions)) return false;
        nBelow = static_cast<unsigned char>(nPredictions >> 4);
      }
    }
    QXEtc1sBlock& block = m_arrRow[nColumn];
    unsigned int nEndpoint = 0;
    unsigned int nSelector = 0;
    if (!ReadEndpoint(nPredictions & 3, nColumn, nAboveLeft, nEndpoint) || !ReadSelector(nSelector)) return false;
    nPredictions >>= 2;
    nAboveLeft = block.m_nEndpoint;
    m_nLastEndpoint = nEndpoint;
    block.m_nEndpoint = static_cast<std::uint16_t>(nEndpoint);
    block.m_nSelector = static_cast<std::uint16_t>(nSelector);
  }
  m_bFirstRow = false;
  m_bEvenRow = !m_bEvenRow;
  return !m_Reader.IsPastEnd();
}

bool QXEtc1sSlice::ReadPredictions(unsigned int& nPredictions) {
  if (m_nPredictionRun > 0) {
    --m_nPredictionRun;
    nPredictions = m_nLastPredictions;
    return true;
  }
  unsigned int const nSymbol = m_Tables.m_EndpointPrediction.DecodeReady(m_Reader);
  if (nSymbol > g_nRepeatPredictions) return false;
  if (nSymbol == g_nRepeatPredictions) {
    std::uint32_t nMore = 0;
    if (!ReadChunks(4, nMore)) return false;
    m_Reader.Refill();
    m_nPredictionRun = std::uint64_t(nMore) + g_nMinRun - 1;
  } else {
    m_nLastPredictions = nSymbol;
  }
  nPredictions = m_nLastPredictions;
  return true;
}

bool QXEtc1sSlice::ReadEndpoint(
    unsigned int nPrediction, std::size_t nColumn, unsigned int nAboveLeft, unsigned int& nEndpoint) {
  switch (nPrediction) {
  case EM_LEFT: nEndpoint = m_nLastEndpoint; return nColumn > 0;
  case EM_ABOVE: nEndpoint = m_arrRow[nColumn].m_nEndpoint; return !m_bFirstRow;
  case EM_ABOVE_LEFT: nEndpoint = nAboveLeft; return !m_bFirstRow && nColumn > 0;
  default: break;
  }
  std::size_t const nCount = m_Tables.m_arrEndpoints.size();
  unsigned int const nDelta = m_Tables.m_EndpointDelta.DecodeReady(m_Reader);
  if (nDelta == QXHuffman::ms_nNoSymbol) return false;
  nEndpoint = m_nLastEndpoint + nDelta;
  if (nEndpoint >= nCount) nEndpoint -= static_cast<unsigned int>(nCount);
  return nEndpoint < nCount;
}

bool QXEtc1sSlice::ReadSelector(unsigned int& nSelector) {
  if (m_nSelectorRun > 0) {
    --m_nSelectorRun;
    return TakeFromHistory(0, nSelector);
  }
  unsigned int const nSymbol = m_Tables.m_Selector.DecodeReady(m_Reader);
  if (nSymbol == QXHuffman::ms_nNoSymbol) return false;
  unsigned int const nCount = static_cast<unsigned int>(m_Tables.m_arrSelectors.size());
  if (nSymbol < nCount) {
    nSelector = nSymbol;
    AddToHistory(nSymbol);
    return true;
  }
  // Behind the codebook's symbols stand the places of the history, and behind these the run of its first place.
  unsigned int const nPlace = nSymbol - nCount;
  if (nPlace != m_Tables.m_nHistorySize) return TakeFromHistory(nPlace, nSelector);
  return ReadSelectorRun() && TakeFromHistory(0, nSelector);
}

bool QXEtc1sSlice::ReadSelectorRun() {
  unsigned int const nSymbol = m_Tables.m_SelectorRun.Decode(m_Reader);
  if (nSymbol == QXHuffman::ms_nNoSymbol) return false;
  std::uint32_t nMore = nSymbol;
  if (nSymbol == g_nLongSelectorRun && !ReadChunks(7, nMore)) return false;
  m_nSelectorRun = std::uint64_t(nMore) + g_nMinRun - 1;
  return true;
}

bool QXEtc1sSlice::TakeFromHistory(unsigned int nPlace, unsigned int& nSelector) {
  if (nPlace >= m_arrHistory.size()) return false;
  nSelector = m_arrHistory[nPlace];
  // Half way to the front at each use, which is nearly as good as to the front and moves two entries only.
  std::swap(m_arrHistory[nPlace / 2], m_arrHistory[nPlace]);
  return true;
}

void QXEtc1sSlice::AddToHistory(unsigned int nSelector) {
  if (m_arrHistory.empty()) return;
  // New ones go round in the rear half: a selector that is used once does not push out those used often.
  m_arrHistory[m_nNextInHistory] = static_cast<std::uint16_t>(nSelector);
  if (++m_nNextInHistory == m_arrHistory.size()) m_nNextInHistory = m_arrHistory.size() / 2;
}

bool QXEtc1sSlice::ReadChunks(unsigned int nChunkBits, std::uint32_t& nValue) {
  std::uint64_t nSum = 0;
  for (unsigned int nShift = 0; nShift < 32; nShift += nChunkBits) {
    std::uint32_t const nChunk = m_Reader.Read(nChunkBits + 1);
    nSum |= std::uint64_t(nChunk & ((1u << nChunkBits) - 1)) << nShift;
    if ((nChunk >> nChunkBits) != 0) continue;
    nValue = static_cast<std::uint32_t>(nSum);
    return nSum <= UINT32_MAX;
  }
  return false;
}

}  // namespace QXC::detail
