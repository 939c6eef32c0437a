/// @file
/// The wide string of the platform.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcMBString.h>

#include <compare>
#include <cwchar>
#include <string>

namespace QDC {

/// Wide text with a length of its own.
///
/// Two measures live side by side. The *text* ends at the first zero character; the *length* is what was set or
/// appended and may reach beyond it, because callers size a string as a buffer (SetLength), let someone fill it,
/// and never cut it back. Comparing, searching, Right and appending go by the text: otherwise a name decoded into an
/// oversized buffer would never equal the same name typed by a caller. Only GetLength, GetAt, the subscript and
/// Delete see the tail.
///
/// Threads: like a value of the standard library; no shared state between copies.
class QXGRAPHICS3D_API QdcUnicodeString {
public:
  QdcUnicodeString();
  /// Copies up to the terminating zero; null gives an empty string.
  QdcUnicodeString(wchar_t const* szText);
  /// Copies exactly nLength characters, zeros among them included. Null or a length below 1 gives an empty string.
  QdcUnicodeString(wchar_t const* pText, int nLength);
  QdcUnicodeString(QdcUnicodeString const& other);
  QdcUnicodeString(QdcUnicodeString&& other) noexcept;
  ~QdcUnicodeString();

  QdcUnicodeString& operator=(QdcUnicodeString const& other);
  QdcUnicodeString& operator=(QdcUnicodeString&& other) noexcept;
  /// szText may point into this string; null empties it.
  QdcUnicodeString& operator=(wchar_t const* szText);

  QdcUnicodeString operator+(QdcUnicodeString const& other) const;
  /// Appends behind the text; a tail behind the first zero is dropped first.
  QdcUnicodeString& operator+=(QdcUnicodeString const& other);

  bool operator==(QdcUnicodeString const& other) const { return std::wcscmp(Cstr(), other.Cstr()) == 0; }
  /// Null compares as empty text.
  bool operator==(wchar_t const* szText) const;
  bool operator!=(QdcUnicodeString const& other) const { return !(*this == other); }
  bool operator!=(wchar_t const* szText) const { return !(*this == szText); }
  /// Order of the character codes, the same in every locale. This is the order of every dictionary with text keys.
  bool operator<(QdcUnicodeString const& other) const { return std::wcscmp(Cstr(), other.Cstr()) < 0; }
  /// The same order for pairs and tuples with text in them and for the other signs: through the conversion below they
  /// would compare addresses.
  std::strong_ordering operator<=>(QdcUnicodeString const& other) const {
    return std::wcscmp(Cstr(), other.Cstr()) <=> 0;
  }

  operator wchar_t const*() const { return Cstr(); }
  /// Unchecked; 0 to GetLength() - 1. Takes exactly int: with another integer type the conversion to a pointer
  /// would compete with it.
  wchar_t& operator[](int nIndex) { return m_strText[static_cast<std::size_t>(nIndex)]; }
  /// Unchecked; GetLength() gives the terminating zero.
  wchar_t operator[](int nIndex) const { return m_strText[static_cast<std::size_t>(nIndex)]; }

  /// Never null; owned by this object and valid until it changes or dies.
  wchar_t const* Cstr() const { return m_strText.c_str(); }
  /// The character at nIndex, or 0 outside 0 to GetLength() - 1.
  wchar_t GetAt(int nIndex) const;
  /// The set length, a tail of zeros included.
  int GetLength() const { return static_cast<int>(m_strText.size()); }
  /// Cuts the string, or lengthens it with zeros; below 0 counts as 0. The buffer behind the subscript then holds
  /// nLength characters that a caller may fill.
  void SetLength(int nLength);
  /// 1 if there is no text, whatever the length.
  unsigned char IsEmpty() const { return static_cast<unsigned char>(*Cstr() == L'\0'); }

  /// Index of the first nCharacter at or behind nStart, -1 if there is none. A start below 0 counts as 0, one behind
  /// the text finds nothing. The zero character is never found.
  int Find(wchar_t nCharacter, int nStart) const;
  /// As above for a piece of text. Empty text is found at the start itself, null nowhere.
  int Find(wchar_t const* szText, int nStart) const;
  /// The last nCount characters of the text: all of it if it is shorter, nothing below 1.
  QdcUnicodeString Right(int nCount) const;
  /// Takes nCount characters out, fewer if the string ends before. An index outside the string changes nothing.
  void Delete(int nIndex, int nCount);
  /// Below 0, 0 or above 0 as this text stands before, equals or stands behind szText when the case is ignored.
  /// Simple case folding, character by character, the same in every locale. Null compares as empty text.
  int CompareNoCase(wchar_t const* szText) const;

  /// The text as UTF-8. Surrogate pairs are joined; a lone surrogate keeps its code in three bytes, so that FromUTF8
  /// gives the same text back; codes that are no character (negative, above U+10FFFF) become U+FFFD.
  QdcMBString ToMBString() const;
  /// Text from UTF-8 bytes up to the terminating zero; null gives an empty string. Each byte that belongs to no
  /// character becomes one U+FFFD.
  static QdcUnicodeString FromUTF8(char const* szText);

  /// Formats as printf does and takes the result; this string's own text may be among the arguments. `%s` and `%c`
  /// take wide text and a wide character, `%S` and `%C` narrow ones (UTF-8). The result does not depend on the locale.
  /// Never pass a string object: pass its Cstr(). On a format that fails the string is empty.
  void Format(wchar_t const* szFormat, ...);

private:
  std::wstring m_strText;
};

}  // namespace QDC

namespace QXC {

/// Compares two zero-terminated wide texts by character codes: below 0, 0 or above 0. Null compares as empty text.
QXGRAPHICS3D_API int QX_strcmp(wchar_t const* szFirst, wchar_t const* szSecond);

}  // namespace QXC
