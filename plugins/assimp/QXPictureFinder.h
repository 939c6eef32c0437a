/// @file
/// Where the picture files of a model lie.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>

#include <string>

namespace QXAssimp {

/// Looks for a picture that a model names. Models travel between systems, so that besides the path as written, with
/// slashes or backslashes, escaped or not, one is tried that differs in upper and lower case, and at last the bare file
/// name in the model's own folder. Nothing is read.
/// @param strFolder  folder of the model
/// @param strName    as the model has it: relative to the folder or absolute
/// @return  path of a regular file; where there is none, the path as written, for a message
/// Cost: listings of the folders on the way, if the name as written leads nowhere.
std::string FindPicture(std::string const& strFolder, std::string const& strName);

/// Sets the paths of all pictures that the model does not carry.
/// @param strFolder  folder of the model; empty: pictures get no path
void FindPictures(std::string const& strFolder, QXC::ModelDataInfo& model);

}  // namespace QXAssimp
