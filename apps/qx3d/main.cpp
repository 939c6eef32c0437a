// The host program: shows what the library does, and is its largest example.
#include <apps/qx3d/QXAtlasCommand.h>
#include <apps/qx3d/QXBakeCommand.h>
#include <apps/qx3d/QXFontsCommand.h>
#include <apps/qx3d/QXInspectCommand.h>
#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXViewCommand.h>
#include <apps/qx3d/QXViewOptions.h>

#include <cstdio>
#include <exception>
#include <new>

/// Whether what was printed arrived: the disk behind a redirection may be full.
static int FinishOutput(int nExitStatus) {
  if (nExitStatus != 0 || (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)) return nExitStatus;
  QXApp::PrintFailure("the output cannot be written; make room on its disk or send it elsewhere");
  return 1;
}

static int RunCommand(QXApp::QXCommandLine const& commandLine) {
  switch (commandLine.m_eCommand) {
  case QXApp::QXCommand::Pick: return QXApp::RunPick(commandLine.m_Options);
  case QXApp::QXCommand::Inspect: return QXApp::RunInspect(commandLine.m_strFile);
  case QXApp::QXCommand::Bake: return QXApp::RunBake(commandLine.m_Bake);
  case QXApp::QXCommand::Atlas: return QXApp::RunAtlas(commandLine.m_Atlas);
  case QXApp::QXCommand::Fonts: return QXApp::RunFonts(commandLine.m_Fonts);
  default: return QXApp::RunView(commandLine.m_Options);
  }
}

int main(int nArguments, char** pszArguments) {
  try {
    QXApp::QXCommandLine const commandLine = QXApp::ParseCommandLine(nArguments, pszArguments);
    if (!commandLine.m_bRun) return commandLine.m_nExitStatus;
    return FinishOutput(RunCommand(commandLine));
  } catch (std::bad_alloc const&) {
    QXApp::PrintFailure("there is not enough memory; try a smaller model or picture");
  } catch (std::exception const& exception) {
    QXApp::PrintFailure(exception.what());
  }
  return 1;
}
