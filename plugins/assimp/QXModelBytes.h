/// @file
/// Whole files in memory, read with the care that files of strangers need.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace QXAssimp {

/// Most bytes a model file or one of its companions may have. The importers behind hold several times the size of
/// a file while they work, so that a larger one would end in an exhausted machine instead of a message.
constexpr std::size_t MaxFileSize = std::size_t{1} << 30;

/// Reads a whole regular file.
/// @param strPath   path in UTF-8
/// @param vecBytes  gets the contents
/// @param strError  gets one line without the path if the result is false
/// @return  false if there is no such file, it cannot be read, is no regular file (a pipe would block, a device
///          has no end), is larger than MaxFileSize, or shrinks while it is read
bool ReadModelBytes(std::string const& strPath, std::vector<unsigned char>& vecBytes, std::string& strError);

}  // namespace QXAssimp
