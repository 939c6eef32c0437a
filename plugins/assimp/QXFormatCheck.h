/// @file
/// Whether a model file is whole.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <string>
#include <vector>

namespace QXAssimp {

/// Checks what a format says about its own size: lengths in headers, counts of elements, end marks. The importers
/// take a file that was cut off for a smaller model, or believe a count and allocate for it; what passes here holds
/// as many bytes as it claims. Formats whose syntax shows a missing end by itself (glTF text, COLLADA, FBX text) and
/// OBJ, which has no end, pass unseen, but for lists in COLLADA that would keep the importer from ever ending.
/// @param strError  gets one line if the result is false
bool CheckFormat(int nType, std::vector<unsigned char> const& vecBytes, std::string& strError);

/// Whether the size of a file is the one that its header, read as that of a binary STL file, says.
bool HasBinaryStlSize(std::vector<unsigned char> const& vecBytes);

}  // namespace QXAssimp
