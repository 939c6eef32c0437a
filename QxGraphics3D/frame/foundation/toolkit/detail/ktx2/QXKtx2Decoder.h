/// @file
/// The pixels of a KTX2 file.
#pragma once

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2File.h>

#include <cstdint>
#include <memory>

namespace QXC::detail {

/// Decodes levels of layer 0 and face 0.
/// @param file     opened
/// @param nLevels  how many, the largest first; not more than the file has
/// @return  file.GetDecodedSize(nLevels) bytes: the levels one after the other, of BC7 the blocks as they are, else
///          R,G,B,A with tight rows, the top one first. What a file lacks is 0, and 255 in alpha. Null if the result
///          would pass limits.m_nMaxBytes, which is looked at first, if a level is damaged, or without memory
/// Raises std::bad_alloc where a codebook finds no memory.
/// Cost:  besides the result one level in its stored form, where that is not the result's own.
std::unique_ptr<unsigned char[]> DecodeKtx2Levels(
    QXKtx2File const& file, unsigned int nLevels, QXKtx2Limits const& limits);

}  // namespace QXC::detail
