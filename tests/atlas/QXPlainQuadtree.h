// The allocator as one would write it down first: a recursion over the marks, nothing kept beside them. What the fast
// one is compared with; too slow for anything else.
#pragma once

#include <cmath>
#include <cstddef>
#include <map>
#include <vector>

namespace QXC {

/// Which of the three kinds of atlas.
enum class QXPlainKind { Render, Image, Glyph };

struct QXPlainTile {
  int m_nRow = -1;
  int m_nCol = -1;
  int m_nLod = -1;
  int m_nIndex = -1;
};

struct QXPlainPage {
  unsigned int m_nFormat = 0;
  unsigned int m_nCompression = 0;
  std::vector<unsigned char> m_arrGrid;
  int m_nUsedCount = 0;
};

class QXPlainQuadtree {
public:
  QXPlainQuadtree(QXPlainKind eKind, int nPageSize) : m_eKind(eKind), m_nPageSize(nPageSize) {}

  /// Search, new page, mark and count; the size lies between 1 and the page's edge.
  bool Place(unsigned int nSize, unsigned int nFormat, unsigned int nCompression, int nCurrent, QXPlainTile& tile) {
    bool bFound = false;
    if (m_eKind == QXPlainKind::Glyph) {
      auto const start = m_mapPages.find(nCurrent);
      for (auto page = start; page != m_mapPages.end() && !bFound; ++page) bFound = Search(*page, nSize, tile);
      for (auto page = m_mapPages.begin(); page != start && !bFound; ++page) bFound = Search(*page, nSize, tile);
      if (bFound) SetCell(tile, 1);
      return bFound;
    }
    for (auto page = m_mapPages.begin(); page != m_mapPages.end() && !bFound; ++page) {
      bool const bOther = page->second.m_nFormat != nFormat || page->second.m_nCompression != nCompression;
      if (m_eKind == QXPlainKind::Image && bOther) continue;
      bFound = Search(*page, nSize, tile);
    }
    if (!bFound) {
      int const nIndex = AddPage(nFormat, nCompression);
      int const nQuotient = m_nPageSize / static_cast<int>(nSize);
      int const nHalf = static_cast<int>(nSize >> 1);
      tile = {nHalf, nHalf, static_cast<int>(std::log(static_cast<double>(nQuotient)) / std::log(2.0)), nIndex};
    }
    SetCell(tile, 1);
    ++m_mapPages.at(tile.m_nIndex).m_nUsedCount;
    return true;
  }

  /// On one page, whatever its format.
  bool PlaceIn(int nIndex, unsigned int nSize, QXPlainTile& tile) {
    auto const page = m_mapPages.find(nIndex);
    if (page == m_mapPages.end() || !Search(*page, nSize, tile)) return false;
    SetCell(tile, 1);
    if (m_eKind != QXPlainKind::Glyph) ++page->second.m_nUsedCount;
    return true;
  }

  int AddPage(unsigned int nFormat, unsigned int nCompression) {
    int nIndex = 0;
    while (m_mapPages.count(nIndex) != 0) ++nIndex;
    auto const nStride = static_cast<std::size_t>(m_nPageSize) + 1;
    m_mapPages[nIndex] = {nFormat, nCompression, std::vector<unsigned char>(nStride * nStride), 0};
    return nIndex;
  }

  void Release(QXPlainTile const& tile) {
    SetCell(tile, 0);
    if (m_eKind != QXPlainKind::Glyph) --m_mapPages.at(tile.m_nIndex).m_nUsedCount;
  }

  void SetCell(QXPlainTile const& tile, unsigned char nMark) {
    m_mapPages.at(tile.m_nIndex).m_arrGrid[Cell(tile.m_nRow, tile.m_nCol)] = nMark;
  }

  /// The first node of the right size that is free on one page.
  bool Search(std::pair<int const, QXPlainPage> const& page, unsigned int nSize, QXPlainTile& tile) const {
    bool bFound = false;
    Split(m_nPageSize / 2, m_nPageSize / 2, m_nPageSize, nSize, page.second.m_arrGrid, bFound, tile);
    if (bFound) tile.m_nIndex = page.first;
    return bFound;
  }

  std::map<int, QXPlainPage> m_mapPages;

private:
  using Grid = std::vector<unsigned char>;

  std::size_t Cell(int nRow, int nCol) const { return static_cast<std::size_t>(nRow * (m_nPageSize + 1) + nCol); }

  void Split(
      int nRow, int nCol, int nSize, unsigned int nWanted, Grid const& arrGrid, bool& bFound, QXPlainTile& tile) const {
    int const nHalf = nSize >> 1;
    if (nHalf == 1 || arrGrid[Cell(nRow, nCol)] != 0 || bFound) return;
    int const nQuarter = nSize >> 2;
    int nTarget = 1;
    while (static_cast<unsigned int>(nTarget) < nWanted) nTarget *= 2;
    if (nSize > nTarget) {
      Split(nRow - nQuarter, nCol - nQuarter, nHalf, nWanted, arrGrid, bFound, tile);
      Split(nRow - nQuarter, nCol + nQuarter, nHalf, nWanted, arrGrid, bFound, tile);
      Split(nRow + nQuarter, nCol - nQuarter, nHalf, nWanted, arrGrid, bFound, tile);
      Split(nRow + nQuarter, nCol + nQuarter, nHalf, nWanted, arrGrid, bFound, tile);
    } else if (nSize == nTarget) {
      bool const bUsed = m_eKind == QXPlainKind::Glyph ? IsUsed(nRow - nQuarter, nCol - nQuarter, nHalf, arrGrid)
                                                       : IsUsed(nRow, nCol, nSize, arrGrid);
      if (bUsed) return;
      bFound = true;
      tile.m_nRow = nRow;
      tile.m_nCol = nCol;
      tile.m_nLod = static_cast<int>(std::log(static_cast<double>(m_nPageSize / nSize)) / std::log(2.0));
    }
  }

  bool IsUsed(int nRow, int nCol, int nSize, Grid const& arrGrid) const {
    if (arrGrid[Cell(nRow, nCol)] != 0) return true;
    int const nHalf = nSize >> 1;
    if (nHalf == 1) return false;
    int const nQuarter = nSize >> 2;
    if (IsUsed(nRow - nQuarter, nCol - nQuarter, nHalf, arrGrid)) return true;
    if (m_eKind == QXPlainKind::Glyph) return false;
    return IsUsed(nRow + nQuarter, nCol - nQuarter, nHalf, arrGrid) ||
           IsUsed(nRow + nQuarter, nCol + nQuarter, nHalf, arrGrid) ||
           IsUsed(nRow - nQuarter, nCol + nQuarter, nHalf, arrGrid);
  }

  QXPlainKind m_eKind;
  int m_nPageSize;
};

}  // namespace QXC
