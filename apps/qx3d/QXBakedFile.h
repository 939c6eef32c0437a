/// @file
/// A file of static geometry with what stands beside it.
#pragma once

#include <apps/qx3d/QXSceneBuilder.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace QXApp {

/// Writes a geometry, the pictures on it into the folder OUT.textures, and its place into the scene OUT.qxscene.
class QXBakedFile {
public:
  explicit QXBakedFile(std::string strPath) : m_strPath(std::move(strPath)) {}

  /// Whether all of it could be written, asked before any work. @return  empty, or the reason
  std::string Check() const;

  /// Name in the passes of a texture that a model is drawn with: a file beside this one. Pictures that models share are
  /// written once.
  std::string NameTexture(QXTextureKey const& key, QXModelPictures const& pictures);
  /// Keeps a picture that stands in the folder of pictures already; no texture that is named later gets its name.
  /// @return  its name in the passes, empty for a picture elsewhere
  std::string KeepTexture(std::string const& strPath);
  /// Writes a texture that was named.
  std::string WriteTexture(QXTextureKey const& key, QXModelPictures const& pictures);

  /// Writes the geometry and where its local view matrix moves it. Never stands the new geometry beside the old place:
  /// whoever reads in between, or after a failure, finds none.
  std::string Write(QXC::QXStaticGeometry& geometry) const;

  std::string const& GetPath() const { return m_strPath; }

private:
  std::string MakeSceneText(QXC::QXVector3d const& vecPlace) const;

  std::string m_strPath;
  /// By the names under which models share them.
  std::map<std::string, std::string> m_mapNames;
  std::set<std::string> m_setKept;
  unsigned int m_nNextName = 1;
};

}  // namespace QXApp
