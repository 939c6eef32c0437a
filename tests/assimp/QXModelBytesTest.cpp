#include <plugins/assimp/QXModelBytes.h>

#include <tests/assimp/QXTestFiles.h>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace QXAssimp {
namespace {

std::string ReasonFor(std::string const& strPath) {
  std::vector<unsigned char> vecBytes;
  std::string strError;
  return ReadModelBytes(strPath, vecBytes, strError) ? std::string() : strError;
}

TEST(QXModelBytes, WholeFileIsRead) {
  QXTestFolder const folder;
  std::string const strPath = folder.Write("a.bin", std::string(200000, 'x') + "end");
  std::vector<unsigned char> vecBytes;
  std::string strError;
  ASSERT_TRUE(ReadModelBytes(strPath, vecBytes, strError)) << strError;
  ASSERT_EQ(vecBytes.size(), 200003u);
  EXPECT_EQ(vecBytes.back(), 'd');
}

TEST(QXModelBytes, MissingEmptyAndDirectoryAreToldApart) {
  QXTestFolder const folder;
  EXPECT_EQ(ReasonFor(folder.Path("nothing")), "no such file; correct the name");
  EXPECT_EQ(ReasonFor(folder.Write("file", "x") + "/below"), "no such file; correct the name");
  EXPECT_EQ(ReasonFor(folder.Path()), "this is a directory; give the model file inside it");
  EXPECT_EQ(ReasonFor(folder.Write("empty", "")), "the file is empty; get or export it again");
}

TEST(QXModelBytes, PipeAndDeviceAreRefusedWithoutWaiting) {
  QXTestFolder const folder;
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReasonFor(folder.Path("pipe")), "this is no regular file; give a model file");
  EXPECT_EQ(ReasonFor("/dev/zero"), "this is no regular file; give a model file");
}

TEST(QXModelBytes, FileBeyondTheLimitIsRefusedBeforeItIsRead) {
  QXTestFolder const folder;
  std::string const strPath = folder.Write("big", "x");
  ASSERT_EQ(truncate(strPath.c_str(), (off_t{1} << 30) + 1), 0);  // takes no room on the disk
  EXPECT_EQ(ReasonFor(strPath), "the file is larger than 1 GiB, the most that is read; split the model");
}

TEST(QXModelBytes, UnreadableFileIsRefused) {
  QXTestFolder const folder;
  std::string const strPath = folder.Write("secret", "x");
  ASSERT_EQ(chmod(strPath.c_str(), 0), 0);
  // The superuser reads everything, so the question is asked as nobody.
  bool const bSuperuser = geteuid() == 0;
  if (bSuperuser && seteuid(65534) != 0) FAIL() << "no other user";
  std::string const strReason = ReasonFor(strPath);
  if (bSuperuser && seteuid(0) != 0) FAIL() << "no way back";
  EXPECT_EQ(strReason, "the file may not be read; change its permissions");
}

}  // namespace
}  // namespace QXAssimp
