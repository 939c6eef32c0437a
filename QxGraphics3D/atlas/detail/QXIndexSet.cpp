#include <QxGraphics3D/atlas/detail/QXIndexSet.h>

#include <algorithm>
#include <bit>
#include <utility>

namespace QXC::detail {

void QXIndexSet::Reserve(int nCount) {
  std::size_t const nWords = (static_cast<std::size_t>(nCount) + 63) / 64;
  if (nCount <= 0 || (!m_arrRows.empty() && m_arrRows.front().size() >= nWords)) return;
  // Rows are made beside the old ones and swapped in: a failure half-way must not leave a row without the one above.
  std::vector<std::vector<std::uint64_t>> arrRows(1);
  if (!m_arrRows.empty()) arrRows.front() = m_arrRows.front();
  // Twice as many as before: room that grows number by number would be copied each time.
  arrRows.front().resize(m_arrRows.empty() ? nWords : std::max(nWords, 2 * m_arrRows.front().size()));
  while (arrRows.back().size() > 1) {
    std::vector<std::uint64_t> const& arrBelow = arrRows.back();
    std::vector<std::uint64_t> arrAbove((arrBelow.size() + 63) / 64);
    for (std::size_t i = 0; i < arrBelow.size(); ++i) {
      if (arrBelow[i] != 0) arrAbove[i / 64] |= std::uint64_t{1} << (i % 64);
    }
    arrRows.push_back(std::move(arrAbove));
  }
  m_arrRows.swap(arrRows);
}

void QXIndexSet::Insert(int nIndex) {
  auto nBit = static_cast<std::size_t>(nIndex);
  for (std::vector<std::uint64_t>& arrWords : m_arrRows) {
    arrWords[nBit / 64] |= std::uint64_t{1} << (nBit % 64);
    nBit /= 64;
  }
}

void QXIndexSet::Erase(int nIndex) {
  auto nBit = static_cast<std::size_t>(nIndex);
  for (std::vector<std::uint64_t>& arrWords : m_arrRows) {
    std::uint64_t& nWord = arrWords[nBit / 64];
    nWord &= ~(std::uint64_t{1} << (nBit % 64));
    if (nWord != 0) return;
    nBit /= 64;
  }
}

bool QXIndexSet::Contains(int nIndex) const {
  auto const nBit = static_cast<std::size_t>(nIndex);
  if (nIndex < 0 || m_arrRows.empty() || nBit / 64 >= m_arrRows.front().size()) return false;
  return (m_arrRows.front()[nBit / 64] >> (nBit % 64) & 1) != 0;
}

int QXIndexSet::FindFrom(int nFirst) const {
  auto nBit = static_cast<std::size_t>(nFirst);
  for (std::size_t nRow = 0; nRow < m_arrRows.size(); ++nRow) {
    std::vector<std::uint64_t> const& arrWords = m_arrRows[nRow];
    if (nBit / 64 >= arrWords.size()) return -1;
    std::uint64_t const nWord = arrWords[nBit / 64] >> (nBit % 64) << (nBit % 64);
    if (nWord == 0) {
      // Nothing behind in this word: the row above knows the next word that has something.
      nBit = nBit / 64 + 1;
      continue;
    }
    nBit = nBit / 64 * 64 + static_cast<std::size_t>(std::countr_zero(nWord));
    for (; nRow > 0; --nRow) {
      nBit = nBit * 64 + static_cast<std::size_t>(std::countr_zero(m_arrRows[nRow - 1][nBit]));
    }
    return static_cast<int>(nBit);
  }
  return -1;
}

}  // namespace QXC::detail
