/// @file
/// Bytes of an image file become pixels.
#pragma once

#include <QxGraphics3D/Platform.h>

namespace QXC {

struct QXImageData;

namespace detail {

/// How large a picture may be. Looked at before anything is allocated for it, inside the codecs too: a file of a few
/// bytes can name any size.
struct QXImageLimits {
  /// Most pixels of an edge.
  unsigned int m_nMaxEdge = 65536;
  /// Most bytes of the decoded picture.
  QXUInt64 m_nMaxBytes = 1ULL << 30;

  /// Whether a picture of nBytesPerPixel bytes a pixel may be made. No edge is 0.
  bool Allow(QXUInt64 nWidth, QXUInt64 nHeight, unsigned int nBytesPerPixel) const {
    if (nWidth == 0 || nHeight == 0 || nWidth > m_nMaxEdge || nHeight > m_nMaxEdge) return false;
    return nWidth * nHeight <= m_nMaxBytes / nBytesPerPixel;
  }
};

/// Reads one picture.
/// @param nType   one of QXFileType::EM_IMAGE_...
/// @param pBytes  the whole file
/// @return  a record that the caller deletes, and its block (new unsigned char[]) too: rows top down and tight, of
///          8 bits (grey), 24 (B,G,R) or 32 (B,G,R,A, alpha not multiplied in). Null for bytes that do not begin as
///          the type does, for broken or cut files, sizes beyond the limits, lack of memory, and unknown types.
/// Of files with several pictures it is the first. Colours are the bytes of the file, no profile is applied; an
/// orientation told by EXIF is not applied either, only the orientation tag of TIFF.
/// Nothing is raised or printed. Threads: any, at once too.
QXImageData* ReadImage(int nType, unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

}  // namespace detail
}  // namespace QXC
