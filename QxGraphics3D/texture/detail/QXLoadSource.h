/// @file
/// What all roads from a file to a texture begin with.
#pragma once

#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <memory>

namespace QXC {

class QXImportParams;

namespace detail {

/// The compression code, and the bit depth of an image record, of a block that holds a file's bytes as they are.
constexpr unsigned char RawFileCode = 16;

/// Parameters of reading a file of a type; null stops the load.
std::unique_ptr<QXImportParams> MakeLoadParams(int nType, QdcUnicodeString const& strPath);

/// A block for pixels, null if there is no memory for it, an edge is 0, or it would be more than four times what a decoded
/// image may have: rounding both edges up to powers of two asks for less than that.
std::unique_ptr<unsigned char[]> NewTextureBlock(unsigned int nWidth, unsigned int nHeight, unsigned int nPixelSize);

}  // namespace detail
}  // namespace QXC
