/// @file
/// UTF-8 to code points and back, one character at a time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace QXC::detail {

/// What a decoder returns for a byte that belongs to no character.
constexpr std::uint32_t ms_nNoCharacter = 0xFFFFFFFFu;

/// Stands for what cannot be represented.
constexpr std::uint32_t ms_nReplacement = 0xFFFDu;

/// Decodes the character at the front of bytes and removes it; of bytes that form none, removes one and returns
/// ms_nNoCharacter. Overlong forms and codes above U+10FFFF form none. Surrogate codes are let through in three bytes,
/// because that is how a lone surrogate of a wide text is written. bytes must not be empty.
std::uint32_t TakeUtf8(std::string_view& bytes);

/// Appends the character; a code above U+10FFFF becomes U+FFFD.
void AppendUtf8(std::string& bytes, std::uint32_t nCode);

/// 1 if every byte belongs to a character and none is a surrogate.
unsigned char IsUtf8(std::string_view bytes);

}  // namespace QXC::detail
