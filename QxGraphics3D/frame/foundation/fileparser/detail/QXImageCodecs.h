/// @file
/// One reader for each image format; QXImageReader.h chooses. Arguments and result as of ReadImage.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

namespace QXC::detail {

/// Every colour type and depth, interlaced too. Chunks beside the picture (profiles, texts) are passed over unread.
QXImageData* ReadPng(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// Baseline, progressive and arithmetic JPEG of 8 bits: grey, colour, CMYK. Damage within the coded data fails, where
/// the codec would go on with a guess.
QXImageData* ReadJpeg(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// First page of a TIFF, turned as its orientation tag says.
QXImageData* ReadTiff(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// Lossy and lossless WebP; of an animation the first frame on its canvas.
QXImageData* ReadWebp(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// Every depth, fields of bits and runs, by the headers of Windows and OS/2.
QXImageData* ReadBmp(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// A TGA has no magic bytes: what passes the checks of its header is one.
QXImageData* ReadTga(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// Radiance, brought to 8 bits by the curve value^(1/2.2), cut at 1.
QXImageData* ReadHdr(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// The flattened picture of a PSD in grey or RGB.
QXImageData* ReadPsd(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

/// The first level of layer 0 and face 0, always of 32 bits. BC7 blocks, which are for the renderer alone, fail.
QXImageData* ReadKtx2(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);

}  // namespace QXC::detail
