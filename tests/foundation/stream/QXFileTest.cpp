#include <QxGraphics3D/frame/foundation/stream/QXFile.h>

#include <tests/foundation/toolkit/QXTestFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <sys/stat.h>

namespace QXC {
namespace {

struct ExtCase {
  wchar_t const* m_szPath;
  wchar_t const* m_szExt;
  wchar_t const* m_szStripped;
};

class QXFileExtensions : public testing::TestWithParam<ExtCase> {};

TEST_P(QXFileExtensions, AreTheLastDotOfTheName) {
  EXPECT_STREQ(QXFile::GetExt(GetParam().m_szPath).Cstr(), GetParam().m_szExt);
  EXPECT_STREQ(QXFile::StripExt(GetParam().m_szPath).Cstr(), GetParam().m_szStripped);
}

INSTANTIATE_TEST_SUITE_P(Paths, QXFileExtensions,
    testing::Values(ExtCase{L"a.png", L".png", L"a"}, ExtCase{L"/x/y/a.PNG", L".PNG", L"/x/y/a"},
        ExtCase{L"a.tar.gz", L".gz", L"a.tar"}, ExtCase{L"a", L"", L"a"}, ExtCase{L"", L"", L""},
        ExtCase{L"/x.d/a", L"", L"/x.d/a"}, ExtCase{L".hidden", L"", L".hidden"},
        ExtCase{L"/x/.hidden", L"", L"/x/.hidden"}, ExtCase{L"/x/.hidden.png", L".png", L"/x/.hidden"},
        ExtCase{L"a.", L".", L"a"}, ExtCase{L"a.png.|temp", L".|temp", L"a.png"}, ExtCase{L"..", L".", L"."}));

TEST(QXFile, ExistsAsAnythingButAFolder) {
  QXTestFolder const folder;
  QdcUnicodeString const strFile = Wide(folder.Write("a.png", "x"));
  EXPECT_EQ(QXFile::IsExist(strFile), 1);
  EXPECT_EQ(QXFile::IsExist(Wide(folder.GetPath() / "b.png")), 0);
  EXPECT_EQ(QXFile::IsExist(Wide(folder.GetPath())), 0);
  EXPECT_EQ(QXFile::IsExist(L""), 0);
  ASSERT_EQ(mkfifo((folder.GetPath() / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(QXFile::IsExist(Wide(folder.GetPath() / "pipe")), 1);
}

TEST(QXFile, ExistsUnderItsTemporaryMark) {
  QXTestFolder const folder;
  QdcUnicodeString const strFile = Wide(folder.Write("a.png", "x"));
  EXPECT_EQ(QXFile::IsExist(strFile + L".|temp"), 1);
  EXPECT_EQ(QXFile::IsExist(strFile + L".|tem"), 0);
  EXPECT_EQ(QXFile::IsExist(strFile + L".|temp.|temp"), 0);
  EXPECT_EQ(QXFile::IsExist(Wide(folder.GetPath()) + L"/b.png.|temp"), 0);
  EXPECT_EQ(QXFile::IsExist(Wide(folder.Write("kept.|temp", "x"))), 1);
}

TEST(QXFile, ExistsUnderAnyCharacters) {
  QXTestFolder const folder;
  folder.Write("\xC3\xA4\xF0\x9F\x98\x80.png", "x");
  EXPECT_EQ(QXFile::IsExist(Wide(folder.GetPath()) + L"/\u00E4\U0001F600.png"), 1);
}

std::vector<std::string> List(std::filesystem::path const& path, wchar_t const* szFilter, int nFlags) {
  QdcArray<QdcUnicodeString> arrFiles;
  QXFile::ListFiles(Wide(path), arrFiles, szFilter, nFlags);
  std::vector<std::string> vecFiles;
  for (QdcUnicodeString const& strFile : arrFiles) vecFiles.emplace_back(strFile.ToMBString().Cstr());
  return vecFiles;
}

TEST(QXFile, ListsByThePathWithoutItsExtension) {
  QXTestFolder const folder;
  for (char const* szName : {"Sans-Bold.ttf", "Sans.ttf", "Sans.TTF", "Sans.txt", "Serif.ttf", "a/Z.ttf", "b.ttf"})
    folder.Write(szName, "x");
  EXPECT_THAT(List(folder.GetPath(), L"*.ttf", QXFile::LIST_SUB_FOLDERS),
      testing::ElementsAre("Sans.TTF", "Sans.ttf", "Sans-Bold.ttf", "Serif.ttf", "a/Z.ttf", "b.ttf"));
}

TEST(QXFile, ListsSubFoldersOnlyWhereAsked) {
  QXTestFolder const folder;
  for (char const* szName : {"a.ttf", "x/b.ttf", "x/y/c.ttf"}) folder.Write(szName, "x");
  EXPECT_THAT(List(folder.GetPath(), L"*.ttf", 0), testing::ElementsAre("a.ttf"));
  EXPECT_THAT(List(folder.GetPath(), L"*.ttf", 128), testing::ElementsAre("a.ttf", "x/b.ttf", "x/y/c.ttf"));
  EXPECT_THAT(List(folder.GetPath() / "", L"*.ttf", 128 + 1), testing::ElementsAre("a.ttf", "x/b.ttf", "x/y/c.ttf"));
}

TEST(QXFile, ListsFilesOnlyAndFollowsNoLinkToAFolder) {
  QXTestFolder const folder;
  folder.Write("real/a.ttf", "x");
  std::filesystem::create_directories(folder.GetPath() / "folder.ttf");
  std::filesystem::create_directory_symlink("..", folder.GetPath() / "real" / "loop.ttf");
  std::filesystem::create_symlink("a.ttf", folder.GetPath() / "real" / "link.ttf");
  std::filesystem::create_symlink("nowhere", folder.GetPath() / "real" / "dangling.ttf");
  ASSERT_EQ(mkfifo((folder.GetPath() / "pipe.ttf").c_str(), 0600), 0);
  EXPECT_THAT(List(folder.GetPath(), L"*.ttf", 128), testing::ElementsAre("real/a.ttf", "real/link.ttf"));
}

TEST(QXFile, ListsBehindWhatTheArrayHolds) {
  QXTestFolder const folder;
  folder.Write("b.ttc", "x");
  folder.Write("a.ttf", "x");
  QdcArray<QdcUnicodeString> arrFiles;
  QXFile::ListFiles(Wide(folder.GetPath()), arrFiles, L"*.ttf", 128);
  QXFile::ListFiles(Wide(folder.GetPath()), arrFiles, L"*.ttc", 128);
  QXFile::ListFiles(L"/no/such/folder", arrFiles, L"*", 128);
  QXFile::ListFiles(L"", arrFiles, L"*.no", 0);
  ASSERT_EQ(arrFiles.GetSize(), 2u);
  EXPECT_TRUE(arrFiles[0] == L"a.ttf");
  EXPECT_TRUE(arrFiles[1] == L"b.ttc");
}

struct FilterCase {
  wchar_t const* m_szFilter;
  std::vector<std::string> m_vecNames;
};

class QXFileFilters : public testing::TestWithParam<FilterCase> {};

TEST_P(QXFileFilters, MatchTheName) {
  QXTestFolder const folder;
  for (char const* szName : {"a.png", "ab.PNG", "aXb.pngx", "png"}) folder.Write(szName, "x");
  EXPECT_EQ(List(folder.GetPath(), GetParam().m_szFilter, 0), GetParam().m_vecNames);
}

INSTANTIATE_TEST_SUITE_P(Filters, QXFileFilters,
    testing::Values(FilterCase{L"*.png", {"a.png", "ab.PNG"}}, FilterCase{L"", {"a.png", "aXb.pngx", "ab.PNG", "png"}},
        FilterCase{L"*", {"a.png", "aXb.pngx", "ab.PNG", "png"}}, FilterCase{L"?.png", {"a.png"}},
        FilterCase{L"A*B.*", {"aXb.pngx", "ab.PNG"}}, FilterCase{L"png", {"png"}}, FilterCase{L"*.*n*x", {"aXb.pngx"}},
        FilterCase{L"a.pn", {}}, FilterCase{L"*.png?", {"aXb.pngx"}}));

}  // namespace
}  // namespace QXC
