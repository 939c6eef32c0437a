/// @file
/// Triangles from polygons.
#pragma once

#include <vector>

namespace QXAssimp {

/// Cuts a polygon into triangles and appends their corners. Triangles and convex polygons become fans; others lose one
/// ear after the other, seen along the polygon's mean normal. What crosses itself or has no area still gives count - 2
/// triangles.
/// @param pPositions  three floats a vertex
/// @param pIndices    the polygon's vertices in order
/// @param nCount      number of them; below 3 nothing is appended
/// Cost: the square of nCount for a polygon that is not convex; above 1000 corners any polygon becomes a fan.
void CutPolygon(
    float const* pPositions, unsigned int const* pIndices, unsigned int nCount, std::vector<unsigned int>& vecCorners);

}  // namespace QXAssimp
