#include <plugins/assimp/QXImportProcess.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace QXAssimp {
namespace {

using Bytes = std::vector<unsigned char>;

TEST(QXImportProcess, ResultComesBackWhole) {
  QXProcessResult result;
  EXPECT_EQ(RunInProcess(
                0,
                [](Bytes& vecBytes) {
                  for (unsigned int i = 0; i < 1000000; ++i) vecBytes.push_back(static_cast<unsigned char>(i * 7));
                  return std::string();
                },
                result),
      "");
  ASSERT_EQ(result.GetBytes().size(), 1000000u);
  for (unsigned int i = 0; i < 1000000; ++i) ASSERT_EQ(result.GetBytes()[i], static_cast<unsigned char>(i * 7));
}

TEST(QXImportProcess, ReasonComesBackInsteadOfTheResult) {
  QXProcessResult result;
  EXPECT_EQ(RunInProcess(
                0,
                [](Bytes& vecBytes) {
                  vecBytes.push_back(1);
                  return std::string("no triangles");
                },
                result),
      "no triangles");
}

TEST(QXImportProcess, ChangesOfTheWorkStayInItsProcess) {
  int nValue = 1;
  QXProcessResult result;
  RunInProcess(
      0,
      [&nValue](Bytes&) {
        nValue = 2;
        return std::string();
      },
      result);
  EXPECT_EQ(nValue, 1);
}

TEST(QXImportProcess, CrashOfTheWorkIsAReason) {
  for (int nSignal : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS}) {
    QXProcessResult result;
    std::string const strReason = RunInProcess(
        0,
        [nSignal](Bytes&) {
          std::raise(nSignal);
          return std::string();
        },
        result);
    EXPECT_NE(strReason.find("broken"), std::string::npos) << nSignal;
  }
}

TEST(QXImportProcess, ExitInTheMiddleIsAReason) {
  QXProcessResult result;
  EXPECT_NE(RunInProcess(
                0, [](Bytes&) -> std::string { _exit(0); }, result),
      "");
}

TEST(QXImportProcess, OutputOfTheWorkIsDropped) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  QXProcessResult result;
  RunInProcess(
      0,
      [](Bytes&) {
        std::fputs("noise", stderr);
        std::fputs("noise", stdout);
        std::fflush(stdout);
        std::abort();
        return std::string();
      },
      result);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(QXImportProcess, FilesAreClosedAgain) {
  int const nBefore = dup(0);
  close(nBefore);
  for (int i = 0; i < 20; ++i) {
    QXProcessResult result;
    RunInProcess(
        0, [](Bytes&) { return std::string(); }, result);
  }
  int const nAfter = dup(0);
  close(nAfter);
  EXPECT_EQ(nBefore, nAfter);
}

TEST(QXImportProcess, ImporterEndsWithItsHost) {
  int nPipe[2];
  ASSERT_EQ(pipe(nPipe), 0);
  pid_t const nHost = fork();
  if (nHost == 0) {
    QXProcessResult result;
    RunInProcess(
        0,
        [&nPipe](Bytes&) {
          if (write(nPipe[1], "x", 1) == 1) sleep(30);
          return std::string();
        },
        result);
    _exit(0);
  }
  close(nPipe[1]);
  char cStarted = 0;
  ASSERT_EQ(read(nPipe[0], &cStarted, 1), 1);
  kill(nHost, SIGKILL);
  waitpid(nHost, nullptr, 0);
  // The last writer's end is the end of the file.
  pollfd poll = {nPipe[0], POLLIN, 0};
  EXPECT_EQ(::poll(&poll, 1, 10000), 1);
  EXPECT_EQ(read(nPipe[0], &cStarted, 1), 0);
  close(nPipe[0]);
}

}  // namespace
}  // namespace QXAssimp
