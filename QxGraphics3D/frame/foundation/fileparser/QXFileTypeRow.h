/// @file
/// One row of the table of file types.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXFileParser;

/// Makes a parser, or gives null. Nothing may be raised.
using QXFileParserCreateProc = QXFileParser* (*)();
/// Takes back what the procedure above made.
using QXFileParserDestroyProc = void (*)(QXFileParser*);
/// Says whether bytes, a whole file or its beginning, look like a type: 1 or 0. Nothing may be raised.
using QXFileContentProc = unsigned char (*)(unsigned char const* pBytes, QXUInt64 nSize);

/// What the files of a type hold.
enum QXFileKind : int {
  EM_FILE_OTHER = 0,
  /// Read by a QXFileParseImage.
  EM_FILE_IMAGE = 1,
  /// Read by a QXFileParseModel; a row without procedures leaves it to the model reader of the plug-in configuration.
  EM_FILE_MODEL = 2
};

/// How files of one type are known and who reads them. A value.
struct QXFileTypeRow {
  /// A number of QXFileType::EmType, which the row then replaces, or one from QXFileType::EM_FIRST_CUSTOM on.
  int m_nType = -1;
  QXFileKind m_eKind = EM_FILE_OTHER;
  /// Extensions with their dots, separated by spaces: ".jpg .jpeg". Case does not matter. The first one is the one that
  /// messages show.
  QdcUnicodeString m_strExtensions;
  /// The bytes that such a file begins with, two hexadecimal digits a byte, ".." for any byte; alternatives are separated
  /// by spaces: "474946383761 474946383961". Empty: there are none.
  QdcUnicodeString m_strMagic;
  /// For types that no fixed bytes tell; asked after the magic bytes of all types have failed. May be null.
  QXFileContentProc m_pfnContent = nullptr;
  /// Both or none.
  QXFileParserCreateProc m_pfnCreate = nullptr;
  QXFileParserDestroyProc m_pfnDestroy = nullptr;
};

}  // namespace QXC
