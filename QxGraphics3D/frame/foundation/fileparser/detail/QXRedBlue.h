/// @file
/// Pixels copied with red and blue exchanged, as codecs count the one way and the library the other.
#pragma once

#include <cstddef>

namespace QXC::detail {

/// nCount pixels of three bytes. Source and target do not overlap.
void CopySwapped3(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount);

/// nCount pixels of four bytes. Source and target do not overlap.
void CopySwapped4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount);

}  // namespace QXC::detail
