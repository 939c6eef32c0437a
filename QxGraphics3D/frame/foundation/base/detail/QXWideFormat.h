/// @file
/// printf for wide text.
#pragma once

#include <cstdarg>
#include <string>

namespace QXC::detail {

/// The platform writes `%s` and `%c` for wide arguments and `%S`, `%C` for narrow ones; the C library means the
/// opposite in a wide format. Gives the format as the C library wants it; lengths already written (`%ls`) stay.
std::wstring TranslateFormat(wchar_t const* szFormat);

/// Formats a translated format, independent of the locale. Empty when the format or an argument cannot be converted or
/// the result would exceed 16 million characters. arguments are consumed.
std::wstring FormatWide(std::wstring const& strFormat, va_list arguments);

/// Simple lower-case folding of one character, independent of the locale.
wchar_t FoldCase(wchar_t nCharacter);

}  // namespace QXC::detail
