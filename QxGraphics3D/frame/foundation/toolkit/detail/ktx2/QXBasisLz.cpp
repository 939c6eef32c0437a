#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBasisLz.h>

#include <algorithm>
#include <cstring>

namespace QXC::detail {

namespace {

constexpr std::uint64_t g_nHeaderSize = 20;
constexpr std::uint64_t g_nImageDescSize = 20;
constexpr std::uint32_t g_nPFrame = 2;

std::uint32_t Load16(unsigned char const* pBytes) {
  return pBytes[0] | (std::uint32_t(pBytes[1]) << 8);
}
std::uint32_t Load32(unsigned char const* pBytes) {
  return Load16(pBytes) | (Load16(pBytes + 2) << 16);
}

bool IsInside(std::uint64_t nOffset, std::uint64_t nLength, std::uint64_t nSize) {
  return nOffset <= nSize && nLength <= nSize - nOffset;
}

/// Channels of the endpoint codebook are stored as differences, with a code for each third of the range they are in.
unsigned int ThirdOf(unsigned int nChannel) {
  return nChannel < 10 ? 0 : nChannel < 22 ? 1 : 2;
}

/// Writes what of a block lies inside the picture. bAlpha: its green goes into the alpha of what is there.
template <bool bAlpha>
void Paint(QXEtc1sEndpoint const& endpoint, std::uint32_t nSelectors, unsigned char* pRgba, std::size_t nPitch,
    unsigned int nColumns, unsigned int nRows) {
  for (unsigned int nRow = 0; nRow < nRows; ++nRow) {
    std::uint32_t nRowSelectors = nSelectors >> (8 * nRow);
    unsigned char* pPixel = pRgba + nRow * nPitch;
    for (unsigned int nColumn = 0; nColumn < nColumns; ++nColumn) {
      unsigned char const* pColor = endpoint.m_Colors[nRowSelectors & 3];
      if constexpr (bAlpha)
        pPixel[3] = pColor[1];
      else
        std::memcpy(pPixel, pColor, 4);
      nRowSelectors >>= 2;
      pPixel += 4;
    }
  }
}

template <bool bAlpha>
void PaintRow(QXBasisLzTables const& tables, std::vector<QXEtc1sBlock> const& row, unsigned char* pRgba,
    unsigned int nWidth, unsigned int nRows) {
  std::size_t const nPitch = std::size_t(nWidth) * 4;
  std::size_t const nWhole = nRows == 4 ? nWidth / 4 : 0;
  for (std::size_t i = 0; i < row.size(); ++i) {
    QXEtc1sEndpoint const& endpoint = tables.m_arrEndpoints[row[i].m_nEndpoint];
    std::uint32_t const nSelectors = tables.m_arrSelectors[row[i].m_nSelector];
    unsigned char* pBlock = pRgba + i * 16;
    // Constants let the compiler unroll the blocks that are whole, which nearly all are.
    if (i < nWhole) {
      Paint<bAlpha>(endpoint, nSelectors, pBlock, nPitch, 4, 4);
    } else {
      unsigned int const nLeft = nWidth - static_cast<unsigned int>(i) * 4;
      Paint<bAlpha>(endpoint, nSelectors, pBlock, nPitch, std::min(nLeft, 4u), nRows);
    }
  }
}

}  // namespace

bool QXBasisLz::Init(unsigned char const* pGlobalData, std::uint64_t nSize, unsigned int nImageCount) {
  if (Read(pGlobalData, nSize, nImageCount)) return true;
  m_arrImages.clear();
  return false;
}

bool QXBasisLz::HasAlphaSlice(unsigned int nImage) const {
  return nImage < m_arrImages.size() && m_arrImages[nImage].m_nAlphaLength != 0;
}

bool QXBasisLz::Read(unsigned char const* pGlobalData, std::uint64_t nSize, unsigned int nImageCount) {
  if (nSize < g_nHeaderSize || nImageCount == 0) return false;
  std::uint32_t const nEndpoints = Load16(pGlobalData);
  std::uint32_t const nSelectors = Load16(pGlobalData + 2);
  std::uint64_t const nEndpointBytes = Load32(pGlobalData + 4);
  std::uint64_t const nSelectorBytes = Load32(pGlobalData + 8);
  std::uint64_t const nTableBytes = Load32(pGlobalData + 12);
  // The last length is of data that ETC1S has not, and nothing may follow what the lengths add up to.
  if (Load32(pGlobalData + 16) != 0 || nEndpoints == 0 || nSelectors == 0) return false;
  std::uint64_t const nDescBytes = g_nImageDescSize * nImageCount;
  if (nSize != g_nHeaderSize + nDescBytes + nEndpointBytes + nSelectorBytes + nTableBytes) return false;

  unsigned char const* const pDescs = pGlobalData + g_nHeaderSize;
  unsigned char const* const pEndpoints = pDescs + nDescBytes;
  unsigned char const* const pSelectors = pEndpoints + nEndpointBytes;
  unsigned char const* const pTables = pSelectors + nSelectorBytes;
  return ReadImages(pDescs, nImageCount) &&
         ReadEndpoints(QXBitReader(pEndpoints, nEndpointBytes), nEndpointBytes * 8, nEndpoints) &&
         ReadSelectors(QXBitReader(pSelectors, nSelectorBytes), nSelectorBytes * 8, nSelectors) &&
         ReadSliceTables(QXBitReader(pTables, nTableBytes));
}

bool QXBasisLz::ReadImages(unsigned char const* pDescs, unsigned int nImageCount) {
  m_arrImages.assign(nImageCount, QXImageDesc());
  for (QXImageDesc& image : m_arrImages) {
    image.m_bPFrame = (Load32(pDescs) & g_nPFrame) != 0;
    image.m_nRgbOffset = Load32(pDescs + 4);
    image.m_nRgbLength = Load32(pDescs + 8);
    image.m_nAlphaOffset = Load32(pDescs + 12);
    image.m_nAlphaLength = Load32(pDescs + 16);
    if (image.m_nRgbLength == 0) return false;
    pDescs += g_nImageDescSize;
  }
  return true;
}

bool QXBasisLz::ReadEndpoints(QXBitReader reader, std::uint64_t nBits, unsigned int nCount) {
  QXHuffman colorDelta[3];
  QXHuffman tableDelta;
  for (QXHuffman& table : colorDelta) {
    if (!table.Read(reader)) return false;
  }
  if (!tableDelta.Read(reader)) return false;
  bool const bGrey = reader.Read(1) != 0;
  unsigned int const nChannels = bGrey ? 1 : 3;
  // Each code takes a bit at least, so a count that the bytes cannot hold costs neither memory nor time.
  if (std::uint64_t(nCount) * (nChannels + 1) > nBits) return false;

  m_Tables.m_arrEndpoints.clear();
  m_Tables.m_arrEndpoints.reserve(nCount);
  unsigned int channels[3] = {16, 16, 16};
  unsigned int nTable = 0;
  for (unsigned int i = 0; i < nCount; ++i) {
    unsigned int const nTableDelta = tableDelta.Decode(reader);
    if (nTableDelta == QXHuffman::ms_nNoSymbol) return false;
    nTable = (nTable + nTableDelta) & 7;
    for (unsigned int nChannel = 0; nChannel < nChannels; ++nChannel) {
      unsigned int const nDelta = colorDelta[ThirdOf(channels[nChannel])].Decode(reader);
      if (nDelta == QXHuffman::ms_nNoSymbol) return false;
      channels[nChannel] = (channels[nChannel] + nDelta) & 31;
    }
    if (bGrey) channels[1] = channels[2] = channels[0];
    m_Tables.m_arrEndpoints.push_back(UnfoldEtc1sEndpoint(channels[0], channels[1], channels[2], nTable));
  }
  return !reader.IsPastEnd();
}

bool QXBasisLz::ReadSelectors(QXBitReader reader, std::uint64_t nBits, unsigned int nCount) {
  if (reader.Read(2) != 0) return false;
  bool const bRaw = reader.Read(1) != 0;
  QXHuffman rowDelta;
  if (!bRaw && !rowDelta.Read(reader)) return false;
  if (std::uint64_t(nCount) * (bRaw ? 32 : 4) > nBits) return false;

  m_Tables.m_arrSelectors.clear();
  m_Tables.m_arrSelectors.reserve(nCount);
  std::uint32_t nSelectors = 0;
  for (unsigned int i = 0; i < nCount; ++i) {
    if (bRaw || i == 0) {
      nSelectors = reader.Read(32);
    } else {
      for (unsigned int nRow = 0; nRow < 4; ++nRow) {
        unsigned int const nDelta = rowDelta.Decode(reader);
        if (nDelta > 255) return false;
        nSelectors ^= nDelta << (8 * nRow);
      }
    }
    m_Tables.m_arrSelectors.push_back(nSelectors);
  }
  return !reader.IsPastEnd();
}

bool QXBasisLz::ReadSliceTables(QXBitReader reader) {
  if (!m_Tables.m_EndpointPrediction.Read(reader) || !m_Tables.m_EndpointDelta.Read(reader) ||
      !m_Tables.m_Selector.Read(reader) || !m_Tables.m_SelectorRun.Read(reader)) {
    return false;
  }
  m_Tables.m_nHistorySize = reader.Read(13);
  return !reader.IsPastEnd();
}

bool QXBasisLz::DecodeImage(unsigned int nImage, unsigned char const* pLevel, std::uint64_t nLevelSize,
    unsigned int nWidth, unsigned int nHeight, unsigned char* pRgba) const {
  if (nImage >= m_arrImages.size() || nWidth == 0 || nHeight == 0) return false;
  QXImageDesc const& image = m_arrImages[nImage];
  // It holds what changed since another image, which is not at hand.
  if (image.m_bPFrame) return false;
  bool const bAlpha = image.m_nAlphaLength != 0;
  if (!IsInside(image.m_nRgbOffset, image.m_nRgbLength, nLevelSize)) return false;
  if (bAlpha && !IsInside(image.m_nAlphaOffset, image.m_nAlphaLength, nLevelSize)) return false;

  std::size_t const nBlocksWide = (std::size_t(nWidth) + 3) / 4;
  QXEtc1sSlice rgb(m_Tables, pLevel + image.m_nRgbOffset, image.m_nRgbLength, nBlocksWide);
  unsigned char const* const pAlpha = bAlpha ? pLevel + image.m_nAlphaOffset : pLevel;
  QXEtc1sSlice alpha(m_Tables, pAlpha, image.m_nAlphaLength, bAlpha ? nBlocksWide : 0);
  // Both slices go down the picture together, so that alpha finds the pixels of its row in the cache.
  for (std::uint64_t nTop = 0; nTop < nHeight; nTop += 4) {
    unsigned int const nRows = static_cast<unsigned int>(std::min<std::uint64_t>(4, nHeight - nTop));
    unsigned char* const pRow = pRgba + nTop * nWidth * 4;
    if (!rgb.DecodeRow()) return false;
    PaintRow<false>(m_Tables, rgb.GetRow(), pRow, nWidth, nRows);
    if (!bAlpha) continue;
    if (!alpha.DecodeRow()) return false;
    PaintRow<true>(m_Tables, alpha.GetRow(), pRow, nWidth, nRows);
  }
  return true;
}

}  // namespace QXC::detail
