/// @file
/// Parser of one kind of files.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXImportParams;

/// Reads one file. Modules derive from it (through QXFileParseModel and its like) and hosts get objects from
/// QXFileParseManager, which also takes them back.
/// Threads: one at a time for one object; two objects are independent.
class QXGRAPHICS3D_API QXFileParser {
public:
  QXFileParser() = default;
  QXFileParser(QXFileParser const&) = delete;
  QXFileParser& operator=(QXFileParser const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXFileParser();

  /// Reads the file that the parameters name. A parser may open one file after another: what an earlier call read
  /// and nobody fetched is dropped first.
  /// @param pParams  borrowed for the call; null is a failure
  /// @return  1, or 0 with the reason in GetErrorText. Nothing is raised, whatever the file holds.
  virtual unsigned char Open(QXImportParams* pParams) = 0;

  /// Why the last Open gave 0: one line without the path, made to stand behind it. Empty after a success.
  virtual QdcUnicodeString const& GetErrorText() const = 0;
};

}  // namespace QXC
