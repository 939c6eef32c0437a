/// @file
/// Text as bytes, for what takes narrow strings: file operations of the system, other libraries, streams.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <string>

namespace QDC {

/// Zero-terminated bytes. Everything that the library itself makes is UTF-8.
class QXGRAPHICS3D_API QdcMBString {
public:
  QdcMBString();
  /// Copies up to the terminating zero; null gives an empty string.
  QdcMBString(char const* szText);

  /// Never null; owned by this object and valid until it changes or dies.
  char const* Cstr() const { return m_strText.c_str(); }
  /// Bytes without the terminating zero.
  int GetLength() const { return static_cast<int>(m_strText.size()); }

private:
  std::string m_strText;
};

}  // namespace QDC
