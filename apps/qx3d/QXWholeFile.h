/// @file
/// Files that are read in one piece.
#pragma once

#include <cstdint>
#include <string>

namespace QXApp {

/// Reads a regular file; nothing else is opened, so that no pipe holds the program up.
/// @param nMaxMiB  largest size
/// @param strKind  what is asked for in messages, as "scene file"
/// @param strBytes  the file, or anything on failure
/// @return  empty, or why there are no bytes and what to do, without the path
std::string ReadWholeFile(
    std::string const& strPath, std::uintmax_t nMaxMiB, std::string const& strKind, std::string& strBytes);

}  // namespace QXApp
