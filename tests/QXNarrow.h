/// @file
/// Text of the platform as tests print it.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <string>

namespace QXC {

inline std::string Narrow(QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

}  // namespace QXC
