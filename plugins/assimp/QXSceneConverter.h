/// @file
/// From the importer's scene to the library's model.
#pragma once

#include <memory>
#include <string>

struct aiScene;

namespace QXC {
class ModelDataInfo;
}

namespace QXAssimp {

class QXMtlMaps;

/// Turns an imported scene into a model: triangles only, each mesh once, each placement as a node with a matrix in
/// double.
/// - Up: glTF, COLLADA and FBX state which way is up; they are turned so that z is up. 3DS, OBJ, PLY and STL do not,
///   and keep the coordinates of the file.
/// - Positions whose middle lies far from their origin are moved to it, and the node's matrix carries the offset.
/// - Colours are for display: the linear ones of glTF are encoded as sRGB.
/// - A triangle with a position that is no finite number is left out.
/// @param dOffset   what was taken off the positions before the import, in the axes of the file
/// @param maps      what MTL files say about the pictures of the model's materials
/// @param strError  gets one line if the result is null: nothing to draw, or more than the library can count
std::unique_ptr<QXC::ModelDataInfo> ConvertScene(
    aiScene const& scene, int nType, double const (&dOffset)[3], QXMtlMaps const& maps, std::string& strError);

}  // namespace QXAssimp
