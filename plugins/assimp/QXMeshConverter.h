/// @file
/// From one mesh of the importer to one of the library.
#pragma once

#include <memory>

struct aiMaterial;
struct aiMesh;

namespace QXC {
class QXModelMesh;
}

namespace QXAssimp {

/// @param bLinearColors  1: colours are linear and become sRGB
/// @param dOffset        gets what was taken off the positions; add it in front of the placement
/// @return  null if the mesh has no triangle with finite positions and indices inside the mesh
std::unique_ptr<QXC::QXModelMesh> ConvertMesh(
    aiMesh const& mesh, aiMaterial const* pMaterial, bool bLinearColors, double (&dOffset)[3]);

}  // namespace QXAssimp
