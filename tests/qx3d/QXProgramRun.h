/// @file
/// The program as a person runs it, for tests.
#pragma once

#include <tests/assimp/QXTestFiles.h>

#include <cstdlib>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace QXApp {

struct ProgramRun {
  int m_nExitStatus = -1;
  std::string m_strOut;
  std::string m_strError;
};

inline std::string Quote(std::string const& strText) {
  return "'" + strText + "'";
}

inline std::string ReadText(std::string const& strPath) {
  std::vector<unsigned char> const vecBytes = QXAssimp::ReadTestFile(strPath);
  return std::string(vecBytes.begin(), vecBytes.end());
}

constexpr char const* WithoutDisplay = "env -u DISPLAY -u WAYLAND_DISPLAY";

/// Runs the program by a launcher: without a display, if no other is given.
inline ProgramRun RunProgram(QXAssimp::QXTestFolder const& folder, std::string const& strArguments,
    std::string const& strLauncher = WithoutDisplay) {
  std::string const strCommand = strLauncher + " " + Quote(QX_PROGRAM) + " " + strArguments + " > " +
                                 Quote(folder.Path("stdout")) + " 2> " + Quote(folder.Path("stderr")) + " < /dev/null";
  int const nStatus = std::system(strCommand.c_str());
  ProgramRun run;
  if (WIFEXITED(nStatus)) run.m_nExitStatus = WEXITSTATUS(nStatus);
  run.m_strOut = ReadText(folder.Path("stdout"));
  run.m_strError = ReadText(folder.Path("stderr"));
  return run;
}

/// Launcher for renderers that need a display.
constexpr char const* WithDisplay = "xvfb-run -a";

}  // namespace QXApp
