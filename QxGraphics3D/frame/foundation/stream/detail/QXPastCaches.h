/// @file
/// Copies that leave the caches to others.
#pragma once

#include <cstddef>

namespace QXC::detail {

/// Arrays from this size on, in blocks from that size on, are copied past the caches: the block is through them before
/// anybody reads it again, and a line that is overwritten whole need not be fetched first, a third of the traffic.
inline constexpr std::size_t PastCachesArray = std::size_t{64} << 10;
inline constexpr std::size_t PastCachesBlock = std::size_t{4} << 20;

/// memcpy for large arrays. Where the processor cannot write past its caches, it is memcpy.
void CopyPastCaches(void* pTarget, void const* pSource, std::size_t nSize);

}  // namespace QXC::detail
