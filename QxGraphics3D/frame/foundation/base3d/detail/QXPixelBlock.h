/// @file
/// Where large blocks of pixels come from.
#pragma once

#include <cstdint>

namespace QXC::detail {

/// A block of nBytes bytes for `delete[]`, not initialised; null when there is no memory for it. 0 bytes give a block
/// too. The system is asked for huge pages where the block is large enough for some: filling 64 MiB for the first
/// time otherwise spends more on 16,384 page faults than on the bytes.
unsigned char* NewPixelBlock(std::uint64_t nBytes);

}  // namespace QXC::detail
