/// @file
/// What the program tells a person.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <string>

namespace QXApp {

/// As UTF-8.
std::string Narrow(QXC::QdcUnicodeString const& strText);

/// Whether a text is UTF-8, so that it survives the way into the library and back.
bool IsUtf8(std::string const& strText);

/// A text without control characters: names of files may hold line ends, and sequences that a terminal obeys.
std::string MakeOneLine(std::string strText);

/// The extensions of all images that can be read, each behind a blank.
std::string ListImageKinds();

/// Prints "qx3d: " and the text as one line on the standard error output.
void PrintFailure(std::string const& strText);

}  // namespace QXApp
