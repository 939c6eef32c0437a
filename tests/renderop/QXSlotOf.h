/// @file
/// Position of a virtual operation in its class.
#pragma once

#include <cstddef>
#include <cstring>

namespace QXC {

/// Slot of a virtual operation, the destructor counted as slot 0: its two entries stand first in each table, and a
/// pointer to a virtual member is one more than the byte offset of its entry.
template <class Member>
std::ptrdiff_t SlotOf(Member pMember) {
  static_assert(sizeof(pMember) == 2 * sizeof(std::ptrdiff_t));
  std::ptrdiff_t words[2];
  std::memcpy(words, &pMember, sizeof(words));
  return (words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)) - 1;
}

}  // namespace QXC
