// Does to itself what the command line says, with the library loaded.
//   raise N     sends itself signal N and exits with 0 if that did nothing
//   twice N     the same two times
//   host N      the same after installing a handler of its own, which exits with 42
//   dump N      calls the handler as a function
//   fault       writes to an address that is not there
//   divide      divides by zero
//   illegal     executes an illegal instruction
//   abort       calls abort
//   overflow    fills its stack, with another one at hand for handlers
//   list        exits with the count of signals that do not have the library's handler, restarting system calls
#include <QxGraphics3D/frame/foundation/toolkit/QXLogFile.h>

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace {

void HostHandler(int) {
  ::_exit(42);
}

int CountOthers() {
  int others = 0;
  for (int const signal : {2, 4, 6, 8, 11, 15, 21, 22}) {
    struct sigaction action {};
    ::sigaction(signal, nullptr, &action);
    // Without a restart, reading from the terminal would fail in a process that is stopped for it and continued.
    bool const restarts = (action.sa_flags & SA_RESTART) != 0;
    if (action.sa_handler != &QXC::QXLogFile::Dump || !restarts) ++others;
  }
  return others;
}

// The undefined sanitizer would end the process before the processor notices.
#define QX_UNCHECKED __attribute__((no_sanitize("undefined")))

QX_UNCHECKED void Fault() {
  int volatile* volatile pNowhere = nullptr;
  *pNowhere = 1;
}

QX_UNCHECKED int Divide() {
  int volatile dividend = 100;  // a constant one would be divided without a division
  int volatile divisor = 0;
  return dividend / divisor;
}

// The address leaves the function, so that no compiler turns the calls into a loop.
int volatile* pDeepest = nullptr;

int Descend(int nDepth) {
  int volatile room[256];
  room[0] = nDepth;
  pDeepest = room;
  return nDepth == 0 ? room[0] : Descend(nDepth + 1) + room[0];
}

void Overflow() {
  static unsigned char arrStack[1 << 16];
  stack_t other{};
  other.ss_sp = arrStack;
  other.ss_size = sizeof arrStack;
  ::sigaltstack(&other, nullptr);
  Descend(1);
}

}  // namespace

int main(int nArgumentCount, char** arrArguments) {
  if (nArgumentCount < 2) return 99;
  auto const is = [arrArguments](char const* szName) { return std::strcmp(arrArguments[1], szName) == 0; };
  int const number = nArgumentCount > 2 ? std::atoi(arrArguments[2]) : 0;
  if (is("list")) return CountOthers();
  if (is("host")) ::signal(number, &HostHandler);
  if (is("host") || is("raise") || is("twice")) ::raise(number);
  if (is("twice")) ::raise(number);
  if (is("dump")) QXC::QXLogFile::Dump(number);
  if (is("fault")) Fault();
  if (is("divide")) return Divide();
  if (is("illegal")) __builtin_trap();
  if (is("abort")) std::abort();
  if (is("overflow")) Overflow();
  return 0;
}
