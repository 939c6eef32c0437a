#include <QxGraphics3D/atlas/detail/QXQuadtreePage.h>

#include <bit>
#include <new>

namespace QXC::detail {

namespace {

constexpr std::uint64_t g_nLanes = 0x0001000100010001;

/// The bits of a number of 16 bits, each with a zero bit behind it.
constexpr std::uint32_t Spread(std::uint32_t nBits) {
  nBits = (nBits | nBits << 8) & 0x00FF00FF;
  nBits = (nBits | nBits << 4) & 0x0F0F0F0F;
  nBits = (nBits | nBits << 2) & 0x33333333;
  return (nBits | nBits << 1) & 0x55555555;
}

/// Nodes above those of a level of the tree: 0 for the root, 1, 5, 21...
constexpr std::size_t CountAbove(int nLevel) {
  return ((std::size_t{1} << (2 * nLevel)) - 1) / 3;
}

/// What a marked node of 2^nPower pixels says: no tile of any size. Bit 0 tells it from a node that is merely full.
constexpr unsigned int MarkedLane(int nPower) {
  return (2U << nPower) - 1;
}

}  // namespace

QXQuadtreePage::QXQuadtreePage(int nSize, bool bTopLeftOnly)
    : m_nPower(std::countr_zero(static_cast<unsigned int>(nSize))), m_bTopLeftOnly(bTopLeftOnly) {
  auto const nStride = static_cast<std::size_t>(GetStride());
  std::size_t const nGridBytes = (nStride * nStride + 63) / 64 * 64;
  std::size_t const nWords = CountAbove(m_nPower - 2);
  // calloc, since the system's own zeroed pages then stay untouched until a tile comes to lie on them.
  m_pGrid.reset(static_cast<unsigned char*>(std::calloc(nGridBytes + nWords * sizeof(std::uint64_t), 1)));
  if (!m_pGrid) throw std::bad_alloc();
  m_pChildren = reinterpret_cast<std::uint64_t*>(m_pGrid.get() + nGridBytes);
}

void QXQuadtreePage::Find(int nPower, int& nRow, int& nCol) const {
  std::uint64_t const nAsked = g_nLanes << nPower;
  std::size_t nNode = 0;
  int nY = 0;
  int nX = 0;
  for (int nLevel = m_nPower; nLevel > nPower; --nLevel) {
    int const nChild = std::countr_zero(~m_pChildren[nNode] & nAsked) / 16;
    nNode = 4 * nNode + 1 + static_cast<std::size_t>(nChild);
    nY = 2 * nY + nChild / 2;
    nX = 2 * nX + nChild % 2;
  }
  nRow = ((2 * nY + 1) << nPower) / 2;
  nCol = ((2 * nX + 1) << nPower) / 2;
}

bool QXQuadtreePage::Mark(int nRow, int nCol) {
  if (!IsCell(nRow, nCol)) return false;
  m_pGrid[GetCell(nRow, nCol)] = 1;
  UpdateFrom(nRow, nCol);
  return true;
}

bool QXQuadtreePage::Clear(int nRow, int nCol) {
  if (!IsCell(nRow, nCol)) return false;
  m_pGrid[GetCell(nRow, nCol)] = 0;
  UpdateFrom(nRow, nCol);
  return true;
}

void QXQuadtreePage::UpdateFrom(int nRow, int nCol) {
  // The centre of a node of 2^k pixels is an odd multiple of 2^(k-1) in both directions. A tile of 1 pixel marks the
  // cell (0, 0), and one whose size is no power of two some cell between: no search ever looks there.
  auto const nY = static_cast<unsigned int>(nRow);
  auto const nX = static_cast<unsigned int>(nCol);
  int nPower = std::countr_zero(nY) + 1;
  if (nY == 0 || nX == 0 || nPower > m_nPower || std::countr_zero(nX) + 1 != nPower) return;
  // A node of 2 pixels takes no tile itself, but its mark keeps the nodes around it from being free.
  if (nPower == 1) {
    nPower = 2;
    nRow = (nRow & ~3) + 2;
    nCol = (nCol & ~3) + 2;
  }
  std::size_t nNode = CountAbove(m_nPower - nPower) + (Spread(static_cast<unsigned int>(nRow) >> nPower) << 1 |
                                                          Spread(static_cast<unsigned int>(nCol) >> nPower));
  unsigned int nLane = 0;
  if (m_pGrid[GetCell(nRow, nCol)] != 0) {
    nLane = MarkedLane(nPower);
  } else {
    nLane = nPower == 2 ? SumUpCells(nRow, nCol) : SumUpChildren(m_pChildren[nNode], nPower);
  }
  for (; nPower < m_nPower; ++nPower) {
    unsigned int const nShift = 16 * ((nNode - 1) % 4);
    nNode = (nNode - 1) / 4;
    std::uint64_t const nOld = m_pChildren[nNode];
    std::uint64_t const nNew = (nOld & ~(std::uint64_t{0xFFFF} << nShift)) | std::uint64_t{nLane} << nShift;
    if (nNew == nOld) return;
    m_pChildren[nNode] = nNew;
    // A marked node says the same whatever stands below it.
    bool const bRoot = nNode == 0;
    unsigned int const nParent =
        bRoot ? m_nRoot : static_cast<unsigned int>(m_pChildren[(nNode - 1) / 4] >> (16 * ((nNode - 1) % 4)) & 0xFFFF);
    if ((nParent & 1) != 0) return;
    nLane = SumUpChildren(nNew, nPower + 1);
  }
  m_nRoot = nLane;
}

unsigned int QXQuadtreePage::SumUpCells(int nRow, int nCol) const {
  bool bMarked = m_pGrid[GetCell(nRow - 1, nCol - 1)] != 0;
  if (!m_bTopLeftOnly) {
    bMarked = bMarked || m_pGrid[GetCell(nRow - 1, nCol + 1)] != 0 || m_pGrid[GetCell(nRow + 1, nCol - 1)] != 0 ||
              m_pGrid[GetCell(nRow + 1, nCol + 1)] != 0;
  }
  return bMarked ? 4U : 0U;
}

unsigned int QXQuadtreePage::SumUpChildren(std::uint64_t nChildren, int nPower) const {
  std::uint64_t nAll = nChildren & nChildren >> 32;
  nAll &= nAll >> 16;
  std::uint64_t nAny = nChildren;
  if (!m_bTopLeftOnly) {
    nAny |= nAny >> 32;
    nAny |= nAny >> 16;
  }
  // A size is refused if every child refuses it; the node's own, if a child is not free that has to be. Bits 0 and 1
  // only tell that the children themselves are marked.
  unsigned int const nSmaller = static_cast<unsigned int>(nAll) & ((1U << nPower) - 4);
  unsigned int const nOwn = static_cast<unsigned int>(nAny >> (nPower - 1) & 1) << nPower;
  return nSmaller | nOwn;
}

}  // namespace QXC::detail
