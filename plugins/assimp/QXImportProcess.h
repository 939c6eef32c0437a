/// @file
/// Imports in a process of their own.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace QXAssimp {

/// Runs work on a hostile file in a child process and gives back the bytes that it makes. The importers behind this
/// reader write outside their memory, stand still or allocate without end on some broken files; then the child ends,
/// and the caller hears a reason.
/// @param nInput     bytes that the work reads; the limits on its memory and time follow from them
/// @param work       appends its result to the bytes and answers with an empty string, or with the reason why there is
///                   none. It runs on a copy of this process with the calling thread alone.
/// @param vecResult  gets the result
/// @return  empty, or the reason
/// Cost: a process, and a copy of the result.
std::string RunInProcess(std::size_t nInput, std::function<std::string(std::vector<unsigned char>&)> const& work,
    std::vector<unsigned char>& vecResult);

}  // namespace QXAssimp
