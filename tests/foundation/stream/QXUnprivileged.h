/// @file
/// A user to whom files can be forbidden.
#pragma once

#include <unistd.h>

namespace QXC {

/// While it lives, a test that the superuser runs reads files as nobody; as any other user it changes nothing.
class QXUnprivileged {
public:
  QXUnprivileged() : m_bChanged(geteuid() == 0 && seteuid(65534) == 0) {}
  QXUnprivileged(QXUnprivileged const&) = delete;
  QXUnprivileged& operator=(QXUnprivileged const&) = delete;
  ~QXUnprivileged() {
    if (m_bChanged && seteuid(0) != 0) _exit(1);
  }

private:
  bool m_bChanged;
};

}  // namespace QXC
