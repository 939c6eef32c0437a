/// @file
/// Reader of the library's configuration files.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace QXC::detail {

/// One `key = value` line.
struct QXIniEntry {
  QdcUnicodeString m_strSection;  ///< empty before the first section
  QdcUnicodeString m_strKey;
  QdcUnicodeString m_strValue;
  int m_nLine = 0;  ///< from 1
};

/// An ini file in UTF-8, read whole or not at all. Keys and section names keep their case; `;` and `#` begin a comment
/// line and " ;" one behind a value. A value stands on one line. A line holds at most 190 bytes and a section name 49,
/// the limits of the parser underneath, which would cut longer ones silently.
class QXIniFile {
public:
  /// Files above this size are refused.
  static constexpr std::size_t ms_nMaxFileSize = 4u << 20;
  static constexpr std::size_t ms_nMaxLine = 190;
  static constexpr std::size_t ms_nMaxSection = 49;

  /// Reads a regular file. 0 on any failure: GetErrorText says where and why, and the entries are what they were.
  unsigned char Load(QdcUnicodeString const& strPath);
  /// The same for bytes in memory; strName stands for the file in the error text.
  unsigned char Parse(std::string_view bytes, QdcUnicodeString const& strName);

  /// In the order of the file, of the last Load or Parse that succeeded.
  std::vector<QXIniEntry> const& GetEntries() const { return m_arrEntries; }
  /// One line, "file:line: what is wrong"; empty after a success.
  QdcUnicodeString const& GetErrorText() const { return m_strErrorText; }

private:
  unsigned char Fail(QdcUnicodeString const& strName, int nLine, wchar_t const* szReason);

  std::vector<QXIniEntry> m_arrEntries;
  QdcUnicodeString m_strErrorText;
};

}  // namespace QXC::detail
