/// @file
/// The place where parsers come from.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileTypeRow.h>

namespace QXC {

/// Chooses the parser of a file type, from the one table of types that the library fills for images and models and
/// that hosts add to. Model types are read by the module that the plug-in configuration names as "model-reader" with
/// the lowest number, loaded at the first model file and kept until the process ends: a host without models carries
/// none of it.
/// Threads: any number at once, so that hosts load images on workers. No procedure is called under a lock.
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

  /// Why the last CreateFileParser of the calling thread gave null: one line. Empty after a success. Valid until the
  /// thread's next call or its end.
  static QdcUnicodeString const& GetErrorText();

  /// Sets the parser of a type, before the one that its row names and before any module; null takes a procedure away
  /// again. This is how hosts replace a reader, and tests bring parsers that fail.
  static void RegisterFileParser(int nType, QXFileParserCreateProc pfnCreate, QXFileParserDestroyProc pfnDestroy);

  /// Adds a type to the table, or puts the row in the place of the type's own. Its extensions and magic bytes are looked
  /// at before those of other types that were there earlier.
  /// @return  1; 0, and no change, for a type below 0, a row without extensions, magic bytes that cannot be read, or one
  ///          procedure without the other
  static unsigned char RegisterFileType(QXFileTypeRow const& row);

  /// Takes a host's row away; a type of the library's is then again what it was.
  static void UnregisterFileType(int nType);
};

}  // namespace QXC
