/// @file
/// Normals for meshes that bring none.
#pragma once

#include <vector>

namespace QXAssimp {

/// Corners of triangles with a normal each.
struct QXCornerNormals {
  /// Three floats a corner, of length 1; a corner of triangles without an area has (0, 0, 1).
  std::vector<float> m_vecNormals;
};

/// Computes a normal for each corner: the mean, weighted by area, of the triangles that meet at its position and lean
/// from its own by less than 30 degrees. So walls and roofs stay flat and domes become round, whatever vertices the
/// file shares or doubles.
/// @param pPositions  three floats a vertex
/// @param vecCorners  three vertex numbers a triangle
/// Cost: linear in the corners times the triangles that meet at one, of which the first 64 are asked.
QXCornerNormals BuildNormals(
    float const* pPositions, unsigned int nVertexNum, std::vector<unsigned int> const& vecCorners);

/// Splits vertices so that each carries one normal: corners of a vertex whose normals are equal share a vertex.
/// @param vecCorners  vertex numbers; get the new ones
/// @param normals     of the same corners
/// @param vecSources  gets the old number of each new vertex
/// @param vecNormals  gets three floats a new vertex
void SplitByNormal(QXCornerNormals const& normals, unsigned int nVertexNum, std::vector<unsigned int>& vecCorners,
    std::vector<unsigned int>& vecSources, std::vector<float>& vecNormals);

}  // namespace QXAssimp
