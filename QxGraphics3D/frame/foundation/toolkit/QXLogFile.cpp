#include <QxGraphics3D/frame/foundation/toolkit/QXLogFile.h>

#include <execinfo.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>

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

// Signals, one bit each, that were ignored when the library came. Who started the process wants it to live through them
// (a background job, nohup): answering with the default action would end or stop it. A crash cannot be ignored in that
// sense. Lock-free, so that the handler may read it.
constinit std::atomic<std::uint32_t> ms_nIgnored{0};
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

std::uint32_t BitOf(int nSignal) {
  return nSignal >= 0 && nSignal < 32 ? std::uint32_t{1} << nSignal : 0;
}

// What the signal would do without the library. The handler puts this back before it returns: a terminal that went on
// finding 21 or 22 handled would send it again for every restarted read or write, without end.
void (*FormerAction(int nSignal))(int) {
  return (ms_nIgnored.load() & BitOf(nSignal)) != 0 ? SIG_IGN : SIG_DFL;
}

// Three objects of one kind may run this at load with the same effect as one: the handlers are the same.
class CrashHandlerInstaller {
public:
  CrashHandlerInstaller() {
    // The first backtrace loads the unwinder, which allocates: it must not be the one inside the handler.
    void* frame = nullptr;
    ::backtrace(&frame, 1);
    for (int const signal : arrHandledSignals) {
      if (!IsCrash(signal) && GetHandler(signal) == SIG_IGN) ms_nIgnored.fetch_or(BitOf(signal));
      SetAction(signal, &QXLogFile::Dump);
    }
  }
  CrashHandlerInstaller(CrashHandlerInstaller const&) = delete;
  CrashHandlerInstaller& operator=(CrashHandlerInstaller const&) = delete;
  // The library may be unloaded by a host that opened it at run time: a handler left behind would point nowhere.
  ~CrashHandlerInstaller() {
    for (int const signal : arrHandledSignals) {
      if (GetHandler(signal) == &QXLogFile::Dump) SetAction(signal, FormerAction(signal));
    }
  }
};

CrashHandlerInstaller const crashHandlerInstaller;

}  // namespace

void QXLogFile::Dump(int nSignal) {
  int const savedErrno = errno;
  // First the former action: a fault while the stack is written then ends the process instead of coming back here.
  SetAction(nSignal, FormerAction(nSignal));
  if (IsCrash(nSignal)) {
    WriteHeadline(nSignal);
    WriteStack();
  }
  ::raise(nSignal);
  errno = savedErrno;
}

}  // namespace QXC
