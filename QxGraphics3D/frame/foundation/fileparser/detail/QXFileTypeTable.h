/// @file
/// The table of file types.
#pragma once

#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileTypeRow.h>

#include <mutex>
#include <vector>

namespace QXC::detail {

/// Rows of the library and rows of hosts; the latter are looked at first, the latest before the earlier ones, and hide
/// the library's row of their type. No procedure of a row is called under the lock.
class QXFileTypeTable {
public:
  /// The one table. Never destroyed: files may be read while other statics die.
  static QXFileTypeTable& Instance();

  QXFileTypeTable();

  /// False, and no change, for a row that could never be found or would be read wrongly.
  bool Register(QXFileTypeRow const& row);
  void Unregister(int nType);

  /// The row of a type; m_nType is -1 if there is none.
  QXFileTypeRow FindType(int nType) const;
  /// The row of an extension with its dot, in any case.
  QXFileTypeRow FindExtension(QdcUnicodeString const& strExt) const;
  /// The row whose magic bytes fit; then the row whose procedure says so.
  QXFileTypeRow FindContent(unsigned char const* pBytes, QXUInt64 nSize) const;
  /// All rows of a kind, in the order of their numbers.
  std::vector<QXFileTypeRow> FindKind(QXFileKind eKind) const;

private:
  /// Calls visit(row) for each row in the order of looking until it says true; whether it did.
  template <class Visit>
  bool VisitRows(Visit visit) const;

  mutable std::mutex m_Mutex;
  std::vector<QXFileTypeRow> m_vecBuiltIn;
  /// The latest at the end.
  std::vector<QXFileTypeRow> m_vecRegistered;
};

/// Whether bytes are what a row promises: its magic bytes or its procedure; anything where it has neither.
bool CarriesContent(QXFileTypeRow const& row, unsigned char const* pBytes, QXUInt64 nSize);

}  // namespace QXC::detail
