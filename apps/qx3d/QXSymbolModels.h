/// @file
/// The models of a scene's symbols.
#pragma once

#include <apps/qx3d/QXModelPictures.h>
#include <apps/qx3d/QXSceneBuilder.h>
#include <apps/qx3d/QXSceneFile.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <functional>
#include <string>
#include <vector>

namespace QXApp {

/// A symbol ready to be drawn.
struct QXSymbolModel {
  QXSceneSymbol m_Symbol;
  QXScene m_Scene;
  /// By the index of a part's model, which is 0.
  std::vector<QXModelPictures> m_vecPictures;

  /// From the scene into a square as it is seen in the picture: x to the right, y up, z to the viewer. The model is in
  /// the square's middle, as large as fits with a pixel left on each side.
  /// Cost: one pass over its vertices.
  /// @param dLeft,dBottom  corner of the square
  /// @param dEdge          its edge in pixels, one unit each
  QXC::QXMatrix4d MakeView(double dLeft, double dBottom, double dEdge) const;
};

/// Reads the models of those symbols that icons show. Those that cannot be read are told and left out.
/// @param eUp       for symbols that have no up axis of their own in the scene
/// @param progress  is told what is read
/// @param vecPictureProblems  gets one line for each picture that cannot be read; the models are good all the same
std::vector<QXSymbolModel> LoadSymbols(QXSceneFile const& scene, UpAxis eUp,
    std::function<void(std::string const&)> const& progress, QXSceneProblems& problems,
    std::vector<std::string>& vecPictureProblems);

}  // namespace QXApp
