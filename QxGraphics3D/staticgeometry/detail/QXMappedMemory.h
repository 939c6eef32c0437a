/// @file
/// Whether the system has given memory yet.
#pragma once

#include <cstddef>

namespace QXC::detail {

/// false if the page in the middle of an array has never been touched. The system zeroes such a page when it is first
/// written, which leaves its lines in the cache: writing past the cache would then cost more than it saves.
/// true where the system cannot be asked.
bool IsMapped(void const* pArray, std::size_t nBytes);

}  // namespace QXC::detail
