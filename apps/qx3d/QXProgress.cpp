#include <apps/qx3d/QXProgress.h>

#include <apps/qx3d/QXMessage.h>

#include <cstdio>

#include <unistd.h>

namespace QXApp {

QXProgress::QXProgress() : m_bTerminal(isatty(STDERR_FILENO) != 0) {}

void QXProgress::Show(std::string const& strStep) {
  if (!m_bTerminal) return;
  std::fprintf(stderr, "\r\033[Kqx3d: %s ...", MakeOneLine(strStep).c_str());
  m_bShown = true;
}

void QXProgress::Clear() {
  if (!m_bShown) return;
  std::fputs("\r\033[K", stderr);
  m_bShown = false;
}

}  // namespace QXApp
