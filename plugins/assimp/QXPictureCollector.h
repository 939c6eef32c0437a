/// @file
/// The pictures of an imported scene and the materials that refer to them.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/QXModelTexture.h>

#include <map>
#include <string>

struct aiMaterial;
struct aiScene;

namespace QXC {
class ModelDataInfo;
}

namespace QXAssimp {

class QXMtlMaps;

/// Puts the pictures that materials lay on their meshes into a model, each once. A picture in a file of its own comes
/// by its name alone; where that file lies is the finder's question.
class QXPictureCollector {
public:
  /// @param nType  number of QXFileType::EmType: formats differ in what their transforms and colours mean
  /// @param maps   of the MTL files of the model
  /// Scene, maps and model outlive the collector.
  QXPictureCollector(aiScene const& scene, int nType, QXMtlMaps const& maps, QXC::ModelDataInfo& model);

  /// The picture of a material's base colour.
  /// @param nCoordSet  gets the number of the coordinate set that the picture is laid by; 0 without a picture
  QXC::QXModelTexture Collect(aiMaterial const& material, unsigned int& nCoordSet);

private:
  QXC::QXMatrix4d MakeTransform(aiMaterial const& material, int nTextureType) const;
  int AddImage(char const* szName);

  aiScene const& m_Scene;
  int m_nType;
  QXMtlMaps const& m_Maps;
  QXC::ModelDataInfo& m_Model;
  std::map<std::string, int> m_mapImages;
};

}  // namespace QXAssimp
