/// @file
/// The encoding of models that are text.
#pragma once

#include <string>
#include <vector>

namespace QXAssimp {

/// Takes a byte order mark off UTF-8 text, behind which importers would not know the first line.
void TrimByteOrderMark(std::vector<unsigned char>& vecBytes);

/// Brings text to the form that the importers read. Binary files stay as they are.
/// @param nType     number of QXFileType::EmType
/// @return  false, with the reason, for text of two or four bytes a character: some importers take it for an empty
///          file, others for numbers that are none
bool PrepareText(int nType, std::vector<unsigned char>& vecBytes, std::string& strError);

}  // namespace QXAssimp
