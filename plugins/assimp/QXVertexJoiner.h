/// @file
/// Vertices that are equal, made one.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>

#include <vector>

namespace QXAssimp {

/// Keeps of all vertices that agree in position, normal, colour and coordinates of unit 0 the first one, and closes the
/// gaps; the order stays. Importers give each corner of many formats a vertex of its own, and their own step that joins
/// them costs more than the rest of an import. Zeros are equal whatever their sign, other numbers by their bits.
/// @param package    positions of 3 floats; normals, colours and coordinates for every vertex or none. The arrays keep
///                   their room
/// @param vecCorners vertex numbers; get the new ones
/// Cost: linear, one look into a table a vertex.
void JoinVertices(QXC::QXVertexDataPackage& package, std::vector<unsigned int>& vecCorners);

}  // namespace QXAssimp
