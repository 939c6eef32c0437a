/// @file
/// GIF, on giflib.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

namespace QXC::detail {

/// The first frame at its place on the full canvas. Of 32 bits where a pixel can be transparent, by the frame's
/// transparent colour or because the frame leaves canvas uncovered, else of 24. Frames that follow are not looked at.
/// Arguments and result as of ReadImage.
QXImageData* ReadGif(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

}  // namespace QXC::detail
