/// @file
/// BC1 and BC3 blocks to pixels.
#pragma once

namespace QXC::detail {

/// Whether the fourth colour of a BC1 block whose first colour is not the larger one is a hole.
enum class QXBc1Alpha { Opaque, Punched };

/// Decodes 4 x 4 pixels.
/// @param pBlock  8 bytes
/// @param pRgba   receives 16 pixels of 4 bytes R,G,B,A, row by row from the top
/// Source:  Khronos Data Format text, BC1: colours of 5, 6 and 5 bits are widened by repeating their upper bits, thirds
///          and halves between them are cut, not rounded.
void DecodeBc1Block(unsigned char const pBlock[8], QXBc1Alpha eAlpha, unsigned char pRgba[64]);

/// The same of 16 bytes: eight of alpha, eight of colours, which are always four.
void DecodeBc3Block(unsigned char const pBlock[16], unsigned char pRgba[64]);

}  // namespace QXC::detail
