/// @file
/// Models from files, ready to be shown.
#pragma once

#include <apps/qx3d/QXViewOptions.h>

#include <memory>
#include <string>

namespace QXC {
class ModelDataInfo;
}

namespace QXApp {

/// Reads a model through the library's file parsers and turns it so that z is up.
/// @param strError  gets one line without the path if the result is null
std::unique_ptr<QXC::ModelDataInfo> LoadModel(std::string const& strPath, UpAxis eUp, std::string& strError);

/// Makes a model as its parser gave it ready to be shown, as LoadModel does: turns it so that z is up.
/// @return  empty, or why it cannot be shown
std::string PrepareModel(QXC::ModelDataInfo& model, std::string const& strPath, UpAxis eUp);

/// Whether a model of unknown axes is to be turned from y up to z up. A wide model that is flat along one axis is
/// ground with what stands on it, and that axis is up; any other follows the habit of its format.
/// @param nType  number of QXFileType::EmType
bool IsYUp(QXC::ModelDataInfo const& model, int nType, UpAxis eUp);

}  // namespace QXApp
