// Counts what a program allocates: linking the source beside this replaces the global operators, for the library's
// own allocations too. A source of its own, since compilers that see an operator's body beside its callers warn of
// malloc and delete not fitting together.
#pragma once

#include <cstddef>

namespace QXC {

/// Calls of operator new in this process so far, in all its forms but the over-aligned one.
long GetAllocationCount();

/// Refuses one of the calls of this process from now on: the next one for 1, and so on; none for 0.
void RefuseAllocation(long nNumber);

/// The longest block asked for since ForgetLargestAllocation, in bytes.
std::size_t GetLargestAllocation();
void ForgetLargestAllocation();

}  // namespace QXC
