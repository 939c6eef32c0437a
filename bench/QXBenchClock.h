/// @file
/// The clock of the benchmarks.
#pragma once

#include <time.h>

#include <algorithm>
#include <limits>

namespace QXBench {

/// Time that this thread has run: what other programs take of the processor does not count.
inline double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// The quickest of the passes that were timed with it.
struct Quickest {
  template <class Pass>
  double Time(Pass pass) {
    double const dStart = ThreadSeconds();
    pass();
    double const dPassed = ThreadSeconds() - dStart;
    m_dSeconds = std::min(m_dSeconds, dPassed);
    return dPassed;
  }
  double m_dSeconds = std::numeric_limits<double>::infinity();
};

}  // namespace QXBench
