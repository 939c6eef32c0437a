/// @file
/// Timing of look-ups that take some nanoseconds each.
#pragma once

#include <bench/QXBenchClock.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <limits>

namespace QXBench {

/// Nanoseconds for each call of work(index), the quickest of many passes.
class LookUpTiming {
public:
  /// How many passes a case takes of each kind.
  static constexpr int ms_nRounds = 100;

  template <class Work>
  void Pass(std::size_t nCount, Work work) {
    std::size_t const nRepeats = std::max<std::size_t>(1, ms_nLeastLookUps / nCount);
    double const dStart = ThreadSeconds();
    for (std::size_t nRepeat = 0; nRepeat < nRepeats; ++nRepeat) {
      for (std::size_t i = 0; i < nCount; ++i) benchmark::DoNotOptimize(work(i));
    }
    double const dEach = 1e9 * (ThreadSeconds() - dStart) / static_cast<double>(nRepeats * nCount);
    m_dBest = std::min(m_dBest, dEach);
  }
  double m_dBest = std::numeric_limits<double>::infinity();

private:
  /// In a pass: fewer would be lost in what the clock itself takes.
  static constexpr std::size_t ms_nLeastLookUps = 20000;
};

}  // namespace QXBench
