#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base/detail/QXUtf8.h>

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace QXC::detail {
namespace {

std::vector<std::uint32_t> Decode(std::string_view bytes) {
  std::vector<std::uint32_t> codes;
  while (!bytes.empty()) codes.push_back(TakeUtf8(bytes));
  return codes;
}

// The rule of the encoding, byte pattern by byte pattern, without a table.
bool IsWellFormed(std::string_view bytes, std::size_t nLength) {
  if (bytes.size() < nLength) return false;
  auto const at = [bytes](std::size_t nIndex) { return static_cast<unsigned char>(bytes[nIndex]); };
  for (std::size_t i = 1; i < nLength; ++i) {
    if (at(i) < 0x80 || at(i) > 0xBF) return false;
  }
  switch (nLength) {
  case 1: return at(0) <= 0x7F;
  case 2: return at(0) >= 0xC2 && at(0) <= 0xDF;
  case 3: return (at(0) == 0xE0 && at(1) >= 0xA0) || (at(0) >= 0xE1 && at(0) <= 0xEF);
  default:
    return (at(0) == 0xF0 && at(1) >= 0x90) || (at(0) >= 0xF1 && at(0) <= 0xF3) || (at(0) == 0xF4 && at(1) <= 0x8F);
  }
}

std::size_t SlowLength(std::string_view bytes) {
  for (std::size_t length = 1; length <= 4; ++length) {
    if (IsWellFormed(bytes, length)) return length;
  }
  return 0;
}

TEST(QXUtf8, EveryCodePointSurvivesTheRoundTrip) {
  std::string bytes;
  for (std::uint32_t code = 1; code <= 0x10FFFF; ++code) {
    bytes.clear();
    AppendUtf8(bytes, code);
    std::string_view rest = bytes;
    ASSERT_EQ(SlowLength(rest), bytes.size()) << code;
    ASSERT_EQ(TakeUtf8(rest), code);
    ASSERT_TRUE(rest.empty());
  }
}

TEST(QXUtf8, EveryShortByteSequenceFollowsTheSlowRule) {
  // All pairs of bytes, then a lead byte with each edge of the bytes that may follow.
  unsigned char const arrEdges[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF};
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      for (unsigned char const third : arrEdges) {
        char const bytes[] = {static_cast<char>(first), static_cast<char>(second), static_cast<char>(third), '\x80'};
        for (std::size_t count = 1; count <= 4; ++count) {
          std::string_view const all(bytes, count);
          std::string_view rest = all;
          bool const valid = TakeUtf8(rest) != ms_nNoCharacter;
          std::size_t const expected = SlowLength(all);
          ASSERT_EQ(valid, expected > 0) << first << " " << second << " " << int{third};
          ASSERT_EQ(all.size() - rest.size(), valid ? expected : 1);
        }
      }
    }
  }
}

TEST(QXUtf8, RandomBytesAlwaysEnd) {
  constexpr unsigned int seed = 3113;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(random() % 64, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    std::size_t const count = Decode(bytes).size();
    ASSERT_LE(count, bytes.size());
    ASSERT_GE(count * 4, bytes.size());
  }
}

TEST(QXUtf8, CodesThatAreNoCharacterBecomeTheReplacement) {
  for (std::uint32_t const code : {0x110000u, 0xFFFFFFFFu}) {
    std::string bytes;
    AppendUtf8(bytes, code);
    EXPECT_EQ(bytes, "\xef\xbf\xbd");
  }
}

TEST(QXUtf8, IsUtf8RefusesSurrogatesAndStrayBytes) {
  EXPECT_EQ(IsUtf8(""), 1);
  EXPECT_EQ(IsUtf8("Stra\303\237e \xf0\x9f\x98\x80"), 1);
  EXPECT_EQ(IsUtf8("\xed\xa0\x80"), 0);
  EXPECT_EQ(IsUtf8("\xed\xbf\xbf"), 0);
  EXPECT_EQ(IsUtf8("\xee\x80\x80"), 1);
  EXPECT_EQ(IsUtf8("a\x80"), 0);
  EXPECT_EQ(IsUtf8("\xc3"), 0);
}

TEST(QXUtf8, StringsOfRandomCharactersSurviveTheRoundTrip) {
  constexpr unsigned int seed = 60901;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int round = 0; round < 2000; ++round) {
    QdcUnicodeString text;
    text.SetLength(static_cast<int>(random() % 30));
    for (int i = 0; i < text.GetLength(); ++i) {
      // High surrogates only: one followed by a low one would be joined, which is told and tested elsewhere.
      auto const code = static_cast<std::uint32_t>(1 + random() % 0x10FFFF);
      text[i] = static_cast<wchar_t>(code >= 0xDC00 && code <= 0xDFFF ? code - 0x400 : code);
    }
    ASSERT_TRUE(QdcUnicodeString::FromUTF8(text.ToMBString().Cstr()) == text);
  }
}

}  // namespace
}  // namespace QXC::detail
