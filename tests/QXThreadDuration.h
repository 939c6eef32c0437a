#pragma once

#include <chrono>
#include <cstdlib>

namespace QXC {

/// How long tests with many threads go on; a longer run is asked for by QX_THREAD_SECONDS in the environment.
inline std::chrono::milliseconds GetThreadDuration() {
  char const* const szSeconds = std::getenv("QX_THREAD_SECONDS");
  return szSeconds != nullptr ? std::chrono::seconds(std::atoi(szSeconds)) : std::chrono::milliseconds(500);
}

}  // namespace QXC
