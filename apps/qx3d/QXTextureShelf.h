/// @file
/// The textures of a shown model.
#pragma once

#include <apps/qx3d/QXModelPictures.h>

#include <string>
#include <vector>

namespace QXC {
class QXGraphics3D;
class QXTexture;
}  // namespace QXC

namespace QXApp {

/// Textures taken from a renderer's store, each counted once as long as the model is shown.
class QXTextureShelf {
public:
  /// The texture, on the device. One that the store has already under this name is shared and not filled again.
  /// @param strProblem  gets one line if the result is null: the renderer keeps no textures, or cannot use this one
  QXC::QXTexture* Take(
      QXC::QXGraphics3D& graphics3D, QXModelPictures const& pictures, QXTextureKey const& key, std::string& strProblem);

  /// Gives all of them back. Before the renderer goes, after its drawables.
  void GiveBack(QXC::QXGraphics3D& graphics3D);

  unsigned int GetCount() const { return static_cast<unsigned int>(m_vecTextures.size()); }

private:
  std::vector<QXC::QXTexture*> m_vecTextures;
};

}  // namespace QXApp
