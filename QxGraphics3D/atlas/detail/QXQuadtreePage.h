/// @file
/// One page of an atlas: which of its tiles are taken.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace QXC::detail {

/// A quadtree laid over a square page. Nodes are squares of 2 to the page's edge in pixels; each is named by the cell at
/// its centre, and a tile marks that one cell of the node it stands on. A grid of bytes holds the marks, (edge + 1) by
/// (edge + 1) cells, row by row.
///
/// Beside the grid stands, for every node of 8 and more pixels, a word about its four children: for each size whether a
/// tile of it could still be put into that child. The words follow from the marks alone and say what walking through
/// the tree would find; a mark or its clearing brings those on the way to the root up to date.
///
/// Cost: all operations take one step a level, 9 for a page of 2048. A page is one zeroed block (1.2 MB for 1024 pixels,
/// 4.9 MB for 2048) of which the system only provides what is touched.
class QXQuadtreePage {
public:
  /// @param nSize         edge in pixels, a power of two from 4 to 2048
  /// @param bTopLeftOnly  whether a free node may have tiles below it outside the chain of its upper left descendants
  QXQuadtreePage(int nSize, bool bTopLeftOnly);

  /// Bit k is set if no tile of 2^k pixels can be placed, for the powers from 4 pixels to the page's edge.
  unsigned int GetRefused() const { return m_nRoot; }
  /// The centre of the first free node of 2^nPower pixels: of four children first the upper left, then the upper right,
  /// the lower left and the lower right, each with everything below it. Bit nPower is not set in GetRefused().
  void Find(int nPower, int& nRow, int& nCol) const;

  /// Sets or clears the mark of a cell, whatever node it belongs to, or none. False if the cell is none of the grid's.
  bool Mark(int nRow, int nCol);
  bool Clear(int nRow, int nCol);
  bool IsMarked(int nRow, int nCol) const { return IsCell(nRow, nCol) && m_pGrid[GetCell(nRow, nCol)] != 0; }

  int GetSize() const { return 1 << m_nPower; }
  /// Cells of a row of the grid.
  int GetStride() const { return GetSize() + 1; }
  /// GetStride() rows of GetStride() bytes, each 0 or 1.
  unsigned char const* GetGrid() const { return m_pGrid.get(); }

private:
  struct Freeing {
    void operator()(void* pBlock) const { std::free(pBlock); }
  };

  bool IsCell(int nRow, int nCol) const { return nRow >= 0 && nRow < GetStride() && nCol >= 0 && nCol < GetStride(); }
  std::size_t GetCell(int nRow, int nCol) const {
    return static_cast<std::size_t>(nRow) * static_cast<std::size_t>(GetStride()) + static_cast<std::size_t>(nCol);
  }
  /// Brings the summaries in step with a cell that was just written.
  void UpdateFrom(int nRow, int nCol);
  /// What the cells say about a node of 4 pixels.
  unsigned int SumUpCells(int nRow, int nCol) const;
  /// What the children's word says about an unmarked node of 2^nPower pixels, 8 or more.
  unsigned int SumUpChildren(std::uint64_t nChildren, int nPower) const;

  /// The edge is 2 to this.
  int m_nPower;
  bool m_bTopLeftOnly;
  std::unique_ptr<unsigned char[], Freeing> m_pGrid;
  /// Behind the grid in the same block. The nodes of 8 and more pixels as a heap with four children a node, in the
  /// order of the search; four lanes of 16 bits a word, one for each child. Bit k of a lane is set if no tile of 2^k can
  /// be put there; all bits up to the child's own size and bit 0 are set if the child itself is marked. An empty page is
  /// all zeros.
  std::uint64_t* m_pChildren;
  /// As a lane, for the root.
  unsigned int m_nRoot = 0;
};

}  // namespace QXC::detail
