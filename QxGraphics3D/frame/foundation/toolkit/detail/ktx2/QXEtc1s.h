/// @file
/// ETC1S: blocks of 4 x 4 pixels with one base colour and one intensity table.
#pragma once

#include <cstdint>

namespace QXC::detail {

/// What one entry of the endpoint codebook unfolds to: the four colours that a block of it can have.
struct QXEtc1sEndpoint {
  unsigned char m_Colors[4][4];  ///< R,G,B,255 for selector 0 (darkest) to 3
};

/// Unfolds a base colour and an intensity table.
/// @param nRed  0..31, as are nGreen and nBlue
/// @param nTable  0..7
/// Source:  Khronos Data Format text, ETC1: a 5-bit channel is widened by repeating its upper three bits, the
///          modifier of the table is added to all three channels, and each is clamped to 0..255.
QXEtc1sEndpoint UnfoldEtc1sEndpoint(unsigned int nRed, unsigned int nGreen, unsigned int nBlue, unsigned int nTable);

}  // namespace QXC::detail
