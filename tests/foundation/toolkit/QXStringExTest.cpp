#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QXStringEx, DefaultFontIsNamedByTheInstalledStrings) {
  EXPECT_TRUE(QXStringEx::LoadResString(L"IMl001") == L"DejaVu Sans");
}

TEST(QXStringEx, UnknownKeyGivesEmptyText) {
  EXPECT_EQ(QXStringEx::LoadResString(L"iml001").IsEmpty(), 1);
  EXPECT_EQ(QXStringEx::LoadResString(L"").IsEmpty(), 1);
}

TEST(QXStringEx, HostReplacesAndAddsTexts) {
  QdcUnicodeString const before = QXStringEx::LoadResString(L"IMl001");
  QXStringEx::SetResString(L"IMl001", L"Noto Sans");
  QXStringEx::SetResString(L"mine", L"text");
  EXPECT_TRUE(QXStringEx::LoadResString(L"IMl001") == L"Noto Sans");
  EXPECT_TRUE(QXStringEx::LoadResString(L"mine") == L"text");
  QXStringEx::SetResString(L"IMl001", before);
  EXPECT_TRUE(QXStringEx::LoadResString(L"IMl001") == before);
}

}  // namespace
}  // namespace QXC
