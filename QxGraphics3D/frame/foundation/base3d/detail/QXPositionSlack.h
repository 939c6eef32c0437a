/// @file
/// Room behind the positions of a vertex package.
#pragma once

#include <cstddef>

namespace QXC::detail {

/// Zeroed numbers behind the last position. Bounds scans read three numbers a vertex with the position dimension as
/// step; with a dimension of 1 or 2 they reach past the last vertex.
inline constexpr std::size_t kPositionSlack = 4;

}  // namespace QXC::detail
