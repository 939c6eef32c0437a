/// @file
/// The block indices of one BasisLZ slice, row by row.
#pragma once

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBitReader.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXEtc1s.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXHuffman.h>

#include <cstdint>
#include <vector>

namespace QXC::detail {

/// What all slices of a file are decoded with.
struct QXBasisLzTables {
  std::vector<QXEtc1sEndpoint> m_arrEndpoints;
  std::vector<std::uint32_t> m_arrSelectors;  ///< a byte a row, top row lowest; the left pixel in its two lowest bits
  QXHuffman m_EndpointPrediction;
  QXHuffman m_EndpointDelta;
  QXHuffman m_Selector;
  QXHuffman m_SelectorRun;
  unsigned int m_nHistorySize = 0;
};

/// One block as references into the codebooks.
struct QXEtc1sBlock {
  std::uint16_t m_nEndpoint = 0;
  std::uint16_t m_nSelector = 0;
};

/// Decodes the rows of a slice in order. Every index that it hands out exists in its codebook.
class QXEtc1sSlice {
public:
  /// Tables and bytes are borrowed. What is allocated here is bounded by the width of the picture.
  QXEtc1sSlice(
      QXBasisLzTables const& tables, unsigned char const* pBytes, std::uint64_t nSize, std::size_t nBlocksWide);

  /// Decodes the next row. false if the slice ends before the row does or refers to what does not exist; the row then
  /// is of no use, nor is any after it.
  bool DecodeRow();

  /// The row that DecodeRow made.
  std::vector<QXEtc1sBlock> const& GetRow() const { return m_arrRow; }

private:
  bool ReadPredictions(unsigned int& nPredictions);
  bool ReadEndpoint(unsigned int nPrediction, std::size_t nColumn, unsigned int nAboveLeft, unsigned int& nEndpoint);
  bool ReadSelector(unsigned int& nSelector);
  bool ReadSelectorRun();
  bool TakeFromHistory(unsigned int nPlace, unsigned int& nSelector);
  void AddToHistory(unsigned int nSelector);
  bool ReadChunks(unsigned int nChunkBits, std::uint32_t& nValue);

  QXBasisLzTables const& m_Tables;
  QXBitReader m_Reader;
  std::vector<QXEtc1sBlock> m_arrRow;           ///< before a block is decoded: the one above it
  std::vector<unsigned char> m_arrPredictions;  ///< of pairs of blocks in the odd row, read with the even one
  std::vector<std::uint16_t> m_arrHistory;      ///< selectors used lately, the often used ones towards the front
  std::size_t m_nNextInHistory = 0;
  std::uint64_t m_nPredictionRun = 0;
  std::uint64_t m_nSelectorRun = 0;
  unsigned int m_nLastPredictions = 0;
  unsigned int m_nLastEndpoint = 0;  ///< of the block before, the last one of the row above included
  bool m_bFirstRow = true;
  bool m_bEvenRow = true;
};

}  // namespace QXC::detail
