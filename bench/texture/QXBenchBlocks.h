/// @file
/// What the pixel benchmarks share: blocks, clocks, and passes that take turns.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>

#include <bench/QXBenchClock.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <vector>
#if defined(__x86_64__)
#  include <immintrin.h>
#endif

namespace QXBench {

/// A block as loaded images have them, written once so that no page is missing.
class Block {
public:
  explicit Block(std::size_t nBytes) : m_pBytes(QXC::detail::NewPixelBlock(nBytes)), m_nBytes(nBytes) {
    std::memset(m_pBytes.get(), 255, nBytes);
  }
  unsigned char* Get() const { return m_pBytes.get(); }
  std::size_t GetSize() const { return m_nBytes; }

  /// Noise of no importance; the same every time.
  void FillWithNoise() const {
    unsigned int nState = 20261121;
    for (std::size_t i = 0; i < m_nBytes; ++i) {
      nState = nState * 1664525 + 1013904223;
      m_pBytes[i] = static_cast<unsigned char>(nState >> 24);
    }
  }

  /// No cache holds any of it afterwards, so that no pass finds what the one before it left.
  void ForgetCaches() const {
#if defined(__x86_64__)
    for (std::size_t i = 0; i < m_nBytes; i += 64) _mm_clflush(m_pBytes.get() + i);
    _mm_mfence();
#else
    static std::vector<unsigned char> s_arrOther(std::size_t{512} << 20);
    for (std::size_t i = 0; i < s_arrOther.size(); i += 64) ++s_arrOther[i];
#endif
  }

private:
  std::unique_ptr<unsigned char[]> m_pBytes;
  std::size_t m_nBytes;
};

/// One pass and the quickest time that it took.
struct Pass {
  char const* m_szName;
  std::function<void()> m_run;
  double m_dBest = std::numeric_limits<double>::infinity();

  double Time() {
    double const dStart = ThreadSeconds();
    m_run();
    double const dSeconds = ThreadSeconds() - dStart;
    m_dBest = std::min(m_dBest, dSeconds);
    return dSeconds;
  }
};

}  // namespace QXBench
