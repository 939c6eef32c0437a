/// @file
/// The description that a texture's pixels are made from.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>

namespace QXC {

/// A named image in the caller's memory.
struct QXTextureInfo {
  QdcUnicodeString m_strName;
  unsigned int m_nWidth = 0;   ///< columns
  unsigned int m_nHeight = 0;  ///< rows
  QX3DPixelFormat m_eFormat = PF_UNKNOWN;
  unsigned int m_nCompression = 0;     ///< one of QXTextureCompression
  unsigned int m_nDataSize = 0;        ///< bytes of m_pPixels; 0: as many as size, format and compression ask for
  unsigned char* m_pPixels = nullptr;  ///< borrowed: nobody who reads the record frees it
};

}  // namespace QXC
