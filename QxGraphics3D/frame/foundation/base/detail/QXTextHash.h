/// @file
/// Hash of a name, for look-ups of every frame.
#pragma once

#include <cstddef>
#include <cstdint>

namespace QXC::detail {

/// Every character counts, since the paths of one store differ in a few characters anywhere. Depends on the processor:
/// never store it, never order by it. Cost: about that of comparing two such texts.
std::uint64_t HashText(wchar_t const* pText, std::size_t nLength);

/// The same on any processor, and on one with AVX2. Two functions with values of their own; for tests.
std::uint64_t HashTextPlain(wchar_t const* pText, std::size_t nLength);
#if defined(__x86_64__) && defined(__GNUC__)
#  define QX_TEXT_HASH_AVX2 1
std::uint64_t HashTextAvx2(wchar_t const* pText, std::size_t nLength);
unsigned char CanHashTextAvx2();
#endif

}  // namespace QXC::detail
