#include <apps/qx3d/QXNewFile.h>

#include <tests/assimp/QXTestFiles.h>

#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

namespace QXApp {
namespace {

using Folder = QXAssimp::QXTestFolder;

bool IsEmpty(Folder const& folder) {
  return std::filesystem::is_empty(folder.Path());
}

TEST(QXNewFile, AppearsUnderItsNameOnlyWhenItIsCommitted) {
  Folder const folder;
  {
    QXNewFile file(folder.Path("a"));
    ASSERT_NE(file.Get(), nullptr);
    std::fputs("text", file.Get());
    EXPECT_FALSE(std::filesystem::exists(folder.Path("a")));
    EXPECT_TRUE(file.Commit());
  }
  EXPECT_EQ(QXAssimp::ReadTestFile(folder.Path("a")), QXAssimp::ToBytes("text"));
}

TEST(QXNewFile, DiesWithItsObject) {
  Folder const folder;
  { QXNewFile const file(folder.Path("a")); }
  EXPECT_TRUE(IsEmpty(folder));
}

TEST(QXNewFile, NameMayBeAsLongAsTheDiskAllows) {
  Folder const folder;
  QXNewFile file(folder.Path(std::string(255, 'n')));
  ASSERT_NE(file.Get(), nullptr);
  EXPECT_TRUE(file.Commit());
}

TEST(QXNewFile, InterruptionRemovesTheFileAndKeepsItsMeaning) {
  for (int nSignal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    Folder const folder;
    EXPECT_EXIT(
        {
          std::signal(nSignal, SIG_DFL);
          QXNewFile const file(folder.Path("a"));
          if (IsEmpty(folder)) _exit(1);
          raise(nSignal);
          _exit(2);
        },
        testing::KilledBySignal(nSignal), "");
    EXPECT_TRUE(IsEmpty(folder)) << nSignal;
  }
}

void IgnoreSignal(int) {}

TEST(QXNewFile, SignalsMeanWhatTheyMeantBeforeOnceItIsGone) {
  Folder const folder;
  auto* const pInterrupt = std::signal(SIGINT, IgnoreSignal);
  auto* const pHangup = std::signal(SIGHUP, SIG_IGN);
  {
    QXNewFile const file(folder.Path("a"));
    raise(SIGHUP);  // a program started by nohup goes on
    EXPECT_FALSE(IsEmpty(folder));
  }
  EXPECT_EQ(std::signal(SIGINT, pInterrupt), &IgnoreSignal);
  EXPECT_EQ(std::signal(SIGHUP, pHangup), SIG_IGN);
}

}  // namespace
}  // namespace QXApp
