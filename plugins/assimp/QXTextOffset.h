/// @file
/// Map coordinates in text models.
#pragma once

#include <vector>

namespace QXAssimp {

/// Moves the positions of a text model near the origin before they become floats. The importers read every number
/// into a float, which at a map coordinate of 5,000,000 m steps by half a metre; the text has all digits.
/// @param nType     OBJ and STL are looked at, every other type is left alone
/// @param vecBytes  the file; its position lines are rewritten if they lie so far out that floats would show it
/// @param dOffset   gets what was subtracted, whole numbers; zeros if nothing was
void SubtractOffset(int nType, std::vector<unsigned char>& vecBytes, double (&dOffset)[3]);

}  // namespace QXAssimp
