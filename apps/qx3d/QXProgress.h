/// @file
/// What the program is at.
#pragma once

#include <string>

namespace QXApp {

/// One line on the standard error output that each step overwrites; nothing where that is no terminal, so that files
/// and pipes get results and errors alone.
class QXProgress {
public:
  QXProgress();
  QXProgress(QXProgress const&) = delete;
  QXProgress& operator=(QXProgress const&) = delete;
  ~QXProgress() { Clear(); }

  void Show(std::string const& strStep);
  /// Takes the line away.
  void Clear();

private:
  bool m_bTerminal;
  bool m_bShown = false;
};

}  // namespace QXApp
