/// @file
/// Plug-ins that a person brings along.
#pragma once

#include <string>
#include <vector>

namespace QXApp {

/// Has plug-in configurations looked for in these folders as well. Before anything that loads a plug-in, as the model
/// reader is one too.
/// @return  empty, or the line that names the folder that is missing
std::string AddPluginFolders(std::vector<std::string> const& vecFolders);

}  // namespace QXApp
