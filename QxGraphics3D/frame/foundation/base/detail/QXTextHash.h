/// @file
/// Hash of a name, for look-ups of every frame.
#pragma once

#include <cstddef>
#include <cstdint>

namespace QXC::detail {

/// Every character counts, since the paths of one store differ in a few characters anywhere. Depends on the processor:
/// never store it, never order by it. Cost: about that of comparing two such texts.
std::uint64_t HashText(wchar_t const* pText, std::size_t nLength);

/// The one of processors without AVX2, with values of its own; for tests.
std::uint64_t HashTextPlain(wchar_t const* pText, std::size_t nLength);

}  // namespace QXC::detail
