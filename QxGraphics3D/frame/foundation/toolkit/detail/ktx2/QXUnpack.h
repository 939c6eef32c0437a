/// @file
/// Undoes the compressions that KTX2 files put over whole levels.
#pragma once

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2File.h>

#include <cstdint>

namespace QXC::detail {

/// Unpacks Zstandard or zlib bytes.
/// @param packed   the whole of a level
/// @param pTarget  receives exactly nSize bytes, whatever the packed bytes say of their own length
/// @param bWhole   true: the packed bytes must hold nSize bytes and nothing else; false: at least as many, of which the
///                 first are taken
/// @return  false, the target then holding anything, if they do not, are damaged or memory is short; and for another
///          scheme
bool Unpack(QXKtx2Scheme eScheme, QXKtx2Range packed, unsigned char* pTarget, std::uint64_t nSize, bool bWhole);

}  // namespace QXC::detail
