/// @file
/// Character sets by number.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QDC {

/// Numbers up to 255 as font and text interfaces of the platform carry them; any other value is kept as it is.
struct QDCCharset {
  enum Charset : int {
    ANSI = 0,
    Default = 1,
    Symbol = 2,
    UTF16BigEndian = 251,  ///< name records of font files
    UnicodeText = 252      ///< wide text of QdcUnicodeString
  };
};

}  // namespace QDC
