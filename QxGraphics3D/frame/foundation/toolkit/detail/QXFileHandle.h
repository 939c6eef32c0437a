/// @file
/// A file opened for reading.
#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace QXC::detail {

/// Opens a file for reading and closes it again. What the path names can be anything: look with fstat before reading.
class QXFileHandle {
public:
  /// szPath in UTF-8. Not blocking: opening a named pipe would wait for its other end before it can be refused.
  explicit QXFileHandle(char const* szPath) : m_nHandle(::open(szPath, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  QXFileHandle(QXFileHandle const&) = delete;
  QXFileHandle& operator=(QXFileHandle const&) = delete;
  ~QXFileHandle() {
    if (m_nHandle >= 0) ::close(m_nHandle);
  }

  /// Below 0 if the file could not be opened; errno says why, right after the construction.
  int Get() const { return m_nHandle; }

private:
  int m_nHandle;
};

}  // namespace QXC::detail
