#include <QxGraphics3D/frame/foundation/toolkit/QXLogFile.h>

#include <execinfo.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace QXC {

namespace {

// By number: the list is one contract for all platforms, and the last two mean break and abort on some but terminal
// access of a background process here. SIGABRT stands for abort wherever that is another number.
constexpr std::array<int, 8> arrHandledSignals{2, 4, 8, 11, 15, 21, 22, SIGABRT};
constexpr int nMostFrames = 64;

bool IsCrash(int nSignal) {
  return nSignal == SIGILL || nSignal == SIGFPE || nSignal == SIGSEGV || nSignal == SIGABRT;
}

void Write(char const* pBytes, std::size_t nCount) {
  // Nobody is left to tell of a failed write.
  [[maybe_unused]] auto const written = ::write(STDERR_FILENO, pBytes, nCount);
}

// No formatted output here: it may allocate, and the heap may be what broke.
void WriteHeadline(int nSignal) {
  constexpr char szFront[] = "QxGraphics3D: crash by signal ";
  char const digits[] = {static_cast<char>('0' + nSignal / 10), static_cast<char>('0' + nSignal % 10), '\n'};
  Write(szFront, sizeof szFront - 1);
  Write(nSignal < 10 ? digits + 1 : digits, nSignal < 10 ? 2 : 3);
}

void WriteStack() {
  std::array<void*, nMostFrames> frames{};
  int const count = ::backtrace(frames.data(), nMostFrames);
  ::backtrace_symbols_fd(frames.data(), count, STDERR_FILENO);
}

void SetAction(int nSignal, void (*pHandler)(int)) {
  struct sigaction action {};
  action.sa_handler = pHandler;
  // Restart: a process that is stopped for terminal access and continued must find its read or write still under way.
  action.sa_flags = SA_RESTART | SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  ::sigaction(nSignal, &action, nullptr);
}

void (*GetHandler(int nSignal))(int) {
  struct sigaction action {};
  if (::sigaction(nSignal, nullptr, &action) != 0 || (action.sa_flags & SA_SIGINFO)) return SIG_DFL;
  return action.sa_handler;
}

// Signals that whoever started the process had ignored (a background job, nohup). The handler is installed for them all
// the same and lets them pass, since the default action would end a process that is meant to go on.
std::array<volatile std::sig_atomic_t, NSIG> arrIgnoredAtLoad{};

// A terminal that finds these handled and not ignored sends them again for every restarted read or write, without end:
// where they were ignored they have to stay so.
bool IsTerminalAccess(int nSignal) {
  return nSignal == SIGTTIN || nSignal == SIGTTOU;
}

// Three objects of one kind may run this at load with the same effect as one: the handlers are the same.
class CrashHandlerInstaller {
public:
  CrashHandlerInstaller() {
    // The first backtrace loads the unwinder, which allocates: it must not be the one inside the handler.
    void* frame = nullptr;
    ::backtrace(&frame, 1);
    for (int const signal : arrHandledSignals) {
      bool const ignored = !IsCrash(signal) && GetHandler(signal) == SIG_IGN;
      if (ignored && IsTerminalAccess(signal)) continue;
      arrIgnoredAtLoad[static_cast<std::size_t>(signal)] = ignored ? 1 : 0;
      SetAction(signal, &QXLogFile::Dump);
    }
  }
  CrashHandlerInstaller(CrashHandlerInstaller const&) = delete;
  CrashHandlerInstaller& operator=(CrashHandlerInstaller const&) = delete;
  // The library may be unloaded by a host that opened it at run time: a handler left behind would point nowhere.
  ~CrashHandlerInstaller() {
    for (int const signal : arrHandledSignals) {
      if (GetHandler(signal) != &QXLogFile::Dump) continue;
      SetAction(signal, arrIgnoredAtLoad[static_cast<std::size_t>(signal)] ? SIG_IGN : SIG_DFL);
    }
  }
};

CrashHandlerInstaller const crashHandlerInstaller;

}  // namespace

void QXLogFile::Dump(int nSignal) {
  if (nSignal > 0 && nSignal < NSIG && arrIgnoredAtLoad[static_cast<std::size_t>(nSignal)]) return;
  int const savedErrno = errno;
  // First the default action: a fault while the stack is written then ends the process instead of coming back here.
  SetAction(nSignal, SIG_DFL);
  if (IsCrash(nSignal)) {
    WriteHeadline(nSignal);
    WriteStack();
  }
  ::raise(nSignal);
  errno = savedErrno;
}

}  // namespace QXC
