/// @file
/// Keeping messages on one line.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC::detail {

/// The text with a blank in place of every control character. Messages quote texts of others (paths, names, the loader's
/// reason, what an exception says), and programs print them as one line.
inline QdcUnicodeString OneLine(QdcUnicodeString const& strText) {
  QdcUnicodeString strLine = strText.Cstr();
  for (int nIndex = 0; nIndex < strLine.GetLength(); ++nIndex) {
    if (strLine[nIndex] < L' ' || strLine[nIndex] == 0x7F) strLine[nIndex] = L' ';
  }
  return strLine;
}

}  // namespace QXC::detail
