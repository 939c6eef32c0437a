/// @file
/// Options of pictures in MTL files.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace QXAssimp {

/// Scale and offset of a material's picture: coordinates times scale plus offset, v counted from the bottom.
struct QXMtlTransform {
  float m_fScale[2] = {1.0f, 1.0f};
  float m_fOffset[2] = {0.0f, 0.0f};
};

/// The options between `map_Kd` and its file name. The importer passes scale and offset over, and where one has fewer
/// numbers than three, as it may, takes the name for one of them.
class QXMtlMaps {
public:
  /// Remembers the options of an MTL file by the names of its materials and rewrites its lines, so that the importer
  /// finds `-clamp on` and the name alone. Lines without options stay as they are.
  void TakeOptions(std::vector<unsigned char>& vecBytes);

  /// Null for a material without scale and offset.
  QXMtlTransform const* Find(std::string const& strMaterial) const;
  /// Whether the file gives a material no colour; the importer makes up a grey one then.
  bool IsColorless(std::string const& strMaterial) const;

private:
  std::string RewriteLine(std::string const& strLine);

  std::string m_strMaterial;
  std::map<std::string, QXMtlTransform> m_mapTransforms;
  /// Whether each material has a colour; one that comes twice is one.
  std::map<std::string, bool> m_mapColors;
};

}  // namespace QXAssimp
