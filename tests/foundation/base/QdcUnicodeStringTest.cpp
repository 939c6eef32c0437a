#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <gtest/gtest.h>
#include <locale.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>

namespace QXC {
namespace {

// Text "abc" in a buffer of nine characters, as a decoder leaves it that never cuts its buffer back.
QdcUnicodeString WithTail() {
  QdcUnicodeString text;
  text.SetLength(9);
  text[0] = L'a';
  text[1] = L'b';
  text[2] = L'c';
  return text;
}

std::string Bytes(QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

QdcUnicodeString One(std::int32_t nCode) {
  auto const character = static_cast<wchar_t>(nCode);
  return QdcUnicodeString(&character, 1);
}

TEST(QdcUnicodeString, DefaultIsEmptyTextThatIsNeverNull) {
  QdcUnicodeString const text;
  ASSERT_NE(text.Cstr(), nullptr);
  EXPECT_EQ(text.Cstr()[0], L'\0');
  EXPECT_EQ(text.GetLength(), 0);
  EXPECT_EQ(text.IsEmpty(), 1);
}

TEST(QdcUnicodeString, NullMakesEmptyText) {
  EXPECT_EQ(QdcUnicodeString(static_cast<wchar_t const*>(nullptr)).GetLength(), 0);
  EXPECT_EQ(QdcUnicodeString(nullptr, 4).GetLength(), 0);
  QdcUnicodeString text(L"abc");
  text = static_cast<wchar_t const*>(nullptr);
  EXPECT_EQ(text.IsEmpty(), 1);
  EXPECT_TRUE(text == static_cast<wchar_t const*>(nullptr));
}

TEST(QdcUnicodeString, PointerAndLengthKeepsZerosInside) {
  QdcUnicodeString const text(L"ab\0cd", 5);
  EXPECT_EQ(text.GetLength(), 5);
  EXPECT_EQ(text.GetAt(3), L'c');
  EXPECT_TRUE(text == L"ab");
  EXPECT_EQ(QdcUnicodeString(L"abc", 0).GetLength(), 0);
  EXPECT_EQ(QdcUnicodeString(L"abc", -1).GetLength(), 0);
}

TEST(QdcUnicodeString, CopiesAreIndependentAndKeepTheTail) {
  QdcUnicodeString const first = WithTail();
  QdcUnicodeString second(first);
  QdcUnicodeString third;
  third = first;
  second[0] = L'x';
  EXPECT_TRUE(first == L"abc");
  EXPECT_TRUE(second == L"xbc");
  EXPECT_EQ(second.GetLength(), 9);
  EXPECT_EQ(third.GetLength(), 9);
}

TEST(QdcUnicodeString, MoveTakesTheText) {
  QdcUnicodeString first(L"a text that is too long for the object itself");
  wchar_t const* const pText = first.Cstr();
  QdcUnicodeString const second(std::move(first));
  EXPECT_EQ(second.Cstr(), pText);
}

TEST(QdcUnicodeString, AssignmentOfItsOwnTextIsSafe) {
  QdcUnicodeString text(L"folder/file.png");
  text = text.Cstr() + 7;
  EXPECT_TRUE(text == L"file.png");
}

TEST(QdcUnicodeString, ComparisonsGoByTheZeroTerminatedText) {
  QdcUnicodeString const tail = WithTail();
  QdcUnicodeString const plain(L"abc");
  EXPECT_TRUE(tail == plain);
  EXPECT_TRUE(plain == tail);
  EXPECT_TRUE(tail == L"abc");
  EXPECT_FALSE(tail != plain);
  EXPECT_FALSE(tail != L"abc");
  EXPECT_FALSE(tail < plain);
  EXPECT_FALSE(plain < tail);
  EXPECT_EQ(tail.CompareNoCase(L"ABC"), 0);
  EXPECT_TRUE(tail != L"abcd");
  EXPECT_TRUE(tail < QdcUnicodeString(L"abcd"));
}

TEST(QdcUnicodeString, GetLengthKeepsTheSetLength) {
  EXPECT_EQ(WithTail().GetLength(), 9);
}

TEST(QdcUnicodeString, OrderIsThatOfCharacterCodes) {
  wchar_t const* const arrOrdered[] = {L"", L"A", L"Z", L"a", L"aa", L"b", L"\u00e4", L"\u4e2d", L"\U0001f600"};
  for (std::size_t i = 0; i < std::size(arrOrdered); ++i) {
    for (std::size_t j = 0; j < std::size(arrOrdered); ++j) {
      EXPECT_EQ(QdcUnicodeString(arrOrdered[i]) < QdcUnicodeString(arrOrdered[j]), i < j) << i << " " << j;
    }
  }
}

TEST(QdcUnicodeString, OrderIsThatOfTextInPairsToo) {
  QdcUnicodeString const strLow = L"a";
  QdcUnicodeString const strHigh = L"b";
  for (auto const& [first, second] : {std::pair(strLow, strHigh), std::pair(QdcUnicodeString(L"a"), strHigh)}) {
    EXPECT_TRUE(first <= second);
    EXPECT_TRUE(second > first);
    EXPECT_TRUE(second >= first);
    EXPECT_FALSE(first > second);
    EXPECT_TRUE(std::pair(first, 2) < std::pair(second, 1));
    EXPECT_FALSE(std::pair(second, 1) < std::pair(first, 2));
    EXPECT_TRUE(std::pair(first, 1) < std::pair(strLow, 2));
  }
}

TEST(QdcUnicodeString, ConcatenationJoinsTextsWithoutTails) {
  QdcUnicodeString const joined = WithTail() + WithTail();
  EXPECT_TRUE(joined == L"abcabc");
  EXPECT_EQ(joined.GetLength(), 6);
  QdcUnicodeString appended = WithTail();
  appended += L"/d";
  EXPECT_TRUE(appended == L"abc/d");
  EXPECT_EQ(appended.GetLength(), 5);
}

TEST(QdcUnicodeString, AppendingItselfDoublesTheText) {
  QdcUnicodeString text(L"a text long enough to move when it grows ");
  text += text;
  EXPECT_TRUE(text == L"a text long enough to move when it grows a text long enough to move when it grows ");
  QdcUnicodeString tail = WithTail();
  tail += tail;
  EXPECT_TRUE(tail == L"abcabc");
}

TEST(QdcUnicodeString, SubscriptReadsAndWritesAndTheConversionGivesTheText) {
  QdcUnicodeString text(L"abc");
  text[1] = L'X';
  QdcUnicodeString const& constant = text;
  EXPECT_EQ(constant[1], L'X');
  EXPECT_EQ(constant[3], L'\0');
  wchar_t const* const pText = text;
  EXPECT_EQ(pText, text.Cstr());
}

TEST(QdcUnicodeString, GetAtOutsideTheStringGivesZero) {
  QdcUnicodeString const text(L"abc");
  EXPECT_EQ(text.GetAt(0), L'a');
  EXPECT_EQ(text.GetAt(2), L'c');
  EXPECT_EQ(text.GetAt(3), L'\0');
  EXPECT_EQ(text.GetAt(-1), L'\0');
}

TEST(QdcUnicodeString, SetLengthCutsAndLengthensWithZeros) {
  QdcUnicodeString text(L"abcdef");
  text.SetLength(2);
  EXPECT_TRUE(text == L"ab");
  text.SetLength(4);
  EXPECT_EQ(text.GetLength(), 4);
  EXPECT_EQ(text.GetAt(2), L'\0');
  EXPECT_EQ(text.GetAt(3), L'\0');
  EXPECT_TRUE(text == L"ab");
  text.SetLength(-5);
  EXPECT_EQ(text.GetLength(), 0);
}

TEST(QdcUnicodeString, IsEmptyAsksForTextNotForLength) {
  QdcUnicodeString text;
  text.SetLength(6);
  EXPECT_EQ(text.IsEmpty(), 1);
  text[0] = L'a';
  EXPECT_EQ(text.IsEmpty(), 0);
}

TEST(QdcUnicodeString, FindOfACharacterStartsWhereItIsTold) {
  QdcUnicodeString const text(L"a b c");
  EXPECT_EQ(text.Find(L' ', 0), 1);
  EXPECT_EQ(text.Find(L' ', 1), 1);
  EXPECT_EQ(text.Find(L' ', 2), 3);
  EXPECT_EQ(text.Find(L' ', 4), -1);
  EXPECT_EQ(text.Find(L' ', 99), -1);
  EXPECT_EQ(text.Find(L'a', -3), 0);
  EXPECT_EQ(text.Find(L'x', 0), -1);
  EXPECT_EQ(WithTail().Find(L'\0', 0), -1);
}

TEST(QdcUnicodeString, FindOfTextStartsWhereItIsTold) {
  QdcUnicodeString const text(L"abcabc");
  EXPECT_EQ(text.Find(L"abc", 0), 0);
  EXPECT_EQ(text.Find(L"abc", 1), 3);
  EXPECT_EQ(text.Find(L"abc", 4), -1);
  EXPECT_EQ(text.Find(L"bca", -1), 1);
  EXPECT_EQ(text.Find(L"abcabcd", 0), -1);
  EXPECT_EQ(text.Find(L"", 0), 0);
  EXPECT_EQ(text.Find(L"", 6), 6);
  EXPECT_EQ(text.Find(L"", 7), -1);
  EXPECT_EQ(text.Find(static_cast<wchar_t const*>(nullptr), 0), -1);
}

TEST(QdcUnicodeString, FindSeesNothingBehindTheText) {
  QdcUnicodeString const text(L"ab\0cd", 5);
  EXPECT_EQ(text.Find(L'c', 0), -1);
  EXPECT_EQ(text.Find(L"cd", 0), -1);
  EXPECT_EQ(text.Find(L'c', 3), -1);
}

TEST(QdcUnicodeString, RightTakesTheEndOfTheText) {
  QdcUnicodeString const text(L"roof.ktx2");
  EXPECT_TRUE(text.Right(5) == L".ktx2");
  EXPECT_TRUE(text.Right(99) == L"roof.ktx2");
  EXPECT_TRUE(text.Right(0) == L"");
  EXPECT_TRUE(text.Right(-1) == L"");
  EXPECT_TRUE(WithTail().Right(2) == L"bc");
}

TEST(QdcUnicodeString, DeleteTakesCharactersOut) {
  QdcUnicodeString text(L"Times New Roman");
  text.Delete(5, 1);
  EXPECT_TRUE(text == L"TimesNew Roman");
  text.Delete(8, 99);
  EXPECT_TRUE(text == L"TimesNew");
  text.Delete(8, 1);
  text.Delete(-1, 2);
  text.Delete(0, 0);
  text.Delete(0, -1);
  EXPECT_TRUE(text == L"TimesNew");
}

TEST(QdcUnicodeString, CompareNoCaseFoldsEveryAlphabetWhateverTheLocale) {
  EXPECT_EQ(QdcUnicodeString(L"Regular").CompareNoCase(L"rEGULAR"), 0);
  EXPECT_EQ(QdcUnicodeString(L"\u00c4\u0416\u03a9").CompareNoCase(L"\u00e4\u0436\u03c9"), 0);
  EXPECT_LT(QdcUnicodeString(L"abc").CompareNoCase(L"ABD"), 0);
  EXPECT_GT(QdcUnicodeString(L"abd").CompareNoCase(L"ABC"), 0);
  EXPECT_LT(QdcUnicodeString(L"ab").CompareNoCase(L"abc"), 0);
  EXPECT_GT(QdcUnicodeString(L"abc").CompareNoCase(L"ab"), 0);
  EXPECT_EQ(QdcUnicodeString().CompareNoCase(nullptr), 0);
  EXPECT_GT(QdcUnicodeString(L"a").CompareNoCase(nullptr), 0);
}

TEST(QdcUnicodeString, ToMBStringWritesUTF8) {
  EXPECT_EQ(Bytes(L""), "");
  EXPECT_EQ(Bytes(L"a\u007f"), "a\x7f");
  EXPECT_EQ(Bytes(L"\u0080\u07ff"), "\xc2\x80\xdf\xbf");
  EXPECT_EQ(Bytes(L"\u0800\uffff"), "\xe0\xa0\x80\xef\xbf\xbf");
  EXPECT_EQ(Bytes(L"\U00010000\U0010ffff"), "\xf0\x90\x80\x80\xf4\x8f\xbf\xbf");
  EXPECT_EQ(Bytes(WithTail()), "abc");
}

TEST(QdcUnicodeString, ToMBStringJoinsPairsAndKeepsLoneSurrogates) {
  EXPECT_EQ(Bytes(One(0xD83D) + One(0xDE00)), "\xf0\x9f\x98\x80");
  EXPECT_EQ(Bytes(One(0xD83D)), "\xed\xa0\xbd");
  EXPECT_EQ(Bytes(One(0xDE00)), "\xed\xb8\x80");
  EXPECT_EQ(Bytes(One(0xDE00) + One(0xD83D)), "\xed\xb8\x80\xed\xa0\xbd");
  EXPECT_EQ(Bytes(One(0xD83D) + One(0xD83D) + One(0xDE00)), "\xed\xa0\xbd\xf0\x9f\x98\x80");
}

TEST(QdcUnicodeString, ToMBStringReplacesWhatIsNoCharacter) {
  EXPECT_EQ(Bytes(One(0x110000)), "\xef\xbf\xbd");
  EXPECT_EQ(Bytes(One(-1)), "\xef\xbf\xbd");
}

TEST(QdcUnicodeString, FromUTF8GivesBackWhatToMBStringWrote) {
  EXPECT_TRUE(QdcUnicodeString::FromUTF8(nullptr) == L"");
  EXPECT_TRUE(QdcUnicodeString::FromUTF8("Stra\303\237e") == L"Stra\u00dfe");
  EXPECT_TRUE(QdcUnicodeString::FromUTF8("\xf0\x9f\x98\x80") == L"\U0001f600");
  QdcUnicodeString const lone = One(0xDC00) + One(0xD800);
  EXPECT_TRUE(QdcUnicodeString::FromUTF8(lone.ToMBString().Cstr()) == lone);
}

TEST(QdcUnicodeString, FromUTF8ReplacesEachByteThatBelongsToNoCharacter) {
  EXPECT_TRUE(QdcUnicodeString::FromUTF8("a\377b") == L"a\ufffdb");
  EXPECT_TRUE(QdcUnicodeString::FromUTF8("\xe4\xb8") == L"\ufffd\ufffd");
}

TEST(QdcUnicodeString, FormatTakesWideTextForPercentS) {
  QdcUnicodeString text;
  text.Format(L"%s_%d", L"Stra\u00dfe", -7);
  EXPECT_TRUE(text == L"Stra\u00dfe_-7");
  text.Format(L"[%5s|%-5s|%.2s|%*s]", L"ab", L"ab", L"abc", 3, L"x");
  EXPECT_TRUE(text == L"[   ab|ab   |ab|  x]");
  text.Format(L"%ls 100%% %c", L"wide", static_cast<wint_t>(L'\u00e9'));
  EXPECT_TRUE(text == L"wide 100% \u00e9");
}

TEST(QdcUnicodeString, FormatTakesNarrowTextForPercentCapitalSInEveryLocale) {
  ASSERT_STREQ(setlocale(LC_ALL, nullptr), "C");
  QdcUnicodeString text;
  text.Format(L"%S|%hs|%C", "Stra\303\237e", "plain", 'x');
  EXPECT_TRUE(text == L"Stra\u00dfe|plain|x");
}

TEST(QdcUnicodeString, FormatLeavesTheThreadsLocaleAsItWas) {
  uselocale(LC_GLOBAL_LOCALE);
  QdcUnicodeString text;
  text.Format(L"%.3f", 0.5);
  EXPECT_TRUE(text == L"0.500");
  EXPECT_EQ(uselocale(static_cast<locale_t>(nullptr)), LC_GLOBAL_LOCALE);
}

TEST(QdcUnicodeString, FormatGrowsToWhatTheResultNeeds) {
  for (int const length : {254, 255, 256, 257, 1023, 1024, 70000}) {
    std::wstring const expected(static_cast<std::size_t>(length), L'x');
    QdcUnicodeString text;
    text.Format(L"%s", expected.c_str());
    EXPECT_EQ(text.GetLength(), length);
    EXPECT_TRUE(text == expected.c_str());
  }
}

TEST(QdcUnicodeString, FormatMayTakeItsOwnText) {
  QdcUnicodeString text(L"tile");
  text.Format(L"%s_%s", text.Cstr(), text.Cstr());
  EXPECT_TRUE(text == L"tile_tile");
}

TEST(QdcUnicodeString, FormatThatFailsGivesEmptyText) {
  QdcUnicodeString text(L"before");
  text.Format(L"%S", "\xff");
  EXPECT_EQ(text.GetLength(), 0);
  text = L"before";
  text.Format(nullptr);
  EXPECT_EQ(text.GetLength(), 0);
}

TEST(QdcUnicodeString, StringCompareOrdersTextAndTakesNull) {
  EXPECT_EQ(QX_strcmp(L"abc", L"abc"), 0);
  EXPECT_LT(QX_strcmp(L"abc", L"abd"), 0);
  EXPECT_GT(QX_strcmp(L"b", L"abd"), 0);
  EXPECT_EQ(QX_strcmp(nullptr, L""), 0);
  EXPECT_LT(QX_strcmp(nullptr, L"a"), 0);
}

int SlowFind(std::wstring const& strText, std::wstring const& strPart, int nStart) {
  for (std::size_t at = static_cast<std::size_t>(std::max(nStart, 0)); at + strPart.size() <= strText.size(); ++at) {
    if (strText.compare(at, strPart.size(), strPart) == 0) return static_cast<int>(at);
  }
  return -1;
}

TEST(QdcUnicodeString, RandomEditsFollowASlowReference) {
  constexpr unsigned int seed = 20240611;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  auto const below = [&random](unsigned int nLimit) { return static_cast<int>(random() % nLimit); };
  QdcUnicodeString text;
  std::wstring reference;
  for (int step = 0; step < 20000; ++step) {
    std::wstring piece;
    for (int i = below(4); i > 0; --i) piece += static_cast<wchar_t>(L'a' + below(3));
    int const start = below(40) - 3;
    switch (below(4)) {
    case 0:
      text += piece.c_str();
      reference += piece;
      break;
    case 1: {
      int const count = below(6) - 1;
      text.Delete(start, count);
      if (start >= 0 && start < static_cast<int>(reference.size()) && count > 0) {
        reference.erase(static_cast<std::size_t>(start), static_cast<std::size_t>(count));
      }
      break;
    }
    case 2: {
      int const count = std::max(0, std::min(start, static_cast<int>(reference.size())));
      ASSERT_TRUE(text.Right(start) == reference.substr(reference.size() - static_cast<std::size_t>(count)).c_str());
      break;
    }
    default: ASSERT_EQ(text.Find(piece.c_str(), start), SlowFind(reference, piece, start)) << step;
    }
    ASSERT_EQ(text.GetLength(), static_cast<int>(reference.size()));
    ASSERT_TRUE(text == reference.c_str()) << step;
  }
}

TEST(QdcMBString, CopiesTextUpToTheZero) {
  EXPECT_STREQ(QdcMBString().Cstr(), "");
  EXPECT_STREQ(QdcMBString(nullptr).Cstr(), "");
  QdcMBString const first("abc\0def");
  QdcMBString const second(first);
  EXPECT_STREQ(second.Cstr(), "abc");
  EXPECT_EQ(second.GetLength(), 3);
  EXPECT_NE(second.Cstr(), first.Cstr());
}

}  // namespace
}  // namespace QXC
