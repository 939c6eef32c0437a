/// @file
/// Files of static geometry.
#pragma once

#include <apps/qx3d/QXModelPictures.h>
#include <apps/qx3d/QXSceneBuilder.h>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <memory>
#include <string>
#include <vector>

namespace QXApp {

/// Reads a file that is whole: QXStaticGeometry::LoadVecData, and each index, position and sub-object looked at.
/// @return  null with strError, one line without the path: the first fault with its offset, and what to do
std::unique_ptr<QXC::QXStaticGeometry> LoadStaticFile(std::string const& strPath, std::string& strError);

/// Why there is nothing to read, before any byte is: no such file, a folder, an empty one. Without the path.
std::string CheckStaticFile(std::string const& strPath);

/// Where the coordinates of a file stand in the world: what the scene beside it says, PATH.qxscene, which baking
/// writes; the origin without one.
/// @param vecProblems  gets why a scene that is there cannot be read, whose place must not be lost in silence
QXC::QXVector3d ReadStaticPlace(std::string const& strPath, std::vector<std::string>& vecProblems);
std::string GetStaticSceneName(std::string const& strPath);

/// Reads the textures that passes name, files counted from the folder of the geometry, and gives the units the names
/// under which the program shares them. A unit whose texture cannot be read gets none.
/// @param pictures     gets them
/// @param nModel       of the pictures, for vecTextures
/// @param vecTextures  gets the textures that the passes name from then on
/// @param vecProblems  gets one line for each that cannot be read
void LoadStaticTextures(std::string const& strPath, QXC::QXStaticGeometry& geometry, QXModelPictures& pictures,
    int nModel, std::vector<QXSceneTexture>& vecTextures, std::vector<std::string>& vecProblems);

}  // namespace QXApp
