/// @file
/// The formats that are read by stb_image.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

namespace QXC::detail {

/// Decodes bytes that the caller has looked at: they begin as a TGA or HDR does and name nWidth x nHeight pixels.
/// Rows end top down and in B,G,R(,A), grey with alpha in four bytes. Null if the codec read past the end of the bytes,
/// where it goes on with invented ones, or gives another size.
QXImageData* DecodeByStb(
    unsigned char const* pBytes, QXUInt64 nSize, QXUInt64 nWidth, QXUInt64 nHeight, QXImageLimits const& limits);

}  // namespace QXC::detail
