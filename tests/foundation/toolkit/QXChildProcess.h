/// @file
/// Runs a program and tells how it ended and what it wrote.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>
#include <string>
#include <vector>

namespace QXC {

struct QXChildResult {
  int m_nStatus = -1;       // as waitpid gives it, of the first end or stop
  std::string m_strOutput;  // standard output
  std::string m_strErrors;  // standard error
};

struct QXChildSetup {
  std::vector<int> m_arrIgnored;      // signals that the program finds ignored; all others have their default
  std::vector<std::string> m_arrSet;  // further environment, "NAME=value"
};

namespace child {

inline std::string ReadAll(int nHandle) {
  std::string text;
  char buffer[4096];
  for (;;) {
    ssize_t const count = ::read(nHandle, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    text.append(buffer, static_cast<std::size_t>(count));
  }
  ::close(nHandle);
  return text;
}

// Between fork and exec.
[[noreturn]] inline void Become(std::vector<std::string> const& arrCommand, QXChildSetup const& setup) {
  // A group of its own below a parent of another group: else the system would not let the process stop at all.
  ::setpgid(0, 0);
  rlimit const noCore{0, 0};
  ::setrlimit(RLIMIT_CORE, &noCore);
  for (int const signal : {2, 4, 6, 8, 11, 15, 21, 22}) ::signal(signal, SIG_DFL);
  for (int const signal : setup.m_arrIgnored) ::signal(signal, SIG_IGN);
  for (std::string const& entry : setup.m_arrSet) ::putenv(const_cast<char*>(entry.c_str()));
  std::vector<char*> arguments;
  for (std::string const& argument : arrCommand) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  ::execv(arguments[0], arguments.data());
  ::_exit(127);
}

}  // namespace child

/// Starts the program, and ends it if it only stopped. What it writes must fit into a pipe (64 KiB).
inline QXChildResult RunChild(std::vector<std::string> const& arrCommand, QXChildSetup const& setup = {}) {
  int output[2];
  int errors[2];
  if (::pipe(output) != 0 || ::pipe(errors) != 0) return {};
  pid_t const process = ::fork();
  if (process == 0) {
    ::dup2(output[1], STDOUT_FILENO);
    ::dup2(errors[1], STDERR_FILENO);
    for (int const handle : {output[0], output[1], errors[0], errors[1]}) ::close(handle);
    child::Become(arrCommand, setup);
  }
  ::close(output[1]);
  ::close(errors[1]);
  QXChildResult result;
  while (::waitpid(process, &result.m_nStatus, WUNTRACED) < 0 && errno == EINTR) {}
  if (WIFSTOPPED(result.m_nStatus)) {
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
  }
  result.m_strOutput = child::ReadAll(output[0]);
  result.m_strErrors = child::ReadAll(errors[0]);
  return result;
}

}  // namespace QXC
