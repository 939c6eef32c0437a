#include <QxGraphics3D/frame/foundation/stream/detail/QXPastCaches.h>

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#  include <emmintrin.h>
#endif

namespace QXC::detail {

#if defined(__SSE2__)

namespace {

constexpr std::size_t Line = 64;
constexpr std::size_t Page = 4096;
/// Pages copied side by side: memory has several rows open at once, and a single run of addresses uses one of them.
constexpr std::size_t PageRuns = 4;
/// How far ahead lines are asked for.
constexpr std::size_t Ahead = 512;

void CopyLine(unsigned char* pTarget, unsigned char const* pSource) {
  auto const* const pFrom = reinterpret_cast<__m128i const*>(pSource);
  auto* const pTo = reinterpret_cast<__m128i*>(pTarget);
  __m128i const first = _mm_loadu_si128(pFrom);
  __m128i const second = _mm_loadu_si128(pFrom + 1);
  __m128i const third = _mm_loadu_si128(pFrom + 2);
  __m128i const fourth = _mm_loadu_si128(pFrom + 3);
  _mm_stream_si128(pTo, first);
  _mm_stream_si128(pTo + 1, second);
  _mm_stream_si128(pTo + 2, third);
  _mm_stream_si128(pTo + 3, fourth);
}

/// Asking for a line behind the end of the source does no harm.
void AskFor(unsigned char const* pSource) {
  _mm_prefetch(reinterpret_cast<char const*>(pSource), _MM_HINT_T0);
}

void CopyPages(unsigned char* pTarget, unsigned char const* pSource) {
  for (std::size_t at = 0; at < Page; at += 2 * Line) {
    for (std::size_t run = at; run < PageRuns * Page; run += Page) {
      AskFor(pSource + run + Ahead);
      AskFor(pSource + run + Ahead + Line);
    }
    for (std::size_t run = at; run < PageRuns * Page; run += Page) {
      CopyLine(pTarget + run, pSource + run);
      CopyLine(pTarget + run + Line, pSource + run + Line);
    }
  }
}

}  // namespace

void CopyPastCaches(void* pTarget, void const* pSource, std::size_t nSize) {
  auto* pTo = static_cast<unsigned char*>(pTarget);
  auto const* pFrom = static_cast<unsigned char const*>(pSource);
  auto const advance = [&](std::size_t nBytes) {
    pTo += nBytes;
    pFrom += nBytes;
    nSize -= nBytes;
  };
  // Up to the first whole line of the target.
  std::size_t const nHead = (Line - reinterpret_cast<std::uintptr_t>(pTo) % Line) % Line;
  if (nHead < nSize) {
    std::memcpy(pTo, pFrom, nHead);
    advance(nHead);
  }
  for (; nSize >= PageRuns * Page; advance(PageRuns * Page)) CopyPages(pTo, pFrom);
  std::memcpy(pTo, pFrom, nSize);
  // What goes past the caches is in no order with other writes until here.
  _mm_sfence();
}

#else

void CopyPastCaches(void* pTarget, void const* pSource, std::size_t nSize) {
  std::memcpy(pTarget, pSource, nSize);
}

#endif

}  // namespace QXC::detail
