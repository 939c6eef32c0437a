/// @file
/// The place where parsers come from.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXFileParser;

/// Makes a parser, or gives null. Nothing may be raised.
using QXFileParserCreateProc = QXFileParser* (*)();
/// Takes back what the procedure above made.
using QXFileParserDestroyProc = void (*)(QXFileParser*);

/// Chooses the parser of a file type. Model types are read by the module that the plug-in configuration names as
/// "model-reader" with the lowest number, loaded at the first model file and kept until the process ends: a host
/// without models carries none of it.
/// Threads: none of its own and no lock; from one thread at a time, as every cache above it.
class QXGRAPHICS3D_API QXFileParseManager {
public:
  /// A parser for files of a type.
  /// @param nType  a number of QXFileType::EmType or one given to RegisterFileParser
  /// @param bFlag  0; kept for callers that hand it through, no parser looks at it
  /// @return  an object for DestroyFileParser; null, with the reason in GetErrorText, if the type has no parser or
  ///          its module cannot be loaded. A failure to load is tried again at the next call.
  static QXFileParser* CreateFileParser(int nType, unsigned char bFlag);

  /// Takes a parser back where it was made. Null, or an object that did not come from here, is left alone.
  static void DestroyFileParser(QXFileParser* pParser);

  /// Why the last CreateFileParser gave null: one line. Empty after a success.
  static QdcUnicodeString const& GetErrorText();

  /// Sets the parser of a type, before any module; null takes a procedure away again. This is how hosts bring
  /// types of their own, and tests parsers that fail.
  static void RegisterFileParser(int nType, QXFileParserCreateProc pfnCreate, QXFileParserDestroyProc pfnDestroy);
};

}  // namespace QXC
