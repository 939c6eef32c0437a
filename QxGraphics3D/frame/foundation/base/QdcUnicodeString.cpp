#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXUtf8.h>
#include <QxGraphics3D/frame/foundation/base/detail/QXWideFormat.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <string_view>

namespace QDC {

namespace {

wchar_t const* NotNull(wchar_t const* szText) {
  return szText ? szText : L"";
}

std::wstring_view TextOf(std::wstring const& strText) {
  return {strText.c_str()};
}

bool IsHighSurrogate(std::uint32_t nCode) {
  return nCode >= 0xD800 && nCode <= 0xDBFF;
}

bool IsLowSurrogate(std::uint32_t nCode) {
  return nCode >= 0xDC00 && nCode <= 0xDFFF;
}

}  // namespace

QdcUnicodeString::QdcUnicodeString() = default;
QdcUnicodeString::QdcUnicodeString(wchar_t const* szText) : m_strText(NotNull(szText)) {}
QdcUnicodeString::QdcUnicodeString(wchar_t const* pText, int nLength) {
  if (pText && nLength > 0) m_strText.assign(pText, static_cast<std::size_t>(nLength));
}
QdcUnicodeString::QdcUnicodeString(QdcUnicodeString const& other) = default;
QdcUnicodeString::QdcUnicodeString(QdcUnicodeString&& other) noexcept = default;
QdcUnicodeString::~QdcUnicodeString() = default;

QdcUnicodeString& QdcUnicodeString::operator=(QdcUnicodeString const& other) = default;
QdcUnicodeString& QdcUnicodeString::operator=(QdcUnicodeString&& other) noexcept = default;
QdcUnicodeString& QdcUnicodeString::operator=(wchar_t const* szText) {
  m_strText.assign(NotNull(szText));
  return *this;
}

QdcUnicodeString QdcUnicodeString::operator+(QdcUnicodeString const& other) const {
  std::wstring_view const front = TextOf(m_strText);
  std::wstring_view const back = TextOf(other.m_strText);
  QdcUnicodeString result;
  result.m_strText.reserve(front.size() + back.size());
  result.m_strText.append(front).append(back);
  return result;
}

QdcUnicodeString& QdcUnicodeString::operator+=(QdcUnicodeString const& other) {
  std::size_t const added = TextOf(other.m_strText).size();  // before the cut: other may be this string
  m_strText.resize(TextOf(m_strText).size());
  m_strText.append(other.m_strText, 0, added);
  return *this;
}

bool QdcUnicodeString::operator==(wchar_t const* szText) const {
  return std::wcscmp(Cstr(), NotNull(szText)) == 0;
}

wchar_t QdcUnicodeString::GetAt(int nIndex) const {
  return nIndex >= 0 && nIndex < GetLength() ? (*this)[nIndex] : L'\0';
}

void QdcUnicodeString::SetLength(int nLength) {
  m_strText.resize(static_cast<std::size_t>(std::max(nLength, 0)));
}

int QdcUnicodeString::Find(wchar_t nCharacter, int nStart) const {
  std::size_t const found = TextOf(m_strText).find(nCharacter, static_cast<std::size_t>(std::max(nStart, 0)));
  return found == std::wstring_view::npos ? -1 : static_cast<int>(found);
}

int QdcUnicodeString::Find(wchar_t const* szText, int nStart) const {
  if (!szText) return -1;
  std::size_t const found = TextOf(m_strText).find(szText, static_cast<std::size_t>(std::max(nStart, 0)));
  return found == std::wstring_view::npos ? -1 : static_cast<int>(found);
}

QdcUnicodeString QdcUnicodeString::Right(int nCount) const {
  std::wstring_view const text = TextOf(m_strText);
  std::size_t const count = std::min(text.size(), static_cast<std::size_t>(std::max(nCount, 0)));
  QdcUnicodeString result;
  result.m_strText.assign(text.substr(text.size() - count));
  return result;
}

void QdcUnicodeString::Delete(int nIndex, int nCount) {
  if (nIndex < 0 || nIndex >= GetLength() || nCount <= 0) return;
  m_strText.erase(static_cast<std::size_t>(nIndex), static_cast<std::size_t>(nCount));
}

int QdcUnicodeString::CompareNoCase(wchar_t const* szText) const {
  wchar_t const* pFirst = Cstr();
  wchar_t const* pSecond = NotNull(szText);
  for (;; ++pFirst, ++pSecond) {
    wchar_t const first = QXC::detail::FoldCase(*pFirst);
    wchar_t const second = QXC::detail::FoldCase(*pSecond);
    if (first != second) return first < second ? -1 : 1;
    if (first == L'\0') return 0;
  }
}

QdcMBString QdcUnicodeString::ToMBString() const {
  std::string bytes;
  for (wchar_t const* pText = Cstr(); *pText; ++pText) {
    auto code = static_cast<std::uint32_t>(*pText);
    auto const next = static_cast<std::uint32_t>(pText[1]);
    if (IsHighSurrogate(code) && IsLowSurrogate(next)) {
      code = 0x10000 + ((code - 0xD800) << 10) + (next - 0xDC00);
      ++pText;
    }
    QXC::detail::AppendUtf8(bytes, code);
  }
  return QdcMBString(bytes.c_str());
}

QdcUnicodeString QdcUnicodeString::FromUTF8(char const* szText) {
  QdcUnicodeString result;
  std::string_view bytes(szText ? szText : "");
  result.m_strText.reserve(bytes.size());
  while (!bytes.empty()) {
    std::uint32_t const code = QXC::detail::TakeUtf8(bytes);
    bool const isCharacter = code != QXC::detail::ms_nNoCharacter;
    result.m_strText.push_back(static_cast<wchar_t>(isCharacter ? code : QXC::detail::ms_nReplacement));
  }
  return result;
}

void QdcUnicodeString::Format(wchar_t const* szFormat, ...) {
  std::wstring const format = QXC::detail::TranslateFormat(NotNull(szFormat));
  va_list arguments;
  va_start(arguments, szFormat);
  m_strText = QXC::detail::FormatWide(format, arguments);
  va_end(arguments);
}

}  // namespace QDC

namespace QXC {

int QX_strcmp(wchar_t const* szFirst, wchar_t const* szSecond) {
  int const order = std::wcscmp(QDC::NotNull(szFirst), QDC::NotNull(szSecond));
  return (order > 0) - (order < 0);
}

}  // namespace QXC
