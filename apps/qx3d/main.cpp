// The host program: shows what the library does, and is its largest example.
#include <apps/qx3d/QXViewCommand.h>
#include <apps/qx3d/QXViewOptions.h>

#include <cstdio>
#include <exception>
#include <new>

int main(int nArguments, char** pszArguments) {
  try {
    QXApp::QXCommandLine const commandLine = QXApp::ParseCommandLine(nArguments, pszArguments);
    return commandLine.m_bRun ? QXApp::RunView(commandLine.m_Options) : commandLine.m_nExitStatus;
  } catch (std::bad_alloc const&) {
    std::fputs("qx3d: there is not enough memory; try a smaller model or picture\n", stderr);
  } catch (std::exception const& exception) {
    std::fprintf(stderr, "qx3d: %s\n", exception.what());
  }
  return 1;
}
