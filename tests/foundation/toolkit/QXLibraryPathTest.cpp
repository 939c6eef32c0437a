#include <QxGraphics3D/frame/foundation/toolkit/detail/QXLibraryPath.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace QXC::detail {
namespace {

std::filesystem::path Path(QdcUnicodeString const& strPath) {
  return strPath.ToMBString().Cstr();
}

// This program carries the library's object files itself, so its own folder is the library's.
TEST(QXLibraryPath, LibraryFolderIsTheFolderOfTheModuleWithTheCode) {
  QdcUnicodeString const folder = LibraryFolder();
  EXPECT_TRUE(folder.Right(1) == L"/");
  EXPECT_TRUE(std::filesystem::equivalent(Path(folder), std::filesystem::read_symlink("/proc/self/exe").parent_path()));
}

TEST(QXLibraryPath, LibraryFolderDoesNotMoveWithTheCurrentFolder) {
  QdcUnicodeString const before = LibraryFolder();
  std::filesystem::path const current = std::filesystem::current_path();
  std::filesystem::current_path("/");
  EXPECT_TRUE(LibraryFolder() == before);
  std::filesystem::current_path(current);
}

TEST(QXLibraryPath, DataFolderHoldsTheInstalledFiles) {
  QdcUnicodeString const folder = DataFolder();
  ASSERT_TRUE(folder.Right(1) == L"/");
  EXPECT_TRUE(std::filesystem::is_regular_file(Path(folder) / "registry.ini"));
  EXPECT_TRUE(std::filesystem::is_regular_file(Path(folder) / "strings.ini"));
}

}  // namespace
}  // namespace QXC::detail
