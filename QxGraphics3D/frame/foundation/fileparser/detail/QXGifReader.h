/// @file
/// GIF, on giflib.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

namespace QXC {

class QXGeoPicture;

namespace detail {

/// The first frame at its place on the full canvas. Of 32 bits where a pixel can be transparent, by the frame's
/// transparent colour or because the frame leaves canvas uncovered, else of 24. Frames that follow are not looked at.
/// The limit of bytes holds for the frame's own pixels too, those beyond the canvas among them.
/// Arguments and result as of ReadImage.
QXImageData* ReadGif(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// All frames, as a player would show them one after the other: each the full canvas of 32 bits, with what the frames
/// before it left there (a frame stays, gives way to nothing or to what it covered). Alpha is 0 or 255; the colour of
/// clear pixels is black. The centre of each is that of the canvas, its delay the file's, 0 included.
/// Of a file that breaks off or is damaged the frames before that, if there is one; what stands behind the end mark is
/// not looked at. The limit of bytes holds for all frames of the file together, before the first is decoded; each counts
/// as the canvas, as its own pixels where they are more, and as 256 at least.
/// @param arrPictures  gets the frames, the caller's, behind its elements
/// @param bFlip        1: the rows of each frame from bottom to top
/// @return  1, or 0 with the list untouched: no frame, beyond the limits, lack of memory
/// Nothing is raised or printed. Threads: any, at once too.
unsigned char ReadGifPictures(unsigned char const* pBytes, QXUInt64 nSize, QdcArray<QXGeoPicture*>& arrPictures,
    unsigned char bFlip, QXImageLimits const& limits);

}  // namespace detail
}  // namespace QXC
