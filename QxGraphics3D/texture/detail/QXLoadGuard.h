/// @file
/// The border behind which no exception of a parser passes.
#pragma once

#include <cxxabi.h>

namespace QXC::detail {

/// Calls work() and turns whatever it raises into failure. Parsers of hosts and modules may raise anything, and what a
/// load can say is its result. Cancelling a thread unwinds with something that must go on its way.
template <class Work, class Result>
Result GuardLoad(Work work, Result failure) {
  try {
    return work();
  } catch (abi::__forced_unwind const&) {
    throw;
  } catch (...) {
    return failure;
  }
}

}  // namespace QXC::detail
