#include <QxGraphics3D/frame/foundation/toolkit/QXTextCodec.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace QXC {
namespace {

constexpr wchar_t ms_nUntouched = 0x5A5A5A;

struct Converted {
  unsigned char m_bDone = 0;
  std::wstring m_strText;
  wchar_t m_nBehind = 0;
};

/// Converts into exactly nRoom characters; what stands behind them must not change.
Converted Convert(std::vector<unsigned char> const& arrBytes, std::size_t nRoom, int nFrom = 251, int nTo = 252) {
  std::vector<wchar_t> out(nRoom + 1, ms_nUntouched);
  Converted result;
  result.m_bDone = QXTextCodec(nFrom, nTo)
                       .Convert(out.data(), static_cast<unsigned int>(nRoom), arrBytes.data(),
                           static_cast<unsigned int>(arrBytes.size()));
  result.m_nBehind = out[nRoom];
  if (nRoom > 0) result.m_strText = out.data();
  return result;
}

TEST(QXTextCodec, PairsOfBytesAreCharactersHighByteFirst) {
  Converted const result = Convert({0, 'A', 0x65, 0x87, 0xFF, 0xFD}, 4);
  EXPECT_EQ(result.m_bDone, 1);
  EXPECT_EQ(result.m_strText, L"A\u6587\uFFFD");
}

TEST(QXTextCodec, SurrogatePairIsOneCharacter) {
  EXPECT_EQ(Convert({0xD8, 0x00, 0xDC, 0x00}, 2).m_strText, L"\x10000");
  EXPECT_EQ(Convert({0xDB, 0xFF, 0xDF, 0xFF}, 2).m_strText, L"\x10FFFF");
  EXPECT_EQ(Convert({0xD8, 0x3D, 0xDE, 0x00, 0, 'z'}, 3).m_strText, L"\x1F600z");
}

TEST(QXTextCodec, LoneSurrogatePassesThrough) {
  EXPECT_EQ(Convert({0xD8, 0x00}, 2).m_strText, L"\xD800");
  EXPECT_EQ(Convert({0xDC, 0x00, 0xD8, 0x00}, 3).m_strText, L"\xDC00\xD800");
  EXPECT_EQ(Convert({0xD8, 0x00, 0xD8, 0x00, 0xDC, 0x01}, 3).m_strText, L"\xD800\x10001");
  EXPECT_EQ(Convert({0xD8, 0x00, 0, 'a'}, 3).m_strText, L"\xD800\x61");
}

TEST(QXTextCodec, OutputEndsWithAZeroWithinItsRoom) {
  for (std::size_t room = 0; room <= 4; ++room) {
    Converted const result = Convert({0, 'a', 0, 'b'}, room);
    EXPECT_EQ(result.m_bDone, room >= 3) << room;
    EXPECT_EQ(result.m_strText, room >= 3 ? L"ab" : L"") << room;
    EXPECT_EQ(result.m_nBehind, ms_nUntouched) << room;
  }
}

TEST(QXTextCodec, NothingAndHalfAUnitFail) {
  EXPECT_EQ(Convert({}, 3).m_bDone, 0);
  EXPECT_EQ(Convert({0}, 3).m_bDone, 0);
  Converted const half = Convert({0, 'a', 0}, 3);
  EXPECT_EQ(half.m_bDone, 0);
  EXPECT_EQ(half.m_strText, L"");
  wchar_t out[2] = {L'x', L'y'};
  EXPECT_EQ(QXTextCodec(251, 252).Convert(out, 2, nullptr, 2), 0);
  EXPECT_EQ(out[0], L'\0');
  unsigned char const bytes[2] = {0, 'a'};
  EXPECT_EQ(QXTextCodec(251, 252).Convert(nullptr, 2, bytes, 2), 0);
}

TEST(QXTextCodec, ZeroIsACharacterLikeOthers) {
  wchar_t out[4] = {1, 1, 1, 1};
  unsigned char const bytes[] = {0, 'a', 0, 0, 0, 'b'};
  EXPECT_EQ(QXTextCodec(251, 252).Convert(out, 4, bytes, 6), 1);
  EXPECT_EQ(std::wstring(out, 4), std::wstring(L"a\0b\0", 4));
}

TEST(QXTextCodec, OtherCharacterSetsFail) {
  for (auto const& [from, to] : {std::pair{252, 251}, {251, 251}, {252, 252}, {0, 252}, {251, 1}, {-1, 252}}) {
    Converted const result = Convert({0, 'a'}, 3, from, to);
    EXPECT_EQ(result.m_bDone, 0) << from << ' ' << to;
    EXPECT_EQ(result.m_strText, L"") << from << ' ' << to;
  }
}

TEST(QXTextCodec, RandomTextsComeBack) {
  constexpr unsigned int seed = 20261121;
  std::printf("seed %u\n", seed);
  std::mt19937 random(seed);
  for (int round = 0; round < 2000; ++round) {
    std::wstring text(1 + random() % 20, L'\0');
    std::vector<unsigned char> bytes;
    auto const put = [&bytes](std::uint32_t unit) {
      bytes.push_back(static_cast<unsigned char>(unit >> 8));
      bytes.push_back(static_cast<unsigned char>(unit & 0xFF));
    };
    for (wchar_t& letter : text) {
      std::uint32_t code = 0;
      do {
        code = static_cast<std::uint32_t>(1 + random() % (random() % 2 ? 0x10FFFF : 0x2FF));
      } while (code >= 0xD800 && code <= 0xDFFF);
      letter = static_cast<wchar_t>(code);
      if (code > 0xFFFF) put(0xD800 + ((code - 0x10000) >> 10));
      put(code > 0xFFFF ? 0xDC00 + ((code - 0x10000) & 0x3FF) : code);
    }
    Converted const result = Convert(bytes, text.size() + 1);
    ASSERT_EQ(result.m_bDone, 1);
    ASSERT_EQ(result.m_strText, text);
    ASSERT_EQ(result.m_nBehind, ms_nUntouched);
  }
}

}  // namespace
}  // namespace QXC
