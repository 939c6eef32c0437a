/// @file
/// Numbers as they lie in files.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <type_traits>

namespace QDC {

/// The number whose bytes stand in the opposite order. The result of a swapped float may be any pattern, also one that
/// the processor would change on its way through a register: store it, never calculate with it.
template <class T>
constexpr T qdcswapbytes(T value) {
  static_assert(std::is_arithmetic_v<T>);
  auto bytes = std::bit_cast<std::array<unsigned char, sizeof(T)>>(value);
  std::reverse(bytes.begin(), bytes.end());
  return std::bit_cast<T>(bytes);
}

}  // namespace QDC
