/// @file
/// Keeping messages on one line.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC::detail {

/// Whether the character would end a line or steer a terminal: both ranges of control characters, and the two
/// separators that some programs break lines at.
inline bool IsControl(wchar_t nCharacter) {
  return nCharacter < L' ' || (nCharacter >= 0x7F && nCharacter < 0xA0) || nCharacter == 0x2028 || nCharacter == 0x2029;
}

/// The text with a blank in place of every control character. Messages quote texts of others (paths, names, the loader's
/// reason, what an exception says), and programs print them as one line.
inline QdcUnicodeString OneLine(QdcUnicodeString const& strText) {
  QdcUnicodeString strLine = strText.Cstr();
  for (int nIndex = 0; nIndex < strLine.GetLength(); ++nIndex) {
    if (IsControl(strLine[nIndex])) strLine[nIndex] = L' ';
  }
  return strLine;
}

}  // namespace QXC::detail
