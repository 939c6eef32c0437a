#include <QxGraphics3D/frame/foundation/base/detail/QXWideFormat.h>

#include <locale.h>

#include <cerrno>
#include <cstddef>
#include <cwchar>
#include <cwctype>

namespace QXC::detail {

namespace {

constexpr std::size_t nFirstSize = 256;
constexpr std::size_t nLargestSize = std::size_t{1} << 24;

// UTF-8 without language: numbers keep their point and narrow arguments their characters whatever the host has set.
// Kept until the process ends; strings are formatted and compared up to the last static destructor.
locale_t NeutralLocale() {
  static locale_t const locale = [] {
    locale_t const utf8 = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
    return utf8 ? utf8 : newlocale(LC_ALL_MASK, "C", nullptr);
  }();
  return locale;
}

class LocaleScope {
public:
  LocaleScope() : m_Former(uselocale(NeutralLocale())) {}
  LocaleScope(LocaleScope const&) = delete;
  LocaleScope& operator=(LocaleScope const&) = delete;
  ~LocaleScope() { uselocale(m_Former); }

private:
  locale_t m_Former;
};

bool IsIn(wchar_t nCharacter, wchar_t const* szSet) {
  return nCharacter != L'\0' && std::wcschr(szSet, nCharacter) != nullptr;
}

void AppendConversion(std::wstring& strResult, wchar_t nConversion, bool bHasLength) {
  if (!bHasLength && (nConversion == L's' || nConversion == L'c')) strResult += L'l';
  if (!bHasLength && nConversion == L'S') nConversion = L's';
  if (!bHasLength && nConversion == L'C') nConversion = L'c';
  strResult += nConversion;
}

}  // namespace

std::wstring TranslateFormat(wchar_t const* szFormat) {
  std::wstring result;
  while (*szFormat) {
    result += *szFormat;
    if (*szFormat++ != L'%') continue;
    while (IsIn(*szFormat, L"-+ #0123456789.*$'")) result += *szFormat++;
    bool hasLength = false;
    for (; IsIn(*szFormat, L"hlLqjzt"); ++szFormat) {
      result += *szFormat;
      hasLength = true;
    }
    if (*szFormat) AppendConversion(result, *szFormat++, hasLength);
  }
  return result;
}

std::wstring FormatWide(std::wstring const& strFormat, va_list arguments) {
  LocaleScope const locale;
  std::wstring buffer;
  // vswprintf tells neither the size it needs nor, before glibc 2.37, that size was what it lacked.
  for (std::size_t size = nFirstSize; size <= nLargestSize; size *= 4) {
    buffer.resize(size);
    va_list copy;
    va_copy(copy, arguments);
    errno = 0;
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the analyzer loses track of a va_list that came as argument
    int const length = std::vswprintf(buffer.data(), size, strFormat.c_str(), copy);
    va_end(copy);
    if (length >= 0) {
      buffer.resize(static_cast<std::size_t>(length));
      return buffer;
    }
    if (errno == EILSEQ || errno == EINVAL) break;
  }
  return {};
}

wchar_t FoldCase(wchar_t nCharacter) {
  return static_cast<wchar_t>(towlower_l(static_cast<wint_t>(nCharacter), NeutralLocale()));
}

}  // namespace QXC::detail
