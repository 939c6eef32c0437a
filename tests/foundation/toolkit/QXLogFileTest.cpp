#include <QxGraphics3D/frame/foundation/toolkit/QXLogFile.h>

#include "QXChildProcess.h"

#include <gtest/gtest.h>

#include <string>

namespace QXC {
namespace {

// In a sanitizer's build the child leaves the signals to the library: elsewhere nobody reads these variables.
QXChildSetup WithoutSanitizerHandlers(QXChildSetup setup) {
  std::string const strOptions = "handle_segv=0:handle_sigill=0:handle_sigfpe=0:handle_sigbus=0:handle_abort=0";
  for (char const* szSanitizer : {"ASAN", "TSAN", "UBSAN"})
    setup.m_arrSet.push_back(szSanitizer + ("_OPTIONS=" + strOptions));
  return setup;
}

QXChildResult RunSignalChild(char const* szMode, int nSignal = 0, QXChildSetup const& setup = {}) {
  return RunChild({QX_SIGNAL_CHILD, szMode, std::to_string(nSignal)}, WithoutSanitizerHandlers(setup));
}

bool EndedBy(QXChildResult const& result, int nSignal) {
  return WIFSIGNALED(result.m_nStatus) && WTERMSIG(result.m_nStatus) == nSignal;
}

void ExpectTrace(QXChildResult const& result, int nSignal) {
  EXPECT_TRUE(EndedBy(result, nSignal)) << result.m_nStatus;
  std::string const headline = "QxGraphics3D: crash by signal " + std::to_string(nSignal) + "\n";
  EXPECT_EQ(result.m_strErrors.rfind(headline, 0), 0u) << result.m_strErrors;
  // The stack: this library's handler and the program that crashed.
  EXPECT_NE(result.m_strErrors.find("libQxGraphics3D"), std::string::npos) << result.m_strErrors;
  EXPECT_NE(result.m_strErrors.find("QXSignalChild"), std::string::npos) << result.m_strErrors;
  EXPECT_EQ(result.m_strOutput, "");
}

TEST(QXLogFileCrash, LoadingTheLibraryInstallsTheHandlerForEveryNumber) {
  QXChildResult const result = RunSignalChild("list");
  ASSERT_TRUE(WIFEXITED(result.m_nStatus));
  EXPECT_EQ(WEXITSTATUS(result.m_nStatus), 0);
}

TEST(QXLogFileCrash, SegmentationFaultWritesTheStackAndKeepsItsStatus) {
  ExpectTrace(RunSignalChild("fault"), SIGSEGV);
}

TEST(QXLogFileCrash, FullStackIsTracedOnTheThreadsOtherStack) {
  ExpectTrace(RunSignalChild("overflow"), SIGSEGV);
}

TEST(QXLogFileCrash, FloatingPointErrorWritesTheStackAndKeepsItsStatus) {
#if defined(__x86_64__) || defined(__i386__)
  ExpectTrace(RunSignalChild("divide"), SIGFPE);
#endif
  ExpectTrace(RunSignalChild("raise", SIGFPE), SIGFPE);
}

TEST(QXLogFileCrash, IllegalInstructionWritesTheStackAndKeepsItsStatus) {
#if defined(__x86_64__) || defined(__i386__)
  ExpectTrace(RunSignalChild("illegal"), SIGILL);
#endif
  ExpectTrace(RunSignalChild("raise", SIGILL), SIGILL);
}

TEST(QXLogFileCrash, AbortWritesTheStackOnceAndKeepsItsStatus) {
  QXChildResult const result = RunSignalChild("abort");
  ExpectTrace(result, SIGABRT);
  EXPECT_EQ(result.m_strErrors.find("crash by signal", 30), std::string::npos);
}

TEST(QXLogFileCrash, CrashIsTracedEvenIfTheSignalWasIgnoredAtTheStart) {
  QXChildSetup setup;
  setup.m_arrIgnored = {SIGFPE};
  ExpectTrace(RunSignalChild("raise", SIGFPE, setup), SIGFPE);
}

TEST(QXLogFile, InterruptAndTerminationEndTheProcessSilently) {
  for (int const signal : {SIGINT, SIGTERM}) {
    QXChildResult const result = RunSignalChild("raise", signal);
    EXPECT_TRUE(EndedBy(result, signal)) << result.m_nStatus;
    EXPECT_EQ(result.m_strErrors, "");
    EXPECT_EQ(result.m_strOutput, "");
  }
}

TEST(QXLogFile, TerminalAccessFromTheBackgroundStopsTheProcessSilently) {
  for (int const signal : {21, 22}) {
    QXChildResult const result = RunSignalChild("raise", signal);
    EXPECT_TRUE(WIFSTOPPED(result.m_nStatus)) << signal << " " << result.m_nStatus;
    EXPECT_EQ(WSTOPSIG(result.m_nStatus), signal);
    EXPECT_EQ(result.m_strErrors, "");
  }
}

TEST(QXLogFileCrash, HandlerIsInstalledForSignalsIgnoredAtTheStartToo) {
  QXChildSetup setup;
  setup.m_arrIgnored = {2, 4, 6, 8, 11, 15, 21, 22};
  QXChildResult const result = RunSignalChild("list", 0, setup);
  ASSERT_TRUE(WIFEXITED(result.m_nStatus));
  EXPECT_EQ(WEXITSTATUS(result.m_nStatus), 0);
}

TEST(QXLogFile, SignalsIgnoredAtTheStartStayIgnored) {
  for (char const* szMode : {"raise", "twice", "dump"}) {
    for (int const signal : {2, 15, 21, 22}) {
      QXChildSetup setup;
      setup.m_arrIgnored = {signal};
      QXChildResult const result = RunSignalChild(szMode, signal, setup);
      ASSERT_TRUE(WIFEXITED(result.m_nStatus)) << szMode << " " << signal << " " << result.m_nStatus;
      EXPECT_EQ(WEXITSTATUS(result.m_nStatus), 0);
      EXPECT_EQ(result.m_strErrors, "");
    }
  }
}

TEST(QXLogFile, IgnoringOneSignalLeavesTheOthersAsTheyAre) {
  QXChildSetup setup;
  setup.m_arrIgnored = {15};
  EXPECT_TRUE(EndedBy(RunSignalChild("raise", 2, setup), 2));
}

TEST(QXLogFile, HandlerThatAHostInstallsInMainIsKept) {
  for (int const signal : {2, 15}) {
    QXChildResult const result = RunSignalChild("host", signal);
    ASSERT_TRUE(WIFEXITED(result.m_nStatus)) << signal;
    EXPECT_EQ(WEXITSTATUS(result.m_nStatus), 42);
    EXPECT_EQ(result.m_strErrors, "");
  }
}

TEST(QXLogFileCrash, HandlerThatAHostInstallsForACrashIsKept) {
  for (int const signal : {4, 6, 8, 11}) {
    QXChildResult const result = RunSignalChild("host", signal);
    ASSERT_TRUE(WIFEXITED(result.m_nStatus)) << signal;
    EXPECT_EQ(WEXITSTATUS(result.m_nStatus), 42);
    EXPECT_EQ(result.m_strErrors, "");
  }
}

TEST(QXLogFile, DumpCalledAsAFunctionEndsTheProcessByTheSignal) {
  QXChildResult const result = RunSignalChild("dump", SIGTERM);
  EXPECT_TRUE(EndedBy(result, SIGTERM));
}

TEST(QXLogFile, UnloadingTheLibraryLeavesNoHandlerBehind) {
  QXChildResult const result = RunChild({QX_UNLOAD_CHILD, QX_LIBRARY_FILE});
  EXPECT_TRUE(EndedBy(result, SIGINT)) << result.m_nStatus;
  EXPECT_EQ(result.m_strErrors, "");
  QXChildSetup setup;
  setup.m_arrIgnored = {SIGINT};
  QXChildResult const ignoring = RunChild({QX_UNLOAD_CHILD, QX_LIBRARY_FILE}, setup);
  ASSERT_TRUE(WIFEXITED(ignoring.m_nStatus)) << ignoring.m_nStatus;
  EXPECT_EQ(WEXITSTATUS(ignoring.m_nStatus), 0);
}

}  // namespace
}  // namespace QXC
