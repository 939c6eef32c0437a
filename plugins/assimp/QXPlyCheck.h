/// @file
/// Whether a PLY file holds what its header announces.
#pragma once

#include <string>
#include <vector>

namespace QXAssimp {

/// Walks the elements that the header announces through the body, without keeping them.
/// @param strError  gets one line if the result is false
/// Cost: linear in the file; an element of fixed size is skipped at once.
bool CheckPly(std::vector<unsigned char> const& vecBytes, std::string& strError);

}  // namespace QXAssimp
