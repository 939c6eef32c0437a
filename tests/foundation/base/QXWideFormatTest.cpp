#include <QxGraphics3D/frame/foundation/base/detail/QXWideFormat.h>

#include <gtest/gtest.h>

namespace QXC::detail {
namespace {

struct FormatCase {
  wchar_t const* m_szFormat;
  wchar_t const* m_szExpected;
};

TEST(QXWideFormat, TranslatesTextConversionsAndNothingElse) {
  FormatCase const arrCases[] = {
      {L"", L""},
      {L"plain s", L"plain s"},
      {L"%s", L"%ls"},
      {L"%S", L"%s"},
      {L"%c%C", L"%lc%c"},
      {L"%ls%lS%hs", L"%ls%lS%hs"},
      {L"%-5s|%05d|%+.2f", L"%-5ls|%05d|%+.2f"},
      {L"%.*s%*s", L"%.*ls%*ls"},
      {L"%1$s %2$d", L"%1$ls %2$d"},
      {L"%%s %%%s", L"%%s %%%ls"},
      {L"%lld%zu%p%x", L"%lld%zu%p%x"},
      {L"100%", L"100%"},
      {L"%5", L"%5"},
  };
  for (FormatCase const& entry : arrCases) {
    EXPECT_EQ(TranslateFormat(entry.m_szFormat), entry.m_szExpected) << testing::PrintToString(entry.m_szFormat);
  }
}

TEST(QXWideFormat, FoldCaseLowersSimpleLetters) {
  EXPECT_EQ(FoldCase(L'A'), L'a');
  EXPECT_EQ(FoldCase(L'z'), L'z');
  EXPECT_EQ(FoldCase(L'\u0416'), L'\u0436');
  EXPECT_EQ(FoldCase(L'1'), L'1');
  EXPECT_EQ(FoldCase(L'\0'), L'\0');
}

}  // namespace
}  // namespace QXC::detail
