#include <apps/qx3d/QXPngWriter.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXPngReader.h>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QXApp {
namespace {

using Folder = QXAssimp::QXTestFolder;

// Two rows: red and green above, blue and a clear white below; blue, green, red, alpha in memory.
unsigned char const Pixels[] = {0, 0, 255, 255, 0, 255, 0, 255, 255, 0, 0, 128, 255, 255, 255, 0};

std::size_t CountFiles(Folder const& folder) {
  auto const it = std::filesystem::directory_iterator(folder.Path());
  return static_cast<std::size_t>(std::distance(begin(it), end(it)));
}

TEST(QXPngWriter, PictureComesBackWithItsColoursFirstRowOnTop) {
  Folder const folder;
  EXPECT_EQ(QXPngWriter::Write(folder.Path("a.png"), 2, 2, Pixels), "");
  QXPicture const picture = ReadPicture(folder.Path("a.png"));
  ASSERT_EQ(picture.m_nWidth, 2);
  ASSERT_EQ(picture.m_nHeight, 2);
  EXPECT_EQ(picture.m_vecPixels, (std::vector<unsigned char>{255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255}));
  EXPECT_EQ(CountFiles(folder), 1u) << "nothing is left beside it";
}

TEST(QXPngWriter, OldPictureIsReplacedWhole) {
  Folder const folder;
  std::string const strPath = folder.Write("a.png", std::string(100000, 'x'));
  EXPECT_EQ(QXPngWriter::Write(strPath, 2, 2, Pixels), "");
  EXPECT_LT(std::filesystem::file_size(strPath), 1000u);
  EXPECT_EQ(ReadPicture(strPath).m_nWidth, 2);
}

TEST(QXPngWriter, NewFileHasThePermissionsOfAnyOther) {
  Folder const folder;
  mode_t const nMask = umask(022);
  QXPngWriter::Write(folder.Path("a.png"), 2, 2, Pixels);
  umask(nMask);
  struct stat status = {};
  ASSERT_EQ(stat(folder.Path("a.png").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0644u);
}

TEST(QXPngWriter, LinkStaysALinkAndItsTargetIsReplaced) {
  Folder const folder;
  folder.Write("real.png", "old");
  std::filesystem::create_symlink("real.png", folder.Path("link.png"));
  EXPECT_EQ(QXPngWriter::Write(folder.Path("link.png"), 2, 2, Pixels), "");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link.png")));
  EXPECT_EQ(ReadPicture(folder.Path("real.png")).m_nWidth, 2);
}

TEST(QXPngWriter, LinkToNothingYetStaysALink) {
  Folder const folder;
  std::filesystem::create_symlink("second.png", folder.Path("first.png"));
  std::filesystem::create_symlink("real.png", folder.Path("second.png"));
  EXPECT_EQ(QXPngWriter::Write(folder.Path("first.png"), 2, 2, Pixels), "");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("first.png")));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("second.png")));
  EXPECT_EQ(ReadPicture(folder.Path("real.png")).m_nWidth, 2);
}

TEST(QXPngWriter, NamesThatNoFileCanHaveAreRefusedBeforeAnyWork) {
  Folder const folder;
  std::filesystem::create_symlink("loop.png", folder.Path("loop.png"));
  std::filesystem::create_symlink("no/a.png", folder.Path("lost.png"));
  EXPECT_NE(QXPngWriter::Check(folder.Path("loop.png")).find("give another name"), std::string::npos);
  EXPECT_NE(QXPngWriter::Check(folder.Path("lost.png")).find("no folder"), std::string::npos);
  EXPECT_NE(QXPngWriter::Check(folder.Path(std::string(300, 'n'))).find("give another name"), std::string::npos);
  EXPECT_NE(QXPngWriter::Write(folder.Path("loop.png"), 2, 2, Pixels), "");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("loop.png")));
}

TEST(QXPngWriter, PlacesThatTakeNoPictureAreNamedBeforeAnyWork) {
  Folder const folder;
  EXPECT_EQ(QXPngWriter::Check(folder.Path("a.png")), "");
  EXPECT_NE(QXPngWriter::Check(folder.Path()).find("directory"), std::string::npos);
  EXPECT_NE(QXPngWriter::Check(folder.Path("no/a.png")).find("no folder"), std::string::npos);
  EXPECT_NE(QXPngWriter::Check(folder.Write("file", "x") + "/a.png").find("no folder"), std::string::npos);
  EXPECT_NE(QXPngWriter::Check("/dev/null").find("no regular file"), std::string::npos);
  EXPECT_NE(QXPngWriter::Write("/dev/null", 2, 2, Pixels), "");
}

TEST(QXPngWriter, FolderWithoutPermissionIsNamed) {
  Folder const folder;
  ASSERT_EQ(chmod(folder.Path().c_str(), 0555), 0);
  // The superuser writes everywhere, so the question is asked as nobody. The effective user alone would not do: access
  // asks for the real one.
  EXPECT_EXIT(
      {
        if (geteuid() == 0 && setuid(65534) != 0) _exit(2);
        std::string const strReason = QXPngWriter::Check(folder.Path("a.png"));
        _exit(strReason.find("may not be written") != std::string::npos ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
  chmod(folder.Path().c_str(), 0700);
}

/// Writes under a limit on the size of files, which stands in for a full disk: the write fails in the middle.
[[noreturn]] void WriteUnderLimit(std::string const& strPath) {
  rlimit limit = {};
  limit.rlim_cur = limit.rlim_max = 4096;
  setrlimit(RLIMIT_FSIZE, &limit);
  // Noise, which does not pack.
  std::vector<unsigned char> vecNoise(std::size_t{512} * 512 * 4);
  unsigned int nState = 1;
  for (unsigned char& nByte : vecNoise) {
    nState = nState * 1664525u + 1013904223u;
    nByte = static_cast<unsigned char>(nState >> 24);
  }
  std::string const strReason = QXPngWriter::Write(strPath, 512, 512, vecNoise.data());
  _exit(strReason.find("make room") != std::string::npos ? 0 : 1);
}

TEST(QXPngWriter, FullDiskLeavesTheOldPictureAndNothingElse) {
  Folder const folder;
  std::string const strPath = folder.Write("a.png", "old");
  EXPECT_EXIT(WriteUnderLimit(strPath), testing::ExitedWithCode(0), "");
  EXPECT_EQ(std::filesystem::file_size(strPath), 3u);
  EXPECT_EQ(CountFiles(folder), 1u);
}

}  // namespace
}  // namespace QXApp
