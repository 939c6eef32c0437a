/// @file
/// Set of small numbers that finds the next member at once.
#pragma once

#include <cstdint>
#include <vector>

namespace QXC::detail {

/// Numbers from 0 on as bits; above each row of words stands a row with a bit for each word that is not empty. A
/// million numbers make four rows, so that no operation visits more than a few words, however few members there are.
class QXIndexSet {
public:
  /// Makes room for the numbers below nCount. What this class allocates, it allocates here.
  void Reserve(int nCount);
  /// nIndex lies in the room that was made.
  void Insert(int nIndex);
  void Erase(int nIndex);
  bool Contains(int nIndex) const;
  /// The smallest member that is not below nFirst (0 or more), or -1.
  int FindFrom(int nFirst) const;

private:
  /// Row 0 has a bit for each number; the last row is one word.
  std::vector<std::vector<std::uint64_t>> m_arrRows;
};

}  // namespace QXC::detail
