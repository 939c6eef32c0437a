// Measures and refuses what a program allocates: linking the source beside this replaces the global operators, for the
// library's own allocations too. A source of its own, since compilers that see an operator's body beside its callers
// warn of malloc and delete not fitting together.
#pragma once

#include <cstddef>

namespace QXTest {

/// Bytes that are allocated now, with 16 for what an allocator keeps beside each block.
std::size_t GetLiveBytes();
/// Greatest number of them since the last call of ResetPeak.
std::size_t GetPeakBytes();
void ResetPeak();

/// Refuses the nNumber-th allocation from now on, and all that follow; none for 0.
void RefuseFrom(std::size_t nNumber);
/// 1 if one was refused since the last call of RefuseFrom.
bool WasRefused();

}  // namespace QXTest
