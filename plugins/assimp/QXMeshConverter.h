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

/// How the format of a mesh is to be understood.
struct QXMeshRules {
  /// Colours are linear and become sRGB.
  bool m_bLinearColors = false;
  /// The file itself holds normals. Where it does not, those of the importer are passed over for our own.
  bool m_bNormalsOfFile = true;
  /// The set of texture coordinates that is taken.
  unsigned int m_nCoordSet = 0;
};

/// @param pMaterial  null for none
/// @param dOffset    gets what was taken off the positions; add it in front of the placement
/// @return  null if the mesh has no triangle with finite positions and indices inside the mesh
std::unique_ptr<QXC::QXModelMesh> ConvertMesh(
    aiMesh const& mesh, aiMaterial const* pMaterial, QXMeshRules const& rules, double (&dOffset)[3]);

}  // namespace QXAssimp
